// sincosf and sincosregf: sine and cosine of one argument.
#include "sinf_core.hpp"

namespace quevar::sincosf {
QUEVAR_INLINE_BEGIN

using namespace circular;

QUEVAR_CONSTANTS(LongPolynomial, long_polynomial){
    .p1 = 0xBE2AAAA7, // -0.166666612
    .p2 = 0x3C088768, // 0.00833306462
    .p3 = 0xB94FB6CF, // -0.000198091599
    .p4 = 0x362EC335, // 2.60416459e-06
};
QUEVAR_CONSTANTS(ShortPolynomial, short_polynomial){
    .p0 = 0x3F7FF87C, // 0.999885321
    .p1 = 0xBE29E72F, // -0.165920958
    .p2 = 0x3BF84524, // 0.00757660158
};

// Of |x|, beyond the limit.
template <class V> struct Both { V sine, cosine; };
template <class V> [[gnu::noinline]] Both<V> large_both(V a) {
    const Large<V> large(a);
    const auto sine_at = [&large](auto row) {
        const auto s = large.at(row);
        return s.high + (s.error + fma(s.slope, large.sine, s.rest));
    };
    return {sine_at(large.turn), sine_at(large.turn + large_constants.quarter)};
}

template <const auto &p> struct SineCosine {
    template <class V> static V sine(V r) {
        const V z = r * r;
        return fma(r, z * p.rest(z), p.first(r));
    }

    template <class V> static auto main(V x) {
        const auto &k = sine_constants;
        const V a = magnitude(x);
        const V shifted = fma(a, k.one_over_pi, k.shifter);
        const V n = shifted - k.shifter, odd = odd_sign(shifted);
        const V r2 = subtract_half_turns<2>(a, n);
        const V r = p.pieces == 2 ? r2 : fnma(n, k.pi3, r2);
        V t = r ^ odd;
        // The cosine is the sine of what remains a quarter turn further, on the other side of 0.
        const V direction = r2 & k.sign;
        // Width 16 has just enough registers if |x| is formed twice and both arguments before either sine.
        const V c = subtract_half_turns<p.pieces>(magnitude(unrecognised(x)), n + (direction | k.half));
        V tc = c ^ ((direction ^ k.sign) ^ odd);
        complete_both(t, tc);
        const V cosine = select(x == V::splat(0), k.one, sine(tc));
        return flagged(sine(t) ^ (x & k.sign), cosine, beyond_limit(x));
    }

    template <class V> static auto settle(V x, V sine, V cosine) {
        const V a = magnitude(x);
        const auto big = beyond_limit(x);
        const Both<V> large = large_both(a);
        return flagged(select(big, large.sine ^ (x ^ a), sine), select(big, large.cosine, cosine),
                       infinite_or_nan(x));
    }

    static void rare(const f32 *x, f32 *sine, f32 *cosine) { *sine = *cosine = invalid(*x); }
};

QUEVAR_EXPORT(sincos, f, , unary_pointer, f32, f32, f32, SineCosine<long_polynomial>)
QUEVAR_EXPORT(sincos, f, _native, unary_pointer, f32, f32, f32, SineCosine<short_polynomial>)
QUEVAR_EXPORT(sincos, f, _rm, unary_pointer, f32, f32, f32, SineCosine<short_polynomial>)
QUEVAR_EXPORT(sincosreg, f, , unary_pair, f32, f32, void, SineCosine<long_polynomial>)
QUEVAR_EXPORT(sincosreg, f, _native, unary_pair, f32, f32, void, SineCosine<short_polynomial>)

QUEVAR_INLINE_END
} // namespace quevar::sincosf
