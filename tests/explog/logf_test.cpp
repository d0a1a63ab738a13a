// logf, log2f, log10f at all tiers.
#include "harness/lane.hpp"
#include <cmath>
#include <gtest/gtest.h>
#include <vector>

namespace {

using namespace quevar::test;

std::vector<Family> with_base(const std::string &base) {
    std::vector<Family> found;
    for (const Family &f : families())
        if (f.base == base && f.a == Type::f32) found.push_back(f);
    return found;
}

TEST(Logf, SpecialValues) {
    const std::pair<std::uint32_t, std::uint32_t> table[] = {
        {0x3F800000, 0x00000000},                           // 1
        {0x00000000, 0xFF800000}, {0x80000000, 0xFF800000}, // zeros
        {0x7F800000, 0x7F800000}, {0xFF800000, 0xFFC00000}, // infinities
        {0xBF800000, 0xFFC00000}, {0x80000001, 0xFFC00000}, // negative numbers
        {0x80800000, 0xFFC00000}, {0xFF7FFFFF, 0xFFC00000}, //
        {0x7F800001, 0x7FC00001}, {0xFFA00123, 0xFFE00123}, // signalling NaNs
        {0x7FC00000, 0x7FC00000}, {0xFFFFFFFF, 0xFFFFFFFF}, // quiet ones
    };
    for (const char *base : {"log", "log2", "log10"})
        for (const Family &f : with_base(base))
            for (int width : widths)
                for (const auto &[x, expected] : table)
                    EXPECT_EQ(to_string(f.r, lane(f, width, {x}).first), to_string(f.r, expected))
                        << f.name(width) << " of " << to_string(f.a, x);
}

TEST(Logf, Log2OfPowersOfTwoIsExact) {
    for (const Family &f : with_base("log2"))
        for (int width : widths)
            for (int k = -149; k <= 127; k++)
                EXPECT_EQ(value_of(f.r, lane(f, width, {pattern(std::ldexp(1.0f, k))}).first), k)
                    << f.name(width);
}

} // namespace
