// tanf at all tiers.
#include "harness/lane.hpp"
#include <cmath>
#include <gtest/gtest.h>
#include <numbers>
#include <vector>

namespace {

using namespace quevar::test;

std::vector<Family> tiers() {
    return {family("tanf"), family("tanf_native"), family("tanf_half"), family("tanf_rm")};
}
bool is_default(const Family &f) { return !*f.tier; }
const float limit = 8256; // beyond it the large path

float tan_of(const Family &f, float x) {
    return std::bit_cast<float>(static_cast<std::uint32_t>(lane(f, 4, {pattern(x)}).first));
}

// All magnitudes, neighbours of multiples of pi/2, the two paths' seam, and every row of the large path's
// table.
std::vector<float> samples() {
    std::vector<float> x;
    for (std::uint32_t b = 1; b < 0x7F800000; b += 20011) x.push_back(std::bit_cast<float>(b));
    for (int k = 1; k < 10000; k++) x.push_back(float(k * std::numbers::pi / 2));
    for (float v = limit - 0.1f; v < limit + 20; v = std::nextafter(v, INFINITY)) x.push_back(v);
    return x;
}

double error(float r, double exact) {
    return std::fabs(r - exact) / std::ldexp(1, std::max(std::ilogb(exact), -126) - 23);
}

TEST(Tanf, SpecialValues) {
    const std::uint32_t table[][2] = {
        {0x00000000, 0x00000000}, {0x80000000, 0x80000000}, // zeros
        {0x00000001, 0x00000001}, {0x80000001, 0x80000001}, // denormals
        {0x7F800000, 0xFFC00000}, {0xFF800000, 0xFFC00000}, // infinities
        {0x7FC12345, 0x7FC12345}, {0xFFC12345, 0xFFC12345}, // quiet NaNs
        {0x7F812345, 0x7FC12345}, {0xFF812345, 0xFFC12345}, // signalling ones
    };
    for (const Family &f : tiers())
        for (const int width : widths)
            for (const auto &[x, expected] : table)
                EXPECT_EQ(lane(f, width, {x}).first, expected)
                    << f.name(width) << " of " << to_string(Type::f32, x);
}

// Where the limit lies shows in last places: there the large path rounds otherwise than the short one.
TEST(Tanf, Seam) {
    EXPECT_EQ(result("tanf", {0x46010000}), 0xBDD8DB25); // 8256
    EXPECT_EQ(result("tanf", {0x46010002}), 0xBDD4CFDF); // 0xBDD4CFE0 by the short path
}

TEST(Tanf, KeepsItsBound) {
    for (const Family &f : tiers())
        for (const float x : samples()) {
            const double exact = std::tan(double(x)), magnitude = std::fabs(exact);
            // The short path of the lower tiers loses places next to multiples of pi/2, except at 0.
            const bool reduced = x > 1 && x <= limit && (magnitude < 0.01 || magnitude > 100);
            const double bound = is_default(f) ? (x <= limit ? f.bound : 1.5) : reduced ? f.bound : 5;
            ASSERT_LE(error(tan_of(f, x), exact), bound) << f << " of " << x;
        }
}

// The floats beyond the limit that are nearest to an odd and an even multiple of pi/2: only the last digits
// of the reduced argument remain.
TEST(Tanf, NearestToMultiplesOfHalfPi) {
    for (const Family &f : tiers())
        for (const float x : {0x1.f37c8ap+95f, 0x1.f37c8ap+96f, 0x1.fffffep+127f})
            EXPECT_LE(error(tan_of(f, x), std::tan(double(x))), is_default(f) ? 1.5 : 5) << f << " of " << x;
    EXPECT_FLOAT_EQ(tan_of(family("tanf"), 0x1.fffffep+127f), -0.6117979f);
}

// The large path carries low parts through every sum; without one of them a seventh of its results is not the
// nearest float. (The samples below 2^14 lie close to zeros and poles.)
TEST(Tanf, LargePathIsMostlyNearest) {
    int count = 0, others = 0;
    for (const float x : samples())
        if (x > 0x1p14f) count++, others += error(tan_of(family("tanf"), x), std::tan(double(x))) > 0.5;
    EXPECT_LT(others, count / 50) << "of " << count;
}

TEST(Tanf, IsOdd) {
    for (const Family &f : tiers())
        for (const float x : samples()) ASSERT_EQ(tan_of(f, -x), -tan_of(f, x)) << f << " of " << x;
}

TEST(Tanf, LowerTiersShareAComputation) {
    const auto of = tiers();
    for (const float x : samples())
        for (const Family &f : {of[2], of[3]}) ASSERT_EQ(tan_of(f, x), tan_of(of[1], x)) << f << " of " << x;
}

} // namespace
