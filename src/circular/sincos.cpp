// sincos and sincosreg: sine and cosine of one argument.
#include "sin_core.hpp"
#include "sin_rare.hpp"

namespace quevar::sincos {
QUEVAR_INLINE_BEGIN

using namespace circular;

struct Constants {
    slot<f64> large{0x4160000000000000}; // 2^23: beyond it the large path
};
QUEVAR_CONSTANTS(Constants, constants){};

// Relative error 2^-52.3 up to pi/2.
QUEVAR_CONSTANTS(LongPolynomial, long_polynomial){{
    0xBD69F0D60811AAC8, // -7.37280909726507e-13
    0x3DE60E6857A2F220, // 1.6048055576979365e-10
    0xBE5AE63546002231, // -2.505187912674299e-08
    0x3EC71DE38030FEA0, // 2.755731658449074e-06
    0xBF2A01A019A5B86D, // -0.00019841269824944237
    0x3F8111111110A4A6, // 0.008333333333285186
    0xBFC55555555554A7, // -0.16666666666666183
}};

template <class V> auto beyond_limit(V x) { return ~(magnitude(x) <= constants.large); }

struct Special {
    static constexpr int in_turn_after_mask = 2;

    static void rare(const f64 *x, f64 *sine, f64 *cosine) {
        if (exponent_field(*x) == 2047) {
            *sine = *cosine = invalid(*x);
        } else {
            const ScalarSine scalar(*x);
            *sine = scalar.at(0), *cosine = scalar.at(1);
        }
    }
};

// Worst arguments found: 0x1.e0623f32ef6b8p-4 (cosine, 3.32 ulp), _native 0x1.d0ca4e47dc4d8p+16 (sine, 6.14e7); by
// table 0x1.8dd67b7ebdd16p+127 (0.503).
template <const auto &p> struct SineCosine : Special {
    template <class V> static V sine(V r) {
        const V z = r * r;
        return fma(r, z * polynomial(z, read_for(r, p).p), r);
    }

    template <class V> static auto main(V x) {
        const auto &k = read_for(x, sine_constants);
        const V a = magnitude(x);
        const V shifted = fma(a, k.one_over_pi, k.shifter);
        const V n = shifted - k.shifter, odd = odd_sign(shifted);
        const V r2 = k.template subtract_half_turns<2>(a, n);
        const V r = p.pieces == 2 ? r2 : fnma(n, k.pi3, r2);
        // The cosine is the sine of what remains a quarter turn further, on the other side of 0.
        const V direction = r2 & k.sign;
        const V c = k.template subtract_half_turns<p.pieces>(a, n + (direction | k.half));
        const V cosine = sine(c) ^ (odd ^ (direction ^ k.sign));
        return flagged(sine(r) ^ (odd ^ (x & k.sign)), select(x == V::splat(0), k.one, cosine),
                       beyond_limit(x));
    }
};

struct TableBeyondLimit : SineCosine<long_polynomial> {
    static constexpr bool settles_alone = true;

    template <class V> static auto prepare(V x) { return reduce<positive_argument>(magnitude(x)); }
    template <class V> static auto settle(V x, V sine, V cosine, const Reduced<V> &reduced) {
        const auto big = beyond_limit(x);
        const Large<V> large(reduced);
        const auto sum = [&large](auto s) {
            const V rest = fma(s.slope, large.sin_minus_r, s.rest) + s.error2;
            return s.high + (s.error + fma(s.sin_high, large.cos_minus_1, rest));
        };
        const V large_sine = sum(large.template at<0>()) ^ (x & sine_constants.sign);
        const V large_cosine = sum(large.template at<quarter_turn>());
        return flagged(select(big, large_sine, sine), select(big, large_cosine, cosine), infinite_or_nan(x));
    }
};

QUEVAR_EXPORT(sincos, , , unary_pointer, f64, f64, f64, TableBeyondLimit)
QUEVAR_EXPORT(sincos, , _native, unary_pointer, f64, f64, f64, SineCosine<short_polynomial>)
QUEVAR_EXPORT(sincosreg, , , unary_pair, f64, f64, void, TableBeyondLimit)
QUEVAR_EXPORT(sincosreg, , _native, unary_pair, f64, f64, void, SineCosine<short_polynomial>)

QUEVAR_INLINE_END
} // namespace quevar::sincos
