// cos: the cosine, as the sine of pi/2 - |x|.
#include "sin_core.hpp"
#include "sin_rare.hpp"

namespace quevar::cos {
QUEVAR_INLINE_BEGIN

using namespace circular;

struct Constants {
    slot<f64> large{0x4160000000000000}; // 2^23: where pi/2 - |x| is beyond it the large path
};
QUEVAR_CONSTANTS(Constants, constants){};

// Relative error 2^-52.2 up to pi/2.
QUEVAR_CONSTANTS(LongPolynomial, long_polynomial){{
    0xBD69F0D60811AAC8, // -7.37280909726507e-13
    0x3DE60E6857A2F220, // 1.6048055576979365e-10
    0xBE5AE63546002231, // -2.505187912674299e-08
    0x3EC71DE38030FEA0, // 2.755731658449074e-06
    0xBF2A01A019A5B87B, // -0.00019841269824944275
    0x3F8111111110A4A8, // 0.00833333333328519
    0xBFC55555555554A7, // -0.16666666666666183
}};

template <class V> V complement(V x) { return sine_constants.half_pi - magnitude(x); }
template <class V> auto beyond_limit(V complement) { return ~(magnitude(complement) <= constants.large); }

struct Special {
    static constexpr int in_turn_after_mask = 2;

    static void rare(const f64 *x, f64 *r) {
        *r = exponent_field(*x) == 2047 ? invalid(*x) : ScalarSine(*x).at(1);
    }
};

// Worst arguments found: 0x1.957e27aea05f2p+1 (3.38 ulp), _native 0x1.c128458d9ceep-5 (6.14e7); by table
// 0x1.8270a1ef29db7p+32 (0.502), by scalar steps 0x1.d81382a04af33p+607 (0.511).
template <const auto &p> struct Cosine : Special {
    template <class V> static auto main(V x) {
        const auto &k = read_for(x, sine_constants);
        const V a = magnitude(x), c = complement(x);
        const V shifted = fma(c, k.one_over_pi, k.shifter);
        const V n = k.half - (shifted - k.shifter);
        V r = fma(n, k.pi2, fms(n, k.pi1, a));
        if constexpr (p.pieces == 3) r = fma(n, k.pi3, r);
        const V t = r ^ odd_sign(shifted), z = r * r;
        const V s = fma(t * z, polynomial(z, read_for(x, p).p), t);
        // Near 0 the difference is pi/2, where the polynomial is not 1.
        return flagged(select(c == k.half_pi, k.one, s), beyond_limit(c));
    }
};

struct TableBeyondLimit : Cosine<long_polynomial> {
    static constexpr bool settles_alone = true;

    template <class V> static auto prepare(V x) { return reduce<positive_argument>(magnitude(x)); }
    template <class V> static auto settle(V x, V r, const Reduced<V> &reduced) {
        return flagged(select(beyond_limit(complement(x)), large_sine<quarter_turn>(reduced), r),
                       infinite_or_nan(x));
    }
};

QUEVAR_EXPORT(cos, , , unary, f64, f64, void, TableBeyondLimit)
QUEVAR_EXPORT(cos, , _native, unary, f64, f64, void, Cosine<short_polynomial>)

QUEVAR_INLINE_END
} // namespace quevar::cos
