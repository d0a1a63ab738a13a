// cosh: the hyperbolic cosine.
#include "sinh_core.hpp"

namespace quevar::cosh {

using namespace sinh;

QUEVAR_INLINE_BEGIN

// e^F/2 and e^-F/2 for F = ln 2 j/256.
using CoshRows = table<f64, 2, 256>;
QUEVAR_CONSTANTS(CoshRows, cosh_rows) = {{
#include "tables/cosh_rows.inc"
}};

struct Constants : SplitConstants {
    slot<f64> shifter{0x42B8000000000000};  // 1.5 * 2^44: what is added is rounded to 256ths
    slot<f64> ln2_high{0x3FE62E42FEFC0000}; // 0.6931471805728506: its product with 256ths below 2^10 is exact
    slot<f64> ln2_low{0xBDAC610CA86C3899};  // -1.2905320270077144e-11
    slot<i64> row{0xFF};
    slot<i64> exponent{0x7FF0000000000000};
    // sinh r = r + u r^3 to 6.6e-18 for |r| up to ln 2/512.
    slot<f64> u{0x3FC5555570813E14}; // 0.16666667931939172
};
QUEVAR_CONSTANTS(Constants, constants){};

// |x| = n ln 2 + r with n = m + j/256, and
// cosh(n ln 2 + r) = cosh(n ln 2) + (cosh(n ln 2) (cosh r - 1) + sinh(n ln 2) sinh r).
//
// Worst found: 0x4021FC938EB075AA, 8.9933132734684769, gives 0x40AF7114EA0B5AC1, wanted ...C3: 1.5325 ulps.
struct TableAndSeries {
    static constexpr int in_turn_after_mask = 2;

    template <class V> static auto main(V x) {
        const auto &k = read_for(x, constants);
        const V a = x & k.magnitude;
        const V v = fma(a, k.one_over_ln2, k.shifter), n = v - k.shifter;
        const V r = fnma(n, k.ln2_low, fnma(n, k.ln2_high, a));

        const auto [half_exp_f, half_exp_minus_f] = fetch(cosh_rows, as_int(v) & k.row);
        // Times 2^m and 2^-m by their exponent fields.
        const auto m = (as_int(v) << 44) & k.exponent;
        const V greater = as_float(as_int(half_exp_f) + m), lesser = as_float(as_int(half_exp_minus_f) - m);
        const V sinh_n = greater - lesser, cosh_n = greater + lesser;

        const V q = r * r, sinh_r = fma(r, q * k.u, r);
        const V y = fma(cosh_n, cosh_less_1(q, k), sinh_n * sinh_r);
        return flagged(cosh_n + y, beyond_limit(a));
    }

    [[gnu::noinline]] static void rare(const f64 *x, f64 *r) {
        const f64 a = __builtin_fabs(*x);
        if (exponent_field(*x) == format<f64>::field_max) *r = *x * *x;
        else if (!(a < overflow_bound)) *r = largest() * largest();
        else *r = half_exp(a);
    }
};

QUEVAR_INLINE_END

QUEVAR_EXPORT(cosh, , , unary, f64, f64, void, TableAndSeries)
QUEVAR_EXPORT(cosh, , _native, unary, f64, f64, void, TableAndSeries)

} // namespace quevar::cosh
