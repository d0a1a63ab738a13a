// The large-argument reduction of the double circular functions: a double of any size to a fraction of a turn,
// by an integer product with the digits of 1/(2 pi) that matter to its exponent.
#pragma once

#include "frame/frame.hpp"

namespace quevar::circular {
QUEVAR_INLINE_BEGIN

using ReductionRows = table<f64, 4, 2048>;
QUEVAR_CONSTANTS(ReductionRows, reduction_rows) = {{
#include "tables/reduction_rows.inc"
}};

struct ReductionConstants {
    slot<i64> exponent{0x7FF0000000000000};
    slot<u64> significand{0x000FFFFFFFFFFFFF};
    slot<u64> leading_bit{0x0010000000000000};
    slot<u64> sign{0x8000000000000000};
    slot<u64> one{0x3FF0000000000000};
    slot<f64> shifter{0x42A8000000000000};     // 1.5 * 2^43: rounds to 1/512
    slot<u64> ulp{0x3CB0000000000000};         // 2^-52
    slot<u64> ulp_squared{0x3970000000000000}; // 2^-104
    slot<f64> two_pi_high{0x401921FB54442D18}; // 6.283185307179586
    slot<f64> two_pi_low{0x3CB1A62633145C07};  // 2.4492935982947064e-16
};
QUEVAR_CONSTANTS(ReductionConstants, reduction_constants){};

// x = 2 pi (j/512) + r + low up to whole turns, j being the low 9 bits of turn. The sign of x is in all of
// them.
template <class V> struct Reduced {
    in_memory<typename V::template with<u64>> turn;
    V r, low;
};

// Infinite and NaN lanes give meaningless values.
enum signs { positive_argument, signed_argument };
template <signs Signs, class V> Reduced<V> reduce(V x) {
    using U = typename V::template with<u64>;
    const auto &k = reduction_constants;
    const auto row =
        fetch(reduction_rows, in_memory(as_uint(x)), [](auto bits) { return bits >> 52 & 2047; });
    const U w0 = as_uint(row.column[0]), w1 = as_uint(row.column[1]), w2 = as_uint(row.column[2]);

    // The significand times the row, whole turns cut off above and 64 bits below: the fraction of a turn in two
    // words. Of the row's last word only the halves' products count that reach the fraction, each cut there.
    const auto high = [](U w) { return w >> 32; };
    const auto low_half = [](U w) { return w & U::splat(0xFFFFFFFF); };
    const U m0 = (as_uint(x) & k.significand) | k.leading_bit, m1 = high(m0);
    const auto times_m0 = [m0](U w) { return multiply_low_words(m0, w); };
    const auto times_m1 = [m1](U w) { return multiply_low_words(m1, w); };
    const U below = times_m1(high(w2)) + (high(times_m0(high(w2))) + high(times_m1(w2)));
    const U product = times_m0(w1);
    const U c0 = low_half(product) + below;
    const U middle = times_m0(high(w1)) + high(product); // at most 2^64 - 1
    const U c1 = (times_m1(w1) + low_half(middle)) + high(c0);
    const U lower = (c1 << 32) | low_half(c0);
    // Unrecognised: the compiler would make a product of whole 64-bit lanes of it.
    const U upper = ((unrecognised(times_m0(high(w0)) + times_m1(w0)) << 32) +
                     (times_m0(w0) + times_m1(high(w1))) + high(middle)) +
                    high(c1);

    // The fraction as a sum of three doubles with the sign of x: its upper 52 bits, behind a leading 1 that
    // counts as a whole turn; the next 52; the last 24.
    U one = k.one, ulp = k.ulp, ulp_squared = k.ulp_squared;
    if constexpr (Signs == signed_argument) {
        const U sign = as_uint(x) & k.sign;
        one = one ^ sign, ulp = ulp ^ sign, ulp_squared = ulp_squared ^ sign;
    }
    const V h = as_float((upper >> 12) | one);
    const V g = as_float((((upper << 52) | (lower >> 12)) >> 12) | ulp) - as_float(ulp);
    const V l = as_float(((lower << 40) >> 12) | ulp_squared) - as_float(ulp_squared);
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

template <class V> auto infinite_or_nan(V x) {
    return (as_int(x) & reduction_constants.exponent) == reduction_constants.exponent;
}
// The processor's NaN for an infinity; a NaN itself, quieted.
inline f64 invalid(f64 x) { return x - x; }

QUEVAR_INLINE_END
} // namespace quevar::circular
