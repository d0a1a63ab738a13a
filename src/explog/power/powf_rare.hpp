// The rare paths of powf, powrf, pownf and rootnf, in separately rounded floats: log2 |x| in two parts, its
// product with y, and the power of two.
#pragma once

#include "frame/frame.hpp"

namespace quevar::powerf {
QUEVAR_INLINE_BEGIN

inline bool is_finite(f32 x) { return exponent_field(x) != format<f32>::field_max; }
inline f32 infinity() { return as_float(format<f32>::exponent); }
inline f32 default_nan() { return as_float(format<f32>::sign | format<f32>::exponent | format<f32>::quiet); }
inline f32 with_field(f32 x, int field) {
    return as_float((as_uint(x) & ~format<f32>::exponent) | (u32)field << format<f32>::digits);
}

// a + b, and what rounding took from it if |a| >= |b|.
struct Sum {
    f32 value, error;
    Sum(f32 a, f32 b) : value(a + b), error((a - value) + b) {}
};

// v in two halves, whose products with other halves are exact.
struct Halves {
    f32 high, low;
    explicit Halves(f32 v) {
        const f32 p = 0x45800800_f32 * v; // 2^12 + 1
        high = p - (p - v);
        low = v - high;
    }
};

// ---- Logarithm ----

// Factors r, and -log2 r in two parts of which the high one is a multiple of 2^-17: nine rows for the first
// step, nine for the second, and 17 for the third, with log2(c/r) in the place of -log2 r.
using RareLogRows = table<f32, 3, 35>;
QUEVAR_CONSTANTS(RareLogRows, powf_rare_log_rows) = {{
#include "tables/powf_rare_log_rows.inc"
}};

// The bits of a significand that count the rows of a step, which are rounded to the last of them.
struct Step {
    u32 bits, half;
    int shift, first_row;
};

// log2 |x| of a finite x other than 0.
struct Log2 {
    f32 high, low;
    f32 rough; // before the polynomial: says whether the power overflows

