// The form in which values go in and out, for every shape and width, on families made for it. invoke lays
// out registers and memory by itself and checks what a callee must leave alone; that it notices is tested
// on callees that break each rule.
#include "abi_families.hpp"
#include "harness/families.hpp"
#include <cfenv>
#include <gtest/gtest.h>

extern "C" {
#define QUEVAR_FAMILY(base, mark, tier, shape, A, R, P, filler, bound)                                       \
    QUEVAR_MEMBERS(QUEVAR_DECLARE, QUEVAR_DECLARE_MEMORY, shape, A, R, P, base, mark, tier)
#include "abi_families.def"
#undef QUEVAR_FAMILY
}

namespace {

using namespace quevar::tool;

const Family abi_families[] = {
#define QUEVAR_FAMILY QUEVAR_FAMILY_ROW
#include "abi_families.def"
#undef QUEVAR_FAMILY
};

std::uint64_t bits_as(Type t, std::int64_t value) {
    if (t == Type::f32) return bits_of(float(value));
    if (t == Type::f64) return bits_of(double(value));
    return size_of(t) == 4 ? bits_of(std::uint32_t(value)) : bits_of(value);
}

struct Lane {
    std::int64_t x = 0, y = 0, z = 0; // 0 beyond the arguments of the family

    std::int64_t operator*(const form::Weights &w) const { return w[0] * x + w[1] * y + w[2] * z + w[3]; }

    std::int64_t result(const Family &f, bool first) const {
        if (x > form::settled_above && f.tier == std::string("_settle"))
            return *this * (first ? form::settled_first : form::settled_second);
        if (x > form::rare_above && x <= form::left_alone_above &&
            (f.second() != Type::none || form::has_special(size_of(f.a), size_of(f.r))))
            return *this * (first ? form::rare_first : form::rare_second);
        return *this * (first ? form::first : form::second);
    }
};

class Form : public testing::TestWithParam<Family> {
protected:
    const Family &family = GetParam();

