// expf: e to the power x.
#include "expf_core.hpp"

namespace quevar::expf {
QUEVAR_INLINE_BEGIN

using namespace explog;

struct Limits {
    slot<i32> magnitude{0x7FFFFFFF};
    slot<f32> special{0x42AEAC4F};   // 87.3365402: beyond it 2^k or the result leaves the normal numbers
    slot<f32> overflow{0x42B17217};  // 88.7228317
    slot<f32> underflow{0xC2CFF1B4}; // -103.972076
    slot<f32> infinity{0x7F800000};
};
QUEVAR_CONSTANTS(Limits, limits){};

struct Special {
    // NaN too.
    template <class V> static auto beyond_limit(V x) {
        return ~(as_float(as_int(x) & limits.magnitude) <= limits.special);
    }

    // Overflow and underflow are settled in vector form; NaN and the lanes between the limits remain.
    template <class V> static auto settle(V x, V r) {
        const auto over = x > limits.overflow, under = x < limits.underflow;
        return flagged(select(over, limits.infinity, keep(~under, r)), beyond_limit(x) & ~(over | under));
    }

    [[gnu::noinline]] static void rare(const f32 *x, f32 *r) {
        if (infinite_or_nan(*x, r)) return;
        const f64 X = *x, shifter = 0x4338000000000000_f64;                  // 1.5 * 2^52
        const Sixtyfourths n(0x40571547652B82FE_f64 * X + shifter, shifter); // 64/ln 2
        // ln 2/64 in two parts; the product with the high one is exact.
        const f64 s = (X - n.value * 0x3F862E42FEFA0000_f64) - n.value * 0x3D1CF79ABC9E3B3A_f64;
        const f64 c = horner(s, 0x3F56C16A1C2A3FFD_f64, // 0.0013888870459233254
                             0x3F8111123AAF20D3_f64,    // 0.0083333419951404971
                             0x3FA5555555558FCC_f64,    // 0.041666666666770519
                             0x3FC55555555548F8_f64,    // 0.16666666666657881
                             0.5);
        const f64 p = ((c * s) * s + s) + n.low;
        *r = X >= 0xC055D589E0000000_f64 ? n.scaled(p) : denormal(n, p); // -87.336540222167969
    }

    // 2^60 e^x = a + b is split at the last place of the denormal result, 2^(60-149), before the power of two
    // is taken off, so that the conversion rounds a sum whose error is far below that place.
    static f32 denormal(const Sixtyfourths &n, f64 p) {
        const f64 scale = two_to(n.k + 60), unscale = 0x3C30000000000000_f64; // 2^-60
        const f64 a = (p * n.high) * scale, b = scale * n.high;
        const f64 sum = a + b, error = (b - sum) + a;
        const f64 shift = sum * 0x41F8000000000000_f64; // 1.5 * 2^32: the upper 21 bits of sum remain
        const f64 upper = (sum + shift) - shift, lower = (sum - upper) + error;
        return (f32)(upper * unscale + lower * unscale);
    }
};

// A table of four steps an octave in the register, and a polynomial of degree 3.
struct LongConstants {
    slot<f32> four_over_ln2{0x40B8AA3B}; // 5.77078009
    slot<f32> shifter{0x4B4001FC};       // 1.5 * 2^23 + 4 * 127: 4k + j with the exponent's bias on k
    slot<f32> ln2_high{0x3E317000};      // ln 2/4: 0.173278809
    slot<f32> ln2_low{0x3705FDF4};       //         7.98654582e-06
    // What high leaves of 2^(j/4), relative to it.
    row_slot low{0x00000000, 0x33092801, 0x329302AE, 0xB27CE182};
    // The pattern of 2^(j/4), less what t << 21 holds beside k in the exponent field, 127 + j/4: their
    // integer sum is 2^k 2^(j/4).
    row_slot high{0x3F800000 - 0x3F800000, 0x3F9837F0 - 0x3FA00000u, 0x3FB504F3 - 0x3FC00000u,
                  0x3FD744FD - 0x3FE00000u};
    slot<f32> c[3] = {
        0x3D2ABB12, // 0.0416823104
        0x3E2ABB12, // 0.166729242
        0x3EFFFFFF, // 0.49999997
    };
};
QUEVAR_CONSTANTS(LongConstants, long_constants){};

// Worst: 0xBFB9E7DD, -1.45238411, gives 0x3E6FA080, wanted 0x3E6FA081: 0.7493 ulp.
struct Long : Special {
    template <class V> static auto main(V x) {
        const auto &k = long_constants;
        const V t = fma(x, k.four_over_ln2, k.shifter);
        const V n = t - k.shifter;
        V r = fnma(n, k.ln2_high, x);
        r = fnma(n, k.ln2_low, r);
        const V q = r + fma(r * r, polynomial(r, k.c), k.low[as_int(t)]);
        const V s = as_float(as_int(k.high[as_int(t)]) + (as_int(t) << 21));
        return flagged(fma(s, q, s), beyond_limit(x));
    }
};

// No table: a polynomial of degree 3 over a whole octave.
struct ShortConstants {
    slot<f32> one_over_ln2{0x3FB8AA3B}; // 1.44269502
    slot<f32> shifter{0x4B400000};      // 1.5 * 2^23
    slot<f32> ln2{0x3F317218};          // 0.693147182
    slot<f32> d[4] = {
        0x3E2963AC, // 0.165419281
        0x3F00F2D6, // 0.503705382
        0x3F8003DE, // 1.00011802
        0x3F800000, // 1
    };
};
QUEVAR_CONSTANTS(ShortConstants, short_constants){};

struct Short : Special {
    template <class V> static auto main(V x) {
        const auto &k = short_constants;
        const V t = fma(x, k.one_over_ln2, k.shifter);
        const V n = t - k.shifter;
        const V r = fnma(n, k.ln2, x);
        return flagged(scaled_by_pattern(polynomial(r, k.d), t), beyond_limit(x));
    }
};

QUEVAR_EXPORT(exp, f, , unary, f32, f32, void, Long)
QUEVAR_EXPORT(exp, f, _rm, unary, f32, f32, void, Long)
QUEVAR_EXPORT(exp, f, _native, unary, f32, f32, void, Short)
QUEVAR_EXPORT(exp, f, _half, unary, f32, f32, void, Short)

QUEVAR_INLINE_END
} // namespace quevar::expf
