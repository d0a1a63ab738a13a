// expm1f, expm1, log1pf, log1p at both tiers.
#include "harness/lane.hpp"
#include <cmath>
#include <gtest/gtest.h>
#include <numbers>
#include <vector>

namespace {

using namespace quevar::test;

const char *const tiers[] = {"", "_native"};

template <class T> struct Names;
template <> struct Names<float> {
    static constexpr const char *expm1 = "expm1f", *log1p = "log1pf";
    static constexpr std::uint32_t infinity = 0x7F800000, nan = 0xFFC00000, quiet = 0x00400000,
                                   sign = 0x80000000, least_normal = 0x00800000;
    static constexpr float limit = 86.6433945f, overflow = 88.7228317f, greatest = 0x1p118f;
};
template <> struct Names<double> {
    static constexpr const char *expm1 = "expm1", *log1p = "log1p";
    static constexpr std::uint64_t infinity = 0x7FF0000000000000, nan = 0xFFF8000000000000,
                                   quiet = 0x0008000000000000, sign = 0x8000000000000000,
                                   least_normal = 0x0010000000000000;
    static constexpr double limit = 707.70327135170407, overflow = 709.78271289338397,
                            greatest = 0x1.ffffffffff000p1012;
};

template <class T> class Near0 : public testing::Test {
protected:
    using N = Names<T>;
    static T call(const Family &f, int width, T x) {
        return std::bit_cast<T>(static_cast<decltype(pattern(x))>(lane(f, width, {pattern(x)}).first));
    }
    static T call(const std::string &name, T x) { return call(family(name), 4, x); }
    static T after(T x) { return std::nextafter(x, std::numeric_limits<T>::infinity()); }

    static double error(T r, long double exact) {
        const int least = std::numeric_limits<T>::min_exponent - 1,
                  exponent = exact == 0 ? least : std::max(std::ilogb(exact), least);
        return double(std::fabs(r - exact) /
                      std::ldexp(1.0L, exponent - (std::numeric_limits<T>::digits - 1)));
    }
    void keeps_bound(const char *base, long double (*exact)(long double), const std::vector<T> &arguments) {
        for (const char *tier : tiers)
            for (const int width : {1, 4}) {
                const Family &f = family(base + std::string(tier));
                for (const T x : arguments)
                    ASSERT_LE(error(call(f, width, x), exact(x)), f.bound) << f.name(width) << " of " << x;
            }
    }
    // What is common to both: NaNs are quieted, and all that is small is itself.
    void nans_and_zeros(const char *base) {
        for (const char *tier : tiers)
            for (const int width : widths) {
                const Family &f = family(base + std::string(tier));
                for (const auto nan : {N::infinity + 0x2345, N::infinity | N::quiet | 0x2345})
                    for (const auto s : {0 * N::sign, N::sign})
                        EXPECT_EQ(lane(f, width, {nan | s}).first, nan | s | N::quiet) << f.name(width);
                for (const auto x : {0 * N::sign, 0 * N::sign + 1, N::least_normal - 1, N::least_normal + 1})
                    for (const auto s : {0 * N::sign, N::sign})
                        EXPECT_EQ(lane(f, width, {x | s}).first, x | s) << f.name(width);
            }
    }
    // Magnitudes of all binades to 2^8, both signs.
    static std::vector<T> magnitudes() {
        std::vector<T> list;
        const int least = std::numeric_limits<T>::min_exponent - std::numeric_limits<T>::digits;
        for (int e = least; e < 8; ++e)
            for (int i = 0; i < 40; ++i) {
                const T x = std::ldexp(1 + T(i) / 40 + T(i * i) * std::numeric_limits<T>::epsilon(), e);
                list.insert(list.end(), {x, -x});
            }
        return list;
    }
};
using Types = testing::Types<float, double>;
TYPED_TEST_SUITE(Near0, Types);

TYPED_TEST(Near0, SpecialValues) {
    using N = typename TestFixture::N;
    this->nans_and_zeros(N::expm1);
    this->nans_and_zeros(N::log1p);
    const TypeParam one = 1;
    for (const char *tier : tiers)
        for (const int width : widths) {
            const Family &e = family(N::expm1 + std::string(tier)), &l = family(N::log1p + std::string(tier));
            const auto exp = [&](auto x) { return lane(e, width, {x}).first; };
            const auto log = [&](auto x) { return lane(l, width, {x}).first; };
            EXPECT_EQ(exp(N::infinity), N::infinity) << e.name(width);
            EXPECT_EQ(exp(N::infinity | N::sign), pattern(-one)) << e.name(width);
            EXPECT_EQ(log(N::infinity), N::infinity) << l.name(width);
            EXPECT_EQ(log(N::infinity | N::sign), N::nan) << l.name(width);
            EXPECT_EQ(log(pattern(-one)), N::infinity | N::sign) << l.name(width);
            EXPECT_EQ(log(pattern(-this->after(one))), N::nan) << l.name(width);
            EXPECT_EQ(log(pattern(TypeParam(-1.5))), N::nan) << l.name(width);
        }
}

// Beyond the limit: -1, or e^x from the rare path that both tiers share, up to the last finite result.
TYPED_TEST(Near0, Expm1OfLargeArguments) {
    using N = typename TestFixture::N;
    using T = TypeParam;
    for (const char *tier : tiers) {
        const std::string name = N::expm1 + std::string(tier);
        for (const T x : {this->after(N::limit), N::overflow, T(1000), std::numeric_limits<T>::max()})
            EXPECT_EQ(this->call(name, -x), T(-1)) << name << " of " << -x;
        for (T x = this->after(N::limit); x <= N::overflow; x += T(0.0078125))
            EXPECT_LE(this->error(this->call(name, x), std::expm1(static_cast<long double>(x))), 0.51)
                << name;
        EXPECT_EQ(pattern(this->call(name, N::overflow)), sizeof(T) == 4 ? 0x7F7FFF84 : 0x7FEFFFFFFFFFFF2A);
        EXPECT_EQ(pattern(this->call(name, this->after(N::overflow))), N::infinity);
    }
}

// Every row of the tables, at both of its ends, and powers of two of all sizes.
TYPED_TEST(Near0, Expm1KeepsItsBound) {
    using T = TypeParam;
    std::vector<T> x = this->magnitudes();
    for (int n = -3000; n <= 3000; n += 7)
        for (const double end : {-0.499, 0.0, 0.499})
            x.push_back(T((n + end) * std::numbers::ln2 / (sizeof(T) == 4 ? 64 : 128)));
    x.insert(x.end(), {TestFixture::N::limit, -TestFixture::N::limit, 50, -50, 5, -5});
    std::erase_if(x, [](T v) { return std::fabs(v) > TestFixture::N::limit; });
    this->keeps_bound(TestFixture::N::expm1, std::expm1, x);
}

// Sums 1 + x next to every row, down to the least one, and up to where the rare path begins.
TYPED_TEST(Near0, Log1pKeepsItsBound) {
    using T = TypeParam;
    constexpr T epsilon = std::numeric_limits<T>::epsilon();
    std::vector<T> x = this->magnitudes();
    std::erase_if(x, [](T v) { return v <= -1; });
    for (int r = 513; r <= 1024; ++r)
        for (const T nudge : {-0.999 / 2048, 0.0, 0.999 / 2048})
            for (const T scale : {T(1), T(2), T(0.5), T(1024), T(0x1p100), T(0x1p-20)})
                x.push_back(T(1024) / r * (1 + nudge) * scale - 1);
    x.insert(x.end(), {-1 + epsilon / 2, -1 + epsilon, -1 + 3 * epsilon, TestFixture::N::greatest});
    this->keeps_bound(TestFixture::N::log1p, std::log1p, x);
}

TYPED_TEST(Near0, Log1pOfLargeArguments) {
    using T = TypeParam;
    using N = typename TestFixture::N;
    for (T x = N::greatest; x < std::numeric_limits<T>::max() / 2; x *= T(1.37))
        for (const char *tier : tiers) {
            const Family &f = family(N::log1p + std::string(tier));
            // The float native tier keeps the main path up to 2^127.
            EXPECT_LE(this->error(this->call(f, 4, x), std::log1p(static_cast<long double>(x))),
                      sizeof(T) == 4 && *tier ? 4 : 0.6)
                << f << " of " << x;
        }
}

// A sum of products is rounded twice at width 1 of the native tier, and fused elsewhere.
TEST(Log1p, NativeAtWidth1) {
    int differ = 0;
    for (int i = 1; i < 20000; ++i) {
        const double x = i / 4001.0;
        differ += __quevar_log1p1_native(x) != __quevar_log1p2_native(quevar_f64x2{x, x})[0];
    }
    EXPECT_GT(differ, 0);
    EXPECT_LT(differ, 8000);
}

} // namespace
