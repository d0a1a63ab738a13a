// sin, cos, sincos, sincosreg of doubles at both tiers.
#include "double_arguments.hpp"
#include <gtest/gtest.h>
#include <string>

namespace {

using namespace quevar::test;

constexpr std::uint64_t sign_bit = 0x8000000000000000, one = 0x3FF0000000000000;
double value(std::uint64_t bits) { return std::bit_cast<double>(bits); }

// A family that gives a sine, a cosine or both; a lane of it as {sine, cosine}.
struct Circular {
    const Family &f;
    bool sine = f.base != std::string("cos"), cosine = f.base != std::string("sin");
    bool native = *f.tier;

    Lane at(int width, double x) const {
        const Lane l = lane(f, width, {pattern(x)});
        return sine ? l : Lane{0, l.first};
    }
    // What is expected of a family that gives only one.
    Lane part(Lane l) const { return {sine ? l.first : 0, cosine ? l.second : 0}; }
    // On the short path; beyond it the default tier reads a table, and _native computes by scalar steps.
    bool is_short(double x) const {
        if (!sine) return std::fabs(M_PI / 2 - std::fabs(x)) <= 0x1p23;
        return std::fabs(x) <= (cosine ? 0x1p23 : 0x1p24);
    }
};

const std::vector<Circular> &all() {
    static const std::vector<Circular> families = [] {
        std::vector<Circular> list;
        for (const char *name : {"sin", "cos", "sincos", "sincosreg"})
            for (const char *tier : {"", "_native"}) list.push_back({family(std::string(name) + tier)});
        return list;
    }();
    return families;
}
const std::vector<double> &samples() {
    static const auto x =
        double_arguments({1e-8, M_PI / 2, 0x1p23, 0x1p23 + M_PI / 2, 0x1p24, 0x1p30, 0x1p55});
    return x;
}

void expect(const Circular &c, double x, Lane expected) {
    for (const int width : widths) {
        const Lane l = c.at(width, x), e = c.part(expected);
        EXPECT_TRUE(l == e) << c.f.name(width) << " of " << to_string(Type::f64, pattern(x)) << ": "
                            << to_string(Type::f64, l.first) << ", " << to_string(Type::f64, l.second);
    }
}

TEST(Sin, SpecialValues) {
    for (const Circular &c : all())
        for (const std::uint64_t sign : {std::uint64_t{0}, sign_bit}) {
            expect(c, value(sign), {sign, one});
            expect(c, value(sign | 0x7FF0000000000000), {0xFFF8000000000000, 0xFFF8000000000000});
            for (const std::uint64_t nan : {0x7FF0000000000001u, 0x7FF4567812345678u, 0x7FF8000000054321u})
                expect(c, value(sign | nan),
                       {sign | nan | 0x0008000000000000, sign | nan | 0x0008000000000000});
        }
}

// The cosine alone is 1 as long as pi/2 - x rounds to pi/2; the one that comes with a sine is the polynomial's.
TEST(Sin, SmallArguments) {
    for (const double x : {0x1p-1074, -0x1p-1074, 0x1p-1022, 0x1.7p-57, -0x1.7p-57})
        for (const Circular &c : all())
            expect(c, x, {pattern(x), !c.sine ? one : c.native ? 0x3FEFFFFFFFFFFFF0 : 0x3FEFFFFFFFFFFFFF});
}

// Last places that tell one polynomial, or one order of summation, from another.
TEST(Sin, LastPlaces) {
    const auto first = [](const char *name, std::uint64_t x) { return result(name, {x}); };
    const auto cosine_of_both = [](std::uint64_t x) { return lane(family("sincos"), 4, {x}).second; };
    for (const Circular &c : all())
        if (c.native) expect(c, 2.5, {0x3FE326AF0EBBDCB4, 0xBFE9A2F7EC97607E});
        else expect(c, 2.5, {0x3FE326AF0DCFCAB0, 0xBFE9A2F7EF858B7E});
    EXPECT_EQ(first("sin", pattern(0x1.5a824bbfe4903p+0)), 0x3FEF3F721267647F);
    EXPECT_EQ(first("sincos", pattern(0x1.5a824bbfe4903p+0)), 0x3FEF3F721267647E);
    EXPECT_EQ(first("cos", pattern(0x1.86493b4355713p-3)), 0x3FEF6BB24E415755);
    EXPECT_EQ(cosine_of_both(pattern(0x1.86493b4355713p-3)), 0x3FEF6BB24E415756);
    // By table, where cos and sincos add up differently, and sin_native is computed otherwise.
    EXPECT_EQ(first("cos", 0x686CC5DDDE7C0522), 0xBFEFF34FBECB2FDD);
    EXPECT_EQ(cosine_of_both(0x686CC5DDDE7C0522), 0xBFEFF34FBECB2FDE);
    EXPECT_EQ(first("sin", 0x49E073AA4F201749), 0x3FE38117B8244CAF);
    EXPECT_EQ(first("sin_native", 0x49E073AA4F201749), 0x3FE38117B8244CAE);
}

// At the limit the short path still; the last places beyond it are the other path's.
TEST(Sin, Limits) {
    EXPECT_EQ(result("sin", {0x4170000000000000}), 0xBFE8F22F8433D6EF); // 2^24; the table gives ...6EE
    EXPECT_EQ(result("sin", {0x4170000000000001}), 0xBFE8F22F82F32986); // the polynomial gives ...987
    EXPECT_EQ(result("sin_native", {0x4170000000000000}), 0xBFE8F22F817E9439);
    EXPECT_EQ(result("sin_native", {0x4170000000000001}), 0xBFE8F22F82F32986);
    EXPECT_EQ(result("cos", {0x4160000030000000}), 0xBFDFAD4F6B31F3A8); // 2^23 + 1.5; the table gives ...3A9
    const Lane both = lane(family("sincosreg"), 4, {0x4160000000000000});
    EXPECT_EQ(both.second, 0xBFECDB2C9E19E37E); // 2^23; the table gives ...37F
}

TEST(Sin, LargestArgument) {
    for (const Circular &c : all())
        expect(c, 0x1.fffffffffffffp1023, {0x3F7452FC98B34E97, 0xBFEFFFE62ECFAB75});
}

// Beyond the limit no result is farther from the exact value than 0.52, also next to multiples of pi/2; before it the
// default tier keeps its bound there too.
TEST(Sin, KeepsItsBound) {
    for (const Circular &c : all())
        for (const double x : samples()) {
            const double bound = c.is_short(x) ? c.f.bound : 0.52;
            const Lane plus = c.at(4, x), minus = c.at(4, -x);
            const long double v = x;
            if (c.sine) ASSERT_LE(error(plus.first, std::sin(v)), bound) << c.f << " of " << x;
            if (c.cosine) ASSERT_LE(error(plus.second, std::cos(v)), bound) << c.f << " of " << x;
            ASSERT_TRUE(minus == c.part({plus.first ^ sign_bit, plus.second})) << c.f << " of " << -x;
        }
}

// Small lanes keep the short path's bits beside lanes that need the others, and these come out as alone, whether some
// lanes of a part or all need them.
TEST(Sin, NeighboursDoNotMatter) {
    const double x[16] = {0.5,       1e20,      -100, 0x1p24,  -0x1p30, 3e9,    -1e300,   1e15,
                          -HUGE_VAL, 0x1p-1074, -0.0, 8388609, NAN,     0x1p31, 16777217, 12};
    for (const Circular &c : all())
        for (const int width : {2, 4, 8, 16})
            for (int from = 0; from < 16; from += width) {
                double first[16], second[16];
                const void *argument = x + from;
                invoke(c.f, width, &argument, first, second);
                for (int i = 0; i < width; i++) {
                    const Lane alone = lane(c.f, 1, {pattern(x[from + i])});
                    EXPECT_EQ(pattern(first[i]), alone.first) << c.f.name(width) << " of " << x[from + i];
                    if (c.sine && c.cosine)
                        EXPECT_EQ(pattern(second[i]), alone.second)
                            << c.f.name(width) << " of " << x[from + i];
                }
            }
}

} // namespace
