// What logf, log2f and log10f share: the special lanes, two reductions, and the rare path.
#pragma once

#include "frame/frame.hpp"

namespace quevar::explog {
QUEVAR_INLINE_BEGIN

struct LogConstants {
    slot<i32> two_thirds{0x3F2AAAAB};
    slot<i32> significand{0x007FFFFF};
    slot<i32> normal{0x80800000};
    slot<i32> normal_range{0xFEFFFFFF};
    slot<f32> one{0x3F800000};
};
QUEVAR_CONSTANTS(LogConstants, log_constants){};

// All but positive normal numbers, which alone the subtraction wraps to the least integers.
template <class V> auto outside_normal(V x) {
    return as_int(x) - log_constants.normal > log_constants.normal_range;
}

// By polynomial: x = 2^k (1 + f) with 1 + f from 2/3 to 4/3.
template <class V> struct Octave { V k, f; };
template <class V> Octave<V> octave(V x) {
    const auto &c = log_constants;
    const auto i = as_int(x) - c.two_thirds;
    return {convert<f32>(i >> 23), as_float((i & c.significand) + c.two_thirds) - c.one};
}

// By reciprocal: where m is the significand of x in a binade of its own and r a whole number near c/m,
// log m = log(c/r) + log(1 + f/c) with f = r m - c, which is exact. The table has log(c/r) in two parts, the
// offset of the exponent included; c makes the last term f and a rest that is several hundred times smaller.
// The upper half of r as a pattern counts the rows, and is FirstRow for the least r.
using ReciprocalRows = table<f32, 2, 129>;
struct ReciprocalConstants {
    slot<i32> significand{0x007FFFFF};
    slot<i32> binade;
    slot<f32> c, minus_c;
};
template <class V> struct Reciprocal { V exponent, f, high, low; };
template <int FirstRow, class V>
Reciprocal<V> reciprocal(V x, const ReciprocalConstants &k, const ReciprocalRows &rows) {
    const V m = as_float((as_int(x) & k.significand) | k.binade);
    const V r = round<to_nearest>(reciprocal_estimate(m) * k.c);
    const auto [high, low] = fetch<FirstRow>(rows, as_int(r) >> 16);
    return {convert<f32>(as_int(as_uint(x) >> 23)), fma(r, m, k.minus_c), high, low};
}

// ---- Rare paths ----

// False where a positive denormal remains; else the logarithm is in r.
inline bool no_finite_logarithm(f32 x, f32 *r) {
    const f32 zero = at_run_time(0.0f);
    if (x == 0) *r = -1 / zero;
    else if (x < 0) *r = zero / zero;
    else if (exponent_field(x) == format<f32>::field_max) *r = x * x;
    else return false;
    return true;
}

// For m near 1 + j/64: w unit, where w is near 1/m, and -log w in two parts.
using LogRareRows = table<f32, 3, 65>;

// A positive denormal 2^k m. Its logarithm is k log 2 + high + low + log(m w), and u + v = (m w - 1) unit.
struct ReducedDenormal {
    f32 k, high, low, u, v;

    ReducedDenormal(f32 x, const LogRareRows &rows) {
        const u32 scaled = as_uint(x * 0x4D000000_f32); // 2^27
        k = (f32)((int)(scaled >> 23) - 127 - 27);
        const f32 m = as_float((scaled & format<f32>::significand) | 0x3F800000);
        const u32 j = as_uint(m + 0x48000040_f32) & 0x7F; // 2^17 + 1: rounds m - 1 to 64ths
        const f32 shifter = 0x46000000_f32;               // 2^13
        const f32 upper = (m + shifter) - shifter, unit = rows(0, 0), inverse = rows(j, 0);
        high = rows(j, 1);
        low = rows(j, 2);
        u = upper * inverse - unit;
        v = (m - upper) * inverse;
    }
    // a + l + (u + v)(1 + q), the small terms first.
    f32 sum(f32 a, f32 l, f32 q) const { return (a + u) + (((v * q + l) + v) + u * q); }
};

QUEVAR_INLINE_END
} // namespace quevar::explog
