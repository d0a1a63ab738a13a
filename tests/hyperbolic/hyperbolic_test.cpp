// sinh, cosh, tanh, asinh, acosh, atanh of doubles at both tiers.
#include "harness/lane.hpp"
#include <cmath>
#include <gtest/gtest.h>
#include <random>
#include <vector>

namespace {

using namespace quevar::test;

constexpr std::uint64_t sign = 1ull << 63, one = 0x3FF0000000000000, infinity = 0x7FF0000000000000,
                        no_number = 0xFFF8000000000000;
constexpr std::uint64_t overflow = 0x408633CE8FB9F87E; // of sinh and cosh: 710.475860073944

struct Operation {
    const char *base;
    long double (*exact)(long double);
    bool odd;
    double low, high; // where the result is a number
};
const Operation operations[] = {
    {"sinh", std::sinh, true, -710.4758, 710.4758}, {"cosh", std::cosh, false, -710.4758, 710.4758},
    {"tanh", std::tanh, true, -1e308, 1e308},       {"asinh", std::asinh, true, -1e308, 1e308},
    {"acosh", std::acosh, false, 1, 1e308},         {"atanh", std::atanh, true, -1, 1},
};
const char *const tiers[] = {"", "_native"};

double call(const Family &f, int width, double x) {
    return std::bit_cast<double>(lane(f, width, {pattern(x)}).first);
}

double error(double r, long double exact) {
    const int exponent = exact == 0 ? -1022 : std::max(std::ilogb(exact), -1022);
    return double(std::fabs(r - exact) / std::ldexp(1.0L, exponent - 52));
}

// All binades, those around 1 closer, and both sides of the points where a path or a row ends.
std::vector<double> samples(const Operation &op) {
    std::vector<double> list;
    std::mt19937_64 random{11};
    const auto add = [&](double x) {
        for (const double y : {x, -x})
            if (y > op.low && y < op.high) list.push_back(y);
    };
    for (std::uint64_t binade = 0; binade < infinity; binade += 1ull << 52)
        for (int i = binade > (1000ull << 52) && binade < (1034ull << 52) ? 300 : 2; i > 0; --i)
            add(std::bit_cast<double>(binade + (random() >> 12)));
    for (int i = 0; i < 40; ++i) add(1 + std::ldexp(double(random() >> 11), -53 - i));
    for (const double point : {0x1p-31, 0x1p-12, 0x1p-11, 0x1p-9, 0.125, 0.41421356237309505, 1.0, 2.0, 20.0,
                               707.7, 710.4758, 0x1p30})
        for (int i = -40; i <= 40; ++i)
            add(point * (1 + i * i * i * 0x1p-52)), add(point * (1 + i * 0x1p-18));
    return list;
}

TEST(Hyperbolic, SpecialValues) {
    const struct {
        const char *base;
        std::vector<std::array<std::uint64_t, 2>> rows; // of an odd function those of the positive sign
    } tables[] = {
        {"sinh",
         {{0, 0},
          {1, 1},
          {0x000FFFFFFFFFFFFF, 0x000FFFFFFFFFFFFF},
          {infinity, infinity},
          {overflow, infinity},
          {0x7FEFFFFFFFFFFFFF, infinity}}},
        {"cosh",
         {{0, one},
          {sign, one},
          {1, one},
          {infinity, infinity},
          {sign | infinity, infinity},
          {overflow, infinity},
          {sign | overflow, infinity}}},
        {"tanh",
         {{0, 0},
          {1, 1},
          {0x000FFFFFFFFFFFFF, 0x000FFFFFFFFFFFFF},
          {infinity, one},
          {0x4034000000000000, one},
          {0x7FE1FFFFFFFFFFFF, one},
          {0x7FE2000000000000, one}}},
        {"asinh", {{0, 0}, {1, 1}, {0x000FFFFFFFFFFFFF, 0x000FFFFFFFFFFFFF}, {infinity, infinity}}},
        {"acosh",
         {{one, 0},
          {infinity, infinity},
          {sign | infinity, no_number},
          {0, no_number},
          {one - 1, no_number},
          {sign | one, no_number}}},
        {"atanh",
         {{0, 0},
          {1, 1},
          {0x000FFFFFFFFFFFFF, 0x000FFFFFFFFFFFFF},
          {0x034FFFFFFFFFFFFF, 0x034FFFFFFFFFFFFF},
          {one, infinity},
          {one + 1, no_number},
          {infinity, no_number}}},
    };
    for (const auto &[base, rows] : tables)
        for (const char *tier : tiers)
            for (const int width : widths) {
                const Family &f = family(base + std::string(tier));
                const bool odd = base != std::string("cosh") && base != std::string("acosh");
                for (const auto &[x, expected] : rows) {
                    EXPECT_EQ(lane(f, width, {x}).first, expected)
                        << f.name(width) << " of " << std::hex << x;
                    if (odd) EXPECT_EQ(lane(f, width, {x | sign}).first, expected | sign) << f.name(width);
                }
                for (const std::uint64_t nan : {0x7FF8000000012345u, 0x7FF0000000012345u})
                    for (const std::uint64_t x : {nan, nan | sign})
                        EXPECT_EQ(lane(f, width, {x}).first, x | 0x0008000000000000) << f.name(width);
            }
}

TEST(Hyperbolic, KeepsItsBound) {
    for (const Operation &op : operations)
        for (const char *tier : tiers)
            for (const int width : {1, 4}) {
                const Family &f = family(op.base + std::string(tier));
                for (const double x : samples(op))
                    ASSERT_LE(error(call(f, width, x), op.exact(x)), f.bound)
                        << f.name(width) << " of " << std::hexfloat << x;
            }
}

TEST(Hyperbolic, Symmetry) {
    for (const Operation &op : operations)
        for (const char *tier : tiers) {
            if (op.low > 0) continue;
            const Family &f = family(op.base + std::string(tier));
            for (const double x : samples(op))
                ASSERT_EQ(call(f, 4, -x), op.odd ? -call(f, 4, x) : call(f, 4, x)) << f << " of " << x;
        }
}

// Beyond the main path's limit both are half of e^x, closer than on the main path. Where that is 2^1023 and more, the
// power of two that it is made with would not be a number.
TEST(Hyperbolic, RarePaths) {
    for (const char *base : {"sinh", "cosh"})
        for (const char *tier : tiers) {
            const Family &f = family(base + std::string(tier));
            for (double x = 707.7002; x < 710.4758; x += 0.00123)
                ASSERT_LE(error(call(f, 4, x), std::exp((long double)x) / 2), 0.6) << f << " of " << x;
            EXPECT_GT(call(f, 4, 710.4758), 0x1.fffp1023) << f;
            EXPECT_TRUE(std::isfinite(call(f, 4, std::bit_cast<double>(overflow - 1)))) << f;
        }
}

// The inverse functions round some sums twice at width 1 which they fuse elsewhere.
TEST(Hyperbolic, InverseAtWidth1) {
    for (const char *base : {"asinh", "acosh", "atanh"})
        for (const char *tier : tiers) {
            const Family &f = family(base + std::string(tier));
            int differ = 0;
            for (int i = 1; i < 2000; ++i) {
                const double x = base == std::string("atanh") ? i / 2003.0 : 1 + i / 3.0;
                const double a = call(f, 1, x), b = call(f, 2, x);
                differ += a != b;
                ASSERT_LE(std::abs(std::int64_t(pattern(a) - pattern(b))), 4) << f << " of " << x;
            }
            EXPECT_GT(differ, 0) << f;
        }
}

} // namespace
