// atanh: the inverse hyperbolic tangent, ln((1 + x)/(1 - x))/2 = ln(1 + 2x/(1 - x))/2.
#include "asinh_core.hpp"

namespace quevar::atanh {

using namespace asinh;

QUEVAR_INLINE_BEGIN

struct Constants : LogConstants {
    slot<f64> half{0x3FE0000000000000};
    slot<f64> least{0x0350000000000000};    // 2^-970: below it the result is x
    slot<f64> upper_41{0xFFFFFFFFFFFFF000}; // bits of the significand, the first included,
    slot<f64> upper_12{0xFFFFFE0000000000}; // whose products are exact
};
QUEVAR_CONSTANTS(Constants, constants){};

// Worst found: 0x3F2FFE0A3BC760B0, 0.0002440822116927025, gives 0x3F2FFE0A467015B8, wanted ...BC: 3.5690 ulps.
// Worst found of the native tier: 0x3F2FFD00AB8C141A, 0.00024405129604346336: 263402 ulps.
template <class Tier> struct Inverse {
    static constexpr int in_turn_after_mask = 2;

    template <class V> static auto main(V x) {
        const auto &k = read_for(x, constants);
        const V one = k.one, a = x & k.magnitude, sign = x ^ a;
        const V d = one - a, d_low = (one - d) - a;
        const V n = a + a, n_high = n & k.upper_41, n_low = n - n_high;
        // 1/(d + d_low) = r/(1 - e) = r (1 + s) with s = e (1 + (e + e^2) (1 + e^2)).
        const V r = convert<f64>(reciprocal_estimate(convert<f32>(d))) & k.upper_12;
        const V e = fnma(d_low, r, fnma(r, d, one));
        const V s = e * fma(fma(e, e, one), fma(e, e, e), one);
        const V high = r * n_high, low = r * n_low;
        const V v = high + fma_unless_scalar(s, high, fma(low, s, low));

        const Sum<V> sum = one_plus(v, k);
        const V log = Tier::logarithm(reduced(sum.high, k), sum.low, k);
        const V r_or_tiny = select(a < k.least, fma(x, x, x) | sign, (V(k.half) ^ sign) * log);
        return flagged(r_or_tiny, ~(a < one));
    }

    // A NaN is quieted; +-1 give infinities; else the processor's NaN.
    static void rare(const f64 *x, f64 *r) {
        const f64 infinity = at_run_time(__builtin_inf());
        if (is_nan(*x)) *r = *x * *x;
        else if (__builtin_fabs(*x) == 1) *r = *x * infinity;
        else *r = infinity * 0;
    }
};

QUEVAR_INLINE_END

QUEVAR_EXPORT(atanh, , , unary, f64, f64, void, Inverse<Close>)
QUEVAR_EXPORT(atanh, , _native, unary, f64, f64, void, Inverse<Loose>)

} // namespace quevar::atanh
