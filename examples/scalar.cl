/* The built-ins of the example kernels on the C library's scalar functions, for comparison. */
#include "opencl/load_store.h"

float expf(float);
float exp2f(float);
float logf(float);
float sinf(float);
float cosf(float);
float sqrtf(float);
float fabsf(float);
float fdimf(float, float);

#define BUILTIN(name, parameters, lane)                                                                      \
    float16 __attribute__((overloadable, always_inline)) name parameters {                                   \
        float16 result;                                                                                      \
        _Pragma("unroll") for (int i = 0; i < 16; i++) result[i] = lane;                                     \
        return result;                                                                                       \
    }
BUILTIN(exp, (float16 x), expf(x[i]))
BUILTIN(exp2, (float16 x), exp2f(x[i]))
BUILTIN(log, (float16 x), logf(x[i]))
BUILTIN(sin, (float16 x), sinf(x[i]))
BUILTIN(cos, (float16 x), cosf(x[i]))
BUILTIN(sqrt, (float16 x), sqrtf(x[i]))
BUILTIN(fabs, (float16 x), fabsf(x[i]))
BUILTIN(fdim, (float16 x, float16 y), fdimf(x[i], y[i]))
