// The caller's floating-point environment: its rounding mode, and its exception flags.
#include "harness/run.hpp"
#include <cfenv>
#include <gtest/gtest.h>
#include <set>
#include <string_view>
#include <vector>

namespace {

using namespace quevar::tool;

using Results = std::vector<std::array<std::uint64_t, 2>>;
Results results(const Family &f, int width, const std::vector<Arguments> &list) {
    Results got(list.size());
    run(f, width, list, [&](std::size_t i, std::uint64_t a, std::uint64_t b) { got[i] = {a, b}; });
    return got;
}

// The environment that a test found, restored when it ends.
class Environment : public testing::TestWithParam<Family> {
protected:
    std::fenv_t before;
    void SetUp() override { std::fegetenv(&before); }
    void TearDown() override { std::fesetenv(&before); }
};

// What quevar.h tells to be independent of the caller's rounding mode.
std::vector<Family> independent_of_the_mode() {
    static const std::set<std::string_view> bases = {
        "fmax",      "fmin", "maxmag",   "minmag",  "ceil",  "floor", "trunc",
        "round",     "fabs", "copysign", "nan",     "frexp", "ilogb", "logb",
        "nextafter", "idiv", "irem",     "idivrem", "udiv",  "urem",  "udivrem"};
    std::vector<Family> found;
    for (const Family &f : families())
        if (bases.contains(f.base) || std::string_view(f.base).starts_with("cvtfpto")) found.push_back(f);
    return found;
}
class AnyRoundingMode : public Environment {};

TEST_P(AnyRoundingMode, GivesTheSameResults) {
    const Family &f = GetParam();
    const std::vector<Arguments> list = sample(f, 3000);
    for (int width : widths) {
        const Results nearest = results(f, width, list);
        for (int mode : {FE_DOWNWARD, FE_UPWARD, FE_TOWARDZERO}) {
            std::fesetround(mode);
            const Results got = results(f, width, list);
            std::fesetround(FE_TONEAREST);
            for (std::size_t i = 0; i < list.size(); ++i)
                ASSERT_EQ(got[i], nearest[i])
                    << f.name(width) << " in mode " << mode << " of " << to_string(f.argument(0), list[i][0])
                    << ", " << to_string(f.argument(1), list[i][1]);
        }
    }
}

// invoke() throws where a flag was cleared.
TEST_P(Environment, NoFlagIsCleared) {
    const std::vector<Arguments> list = sample(GetParam(), 100);
    for (int width : widths) {
        std::feraiseexcept(FE_ALL_EXCEPT);
        results(GetParam(), width, list);
    }
}

INSTANTIATE_TEST_SUITE_P(Families, AnyRoundingMode, testing::ValuesIn(independent_of_the_mode()),
                         [](const auto &info) { return info.param.name(); });
INSTANTIATE_TEST_SUITE_P(Families, Environment, testing::ValuesIn(families().begin(), families().end()),
                         [](const auto &info) { return info.param.name(); });

} // namespace
