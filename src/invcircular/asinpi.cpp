// asinpi: the arc sine over pi, single and double. The series is divided by pi, so no division is left.
#include "arcsine_series.hpp"

namespace quevar::asinpi {
QUEVAR_INLINE_BEGIN

using namespace arcsine;

// v/pi and the rest of the series are added to b one after the other; or the whole series at once.
struct InTwoSteps {
    template <class V, class Series> static V sum(V v, V z, V b, const Series &s) {
        return fma(v, s.rest(z), fma(v, V(s.first), b));
    }
};
struct InOneStep {
    template <class V, class Series> static V sum(V v, V z, V b, const Series &s) {
        return fma(v, s.of(z), b);
    }
};

template <class T> struct Special {
    static void rare(const T *x, T *r) {
        if (*x == 1) *r = T(0.5);
        else if (*x == -1) *r = T(-0.5);
        else arcsine::Special<T>::rare(x, r);
    }
};

template <class T, const auto &series, class Root, class Steps> struct HalfAngle : Special<T> {
    static constexpr int in_turn_after_mask = 4;

    template <class V> static auto main(V x) {
        const auto &k = constants<V>();
        const V a = x & k.magnitude;
        const auto large = a >= k.half;
        const V h = fnma(a, V(k.half), V(k.half)), z = min(a * a, h);
        const V v = select(large, Root::of(h).negative(), a);
        const V r = Steps::sum(v, z, keep(large, V(k.half)), series);
        return flagged(r ^ (x ^ a), ~(a < k.one));
    }
};

// Worst: 0x3F33EB67, 0.702810705, gives 0x3E7E0693, wanted 0x3E7E0690: 2.6760 ulp.
using Float = HalfAngle<f32, float_series_over_pi, NearestRoot, InTwoSteps>;
// Worst: 0x3F00006E, 0.500006557, gives 0x3E2AADF5, wanted 0x3E2AAB4C: 680.61 ulp.
using FloatNative = HalfAngle<f32, float_native_series_over_pi, NearestRoot, InOneStep>;
// Worst found: 0x3FE6279C525F9C5B gives 0x3FCF2852BFB4E4D5, wanted 0x3FCF2852BFB4E4D8: 2.504 ulp.
using Double = HalfAngle<f64, double_series_over_pi, NearestRoot, InTwoSteps>;
// Worst found: 0xBFE0000006C5F6D0 gives 0xBFC555555FA6B750, wanted 0xBFC555555F4AA01A: 6.0353e6 ulp.
using DoubleNative =
    HalfAngle<f64, double_native_series_over_pi, LooseRootOfPositive<double_native_root>, InOneStep>;

QUEVAR_EXPORT(asinpi, f, , unary, f32, f32, void, Float)
QUEVAR_EXPORT(asinpi, f, _native, unary, f32, f32, void, FloatNative)
QUEVAR_EXPORT(asinpi, , , unary, f64, f64, void, Double)
QUEVAR_EXPORT(asinpi, , _native, unary, f64, f64, void, DoubleNative)

QUEVAR_INLINE_END
} // namespace quevar::asinpi
