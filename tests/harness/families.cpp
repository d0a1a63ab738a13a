#include "harness/families.hpp"
#include "harness/call.hpp"
#include <algorithm>
#include <bit>
#include <cinttypes>
#include <cstdio>
#include <immintrin.h>
#include <string_view>

namespace quevar::tool {
namespace {

const Family all[] = {
#define QUEVAR_FAMILY QUEVAR_FAMILY_ROW
#include "quevar/families.def"
#undef QUEVAR_FAMILY
};

static_assert(offsetof(CallState, integer) == 24 && offsetof(CallState, preserved) == 80 &&
              offsetof(CallState, mxcsr) == 144 && offsetof(CallState, x87_tags) == 156 &&
              offsetof(CallState, ymm) == 160);

// As floats a quiet and a signalling NaN, as a double a signalling NaN.
constexpr std::uint64_t garbage = 0x7ff4'dead'7fa5'beef;
constexpr unsigned mxcsr_control = 0xffc0, mxcsr_flags = 0x3f;

// A block that a member writes, aligned as its elements are and no better, between guard bytes.
class Guarded {
public:
    Guarded(Type t, int lanes) : begin(guard + size_of(t)), bytes(size_of(t) * lanes) {
        std::memset(memory, fill, begin + bytes + guard);
    }
    unsigned char *block() { return memory + begin; }
    bool intact() const { return filled(memory, begin) && filled(memory + begin + bytes, guard); }

private:
    static constexpr int guard = 64;
    static constexpr unsigned char fill = 0xa5;
    static bool filled(const unsigned char *p, int n) { return *p == fill && !std::memcmp(p, p + 1, n - 1); }
    int begin, bytes;
    alignas(64) unsigned char memory[8 + guard + 256 + guard];
};

struct Call {
    CallState state{};
    unsigned char stack[3 * 128];
    int integers = 0, vectors = 0;

    explicit Call(const void *target) {
        state.target = target;
        state.stack = stack;
        std::fill_n(state.integer, 6, garbage);
        for (int i = 0; i < 6; ++i) state.preserved[i] = garbage + i;
        for (auto &ymm : state.ymm)
            for (int i = 0; i < 32; i += 8) std::memcpy(ymm + i, &garbage, 8);
    }
    void pass_pointer(void *p) { state.integer[integers++] = reinterpret_cast<std::uintptr_t>(p); }
    void pass_scalar(const void *value, int bytes) { std::memcpy(&state.integer[integers++], value, bytes); }
    void pass_vector(const void *value, int bytes) {
        std::memcpy(state.ymm[vectors], value, bytes);
        vectors += std::max(1, bytes / 32);
    }
    void pass_in_memory(const void *value, int bytes) {
        std::memcpy(stack + state.stack_bytes, value, bytes);
        state.stack_bytes += bytes;
    }
};

int vectors(Type t, int width) { return std::max(1, size_of(t) * width / 32); }

[[noreturn]] void broken(const Family &f, int width, const std::string &what) {
    throw BrokenInterface(f.name(width) + ": " + what);
}

void check_preserved(const Family &f, int width, const CallState &s) {
    const char *names[] = {"rbx", "rbp", "r12", "r13", "r14", "r15"};
    for (int i = 0; i < 6; ++i)
        if (s.preserved[i] != garbage + i) broken(f, width, std::string(names[i]) + " not preserved");
    if (s.rsp[0] != s.rsp[1]) broken(f, width, "rsp not preserved");
    if ((s.mxcsr[0] ^ s.mxcsr[1]) & mxcsr_control) broken(f, width, "MXCSR control bits not preserved");
    if (s.mxcsr[0] & ~s.mxcsr[1] & mxcsr_flags) broken(f, width, "exception flags cleared");
    if (s.x87_control[0] != s.x87_control[1]) broken(f, width, "x87 control word not preserved");
    if (s.x87_tags != 0xffff) broken(f, width, "x87 registers left in use");
}

} // namespace

std::span<const Family> families() { return all; }

namespace {
struct Properties {
    const char *arguments, *results;
};
constexpr Properties properties[] = {
#define TEXT(word) TEXT_(word)
#define TEXT_(word) #word
#define PROPERTIES(name) {TEXT(QUEVAR_SHAPE_ARGUMENTS(name)), TEXT(QUEVAR_SHAPE_RESULTS(name))},
    QUEVAR_SHAPES(PROPERTIES)};
const Properties &of(Shape shape) { return properties[static_cast<int>(shape)]; }
} // namespace

int Family::arguments() const {
    const std::string_view text = of(shape).arguments;
    return text == "1i" ? 2 : text[0] - '0';
}
bool Family::is_pair() const { return of(shape).results == std::string_view("pair"); }

Type Family::second() const { return is_pair() ? r : p; }

void invoke(const Family &f, int width, const void *const *arguments, void *result, void *second) {
    const int lanes = lanes_in_memory(width);
    const bool has_pointer = f.p != Type::none;
    const bool is_pair = f.is_pair();
    int vectors_in = 0;
    for (int k = 0; k < f.arguments(); ++k) vectors_in += vectors(f.argument(k), width);
    const bool in_memory = std::max(vectors_in, vectors(f.r, width) * (is_pair ? 2 : 1)) > 4;
    const int result_bytes = size_of(f.r) * lanes;

    Call call(f.member[std::find(widths, std::end(widths), width) - widths]);
    Guarded block(f.r, lanes * (is_pair ? 2 : 1)), target(f.p, lanes);
    if (in_memory) call.pass_pointer(block.block());
    for (int k = 0; k < f.arguments(); ++k) {
        const int bytes = size_of(f.argument(k)) * lanes;
        if (in_memory) call.pass_in_memory(arguments[k], bytes);
        else if (width == 1 && !is_float(f.argument(k))) call.pass_scalar(arguments[k], bytes);
        else call.pass_vector(arguments[k], bytes);
    }
    if (has_pointer) call.pass_pointer(target.block());

    quevar_tool_call(&call.state);
    _mm_setcsr(_mm_getcsr() | (call.state.mxcsr[1] & mxcsr_flags));

    check_preserved(f, width, call.state);
    if (!block.intact() || !target.intact()) broken(f, width, "wrote beyond its result");
    const unsigned char *first = call.state.ymm[0];
    const unsigned char *other = call.state.ymm[vectors(f.r, width)];
    if (in_memory) {
        if (call.state.rax != reinterpret_cast<std::uintptr_t>(block.block()))
            broken(f, width, "rax is not the address of the result block");
        first = block.block();
        other = first + result_bytes;
    } else if (width == 1) {
        if (!is_float(f.r)) first = reinterpret_cast<const unsigned char *>(&call.state.rax);
        other = first + result_bytes;
    }
    std::memcpy(result, first, result_bytes);
    if (is_pair) std::memcpy(second, other, result_bytes);
    if (has_pointer) std::memcpy(second, target.block(), size_of(f.p) * lanes);
}

double value_of(Type t, std::uint64_t bits) {
    switch (t) {
    case Type::f32:
        return std::bit_cast<float>(std::uint32_t(bits));
    case Type::f64:
        return std::bit_cast<double>(bits);
    case Type::i32:
        return std::int32_t(bits);
    case Type::i64:
        return double(std::int64_t(bits));
    default:
        return double(bits);
    }
}

std::string to_string(Type t, std::uint64_t bits) {
    char text[64];
    std::snprintf(text, sizeof text, "0x%0*" PRIx64 " (%.17g)", 2 * size_of(t), bits, value_of(t, bits));
    return text;
}

} // namespace quevar::tool
