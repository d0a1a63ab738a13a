#include "meter.hpp"
#include <algorithm>
#include <cmath>
#include <limits>
#include <stdexcept>
#include <string_view>

namespace quevar::tool {
namespace {

constexpr int precision = 160;
constexpr double infinite = std::numeric_limits<double>::infinity();

// What the C library's functions are trusted to, in ulps of the measured type: for float, that is 2^13
// ulps of the double that near() gives, for double 32 of the long double. Nearer to a power of two than
// that, the exact value may lie on its other side, where ulps are smaller; hence `below`.
struct Trust {
    double ulps;
    long double below;
};
constexpr Trust trust_float{0x1p-16, 0x1p-38L}, trust_double{0x1p-6, 0x1p-57L};

// Families that promise nothing outside a range of |x|: their estimates are of float range.
struct Domain {
    std::string_view name;
    double low, high;
};
constexpr Domain restricted[] = {{"sqrt_native", 0x1p-126, 0x1.fffffep127},
                                 {"sqrtf_native", 0x1p-126, 0x1.fffffep127}};

Domain domain_of(const Family &family) {
    const auto row = std::ranges::find(restricted, family.name(), &Domain::name);
    return row == std::end(restricted) ? Domain{"", 0, infinite} : *row;
}

} // namespace

Meter::Meter(const Family &family, Type type, const Reference &reference)
    : family(family), type(type), reference(reference), count(family.arguments()),
      digits(type == Type::f32 ? 24 : 53), emin(type == Type::f32 ? -126 : -1022),
      emax(type == Type::f32 ? 127 : 1023), asked(relaxed(family.base, family.tier)) {
    const Domain domain = domain_of(family);
    low = domain.low;
    high = domain.high;
    // More than any result needs, and MPFR sees early that exp(1e9) overflows.
    mpfr_set_emin(-20000);
    mpfr_set_emax(20000);
    for (mpfr_ptr v : {value[0], value[1], value[2], difference}) mpfr_init2(v, 64);
    mpfr_init2(truncated, precision);
    mpfr_init2(exact, precision + 1);
}

Meter::~Meter() {
    mpfr_clears(value[0], value[1], value[2], truncated, exact, difference, mpfr_ptr(nullptr));
}

bool Meter::exceeds(const Family &family, const Worst &w) {
    return family.bound == 0 ? w.misrounded : w.error > family.bound;
}

// A family that must round correctly is worst where it does not.
bool Meter::worse(const Family &family, const Worst &a, const Worst &b) {
    bool over_a = exceeds(family, a), over_b = exceeds(family, b);
    return b.width == 0 ? a.width != 0 : over_a != over_b ? over_a : a.error > b.error;
}

// Measuring with MPFR takes microseconds. An argument whose error by the C library is below the worst one
// so far, by more than the C library's own error, cannot be the worst; all others are measured. So the
// final maximum is exact and none is missed, provided the trust in the C library is justified. That is
// tested with every argument measured, and for that some are that need not be.
void Meter::add(const Arguments &arguments, std::uint64_t got, int width) {
    const double size = std::fabs(value_of(family.argument(0), arguments[0]));
    if (size < low || size > high) return;
    double most = infinite;
    if (reference.near)
        most = type == Type::f32 ? estimate<double>(reference.near, arguments, value_of(type, got))
                                 : estimate<long double>(reference.near_long, arguments, value_of(type, got));
    const bool interesting = worst_.width == 0 || most > worst_.error || (family.bound == 0 && most >= 0.5) ||
                             (asked && most > asked->least);
    if (!interesting && ++skipped % 4096) return;
    Worst found = measure(arguments, got, width);
    if (found.error > most)
        throw std::runtime_error(family.name(width) + ": the C library is less exact than assumed at " +
                                 to_string(family.argument(0), arguments[0]));
    if (worse(family, found, worst_)) worst_ = found;
}

// An upper bound of the error.
template <class T> double Meter::estimate(T (*near)(const T *), const Arguments &arguments, T got) const {
    T v[3]{};
    for (int k = 0; k < count; ++k) v[k] = value_of(family.argument(k), arguments[k]);
    const T want = near(v), limit = std::ldexp(T(1), emax + 1);
    if (std::isnan(want) || std::isnan(got)) return std::isnan(want) && std::isnan(got) ? 0 : infinite;
    if (std::isinf(got)) {
        if (std::signbit(got) == std::signbit(want) && std::fabs(want) >= limit) return 0;
        got = std::copysign(limit, got);
    }
    if (std::isinf(want)) return infinite;
    const Trust trust = type == Type::f32 ? trust_float : trust_double;
    const int exponent = std::clamp(std::ilogb(want - want * static_cast<T>(trust.below)), emin, emax);
    return static_cast<double>(std::ldexp(std::fabs(got - want), digits - 1 - exponent)) + trust.ulps;
}

Worst Meter::measure(const Arguments &arguments, std::uint64_t got_bits, int width) {
    for (int k = 0; k < count; ++k)
        mpfr_set_d(value[k], value_of(family.argument(k), arguments[k]), MPFR_RNDN);
    // Rounded to odd, in one bit more: never a tie or a number of the format unless it is one exactly.
    const int inexact = reference.exact(truncated, value);
    mpfr_set(exact, truncated, MPFR_RNDN);
    if (inexact) mpfr_signbit(exact) ? mpfr_nextbelow(exact) : mpfr_nextabove(exact);

    const double got = value_of(type, got_bits);
    const double wanted = type == Type::f32 ? mpfr_get_flt(exact, MPFR_RNDN) : mpfr_get_d(exact, MPFR_RNDN);
    Worst w{infinite,  true,     width,
            arguments, got_bits, type == Type::f32 ? bits_of(static_cast<float>(wanted)) : bits_of(wanted)};
    w.misrounded = !(got == wanted || (std::isnan(got) && std::isnan(wanted)));
    if (!w.misrounded && !std::isfinite(wanted)) w.error = 0;
    if (std::isnan(got) || std::isnan(wanted) || mpfr_inf_p(exact)) return w;
    if (std::isfinite(got)) mpfr_set_d(difference, got, MPFR_RNDN);
    else if (w.misrounded) // too early an overflow counts as the next number would, had the format one
        mpfr_set_si_2exp(difference, std::signbit(got) ? -1 : 1, emax + 1, MPFR_RNDN);
    else return w;
    const long top = mpfr_zero_p(exact) ? emin : mpfr_get_exp(exact) - 1;
    mpfr_sub(difference, difference, exact, MPFR_RNDN);
    mpfr_mul_2si(difference, difference, digits - 1 - std::clamp<long>(top, emin, emax), MPFR_RNDN);
    w.error = std::fabs(mpfr_get_d(difference, MPFR_RNDN));
    if (asked) {
        double v[3]{};
        for (int k = 0; k < count; ++k) v[k] = value_of(family.argument(k), arguments[k]);
        // Outside normal numbers nothing is asked: relaxed math may take them for zero or infinite.
        if (top >= emin && top <= emax && w.error > asked->ulps(v, top)) keeps_to_relaxed_ = false;
    }
    return w;
}

} // namespace quevar::tool
