// tanf: the tangent.
#include "reductionf.hpp"

namespace quevar::tanf {
QUEVAR_INLINE_BEGIN

using namespace circular;

struct Constants {
    slot<f32> magnitude{0x7FFFFFFF};
    slot<f32> large{0x46010000}; // 8256: beyond it the large path
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
    slot<f32> upper_half{0xFFFFF000};  // of the significand: products of two such halves are exact
    slot<i32> index{0x7F};
};
QUEVAR_CONSTANTS(Constants, constants){};

// tan(pi j/128 + r) = pole/(b - r) + c0 + c1 r + c2 r^2 + c3 r^3 + c4 r^4, where the pole is 1 in the rows
// next to pi/2 and else 0.
using ExpansionRows = table<f32, 12, 128>;
QUEVAR_CONSTANTS(ExpansionRows, expansion_rows) = {{
#include "tables/tanf_rows.inc"
}};

template <class V> struct Expansion {
    V r, b, pole, c0, c1, rest, b_low, c0_low; // rest: what follows c0 + c1 r, over r
};
template <class V> Expansion<V> expand(V a) {
    const Reduced<V> reduced = reduce(a);
    const V r = reduced.r + reduced.low;
    const auto [b, pole, c0, c1, c1_low, c2, c3, c4, b_low, c0_low, unused1, unused2] =
        fetch(expansion_rows, reduced.turn & constants.index);
    return {r, b, pole, c0, c1, fma(fma(r, c4, c3), r * r, fma(r, c2, c1_low)), b_low, c0_low};
}

struct Close {
    template <class V> static V subtract_last_piece(V r, V n) { return fnma(n, constants.half_pi3, r); }
    template <class V> static V quotient(V a, V b) { return a / b; }

    template <class V> [[gnu::noinline]] static V large(V a) {
        const auto &k = constants;
        const auto [r, b, pole, c0, c1, rest, b_low, c0_low] = expand(a);
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

struct Loose {
    template <class V> static V subtract_last_piece(V r, V) { return r; }
    template <class V> static V quotient(V a, V b) {
        const V e = reciprocal_estimate(b);
        return a * (e * fnma(b, e, constants.two));
    }

    template <class V> [[gnu::noinline]] static V large(V a) {
        const auto [r, b, pole, c0, c1, rest, b_low, c0_low] = expand(a);
        const V d = b - r, estimate = reciprocal_estimate(d);
        const V w = pole * estimate, e = fnma(estimate, d, constants.one);
        return fma(e, w, w) + fma(r, rest, fma(r, c1, c0));
    }
};

template <class Tier> struct Tangent {
    // NaN too.
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

    template <class V> static auto settle(V x, V r) {
        const V a = x & constants.magnitude;
        return flagged(select(beyond_limit(a), Tier::large(a) ^ (x ^ a), r), ~(a < constants.infinity));
    }

    // The processor's NaN for an infinity; a NaN itself, quieted.
    static void rare(const f32 *x, f32 *r) { *r = *x - *x; }
};

QUEVAR_EXPORT(tan, f, , unary, f32, f32, void, Tangent<Close>)
QUEVAR_EXPORT(tan, f, _native, unary, f32, f32, void, Tangent<Loose>)
QUEVAR_EXPORT(tan, f, _half, unary, f32, f32, void, Tangent<Loose>)
QUEVAR_EXPORT(tan, f, _rm, unary, f32, f32, void, Tangent<Loose>)

QUEVAR_INLINE_END
} // namespace quevar::tanf
