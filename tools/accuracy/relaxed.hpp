// What OpenCL C asks of float functions under relaxed math (unsafe math optimizations, full profile).
#pragma once
#include <cmath>
#include <limits>
#include <string_view>

namespace quevar::tool {

struct Relaxed {
    std::string_view base;
    const char *text;
    double least; // no argument has a smaller bound, in ulps
    // The bound in ulps for the arguments v, where the exact result is of the order 2^exponent.
    double (*ulps)(const double *v, long exponent);
};

inline constexpr double no_bound = std::numeric_limits<double>::infinity();

// An absolute error in ulps of a float of the order 2^exponent.
inline double absolute(double error, long exponent) {
    return std::ldexp(error, 23 - static_cast<int>(exponent));
}

inline bool within(double x, double low, double high) { return std::fabs(x) >= low && std::fabs(x) <= high; }

inline double relaxed_quotient(const double *v, long) {
    return within(v[0], 0x1p-62, 0x1p62) && within(v[1], 0x1p-62, 0x1p62) ? 2.5 : no_bound;
}
inline double relaxed_inverse(const double *v, long) {
    return within(v[0], 0x1p-126, 0x1p126) ? 2.5 : no_bound;
}
inline double relaxed_exponential(const double *v, long) { return 3 + std::floor(std::fabs(2 * v[0])); }
inline double relaxed_logarithm(const double *v, long exponent) {
    return v[0] >= 0.5 && v[0] <= 2 ? absolute(0x1p-21, exponent) : 3;
}
inline double relaxed_sine(const double *v, long exponent) {
    return std::fabs(v[0]) <= M_PI ? absolute(0x1p-11, exponent) : no_bound;
}
inline double relaxed_derived(const double *, long) { return 8192; }

inline constexpr char relaxed_sine_text[] = "2^-11 absolute in [-pi, pi]",
                      relaxed_logarithm_text[] = "2^-21 absolute in [0.5, 2], else 3",
                      relaxed_exponential_text[] = "3 + floor(2 abs x)";

// Those without a row keep their strict bound.
inline constexpr Relaxed relaxed_rows[] = {
    {"cos", relaxed_sine_text, 4096, relaxed_sine},
    {"div", "2.5 for x, y in 2^-62 to 2^62", 2.5, relaxed_quotient},
    {"exp", relaxed_exponential_text, 3, relaxed_exponential},
    {"exp10", "8192", 8192, relaxed_derived},
    {"exp2", relaxed_exponential_text, 3, relaxed_exponential},
    {"inv", "2.5 for x in 2^-126 to 2^126", 2.5, relaxed_inverse},
    {"log", relaxed_logarithm_text, 3, relaxed_logarithm},
    {"log2", relaxed_logarithm_text, 3, relaxed_logarithm},
    {"pow", "8192", 8192, relaxed_derived},
    {"sin", relaxed_sine_text, 4096, relaxed_sine},
    {"sincos", relaxed_sine_text, 4096, relaxed_sine},
    {"tan", "8192", 8192, relaxed_derived},
};

// The row of a family, or null.
inline const Relaxed *relaxed(std::string_view base, std::string_view tier) {
    for (const Relaxed &row : relaxed_rows)
        if (tier == "_rm" && row.base == base) return &row;
    return nullptr;
}

} // namespace quevar::tool
