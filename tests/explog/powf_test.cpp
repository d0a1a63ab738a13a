// powf, powrf, pownf and rootnf at all tiers.
#include "harness/lane.hpp"
#include <climits>
#include <cmath>
#include <gtest/gtest.h>
#include <random>
#include <vector>

namespace {

using namespace quevar::test;

std::vector<Family> with_base(const std::string &base) {
    std::vector<Family> found;
    for (const Family &f : families())
        if (f.base == base && f.a == Type::f32) found.push_back(f);
    return found;
}

template <class Y> float call(const Family &f, int width, float x, Y y) {
    return std::bit_cast<float>(
        std::uint32_t(lane(f, width, {pattern(x), std::bit_cast<std::uint32_t>(y)}).first));
}
template <class Y> float call(const std::string &name, float x, Y y) { return call(family(name), 4, x, y); }

double error_in_ulps(float got, double wanted) {
    if (std::fabs(wanted) >= 0x1.ffffffp127) return std::isinf(got) ? 0 : HUGE_VAL;
    return std::fabs(got - wanted) /
           std::ldexp(1, std::max(wanted == 0 ? -149 : std::ilogb(wanted) - 23, -149));
}

const std::uint32_t inf = 0x7F800000, minus_inf = 0xFF800000, zero = 0, minus_zero = 0x80000000,
                    one = 0x3F800000, minus_one = 0xBF800000, two = 0x40000000, half = 0x3F000000,
                    three = 0x40400000, minus_two = 0xC0000000, minus_three = 0xC0400000, nan = 0xFFC00000,
                    signalling = 0x7F800123, quieted = 0x7FC00123, other_nan = 0xFFC00456, tiny = 1,
                    minus_tiny = 0x80000001, huge = 0x7F7FFFFF, minus_half = 0xBF000000,
                    minus_huge = 0xFF7FFFFF;

struct Case {
    std::uint32_t x, y, expected;
};
void check(const std::string &base, const std::vector<Case> &table) {
    for (const Family &f : with_base(base))
        for (int width : widths)
            for (const auto &[x, y, expected] : table)
                EXPECT_EQ(to_string(f.r, lane(f, width, {x, y}).first), to_string(f.r, expected))
                    << f.name(width) << " of " << to_string(f.a, x) << ", " << to_string(f.argument(1), y);
}

// clang-format off
// The last odd number, and patterns of others that count.
const std::uint32_t last_odd = 0x4B7FFFFF, even_beyond = 0x4B800001, last_half = 0x4AFFFFFF,
                    two_24 = 0x4B800000;

TEST(Powf, SpecialValues) {
    std::vector<Case> table = {
        {zero, two, zero}, {minus_zero, two, zero}, {minus_zero, three, minus_zero},
        {minus_zero, half, zero}, {minus_zero, even_beyond, zero}, {minus_zero, last_odd, minus_zero},
        {zero, minus_three, inf}, {minus_zero, minus_three, minus_inf}, {minus_zero, minus_two, inf},
        {minus_zero, inf, zero}, {minus_zero, minus_inf, inf}, {minus_one, inf, one},
        {minus_one, minus_inf, one}, {minus_one, three, minus_one}, {minus_one, even_beyond, one},
        {minus_one, half, nan}, {minus_two, half, nan}, {minus_tiny, minus_half, nan},
        {minus_two, last_half, nan}, {minus_two, signalling, quieted}, {two, inf, inf}, {half, inf, zero},
        {minus_two, inf, inf}, {half, minus_inf, inf}, {two, minus_inf, zero}, {inf, two, inf},
        {inf, minus_two, zero}, {minus_inf, three, minus_inf}, {minus_inf, two, inf},
        {minus_inf, half, inf}, {minus_inf, minus_three, minus_zero}, {minus_inf, minus_two, zero},
        {minus_inf, inf, inf}, {signalling, two, quieted}, {signalling, other_nan, quieted},
        {other_nan, signalling, other_nan}, {zero, other_nan, other_nan}, {inf, signalling, quieted},
        {minus_two, two_24, inf}, {huge, one, huge}, {tiny, one, tiny},
        {minus_huge, minus_one, 0x80200000}, {minus_two, pattern(129.f), minus_inf},
        {minus_two, pattern(128.f), inf}, {minus_half, pattern(149.f), minus_tiny},
        {minus_half, pattern(150.f), zero}, {minus_half, pattern(151.f), minus_zero},
        {half, pattern(140.f), 0x200}, {huge, pattern(0.25f), pattern(0x1p32f)},
    };
    for (std::uint32_t x :
         {zero, minus_zero, two, minus_two, inf, minus_inf, signalling, other_nan, tiny, huge})
        table.insert(table.end(), {{x, zero, one}, {x, minus_zero, one}, {one, x, one}});
    check("pow", table);
}

TEST(Powrf, SpecialValues) {
    std::vector<Case> table = {
        {zero, zero, nan}, {minus_zero, zero, nan}, {inf, zero, nan}, {inf, minus_zero, nan},
        {one, inf, nan}, {one, minus_inf, nan}, {one, signalling, nan}, {one, three, one},
        {one, minus_zero, one}, {minus_zero, nan, nan}, {zero, signalling, quieted},
        {two, other_nan, other_nan}, {inf, signalling, quieted}, {tiny, other_nan, other_nan},
        {two, zero, one}, {zero, two, zero}, {minus_zero, three, zero}, {zero, inf, zero},
        {zero, minus_inf, inf}, {minus_zero, minus_three, inf}, {two, inf, inf}, {half, inf, zero},
        {half, minus_inf, inf}, {two, minus_inf, zero}, {inf, tiny, inf}, {inf, minus_half, zero},
        {half, pattern(148.f), 2}, {huge, one, huge}, {tiny, minus_one, inf}, {tiny, half, 0x1A3504F3},
    };
    for (std::uint32_t y : {zero, one, two, half, inf, minus_inf, other_nan, minus_three})
        for (std::uint32_t x : {minus_inf, minus_one, minus_two, minus_tiny, nan, signalling})
            table.push_back({x, y, nan});
    check("powr", table);
}

// Parity is that of the integer, not of its float.
TEST(Pownf, SpecialValues) {
    const std::uint32_t most = INT_MAX, least = INT_MIN, odd = 16777217;
    const std::vector<Case> table = {
        {signalling, 0, one}, {inf, 0, one}, {minus_zero, 0, one}, {tiny, 0, one},
        {signalling, 3, quieted}, {other_nan, least, other_nan}, {zero, 3, zero},
        {minus_zero, 3, minus_zero}, {minus_zero, 2, zero}, {zero, -3u, inf}, {minus_zero, -3u, minus_inf},
        {minus_zero, -2u, inf}, {zero, least, inf}, {inf, 2, inf}, {minus_inf, 3, minus_inf},
        {minus_inf, 2, inf}, {minus_inf, -3u, minus_zero}, {minus_inf, -2u, zero},
        {minus_two, odd, minus_inf}, {minus_half, most, minus_zero}, {two, least, zero},
        {minus_two, most, minus_inf}, {minus_half, least, inf}, {huge, 1, huge},
        {minus_tiny, 1, minus_tiny}, {minus_half, 149, minus_tiny}, {half, 140, 0x200}, {two, -149u, tiny},
    };
    check("pown", table);
}

TEST(Rootnf, SpecialValues) {
    std::vector<Case> table = {
        {zero, 2, zero}, {minus_zero, 2, zero}, {minus_zero, 3, minus_zero}, {minus_zero, -3u, minus_inf},
        {minus_zero, -2u, inf}, {inf, 2, inf}, {inf, -2u, zero}, {minus_inf, 3, minus_inf},
        {minus_inf, -3u, minus_zero}, {minus_inf, 2, nan}, {minus_two, 2, nan}, {minus_one, -2u, nan},
        {minus_tiny, 0x80000000, nan}, {signalling | minus_zero, 4, nan}, {signalling, 4, quieted},
        {other_nan, 3, other_nan}, {tiny, 1, tiny}, {huge, 1, huge}, {huge, 4, pattern(0x1p32f)},
        {minus_tiny, 149, minus_half},
        {0x00000200, -140u, two},
    };
    for (std::uint32_t x : {zero, minus_zero, one, minus_two, inf, minus_inf, tiny, signalling, other_nan})
        table.push_back({x, 0, nan});
    check("rootn", table);
}
// clang-format on

// What x^0 and 1^n are on the main path, by each tier's constants, and results next to powers of two.
TEST(Pownf, ConstantTerms) {
    for (int width : widths) {
        for (float x : {0.3f, 1.f, 77.f, -5.f}) {
            EXPECT_EQ(pattern(call(family("pownf"), width, x, 0)), 0x3F800001) << x;
            EXPECT_EQ(pattern(call(family("pownf_native"), width, x, 0)), 0x3F7FFB0D) << x;
        }
        for (int n : {1, -7, 1000, INT_MAX, INT_MIN}) {
            EXPECT_EQ(pattern(call(family("pownf"), width, 1.f, n)), 0x3F800001) << n;
            EXPECT_EQ(pattern(call(family("rootnf"), width, 1.f, n)), one) << n;
            EXPECT_EQ(pattern(call(family("pownf_native"), width, 1.f, n)), 0x3F7FFB0D) << n;
            EXPECT_EQ(pattern(call(family("rootnf_native"), width, 1.f, n)), 0x3F7FFB0D) << n;
        }
        EXPECT_EQ(pattern(call(family("pownf"), width, -2.f, 3)), 0xC1000001);
        EXPECT_EQ(pattern(call(family("pownf"), width, -2.f, 2)), 0x40800001);
        EXPECT_EQ(call(family("rootnf"), width, -8.f, 3), -2);
    }
}

// Of negative x by the rare path.
TEST(Powf, WholePowersThatFitAreExact) {
    for (int width : {1, 8})
        for (float x = 2; x < 4096; x++) {
            double power = 1;
            for (int n = 1; (power *= x) <= 0x1p24; n++) {
                ASSERT_EQ(call(family("powf"), width, x, float(n)), power) << x << ", " << n;
                ASSERT_EQ(call(family("powf"), width, -x, float(n)), n % 2 ? -power : power)
                    << x << ", " << n;
            }
        }
    for (int k = -149; k < 128; k++)
        for (const char *name : {"powf", "powrf"})
            EXPECT_EQ(call(name, 2.f, float(k)), std::ldexp(1.f, k)) << name;
}

// x over all binades and, as often, near 1; z is the logarithm to base 2 of the power, often near its limits.
struct Sampler {
    std::mt19937_64 random{20240308};
    float x() {
        const int off = 1 + int(random() % (1u << random() % 24));
        return std::bit_cast<float>(random() % 2 ? one + (random() % 2 ? off : -off)
                                                 : std::uint32_t(1 + random() % (inf - 1)));
    }
    double z() {
        const double limits[] = {-149, -126, -125.9, 125.9, 127.9}, limit = limits[random() % 5];
        return std::uniform_real_distribution(-152., 128.)(random) * 0.5 +
               (random() % 4 ? limit * 0.5 : limit - 75);
    }
};

TEST(Powf, KeepsItsBound) {
    Sampler sample;
    for (int i = 0; i < 100000; i++) {
        const float x = sample.x(), y = float(sample.z() / std::log2(x));
        const double power = std::pow(double(x), double(y));
        for (const char *base : {"pow", "powr"})
            for (const Family &f : with_base(base))
                ASSERT_LE(error_in_ulps(call(f, i % 2 ? 1 : 4, x, y), power), f.bound)
                    << f.name() << " of " << x << ", " << y;
    }
}

TEST(Pownf, KeepsItsBound) {
    Sampler sample;
    for (int i = 0; i < 100000; i++) {
        const float x = (i % 2 ? 1 : -1) * sample.x();
        const double limited = sample.z() / std::log2(std::fabs(x));
        const int n = std::fabs(limited) < 2e9 ? int(limited) : int(sample.random());
        const double power = std::pow(double(x), n);
        for (const Family &f : with_base("pown"))
            ASSERT_LE(error_in_ulps(call(f, i % 4 ? 4 : 1, x, n), power), f.bound)
                << f.name() << " of " << x << ", " << n;
        const int m = int(sample.random()) >> sample.random() % 32;
        if (m == 0 || (x < 0 && m % 2 == 0)) continue;
        const double root = std::copysign(std::pow(std::fabs(double(x)), 1. / m), x);
        for (const Family &f : with_base("rootn"))
            ASSERT_LE(error_in_ulps(call(f, i % 4 ? 4 : 1, x, m), root), f.bound)
                << f.name() << " of " << x << ", " << m;
    }
}

// Negative x under powf, and x beyond the normal numbers, take a path that is more accurate than the tiers.
TEST(Powf, SpecialLanesAreNearlyRounded) {
    Sampler sample;
    int denormal = 0;
    for (int i = 0; i < 100000; i++) {
        const float x =
            i % 2 ? sample.x() : std::bit_cast<float>(std::uint32_t(sample.random() % 0x00800000 + 1));
        const double z = sample.z(), l = std::log2(x);
        const int n = int(std::clamp(z / l, -0x1p24, 0x1p24));
        const double power = std::pow(-double(x), n);
        ASSERT_LE(error_in_ulps(call("powf_native", -x, float(n)), power), 0.8) << -x << ", " << n;
        denormal += power != 0 && std::fabs(power) < 0x1p-126;
        if (i % 2) continue;
        const float y = float(z / l);
        const double real = std::pow(double(x), double(y));
        ASSERT_LE(error_in_ulps(call("powrf_native", x, y), real), real >= 0x1p-126 ? 0.8 : 0.57)
            << x << ", " << y;
        ASSERT_LE(error_in_ulps(call("pownf_native", -x, n), power), 1.4) << -x << ", " << n;
        const int m = n | 1;
        ASSERT_LE(error_in_ulps(call("rootnf_native", -x, m), -std::pow(double(x), 1. / m)), 0.8)
            << -x << ", " << m;
    }
    EXPECT_GT(denormal, 5000);
}

TEST(Powf, TiersThatShareAComputation) {
    Sampler sample;
    for (int i = 0; i < 20000; i++) {
        const float x = sample.x(), y = float(sample.z() / std::log2(x));
        const float wanted = call("powf_native", x, y);
        ASSERT_EQ(call("powf_rm", x, y), wanted) << x << ", " << y;
        ASSERT_EQ(call("powrf_half", x, y), call("powrf_native", x, y)) << x << ", " << y;
        if (x >= 0x1p-126f && wanted > 0x1p-125f && wanted < 0x1p125f)
            ASSERT_EQ(call("powrf_native", x, y), wanted) << x << ", " << y;
    }
}

// Powers and roots by an integer have a main path for negative x, which keeps to that of |x|.
TEST(Pownf, SignIsThatOfXForOddN) {
    Sampler sample;
    for (int i = 0; i < 20000; i++) {
        const float x = sample.x();
        const int n = int(sample.random()) >> sample.random() % 32, odd = n | 1;
        for (const char *name : {"pownf", "pownf_native", "rootnf", "rootnf_native"})
            EXPECT_EQ(pattern(call(name, -x, odd)), pattern(call(name, x, odd)) | minus_zero)
                << name << x << ", " << odd;
        for (const char *name : {"pownf", "pownf_native"})
            EXPECT_EQ(pattern(call(name, -x, odd - 1)), pattern(call(name, x, odd - 1)))
                << name << x << ", " << odd - 1;
    }
}

} // namespace
