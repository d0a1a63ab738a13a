// fmax, fmin, maxmag, minmag: the larger or smaller of two numbers; of a number and a NaN, the number.
#include "frame/frame.hpp"

namespace quevar::selection {
QUEVAR_INLINE_BEGIN

struct NumberBeforeNan {
    // Of two NaNs y wins.
    template <class T> static void rare(const T *x, const T *y, T *r) { *r = quiet(is_nan(*x) ? *y : *x); }
};

struct Fmax : NumberBeforeNan {
    template <class V> static auto main(V x, V y) { return flagged(max(x, y), unordered(x, y)); }
};
struct Fmin : NumberBeforeNan {
    template <class V> static auto main(V x, V y) { return flagged(min(x, y), unordered(x, y)); }
};

template <class T> struct Constants { slot<T> magnitude{~format<T>::sign}; };
QUEVAR_CONSTANTS(Constants<f32>, float_constants){};
QUEVAR_CONSTANTS(Constants<f64>, double_constants){};

// Of equal magnitudes the positive number is the larger. Of two zeros x is the larger, and the smaller.
template <const auto &k> struct Maxmag : NumberBeforeNan {
    template <class V> static auto main(V x, V y) {
        const V a = x & k.magnitude, b = y & k.magnitude;
        return flagged(select(a == b, max(y, x), select(a > b, x, y)), unordered(x, y));
    }
};
template <const auto &k> struct Minmag : NumberBeforeNan {
    template <class V> static auto main(V x, V y) {
        const V a = x & k.magnitude, b = y & k.magnitude;
        return flagged(select(a == b, min(y, x), select(a < b, x, y)), unordered(x, y));
    }
};

QUEVAR_EXPORT(fmax, f, , binary, f32, f32, void, Fmax)
QUEVAR_EXPORT(fmax, , , binary, f64, f64, void, Fmax)
QUEVAR_EXPORT(fmin, f, , binary, f32, f32, void, Fmin)
QUEVAR_EXPORT(fmin, , , binary, f64, f64, void, Fmin)
QUEVAR_EXPORT(maxmag, f, , binary, f32, f32, void, Maxmag<float_constants>)
QUEVAR_EXPORT(maxmag, , , binary, f64, f64, void, Maxmag<double_constants>)
QUEVAR_EXPORT(minmag, f, , binary, f32, f32, void, Minmag<float_constants>)
QUEVAR_EXPORT(minmag, , , binary, f64, f64, void, Minmag<double_constants>)

QUEVAR_INLINE_END
} // namespace quevar::selection
