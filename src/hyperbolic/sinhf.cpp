// sinhf: the hyperbolic sine.
#include "sinhf_core.hpp"

namespace quevar::sinhf {

QUEVAR_INLINE_BEGIN

QUEVAR_CONSTANTS(slot<i32>, limit){0x42AEAC4E}; // 87.3365326: below 126 ln 2

struct Special {
    // By pattern: NaN and infinities too.
    template <class V> static auto beyond_limit(V a) { return as_int(a) > limit; }

    [[gnu::noinline]] static void rare(const f32 *x, f32 *r) {
        const f64 X = *x, a = __builtin_fabs(X);
        if (exponent_field(*x) == format<f32>::field_max) *r = *x + *x;
        else if (!(a < overflow_bound)) *r = (f32)(X * largest());
        else *r = (f32)__builtin_copysign(half_exp(a), X);
    }
};

// sinh(m + r) = sinh m + (sinh m (cosh r - 1) + cosh m sinh r), where m = n ln 2.
// Worst: 0x3EC3278E, 0.381161153, gives 0x3EC7EA16, wanted 0x3EC7EA18: 1.5460 ulps.
struct Series : Special {
    template <class V> static auto main(V x) {
        const V a = x & split_constants.magnitude, sign = x & split_constants.sign;
        const auto m = split(a);
        const auto r = series(m.r);
        const V y = fma(r.sinh, m.cosh, m.sinh * r.cosh_less_1);
        return flagged((m.sinh + y) | sign, beyond_limit(a));
    }
};

// Worst: 0x397FFFF5, 0.000244140465, gives 0x397FFBBE, wanted 0x397FFFF5: 1079.2 ulps.
struct ShorterSeries : Special {
    template <class V> static auto main(V x) {
        const V a = x & split_constants.magnitude, sign = x & split_constants.sign;
        const auto m = split(a);
        const auto [c, d] = shorter_series(m.r);
        const V y = fma(m.r, m.sinh * d, m.cosh * c);
        return flagged(fma(y, m.r, m.sinh) | sign, beyond_limit(a));
    }
};

QUEVAR_INLINE_END

QUEVAR_EXPORT(sinh, f, , unary, f32, f32, void, Series)
QUEVAR_EXPORT(sinh, f, _native, unary, f32, f32, void, ShorterSeries)

} // namespace quevar::sinhf
