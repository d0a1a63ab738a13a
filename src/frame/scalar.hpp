// Scalar helpers of the rare paths. All arithmetic there is plain and separately rounded.
#pragma once

#include "barriers.hpp"
#include "vec.hpp"

namespace quevar {
QUEVAR_INLINE_BEGIN

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

template <class T> int exponent_field(T x) {
    return (int)(as_uint(x) >> format<T>::digits) & format<T>::field_max;
}
template <scalar T> bool infinite_or_nan(T x) { return exponent_field(x) == format<T>::field_max; }
template <class T> bool is_nan(T x) { return (as_uint(x) & ~format<T>::sign) > format<T>::exponent; }

// x with a signalling NaN made quiet, as the processor's x * 1.0 gives it.
template <class T> T quiet(T x) { return x * at_run_time(T(1)); }

// c0 x^n + c1 x^(n-1) + ...
template <class T> T horner(T, T c0) { return c0; }
template <class T, class... C> T horner(T x, T c0, T c1, C... c) { return horner(x, c0 * x + c1, c...); }

// 2^k where that is a normal number; meaningless for other k.
template <class T = f64> T two_to(int k) {
    return as_float((unsigned_bits<T>)((k + format<T>::bias) & format<T>::field_max) << format<T>::digits);
}

QUEVAR_INLINE_END
} // namespace quevar
