// exp10f: 10 to the power x.
#include "expf_core.hpp"

namespace quevar::exp10f {
QUEVAR_INLINE_BEGIN

using namespace explog;

QUEVAR_CONSTANTS(Limit<i32>, limit){
    .special = 0x4217B818}; // 37.9297791: beyond it the result may leave the normal numbers

struct Special {
    [[gnu::noinline]] static void rare(const f32 *x, f32 *r) {
        if (settle_non_finite(*x, r)) return;
        const f64 X = *x;
        if (X > 0x4043441360000000_f64) *r = 0x7F800000_f32; // 38.531841278076172
        else if (X < 0xC04693C6A0000000_f64) *r = 0;         // -45.154499053955078
        else *r = (f32)power_of_10(X).normal();
    }
};

// 2^(j/128) as high and low. With n = 128 k + j the nearest whole number to 128 log2(10) x and
// r = x - n log10(2)/128, the result is 2^k 2^(j/128) 10^r.
using Rows = table<f32, 2, 128>;
QUEVAR_CONSTANTS(Rows, rows) = {{
#include "tables/exp10f_rows.inc"
}};
struct TableAndQuadraticConstants {
    slot<f32> steps{0x43D49A78};    // 128 log2(10): 425.206787
    slot<f32> shifter{0x4B400000};  // 1.5 * 2^23
    slot<f32> log_high{0x3B1A4000}; // log10(2)/128: 0.00235366821
    slot<f32> log_low{0xB5FB2BD8};  //               -1.87137175e-06
    slot<f32> c1{0x40135D97};       // 2.30258727
    slot<f32> c2{0x4029A929};       // 2.65094972
    slot<i32> index{0x7F};
    slot<i32> binade{~0x7Fu};
};
QUEVAR_CONSTANTS(TableAndQuadraticConstants, table_and_quadratic){};

// 10^r ~ 1 + r (c1 + c2 r) for |r| <= log10(2)/256: relative error 2^-30.1.
// Worst: 0xC211C560, -36.442749, gives 0x02F589FA, wanted 0x02F589F9: 0.5250 ulp.
struct TableAndQuadratic : Special {
    template <class V> static auto main(V x) {
        const auto &k = table_and_quadratic;
        const V t = fma(x, k.steps, k.shifter);
        const V n = t - k.shifter;
        V r = fnma(n, k.log_high, x);
        r = fnma(n, k.log_low, r);
        const auto [high, low] = fetch(rows, as_int(t) & k.index);
        const V p = fma(r, k.c2, k.c1);
        const V w = high + fma(high, r * p, low);
        return flagged(as_float(as_int(w) + ((as_int(t) & k.binade) << 16)), beyond(x, limit));
    }
};

// With n the nearest whole number to log2(10) x and r = log2(10) x - n, the result is 2^n 2^r.
struct CubicConstants {
    slot<f32> log2_10{0x40549A78}; // 3.32192802
    slot<f32> shifter{0x4B400000}; // 1.5 * 2^23
    slot<f32> c[4] = {
        0x3D63582B, // 0.0555040054
        0x3E77D66A, // 0.242028862
        0x3F317422, // 0.693178296
        0x3F800000, // 1
    };
};
QUEVAR_CONSTANTS(CubicConstants, cubic){};

// 2^r ~ c(r) for |r| <= 1/2: relative error 2^-12.4.
// Worst: 0x42171DF8, 37.7792664, gives 0x7E34FCC3, wanted 0x7E350527: 2148 ulp.
struct Cubic : Special {
    template <class V> static auto main(V x) {
        const auto &k = cubic;
        const V t = fma(x, k.log2_10, k.shifter);
        const V n = t - k.shifter;
        const V r = fms(x, k.log2_10, n);
        return flagged(scaled_by_pattern(polynomial(r, k.c), t), beyond(x, limit));
    }
};

QUEVAR_EXPORT(exp10, f, , unary, f32, f32, void, TableAndQuadratic)
QUEVAR_EXPORT(exp10, f, _native, unary, f32, f32, void, Cubic)
QUEVAR_EXPORT(exp10, f, _half, unary, f32, f32, void, Cubic)
QUEVAR_EXPORT(exp10, f, _rm, unary, f32, f32, void, Cubic)

QUEVAR_INLINE_END
} // namespace quevar::exp10f
