// What sinpi, cospi and tanpi share: no reduction by pi, and large arguments lose whole turns before the main
// path.
#pragma once

#include "frame/frame.hpp"

namespace quevar::half_turns {
QUEVAR_INLINE_BEGIN

template <class T> struct Fold;
template <> struct Fold<f32> {
    slot<f32> magnitude{0x7FFFFFFF};
    slot<f32> infinity{0x7F800000};
    slot<f32> limit{0x4F000000};   // 2^31: from here on all are multiples of 256
    slot<f32> shifter{0x4FC00000}; // 1.5 * 2^32: rounds to multiples of 512
};
template <> struct Fold<f64> {
    slot<f64> magnitude{0x7FFFFFFFFFFFFFFF};
    slot<f64> infinity{0x7FF0000000000000};
    slot<f64> limit{0x43A0000000000000};   // 2^59: from here on all are multiples of 128
    slot<f64> shifter{0x43B8000000000000}; // 1.5 * 2^60: rounds to multiples of 256
};
QUEVAR_CONSTANTS(Fold<f32>, float_fold){};
QUEVAR_CONSTANTS(Fold<f64>, double_fold){};

template <class V> constexpr bool in_double = sizeof(typename V::element) == 8;
template <class V> const auto &fold() {
    if constexpr (in_double<V>) return double_fold;
    else return float_fold;
}

// A family from the steps of its Method: of(y, sign) for y = |x| less whole turns, with the sign bit of x.
// Beyond the threshold the first rounding of the steps would not give a whole number.
template <class Method, const auto &threshold> struct OfPi {
    static constexpr int in_turn_after_mask = 4;

    template <class V> static auto main(V x) {
        const V a = x & fold<V>().magnitude;
        return flagged(Method::of(a, x ^ a), ~(a <= threshold));
    }

    // Taking off the nearest multiple of 512 (256 in double) is exact; what remains may be negative. The
    // compiler would make one subtraction of all lanes, which loses the sign of 0 when rounding downward.
    template <class V> static auto settle(V x, V) {
        const auto &k = fold<V>();
        const V a = x & k.magnitude;
        const V s = keep(a < k.limit, V(k.shifter));
        const V y = select(a <= threshold, a, unrecognised(a - ((a + s) - s)));
        return flagged(Method::of(y, x ^ a), ~(a < k.infinity));
    }

    // The processor's NaN for an infinity; a NaN itself, quieted.
    template <class T> static void rare(const T *x, T *r) { *r = *x - *x; }
};

// ---- sinpi and cospi ----

QUEVAR_CONSTANTS(slot<f32>, float_threshold){0x4A800000}; // 4194304 = 2^22

template <class T, int N> struct SineConstants {
    slot<T> shifter, half, pi;
    slot<T> c[N]; // sin r = r + r^3 (... + c[N - 1])
};
using FloatSine = SineConstants<f32, 4>;
using FloatNativeSine = SineConstants<f32, 2>;
using DoubleNativeSine = SineConstants<f64, 4>;

// For |r| <= pi/2 the relative error of the sine is below 2^-25.9.
QUEVAR_CONSTANTS(FloatSine, float_sine){
    .shifter = 0x4B400000, // 1.5 * 2^23
    .half = 0x3F000000,    // 0.5
    .pi = 0x40490FDB,      // 3.14159274
    .c = {0x362EC33B,      // 2.60416596e-06
          0xB94FB6C5,      // -0.000198091453
          0x3C088767,      // 0.00833306368
          0xBE2AAAA6},     // -0.166666597
};
// 2^-12.1.
QUEVAR_CONSTANTS(FloatNativeSine, float_native_sine){
    .shifter = 0x4B400000, // 1.5 * 2^23
    .half = 0x3F000000,    // 0.5
    .pi = 0x40490FDB,      // 3.14159274
    .c = {0x3BF831A5,      // 0.00757427746
          0xBE29F1BE},     // -0.165961236
};
// 2^-27.1.
QUEVAR_CONSTANTS(DoubleNativeSine, double_native_sine){
    .shifter = 0x4338000000000000, // 1.5 * 2^52
    .half = 0x3FE0000000000000,    // 0.5
    .pi = 0x400921FB54442D18,      // 3.1415926535897931
    .c = {0x3EC5D4567513DA77,      // 2.6022725384503947e-06
          0xBF29F67D9395D587,      // -0.00019808085361787081
          0x3F8110EA968A0185,      // 0.0083330466452487071
          0xBFC55554AD3EAF1F},     // -0.16666658839437162
};

// The sign bit where the integer in the low bits of a shifted number is odd.
template <class V> V odd_sign(V shifted) {
    return as_float(as_int(shifted) << (8 * (int)sizeof(typename V::element) - 1));
}

// The sine of pi (n + f) with |f| <= 1/2, n being the integer in the low bits of `shifted`. Where f is 0 the
// last sum is one of zeros, +0 for every n.
template <class V, class Constants> V sine(V f, V shifted, const Constants &k) {
    const V t = (f * k.pi) ^ odd_sign(shifted), z = t * t;
    const V q = z * polynomial(z, read_for(z, k.c));
    if constexpr (in_double<V>) return fma_unless_scalar(t, q, t);
    else return fma(t, q, t);
}

QUEVAR_INLINE_END
} // namespace quevar::half_turns
