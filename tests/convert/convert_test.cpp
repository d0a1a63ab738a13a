// Conversions beside exact arithmetic.
#include "harness/families.hpp"
#include <bit>
#include <cfenv>
#include <cmath>
#include <gtest/gtest.h>
#include <limits>
#include <random>
#include <vector>

namespace {

using namespace quevar::tool;
using std::uint64_t;

constexpr int rounding[] = {FE_TONEAREST, FE_DOWNWARD, FE_UPWARD, FE_TOWARDZERO};
constexpr const char *modes[] = {"rte", "rtn", "rtp", "rtz"};

struct Conversion {
    const Family &f;
    const std::string base = f.base;
    const bool saturate = base.ends_with("sat") && !base.ends_with("nosat");
    int mode() const {
        for (int m = 0; m < 4; ++m)
            if (base.find(modes[m]) != base.npos) return rounding[m];
        throw std::runtime_error(base + " names no mode");
    }
    // What f makes of x; a result of 32 bits lies in the lower half.
    uint64_t expected(uint64_t x) const {
        if (!is_float(f.r)) return to_integer(value_of(f.a, x));
        if (is_float(f.a)) return to_float(value_of(f.a, x));
        const bool is_signed = f.a == Type::i32 || f.a == Type::i64;
        const auto wide = f.a == Type::i32 ? int64_t(int32_t(x)) : int64_t(x);
        const bool negative = is_signed && wide < 0;
        return from_integer(negative, negative ? -uint64_t(wide) : x);
    }

private:
    uint64_t to_integer(double x) const {
        const bool is_signed = f.r == Type::i32 || f.r == Type::i64;
        const int bits = 8 * size_of(f.r);
        const auto limit = (__int128)1 << (bits - is_signed), least = is_signed ? -limit : 0;
        double r = mode() == FE_TONEAREST  ? std::nearbyint(x)
                   : mode() == FE_DOWNWARD ? std::floor(x)
                   : mode() == FE_UPWARD   ? std::ceil(x)
                                           : std::trunc(x);
        if (!is_signed && !saturate) r = std::fabs(r);
        if (saturate && std::isnan(r)) return 0;
        const uint64_t mask = ~0ull >> (64 - bits);
        if (r >= least && r < limit) return uint64_t((__int128)r) & mask;
        if (!saturate) return 1ull << (bits - 1);
        return uint64_t(r < 0 ? least : limit - 1) & mask;
    }
    uint64_t from_integer(bool negative, uint64_t n) const {
        const int digits = f.r == Type::f32 ? 24 : 53, excess = std::max(0, int(std::bit_width(n)) - digits);
        const uint64_t cut = n & ((1ull << excess) - 1), half = excess ? 1ull << (excess - 1) : 0;
        n >>= excess;
        switch (mode()) {
        case FE_TONEAREST:
            n += cut > half || (cut && cut == half && n % 2);
            break;
        case FE_DOWNWARD:
            n += cut && negative;
            break;
        case FE_UPWARD:
            n += cut && !negative;
        }
        const double value = std::ldexp(negative ? -double(n) : double(n), excess);
        return f.r == Type::f32 ? bits_of(float(value)) : bits_of(value);
    }
    // By the processor's scalar conversion.
    uint64_t to_float(double x) const {
        volatile double argument = x;
        std::fesetround(mode());
        volatile float result = float(argument);
        std::fesetround(FE_TONEAREST);
        return bits_of(float(result));
    }
};

class Convert : public testing::TestWithParam<Family> {
protected:
    const Conversion conversion{GetParam()};
    const Type from = GetParam().a;
    const int bits = 8 * size_of(from);
    const uint64_t mask = ~0ull >> (64 - bits);
    std::mt19937_64 random{1234};
    std::vector<uint64_t> pool;

    void add_with_neighbours(uint64_t x) {
        for (int d = -2; d <= 2; ++d) pool.push_back((x + d) & mask);
    }
    uint64_t floating(double x) const { return from == Type::f32 ? bits_of(float(x)) : bits_of(x); }

    // Every power of two, the ties above it at all precisions that matter, and limits, with neighbours.
    void thresholds() {
        if (!is_float(from)) {
            for (int k = 0; k < bits; ++k)
                for (int below : {0, 1, 23, 24, 25, 52, 53, 54})
                    for (uint64_t sign : {1, -1})
                        add_with_neighbours(sign * ((1ull << k) | (below <= k ? 1ull << (k - below) : 0)));
            return;
        }
        for (double sign : {1.0, -1.0}) {
            for (int k = -3; k <= 66; ++k)
                for (double factor : {1.0, 1.25, 1.5, 1.75, 1 + 0x1p-23, 1 + 0x1p-24, 1 + 0x1.8p-23})
                    add_with_neighbours(floating(sign * std::ldexp(factor, k)));
            for (double x : {0x1p31 - 0.5, 0x1p31 + 0.5, 0x1p32 - 0.5, 0x1p32 - 1.5, 0x1p52 - 0.5, 2.5, 3.5,
                             0x1p-126, 0x1p-149, 0x1p-150, 0x1.8p-149, 0x1p-1022, 0x1.fffffep127,
                             0x1.ffffffp127, 0x1p128, 1e300, 0.1, 0.0})
                add_with_neighbours(floating(sign * x));
            add_with_neighbours(floating(sign * std::numeric_limits<double>::infinity()));
            pool.push_back(floating(std::copysign(std::nan("0x123456789abc"), sign)));
        }
    }
    uint64_t random_bits() {
        const uint64_t n = random();
        if (random() % 4 == 0) return n & mask;
        if (!is_float(from)) { // of any length, dense or with few bits set
            const uint64_t m = n & (random() % 2 ? ~0ull : random() & random() & random());
            const auto value = int64_t(m) >> random() % 64;
            return uint64_t(value) & mask;
        }
        if (random() % 2) // whole numbers, halves and quarters
            return floating(std::ldexp(double(int64_t(n) >> random() % 64), -int(random() % 3)));
        return floating(std::ldexp(double(int64_t(n)), -int(random() % 70)));
    }

