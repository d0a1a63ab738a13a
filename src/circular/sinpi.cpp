// sinpi: the sine of pi x, single and double.
#include "half_turns.hpp"

namespace quevar::sinpi {
QUEVAR_INLINE_BEGIN

using namespace half_turns;

QUEVAR_CONSTANTS(slot<f64>, double_threshold){0x4320000000000000}; // 2^51

// For |r| <= pi/2 the relative error of the sine is below 2^-52.2.
using DoubleSine = SineConstants<f64, 7>;
QUEVAR_CONSTANTS(DoubleSine, double_sine){
    .shifter = 0x4338000000000000, // 1.5 * 2^52
    .half = 0x3FE0000000000000,    // 0.5
    .pi = 0x400921FB54442D18,      // 3.1415926535897931
    .c = {0xBD69F1517E9F65F0,      // -7.3733445331106646e-13
          0x3DE60E6BEE01D83E,      // 1.6048095404959637e-10
          0xBE5AE6355AAA4A53,      // -2.5051880273862881e-08
          0x3EC71DE3806ADD1A,      // 2.7557316600552628e-06
          0xBF2A01A019A659DD,      // -0.00019841269825056256
          0x3F8111111110A573,      // 0.0083333333332855416
          0xBFC55555555554A8},     // -0.16666666666666186
};

template <const auto &k> struct Polynomial {
    template <class V> static V of(V y, V sign) {
        const V shifted = y + k.shifter;
        return sine(y - (shifted - k.shifter), shifted, k) ^ sign;
    }
};

// Worst: 0x3B22F9F0, 0.00248682126, gives 0x3C000001, wanted 0x3C000000: 2.1314 ulp.
using Float = OfPi<Polynomial<float_sine>, float_threshold>;
// Worst: 0x3E8F66ED, 0.280082136, gives 0x3F4555A6, wanted 0x3F454B22: 2691.8 ulp.
using FloatNative = OfPi<Polynomial<float_native_sine>, float_threshold>;
// Worst found: 0x3FE046B3C6B53D31 gives 0x3FEFFCFD2B0CAF21, wanted 0x3FEFFCFD2B0CAF1E: 3.398 ulp, at width 1.
using Double = OfPi<Polynomial<double_sine>, double_threshold>;
// Worst found: 0x3FE08EF728D87172 gives 0x3FEFF3B0CE247712, wanted 0x3FEFF3B0D1CDB515: 6.1423e7 ulp.
using DoubleNative = OfPi<Polynomial<double_native_sine>, double_threshold>;

QUEVAR_EXPORT(sinpi, f, , unary, f32, f32, void, Float)
QUEVAR_EXPORT(sinpi, f, _native, unary, f32, f32, void, FloatNative)
QUEVAR_EXPORT(sinpi, , , unary, f64, f64, void, Double)
QUEVAR_EXPORT(sinpi, , _native, unary, f64, f64, void, DoubleNative)

QUEVAR_INLINE_END
} // namespace quevar::sinpi
