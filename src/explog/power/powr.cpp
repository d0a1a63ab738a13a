// powr: x to the power y for x >= 0 alone, as exp(y log x): where that has no value, neither has powr.
#include "pow_main.hpp"

namespace quevar::powr {
QUEVAR_INLINE_BEGIN

using namespace power;

inline f64 power_of_positive(f64 x, f64 y) {
    if (is_nan(x) || x < 0) return default_nan();
    if (y == 0 && (x == 0 || is_infinite(x))) return default_nan();
    if (x == 1) return is_finite(y) ? 1 : default_nan();
    if (x == 0 && !is_nan(y)) return is_negative(y) ? 1 / at_run_time(0.0) : 0;
    if (x == 0 && is_negative(x)) return default_nan();
    if (y == 0) return 1;
    if (is_nan(y)) return add_in_order(x, y);
    if (is_finite(x) && is_finite(y)) return rare_power<Denormals::scaled_first>(x, y, Split(y), 1);
    if (x >= 1) return is_negative(y) ? 0 : y * (x * x);
    return is_negative(y) ? y * y : 0;
}

struct Special {
    [[gnu::noinline]] static void rare(const f64 *x, const f64 *y, f64 *r) { *r = power_of_positive(*x, *y); }
};

QUEVAR_EXPORT(powr, , , binary, f64, f64, void, TwoParts<Special>)
QUEVAR_EXPORT(powr, , _native, binary, f64, f64, void, Plain<Special>)

QUEVAR_INLINE_END
} // namespace quevar::powr
