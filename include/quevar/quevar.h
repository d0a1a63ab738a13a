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
 * A result through a pointer writes W elements, at width 3 four, and needs the element's alignment. A pair
 * is taken apart by quevar_f32x8_first and quevar_f32x8_second, named after what they return.
 *
 * Results and bounds are those of rounding to nearest, the default. Other modes change nothing in fmax,
 * fmin, maxmag, minmag, ceil, floor, trunc, round, fabs, copysign, nan, frexp, ilogb, logb, nextafter,
 * integer division and conversions to integers, whose names tell how they round. rint and nearbyint follow
 * the caller's mode. All others compute their steps in it: the result still depends on the lane's arguments
 * and the mode alone, but no bound holds. No member clears an exception flag; rint raises inexact where it
 * rounds, nearbyint does not. The others raise what their steps raise.
 *
 * Clang without AVX-512 expresses every form. GCC returns a vector above 256 bits in memory, and with
 * AVX-512 it comes in a zmm register, so there the members that return one in ymm registers cannot be
 * called: doing so is a compile-time error that says why.
 */
#ifndef QUEVAR_H
#define QUEVAR_H

#include "types.h"

/* ---- From a row of families.def to signatures. The library defines its members with the same
 *      macros: what is declared is what is defined. ---- */

#define QUEVAR_CAT_(a, b) a##b
#define QUEVAR_CAT(a, b) QUEVAR_CAT_(a, b)
#define QUEVAR_CAT4_(a, b, c, d) a##b##_##c##_##d
#define QUEVAR_CAT4(a, b, c, d) QUEVAR_CAT4_(a, b, c, d)
#define QUEVAR_SIZE_f32 4
#define QUEVAR_SIZE_i32 4
#define QUEVAR_SIZE_u32 4
#define QUEVAR_SIZE_f64 8
#define QUEVAR_SIZE_i64 8
#define QUEVAR_SIZE_u64 8
#define QUEVAR_HALF_4(T) quevar_##T##x8
#define QUEVAR_HALF_8(T) quevar_##T##x4
#define QUEVAR_HALF(T) QUEVAR_CAT(QUEVAR_HALF_, QUEVAR_SIZE_##T)(T)

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

#include "shapes.def"

/* One vector argument: its parameters, and their names. */
#define QUEVAR_PARAMETER_1(T, W, v) quevar_##T##x##W v##0
#define QUEVAR_PARAMETER_2(T, W, v) QUEVAR_HALF(T) v##0, QUEVAR_HALF(T) v##1
#define QUEVAR_PARAMETER_4(T, W, v)                                                                          \
    QUEVAR_HALF(T) v##0, QUEVAR_HALF(T) v##1, QUEVAR_HALF(T) v##2, QUEVAR_HALF(T) v##3
#define QUEVAR_PARAMETER_scalar QUEVAR_PARAMETER_1
#define QUEVAR_PARAMETER(T, W, v) QUEVAR_FORM(QUEVAR_PARAMETER_, T, W)(T, W, v)
#define QUEVAR_PARAMETER_MEMORY(T, W, v) quevar_##T##x##W##m v
#define QUEVAR_NAMES_1(v) v##0
#define QUEVAR_NAMES_2(v) v##0, v##1
#define QUEVAR_NAMES_4(v) v##0, v##1, v##2, v##3
#define QUEVAR_NAMES_scalar QUEVAR_NAMES_1
#define QUEVAR_NAMES(T, W, v) QUEVAR_FORM(QUEVAR_NAMES_, T, W)(v)
#define QUEVAR_NAMES_MEMORY(T, W, v) v
#define QUEVAR_POINTER_PARAMETER(P, W) quevar_##P##x##W##_out *p
#define QUEVAR_POINTER_NAME(P, W) p

