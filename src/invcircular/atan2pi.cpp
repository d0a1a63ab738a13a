// atan2pi and atan2pif: the angle of the point (x, y) in half turns.
#include "atan2_rare.hpp"
#include "atan_core.hpp"
#include "atanf_core.hpp"

namespace quevar::atan2pi {
QUEVAR_INLINE_BEGIN

using namespace invcircular;

// The sum of the four products of two values in two parts each.
inline f64 product(Parts a, f64 b1, f64 b2) { return b2 * a.low + b2 * a.high + b1 * a.low + b1 * a.high; }

struct RareHalfTurnsF : RareRadians<f32> {
    static f32 rounded(f64 angle) { return (f32)(angle * one_over_pi); }
};

struct RareHalfTurns {
    static f64 quarters(int n) { return 0.25 * n; }
    static f64 upright(f64 low) {
        return ((one_over_pi2 * low + half_pi * one_over_pi2) + one_over_pi1 * low) + half_pi * one_over_pi1;
    }
    static f64 sum(Parts a) {
        const f64 high = upper_half(a.high);
        return product({high, a.low + (a.high - high)}, one_over_pi1, one_over_pi2);
    }
    static f64 rounded(f64 value) { return value; }

    // y/x in two parts over pi. Where a step would lose bits below the least normal number, or overflow, it
    // is done 2^82 times larger or smaller.
    static f64 small(f64 y, f64 x) {
        const f64 up = two_to(82), down = two_to(-82);
        f64 c1 = one_over_pi1, c2 = one_over_pi2;
        if (exponent_field(y) <= 53) y *= up, c1 *= down, c2 *= down;
        const bool large_x = exponent_field(x) >= 2017;
        if (large_x) x *= down;

        const f64 yh = upper_half(y), yl = y - yh, xh = upper_half(x);
        Parts r = reciprocal(xh, x - xh), q;
        const auto multiply = [&] {
            const f64 h = yh * r.high, t = yl * r.low + r.low * yh + yl * r.high;
            q.high = h + t, q.low = t + (h - q.high);
        };
        multiply();
        const bool low = exponent_field((large_x ? q.high * down : q.high) * c1) < 61;
        if (low) {
            r = {r.high * up, r.low * up};
            multiply();
        }
        const f64 high = upper_half(q.high);
        f64 value = product({high, (q.high - high) + q.low}, c1, c2);
        if (low) value *= down;
        if (large_x) value *= down;
        return value;
    }
};

// As in atan2, but for the diagonal, which is with what lies below it.
template <class Tier, class Rare, class T> struct Angle {
    static constexpr bool in_turn = true, in_order_in_memory = true;

    template <class V> static auto main(V y, V x) {
        const auto &k = constants_for(x);
        const V ax = x & k.magnitude, ay = y & k.magnitude;
        const auto above = as_int(ay) > as_int(ax);
        const V w = Tier::quotient(select(above, ax ^ k.sign, ay), select(above, ay, ax));
        const V s = fma_unless_scalar(Tier::polynomial(w), w, select(above, k.half, V{}));
        const V angle = select(as_int(x) < typename V::mask{}, k.one, V{}) + (s | (x & k.sign));
        return flagged(angle | (y & k.sign), extreme(ax) | extreme(ay));
    }

    [[gnu::noinline]] static void rare(const T *y, const T *x, T *r) { *r = rare_arctangent2<Rare>(*y, *x); }
};

// Worst: 0x3FED2FA6, 1.85301661, and 0x3FEED35A, 1.86582494, give 0x3E7EE099, wanted 0x3E7EE09C: 2.9444 ulps.
struct DivisionF {
    template <class V> static V quotient(V a, V b) { return a / b; }
    static constexpr const auto &polynomial = half_turnsf;
};
// Worst, as the polynomials' constant terms are not 1/pi:
//     float     0xBEB469F4, -0.352370858, and 0x4AE5C0D3, 7528553.5, give 0xB27FE4F6,
//               wanted 0xB27FF3B2: 3772.2 ulps
//     double    0xA2D9176B94F0734D, -8.2305414902587779e-141, and 0x400000000000000B, 2.0000000000000049,
//               give 0xA2AFF28D7A13D405, wanted 0xA2AFF28D7B5FA018: 2.175e7 ulps
template <const auto &P> struct Newton {
    template <class V> static V quotient(V a, V b) { return a * reciprocal_unless_scalar(b); }
    static constexpr const auto &polynomial = P;
};
// Worst: 0x3FFDE95BF947E46E, 1.869472478631248, and 0x3FFDEC3A429597B6, 1.8701727486563704, give
// 0x3FCFFE0BFE7B4EC9, wanted 0x3FCFFE0BFE7B4EC5: 3.8457 ulps.
struct FourTerms : Newton<half_turns> {
    template <class V> static V quotient(V a, V b) { return a * close_reciprocal_unless_scalar(b); }
};

QUEVAR_EXPORT(atan2pi, f, , binary, f32, f32, void, Angle<DivisionF, RareHalfTurnsF, f32>)
QUEVAR_EXPORT(atan2pi, f, _native, binary, f32, f32, void,
              Angle<Newton<half_turns_nativef>, RareHalfTurnsF, f32>)
QUEVAR_EXPORT(atan2pi, , , binary, f64, f64, void, Angle<FourTerms, RareHalfTurns, f64>)
QUEVAR_EXPORT(atan2pi, , _native, binary, f64, f64, void,
              Angle<Newton<half_turns_native>, RareHalfTurns, f64>)

QUEVAR_INLINE_END
} // namespace quevar::atan2pi
