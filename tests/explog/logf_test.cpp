// logf, log2f, log10f at all tiers.
#include "harness/lane.hpp"
#include <cmath>
#include <gtest/gtest.h>
#include <map>
#include <vector>

namespace {

using namespace quevar::test;

const std::map<std::string, double (*)(double)> logarithms = {
    {"log", std::log}, {"log2", std::log2}, {"log10", std::log10}};

std::vector<Family> with_base(const std::string &base) {
    std::vector<Family> found;
    for (const Family &f : families())
        if (f.base == base && f.a == Type::f32) found.push_back(f);
    return found;
}

float call(const Family &f, int width, float x) {
    return std::bit_cast<float>(std::uint32_t(lane(f, width, {pattern(x)}).first));
}

// All binades and significands, denormals more densely, and the neighbourhood of 1.
std::vector<float> samples() {
    std::vector<float> x;
    const auto add = [&](std::uint32_t first, std::uint32_t end, std::uint32_t step) {
        for (std::uint32_t b = first; b < end; b += step) x.push_back(std::bit_cast<float>(b));
    };
    add(1, 0x7F800000, 20011);
    add(1, 0x00800000, 997);
    add(0x007FFFFF, 0x00800002, 1);
    add(0x3F800000 - 1000, 0x3F800000 + 1000, 1);
    add(0x7F7FFFFF, 0x7F800000, 1);
    return x;
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
    for (const auto &[base, exact] : logarithms)
        for (const Family &f : with_base(base))
            for (int width : widths)
                for (const auto &[x, expected] : table)
                    EXPECT_EQ(to_string(f.r, lane(f, width, {x}).first), to_string(f.r, expected))
                        << f.name(width) << " of " << to_string(f.a, x);
}

// Rows of the tables, both sides of the least normal number, cancellation near 1.
TEST(Logf, KeepsItsBound) {
    for (const auto &[base, exact] : logarithms)
        for (const Family &f : with_base(base))
            for (int width : {1, 4})
                for (float x : samples()) {
                    const double y = exact(x), ulp = std::ldexp(1, y == 0 ? -149 : std::ilogb(y) - 23);
                    ASSERT_LE(std::fabs(call(f, width, x) - y) / ulp, f.bound)
                        << f.name(width) << " of " << x;
                }
}

TEST(Logf, Log2OfPowersOfTwoIsExact) {
    for (const Family &f : with_base("log2"))
        for (int width : widths)
            for (int k = -149; k <= 127; k++)
                EXPECT_EQ(call(f, width, std::ldexp(1.0f, k)), k) << f.name(width);
}

TEST(Logf, TiersThatShareAComputation) {
    const std::pair<const char *, const char *> same[] = {{"logf", "logf_rm"},
                                                          {"log2f", "log2f_rm"},
                                                          {"log2f_native", "log2f_half"},
                                                          {"log10f_native", "log10f_half"}};
    for (const auto &[a, b] : same)
        for (int width : {1, 8})
            for (float x : samples())
                ASSERT_EQ(pattern(call(family(a), width, x)), pattern(call(family(b), width, x)))
                    << a << " and " << b << " at width " << width << " of " << x;
}

// Its last product is rounded at width 1 and fused elsewhere; a few results in a million show it.
TEST(Logf, Log2AtWidth1) {
    int differ = 0;
    for (std::uint32_t b = 0x3F000000; b < 0x3F100000; b++) {
        const float x = std::bit_cast<float>(b), one = __quevar_log2f1(x),
                    wide = __quevar_log2f2(quevar_f32x2{x, x})[0];
        differ += one != wide;
        ASSERT_LE(std::abs(int(pattern(one) - pattern(wide))), 1) << x;
    }
    EXPECT_GT(differ, 0);
}

} // namespace
