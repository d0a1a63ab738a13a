// pown: x to the power n of a 32-bit integer. The main path computes with the magnitude of x.
#include "pown_core.hpp"

namespace quevar::pown {
QUEVAR_INLINE_BEGIN

using namespace power;

inline f64 integer_power(f64 x, i32 n) {
    if (n == 0 || x == 1) return 1;
    if (is_nan(x)) return quiet(x);
    const f64 y = n, sign = is_negative(x) && n & 1 ? -1 : 1;
    if (x == 0) return n > 0 ? sign * 0 : sign / at_run_time(0.0);
    if (x == -1) return sign;
    if (is_finite(x)) return rare_power<Denormals::summed_first>(__builtin_fabs(x), y, Split(y), sign);
    return n > 0 ? y * (x * x) * sign : sign * 0;
}

struct Special {
    [[gnu::noinline]] static void rare(const f64 *x, const i32 *n, f64 *r) { *r = integer_power(*x, *n); }
};

// The polynomials: log2((c + w)/c) for |w| < 0.00071 to a relative 2^-65, 2^r for |r| <= 2^-8 to 2^-60.
// Worst: 0x3FF001AAB4014F53, 1669504 (1.0004069) gives 0x7D2EB37EF69D548F, wanted 0x7D2EB37EF69D548D: 1.512
// ulp.
struct ThreeParts : Special {
    static constexpr bool in_turn = true;

    template <class V, class I> static auto main(V x, I n) {
        const auto &k = read_for(x, three_parts_constants);
        const V a = magnitude(k, x), y = convert<f64>(n);
        const auto [l1, l2, l3] = long_logarithm(k, a);
        // y log2 x = P + e, where P is exact.
        const V y_high = upper_half(k, y), y_low = y - y_high, P = l1 * y_high;
        const V e = fma_unless_scalar(l3, y, fma(l1, y_low, fma(l2, y_high, l2 * y_low)));
        const auto &c = read_for(P, three_parts_constants);
        const V shifted = P + c.shifter, r = (P - (shifted - c.shifter)) + e;
        const V t = scale_of(c, shifted) * get<0>(split_power(c, shifted));
        const V p = fma(r, fma(r, fma(r, fma(r, c.e5, c.e4), c.e3), c.e2), c.e1);
        const V result = fma(r * t, p, t);
        return flagged(as_float(as_int(result) | parity_sign(x, n)),
                       outside_normal(c, magnitude(c, x)) | size_beyond(c, P, c.last_power));
    }
};

// Worst: 0x3FEFF70070383BA4, 618082 (0.99890158) gives 0x02AFD8273213C9B6, wanted 0x02AFD826B63CB155: 2.078e9
// ulp.
struct Plain : Special {
    static constexpr bool in_turn = true;

    template <class V, class I> static auto main(V x, I n) {
        const auto &k = read_for(x, plain_constants);
        const V a = magnitude(k, x), p = convert<f64>(n) * plain_logarithm<Degree::third>(k, a);
        return flagged(as_float(as_int(plain_exponential(k, p)) | parity_sign(x, n)),
                       outside_normal(k, a) | size_beyond(k, p, k.last_product));
    }
};

QUEVAR_EXPORT(pown, , , with_int, f64, f64, void, ThreeParts)
QUEVAR_EXPORT(pown, , _native, with_int, f64, f64, void, Plain)

QUEVAR_INLINE_END
} // namespace quevar::pown
