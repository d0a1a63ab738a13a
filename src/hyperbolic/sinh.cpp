// sinh: the hyperbolic sine.
#include "sinh_core.hpp"

namespace quevar::sinh {

QUEVAR_INLINE_BEGIN

// sinh F and e^-F/2 for F = ln 2 j/128.
using SinhRows = table<f64, 2, 128>;
QUEVAR_CONSTANTS(SinhRows, sinh_rows) = {{
#include "tables/sinh_rows.inc"
}};

struct Constants : SplitConstants {
    slot<f64> shifter{0x42C8000000000000};  // 1.5 * 2^45: what is added is rounded to 128ths
    slot<f64> ln2_high{0x3FE62E42FEFA0000}; // 0.6931471805582987: its product with a 128th is exact
    slot<f64> ln2_low{0x3D7CF79ABC9E3B3A};  // 1.6465949582897082e-12
    slot<i64> row{0x7F};
    // sinh r = r + r u to a relative 3.1e-21 for |r| up to ln 2/256.
    slot<f64> u[2] = {
        0x3F8111115712F425, // 0.008333335370815995
        0x3FC55555555554AD, // 0.166666666666662
    };
};
QUEVAR_CONSTANTS(Constants, constants){};

// |x| = n ln 2 + r with n = m + j/128. Of M = m ln 2 and F = j/128 ln 2 the terms of the sum are
// sinh(M + F) = e^-F sinh M + e^M sinh F and cosh(M + F) = e^-F cosh M + e^M sinh F, and
// sinh(M + F + r) = sinh(M + F) + (sinh(M + F) (cosh r - 1) + cosh(M + F) sinh r).
//
// Worst found: 0x3F6FCA18555BEB23, 0.003880546118009491, gives 0x3F6FCA1D8FEAFAAC, wanted ...AE: 1.8907 ulps.
struct TableAndSeries {
    static constexpr int in_turn_after_mask = 2;

    template <class V> static auto main(V x) {
        const auto &k = read_for(x, constants);
        const V a = x & k.magnitude, sign = x ^ a;
        const V v = fma(a, k.one_over_ln2, k.shifter), n = v - k.shifter;
        const V r = fnma(n, k.ln2_low, fnma(n, k.ln2_high, a));

        const auto j = as_int(v) & k.row, m = (as_int(v) ^ j) << 45;
        const auto [sinh_f, half_exp_f] = fetch(sinh_rows, j);
        // Times 2^m and 2^-m by their exponent fields. A zero becomes 2^(m - 1023), which does not matter.
        const V greater = as_float(as_int(half_exp_f) + m), lesser = as_float(as_int(half_exp_f) - m);
        const V term = as_float(as_int(sinh_f) + m);
        const V sinh_n = term + (greater - lesser), cosh_n = term + (greater + lesser);

        const V q = r * r, u = q * polynomial(q, k.u), sinh_r = fma(r, u, r);
        const V y = fma(cosh_n, sinh_r, cosh_less_1(q, k) * sinh_n);
        return flagged((sinh_n + y) | sign, beyond_limit(a));
    }

    [[gnu::noinline]] static void rare(const f64 *x, f64 *r) {
        const f64 a = __builtin_fabs(*x);
        if (exponent_field(*x) == format<f64>::field_max) *r = *x + *x;
        else if (!(a < overflow_bound)) *r = largest() * *x;
        else *r = __builtin_copysign(half_exp(a), *x);
    }
};

QUEVAR_INLINE_END

QUEVAR_EXPORT(sinh, , , unary, f64, f64, void, TableAndSeries)
QUEVAR_EXPORT(sinh, , _native, unary, f64, f64, void, TableAndSeries)

} // namespace quevar::sinh
