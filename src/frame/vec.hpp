// Lane vectors, the working values of every family, and the operations on them.
#pragma once

#include <immintrin.h>
#include <type_traits>
#include <utility>

#define QUEVAR_ALWAYS_INLINE __attribute__((always_inline)) // of lambdas
#define QUEVAR_INLINE QUEVAR_ALWAYS_INLINE inline

namespace quevar {

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
template <int N, class F> QUEVAR_INLINE auto with_indices(F f) {
    return f(std::make_integer_sequence<int, N>{});
}

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

    static QUEVAR_INLINE vec splat(T x) {
        return with_indices<N>([x]<int... I>(indices<I...>)
                                   QUEVAR_ALWAYS_INLINE { return vec{raw{((void)I, x)...}}; });
    }

    // Integer arithmetic wraps: it is done on the unsigned type.
    friend QUEVAR_INLINE vec operator+(vec a, vec b) {
        if constexpr (std::is_floating_point_v<T>) return {a.v + b.v};
        else return {(raw)((raw_bits)a.v + (raw_bits)b.v)};
    }
    friend QUEVAR_INLINE vec operator-(vec a, vec b) {
        if constexpr (std::is_floating_point_v<T>) return {a.v - b.v};
        else return {(raw)((raw_bits)a.v - (raw_bits)b.v)};
    }
    friend QUEVAR_INLINE vec operator*(vec a, vec b) {
        if constexpr (std::is_floating_point_v<T>) return {a.v * b.v};
        else return {(raw)((raw_bits)a.v * (raw_bits)b.v)};
    }
    friend QUEVAR_INLINE vec operator/(vec a, vec b) { return {a.v / b.v}; }

    // Bitwise on the patterns, for floating-point lanes too.
    friend QUEVAR_INLINE vec operator&(vec a, vec b) { return {(raw)((raw_bits)a.v & (raw_bits)b.v)}; }
    friend QUEVAR_INLINE vec operator|(vec a, vec b) { return {(raw)((raw_bits)a.v | (raw_bits)b.v)}; }
    friend QUEVAR_INLINE vec operator^(vec a, vec b) { return {(raw)((raw_bits)a.v ^ (raw_bits)b.v)}; }
    friend QUEVAR_INLINE vec operator~(vec a) { return {(raw) ~(raw_bits)a.v}; }

    // Shifts by a constant; to the right they are arithmetic for signed lanes and logical for unsigned.
    friend QUEVAR_INLINE vec operator<<(vec a, int n) { return {(raw)((raw_bits)a.v << splat(T(n)).v)}; }
    friend QUEVAR_INLINE vec operator>>(vec a, int n) { return {a.v >> splat(T(n)).v}; }

    // Ordered comparisons: false where an operand is NaN, so that ~(a <= b) is true there.
    friend QUEVAR_INLINE mask operator<(vec a, vec b) { return {(typename mask::raw)(a.v < b.v)}; }
    friend QUEVAR_INLINE mask operator>(vec a, vec b) { return {(typename mask::raw)(a.v > b.v)}; }
    friend QUEVAR_INLINE mask operator<=(vec a, vec b) { return {(typename mask::raw)(a.v <= b.v)}; }
    friend QUEVAR_INLINE mask operator>=(vec a, vec b) { return {(typename mask::raw)(a.v >= b.v)}; }
    friend QUEVAR_INLINE mask operator==(vec a, vec b) { return {(typename mask::raw)(a.v == b.v)}; }

    friend QUEVAR_INLINE vec select(mask m, vec a, vec b) { return {m.v ? a.v : b.v}; }
    // a where m is set, else +0.
    friend QUEVAR_INLINE vec keep(mask m, vec a) { return {(raw)((raw_bits)m.v & (raw_bits)a.v)}; }

    // a b + c, c - a b, a b - c with one rounding.
    friend QUEVAR_INLINE vec fma(vec a, vec b, vec c) { return fused(a, b, c); }
    friend QUEVAR_INLINE vec fnma(vec a, vec b, vec c) { return fused({-a.v}, b, c); }
    friend QUEVAR_INLINE vec fms(vec a, vec b, vec c) { return fused(a, b, {-c.v}); }
    // a b + c, fused except at width 1.
    friend QUEVAR_INLINE vec wide_fma(vec a, vec b, vec c) {
        if constexpr (Live == 1) return {a.v * b.v + c.v};
        else return fused(a, b, c);
    }

private:
    static QUEVAR_INLINE vec fused(vec a, vec b, vec c) {
        if constexpr (sizeof(raw) == 32 && sizeof(T) == 4) return {(raw)_mm256_fmadd_ps(a.v, b.v, c.v)};
        else if constexpr (sizeof(raw) == 32) return {(raw)_mm256_fmadd_pd(a.v, b.v, c.v)};
        else if constexpr (sizeof(T) == 4) return {(raw)_mm_fmadd_ps(a.v, b.v, c.v)};
        else return {(raw)_mm_fmadd_pd(a.v, b.v, c.v)};
    }
};

// The pattern of a vector as integers, and integers as the pattern of a floating-point vector.
template <class T, int N, int L> QUEVAR_INLINE auto bits(vec<T, N, L> x) {
    using I = vec<signed_bits<T>, N, L>;
    return I{(typename I::raw)x.v};
}
template <class T, int N, int L> QUEVAR_INLINE auto unsigned_bits_of(vec<T, N, L> x) {
    using U = vec<unsigned_bits<T>, N, L>;
    return U{(typename U::raw)x.v};
}
template <class T, int N, int L> QUEVAR_INLINE auto number(vec<T, N, L> x) {
    using F = vec<float_of<T>, N, L>;
    return F{(typename F::raw)x.v};
}

// One bit a lane: the sign bits of the live lanes.
template <class T, int N, int L> QUEVAR_INLINE unsigned sign_bits(vec<T, N, L> m) {
    unsigned all;
    if constexpr (N == 8) all = (unsigned)_mm256_movemask_ps((__m256)m.v);
    else if constexpr (N == 4 && sizeof(T) == 8) all = (unsigned)_mm256_movemask_pd((__m256d)m.v);
    else if constexpr (N == 4) all = (unsigned)_mm_movemask_ps((__m128)m.v);
    else all = (unsigned)_mm_movemask_pd((__m128d)m.v);
    return L == N ? all : all & ((1u << L) - 1);
}

} // namespace quevar
