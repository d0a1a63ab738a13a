// rsqrt: 1 / sqrt(x), from the processor's estimate y by the residue of x y^2.
#include "frame/frame.hpp"

namespace quevar::rsqrt {
QUEVAR_INLINE_BEGIN

// 1/sqrt of 1, 1 + 1/32, ..., 2 and of 2, 2 + 1/16, ..., 4, rounded to multiples of 2^-13. Row 32 is in both.
using Rows = table<f64, 1, 65>;
QUEVAR_CONSTANTS(Rows, rare_rows) = {{
#include "tables/rsqrt_rare_rows.inc"
}};

// The upper half of x; its product with a number of as few bits is exact.
static f64 upper_half(f64 x) {
    const f64 c = x * 0x41A0000000000000_f64; // 2^27
    return c - (c - x);
}

[[gnu::noinline]] static f64 root(f64 x) {
    if (!(x > 0 && x < as_float(format<f64>::exponent))) return 1 / __builtin_sqrt(x);

    // x 2^-2s = M 2^(E - p), with M in [1, 4).
    const bool denormal = exponent_field(x) == 0;
    const f64 a = denormal ? x * 0x43B0000000000000_f64 : x; // 2^60
    const int s = denormal ? -30 : 0, E = exponent_field(a) - format<f64>::bias, p = E & 1;
    const f64 m = as_float((as_uint(a) & format<f64>::significand) | as_uint(1.0)), M = p ? m + m : m;

    const int j = (int)(as_uint(m + 0x42E0000000000020_f64) & 63); // 2^47 + 1: rounds to 1/32
    const f64 t = rare_rows(j + 32 * p, 0), u = t * t;

    // The residue e = 1 - M t^2 is a1 - a2, and e / 2 is h1 / 2 - b: the products with h1 are exact.
    const f64 H = upper_half(M), a1 = 1 - H * u, a2 = (M - H) * u, e = a1 - a2;
    f64 q = 0x3FC91A80BFBF8B2A_f64;     // 0.19612130511003417
    q = q * e + 0x3FCAD28A9E3226DF_f64; // 0.20955021595391707
    q = q * e + 0x3FCCE000C07A3B3E_f64; // 0.22558602712930481
    q = q * e + 0x3FCF7FFFEC1426E4_f64; // 0.24609374072343038
    q = q * e + 0x3FD17FFFFFFE2A26_f64; // 0.27343749999332301
    q = q * e + 0x3FD400000000138B_f64; // 0.31250000000027772
    q = q * e + 0x3FD8000000000001_f64; // 0.37500000000000006
    q = q * e * e;
    const f64 h1 = upper_half(a1), b = 0.5 * (a2 - (a1 - h1)), v = 0.5 * t * h1;
    const f64 sum = t + v, w = (t - sum) + v;
    return ((w + (q - b) * t) + sum) * two_to(-(s + (E - p) / 2));
}

template <class T> struct Rare {
    static void rare(const T *x, T *r) { *r = (T)root(*x); }
};

struct SingleConstants {
    slot<i32> least{0x80800000}; // the positive normal numbers are ordinary
    slot<i32> range{0xFEFFFFFF};
    slot<f32> truncated{0xFFFF8000}; // 9 bits of significand, whose square is exact
    slot<f32> minus_one{0xBF800000};
    slot<f32> c2{0xBEA00000}; // -0.3125
    slot<f32> c1{0x3EC00000}; //  0.375
    slot<f32> c0{0xBF000000}; // -0.5
    slot<f32> minus_three{0xC0400000};
    slot<f32> minus_half{0xBF000000};
};
QUEVAR_CONSTANTS(SingleConstants, single){};

template <class V> static auto single_special(V x) { return (as_int(x) - single.least) > single.range; }

struct Single : Rare<f32> {
    template <class V> static auto main(V x) {
        const auto &k = single;
        const V y = rsqrt_estimate(x) & k.truncated;
        const V e = fma(x, y * y, k.minus_one);
        const V p = fma(e, fma(e, k.c2, k.c1), k.c0);
        return flagged(fma(y, e * p, y), single_special(x));
    }
};

// One Newton step.
struct SingleNative : Rare<f32> {
    template <class V> static auto main(V x) {
        const auto &k = single;
        const V y = rsqrt_estimate(x);
        const V u = fma(y, y * x, k.minus_three);
        return flagged(u * (y * k.minus_half), single_special(x));
    }
};

struct EstimateConstants {
    slot<u64> exponent{0x7FF0000000000000};
    slot<u64> lowest_exponent_bit{0x0010000000000000};
    slot<u64> fraction{0x001FFFFFFFFFFFFF}; // and the lowest exponent bit
    slot<u64> single_bias{0x07F0000000000000};
    slot<u64> scale_bias{0xBFD0000000000000};
    slot<f64> one{0x3FF0000000000000};
};
QUEVAR_CONSTANTS(EstimateConstants, estimate_constants){};

// y near 1 / sqrt(x), and e = 1 - x y^2. The exponent is folded to one bit, for a float in [1, 4), and half
// the rest put back.
template <class V> static auto estimate(V x) {
    const auto &k = estimate_constants;
    const auto u = as_uint(x), E = u & k.exponent, even = k.lowest_exponent_bit & ~u;
    const V scale = as_float((even + k.scale_bias - E) >> 1);
    const auto folded = ((even + k.single_bias) | (u & k.fraction)) >> 29;
    const V g = convert<f64>(rsqrt_estimate(as_float(low_words(folded))));
    const V y = g * scale;
    return two(y, fnma(x, y * y, k.one));
}

struct DoubleConstants {
    slot<i64> least{0x8350000000000000}; // exponent fields 0x35 to 0x7FC are ordinary
    slot<i64> range{0xFC7FFFFF00000000};
    slot<f64> c3{0x3FD1800032338CBB}; // 0.27343754675366555
    slot<f64> c2{0x3FD40000B13001D9}; // 0.31250016501874495
    slot<f64> c1{0x3FD80000000000F6}; // 0.37500000000001366
    slot<f64> c0{0x3FDFFFFFFFFFFE71}; // 0.49999999999997785
};
QUEVAR_CONSTANTS(DoubleConstants, double_constants){};

struct Double : Rare<f64> {
    template <class V> static auto main(V x) {
        const auto &k = double_constants;
        const auto special = high_word_greater(subtract_words(as_int(x), k.least), k.range);
        const auto [y, e, _] = estimate(x);
        const V p = fma(e, fma(e, fma(e, k.c3, k.c2), k.c1), k.c0);
        return flagged(fma(y, e * p, y), special);
    }
};

struct DoubleNativeConstants {
    slot<i64> least{0x8030000000000000}; // exponent fields 3 to 0x7FC are ordinary
    slot<i64> range{0xFF9FFFFF00000000};
    slot<f64> c2{0x3FD80000C4CD9197}; // 0.37500018328707924
    slot<f64> c1{0x3FE000004379ADB7}; // 0.50000012568255314
    slot<f64> c0{0x3FEFFFFFFFFFFF4F}; // 0.99999999999998035
};
QUEVAR_CONSTANTS(DoubleNativeConstants, double_native_constants){};

struct DoubleNative : Rare<f64> {
    template <class V> static auto main(V x) {
        const auto &k = double_native_constants;
        const auto [y, e, _] = estimate(x);
        const V p = fma(fma(e, k.c2, k.c1), e, k.c0);
        return flagged(y * p, high_word_greater(subtract_words(as_int(x), k.least), k.range));
    }
};

QUEVAR_EXPORT(rsqrt, f, , unary, f32, f32, void, Single)
QUEVAR_EXPORT(rsqrt, f, _native, unary, f32, f32, void, SingleNative)
QUEVAR_EXPORT(rsqrt, f, _half, unary, f32, f32, void, SingleNative)
QUEVAR_EXPORT(rsqrt, , , unary, f64, f64, void, Double)
QUEVAR_EXPORT(rsqrt, , _native, unary, f64, f64, void, DoubleNative)

QUEVAR_INLINE_END
} // namespace quevar::rsqrt
