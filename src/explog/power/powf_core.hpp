// What the main paths of powf, powrf, pownf and rootnf share.
#pragma once

#include "frame/frame.hpp"

namespace quevar::powerf {
QUEVAR_INLINE_BEGIN

struct PowfConstants {
    slot<i32> least_normal{0x80800000};
    slot<i32> normal_range{0xFEFFFFFE};
    slot<f32> magnitude{0x7FFFFFFF};
    slot<i32> product_limit{0x42AE9A00}; // 87.3007812
    slot<i32> two_thirds{0x3F2AAAAB};
    slot<i32> significand{0x007FFFFF};
    slot<f32> one{0x3F800000};
    slot<f32> ln2{0x3F317218};          // 0.693147182
    slot<f32> ln2_high{0x3F317200};     // 0.693145752: its product with an exponent is exact
    slot<f32> ln2_low{0x35BFBE8E};      // 1.42860677e-06
    slot<f32> one_over_ln2{0x3FB8AA3B}; // 1.44269502
    slot<f32> shifter{0x4B400000};      // 1.5 * 2^23
};

// All but the positive normal numbers below the largest, which alone the subtraction wraps to least integers.
template <class V> auto outside_normal(V x, const PowfConstants &c) {
    return as_int(x) - c.least_normal > c.normal_range;
}

// Of y log x or log(x)/n: where the power may leave the normal numbers. An infinite or NaN factor shows too.
template <class V> auto beyond_limit(V product, const PowfConstants &c) {
    return as_int(product & c.magnitude) > c.product_limit;
}

// The sign of x where n is odd: that of the power and of the root.
template <class V, class I> V sign_of_power(V x, I n) { return x & as_float(n << 31); }

// p 2^k, where k is the integer in the low bits of t: added to the exponent field.
template <class V> V scaled_by_pattern(V p, V t) { return as_float(as_int(p) + (as_int(t) << 23)); }

// ---- Plain floats: both functions by a short polynomial over a whole binade ----

template <int N> struct PlainConstants : PowfConstants {
    slot<f32> log[N]; // coefficients of f^(N+1) to f^2 in log(1 + f)
    slot<f32> exp[4];
};

// log a, but for its greatest term k ln2_high.
template <class V> struct PartialLog { V k, rest; };
template <class V, int N> PartialLog<V> log_by_series(V a, const PlainConstants<N> &c) {
    const auto i = as_int(a) - c.two_thirds; // a = 2^k (1 + f) with 1 + f from 2/3 to 4/3
    const V k = convert<f32>(i >> 23), f = as_float((i & c.significand) + c.two_thirds) - c.one;
    return {k, fma(k, c.ln2_low, fma(f, f * polynomial(f, c.log), f))};
}

template <class V, int N> V exp_by_series(V product, const PlainConstants<N> &c) {
    const V t = fma(product, c.one_over_ln2, c.shifter);
    const V r = fnma(t - c.shifter, c.ln2, product);
    return scaled_by_pattern(polynomial(r, c.exp), t);
}

QUEVAR_INLINE_END
} // namespace quevar::powerf
