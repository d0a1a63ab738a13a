// sin: the sine.
#include "sin_core.hpp"
#include "sin_rare.hpp"

namespace quevar::sin {
QUEVAR_INLINE_BEGIN

using namespace circular;

struct Constants {
    slot<f64> large{0x4170000000000000}; // 2^24: beyond it the large path
};
QUEVAR_CONSTANTS(Constants, constants){};

// Relative error 2^-52.3 up to pi/2.
QUEVAR_CONSTANTS(LongPolynomial, long_polynomial){{
    0xBD69F1517E9F65F0, // -7.373344533110665e-13
    0x3DE60E6BEE01D83E, // 1.6048095404959637e-10
    0xBE5AE6355AAA4A53, // -2.505188027386288e-08
    0x3EC71DE3806ADD1A, // 2.7557316600552628e-06
    0xBF2A01A019A659DD, // -0.00019841269825056256
    0x3F8111111110A573, // 0.008333333333285542
    0xBFC55555555554A8, // -0.16666666666666186
}};

template <class V> auto beyond_limit(V x) { return ~(magnitude(x) <= constants.large); }

struct Special {
    static constexpr int in_turn_after_mask = 2;

    static void rare(const f64 *x, f64 *r) {
        *r = exponent_field(*x) == 2047 ? invalid(*x) : ScalarSine(*x).at(0);
    }
};

// Worst arguments found: 0x1.99f3d402a28ep+0 (3.38 ulp), _native 0x1.d0ca4e47dc4d8p+16 (6.14e7); by table
// 0x1.8dd67b7ebdd16p+127 (0.503), by scalar steps 0x1.30f3db7b01b52p+28 (0.512).
template <const auto &p> struct Sine : Special {
    template <class V> static auto main(V x) {
        const auto &k = read_for(x, sine_constants);
        const V a = magnitude(x);
        const V shifted = fma(a, k.one_over_pi, k.shifter);
        const V r = k.template subtract_half_turns<p.pieces>(a, shifted - k.shifter);
        const V t = r ^ odd_sign(shifted), z = r * r;
        return flagged(fma(t, z * polynomial(z, read_for(x, p).p), t) ^ (x ^ a), beyond_limit(x));
    }
};

struct TableBeyondLimit : Sine<long_polynomial> {
    static constexpr bool settles_alone = true;

    template <class V> static auto prepare(V x) { return reduce<positive_argument>(magnitude(x)); }
    template <class V> static auto settle(V x, V r, const Reduced<V> &reduced) {
        const V sign = x & sine_constants.sign;
        return flagged(select(beyond_limit(x), large_sine<0>(reduced) ^ sign, r), infinite_or_nan(x));
    }
};

QUEVAR_EXPORT(sin, , , unary, f64, f64, void, TableBeyondLimit)
QUEVAR_EXPORT(sin, , _native, unary, f64, f64, void, Sine<short_polynomial>)

QUEVAR_INLINE_END
} // namespace quevar::sin
