// rootnf: the n-th root of x, x to the power 1/n.
#include "powf_rare.hpp"
#include "pownf_core.hpp"

namespace quevar::rootnf {
QUEVAR_INLINE_BEGIN

using namespace powerf;

struct Special {
    [[gnu::noinline]] static void rare(const f32 *x, const i32 *n, f32 *r) { *r = any_root(*x, *n); }

    static f32 any_root(f32 x, i32 n) {
        const bool odd = n % 2, negative = as_int(x) < 0;
        if (n == 0) return default_nan();
        if (x == 0 && !odd) return n > 0 ? 0 : infinity();
        if (negative && !odd) return default_nan();
        if (is_nan(x)) return quiet(x);
        if (x == 0 || !is_finite(x)) return n > 0 ? x : 1 / x;
        const f32 sign = negative ? -1 : 1;
        if (x == sign) return sign;
        const f32 N = (f32)n, y = 1 / N, y_high = Halves(y).high, e = 1 - N * y_high;
        const Log2 log(x);
        return power<scaled_before_sum>(log, y, multiply(log, y, y_high, y_high * ((e + 1) * e)), sign);
    }
};

// Negative x under an even root: nothing of the sign is left for the result.
template <class V> auto no_real_root(V x, V sign) { return as_int(x ^ sign); }

QUEVAR_CONSTANTS(TwoPartConstants, constants){
    .exp =
        {
            0x3C07D9FE, // 0.00829171948
            0x3D2B8392, // 0.0418735221
            0x3E2AACAC, // 0.166674316
            0x3EFFFF34, // 0.49999392
            0x3F7FFFFE, // 0.999999881
            0x3F800000, // 1
        },
};

// Worst: 0x0DB7B723, 1.13223343e-30, root -1 gives 0x71325CDF, wanted 0x71325CE4: 5.3174 ulp.
struct TwoPartLog : Special {
    static constexpr bool in_turn = true;

    template <class V, class I> static auto main(V x, I n) {
        const auto &k = read_for(x, constants);
        const V a = x & k.magnitude, sign = sign_of_power(x, n);
        const auto [log, log_low] = log_in_two_parts(a, k);
        const V N = convert<f32>(n), y = k.one / N, y_high = split(y, k).high;
        const V e = fnma_unless_scalar(y_high, N, k.one), y_low = y_high * (e * (k.one + e));
        const V product = y_high * log;
        const V low = fma(y_high, log_low, fma(y_low, log, y_low * log_low));
        return flagged(exp_in_two_parts(product, low, sign, k),
                       unrecognised(outside_normal(a, k) | beyond_limit(product, k)) | no_real_root(x, sign));
    }
};

// Worst: 0x7CFFF73C, 1.06324017e+37, root 1 gives 0x7CFFF205, wanted 0x7CFFF73C: 1335 ulp.
struct PlainFloats : Special {
    static constexpr bool in_turn = true;

    template <class V, class I> static auto main(V x, I n) {
        const auto &k = read_for(x, pownf_plain_constants);
        const V a = x & k.magnitude, sign = sign_of_power(x, n);
        const V product = (k.one / convert<f32>(n)) * log_in_plain_floats(a, k);
        return flagged(exp_by_series(product, k) | sign,
                       unrecognised(outside_normal(a, k) | beyond_limit(product, k)) | no_real_root(x, sign));
    }
};

QUEVAR_EXPORT(rootn, f, , with_int, f32, f32, void, TwoPartLog)
QUEVAR_EXPORT(rootn, f, _native, with_int, f32, f32, void, PlainFloats)

QUEVAR_INLINE_END
} // namespace quevar::rootnf
