// ldexp, frexp, ilogb, logb: steps on the exponent field. Zero, denormal, infinite and NaN arguments take the
// rare path, and so do denormal and infinite results.
#include "frame/frame.hpp"

namespace quevar::exponent {
QUEVAR_INLINE_BEGIN

// A denormal times this power of two is a normal number.
template <class T> constexpr int lift = sizeof(T) == 4 ? 25 : 55;
template <class T> T with_exponent_field(T x, int field) {
    return as_float((as_uint(x) & ~format<T>::exponent) | (unsigned_bits<T>)field << format<T>::digits);
}
// a a with the sign of x, which overflows or underflows as the caller's rounding mode has it.
template <class T> T signed_square(T a, T x) {
    return multiply_in_order(as_float(as_uint(a) | (as_uint(x) & format<T>::sign)), a);
}

template <class T> struct Constants {
    using I = signed_bits<T>;
    slot<unsigned_bits<T>> exponent{format<T>::exponent};
    slot<I> sign_and_significand{(unsigned_bits<T>)~format<T>::exponent};
    slot<I> half{(unsigned_bits<T>)(format<T>::bias - 1) << format<T>::digits};
    slot<I> one{1};
    slot<I> last_field{format<T>::field_max - 1};
    slot<I> bias{format<T>::bias};
    slot<I> half_bias{format<T>::bias - 1};
};
QUEVAR_CONSTANTS(Constants<f32>, float_constants){};
QUEVAR_CONSTANTS(Constants<f64>, double_constants){};

// The exponent field, in lanes of x's size.
template <const auto &k, class V> auto field(V x) {
    return as_int((as_uint(x) & k.exponent) >> format<typename V::element>::digits);
}
template <const auto &k, class V> auto not_normal(V x) {
    const auto e = as_uint(x) & k.exponent;
    return (e == decltype(e){}) | (e == k.exponent);
}

template <const auto &k> struct Ldexp {
    // Lanes are ordinary if the exponent fields of x and of the result are from 1 to last_field: then none of
    // four differences is negative. If the sum wraps, one of them is.
    template <class V, class I> static auto main(V x, I n) {
        using T = typename V::element;
        const auto by = convert<signed_bits<T>>(n);
        const auto e = field<k>(x), sum = e + by;
        const auto special = (e - k.one) | (sum - k.one) | (k.last_field - e) | (k.last_field - sum);
        return flagged(as_float(as_int(x) + (by << format<T>::digits)), special);
    }

    template <class T> [[gnu::noinline]] static void rare(const T *x, const i32 *n, T *r) {
        T v = quiet(*x);
        *r = v;
        if (infinite_or_nan(v) || v == 0) return;
        int e = exponent_field(v);
        if (e == 0) {
            v *= two_to<T>(lift<T>);
            e = exponent_field(v) - lift<T>;
        }
        const int clamped = *n > 0x10000 ? 0x10000 : *n < -0x10000 ? -0x10000 : *n;
        const int sum = e + clamped;
        const int extreme = sizeof(T) == 4 ? 100 : 1000;
        if (sum >= format<T>::field_max) *r = signed_square(two_to<T>(extreme), v);
        else if (sum > 0) *r = with_exponent_field(v, sum);
        else if (sum < -format<T>::digits) *r = signed_square(two_to<T>(-extreme), v);
        else *r = with_exponent_field(v, sum + lift<T>) * two_to<T>(-lift<T>); // the only rounding
    }
};

template <const auto &k> struct Frexp {
    template <class V> static auto main(V x) {
        const V significand = as_float((as_int(x) & k.sign_and_significand) | k.half);
        return flagged(significand, convert<i32>(field<k>(x) - k.half_bias), not_normal<k>(x));
    }

    template <class T> [[gnu::noinline]] static void rare(const T *x, T *r, i32 *e) {
        const T v = quiet(*x);
        *r = v;
        *e = 0;
        if (infinite_or_nan(v) || v == 0) return;
        const T lifted = v * two_to<T>(lift<T>);
        *e = exponent_field(lifted) - (format<T>::bias - 1 + lift<T>);
        *r = with_exponent_field(lifted, format<T>::bias - 1);
    }
};

template <const auto &k> struct Ilogb {
    template <class V> static auto main(V x) {
        return flagged(convert<i32>(field<k>(x) - k.bias), not_normal<k>(x));
    }

    template <class T> [[gnu::noinline]] static void rare(const T *x, i32 *r) {
        if (*x == 0) *r = -0x7FFFFFFF - 1;
        else if (infinite_or_nan(*x)) *r = 0x7FFFFFFF;
        else *r = exponent_field(*x * two_to<T>(lift<T>)) - (format<T>::bias + lift<T>);
    }
};

template <const auto &k> struct Logb {
    template <class V> static auto main(V x) {
        const auto e = convert<i32>(field<k>(x) - k.bias);
        return flagged(convert<typename V::element>(e), not_normal<k>(x));
    }

    template <class T> [[gnu::noinline]] static void rare(const T *x, T *r) {
        const T v = quiet(*x);
        if (v == 0) {
            *r = as_float(format<T>::sign | format<T>::exponent);
        } else if (infinite_or_nan(v)) {
            *r = as_float(as_uint(v) & ~format<T>::sign);
        } else {
            i32 e;
            Ilogb<k>::rare(x, &e);
            *r = e;
        }
    }
};

QUEVAR_EXPORT(ldexp, f, , with_int, f32, f32, void, Ldexp<float_constants>)
QUEVAR_EXPORT(ldexp, , , with_int, f64, f64, void, Ldexp<double_constants>)
QUEVAR_EXPORT(frexp, f, , unary_pointer, f32, f32, i32, Frexp<float_constants>)
QUEVAR_EXPORT(frexp, , , unary_pointer, f64, f64, i32, Frexp<double_constants>)
QUEVAR_EXPORT(ilogb, f, , unary, f32, i32, void, Ilogb<float_constants>)
QUEVAR_EXPORT(ilogb, , , unary, f64, i32, void, Ilogb<double_constants>)
QUEVAR_EXPORT(logb, f, , unary, f32, f32, void, Logb<float_constants>)
QUEVAR_EXPORT(logb, , , unary, f64, f64, void, Logb<double_constants>)

QUEVAR_INLINE_END
} // namespace quevar::exponent
