// cbrt and rcbrt of float and double, at both tiers.
#include "harness/lane.hpp"
#include <cmath>
#include <gtest/gtest.h>
#include <limits>
#include <random>

namespace {

using namespace quevar::test;

template <class T> class CubeRoots : public testing::Test {
protected:
    using Limits = std::numeric_limits<T>;
    using Bits = std::conditional_t<sizeof(T) == 4, std::uint32_t, std::uint64_t>;
    static constexpr int digits = Limits::digits - 1;
    static constexpr T inf = Limits::infinity(), least = Limits::denorm_min();
    static constexpr Bits infinity = std::bit_cast<Bits>(inf), sign = std::bit_cast<Bits>(T(-0.0)),
                          quiet = Bits(1) << (digits - 1);

    static const Family &named(const std::string &base, const std::string &tier) {
        return family(base + (sizeof(T) == 4 ? "f" : "") + tier);
    }
    static T number(Bits bits) { return std::bit_cast<T>(bits); }
    static T of(const Family &f, T x, int width = 4) {
        return number(Bits(lane(f, width, {pattern(x)}).first));
    }
    static T of(const std::string &base, T x, int width = 4) { return of(named(base, ""), x, width); }

    static long double exact(const std::string &base, T x) {
        const long double root = std::cbrt((long double)x);
        return base == "cbrt" ? root : 1 / root;
    }
    static double ulps(T got, long double wanted) {
        return double(std::fabs(std::ldexp(got - wanted, digits - std::ilogb(wanted))));
    }
};
using Elements = testing::Types<float, double>;
TYPED_TEST_SUITE(CubeRoots, Elements);

TYPED_TEST(CubeRoots, SpecialValues) {
    using F = TestFixture;
    using T = TypeParam;
    const T nan = F::number(F::sign | F::infinity | F::quiet | 5), signalling = F::number(F::infinity | 7),
            quieted = F::number(F::infinity | F::quiet | 7);
    const T table[][3] = {{0, 0, F::inf},      {T(-0.0), T(-0.0), -F::inf},
                          {F::inf, F::inf, 0}, {-F::inf, -F::inf, -T(0)},
                          {nan, nan, nan},     {signalling, quieted, quieted}};
    for (const std::string tier : {"", "_native"})
        for (const int width : widths)
            for (const auto &[x, root, reciprocal] : table) {
                EXPECT_EQ(pattern(F::of(F::named("cbrt", tier), x, width)), pattern(root))
                    << x << " at " << width;
                EXPECT_EQ(pattern(F::of(F::named("rcbrt", tier), x, width)), pattern(reciprocal))
                    << x << " at " << width;
            }
}

// The roots of all exact cubes of a short number are exact, also where the argument is denormal. So are
// reciprocal roots of powers of two.
TYPED_TEST(CubeRoots, ExactCubes) {
    using F = TestFixture;
    using T = TypeParam;
    const int lowest = (F::Limits::min_exponent - F::digits) / 3;
    for (int e = lowest; e < F::Limits::max_exponent / 3 - 6; ++e)
        for (const int k : {1, 3, 5, 7, 21, 35, 63}) {
            const T root = std::ldexp(T(k), e), cube = std::ldexp(T(k * k * k), 3 * e);
            for (const int width : {1, 2, 8}) {
                ASSERT_EQ(F::of("cbrt", cube, width), root);
                ASSERT_EQ(F::of("cbrt", -cube, width), -root);
                if (k == 1) ASSERT_EQ(F::of("rcbrt", -cube, width), -1 / root);
            }
        }
}

// In the middle of a part of 32 the series is 1: the native tier gives the tabulated root, cut off, and the
// default tier rounds it.
TYPED_TEST(CubeRoots, MiddlesGiveTheTable) {
    using F = TestFixture;
    using T = TypeParam;
    for (const std::string base : {"cbrt", "rcbrt"})
        for (int i = 0; i < 32; ++i)
            for (int e = -7; e < 8; ++e) {
                const T x = std::ldexp(T(65 + 2 * i), e - 6), cut = F::of(F::named(base, "_native"), x);
                const long double exact = F::exact(base, x);
                ASSERT_TRUE(cut <= exact && exact < std::nextafter(cut, F::inf)) << base << " of " << x;
                ASSERT_LE(F::ulps(F::of(base, x), exact), 0.5001) << base << " of " << x;
            }
    const T c0 = T(65) / 64, c31 = T(127) / 64;
    const auto native = [](const char *base, T x) { return pattern(F::of(F::named(base, "_native"), x)); };
    const bool single = sizeof(T) == 4;
    EXPECT_EQ(native("cbrt", c0), single ? 0x3F80A9C9 : 0x3FF01539221D4C97);
    EXPECT_EQ(native("cbrt", 2 * c0), single ? 0x3FA21B02 : 0x3FF443604B34D9B2);
    EXPECT_EQ(native("cbrt", 4 * c31), single ? 0x3FFF54E3 : 0x3FFFEA9C61E47CD3);
    EXPECT_EQ(native("rcbrt", c0), single ? 0x3F7EAE2D : 0x3FEFD5C5BF0441DA);
    EXPECT_EQ(native("rcbrt", 2 * c0), single ? 0x3F4A23D4 : 0x3FE9447A8A9335E0);
    EXPECT_EQ(native("rcbrt", 4 * c31), single ? 0x3F0055C7 : 0x3FE00AB8F9D2F374);
}

// Arguments of all exponents, half of them beside the ends of the 32 parts; denormals, of which the tiers
// give the same. Both signs.
TYPED_TEST(CubeRoots, KeepsItsBound) {
    using F = TestFixture;
    using T = TypeParam;
    using Bits = typename F::Bits;
    std::mt19937_64 random(3);
    for (int i = 0; i < 20000; ++i) {
        Bits bits = Bits(random()) & ~F::sign;
        if (i % 2) bits = (bits >> (F::digits - 5) << (F::digits - 5)) + random() % 9 - 4;
        if (i % 8 == 0) bits = (bits & ((Bits(1) << F::digits) - 1)) >> random() % F::digits;
        const T x = F::number(bits);
        if (!(x > 0 && x < F::inf)) continue;
        const int width = widths[i % 6];
        for (const std::string base : {"cbrt", "rcbrt"}) {
            const long double exact = F::exact(base, x);
            for (const std::string tier : {"", "_native"}) {
                const Family &f = F::named(base, tier);
                const T got = F::of(f, x, width);
                ASSERT_LE(F::ulps(got, exact), f.bound + 0.001) << f.name(width) << " of " << x;
                ASSERT_EQ(F::of(f, -x, width), -got) << f.name(width) << " of " << x;
            }
            if (x < F::Limits::min()) ASSERT_EQ(F::of(F::named(base, "_native"), x), F::of(base, x));
        }
    }
    EXPECT_NEAR(F::of("rcbrt", F::least), sizeof(T) == 4 ? 8.9e14 : 5.9e107, sizeof(T) == 4 ? 1e13 : 1e106);
}

} // namespace
