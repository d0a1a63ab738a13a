// What pow, powr, pown and rootn of double share: the computation of the _native tiers, the special lanes,
// and the power that the rare paths compute.
#pragma once

#include "tables/log_and_exp.hpp"

namespace quevar::power {
QUEVAR_INLINE_BEGIN

// ---- Of every main path ----

// The helpers take the caller's constants, which lie together: one address serves all.
struct CommonConstants {
    slot<i64> magnitude{0x7FFFFFFFFFFFFFFF};
    slot<i64> significand{0x000FFFFFFFFFFFFF};
    slot<f64> one{0x3FF0000000000000};
    slot<u64> whole{0x4338000000000000};   // 1.5 2^52, whose last place is 1
    slot<f64> shifter{0x4338000000000000}; // the same as a number
    slot<i64> normal{0x8010000000000000};
    slot<i64> normal_range{0xFFDFFFFF00000000};
};

// Zeros, denormals, negative numbers, infinities and NaNs. The subtraction wraps the positive normal numbers,
// and only those, to the least integers.
template <class V> auto outside_normal(const CommonConstants &k, V x) {
    return high_word_greater(subtract_words(as_int(x), k.normal), k.normal_range);
}
template <class V> auto size_beyond(const CommonConstants &k, V x, const slot<i64> &last) {
    return high_word_greater(as_int(x) & k.magnitude, last);
}
template <class V> V magnitude(const CommonConstants &k, V x) { return as_float(as_int(x) & k.magnitude); }

// The biased exponent as a number, of x > 0.
template <class V> V biased_exponent(const CommonConstants &k, V x) {
    return as_float((as_uint(x) >> format<f64>::digits) | k.whole) - k.shifter;
}

// ---- In plain doubles: y ln x, and e to the power of that ----

struct PlainConstants : CommonConstants {
    slot<i64> binade{0x3F50000000000000};     // that of 2^-10
    slot<f64> last_low{0x4086A00000000000};   // 724
    slot<f64> offset_low{0x408FF00000000000}; // 1022
    slot<f64> one_more{0x0000080000000000};   // in its pattern, that makes it 1023
    slot<f64> l4{0xBFD0000148058EE1};         // -0.2500003054940248
    slot<f64> l3{0x3FD55555555543C5};         // 0.33333333333308374
    slot<f64> l2{0xBFDFFFFFFFFFF81F};         // -0.49999999999988803
    slot<f64> ln2{0x3FE62E42FEFA39EF};        // 0.69314718055994529
    slot<f64> steps{0x40A71547652B82FE};      // 2954.639443740597, 2048 / ln 2
    slot<f64> half{0x3FE0000000000000};
    slot<f64> slope{0x3F362F3904051FA1}; // 0.00033850805268231294, near ln 2 / 2048
    slot<i64> row{0x7FF};
    slot<i64> above_row{0xFFFFFFFFFFFFF800};
    slot<i64> last_finite{0x7F7FFFFF00000000};  // of y: all from 2^1017 on are beyond it
    slot<i64> last_product{0x4086232A00000000}; // 708.395: beyond it the result may not be normal
};
QUEVAR_CONSTANTS(PlainConstants, plain_constants){};

// ln x for normal x > 0. With m the significand and r a whole number near 1/m, x = 2^k (1 + f) / r, where f =
// r m - 1 is exact and within 0.00134. There the polynomial of degree 4 is good to a relative 2^-40.5, that
// of degree 3 to 2^-30.6.
enum class Degree { third, fourth };
template <Degree degree, class V> V plain_logarithm(const PlainConstants &k, V x) {
    const V m = as_float((as_int(x) & k.significand) | k.binade);
    const V r = round<to_nearest>(convert<f64>(reciprocal_estimate(convert<f32>(m))));
    const V f = fms(r, m, k.one);
    const V offset = keep(r > k.last_low, V(k.one_more)) | k.offset_low;
    const auto [t] = fetch<0x81000>(tables::log_rows, as_int(as_uint(r) >> 43));
    const V a = degree == Degree::fourth ? fma(f, k.l4, k.l3) : V(k.l3);
    const V c = t + fma_unless_scalar(f * f, fma(f, a, k.l2), f);
    return fma_unless_scalar(biased_exponent(k, x) - offset, V(k.ln2), c);
}

// e to the power p for |p| up to 708: a row of 2^(j/2048) and a line to the next, good to a relative 2^-27.1
// and off by as much at its start, so that e^0 is 0.9999999928.
template <class V> V plain_exponential(const PlainConstants &k, V p) {
    const V v = p * k.steps, w = (v - k.half) + k.shifter;
    const V r = (v - (w - k.shifter)) * k.slope;
    const auto [t] = fetch(tables::exp_rows, as_int(w) & k.row);
    return as_float(as_int(fma(r, t, t)) + ((as_int(w) & k.above_row) << 41));
}

// ---- The rare paths' power ----

// 2^(j/128) in two doubles, the low one absolute.
using SplitPowerRows = table<f64, 2, 128>;
QUEVAR_CONSTANTS(SplitPowerRows, split_power_rows) = {{
#include "tables/split_power_rows.inc"
}};

// Three factors r that bring a significand next to c, which is near 1 / ln 2, and minus their binary
// logarithms in two parts; those of the first step less 1 from row 16 on, those of the third for c/r instead
// of 1/r.
using StepRows = table<f64, 3, 33>;
using LastStepRows = table<f64, 3, 129>;
QUEVAR_CONSTANTS(StepRows, first_step_rows) = {{
#include "tables/first_step_rows.inc"
}};
QUEVAR_CONSTANTS(StepRows, second_step_rows) = {{
#include "tables/second_step_rows.inc"
}};
QUEVAR_CONSTANTS(LastStepRows, third_step_rows) = {{
#include "tables/third_step_rows.inc"
}};

inline u32 upper_word(f64 x) { return (u32)(as_uint(x) >> 32); }
inline bool is_negative(f64 x) { return as_uint(x) >> 63 != 0; }
inline bool is_finite(f64 x) { return exponent_field(x) != format<f64>::field_max; }
inline bool is_infinite(f64 x) { return !is_finite(x) && !is_nan(x); }
inline f64 default_nan() {
    const f64 zero = at_run_time(0.0);
    return zero / zero;
}
inline f64 with_exponent_field(f64 x, int field) {
    return as_float((as_uint(x) & ~format<f64>::exponent) | (u64)(field & format<f64>::field_max)
                                                                << format<f64>::digits);
}

// Two halves of a double whose products with other such halves are exact.
struct Split {
    f64 high, low;

