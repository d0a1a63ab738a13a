// sinhf, coshf, tanhf, asinhf, acoshf, atanhf at both tiers.
#include "harness/lane.hpp"
#include <cmath>
#include <gtest/gtest.h>
#include <vector>

namespace {

using namespace quevar::test;

constexpr std::uint32_t sign = 0x80000000, infinity = 0x7F800000, no_number = 0xFFC00000;

struct Operation {
    const char *base;
    long double (*exact)(long double);
    bool odd;
    double low, high; // where the result is a number
};
const Operation operations[] = {
    {"sinhf", std::sinh, true, -89.41, 89.41}, {"coshf", std::cosh, false, -89.41, 89.41},
    {"tanhf", std::tanh, true, -1e38, 1e38},   {"asinhf", std::asinh, true, -3.4e38, 3.4e38},
    {"acoshf", std::acosh, false, 1, 3.4e38},  {"atanhf", std::atanh, true, -1, 1},
};
const char *const tiers[] = {"", "_native"};

float call(const Family &f, int width, float x) {
    return std::bit_cast<float>(std::uint32_t(lane(f, width, {pattern(x)}).first));
}
float call(const std::string &name, float x) { return call(family(name), 4, x); }

double error(float r, long double exact) {
    const int exponent = exact == 0 ? -126 : std::max(std::ilogb(exact), -126);
    return double(std::fabs(r - exact) / std::ldexp(1.0L, exponent - 23));
}

// All binades, both sides of 1, of 10 and of the limit of sinhf and coshf.
std::vector<float> samples(const Operation &op) {
    std::vector<float> list;
    const auto add = [&](std::uint32_t first, std::uint32_t end, std::uint32_t step) {
        for (std::uint32_t b = first; b < end; b += step)
            for (const float x : {std::bit_cast<float>(b), -std::bit_cast<float>(b)})
                if (x > op.low && x < op.high) list.push_back(x);
    };
    add(1, infinity, 40009);
    add(0x3A000000, 0x43000000, 9001);
    for (const std::uint32_t point : {0x3D800000u, 0x3F800000u, 0x41200000u, 0x42AEAC4Eu, 0x4E800000u})
        add(point - 200, point + 200, 1);
    return list;
}

TEST(Hyperbolicf, SpecialValues) {
    const struct {
        const char *base;
        std::vector<std::array<std::uint32_t, 2>> rows;
    } tables[] = {
        {"sinhf",
         {{0, 0},
          {sign, sign},
          {infinity, infinity},
          {sign | infinity, sign | infinity},
          {0x42B2D4FD, infinity},
          {0xC2B2D4FD, sign | infinity}}}, // 89.4159927
        {"coshf",
         {{0, 0x3F800000},
          {sign, 0x3F800000},
          {1, 0x3F800000},
          {infinity, infinity},
          {sign | infinity, infinity},
          {0x42B2D4FD, infinity},
          {0xC2B2D4FD, infinity}}},
        {"tanhf",
         {{0, 0},
          {sign, sign},
          {1, 1},
          {0x807FFFFF, 0x807FFFFF},
          {infinity, 0x3F800000},
          {sign | infinity, 0xBF800000},
          {0x41200000, 0x3F800000},
          {0xC1200000, 0xBF800000},
          {0x7F07FFFF, 0x3F800000},
          {0x7F080000, 0x3F800000},
          {0xFF080000, 0xBF800000}}},
        {"asinhf",
         {{0, 0},
          {sign, sign},
          {1, 1},
          {0x807FFFFF, 0x807FFFFF},
          {infinity, infinity},
          {sign | infinity, sign | infinity}}},
        {"acoshf",
         {{0x3F800000, 0},
          {infinity, infinity},
          {sign | infinity, no_number},
          {0, no_number},
          {0x3F7FFFFF, no_number},
          {0xBF800000, no_number}}},
        {"atanhf",
         {{0, 0},
          {sign, sign},
          {1, 1},
          {0x807FFFFF, 0x807FFFFF},
          {0x0BFFFFFF, 0x0BFFFFFF},
          {0x3F800000, infinity},
          {0xBF800000, sign | infinity},
          {0x3F800001, no_number},
          {0xBF800001, no_number},
          {infinity, no_number},
          {sign | infinity, no_number}}},
    };
    for (const auto &[base, rows] : tables)
        for (const char *tier : tiers)
            for (const int width : widths) {
                const Family &f = family(base + std::string(tier));
                for (const auto &[x, expected] : rows)
                    EXPECT_EQ(lane(f, width, {x}).first, expected)
                        << f.name(width) << " of " << std::hex << x;
                for (const std::uint32_t nan : {0x7FC12345u, 0xFFC12345u, 0x7F812345u, 0xFF812345u})
                    EXPECT_EQ(lane(f, width, {nan}).first, nan | 0x00400000) << f.name(width);
            }
}

TEST(Hyperbolicf, KeepsItsBound) {
    for (const Operation &op : operations)
        for (const char *tier : tiers)
            for (const int width : {1, 4}) {
                const Family &f = family(op.base + std::string(tier));
                for (const float x : samples(op))
                    ASSERT_LE(error(call(f, width, x), op.exact(x)), f.bound) << f.name(width) << " of " << x;
            }
}

TEST(Hyperbolicf, Symmetry) {
    for (const Operation &op : operations)
        for (const char *tier : tiers) {
            if (op.low > 0) continue;
            const Family &f = family(op.base + std::string(tier));
            for (const float x : samples(op))
                ASSERT_EQ(call(f, 4, -x), op.odd ? -call(f, 4, x) : call(f, 4, x)) << f << " of " << x;
        }
}

// Beyond the main path's limit sinhf and coshf are half of e^x, rounded from double, at both tiers.
TEST(Hyperbolicf, RarePathIsExact) {
    for (const std::string base : {"sinhf", "coshf"})
        for (const char *tier : tiers)
            for (std::uint32_t x = 0x42AEAC4F; x <= 0x42B2D4FC;
                 x += x < 0x42AEB000 || x > 0x42B2D400 ? 1 : 997) {
                const float value = std::bit_cast<float>(x), half = float(std::exp((long double)value) / 2);
                EXPECT_EQ(call(base + tier, value), half) << base << tier << " of " << value;
                EXPECT_EQ(call(base + tier, -value), base == "sinhf" ? -half : half) << base << tier;
            }
}

// A denormal is its own sine, but the native tier's series does not begin with 1.
TEST(Hyperbolicf, SinhOfDenormals) {
    for (const std::uint32_t x : {1u, 0x1234u, 0x007FFFFFu}) {
        const float value = std::bit_cast<float>(x);
        EXPECT_EQ(result("sinhf", {x}), x);
        EXPECT_EQ(call("sinhf_native", value), float(std::bit_cast<float>(0x3F7FFBC9) * double(value)));
    }
}

// From 2^30 on asinhf and acoshf are the logarithm of 2 x, and agree.
TEST(Hyperbolicf, FarArguments) {
    for (const char *tier : tiers)
        for (std::uint32_t x = 0x4E800000; x < infinity; x += 300007)
            EXPECT_EQ(result("asinhf" + std::string(tier), {x}), result("acoshf" + std::string(tier), {x}))
                << tier << std::hex << x;
}

// One sum of products is rounded twice at width 1 and fused elsewhere; a few results in a million show it.
TEST(Hyperbolicf, AtanhAtWidth1) {
    const auto compare = [](auto one, auto wide) {
        int differ = 0;
        for (int i = 1; i < 500000; ++i) {
            const float x = float(i) / 500009, a = one(x), b = wide(quevar_f32x2{x, x})[0];
            differ += a != b;
            ASSERT_LE(std::abs(int(pattern(a) - pattern(b))), 4) << x;
        }
        EXPECT_GT(differ, 0);
    };
    compare(__quevar_atanhf1, __quevar_atanhf2);
    compare(__quevar_atanhf1_native, __quevar_atanhf2_native);
}

} // namespace