    void check(int width, std::span<const int> kind_of_lane) {
        const int lanes = lanes_in_memory(width);
        Lane lane[16];
        unsigned char in[3][128], first[128], second[128];
        const void *arguments[] = {in[0], in[1], in[2]};
        for (int i = 0; i < lanes; ++i)
            for (int k = 0; k < family.arguments(); ++k) {
                const Type t = family.argument(k);
                std::int64_t &value = k == 0 ? lane[i].x : k == 1 ? lane[i].y : lane[i].z;
                value = 1 + i + 40 * k + (k == 0 ? 1000 * kind_of_lane[i] : 0);
                const auto bits = bits_as(t, value);
                std::memcpy(in[k] + i * size_of(t), &bits, size_of(t));
                if (width == 3 && i == 3) // the filler takes its place
                    value = t == family.a ? 9 : 1;
            }
        invoke(family, width, arguments, first, second);
        for (int i = 0; i < lanes; ++i)
            for (bool is_first : {true, false}) {
                const Type t = is_first ? family.r : family.second();
                std::uint64_t got = 0;
                std::memcpy(&got, (is_first ? first : second) + i * size_of(t), size_of(t));
                const auto expected = bits_as(t, lane[i].result(family, is_first));
                if (t != Type::none)
                    EXPECT_EQ(got, expected) << family.name(width) << ", lane " << i << ", x = " << lane[i].x
                                             << (is_first ? ", first" : ", second") << " result: got "
                                             << to_string(t, got) << ", expected " << to_string(t, expected);
            }
    }
};

TEST_P(Form, EveryLaneArgumentAndResultInItsPlace) {
    for (int width : widths) {
        int kinds[16] = {};
        check(width, kinds);
        for (int turn = 0; turn < 4; ++turn) { // thousands of x: ordinary, rare, left alone, settled
            for (int i = 0; i < 16; ++i) kinds[i] = (i + turn) % 4;
            check(width, kinds);
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Abi, Form, testing::ValuesIn(abi_families),
                         [](const auto &info) { return info.param.name(); });

// A callee of raw instructions.
#define QUEVAR_BROKEN(name, code)                                                                            \
    [[gnu::naked]] void name() { asm(code "\n ret"); }

QUEVAR_BROKEN(clobbers_rbx, "xor %ebx, %ebx")
QUEVAR_BROKEN(clobbers_r15, "inc %r15")
QUEVAR_BROKEN(returns_below, "pop %rcx \n push %rcx \n push %rcx")
QUEVAR_BROKEN(changes_mxcsr, "movl $0x5f80, -8(%rsp) \n ldmxcsr -8(%rsp)")
QUEVAR_BROKEN(clears_flags, "movl $0x1f80, -8(%rsp) \n ldmxcsr -8(%rsp)")
QUEVAR_BROKEN(changes_x87_control, "movw $0x27f, -8(%rsp) \n fldcw -8(%rsp)")
QUEVAR_BROKEN(leaves_x87_register, "fldz")
QUEVAR_BROKEN(writes_after, "vmovups %ymm0, (%rdi)")
QUEVAR_BROKEN(writes_before, "movb $0, -1(%rdi)")
QUEVAR_BROKEN(drops_block, "xor %eax, %eax")
QUEVAR_BROKEN(reads_lane_1, "vmovshdup %xmm0, %xmm0")
QUEVAR_BROKEN(nothing, "")

struct Broken {
    void (*callee)();
    Shape shape;
    Type type;
    int width;
    const char *message;
};

TEST(Invoke, NoticesABrokenInterface) {
    using enum Shape;
    const Broken cases[] = {
        {clobbers_rbx, unary, Type::f32, 8, "rbx"},
        {clobbers_r15, unary, Type::f32, 8, "r15"},
        {returns_below, unary, Type::f32, 8, "rsp"},
        {changes_mxcsr, unary, Type::f32, 8, "MXCSR"},
        {clears_flags, unary, Type::f32, 8, "flags"},
        {changes_x87_control, unary, Type::f32, 8, "x87 control"},
        {leaves_x87_register, unary, Type::f32, 8, "x87 registers"},
        {writes_after, unary_pointer, Type::f32, 4, "beyond"},
        {writes_before, unary_pointer, Type::f64, 4, "beyond"},
        {writes_after, binary, Type::f64, 16, "rax"},
        {drops_block, binary, Type::f64, 16, "rax"},
        {writes_before, binary, Type::f64, 16, "beyond"},
    };
    std::feraiseexcept(FE_INEXACT);
    for (const auto &c : cases) {
        Family f{"broken", "", "", c.shape, c.type, c.type, c.shape == unary_pointer ? c.type : Type::none,
                 0,        0,  {}};
        std::fill_n(f.member, 6, reinterpret_cast<const void *>(c.callee));
        unsigned char in[128] = {}, first[128], second[128];
        const void *arguments[] = {in, in};
        std::string message;
        try {
            invoke(f, c.width, arguments, first, second);
        } catch (const BrokenInterface &e) {
            message = e.what();
        }
        EXPECT_NE(message.find(c.message), std::string::npos) << c.message << ": " << message;
    }
}

TEST(Invoke, LeavesGarbageWhereNothingIsCarried) {
    Family f{"identity", "f", "", Shape::unary, Type::f32, Type::f32, Type::none, 0, 0, {}};
    const float x[] = {1, 2};
    const void *arguments[] = {x};
    float r[2];
    f.member[0] = reinterpret_cast<const void *>(reads_lane_1);
    invoke(f, 1, arguments, r, nullptr);
    EXPECT_NE(r[0], r[0]);
    f.member[0] = reinterpret_cast<const void *>(nothing);
    invoke(f, 1, arguments, r, nullptr);
    EXPECT_EQ(r[0], 1);
}

} // namespace
