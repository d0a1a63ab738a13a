// atanpi and atanpif: the arctangent in half turns.
#include "atan_core.hpp"
#include "atanf_core.hpp"

namespace quevar::atanpi {
QUEVAR_INLINE_BEGIN

using namespace invcircular;

// x/pi, which is the result where the arctangent is x.
inline f32 tiny(f32 x) { return (f32)(x * one_over_pi); }
// With 1/pi in two parts. The product is made 2^82 times too large, so that only its last step rounds to the
// places of a denormal.
inline f64 tiny(f64 x) {
    const f64 a = __builtin_fabs(x);
    const f64 u = ((1 + a) * a) * two_to(82), h = upper_half(u), l = u - h;
    const f64 m = one_over_pi2 * l + h * one_over_pi2 + one_over_pi1 * l;
    return __builtin_copysign((one_over_pi1 * h + m) * two_to(-82), x);
}

// Of |x|, with the sign put back at the end: w = |x| up to 1, though multiplied by the reciprocal of 1, which
// the steps do not make exactly 1; beyond it w = -1/|x|, and 1/2 is added. Worst, the estimate being what it
// is on the processor at hand:
//     float            0x3F7E3E1E, 0.993135333, gives 0x3E7EE099, wanted 0x3E7EE09C: 3.2680 ulps
//     float _native    0x39C90FC3, 0.000383494509, gives 0x38FFF124, wanted 0x38FFFFE1: 3773.1 ulps
//     double           0x3FEFBC4B7FC9AB95, 0.99173521956014332, gives 0x3FCFD4B81060F182,
//                      wanted 0x3FCFD4B81060F17F: 3.0776 ulps
//     double _native   0xBE8921F391E48723, -1.8725263201910237e-07, gives 0xBE6FFFF61D928489,
//                      wanted 0xBE6FFFF61EDEDBDE: 2.178e7 ulps
template <class Tier, class T> struct HalfTurns {
    static constexpr int in_turn_after_mask = 4;

    template <class V> static auto main(V x) {
        const auto &k = constants_for(x);
        const V a = x & k.magnitude, one = k.one;
        const auto large = as_int(a) > as_int(one);
        const V w = select(large, k.minus_one, a) * Tier::reciprocal(max(a, one));
        const V r = fma_unless_scalar(Tier::polynomial(w), w, select(large, k.half, V{}));
        return flagged(r | (x ^ a), extreme(a));
    }

    [[gnu::noinline]] static void rare(const T *x, T *r) {
        if (is_nan(*x)) *r = *x + *x;
        else if (*x > 1) *r = T(0.5);
        else if (*x < -1) *r = T(-0.5);
        else *r = tiny(*x);
    }
};

template <const auto &P> struct Newton {
    template <class V> static V reciprocal(V x) { return reciprocal_unless_scalar(x); }
    static constexpr const auto &polynomial = P;
};
struct FourTerms : Newton<half_turns> {
    template <class V> static V reciprocal(V x) { return close_reciprocal_unless_scalar(x); }
};

QUEVAR_EXPORT(atanpi, f, , unary, f32, f32, void, HalfTurns<Newton<half_turnsf>, f32>)
QUEVAR_EXPORT(atanpi, f, _native, unary, f32, f32, void, HalfTurns<Newton<half_turns_nativef>, f32>)
QUEVAR_EXPORT(atanpi, , , unary, f64, f64, void, HalfTurns<FourTerms, f64>)
QUEVAR_EXPORT(atanpi, , _native, unary, f64, f64, void, HalfTurns<Newton<half_turns_native>, f64>)

QUEVAR_INLINE_END
} // namespace quevar::atanpi
