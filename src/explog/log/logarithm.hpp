// What the rare paths of the logarithms share, float and double: arguments without a finite logarithm, and
// denormals.
#pragma once

#include "frame/frame.hpp"

namespace quevar::explog {
QUEVAR_INLINE_BEGIN

// If x is 0, negative, infinite or NaN, its logarithm is put in r. Tells whether it was; a positive denormal
// is left.
template <class T> bool no_finite_logarithm(T x, T *r) {
    const T zero = at_run_time(T(0));
    if (x == 0) *r = -1 / zero;
    else if (x < 0) *r = zero / zero;
    else if (infinite_or_nan(x)) *r = x * x;
    else return false;
    return true;
}

// x = 2^k m with m in [1, 2), where x may be denormal but x 2^Scale is normal.
template <int Scale, class T> struct Denormal {
    T k, m;

    explicit Denormal(T x) {
        const T scaled = x * two_to<T>(Scale); // normal
        k = (T)(exponent_field(scaled) - format<T>::bias - Scale);
        m = as_float((as_uint(scaled) & format<T>::significand) | as_uint(T(1)));
    }
};

// Row j serves m near 1 + j/64: w unit, where w is near 1/m, and -log w in two parts. Row 0 holds unit, as w
// is 1.
template <class T> using LogRareRows = table<T, 3, 65>;

template <class T> struct LogRareSteps;
template <> struct LogRareSteps<f32> {
    static constexpr int scale = 27;
    static constexpr f32 to_64ths = 0x48000040_f32; // 2^17 + 1: rounds m - 1
};
template <> struct LogRareSteps<f64> {
    static constexpr int scale = 60;
    static constexpr f64 to_64ths = 0x42D0000000000040_f64; // 2^46 + 1
};

// log x = k log 2 + high + low + log(m w), and u + v = (m w - 1) unit, which is small. The shifter cuts from
// m an upper part whose product with w unit is exact. Scale is that of Denormal; 0 for normal x.
template <int Scale, class T> struct Reduced {
    T k, high, low, u, v;

    Reduced(T x, const LogRareRows<T> &rows, T shifter) {
        const Denormal<Scale, T> d(x);
        k = d.k;
        const auto j = as_uint(d.m + LogRareSteps<T>::to_64ths) & 0x7F;
        const T upper = (d.m + shifter) - shifter, unit = rows(0, 0), inverse = rows((int)j, 0);
        high = rows((int)j, 1);
        low = rows((int)j, 2);
        u = upper * inverse - unit;
        v = (d.m - upper) * inverse;
    }
    // a + l + (u + v)(1 + q), the small terms first.
    T sum(T a, T l, T q) const { return (a + u) + (((v * q + l) + v) + u * q); }
};
template <class T> using ReducedDenormal = Reduced<LogRareSteps<T>::scale, T>;

QUEVAR_INLINE_END
} // namespace quevar::explog
