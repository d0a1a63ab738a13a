// tanf: the tangent.
#include "reductionf.hpp"

namespace quevar::tanf {
QUEVAR_INLINE_BEGIN

using namespace circularf;

struct Constants {
    slot<f32> magnitude{0x7FFFFFFF};
    slot<f32> large{0x46010000}; // 8256: beyond it settle reduces x
    slot<f32> infinity{0x7F800000};
    slot<f32> two_over_pi{0x3F22F983}; // 0.636619747
    slot<f32> shifter{0x4B400000};     // 1.5 * 2^23
    slot<f32> half_pi1{0x3FC90FDB};    // 1.57079637
    slot<f32> half_pi2{0xB33BBD2E};    // -4.37113883e-08
    slot<f32> half_pi3{0xA6F72CED};    // -1.71512451e-15
    slot<f32> n0{0x3F7FFFFC};          // 0.999999762
    slot<f32> n1{0xBDC433B4};          // -0.0958017409
    slot<f32> d0{0x3F7FFFFC};          // 0.999999762
    slot<f32> d1{0xBEDBB7AB};          // -0.42913565
    slot<f32> d2{0x3C1F336B};          // 0.00971684884
    slot<f32> one{0x3F800000};         // 1
    slot<f32> two{0x40000000};         // 2
    slot<f32> upper_half{0xFFFFF000};  // cuts to 12 bits: products of two such numbers are exact
};
QUEVAR_CONSTANTS(Constants, constants){};

// tan(pi j/128 + r) = pole/(b - r) + c0 + c1 r + c2 r^2 + c3 r^3 + c4 r^4. In the half of the rows next to
// pi/2 the pole is 1 and b = pi/2 - pi j/128; in the others the pole is 0.
using ExpansionRows = table<f32, 12, 128>;
QUEVAR_CONSTANTS(ExpansionRows, expansion_rows) = {{
#include "tables/tanf_rows.inc"
}};

template <class V> struct Expansion {
    V r, b, pole, c0, c1, rest, b_low, c0_low; // rest: what follows c0 + c1 r, over r
};
template <class V> Expansion<V> expand(const Reduced<V> &reduced) {
    const V r = reduced.r + reduced.low;
    const auto [b, pole, c0, c1, c1_low, c2, c3, c4, b_low, c0_low, unused1, unused2] =
        fetch(expansion_rows, reduced.turn, [](auto bits) { return bits & 127; });
    return {r, b, pole, c0, c1, fma(fma(r, c4, c3), r * r, fma(r, c2, c1_low)), b_low, c0_low};
}

struct ByDivision {
    template <class V> static V subtract_last_piece(V r, V n) { return fnma(n, constants.half_pi3, r); }
    template <class V> static V quotient(V a, V b) { return a / b; }

    template <class V> static V large(const Reduced<V> &reduced) {
        const auto &k = constants;
        const auto [r, b, pole, c0, c1, rest, b_low, c0_low] = expand(reduced);
        // 1/(b - r) as estimate + correction.
        const V d = b - r, high = d & k.upper_half, low = ((b - d) - r) + (b_low + (d - high));
        const V estimate = reciprocal_estimate(high) & k.upper_half;
        const V e = fnma(estimate, high, k.one);
        const V reciprocal = fma(e, estimate, estimate) * fma(e, e, k.one);
        const V m = low * reciprocal;
        const V correction = reciprocal * fms(m, m, m - e);

        const V line = fma(r, c1, c0), line_low = fma(r, c1, c0 - line);
        const V sum = fma(pole, estimate, line), sum_low = line + fms(pole, estimate, sum);
        return sum + fma(r, rest, c0_low + (fma(pole, correction, line_low) + sum_low));
    }
};

struct ByEstimate {
    template <class V> static V subtract_last_piece(V r, V) { return r; }
    template <class V> static V quotient(V a, V b) {
        const V e = reciprocal_estimate(b);
        return a * (e * fnma(b, e, constants.two));
    }

    template <class V> static V large(const Reduced<V> &reduced) {
        const auto [r, b, pole, c0, c1, rest, b_low, c0_low] = expand(reduced);
        const V d = b - r, estimate = reciprocal_estimate(d);
        const V w = pole * estimate, e = fnma(estimate, d, constants.one);
        return fma(e, w, w) + fma(r, rest, fma(r, c1, c0));
    }
};

// tan r ~ r (n0 + n1 r^2) / (d0 + d1 r^2 + d2 r^4) for |r| <= pi/4: relative error 2^-25.1.
// Worst, by division: 0x3FA8A4E8, 1.31753254, gives 0x40774652, wanted 0x40774656: 3.6506 ulp.
// Worst, by estimate on a Zen 5: 0x437CE5F1, 252.898209, next to an odd multiple of pi/2, gives 0xCD63DB10,
// wanted 0xCD63D737: 985 ulp.
template <class Tier> struct Tangent {
    // Also true for NaN.
    template <class V> static auto beyond_limit(V a) { return ~(a <= constants.large); }

    // With n the whole number of quarter turns, tan x = tan r for even n, else -1/tan r.
    template <class V> static auto main(V x) {
        const auto &k = constants;
        const V a = x & k.magnitude;
        const V shifted = fma(a, k.two_over_pi, k.shifter), n = shifted - k.shifter;
        const V r = Tier::subtract_last_piece(fnma(n, k.half_pi2, fnma(n, k.half_pi1, a)), n);
        const auto parity = as_int(shifted) << 31;
        const V z = r * r;
        const V numerator = (r ^ as_float(parity) ^ (x ^ a)) * fma(z, k.n1, k.n0);
        const V denominator = fma(z, fma(z, k.d2, k.d1), k.d0);
        const auto odd = parity >> 31;
        return flagged(
            Tier::quotient(select(odd, denominator, numerator), select(odd, numerator, denominator)),
            beyond_limit(a));
    }

    template <class V> static auto prepare(V x) { return reduce<positive_argument>(x & constants.magnitude); }
    template <class V> static auto settle(V x, V r, const Reduced<V> &reduced) {
        const V a = x & constants.magnitude;
        return flagged(select(beyond_limit(a), Tier::large(reduced) ^ (x ^ a), r), ~(a < constants.infinity));
    }

    static constexpr bool settles_alone = true;
    // Of an infinity the processor's NaN; of a NaN the same, made quiet.
    static void rare(const f32 *x, f32 *r) { *r = *x - *x; }
};

QUEVAR_EXPORT(tan, f, , unary, f32, f32, void, Tangent<ByDivision>)
QUEVAR_EXPORT(tan, f, _native, unary, f32, f32, void, Tangent<ByEstimate>)
QUEVAR_EXPORT(tan, f, _half, unary, f32, f32, void, Tangent<ByEstimate>)
QUEVAR_EXPORT(tan, f, _rm, unary, f32, f32, void, Tangent<ByEstimate>)

QUEVAR_INLINE_END
} // namespace quevar::tanf
