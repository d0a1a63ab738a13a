// sincosf and sincosregf: sine and cosine of one argument.
#include "sinf_core.hpp"

namespace quevar::sincosf {
QUEVAR_INLINE_BEGIN

using namespace circularf;

QUEVAR_CONSTANTS(Degree9, degree_9){
    .p1 = 0xBE2AAAA7, // -0.166666612
    .p2 = 0x3C088768, // 0.00833306462
    .p3 = 0xB94FB6CF, // -0.000198091599
    .p4 = 0x362EC335, // 2.60416459e-06
};
QUEVAR_CONSTANTS(Degree5, degree_5){
    .p0 = 0x3F7FF87C, // 0.999885321
    .p1 = 0xBE29E72F, // -0.165920958
    .p2 = 0x3BF84524, // 0.00757660158
};

// sin r ~ r + r^3 rest(r^2), degree_9, for |r| <= pi/2: relative error 2^-23.8.
// Worst, the sine of 0x43914B06, 290.586121, gives 0x3F7FFBE1, wanted 0x3F7FFBE4: 2.7719 ulp.
// sin r ~ p0 r + r^3 rest(r^2), degree_5, for |r| <= pi/2: relative error 2^-12.6.
// Worst, the sine of 0x4305AAFE, 133.667938, gives 0x3F7D13C9, wanted 0x3F7D1DA5: 2524 ulp.
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
        // The cosine is the sine of an angle that is a quarter turn away from r, on the other side of 0.
        const V direction = r2 & k.sign;
        // Width 16 has just enough registers if |x| is formed twice and both arguments before either sine.
        const V c = subtract_half_turns<p.pieces>(magnitude(unrecognised(x)), n + (direction | k.half));
        V tc = c ^ ((direction ^ k.sign) ^ odd);
        complete_both(t, tc);
        const V cosine = select(x == V::splat(0), k.one, sine(tc));
        return flagged(sine(t) ^ (x & k.sign), cosine, beyond_limit(x));
    }

    static constexpr bool settles_alone = true;

    template <class V> static auto prepare(V x) { return reduce<positive_argument>(magnitude(x)); }
    template <class V> static auto settle(V x, V sine, V cosine, const Reduced<V> &reduced) {
        const auto big = beyond_limit(x);
        const Large<V> large(reduced);
        const auto sum = [&large](auto s) {
            return s.high + (s.error + fma(s.slope, large.sin_minus_r, s.rest));
        };
        const V large_sine = sum(large.template at<0>()) ^ (x & sine_constants.sign);
        const V large_cosine = sum(large.template at<quarter_turn>());
        return flagged(select(big, large_sine, sine), select(big, large_cosine, cosine), infinite_or_nan(x));
    }

    static void rare(const f32 *x, f32 *sine, f32 *cosine) { *sine = *cosine = invalid(*x); }
};

QUEVAR_EXPORT(sincos, f, , unary_pointer, f32, f32, f32, SineCosine<degree_9>)
QUEVAR_EXPORT(sincos, f, _native, unary_pointer, f32, f32, f32, SineCosine<degree_5>)
QUEVAR_EXPORT(sincos, f, _rm, unary_pointer, f32, f32, f32, SineCosine<degree_5>)
QUEVAR_EXPORT(sincosreg, f, , unary_pair, f32, f32, void, SineCosine<degree_9>)
QUEVAR_EXPORT(sincosreg, f, _native, unary_pair, f32, f32, void, SineCosine<degree_5>)

QUEVAR_INLINE_END
} // namespace quevar::sincosf
