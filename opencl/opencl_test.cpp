// Kernels that use every built-in at every width: what they call, and that each lane arrives where it should.
#include <gtest/gtest.h>

#include <array>
#include <climits>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <memory>
#include <set>
#include <string>
#include <string_view>
#include <type_traits>

#include "quevar/quevar.h"

size_t work_item;
size_t get_global_id(unsigned) { return work_item; }

namespace {

TEST(OpenCl, KernelsCallNothingButMembers) {
    constexpr const char *callees[]{
        "_Z13get_global_idj",
#define EXPECT_MEMBER(W, base, mark, tier) "__quevar_" #base #mark #W #tier,
#define QUEVAR_BUILTIN(name, base, mark, tier, shape, A, R, P)                                               \
    QUEVAR_WIDTHS(EXPECT_MEMBER, EXPECT_MEMBER, base, mark, tier)
#define QUEVAR_CONVERSION(W, name, base, mark, A, R) EXPECT_MEMBER(W, base, mark, )
#include "builtins.def"
#undef QUEVAR_BUILTIN
    };
    const std::set<std::string> expected(std::begin(callees), std::end(callees));

    const std::unique_ptr<FILE, int (*)(FILE *)> listing(popen(NM " -P " KERNELS, "r"), pclose);
    std::set<std::string> called;
    char name[256], type;
    while (fscanf(listing.get(), "%255s %c%*[^\n]", name, &type) == 2) {
        if (type == 'U') called.insert(name);
        EXPECT_NE(type, 't') << name << " was not inlined";
    }
    EXPECT_EQ(called, expected);
}

// The member that a built-in must call, told from the built-in alone.
std::string member_of(std::string name, int width, const std::string &argument, const std::string &result) {
    const bool is_float = argument == "f32" || (result == "f32" && argument != "f64");
    std::string operation, mark = is_float ? "f" : "", tier;
    const auto take = [&](const std::string &word) {
        const std::size_t at = name.find(word);
        if (at == name.npos) return false;
        name.erase(at, word.size());
        return true;
    };
    if (take("convert_")) {
        const bool to_integer = result[0] != 'f';
        const bool saturated = take("_sat");
        operation = to_integer          ? "cvtfpto" + result
                    : argument == "f64" ? "cvtfp64tofp32"
                                        : "cvt" + argument + "tofp";
        std::string mode = to_integer ? "rtz" : "rte";
        for (const char *named : {"rte", "rtz", "rtp", "rtn"})
            if (take(std::string("_") + named)) mode = named;
        operation += mode + (saturated ? "sat" : to_integer ? "nosat" : "");
        const std::pair<std::string, std::string> types[] = {{"int", "i32"},   {"uint", "u32"},
                                                             {"long", "i64"},  {"ulong", "u64"},
                                                             {"float", "f32"}, {"double", "f64"}};
        for (const auto &[type, element] : types)
            if (element == result) EXPECT_EQ(name, type + (width == 1 ? "" : std::to_string(width)));
    } else {
        for (const char *prefix : {"native", "half"})
            if (take(std::string(prefix) + "_")) tier = std::string("_") + prefix;
        operation = name == "recip"      ? "inv"
                    : name == "divide"   ? "div"
                    : name == "lgamma_r" ? "lgammar"
                                         : name;
    }
    return "__quevar_" + operation + mark + std::to_string(width) + tier;
}

TEST(OpenCl, BuiltinsAreTheMembersTheyAreNamedAfter) {
#define EXPECT_NAMESAKE(W, name, base, mark, tier, A, R)                                                     \
    EXPECT_EQ("__quevar_" #base #mark #W #tier, member_of(#name, W, #A, #R));
#define QUEVAR_BUILTIN(name, base, mark, tier, shape, A, R, P)                                               \
    QUEVAR_WIDTHS(EXPECT_NAMESAKE, EXPECT_NAMESAKE, name, base, mark, tier, A, R)
#define QUEVAR_CONVERSION(W, name, base, mark, A, R) EXPECT_NAMESAKE(W, name, base, mark, , A, R)
#include "builtins.def"
#undef QUEVAR_BUILTIN
}

// A member at width 1 may round steps separately that the others fuse.
template <class T> bool agree(T result, T expected) {
    if (std::memcmp(&result, &expected, sizeof(T)) == 0) return true;
    if constexpr (!std::is_floating_point_v<T>) return false;
    return std::abs(double(result) - double(expected)) <= 1e-5 * std::abs(double(expected));
}

constexpr int count = 48;
// Aligned as an element and no better, which is all that vloadn and vstoren may count on.
template <class T> struct lanes {
    alignas(64) T before{};
    T values[count]{};
    T &operator[](int i) { return values[i]; }
    const T &operator[](int i) const { return values[i]; }
};
template <class T> lanes<T> scatter(double scale) {
    lanes<T> values;
    for (int i = 0; i < count; i++) {
        const double value = (i * 29 % count - count / 3) * scale;
        values[i] = std::is_floating_point_v<T> ? T(value) : T(long(value));
    }
    return values;
}
template <class T> const lanes<T> x = scatter<T>(std::is_floating_point_v<T> ? 0.37 : 3.7e7);
template <class T> const lanes<T> y = scatter<T>(0.61);
template <class T> const lanes<T> z = scatter<T>(0.83);

constexpr bool is_with_int(std::string_view shape) { return shape == "with_int"; }
template <class A, bool with_int> using Beside = std::conditional_t<with_int, int, A>; // what y is
using quevar_void = char; // what the pointer addresses where there is none: stays zero

template <class R, class P>
void check(const char *builtin, int width, void (*kernel)(void *, void *), R (*scalar)(int, P *)) {
    lanes<R> result{};
    alignas(64) std::array<P, count * 4 / 3> second{};
    for (work_item = 0; work_item < size_t(count / width); work_item++) kernel(result.values, second.data());
    const int stride = width == 3 ? 4 : width;
    for (int i = 0; i < count; i++) {
        P second_expected{};
        const R expected = scalar(i, &second_expected);
        EXPECT_TRUE(agree(result[i], expected)) << builtin << " at width " << width << ", lane " << i << ": "
                                                << result[i] << " where the scalar gives " << expected;
        const P through_pointer = second[i / width * stride + i % width];
        EXPECT_TRUE(agree(through_pointer, second_expected))
            << builtin << " at width " << width << ", lane " << i << ": " << through_pointer
            << " through the pointer where the scalar gives " << second_expected;
    }
}

#define DECLARE(W, name, A)                                                                                  \
    extern "C" void name##_##A##x##W(const void *, const void *, const void *, void *, void *);
#define QUEVAR_BUILTIN(name, base, mark, tier, shape, A, R, P) QUEVAR_WIDTHS(DECLARE, DECLARE, name, A)
#define QUEVAR_BUILTIN_SCALAR(name, A, Y) QUEVAR_WIDTHS(DECLARE, DECLARE, name##_scalar, A)
#define QUEVAR_CONVERSION(W, name, base, mark, A, R) DECLARE(W, name, A)
#include "builtins.def"
#undef QUEVAR_BUILTIN

TEST(OpenCl, LanesAgreeWithScalarMembers) {
#define LANE(T, W, v) v<quevar_##T>[i]
#define POINTER(P, W) second
#define CHECK(W, shape, A, R, P, name, base, mark, tier)                                                     \
    check<quevar_##R, quevar_##P>(                                                                           \
        #name, W,                                                                                            \
        [](void *result, void *second) {                                                                     \
            name##_##A##x##W(x<quevar_##A>.values, y<Beside<quevar_##A, is_with_int(#shape)>>.values,        \
                             z<quevar_##A>.values, second, result);                                          \
        },                                                                                                   \
        [](int i, [[maybe_unused]] quevar_##P *second) {                                                     \
            return QUEVAR_NAME(base, mark, tier,                                                             \
                               1)(QUEVAR_VECTORS(shape, LANE, A, 1) QUEVAR_POINTER(shape, POINTER, P, 1));   \
        });
#define QUEVAR_BUILTIN(name, base, mark, tier, shape, A, R, P)                                               \
    QUEVAR_MEMBERS(CHECK, CHECK, shape, A, R, P, name, base, mark, tier)
#define QUEVAR_CONVERSION(W, name, base, mark, A, R) CHECK(W, unary, A, R, void, name, base, mark, )
#include "builtins.def"
#undef QUEVAR_BUILTIN
}

TEST(OpenCl, ScalarsStandBesideVectors) {
#define CHECK_SCALAR(W, name, A, Y)                                                                          \
    check<quevar_##A, quevar_void>(                                                                          \
        #name, W,                                                                                            \
        [](void *result, void *) {                                                                           \
            name##_scalar_##A##x##W(x<quevar_##A>.values, y<quevar_##Y>.values, nullptr, nullptr, result);   \
        },                                                                                                   \
        [](int i, quevar_void *) { return std::name(x<quevar_##A>[i], y<quevar_##Y>[i / W]); });
#define QUEVAR_BUILTIN_SCALAR(name, A, Y)                                                                    \
    CHECK_SCALAR(2, name, A, Y)                                                                              \
    CHECK_SCALAR(3, name, A, Y)                                                                              \
    CHECK_SCALAR(4, name, A, Y) CHECK_SCALAR(8, name, A, Y) CHECK_SCALAR(16, name, A, Y)
#define QUEVAR_BUILTIN(...)
#include "builtins.def"
}

TEST(OpenCl, ConversionsRoundAsNamed) {
    using ints = std::array<int, 4>;
    work_item = 0;
    const auto to_int = [](auto kernel, std::array<float, 4> fractions = {2.5f, -2.5f, 1.25f, -0.75f}) {
        ints result;
        kernel(fractions.data(), nullptr, nullptr, nullptr, result.data());
        return result;
    };
    // Floats near `base` are 4 apart: the same fractions, of that distance, from base away from zero.
    const auto to_float = [](auto kernel) {
        constexpr int base = 3 << 24;
        const ints large{base + 10, -base - 10, base + 5, -base - 3};
        std::array<float, 4> r;
        kernel(large.data(), nullptr, nullptr, nullptr, r.data());
        return ints{(int(r[0]) - base) / 4, (int(r[1]) + base) / 4, (int(r[2]) - base) / 4,
                    (int(r[3]) + base) / 4};
    };
    const ints rte{2, -2, 1, -1}, rtn{2, -3, 1, -1}, rtp{3, -2, 2, 0}, rtz{2, -2, 1, 0};
    EXPECT_EQ(to_int(convert_int4_f32x4), rtz);
    EXPECT_EQ(to_int(convert_int4_rte_f32x4), rte);
    EXPECT_EQ(to_int(convert_int4_rtn_f32x4), rtn);
    EXPECT_EQ(to_int(convert_int4_rtp_f32x4), rtp);
    EXPECT_EQ(to_int(convert_int4_rtz_f32x4), rtz);
    EXPECT_EQ(to_float(convert_float4_i32x4), rte);
    EXPECT_EQ(to_float(convert_float4_rte_i32x4), rte);
    EXPECT_EQ(to_float(convert_float4_rtn_i32x4), rtn);
    EXPECT_EQ(to_float(convert_float4_rtp_i32x4), rtp);
    EXPECT_EQ(to_float(convert_float4_rtz_i32x4), rtz);

    const std::array<float, 4> outside{3e9f, -3e9f, NAN, 2.5f};
    EXPECT_EQ(to_int(convert_int4_sat_f32x4, outside), (ints{INT_MAX, INT_MIN, 0, 2}));
    EXPECT_EQ(to_int(convert_int4_sat_rtp_f32x4, outside), (ints{INT_MAX, INT_MIN, 0, 3}));
}

} // namespace
