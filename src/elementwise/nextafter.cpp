// nextafter: the neighbour of x on the side of y.
#include "frame/frame.hpp"

namespace quevar::nextafter {

template <class T> struct Constants { slot<signed_bits<T>> one{1}; };
QUEVAR_CONSTANTS(Constants<f32>, float_constants){};
QUEVAR_CONSTANTS(Constants<f64>, double_constants){};

template <const auto &k> struct Nextafter {
    // A step of the pattern: down where the signs differ or y has the smaller magnitude. Only from zero,
    // which has two patterns, does it lead astray.
    template <class V> static QUEVAR_INLINE auto main(V x, V y) {
        const auto a = bits(x), b = bits(y);
        const auto down = (decltype(a){} > (a ^ b)) | (a > b);
        const auto step = keep(~(a == b), down | k.one);
        return flagged(number(a + step), unordered(x, y) | (x == V{}));
    }

    template <class T> static void rare(const T *x, const T *y, T *r) {
        if (is_nan(*x) || is_nan(*y)) *r = add_in_order(*x, *y);
        else *r = *y == 0 ? *y : with_pattern<T>((pattern_of(*y) & format<T>::sign) | 1);
    }
};

QUEVAR_EXPORT(nextafter, f, , binary, f32, f32, void, Nextafter<float_constants>)
QUEVAR_EXPORT(nextafter, , , binary, f64, f64, void, Nextafter<double_constants>)

} // namespace quevar::nextafter
