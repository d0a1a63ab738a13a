// erfc: the complementary error function.
#include "erfc.hpp"

namespace quevar::erfc {
QUEVAR_INLINE_BEGIN

// 2^128 times what they name.
using Rows = GridRows<f64, 3488>;
QUEVAR_CONSTANTS(Rows, rows) = {{
#include "tables/erfc_rows.inc"
}};
using NativeRows = GridRows<f64, 1744>;
QUEVAR_CONSTANTS(NativeRows, native_rows) = {{
#include "tables/erfc_native_rows.inc"
}};

QUEVAR_CONSTANTS(FrameConstants<f64>, frame_constants){
    .one = 0x3FF0000000000000,
    .scale = 0x37F0000000000000, // 2^-128
    .bound = 0x403B39DC41E48BFD, // 27.226017111108366: the least argument whose result is zero
};

struct Special {
    static constexpr int in_turn_after_mask = 2;

    // NaN and what is not below the bound.
    [[gnu::noinline]] static void rare(const f64 *x, f64 *r) {
        if (is_nan(*x)) *r = *x * *x;
        else if (exponent_field(*x) == format<f64>::field_max) *r = 0;
        else *r = underflow();
    }
};

// value - t (1 + y) with t = c d.
template <class V> V less(V value, V derivative, V d, V y) {
    const V t = derivative * d;
    return value - fma(t, y, t);
}

constexpr u64 shifter = 0x42C0000000000000; // 2^45: steps of 1/128
struct LongConstants {
    GridConstants<f64> grid{
        .sign = 0x8000000000000000,
        .last = 0x403B3E0000000000, // 27.2421875
        .shifter = shifter,
    };
    slot<f64> a[4] = {
        0xBFB56433674BA5C2, // -0.083560192793490834
        0x3FC256E8E6045CDF, // 0.14327727538395771
        0xBFC5554E249FF4A7, // -0.16666580951997398
        0x3FB9998F9D0729DA, // 0.099999404751691584
    };
    slot<f64> b[6] = {
        0xBF8441DF86900A46, // -0.0098912680568946747
        0x3FA117ABF1FEA28C, // 0.033383725443234175
        0xBFB8618412BC79EC, // -0.095237974714542595
        0x3FCC71C4B73B20B6, // 0.22222193667244533
        0xBFD9999999F3D838, // -0.40000000032830796
        0x3FE0000000379730, // 0.50000000040447468
    };
    slot<f64> c[8] = {
        0xBF2282C89A04C65F, // -0.00014122675657683972
        0x3F472360BAC04E70, // 0.00070612166519130708
        0xBF6A019F4F234617, // -0.0031746016985401237
        0x3F8A019F5AEED25F, // 0.012698407137443355
        0xBFA6C16C16D06420, // -0.044444444451251508
        0x3FC11111111AB082, // 0.13333333335083714
        0xBFD555555555548A, // -0.33333333333332205
        0x3FE55555555554CF, // 0.66666666666665175
    };
    slot<f64> d2{0xBFD5555555554ADD}; // -0.33333333333318454
};
QUEVAR_CONSTANTS(LongConstants, long_series){};

// For |d| <= 1/256 the series leaves a relative 2^-54.2 of the result. In the tail the table's value can be
// a binade above the result, and its rounding error counts twice.
// Worst: 0x40378AFED1680C4D, 23.542950714018207, gives 0x0D9F64B366E9AF20, wanted 0x0D9F64B366E9AF22:
// 2.176 ulps.
struct LongSeries : Special {
    template <class V> static auto main(V x) {
        const auto &k = read_for(x, long_series);
        return step_from_grid<shifter>(x, k.grid, read_for(x, frame_constants), rows,
                                       [&k](V value, V derivative, V w, V d) {
                                           const V q = d * d, w2 = w * w;
                                           V y = fma(q, polynomial(w, k.a), k.d2);
                                           y = fms(q, fma(w, polynomial(w, k.b), y), w);
                                           y = fma(w2, polynomial(w, k.c), y);
                                           return less(value, derivative, d, y);
                                       });
    }
};

constexpr u64 native_shifter = 0x42D0000000000000; // 2^46: steps of 1/64
struct ShortConstants {
    GridConstants<f64> grid{
        .sign = 0x8000000000000000,
        .last = 0x403B3C0000000000, // 27.234375
        .shifter = native_shifter,
    };
    slot<f64> a[4] = {
        0x3FCCBC5887DF9127, // 0.22449785837592026
        0xBFD9E0A0FBE743D2, // -0.40433525657595937
        0x3FDFFF6F976A22C5, // 0.4999655703218589
        0xBFD554EE2F28F34D, // -0.33330874066796384
    };
    slot<f64> c[6] = {
        0xBF6A1FDD30652EA1, // -0.0031890220736040119
        0x3F8A1F05F5094FB6, // 0.012754484692017214
        0xBFA6C15C3DA087D4, // -0.044443972132526405
        0x3FC111066671A484, // 0.13333206178802837
        0xBFD555555ADC4EA0, // -0.33333333848097801
        0x3FE555555933BC54, // 0.66666667387279199
    };
    slot<f64> d1{0xBFEFFFFFFFFEB794}; // -0.99999999999066569
};
QUEVAR_CONSTANTS(ShortConstants, short_series){};

// For |d| <= 1/128 the series leaves a relative 2^-30.3 of the result.
// Worst: 0x40347DFFFF3C5CD5, 20.492187454449624, gives 0x19BFAB1F30B54AB0, wanted 0x19BFAB1F304D695E:
// 6.808e6 ulps.
struct ShortSeries : Special {
    template <class V> static auto main(V x) {
        const auto &k = read_for(x, short_series);
        return step_from_grid<native_shifter>(
            x, k.grid, read_for(x, frame_constants), native_rows, [&k](V value, V derivative, V w, V d) {
                const V y = fma(w * w, polynomial(w, k.c), fma(w, k.d1, d * d * polynomial(w, k.a)));
                return less(value, derivative, d, y);
            });
    }
};

QUEVAR_INLINE_END

QUEVAR_EXPORT(erfc, , , unary, f64, f64, void, LongSeries)
QUEVAR_EXPORT(erfc, , _native, unary, f64, f64, void, ShortSeries)

} // namespace quevar::erfc
