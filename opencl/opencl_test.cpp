// Kernels that use every built-in at every width: what they call, and that each lane arrives where it should.
#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <cstdio>
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
    std::set<std::string> expected{"_Z13get_global_idj"};
#define EXPECT_MEMBER(W, base, mark, tier) expected.insert("__quevar_" #base #mark #W #tier);
#define QUEVAR_BUILTIN(name, base, mark, tier, shape, A, R, P)                                               \
    QUEVAR_WIDTHS(EXPECT_MEMBER, EXPECT_MEMBER, base, mark, tier)
#include "builtins.def"
#undef QUEVAR_BUILTIN

    const std::unique_ptr<FILE, int (*)(FILE *)> listing(popen(NM " -P " KERNELS, "r"), pclose);
    std::set<std::string> called;
    char name[256], type;
    while (fscanf(listing.get(), "%255s %c%*[^\n]", name, &type) == 2) {
        if (type == 'U') called.insert(name);
        EXPECT_NE(type, 't') << name << " was not inlined";
    }
    EXPECT_EQ(called, expected);
}

// A member at width 1 may round steps separately that the others fuse.
bool agree(double result, double expected) {
    return result == expected || (std::isnan(result) && std::isnan(expected)) ||
           std::abs(result - expected) <= 1e-5 * std::abs(expected);
}

constexpr int count = 48;
alignas(64) std::array<char, count * 32> second;
template <class T> using lanes = std::array<T, count>;
template <class T> lanes<T> scatter(double scale) {
    lanes<T> values;
    for (int i = 0; i < count; i++) values[i] = T((i * 29 % count - count / 3) * scale);
    return values;
}
template <class T> const lanes<T> x = scatter<T>(0.37);
template <class T> const lanes<T> y = scatter<T>(0.61);
template <class T> const lanes<T> z = scatter<T>(0.83);

constexpr bool is_with_int(std::string_view shape) { return shape == "with_int"; }
template <class A, bool with_int> using Beside = std::conditional_t<with_int, int, A>; // what y is

template <class R, class Kernel, class Member>
void check(const char *builtin, int width, Kernel kernel, Member member) {
    lanes<R> result{};
    for (work_item = 0; work_item < size_t(count / width); work_item++) kernel(result.data());
    for (int i = 0; i < count; i++) {
        const auto expected = member(i);
        EXPECT_TRUE(agree(result[i], expected)) << builtin << " at width " << width << ", lane " << i << ": "
                                                << result[i] << " where the scalar gives " << expected;
    }
}

#define DECLARE(W, name, mark)                                                                               \
    extern "C" void name##_##mark##W(const void *, const void *, const void *, void *, void *);
#define QUEVAR_BUILTIN(name, base, mark, tier, shape, A, R, P) QUEVAR_WIDTHS(DECLARE, DECLARE, name, mark)
#include "builtins.def"
#undef QUEVAR_BUILTIN

TEST(OpenCl, LanesAgreeWithScalarMembers) {
#define LANE(T, W, v) v<quevar_##T>[i]
#define ADDRESS(P) , reinterpret_cast<quevar_##P *>(second.data())
#define CHECK(W, shape, A, R, P, name, base, mark, tier)                                                     \
    check<quevar_##R>(                                                                                       \
        #name, W,                                                                                            \
        [](void *result) {                                                                                   \
            name##_##mark##W(&x<quevar_##A>, &y<Beside<quevar_##A, is_with_int(#shape)>>, &z<quevar_##A>,    \
                             second.data(), result);                                                         \
        },                                                                                                   \
        [](int i) {                                                                                          \
            return QUEVAR_NAME(base, mark, tier,                                                             \
                               1)(QUEVAR_VECTORS_##shape(LANE, A, 1) QUEVAR_POINTER_##shape(ADDRESS, P));    \
        });
#define QUEVAR_BUILTIN(name, base, mark, tier, shape, A, R, P)                                               \
    QUEVAR_MEMBERS(CHECK, CHECK, shape, A, R, P, name, base, mark, tier)
#include "builtins.def"
}

} // namespace
