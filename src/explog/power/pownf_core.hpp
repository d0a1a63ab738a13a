// What pownf and rootnf share: log |x| in two parts, and the exponential of its product.
#pragma once

#include "powf_core.hpp"

namespace quevar::powerf {
QUEVAR_INLINE_BEGIN

// For i from 0 to 64 an inverse near 1/(1 + i/64), a multiple of 1/256, after minus its logarithm in two
// parts, the high one a multiple of 2^-14. The last column fills the row.
using InverseRows = table<f32, 4, 65>;
QUEVAR_CONSTANTS(InverseRows, inverse_rows) = {{
#include "tables/pownf_inverse_rows.inc"
}};

struct TwoPartConstants : PowfConstants {
    slot<i32> row_bits{0x007F0000};
    slot<i32> half_row{0x00010000};
    slot<i32> bias{127};
    slot<f32> upper_half{0xFFFFC000};
    slot<f32> log_ln2_high{0x3F317000}; // 0.693115234
    slot<f32> log_ln2_low{0x3805FDF4};  // 3.19461833e-05
    slot<f32> a4{0xBE800000};           // -0.25
    slot<f32> a3{0x3EAAAAAB};           // 0.333333343
    slot<f32> a2{0xBF000000};           // -0.5
    slot<i32> near_one{0x407E0000};     // with the range: from 0.9921875 to 1.015625
    slot<i32> near_one_range{0x7FFC0000};
    slot<f32> splitter{0x45800800}; // 2^12 + 1
    slot<f32> exp[6];               // e^r, from r^5 down
};

template <class V> struct TwoParts { V high, low; };

// v in two halves.
template <class V> TwoParts<V> split(V v, const TwoPartConstants &k) {
    const V p = v * k.splitter, high = p - (p - v);
    return {high, v - high};
}

// The polynomial is within 2e-11 of log(1 + z) up to 0.0094.
template <class V> TwoParts<V> log_in_two_parts(V a, const TwoPartConstants &k) {
    const auto pattern = as_int(a);
    const auto [row_high, row_low, inverse, unused] =
        fetch(inverse_rows, ((pattern & k.row_bits) + k.half_row) >> 17);
    const V e = convert<f32>((pattern >> 23) - k.bias);
    const V m = as_float(pattern & k.significand) | k.one, m_high = m & k.upper_half;
    // m inverse = 1 + z; u is exact.
    const V u = fms_unless_scalar(m_high, inverse, k.one), v = inverse * (m - m_high), z = u + v;
    const V sum = fma_unless_scalar(e, k.log_ln2_high, row_high + u),
            low = fma_unless_scalar(e, k.log_ln2_low, row_low);
    const V rest = fma_unless_scalar(z * z, fma(z, fma(z, k.a4, k.a3), k.a2), low);
    // Near 1 there is nothing for v to be small beside.
    const auto near_one = pattern + k.near_one > k.near_one_range;
    const V first = sum + keep(near_one, v), second = keep(~near_one, v) + rest;
    const V log = first + second, shift = log * k.splitter, high = (log + shift) - shift;
    return {high, second + (first - high)};
}

// e^(product + low), with the sign given; the polynomials are within 1.6e-7 of e^r up to ln 2/2.
template <class V> V exp_in_two_parts(V product, V low, V sign, const TwoPartConstants &c) {
    const V t = fma(product, c.one_over_ln2, c.shifter), n = t - c.shifter;
    const V r = low + fnma(n, c.ln2_low, fnma(n, c.ln2_high, product));
    return scaled_by_pattern(polynomial(r, c.exp), t) | sign;
}

// ---- Plain floats ----

QUEVAR_CONSTANTS(PlainConstants<6>, pownf_plain_constants){
    .log =
        {
            0x3E2B350C, // 0.167194545
            0xBE424B46, // -0.18974027
            0x3E4B62C0, // 0.198618889
            0xBE7F0F0F, // -0.249080881
            0x3EAAAD03, // 0.333351225
            0xBF000000, // -0.5
        },
    .exp =
        {
            0x3E2C359F, // 0.168173298
            0x3F014935, // 0.505023301
            0x3F7FFC0B, // 0.99993962
            0x3F7FFB0D, // 0.999924481
        },
};

// Within 1.8e-6 of log(1 + f) from -1/3 to 1/3; the exponential within 1.1e-4 up to ln 2/2.
template <class V> V log_in_plain_floats(V a, const PlainConstants<6> &c) {
    const auto [k, rest] = log_by_series(a, c);
    return fma_unless_scalar(k, c.ln2_high, rest);
}

QUEVAR_INLINE_END
} // namespace quevar::powerf
