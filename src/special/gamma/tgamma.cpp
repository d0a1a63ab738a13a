// tgamma: the gamma function.
#include "tgamma_scalar.hpp"
#include "two_parts.hpp"

namespace quevar::tgamma {
QUEVAR_INLINE_BEGIN

struct Special {
    [[gnu::noinline]] static void ordinary(const f64 *x, f64 *r) { *r = value(*x); }

    [[gnu::noinline]] static void rare(const f64 *x, f64 *r) {
        const f64 zero = at_run_time(0.0), big = at_run_time(0x1p1000), small = at_run_time(0x1p-1000);
        const u64 sign = as_uint(*x) & format<f64>::sign, magnitude = as_uint(*x) & ~format<f64>::sign;
        const f64 a = as_float(magnitude);
        if (magnitude >= format<f64>::exponent) {
            *r = as_uint(*x) == 0xFFF0000000000000 ? zero / zero : *x + *x;
        } else if (magnitude == 0) {
            *r = as_float(sign | as_uint(1.0)) / zero;
        } else if (magnitude <= 0x0004000000000000) { // 2^-1024
            *r = as_float(sign | as_uint(big)) * big;
        } else if (sign && (a >= 0x1p52 || a == (f64)(i64)a)) { // a pole
            *r = zero / zero;
        } else if (*x < -185) {
            *r = ((i64)a & 1 ? small : -small) * small;
        } else if (*x >= 0x406573FAE561F648_f64) { // 171.62437695630274
            *r = big * big;
        } else {
            in_full_precision([=] { ordinary(x, r); });
        }
    }
};

// gamma(1.125 + j/4 + s), |s| <= 1/8, by the quarter j: the coefficients from the highest, the last four in two
// parts each. The error is below 2^-63 of the value.
struct Quarters {
    row_slot_of_4_doubles coefficient[20];
};
QUEVAR_CONSTANTS(Quarters, quarters) = {{
#include "tables/tgamma_quarters.inc"
}};

struct Constants {
    slot<f64> one{0x3FF0000000000000};
    slot<f64> four{0x4010000000000000};
    slot<f64> magnitude{0x7FFFFFFFFFFFFFFF};
    slot<f64> least{0x3FC0000000000000}; // 0.125
    slot<f64> limit{0x4035000000000000}; // 21
    slot<f64> quarter{0x3FD0000000000000};
    slot<f64> eighth{0x3FC0000000000000};
    slot<f64> relative{0x3C52000000000000}; // 72 * 2^-64
};
QUEVAR_CONSTANTS(Constants, constants){};

// From 0.125 to 21 as gamma(1 + f) (x - 1) (x - 2) ... (1 + f), f the fraction of x, or gamma(1 + x)/x, with twice
// the digits of a double. The scalar form's value, before it is rounded, differs by less than 72 * 2^-64 of it: 50 for
// the roundings and the fit of gamma(16k + f) and the products, or 59 for the roundings below 2, with that of the
// argument next to the minimum; the rest is this form's. Where all values so near round to the same number, that is
// the result.
//
// Worst: 0xC01E0059644FE009, -7.5003410028221049, gives 0x3F2D51D0C146A066, wanted 0x3F2D51D0C146A067: 0.5084 ulp.
struct Vector : Special {
    static constexpr int most_factors = 19;

    template <class D> static TwoParts<D> between_one_and_two(D f, const Constants &k) {
        const D quarter = round<toward_zero>(f * k.four);
        const D s = f - fma(quarter, k.quarter, k.eighth);
        const auto words = row_slot_of_4_doubles::words_of(convert<i64>(truncated_to_i32(quarter)));
        const auto c = [&](int i) { return quarters.coefficient[i][words]; };
        D tail = c(0);
#pragma clang loop unroll(full)
        for (int i = 1; i < 12; i++) tail = fma(tail, s, c(i));
        TwoParts<D> p = multiply_add(tail, s, c(12), c(13));
#pragma clang loop unroll(full)
        for (int i = 14; i < 20; i += 2) p = multiply_add(p, s, c(i), c(i + 1));
        return p;
    }

    template <class D> static auto main(D x) { return flagged(x, all_lanes(x)); }
    template <class D> static auto settle(D x, D) {
        const auto &k = constants;
        const D one = k.one, a = max(min(x, k.limit), k.least), whole = round<toward_zero>(a);
        TwoParts<D> p = between_one_and_two(a - whole, k);
        D factor = a;
#pragma clang loop unroll(full)
        for (int i = 0; i < most_factors; i++) {
            factor = factor - one;
            p = p * max(factor, one); // 1 + f is the last factor
        }
        const D divisor = min(a, one), reciprocal = one / divisor, quotient = p.high * reciprocal;
        const D rest = fnma(quotient, divisor, p.high) + p.low;
        const auto r = rounded(TwoParts<D>{quotient, rest * reciprocal}, quotient * k.relative);
        return flagged(r.first, ~(r.special & (x == a) & (x < k.limit)));
    }
};

QUEVAR_EXPORT(tgamma, , , unary, f64, f64, void, Vector)

QUEVAR_INLINE_END
} // namespace quevar::tgamma
