// rootn: the n-th root of x for a 32-bit integer n. The main path computes with the magnitude of x.
#include "pown_core.hpp"

namespace quevar::rootn {
QUEVAR_INLINE_BEGIN

using namespace power;

inline f64 integer_root(f64 x, i32 n) {
    const bool odd = n & 1;
    if (n == 0) return default_nan();
    if (x == 0 && !odd) return n > 0 ? 0 : 1 / at_run_time(0.0);
    if (x == 0 || (is_infinite(x) && odd)) return n > 0 ? x : 1 / x;
    if (is_negative(x) && !odd) return default_nan();
    const f64 sign = is_negative(x) ? -1 : 1, a = __builtin_fabs(x);
    if (a == 1) return sign;
    if (is_nan(x)) return quiet(a);
    if (!is_finite(x)) return n > 0 ? a : 0;
    const f64 N = n, y = 1 / N;
    Split Y(y);
    const f64 e = 1 - N * Y.high;
    Y.low = Y.high * ((e + 1) * e); // 1/N has more digits than y
    return sign * rare_power<Denormals::scaled_first>(a, y, Y, 1);
}

struct Special {
    [[gnu::noinline]] static void rare(const f64 *x, const i32 *n, f64 *r) { *r = integer_root(*x, *n); }
};

// The magnitude of x for odd n; for even n x itself, which is special if it is negative.
template <class V, class I> V radicand(V x, I n) { return as_float(as_int(x) & ~(convert<i64>(n) << 63)); }

// The polynomials are those of pown.
// Worst: 0x402400000000001A, -34 (10) gives 0x3FEDE794D700ACF6, wanted 0x3FEDE794D700ACF7: 0.5083 ulp.
struct ThreeParts : Special {
    static constexpr bool in_turn = true;

    template <class V, class I> static auto main(V x, I n) {
        const auto &k = read_for(x, three_parts_constants);
        const V a = magnitude(k, x), N = convert<f64>(n), one = k.one;
        const auto [l1, l2, l3] = long_logarithm(k, a);
        // 1/N in two parts, the first half a double; n = 0 makes it NaN, and P with it.
        const V y = one / N, g = y * k.splitter, y_high = g - (g - y);
        const V d = fnma_unless_scalar(y_high, N, one), y_low = y_high * (d * (one + d));
        // log2(x) / N = P + e.
        const V P = l1 * y_high;
        const V e = fma_unless_scalar(l3, y_high, fma(l1, y_low, fma(l2, y_high, y_low * l2)));
        const auto &c = read_for(P, three_parts_constants);
        const V shifted = P + c.shifter, r = (P - (shifted - c.shifter)) + e;
        const auto [high, low] = split_power(c, shifted);
        const V r2 = r * r;
        V v = fma_unless_scalar((r2 * r2) * fma(r, c.e5, c.e4), high, low);
        v = fma_unless_scalar(r2 * fma(r, c.e3, c.e2), high, v);
        v = fma_unless_scalar(r * c.e1, high, v);
        const V result = scale_of(c, shifted) * (high + v);
        return flagged(as_float(as_int(result) | parity_sign(x, n)),
                       outside_normal(c, radicand(x, n)) | size_beyond(c, P, c.last_root));
    }
};

// Worst: 0x0010000000000001, -7 (2.2e-308) gives 0x490FFFFFFC27DCED, wanted 0x4910000000000000: 6.45e7 ulp.
struct Plain : Special {
    static constexpr bool in_turn = true;

    template <class V, class I> static auto main(V x, I n) {
        const auto &k = read_for(x, plain_constants);
        const V a = radicand(x, n), y = V(k.one) / convert<f64>(n);
        const V p = y * plain_logarithm<Degree::third>(k, a);
        return flagged(as_float(as_int(plain_exponential(k, p)) | as_int(x ^ a)),
                       outside_normal(k, a) | size_beyond(k, p, k.last_product));
    }
};

QUEVAR_EXPORT(rootn, , , with_int, f64, f64, void, ThreeParts)
QUEVAR_EXPORT(rootn, , _native, with_int, f64, f64, void, Plain)

QUEVAR_INLINE_END
} // namespace quevar::rootn
