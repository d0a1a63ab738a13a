// exp, exp2 and exp10 of doubles.
#include "harness/lane.hpp"
#include <cmath>
#include <gtest/gtest.h>

namespace {

using namespace quevar::test;

struct Operation {
    const char *base;
    long double (*exact)(long double);
    long double step; // by which the argument grows from a row of the table to the next
    // Least and greatest argument with a finite result above +0.
    std::uint64_t lowest, highest;
    double limit; // of the main path
};
const long double ln_2 = std::log(2.0L);
const Operation operations[] = {
    {"exp", std::exp, ln_2 / 64, 0xC0874910D52D3051, 0x40862E42FEFA39EF, 708.395996},
    {"exp2", std::exp2, 1.0L / 64, 0xC090CBFFFFFFFFFF, 0x408FFFFFFFFFFFFF, 1022},
    {"exp10", ::exp10l, std::log10(2.0L) / 128, 0xC07439B746E36B52, 0x40734413509F79FE, 307.652587},
};
const char *const tiers[] = {"", "_native"};

double call(const std::string &name, double x) { return std::bit_cast<double>(result(name, {pattern(x)})); }

// Of a denormal its last place, 2^-1074, is the unit.
double error_in_ulps(double got, long double exact) {
    return double(std::fabs(got - exact) / std::ldexp(1.0L, std::max(std::ilogb(exact), -1022) - 52));
}

TEST(Exp, SpecialValues) {
    const std::uint64_t table[][2] = {
        {0x7FF0000000000000, 0x7FF0000000000000}, {0xFFF0000000000000, 0x0000000000000000},
        {0x7FF8123456789ABC, 0x7FF8123456789ABC}, {0xFFF8123456789ABC, 0xFFF8123456789ABC}, // quiet NaNs
        {0x7FF0123456789ABC, 0x7FF8123456789ABC}, {0xFFF0000000000001, 0xFFF8000000000001}, // signalling ones
        {0x7FEFFFFFFFFFFFFF, 0x7FF0000000000000}, {0xFFEFFFFFFFFFFFFF, 0x0000000000000000},
    };
    for (const auto &op : operations)
        for (const char *tier : tiers)
            for (const auto &[x, expected] : table)
                EXPECT_EQ(result(op.base + std::string(tier), {x}), expected)
                    << op.base << tier << " of " << to_string(Type::f64, x);
}

TEST(Exp, EndsOfTheRange) {
    for (const auto &op : operations)
        for (const char *tier : tiers) {
            const std::string name = op.base + std::string(tier);
            EXPECT_EQ(result(name, {op.lowest}), 1u) << name;
            EXPECT_EQ(result(name, {op.lowest + 1}), 0u) << name;
            EXPECT_LT(result(name, {op.highest}), 0x7FF0000000000000u) << name; // 2^1024 times less than 1
            EXPECT_EQ(result(name, {op.highest + 1}), 0x7FF0000000000000u) << name;
        }
    EXPECT_EQ(result("exp", {0x40862E42FEFA39EF}), 0x7FEFFFFFFFFFFF2A);
    EXPECT_EQ(call("exp2", -1074.5), 0x1p-1074);
}

// Arguments in the middle between rows and beside it, in binades on both sides.
TEST(Exp, EveryRowKeepsTheBound) {
    for (const auto &op : operations) {
        const double bound = family(op.base).bound;
        for (int row = -300; row <= 300; ++row)
            for (long double offset : {-0.4999L, -0.31L, 0.0L, 0.123L, 0.4999L}) {
                const double x = double((row + offset) * op.step);
                ASSERT_LE(error_in_ulps(call(op.base, x), op.exact(x)), bound) << op.base << " of " << x;
            }
    }
}

// Beyond the limit the tiers have one rare path, which rounds denormal results too within an ulp.
TEST(Exp, RarePathAtBothTiers) {
    for (const auto &op : operations)
        for (const char *tier : tiers) {
            const std::string name = op.base + std::string(tier);
            const double lowest = std::bit_cast<double>(op.lowest),
                         highest = std::bit_cast<double>(op.highest);
            for (int i = 0; i <= 4000; ++i) {
                const double low = -op.limit - 1e-6 + i / 4000.0 * (lowest + op.limit + 2e-6),
                             high = op.limit + 1e-6 + i / 4000.0 * (highest - op.limit - 2e-6);
                const long double exact = op.exact(low);
                ASSERT_LE(error_in_ulps(call(name, low), exact), exact < 0x1p-1022 ? 0.76 : 0.53)
                    << name << " of " << low;
                ASSERT_LE(error_in_ulps(call(name, high), op.exact(high)), 0.53) << name << " of " << high;
            }
        }
}

TEST(Exp, ExactResults) {
    for (const char *tier : tiers) {
        for (const char *base : {"exp", "exp10"})
            for (double x : {0.0, -0.0, 0x1p-1074, -0x1.8p-1023})
                EXPECT_EQ(call(base + std::string(tier), x), 1) << base << tier;
        for (int n = -1074; n <= 1023; ++n) {
            // The native polynomial's value at 0 is not 1.
            const bool polynomial = tier[0] && std::abs(n) < 1022;
            const double scale = polynomial ? std::bit_cast<double>(0x3FF0000000261500) : 1;
            EXPECT_EQ(call(std::string("exp2") + tier, n), std::ldexp(scale, n)) << tier << n;
        }
    }
}

} // namespace
