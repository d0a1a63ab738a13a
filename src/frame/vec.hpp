// Lane vectors, the working values of every family, and the operations on them.
#pragma once

#include <immintrin.h>
#include <type_traits>
#include <utility>

// What stands between the two is inlined into its callers: templates, friends and lambdas too. A function
// marked [[gnu::noinline]] is not.
#define QUEVAR_INLINE_BEGIN                                                                                  \
    _Pragma("clang attribute push(__attribute__((always_inline)), apply_to = function)")
#define QUEVAR_INLINE_END _Pragma("clang attribute pop")

namespace quevar {
QUEVAR_INLINE_BEGIN

using f32 = float;
using f64 = double;
using i32 = int;
using u32 = unsigned int;
using i64 = long;
using u64 = unsigned long;

template <class T> using signed_bits = std::conditional_t<sizeof(T) == 4, i32, i64>;
template <class T> using unsigned_bits = std::conditional_t<sizeof(T) == 4, u32, u64>;
template <class T> using float_of = std::conditional_t<sizeof(T) == 4, f32, f64>;

// Calls f with the indices 0 ... N - 1 as a pack.
template <int... I> using indices = std::integer_sequence<int, I...>;
template <int N, class F> auto with_indices(F f) { return f(std::make_integer_sequence<int, N>{}); }

// ---- Patterns of scalars ----

template <class T>
concept scalar = std::is_arithmetic_v<T>;

template <scalar T> auto as_int(T x) { return __builtin_bit_cast(signed_bits<T>, x); }
template <scalar T> auto as_uint(T x) { return __builtin_bit_cast(unsigned_bits<T>, x); }
template <scalar T> auto as_float(T x) { return __builtin_bit_cast(float_of<T>, x); }

// A number given by its pattern: 0x3F800000_f32 is 1. Not consteval, which Clang 14 calls at run time in
// templates.
constexpr f32 operator""_f32(unsigned long long pattern) { return __builtin_bit_cast(f32, (u32)pattern); }
constexpr f64 operator""_f64(unsigned long long pattern) { return __builtin_bit_cast(f64, (u64)pattern); }

// ---- Lane vectors ----

// N lanes of T in one register. The first Live lanes are distinct; any others copy them (widths 1 and 2),
// which lets row fetches do no more work than there are lanes, and marks width 1, where some families
// round steps separately that they fuse elsewhere.
template <class T, int N, int Live = N> struct vec {
    typedef T raw __attribute__((vector_size(sizeof(T) * N)));
    typedef unsigned_bits<T> raw_bits __attribute__((vector_size(sizeof(T) * N)));
    using element = T;
    static constexpr int lanes = N, live = Live;
    template <class U> using with = vec<U, N, Live>;
    using mask = with<signed_bits<T>>; // all ones or all zeros in a lane

    raw v;

    static vec splat(T x) {
        return with_indices<N>([x]<int... I>(indices<I...>) { return vec{raw{((void)I, x)...}}; });
    }

    // Integer arithmetic wraps: it is done on the unsigned type.
    friend vec operator+(vec a, vec b) {
        if constexpr (std::is_floating_point_v<T>) return {a.v + b.v};
        else return {(raw)((raw_bits)a.v + (raw_bits)b.v)};
    }
    friend vec operator-(vec a, vec b) {
        if constexpr (std::is_floating_point_v<T>) return {a.v - b.v};
        else return {(raw)((raw_bits)a.v - (raw_bits)b.v)};
    }
    friend vec operator*(vec a, vec b) {
        if constexpr (std::is_floating_point_v<T>) return {a.v * b.v};
        else return {(raw)((raw_bits)a.v * (raw_bits)b.v)};
    }
    friend vec operator/(vec a, vec b) { return {a.v / b.v}; }

    // Bitwise on the patterns, for floating-point lanes too.
    friend vec operator&(vec a, vec b) { return {(raw)((raw_bits)a.v & (raw_bits)b.v)}; }
    friend vec operator|(vec a, vec b) { return {(raw)((raw_bits)a.v | (raw_bits)b.v)}; }
    friend vec operator^(vec a, vec b) { return {(raw)((raw_bits)a.v ^ (raw_bits)b.v)}; }
    friend vec operator~(vec a) { return {(raw) ~(raw_bits)a.v}; }

    // Shifts by a constant; to the right they are arithmetic for signed lanes and logical for unsigned.
    friend vec operator<<(vec a, int n) { return {(raw)((raw_bits)a.v << splat(T(n)).v)}; }
    friend vec operator>>(vec a, int n) { return {a.v >> splat(T(n)).v}; }

    // Ordered comparisons: false where an operand is NaN, so that ~(a <= b) is true there.
    friend mask operator<(vec a, vec b) { return {(typename mask::raw)(a.v < b.v)}; }
    friend mask operator>(vec a, vec b) { return {(typename mask::raw)(a.v > b.v)}; }
    friend mask operator<=(vec a, vec b) { return {(typename mask::raw)(a.v <= b.v)}; }
    friend mask operator>=(vec a, vec b) { return {(typename mask::raw)(a.v >= b.v)}; }
    friend mask operator==(vec a, vec b) { return {(typename mask::raw)(a.v == b.v)}; }

    friend vec select(mask m, vec a, vec b) { return {m.v ? a.v : b.v}; }
    // a where m is set, else +0.
    friend vec keep(mask m, vec a) { return {(raw)((raw_bits)m.v & (raw_bits)a.v)}; }

    // a b + c, c - a b, a b - c, -a b - c with one rounding.
    friend vec fma(vec a, vec b, vec c) { return fused(a, b, c); }
    friend vec fnma(vec a, vec b, vec c) { return fused({-a.v}, b, c); }
    friend vec fms(vec a, vec b, vec c) { return fused(a, b, {-c.v}); }
    friend vec fnms(vec a, vec b, vec c) { return fused({-a.v}, b, {-c.v}); }
    // The same, with two roundings at width 1.
    friend vec fma_unless_scalar(vec a, vec b, vec c) {
        if constexpr (Live == 1) return {a.v * b.v + c.v};
        else return fused(a, b, c);
    }
    friend vec fnma_unless_scalar(vec a, vec b, vec c) {
        if constexpr (Live == 1) return {c.v - a.v * b.v};
        else return fused({-a.v}, b, c);
    }
    friend vec fms_unless_scalar(vec a, vec b, vec c) {
        if constexpr (Live == 1) return {a.v * b.v - c.v};
        else return fused(a, b, {-c.v});
    }

private:
    static vec fused(vec a, vec b, vec c) {
        if constexpr (sizeof(raw) == 32 && sizeof(T) == 4) return {(raw)_mm256_fmadd_ps(a.v, b.v, c.v)};
        else if constexpr (sizeof(raw) == 32) return {(raw)_mm256_fmadd_pd(a.v, b.v, c.v)};
        else if constexpr (sizeof(T) == 4) return {(raw)_mm_fmadd_ps(a.v, b.v, c.v)};
        else return {(raw)_mm_fmadd_pd(a.v, b.v, c.v)};
    }
};

// The same bits as lanes of another type.
template <class T, int N, int L> auto as_int(vec<T, N, L> x) {
    using I = vec<signed_bits<T>, N, L>;
    return I{(typename I::raw)x.v};
}
template <class T, int N, int L> auto as_uint(vec<T, N, L> x) {
    using U = vec<unsigned_bits<T>, N, L>;
    return U{(typename U::raw)x.v};
}
template <class T, int N, int L> auto as_float(vec<T, N, L> x) {
    using F = vec<float_of<T>, N, L>;
    return F{(typename F::raw)x.v};
}

// One bit a lane: the sign bits of the live lanes.
template <class T, int N, int L> unsigned sign_bits(vec<T, N, L> m) {
    unsigned all;
    if constexpr (N == 8) all = (unsigned)_mm256_movemask_ps((__m256)m.v);
    else if constexpr (N == 4 && sizeof(T) == 8) all = (unsigned)_mm256_movemask_pd((__m256d)m.v);
    else if constexpr (N == 4) all = (unsigned)_mm_movemask_ps((__m128)m.v);
    else all = (unsigned)_mm_movemask_pd((__m128d)m.v);
    return L == N ? all : all & ((1u << L) - 1);
}

QUEVAR_INLINE_END
} // namespace quevar
