// expf, exp2f and exp10f at all tiers.
#include "harness/lane.hpp"
#include <cmath>
#include <gtest/gtest.h>

namespace {

using namespace quevar::test;

const char *const tiers[] = {"", "_native", "_half", "_rm"};
struct Operation {
    const char *base;
    double (*exact)(double);
    // Least and greatest argument with a finite result above +0, and the main path's limit.
    std::uint32_t lowest, highest, limit;
};
const Operation operations[] = {
    {"expf", [](double x) { return std::exp(x); }, 0xC2CFF1B4, 0x42B17217, 0x42AEAC4F},
    {"exp2f", [](double x) { return std::exp2(x); }, 0xC315FFFF, 0x42FFFFFF, 0x42FC0000},
    {"exp10f", [](double x) { return std::exp(x * std::log(10)); }, 0xC2349E35, 0x421A209A, 0x4217B818},
};

TEST(Expf, SpecialValues) {
    const std::uint32_t table[][2] = {
        {0x7F800000, 0x7F800000}, {0xFF800000, 0x00000000}, // infinities
        {0x7FC12345, 0x7FC12345}, {0xFFC12345, 0xFFC12345}, // quiet NaNs keep sign and payload
        {0x7F812345, 0x7FC12345}, {0xFF812345, 0xFFC12345}, // signalling ones are made quiet
        {0x7F7FFFFF, 0x7F800000}, {0xFF7FFFFF, 0x00000000},
    };
    for (const auto &op : operations)
        for (const char *tier : tiers)
            for (const auto &[x, expected] : table)
                EXPECT_EQ(result(op.base + std::string(tier), {x}), expected)
                    << op.base << tier << " of " << to_string(Type::f32, x);
}

TEST(Expf, EndsOfTheRange) {
    for (const auto &op : operations)
        for (const char *tier : tiers) {
            const std::string name = op.base + std::string(tier);
            EXPECT_EQ(result(name, {op.lowest}), 1u) << name;
            EXPECT_EQ(result(name, {op.lowest + 1}), 0u) << name;
            EXPECT_LT(result(name, {op.highest}), 0x7F800000u) << name;
            EXPECT_EQ(result(name, {op.highest + 1}), 0x7F800000u) << name;
        }
}

// The rare path takes over beyond the limit: at all tiers it is right to the last place but one.
TEST(Expf, RarePathIsExactAtAllTiers) {
    for (const auto &op : operations)
        for (const char *tier : tiers)
            for (std::uint32_t sign : {0u, 0x80000000u})
                for (std::uint32_t x = op.limit + 1; x < op.limit + 0x10000; x += 257) {
                    const double X = value_of(Type::f32, sign | x);
                    const double got = value_of(Type::f32, result(op.base + std::string(tier), {sign | x}));
                    const float wanted = float(op.exact(X));
                    EXPECT_TRUE(got >= std::nextafter(wanted, 0.0f) &&
                                got <= std::nextafter(wanted, INFINITY))
                        << op.base << tier << " of " << X << ": " << got << ", wanted " << wanted;
                }
}

TEST(Expf, ExactResults) {
    for (const char *tier : tiers) {
        for (const char *base : {"expf", "exp10f"})
            for (std::uint32_t x : {0x00000000u, 0x80000000u, 0x00000001u, 0x807FFFFFu}) // denormals too
                EXPECT_EQ(result(base + std::string(tier), {x}), pattern(1.0f)) << base << tier;
        for (int n = -149; n <= 127; ++n) {
            const bool is_short = tier[0] == '_' && tier[1] != 'r' && std::abs(n) <= 126;
            const float scale = is_short ? std::bit_cast<float>(0x3F7FFB49) : 1.0f; // its polynomial's at 0
            const auto got = result(std::string("exp2f") + tier, {pattern(float(n))});
            // The pattern of the least result comes from an integer addition: no rounding to denormal.
            const auto wanted = is_short && n == -126 ? 0x007FFB49 : pattern(std::ldexp(scale, n));
            EXPECT_EQ(got, wanted) << "exp2f" << tier << " of " << n;
        }
    }
}

TEST(Expf, TiersThatShareAComputation) {
    const char *const same[][2] = {{"expf", "expf_rm"},          {"expf_native", "expf_half"},
                                   {"exp2f", "exp2f_rm"},        {"exp2f_native", "exp2f_half"},
                                   {"exp10f_rm", "exp10f_half"}, {"exp10f_native", "exp10f_half"}};
    int different = 0;
    for (float x = -40; x < 40; x += 0.0703125f) {
        for (const auto &[a, b] : same) EXPECT_EQ(result(a, {pattern(x)}), result(b, {pattern(x)})) << a << x;
        different += result("exp10f", {pattern(x)}) != result("exp10f_rm", {pattern(x)});
    }
    EXPECT_GT(different, 500);
}

} // namespace
