// sinf, cosf, sincosf, sincosregf at all tiers.
#include "harness/lane.hpp"
#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace {

using namespace quevar::test;

constexpr std::uint32_t limit = 0x461C4000; // 10000: beyond it the large path

float value(std::uint64_t bits) { return std::bit_cast<float>(static_cast<std::uint32_t>(bits)); }

// Every family that gives a sine, a cosine or both; a lane of it as {sine, cosine}.
struct Circular {
    const Family &f;
    bool sine = f.base != std::string("cos"), cosine = f.base != std::string("sin");
    bool both = sine && cosine;

    Lane at(int width, std::uint32_t x) const {
        const Lane l = lane(f, width, {x});
        return sine ? Lane{l.first, both ? l.second : 0} : Lane{0, l.first};
    }
    // What is expected of a family that gives only one.
    Lane part(Lane l) const { return {sine ? l.first : 0, cosine ? l.second : 0}; }
};

std::vector<Circular> all() {
    std::vector<Circular> found;
    for (const char *name :
         {"sinf", "sinf_native", "sinf_half", "sinf_rm", "cosf", "cosf_native", "cosf_half", "cosf_rm",
          "sincosf", "sincosf_native", "sincosf_rm", "sincosregf", "sincosregf_native"})
        found.push_back({family(name)});
    return found;
}

void expect(const Circular &c, std::uint32_t x, Lane expected) {
    for (const int width : widths) {
        const Lane l = c.at(width, x), e = c.part(expected);
        EXPECT_TRUE(l == e) << c.f.name(width) << " of " << to_string(Type::f32, x) << ": "
                            << to_string(Type::f32, l.first) << ", " << to_string(Type::f32, l.second);
    }
}

// All exponents, both sides of the limit, every row of the large path's table, and the neighbours of
// multiples of pi/2, where a result shows the end of the reduction.
std::vector<std::uint32_t> samples() {
    std::vector<std::uint32_t> x;
    for (std::uint32_t b = 1; b < 0x7F800000; b += 99991) x.push_back(b);
    for (std::uint32_t b = limit - 200; b < limit + 200; b++) x.push_back(b);
    for (float v = 1e5f; v < 1e5f + 8; v += 0x1p-7f) x.push_back(pattern(v));
    for (float v = 0; v < 13; v += 0.0173f) x.push_back(pattern(v));
    for (int n = 1; n < 6366; n++) x.push_back(pattern(static_cast<float>(n * (M_PI / 2))));
    return x;
}

TEST(Circular, SpecialValues) {
    for (const Circular &c : all()) {
        for (const std::uint32_t sign : {0u, 0x80000000u}) {
            expect(c, sign, {sign, 0x3F800000});
            expect(c, sign | 0x7F800000, {0xFFC00000, 0xFFC00000});
            for (const std::uint32_t nan : {0x7F800001u, 0x7FA12345u, 0x7FC12345u})
                expect(c, sign | nan, {sign | nan | 0x00400000, sign | nan | 0x00400000});
        }
    }
}

// At the default tier a denormal is its own sine. The cosine that comes with a sine is the polynomial's,
// not 1.
TEST(Circular, Denormals) {
    for (const std::uint32_t x : {1u, 0x007FFFFFu, 0x80000001u, 0x807FFFFFu}) {
        for (const char *name : {"sinf", "cosf"}) expect({family(name)}, x, {x, 0x3F800000});
        for (const char *name : {"sincosf", "sincosregf"}) expect({family(name)}, x, {x, 0x3F7FFFFF});
    }
}

