// tanpi: the tangent of pi x, single and double.
#include "half_turns.hpp"

namespace quevar::tanpi {
QUEVAR_INLINE_BEGIN

using namespace half_turns;

QUEVAR_CONSTANTS(slot<f32>, float_tangent_threshold){0x49800000};          // 1048576 = 2^20
QUEVAR_CONSTANTS(slot<f64>, double_tangent_threshold){0x4300000000000000}; // 2^49

// tan(pi f) = f n(f^2) / d(f^2) for |f| <= 1/4; relative errors below 2^-24.6, 2^-14.6, 2^-53.5, 2^-32.6.
template <class T, int N, int D> struct Constants {
    slot<T> zero{0};
    slot<T> shifter; // rounds to multiples of 1/2
    slot<T> n[N], d[D];
};
using FloatConstants = Constants<f32, 2, 3>;
using FloatNativeConstants = Constants<f32, 2, 2>;
using DoubleConstants = Constants<f64, 4, 5>;
using DoubleNativeConstants = Constants<f64, 3, 3>;

QUEVAR_CONSTANTS(FloatConstants, float_constants){
    .shifter = 0x4AC00000, // 1.5 * 2^22
    .n = {0xC03E1BF0,      // -2.97045517
          0x40490FD7},     // 3.14159179
    .d = {0x3F724E71,      // 0.946509421
          0xC0878864,      // -4.23539925
          0x3F7FFFFC},     // 0.999999762
};
QUEVAR_CONSTANTS(FloatNativeConstants, float_native_constants){
    .shifter = 0x4AC00000, // 1.5 * 2^22
    .n = {0xC009A99A,      // -2.15097666
          0x40490FD6},     // 3.14159155
    .d = {0xC07E2A1E,      // -3.97132063
          0x3F800000},     // 1
};
QUEVAR_CONSTANTS(DoubleConstants, double_constants){
    .shifter = 0x4328000000000000, // 1.5 * 2^51
    .n = {0xBFABB103D68EE571,      // -0.054084892216858978
          0x3FF0C8580FA6B9B9,      // 1.0489121066453733
          0xC0108BB113B2D25A,      // -4.1364176824468704
          0x400921FB54442D18},     // 3.1415926535897931
    .d = {0x3F73727E6E36B82F,      // 0.0047478617374690354
          0xBFD336A7EAFF7F8E,      // -0.30021093319918968
          0x400401CCE5F3A97B,      // 2.5008790936455489
          0xC0126D1667518600,      // -4.6065307754047353
          0x3FF0000000000000},     // 1
};
QUEVAR_CONSTANTS(DoubleNativeConstants, double_native_constants){
    .shifter = 0x4328000000000000, // 1.5 * 2^51
    .n = {0x3FD53574825D38E0,      // 0.33138764124750075
          0xC00BA6A41A1305EC,      // -3.4563676869445228
          0x400921FB54546C23},     // 3.1415926540626216
    .d = {0x3FF8F71DB651327F,      // 1.5603310701145856
          0xC0118F6CF4345389,      // -4.3900640637338109
          0x3FF0000000000000},     // 1
};

template <const auto &k> struct Quotient {
    // y = n/2 + f: for odd n the tangent is -1/tan(pi f). At f = 0 the quotient is 0 for even n and infinity
    // for odd, to be made negative where the second bit of n is set. Both low bits of n are or-ed in as the
    // top ones: an infinity has the lower of them set already.
    template <class V> static V of(V y, V sign) {
        constexpr int top = 8 * sizeof(typename V::element) - 1;
        const V shifted = y + k.shifter;
        const V f = y - (shifted - k.shifter), z = f * f;
        const auto &c = read_for(f, k);
        const V numerator = f * polynomial(z, c.n), denominator = polynomial(z, c.d);
        const auto parity = as_int(shifted) << top, odd = parity >> top;
        const V q = select(odd, denominator, numerator) / select(odd, numerator, denominator);
        const V at_zero = q | as_float(as_int(shifted) << (top - 1));
        return select(f == k.zero, at_zero, q ^ as_float(parity)) ^ sign;
    }
};

// Worst: 0x3E7FD77D, 0.24984546, gives 0x3F7FC062, wanted 0x3F7FC065: 3.1754 ulp.
using Float = OfPi<Quotient<float_constants>, float_tangent_threshold>;
// Worst: 0x3EB46FCE, 0.352415502, gives 0x40000106, wanted 0x3FFFFF8C: 639.99 ulp.
using FloatNative = OfPi<Quotient<float_native_constants>, float_tangent_threshold>;
// Worst found: 0x3FCFD8CBD88E4D0E gives 0x3FEFC2A6343C3C9B, wanted 0x3FEFC2A6343C3C9F: 3.620 ulp.
using Double = OfPi<Quotient<double_constants>, double_tangent_threshold>;
// Worst found: 0x3E345F301A0CA83E gives 0x3E4FFFFF7C8B5398, wanted 0x3E4FFFFF7C76A423: 1.3556e6 ulp.
using DoubleNative = OfPi<Quotient<double_native_constants>, double_tangent_threshold>;

QUEVAR_EXPORT(tanpi, f, , unary, f32, f32, void, Float)
QUEVAR_EXPORT(tanpi, f, _native, unary, f32, f32, void, FloatNative)
QUEVAR_EXPORT(tanpi, , , unary, f64, f64, void, Double)
QUEVAR_EXPORT(tanpi, , _native, unary, f64, f64, void, DoubleNative)

QUEVAR_INLINE_END
} // namespace quevar::tanpi
