// asin, acos, asinpi, acospi in both element types, at both tiers.
#include "harness/lane.hpp"
#include <cmath>
#include <gtest/gtest.h>
#include <numbers>
#include <vector>

namespace {

using namespace quevar::test;

struct Arc {
    const Family &f;
    bool single = f.a == Type::f32, native = *f.tier;
    bool sine = std::string(f.base).starts_with("asin"), of_pi = std::string(f.base).ends_with("pi");

    std::uint64_t bits(double x) const { return single ? pattern(float(x)) : pattern(x); }
    std::uint64_t at(int width, double x) const { return lane(f, width, {bits(x)}).first; }
    double operator()(double x) const { return value_of(f.a, at(4, x)); }
};

std::vector<Arc> all() {
    std::vector<Arc> found;
    for (const std::string base : {"asin", "acos", "asinpi", "acospi"})
        for (const char *rest : {"f", "f_native", "", "_native"}) found.push_back({family(base + rest)});
    return found;
}

TEST(Arc, EndsAndZero) {
    using std::numbers::pi;
    for (const Arc &g : all())
        for (const int width : widths) {
            const double turn = g.of_pi ? 1 : pi; // half of one
            const struct {
                double x, sine, cosine;
            } table[] = {{1, turn / 2, 0}, {-1, -turn / 2, turn}, {0, 0, turn / 2}, {-0.0, -0.0, turn / 2}};
            for (const auto &[x, sine, cosine] : table)
                EXPECT_EQ(g.at(width, x), g.bits(g.sine ? sine : cosine)) << g.f.name(width) << " of " << x;
        }
}

TEST(Arc, OutsideTheDomain) {
    for (const Arc &g : all()) {
        const std::uint64_t infinity = g.bits(INFINITY), sign = g.bits(-0.0),
                            quiet = infinity >> 1 & ~infinity, invalid = sign | infinity | quiet;
        for (const int width : widths)
            for (const std::uint64_t s : {std::uint64_t{0}, sign}) {
                for (const std::uint64_t x :
                     {g.bits(1) + 1, g.bits(1.5), g.bits(1e30), infinity - 1, infinity})
                    EXPECT_EQ(lane(g.f, width, {s | x}).first, invalid)
                        << g.f.name(width) << " of " << to_string(g.f.a, s | x);
                for (const std::uint64_t payload : {std::uint64_t{1}, quiet - 2, quiet | 3})
                    EXPECT_EQ(lane(g.f, width, {s | infinity | payload}).first,
                              s | infinity | quiet | payload)
                        << g.f.name(width) << " of " << to_string(g.f.a, s | infinity | payload);
            }
    }
}

// Small x is its own arc sine, the smallest denormal too; only the float native series has a constant term,
// 3.2e-5.
TEST(Arc, SineOfSmall) {
    for (const Arc &g : all())
        if (g.sine && !g.of_pi)
            for (const std::uint64_t x : {g.bits(0) + 1, g.bits(g.single ? 1e-20 : 1e-200), g.bits(1e-10)})
                for (const std::uint64_t sign : {std::uint64_t{0}, g.bits(-0.0)}) {
                    const double value = value_of(g.f.a, x | sign);
                    const double expected = g.single && g.native ? value * (1 + 3.18006023e-05) : value;
                    EXPECT_EQ(lane(g.f, 4, {x | sign}).first, g.bits(expected)) << g.f << " of " << value;
                }
}

long double exact(const Arc &g, long double x) {
    const long double angle = g.sine ? std::asin(x) : std::acos(x);
    return g.of_pi ? angle / std::numbers::pi_v<long double> : angle;
}

// The whole domain, and both sides of 1/2, where the polynomial's argument changes, and of the ends.
TEST(Arc, KeepsItsBound) {
    std::vector<double> samples;
    for (double x = 1e-30; x < 1e-2; x *= 1.37) samples.push_back(x);
    for (double x = 0.0003; x < 1; x += 0.0007) samples.push_back(x);
    for (const double d : {0x1p-53, 0x1p-50, 0x1p-24, 0x1p-23, 0x1p-12, 0x1p-7})
        samples.insert(samples.end(), {1 - d, 0.5 - d, 0.5, 0.5 + d});
    for (const Arc &g : all())
        for (const double sample : samples)
            for (const double sign : {1, -1}) {
                const double x = sign * (g.single ? double(float(sample)) : sample);
                const long double e = exact(g, x);
                if (e == 0) continue;
                const long double ulp = std::ldexp(1.0L, std::ilogb(e) - (g.single ? 23 : 52));
                ASSERT_LE(std::fabs(g(x) - e) / ulp, g.f.bound) << g.f << " of " << x;
            }
}

TEST(Arc, SineIsOdd) {
    for (const Arc &g : all())
        if (g.sine)
            for (double x = 0; x < 1; x += 0.0037) ASSERT_EQ(g(-x), -g(x)) << g.f << " of " << x;
}

} // namespace
