// fabs, copysign, nan: masks on the pattern. NaN lanes are patterns like others; signalling ones stay so.
#include "frame/frame.hpp"

namespace quevar::sign {
QUEVAR_INLINE_BEGIN

template <class T> struct Constants {
    slot<T> magnitude{~format<T>::sign};
    slot<T> sign{format<T>::sign};
    slot<unsigned_bits<T>> quiet_nan{format<T>::exponent | format<T>::quiet};
};
QUEVAR_CONSTANTS(Constants<f32>, float_constants){};
QUEVAR_CONSTANTS(Constants<f64>, double_constants){};

template <const auto &k> struct Fabs {
    template <class V> static auto main(V x) { return x & k.magnitude; }
};
template <const auto &k> struct Copysign {
    template <class V> static auto main(V x, V y) { return (x & k.magnitude) | (y & k.sign); }
};
template <const auto &k> struct Nan {
    template <class U> static auto main(U code) { return as_float(code | k.quiet_nan); }
};

QUEVAR_EXPORT(fabs, f, , unary, f32, f32, void, Fabs<float_constants>)
QUEVAR_EXPORT(fabs, , , unary, f64, f64, void, Fabs<double_constants>)
QUEVAR_EXPORT(copysign, f, , binary, f32, f32, void, Copysign<float_constants>)
QUEVAR_EXPORT(copysign, , , binary, f64, f64, void, Copysign<double_constants>)
QUEVAR_EXPORT(nan, f, , unary, u32, f32, void, Nan<float_constants>)
QUEVAR_EXPORT(nan, , , unary, u64, f64, void, Nan<double_constants>)

QUEVAR_INLINE_END
} // namespace quevar::sign