    template <class T> void check(const std::vector<uint64_t> &x) {
        T in[16];
        uint64_t out[16]{};
        for (int i = 0; i < 16; ++i) in[i] = T(x[i]);
        const void *arguments[] = {in};
        // Rounding to an integer heeds the name alone, whatever the caller's mode.
        if (!is_float(GetParam().r)) std::fesetround(rounding[random() % 4]);
        invoke(GetParam(), 16, arguments, out, nullptr);
        std::fesetround(FE_TONEAREST);
        for (int i = 0; i < 16; ++i) {
            uint64_t got = 0;
            const int size = size_of(GetParam().r);
            std::memcpy(&got, reinterpret_cast<char *>(out) + i * size, size);
            ASSERT_EQ(got, conversion.expected(x[i])) << to_string(from, x[i]);
        }
    }
};

TEST_P(Convert, AgreesWithExactArithmetic) {
    thresholds();
    for (int n = 0; n < 10000; ++n) pool.push_back(random_bits());
    for (std::size_t i = 0; i + 16 <= pool.size(); i += 16) {
        const std::vector x(pool.begin() + i, pool.begin() + i + 16);
        if (bits == 32) check<std::uint32_t>(x);
        else check<uint64_t>(x);
        if (HasFatalFailure()) return;
    }
}

std::vector<Family> conversions() {
    std::vector<Family> found;
    for (const auto &f : families())
        if (std::string(f.base).starts_with("cvt")) found.push_back(f);
    return found;
}
INSTANTIATE_TEST_SUITE_P(Families, Convert, testing::ValuesIn(conversions()),
                         [](const auto &info) { return info.param.name(); });

TEST(ConvertValues, AllConversionsStand) { EXPECT_EQ(conversions().size(), 100u); }

TEST(ConvertValues, ToInteger) {
    const float nan = std::nanf(""), inf = std::numeric_limits<float>::infinity();
    EXPECT_EQ(__quevar_cvtfptoi32rtesatf1(2.5f), 2);
    EXPECT_EQ(__quevar_cvtfptoi32rtnnosatf1(-0.5f), -1);
    EXPECT_EQ(__quevar_cvtfptoi32rtpnosatf1(-0.5f), 0);
    EXPECT_EQ(__quevar_cvtfptoi32rtzsat1(2147483647.9), 2147483647);
    EXPECT_EQ(__quevar_cvtfptoi32rtzsat1(-2147483648.9), INT32_MIN);
    EXPECT_EQ(__quevar_cvtfptoi32rtznosatf1(nan), INT32_MIN);
    EXPECT_EQ(__quevar_cvtfptoi32rtzsatf1(nan), 0);
    EXPECT_EQ(__quevar_cvtfptoi64rtzsat1(0x1p62 + 0x1p10), (1l << 62) + (1l << 10));
    EXPECT_EQ(__quevar_cvtfptou32rtznosatf1(3000000000.0f), 3000000000u);
    // Without saturation a negative number gives its magnitude, with it 0.
    EXPECT_EQ(__quevar_cvtfptou32rtznosatf1(-3.0f), 3u);
    EXPECT_EQ(__quevar_cvtfptou64rtznosat1(-0x1.8p63), 3ul << 62);
    EXPECT_EQ(__quevar_cvtfptou32rtzsatf1(-3.0f), 0u);
    EXPECT_EQ(__quevar_cvtfptou32rtzsatf1(inf), UINT32_MAX);
    EXPECT_EQ(__quevar_cvtfptou32rtzsatf1(-inf), 0u);
    EXPECT_EQ(__quevar_cvtfptou64rtzsat1(0x1.8p63), 3ul << 62);
    // The range is that of the rounded value.
    EXPECT_EQ(__quevar_cvtfptou32rtesat1(4294967295.5), UINT32_MAX);
    EXPECT_EQ(__quevar_cvtfptou32rtenosat1(4294967295.5), 0x80000000u);
    EXPECT_EQ(__quevar_cvtfptou32rtnnosat1(4294967295.5), UINT32_MAX);
}

} // namespace
