// The lower tiers of powf and powrf: x to the power y in plain floats.
#pragma once

#include "powf_core.hpp"

namespace quevar::powerf {
QUEVAR_INLINE_BEGIN

QUEVAR_CONSTANTS(PlainConstants<7>, powf_plain_constants){
    .log =
        {
            0xBE1B6A22, // -0.151772052
            0x3E2DB86B, // 0.169648811
            0xBE289358, // -0.164624572
            0x3E4AFB81, // 0.198225036
            0xBE80061D, // -0.250046641
            0x3EAAAEE7, // 0.333365649
            0xBF000000, // -0.5
        },
    .exp =
        {
            0x3E2963AC, // 0.165419281
            0x3F00F2D6, // 0.503705382
            0x3F8003DE, // 1.00011802
            0x3F800000, // 1
        },
};

// The logarithm is within 2.1e-7 of log(1 + f) from -1/3 to 1/3, the exponential within 1.5e-4 up to ln 2/2.
// Worst: 0x3FAAB4A7, 1.33363807, to 0xC3971223, -302.141693, gives 0x00B5049C, wanted 0x00B50D0E: 2162 ulp.
template <class Special> struct PlainFloats : Special {
    template <class V> static auto main(V x, V y) {
        const auto &c = read_for(x, powf_plain_constants);
        const auto [k, rest] = log_by_series(x, c);
        const V product = y * fma(k, c.ln2_high, rest);
        return flagged(exp_by_series(product, c), outside_normal(x, c) | beyond_limit(product, c));
    }
};

QUEVAR_INLINE_END
} // namespace quevar::powerf
