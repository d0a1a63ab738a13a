// Operations on lane vectors beyond plain arithmetic: the processor's rounding, roots, estimates and minima,
// conversions, and the words of 64-bit lanes.
#pragma once

#include "vec.hpp"

namespace quevar {
QUEVAR_INLINE_BEGIN

// For parameters whose type another argument decides, so that a slot is converted to it.
template <class V> using same = std::type_identity_t<V>;

// Two 32-bit lanes do not fill a register: the operations below run on them doubled.
template <class T, int N> constexpr bool is_pair_of_words = N == 2 && sizeof(T) == 4;
template <class T, int L> vec<T, 4, L> doubled(vec<T, 2, L> x) {
    return {__builtin_shufflevector(x.v, x.v, 0, 1, 0, 1)};
}
template <class T, int N, int L> vec<T, 2, L> lower_two(vec<T, N, L> x) {
    return {__builtin_shufflevector(x.v, x.v, 0, 1)};
}

// ---- Rounding, square root, minimum, maximum ----

// The modes of the round instruction. `current` follows the caller's mode; so does `nearby`, which does not
// raise the inexact flag.
enum rounding_mode { to_nearest = 0, downward = 1, upward = 2, toward_zero = 3, current = 4, nearby = 12 };

template <rounding_mode M, class T, int N, int L> vec<T, N, L> round(vec<T, N, L> x) {
    if constexpr (is_pair_of_words<T, N>) return lower_two(round<M>(doubled(x)));
    else if constexpr (L == 1 && N == 4 && sizeof(T) == 4)
        return {(typename vec<T, N>::raw)_mm_round_ss(x.v, x.v, M)};
    else if constexpr (L == 1 && N == 2) return {(typename vec<T, N>::raw)_mm_round_sd(x.v, x.v, M)};
    else if constexpr (N == 8) return {(typename vec<T, N>::raw)_mm256_round_ps(x.v, M)};
    else if constexpr (N == 4 && sizeof(T) == 4) return {(typename vec<T, N>::raw)_mm_round_ps(x.v, M)};
    else if constexpr (N == 4) return {(typename vec<T, N>::raw)_mm256_round_pd(x.v, M)};
    else return {(typename vec<T, N>::raw)_mm_round_pd(x.v, M)};
}

template <class T, int N, int L> vec<T, N, L> sqrt(vec<T, N, L> x) {
    if constexpr (N == 8) return {_mm256_sqrt_ps(x.v)};
    else if constexpr (N == 4 && sizeof(T) == 4) return {_mm_sqrt_ps(x.v)};
    else if constexpr (N == 4) return {_mm256_sqrt_pd(x.v)};
    else return {_mm_sqrt_pd(x.v)};
}

// The processor's minimum and maximum: b where either is NaN or both are zero. Of integers too.
template <class T, int N, int L> vec<T, N, L> min(vec<T, N, L> a, same<vec<T, N, L>> b) {
    if constexpr (std::is_integral_v<T>) return select(a < b, a, b);
    else if constexpr (N == 8) return {_mm256_min_ps(a.v, b.v)};
    else if constexpr (N == 4 && sizeof(T) == 4) return {_mm_min_ps(a.v, b.v)};
    else if constexpr (N == 4) return {_mm256_min_pd(a.v, b.v)};
    else return {_mm_min_pd(a.v, b.v)};
}
template <class T, int N, int L> vec<T, N, L> max(vec<T, N, L> a, same<vec<T, N, L>> b) {
    if constexpr (std::is_integral_v<T>) return select(a > b, a, b);
    else if constexpr (N == 8) return {_mm256_max_ps(a.v, b.v)};
    else if constexpr (N == 4 && sizeof(T) == 4) return {_mm_max_ps(a.v, b.v)};
    else if constexpr (N == 4) return {_mm256_max_pd(a.v, b.v)};
    else return {_mm_max_pd(a.v, b.v)};
}

// True where either is NaN.
template <class T, int N, int L> auto unordered(vec<T, N, L> a, vec<T, N, L> b) {
    return ~((a == a) & (b == b));
}

// ---- Estimates, which differ between processors ----

template <int N, int L> vec<f32, N, L> reciprocal_estimate(vec<f32, N, L> x) {
    if constexpr (N == 8) return {_mm256_rcp_ps(x.v)};
    else if constexpr (N == 4) return {_mm_rcp_ps(x.v)};
    else return lower_two(reciprocal_estimate(doubled(x)));
}
template <int N, int L> vec<f32, N, L> rsqrt_estimate(vec<f32, N, L> x) {
    if constexpr (N == 8) return {_mm256_rsqrt_ps(x.v)};
    else if constexpr (N == 4) return {_mm_rsqrt_ps(x.v)};
    else return lower_two(rsqrt_estimate(doubled(x)));
}

// ---- Conversions ----

// By value, under the current rounding mode where it rounds: between floating-point types, from integers to
// floating point, and between integers (cut, or widened by the source's sign).
template <class To, class T, int N, int L> vec<To, N, L> convert(vec<T, N, L> x) {
    static_assert(std::is_floating_point_v<To> || std::is_integral_v<T>,
                  "to integers: to_i32, truncated_to_i32");
    return {__builtin_convertvector(x.v, typename vec<To, N>::raw)};
}

// To int under the current rounding mode, or by truncation; 0x80000000 for NaN and what is out of range.
template <class T, int N, int L> vec<i32, N, L> to_i32(vec<T, N, L> x) {
    using R = typename vec<i32, N>::raw;
    if constexpr (is_pair_of_words<T, N>) return lower_two(to_i32(doubled(x)));
    else if constexpr (N == 8) return {(R)_mm256_cvtps_epi32(x.v)};
    else if constexpr (N == 4 && sizeof(T) == 4) return {(R)_mm_cvtps_epi32(x.v)};
    else if constexpr (N == 4) return {(R)_mm256_cvtpd_epi32(x.v)};
    else return lower_two(vec<i32, 4, L>{(typename vec<i32, 4>::raw)_mm_cvtpd_epi32(x.v)});
}
template <int N, int L> vec<i32, N, L> truncated_to_i32(vec<f64, N, L> x) {
    using R = typename vec<i32, N>::raw;
    if constexpr (N == 4) return {(R)_mm256_cvttpd_epi32(x.v)};
    else return lower_two(vec<i32, 4, L>{(typename vec<i32, 4>::raw)_mm_cvttpd_epi32(x.v)});
}

// a where the selector's sign bit is set, else b: its other bits do not count.
template <class T, int N, int L>
vec<T, N, L> select_by_sign(vec<signed_bits<T>, N, L> selector, vec<T, N, L> a, same<vec<T, N, L>> b) {
    const auto s = as_float(selector);
    if constexpr (N == 8) return {_mm256_blendv_ps(b.v, a.v, s.v)};
    else if constexpr (N == 4 && sizeof(T) == 4) return {_mm_blendv_ps(b.v, a.v, s.v)};
    else if constexpr (N == 4) return {_mm256_blendv_pd(b.v, a.v, s.v)};
    else return {_mm_blendv_pd(b.v, a.v, s.v)};
}

// -x where m is set, of integers.
template <class T, int N, int L> vec<T, N, L> negate_where(vec<signed_bits<T>, N, L> m, vec<T, N, L> x) {
    const vec<T, N, L> all_ones{(typename vec<T, N>::raw)m.v};
    return (x ^ all_ones) - all_ones;
}

// ---- Words of 64-bit lanes ----

template <class T, int N, int L> vec<i32, N, L> low_words(vec<T, N, L> x) { return convert<i32>(as_int(x)); }

template <class T, int N, int L> vec<i32, N, L> high_words(vec<T, N, L> x) {
    typedef i32 both __attribute__((vector_size(8 * N)));
    const both w = (both)x.v;
    if constexpr (N == 4) return {__builtin_shufflevector(w, w, 1, 3, 5, 7)};
    else return {__builtin_shufflevector(w, w, 1, 3)};
}

// 64-bit lanes seen as twice as many 32-bit lanes, and the reverse. Neither is an instruction.
template <class T, int N, int L> auto words(vec<T, N, L> x) {
    using W = vec<i32, N *(int)sizeof(T) / 4, L *(int)sizeof(T) / 4>;
    return W{(typename W::raw)x.v};
}
template <class V, class W> V from_words(W x) { return {(typename V::raw)x.v}; }

// Whether the high word of a is greater than that of b, as signed integers; a 32-bit lane is its own high
// word. Only the sign bits of this mask are meaningful, which is enough where it is returned as `special`:
// the words are compared where they stand, in one instruction that is faster than the comparison of 64-bit
// lanes.
template <class T, int N, int L>
vec<signed_bits<T>, N, L> high_word_greater(vec<T, N, L> a, same<vec<T, N, L>> b) {
    return from_words<vec<signed_bits<T>, N, L>>(words(a) > words(b));
}
// a - b with no borrow from the high to the low word, for range tests on the high words.
template <class T, int N, int L> vec<T, N, L> subtract_words(vec<T, N, L> a, same<vec<T, N, L>> b) {
    return from_words<vec<T, N, L>>(words(a) - words(b));
}

// The products of the low words of 64-bit lanes.
template <int N, int L> vec<u64, N, L> multiply_low_words(vec<u64, N, L> a, same<vec<u64, N, L>> b) {
    using R = typename vec<u64, N>::raw;
    if constexpr (N == 4) return {(R)_mm256_mul_epu32((__m256i)a.v, (__m256i)b.v)};
    else return {(R)_mm_mul_epu32((__m128i)a.v, (__m128i)b.v)};
}

// The products of the low halves of 32-bit lanes, as signed numbers. The upper half of a or b is 0.
template <class T, int N, int L> vec<T, N, L> multiply_low_halves(vec<T, N, L> a, same<vec<T, N, L>> b) {
    using R = typename vec<T, N>::raw;
    if constexpr (N == 8) return {(R)_mm256_madd_epi16((__m256i)a.v, (__m256i)b.v)};
    else return {(R)_mm_madd_epi16((__m128i)a.v, (__m128i)b.v)};
}

// The upper words of the products of 32-bit lanes.
template <int N, int L> vec<u32, N, L> multiply_high(vec<u32, N, L> a, same<vec<u32, N, L>> b) {
    return convert<u32>((convert<u64>(a) * convert<u64>(b)) >> 32);
}

// Shifts by a count of its own in each lane; a count out of range, negative ones included, gives 0.
template <class T, int N, int L> vec<T, N, L> shift_left(vec<T, N, L> x, same<vec<T, N, L>> count) {
    using R = typename vec<T, N>::raw;
    if constexpr (sizeof(T) == 4 && N == 8) return {(R)_mm256_sllv_epi32((__m256i)x.v, (__m256i)count.v)};
    else if constexpr (sizeof(T) == 4) return {(R)_mm_sllv_epi32((__m128i)x.v, (__m128i)count.v)};
    else if constexpr (N == 4) return {(R)_mm256_sllv_epi64((__m256i)x.v, (__m256i)count.v)};
    else return {(R)_mm_sllv_epi64((__m128i)x.v, (__m128i)count.v)};
}

// ---- Operations whose operand order counts ----

// Of two NaN operands the processor returns the first, made quiet. The compiler may swap the operands of +
// and *; these it may not.
#define QUEVAR_IN_ORDER(name, instruction)                                                                   \
    template <class T, int N, int L> vec<T, N, L> name(vec<T, N, L> a, same<vec<T, N, L>> b) {               \
        vec<T, N, L> r;                                                                                      \
        if constexpr (sizeof(T) == 4) asm("v" instruction "ps %2, %1, %0" : "=x"(r.v) : "x"(a.v), "x"(b.v)); \
        else asm("v" instruction "pd %2, %1, %0" : "=x"(r.v) : "x"(a.v), "x"(b.v));                          \
        return r;                                                                                            \
    }                                                                                                        \
    inline f32 name(f32 a, f32 b) {                                                                          \
        f32 r;                                                                                               \
        asm("v" instruction "ss %2, %1, %0" : "=x"(r) : "x"(a), "x"(b));                                     \
        return r;                                                                                            \
    }                                                                                                        \
    inline f64 name(f64 a, f64 b) {                                                                          \
        f64 r;                                                                                               \
        asm("v" instruction "sd %2, %1, %0" : "=x"(r) : "x"(a), "x"(b));                                     \
        return r;                                                                                            \
    }
QUEVAR_IN_ORDER(add_in_order, "add")
QUEVAR_IN_ORDER(multiply_in_order, "mul")

// a b + c with one rounding; of several NaN operands the first. The form of the instruction is named because
// each form puts its operands in another order.
template <class T, int N, int L> vec<T, N, L> fma_in_order(vec<T, N, L> a, vec<T, N, L> b, vec<T, N, L> c) {
    if constexpr (L == 1) {
        T r = a.v[0];
        if constexpr (sizeof(T) == 4)
            asm("vfmadd132ss %2, %1, %0" : "+x"(r) : "x"(T(c.v[0])), "x"(T(b.v[0])));
        else asm("vfmadd132sd %2, %1, %0" : "+x"(r) : "x"(T(c.v[0])), "x"(T(b.v[0])));
        return vec<T, N, L>::splat(r);
    } else {
        if constexpr (sizeof(T) == 4) asm("vfmadd132ps %2, %1, %0" : "+x"(a.v) : "x"(c.v), "x"(b.v));
        else asm("vfmadd132pd %2, %1, %0" : "+x"(a.v) : "x"(c.v), "x"(b.v));
        return a;
    }
}

QUEVAR_INLINE_END
} // namespace quevar
