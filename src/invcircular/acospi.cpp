// acospi: the arc cosine over pi, single and double. The series is divided by pi, so no division is left.
#include "arcsine_series.hpp"

namespace quevar::acospi {
QUEVAR_INLINE_BEGIN

using namespace arcsine;

template <class T> struct Special {
    static void rare(const T *x, T *r) {
        if (*x == 1) *r = T(0);
        else if (*x == -1) *r = T(1);
        else arcsine::Special<T>::rare(x, r);
    }
};

template <class T, const auto &series, class Root> struct HalfAngle : Special<T> {
    static constexpr int in_turn_after_mask = 4;

    template <class V> static auto main(V x) {
        const auto &k = constants<V>();
        const V n = x | k.sign; // -|x|
        const auto large = n <= k.minus_half;
        const V h = fma(n, V(k.half), V(k.half)), z = min(n * n, h);
        // 2 sqrt(h) with the sign of x, or -x.
        const V v = select(large, Root::of(h).positive(), n) ^ (x & k.sign);
        // The value at v = 0: 0 or 1 by the sign of x (z lies between a large x and its negative), or 1/2.
        const V base = select(large, keep(x < z, V(k.one)), k.half);
        return flagged(fma(v, series.of(z), base), ~(n > k.minus_one));
    }
};

// Worst: 0x3F6D8E54, 0.927953005, gives 0x3DF8F81B, wanted 0x3DF8F81D: 2.4569 ulp.
using Float = HalfAngle<f32, float_series_over_pi, NearestRoot>;
// Worst: 0x3F7FFB18, 0.999925137, gives 0x3B7F449E, wanted 0x3B7F428A: 531.57 ulp.
using FloatNative = HalfAngle<f32, float_native_series_over_pi, NearestRoot>;
// Worst found: 0x3FEFFFFFFFD88B79 gives 0x3EDFFD96D516CD1E, wanted 0x3EDFFD96D516CD1C: 2.428 ulp.
using Double = HalfAngle<f64, double_series_over_pi, NearestRoot>;
// Worst found: 0x3FEF6467FE842A35 gives 0x3FAFD0877971E0DB, wanted 0x3FAFD08779B7859E: 4.5642e6 ulp.
using DoubleNative = HalfAngle<f64, double_native_series_over_pi, LooseRootOfPositive<double_native_root>>;

QUEVAR_EXPORT(acospi, f, , unary, f32, f32, void, Float)
QUEVAR_EXPORT(acospi, f, _native, unary, f32, f32, void, FloatNative)
QUEVAR_EXPORT(acospi, , , unary, f64, f64, void, Double)
QUEVAR_EXPORT(acospi, , _native, unary, f64, f64, void, DoubleNative)

QUEVAR_INLINE_END
} // namespace quevar::acospi
