// atan and atanpi of float and double.
#include "angles.hpp"

namespace {

using namespace quevar::test;

template <class T> class Atan : public Angles<T> {
protected:
    using A = Angles<T>;
    static void expect(const Family &f, std::uint64_t x, std::uint64_t expected) {
        for (const int width : widths)
            EXPECT_EQ(to_string(f.r, lane(f, width, {x}).first), to_string(f.r, expected))
                << f.name(width) << " of " << to_string(f.a, x);
    }
    static long double exact(const std::string &base, T x) {
        return base == "atan" ? std::atan((long double)x) : std::atan((long double)x) / A::pi;
    }
};
using Elements = testing::Types<float, double>;
TYPED_TEST_SUITE(Atan, Elements);

TYPED_TEST(Atan, SpecialValues) {
    using T = TypeParam;
    using A = Angles<T>;
    const auto half_pi = pattern(A::single ? T(0x1.921fb6p0) : T(0x1.921fb54442d18p0)),
               half = pattern(T(0.5));
    for (const auto sign : {std::uint64_t(0), std::uint64_t(A::sign)})
        for (const std::string base : {"atan", "atanpi"})
            for (const Family &f : this->tiers(base)) {
                this->expect(f, sign, sign);
                this->expect(f, sign | pattern(A::inf), sign | (base == "atan" ? half_pi : half));
                this->expect(f, sign | pattern(A::max), sign | (base == "atan" ? half_pi : half));
                if (base == "atan") this->expect(f, sign | 1, sign | 1);
            }
}

// A NaN comes out quieted: of atan with its sign flipped, as it goes through -1/x, but for the double table,
// which works on |x|. The estimate of atan_native is of x as a float, so the upper half of the payload is
// left.
TYPED_TEST(Atan, NaNs) {
    using A = Angles<TypeParam>;
    const std::uint64_t payload = A::single ? 0x12345 : 0x123456789ABCD, rest = A::single ? 0 : 0x1FFFFFFF;
    for (const std::uint64_t sign : {std::uint64_t(0), std::uint64_t(A::sign)})
        for (const std::uint64_t quiet : {std::uint64_t(0), std::uint64_t(A::quiet)}) {
            const std::uint64_t x = sign | quiet | A::nan(payload), quieted = x | A::quiet;
            this->expect(this->tiers("atan")[0], x, A::single ? quieted ^ A::sign : quieted);
            this->expect(this->tiers("atan")[1], x, (quieted & ~rest) ^ A::sign);
            for (const Family &f : this->tiers("atanpi")) this->expect(f, x, quieted);
        }
}

// In the table the nearest row is exact.
TEST(AtanRows, MultiplesOfAQuarter) {
    const Family &f = family("atan");
    for (int j = 0; j <= 31; j++)
        for (const int width : {1, 4})
            EXPECT_EQ(Angles<double>::call(f, width, j / 4.0), double(std::atan(j / 4.0L))) << j;
}

// Both sides of the limits, and where the table turns from a row to the next.
TYPED_TEST(Atan, KeepsItsBound) {
    using T = TypeParam;
    using A = Angles<T>;
    std::vector<T> x;
    for (int j = 0; j <= 64; j++)
        for (T near = std::nextafter(T(j) / 8, T(-1)); near <= std::nextafter(T(j) / 8, T(9));
             near = std::nextafter(near, T(9)))
            x.push_back(near);
    std::mt19937_64 random(1);
    for (int i = 0; i < 20000; i++) x.push_back(ordinary<T>(random));
    for (int e = A::Limits::min_exponent - A::Limits::digits; e < A::Limits::max_exponent; e++)
        x.push_back(std::ldexp(T(1.3), e));
    for (const std::string base : {"atan", "atanpi"})
        for (const Family &f : this->tiers(base))
            for (const int width : {1, 4})
                for (const T v : x) {
                    const T plus = this->call(f, width, v);
                    ASSERT_LE(this->ulps(plus, this->exact(base, v)), f.bound)
                        << f.name(width) << " of " << v;
                    ASSERT_EQ(this->call(f, width, -v), -plus) << f.name(width) << " of " << -v;
                }
}

// Below the limit of ordinary numbers atanpi is x/pi, also where that is denormal; at the upper limit 1/2.
TYPED_TEST(Atan, EndsOfAtanpi) {
    using T = TypeParam;
    using A = Angles<T>;
    std::mt19937_64 random(2);
    for (const Family &f : this->tiers("atanpi")) {
        for (int i = 0; i < 2000; i++)
            if (const T x = A::number(random() % pattern(4 * A::least)); A::extreme(x))
                ASSERT_LE(A::ulps(A::call(f, 4, x), x / A::pi), 0.76) << f << " of " << x;
        for (const T x : {A::single ? T(0x1p123) : std::ldexp(T(1), 993), A::max})
            EXPECT_EQ(A::call(f, 4, x), T(0.5)) << x;
    }
}

} // namespace
