// rsqrtf: 1 / sqrt(x), from the processor's estimate y by way of the residue of x y^2.
#include "rsqrt_root.hpp"

namespace quevar::rsqrt {
QUEVAR_INLINE_BEGIN

struct FloatConstants {
    slot<i32> least{0x80800000}; // the positive normal numbers are ordinary
    slot<i32> range{0xFEFFFFFF};
    slot<f32> upper_9_bits{0xFFFF8000};
    slot<f32> minus_one{0xBF800000};
    slot<f32> c[3] = {
        0xBEA00000, // -0.3125
        0x3EC00000, // 0.375
        0xBF000000, // -0.5
    };
    slot<f32> minus_three{0xC0400000};
    slot<f32> minus_half{0xBF000000};
};
QUEVAR_CONSTANTS(FloatConstants, float_constants){};

template <class V> static auto outside_normal(V x) {
    return (as_int(x) - float_constants.least) > float_constants.range;
}

// y of 9 bits has an exact square, so that the residue e = x y^2 - 1 is rounded once. 1/sqrt(x) is
// y (1 + e)^(-1/2) = y + y e c(e).
//
// (1 + e)^(-1/2) ~ 1 + e c(e) for -0.0086 <= e <= 0.0008: relative error 2^-29.3.
// Worst, on a Zen 5: 0x40729337, 3.79023528, gives 0x3F037E89, wanted 0x3F037E8A: 0.5099 ulp.
struct Cubic : Special<f32> {
    template <class V> static auto main(V x) {
        const auto &k = float_constants;
        const V y = rsqrt_estimate(x) & k.upper_9_bits;
        const V e = fma(x, y * y, k.minus_one);
        return flagged(fma(y, e * polynomial(e, k.c), y), outside_normal(x));
    }
};

// One step of Newton's method: y (3 - x y^2) / 2.
// Worst, on a Zen 5: 0x3F872807, 1.05590904, gives 0x3F79215F, wanted 0x3F792161: 2.3858 ulp.
struct Newton : Special<f32> {
    template <class V> static auto main(V x) {
        const auto &k = float_constants;
        const V y = rsqrt_estimate(x);
        return flagged(fma(y, y * x, k.minus_three) * (y * k.minus_half), outside_normal(x));
    }
};

QUEVAR_EXPORT(rsqrt, f, , unary, f32, f32, void, Cubic)
QUEVAR_EXPORT(rsqrt, f, _native, unary, f32, f32, void, Newton)
QUEVAR_EXPORT(rsqrt, f, _half, unary, f32, f32, void, Newton)

QUEVAR_INLINE_END
} // namespace quevar::rsqrt
