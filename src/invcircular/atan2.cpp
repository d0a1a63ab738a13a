// atan2 and atan2f: the angle of the point (x, y), which is the arctangent of y/x in its quadrant.
#include "atan2_rare.hpp"
#include "atan_core.hpp"
#include "atanf_core.hpp"

namespace quevar::atan2 {
QUEVAR_INLINE_BEGIN

using namespace invcircular;

// The angle of (|x|, |y|) is s = atan w + offset: w = |y|/|x| and no offset below the diagonal, w = -|x|/|y|
// and pi/2 on and above it. The angle of (x, y) is s or, where x is negative, pi - s; and it has the sign of
// y.
template <class V> struct Octant {
    V ax, ay, numerator, denominator, offset;

    Octant(V y, V x) {
        const auto &k = constants_for(x);
        ax = x & k.magnitude, ay = y & k.magnitude;
        const auto below = as_int(ay) < as_int(ax);
        numerator = select(below, ay, ax | k.sign), denominator = select(below, ax, ay);
        offset = select(below, V{}, k.half_pi);
    }
};

template <class Tier, class T> struct Angle {
    static constexpr bool in_turn = true, in_order_in_memory = true;

    template <class V> static auto main(V y, V x) {
        const auto &k = constants_for(x);
        const Octant<V> t(y, x);
        const V s = Tier::arctangent(t.numerator, t.denominator, t.offset);
        const V angle = select(as_int(x) < typename V::mask{}, k.pi, V{}) + (s | (x & k.sign));
        return flagged(angle | (y & k.sign), extreme(t.ax) | extreme(t.ay));
    }

    // Zeros, whose quotient is 0, or NaN where both are.
    template <class V> static auto settle(V y, V x, V r) {
        const auto &k = constants_for(x);
        const Octant<V> t(y, x);
        const V zero{}, sx = x & k.sign;
        const auto settled = ((t.ax == zero) | (t.ay == zero)) & ~unordered(y, x);
        const V s = select(t.denominator == zero, zero, t.offset);
        const V angle = select(as_int(sx) == as_int(zero), zero, k.pi) + (s | sx);
        return flagged(select(settled, angle | (y & k.sign), r), (extreme(t.ax) | extreme(t.ay)) & ~settled);
    }

    [[gnu::noinline]] static void rare(const T *y, const T *x, T *r) {
        *r = rare_arctangent2<RareRadians<T>>(*y, *x);
    }
};

// Worst: 0x3FB94E48, 1.44770145, and 0x3FB809D9, 1.43780053, give 0x3F49F0BD, wanted 0x3F49F0BA: 3.4860 ulps.
struct DivisionF {
    template <class V> static V arctangent(V a, V b, V offset) {
        const V w = a / b;
        const auto [z, z2, even, odd] = RadiansHalvesF<V>(w);
        return fma(w, fma(z, odd, fma(z2, even, constantsf.one)), offset);
    }
};

struct QuarterConstants {
    slot<f64> p[5] = {
        0x3F2CED0A36665209, // 0.00022068738617221664
        0x3F914F4C661116A5, // 0.016904062013301985
        0x3FA7EC0FBC50683B, // 0.046722881066856257
        0x3FB3B12A49295651, // 0.076922076093375993
        0x3FC999999997EE34, // 0.19999999999696316
    };
    slot<f64> q[5] = {
        0xBF52E67C93954C23, // -0.0011535851065971401
        0xBF9A5E83B081F69C, // -0.025751168869183702
        0xBFAAD261EAA09954, // -0.052386340991051356
        0xBFB745D009BADA94, // -0.090909006476844134
        0xBFD55555555553C5, // -0.33333333333331111
    };
    slot<f64> r[4] = {
        0x3F6F5A1DAE82AFB3, // 0.0038271503181785626
        0x3FA169980CB6AD4F, // 0.034008742858839917
        0x3FAE1749BD612DCF, // 0.058771423690440742
        0x3FBC71C707F7D5B5, // 0.11111110634359174
    };
    slot<f64> s[5] = {
        0xBEF4FDB537ABC7A3, // -2.0018621834823021e-05
        0xBF82B2EC618E4BAD, // -0.0091303317329101911
        0xBFA4EFA2E563C1BC, // -0.040890779973668384
        0xBFB11084009435E0, // -0.06665825857290697
        0xBFC2492491EE55C7, // -0.14285714269196445
    };
};
QUEVAR_CONSTANTS(QuarterConstants, quarters){};

// In z = w^2, atan w = w + w (q z + p z^2 + s z^3 + r z^4 + ...), with chains p, q, r, s in z^4: for w in
// [-1, 1] within 2^-53.77 of itself.
// Worst: 0x3FFB4BE852ADA565, 1.7060321073170936, and 0x3FFB450861D032CC, 1.704353696902376, give
// 0x3FE926036F8A0634, wanted 0x3FE926036F8A0637: 3.2612 ulps.
struct Division {
    template <class V> static V arctangent(V a, V b, V offset) {
        const auto &k = read_for(a, quarters);
        const V w = a / b, z = w * w, z2 = z * z, z4 = z2 * z2;
        const V odd = fma(z, polynomial(z4, k.s), polynomial(z4, k.p));
        const V even = fma(z, polynomial(z4, k.q), z4 * polynomial(z4, k.r));
        return offset + fma(w, fma(z2, odd, even), w);
    }
};

// Worst, as the polynomials' constant terms are not 1:
//     float     0xBF7BAF51, -0.983143866, and 0x46FBAF8B, 32215.7715, give 0xB7FFF108,
//               wanted 0xB7FFFFC5: 3773.0 ulps
//     double    0x3FE0000000000000, 0.5, and 0x4320000000000001, 2251799813685248.5, give 0x3CAFFFFFFEB3A843,
//               wanted 0x3CAFFFFFFFFFFFFE: 2.178e7 ulps
template <const auto &P> struct Estimate {
    template <class V> static V arctangent(V a, V b, V offset) {
        const V w = a * reciprocal(b);
        return fma(w, P(w), offset);
    }
};

QUEVAR_EXPORT(atan2, f, , binary, f32, f32, void, Angle<DivisionF, f32>)
QUEVAR_EXPORT(atan2, f, _native, binary, f32, f32, void, Angle<Estimate<radians_nativef>, f32>)
QUEVAR_EXPORT(atan2, , , binary, f64, f64, void, Angle<Division, f64>)
QUEVAR_EXPORT(atan2, , _native, binary, f64, f64, void, Angle<Estimate<radians_native>, f64>)

QUEVAR_INLINE_END
} // namespace quevar::atan2
