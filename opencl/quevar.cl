/* The built-ins of builtins.def at every width, defined on top of the members of the library. Compiled to
 * bitcode and linked into a kernel with -mlink-builtin-bitcode, they inline to direct calls of the members.
 */
#include <quevar/quevar.h>

#include "load_store.h"

/* A built-in's parameters, as the language passes them. */
#define VALUE(T, W, v) quevar_##T##x##W v
#define POINTER(P, W) quevar_##P##x##W *p

/* What a member takes for them. It writes through a pointer to private memory, and on this target all
 * address spaces are the same memory. */
#define SPLIT_scalar(v) v
#define SPLIT_1(v) v
#define SPLIT_2(v) v.lo, v.hi
#define SPLIT_4(v) v.lo.lo, v.lo.hi, v.hi.lo, v.hi.hi
#define IN_REGISTERS(T, W, v) QUEVAR_FORM(SPLIT_, T, W)(v)
#define IN_MEMORY(T, W, v) ((quevar_##T##x##W##m){{IN_REGISTERS(T, W, v)}})
#define ADDRESS(P, W) (quevar_##P##x##W##_out *)(size_t)p

/* The body of a built-in. A result comes whole in registers, and in parts in memory. */
#define CALL(W, shape, A, R, P, member)                                                                      \
    return member(QUEVAR_VECTORS(shape, IN_REGISTERS, A, W) QUEVAR_POINTER(shape, ADDRESS, P, W));
#define CALL_MEMORY(W, shape, A, R, P, member)                                                               \
    const quevar_##R##x##W##m r =                                                                            \
        member(QUEVAR_VECTORS(shape, IN_MEMORY, A, W) QUEVAR_POINTER(shape, ADDRESS, P, W));                  \
    return QUEVAR_FORM(JOIN_, R, W)(quevar_##R##x##W, r.part);
#define JOIN_2(R, part) (R)(part[0], part[1])
#define JOIN_4(R, part) (R)(part[0], part[1], part[2], part[3])

#define BUILTIN(space, call, W, shape, A, R, P, name, member)                                                \
    quevar_##R##x##W __attribute__((overloadable, always_inline))                                            \
    name(QUEVAR_VECTORS(shape, VALUE, A, W) QUEVAR_POINTER(shape, space POINTER, P, W)) {      \
        call(W, shape, A, R, P, member)                                                                      \
    }

/* One overload for each address space that a pointer may have. */
#define OVERLOADS_0(...) BUILTIN(__private, __VA_ARGS__)
#define OVERLOADS_1(...)                                                                                     \
    BUILTIN(__private, __VA_ARGS__) BUILTIN(__global, __VA_ARGS__) BUILTIN(__local, __VA_ARGS__)
#define OVERLOADS(shape, ...) QUEVAR_CAT(OVERLOADS_, QUEVAR_SHAPE_POINTER(shape))(__VA_ARGS__)

#define OF_REGISTERS(W, shape, A, R, P, name, base, mark, tier)                                              \
    OVERLOADS(shape, CALL, W, shape, A, R, P, name, QUEVAR_NAME(base, mark, tier, W))
#define OF_MEMORY(W, shape, A, R, P, name, base, mark, tier)                                                 \
    OVERLOADS(shape, CALL_MEMORY, W, shape, A, R, P, name, QUEVAR_NAME(base, mark, tier, W))
#define QUEVAR_BUILTIN(name, base, mark, tier, shape, A, R, P)                                               \
    QUEVAR_MEMBERS(OF_REGISTERS, OF_MEMORY, shape, A, R, P, name, base, mark, tier)

#define BUILTIN_SCALAR(W, name, A, Y)                                                                        \
    quevar_##A##x##W __attribute__((overloadable, always_inline)) name(quevar_##A##x##W x, quevar_##Y y) {   \
        return name(x, (quevar_##Y##x##W)y);                                                                 \
    }
#define QUEVAR_BUILTIN_SCALAR(name, A, Y)                                                                    \
    BUILTIN_SCALAR(2, name, A, Y)                                                                            \
    BUILTIN_SCALAR(3, name, A, Y)                                                                            \
    BUILTIN_SCALAR(4, name, A, Y) BUILTIN_SCALAR(8, name, A, Y) BUILTIN_SCALAR(16, name, A, Y)

#define QUEVAR_CONVERSION(W, name, base, mark, A, R) OF_REGISTERS(W, unary, A, R, void, name, base, mark, )

#include "builtins.def"
