// The rare path of rsqrtf and rsqrt: 1 / sqrt(x) of a scalar, worked in double from a table.
#pragma once

#include "frame/frame.hpp"

namespace quevar::rsqrt {
QUEVAR_INLINE_BEGIN

// 1/sqrt of 1, 1 + 1/32, ..., 2 in rows 0 to 32, of 2, 2 + 1/16, ..., 4 in rows 32 to 64. They are rounded to
// multiples of 2^-13, so that their squares are exact, and the squares' products with 26 bits too.
using SeedRows = table<f64, 1, 65>;
QUEVAR_CONSTANTS(SeedRows, seed_rows) = {{
#include "tables/rsqrt_rare_rows.inc"
}};

// The upper 26 bits of x.
inline f64 upper_half(f64 x) {
    const f64 shifted = x * 0x41A0000000000000_f64; // 2^27
    return shifted - (shifted - x);
}

[[gnu::noinline]] inline f64 root(f64 x) {
    if (!(x > 0 && x < as_float(format<f64>::exponent))) return 1 / __builtin_sqrt(x);

    // x = radicand 2^(2 half_exponent), the radicand in [1, 4).
    const bool denormal = exponent_field(x) == 0;
    const f64 normal = denormal ? x * 0x43B0000000000000_f64 : x; // 2^60
    const int exponent = exponent_field(normal) - format<f64>::bias, odd = exponent & 1;
    const int half_exponent = (exponent - odd) / 2 - (denormal ? 30 : 0);
    const f64 significand = as_float((as_uint(normal) & format<f64>::significand) | as_uint(1.0));
    const f64 radicand = odd ? significand + significand : significand;

    const int row = (int)(as_uint(significand + 0x42E0000000000020_f64) & 63); // 2^47 + 1: rounds to 1/32
    const f64 seed = seed_rows(row + 32 * odd, 0), square = seed * seed;

    // With the residue e = 1 - radicand seed^2, 1/sqrt(radicand) = seed (1 - e)^(-1/2) = seed (1 + e/2 +
    // tail). Here e = e1 - e2; e1 is exact, and e2, some 2^26 times smaller, is rounded.
    const f64 upper = upper_half(radicand);
    const f64 e1 = 1 - upper * square, e2 = (radicand - upper) * square, e = e1 - e2;
    f64 tail = 0x3FC91A80BFBF8B2A_f64;        // 0.19612130511003417
    tail = tail * e + 0x3FCAD28A9E3226DF_f64; // 0.20955021595391707
    tail = tail * e + 0x3FCCE000C07A3B3E_f64; // 0.22558602712930481
    tail = tail * e + 0x3FCF7FFFEC1426E4_f64; // 0.24609374072343038
    tail = tail * e + 0x3FD17FFFFFFE2A26_f64; // 0.27343749999332301
    tail = tail * e + 0x3FD400000000138B_f64; // 0.31250000000027772
    tail = tail * e + 0x3FD8000000000001_f64; // 0.37500000000000006
    tail = tail * e * e;

    // seed + seed e/2 as sum + lost, but for what the lower half of e brings: seed times the upper half is
    // exact.
    const f64 e_upper = upper_half(e1),
              half_e_lower = 0.5 * (e2 - (e1 - e_upper)); // e/2 is e_upper/2 less this
    const f64 step = 0.5 * seed * e_upper;
    const f64 sum = seed + step, lost = (seed - sum) + step;
    return ((lost + (tail - half_e_lower) * seed) + sum) * two_to(-half_exponent);
}

template <class T> struct Special {
    static void rare(const T *x, T *r) { *r = (T)root(*x); }
};

QUEVAR_INLINE_END
} // namespace quevar::rsqrt
