// hypot of float and double, at both tiers.
#include "harness/lane.hpp"
#include <cmath>
#include <gtest/gtest.h>
#include <limits>
#include <random>

namespace {

using namespace quevar::test;

template <class T> class Hypot : public testing::Test {
protected:
    using Limits = std::numeric_limits<T>;
    using Bits = std::conditional_t<sizeof(T) == 4, std::uint32_t, std::uint64_t>;
    static constexpr int digits = Limits::digits - 1;
    static constexpr T inf = Limits::infinity(), least = Limits::denorm_min(), most = Limits::max();
    static constexpr Bits infinity = std::bit_cast<Bits>(inf), sign = std::bit_cast<Bits>(T(-0.0)),
                          quiet = Bits(1) << (digits - 1);

    static const Family &tier(const std::string &name) {
        return family(sizeof(T) == 4 ? "hypotf" + name : "hypot" + name);
    }
    static T number(std::uint64_t bits) { return std::bit_cast<T>(Bits(bits)); }
    static T of(const std::string &name, T x, T y, int width = 4) {
        return number(lane(tier(name), width, {pattern(x), pattern(y)}).first);
    }
    static double ulps(T got, long double exact) {
        const int e = std::max(std::ilogb(T(exact)), Limits::min_exponent - 1);
        return double(std::ldexp(std::fabs(got - exact), digits - e));
    }
};
using Elements = testing::Types<float, double>;
TYPED_TEST_SUITE(Hypot, Elements);

TYPED_TEST(Hypot, SpecialValues) {
    using F = TestFixture;
    using T = TypeParam;
    const T nan = F::number(F::infinity | F::quiet | 5),
            other = F::number(F::sign | F::infinity | F::quiet | 6);
    const T signalling = F::number(F::infinity | 7), quieted = F::number(F::infinity | F::quiet | 7);
    // clang-format off
    const T table[][3] = {
        {0, 0, 0}, {T(-0.0), T(-0.0), 0}, {F::inf, 1, F::inf}, {1, -F::inf, F::inf}, {-F::inf, 0, F::inf},
        {F::inf, nan, F::inf}, {nan, -F::inf, F::inf}, {signalling, F::inf, F::inf},
        {-F::inf, F::inf, F::inf}, {nan, 2, nan}, {2, other, other}, {nan, other, nan}, {other, nan, other},
        {signalling, other, quieted}, {0, signalling, quieted}, {F::most, F::most, F::inf},
        {F::least, 0, F::least}, {0, -F::least, F::least}, {3 * F::least, 4 * F::least, 5 * F::least},
    };
    // clang-format on
    for (const std::string name : {"", "_native"})
        for (const auto &[x, y, expected] : table)
            for (const int width : widths)
                EXPECT_EQ(pattern(F::of(name, x, y, width)), pattern(expected))
                    << F::tier(name).name(width) << " of " << x << ", " << y;
}

// Pythagorean triples at every power of two. The rare lanes are exact; the native tier of float has its
// estimate up to the ends of the range of squares.
TYPED_TEST(Hypot, TriplesAtAnyScale) {
    using F = TestFixture;
    using T = TypeParam;
    for (int e = F::Limits::min_exponent; e < F::Limits::max_exponent - 7; ++e)
        for (const auto &[a, b, c] : {std::tuple{3, 4, 5}, {20, 21, 29}, {-65, 72, 97}, {1, 0, 1}}) {
            const T x = std::ldexp(T(a), e), y = std::ldexp(T(b), e), expected = std::ldexp(T(c), e);
            const bool rare = std::abs(e) > 41, native_rare = sizeof(T) == 4 ? std::abs(e) > 72 : rare;
            ASSERT_LE(F::ulps(F::of("", x, y), expected), rare ? 0 : 1.2) << x << ", " << y;
            ASSERT_LE(F::ulps(F::of("_native", y, x), expected), native_rare ? 0 : F::tier("_native").bound)
                << x << ", " << y;
        }
}

// Both sides of the seams of the main paths, and arguments of all relations of size.
TYPED_TEST(Hypot, KeepsItsBound) {
    using F = TestFixture;
    using T = TypeParam;
    std::mt19937_64 random(2);
    for (int i = 0; i < 60000; ++i) {
        const bool seam = i % 2;
        T x = std::ldexp(T(1 + double(random() >> 11) * 0x1p-53),
                         seam ? int(random() % 6) - 36 + (random() % 2 ? 66 : 0) : int(random() % 200) - 100);
        T y = std::ldexp(x, -int(random() % 40)) * T(double(random() >> 11) * 0x1p-53);
        if (random() % 2) std::swap(x, y);
        const long double exact = std::hypot((long double)x, (long double)y);
        for (const std::string name : {"", "_native"}) {
            const T got = F::of(name, x, y);
            ASSERT_LE(F::ulps(got, exact), F::tier(name).bound + 0.001)
                << F::tier(name) << " of " << x << ", " << y;
            ASSERT_EQ(F::of(name, -x, y), got);
        }
        // Where the squares leave the floats the lane is rare: a float is rounded once, a double nearly so.
        if (std::fabs(std::log2(double(exact))) > 34)
            ASSERT_LE(F::ulps(F::of("", x, y), exact), sizeof(T) == 4 ? 0.501 : 1) << x << ", " << y;
    }
}

// The tiers of float part where the exponent of the sum of squares leaves that of floats, not before.
TEST(Hypotf, NativeKeepsItsEstimateBeyondTheDefault) {
    const std::uint64_t x = pattern(1e10f), zero = 0;
    EXPECT_EQ(result("hypotf", {x, zero}), x);
    EXPECT_NE(result("hypotf_native", {x, zero}), x);
}

} // namespace
