// lgamma of one float, in extended precision.
#pragma once

#include "extended.hpp"
#include "reciprocals.hpp"

namespace quevar::lgammaf {
QUEVAR_INLINE_BEGIN

// lgamma(z) = f (t O(t^2) + E(t^2)) with t = (z - centre) scale, f = z - 2 in [2, 4) and else 1: a row for each quarter
// of [1, 2), for [2, 4) and for each binade of [4, 8192). Columns: centre, scale, five coefficients of O and six of E
// from the highest, unused.
using Pieces = table<f64, 14, 16>;
QUEVAR_CONSTANTS(Pieces, pieces) = {{
#include "tables/lgammaf_pieces.inc"
}};
// The logarithms of the reciprocals, their sign turned, in two parts.
using Logs = table<f64, 2, 256>;
QUEVAR_CONSTANTS(Logs, logs) = {{
#include "tables/lgammaf_logs.inc"
}};

// ---- Lane by lane, in extended precision ----

inline constexpr f80 half_ln_2pi = 0x3FFEEB3F8E4325F5A535_f80; // 0.918938533204672741803

inline f64 without_low_word(f64 x) { return as_float(as_uint(x) & 0xFFFFFFFF00000000); }

// ln y of a positive y.
[[gnu::noinline]] inline f64 log(f64 y) {
    const u32 high = (u32)(as_uint(y) >> 32);
    if (high >= 0x3FEF8000 && high < 0x3FF04000) { // 0.984375 ... 1.015625
        const f64 f = y - 1, q = f * f;
        if (high >= 0x3FEFFF00 && high <= 0x3FF0007F) {
            if (y == 1) return 0;
            return ((0.20000000372548288 * q + 1.0 / 3) * q + (-0.2500000031044086 * q - 0.5) * f) * f + f;
        }
        const f64 fh = without_low_word(f), fl = f - fh, h2 = fh * fh, h2h = without_low_word(h2);
        const f64 w = ((h2 - h2h) + (fh * fl + (fh + fl) * fl)) * -0.5;
        const f64 odd = horner(q, 0.11116661653512257, 0.14285713099855774, 0.20000000000103405, 1.0 / 3);
        const f64 even =
            horner(q, -0.10006105984234723, -0.12499998353772789, -0.16666666666863844, -0.2499999999999999);
        return ((fl + (odd * f + even * q) * q) + w) + (fh + -0.5 * h2h);
    }
    const int i = (int)(high >> 12) & 0xFF;
    const f64 k = (int)(high >> 20) - 1023;
    const f64 m = as_float((as_uint(y) & format<f64>::significand) | as_uint(1.0)), mh = without_low_word(m);
    const f64 r = reciprocals(i, 0);
    const f64 u = mh * r - 1, ul = (m - mh) * r, w = u + ul, q = w * w;
    const f64 even = horner(q, -0.1666678766814359, -0.2499999999965227, -0.5) * q;
    const f64 odd = (0.20000103714740713 * q + 0.33333333333145093) * w * q;
    const f64 e = (ul + (even + odd)) + (1.9082149292705877e-10 * k + logs(i, 1)); // ln 2 in two parts
    return e + ((k * 0.6931471803691238 + logs(i, 0)) + u);
}

// lgamma(z) for 1 <= z < 8192.
[[gnu::noinline]] inline f80 core(f80 z) {
    if (z == 2) return 0;
    const int exponent = exponent_field((f64)z) - 1023; // from 4 on z is a double
    const int row = z < 2 ? (z >= 1.25L) + (z >= 1.5L) + (z >= 1.75L) : z < 4 ? 4 : exponent + 3;
    const f80 t = (z - pieces(row, 0)) * pieces(row, 1), v = t * t;
    f80 o = pieces(row, 2), e = pieces(row, 7);
    for (int i = 3; i < 7; i++) o = o * v + pieces(row, i);
    for (int i = 8; i < 13; i++) e = e * v + pieces(row, i);
    const f80 g = t * o + e;
    return row == 4 ? (z - 2) * g : g;
}

// Cubics around the zeros of lgamma in (-3, -2) and (-4, -3); the rows of the first two are tried first.
struct Zero {
    f64 low, root, high, p[4];
};
inline constexpr Zero zeros[2][2] = {
    {{-2.7476876467274125,
      -2.7476826467274127,
      -2.747677646727413,
      {-20.095134918364234, 9.575189476003237, -1.9143501856116005, 1.733509244024501e-16}},
     {-3.955314284858597,
      -3.955294284858598,
      -3.955256462097168,
      {-3730.604724430541, 251.7146828802708, -20.725060845803696, -4.14382750757705e-16}}},
    {{-2.4570297382208004,
      -2.4570247382208006,
      -2.4570197382208008,
      {1.411291143123297, 4.858320951674879, 1.5156034480216576, 5.619192358950097e-17}},
     {-3.1435858883499797,
      -3.14358088834998,
      -3.14357588834998,
      {112.2689863227796, 25.83133837514846, 7.7818846581313625, 1.6978655906121085e-15}}},
};

// gamma(x) = gamma(x + n)/(x (x + 1) ... (x + n - 1)) with x + n in [1, 2].
inline f80 by_recurrence(f80 x) {
    f80 product = 1, z = x;
    while (z < 1) {
        product = product * z;
        z = z + 1;
    }
    return core(z) - log((f64)__builtin_fabsl(product));
}

// gamma(x) gamma(-x) = -pi/(x sin(pi x)), with d the distance of x from a whole number.
inline f80 by_reflection(f32 x) {
    const f32 a = -x, shifter = 12582912.0f, n = (shifter - x) - shifter; // 1.5 * 2^23
    const f80 d = (f80)a - n, z = d * d;
    // ln(sin(pi d)/(pi d))
    const f80 q = z * horner<f64>(z, {-0.33637658183181607, -0.039590262174026343, -0.19073645133704153,
                                      -0.19720563754919093, -0.25121852915771553, -0.33910790037117694,
                                      -0.54116169616915111, -1.6449340666885182});
    const f80 l1 = log(a), l2 = log((f64)__builtin_fabsl(d));
    if (a < 8192) return ((-l1 - core(a)) - q) - l2;
    return ((((f80)x - 0.5L) * l1 - half_ln_2pi) - x - q) - l2;
}

// Of a negative x that is no whole number.
inline f80 of_negative(f32 x) {
    const f32 a = -x;
    if (a >= 9) return by_reflection(x);
    if (a >= 2 && a < 4)
        for (const auto &table : zeros) {
            const Zero &zero = table[a > 3];
            if (zero.low < x && x < zero.high) return horner((f80)x - zero.root, zero.p);
        }
    return by_recurrence(x);
}

inline f32 value(f32 x) {
    const f32 zero = at_run_time(0.0f);
    const f64 largest = at_run_time(0x7F7FFFFF7F7FFFFF_f64);
    if (exponent_field(x) == 255) return x * x;
    if (x == 0) return 1.0f / zero;
    if (x < 0) return x <= -0x1p23f || x == (f32)(i32)x ? 1.0f / zero : (f32)of_negative(x);
    if (as_uint(x) >= 0x7C44AF8E) return (f32)(largest * largest);
    if (x == 1) return 0;
    if (x >= 8192) return (f32)((((f80)x - 0.5L) * log(x) + half_ln_2pi) - x);
    return (f32)(x < 1 ? core(1.0L + x) - log(x) : core(x));
}

// Of gamma(x); 1 at the poles, but that of x at the zeros.
inline i32 sign_of_gamma(f32 x) {
    if (x == 0) return as_int(x) < 0 ? -1 : 1;
    if (!(x < 0) || x <= -0x1p23f || x == (f32)(i32)x) return 1;
    return 2 * ((i32)x & 1) - 1; // (i32)x is x rounded up
}

QUEVAR_INLINE_END
} // namespace quevar::lgammaf
