// sinpi, cospi, tanpi in both element types, at both tiers.
#include "harness/lane.hpp"
#include <cmath>
#include <gtest/gtest.h>
#include <numbers>
#include <vector>

namespace {

using namespace quevar::test;

struct OfPi {
    const Family &f;
    bool single = f.a == Type::f32;
    bool is(const char *base) const { return f.base == std::string(base); }

    std::uint64_t bits(double x) const { return single ? pattern(float(x)) : pattern(x); }
    double value(std::uint64_t pattern) const { return value_of(f.a, pattern); }
    std::uint64_t at(int width, double x) const { return lane(f, width, {bits(x)}).first; }
    std::uint64_t operator()(double x) const { return at(4, x); }

    double threshold() const {
        return single ? is("tanpi") ? 0x1p20 : 0x1p22 : is("tanpi") ? 0x1p49 : is("cospi") ? 0x1p43 : 0x1p51;
    }
};

std::vector<OfPi> all() {
    std::vector<OfPi> found;
    for (const std::string base : {"sinpi", "cospi", "tanpi"})
        for (const char *rest : {"f", "f_native", "", "_native"}) found.push_back({family(base + rest)});
    return found;
}

// Its polynomial gives the number next to 1.
bool misses_one(const OfPi &g) { return !g.single && g.is("sinpi") && !*g.f.tier; }

// Multiples of 1/2 have exact results, with the language's signs of zeros and infinities. They are of all
// sizes, from the fold on nothing else.
TEST(OfPi, MultiplesOfHalf) {
    const double inf = INFINITY;
    const struct {
        double x, sin, cos, tan;
    } table[] = {
        {0, 0, 1, 0},
        {0.5, 1, 0, inf},
        {1, 0, -1, -0.0},
        {1.5, -1, 0, -inf},
        {2, 0, 1, 0},
        {2.5, 1, 0, inf},
        {7, 0, -1, -0.0},
        {1000.5, 1, 0, inf},
        {0x1p20, 0, 1, 0},
        {0x1p20 + 1, 0, -1, -0.0},
        {0x1p22 - 0.5, -1, 0, -inf},
        {0x1p22 + 1, 0, -1, -0.0},
        {0x1p23 + 3, 0, -1, -0.0},
        {0x1p24 - 1, 0, -1, -0.0},
        {0x1p31, 0, 1, 0},
        {0x1.fffffep31, 0, 1, 0},
        {0x1p60, 0, 1, 0},
        {0x1.fffffep127, 0, 1, 0},
    };
    for (const OfPi &g : all())
        for (const int width : widths)
            for (const auto &[x, sin, cos, tan] : table) {
                double r = g.is("sinpi") ? sin : g.is("cospi") ? cos : tan;
                if (misses_one(g) && std::fabs(r) == 1) r *= 0x1.fffffffffffffp-1;
                EXPECT_EQ(g.at(width, x), g.bits(r)) << g.f.name(width) << " of " << x;
                EXPECT_EQ(g.at(width, -x), g.bits(g.is("cospi") ? r : -r)) << g.f.name(width) << " of " << -x;
            }
    // In double there are odd numbers and halves up to 2^52.
    for (const OfPi &g : all())
        if (!g.single)
            for (const double x : {0x1p43, 0x1p49, 0x1p50, 0x1p51})
                for (const double half : {0, 1, 2, 3})
                    EXPECT_EQ(g(x + half / 2), g(half / 2)) << g.f << " of " << x << " + " << half / 2;
}

TEST(OfPi, InfinitiesAndNaNs) {
    for (const OfPi &g : all()) {
        const std::uint64_t infinity = g.bits(INFINITY), sign = g.bits(-0.0),
                            quiet = infinity >> 1 & ~infinity;
        for (const int width : widths)
            for (const std::uint64_t s : {std::uint64_t{0}, sign}) {
                EXPECT_EQ(lane(g.f, width, {s | infinity}).first, sign | infinity | quiet) << g.f.name(width);
                for (const std::uint64_t payload : {std::uint64_t{1}, quiet - 2, quiet | 3})
                    EXPECT_EQ(lane(g.f, width, {s | infinity | payload}).first,
                              s | infinity | quiet | payload)
                        << g.f.name(width);
            }
    }
}

// Beyond the threshold |x| has the result of what is left of it after whole periods of the fold, where the
// nearest multiple of the period lies below and where it lies above.
TEST(OfPi, Folds) {
    for (const OfPi &g : all()) {
        const double t = g.threshold(), period = g.single ? 512 : 256,
                     step = t * (g.single ? 0x1p-22 : 0x1p-51);
        for (const double multiple : {t + period, t + 3 * period})
            for (int i = 0; i < 400; i++) {
                const double rest = std::fmod(3 * step * i * i, period),
                             x = multiple + rest - (rest < period / 2 ? 0 : period);
                EXPECT_EQ(g(x), g(rest)) << g.f << " of " << x;
                EXPECT_EQ(g(-x), g(-rest)) << g.f << " of " << -x;
            }
    }
}

// Up to the threshold the main path is exact enough.
TEST(OfPi, MainPathReachesTheThreshold) {
    for (const OfPi &g : all()) {
        const double t = g.threshold(),
                     below = g.single ? std::nextafterf(float(t), 0) : std::nextafter(t, 0);
        EXPECT_EQ(g(t), g(0)) << g.f;
        EXPECT_EQ(g(below), g(below - t + 2)) << g.f;
    }
}

long double exact(const OfPi &g, double x) {
    const long double r = std::remainder(x, 2), q = std::rint(2 * r),
                      angle = (r - q / 2) * std::numbers::pi_v<long double>;
    const auto sine = [angle](int quarters) {
        const long double s = quarters & 1 ? std::cos(angle) : std::sin(angle);
        return quarters & 2 ? -s : s;
    };
    const int n = int(q) & 3;
    return g.is("sinpi") ? sine(n) : g.is("cospi") ? sine(n + 1) : sine(n) / sine(n + 1);
}

// All sizes from the smallest to beyond the fold, and next to the multiples of 1/4 and 1/2.
TEST(OfPi, KeepsItsBound) {
    std::vector<double> samples;
    for (double x = 1e-37; x < 1e10; x *= 1.0371) samples.push_back(x);
    for (double x = 0; x < 4.1; x += 0.00317) samples.push_back(x);
    for (double x = 0; x < 4.1; x += 0.25)
        for (const double d : {1e-15, 1e-7, 1e-6, 1e-4}) samples.insert(samples.end(), {x + d, x - d});
    for (const OfPi &g : all())
        for (const double sample : samples) {
            const double x = g.single ? double(float(sample)) : sample;
            const long double e = exact(g, x);
            if (e == 0 || std::isinf(e)) continue;
            const int digits = g.single ? 23 : 52;
            const long double ulp =
                std::ldexp(1.0L, std::max(std::ilogb(e), g.single ? -126 : -1022) - digits);
            ASSERT_LE(std::fabs(g.value(g(x)) - e) / ulp, g.f.bound) << g.f << " of " << x;
        }
}

// The last step of these has two roundings at width 1.
TEST(OfPi, TwoRoundingsAtWidth1) {
    for (const OfPi &g : all()) {
        int different = 0;
        for (double x = 0.013; x < 1; x += 0.013) different += g.at(1, x) != g.at(2, x);
        EXPECT_EQ(different > 0, !g.single && (g.is("sinpi") || (g.is("cospi") && *g.f.tier))) << g.f;
    }
}

} // namespace
