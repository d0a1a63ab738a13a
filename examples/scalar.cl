/* The built-ins of haze.cl on the C library's scalar functions, for comparison. */
#include "opencl/load_store.h"

float expf(float);
float exp2f(float);
float fdimf(float, float);

#define MAP(F)                                                                                               \
    (float16)(F(0), F(1), F(2), F(3), F(4), F(5), F(6), F(7), F(8), F(9), F(a), F(b), F(c), F(d), F(e), F(f))

#define EXP(i) expf(x.s##i)
float16 __attribute__((overloadable, always_inline)) exp(float16 x) { return MAP(EXP); }

#define EXP2(i) exp2f(x.s##i)
float16 __attribute__((overloadable, always_inline)) exp2(float16 x) { return MAP(EXP2); }

#define FDIM(i) fdimf(x.s##i, y.s##i)
float16 __attribute__((overloadable, always_inline)) fdim(float16 x, float16 y) { return MAP(FDIM); }
