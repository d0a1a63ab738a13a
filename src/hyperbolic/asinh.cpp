// asinh: the inverse hyperbolic sine, ln(x + sqrt(x^2 + 1)) = ln(1 + v).
#include "asinh_core.hpp"

namespace quevar::asinh {

QUEVAR_INLINE_BEGIN

struct Constants : RootConstants {
    slot<f64> half{0x3FE0000000000000};
    slot<f64> small{0x3F60000000000000}; // 2^-9
    // ((1 - e)^(-1/2) - 1)/e
    slot<f64> series[5] = {
        0x3FCF800000000000, // 0.24609375
        0x3FD1800000000000, // 0.2734375
        0x3FD4000000000000, // 0.3125
        0x3FD8000000000000, // 0.375
        0x3FE0000000000000, // 0.5
    };
};
QUEVAR_CONSTANTS(Constants, constants){};

// The series of the root is right to 2e-19 for |e| up to 2^-10.
// Worst found: 0x3F3FFFEEE7B624AC, 0.00048827726978879315, gives 0x3F3FFFEED260F1AA, wanted ...AE: 3.5708 ulps. There
// the rounding of v counts twice, and that of the table's row.
// Worst found of the native tier: 0x3F3FFD00AE91BA5A, 0.00048810259483548157: 263402 ulps.
template <class Tier> struct Inverse {
    static constexpr int in_turn_after_mask = 2;

    template <class V> static auto main(V x) {
        const auto &k = read_for(x, constants);
        const V one = k.one, a = x & k.magnitude;
        // 1 + x^2 in two parts, the high one short.
        const V q = x * x, q_low = fms(x, x, q);
        const V w = one + q, high = w & k.upper_29;
        const auto [g, m, e] = root(Sum<V>{high, (q_low + (q + (one - w))) + (w - high)}, k);
        // sqrt(1 + x^2) - 1: from the root, and for small x as h - h^2/2 + h^3/2 with h = x^2/2.
        const V by_root = fma(g + m, e * polynomial(e, k.series), m) + (g - one);
        const V h = (q + q_low) * k.half, h2 = h * h;
        const V by_series = fma_unless_scalar(fms(h2, h, h2), k.half, h);
        const V v = a + select(a <= k.small, by_series, by_root);
        return flagged(logarithm_of_1_plus<Tier>(v, a, k) ^ (x ^ a), ~(a <= k.largest));
    }

    // Infinities remain, NaNs are quieted.
    static void rare(const f64 *x, f64 *r) { *r = is_nan(*x) ? *x * *x : *x; }
};

QUEVAR_INLINE_END

QUEVAR_EXPORT(asinh, , , unary, f64, f64, void, Inverse<Close>)
QUEVAR_EXPORT(asinh, , _native, unary, f64, f64, void, Inverse<Loose>)

} // namespace quevar::asinh
