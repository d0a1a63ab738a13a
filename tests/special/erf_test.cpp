// erf and erfc of floats and doubles, at both tiers.
#include "harness/lane.hpp"
#include <cmath>
#include <gtest/gtest.h>
#include <mpfr.h>
#include <random>
#include <vector>

namespace {

using namespace quevar::test;

const char *const tiers[] = {"", "_native"};

template <class T> class ErrorFunctions : public testing::Test {
protected:
    using Bits = std::conditional_t<sizeof(T) == 4, std::uint32_t, std::uint64_t>;
    static constexpr bool single = sizeof(T) == 4;
    static constexpr T inf = std::numeric_limits<T>::infinity(), least = std::numeric_limits<T>::denorm_min();
    static constexpr Bits infinity = std::bit_cast<Bits>(inf), sign = std::bit_cast<Bits>(T(-0.0)),
                          quiet = Bits(1) << (std::numeric_limits<T>::digits - 2);
    // From here on erfc is rare: at the float itself the least number, else +0.
    static constexpr T end = single ? T(0x1.41bbf6p3) : T(0x1.b39dc41e48bfdp4);
    static constexpr T factor = single ? T(0x1.20dd76p0) : T(0x1.20dd750429b6dp0); // 2/sqrt(pi)

    static const Family &tier(const std::string &base, const std::string &name) {
        return family(base + (single ? "f" : "") + name);
    }
    static T number(std::uint64_t bits) { return std::bit_cast<T>(Bits(bits)); }
    static T of(const Family &f, T x, int width = 4) { return number(lane(f, width, {pattern(x)}).first); }

    // The distance from the exact value in units of the exact value's last place.
    static double ulps(const std::string &base, T x, T got) {
        mpfr_t exact;
        mpfr_init2(exact, 150);
        mpfr_set_d(exact, x, MPFR_RNDN);
        (base == "erf" ? mpfr_erf : mpfr_erfc)(exact, exact, MPFR_RNDN);
        const int digits = std::numeric_limits<T>::digits, lowest = single ? -149 : -1074;
        const int unit =
            mpfr_zero_p(exact) ? lowest : std::max<int>(int(mpfr_get_exp(exact)) - digits, lowest);
        mpfr_sub_d(exact, exact, got, MPFR_RNDN);
        mpfr_mul_2si(exact, exact, -unit, MPFR_RNDN);
        const double error = std::fabs(mpfr_get_d(exact, MPFR_RNDN));
        mpfr_clear(exact);
        return error;
    }
};
using Elements = testing::Types<float, double>;
TYPED_TEST_SUITE(ErrorFunctions, Elements);

TYPED_TEST(ErrorFunctions, SpecialValues) {
    using F = TestFixture;
    using T = TypeParam;
    const T tiny = F::single ? T(0x1p-100) : T(0x1p-900), greatest = std::numeric_limits<T>::max();
    const struct {
        T x, erf, erfc;
    } table[] = {
        {0, 0, 1},
        {T(-0.0), T(-0.0), 1},
        {F::inf, 1, 0},
        {-F::inf, -1, 2},
        {greatest, 1, 0},
        {-greatest, -1, 2},
        {tiny, tiny * F::factor, 1},
        {-tiny, -tiny * F::factor, 1},
        {F::least, F::least, 1},
        {-7 * F::least, -8 * F::least, 1},
        {std::nextafter(F::end, F::inf), 1, 0},
        {F::end, 1, F::single ? F::least : 0},
        {-F::end, -1, 2},
    };
    for (const std::string name : tiers)
        for (const int width : widths) {
            for (const auto &[x, erf, erfc] : table) {
                // erff_native is a polynomial, near zero only nearly 2/sqrt(pi).
                if (!F::single || name.empty() || std::fabs(x) != tiny) {
                    EXPECT_EQ(pattern(F::of(F::tier("erf", name), x, width)), pattern(erf))
                        << F::tier("erf", name).name(width) << " of " << x;
                }
                EXPECT_EQ(pattern(F::of(F::tier("erfc", name), x, width)), pattern(erfc))
                    << F::tier("erfc", name).name(width) << " of " << x;
            }
            for (const std::string base : {"erf", "erfc"})
                for (const auto nan : {F::infinity | 5, F::sign | F::infinity | 6, F::infinity | F::quiet | 7,
                                       F::sign | F::infinity | F::quiet})
                    EXPECT_EQ(lane(F::tier(base, name), width, {nan}).first, nan | F::quiet)
                        << F::tier(base, name).name(width);
        }
}

// On the grid the tables answer alone: the results are the nearest numbers but where the table's rounding is not
// the last one, for negative arguments and denormal results.
TYPED_TEST(ErrorFunctions, NearestOnTheGrid) {
    using F = TestFixture;
    using T = TypeParam;
    const T denormal = F::single ? T(9.19) : T(26.54); // erfc from here on
    const struct {
        const char *base, *tier;
        double step;
    } grids[] = {
        {"erf", "", 1 / 128.},
        {"erf", "_native", F::single ? 10 : 1 / 128.}, // no grid, and 1 at 10
        {"erfc", "", F::single ? 1 / 64. : 1 / 128.},
        {"erfc", "_native", F::single ? 1 / 32. : 1 / 64.},
    };
    for (const auto &[base, tier, step] : grids) {
        const Family &f = F::tier(base, tier);
        const bool odd = base == std::string("erf");
        for (T x = T(step); x < F::end; x += T(step)) {
            ASSERT_LE(F::ulps(base, x, F::of(f, x)), odd || x < denormal ? 0.5 : 0.75) << f << " of " << x;
            ASSERT_LE(F::ulps(base, -x, F::of(f, -x)), odd ? 0.5 : 0.75) << f << " of " << -x;
        }
    }
}

// Halfway between grid points, where the steps are longest, at all sizes, and in the tails.
TYPED_TEST(ErrorFunctions, KeepTheirBounds) {
    using F = TestFixture;
    using T = TypeParam;
    std::mt19937_64 random(9);
    std::vector<T> list;
    for (double x = 1 / 256.; x < 28; x += 5 / 128.)
        for (const T y : {T(x), std::nextafter(T(x), T(0)), std::nextafter(T(x), T(30))}) list.push_back(y);
    for (int i = 0; i < 2000; ++i) {
        const double u = double(random() >> 11) * 0x1p-53;
        list.push_back(T(4 * u));
        list.push_back(T(u * F::end));
        list.push_back(std::ldexp(T(1 + u), -int(random() % (F::single ? 150 : 1075))));
    }
    for (const T x : list)
        for (const std::string name : tiers) {
            const Family &erf = F::tier("erf", name), &erfc = F::tier("erfc", name);
            const T got = F::of(erf, x);
            ASSERT_LE(F::ulps("erf", x, got), erf.bound) << erf << " of " << x;
            ASSERT_EQ(F::of(erf, -x), -got) << erf << " of " << x;
            for (const T y : {x, -x})
                ASSERT_LE(F::ulps("erfc", y, F::of(erfc, y)), erfc.bound) << erfc << " of " << y;
        }
}

// The last rows of erfc are zeros, which the coarser grid of the native tier reaches before the rare path.
TEST(Erfcf, NativeEndsAtItsLastGridPoint) {
    const float last = 0x1.418p3, below = std::nextafter(last, 0.f); // 10.046875, half a step before 10.0625
    EXPECT_EQ(result("erfcf_native", {pattern(last)}), pattern(0.f));
    EXPECT_NE(result("erfcf_native", {pattern(below)}), pattern(0.f));
    EXPECT_NE(result("erfcf", {pattern(last)}), pattern(0.f));
}

// The square of the argument decides, not the argument's distance from a grid point.
TEST(Erff, NativeIsOneFromItsLimitOn) {
    for (const std::uint32_t x : {0x40260275u, 0x40260276u, 0x40260277u, 0x40260278u, 0x40260279u}) {
        const float y = std::bit_cast<float>(x);
        const bool one = y * y >= 6.72832012f;
        EXPECT_EQ(result("erff_native", {x}) == pattern(1.f), one) << y;
        EXPECT_EQ(result("erff_native", {pattern(-y)}) == pattern(-1.f), one) << y;
    }
}

} // namespace
