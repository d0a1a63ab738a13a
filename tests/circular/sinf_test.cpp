// sinf, cosf, sincosf, sincosregf at all tiers.
#include "harness/lane.hpp"
#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace {

using namespace quevar::test;

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

} // namespace