    explicit Split(f64 x) {
        const f64 p = 0x41A0000002000000_f64 * x, q = p - x; // 2^27 + 1
        high = p - q;
        low = x - high;
    }
};

// log2 x for finite x > 0, to 2^-70.
struct RareLogarithm {
    f64 first; // good enough for its size
    f64 high, low;

    [[gnu::noinline]] explicit RareLogarithm(f64 x) {
        const bool denormal = exponent_field(x) == 0;
        const f64 a = denormal ? x * 0x4C70000000000000_f64 : x; // 2^200
        // From 1.484375 on the significand is taken as less than 1.
        const int k = (int)(upper_word(a) - 0x3FE7C000) >> 20;
        const f64 m = with_exponent_field(a, format<f64>::bias);

        const u32 i1 = ((upper_word(m) & 0x000FC000) + 0x4000) >> 15;
        const f64 r1 = first_step_rows(i1, 0), a1 = r1 * m;
        const u32 i2 = ((upper_word(a1) & 0x0000FC00) + 0x0400) >> 11;
        const f64 r2 = second_step_rows(i2, 0), a2 = a1 * r2;
        const u32 i3 = ((upper_word(a2) & 0x00000FF0) + 0x0010) >> 5;
        const f64 r3 = third_step_rows(i3, 0), a3 = a2 * r3;
        const f64 h = (((f64)(denormal ? k - 200 : k) + first_step_rows(i1, 1)) + second_step_rows(i2, 1)) +
                      third_step_rows(i3, 1);
        const f64 l = (second_step_rows(i2, 2) + third_step_rows(i3, 2)) + first_step_rows(i1, 2);

        // What is left is log2((a3 + d) / c) = (u + d) (1 + p), with d what the rounding of a3 lost.
        const f64 u = a3 - 0x3FF7154740000000_f64;
        const Split M(m), R((r1 * r2) * r3);
        const f64 d = (((M.high * R.high - a3) + R.high * M.low) + M.high * R.low) + M.low * R.low;
        first = h + u;
        const f64 w = u + d, t = l + (d + ((h - first) + u));
        const f64 p = horner(w, 0xBFB550472A9012D8_f64, // -0.08325619496470027
                             0x3FC47FD462B6DEE1_f64,    // 0.16015105075870564
                             0xBFD62E4346694107_f64,    // -0.3465736568077919
                             0x3E79C3A6966457E8_f64) *  // 9.597935033233503e-08
                      w;
        const f64 second = first + p;
        high = t + second;
        low = ((second - high) + t) + ((first - second) + p);
    }
};

// Two ways to round a result among the largest denormals.
enum class Denormals { summed_first, scaled_first };

// sign x^y for finite x > 0, x != 1, and finite y, given in halves too.
template <Denormals denormals> [[gnu::noinline]] f64 rare_power(f64 x, f64 y, Split Y, f64 sign) {
    const RareLogarithm l(x);
    const int size = exponent_field(l.first) + exponent_field(y);
    if (size >= 2 * format<f64>::bias + 11) { // |y log2 x| > 2^10
        const f64 extreme =
            at_run_time(is_negative(y) == is_negative(l.first) ? two_to(1023) : two_to(-1022));
        return (extreme * extreme) * sign;
    }
    if (size <= 2 * format<f64>::bias - 62) return sign * (1 + at_run_time(two_to(-1022)));

    // y log2 x = k + j/128 + r.
    const Split L(l.high);
    const f64 product = Y.high * L.high, shifter = 0x42C8000000000000_f64; // 1.5 2^45: rounds to 1/128
    const f64 shifted = shifter + product;
    const f64 r =
        (l.low * y + ((Y.low * L.low + Y.high * L.low) + L.high * Y.low)) + (product - (shifted - shifter));
    const u32 n = (u32)as_uint(shifted);
    const int j = n & 127, k = (int)n >> 7;
    const f64 high = split_power_rows(j, 0);
    const f64 q = horner(r, 0x3F55D87FE78A6731_f64, // 0.0013333558146428443
                         0x3F83B2AB6FBA4E77_f64,    // 0.009618129107628477
                         0x3FAC6B08D704A0C0_f64,    // 0.05550410866482158
                         0x3FCEBFBDFF82C58F_f64,    // 0.24022650695910072
                         0x3FE62E42FEFA39EF_f64) *  // 0.6931471805599453
                      r *
                      high +
                  split_power_rows(j, 1);
    const f64 result = q + high;

    const int field = k + exponent_field(result);
    if (field >= format<f64>::field_max) return sign * (at_run_time(two_to(1023)) * two_to(1023));
    if (field > 0) return with_exponent_field(result, field) * sign;
    // A denormal: rounded once, from the result and its rest times 2^(k + 200).
    if (field < 1 - 62) return sign * 0;
    const f64 scale = two_to(k + 200), down = two_to(-200);
    if (field < 1 - 10) return (sign * down) * (result * scale);
    const Split S(result);
    const f64 rest = ((high - result) + q) + S.low;
    if (denormals == Denormals::summed_first) return (sign * down) * (S.high * scale + rest * scale);
    return sign * ((S.high * scale) * down + down * (rest * scale));
}

QUEVAR_INLINE_END
} // namespace quevar::power
