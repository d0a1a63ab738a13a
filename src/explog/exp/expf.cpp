// expf: e to the power x.
#include "expf_core.hpp"

namespace quevar::expf {
QUEVAR_INLINE_BEGIN

using namespace explog;

struct Limits {
    slot<i32> magnitude{0x7FFFFFFF};
    slot<f32> special{0x42AEAC4F};   // 87.3365402: beyond it 2^k or the result may not be a normal number
    slot<f32> overflow{0x42B17217};  // 88.7228317
    slot<f32> underflow{0xC2CFF1B4}; // -103.972076
    slot<f32> infinity{0x7F800000};
};
QUEVAR_CONSTANTS(Limits, limits){};

struct Special {
    // Also true for NaN.
    template <class V> static auto beyond_limit(V x) {
        return ~(as_float(as_int(x) & limits.magnitude) <= limits.special);
    }

    // Infinite and zero results are selected here; what remains is NaN and the lanes between the limits.
    template <class V> static auto settle(V x, V r) {
        const auto over = x > limits.overflow, under = x < limits.underflow;
        return flagged(select(over, limits.infinity, keep(~under, r)), beyond_limit(x) & ~(over | under));
    }

    [[gnu::noinline]] static void rare(const f32 *x, f32 *r) {
        if (settle_non_finite(*x, r)) return;
        const f64 X = *x;
        const Power power = power_of_e(X);
        *r = (f32)(X >= 0xC055D589E0000000_f64 ? power.normal() : power.denormal()); // -87.336540222167969
    }
};

// With n = 4 k + j the nearest whole number to 4 x / ln 2 and r = x - n ln(2)/4, the result is 2^k 2^(j/4)
// e^r.
struct TableAndQuarticConstants {
    slot<f32> four_over_ln2{0x40B8AA3B}; // 5.77078009
    slot<f32> shifter{0x4B4001FC};       // 1.5 * 2^23 + 4 * 127: leaves n in the low bits, k with the bias
    slot<f32> ln2_high{0x3E317000};      // ln 2/4: 0.173278809
    slot<f32> ln2_low{0x3705FDF4};       //         7.98654582e-06
    // 2^(j/4) = (1 + low[j]) 2^(j/4) rounded to a float.
    row_slot low{0x00000000, 0x33092801, 0x329302AE, 0xB27CE182};
    // high[j] is the pattern of that float less j << 21. Adding t << 21, where t has 4 (k + 127) + j in its
    // low bits, gives the pattern of 2^k 2^(j/4).
    row_slot high{0x3F800000 - 0x3F800000, 0x3F9837F0 - 0x3FA00000u, 0x3FB504F3 - 0x3FC00000u,
                  0x3FD744FD - 0x3FE00000u};
    slot<f32> c[3] = {
        0x3D2ABB12, // 0.0416823104
        0x3E2ABB12, // 0.166729242
        0x3EFFFFFF, // 0.49999997
    };
};
QUEVAR_CONSTANTS(TableAndQuarticConstants, table_and_quartic){};

// e^r ~ 1 + r + r^2 c(r) for |r| <= ln(2)/8: relative error 2^-26.8.
// Worst: 0xBFB9E7DD, -1.45238841, gives 0x3E6FA080, wanted 0x3E6FA081: 0.7493 ulp.
struct TableAndQuartic : Special {
    template <class V> static auto main(V x) {
        const auto &k = table_and_quartic;
        const V t = fma(x, k.four_over_ln2, k.shifter);
        const V n = t - k.shifter;
        V r = fnma(n, k.ln2_high, x);
        r = fnma(n, k.ln2_low, r);
        const V q = r + fma(r * r, polynomial(r, k.c), k.low[as_int(t)]);
        const V s = as_float(as_int(k.high[as_int(t)]) + (as_int(t) << 21));
        return flagged(fma(s, q, s), beyond_limit(x));
    }
};

// With n the nearest whole number to x / ln 2 and r = x - n ln 2, the result is 2^n e^r.
struct CubicConstants {
    slot<f32> one_over_ln2{0x3FB8AA3B}; // 1.44269502
    slot<f32> shifter{0x4B400000};      // 1.5 * 2^23
    slot<f32> ln2{0x3F317218};          // 0.693147182
    slot<f32> c[4] = {
        0x3E2963AC, // 0.165419281
        0x3F00F2D6, // 0.503705382
        0x3F8003DE, // 1.00011802
        0x3F800000, // 1
    };
};
QUEVAR_CONSTANTS(CubicConstants, cubic){};

// e^r ~ c(r) for |r| <= ln(2)/2: relative error 2^-12.7.
// Worst: 0x42A9D231, 84.9105301, gives 0x7CB4FE09, wanted 0x7CB504F9: 1776 ulp.
struct Cubic : Special {
    template <class V> static auto main(V x) {
        const auto &k = cubic;
        const V t = fma(x, k.one_over_ln2, k.shifter);
        const V n = t - k.shifter;
        const V r = fnma(n, k.ln2, x);
        return flagged(scaled_by_pattern(polynomial(r, k.c), t), beyond_limit(x));
    }
};

QUEVAR_EXPORT(exp, f, , unary, f32, f32, void, TableAndQuartic)
QUEVAR_EXPORT(exp, f, _rm, unary, f32, f32, void, TableAndQuartic)
QUEVAR_EXPORT(exp, f, _native, unary, f32, f32, void, Cubic)
QUEVAR_EXPORT(exp, f, _half, unary, f32, f32, void, Cubic)

QUEVAR_INLINE_END
} // namespace quevar::expf
