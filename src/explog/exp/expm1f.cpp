// expm1f: e to the power x, less 1.
#include "expm1_core.hpp"

namespace quevar::expm1f {
QUEVAR_INLINE_BEGIN

using namespace expm1;

QUEVAR_CONSTANTS(Limits<f32>, limits){.special{0x42AD496B}}; // 86.6433945

QUEVAR_CONSTANTS(StepConstants<f32>, step_constants){
    .steps{0x42B8AA3B},     // 92.3324814
    .step_high{0x3C318000}, // 0.0108337402
    .step_low{0xB65E8083},  // -3.31553815e-06
    .shifter{0x4B401FC0},   // 1.5 * 2^23 + 127 * 64
    .row{0x3F},
    .exponent{0x3FC0},
    .upper_half{0xFFFFF000},
    .one{0x3F800000},
    .minus_one{0xBF800000},
};
struct SeriesConstants {
    slot<f32> c[2] = {
        0x3E2AAABF, // 0.16666697
        0x3F00000F, // 0.500000894
    };
};
QUEVAR_CONSTANTS(SeriesConstants, series_constants){};

// 2^(j/64): the upper 11 bits of its fraction, and the rest.
using Rows = table<f32, 2, 64>;
QUEVAR_CONSTANTS(Rows, rows) = {{
#include "tables/expm1f_rows.inc"
}};

// 1 + r + r^2 series(r) is e^r to 9.7e-12 for |r| up to ln 2/128.
// Worst: 0x3BEFA11B, 0.00731290644, gives 0x3BF081F6, wanted 0x3BF081F5: 0.5591 ulp.
struct Default : CarriedParts<f32, Default, 17>, Special<f32> {
    template <class V> static auto &constants_for(V) { return step_constants; }
    static constexpr auto &limits = expm1f::limits;
    template <class I> static auto row(I number) { return fetch(rows, number); }
    template <class V> static V series(V r) { return polynomial(r, series_constants.c); }
};

// 2^(j/32) in one part.
struct OnePartConstants {
    slot<f32> steps{0x4238AA3B};   // 46.1662407
    slot<f32> shifter{0x4B400FE0}; // 1.5 * 2^23 + 127 * 32
    slot<i32> exponent{0x1FE0};
    slot<f32> step{0x3CB17218}; // 0.0216608495
    slot<f32> half{0x3F00000F}; // 0.500000894
    slot<f32> minus_one{0xBF800000};
};
QUEVAR_CONSTANTS(OnePartConstants, one_part_constants){};
using Fractions = table<f32, 1, 32>;
QUEVAR_CONSTANTS(Fractions, fractions) = {{
#include "tables/expm1f_32_rows.inc"
}};

// 1 + w is e^r to 2.2e-07 for |r| up to ln 2/64.
// Worst: 0x3C31723D, 0.0108304592, gives 0x3C326A3B, wanted 0x3C32691F: 283.7 ulps.
struct OnePart : Special<f32> {
    template <class V> static auto main(V x) {
        const auto &k = one_part_constants;
        const V n = round<to_nearest>(x * k.steps);
        const auto b = as_int(n + k.shifter);
        const V r = fnma(n, k.step, x), w = fma(r * r, k.half, r);
        const V t = look_up(fractions, b) | as_float((b & k.exponent) << 18);
        return flagged(fma(w, t, t + k.minus_one) | (x & limits.sign), beyond(x, limits));
    }
};

QUEVAR_INLINE_END

QUEVAR_EXPORT(expm1, f, , unary, f32, f32, void, Default)
QUEVAR_EXPORT(expm1, f, _native, unary, f32, f32, void, OnePart)

} // namespace quevar::expm1f
