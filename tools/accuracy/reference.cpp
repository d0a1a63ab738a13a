#include "reference.hpp"
#include <cmath>
#include <limits>
#include <numbers>
#include <string_view>
#include <type_traits>

namespace quevar::tool {
namespace {

template <auto F> int unary(mpfr_ptr r, const mpfr_t *v) { return F(r, v[0], MPFR_RNDZ); }
template <auto F> int binary(mpfr_ptr r, const mpfr_t *v) { return F(r, v[0], v[1], MPFR_RNDZ); }
template <auto F> int with_int(mpfr_ptr r, const mpfr_t *v) {
    return F(r, v[0], mpfr_get_si(v[1], MPFR_RNDZ), MPFR_RNDZ);
}
// MPFR measures these angles in parts of a turn; in halves they are multiples of pi.
template <auto F> int half_turns(mpfr_ptr r, const mpfr_t *v) { return F(r, v[0], 2, MPFR_RNDZ); }
int atan2_half_turns(mpfr_ptr r, const mpfr_t *v) { return mpfr_atan2u(r, v[0], v[1], 2, MPFR_RNDZ); }
int fma(mpfr_ptr r, const mpfr_t *v) { return mpfr_fma(r, v[0], v[1], v[2], MPFR_RNDZ); }
int inv(mpfr_ptr r, const mpfr_t *v) { return mpfr_ui_div(r, 1, v[0], MPFR_RNDZ); }
int rcbrt(mpfr_ptr r, const mpfr_t *v) { return mpfr_rootn_si(r, v[0], -3, MPFR_RNDZ); }
// MPFR has powr(1, NaN) = 1.
int powr(mpfr_ptr r, const mpfr_t *v) {
    return mpfr_nan_p(v[1]) ? mpfr_set(r, v[1], MPFR_RNDZ) : mpfr_powr(r, v[0], v[1], MPFR_RNDZ);
}
// MPFR gives +inf for both zeros.
int rsqrt(mpfr_ptr r, const mpfr_t *v) {
    return mpfr_zero_p(v[0]) ? inv(r, v) : mpfr_rec_sqrt(r, v[0], MPFR_RNDZ);
}
int lgamma(mpfr_ptr r, const mpfr_t *v) {
    int sign;
    return mpfr_lgamma(r, &sign, v[0], MPFR_RNDZ);
}

// pi x is `quarters` quarter turns and an angle; everything but the angle's product is exact.
template <class T> struct Turned {
    int quarters;
    T angle;
    explicit Turned(T x) {
        T r = std::remainder(x, T(2)), q = std::rint(2 * r);
        quarters = std::isnan(q) ? 0 : static_cast<int>(q);
        angle = (r - q / 2) * std::numbers::pi_v<T>;
    }
    T sin() const {
        T s = quarters & 1 ? std::cos(angle) : std::sin(angle);
        return quarters & 2 ? -s : s;
    }
    T cos() const { return Turned{quarters + 1, angle}.sin(); }
    // No value at the poles: which infinity it is, MPFR says.
    T tan() const { return cos() == 0 ? std::numeric_limits<T>::quiet_NaN() : sin() / cos(); }

private:
    Turned(int quarters, T angle) : quarters(quarters), angle(angle) {}
};
template <class T> Turned(T) -> Turned<T>;

double exp10(double x) { return ::exp10(x); }
long double exp10(long double x) { return ::exp10l(x); }

#define NEAR(expression)                                                                                     \
    [](const auto *v) {                                                                                      \
        using T = std::remove_cvref_t<decltype(*v)>;                                                         \
        [[maybe_unused]] const T x = v[0], y = v[1], z = v[2], pi = std::numbers::pi_v<T>;                   \
        return static_cast<T>(expression);                                                                   \
    }

constexpr Reference references[] = {
    {"acos", unary<mpfr_acos>, NEAR(std::acos(x))},
    {"acosh", unary<mpfr_acosh>, NEAR(std::acosh(x))},
    {"acospi", half_turns<mpfr_acosu>, NEAR(std::acos(x) / pi)},
    {"asin", unary<mpfr_asin>, NEAR(std::asin(x))},
    {"asinh", unary<mpfr_asinh>, NEAR(std::asinh(x))},
    {"asinpi", half_turns<mpfr_asinu>, NEAR(std::asin(x) / pi)},
    {"atan", unary<mpfr_atan>, NEAR(std::atan(x))},
    {"atan2", binary<mpfr_atan2>, NEAR(std::atan2(x, y))},
    {"atan2pi", atan2_half_turns, NEAR(std::atan2(x, y) / pi)},
    {"atanh", unary<mpfr_atanh>, NEAR(std::atanh(x))},
    {"atanpi", half_turns<mpfr_atanu>, NEAR(std::atan(x) / pi)},
    {"cbrt", unary<mpfr_cbrt>, NEAR(std::cbrt(x))},
    {"ceil", unary<mpfr_rint_ceil>},
    {"cos", unary<mpfr_cos>, NEAR(std::cos(x))},
    {"cosh", unary<mpfr_cosh>, NEAR(std::cosh(x))},
    {"cospi", half_turns<mpfr_cosu>, NEAR(Turned(x).cos())},
    {"div", binary<mpfr_div>, NEAR(x / y)},
    {"erf", unary<mpfr_erf>, NEAR(std::erf(x))},
    {"erfc", unary<mpfr_erfc>, NEAR(std::erfc(x))},
    {"exp", unary<mpfr_exp>, NEAR(std::exp(x))},
    {"exp10", unary<mpfr_exp10>, NEAR(exp10(x))},
    {"exp2", unary<mpfr_exp2>, NEAR(std::exp2(x))},
    {"expm1", unary<mpfr_expm1>, NEAR(std::expm1(x))},
    {"fabs", unary<mpfr_abs>},
    {"fdim", binary<mpfr_dim>, NEAR(std::fdim(x, y))},
    {"floor", unary<mpfr_rint_floor>},
    {"fma", fma, NEAR(std::fma(x, y, z))},
    {"fmax", binary<mpfr_max>},
    {"fmin", binary<mpfr_min>},
    {"fmod", binary<mpfr_fmod>},
    {"hypot", binary<mpfr_hypot>, NEAR(std::hypot(x, y))},
    {"inv", inv, NEAR(1 / x)},
    {"ldexp", with_int<mpfr_mul_2si>},
    {"lgamma", lgamma, NEAR(std::lgamma(x))},
    {"log", unary<mpfr_log>, NEAR(std::log(x))},
    {"log10", unary<mpfr_log10>, NEAR(std::log10(x))},
    {"log1p", unary<mpfr_log1p>, NEAR(std::log1p(x))},
    {"log2", unary<mpfr_log2>, NEAR(std::log2(x))},
    {"nearbyint", unary<mpfr_rint_roundeven>},
    {"pow", binary<mpfr_pow>, NEAR(std::pow(x, y))},
    {"pown", with_int<mpfr_pow_si>, NEAR(std::pow(x, y))},
    {"powr", powr},
    {"rcbrt", rcbrt, NEAR(1 / std::cbrt(x))},
    {"remainder", binary<mpfr_remainder>},
    {"rint", unary<mpfr_rint_roundeven>},
    {"rootn", with_int<mpfr_rootn_si>},
    {"round", unary<mpfr_rint_round>},
    {"rsqrt", rsqrt, NEAR(1 / std::sqrt(x))},
    {"sin", unary<mpfr_sin>, NEAR(std::sin(x))},
    {"sinh", unary<mpfr_sinh>, NEAR(std::sinh(x))},
    {"sinpi", half_turns<mpfr_sinu>, NEAR(Turned(x).sin())},
    {"sqrt", unary<mpfr_sqrt>, NEAR(std::sqrt(x))},
    {"tan", unary<mpfr_tan>, NEAR(std::tan(x))},
    {"tanh", unary<mpfr_tanh>, NEAR(std::tanh(x))},
    {"tanpi", half_turns<mpfr_tanu>, NEAR(Turned(x).tan())},
    {"tgamma", unary<mpfr_gamma>, NEAR(std::tgamma(x))},
    {"trunc", unary<mpfr_rint_trunc>},
};

// Operations whose results are those of others. Integer second results are not measured.
struct {
    std::string_view base, first, second;
} constexpr composed[] = {{"lgammar", "lgamma", ""},
                          {"remquo", "remainder", ""},
                          {"sincos", "sin", "cos"},
                          {"sincosreg", "sin", "cos"}};

} // namespace

const Reference *reference(const char *base, bool second) {
    std::string_view wanted = second ? "" : base;
    for (const auto &row : composed)
        if (row.base == base) wanted = second ? row.second : row.first;
    for (const Reference &row : references)
        if (row.base == wanted) return &row;
    return nullptr;
}

} // namespace quevar::tool
