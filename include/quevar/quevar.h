/* quevar: vector mathematics for x86-64 with AVX2 and FMA.
 *
 * Every function maps argument lanes to result lanes. A name is
 *
 *     __quevar_ operation [f] width [tier]      e.g. __quevar_expf8_native
 *
 * with f for float and nothing for double, a width of 1, 2, 3, 4, 8 or 16 lanes, and the accuracy
 * tier _native, _half, _rm or none. families.def lists every family with its argument range, special
 * values and error bound; this header declares the six members of each.
 *
 * How a value of W lanes is passed:
 *
 *     lanes of     W = 1     2             3, 4      8            16
 *     4 bytes      scalar    64-bit xmm    xmm       ymm          2 ymm
 *     8 bytes      scalar    xmm           ymm       2 ymm        4 ymm
 *
 * Lane 0 has the lowest address. At width 3, lane 3 of an argument is ignored and lane 3 of a result
 * is meaningless. A value of several ymm is passed as that many 256-bit parameters, first lanes first,
 * and returned as one wide vector (in ymm0, ymm1, ...). Where the vector arguments or results of a
 * member come to more than four vectors, its arguments lie on the stack in argument order and the
 * result goes to a block that the caller provides: the types whose names end in m.
 *
 * A result through a pointer writes W elements, at width 3 four, and needs the element's alignment.
 *
 * Clang without AVX-512 expresses every form. GCC returns a vector above 256 bits in memory, and with
 * AVX-512 it comes in a zmm register, so there the members that return one in ymm registers cannot be
 * called: doing so is a compile-time error that says why.
 */
#ifndef QUEVAR_H
#define QUEVAR_H

#if !defined(__x86_64__) || !defined(__AVX2__) || !defined(__FMA__)
#error "quevar passes 256-bit vectors on x86-64: compile with -mavx2 -mfma, or with a -march that has both"
#endif

#if !defined(__clang__)
#define QUEVAR_NO_WIDE_RESULT                                                                                \
    __attribute__((error("GCC cannot receive a vector above 256 bits in registers: use Clang here")))
#elif defined(__AVX512F__)
#define QUEVAR_NO_WIDE_RESULT                                                                                \
    __attribute__((error("with AVX-512 vectors above 256 bits come in zmm registers: call without it "       \
                         "here")))
#else
#define QUEVAR_NO_WIDE_RESULT
#endif

/* ---- Lane types: quevar_f32x8 and so on; x1 is the scalar, x3 has four lanes in memory ---- */

#ifdef __OPENCL_C_VERSION__
#define QUEVAR_VECTOR(name, element, cl, W) typedef cl##W name
#define QUEVAR_UNALIGNED(name, element, cl, W) typedef cl##W __attribute__((aligned(sizeof(element)))) name
#else
#define QUEVAR_VECTOR(name, element, cl, W)                                                                  \
    typedef element name __attribute__((vector_size((W) * sizeof(element))))
#define QUEVAR_UNALIGNED(name, element, cl, W)                                                               \
    typedef element name __attribute__((vector_size((W) * sizeof(element)), aligned(sizeof(element))))
#endif

/* T: name, element: in C, cl: stem of the OpenCL C vector types, H: lanes of a 256-bit half. The types
 * in m are values in memory, aligned as their elements are. */
