// fdim of float and double.
#include "harness/lane.hpp"
#include <gtest/gtest.h>
#include <limits>

namespace {

using namespace quevar::test;

template <class T> class Fdim : public testing::Test {
protected:
    using Limits = std::numeric_limits<T>;
    static constexpr T inf = Limits::infinity(), max = Limits::max(), tiny = Limits::denorm_min();
    static constexpr std::uint64_t quiet_bit = sizeof(T) == 4 ? 1u << 22 : 1ull << 51;
    static std::uint64_t fdim(std::uint64_t x, std::uint64_t y) {
        return result(sizeof(T) == 4 ? "fdimf" : "fdim", {x, y});
    }
};
using Elements = testing::Types<float, double>;
TYPED_TEST_SUITE(Fdim, Elements);

TYPED_TEST(Fdim, Numbers) {
    using T = TypeParam;
    const T inf = this->inf, max = this->max, tiny = this->tiny;
    const T table[][3] = {
        {3, 1, 2},       {1, 3, 0},        {1, 1, 0},        {0, T(-0.0), 0},
        {T(-0.0), 0, 0}, {max, -max, inf}, {tiny, 0, tiny},  {2 * tiny, tiny, tiny},
        {-1, -inf, inf}, {inf, 1, inf},    {inf, -inf, inf}, {inf, inf, 0},
        {-inf, -inf, 0}, {-inf, 1, 0},     {1, inf, 0},
    };
    for (const auto &[x, y, expected] : table)
        EXPECT_EQ(this->fdim(pattern(x), pattern(y)), pattern(expected)) << x << ", " << y;
}

TYPED_TEST(Fdim, NaNsAreQuietedAndTheSecondWins) {
    using T = TypeParam;
    const std::uint64_t inf = pattern(this->inf), one = pattern(T(1)), sign = pattern(T(-0.0));
    const std::uint64_t signalling = inf + 0x123, quiet = inf + this->quiet_bit + 0x456;
    const std::uint64_t quieted = signalling + this->quiet_bit;
    for (std::uint64_t other : {one, sign | one, inf, sign | inf, std::uint64_t(0)}) {
        EXPECT_EQ(this->fdim(signalling, other), quieted);
        EXPECT_EQ(this->fdim(other, sign | signalling), sign | quieted);
        EXPECT_EQ(this->fdim(sign | quiet, other), sign | quiet);
    }
    EXPECT_EQ(this->fdim(signalling, quiet), quiet);
    EXPECT_EQ(this->fdim(quiet, signalling), quieted);
}

} // namespace
