// nextafter: the neighbour of x on the side of y.
#include "frame/frame.hpp"

namespace quevar::nextafter {
QUEVAR_INLINE_BEGIN

template <class T> struct Constants { slot<signed_bits<T>> one{1}; };
QUEVAR_CONSTANTS(Constants<f32>, float_constants){};
QUEVAR_CONSTANTS(Constants<f64>, double_constants){};

template <const auto &k> struct Nextafter {
    // The neighbour's pattern is that of x plus 1, or less 1 where the signs differ or y has the smaller
    // magnitude. Zero, which has two patterns, is special.
    template <class V> static auto main(V x, V y) {
        const auto a = as_int(x), b = as_int(y);
        const auto down = (decltype(a){} > (a ^ b)) | (a > b);
        const auto step = keep(~(a == b), down | k.one);
        return flagged(as_float(a + step), unordered(x, y) | (x == V{}));
    }

    template <class T> [[gnu::noinline]] static void rare(const T *x, const T *y, T *r) {
        if (is_nan(*x) || is_nan(*y)) *r = add_in_order(*x, *y);
        else *r = *y == 0 ? *y : as_float((as_uint(*y) & format<T>::sign) | 1);
    }
};

QUEVAR_EXPORT(nextafter, f, , binary, f32, f32, void, Nextafter<float_constants>)
QUEVAR_EXPORT(nextafter, , , binary, f64, f64, void, Nextafter<double_constants>)

QUEVAR_INLINE_END
} // namespace quevar::nextafter
