// atan2 and atan2pi of float and double.
#include "angles.hpp"
#include <optional>

namespace {

using namespace quevar::test;

template <class T> class Atan2 : public Angles<T> {
protected:
    using A = Angles<T>;

    // What the language says of zeros and infinities, in quarters of pi.
    static std::optional<int> quarters(T y, T x) {
        const bool left = std::signbit(x);
        if (y == 0) return left ? 4 : 0;
        if (x == 0) return 2;
        if (std::isinf(y)) return !std::isinf(x) ? 2 : left ? 3 : 1;
        if (std::isinf(x)) return left ? 4 : 0;
        return {};
    }
    static long double exact(const std::string &base, T y, T x) {
        const long double angle = std::atan2((long double)y, (long double)x);
        return base == "atan2" ? angle : angle / A::pi;
    }
    // The worst of both functions at both tiers, for pairs that all take the rare paths.
    static double worst(const std::string &base, const std::vector<std::pair<T, T>> &pairs) {
        double worst = 0;
        for (const Family &f : A::tiers(base))
            for (const auto &[y, x] : pairs)
                worst = std::max(worst, A::ulps(A::call(f, 4, y, x), exact(base, y, x)));
        return worst;
    }
};
using Elements = testing::Types<float, double>;
TYPED_TEST_SUITE(Atan2, Elements);

// All pairs of zeros, denormals, least and greatest numbers, infinities and NaNs.
TYPED_TEST(Atan2, SpecialPairs) {
    using T = TypeParam;
    using A = Angles<T>;
    const T magnitudes[] = {0, A::tiny, std::nextafter(A::least, T(0)), A::least, 1, A::max, A::inf};
    std::vector<std::uint64_t> all;
    for (const std::uint64_t sign : {std::uint64_t(0), std::uint64_t(A::sign)}) {
        for (const T m : magnitudes) all.push_back(sign | pattern(m));
        for (const std::uint64_t payload : {0x123, 0x456}) all.push_back(sign | A::nan(payload));
        all.push_back(sign | A::nan(A::quiet | 0x789));
    }
    const T quarter[] = {0, T(M_PI_4), T(M_PI_2), T(3 * M_PI_4), T(M_PI)};
    for (const std::string base : {"atan2", "atan2pi"})
        for (const Family &f : this->tiers(base))
            for (const int width : widths)
                for (const std::uint64_t yb : all)
                    for (const std::uint64_t xb : all) {
                        const T y = A::number(yb), x = A::number(xb);
                        const std::uint64_t got = lane(f, width, {yb, xb}).first;
                        const std::string text =
                            f.name(width) + " of " + to_string(f.a, yb) + ", " + to_string(f.a, xb);
                        if (std::isnan(y) || std::isnan(x)) {
                            ASSERT_EQ(got, (std::isnan(y) ? yb : xb) | A::quiet) << text;
                        } else if (const auto n = this->quarters(y, x)) {
                            const T expected = base == "atan2" ? quarter[*n] : T(*n) / 4;
                            ASSERT_EQ(to_string(f.r, got),
                                      to_string(f.r, pattern(std::copysign(expected, y))))
                                << text;
                        } else {
                            const long double e = this->exact(base, y, x);
                            ASSERT_LE(A::ulps(A::number(got), e), y == x || y == -x ? f.bound : 0.76) << text;
                        }
                    }
}

TYPED_TEST(Atan2, KeepsItsBound) {
    using T = TypeParam;
    using A = Angles<T>;
    std::mt19937_64 random(1);
    for (const std::string base : {"atan2", "atan2pi"})
        for (const Family &f : this->tiers(base))
            for (const int width : {1, 4})
                for (int i = 0; i < 20000; i++) {
                    T y = ordinary<T>(random), x = ordinary<T>(random);
                    if (i % 8 < 2) y = x * T(i % 16 < 8 ? 1 : 0.99); // on and beside the diagonals
                    const T plus = A::call(f, width, y, x);
                    ASSERT_LE(A::ulps(plus, this->exact(base, y, x)), f.bound)
                        << f.name(width) << " of " << y << ", " << x;
                    ASSERT_EQ(A::call(f, width, -y, x), -plus) << f.name(width) << " of " << -y << ", " << x;
                }
}

// Where one argument is extreme a scalar path computes the angle: by its quotient alone, by its distance from
// the vertical, or in full, depending on the difference of the exponents.
TYPED_TEST(Atan2, RarePaths) {
    using T = TypeParam;
    using A = Angles<T>;
    std::mt19937_64 random(2);
    const auto significand = [&] { return T(1 + std::ldexp(double(random() >> 11), -53)); };
    std::vector<std::pair<T, T>> pairs;
    for (int difference = -180; difference <= 180; difference++)
        for (int i = 0; i < 60; i++) {
            // From the least denormal up, or from the greatest number down.
            const int lowest = A::Limits::min_exponent - A::Limits::digits,
                      highest = A::Limits::max_exponent - 1;
            const int from = int(random() % 24), other = std::abs(difference) + from;
            const int small = i % 2 ? lowest + from : highest - other,
                      large = i % 2 ? lowest + other : highest - from;
            T y = std::ldexp(significand(), difference < 0 ? small : large);
            T x = std::ldexp(significand(), difference < 0 ? large : small);
            if (y == 0 || !std::isfinite(x) || !std::isfinite(y) || !(A::extreme(y) || A::extreme(x)))
                continue;
            pairs.push_back({random() % 2 ? y : -y, random() % 2 ? x : -x});
        }
    EXPECT_LE(this->worst("atan2", pairs), 0.76);
    EXPECT_LE(this->worst("atan2pi", pairs), 0.76);
}

TEST(Atan2f, Quotients) {
    // An ordinary pair whose quotient underflows, and a denormal beside 1, which is not ordinary.
    EXPECT_EQ(Angles<float>::call(family("atan2f"), 4, 0x1p-120f, 0x1p100f), 0.0f);
    EXPECT_EQ(Angles<float>::call(family("atan2f"), 4, 0x1.8p-130f, 0x1p10f), 0x1.8p-140f);
    EXPECT_EQ(Angles<float>::call(family("atan2f"), 4, 0x1.8p-130f, -1.0f), float(M_PI));
}

} // namespace
