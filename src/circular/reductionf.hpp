// Reduction of large arguments of sinf, cosf, sincosf and tanf: the fraction of a turn, by an integer product
// of the significand with those digits of 1/(2 pi) that matter to the exponent.
#pragma once

#include "frame/frame.hpp"

namespace quevar::circularf {
QUEVAR_INLINE_BEGIN

using ReductionRows = table<f32, 4, 256>;
QUEVAR_CONSTANTS(ReductionRows, reduction_rows) = {{
#include "tables/reductionf_rows.inc"
}};

struct ReductionConstants {
    slot<i32> exponent{0x7F800000};
    slot<u32> significand{0x007FFFFF};
    slot<u32> leading_bit{0x00800000};
    slot<u32> half_word{0x0000FFFF};
    slot<u32> sign{0x80000000};
    slot<u32> one{0x3F800000};
    slot<f32> shifter{0x47400000};     // 1.5 * 2^15: rounds to 1/256
    slot<u32> ulp{0x34000000};         // 2^-23
    slot<u32> ulp_squared{0x28800000}; // 2^-46
    slot<f32> two_pi_high{0x40C90FDB}; // 6.28318548
    slot<f32> two_pi_low{0xB43BBD2E};  // -1.74845553e-07
};
QUEVAR_CONSTANTS(ReductionConstants, reduction_constants){};

// x = 2 pi j/256 + r + low, up to whole turns, where j is the low 8 bits of turn. All three follow the sign
// of x.
template <class V> struct Reduced {
    in_memory<typename V::template with<u32>> turn;
    V r, low;
};

// Infinite and NaN lanes give meaningless values.
enum signs { positive_argument, signed_argument };
template <signs Signs, class V> Reduced<V> reduce(V x) {
    using U = typename V::template with<u32>;
    const auto &k = reduction_constants;
    const auto row = fetch(reduction_rows, in_memory(as_uint(x)), [](auto bits) { return bits >> 23 & 255; });
    const U w0 = as_uint(row.column[0]), w1 = as_uint(row.column[1]), w2 = as_uint(row.column[2]);

    // The fraction of a turn in two words, upper and lower: the product of significand and row, without the
    // whole turns above and the 32 bits below. The product with the last word, w2, is made of 16-bit halves,
    // each partial product cut where the fraction ends.
    const U m = (as_uint(x) & k.significand) | k.leading_bit;
    const U m1 = m >> 16, m0 = m & k.half_word, r1 = w2 >> 16, r0 = w2 & k.half_word;
    const U below = m1 * r1 + ((m1 * r0) >> 16) + ((m0 * r1) >> 16);
    const U lower = m * w1 + below;
    const U carry = as_uint(lower < below);
    const U upper = m * w0 + multiply_high(m, w1) - carry;

    // The fraction as a sum of three floats with the sign of x: its upper 23 bits, with a whole turn added,
    // which does no harm; the next 23 bits; the last 18.
    U one = k.one, ulp = k.ulp, ulp_squared = k.ulp_squared;
    if constexpr (Signs == signed_argument) {
        const U sign = as_uint(x) & k.sign;
        one = one ^ sign, ulp = ulp ^ sign, ulp_squared = ulp_squared ^ sign;
    }
    const V h = as_float((upper >> 9) | one);
    const V g = as_float((((upper << 23) | (lower >> 9)) >> 9) | ulp) - as_float(ulp);
    const V l = as_float(((lower << 14) >> 9) | ulp_squared) - as_float(ulp_squared);
    const V t = h + k.shifter;
    const V d = h - (t - k.shifter);
    const V u = d + g;
    const V v = l + (g + (d - u));

    const V r = k.two_pi_high * u;
    V low = fms(u, k.two_pi_high, r);
    low = fma(u, k.two_pi_low, low);
    low = fma(v, k.two_pi_high, low);
    return {in_memory(as_uint(t)), r, low};
}

QUEVAR_INLINE_END
} // namespace quevar::circularf
