// pow: x to the power y. Zero and negative x are rare.
#include "pow_main.hpp"

namespace quevar::pow {
QUEVAR_INLINE_BEGIN

using namespace power;

// What y is as a power of -1; all doubles from 2^53 on are even.
enum class Parity { none, odd, even };
inline Parity parity(f64 y) {
    const u64 a = as_uint(y) & ~format<f64>::sign;
    if (a < as_uint(1.0) || a >= format<f64>::exponent) return Parity::none;
    const int fraction_bits = format<f64>::digits - (exponent_field(y) - format<f64>::bias);
    if (fraction_bits < 0) return Parity::even;
    if (a & ((1ull << fraction_bits) - 1)) return Parity::none;
    return a >> fraction_bits & 1 ? Parity::odd : Parity::even;
}

inline f64 power_of_any(f64 x, f64 y) {
    const Parity p = parity(y);
    const f64 sign = is_negative(x) && p == Parity::odd ? -1 : 1;
    if (y == 0 || x == 1) return 1;
    if (is_nan(x) || is_nan(y)) return add_in_order(x, y);
    if (x == 0) return is_negative(y) ? sign / at_run_time(0.0) : sign * 0;
    if (x == -1 && (p != Parity::none || is_infinite(y))) return p == Parity::odd ? -1 : 1;
    if (is_finite(x) && is_finite(y)) {
        if (x < 0 && p == Parity::none) return default_nan();
        return rare_power<Denormals::summed_first>(__builtin_fabs(x), y, Split(y), sign);
    }
    if (__builtin_fabs(x) >= 1) return is_negative(y) ? sign * 0 : y * (x * x) * sign;
    return is_negative(y) ? y * y : 0;
}

struct Special {
    [[gnu::noinline]] static void rare(const f64 *x, const f64 *y, f64 *r) { *r = power_of_any(*x, *y); }
};

QUEVAR_EXPORT(pow, , , binary, f64, f64, void, TwoParts<Special>)
QUEVAR_EXPORT(pow, , _native, binary, f64, f64, void, Plain<Special>)

QUEVAR_INLINE_END
} // namespace quevar::pow
