// Integer division beside the processor's.
#include "harness/families.hpp"
#include <gtest/gtest.h>
#include <random>
#include <set>
#include <vector>

namespace {

using namespace quevar::tool;
using Pair = std::pair<std::uint32_t, std::uint32_t>;

Pair divided(bool is_signed, std::uint32_t x, std::uint32_t y) {
    if (y == 0) return {is_signed ? 0x80000000 : 0, x};
    if (!is_signed) return {x / y, x % y};
    const std::int64_t X = std::int32_t(x), Y = std::int32_t(y);
    return {std::uint32_t(X / Y), std::uint32_t(X % Y)};
}

class Intdiv : public testing::TestWithParam<Family> {
protected:
    std::vector<Pair> pool;
    std::mt19937_64 random{99};

    void edges() {
        std::set<std::uint32_t> edge;
        for (int k = 0; k < 32; ++k)
            for (int d = -2; d <= 2; ++d)
                edge.insert({(1u << k) + d, -(1u << k) + d, 3u << k, UINT32_MAX >> k});
        for (auto x : edge)
            for (auto y : edge) pool.push_back({x, y});
    }
    // The quotients that are hardest to cut: of multiples of y and their neighbours.
    Pair near_multiple() {
        const std::uint32_t y = random() >> (32 + random() % 32), sign = random() % 2 ? -1 : 1;
        const std::uint32_t q = y ? UINT32_MAX / y : 0;
        return {sign * (q - std::uint32_t(random() % 3 ? 0 : random() % (q + 1ull))) * y + random() % 3 - 1,
                y};
    }
};

TEST_P(Intdiv, AgreesWithTheProcessor) {
    const Family &f = GetParam();
    const std::string base = f.base;
    edges();
    for (int n = 0; n < 200000; ++n)
        pool.push_back(n % 2 ? near_multiple() : Pair(random() >> random() % 32, random() >> random() % 32));
    for (std::size_t n = 0; n + 16 <= pool.size(); n += 16) {
        std::uint32_t x[16], y[16], first[16], second[16];
        for (int i = 0; i < 16; ++i) std::tie(x[i], y[i]) = pool[n + i];
        const void *arguments[] = {x, y};
        invoke(f, 16, arguments, first, second);
        for (int i = 0; i < 16; ++i) {
            const auto [quotient, remainder] = divided(f.a == Type::i32, x[i], y[i]);
            if (base.ends_with("rem") && !base.ends_with("divrem")) {
                ASSERT_EQ(first[i], remainder) << x[i] << " by " << y[i];
                continue;
            }
            ASSERT_EQ(first[i], quotient) << x[i] << " by " << y[i];
            if (base.ends_with("divrem")) ASSERT_EQ(second[i], remainder) << x[i] << " by " << y[i];
        }
    }
}

std::vector<Family> divisions() {
    std::vector<Family> found;
    for (const auto &f : families())
        if (!is_float(f.a) && f.shape != Shape::unary) found.push_back(f);
    return found;
}
INSTANTIATE_TEST_SUITE_P(Families, Intdiv, testing::ValuesIn(divisions()),
                         [](const auto &info) { return info.param.name(); });

TEST(IntdivValues, WidthOne) {
    EXPECT_EQ(divisions().size(), 6u);
    EXPECT_EQ(__quevar_idiv1(-7, 2), -3);
    EXPECT_EQ(__quevar_irem1(-7, 2), -1);
    EXPECT_EQ(__quevar_idiv1(INT32_MIN, INT32_MAX), -1);
    EXPECT_EQ(__quevar_idiv1(INT32_MIN, -1), INT32_MIN);
    EXPECT_EQ(__quevar_irem1(INT32_MIN, -1), 0);
    EXPECT_EQ(__quevar_udiv1(UINT32_MAX, 1), UINT32_MAX);
    // Packed, the quotient in the low half; nothing traps.
    EXPECT_EQ(__quevar_idivrem1(-7, 2), std::int64_t(0xFFFFFFFF'FFFFFFFD));
    EXPECT_EQ(__quevar_idivrem1(5, 0), 0x5'80000000);
    EXPECT_EQ(__quevar_udivrem1(5, 0), 0x5'00000000u);
}

} // namespace
