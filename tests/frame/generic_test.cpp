// What holds for every family: the result of a lane depends on the lane's arguments alone.
#include "harness/families.hpp"
#include <array>
#include <cfenv>
#include <cmath>
#include <gtest/gtest.h>
#include <limits>
#include <random>
#include <set>
#include <vector>

namespace {

using namespace quevar::tool;

// Families that at width 1 round separately some steps which they fuse at the other widths.
bool fused_at_width_1(const Family &f) {
    static const std::set<std::string> separate = {
        // default
        "acosh", "asinh", "atanh", "atan2pi", "atanpi", "cbrt", "rcbrt", "log", "log2", "log10", "pown",
        "rootn", "sinpi", "remainder", "remquo", "acoshf", "asinhf", "atanhf", "atan2pif", "atanpif", "cbrtf",
        "log2f", "powf", "pownf", "rootnf", "remainderf", "remquof",
        // _rm
        "log2f_rm",
        // _native
        "acosh_native", "asinh_native", "atanh_native", "atan2pi_native", "atanpi_native", "cbrt_native",
        "rcbrt_native", "log_native", "log10_native", "log1p_native", "pow_native", "powr_native",
        "pown_native", "rootn_native", "sinpi_native", "cospi_native", "acoshf_native", "asinhf_native",
        "atanhf_native", "atan2pif_native", "atanpif_native", "cbrtf_native", "rcbrtf_native",
        "log1pf_native", "pownf_native", "rootnf_native"};
    return !separate.contains(f.name());
}

using Arguments = std::array<std::uint64_t, 3>; // bits
struct Results {
    std::uint64_t first = 0, second = 0;
    bool operator==(const Results &) const = default;
};

class Generic : public testing::TestWithParam<Family> {
protected:
    const Family &family = GetParam();
    std::mt19937_64 random{20240229};
    static constexpr std::size_t half = 1024;
    std::vector<Arguments> pool; // the first half ordinary: no lane that the family treats apart

    double uniform(double low, double high) { return std::uniform_real_distribution(low, high)(random); }

    static std::uint64_t of_value(Type t, double value) {
        switch (t) {
        case Type::f32:
            return bits_of(float(value));
        case Type::f64:
            return bits_of(value);
        default:
            return std::int64_t(std::fmod(value, 0x1p62));
        }
    }
    static std::uint64_t truncate(Type t, std::uint64_t bits) {
        return size_of(t) == 4 ? std::uint32_t(bits) : bits;
    }

    // Around the filler: that is in the domain of every family, and no special lane.
    std::uint64_t ordinary_bits(int k) {
        const Type t = family.argument(k);
        if (!is_float(t)) return family.filler_of(k) + random() % 20;
        return of_value(t, value_of(t, family.filler) * uniform(0.55, 1.3));
    }

    std::uint64_t special_bits(Type t) {
        const int bits = 8 * size_of(t), digits = bits == 32 ? 23 : 52;
        const std::uint64_t field_max = bits == 32 ? 0xff : 0x7ff, least_normal = 1ull << digits,
                            infinity = field_max << digits, sign = random() % 2 << (bits - 1),
                            fraction = random() % least_normal;
        switch (random() % 8) {
        case 0:
            return random();
        case 1: // every exponent
            return sign | random() % (field_max + 1) << digits | fraction;
        case 2: // limits and their neighbours
            return sign |
                   (std::array<std::uint64_t, 3>{0, least_normal, infinity}[random() % 3] + random() % 3 - 1);
        case 3: // NaNs of both kinds
            return sign | infinity | fraction;
        case 4: // denormal
            return sign | fraction >> random() % digits;
        case 5: // powers of two and their neighbours
            return sign ^ (of_value(t, std::ldexp(1, int(random() % 140) - 70)) + random() % 3 - 1);
        case 6: // whole numbers and halves
            return of_value(t, std::ldexp(double(std::int64_t(random()) >> random() % 64), -1));
        default:
            return of_value(t, std::ldexp(uniform(-2, 2), int(random() % 20) - 10));
        }
    }

