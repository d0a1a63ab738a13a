// pow, powr, pown, rootn of double, at both tiers.
#include "harness/lane.hpp"
#include <climits>
#include <cmath>
#include <gtest/gtest.h>
#include <limits>
#include <random>

namespace {

using namespace quevar::test;

const double inf = std::numeric_limits<double>::infinity(), least = 0x1p-1074, most = 0x1.fffffffffffffp1023;
double number(std::uint64_t bits) { return std::bit_cast<double>(bits); }
const double nan = number(0xFFF8000000000000);      // the processor's own
const double quiet = number(0x7FF8000000000123);    // some
const double negative = number(0xFFF8000000000456); //
const double signalling = number(0x7FF0000000000789), quieted = number(0x7FF8000000000789);

std::uint64_t bits_of_argument(double x) { return pattern(x); }
std::uint64_t bits_of_argument(int n) { return static_cast<std::uint32_t>(n); }

template <class Y> double call(const Family &f, int width, double x, Y y) {
    return number(lane(f, width, {pattern(x), bits_of_argument(y)}).first);
}
template <class Y> double call(const std::string &name, double x, Y y) { return call(family(name), 4, x, y); }

template <class Y> void expect(const std::string &name, double x, Y y, double expected) {
    for (const int width : widths)
        EXPECT_EQ(to_string(Type::f64, pattern(call(family(name), width, x, y))),
                  to_string(Type::f64, pattern(expected)))
            << name << " of " << x << ", " << y << " at width " << width;
}
template <class Y> void expect_both_tiers(const std::string &name, double x, Y y, double expected) {
    expect(name, x, y, expected);
    expect(name + "_native", x, y, expected);
}

double ulps(double got, long double exact) {
    const int e = std::max(std::ilogb(static_cast<double>(exact)), -1022);
    return static_cast<double>(std::ldexp(std::fabs(got - exact), 52 - e));
}

// What the language says of pow and of powr, where they part.
TEST(Pow, SpecialValues) {
    // clang-format off
    const struct {
        double x, y, pow, powr;
    } table[] = {
        {nan, 0.0, 1, nan}, {0.0, -0.0, 1, nan}, {inf, 0.0, 1, nan}, {-inf, -0.0, 1, nan},
        {1, quiet, 1, nan}, {1, inf, 1, nan}, {1, -inf, 1, nan}, {1, signalling, 1, nan},
        {quiet, 2, quiet, nan}, {2, quiet, quiet, quiet}, {signalling, 2, quieted, nan},
        {quiet, negative, quiet, nan}, {0.5, signalling, quieted, quieted}, {-0.0, quiet, quiet, nan},
        {0.0, negative, negative, negative}, {0.0, 3, 0.0, 0.0}, {-0.0, 3, -0.0, 0.0}, {-0.0, 2, 0.0, 0.0},
        {-0.0, 0.5, 0.0, 0.0}, {0.0, -3, inf, inf}, {-0.0, -3, -inf, inf}, {-0.0, -2, inf, inf},
        {-0.0, -0.5, inf, inf}, {0.0, inf, 0.0, 0.0}, {-0.0, inf, 0.0, 0.0}, {0.0, -inf, inf, inf},
        {-0.0, -inf, inf, inf}, {-1, inf, 1, nan}, {-1, -inf, 1, nan}, {-1, 3, -1, nan},
        {-1, 1e300, 1, nan}, {-1, 2.5, nan, nan}, {-2, 2.5, nan, nan}, {-most, -0.1, nan, nan},
        {-least, 0.5, nan, nan}, {-2, 3, -8, nan}, {-2, -2, 0.25, nan}, {-2, 1023, -0x1p1023, nan},
        {-2, 1025, -inf, nan}, {-0.5, 1073, -0x1p-1073, nan}, {-0.5, 1077, -0.0, nan},
        {-0.5, 1078, 0.0, nan}, {-2, 0x1p53, inf, nan}, {-2, 0x1p53 - 1, -inf, nan},
        {-2, -0x1p53 + 1, -0.0, nan}, {2, inf, inf, inf}, {-2, inf, inf, nan}, {0.5, inf, 0.0, 0.0},
        {-0.5, inf, 0.0, nan}, {2, -inf, 0.0, 0.0}, {-2, -inf, 0.0, nan}, {0.5, -inf, inf, inf},
        {-0.5, -inf, inf, nan}, {inf, 0.1, inf, inf}, {inf, -0.1, 0.0, 0.0}, {-inf, 3, -inf, nan},
        {-inf, 2, inf, nan}, {-inf, 0.1, inf, nan}, {-inf, -3, -0.0, nan}, {-inf, -2, 0.0, nan},
        {-inf, -0.1, 0.0, nan}, {2, -1075, 0.0, 0.0}, {2, -1074, least, least}, {0.5, 1074, least, least},
        {2, 1024, inf, inf}, {most, most, inf, inf}, {most, -most, 0.0, 0.0}, {least, 1, least, least},
        {least, -1, inf, inf}, {1 + 0x1p-52, 1e300, inf, inf}, {1 - 0x1p-53, 1e300, 0.0, 0.0},
    };
    // clang-format on
    for (const auto &row : table) {
        expect_both_tiers("pow", row.x, row.y, row.pow);
        expect_both_tiers("powr", row.x, row.y, row.powr);
    }
}

TEST(Pow, OneStaysInTheMainPath) {
    const double first_row = number(0x3FEFFFFFFC27DD9E);
    for (const std::string name : {"pow", "powr"})
        for (const auto &[x, y] : {std::pair{2.0, 0.0}, {1.0, 3.0}, {1.0, -0.1}, {most, -0.0}}) {
            expect(name, x, y, 1);
            expect(name + "_native", x, y, first_row);
        }
    for (const double x : {2.0, 1e300}) {
        expect("pown", x, 0, 1);
        expect("pown_native", x, 0, first_row);
    }
    expect("rootn_native", 1, 7, first_row);
    // From 2^1017 on y is special: then 1 is 1.
    expect("pow_native", 1.0, 0x1p1016, first_row);
    expect("pow_native", 1.0, 0x1p1017, 1);
}

TEST(Pown, SpecialValues) {
    // clang-format off
    const struct {
        double x;
        int n;
        double expected;
    } table[] = {
        {nan, 0, 1}, {0.0, 0, 1}, {-inf, 0, 1}, {least, 0, 1}, {quiet, 2, quiet}, {negative, 3, negative},
        {signalling, -1, quieted}, {0.0, 3, 0.0}, {-0.0, 3, -0.0}, {-0.0, 2, 0.0}, {0.0, -3, inf},
        {-0.0, -3, -inf}, {-0.0, -2, inf}, {0.0, INT_MIN, inf}, {-0.0, INT_MAX, -0.0}, {inf, 3, inf},
        {-inf, 3, -inf}, {-inf, 2, inf}, {inf, -1, 0.0}, {-inf, -1, -0.0}, {-inf, -2, 0.0},
        {-2, 1023, -0x1p1023}, {-2, 1024, inf}, {-2, 1025, -inf}, {-0.5, 1074, least},
        {-0.5, 1073, -0x1p-1073}, {-0.5, INT_MAX, -0.0}, {2, INT_MIN, 0.0}, {-2, INT_MIN + 1, -0.0},
        {0.5, INT_MIN, inf}, {least, 1, least},
    };
    // clang-format on
    for (const auto &row : table) expect_both_tiers("pown", row.x, row.n, row.expected);
    expect("pown", -2, 3, -8);
    expect("pown", -1, 3, -1);
}

TEST(Rootn, SpecialValues) {
    // clang-format off
    const struct {
        double x;
        int n;
        double expected;
    } table[] = {
        {2, 0, nan}, {quiet, 0, nan}, {inf, 0, nan}, {0.0, 0, nan}, {1, 0, nan}, {0.0, 2, 0.0},
        {-0.0, 2, 0.0}, {0.0, -2, inf}, {-0.0, -2, inf}, {0.0, 3, 0.0}, {-0.0, 3, -0.0}, {0.0, -3, inf},
        {-0.0, -3, -inf}, {inf, 3, inf}, {-inf, 3, -inf}, {inf, -3, 0.0}, {-inf, -3, -0.0}, {inf, 2, inf},
        {inf, -2, 0.0}, {-inf, 2, nan}, {-inf, -2, nan}, {-1, 2, nan}, {-least, INT_MIN, nan},
        {negative, 2, nan}, {quiet, 2, quiet}, {quiet, -3, quiet}, {signalling, 3, quieted},
        {least, 1, least}, {-least, 1, -least},
    };
    // clang-format on
    for (const auto &row : table) expect_both_tiers("rootn", row.x, row.n, row.expected);
    for (const int n : {1, 3, -5, INT_MAX}) expect("rootn", -1, n, -1);
    expect_both_tiers("rootn", negative, 3, -negative);
}

// Every n-th power of a whole number that fits a double, and its root.
TEST(Pow, WholePowersAreExact) {
    for (int x = 2; x < 300; ++x) {
        double power = x;
        for (int n = 1; power < 0x1p53; ++n, power *= x) {
            const double signed_power = n % 2 ? -power : power;
            ASSERT_EQ(call("pown", x, n), power) << x << ", " << n;
            ASSERT_EQ(call("pown", -x, n), signed_power) << x << ", " << n;
            ASSERT_EQ(call("pow", -x, double(n)), signed_power) << x << ", " << n; // rare, and exact
            ASSERT_LE(ulps(call("pow", x, double(n)), power), 1) << x << ", " << n;
            ASSERT_EQ(call("rootn", power, n), x) << n;
            if (n % 2) ASSERT_EQ(call("rootn", -power, n), -x) << n;
        }
    }
    for (int k = -1022; k < 1024; ++k) {
        ASSERT_EQ(call("pow", 2, double(k)), std::ldexp(1, k));
        ASSERT_EQ(call("rootn", std::ldexp(1, k), k ? k : 1), k ? 2 : 1);
    }
}

// An independent x and an exponent that gives a result of any size: in the main path, denormal, and between.
class Powers : public testing::TestWithParam<const char *> {
protected:
    std::mt19937_64 random{1};
    double uniform(double low, double high) { return std::uniform_real_distribution(low, high)(random); }

