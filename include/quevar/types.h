/* The lane types of quevar: quevar_f32x8 and so on, and results of two values. Included by quevar.h. */
#ifndef QUEVAR_TYPES_H
#define QUEVAR_TYPES_H

#if !defined(__x86_64__) || !defined(__AVX2__) || !defined(__FMA__)
#error "quevar passes 256-bit vectors on x86-64: compile with -mavx2 -mfma, or with a -march that has both"
#endif

/* Stands before the members that return a vector above 256 bits, which only Clang receives as it comes. */
#ifndef QUEVAR_WIDE_RESULT
#if !defined(__clang__)
#define QUEVAR_WIDE_RESULT                                                                                   \
    __attribute__((error("GCC cannot receive a vector above 256 bits in registers: use Clang here")))
#elif defined(__AVX512F__)
#define QUEVAR_WIDE_RESULT                                                                                   \
    __attribute__((error("with AVX-512 vectors above 256 bits come in zmm registers: call without it "       \
                         "here")))
#else
#define QUEVAR_WIDE_RESULT
#endif
#endif

/* Stands before the members whose result is decided by their arguments alone, so that two calls with the same
 * arguments may become one. */
#ifndef QUEVAR_PURE
#define QUEVAR_PURE __attribute__((const, nothrow))
#endif

#ifdef __OPENCL_C_VERSION__
#define QUEVAR_VECTOR(name, element, cl, W) typedef cl##W name
#define QUEVAR_UNALIGNED(name, element, cl, W) typedef cl##W __attribute__((aligned(sizeof(element)))) name
#else
#define QUEVAR_VECTOR(name, element, cl, W)                                                                  \
    typedef element name __attribute__((vector_size((W) * sizeof(element))))
#define QUEVAR_UNALIGNED(name, element, cl, W)                                                               \
    typedef element name __attribute__((vector_size((W) * sizeof(element)), aligned(sizeof(element))))
#endif

/* T: name, element: in C, cl: stem of the OpenCL C vector types, H: lanes of 256 bits.
 *
 *     quevar_T, quevar_Tx1     the scalar
 *     quevar_Tx2 ... x16       a value of so many lanes; x3 has four
 *     quevar_Tx1_out ... x16   what a result pointer addresses: the same value, aligned as its element
 *     quevar_Tx8m, x16m        a value in memory, where it does not go in registers */
