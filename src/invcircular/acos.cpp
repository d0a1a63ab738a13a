// acos: the arc cosine as pi/2 less the arc sine, single and double.
#include "arcsine_series.hpp"

namespace quevar::acos {
QUEVAR_INLINE_BEGIN

using namespace arcsine;

template <class T, const auto &series, class Root> struct HalfAngle : Special<T> {
    static constexpr int in_turn_after_mask = 4;

    template <class V> static auto main(V x) {
        const auto &k = read_for(x, constants<V>());
        const V n = x | k.sign; // -|x|
        const auto large = n <= k.minus_half;
        const V h = fma(n, V(k.half), V(k.half)), z = min(n * n, h);
        // 2 sqrt(h) with the sign of x, or -x. The mask is read again: there is no register to keep it in.
        const V v = select(large, Root::of(h).positive(), n) ^ (x & constants<V>().sign);
        // The angle at v = 0: 0 or pi by the sign of x (z lies between a large x and its negative), or pi/2.
        const V base = select(large, keep(x < z, V(k.pi)), k.half_pi);
        return flagged(base + fma(v, series.of(z), v), ~(n >= k.minus_one));
    }
};

// Worst: 0x3F0B66DF, 0.544538438, gives 0x3F7EB58D, wanted 0x3F7EB58B: 2.1526 ulp.
using Float = HalfAngle<f32, float_series, CloseRoot<float_root>>;
// Worst: 0x3F7FFE01, 0.999969542, gives 0x3BFFC237, wanted 0x3BFFC023: 532.47 ulp.
using FloatNative = HalfAngle<f32, float_native_series, LooseRoot<float_native_root>>;
// Worst found: 0x3FE33545DDF32212 gives 0x3FEDA9CF9BCB7ADC, wanted 0x3FEDA9CF9BCB7ADE: 1.770 ulp.
using Double = HalfAngle<f64, double_series, CloseRoot<double_root>>;
// Worst found: 0x3FEF07EFFC6ADB4C gives 0x3FCF947D5B278A22, wanted 0x3FCF947D5B7196A7: 4.8529e6 ulp.
using DoubleNative = HalfAngle<f64, double_native_series, LooseRoot<double_native_root>>;

QUEVAR_EXPORT(acos, f, , unary, f32, f32, void, Float)
QUEVAR_EXPORT(acos, f, _native, unary, f32, f32, void, FloatNative)
QUEVAR_EXPORT(acos, , , unary, f64, f64, void, Double)
QUEVAR_EXPORT(acos, , _native, unary, f64, f64, void, DoubleNative)

QUEVAR_INLINE_END
} // namespace quevar::acos