    void SetUp() override {
        for (std::size_t n = 0; n < 2 * half; ++n) {
            Arguments x{};
            for (int k = 0; k < family.arguments(); ++k) {
                const Type t = family.argument(k);
                x[k] = truncate(t, n < half || random() % 8 == 0 ? ordinary_bits(k) : special_bits(t));
                if (n >= half && t == family.a && random() % 8 == 0) x[k] = x[0];
            }
            pool.push_back(x);
        }
    }

    std::vector<Results> call(int width, const std::vector<Arguments> &lanes) const {
        unsigned char in[3][128], first[128], second[128];
        const void *arguments[] = {in[0], in[1], in[2]};
        for (int k = 0; k < family.arguments(); ++k)
            for (std::size_t i = 0; i < lanes.size(); ++i)
                std::memcpy(in[k] + i * size_of(family.argument(k)), &lanes[i][k],
                            size_of(family.argument(k)));
        invoke(family, width, arguments, first, second);
        std::vector<Results> results(lanes.size());
        for (std::size_t i = 0; i < lanes.size(); ++i) {
            std::memcpy(&results[i].first, first + i * size_of(family.r), size_of(family.r));
            std::memcpy(&results[i].second, second + i * size_of(family.second()), size_of(family.second()));
        }
        return results;
    }

    void check();

    Results among_copies(int width, const Arguments &x) const {
        return call(width, std::vector(lanes_in_memory(width), x))[0];
    }

    std::string text(const Arguments &x) const {
        std::string s;
        for (int k = 0; k < family.arguments(); ++k) s += " " + to_string(family.argument(k), x[k]);
        return s;
    }
    std::string text(const Results &r) const {
        return " " + to_string(family.r, r.first) +
               (family.second() == Type::none ? "" : " " + to_string(family.second(), r.second));
    }
};

// A caller's rounding mode, for as long as this lives.
struct RoundingMode {
    explicit RoundingMode(int mode) { std::fesetround(mode); }
    ~RoundingMode() { std::fesetround(FE_TONEAREST); }
};

TEST_P(Generic, LaneDependsOnItsArgumentsAlone) { check(); }
TEST_P(Generic, LaneDependsOnItsArgumentsAloneRoundingDownward) {
    const RoundingMode mode(FE_DOWNWARD);
    check();
}

void Generic::check() {
    // What each argument gives in a lane among copies of itself, at width 1 and at the others.
    const int reference_width[] = {fused_at_width_1(family) ? 4 : 1, 4};
    std::vector<Results> reference[2];
    for (int wide : {0, 1})
        for (const auto &x : pool) reference[wide].push_back(among_copies(reference_width[wide], x));
    Arguments filler{};
    for (int k = 0; k < family.arguments(); ++k) filler[k] = family.filler_of(k);

    for (int width : widths) {
        const bool wide = width > 1;
        const int lanes = lanes_in_memory(width);
        std::vector<Arguments> x(lanes);
        std::vector<Results> expected(lanes);
        for (std::size_t done = 0; done < 2 * pool.size(); done += lanes) {
            // Of 16 lanes none, one, half or all from the second half.
            const unsigned share = std::array{0, 1, 8, 16}[random() % 4];
            for (int i = 0; i < lanes; ++i) {
                const std::size_t n = random() % half + (random() % 16 < share ? half : 0);
                x[i] = pool[n];
                expected[i] = reference[wide][n];
            }
            if (width == 3) // whatever x[3] is, the filler takes its place
                expected[3] = among_copies(4, filler);
            const auto got = call(width, x);
            for (int i = 0; i < lanes; ++i)
                ASSERT_TRUE(got[i] == expected[i])
                    << family.name(width) << ", lane " << i << "\narguments" << text(x[i]) << "\ngot"
                    << text(got[i]) << "\nexpected" << text(expected[i]) << ", as at width "
                    << reference_width[wide];
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Families, Generic, testing::ValuesIn(families().begin(), families().end()),
                         [](const auto &info) { return info.param.name(); });

} // namespace
