// Rounding, sign and selection, of float and double.
#include "harness/lane.hpp"
#include <cfenv>
#include <cmath>
#include <gtest/gtest.h>
#include <limits>

namespace {

using namespace quevar::test;
using u64 = std::uint64_t;

template <class T> class Elementwise : public testing::Test {
protected:
    using Limits = std::numeric_limits<T>;
    static constexpr T inf = Limits::infinity(), max = Limits::max(), tiny = Limits::denorm_min();
    const u64 sign = pattern(T(-0.0)), signalling = pattern(inf) + 0x123,
              quiet = pattern(Limits::quiet_NaN()), quieted = quiet + 0x123;

    static u64 bits(const char *base, std::initializer_list<u64> arguments, int width = 4) {
        return lane(family(base + std::string(sizeof(T) == 4 ? "f" : "")), width, arguments).first;
    }
};
using Elements = testing::Types<float, double>;
TYPED_TEST_SUITE(Elementwise, Elements);

TYPED_TEST(Elementwise, Rounding) {
    using T = TypeParam;
    const T whole = 1 / std::numeric_limits<T>::epsilon(); // half of it is the end of the numbers with a half
    for (T x : {T(0), this->tiny, std::nextafter(T(0.5), T(0)), T(0.5), T(1), T(1.5), T(2.5), T(3.5),
                whole / 2 - T(0.5), whole / 2 - T(1.5), whole / 2 + 1, whole + 1, this->max, this->inf})
        for (T s : {x, -x}) {
            EXPECT_EQ(this->bits("ceil", {pattern(s)}), pattern(std::ceil(s))) << s;
            EXPECT_EQ(this->bits("floor", {pattern(s)}), pattern(std::floor(s))) << s;
            EXPECT_EQ(this->bits("trunc", {pattern(s)}), pattern(std::trunc(s))) << s;
            EXPECT_EQ(this->bits("round", {pattern(s)}), pattern(std::round(s))) << s;
        }
    for (const char *base : {"ceil", "floor", "trunc", "round", "rint", "nearbyint"})
        EXPECT_EQ(this->bits(base, {this->sign | this->signalling}), this->sign | this->quieted) << base;
}

TYPED_TEST(Elementwise, CallersRoundingMode) {
    using T = TypeParam;
    const T minus_zero = T(-0.0);
    const struct {
        int mode;
        T x, expected;
    } table[] = {{FE_TONEAREST, 2.5, 2},  {FE_TONEAREST, -0.75, -1}, {FE_DOWNWARD, 2.5, 2},
                 {FE_DOWNWARD, -2.5, -3}, {FE_UPWARD, 2.25, 3},      {FE_UPWARD, -0.75, minus_zero},
                 {FE_TOWARDZERO, 2.5, 2}, {FE_TOWARDZERO, -2.75, -2}};
    for (const auto &row : table)
        for (int width : widths) {
            const auto in_mode = [&](const char *base) {
                std::fesetround(row.mode);
                const u64 got = this->bits(base, {pattern(row.x)}, width);
                std::fesetround(FE_TONEAREST);
                return got;
            };
            for (const char *base : {"rint", "nearbyint"})
                EXPECT_EQ(in_mode(base), pattern(row.expected)) << base << row.mode << ": " << row.x;
            for (const char *base : {"ceil", "floor", "trunc", "round"})
                EXPECT_EQ(in_mode(base), this->bits(base, {pattern(row.x)})) << base << row.mode;
        }
}

TYPED_TEST(Elementwise, OnlyRintRaisesInexact) {
    const u64 fraction = pattern(TypeParam(0.3));
    for (int width : widths)
        for (const std::string base : {"rint", "nearbyint"}) {
            std::feclearexcept(FE_ALL_EXCEPT);
            EXPECT_EQ(this->bits(base.c_str(), {fraction}, width), 0u);
            EXPECT_EQ(std::fetestexcept(FE_INEXACT) != 0, base == "rint") << base << " at width " << width;
        }
}

TYPED_TEST(Elementwise, SignsOfNaNsToo) {
    const u64 sign = this->sign, one = pattern(TypeParam(1)), code = sign | 0x10001;
    for (u64 x : {one, u64(0), this->signalling, this->quiet})
        for (u64 s : {u64(0), sign}) {
            EXPECT_EQ(this->bits("fabs", {x | s}), x);
            for (u64 y : {one, this->signalling})
                EXPECT_EQ(this->bits("copysign", {x | (sign ^ s), y | s}), x | s);
        }
    EXPECT_EQ(this->bits("nan", {code}), this->quiet | code);
    EXPECT_EQ(this->bits("nan", {0}), this->quiet);
}

TYPED_TEST(Elementwise, Selection) {
    using T = TypeParam;
    const T zero = 0, minus_zero = T(-0.0), inf = this->inf, tiny = this->tiny;
    const char *const bases[] = {"fmax", "fmin", "maxmag", "minmag"};
    const T table[][6] = {
        // x, y, and the results
        {-1, -2, -1, -2, -2, -1},
        {1, -1, 1, -1, 1, -1},
        {-1, 1, 1, -1, 1, -1},
        {zero, minus_zero, minus_zero, minus_zero, zero, zero},
        {minus_zero, zero, zero, zero, minus_zero, minus_zero},
        {-tiny, zero, zero, -tiny, -tiny, zero},
        {1, -inf, 1, -inf, -inf, 1},
        {-inf, inf, inf, -inf, inf, -inf},
    };
    for (int k = 0; k < 4; ++k) {
        for (const auto &row : table)
            EXPECT_EQ(this->bits(bases[k], {pattern(row[0]), pattern(row[1])}), pattern(row[2 + k]))
                << bases[k] << row[0] << ", " << row[1];
        for (u64 other : {pattern(-inf), pattern(minus_zero), pattern(tiny)})
            for (u64 nan : {this->signalling, this->quiet | this->sign}) {
                EXPECT_EQ(this->bits(bases[k], {nan, other}), other) << bases[k];
                EXPECT_EQ(this->bits(bases[k], {other, nan}), other) << bases[k];
            }
        EXPECT_EQ(this->bits(bases[k], {this->quiet, this->signalling}), this->quieted) << bases[k];
        EXPECT_EQ(this->bits(bases[k], {this->signalling, this->quiet}), this->quiet) << bases[k];
    }
}

} // namespace
