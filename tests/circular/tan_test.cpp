// tan of doubles at both tiers.
#include "double_arguments.hpp"
#include <gtest/gtest.h>

namespace {

using namespace quevar::test;

constexpr double limit = 128000; // beyond it the large path
constexpr double large_bound = 3.32;

std::uint64_t tan_of(const char *name, double x) { return result(name, {pattern(x)}); }
const std::vector<double> &samples() {
    static const auto x = double_arguments({1e-8, M_PI / 4, M_PI / 2, limit, 1e9});
    return x;
}

TEST(Tan, SpecialValues) {
    const std::uint64_t table[][2] = {
        {0x0000000000000000, 0x0000000000000000}, {0x0000000000000001, 0x0000000000000001}, // zero, denormal
        {0x7FF0000000000000, 0x7FF8000000000000},                                           // infinity
        {0x7FF8000000012345, 0x7FF8000000012345}, {0x7FF0000000012345, 0x7FF8000000012345}, // NaNs
    };
    constexpr std::uint64_t sign_bit = 0x8000000000000000;
    for (const char *name : {"tan", "tan_native"})
        for (const int width : widths)
            for (const auto &[x, expected] : table) {
                const bool infinite = x == 0x7FF0000000000000;
                EXPECT_EQ(lane(family(name), width, {x}).first, infinite ? expected | sign_bit : expected)
                    << name << width;
                EXPECT_EQ(lane(family(name), width, {x | sign_bit}).first, expected | sign_bit)
                    << name << width;
            }
}

TEST(Tan, KeepsItsBound) {
    for (const char *name : {"tan", "tan_native"})
        for (const double x : samples()) {
            const double bound = x <= limit ? family(name).bound : large_bound;
            ASSERT_LE(error(tan_of(name, x), std::tan(static_cast<long double>(x))), bound)
                << name << " of " << x;
        }
}

// Odd to the last bit on the short path. On the large one the mirrored row's fields differ in their last places.
TEST(Tan, IsOdd) {
    for (const double x : samples()) {
        if (x <= limit) {
            for (const char *name : {"tan", "tan_native"})
                ASSERT_EQ(tan_of(name, -x), tan_of(name, x) ^ 0x8000000000000000) << x;
        } else {
            ASSERT_LE(error(tan_of("tan", -x), std::tan(static_cast<long double>(-x))), large_bound) << x;
        }
    }
    EXPECT_NE(result("tan", {0xF3C9A577CAE2FD70}), result("tan", {0x73C9A577CAE2FD70}) ^ 0x8000000000000000);
}

TEST(Tan, TiersShareTheLargePath) {
    for (const double x : samples())
        if (x > limit) ASSERT_EQ(tan_of("tan", x), tan_of("tan_native", x)) << x;
    EXPECT_NE(tan_of("tan", limit), tan_of("tan_native", limit));
    EXPECT_EQ(tan_of("tan", limit), 0xBFFBF67C51E2982E);
    EXPECT_EQ(tan_of("tan", 0x1.fffffffffffffp1023), 0xBF74530CFE729483);
}

// Next to a pole the reciprocal carries the whole result.
TEST(Tan, Poles) {
    EXPECT_EQ(tan_of("tan", M_PI / 2), 0x434D02967C31CDB5); // 1.633123935319537e16
    // 6381956970095103 2^797, of all doubles the nearest to a multiple, an odd one: |tan| is 2^60.9.
    EXPECT_GT(std::fabs(std::bit_cast<double>(tan_of("tan", 6381956970095103 * 0x1p797))), 0x1p60);
}

TEST(Tan, NeighboursDoNotMatter) {
    const double x[8] = {0.5, 1e20, NAN, -limit, -1e300, 128001, -1e9, 3e15};
    for (const char *name : {"tan", "tan_native"})
        for (const int width : {2, 4, 8})
            for (int from = 0; from < 8; from += width) {
                double r[8];
                const void *argument = x + from;
                invoke(family(name), width, &argument, r, nullptr);
                for (int i = 0; i < width; ++i)
                    EXPECT_EQ(pattern(r[i]), lane(family(name), 1, {pattern(x[from + i])}).first)
                        << x[from + i];
            }
}

} // namespace
