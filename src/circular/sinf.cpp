// sinf: the sine.
#include "sinf_core.hpp"

namespace quevar::sinf {
QUEVAR_INLINE_BEGIN

using namespace circularf;

QUEVAR_CONSTANTS(Degree9, degree_9){
    .p1 = 0xBE2AAAA6, // -0.166666597
    .p2 = 0x3C088766, // 0.00833306275
    .p3 = 0xB94FB7FF, // -0.000198096022
    .p4 = 0x362EDEF8, // 2.60578054e-06
};
QUEVAR_CONSTANTS(Degree5, degree_5){
    .p0 = 0x3F7FF87C, // 0.999885321
    .p1 = 0xBE29E72F, // -0.165920958
    .p2 = 0x3BF84524, // 0.00757660158
};

// sin r ~ r + r^3 rest(r^2), degree_9, for |r| <= pi/2: relative error 2^-24.6.
// Worst: 0x4598512F, 4874.14795, gives 0xBF7FDC32, wanted 0xBF7FDC34: 2.3699 ulp.
// sin r ~ p0 r + r^3 rest(r^2), degree_5, for |r| <= pi/2: relative error 2^-12.6.
// Worst: 0x4305AAFE, 133.667938, gives 0x3F7D13C9, wanted 0x3F7D1DA5: 2524 ulp.
template <const auto &p> struct Sine : Special<0> {
    template <class V> static auto main(V x) {
        const auto &k = sine_constants;
        const V a = magnitude(x);
        const V shifted = fma(a, k.one_over_pi, k.shifter);
        const V r = subtract_half_turns<p.pieces>(a, shifted - k.shifter);
        const V t = r ^ odd_sign(shifted), z = r * r;
        const V s = fma(t, z * p.rest(z), p.first(t));
        return flagged(s ^ (x ^ a), beyond_limit(x));
    }
};

QUEVAR_EXPORT(sin, f, , unary, f32, f32, void, Sine<degree_9>)
QUEVAR_EXPORT(sin, f, _native, unary, f32, f32, void, Sine<degree_5>)
QUEVAR_EXPORT(sin, f, _half, unary, f32, f32, void, Sine<degree_5>)
QUEVAR_EXPORT(sin, f, _rm, unary, f32, f32, void, Sine<degree_5>)

QUEVAR_INLINE_END
} // namespace quevar::sinf
