// tgamma, lgamma and lgammar of floats and doubles.
#include "gamma_scalar.hpp"
#include "harness/lane.hpp"
#include <cmath>
#include <gtest/gtest.h>
#include <mpfr.h>
#include <random>
#include <vector>

namespace {

using namespace quevar::test;

template <class T> T value_of(std::uint64_t bits) {
    if constexpr (sizeof(T) == 4) return std::bit_cast<float>(static_cast<std::uint32_t>(bits));
    else return std::bit_cast<double>(bits);
}
template <class T> std::string named(std::string base) { return base + (sizeof(T) == 4 ? "f" : ""); }
template <class T> T call(const std::string &base, T x, int width = 4) {
    return value_of<T>(lane(family(named<T>(base)), width, {pattern(x)}).first);
}

// The distance from the exact value in units of the result's last place, and the sign of gamma(x).
struct Exact {
    double error;
    int sign;
};
template <class T> Exact compare(const std::string &base, T x, T got) {
    mpfr_t exact, last_place;
    mpfr_inits2(200, exact, last_place, nullptr);
    mpfr_set_d(exact, x, MPFR_RNDN);
    int sign = 1;
    if (base == "tgamma") mpfr_gamma(exact, exact, MPFR_RNDN);
    else mpfr_lgamma(exact, &sign, exact, MPFR_RNDN);
    const int digits = sizeof(T) == 4 ? 24 : 53, least = sizeof(T) == 4 ? -149 : -1074;
    const int unit = mpfr_zero_p(exact) ? least : std::max<int>(mpfr_get_exp(exact) - digits, least);
    mpfr_sub_d(exact, exact, got, MPFR_RNDN);
    mpfr_mul_2si(exact, exact, -unit, MPFR_RNDN);
    const double error = std::fabs(mpfr_get_d(exact, MPFR_RNDN));
    mpfr_clears(exact, last_place, nullptr);
    return {error, sign};
}

template <class T> class Gamma : public testing::Test {};
using Types = testing::Types<float, double>;
TYPED_TEST_SUITE(Gamma, Types);

TYPED_TEST(Gamma, SpecialValues) {
    using T = TypeParam;
    constexpr bool f = sizeof(T) == 4;
    const T inf = INFINITY, tiny = f ? 0x1p-128 : 0x1p-1024;
    const std::uint64_t quiet_bit = f ? 0x00400000 : 0x0008000000000000, nan = pattern(inf) | quiet_bit,
                        default_nan = pattern(-inf) | quiet_bit, signalling = pattern(inf) | 5,
                        infinity = pattern(inf), one = 1, minus = 0xFFFFFFFF;
    const T top = f ? 35.04010009765625 : 171.62437695630274; // the least whose gamma is infinite
    const T large = f ? std::bit_cast<float>(0x7C44AF8E)
                      : std::nextafter(std::bit_cast<double>(0x7F5754D9278B51A7), INFINITY);
    const struct {
        std::uint64_t x, gamma, lgamma, sign;
    } table[] = {
        {infinity, infinity, infinity, one},
        {pattern(-inf), default_nan, infinity, one},
        {nan | 3, nan | 3, nan | 3, one},
        {signalling, signalling | quiet_bit, signalling | quiet_bit, one},
        {pattern(T(0)), infinity, infinity, one},
        {pattern(-T(0)), pattern(-inf), infinity, minus},
        {pattern(T(1)), pattern(T(1)), 0, one},
        {pattern(T(2)), pattern(T(1)), 0, one},
        {pattern(T(-1)), default_nan, infinity, one},
        {pattern(T(-2)), default_nan, infinity, one},
        {pattern(T(-1e6)), default_nan, infinity, one},
        {pattern(T(-1e30)), default_nan, infinity, one},
        {pattern(tiny), infinity, pattern(call<T>("lgamma", tiny)), one},
        {pattern(-tiny), pattern(-inf), pattern(call<T>("lgamma", tiny)), minus},
        {pattern(top), infinity, pattern(call<T>("lgamma", top)), one},
        {pattern(large), infinity, infinity, one},
        {pattern(T(-200.5)), pattern(-T(0)), pattern(call<T>("lgamma", T(-200.5))), minus},
        {pattern(T(-201.5)), pattern(T(0)), pattern(call<T>("lgamma", T(-201.5))), one},
    };
    for (const int width : widths)
        for (const auto &row : table) {
            const std::string x = to_string(f ? Type::f32 : Type::f64, row.x);
            EXPECT_EQ(lane(family(named<T>("tgamma")), width, {row.x}).first, row.gamma)
                << width << " of " << x;
            EXPECT_EQ(lane(family(named<T>("lgamma")), width, {row.x}).first, row.lgamma)
                << width << " of " << x;
            EXPECT_EQ(lane(family(named<T>("lgammar")), width, {row.x}), (Lane{row.lgamma, row.sign}))
                << width << " of " << x;
        }
    EXPECT_TRUE(std::isfinite(call<T>("tgamma", std::nextafter(top, T(0)))));
    EXPECT_TRUE(std::isfinite(call<T>("lgamma", std::nextafter(large, T(0)))));
    EXPECT_TRUE(std::isfinite(call<T>("tgamma", std::nextafter(tiny, T(1)))));
}

TYPED_TEST(Gamma, WholeNumbersGiveFactorials) {
    using T = TypeParam;
    T factorial = 1;
    for (int n = 1; n <= (sizeof(T) == 4 ? 13 : 22); n++) { // all of these are exact
        EXPECT_EQ(call<T>("tgamma", T(n)), factorial) << n;
        factorial *= T(n);
    }
}

// Both sides of every place where the course of a computation changes: the rows of each table, the zeros of lgamma,
// the limits of the negative side.
template <class T> std::vector<T> seams() {
    std::vector<T> x;
    const auto add = [&](double v) {
        T below = T(v), above = T(v);
        for (int i = 0; i < 3;
             i++, below = std::nextafter(below, T(-1e9)), above = std::nextafter(above, T(1e9)))
            x.insert(x.end(), {below, above});
    };
    for (int i = -190; i <= 180; i++)
        for (const double part : {0., 0.125, 0.25, 0.5, 0.75, 0.875}) add(i + part);
    for (int k = -3; k < 14; k++)
        for (int j = 0; j < 16; j++) add(std::ldexp(1 + j / 16., k));
    for (const double v : {-2.4570247382208006,
                           -2.7476826467274127,
                           -3.14358088834998,
                           -3.955294284858598,
                           -4.039361839740537,
                           -4.991544640560048,
                           -5.0082181683225935,
                           -5.998607480080875,
                           -6.001385294453155,
                           -6.999801507890638,
                           -7.000198333407325,
                           -7.999975197095821,
                           -8.000024800270682,
                           -8.999997244250977,
                           -9.000002755714823,
                           -9.99999972442663,
                           -10.000000275573013,
                           -10.99999997494789,
                           -11.000000025052106,
                           -11.999999997912324,
                           -12.000000002087676,
                           -12.99999999983941,
                           -13.00000000016059,
                           -13.99999999998853,
                           -14.00000000001147,
                           -14.999999999999236,
                           -511.5,
                           -512.5,
                           -8191.5,
                           -8192.5}) {
        add(v);
        for (const double relative : {1e-3, 1e-5, 1e-8, 1e-12})
            add(v * (1 - relative)), add(v * (1 + relative));
    }
    for (int k = sizeof(T) == 4 ? -126 : -1022; k < -3; k += 7)
        add(std::ldexp(1.3, k)), add(-std::ldexp(1.3, k));
    return x;
}

TYPED_TEST(Gamma, KeepsItsBoundAtTheSeams) {
    using T = TypeParam;
    for (const std::string base : {"tgamma", "lgamma"}) {
        const double bound = family(named<T>(base)).bound;
        int checked = 0;
        for (const T x : seams<T>()) {
            const T got = call<T>(base, x);
            if (!std::isfinite(got)) continue;
            checked++;
            const Exact exact = compare(base, x, got);
            ASSERT_LE(exact.error, bound)
                << base << " of " << to_string(sizeof(T) == 4 ? Type::f32 : Type::f64, pattern(x));
            if (base == "lgamma") {
                const Lane r = lane(family(named<T>("lgammar")), 4, {pattern(x)});
                ASSERT_EQ(r.first, pattern(got)) << x;
                ASSERT_EQ(static_cast<std::int32_t>(r.second), exact.sign) << x;
            }
        }
        EXPECT_GT(checked, 5000) << base;
    }
}

// What the vectors settle has the bits that the scalar form gives: also next to the middle between two numbers, where a
// bound that is too narrow shows.
TYPED_TEST(Gamma, VectorsHaveTheScalarFormsBits) {
    using T = TypeParam;
    std::mt19937_64 random{20261123};
    for (int i = 0; i < 60000; i++) {
        const T x = T(std::uniform_real_distribution(0.1, i % 4 ? 22. : 600.)(random));
        ASSERT_EQ(pattern(call<T>("lgamma", x)), pattern(scalar_lgamma(x))) << x;
        if constexpr (sizeof(T) == 8)
            if (x < 171) ASSERT_EQ(pattern(call<T>("tgamma", x)), pattern(scalar_tgamma(x))) << x;
    }
}

// The extended precision that doubles need does not depend on the caller's. (`invoke` sees that the control word comes
// back as it was.)
TEST(Gamma, CallersPrecisionControl) {
    for (const std::string base : {"tgamma", "lgamma", "lgammar"})
        for (const double x : {-20.3, -15.7, -5.5, -0.3, 0.01, 100.25, 0x1.08p0, 170.1}) {
            const Lane usual = lane(family(base), 4, {pattern(x)});
            for (const unsigned short precision : {0x000, 0x200}) { // of a float, of a double
                unsigned short word;
                asm volatile("fnstcw %0" : "=m"(word));
                const unsigned short lowered = (word & ~0x300) | precision;
                asm volatile("fldcw %0" : : "m"(lowered));
                const Lane other = lane(family(base), 4, {pattern(x)});
                asm volatile("fldcw %0" : : "m"(word));
                EXPECT_EQ(other, usual) << base << " of " << x;
            }
        }
}

} // namespace
