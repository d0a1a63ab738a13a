// fdim: the positive difference, x - y where x > y and +0 elsewhere.
#include "frame/frame.hpp"

namespace quevar::fdim {

template <class T> struct Constants { slot<signed_bits<T>> exponent{format<T>::exponent}; };
QUEVAR_CONSTANTS(Constants<f32>, fdimf_constants){};
QUEVAR_CONSTANTS(Constants<f64>, fdim_constants){};

template <class T, const Constants<T> &k> struct Fdim {
    template <class V> static QUEVAR_INLINE auto main(V x, V y) {
        const V r = keep(x > y, x - y);
        const auto special = ((bits(x) & k.exponent) == k.exponent) | ((bits(y) & k.exponent) == k.exponent);
        return flagged(r, special);
    }

    // Infinities in order keep the main path's result; of two NaNs y wins.
    static void rare(const T *x, const T *y, T *r) {
        if (is_nan(*x)) *r = quiet(*x);
        if (is_nan(*y)) *r = quiet(*y);
    }
};

QUEVAR_EXPORT(fdim, f, , binary, f32, f32, void, Fdim<f32, fdimf_constants>)
QUEVAR_EXPORT(fdim, , , binary, f64, f64, void, Fdim<f64, fdim_constants>)

} // namespace quevar::fdim
