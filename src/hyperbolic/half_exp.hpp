// e^a/2 for the rare paths of sinh and cosh, which is what both are for large a.
#pragma once

#include "frame/frame.hpp"
#include "tables/powers_of_two.hpp"

namespace quevar::hyperbolic {

QUEVAR_INLINE_BEGIN

// What overflow is made of at run time, so that it follows the caller's rounding mode.
inline f64 largest() { return at_run_time(0x7FEFFFFFFFFFFFFF_f64); }

// a = (64 m + j) ln 2/64 + r, and e^a/2 = 2^(m-1) 2^(j/64) e^r.
inline f64 half_exp(f64 a) {
    const f64 shifter = 0x4338000000000000_f64;         // 1.5 * 2^52
    const f64 v = 0x40571547652B82FE_f64 * a + shifter; // 64/ln 2
    const u32 n = (u32)as_uint(v), j = n & 63, m = n >> 6;
    const f64 nf = v - shifter;
    const f64 r = (a - 0x3F862E42FEFA0000_f64 * nf) // ln 2/64 in two parts
                  - nf * 0x3D1CF79ABC9E3B3A_f64;
    const f64 p = horner(r, 0x3F56C16A1C2A3FFD_f64, // 0.0013888870459233254
                         0x3F8111123AAF20D3_f64,    // 0.008333341995140497
                         0x3FA5555555558FCC_f64,    // 0.04166666666677052
                         0x3FC55555555548F8_f64,    // 0.1666666666665788
                         0.5) *
                      r * r +
                  r;
    const f64 high = tables::exp2_64_rows((int)j, 0), low = tables::exp2_64_rows((int)j, 1);
    const f64 power = (p * high + low) + high;
    // 2^1024 is no double, though a little less than 1 times it is one.
    return m > 1024 ? power * two_to((int)m - 2) * 2 : power * two_to((int)m - 1);
}

QUEVAR_INLINE_END

} // namespace quevar::hyperbolic
