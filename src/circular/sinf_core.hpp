// What sinf, cosf, sincosf and sincosregf share.
#pragma once

#include "reductionf.hpp"

namespace quevar::circularf {
QUEVAR_INLINE_BEGIN

struct SineConstants {
    slot<f32> magnitude{0x7FFFFFFF};
    slot<f32> sign{0x80000000};
    slot<f32> large{0x461C4000};       // 10000: beyond it settle reduces x
    slot<f32> pi1{0x40490FDB};         // 3.14159274
    slot<f32> pi2{0xB3BBBD2E};         // -8.74227766e-08
    slot<f32> pi3{0xA7772CED};         // -3.43024902e-15
    slot<f32> one_over_pi{0x3EA2F983}; // 0.318309873
    slot<f32> shifter{0x4B400000};     // 1.5 * 2^23
    slot<f32> half{0x3F000000};        // 0.5
    slot<f32> one{0x3F800000};         // 1
    slot<f32> half_pi{0x3FC90FDB};     // 1.57079637
};
QUEVAR_CONSTANTS(SineConstants, sine_constants){};

// ---- Up to the limit: sin r = first(r) + r r^2 rest(r^2) with r = x - n pi ----

template <class V> V magnitude(V x) { return x & sine_constants.magnitude; }
// The sign bit, set where the integer in the low bits of shifted is odd.
template <class V> V odd_sign(V shifted) { return as_float(as_int(shifted) << 31); }

// a - n pi, pi in two or three pieces.
template <int Pieces, class V> V subtract_half_turns(V a, V n) {
    const auto &k = sine_constants;
    const V r = fnma(n, k.pi2, fnma(n, k.pi1, a));
    if constexpr (Pieces == 2) return r;
    else return fnma(n, k.pi3, r);
}

struct Degree9 {
    static constexpr int pieces = 3;
    slot<f32> p1, p2, p3, p4;

    template <class V> V first(V r) const { return r; }
    template <class V> V rest(V z) const {
        const V q = fma(z, p4, p3);
        return fma(z, fma(z, q, p2), p1);
    }
};

struct Degree5 {
    static constexpr int pieces = 2;
    slot<f32> p0, p1, p2;

    template <class V> V first(V r) const { return r * p0; }
    template <class V> V rest(V z) const { return fma(z, p2, p1); }
};

// ---- Beyond the limit: sine and cosine of j/256 of a turn from a table, and polynomials for what is left ----

// The rows go through five quarters of a turn: the cosine's row stands a quarter of a turn after the sine's.
using SineRows = table<f32, 4, 320>;
QUEVAR_CONSTANTS(SineRows, sine_rows) = {{
#include "tables/sinf_rows.inc"
}};
constexpr int quarter_turn = 64;

struct LargeConstants {
    slot<f32> a1{0xBE2AAAAB}; // -0.166666672
    slot<f32> a2{0x3C08885C}; // 0.00833329186
    slot<f32> b1{0xBF000000}; // -0.5
    slot<f32> b2{0x3D2AAA7C}; // 0.0416664928
};
QUEVAR_CONSTANTS(LargeConstants, large_constants){};

// sin r - r ~ r (a1 r^2 + a2 r^4) for |r| <= pi/256: error 2^-46.6.
// cos r - 1 ~ b1 r^2 + b2 r^4 for |r| <= pi/256: error 2^-50.1.
template <class V> struct Large {
    const Reduced<V> &reduced;
    V sin_minus_r, cos_minus_1;

    // The sine of the row's angle plus r + low is high + error + rest + slope sin_minus_r, which the families
    // add up in different orders. high is the row's sine plus slope r, and error what its rounding lost.
    struct Sum {
        V high, error, rest, slope;
    };

    explicit Large(const Reduced<V> &reduced) : reduced(reduced) {
        const auto &k = large_constants;
        const V r = reduced.r, z = r * r;
        sin_minus_r = r * (z * fma(z, k.a2, k.a1));
        cos_minus_1 = z * fma(z, k.b2, k.b1);
    }

    // The sum for an angle that is greater by so many rows.
    template <int Further> Sum at() const {
        const auto [cos_low, sin_high, sin_low, cos_high] =
            fetch<-Further>(sine_rows, reduced.turn, [](auto bits) { return bits & 255; });
        const V r = reduced.r, low = reduced.low;
        const V u = fma(cos_high, r, sin_high);
        const V high = fma(r, cos_low, u);
        const V error = fma(cos_high, r, sin_high - u) + fma(r, cos_low, u - high);
        const V slope = fnma(sin_high, r, cos_low + cos_high);
        return {high, error, fma(sin_high, cos_minus_1, fma(slope, low, sin_low)), slope};
    }
};

template <class V> auto beyond_limit(V x) { return ~(magnitude(x) <= sine_constants.large); }
template <class V> auto infinite_or_nan(V x) {
    return (as_int(x) & reduction_constants.exponent) == reduction_constants.exponent;
}
// Of an infinity the processor's NaN; of a NaN the same, made quiet.
inline f32 invalid(f32 x) { return x - x; }

// ---- sinf and cosf ----

// sin x, or cos x a quarter turn further.
template <int Further> struct Special {
    static constexpr bool settles_alone = true;

    template <class V> static auto prepare(V x) { return reduce<signed_argument>(x); }
    template <class V> static auto settle(V x, V r, const Reduced<V> &reduced) {
        const Large<V> large(reduced);
        const auto s = large.template at<Further>();
        const V sine = s.high + (s.rest + fma(s.slope, large.sin_minus_r, s.error));
        return flagged(select(beyond_limit(x), sine, r), infinite_or_nan(x));
    }
    static void rare(const f32 *x, f32 *r) { *r = invalid(*x); }
};

QUEVAR_INLINE_END
} // namespace quevar::circularf
