// pownf: x to the power of the whole number n.
#include "powf_rare.hpp"
#include "pownf_core.hpp"

namespace quevar::pownf {
QUEVAR_INLINE_BEGIN

using namespace powerf;

struct Special {
    [[gnu::noinline]] static void rare(const f32 *x, const i32 *n, f32 *r) { *r = any_power(*x, *n); }

    static f32 any_power(f32 x, i32 n) {
        if (n == 0 || x == 1) return 1;
        if (is_nan(x)) return quiet(x);
        const f32 sign = as_int(x) < 0 && n % 2 ? -1 : 1;
        if (x == 0 || !is_finite(x)) return sign * ((x == 0) == (n < 0) ? infinity() : 0);
        if (x == -1) return sign;
        // What n loses in y goes into its low half. 2^31 is no int, but leaves the difference as it is mod
        // 2^32.
        const f32 y = (f32)n;
        const i32 lost = (i32)((u32)n - (u32)_mm_cvttss_si32(_mm_set_ss(y)));
        const Halves yy(y);
        const Log2 log(x);
        return power<scaled_after_sum>(log, y, multiply(log, y, yy.high, yy.low + (f32)lost), sign);
    }
};

QUEVAR_CONSTANTS(TwoPartConstants, constants){
    .exp =
        {
            0x3C0950EF, // 0.00838111248
            0x3D2BB1B6, // 0.0419175252
            0x3E2AA9C6, // 0.166663259
            0x3EFFFE85, // 0.499988705
            0x3F800001, // 1.00000012
            0x3F800001, // 1.00000012
        },
};

// Worst: 0x3F7DF439, 0.992007792, to -10750 gives 0x7DAEB85A, wanted 0x7DAEB866: 12.3744 ulp.
struct TwoPartLog : Special {
    static constexpr bool in_turn = true;

    template <class V, class I> static auto main(V x, I n) {
        const auto &k = read_for(x, constants);
        const V y = convert<f32>(n), lost = convert<f32>(n - to_i32(y)), a = x & k.magnitude;
        const auto [log, log_low] = log_in_two_parts(a, k);
        const auto [y_high, y_rest] = split(y, k);
        const V y_low = lost + y_rest, product = log * y_high;
        const V low = fma(y_high, log_low, fma(y_low, log, log_low * y_low));
        return flagged(exp_in_two_parts(product, low, sign_of_power(x, n), k),
                       outside_normal(a, k) | beyond_limit(product, k));
    }
};

// Worst: 0x3FAAB236, 1.33356357, to -301 gives 0x00FFB350, wanted 0x00FFC690: 4927.8061 ulp.
struct PlainFloats : Special {
    static constexpr bool in_turn = true;

    template <class V, class I> static auto main(V x, I n) {
        const auto &k = read_for(x, pownf_plain_constants);
        const V a = x & k.magnitude, product = convert<f32>(n) * log_in_plain_floats(a, k);
        return flagged(exp_by_series(product, k) | sign_of_power(x, n),
                       outside_normal(a, k) | beyond_limit(product, k));
    }
};

QUEVAR_EXPORT(pown, f, , with_int, f32, f32, void, TwoPartLog)
QUEVAR_EXPORT(pown, f, _native, with_int, f32, f32, void, PlainFloats)

QUEVAR_INLINE_END
} // namespace quevar::pownf
