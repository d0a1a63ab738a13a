// The main paths of pow and powr, which differ in their special lanes alone.
#pragma once

#include "pow_core.hpp"

namespace quevar::power {
QUEVAR_INLINE_BEGIN

// -1023 - log2 R for R = 1/2 + i/1024, in two parts.
using LogarithmRows = table<f64, 2, 513>;
QUEVAR_CONSTANTS(LogarithmRows, logarithm_rows) = {{
#include "tables/logarithm_rows.inc"
}};
// 2^(j/256).
using PowerRows = table<f64, 1, 256>;
QUEVAR_CONSTANTS(PowerRows, power_rows) = {{
#include "tables/power_rows.inc"
}};

struct TwoPartsConstants : CommonConstants {
    slot<f64> least_normal{0x0010000000000000};
    slot<f64> greatest{0x7FEFFFFFFFFFFFFF};
    slot<f64> last_product{0x408FEC0000000000}; // 1021.5
    slot<i64> half_step{0x0000040000000000};    // rounds to 9 bits
    slot<i64> nine_bits{0xFFFFF80000000000};
    slot<f64> log2_e{0x3FF71547652B82FE};     // 1.4426950408889634
    slot<f64> log2_e_low{0x3C777A3A2C24613D}; // 2.0363441957695363e-17
    slot<f64> l5{0xBFCEC1CFBBC5C90C};         // -0.24028965633949217
    slot<f64> l4{0x3FD2776DA3D26E6A};         // 0.28853932378999636
    slot<f64> l3{0xBFD71547655D37E0};         // -0.36067376040307231
    slot<f64> l2{0x3FDEC709DC39FB02};         // 0.48089834696286016
    slot<f64> l1{0xBFE71547652B82FE};         // -0.72134752044448169
    slot<f64> shifter{0x42B800000003FF00};    // 1.5 2^44 + 1023: rounds to 1/256, carries the exponent bias
    slot<i64> row{0xFF};
    slot<i64> above_row{0xFFFFFFFFFFFFFF00};
    slot<f64> e4{0x3F83B2AB930F15F9}; // 0.0096181301359008365
    slot<f64> e3{0x3FAC6B090DA1E0A9}; // 0.055504115022757823
    slot<f64> e2{0x3FCEBFBDFF82C54D}; // 0.24022650695909889
    slot<f64> e1{0x3FE62E42FEFA39B9}; // 0.69314718055993929
};
QUEVAR_CONSTANTS(TwoPartsConstants, two_parts_constants){};

// log2 x and its product with y in two parts each; the errors of fused operations are exact. The polynomials:
// log2(1 + f) for |f| < 0.00134 to a relative 2^-61, 2^r for |r| <= 2^-9 to 2^-58.5.
// Worst: 0x3FEFF8FC06D03727, 0xC128FB91A9FB5FCA (0.99914361, -818632.83) gives 0x7F2D01D246811351, wanted
// 0x7F2D01D24681134F: 1.851 ulp. That near to 1 a large y shows what C is rounded by; elsewhere 1.1 ulp.
template <class Special> struct TwoParts : Special {
    static constexpr bool in_turn = true;

    template <class V> static auto main(V x, V y) {
        const auto &k = read_for(x, two_parts_constants);
        // x = 2^e (1 + f) / R, with R a reciprocal of the significand rounded so that f is exact.
        const V m = as_float((as_int(x) & k.significand) | as_int(V(k.one)));
        const V estimate = convert<f64>(reciprocal_estimate(convert<f32>(m)));
        const auto R = (as_int(estimate) + k.half_step) & k.nine_bits;
        const V f = fms(as_float(R), m, k.one);
        const auto [high, low] = fetch_at<0x7FC00, 8>(logarithm_rows, as_int(as_uint(R) >> 42));
        // log2 x = A + C.
        const V S = high + biased_exponent(k, x), A = fma(f, k.log2_e, S), f2 = f * f;
        const V q = fma(f, fma(f2, fma(f, k.l5, k.l4), fma(f, k.l3, k.l2)), k.l1);
        const V C = fma(q, f2, fma(f, k.log2_e_low, low) + fms(f, k.log2_e, A - S));
        // y log2 x = P + e = n/256 + r.
        const V P0 = y * A, P = fma(C, y, P0);
        const V e = fms(y, A, P0) + fms(y, C, P - P0);
        const V shifted = P + k.shifter;
        const V r0 = P - (shifted - k.shifter), r = r0 + e;
        const auto [t] = fetch(power_rows, as_int(shifted) & k.row);
        const V p = fma(r, fma(r, fma(r0, k.e4, k.e3), k.e2), k.e1);
        const V scale = as_float((as_int(shifted) & k.above_row) << 44);
        const auto special =
            (x < k.least_normal) | ~(x <= k.greatest) | ~(magnitude(k, P0) <= k.last_product);
        return flagged(scale * fma(t * r, p, t), special);
    }
};

// Infinite and NaN y too are special, and large finite ones.
// Worst: 0x3FEFF70B69D57A38, 0x41233E1FC43D5716 (0.99890681, 630543.88) gives 0x01BFFEA2A26A4DB6, wanted
// 0x01BFFEA29E781128: 6.621e7 ulp.
template <class Special> struct Plain : Special {
    static constexpr bool in_turn = true;

    template <class V> static auto main(V x, V y) {
        const auto &k = read_for(x, plain_constants);
        const V p = y * plain_logarithm<Degree::fourth>(k, x);
        return flagged(plain_exponential(k, p), outside_normal(k, x) | size_beyond(k, y, k.last_finite) |
                                                    size_beyond(k, p, k.last_product));
    }
};

QUEVAR_INLINE_END
} // namespace quevar::power
