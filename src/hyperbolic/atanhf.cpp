// atanhf: the inverse hyperbolic tangent, ln((1 + x)/(1 - x))/2 = ln(1 + 2x/(1 - x))/2.
#include "asinhf_core.hpp"

namespace quevar::atanhf {

using namespace asinhf;

QUEVAR_INLINE_BEGIN

struct Constants {
    slot<f32> magnitude{0x7FFFFFFF};
    slot<f32> tiny{0x0C000000};       // 2^-103: below it the result is x
    slot<f32> upper_bits{0xFFFFF000}; // 12 of the significand's: products of two such numbers are exact
    slot<f32> half{0x3F000000};
};
QUEVAR_CONSTANTS(Constants, constants){};

// Worst: 0x3D7E1497, 0.0620313548, gives 0x3D7E6834, wanted 0x3D7E6836: 2.0437 ulps.
// Worst of the native tier: 0x3DE3A7D1, 0.111159928: 1468.3 ulps.
template <const auto &polynomial_of_log> struct Inverse {
    template <class V> static auto main(V x) {
        const auto &k = constants;
        const V one = log_constants.one, a = x & k.magnitude, sign = x ^ a;
        const V d = one - a, d_low = (one - d) - a;
        const V n = a + a, n_high = n & k.upper_bits, n_low = n - n_high;
        // 1/(d + d_low) = r (1 + e + e^2).
        const V r = reciprocal_estimate(d) & k.upper_bits;
        const V e = fnma(d_low, r, fnma(r, d, one)), series = fma(e, e, e);
        const V high = r * n_high, low = r * n_low;
        const V rest = fma_unless_scalar(series, high, fma(low, series, low));
        const V v = high + rest, v_low = rest + (high - v);
        const Sum<V> argument = one_plus(v);
        const V log = logarithm<polynomial_of_log>(Sum<V>{argument.high, v_low + argument.low});
        const V r_or_tiny = select(a < k.tiny, fma(x, x, x) | sign, (V(k.half) ^ sign) * log);
        return flagged(r_or_tiny, ~(a < one));
    }

    // A NaN is quieted; +-1 give infinities; else the processor's NaN.
    static void rare(const f32 *x, f32 *r) {
        const f32 infinity = at_run_time(__builtin_inff());
        if (is_nan(*x)) *r = *x * *x;
        else if (*x == 1) *r = infinity;
        else if (*x == -1) *r = 0 - infinity;
        else *r = infinity * 0;
    }
};

QUEVAR_INLINE_END

QUEVAR_EXPORT(atanh, f, , unary, f32, f32, void, Inverse<polynomial_of_degree_9>)
QUEVAR_EXPORT(atanh, f, _native, unary, f32, f32, void, Inverse<polynomial_of_degree_5>)

} // namespace quevar::atanhf