    double base() {
        const double spread = std::ldexp(uniform(-1, 1), -int(random() % 50));
        return random() % 2 ? 1 + spread / 2 : number(random() >> 1 & 0x7FEFFFFFFFFFFFFF);
    }
};

TEST_P(Powers, KeepTheirBounds) {
    const Family &f = family(GetParam());
    const bool with_int = f.shape == Shape::with_int, root = f.base == std::string("rootn");
    int denormals = 0;
    for (int i = 0; i < 100000; ++i) {
        const double x = base(), y = uniform(-1080, 1030) / std::log2(x);
        const int n = root || std::fabs(y) > 1e9 ? int(random() >> 33 >> random() % 31) + 2 : int(y);
        const long double exact =
            root ? std::pow((long double)x, 1 / (long double)n) : std::pow((long double)x, with_int ? n : y);
        // Denormal results come from the rare path, which both tiers share; but next to 1 not all of them:
        // there the least normal ones and their neighbours are told apart too late.
        const bool denormal = exact < 0x1p-1022L;
        if (!(exact > 0x1p-1060L && exact < most) || (denormal && std::fabs(x - 1) < 0.002) || x == 1)
            continue;
        const double got = with_int ? call(f, 8, x, n) : call(f, 8, x, y);
        denormals += denormal;
        ASSERT_LE(ulps(got, exact), !denormal                       ? f.bound + 0.06
                                    : f.base == std::string("powr") ? 0.51
                                                                    : 0.76)
            << f << " of " << x << ", " << (with_int ? n : y);
    }
    EXPECT_GT(denormals, root ? -1 : 200);
}
INSTANTIATE_TEST_SUITE_P(Double, Powers,
                         testing::Values("pow", "pow_native", "powr", "powr_native", "pown", "pown_native",
                                         "rootn", "rootn_native"),
                         [](const auto &info) { return std::string(info.param); });

// The rare path is far better than a main path: what lies just beyond its seam is nearly always the nearest
// double.
TEST(Pow, RarePathIsNearest) {
    std::mt19937_64 random(3);
    int others = 0;
    for (int i = 0; i < 20000; ++i) {
        const double x = -(1 + double(random() % 1000000)), y = double(random() % 100) - 50;
        const long double exact = std::pow((long double)x, (long double)y);
        others += call("pow", x, y) != double(exact);
    }
    EXPECT_LT(others, 800);
}

} // namespace
