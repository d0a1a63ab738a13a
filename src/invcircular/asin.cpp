// asin: the arc sine, single and double.
#include "arcsine_series.hpp"

namespace quevar::asin {
QUEVAR_INLINE_BEGIN

using namespace arcsine;

template <class T, const auto &series, class Root> struct HalfAngle : Special<T> {
    static constexpr int in_turn_after_mask = 4;

    template <class V> static auto main(V x) {
        const auto &k = constants<V>();
        const V a = x & k.magnitude;
        const auto large = a >= k.half;
        const V h = fnma(a, V(k.half), V(k.half)), z = min(a * a, h);
        const V v = select(large, Root::of(h).negative(), a);
        const V r = keep(large, V(k.half_pi)) + fma(v, series.of(z), v);
        return flagged(r ^ (x ^ a), ~(a <= k.one));
    }
};

// Of the roots of this processor; others err by up to 0.6 ulp more in float, 0.3 in double.
// Worst: 0x3F021AF2, 0.508223653, gives 0x3F087AA0, wanted 0x3F087A9D: 2.6617 ulp.
using Float = HalfAngle<f32, float_series, CloseRoot<float_root>>;
// Worst: 0x3F000041, 0.500003874, gives 0x3F060CF4, wanted 0x3F060ADD: 535.19 ulp.
using FloatNative = HalfAngle<f32, float_native_series, LooseRoot<float_native_root>>;
// Worst found: 0xBFE0449ED96FBAF0 gives 0xBFE110C7F2495DC6, wanted 0xBFE110C7F2495DC9: 2.627 ulp.
using Double = HalfAngle<f64, double_series, CloseRoot<double_root>>;
// Worst found: 0xBFE00000035804CC gives 0xBFE0C1523C523950, wanted 0xBFE0C1523C09E565: 4.7401e6 ulp.
using DoubleNative = HalfAngle<f64, double_native_series, LooseRoot<double_native_root>>;

QUEVAR_EXPORT(asin, f, , unary, f32, f32, void, Float)
QUEVAR_EXPORT(asin, f, _native, unary, f32, f32, void, FloatNative)
QUEVAR_EXPORT(asin, , , unary, f64, f64, void, Double)
QUEVAR_EXPORT(asin, , _native, unary, f64, f64, void, DoubleNative)

QUEVAR_INLINE_END
} // namespace quevar::asin
