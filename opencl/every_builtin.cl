/* For each built-in and width one kernel that applies it to arrays, such as exp_f8: the kernels of
 * opencl_test.cpp. */
#include <quevar/quevar.h>

#define vload1(i, p) (p)[i]
#define vstore1(value, i, p) (p)[i] = (value)
#define LOAD(T, W, v) vload##W(get_global_id(0), (global const quevar_##T *)v)
#define ADDRESS(pointee) , (global pointee *)p + get_global_id(0)

#define KERNEL(W, shape, A, R, P, name, mark)                                                                \
    kernel void name##_##mark##W(global const char *x, global const char *y, global const char *z,           \
                                 global char *p, global char *result) {                                      \
        vstore##W(                                                                                           \
            name(QUEVAR_VECTORS_##shape(LOAD, A, W) QUEVAR_POINTER_##shape(ADDRESS, quevar_##P##x##W)),      \
            get_global_id(0), (global quevar_##R *)result);                                                  \
    }
#define QUEVAR_BUILTIN(name, base, mark, tier, shape, A, R, P)                                               \
    QUEVAR_MEMBERS(KERNEL, KERNEL, shape, A, R, P, name, mark)
#include "builtins.def"
