// Exponent and fraction access, of float and double.
#include "harness/lane.hpp"
#include <climits>
#include <cmath>
#include <gtest/gtest.h>
#include <limits>
#include <vector>

namespace {

using namespace quevar::test;
using u64 = std::uint64_t;

using quevar::test::pattern;
u64 pattern(int i) { return std::uint32_t(i); }

template <class T> class Exponent : public testing::Test {
protected:
    using Limits = std::numeric_limits<T>;
    static constexpr T infinity = Limits::infinity(), max = Limits::max(), least = Limits::min(),
                       tiny = Limits::denorm_min(), epsilon = Limits::epsilon();
    const u64 sign = pattern(T(-0.0)), inf = pattern(infinity), signalling = inf + 0x123,
              quiet = pattern(Limits::quiet_NaN()), quieted = quiet + 0x123;

    static Lane bits(const char *base, std::initializer_list<u64> arguments) {
        return lane(family(base + std::string(sizeof(T) == 4 ? "f" : "")), 4, arguments);
    }
};
using Elements = testing::Types<float, double>;
TYPED_TEST_SUITE(Exponent, Elements);

TYPED_TEST(Exponent, Taken) {
    using T = TypeParam;
    using Limits = std::numeric_limits<T>;
    // The ends of every binade, denormal ones too.
    for (int b = Limits::min_exponent - Limits::digits; b < Limits::max_exponent; ++b)
        for (T m : {T(1), this->epsilon - 2}) {
            const T x = std::ldexp(m, b);
            int e;
            const T s = std::frexp(x, &e);
            EXPECT_EQ(this->bits("frexp", {pattern(x)}), (Lane{pattern(s), pattern(e)})) << x;
            EXPECT_EQ(this->bits("ilogb", {pattern(x)}).first, pattern(std::ilogb(x))) << x;
            EXPECT_EQ(this->bits("logb", {pattern(x)}).first, pattern(std::logb(x))) << x;
        }
    for (u64 s : {u64(0), this->sign}) {
        const struct {
            u64 x, frexp;
            int ilogb;
            u64 logb;
        } table[] = {{s, s, INT_MIN, this->sign | this->inf},
                     {s | this->inf, s | this->inf, INT_MAX, this->inf},
                     {s | this->signalling, s | this->quieted, INT_MAX, this->quieted}};
        for (const auto &row : table) {
            EXPECT_EQ(this->bits("frexp", {row.x}), (Lane{row.frexp, 0}));
            EXPECT_EQ(this->bits("ilogb", {row.x}).first, pattern(row.ilogb));
            EXPECT_EQ(this->bits("logb", {row.x}).first, row.logb);
        }
    }
}

TYPED_TEST(Exponent, Ldexp) {
    using T = TypeParam;
    const auto ldexp = [](u64 x, int n) { return TestFixture::bits("ldexp", {x, pattern(n)}).first; };
    // Every shift, so every rounding of a denormal result, ties included.
    const int span = 2 * std::numeric_limits<T>::max_exponent + 60;
    for (T x : {T(1), T(-1.5), T(1.375), 2 - this->epsilon, -this->max, 5 * this->tiny})
        for (int n = -span; n <= span; ++n)
            EXPECT_EQ(ldexp(pattern(x), n), pattern(std::ldexp(x, n))) << x << ", " << n;
    for (int n :
         {INT_MIN, INT_MIN + 1, INT_MIN + 300, INT_MAX - 2046, INT_MAX - 254, INT_MAX, -65536, 65536}) {
        for (T x : {this->tiny, this->least, T(-1), this->max})
            EXPECT_EQ(ldexp(pattern(x), n), pattern(n < 0 ? 0 * x : x * this->infinity)) << x << ", " << n;
        for (u64 x : {u64(0), this->sign, this->inf, this->quiet}) EXPECT_EQ(ldexp(x, n), x);
        EXPECT_EQ(ldexp(this->sign | this->signalling, n), this->sign | this->quieted);
    }
}

TYPED_TEST(Exponent, Fractions) {
    using T = TypeParam;
    const T zero = 0, minus_zero = T(-0.0), inf = this->infinity, below_one = 1 - this->epsilon / 2;
    const T table[][5] = {
        // x, modf, fract
        {T(-2.75), T(-0.75), -2, T(0.25), -3},
        {-3, minus_zero, -3, zero, -3},
        {minus_zero, minus_zero, minus_zero, minus_zero, minus_zero},
        {T(-1e-20), T(-1e-20), minus_zero, below_one, -1},
        {this->tiny, this->tiny, zero, this->tiny, zero},
        {-this->max, minus_zero, -this->max, zero, -this->max},
        {inf, zero, inf, zero, inf},
        {-inf, minus_zero, -inf, minus_zero, -inf},
    };
    for (const auto &row : table) {
        EXPECT_EQ(this->bits("modf", {pattern(row[0])}), (Lane{pattern(row[1]), pattern(row[2])})) << row[0];
        EXPECT_EQ(this->bits("fract", {pattern(row[0])}), (Lane{pattern(row[3]), pattern(row[4])})) << row[0];
    }
    const u64 nan = this->sign | this->signalling, quieted = this->sign | this->quieted;
    EXPECT_EQ(this->bits("modf", {nan}), (Lane{quieted, quieted}));
    EXPECT_EQ(this->bits("fract", {nan}), (Lane{nan, nan}));
}

TYPED_TEST(Exponent, Nextafter) {
    using T = TypeParam;
    const auto nextafter = [](u64 x, u64 y) { return TestFixture::bits("nextafter", {x, y}).first; };
    std::vector<T> numbers;
    for (T x : {T(0), this->tiny, this->least - this->tiny, this->least, T(1), T(2) - this->epsilon, T(2),
                this->max, this->infinity})
        numbers.insert(numbers.end(), {x, -x});
    for (T x : numbers) {
        for (T y : numbers)
            EXPECT_EQ(nextafter(pattern(x), pattern(y)), pattern(std::nextafter(x, y))) << x << ", " << y;
        EXPECT_EQ(nextafter(this->signalling, pattern(x)), this->quieted) << x;
        EXPECT_EQ(nextafter(pattern(x), this->signalling), this->quieted) << x;
    }
    EXPECT_EQ(nextafter(this->signalling, this->quiet), this->quieted);
    EXPECT_EQ(nextafter(this->quiet, this->signalling), this->quiet);
}

} // namespace
