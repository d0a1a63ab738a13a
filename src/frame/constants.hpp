// Read-only data in the form that every width reads without a broadcast, and lookups in it.
#pragma once

#include "barriers.hpp"
#include "vec.hpp"

// Defines a block of constants or a table: QUEVAR_CONSTANTS(type, name) initialiser. The object is weak,
// though nothing ever replaces it, so that the compiler may not look at the values: it would turn them into
// broadcasts and literals, and the fused operations would lose their memory operands.
#define QUEVAR_CONSTANTS(type, name)                                                                         \
    [[gnu::weak, gnu::visibility("hidden")]] extern const type name;                                         \
    constinit const type name

namespace quevar {
QUEVAR_INLINE_BEGIN

// One constant, given by its pattern and repeated over 32 bytes: a load of any width's length finds it in
// every lane, as the memory operand of the operation that uses it.
template <class T> struct alignas(32) slot {
    unsigned_bits<T> pattern[32 / sizeof(T)];

    consteval slot(unsigned_bits<T> bits) : pattern{} {
        for (auto &p : pattern) p = bits;
    }
    template <int N, int L> operator vec<T, N, L>() const {
        using V = vec<T, N, L>;
        return {*reinterpret_cast<const typename V::raw *>(pattern)};
    }
};

// c[0] x^(n-1) + ... + c[n-1], each step fused.
template <class V, class T, int N> V polynomial(V x, const slot<T> (&c)[N]) {
    V p = c[0];
#pragma clang loop unroll(full)
    for (int i = 1; i < N; i++) p = fma(x, p, c[i]);
    return p;
}

// A table of four floats, repeated in each 128 bits, read by a permute within the register.
struct alignas(32) row_slot {
    u32 pattern[8];

    consteval row_slot(u32 a, u32 b, u32 c, u32 d) : pattern{a, b, c, d, a, b, c, d} {}

    // In each lane the entry that the two lowest bits of n name; the permute ignores the other bits.
    template <int N, int L> vec<f32, N, L> operator[](vec<i32, N, L> n) const {
        if constexpr (N == 8)
            return {_mm256_permutevar_ps(_mm256_load_ps((const f32 *)pattern), (__m256i)n.v)};
        else return {_mm_permutevar_ps(_mm_load_ps((const f32 *)pattern), (__m128i)n.v)};
    }
};

// A table of eight floats in one register.
struct alignas(32) row_slot_of_8 {
    u32 pattern[8];

    // In each lane the entry that the three lowest bits of n name; the permute ignores the other bits.
    template <int N, int L> vec<f32, N, L> operator[](vec<i32, N, L> n) const {
        const __m256 row = _mm256_load_ps((const f32 *)pattern);
        if constexpr (N == 8) return {_mm256_permutevar8x32_ps(row, (__m256i)n.v)};
        else
            return {
                _mm256_castps256_ps128(_mm256_permutevar8x32_ps(row, _mm256_castsi128_si256((__m128i)n.v)))};
    }
};

// A table of four doubles in one register, read as pairs of words.
QUEVAR_CONSTANTS(slot<i64>, upper_one){0x0000000100000000};
struct alignas(32) row_slot_of_4_doubles {
    u64 pattern[4];

