// Prints docs/reference.md: every operation of families.def with its families.
#include <cstdio>
#include <string>
#include <string_view>

namespace {

const char *opencl_type(std::string_view element) {
    const std::pair<std::string_view, const char *> names[] = {{"f32", "float"}, {"f64", "double"},
                                                               {"i32", "int"},   {"u32", "uint"},
                                                               {"i64", "long"},  {"u64", "ulong"}};
    for (const auto &[name, type] : names)
        if (name == element) return type;
    return "void";
}

// The signature for n lanes, in the words of OpenCL C.
std::string signature(std::string_view shape, const char *a, const char *r, const char *p) {
    const std::string A = std::string(opencl_type(a)) + "n", R = std::string(opencl_type(r)) + "n",
                      P = std::string(opencl_type(p)) + "n";
    std::string arguments = A + " x";
    if (shape.starts_with("binary") || shape == "ternary") arguments += ", " + A + " y";
    if (shape == "ternary") arguments += ", " + A + " z";
    if (shape == "with_int") arguments += ", intn n";
    if (shape.ends_with("pointer")) arguments += ", " + P + " *p";
    return (shape.ends_with("pair") ? R + ", " + R : R) + " (" + arguments + ")";
}

void operation(const char *base, const char *what, const char *argument, const char *special) {
    std::printf("\n## %s\n\n%s.\n\n- Arguments: %s.\n- Special values: %s.\n\n"
                "| family | signature | bound, ulps |\n|---|---|--:|\n",
                base, what, argument, special);
}

void family(const char *base, const char *mark, const char *tier, const std::string &signature,
            double bound) {
    std::printf("| `%s%s%s` | %s | ", base, mark, tier, signature.c_str());
    if (bound == 0) std::puts("exact or correctly rounded |");
    else std::printf("%g |\n", bound);
}

} // namespace

int main() {
    std::puts(
        "# Reference\n\n"
        "Made by `quevar_reference` from `families.def`. A member's name is `__quevar_`, the base with `f` "
        "for "
        "float, the width\n1, 2, 3, 4, 8 or 16, and the tier: `__quevar_expf8_native`. `quevar.h` tells how "
        "lanes are passed.");
#define QUEVAR_OPERATION(base, what, argument, special) operation(#base, what, argument, special);
#define QUEVAR_FAMILY(base, mark, tier, shape, A, R, P, filler, bound)                                       \
    family(#base, #mark, #tier, signature(#shape, #A, #R, #P), bound);
#include "quevar/families.def"
}
