// What all arctangents share: constants and the test for special lanes.
#pragma once

#include "frame/frame.hpp"

namespace quevar::invcircular {
QUEVAR_INLINE_BEGIN

template <class T> struct Constants {
    slot<T> magnitude, sign, one, minus_one, half, half_pi, pi, infinity;
    slot<signed_bits<T>> least, range; // of ordinary magnitudes, in the high word
};
QUEVAR_CONSTANTS(Constants<f32>, constantsf){
    .magnitude = 0x7FFFFFFF,
    .sign = 0x80000000,
    .one = 0x3F800000,       // 1
    .minus_one = 0xBF800000, // -1
    .half = 0x3F000000,      // 0.5
    .half_pi = 0x3FC90FDB,   // 1.57079637
    .pi = 0x40490FDB,        // 3.14159274
    .infinity = 0x7F800000,
    .least = 0x81000000, // from 2^-125 to below 2^123
    .range = 0xFBFFFFFF,
};
QUEVAR_CONSTANTS(Constants<f64>, constants){
    .magnitude = 0x7FFFFFFFFFFFFFFF,
    .sign = 0x8000000000000000,
    .one = 0x3FF0000000000000,       // 1
    .minus_one = 0xBFF0000000000000, // -1
    .half = 0x3FE0000000000000,      // 0.5
    .half_pi = 0x3FF921FB54442D18,   // 1.5707963267948966
    .pi = 0x400921FB54442D18,        // 3.1415926535897931
    .infinity = 0x7FF0000000000000,
    .least = 0x8030000000000000, // from 2^-1020 to below 2^993
    .range = 0xFDCFFFFF00000000,
};

template <class V> const auto &constants_for(V x) {
    if constexpr (sizeof(typename V::element) == 4) return read_for(x, constantsf);
    else return read_for(x, constants);
}

// Whether a magnitude is not ordinary: zero, infinite, NaN, or so near the ends of the range that a
// reciprocal or a step on the way to it might leave the normal numbers.
template <class V> auto extreme(V magnitude) {
    const auto &k = constants_for(magnitude);
    return high_word_greater(subtract_words(as_int(magnitude), k.least), k.range);
}

// For the rare paths: 1/pi, and in two parts.
constexpr f64 one_over_pi = 0x3FD45F306DC9C883_f64; // 0.31830988618379069
constexpr f64 one_over_pi1 = 0x3FD45F3070000000_f64, one_over_pi2 = 0xBE21B1BBEAD603D9_f64;

// The upper 26 bits of x; the product of two such halves is exact.
inline f64 upper_half(f64 x) {
    const f64 c = 0x41A0000002000000_f64 * x; // 2^27 + 1
    return c - (c - x);
}

QUEVAR_INLINE_END
} // namespace quevar::invcircular
