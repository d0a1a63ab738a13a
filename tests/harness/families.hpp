// Every family as data, and a way to call any member of it without knowing its type.
#pragma once
#include "quevar/quevar.h"
#include <cstdint>
#include <cstring>
#include <ostream>
#include <span>
#include <stdexcept>
#include <string>

namespace quevar::tool {

enum class Type { none, f32, f64, i32, u32, i64, u64 };
constexpr int size_of(Type t) {
    return t == Type::none ? 0 : t == Type::f32 || t == Type::i32 || t == Type::u32 ? 4 : 8;
}
constexpr bool is_float(Type t) { return t == Type::f32 || t == Type::f64; }

enum class Shape {
#define QUEVAR_NAME_OF_SHAPE(name) name,
    QUEVAR_SHAPES(QUEVAR_NAME_OF_SHAPE)
#undef QUEVAR_NAME_OF_SHAPE
};

inline constexpr int widths[] = {1, 2, 3, 4, 8, 16};
constexpr int lanes_in_memory(int width) { return width == 3 ? 4 : width; }

struct Family {
    const char *base, *mark, *tier;
    Shape shape;
    Type a, r, p;
    std::uint64_t filler; // bits of an a
    double bound;
    const void *member[6]; // in the order of widths

    std::string name() const { return std::string(base) + mark + tier; }
    std::string name(int width) const { return base + (mark + std::to_string(width)) + tier; }
    int arguments() const;
    bool is_pair() const;
    Type argument(int k) const { return shape == Shape::with_int && k == 1 ? Type::i32 : a; }
    std::uint64_t filler_of(int k) const { return argument(k) == a ? filler : 1; }
    Type second() const; // element of the second result: of a pair or behind the pointer
};

std::span<const Family> families();
inline std::ostream &operator<<(std::ostream &out, const Family &f) { return out << f.name(); }

// The interface was not kept: by the callee, or the list and the library disagree about the form.
struct BrokenInterface : std::runtime_error {
    using runtime_error::runtime_error;
};

// Calls a member. arguments[k] holds the lanes of argument k; result and second receive those of the
// results (second is unused if there is none). Width 3 has four lanes in each.
//
// The call is made as unpleasant as the interface allows: garbage NaNs stand in every register and bit
// that carries nothing, and memory has the least alignment allowed. Preserved registers, the control
// words and the bytes around each block that the callee writes are checked, and that no exception flag is
// cleared: BrokenInterface. Flags that the callee raises are raised afterwards.
void invoke(const Family &, int width, const void *const *arguments, void *result, void *second);

template <class T> std::uint64_t bits_of(T value) {
    std::uint64_t bits = 0;
    std::memcpy(&bits, &value, sizeof value);
    return bits;
}
double value_of(Type, std::uint64_t bits);
std::string to_string(Type, std::uint64_t bits); // 0x3f400000 (0.75)

namespace row {
inline constexpr Type type_void = Type::none, type_f32 = Type::f32, type_f64 = Type::f64,
                      type_i32 = Type::i32, type_u32 = Type::u32, type_i64 = Type::i64, type_u64 = Type::u64;
}

// A row of families.def as an initialiser of Family.
#define QUEVAR_FAMILY_ROW(base, mark, tier, shape, A, R, P, filler, bound)                                   \
    {#base,                                                                                                  \
     #mark,                                                                                                  \
     #tier,                                                                                                  \
     quevar::tool::Shape::shape,                                                                             \
     quevar::tool::row::type_##A,                                                                            \
     quevar::tool::row::type_##R,                                                                            \
     quevar::tool::row::type_##P,                                                                            \
     quevar::tool::bits_of(static_cast<quevar_##A>(filler)),                                                 \
     bound,                                                                                                  \
     {QUEVAR_MEMBERS(QUEVAR_MEMBER_ADDRESS, QUEVAR_MEMBER_ADDRESS, shape, A, base, mark, tier)}},
#define QUEVAR_MEMBER_ADDRESS(W, shape, A, base, mark, tier)                                                 \
    reinterpret_cast<const void *>(&QUEVAR_NAME(base, mark, tier, W)),

} // namespace quevar::tool
