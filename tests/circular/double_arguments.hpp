// Arguments and errors for the tests of the double circular functions.
#pragma once
#include "harness/lane.hpp"
#include <algorithm>
#include <cmath>
#include <vector>

namespace quevar::test {

// For each exponent the double that is nearest to a multiple of pi/2: what is left of it are the last digits of a
// reduction.
inline constexpr std::uint64_t near_multiples[][1] = {
#include "tables/near_multiples.inc"
};

// All exponents, near multiples with their neighbours, multiples of pi/512 (the rows of tables and the places between
// them), and what lies around the arguments where a path or a step changes.
inline std::vector<double> double_arguments(std::initializer_list<double> changes) {
    std::vector<double> x;
    for (std::uint64_t b = 1; b < 0x7FF0000000000000; b += 0x0003FF1234567891)
        x.push_back(std::bit_cast<double>(b));
    for (const auto [b] : near_multiples)
        for (std::uint64_t d = 0; d < 3; ++d) x.push_back(std::bit_cast<double>(b - 1 + d));
    for (int j = 0; j < 1030; ++j)
        for (const double from : {0., 1e4, 3e7, 1e10, 1e100})
            x.push_back(from + from / 1e9 * j + j * M_PI / 512);
    for (const double c : changes)
        for (int i = -20; i <= 20; ++i) x.push_back(std::bit_cast<double>(pattern(c) + i));
    std::erase_if(x, [](double v) { return !(v < HUGE_VAL); });
    return x;
}

// In units of the last place.
inline double error(std::uint64_t got, long double exact) {
    const int exponent = std::max(std::ilogb(exact), -1022);
    return static_cast<double>(std::fabs(std::bit_cast<double>(got) - exact) /
                               std::ldexp(1.0L, exponent - 52));
}

} // namespace quevar::test
