// div, inv, sqrt, rsqrt and fma of float and double, at all tiers.
#include "harness/lane.hpp"
#include <cmath>
#include <gtest/gtest.h>
#include <limits>
#include <random>

namespace {

using namespace quevar::test;

template <class T> class Division : public testing::Test {
protected:
    using Bits = std::conditional_t<sizeof(T) == 4, std::uint32_t, std::uint64_t>;
    static constexpr int digits = std::numeric_limits<T>::digits - 1;
    static constexpr T inf = std::numeric_limits<T>::infinity();
    static constexpr Bits infinity = std::bit_cast<Bits>(inf), quiet = Bits(1) << (digits - 1),
                          sign = std::bit_cast<Bits>(T(-0.0)), nan = sign | infinity | quiet;

    static T number(std::uint64_t bits) { return std::bit_cast<T>(Bits(bits)); }
    static std::string name(const std::string &base, const std::string &tier = "") {
        return base + (sizeof(T) == 4 ? "f" : "") + tier;
    }
    template <class... X> static std::uint64_t of(const std::string &base, const std::string &tier, X... x) {
        return result(name(base, tier), {pattern(T(x))...});
    }
};
using Elements = testing::Types<float, double>;
TYPED_TEST_SUITE(Division, Elements);

TYPED_TEST(Division, CorrectlyRounded) {
    using T = TypeParam;
    const auto same = [](std::uint64_t got, T wanted) {
        return std::isnan(wanted) ? std::isnan(TestFixture::number(got)) : got == pattern(wanted);
    };
    std::mt19937_64 random(1);
    for (int i = 0; i < 20000; ++i) {
        T x = this->number(random()), y = this->number(random()), z = this->number(random());
        if (i % 2) y = std::ldexp(x, int(random() % 50) - 25) * T(0.7), z = -x * y * T(1 + 1e-6);
        for (const std::string tier : {"", sizeof(T) == 4 ? "_rm" : ""}) {
            EXPECT_TRUE(same(this->of("div", tier, x, y), x / y)) << x << " / " << y;
            EXPECT_TRUE(same(this->of("inv", tier, x), 1 / x)) << x;
            EXPECT_TRUE(same(this->of("fma", tier, x, y, z), std::fma(x, y, z)))
                << x << ", " << y << ", " << z;
        }
        EXPECT_TRUE(same(this->of("sqrt", "", x), std::sqrt(x))) << x;
        if (sizeof(T) == 4) {
            EXPECT_EQ(result("divf_half", {pattern(x), pattern(y)}),
                      result("divf_native", {pattern(x), pattern(y)}));
            EXPECT_EQ(result("invf_half", {pattern(x)}), result("invf_native", {pattern(x)}));
            EXPECT_EQ(result("rsqrtf_half", {pattern(x)}), result("rsqrtf_native", {pattern(x)}));
        } else {
            EXPECT_TRUE(same(this->of("div", "_native", x, y), x / y)) << x << " / " << y;
        }
    }
}

// The tiers that guard their estimate agree with the exact ones.
TYPED_TEST(Division, SpecialValues) {
    using T = TypeParam;
    const T inf = this->inf, zero = 0, minus_zero = T(-0.0);
    const auto signalling = this->sign | this->infinity | 0x1234, quieted = signalling | this->quiet;
    for (const std::string tier : {"", "_native"}) {
        EXPECT_EQ(this->of("div", tier, -1, zero), pattern(-inf));
        EXPECT_EQ(this->of("div", tier, -1, inf), pattern(minus_zero));
        EXPECT_EQ(this->of("div", tier, -inf, 2), pattern(-inf));
        EXPECT_EQ(this->of("div", tier, zero, zero), this->nan);
        EXPECT_EQ(this->of("inv", tier, minus_zero), pattern(-inf));
        EXPECT_EQ(this->of("inv", tier, -inf), pattern(minus_zero));
        EXPECT_EQ(this->of("rsqrt", tier, zero), pattern(inf));
        EXPECT_EQ(this->of("rsqrt", tier, minus_zero), pattern(-inf));
        EXPECT_EQ(this->of("rsqrt", tier, inf), pattern(zero));
        for (const T x : {T(-1), -inf, -std::numeric_limits<T>::denorm_min()})
            EXPECT_EQ(this->of("rsqrt", tier, x), this->nan) << x;
        for (const std::string base : {"inv", "rsqrt", "sqrt"})
            if (base != "sqrt" || sizeof(T) == 4)
                EXPECT_EQ(result(this->name(base, tier), {signalling}), quieted) << base << tier;
        EXPECT_EQ(result(this->name("div", tier), {pattern(T(2)), signalling}), quieted) << tier;
        EXPECT_EQ(result(this->name("div", tier), {signalling, this->infinity | 1}), quieted) << tier;
    }
}

TEST(Sqrt, LowerTiers) {
    const std::uint32_t inf = 0x7F800000, nan = 0xFFC00000;
    for (const std::uint32_t x : {0u, 0x80000000u, inf}) {
        EXPECT_EQ(result("sqrtf_half", {x}), x);
        EXPECT_EQ(result("sqrtf_native", {x}), nan);
    }
    for (const std::uint32_t x : {0x80000001u, 0xBF800000u, 0xFF800000u})
        EXPECT_EQ(result("sqrtf_half", {x}), nan);
    for (const std::uint32_t x : {0x00000001u, 0x00400000u, 0x007FFFFFu}) // denormals: no estimate
        EXPECT_EQ(result("sqrtf_half", {x}), pattern(std::sqrt(std::bit_cast<float>(x))));
    EXPECT_EQ(result("sqrt_native", {pattern(1e300)}), 0u); // beyond float
    EXPECT_EQ(result("sqrt_native", {pattern(-1.0)}), 0xFFF8000000000000u);
    EXPECT_EQ(result("sqrt_native", {0xFFF000003FFFFFFF}),
              0xFFF8000020000000u); // a float's share of the payload
}

// Up to where an estimate serves, and from where it must give way to division: beyond those ends the estimate
// is a denormal that is lost, or an infinity.
TEST(Estimates, GiveWayToDivision) {
    const struct {
        const char *name;
        std::uint64_t last, first; // estimated, divided
    } ends[] = {{"divf", 0x7E7FFFFF, 0x7E800000},
                {"divf", 0x00800000, 0x007FFFFF},
                {"invf", 0x7E7FE7FF, 0x7E7FE801},
                {"invf", 0x00800000, 0x007FFFFF},
                {"inv", 0x7FCFFFFF00000000, 0x7FD0000100000000},
                {"inv", 0x0020000000000000, 0x001FFFFFFFFFFFFF}};
    for (const auto &[name, last, first] : ends)
        for (const std::string tier : {"_native", "_half"}) {
            if (name == std::string("inv") && tier == "_half") continue;
            const Family &f = family(name + tier);
            const std::uint64_t sign = 1ull << (8 * size_of(f.a) - 1), three = pattern(3.0f);
            const auto of = [&](std::uint64_t y) {
                const double x = f.arguments() == 2 ? 3 : 1, exact = x / value_of(f.a, y),
                             got = value_of(
                                 f.a, (f.arguments() == 2 ? lane(f, 4, {three, y}) : lane(f, 4, {y})).first);
                return got / (f.a == Type::f32 ? double(float(exact)) : exact) - 1;
            };
            for (const std::uint64_t s : {std::uint64_t(0), sign}) {
                EXPECT_LE(std::fabs(of(last | s)), 1.5 * 0x1p-12) << f << std::hex << last;
                EXPECT_EQ(of(first | s), 0) << f << std::hex << first;
            }
        }
}

TYPED_TEST(Division, FusedNaNsAreTakenInOrder) {
    const std::uint64_t one = pattern(TypeParam(1)), zero = 0, inf = this->infinity, quiet = this->quiet;
    const std::uint64_t a = inf + 1, b = inf + quiet + 2, c = (this->sign | inf) + 3;
    const std::uint64_t table[][4] = {
        {a, b, c, a | quiet},       {one, b, c, b},           {b, a, c, b},
        {a, one, c, a | quiet},     {one, one, c, c | quiet}, {zero, inf, c, c | quiet},
        {zero, inf, one, this->nan}};
    for (const auto &[x, y, z, r] : table)
        for (const int width : widths)
            EXPECT_EQ(lane(family(this->name("fma")), width, {x, y, z}).first, r) << "width " << width;
}

} // namespace
