// What cbrt and rcbrt share, for float and double. x is +-2^(3 d + rem) m, with rem from 0 to 2 and m from 1
// to 2. The range of m is cut in 32 parts. The roots of 2^rem c for the middle c of each part are tabulated;
// that of m/c = 1 + u is a short series, as |u| <= 1/65.
#pragma once

#include "frame/frame.hpp"

namespace quevar::cube_root {
QUEVAR_INLINE_BEGIN

// By 32 rem and the part: -1/c, the root of 2^rem c or its reciprocal, cut off, what that leaves, and 0.
template <class T> using Rows = table<T, 4, 96>;

// The exponent's bias is 3 * 341 for double, and the rest of its field by 3 is rem. For float it is
// 3 * 42 + 1, and the field is 3 times the quotient, plus rem + 1: rows are counted from 32.
template <class T> constexpr int first_row = sizeof(T) == 4 ? 32 : 0;
template <class T> constexpr int third_digits = sizeof(T) == 4 ? 12 : 14;

template <class T> struct Constants {
    using Bits = unsigned_bits<T>;
    // Lanes are ordinary whose exponent field is neither 0 nor all ones.
    slot<signed_bits<T>> magnitude, least, range;
    slot<Bits> place, third, binades, first;
    slot<Bits> significand, minus_one, part, minus_middle, sign;
};
QUEVAR_CONSTANTS(Constants<f32>, single){
    .magnitude{0x7FFFFFFF},
    .least{0x80800000},
    .range{0xFEFFFFFF},
    .place{16 * 0x1FFF},
    .third{1365},      // 2^12 / 3
    .binades{16 * 96}, // rows of three binades, in bytes
    .first{16 * 32},
    .significand{0x007FFFFF},
    .minus_one{0xBF800000},
    .part{0x007E0000},
    .minus_middle{0xBF820000}, // sets the bit behind the five that count the parts
    .sign{0x80000000},
};
QUEVAR_CONSTANTS(Constants<f64>, double_){
    .magnitude{0x7FFFFFFFFFFFFFFF},
    .least{0x8010000000000000},
    .range{0xFFDFFFFF00000000},
    .place{32 * 0xFFFF},
    .third{5462}, // 2^14 / 3
    .binades{32 * 96},
    .first{0},
    .significand{0x000FFFFFFFFFFFFF},
    .minus_one{0xBFF0000000000000},
    .part{0x000FC00000000000},
    .minus_middle{0xBFF0400000000000},
    .sign{0x8000000000000000},
};
template <class T> constexpr const Constants<T> &constants = single;
template <> inline constexpr const Constants<f64> &constants<f64> = double_;

template <class V> auto special(V x) {
    const auto &k = constants<typename V::element>;
    return high_word_greater(subtract_words(as_int(x) & k.magnitude, k.least), k.range);
}

template <class U> U multiply_small(U a, same<U> b) {
    if constexpr (sizeof(typename U::element) == 4) return multiply_low_halves(a, b);
    else return multiply_low_words(a, b);
}

template <class V, class U> struct Reduced {
    V offset;   // c - m, exact; times -1/c it is u
    U distance; // of the row, in bytes
    U third;    // d, biased
};
template <class V> auto reduce(V x) {
    using T = typename V::element;
    const auto &k = read_for(x, constants<T>);
    constexpr int place = format<T>::digits - 5 - (sizeof(T) == 4 ? 4 : 5);
    const auto bits = as_uint(x);
    // 32 times the exponent field, plus the part, times the bytes of a row.
    const auto number = (bits >> place) & k.place;
    const auto third = multiply_small(number >> (format<T>::digits - place), k.third) >> third_digits<T>;
    auto distance = number - multiply_small(third, k.binades);
    // A float of exponent field 0 would fall short of the first row.
    if constexpr (sizeof(T) == 4) distance = max(distance, k.first);
    const V offset =
        as_float((bits & k.significand) | k.minus_one) - as_float((bits & k.part) | k.minus_middle);
    return Reduced<V, decltype(distance)>{offset, distance, third};
}

// The number of the sign of x and the exponent field given at its place.
template <class V, class U> V with_sign(V x, U field) {
    return as_float(field | (as_uint(x) & read_for(x, constants<typename V::element>).sign));
}

// The bias of the exponent field of the power of two, at its place, and the coefficients behind 1.
template <class T, int N> struct Series {
    slot<unsigned_bits<T>> bias;
    slot<T> c[N];
};

// The tabulated root, times the power of two s, times 1 + u p(u). The low part needs no series.
template <class T, class V, class U, int N>
V root_in_two_parts(V x, V s, const Reduced<V, U> &r, const Rows<T> &rows, const Series<T, N> &k) {
    const auto [c, high, low, _] = fetch_at<first_row<T>>(rows, r.distance);
    const V u = c * r.offset, H = s * high;
    return H + fma_unless_scalar(low, s, polynomial(u, read_for(x, k).c) * (u * H));
}
template <class T, class V, class U, int N>
V root_in_one_part(V s, const Reduced<V, U> &r, const Rows<T> &rows, const Series<T, N> &k) {
    const auto [c, high, low, _] = fetch_at<first_row<T>>(rows, r.distance);
    const V u = c * r.offset, H = s * high;
    return fma_unless_scalar(u * H, polynomial(u, k.c), H);
}

QUEVAR_INLINE_END
} // namespace quevar::cube_root
