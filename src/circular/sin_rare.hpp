// Sine and cosine of one double above 2^23 in plain separately rounded steps: where the shorter tiers send such
// lanes.
#pragma once

#include "frame/frame.hpp"

namespace quevar::circular {
QUEVAR_INLINE_BEGIN

// x = quarters pi/2 + high + low up to whole turns.
struct Angle {
    f64 high, low;
    u32 quarters;
};

// For |x| below 2^30: x less an even multiple m of pi/4, which comes in five pieces. The first four have so
// few digits that their products with m are exact.
inline Angle subtract_quarter_turns(f64 x) {
    constexpr f64 c1 = 0x3FE921FA00000000_f64, // 0.7853975296020508
        c2 = 0x3EA5444300000000_f64,           // 6.337954800983425e-07
        c3 = 0xBD373DCA00000000_f64,           // -8.256991011063031e-14
        c4 = 0xBBF3B39A00000000_f64,           // -6.675151087907452e-20
        c5 = 0x3A845C06E0E68948_f64;           // 8.223128468162129e-27
    constexpr f64 four_over_pi = 0x3FF45F306DC9C883_f64;
    const f64 a = __builtin_fabs(x), sign = __builtin_copysign(1, x);
    const u32 n = (u32)(four_over_pi * a);
    const f64 m = (f64)(n + (n & 1));

    const f64 p2 = c2 * m, p3 = c3 * m, p4 = c4 * m;
    const f64 u = a - c1 * m, v = u - p2, w = v - p3;
    const f64 error = ((u - v) - p2) + ((v - w) - p3);
    const f64 g = w + error, high = g - p4;
    const f64 low = sign * ((((w - g) + error) + ((g - high) - p4)) - m * c5);
    const f64 sum = high * sign + low;
    const u32 quarters = (n + 1) >> 1;
    return {sum, (high * sign - sum) + low, x < 0 ? -quarters : quarters};
}

// 2^200 4/pi in pieces of 25 digits, behind a 0.
using Pieces = table<f64, 1, 48>;
QUEVAR_CONSTANTS(Pieces, four_over_pi_pieces) = {{
#include "tables/four_over_pi.inc"
}};

// From 2^30 on: the product with those digits of 4/pi that count, of which seven pieces in doubles make a
// double and a half; their 25 digits times half of the argument's are exact.
inline Angle multiply_by_digits(f64 x) {
    const f64 a = as_float(as_uint(__builtin_fabs(x)) - ((u64)200 << 52)); // keeps the products in range
    const f64 ah = as_float(as_uint(a) & -((u64)1 << 27)), al = a - ah;
    const int field = exponent_field(x);
    const int k = ((field - 1052) * 83886) >> 21; // whole 25s
    const auto t = [k](int i) { return four_over_pi_pieces(k + i, 0); };

    // Eighths of a turn, less whole turns as far as the first product shows them.
    const f64 b = ah * t(1), c = t(0) * al, f = t(1) * al, d = ah * t(2), g = t(2) * al, h = ah * t(3);
    const f64 s0 = c + b, s0_error = (c - s0) + b;
    const int cut = (1090 - field + 25 * k) & 63;
    const f64 turns = as_float(as_uint(s0 + s0_error) & -((u64)1 << cut));
    const f64 s1 = s0 - turns, s1f = s1 + f, u = ((s1 - s1f) + f) + s0_error;
    const f64 s2 = s1f + d, s2_error = ((s1f - s2) + d) + u;

    // Their whole number, by the pattern; an odd one counts one more and leaves a negative rest.
    const u64 pattern = as_uint(((s2 + s2_error) + g) + h);
    const int shift = (51 - (int)(pattern >> 52)) & 63;
    const u64 whole = pattern >> shift;
    const f64 whole_eighths = as_float(whole << shift);
    const f64 adjustment = shift == 52 || (whole & 1) ? -1.0 : 0.0;
    const u32 n = (u32)((((u64)1 << 52) >> shift) | whole);
    const u32 quarters = (n + 1) >> 1;

    // The rest, largest terms first, with the roundings of each sum.
    const f64 g4 = t(4) * al, h4 = ah * t(4), f3 = t(3) * al, h5 = ah * t(5), h6 = ah * t(6);
    const f64 rest = s2 - whole_eighths, p0 = rest + s2_error;
    const f64 p1 = p0 + adjustment, p2 = p1 + g, p3 = p2 + h, p4 = p3 + f3, p5 = p4 + h4, p6 = p5 + g4;
    f64 error = ((p2 - p3) + h) + (((p1 - p2) + g) + ((rest - p0) + s2_error));
    error = ((p3 - p4) + f3) + error;
    error = ((p5 - p6) + g4) + (((p4 - p5) + h4) + error);
    const f64 g5 = t(5) * al + h6, g6 = t(6) * al + ah * t(7), l7 = al * t(7) + ah * t(8);
    const f64 p7 = p6 + h5, p8 = p7 + g5, p9 = p8 + g6;
    error = ((p8 - p9) + g6) + (((p7 - p8) + g5) + (((p6 - p7) + h5) + error));

    // To radians: the sum in two parts, the upper one of 26 digits, times pi/4 in two parts.
    constexpr f64 splitter = 0x4198000000000000_f64, // 1.5 * 2^26
        quarter_pi_high = 0x3FE921FB40000000_f64,    // 0.7853981256484985
        quarter_pi_low = 0x3E64442D18469899_f64;     // 3.774894977445941e-08
    const f64 eighths = p9 + l7, scaled = eighths * splitter, upper = (eighths + scaled) - scaled;
    const f64 lower = ((p9 - upper) + l7) + error;
    const f64 product = upper * quarter_pi_high;
    const f64 product_low = quarter_pi_high * lower + (lower + upper) * quarter_pi_low;
    const f64 high = product + product_low, low = (product - high) + product_low;
    const f64 sign = __builtin_copysign(1, x);
    return {high * sign, sign * low, x < 0 ? -quarters : quarters};
}

// cos and sin at pi j/32, as in the large path's table.
using RareRows = table<f64, 4, 80>;
QUEVAR_CONSTANTS(RareRows, sine_rare_rows) = {{
#include "tables/sin_rare_rows.inc"
}};

// A finite x as pi/32 row + t + tail, with sin t - t and cos t - 1.
class ScalarSine {
    f64 t, tail, sine, cosine;
    int row;

public:
    [[gnu::noinline]] explicit ScalarSine(f64 x) {
        constexpr f64 shifter = 0x4338000000000000_f64,
                      steps = 0x40245F306DC9C883_f64, // 32/pi
            q1 = 0x3FB921FB54400000_f64,              // 0.09817477042088285
            q2 = 0x3D90B4611A600000_f64,              // 3.798187816439979e-12
            q3 = 0x3B63198A2E037073_f64;              // 1.2639164054974691e-22
        const Angle angle = exponent_field(x) <= 1052 ? subtract_quarter_turns(x) : multiply_by_digits(x);
        const f64 shifted = steps * angle.high + shifter, m = shifted - shifter;
        const f64 p2 = q2 * m, p3 = m * q3, r = angle.high - q1 * m;
        t = r - p2;
        tail = (((r - t) - p2) - p3) + angle.low;
        row = (int)((u32)as_uint(shifted) + 16 * angle.quarters) & 63;
        const f64 z = t * t;
        sine = horner(z, 0x3EC71DE3A556C734_f64, 0xBF2A01A01A01A01A_f64, 0x3F81111111111111_f64,
                      0xBFC5555555555555_f64) *
               z * t;
        cosine = horner(z, 0x3EFA01A01A01A01A_f64, 0xBF56C16C16C16C17_f64, 0x3FA5555555555555_f64,
                        0xBFE0000000000000_f64) *
                 z;
    }

    // sin(x + quarters pi/2), quarters being 0 or 1.
    f64 at(int quarters) const {
        const auto entry = [j = row + 16 * quarters](int c) { return sine_rare_rows(j, c); };
        const f64 cos_low = entry(0), cos_high = entry(1), sin_high = entry(2), sin_low = entry(3);
        const f64 a = cos_low * t, b = cos_high * t, slope = cos_low + cos_high;
        const f64 g = sin_high + b, high = g + a;
        f64 low = tail * (slope - t * sin_high) + sin_low;
        low = low + ((sin_high - g) + b);
        low = low + (a + (g - high));
        low = low + sine * slope;
        low = low + cosine * sin_high;
        return high + low;
    }
};

QUEVAR_INLINE_END
} // namespace quevar::circular
