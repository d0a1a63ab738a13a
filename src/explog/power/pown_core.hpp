// What pown and rootn share: the logarithm and the sign of the main paths.
#pragma once

#include "pow_core.hpp"

namespace quevar::power {
QUEVAR_INLINE_BEGIN

// c/(1 + i/1024) to 23 bits, with c near 1 / ln 2; and log2 of c over that, less 1 from row 512 on, in two
// parts. Together, so that one address serves both.
struct LongRows {
    table<f64, 1, 1025> reciprocals;
    table<f64, 2, 1025> logarithms;
};
QUEVAR_CONSTANTS(LongRows, long_rows) = {{{
#include "tables/long_reciprocal_rows.inc"
                                         }},
                                         {{
#include "tables/long_logarithm_rows.inc"
                                         }}};

struct ThreePartsConstants : CommonConstants {
    slot<i64> half_row{0x0000020000000000};
    slot<i64> rows{0x001FFC0000000000};
    slot<u64> round_up{0x0008020000000000}; // from row 512 on, the exponent is that of the next power of two
    slot<f64> whole_and_bias{0x43380000000003FF};
    slot<i64> upper_half{0xFFFFFFFFF8000000};
    slot<f64> splitter{0x41A0000002000000}; // 2^27 + 1
    slot<f64> c{0x3FF7154740000000};        // 1.4426949024200439
    slot<f64> l[6] = {
        0xBF9B4EA0E9419F52, // -0.026667131649815552
        0x3FA7A334DDFC9F86, // 0.046167041872023737
        0xBFB550472A8BB463, // -0.083256194960726712
        0x3FC47FD462B3B816, // 0.16015105075297303
        0xBFD62E4346694107, // -0.3465736568077919
        0x3E79C3A6966457EE, // 9.5979350332335112e-08
    };
    slot<f64> shifter{0x42C800000001FF80};    // 1.5 2^45 + 1023: rounds to 1/128, carries the exponent bias
    slot<i64> last_power{0x408EEFFE00000000}; // 989.99
    slot<i64> last_root{0x408FEFFE00000000};  // 1021.99
    slot<i64> twice_row{0xFE};
    slot<i64> above_row{0xFFFFFFFFFFFFFF80};
    slot<f64> e5{0x3F55D87FE78A6731}; // 0.0013333558146428443
    slot<f64> e4{0x3F83B2AB6FBA4E77}; // 0.009618129107628477
    slot<f64> e3{0x3FAC6B08D704A0BF}; // 0.055504108664821611
    slot<f64> e2{0x3FCEBFBDFF82C58E}; // 0.24022650695910069
    slot<f64> e1{0x3FE62E42FEFA39EF}; // 0.6931471805599453
};
QUEVAR_CONSTANTS(ThreePartsConstants, three_parts_constants){};

template <class V> V upper_half(const ThreePartsConstants &k, V x) {
    return as_float(as_int(x) & k.upper_half);
}

// log2 of a normal number in three parts, the first of them half a double.
template <class V> struct LongLogarithm { V first, second, third; };
template <class V> LongLogarithm<V> long_logarithm(const ThreePartsConstants &k, V x) {
    const auto significand = as_int(x) & k.significand;
    const auto twice_i = as_int(as_uint((significand + k.half_row) & k.rows) >> 41);
    const V exponent =
        as_float(((as_uint(x) + k.round_up) >> format<f64>::digits) | k.whole) - k.whole_and_bias;
    const auto [inverse] = fetch_at<0, 4>(long_rows.reciprocals, twice_i);
    const auto [high, low] = fetch_at<0, 8>(long_rows.logarithms, twice_i);
    // m inverse = c + u + d, with d what the rounding of the product lost.
    const V m = as_float(significand | as_int(V(k.one))), a = m * inverse, u = a - k.c,
            d = fms(inverse, m, a);
    const V s0 = high + exponent, s1 = u + s0, s = d + s1;
    const V rest = low + ((u + (s0 - s1)) + (d + (s1 - s)));
    const V w = u + d, t = fma(w, polynomial(w, k.l), rest);
    const V l = s + t, first = upper_half(k, l);
    return {first, l - first, t - (l - s)};
}

// Only the sign bit counts: that of x where n is odd, else 0.
template <class V, class I> auto parity_sign(V x, I n) { return (convert<i64>(n) << 63) & as_int(x); }

// 2^(n/128) for `shifted` = n/128 + shifter: the row of the fraction and the power of two of the rest.
template <class V> auto split_power(const ThreePartsConstants &k, V shifted) {
    return fetch_at<0, 8>(split_power_rows, (as_int(shifted) << 1) & k.twice_row);
}
template <class V> V scale_of(const ThreePartsConstants &k, V shifted) {
    return as_float((as_int(shifted) & k.above_row) << 45);
}

QUEVAR_INLINE_END
} // namespace quevar::power
