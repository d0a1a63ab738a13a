// Scalar helpers of the rare paths. All arithmetic there is plain and separately rounded.
#pragma once

#include "vec.hpp"

namespace quevar {

template <class T> struct format;
template <> struct format<f32> {
    static constexpr u32 sign = 0x80000000, exponent = 0x7F800000, significand = 0x007FFFFF,
                         quiet = 0x00400000;
    static constexpr int digits = 23, bias = 127, field_max = 0xFF;
};
template <> struct format<f64> {
    static constexpr u64 sign = 0x8000000000000000, exponent = 0x7FF0000000000000,
                         significand = 0x000FFFFFFFFFFFFF, quiet = 0x0008000000000000;
    static constexpr int digits = 52, bias = 1023, field_max = 0x7FF;
};

template <class T> inline auto pattern_of(T x) { return __builtin_bit_cast(unsigned_bits<T>, x); }
inline f32 f32_of(u32 pattern) { return __builtin_bit_cast(f32, pattern); }
inline f64 f64_of(u64 pattern) { return __builtin_bit_cast(f64, pattern); }
template <class T> inline T with_pattern(unsigned_bits<T> p) { return __builtin_bit_cast(T, p); }

template <class T> inline int exponent_field(T x) {
    return (int)(pattern_of(x) >> format<T>::digits) & format<T>::field_max;
}
template <class T> inline bool is_nan(T x) {
    return (pattern_of(x) & ~format<T>::sign) > format<T>::exponent;
}

// A value that the compiler knows nothing of, so that arithmetic on it is done by the processor: under the
// caller's rounding mode, and with the processor's choice of NaN.
template <class T> inline T at_run_time(T x) {
    asm volatile("" : "+x"(x));
    return x;
}

// x with a signalling NaN made quiet, as the processor's x * 1.0 gives it.
template <class T> inline T quiet(T x) { return x * at_run_time(T(1)); }

// c0 x^n + c1 x^(n-1) + ...
template <class T> inline T horner(T, T c0) { return c0; }
template <class T, class... C> inline T horner(T x, T c0, T c1, C... c) {
    return horner(x, c0 * x + c1, c...);
}

// 2^(field - 1023) from the low 11 bits of an exponent field.
inline f64 power_of_two(int field) { return f64_of((u64)(field & 0x7FF) << 52); }

} // namespace quevar
