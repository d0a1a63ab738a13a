// cospi: the cosine of pi x as the sine of pi (|x| + 1/2), single and double.
#include "half_turns.hpp"

namespace quevar::cospi {
QUEVAR_INLINE_BEGIN

using namespace half_turns;

QUEVAR_CONSTANTS(slot<f64>, double_threshold){0x42A0000000000000}; // 2^43

// y = n - 1/2 + f, n being the integer in the low bits of `shifted`.
template <class V> struct Reduced { V f, shifted; };
template <class V, class Constants> Reduced<V> reduce(V y, const Constants &k) {
    const V shifted = k.shifter + (y + k.half);
    return {y - ((shifted - k.shifter) - k.half), shifted};
}

template <const auto &k> struct Polynomial {
    template <class V> static V of(V y, V) {
        const auto [f, shifted] = reduce(y, k);
        return sine(f, shifted, k);
    }
};

// sin(pi t) = pi t + t^3 (... + c[7]), so that only the first term has the error of the product
// with pi. For |t| <= 1/2 the relative error of the sum is below 2^-54.7.
using DoubleSine = SineConstants<f64, 8>;
QUEVAR_CONSTANTS(DoubleSine, double_sine){
    .shifter = 0x4338000000000000, // 1.5 * 2^52
    .half = 0x3FE0000000000000,    // 0.5
    .pi = 0x400921FB54442D18,      // 3.1415926535897931
    .c = {0x3EA9D46B06CE620E,      // 7.697867779764488e-07
          0xBEF6F7AD23B5CD51,      // -2.1903501175879917e-05
          0x3F3E8F3677C334D3,      // 0.00046629981785601993
          0xBF7E3074DFB5BB14,      // -0.007370430506269416
          0x3FB50783485523F4,      // 0.0821458865731442
          0xBFE32D2CCE627C9E,      // -0.59926452931894736
          0x400466BC6775AA7D,      // 2.5501640398773007
          0xC014ABBCE625BE52},     // -5.1677127800499694
};
struct PolynomialInHalfTurns {
    template <class V> static V of(V y, V) {
        const auto &k = double_sine;
        const auto [f, shifted] = reduce(y, k);
        const V t = f ^ odd_sign(shifted), z = t * t;
        return fma(t, z * polynomial(z, read_for(z, k.c)), t * k.pi);
    }
};

// Worst: 0x3C52A070, 0.0128556341, gives 0x3F7FCA8D, wanted 0x3F7FCA8F: 2.0071 ulp.
using Float = OfPi<Polynomial<float_sine>, float_threshold>;
// Worst: 0x3E61C7BD, 0.220488504, gives 0x3F450AB4, wanted 0x3F450030: 2692.3 ulp.
using FloatNative = OfPi<Polynomial<float_native_sine>, float_threshold>;
// Worst found: 0x3E70F100C5203562 gives 0x3FEFFFFFFFFFFF4C, wanted 0x3FEFFFFFFFFFFF4F: 2.957 ulp.
using Double = OfPi<PolynomialInHalfTurns, double_threshold>;
// Worst found: 0x3FF0477AB867DAB7 gives 0xBFEFF3B119E537F9, wanted 0xBFEFF3B11D8E75FD: 6.1423e7 ulp.
using DoubleNative = OfPi<Polynomial<double_native_sine>, double_threshold>;

QUEVAR_EXPORT(cospi, f, , unary, f32, f32, void, Float)
QUEVAR_EXPORT(cospi, f, _native, unary, f32, f32, void, FloatNative)
QUEVAR_EXPORT(cospi, , , unary, f64, f64, void, Double)
QUEVAR_EXPORT(cospi, , _native, unary, f64, f64, void, DoubleNative)

QUEVAR_INLINE_END
} // namespace quevar::cospi