/* The result, in registers and in memory. */
#define QUEVAR_SINGLE_scalar(R, W) quevar_##R##x##W
#define QUEVAR_SINGLE_1(R, W) quevar_##R##x##W
#define QUEVAR_SINGLE_2(R, W) QUEVAR_WIDE_RESULT quevar_##R##x##W
#define QUEVAR_SINGLE_4(R, W) QUEVAR_WIDE_RESULT quevar_##R##x##W
#define QUEVAR_SINGLE(R, W) QUEVAR_FORM(QUEVAR_SINGLE_, R, W)(R, W)
#define QUEVAR_SINGLE_MEMORY(R, W) quevar_##R##x##W##m
#define QUEVAR_PAIR_scalar(R, W) quevar_##R##x##W##_pair
#define QUEVAR_PAIR_1(R, W) QUEVAR_WIDE_RESULT quevar_##R##x##W##_pair
#define QUEVAR_PAIR_2(R, W) QUEVAR_WIDE_RESULT quevar_##R##x##W##_pair
#define QUEVAR_PAIR(R, W) QUEVAR_FORM(QUEVAR_PAIR_, R, W)(R, W)
#define QUEVAR_PAIR_MEMORY(R, W) quevar_##R##x##W##m_pair
#define QUEVAR_RESULT_single(memory, R, W) QUEVAR_SINGLE##memory(R, W)
#define QUEVAR_RESULT_pair(memory, R, W) QUEVAR_PAIR##memory(R, W)
#define QUEVAR_RESULT(shape, memory, R, W)                                                                   \
    QUEVAR_CAT(QUEVAR_RESULT_, QUEVAR_SHAPE_RESULTS(shape))(memory, R, W)

#define QUEVAR_NAME(base, mark, tier, W) __quevar_##base##mark##W##tier
#define QUEVAR_SIGNATURE(W, shape, A, R, P, name)                                                            \
    QUEVAR_RESULT(shape, , R, W)                                                                             \
    name(QUEVAR_VECTORS(shape, QUEVAR_PARAMETER, A, W) QUEVAR_POINTER(shape, QUEVAR_POINTER_PARAMETER, P, W))
#define QUEVAR_SIGNATURE_MEMORY(W, shape, A, R, P, name)                                                     \
    QUEVAR_RESULT(shape, _MEMORY, R, W)                                                                      \
    name(QUEVAR_VECTORS(shape, QUEVAR_PARAMETER_MEMORY, A, W)                                                \
             QUEVAR_POINTER(shape, QUEVAR_POINTER_PARAMETER, P, W))

/* ---- The declarations ---- */

/* Pure are the members that store nothing and whose result is not the caller's rounding mode's to decide. */
#define QUEVAR_FOLLOWS_MODE_rint , 0
#define QUEVAR_FOLLOWS_MODE_nearbyint , 0
#define QUEVAR_SECOND_(a, b, ...) b
#define QUEVAR_SECOND(...) QUEVAR_SECOND_(__VA_ARGS__, )
#define QUEVAR_PURITY_00
#define QUEVAR_PURITY_01 QUEVAR_PURE
#define QUEVAR_PURITY_10
#define QUEVAR_PURITY_11
#define QUEVAR_PURITY(shape, base)                                                                           \
    QUEVAR_CAT(QUEVAR_PURITY_,                                                                               \
               QUEVAR_CAT(QUEVAR_SHAPE_POINTER(shape), QUEVAR_SECOND(QUEVAR_FOLLOWS_MODE_##base, 1)))

#define QUEVAR_DECLARE(W, shape, A, R, P, base, mark, tier)                                                  \
    QUEVAR_PURITY(shape, base) QUEVAR_SIGNATURE(W, shape, A, R, P, QUEVAR_NAME(base, mark, tier, W));
#define QUEVAR_DECLARE_MEMORY(W, shape, A, R, P, base, mark, tier)                                           \
    QUEVAR_PURITY(shape, base) QUEVAR_SIGNATURE_MEMORY(W, shape, A, R, P, QUEVAR_NAME(base, mark, tier, W));

#ifdef __cplusplus
extern "C" {
#endif
#define QUEVAR_FAMILY(base, mark, tier, shape, A, R, P, filler, bound)                                       \
    QUEVAR_MEMBERS(QUEVAR_DECLARE, QUEVAR_DECLARE_MEMORY, shape, A, R, P, base, mark, tier)
#include "families.def"
#undef QUEVAR_FAMILY
#ifdef __cplusplus
}
#endif

#endif
