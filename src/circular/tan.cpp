// tan: the tangent.
#include "reduction.hpp"

namespace quevar::tan {
QUEVAR_INLINE_BEGIN

using namespace circular;

struct Constants {
    slot<f64> magnitude{0x7FFFFFFFFFFFFFFF};
    slot<f64> sign{0x8000000000000000};
    slot<f64> large{0x40FF400000000000};       // 128000: beyond it the large path
    slot<f64> two_over_pi{0x3FE45F306DC9C883}; // 0.6366197723675814
    slot<f64> shifter{0x4338000000000000};     // 1.5 * 2^52
    slot<f64> half_pi1{0x3FF921FB54442D18};    // 1.5707963267948966
    slot<f64> half_pi2{0x3C91A62633145C06};    // 6.123233995736765e-17
    slot<f64> half_pi3{0x394C1CD129024E09};    // 1.082856673921914e-32
    slot<f64> one{0x3FF0000000000000};         // 1
};
QUEVAR_CONSTANTS(Constants, constants){};

// tan r = numerator/denominator for |r| up to a little over pi/4: relative errors 2^-55.0 and 2^-35.4.
struct Close {
    static constexpr int pieces = 3;
    slot<f64> n[3], d[4];

    template <class V> V numerator(V r, V z) const { return fma(r, z * polynomial(z, n), r); }
};
QUEVAR_CONSTANTS(Close, close){
    .n = {0xBEDF637DCE2A3800,  // -7.483634564165939e-06
          0x3F66FC6FDCE5D301,  // 0.002805918199721425
          0xBFC06B97BE36D389}, // -0.12828347003747023, then 1
    .d = {0xBF2B525B03BC92A6,  // -0.00020844803827304198
          0x3F97E7B68AC28A56,  // 0.02334485265658722
          0xBFDD8B213470BEEE,  // -0.46161680337080113
          0x3FF0000000000000}, // 1
};
struct Loose {
    static constexpr int pieces = 2;
    slot<f64> n[3], d[3];

    template <class V> V numerator(V r, V z) const { return r * polynomial(z, n); }
};
QUEVAR_CONSTANTS(Loose, loose){
    .n = {0x3F545C936ED9193A,  // 0.0012427749419586368
          0xBFC079FF5BF6A4DF,  // -0.12872306814578047
          0x3FF27E949512AA02}, // 1.155903417888681
    .d = {0x3F92E825CC67D220,  // 0.018463698006558116
          0xBFE072E2E400EC37,  // -0.5140242055125616
          0x3FF27E949510E8DE}, // 1.1559034178631502
};

// tan(pi j/256 + r) = pole/(b - r) + c0 + c1 r + ... + c7 r^7, where the pole is 1 in the rows next to pi/2
// and else 0. c1 is a power of two and the rest.
using ExpansionRows = table<f64, 12, 256>;
QUEVAR_CONSTANTS(ExpansionRows, expansion_rows) = {{
#include "tables/tan_rows.inc"
}};

template <class V> V large_tangent(const Reduced<V> &reduced) {
    const auto &k = constants;
    const auto [b, pole, c0, c1, c1_low, c2, c3, c4, c5, c6, c7, unused] =
        fetch(expansion_rows, reduced.turn, [](auto bits) { return bits & 255; });
    const V r = reduced.r + reduced.low, z = r * r;
    const V line = fma(r, c1, c0);
    const V middle = fma(z, fma(r, c4, c3), fma(r, c2, c1_low)), upper = fma(z, c7, fma(r, c6, c5));
    // 1/d from an estimate with error e: the estimate times 1 + e + e^2 + e^3 + e^4.
    const V d = b - r;
    const V estimate = convert<f64>(reciprocal_estimate(convert<f32>(d)));
    const V e = fnma(estimate, d, k.one), e2 = e * e;
    const V reciprocal = fma(fma(e, e, e), fma(estimate, e2, estimate), estimate);
    return fma(r, fma(z * z, upper, middle), fma(pole, reciprocal, line));
}

struct Special {
    static constexpr int in_turn_after_mask = 2;
    static constexpr bool settles_alone = true;

    // NaN too.
    template <class V> static auto beyond_limit(V x) {
        return ~((x & constants.magnitude) <= constants.large);
    }

    template <class V> static auto prepare(V x) { return reduce<signed_argument>(x); }
    template <class V> static auto settle(V x, V r, const Reduced<V> &reduced) {
        return flagged(select(beyond_limit(x), large_tangent(reduced), r), infinite_or_nan(x));
    }
    static void rare(const f64 *x, f64 *r) { *r = invalid(*x); }
};

// Worst arguments found: 0x1.35ae5c1e4fea5p+2 (2.89 ulp), _native 0x1.922fb5405c87cp+1 (1.99e5); by table
// 0x1.42b42ba62ef5cp+21 (3.27).
template <const auto &tier> struct Tangent : Special {
    // With n the whole number of quarter turns, tan x = tan r for even n, else -1/tan r.
    template <class V> static auto main(V x) {
        const auto &k = read_for(x, constants);
        const V a = x & k.magnitude;
        const V shifted = fma(a, k.two_over_pi, k.shifter), n = shifted - k.shifter;
        V r = fnma(n, k.half_pi2, fnma(n, k.half_pi1, a));
        if constexpr (tier.pieces == 3) r = fnma(n, k.half_pi3, r);
        const V z = r * r;
        const auto &t = read_for(x, tier);
        const V numerator = t.numerator(r, z), denominator = polynomial(z, t.d);
        const auto parity = as_int(shifted) << 63;
        const V upper = select_by_sign(parity, denominator, numerator);
        const V lower = select_by_sign(parity, numerator, denominator);
        return flagged((upper / lower) ^ (as_float(parity) ^ (x ^ a)), beyond_limit(x));
    }
};

QUEVAR_EXPORT(tan, , , unary, f64, f64, void, Tangent<close>)
QUEVAR_EXPORT(tan, , _native, unary, f64, f64, void, Tangent<loose>)

QUEVAR_INLINE_END
} // namespace quevar::tan
