// tanf at all tiers.
#include "harness/lane.hpp"
#include <cmath>
#include <gtest/gtest.h>

namespace {

using namespace quevar::test;

const char *const tiers[] = {"tanf", "tanf_native", "tanf_half", "tanf_rm"};

TEST(Tanf, SpecialValues) {
    const std::uint32_t table[][2] = {
        {0x00000000, 0x00000000}, {0x80000000, 0x80000000}, // zeros
        {0x00000001, 0x00000001}, {0x80000001, 0x80000001}, // denormals
        {0x7F800000, 0xFFC00000}, {0xFF800000, 0xFFC00000}, // infinities
        {0x7FC12345, 0x7FC12345}, {0xFFC12345, 0xFFC12345}, // quiet NaNs
        {0x7F812345, 0x7FC12345}, {0xFF812345, 0xFFC12345}, // signalling ones
    };
    for (const char *name : tiers)
        for (const int width : widths)
            for (const auto &[x, expected] : table)
                EXPECT_EQ(lane(family(name), width, {x}).first, expected)
                    << name << " at width " << width << " of " << to_string(Type::f32, x);
}

// The floats nearest to an odd and an even multiple of pi/2: only the last digits of the reduced argument
// remain. The tiers share this path up to the last division.
TEST(Tanf, NearestToMultiplesOfHalfPi) {
    for (const char *name : tiers)
        for (const float x : {0x1.f37c8ap+95f, 0x1.f37c8ap+96f, 0x1.fffffep+127f}) {
            const double exact = std::tan(double(x)), got = value_of(Type::f32, result(name, {pattern(x)}));
            EXPECT_LE(std::fabs(got - exact) / std::ldexp(1, std::ilogb(exact) - 23), name[4] ? 5 : 1.5)
                << name << " of " << x;
        }
    EXPECT_FLOAT_EQ(value_of(Type::f32, result("tanf", {0x7F7FFFFF})), -0.6117979f);
}

} // namespace