    // The numbers of the two words, 2 n and 2 n + 1, that hold the entry named by the two lowest bits of n.
    // Bits 32 and 33 of n must be zero. Worked out once, they serve every table that is read with n.
    template <int N, int L> static vec<i32, 2 * N, 2 * L> words_of(vec<i64, N, L> n) {
        const vec<i64, N, L> low = n + n;
        return {(typename vec<i32, 2 * N>::raw)((low | upper_one) | (low << 32)).v};
    }
    // The permute reads the three lowest bits of each number.
    template <int N, int L> vec<f64, N / 2, L / 2> operator[](vec<i32, N, L> words) const {
        const __m256 row = _mm256_load_ps((const f32 *)pattern);
        if constexpr (N == 8) return {_mm256_castps_pd(_mm256_permutevar8x32_ps(row, (__m256i)words.v))};
        else
            return {_mm256_castpd256_pd128(
                _mm256_castps_pd(_mm256_permutevar8x32_ps(row, _mm256_castsi128_si256((__m128i)words.v))))};
    }
};

// Rows of C entries, given by their patterns, side by side.
template <class T, int C, int Rows> struct alignas(64) table {
    unsigned_bits<T> row[Rows][C];

    // One entry, for the rare paths.
    T operator()(int r, int c) const { return __builtin_bit_cast(T, row[r][c]); }
};

// In each lane the entry that the five lowest bits of n name, of 32 floats that are looked up in four
// registers.
template <int N, int L> vec<f32, N, L> look_up(const table<f32, 1, 32> &t, vec<i32, N, L> n) {
    const __m256i number = [n] {
        if constexpr (N == 8) return (__m256i)n.v;
        else return _mm256_castsi128_si256((__m128i)n.v);
    }();
    const auto entry = [&](int first) {
        return _mm256_permutevar8x32_ps(_mm256_load_ps((const f32 *)t.row + first), number);
    };
    const __m256 bit3 = (__m256)_mm256_slli_epi32(number, 28), bit4 = (__m256)_mm256_slli_epi32(number, 27);
    const __m256 r = _mm256_blendv_ps(_mm256_blendv_ps(entry(0), entry(8), bit3),
                                      _mm256_blendv_ps(entry(16), entry(24), bit3), bit4);
    if constexpr (N == 8) return {r};
    else return {_mm256_castps256_ps128(r)};
}

template <class V, int C> struct columns { V column[C]; };
template <std::size_t I, class V, int C> V get(const columns<V, C> &c) { return c.column[I]; }

// The lanes of a vector written to memory and read from there one by one, which spares the vector units the
// extraction. For paths that may use the stack.
template <class V> class in_memory {
    alignas(32) typename V::element lane[V::lanes];

public:
    explicit in_memory(V x) {
        *reinterpret_cast<typename V::raw *>(lane) = x.v;
        keep_in_memory(lane);
    }
    typename V::element operator[](int i) const { return lane[i]; }
};

// Row fetch: for each lane one load of the whole row, then a transposition. Number First names the first row.
// The caller makes sure that each number names a row of the table, whatever the lane holds.
template <int First = 0, int Rows, int N, int L>
columns<vec<f32, N, L>, 2> fetch(const table<f32, 2, Rows> &t, vec<i32, N, L> number) {
    using V = vec<f32, N, L>;
    const auto base =
        reinterpret_cast<const double *>((u64)t.row - First * sizeof t.row[0]); // a row as one value
    // Two rows in one register; their numbers come in one 64-bit extraction.
    const auto two_rows = [base](i64 numbers) {
        return _mm_castpd_ps(_mm_loadh_pd(_mm_load_sd(base + (u32)numbers), base + ((u64)numbers >> 32)));
    };
    if constexpr (L == 1) {
        const __m128 row = _mm_castpd_ps(_mm_loaddup_pd(base + (u32)number.v[0]));
        return {V{_mm_moveldup_ps(row)}, V{_mm_movehdup_ps(row)}};
    } else if constexpr (N == 4) {
        const __m128 a = two_rows(_mm_cvtsi128_si64((__m128i)number.v));
        const __m128 b = L == 2 ? a : two_rows(_mm_extract_epi64((__m128i)number.v, 1));
        return {V{_mm_shuffle_ps(a, b, 0x88)}, V{_mm_shuffle_ps(a, b, 0xDD)}};
    } else {
        const __m128i lower = _mm256_castsi256_si128((__m256i)number.v);
        const __m128i upper = _mm256_extracti128_si256((__m256i)number.v, 1);
        const __m256 a =
            _mm256_set_m128(two_rows(_mm_cvtsi128_si64(upper)), two_rows(_mm_cvtsi128_si64(lower)));
        const __m256 b =
            _mm256_set_m128(two_rows(_mm_extract_epi64(upper, 1)), two_rows(_mm_extract_epi64(lower, 1)));
        return {V{_mm256_shuffle_ps(a, b, 0x88)}, V{_mm256_shuffle_ps(a, b, 0xDD)}};
    }
}

// The same for rows of four columns, or eight, and so on: 16 bytes a load. at(lane) is the address of the
// lane's row.
template <int C, int N, int L, class At> columns<vec<f32, N, L>, C> fetch_floats(At at) {
    static_assert(C % 4 == 0);
    columns<vec<f32, N, L>, C> out;
    const auto four_entries = [&](int lane, int c) { return _mm_load_ps(at(lane) + c); };
#pragma clang loop unroll(full)
    for (int c = 0; c < C; c += 4) {
        if constexpr (N == 4) {
            __m128 a = four_entries(0, c), b = four_entries(L > 1 ? 1 : 0, c);
            __m128 d = L > 2 ? four_entries(2, c) : a, e = L > 2 ? four_entries(3, c) : b;
            _MM_TRANSPOSE4_PS(a, b, d, e);
            out.column[c].v = a, out.column[c + 1].v = b, out.column[c + 2].v = d, out.column[c + 3].v = e;
        } else {
            __m256 r[4];
#pragma clang loop unroll(full)
            for (int i = 0; i < 4; i++) r[i] = _mm256_set_m128(four_entries(i + 4, c), four_entries(i, c));
            const __m256 a = _mm256_unpacklo_ps(r[0], r[1]), b = _mm256_unpackhi_ps(r[0], r[1]);
            const __m256 d = _mm256_unpacklo_ps(r[2], r[3]), e = _mm256_unpackhi_ps(r[2], r[3]);
            out.column[c].v = _mm256_shuffle_ps(a, d, 0x44),
            out.column[c + 1].v = _mm256_shuffle_ps(a, d, 0xEE);
            out.column[c + 2].v = _mm256_shuffle_ps(b, e, 0x44),
                           out.column[c + 3].v = _mm256_shuffle_ps(b, e, 0xEE);
        }
    }
    return out;
}
template <int C, int Rows, int N, int L>
requires(C % 4 == 0) columns<vec<f32, N, L>, C> fetch(const table<f32, C, Rows> &t, vec<i32, N, L> number) {
    return fetch_floats<C, N, L>(
        [&](int lane) { return reinterpret_cast<const f32 *>(t.row[(u32)number.v[lane]]); });
}

// Row fetch for doubles. at(lane) is the address of the lane's row.
template <int C, int N, int L, class At> columns<vec<f64, N, L>, C> fetch_doubles(At at) {
    static_assert(C == 1 || C % 2 == 0);
    columns<vec<f64, N, L>, C> out;
    if constexpr (L == 1) {
        const f64 *row = at(0);
#pragma clang loop unroll(full)
        for (int c = 0; c < C; c++) out.column[c].v = _mm_loaddup_pd(row + c);
    } else if constexpr (C == 1) {
        const auto two_rows = [&](int lane) { return _mm_loadh_pd(_mm_load_sd(at(lane)), at(lane + 1)); };
        if constexpr (N == 2) out.column[0].v = two_rows(0);
        else out.column[0].v = _mm256_set_m128d(two_rows(2), two_rows(0));
    } else {
#pragma clang loop unroll(full)
        for (int c = 0; c < C; c += 2) {
            const auto entries = [&](int lane) { return _mm_load_pd(at(lane) + c); };
            if constexpr (N == 2) {
                const __m128d a = entries(0), b = entries(1);
                out.column[c].v = _mm_unpacklo_pd(a, b), out.column[c + 1].v = _mm_unpackhi_pd(a, b);
            } else {
                const __m256d a = _mm256_set_m128d(entries(2), entries(0));
                const __m256d b = _mm256_set_m128d(entries(3), entries(1));
                out.column[c].v = _mm256_unpacklo_pd(a, b), out.column[c + 1].v = _mm256_unpackhi_pd(a, b);
            }
        }
    }
    return out;
}
// Lanes of x, none negative, as scalars. Those of 32 bits leave the register two at a time.
template <class I, int N, int L> struct scalars {
    vec<I, N, L> x;

    u64 operator[](int lane) const {
        if constexpr (sizeof(I) == 8 || L == 1) {
            return (u64)(unsigned_bits<I>)x.v[lane];
        } else {
            const auto pair = __builtin_bit_cast(typename vec<u64, N / 2>::raw, x.v)[lane / 2];
            return lane % 2 ? pair >> 32 : (u32)pair;
        }
    }
};

// fetch takes row numbers; First names the first row. fetch_at takes how far each row lies from row 0, in
// units of Unit bytes: units of 1, 2, 4 and 8 bytes cost no instruction.
template <int First = 0, int C, int Rows, class I, int N, int L>
columns<vec<f64, N, L>, C> fetch(const table<f64, C, Rows> &t, vec<I, N, L> number) {
    const u64 base = (u64)t.row - First * sizeof t.row[0];
    const scalars<I, N, L> row{number};
    return fetch_doubles<C, N, L>(
        [=](int lane) { return reinterpret_cast<const f64 *>(base + row[lane] * sizeof t.row[0]); });
}
template <i64 First = 0, int Unit = 1, int C, int Rows, class I, int N, int L>
columns<vec<f64, N, L>, C> fetch_at(const table<f64, C, Rows> &t, vec<I, N, L> distance) {
    const u64 base = (u64)t.row - First * sizeof t.row[0];
    const scalars<I, N, L> at{distance};
    return fetch_doubles<C, N, L>(
        [=](int lane) { return reinterpret_cast<const f64 *>(base + at[lane] * Unit); });
}
template <int First = 0, int Unit = 1, int C, int Rows, class I, int N, int L>
requires(C % 4 == 0) columns<vec<f32, N, L>, C> fetch_at(const table<f32, C, Rows> &t,
                                                         vec<I, N, L> distance) {
    const u64 base = (u64)t.row - First * sizeof t.row[0];
    const scalars<I, N, L> at{distance};
    return fetch_floats<C, N, L>(
        [=](int lane) { return reinterpret_cast<const f32 *>(base + at[lane] * Unit); });
}
// The row's number is what number(bits) makes of a lane's bits, lane by lane in scalar registers.
template <int First = 0, class T, int C, int Rows, class V, class Number>
columns<typename V::template with<T>, C> fetch(const table<T, C, Rows> &t, const in_memory<V> &bits,
                                               Number number) {
    const auto at = [base = (u64)t.row - First * sizeof t.row[0], &bits, number](int lane) {
        return reinterpret_cast<const T *>(base + (u64)number(bits[lane]) * sizeof t.row[0]);
    };
    if constexpr (sizeof(T) == 8) return fetch_doubles<C, V::lanes, V::live>(at);
    else return fetch_floats<C, V::lanes, V::live>(at);
}

QUEVAR_INLINE_END
} // namespace quevar

template <class V, int C>
struct std::tuple_size<quevar::columns<V, C>> : std::integral_constant<std::size_t, C> {};
template <std::size_t I, class V, int C> struct std::tuple_element<I, quevar::columns<V, C>> {
    using type = V;
};