// Last places that tell the coefficients of one family from another's.
TEST(Circular, Coefficients) {
    const struct {
        std::uint32_t x, sin, cos, sin_of_both, cos_of_both, native_sin, native_cos, native_cos_of_both;
    } table[] = {
        // 0.5, 1.25, 2.5, 9999
        {0x3F000000, 0x3EF57744, 0x3F60A940, 0x3EF57744, 0x3F60A940, 0x3EF57912, 0x3F60AC08, 0x3F60AC0D},
        {0x3FA00000, 0x3F72F0A8, 0x3EA171EF, 0x3F72F0A7, 0x3EA171EF, 0x3F72EC0C, 0x3EA17003, 0x3EA17003},
        {0x40200000, 0x3F193579, 0xBF4D17C0, 0x3F193579, 0xBF4D17BF, 0x3F1938BF, 0xBF4D1D4B, 0xBF4D1D4E},
        {0x461C3C00, 0x3F22D698, 0xBF4588B8, 0x3F22D698, 0xBF4588B7, 0x3F22DAA9, 0xBF458E7B, 0xBF458E7E},
    };
    for (const auto &t : table)
        for (const Circular &c : all()) {
            const bool lower = *c.f.tier;
            expect(c, t.x,
                   {lower    ? t.native_sin
                    : c.both ? t.sin_of_both
                             : t.sin,
                    lower && c.both ? t.native_cos_of_both
                    : lower         ? t.native_cos
                    : c.both        ? t.cos_of_both
                                    : t.cos});
        }
}

// At the limit the tiers differ, beyond it all share a path.
TEST(Circular, Limit) {
    for (const Circular &c : all()) {
        expect(c, limit + 1, {0xBE9CF359, 0xBF73ACDD});
        expect(c, (limit + 1) | 0x80000000, {0x3E9CF359, 0xBF73ACDD});
        expect(c, 0x7F7FFFFF, {0xBF0599B3, 0x3F5A5F96});
        for (const char *base : {"sinf", "cosf"})
            EXPECT_NE(result(base, {limit}), result(base + std::string("_native"), {limit}));
        const Circular first{family(std::string(c.f.base) + "f")};
        for (const std::uint32_t x : samples())
            if (x > limit) ASSERT_TRUE(c.at(8, x) == first.at(8, x)) << c.f << " of " << value(x);
    }
}

// The families of both add up the large path's sum in another order than those of one.
TEST(Circular, LastPlacesOfTheLargePath) {
    EXPECT_EQ(result("sinf", {0x4624C35B}), 0x3F7F1DB5);
    EXPECT_EQ(result("sincosf", {0x4624C35B}), 0x3F7F1DB6);
    EXPECT_EQ(result("cosf", {0x4620ABED}), 0xBF5A6BDF);
    EXPECT_EQ(lane(family("sincosf"), 4, {0x4620ABED}).second, 0xBF5A6BDE);
}

TEST(Circular, KeepsItsBound) {
    const auto error = [](std::uint64_t got, double exact) {
        return std::fabs(value(got) - exact) / std::ldexp(1, std::max(std::ilogb(exact), -126) - 23);
    };
    for (const Circular &c : all())
        for (const std::uint32_t x : samples()) {
            const double bound = x > limit ? 0.6 : c.f.bound, v = value(x);
            const Lane plus = c.at(4, x), minus = c.at(4, x | 0x80000000);
            if (c.sine) ASSERT_LE(error(plus.first, std::sin(v)), bound) << c.f << " of " << v;
            if (c.cosine) ASSERT_LE(error(plus.second, std::cos(v)), bound) << c.f << " of " << v;
            ASSERT_TRUE(minus == c.part({plus.first ^ 0x80000000, plus.second})) << c.f << " of " << -v;
        }
}

// Small lanes keep the short path's bits beside lanes that need the others, and these come out as alone.
TEST(Circular, NeighboursDoNotMatter) {
    const std::uint32_t x[16] = {0x3F000000, 0x7FA00000, 0xC2C80000, 0x501502F9, 0x461C4000, 0xFF800000,
                                 0x00000001, 0xE0AD78EC, 0x80000000, 0x7F7FFFFF, 0x40490FDB, 0x461C4001,
                                 0x3FC90FDB, 0x7FC00000, 0xC61C4000, 0x447A0000};
    for (const Circular &c : all())
        for (const int width : {2, 4, 8, 16})
            for (int from = 0; from < 16; from += width) {
                std::uint32_t first[16], second[16];
                const void *argument = x + from;
                invoke(c.f, width, &argument, first, second);
                for (int i = 0; i < width; i++) {
                    const Lane alone = lane(c.f, 1, {x[from + i]});
                    EXPECT_EQ(first[i], alone.first) << c.f.name(width) << " of " << value(x[from + i]);
                    if (c.both)
                        EXPECT_EQ(second[i], alone.second) << c.f.name(width) << " of " << value(x[from + i]);
                }
            }
}

} // namespace