    [[gnu::noinline]] explicit Log2(f32 x) {
        const bool denormal = exponent_field(x) == 0;
        const i32 pattern = as_int(denormal ? x * 0x1p64f : x) & ~format<f32>::sign;
        const f32 m = with_field(as_float(pattern), format<f32>::bias);

        // The product of m and the factors comes near to c in three steps. From 1.4375 on m is halved by its
        // factor, and the exponent one more. What is lost from the sum of the exponent and the high parts is
        // kept.
        f32 product = m, factor = 1, errors = 0, low_parts[3];
        f32 sum = (f32)(((pattern - 0x3F380000) >> format<f32>::digits) - (denormal ? 64 : 0));
        constexpr Step steps[] = {{0x00780000, 0x00080000, 20, 0},
                                  {0x001E0000, 0x00020000, 18, 9},
                                  {0x0007C000, 0x00004000, 15, 18}};
        for (int i = 0; i < 3; i++) {
            const Step &s = steps[i];
            const int row = s.first_row + (int)(((as_uint(product) & s.bits) + s.half) >> s.shift);
            const f32 r = powf_rare_log_rows(row, 0);
            const Sum next(sum, powf_rare_log_rows(row, 1));
            low_parts[i] = powf_rare_log_rows(row, 2);
            product *= r;
            factor *= r;
            sum = next.value;
            errors += next.error;
        }
        const f32 rest = ((errors + low_parts[0]) + low_parts[1]) + low_parts[2];

        // The product was rounded: d is what it lacks.
        const Halves a(m), b(factor);
        const f32 d = a.low * b.low + (((a.high * b.high - product) + b.high * a.low) + a.high * b.low);

        // c is near 1/ln 2, so that log2(c + w) = log2 c + w and a small polynomial, within 1.7e-12 up to
        // 1/128.
        const f32 u = product - 0x3FB88000_f32, w = u + d; // c = 1.44140625
        const Sum with_u(sum, u);
        const f32 p = w * horner(w, 0xBDAB1EA1_f32, // -0.0835545138
                                 0x3E246F69_f32,    // 0.160581246
                                 0xBEB1C35D_f32,    // -0.347193629
                                 0x3A6A6369_f32);   // 0.000894120487
        const Sum with_p(with_u.value, p), all(with_p.value, rest + (d + with_u.error));
        rough = with_u.value;
        high = all.value;
        low = all.error + with_p.error;
    }
};

// ---- Product ----

// n/128 + rest, with n in the low bits of `shifted`.
struct Product {
    f32 shifted, rest;
};
inline f32 to_128ths() { return 0x47C00000_f32; } // 1.5 * 2^16

inline Product multiply(const Log2 &log, f32 y) {
    const Halves h(log.high), yy(y);
    const f32 first = yy.high * h.high, second = yy.high * h.low + h.high * yy.low, sum = first + second;
    const f32 shifted = to_128ths() + sum;
    const f32 errors = log.low * y + (((first - sum) + second) + h.low * yy.low);
    return {shifted, errors + (sum - (shifted - to_128ths()))};
}

// With y in two parts, of which the high one has half a significand.
inline Product multiply(const Log2 &log, f32 y, f32 y_high, f32 y_low) {
    const Halves h(log.high);
    const f32 first = y_high * h.high, shifted = to_128ths() + first;
    return {shifted, (log.low * y + ((h.low * y_low + y_high * h.low) + h.high * y_low)) +
                         (first - (shifted - to_128ths()))};
}

// ---- Power of two ----

// 2^(j/128) in two parts, the high one a multiple of 2^-22.
using RareExpRows = table<f32, 2, 128>;
QUEVAR_CONSTANTS(RareExpRows, powf_rare_exp_rows) = {{
#include "tables/powf_rare_exp_rows.inc"
}};

// Where two parts of a denormal result are brought down to its exponent: before they are added, or after,
// when the scaling alone rounds.
enum Denormals { scaled_before_sum, scaled_after_sum };

template <Denormals D> [[gnu::noinline]] f32 power(const Log2 &log, f32 y, Product product, f32 sign) {
    const int fields = exponent_field(log.rough) + exponent_field(y);
    if (fields >= 2 * 127 + 11) {
        const bool grows = (as_uint(log.rough) ^ as_uint(y)) < format<f32>::sign;
        const f32 root = at_run_time(grows ? 0x1p127f : 0x1p-126f);
        return (root * root) * sign;
    }
    if (fields < 2 * 127 - 61) return sign * (1 + at_run_time(0x1p-126f));

    const u32 n = as_uint(product.shifted);
    const int k = (i32)(n << 10) >> 17;
    const f32 r = product.rest, high = powf_rare_exp_rows(n & 127, 0), low = powf_rare_exp_rows(n & 127, 1);
    const f32 p = r * horner(r, 0x3D635847_f32, // 0.0555041097
                             0x3E75FDF0_f32,    // 0.240226507
                             0x3F317218_f32);   // 0.693147182
    const f32 q = p * high + low, sum = q + high;

    const int exponent = k + exponent_field(sum) - 127;
    if (exponent >= 128) {
        const f32 root = at_run_time(0x1p127f);
        return sign * (root * root);
    }
    if (exponent >= -126) return with_field(sum, exponent + 127) * sign;
    if (exponent < -159) return sign * 0;
    const f32 up = two_to<f32>(k + 64), down = 0x1p-64f;
    if (exponent < -136)
        return D == scaled_before_sum ? ((sum * up) * down) * sign : (sign * down) * (sum * up);
    // q + high once more, its upper half exactly.
    const Halves s(sum);
    const f32 upper = s.high * up, lower = (((high - sum) + q) + s.low) * up;
    return (D == scaled_before_sum ? upper * down + lower * down : (upper + lower) * down) * sign;
}

QUEVAR_INLINE_END
} // namespace quevar::powerf
