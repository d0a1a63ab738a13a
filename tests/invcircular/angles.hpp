// What the tests of the arctangents share.
#pragma once
#include "harness/lane.hpp"
#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>
#include <limits>
#include <random>
#include <string>
#include <vector>

namespace quevar::test {

// An element type's families, in patterns and as numbers.
template <class T> struct Angles : testing::Test {
    static constexpr bool single = sizeof(T) == 4;
    using Bits = std::conditional_t<single, std::uint32_t, std::uint64_t>;
    using Limits = std::numeric_limits<T>;
    static constexpr T inf = Limits::infinity(), max = Limits::max(), least = Limits::min(),
                       tiny = Limits::denorm_min();
    static constexpr Bits sign = Bits(1) << (sizeof(T) * 8 - 1), quiet = Bits(1) << (Limits::digits - 2);
    static constexpr long double pi = 3.14159265358979323846264338327950288L;

    static T number(std::uint64_t bits) { return std::bit_cast<T>(static_cast<Bits>(bits)); }
    static Bits nan(Bits payload) { return pattern(inf) | payload; }

    // Default and _native.
    static std::vector<Family> tiers(const std::string &base) {
        const std::string name = base + (single ? "f" : "");
        return {family(name), family(name + "_native")};
    }
    template <class... X> static T call(const Family &f, int width, X... x) {
        return number(lane(f, width, {pattern(T(x))...}).first);
    }

    // Sizes that the vector code leaves to the scalar paths, but for zeros, infinities and NaNs.
    static bool extreme(T x) {
        const T a = std::fabs(x);
        return a < std::ldexp(T(1), single ? -125 : -1020) || a >= std::ldexp(T(1), single ? 123 : 993);
    }

    // Of results below 2^-1022 or 2^-126 too.
    static double ulps(T got, long double exact) {
        const int binade =
            exact == 0 ? Limits::min_exponent - 1 : std::max(std::ilogb(exact), Limits::min_exponent - 1);
        return double(std::fabs(got - exact) / std::ldexp(1.0L, binade - Limits::digits + 1));
    }
};

// Numbers of all sizes around 1, and uniform ones.
template <class T> T ordinary(std::mt19937_64 &random) {
    const double u = std::uniform_real_distribution<double>(-1, 1)(random);
    return static_cast<T>(random() % 2 ? std::ldexp(u, int(random() % 60) - 30) : 10 * u);
}

} // namespace quevar::test