#define QUEVAR_TYPES(T, element, cl, H)                                                                      \
    typedef element quevar_##T, quevar_##T##x1;                                                              \
    QUEVAR_VECTOR(quevar_##T##x2, element, cl, 2);                                                           \
    QUEVAR_VECTOR(quevar_##T##x4, element, cl, 4);                                                           \
    QUEVAR_VECTOR(quevar_##T##x8, element, cl, 8);                                                           \
    QUEVAR_VECTOR(quevar_##T##x16, element, cl, 16);                                                         \
    QUEVAR_UNALIGNED(quevar_##T##_half_unaligned, element, cl, H);                                           \
    typedef quevar_##T##x##H quevar_##T##_half;                                                              \
    typedef struct quevar_##T##x8m {                                                                         \
        quevar_##T##_half_unaligned part[8 / (H)];                                                           \
    } quevar_##T##x8m;                                                                                       \
    typedef struct quevar_##T##x16m {                                                                        \
        quevar_##T##_half_unaligned part[16 / (H)];                                                          \
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

/* Pairs. At width 1 both values are packed in one; otherwise each lies in the low lanes of its half of
 * a wide vector, so that it has a register of its own. */
#define QUEVAR_PAIR_TYPES(T, element, packed)                                                                \
    typedef packed quevar_##T##_packed;                                                                      \
    typedef element quevar_##T##_two_halves __attribute__((vector_size(64)));                                \
    typedef element quevar_##T##_four_halves __attribute__((vector_size(128)))
QUEVAR_PAIR_TYPES(f32, float, quevar_f32x4);
QUEVAR_PAIR_TYPES(f64, double, quevar_f64x2);
QUEVAR_PAIR_TYPES(i32, int, quevar_i64);
QUEVAR_PAIR_TYPES(u32, unsigned int, quevar_u64);
typedef struct quevar_f64x32m {
    quevar_f64_half_unaligned part[8];
} quevar_f64x32m;

/* ---- From a row of families.def to signatures. The library defines its members with the same
 *      macros: what is declared is what is defined. ---- */

#define QUEVAR_CAT_(a, b) a##b
#define QUEVAR_CAT(a, b) QUEVAR_CAT_(a, b)
#define QUEVAR_SIZE_f32 4
#define QUEVAR_SIZE_i32 4
#define QUEVAR_SIZE_u32 4
#define QUEVAR_SIZE_f64 8
#define QUEVAR_SIZE_i64 8
#define QUEVAR_SIZE_u64 8

/* What a value of W lanes is, by element size: a scalar, 1, 2 or 4 vectors. FORM(x_, f32, 16) is x_2. */
#define QUEVAR_FORM_4_1 scalar
#define QUEVAR_FORM_4_2 1
#define QUEVAR_FORM_4_3 1
#define QUEVAR_FORM_4_4 1
#define QUEVAR_FORM_4_8 1
#define QUEVAR_FORM_4_16 2
#define QUEVAR_FORM_8_1 scalar
#define QUEVAR_FORM_8_2 1
#define QUEVAR_FORM_8_3 1
#define QUEVAR_FORM_8_4 1
#define QUEVAR_FORM_8_8 2
#define QUEVAR_FORM_8_16 4
#define QUEVAR_FORM(name, T, W) QUEVAR_CAT(name, QUEVAR_CAT(QUEVAR_FORM_, QUEVAR_CAT(QUEVAR_SIZE_##T, _##W)))

/* One vector argument: its parameters, and their names. */
#define QUEVAR_PARAMETER_1(T, W, v) quevar_##T##x##W v##0
#define QUEVAR_PARAMETER_2(T, W, v) quevar_##T##_half v##0, quevar_##T##_half v##1
#define QUEVAR_PARAMETER_4(T, W, v)                                                                          \
    quevar_##T##_half v##0, quevar_##T##_half v##1, quevar_##T##_half v##2, quevar_##T##_half v##3
#define QUEVAR_PARAMETER_scalar QUEVAR_PARAMETER_1
#define QUEVAR_PARAMETER(T, W, v) QUEVAR_FORM(QUEVAR_PARAMETER_, T, W)(T, W, v)
#define QUEVAR_PARAMETER_MEMORY(T, W, v) quevar_##T##x##W##m v
#define QUEVAR_NAMES_1(v) v##0
#define QUEVAR_NAMES_2(v) v##0, v##1
#define QUEVAR_NAMES_4(v) v##0, v##1, v##2, v##3
#define QUEVAR_NAMES_scalar QUEVAR_NAMES_1

/* The vector arguments of a shape, each made by V of (element, W, name), and its pointer argument,
 * made by S of the element that it addresses. A: element of the first argument. */
#define QUEVAR_VECTORS_unary(V, A, W) V(A, W, x)
#define QUEVAR_VECTORS_binary(V, A, W) V(A, W, x), V(A, W, y)
#define QUEVAR_VECTORS_ternary(V, A, W) V(A, W, x), V(A, W, y), V(A, W, z)
#define QUEVAR_VECTORS_with_int(V, A, W) V(A, W, x), V(i32, W, y)
#define QUEVAR_VECTORS_unary_pointer QUEVAR_VECTORS_unary
#define QUEVAR_VECTORS_binary_pointer QUEVAR_VECTORS_binary
#define QUEVAR_VECTORS_unary_pair QUEVAR_VECTORS_unary
#define QUEVAR_VECTORS_binary_pair QUEVAR_VECTORS_binary
#define QUEVAR_POINTER_unary(S, P)
#define QUEVAR_POINTER_binary(S, P)
#define QUEVAR_POINTER_ternary(S, P)
#define QUEVAR_POINTER_with_int(S, P)
#define QUEVAR_POINTER_unary_pointer(S, P) S(P)
#define QUEVAR_POINTER_binary_pointer(S, P) S(P)
#define QUEVAR_POINTER_unary_pair(S, P)
#define QUEVAR_POINTER_binary_pair(S, P)
#define QUEVAR_POINTER_PARAMETER(P) , quevar_##P *p
#define QUEVAR_POINTER_NAME(P) , p

/* The result of a shape, in registers and in memory. */
#define QUEVAR_SINGLE_scalar(R, W) quevar_##R
#define QUEVAR_SINGLE_1(R, W) quevar_##R##x##W
#define QUEVAR_SINGLE_2(R, W) QUEVAR_NO_WIDE_RESULT quevar_##R##x##W
#define QUEVAR_SINGLE_4(R, W) QUEVAR_NO_WIDE_RESULT quevar_##R##x##W
#define QUEVAR_SINGLE(R, W) QUEVAR_FORM(QUEVAR_SINGLE_, R, W)(R, W)
#define QUEVAR_SINGLE_MEMORY(R, W) quevar_##R##x##W##m
#define QUEVAR_PAIR_scalar(R) quevar_##R##_packed
#define QUEVAR_PAIR_1(R) QUEVAR_NO_WIDE_RESULT quevar_##R##_two_halves
#define QUEVAR_PAIR_2(R) QUEVAR_NO_WIDE_RESULT quevar_##R##_four_halves
#define QUEVAR_PAIR(R, W) QUEVAR_FORM(QUEVAR_PAIR_, R, W)(R)
#define QUEVAR_PAIR_MEMORY(R, W) quevar_##R##x32m
#define QUEVAR_RESULT_unary QUEVAR_SINGLE
#define QUEVAR_RESULT_binary QUEVAR_SINGLE
#define QUEVAR_RESULT_ternary QUEVAR_SINGLE
#define QUEVAR_RESULT_with_int QUEVAR_SINGLE
#define QUEVAR_RESULT_unary_pointer QUEVAR_SINGLE
#define QUEVAR_RESULT_binary_pointer QUEVAR_SINGLE
#define QUEVAR_RESULT_unary_pair QUEVAR_PAIR
#define QUEVAR_RESULT_binary_pair QUEVAR_PAIR

/* The six members of a family: D is applied to each width whose values go in registers, M to those
 * whose arguments or results come to more than four vectors. */
#define QUEVAR_WIDTHS(D, M, ...)                                                                             \
    D(1, __VA_ARGS__)                                                                                        \
    D(2, __VA_ARGS__) D(3, __VA_ARGS__) D(4, __VA_ARGS__) D(8, __VA_ARGS__) D(16, __VA_ARGS__)
#define QUEVAR_WIDTHS_16M(D, M, ...)                                                                         \
    D(1, __VA_ARGS__)                                                                                        \
    D(2, __VA_ARGS__) D(3, __VA_ARGS__) D(4, __VA_ARGS__) D(8, __VA_ARGS__) M(16, __VA_ARGS__)
#define QUEVAR_WIDTHS_8M_16M(D, M, ...)                                                                      \
    D(1, __VA_ARGS__)                                                                                        \
    D(2, __VA_ARGS__) D(3, __VA_ARGS__) D(4, __VA_ARGS__) M(8, __VA_ARGS__) M(16, __VA_ARGS__)
#define QUEVAR_WIDTHS_unary_4 QUEVAR_WIDTHS
#define QUEVAR_WIDTHS_unary_8 QUEVAR_WIDTHS
#define QUEVAR_WIDTHS_binary_4 QUEVAR_WIDTHS
#define QUEVAR_WIDTHS_binary_8 QUEVAR_WIDTHS_16M
#define QUEVAR_WIDTHS_ternary_4 QUEVAR_WIDTHS_16M
#define QUEVAR_WIDTHS_ternary_8 QUEVAR_WIDTHS_8M_16M
#define QUEVAR_WIDTHS_with_int_4 QUEVAR_WIDTHS
#define QUEVAR_WIDTHS_with_int_8 QUEVAR_WIDTHS_16M
#define QUEVAR_WIDTHS_unary_pointer_4 QUEVAR_WIDTHS
#define QUEVAR_WIDTHS_unary_pointer_8 QUEVAR_WIDTHS
#define QUEVAR_WIDTHS_binary_pointer_4 QUEVAR_WIDTHS
#define QUEVAR_WIDTHS_binary_pointer_8 QUEVAR_WIDTHS_16M
#define QUEVAR_WIDTHS_unary_pair_4 QUEVAR_WIDTHS
#define QUEVAR_WIDTHS_unary_pair_8 QUEVAR_WIDTHS_16M
#define QUEVAR_WIDTHS_binary_pair_4 QUEVAR_WIDTHS
#define QUEVAR_MEMBERS(D, M, shape, A, ...)                                                                  \
    QUEVAR_CAT(QUEVAR_WIDTHS_##shape##_, QUEVAR_SIZE_##A)(D, M, shape, A, __VA_ARGS__)

#define QUEVAR_NAME(base, mark, tier, W) __quevar_##base##mark##W##tier
#define QUEVAR_PARAMETERS(V, W, shape, A, P)                                                                 \
    QUEVAR_VECTORS_##shape(V, A, W) QUEVAR_POINTER_##shape(QUEVAR_POINTER_PARAMETER, P)
#define QUEVAR_SIGNATURE(W, shape, A, R, P, name)                                                            \
    QUEVAR_RESULT_##shape(R, W) name(QUEVAR_PARAMETERS(QUEVAR_PARAMETER, W, shape, A, P))
#define QUEVAR_SIGNATURE_MEMORY(W, shape, A, R, P, name)                                                     \
    QUEVAR_CAT(QUEVAR_RESULT_##shape, _MEMORY)                                                               \
    (R, W) name(QUEVAR_PARAMETERS(QUEVAR_PARAMETER_MEMORY, W, shape, A, P))

/* ---- The declarations ---- */

#ifdef __cplusplus
extern "C" {
#endif

#define QUEVAR_DECLARE(W, shape, A, R, P, base, mark, tier)                                                  \
    QUEVAR_SIGNATURE(W, shape, A, R, P, QUEVAR_NAME(base, mark, tier, W));
#define QUEVAR_DECLARE_MEMORY(W, shape, A, R, P, base, mark, tier)                                           \
    QUEVAR_SIGNATURE_MEMORY(W, shape, A, R, P, QUEVAR_NAME(base, mark, tier, W));
#define QUEVAR_FAMILY(base, mark, tier, shape, A, R, P, filler, bound)                                       \
    QUEVAR_MEMBERS(QUEVAR_DECLARE, QUEVAR_DECLARE_MEMORY, shape, A, R, P, base, mark, tier)
#include "families.def"
#undef QUEVAR_FAMILY

#ifdef __cplusplus
}
#endif

#endif
