// cosf: the cosine, as the sine of |x| + pi/2.
#include "sinf_core.hpp"

namespace quevar::cosf {
QUEVAR_INLINE_BEGIN

using namespace circularf;

QUEVAR_CONSTANTS(Degree9, degree_9){
    .p1 = 0xBE2AAAA6, // -0.166666597
    .p2 = 0x3C088764, // 0.00833306089
    .p3 = 0xB94FB6CF, // -0.000198091599
    .p4 = 0x362EC335, // 2.60416459e-06
};
QUEVAR_CONSTANTS(Degree5, degree_5){
    .p0 = 0x3F7FF87C, // 0.999885321
    .p1 = 0xBE29E73F, // -0.165921196
    .p2 = 0x3BF84524, // 0.00757660158
};

// sin r ~ r + r^3 rest(r^2), degree_9, for |r| <= pi/2: relative error 2^-24.4.
// Worst: 0x45EDC786, 7608.94043, gives 0x3F7FFFB1, wanted 0x3F7FFFB3: 2.3561 ulp.
// sin r ~ p0 r + r^3 rest(r^2), degree_5, for |r| <= pi/2: relative error 2^-12.6.
// Worst: 0x403F8257, 2.99233031, gives 0xBF7D1D67, wanted 0xBF7D274F: 2536 ulp.
template <const auto &p> struct Cosine : Special<quarter_turn> {
    template <class V> static auto main(V x) {
        const auto &k = sine_constants;
        const V a = magnitude(x), c = a + k.half_pi;
        const V shifted = fma(c, k.one_over_pi, k.shifter);
        const V r = subtract_half_turns<p.pieces>(a, (shifted - k.shifter) - k.half);
        const V t = r ^ odd_sign(shifted), z = r * r;
        const V s = fma(t * z, p.rest(z), p.first(t));
        // Where |x| is so small that c is pi/2 the polynomial would not give 1.
        return flagged(select(c == k.half_pi, k.one, s), beyond_limit(x));
    }
};

QUEVAR_EXPORT(cos, f, , unary, f32, f32, void, Cosine<degree_9>)
QUEVAR_EXPORT(cos, f, _native, unary, f32, f32, void, Cosine<degree_5>)
QUEVAR_EXPORT(cos, f, _half, unary, f32, f32, void, Cosine<degree_5>)
QUEVAR_EXPORT(cos, f, _rm, unary, f32, f32, void, Cosine<degree_5>)

QUEVAR_INLINE_END
} // namespace quevar::cosf
