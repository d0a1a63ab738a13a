// fmod, remainder and remquo of float and double.
#include "harness/lane.hpp"
#include <cmath>
#include <gtest/gtest.h>
#include <limits>
#include <random>

namespace {

using namespace quevar::test;

template <class T> class Remainder : public testing::Test {
protected:
    using Limits = std::numeric_limits<T>;
    using Bits = std::conditional_t<sizeof(T) == 4, std::uint32_t, std::uint64_t>;
    static T number(std::uint64_t bits) { return std::bit_cast<T>(Bits(bits)); }

    static void expect(std::uint64_t x, std::uint64_t y, std::uint64_t fmod, std::uint64_t nearest, int n) {
        const auto f = [](const char *base) -> const Family & {
            return family(base + std::string(sizeof(T) == 4 ? "f" : ""));
        };
        const std::string at = to_string(f("fmod").a, x) + ", " + to_string(f("fmod").a, y);
        EXPECT_EQ(lane(f("fmod"), 4, {x, y}).first, fmod) << at;
        EXPECT_EQ(lane(f("remainder"), 4, {x, y}).first, nearest) << at;
        EXPECT_EQ(lane(f("remquo"), 4, {x, y}), (Lane{nearest, std::uint32_t(n)})) << at;
    }
    // The C library is exact too; n is x / y rounded.
    static void expect(T x, T y, int n) {
        expect(pattern(x), pattern(y), pattern(std::fmod(x, y)), pattern(std::remainder(x, y)), n);
    }
};
using Elements = testing::Types<float, double>;
TYPED_TEST_SUITE(Remainder, Elements);

TYPED_TEST(Remainder, Table) {
    using T = TypeParam;
    using Limits = std::numeric_limits<T>;
    const T z = T(-0.0), inf = Limits::infinity(), max = Limits::max(), tiny = Limits::denorm_min();
    const struct {
        T x, y, fmod, nearest;
        int n;
    } table[] = {
        {6, 3, 0, 0, 2},
        {-6, 3, z, z, -2},
        {5, 2, 1, 1, 2},
        {7, 2, 1, -1, 4},
        {-5, 2, -1, -1, -2},
        {5, -2, 1, 1, -2},
        {2.5, 1, 0.5, 0.5, 2},
        {3.5, 1, 0.5, -0.5, 4},
        {1, 3, 1, 1, 0},
        {-2, 3, -2, 1, -1},
        {z, 3, z, z, 0},
        {z, tiny, z, z, 0},
        {5, inf, 5, 5, 0},
        {-max, inf, -max, -max, 0},
        {max, max, 0, 0, 1},
        {-max, max, z, z, -1},
        {max, tiny, 0, 0, 0},
        {max / 2, max, max / 2, max / 2, 0},
        {-max, -1, z, z, 0},
        {tiny, 2 * tiny, tiny, tiny, 0},
        {3 * tiny, 2 * tiny, tiny, -tiny, 2},
        {5 * tiny, 2 * tiny, tiny, tiny, 2},
    };
    for (const auto &[x, y, fmod, nearest, n] : table)
        this->expect(pattern(x), pattern(y), pattern(fmod), pattern(nearest), n);
}

TYPED_TEST(Remainder, NaNs) {
    using T = TypeParam;
    using Limits = std::numeric_limits<T>;
    const std::uint64_t inf = pattern(Limits::infinity()), sign = pattern(T(-0.0)), one = pattern(T(1)),
                        big = pattern(Limits::max() / 4);
    const std::uint64_t quiet = 1ull << (Limits::digits - 2), a = sign | (inf + 5), b = inf + quiet + 9,
                        nan = sign | inf | quiet;
    const std::uint64_t table[][3] = {
        {a, one, a | quiet}, {one, a, a | quiet}, {a, b, a | quiet},  {b, a, b},       {a, sign, a | quiet},
        {inf, b, b},         {a, big, a | quiet}, {b, sign | big, b}, {inf, one, nan}, {sign | inf, big, nan},
        {inf, inf, nan},     {one, 0, nan},       {0, sign, nan}};
    for (const auto &[x, y, r] : table) this->expect(x, y, r, r, 0);
}

// From denormals to the largest number, near to the limits of the main path and beyond; of x, a whole
// multiple of y and a rest, the quotient is known.
TYPED_TEST(Remainder, AnyPair) {
    using T = TypeParam;
    using Integer = unsigned __int128;
    std::mt19937_64 random(1);
    const int spare = 64 - std::numeric_limits<T>::digits,
              lowest = std::numeric_limits<T>::min_exponent - 64 + spare;
    for (int i = 0; i < 40000; ++i) {
        const std::uint64_t a = random() >> spare >> random() % 20,
                            b = (random() >> spare >> random() % 20) | 1;
        const int up = int(random() % (i % 2 ? 64 : 20)),
                  scale = int(random() % 100) + (i % 4 ? -20 : lowest);
        const Integer x = Integer(a) << up, n = x / b, twice = x % b * 2;
        const std::uint32_t low = std::uint32_t(n + (twice > b || (twice == b && n % 2))) & 0x7FFFFFFF;
        const T X = std::ldexp(T(a), up + scale), Y = std::ldexp(T(b), scale);
        if (X <= std::numeric_limits<T>::max()) this->expect(-X, Y, -int(low));
    }
}

// x / y is so near to a whole number, or to a tie, that it is rounded to it or across.
TYPED_TEST(Remainder, QuotientsThatRoundAcross) {
    using T = TypeParam;
    std::mt19937_64 random(2);
    for (int i = 0; i < 20000; ++i) {
        const T y = this->number(pattern(T(1)) + (random() >> (65 - std::numeric_limits<T>::digits)));
        const T middle = y * T(random() % 4095 + 1) / 2;
        for (const T x : {middle, std::nextafter(middle, T(0)), std::nextafter(middle, 2 * middle)})
            this->expect(x, -y, -int(std::lrint((x - (long double)std::remainder(x, y)) / y)));
    }
}

} // namespace