#define QUEVAR_TYPES(T, element, cl, H)                                                                      \
    typedef element quevar_##T, quevar_##T##x1, quevar_##T##x1_out;                                          \
    QUEVAR_VECTOR(quevar_##T##x2, element, cl, 2);                                                           \
    QUEVAR_VECTOR(quevar_##T##x4, element, cl, 4);                                                           \
    QUEVAR_VECTOR(quevar_##T##x8, element, cl, 8);                                                           \
    QUEVAR_VECTOR(quevar_##T##x16, element, cl, 16);                                                         \
    QUEVAR_UNALIGNED(quevar_##T##x2_out, element, cl, 2);                                                    \
    QUEVAR_UNALIGNED(quevar_##T##x3_out, element, cl, 4);                                                    \
    QUEVAR_UNALIGNED(quevar_##T##x4_out, element, cl, 4);                                                    \
    QUEVAR_UNALIGNED(quevar_##T##x8_out, element, cl, 8);                                                    \
    QUEVAR_UNALIGNED(quevar_##T##x16_out, element, cl, 16);                                                  \
    typedef struct quevar_##T##x8m {                                                                         \
        quevar_##T##x##H##_out part[8 / (H)];                                                                \
    } quevar_##T##x8m;                                                                                       \
    typedef struct quevar_##T##x16m {                                                                        \
        quevar_##T##x##H##_out part[16 / (H)];                                                               \
    } quevar_##T##x16m
QUEVAR_TYPES(f32, float, float, 8);
QUEVAR_TYPES(i32, int, int, 8);
QUEVAR_TYPES(u32, unsigned int, uint, 8);
QUEVAR_TYPES(f64, double, double, 4);
QUEVAR_TYPES(i64, long, long, 4);
QUEVAR_TYPES(u64, unsigned long, ulong, 4);

#ifdef __OPENCL_C_VERSION__
typedef float3 quevar_f32x3;
typedef int3 quevar_i32x3;
typedef uint3 quevar_u32x3;
typedef double3 quevar_f64x3;
typedef long3 quevar_i64x3;
typedef ulong3 quevar_u64x3;
#else
typedef quevar_f32x4 quevar_f32x3;
typedef quevar_i32x4 quevar_i32x3;
typedef quevar_u32x4 quevar_u32x3;
typedef quevar_f64x4 quevar_f64x3;
typedef quevar_i64x4 quevar_i64x3;
typedef quevar_u64x4 quevar_u64x3;
#endif

/* ---- Results of two values: quevar_f32x8_pair holds what quevar_f32x8_first and _second take out ----
 *
 * At width 1 both values are packed in one, side by side. Otherwise each begins a half of a wide vector, so
 * that it comes in registers of its own. */
#define QUEVAR_PAIR_TYPE(T, W, element, bytes)                                                               \
    typedef element quevar_##T##x##W##_pair __attribute__((vector_size(bytes)))
#ifdef __OPENCL_C_VERSION__
#define QUEVAR_PAIR_ACCESS(T, W, name, offset)
#else
#define QUEVAR_PAIR_ACCESS(T, W, name, offset)                                                               \
    static inline __attribute__((always_inline, unused))                                                     \
    quevar_##T##x##W quevar_##T##x##W##_##name(quevar_##T##x##W##_pair both) {                               \
        quevar_##T##x##W value;                                                                              \
        __builtin_memcpy(&value, (const char *)&both + (offset), sizeof value);                              \
        return value;                                                                                        \
    }
#endif
#define QUEVAR_PACKED_PAIR(T)                                                                                \
    QUEVAR_PAIR_ACCESS(T, 1, first, 0) QUEVAR_PAIR_ACCESS(T, 1, second, sizeof value)
#ifdef __clang__
#define QUEVAR_WIDE_PAIR(T, W, element, bytes)                                                               \
    QUEVAR_PAIR_TYPE(T, W, element, bytes);                                                                  \
    QUEVAR_PAIR_ACCESS(T, W, first, 0) QUEVAR_PAIR_ACCESS(T, W, second, (bytes) / 2)
#else /* no other compiler receives it */
#define QUEVAR_WIDE_PAIR(T, W, element, bytes) QUEVAR_PAIR_TYPE(T, W, element, bytes);
#endif

QUEVAR_PAIR_TYPE(f32, 1, float, 16);
QUEVAR_PAIR_TYPE(f64, 1, double, 16);
typedef quevar_i64 quevar_i32x1_pair;
typedef quevar_u64 quevar_u32x1_pair;
QUEVAR_PACKED_PAIR(f32)
QUEVAR_PACKED_PAIR(f64)
QUEVAR_PACKED_PAIR(i32)
QUEVAR_PACKED_PAIR(u32)
#define QUEVAR_WIDE_PAIRS(T, element, bytes_of_8)                                                            \
    QUEVAR_WIDE_PAIR(T, 2, element, 64)                                                                      \
    QUEVAR_WIDE_PAIR(T, 3, element, 64)                                                                      \
    QUEVAR_WIDE_PAIR(T, 4, element, 64) QUEVAR_WIDE_PAIR(T, 8, element, bytes_of_8)
QUEVAR_WIDE_PAIRS(f32, float, 64)
QUEVAR_WIDE_PAIRS(i32, int, 64)
QUEVAR_WIDE_PAIRS(u32, unsigned int, 64)
QUEVAR_WIDE_PAIRS(f64, double, 128)
QUEVAR_WIDE_PAIR(f32, 16, float, 128)
QUEVAR_WIDE_PAIR(i32, 16, int, 128)
QUEVAR_WIDE_PAIR(u32, 16, unsigned int, 128)
typedef struct quevar_f64x16m_pair {
    quevar_f64x16m first, second;
} quevar_f64x16m_pair;

#endif
