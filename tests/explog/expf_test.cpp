// expf, exp2f and exp10f at all tiers.
#include "harness/lane.hpp"
#include <cmath>
#include <gtest/gtest.h>

namespace {

using namespace quevar::test;

const char *const tiers[] = {"", "_native", "_half", "_rm"};
struct Operation {
    const char *base;
    std::uint32_t lowest, highest; // argument with a finite result above +0
};
const Operation operations[] = {
    {"expf", 0xC2CFF1B4, 0x42B17217}, {"exp2f", 0xC315FFFF, 0x42FFFFFF}, {"exp10f", 0xC2349E35, 0x421A209A}};

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

// Printed values, correctly rounded; the lower tiers come within 2^-11.
TEST(Expf, MainPath) {
    const struct {
        const char *base;
        float x;
        std::uint32_t y;
    } table[] = {{"expf", 1, 0x402DF854},     {"expf", -10, 0x383E6BCE},     {"expf", 50, 0x638C881F},
                 {"exp2f", 0.5f, 0x3FB504F3}, {"exp2f", -7.25f, 0x3BD744FD}, {"exp10f", 2, 0x42C80000},
                 {"exp10f", -3, 0x3A83126F},  {"exp10f", 10, 0x501502F9},    {"exp10f", 0.5f, 0x404A62C2}};
    for (const auto &t : table) {
        EXPECT_EQ(result(t.base, {pattern(t.x)}), t.y) << t.base << " of " << t.x;
        const double y = value_of(Type::f32, t.y);
        for (const char *tier : tiers)
            EXPECT_NEAR(value_of(Type::f32, result(t.base + std::string(tier), {pattern(t.x)})), y,
                        y * 0x1p-11)
                << t.base << tier << " of " << t.x;
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

} // namespace
