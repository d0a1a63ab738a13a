// acosh: the inverse hyperbolic cosine, ln(x + sqrt(x^2 - 1)) = ln(1 + v).
#include "asinh_core.hpp"

namespace quevar::acosh {

using namespace asinh;

QUEVAR_INLINE_BEGIN

struct Special {
    // A NaN is quieted; 1 has the logarithm +0; infinity remains; less than 1 gives the processor's NaN.
    static void rare(const f64 *x, f64 *r) {
        const f64 infinity = at_run_time(__builtin_inf());
        if (is_nan(*x)) *r = *x * *x;
        else if (*x == 1) *r = 0;
        else *r = *x < 1 ? infinity * 0 : infinity;
    }
};

struct Constants : RootConstants {
    // ((1 - e)^(-1/2) - 1)/e, which makes the root right to 1.8e-19 for |e| up to 2^-10
    slot<f64> series[5] = {
        0x3FCF800025DE102F, // 0.24609376763339827
        0x3FD1800013D9D428, // 0.27343751848758524
        0x3FD3FFFFFFFFFFFA, // 0.31249999999999967
        0x3FD7FFFFFFFFFFFA, // 0.37499999999999967
        0x3FE0000000000000, // 0.5
    };
    // To 3e-10.
    slot<f64> shorter_series[2] = {
        0x3FD8000000000000, // 0.375
        0x3FE0000000000000, // 0.5
    };
};
QUEVAR_CONSTANTS(Constants, constants){};

// Worst found: 0x3FF002000271CF0D, 1.0004882903567165, gives 0x3F9FFFBE3AE6FBC4, wanted ...C8: 3.6316 ulps.
// Worst found of the native tier: 0x3FF0000000001F72, 1.0000000000017875: 2411964 ulps.
template <class Tier> struct Inverse : Special {
    static constexpr int in_turn_after_mask = 2;

    template <class V> static auto main(V x) {
        const auto &k = read_for(x, constants);
        const V one = k.one;
        const V w = fms(x, x, one), high = w & k.upper_29;
        const auto [g, m, e] = root(Sum<V>{high, w - high}, k);
        const V sum = g + m;
        const V v = (x - one) + fma(e * polynomial(e, k.*Tier::series), sum, sum);
        return flagged(logarithm_of_1_plus<Tier>(v, x, k), ~(x <= k.largest) | ~(x > one));
    }
};

// f is held in two parts.
struct Closest : Close {
    static constexpr auto series = &Constants::series;
    template <class V> static V logarithm(const Reduced<V> &x, V low, const LogConstants &k) {
        const V p = low * x.scaled, f = x.f + p, f_low = p - (f - x.f), f2 = f * f;
        return fma_unless_scalar(x.exponent, k.ln2, x.log + (f + fma(f2, rest(f, f2, k), f_low)));
    }
};
struct Loosest : Loose {
    static constexpr auto series = &Constants::shorter_series;
};

QUEVAR_INLINE_END

QUEVAR_EXPORT(acosh, , , unary, f64, f64, void, Inverse<Closest>)
QUEVAR_EXPORT(acosh, , _native, unary, f64, f64, void, Inverse<Loosest>)

} // namespace quevar::acosh
