/* For each built-in and width one kernel that applies it to arrays, such as exp_f32x8, and fmax_scalar_f32x8
 * with a scalar beside the vector: the kernels of opencl_test.cpp. */
#include <quevar/quevar.h>

#define vload1(i, p) (p)[i]
#define vstore1(value, i, p) (p)[i] = (value)
#define LOAD(T, W, v) vload##W(get_global_id(0), (global const quevar_##T *)v)
#define LOAD_SCALAR(T, v) ((global const quevar_##T *)v)[get_global_id(0)]
#define ADDRESS(P, W) (global quevar_##P##x##W *)p + get_global_id(0)
#define LOCAL_ADDRESS(P, W) (local quevar_##P##x##W *)q
#define PRIVATE_ADDRESS(P, W) &s

#define KERNEL(W, kernel_name, R, value)                                                                     \
    kernel void kernel_name(global const char *x, global const char *y, global const char *z,                \
                            global char *p, global char *result) {                                           \
        const quevar_##R##x##W r = value;                                                                    \
        vstore##W(r, get_global_id(0), (global quevar_##R *)result);                                         \
    }
#define OF_VECTORS(W, shape, A, R, P, name)                                                                  \
    KERNEL(W, name##_##A##x##W, R,                                                                           \
           name(QUEVAR_VECTORS(shape, LOAD, A, W) QUEVAR_POINTER(shape, ADDRESS, P, W)))
/* With pointers to the other address spaces. Not called: a missing overload shows in the symbols. */
#define OF_POINTERS_0(...)
#define OF_POINTERS_1(W, shape, A, R, P, name)                                                               \
    kernel void name##_##A##x##W##_spaces(global const char *x, global const char *y, global const char *z,  \
                                          local char *q, global char *result) {                              \
        quevar_##P##x##W s;                                                                                  \
        const quevar_##R##x##W r =                                                                           \
            name(QUEVAR_VECTORS(shape, LOAD, A, W) QUEVAR_POINTER(shape, LOCAL_ADDRESS, P, W)) +             \
            name(QUEVAR_VECTORS(shape, LOAD, A, W) QUEVAR_POINTER(shape, PRIVATE_ADDRESS, P, W));            \
        vstore##W(r, get_global_id(0), (global quevar_##R *)result);                                         \
    }
#define OF_POINTERS(W, shape, ...)                                                                           \
    QUEVAR_CAT(OF_POINTERS_, QUEVAR_SHAPE_POINTER(shape))(W, shape, __VA_ARGS__)
#define OF_SCALAR(W, name, A, Y) KERNEL(W, name##_scalar_##A##x##W, A, name(LOAD(A, W, x), LOAD_SCALAR(Y, y)))

#define QUEVAR_BUILTIN(name, base, mark, tier, shape, A, R, P)                                               \
    QUEVAR_MEMBERS(OF_VECTORS, OF_VECTORS, shape, A, R, P, name)                                             \
    QUEVAR_MEMBERS(OF_POINTERS, OF_POINTERS, shape, A, R, P, name)
#define QUEVAR_BUILTIN_SCALAR(name, A, Y)                                                                    \
    OF_SCALAR(2, name, A, Y)                                                                                 \
    OF_SCALAR(3, name, A, Y) OF_SCALAR(4, name, A, Y) OF_SCALAR(8, name, A, Y) OF_SCALAR(16, name, A, Y)
#define QUEVAR_CONVERSION(W, name, base, mark, A, R) OF_VECTORS(W, unary, A, R, void, name)
#include "builtins.def"
