// acoshf: the inverse hyperbolic cosine, ln(x + sqrt(x^2 - 1)) = ln(1 + v).
#include "asinhf_core.hpp"

namespace quevar::acoshf {

using namespace asinhf;

QUEVAR_INLINE_BEGIN

struct Special {
    // A NaN is quieted; 1 has the logarithm +0; infinity remains; less than 1 gives the processor's NaN.
    static void rare(const f32 *x, f32 *r) {
        const f32 infinity = at_run_time(__builtin_inff());
        if (is_nan(*x)) *r = *x * *x;
        else if (*x == 1) *r = 0;
        else *r = *x < 1 ? infinity * 0 : infinity;
    }
};

// Worst: 0x3F80E7BF, 1.00707233, gives 0x3DF36D90, wanted 0x3DF36D93: 2.8061 ulps.
// Worst of the native tier: 0x3F837FC2, 1.02733636: 2299.7 ulps.
template <class Tier> struct Inverse : Special {
    template <class V> static auto main(V x) {
        const auto &k = root_constants;
        const V one = log_constants.one;
        const V w = fms(x, x, one), high = w & k.upper_half;
        const auto [g, m, e] = root(Sum<V>{high, w - high});
        const V sum = g + m;
        const V v = (x - one) + fma(Tier::series(e), sum, sum);
        return flagged(logarithm_of<Tier::polynomial>(one_plus(v), x), ~(x <= k.largest) | ~(x > one));
    }
};

struct Close {
    static constexpr auto &polynomial = polynomial_of_degree_9;
    template <class V> static V series(V e) { return asinhf::series(e); }
};
struct Loose {
    static constexpr auto &polynomial = polynomial_of_degree_5;
    template <class V> static V series(V e) { return e * root_constants.half; }
};

QUEVAR_INLINE_END

QUEVAR_EXPORT(acosh, f, , unary, f32, f32, void, Inverse<Close>)
QUEVAR_EXPORT(acosh, f, _native, unary, f32, f32, void, Inverse<Loose>)

} // namespace quevar::acoshf
