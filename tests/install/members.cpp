// Links every member that the installed families.def lists.
#include <cstdio>
#include <quevar/quevar.h>

#define ADDRESS(W, shape, A, base, mark, tier)                                                               \
    reinterpret_cast<const void *>(QUEVAR_NAME(base, mark, tier, W)),
#define QUEVAR_FAMILY(base, mark, tier, shape, A, R, P, filler, bound)                                       \
    QUEVAR_MEMBERS(ADDRESS, ADDRESS, shape, A, base, mark, tier)

// extern, so that it is emitted though nobody reads it
extern const void *const members[] = {
#include <quevar/families.def>
};

int main() {
    std::printf("%zu members\n", sizeof members / sizeof members[0]);
    return __quevar_fdim1(3, 1) != 2;
}
