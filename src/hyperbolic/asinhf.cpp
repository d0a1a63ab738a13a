// asinhf: the inverse hyperbolic sine, ln(x + sqrt(x^2 + 1)) = ln(1 + v).
#include "asinhf_core.hpp"

namespace quevar::asinhf {

QUEVAR_INLINE_BEGIN

QUEVAR_CONSTANTS(slot<f32>, small){0x3D800000}; // 0.0625

// Worst: 0x3DFFE47B, 0.124947511, gives 0x3DFF3B35, wanted 0x3DFF3B37: 2.0860 ulps.
// Worst of the native tier: 0x3E667CEA, 0.225085884: 1468.2 ulps.
template <const auto &polynomial_of_log> struct Inverse {
    static constexpr int in_turn_after_mask = 2;

    template <class V> static auto main(V x) {
        const auto &k = root_constants;
        const V one = log_constants.one, a = x & k.magnitude;
        // 1 + x^2 in two parts, the high one short.
        const V q = x * x, q_low = fms(x, x, q);
        const V w = one + q, high = w & k.upper_half;
        const auto [g, m, e] = root(Sum<V>{high, (q_low + (q + (one - w))) + (w - high)});
        // sqrt(1 + x^2) - 1 in two parts: from the root, and for small x as h - h^2/2 + h^3/2 with h = x^2/2.
        const V g_less_1 = g - one, low = fma(g + m, series(e), m);
        const V sum = low + g_less_1, sum_low = low + (g_less_1 - sum);
        const V h = (q + q_low) * k.half, h2 = h * h, c = fms(h2, h, h2) * k.half;
        const V small_sum = h + c, small_low = c + (h - small_sum);
        const auto is_small = a <= small;
        const V root_less_1 = select(is_small, small_sum, sum), rest = select(is_small, small_low, sum_low);

        const V v = a + root_less_1, v_low = rest + (root_less_1 + (a - v));
        const Sum<V> argument = one_plus(v);
        const V r = logarithm_of<polynomial_of_log>(Sum<V>{argument.high, v_low + argument.low}, a);
        return flagged(r ^ (x ^ a), ~(a <= k.largest));
    }

    // Infinities remain, NaNs are quieted.
    static void rare(const f32 *x, f32 *r) { *r = is_nan(*x) ? *x * *x : *x; }
};

QUEVAR_INLINE_END

QUEVAR_EXPORT(asinh, f, , unary, f32, f32, void, Inverse<polynomial_of_degree_9>)
QUEVAR_EXPORT(asinh, f, _native, unary, f32, f32, void, Inverse<polynomial_of_degree_5>)

} // namespace quevar::asinhf
