// What sin, cos, sincos and sincosreg share in vector form.
#pragma once

#include "reduction.hpp"

namespace quevar::circular {
QUEVAR_INLINE_BEGIN

struct SineConstants {
    slot<f64> magnitude{0x7FFFFFFFFFFFFFFF};
    slot<f64> sign{0x8000000000000000};
    slot<f64> pi1{0x400921FB54442D18};         // 3.141592653589793
    slot<f64> pi2{0x3CA1A62633145C06};         // 1.224646799147353e-16
    slot<f64> pi3{0x395C1CD129024E09};         // 2.165713347843828e-32
    slot<f64> one_over_pi{0x3FD45F306DC9C883}; // 0.3183098861837907
    slot<f64> shifter{0x4338000000000000};     // 1.5 * 2^52
    slot<f64> half{0x3FE0000000000000};        // 0.5
    slot<f64> one{0x3FF0000000000000};         // 1
    slot<f64> half_pi{0x3FF921FB54442D18};     // 1.5707963267948966

    // a - n pi, pi in two or three pieces.
    template <int Pieces, class V> V subtract_half_turns(V a, V n) const {
        const V r = fnma(n, pi2, fnma(n, pi1, a));
        if constexpr (Pieces == 2) return r;
        else return fnma(n, pi3, r);
    }
};
QUEVAR_CONSTANTS(SineConstants, sine_constants){};

// ---- Short path: sin r = r + r r^2 p(r^2) with r = x - n pi, |r| a little over pi/2 at most ----

template <class V> V magnitude(V x) { return x & sine_constants.magnitude; }
// The sign bit where the integer in the low bits is odd.
template <class V> V odd_sign(V shifted) { return as_float(as_int(shifted) << 63); }

struct LongPolynomial {
    static constexpr int pieces = 3;
    slot<f64> p[7];
};
struct ShortPolynomial {
    static constexpr int pieces = 2;
    slot<f64> p[4];
};
// Of every _native family: relative error 2^-27.1 up to pi/2.
QUEVAR_CONSTANTS(ShortPolynomial, short_polynomial){{
    0x3EC5D4567512BBD5, // 2.602272538419318e-06
    0xBF29F67D9395D587, // -0.0001980808536178708
    0x3F8110EA968A0185, // 0.008333046645248707
    0xBFC55554AD3EAF1F, // -0.16666658839437162
}};

// ---- Large path: a row of the sine table for j/512 of a turn, and short polynomials for what is left ----

// Five quarters of a turn, so that the cosine's row stands a quarter behind the sine's.
using SineRows = table<f64, 4, 640>;
QUEVAR_CONSTANTS(SineRows, sine_rows) = {{
#include "tables/sin_rows.inc"
}};
constexpr int quarter_turn = 128;

struct LargeConstants {
    slot<f64> a1{0xBFC5555555554448}; // -0.1666666666665455
    slot<f64> a2{0x3F81110FABB3551C}; // 0.008333322932609515
    slot<f64> b1{0xBFE0000000000000}; // -0.5
    slot<f64> b2{0x3FA5555555554CCF}; // 0.041666666666651524
    slot<f64> b3{0xBF56C16AB163B2D7}; // -0.0013888875887985619
};
QUEVAR_CONSTANTS(LargeConstants, large_constants){};

// The reduced argument with sin r - r and cos r - 1, |r| up to pi/512 and a little: errors 2^-68 and 2^-78.
template <class V> struct Large {
    const Reduced<V> &reduced;
    V sin_minus_r, cos_minus_1;

    // The sine of the row's angle plus r + low is high + error + error2 + slope sin_minus_r + sin_high cos_minus_1 + rest,
    // which the families add up in different orders. high + error + error2 is sin_high + slope r with hardly a
    // rounding; rest is what low brings and what rounding left of the row's sine.
    struct Sum {
        V high, error, error2, slope, rest, sin_high;
    };

    explicit Large(const Reduced<V> &reduced) : reduced(reduced) {
        const auto &k = large_constants;
        const V r = reduced.r, z = r * r;
        sin_minus_r = r * (z * fma(z, k.a2, k.a1));
        cos_minus_1 = z * fma(z, fma(z, k.b3, k.b2), k.b1);
    }

    // The sum for the angle that lies so many rows further.
    template <int Further> Sum at() const {
        const auto [cos_low, cos_high, sin_high, sin_low] =
            fetch<-Further>(sine_rows, reduced.turn, [](auto bits) { return bits & 511; });
        const V r = reduced.r, low = reduced.low;
        const V u = fma(cos_high, r, sin_high);
        const V high = fma(r, cos_low, u);
        const V slope = cos_low + cos_high;
        return {high,
                fma(cos_high, r, sin_high - u),
                fma(r, cos_low, u - high),
                slope,
                fma(fnma(sin_high, r, slope), low, sin_low),
                sin_high};
    }
};

// sin x, or cos x a quarter turn further.
template <int Further, class V> V large_sine(const Reduced<V> &reduced) {
    const Large<V> large(reduced);
    const auto s = large.template at<Further>();
    return s.high +
           (fma(s.sin_high, large.cos_minus_1, fma(s.slope, large.sin_minus_r, s.error + s.error2)) + s.rest);
}

QUEVAR_INLINE_END
} // namespace quevar::circular
