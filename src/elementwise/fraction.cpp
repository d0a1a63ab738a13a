// modf: the integral part, rounded toward zero, and the fraction with the sign of x. fract: the floor, and
// the fraction above it, which is below 1.
#include "frame/frame.hpp"

namespace quevar::fraction {
QUEVAR_INLINE_BEGIN

template <class T> struct Constants {
    slot<T> sign{format<T>::sign};
    slot<T> below_one;
};
QUEVAR_CONSTANTS(Constants<f32>, float_constants){.below_one{0x3F7FFFFF}};          // 1 - 2^-24
QUEVAR_CONSTANTS(Constants<f64>, double_constants){.below_one{0x3FEFFFFFFFFFFFFF}}; // 1 - 2^-53

template <class T> T zero_with_sign_of(T x) { return as_float(as_uint(x) & format<T>::sign); }

template <const auto &k> struct Modf {
    // The difference is NaN if x is infinite or NaN. Those lanes are special, as infinities have the fraction
    // 0.
    template <class V> static auto main(V x) {
        const V i = quevar::round<toward_zero>(x);
        const V d = x - i;
        return flagged(d | (x & k.sign), i, unordered(d, d));
    }

    template <class T> [[gnu::noinline]] static void rare(const T *x, T *f, T *) {
        if (!is_nan(*x)) *f = zero_with_sign_of(*x);
    }
};

template <const auto &k> struct Fract {
    // The minimum matters where x is negative and so small that 1 + x rounds to 1. Zeros keep their sign.
    template <class V> static auto main(V x) {
        const V i = quevar::round<downward>(x);
        const V d = x - i;
        return flagged(select(x == V{}, x, min(d, k.below_one)), i, unordered(d, d));
    }

    // NaN, signalling ones too, comes back as it is in both.
    template <class T> [[gnu::noinline]] static void rare(const T *x, T *f, T *i) {
        *f = is_nan(*x) ? *x : zero_with_sign_of(*x);
        *i = *x;
    }
};

QUEVAR_EXPORT(modf, f, , unary_pointer, f32, f32, f32, Modf<float_constants>)
QUEVAR_EXPORT(modf, , , unary_pointer, f64, f64, f64, Modf<double_constants>)
QUEVAR_EXPORT(fract, f, , unary_pointer, f32, f32, f32, Fract<float_constants>)
QUEVAR_EXPORT(fract, , , unary_pointer, f64, f64, f64, Fract<double_constants>)

QUEVAR_INLINE_END
} // namespace quevar::fraction
