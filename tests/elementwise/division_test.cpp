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

// From the last argument that has an estimate to the first that is divided by.
TEST(Estimates, GiveWayToDivision) {
    const auto exact = [](const std::string &name, std::uint64_t x) {
        const Family &f = family(name);
        const double X = value_of(f.a, x);
        return lane(f, 4, {x, x}).first == (f.a == Type::f32 ? pattern(float(1 / X)) : pattern(1 / X));
    };
    for (const std::uint32_t x : {0x00000123u, 0x007FFFFFu, 0x7E7FE801u, 0xFE7FE801u, 0x7F7FFFFFu})
        EXPECT_TRUE(exact("invf_native", x)) << std::hex << x;
    for (const std::uint64_t x :
         {0x0000400000000001u, 0x001FFFFFFFFFFFFFu, 0x7FD0000000000123u, 0xFFEFFFFFFFFFFFFFu})
        EXPECT_TRUE(exact("inv_native", x)) << std::hex << x;
    for (const std::uint32_t x : {0x00800123u, 0x7E6FE800u})
        EXPECT_FALSE(exact("invf_native", x)) << std::hex << x;
    for (const std::uint64_t x : {0x0020000000012345u, 0x7FC6ABCD12345678u})
        EXPECT_FALSE(exact("inv_native", x)) << std::hex << x;
    const std::uint64_t seven = pattern(7.0f);
    for (const std::uint32_t y : {0x00000123u, 0x007FFFFFu, 0x7E800001u, 0xFF7FFFFFu})
        EXPECT_EQ(result("divf_native", {seven, y}), pattern(7 / std::bit_cast<float>(y))) << std::hex << y;
    EXPECT_NE(result("divf_native", {seven, 0x7E7EDCBA}), pattern(7 / std::bit_cast<float>(0x7E7EDCBA)));
}

// Powers of four have exact roots; on both sides of the ends of the main path the result is right to the last
// place.
TYPED_TEST(Division, ReciprocalRoots) {
    using T = TypeParam;
    using Limits = std::numeric_limits<T>;
    for (int e = (Limits::min_exponent - Limits::digits) / 2; 2 * e < Limits::max_exponent; ++e)
        EXPECT_EQ(this->of("rsqrt", "", std::ldexp(T(1), 2 * e)), pattern(std::ldexp(T(1), -e))) << e;

    std::mt19937_64 random(3);
    const int top = int(this->infinity >> this->digits);
    for (const int field : {0, 1, 2, 3, 0x34, 0x35, top - 3, top - 2, top - 1})
        for (int i = 0; i < 500; ++i) {
            const T x = this->number((random() & ((1ull << this->digits) - 1)) | std::uint64_t(field)
                                                                                     << this->digits);
            const T wanted = T(1 / std::sqrt((long double)x)),
                    ulp = std::nextafter(wanted, this->inf) - wanted;
            EXPECT_NEAR(this->number(this->of("rsqrt", "", x)), wanted, ulp) << x;
            EXPECT_NEAR(this->number(this->of("rsqrt", "_native", x)), wanted,
                        ulp * (sizeof(T) == 4 ? 4 : 300000))
                << x;
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
