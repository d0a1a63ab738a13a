// The rare paths of atan2 and atan2pi, float and double: special values, quotients of extreme size, and for
// the others, whose arguments alone are extreme, the arctangent of a quotient in two parts.
#pragma once

#include "arctangent.hpp"

namespace quevar::invcircular {
QUEVAR_INLINE_BEGIN

// For each half of each binade from 1/8 on the arctangent of its middle.
using MiddleRows = table<f64, 2, 114>;
QUEVAR_CONSTANTS(MiddleRows, middle_rows) = {{
#include "tables/atan2_rare_rows.inc"
}};

constexpr f64 pi = 0x400921FB54442D18_f64, pi_low = 0x3CA1A62633145C07_f64;
constexpr f64 half_pi = 0x3FF921FB54442D18_f64, half_pi_low = 0x3C91A62633145C07_f64;

// A value in two parts.
struct Parts {
    f64 high, low;
};

// a + b rounded, and what the rounding lost.
inline Parts exact_sum(f64 a, f64 b) {
    const f64 s = a + b, v = a - s;
    return {s, (v + b) + (a - (s + v))};
}

// 1/(h + l) for an upper half h: the upper half of 1/h, and what corrects it.
inline Parts reciprocal(f64 h, f64 l) {
    const f64 r = upper_half(1 / h), e = (1 - h * r) - l * r;
    return {r, ((e + 1) * e) * r};
}

// The arctangent of q, with z for the square of its whole, at most 1/50.
inline Parts small_arctangent(Parts q, f64 z) {
    const f64 p = horner(z, 0xBFB029BD34239994_f64, // -0.06313688776899645
                         0x3FB3AB7C1048AFD1_f64,    // 0.07683539769703819
                         0xBFB745BE69CCA475_f64,    // -0.0909079559611586
                         0x3FBC71C6F9B157D3_f64,    // 0.11111110301985087
                         0xBFC2492492382A27_f64,    // -0.1428571428262597
                         0x3FC99999999991BB_f64,    // 0.19999999999994408
                         0xBFD5555555555555_f64) *  // -0.3333333333333333
                  z;
    const f64 ph = upper_half(p), pl = p - ph;
    const auto [a, error] = exact_sum(ph * q.high, q.high);
    return {a, pl * q.low + ph * q.low + pl * q.high + (q.low + error)};
}

// atan(y/x) for y and x > 0 whose exponents differ by -53 to 53; where left is set, pi less that.
[[gnu::noinline]] inline Parts quotient_arctangent(f64 y, f64 x, bool left) {
    const f64 q = y / x;

    // Both are scaled by a power of two that brings y to [1, 2) or, at the ends of the range, toward it.
    const int field = exponent_field(y);
    const int e = field == 0 ? -1022 : field >= 2046 ? 1022 : field - format<f64>::bias;
    y *= two_to(-e), x *= two_to(-e);
    const f64 xh = upper_half(x), yh = upper_half(y);

    Parts a;
    if (q < 0.125) {
        const f64 yl = y - yh;
        const auto [r, c] = reciprocal(xh, x - xh);
        const f64 h = r * yh, t = c * yl + yh * c + r * yl, s = h + t, sh = upper_half(s);
        a = small_arctangent({sh, ((h - s) + t) + (s - sh)}, q * q);
    } else {
        // atan q = atan B + atan((y - x B)/(x + y B)), with B the middle of the half binade that holds q.
        const u32 word = (u32)(as_uint(q) >> 32);
        const f64 B = as_float((u64)((word & 0xFFF80000) + 0x00040000) << 32);
        const int half_binade = (int)(word - 0x3FC00000) >> 19; // counted from 1/8
        const int row = half_binade < 113 ? half_binade : 113;  // beyond, pi/2 to the last place but one

        const f64 u1 = -((x - xh) * B), w1 = -(xh * B), u2 = w1 + u1;
        const auto [n, n_error] = exact_sum(y, u2);
        const f64 nh = upper_half(n), nl = (n - nh) + (((w1 - u2) + u1) + n_error);

        const f64 m2 = (y - yh) * B, m1 = yh * B + m2;
        const auto [d, d_error] = exact_sum(x, m1);
        const f64 dh = upper_half(d), dl = (d - dh) + (((yh * B - m1) + m2) + d_error);

        const auto [r, c] = reciprocal(dh, dl);
        const f64 h = r * nh, t = c * nl + nh * c + nl * r, s = h + t, sh = upper_half(s);
        const Parts rest = small_arctangent({sh, ((h - s) + t) + (s - sh)}, s * s);

        const auto [high, error] = exact_sum(rest.high, middle_rows(row, 0));
        a = {high, (error + rest.low) + middle_rows(row, 1)};
    }

    if (left) a = {-a.high, -a.low};
    const auto [high, error] = exact_sum(a.high, left ? pi : 0);
    return {high, (left ? pi_low : 0) + (error + a.low)};
}

// What the rare paths of atan2 do at each place, in radians.
template <class T> struct RareRadians {
    // n pi/4
    static f64 quarters(int n) {
        constexpr f64 angle[] = {0, 0x3FE921FB54442D18_f64, half_pi, 0x4002D97C7F3321D2_f64, pi};
        return angle[n];
    }
    // y/x below 2^-53 is its own arctangent. What is added is less than half its last place: to nearest it
    // goes.
    static f64 small(f64 y, f64 x) {
        const f64 q = y / x;
        const T narrow = (T)q;
        return exponent_field(narrow) == 0 ? q + (f64)(narrow * narrow) : q * (1 + q);
    }
    // pi/2 + low
    static f64 upright(f64 low) { return low + half_pi; }
    static f64 sum(Parts a) { return a.high + a.low; }
    static T rounded(f64 value) { return (T)value; }
};

// Angle says how each value is made, as RareRadians does.
template <class Angle, class T> T rare_arctangent2(T y, T x) {
    if (is_nan(y) || is_nan(x)) return add_in_order(y, x);

    const f64 Y = __builtin_fabs((f64)y), X = __builtin_fabs((f64)x), infinity = __builtin_inf();
    const bool left = as_int(x) < 0; // -0 too
    const int d = exponent_field(Y) - exponent_field(X);
    f64 angle;
    if (Y == infinity) angle = Angle::quarters(X < infinity ? 2 : left ? 3 : 1);
    else if (X == infinity || Y == 0) angle = Angle::quarters(left ? 4 : 0);
    else if (X == 0 || d >= 74) angle = Angle::quarters(2);
    else if (d <= -54) angle = left ? Angle::quarters(4) : Angle::small(Y, X);
    else if (d >= 54) angle = Angle::upright(half_pi_low - x / Y);
    else angle = Angle::sum(quotient_arctangent(Y, X, left));
    return Angle::rounded(__builtin_copysign(angle, (f64)y));
}

QUEVAR_INLINE_END
} // namespace quevar::invcircular
