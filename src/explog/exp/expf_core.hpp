// What expf, exp2f and exp10f share.
#pragma once

#include "exponential.hpp"

namespace quevar::explog {
QUEVAR_INLINE_BEGIN

// What overflows and what underflows, rounded at run time by the caller's rounding mode.
inline f32 overflow() {
    const f64 huge = at_run_time(0x7FEFFFFFFFFFFFFF_f64);
    return (f32)(huge * huge);
}
inline f32 underflow() {
    const f64 tiny = at_run_time(0x0010000000000001_f64);
    return (f32)(tiny * tiny);
}

QUEVAR_INLINE_END
} // namespace quevar::explog
