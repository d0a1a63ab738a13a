// What expf, exp2f and exp10f share: the end of the main paths, and the rare paths, base^x = 2^k 2^(j/64) e^s
// worked in double.
#pragma once

#include "frame/frame.hpp"

namespace quevar::explog {
QUEVAR_INLINE_BEGIN

// p 2^k, where k is the integer in the low bits of t: added to the exponent field. The special lanes are
// those for which it might leave that field.
template <class V> V scaled_by_pattern(V p, V t) { return as_float(as_int(p) + (as_int(t) << 23)); }

// Beyond a limit of magnitude, by pattern: NaN and infinities too.
struct Limit {
    slot<i32> special;
    slot<i32> magnitude{0x7FFFFFFF};
};
template <class V> auto beyond(V x, const Limit &limit) {
    return (as_int(x) & limit.magnitude) > limit.special;
}

// ---- Rare paths ----

// 2^(j/64) rounded to double, and the rest relative to it.
using ExpRareRows = table<f64, 2, 64>;
QUEVAR_CONSTANTS(ExpRareRows, exp_rare_rows) = {{
#include "tables/exp_rare_rows.inc"
}};

// The integer 64 k + j that stands in the low bits of sum after the shifter was added to it.
struct Sixtyfourths {
    f64 value, high, low;
    int k;

    Sixtyfourths(f64 sum, f64 shifter) : value(sum - shifter) {
        const int m = (int)as_uint(sum), j = m & 63;
        high = exp_rare_rows(j, 0);
        low = exp_rare_rows(j, 1);
        k = m >> 6;
    }
    // (1 + p) 2^(j/64) 2^k; where the float is denormal the conversion alone rounds it.
    f32 scaled(f64 p) const { return (f32)((p * high + high) * two_to(k)); }
};

// True if x is infinite or NaN, with its result in r.
inline bool infinite_or_nan(f32 x, f32 *r) {
    if (exponent_field(x) != format<f32>::field_max) return false;
    *r = as_uint(x) == 0xFF800000 ? 0.0f : x * x;
    return true;
}

// Made at run time, so that they follow the caller's rounding mode.
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
