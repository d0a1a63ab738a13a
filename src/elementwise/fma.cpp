// fma: a b + c, rounded once.
#include "frame/frame.hpp"

namespace quevar::fused {
QUEVAR_INLINE_BEGIN

struct Fma {
    template <class V> static V main(V a, V b, V c) { return fma_in_order(a, b, c); }
};

QUEVAR_EXPORT(fma, f, , ternary, f32, f32, void, Fma)
QUEVAR_EXPORT(fma, f, _rm, ternary, f32, f32, void, Fma)
QUEVAR_EXPORT(fma, , , ternary, f64, f64, void, Fma)

QUEVAR_INLINE_END
} // namespace quevar::fused
