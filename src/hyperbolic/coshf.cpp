// coshf: the hyperbolic cosine.
#include "sinhf_core.hpp"

namespace quevar::coshf {

using namespace sinhf;

QUEVAR_INLINE_BEGIN

QUEVAR_CONSTANTS(slot<i32>, limit){0x42AEAC4D}; // 87.3365250: below 126 ln 2

struct Special {
    // By pattern: NaN and infinities too.
    template <class V> static auto beyond_limit(V a) { return as_int(a) > limit; }

    [[gnu::noinline]] static void rare(const f32 *x, f32 *r) {
        const f64 a = __builtin_fabs((f64)*x);
        if (exponent_field(*x) == format<f32>::field_max) *r = *x * *x;
        else if (!(a < overflow_bound)) *r = (f32)(largest() * largest());
        else *r = (f32)half_exp(a);
    }
};

// cosh(m + r) = cosh m + (cosh m (cosh r - 1) + sinh m sinh r), where m = n ln 2.
// Worst: 0x41003122, 8.01199532, gives 0x44BC8EE4, wanted 0x44BC8EE6: 2.0794 ulps.
struct Series : Special {
    template <class V> static auto main(V x) {
        const V a = x & split_constants.magnitude;
        const auto m = split(a);
        const auto r = series(m.r);
        const V y = fma(r.sinh, m.sinh, m.cosh * r.cosh_less_1);
        return flagged(m.cosh + y, beyond_limit(a));
    }
};

// Worst: 0x40FF1487, 7.97125578, gives 0x44B50666, wanted 0x44B507E2: 380.4 ulps.
struct ShorterSeries : Special {
    template <class V> static auto main(V x) {
        const V a = x & split_constants.magnitude;
        const auto m = split(a);
        const auto [c, d] = shorter_series(m.r);
        const V y = fma(m.r, m.cosh * d, m.sinh * c);
        return flagged(fma(y, m.r, m.cosh), beyond_limit(a));
    }
};

QUEVAR_INLINE_END

QUEVAR_EXPORT(cosh, f, , unary, f32, f32, void, Series)
QUEVAR_EXPORT(cosh, f, _native, unary, f32, f32, void, ShorterSeries)

} // namespace quevar::coshf
