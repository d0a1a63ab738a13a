// exp10f: 10 to the power x.
#include "expf_core.hpp"

namespace quevar::exp10f {
QUEVAR_INLINE_BEGIN

using namespace explog;

QUEVAR_CONSTANTS(Limit, limit){
    .special = 0x4217B818}; // 37.9297791: beyond it the result may leave the normal numbers

struct Special {
    [[gnu::noinline]] static void rare(const f32 *x, f32 *r) {
        if (infinite_or_nan(*x, r)) return;
        const f64 X = *x;
        if (X > 0x4043441360000000_f64) { // 38.531841278076172
            *r = 0x7F800000_f32;
        } else if (X < 0xC04693C6A0000000_f64) { // -45.154499053955078
            *r = 0;
        } else {
            const f64 shifter = 0x4338000000000000_f64;                          // 1.5 * 2^52
            const Sixtyfourths n(0x406A934F0979A371_f64 * X + shifter, shifter); // 64 log2(10)
            // log10(2)/64 in two parts; the product with the high one is exact.
            const f64 s = (X - n.value * 0x3F734413509F0000_f64) - n.value * 0x3D1E7FBCC47C4ACD_f64;
            *r = n.scaled(horner(s, 0x3FE1427C87C70A85_f64, // 0.53936602133792688
                                 0x3FF2BD77B840F0BF_f64,    // 1.1712567517670747
                                 0x4000470591E2BC10_f64,    // 2.0346785924261965
                                 0x40053524C73CD20A_f64,    // 2.6509490552364285
                                 0x40026BB1BBB55515_f64,    // 2.3025850929940455
                                 n.low));
        }
    }
};

// 2^(j/128) in two floats, and a polynomial of degree 2.
using Rows = table<f32, 2, 128>;
QUEVAR_CONSTANTS(Rows, rows) = {{
#include "tables/exp10f_rows.inc"
}};
struct LongConstants {
    slot<f32> steps{0x43D49A78};    // 128 log2(10): 425.206787
    slot<f32> shifter{0x4B400000};  // 1.5 * 2^23
    slot<f32> log_high{0x3B1A4000}; // log10(2)/128: 0.00235366821
    slot<f32> log_low{0xB5FB2BD8};  //               -1.87137175e-06
    slot<f32> c1{0x40135D97};       // 2.30258727
    slot<f32> c2{0x4029A929};       // 2.65094972
    slot<i32> index{0x7F};
    slot<i32> octave{~0x7Fu};
};
QUEVAR_CONSTANTS(LongConstants, long_constants){};

// Worst: 0xC211C560, -36.442749, gives 0x02F589FA, wanted 0x02F589F9: 0.5250 ulp.
struct Long : Special {
    template <class V> static auto main(V x) {
        const auto &k = long_constants;
        const V t = fma(x, k.steps, k.shifter);
        const V n = t - k.shifter;
        V r = fnma(n, k.log_high, x);
        r = fnma(n, k.log_low, r);
        const auto [high, low] = fetch(rows, as_int(t) & k.index);
        const V p = fma(r, k.c2, k.c1);
        const V w = high + fma(high, r * p, low);
        return flagged(as_float(as_int(w) + ((as_int(t) & k.octave) << 16)), beyond(x, limit));
    }
};

// No table: a polynomial of degree 3 over a whole octave.
struct ShortConstants {
    slot<f32> log2_10{0x40549A78}; // 3.32192802
    slot<f32> shifter{0x4B400000}; // 1.5 * 2^23
    slot<f32> d[4] = {
        0x3D63582B, // 0.0555040054
        0x3E77D66A, // 0.242028862
        0x3F317422, // 0.693178296
        0x3F800000, // 1
    };
};
QUEVAR_CONSTANTS(ShortConstants, short_constants){};

struct Short : Special {
    template <class V> static auto main(V x) {
        const auto &k = short_constants;
        const V t = fma(x, k.log2_10, k.shifter);
        const V n = t - k.shifter;
        const V r = fms(x, k.log2_10, n); // in units of log10(2)
        return flagged(scaled_by_pattern(polynomial(r, k.d), t), beyond(x, limit));
    }
};

QUEVAR_EXPORT(exp10, f, , unary, f32, f32, void, Long)
QUEVAR_EXPORT(exp10, f, _native, unary, f32, f32, void, Short)
QUEVAR_EXPORT(exp10, f, _half, unary, f32, f32, void, Short)
QUEVAR_EXPORT(exp10, f, _rm, unary, f32, f32, void, Short)

QUEVAR_INLINE_END
} // namespace quevar::exp10f
