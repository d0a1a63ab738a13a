// expm1: e to the power x, less 1.
#include "expm1_core.hpp"

namespace quevar::expm1 {
QUEVAR_INLINE_BEGIN

QUEVAR_CONSTANTS(Limits<f64>, limits){.special{0x40861DA04CBAFE43}}; // 707.70327135170407

QUEVAR_CONSTANTS(StepConstants<f64>, step_constants){
    .steps{0x40671547652B82FE},     // 184.66496523378731
    .step_high{0x3F762E42FEF80000}, // 0.0054152123479980219
    .step_low{0x3D41CF79ABC9E3B4},  // 1.2655086083325438e-13
    .shifter{0x42F80000001FF800},   // 1.5 * 2^48 + 1023 * 128: n from bit 4 on
    .row{0x7F0},
    .exponent{0x3FF800},
    .upper_half{0xFFFFFFFFF8000000},
    .one{0x3FF0000000000000},
    .minus_one{0xBFF0000000000000},
};
struct SeriesConstants {
    slot<f64> c5{0x3F81111168877F38}; // 0.0083333358788305473
    slot<f64> c4{0x3FA55555C2A9C0F3}; // 0.041666679394326687
    slot<f64> c3{0x3FC555555555541D}; // 0.166666666666658
    slot<f64> c2{0x3FDFFFFFFFFFFE5C}; // 0.49999999999997669
};
QUEVAR_CONSTANTS(SeriesConstants, series_constants){};

// 2^(j/128): the upper 25 bits of its fraction, and the rest.
using Rows = table<f64, 2, 128>;
QUEVAR_CONSTANTS(Rows, rows) = {{
#include "tables/expm1_rows.inc"
}};

// 1 + r + r^2 series(r) is e^r to 3.5e-20 for |r| up to ln 2/256.
// Worst found: 0x3F4FE974F7AF7563, 0.00097387515358675033, gives 0x3F4FED6FAB9054D2, wanted ...D3: 0.6108 ulp.
struct Default : CarriedParts<f64, Default, 41>, Special<f64> {
    template <class V> static auto &constants_for(V x) { return read_for(x, step_constants); }
    static constexpr auto &limits = expm1::limits;
    template <class I> static auto row(I bytes) { return fetch_at(rows, bytes); }
    template <class V> static V series(V r) {
        const auto &k = read_for(r, series_constants);
        return fma(r * r, fma(r, k.c5, k.c4), fma(r, k.c3, k.c2));
    }
};

// 2^(j/128) in one part.
struct OnePartConstants {
    slot<f64> steps{0x40671547652B82FE};   // 184.66496523378731
    slot<f64> shifter{0x43080000000FFC00}; // 1.5 * 2^49 + 1023 * 128: n from bit 3 on
    slot<i64> row{0x3F8};
    slot<i64> exponent{0x1FFC00};
    slot<f64> step{0x3F762E42FEFA39EF}; // 0.0054152123481245725
    slot<f64> c3{0x3FC555555555541D};   // 0.166666666666658
    slot<f64> c2{0x3FDFFFFFFFFFFE5C};   // 0.49999999999997669
    slot<f64> minus_one{0xBFF0000000000000};
};
QUEVAR_CONSTANTS(OnePartConstants, one_part_constants){};
using Fractions = table<f64, 1, 128>;
QUEVAR_CONSTANTS(Fractions, fractions) = {{
#include "tables/expm1_128_rows.inc"
}};

// 1 + w is e^r to 2.3e-12 for |r| up to ln 2/256.
// Worst found: 0x3F662E4401284AA5, 0.0027076080525686047: 5.189e6 ulps.
struct OnePart : Special<f64> {
    static constexpr int in_turn_after_mask = 4;

    template <class V> static auto main(V x) {
        const auto &k = read_for(x, one_part_constants);
        const V n = round<to_nearest>(x * k.steps);
        const auto b = as_int(n + k.shifter);
        const V r = fnma(n, k.step, x), w = fma(r * r, fma(r, k.c3, k.c2), r);
        const auto [fraction] = fetch_at(fractions, b & k.row);
        const V t = fraction | as_float((b & k.exponent) << 42);
        return flagged(fma(w, t, t + k.minus_one) | (x & limits.sign), beyond(x, limits));
    }
};

QUEVAR_INLINE_END

QUEVAR_EXPORT(expm1, , , unary, f64, f64, void, Default)
QUEVAR_EXPORT(expm1, , _native, unary, f64, f64, void, OnePart)

} // namespace quevar::expm1
