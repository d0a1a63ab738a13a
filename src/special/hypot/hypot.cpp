// hypot: sqrt(x^2 + y^2). The main paths take the root of the sum of squares from the processor's estimate,
// while no square and no power of a float leaves the range of floats; all other lanes are computed in scaled
// doubles.
#include "frame/frame.hpp"

namespace quevar::hypot {
QUEVAR_INLINE_BEGIN

// ---- Rare lanes, of either type in doubles ----

// 1/sqrt of 1 to 2 in steps of 1/256 and of 2 to 4 in steps of 1/128, to multiples of 1/2048.
using SeedRows = table<f64, 1, 512>;
QUEVAR_CONSTANTS(SeedRows, seed_rows) = {{
#include "tables/hypot_seed_rows.inc"
}};

inline f64 upper_half(f64 x) {
    const f64 p = 0x41A0000002000000_f64 * x; // 2^27 + 1
    return p - (p - x);
}

// The high part is exact, the low part a small correction.
struct Sum {
    f64 high, low;
};

// a^2 + b^2 for a >= b >= 0. Where b is below 2^-6 a, its square is small enough to be rounded.
inline Sum sum_of_squares(f64 a, f64 b) {
    const bool alike = exponent_field(a) - exponent_field(b) < 7;
    const f64 ah = upper_half(a), al = a - ah;
    const f64 bh = alike ? upper_half(b) : 0, bl = b - bh;
    return {ah * ah + bh * bh, (al * (a + ah) + b * bl) + bh * bl};
}

inline f64 root(Sum s) {
    const f64 S = s.high + s.low;
    const int e = exponent_field(S) - format<f64>::bias, odd = e & 1, k = (e - odd) / 2;
    const u64 significand = as_uint(S) & format<f64>::significand;
    const f64 m = as_float(significand | as_uint(1.0)) * (odd ? 2 : 1);
    const f64 seed = seed_rows((int)(significand >> 44) + 256 * odd, 0);
    f64 h = 0.5 * seed, g = m * seed; // approach 1/(2 sqrt m) and sqrt m
    for (int i = 0; i < 3; i++) {
        const f64 r = 0.5 - g * h;
        g = g + r * g;
        h = h + r * h;
    }
    const f64 gh = upper_half(g), gl = g - gh, down = two_to(-2 * k);
    const f64 c = h * ((((s.high * down - gh * gh) - (2 * gh) * gl) - gl * gl) + s.low * down);
    return (g + c) * two_to(k);
}

[[gnu::noinline]] inline f64 rare_hypot(f64 x, f64 y) {
    const bool x_not_finite = exponent_field(x) == format<f64>::field_max;
    const bool y_not_finite = exponent_field(y) == format<f64>::field_max;
    if (x_not_finite && y_not_finite && is_nan(x)) return is_nan(y) ? multiply_in_order(x, y) : y * y;
    if (x_not_finite) return x * x;
    if (y_not_finite) return y * y;
    if (x == 0 && y == 0) return 0;

    f64 a = __builtin_fabs(x), b = __builtin_fabs(y);
    if (b > a) {
        const f64 c = a;
        a = b;
        b = c;
    }
    // The larger comes to 4 ... 8, or less if it is so small that the power of two would overflow.
    const int field = exponent_field(a), up = field < 25 ? 1002 - field : 1025 - field;
    return root(sum_of_squares(a * two_to(up), b * two_to(up))) * two_to(-up);
}

template <class T> struct Special {
    [[gnu::noinline]] static void rare(const T *x, const T *y, T *r) { *r = (T)rare_hypot(*x, *y); }
};

// ---- Float ----

struct SingleConstants {
    slot<f32> half{0x3F000000};
    slot<i32> least{0x1E300000};    // 2^-66.5
    slot<i32> greatest{0x60A00000}; // 2^66.3
};
QUEVAR_CONSTANTS(SingleConstants, single){};

// One step for the root and its reciprocal at once, then one for the root alone.
// Worst: 0x3E36DDA5, 0x3C777B7B (0.178579882, 0.0151051236) gives 0x3E3784D1, wanted 0x3E3784D0: 1.180 ulp.
struct SingleTwoSteps : Special<f32> {
    template <class V> static auto main(V x, V y) {
        const auto &k = single;
        const V s = fma(y, y, x * x);
        const V r = rsqrt_estimate(s), g = r * s, h = r * k.half;
        const V e = fnma(h, g, k.half);
        const V g1 = fma(e, g, g), h1 = fma(h, e, h);
        return flagged(fnma(fms(g1, g1, s), h1, g1), (as_int(s) < k.least) | (as_int(s) > k.greatest));
    }
};

QUEVAR_CONSTANTS(slot<i32>, single_exponent){0x7F800000};

// Worst: 0x3FF79A68, 0x3D2B5C56 (1.93439960, 0.0418361053) gives 0x3FF7B977, wanted 0x3FF7A93B: 4156 ulp.
struct SingleEstimate : Special<f32> {
    template <class V> static auto main(V x, V y) {
        const V s = fma(y, y, x * x);
        const auto field = as_int(s) & single_exponent;
        return flagged(rsqrt_estimate(s) * s, (field == decltype(field){}) | (field == single_exponent));
    }
};

// ---- Double ----

struct DoubleConstants {
    slot<i64> least{0x3BC0000000000000};    // 2^-67
    slot<i64> greatest{0x4410000000000000}; // 2^66
    slot<f64> one{0x3FF0000000000000};
    slot<f64> c4{0x3FD1800000000000}; // 0.2734375
    slot<f64> c3{0xBFD4000000000000}; // -0.3125
    slot<f64> c2{0x3FD8000000000000}; // 0.375
    slot<f64> c1{0xBFE0000000000000}; // -0.5
};
QUEVAR_CONSTANTS(DoubleConstants, double_){};

// The estimate r of 1 / sqrt(s) and the series of (1 + e)^-1/2 with e = s r^2 - 1, cut after the power Terms.
// As |e| <= 2^-10.4, four terms leave a relative 2^-54, two 2^-32.9.
// Worst: 0x4176F13E58121936, 0x41102865C93159B4 gives 0x4176F19960C380C3, wanted 0x4176F19960C380C2: 1.173
// ulp.
// With two terms 0x3F74A71C48141A7E, 0x3F770FC5767940D3 gives 0x3F7EF52737F149B2, wanted 0x3F7EF52737EBB4D4:
// 3.66e5.
template <int Terms> struct Series : Special<f64> {
    template <class V> static auto main(V x, V y) {
        const auto &k = double_;
        const V s = fma(y, y, x * x);
        const V r = convert<f64>(rsqrt_estimate(convert<f32>(s))), e = fms(s, r * r, k.one);
        V p = k.c2;
        if constexpr (Terms == 4) p = fma(e, fma(e, k.c4, k.c3), p);
        p = fma(e, p, k.c1);
        const V w = r * (e * p);
        const decltype(as_int(s)) least = k.least;
        return flagged(fma(r, s, s * w),
                       high_word_greater(as_int(s), k.greatest) | high_word_greater(least, as_int(s)));
    }
};

QUEVAR_EXPORT(hypot, f, , binary, f32, f32, void, SingleTwoSteps)
QUEVAR_EXPORT(hypot, f, _native, binary, f32, f32, void, SingleEstimate)
QUEVAR_EXPORT(hypot, , , binary, f64, f64, void, Series<4>)
QUEVAR_EXPORT(hypot, , _native, binary, f64, f64, void, Series<2>)

QUEVAR_INLINE_END
} // namespace quevar::hypot
