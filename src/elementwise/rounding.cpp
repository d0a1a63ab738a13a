// ceil, floor, trunc, rint, nearbyint: one rounding instruction. round: half away from zero.
#include "frame/frame.hpp"

namespace quevar::rounding {
QUEVAR_INLINE_BEGIN

template <rounding_mode M> struct Rounding {
    template <class V> static auto main(V x) { return quevar::round<M>(x); }
};

template <class T> struct Constants {
    slot<T> sign{format<T>::sign};
    slot<T> half, one;
};
QUEVAR_CONSTANTS(Constants<f32>, roundf_constants){.half{0x3F000000}, .one{0x3F800000}};
QUEVAR_CONSTANTS(Constants<f64>, round_constants){.half{0x3FE0000000000000}, .one{0x3FF0000000000000}};

template <const auto &k> struct Round {
    // |x| rounded to nearest with ties to even, and one more where |x| was half above that.
    template <class V> static auto main(V x) {
        const V sign = x & k.sign, a = x ^ sign;
        const V r = quevar::round<to_nearest>(a), one = k.one;
        return (r + keep(a - r == k.half, one)) | sign;
    }
};

QUEVAR_EXPORT(ceil, f, , unary, f32, f32, void, Rounding<upward>)
QUEVAR_EXPORT(ceil, , , unary, f64, f64, void, Rounding<upward>)
QUEVAR_EXPORT(floor, f, , unary, f32, f32, void, Rounding<downward>)
QUEVAR_EXPORT(floor, , , unary, f64, f64, void, Rounding<downward>)
QUEVAR_EXPORT(trunc, f, , unary, f32, f32, void, Rounding<toward_zero>)
QUEVAR_EXPORT(trunc, , , unary, f64, f64, void, Rounding<toward_zero>)
QUEVAR_EXPORT(rint, f, , unary, f32, f32, void, Rounding<current>)
QUEVAR_EXPORT(rint, , , unary, f64, f64, void, Rounding<current>)
QUEVAR_EXPORT(nearbyint, f, , unary, f32, f32, void, Rounding<nearby>)
QUEVAR_EXPORT(nearbyint, , , unary, f64, f64, void, Rounding<nearby>)
QUEVAR_EXPORT(round, f, , unary, f32, f32, void, Round<roundf_constants>)
QUEVAR_EXPORT(round, , , unary, f64, f64, void, Round<round_constants>)

QUEVAR_INLINE_END
} // namespace quevar::rounding
