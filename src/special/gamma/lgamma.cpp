// lgamma and lgammar: the logarithm of the gamma function's magnitude, and the sign beside it.
#include "lgamma_scalar.hpp"
#include "two_parts.hpp"

namespace quevar::lgamma {
QUEVAR_INLINE_BEGIN

struct Special {
    [[gnu::noinline]] static void compute(const f64 *x, f64 *r) { *r = value(*x); }

    [[gnu::noinline]] static void rare(const f64 *x, f64 *r) {
        in_full_precision([=] { compute(x, r); });
    }
    [[gnu::noinline]] static void rare(const f64 *x, f64 *r, i32 *sign) {
        rare(x, r);
        *sign = sign_of_gamma(*x);
    }
};

// lgamma(c + s) with c = 2^k (1 + j/8), k from -1, |s| <= 2^k/16: the coefficients from the highest, the last three in
// two parts each.
using Eighths = table<f64, 16, 80>;
QUEVAR_CONSTANTS(Eighths, eighths) = {{
#include "tables/lgamma_eighths.inc"
}};

struct Constants {
    slot<f64> least{0x3FDF000000000000}; // 0.484375
    slot<f64> limit{0x407EFFFFFFFFFFFF}; // below 496
    slot<f64> four{0x4010000000000000};
    slot<u64> half_step{0x0001000000000000};
    slot<u64> steps{0xFFFE000000000000};
    slot<i32> first_row{0x3FE00000 >> 17};
    slot<f64> magnitude{0x7FFFFFFFFFFFFFFF};
    slot<f64> relative{0x3C58000000000000};           // 96 * 2^-64
    slot<f64> relative_from_four{0x3C4C000000000000}; // 56 * 2^-64
};
QUEVAR_CONSTANTS(Constants, constants){};

// From 0.484375 to 496, with some more digits than a double has. The scalar form's value, before it is rounded, differs
// by less than `relative` of it: the roundings and fits of the scalar form come to 93 * 2^-64 of it before 4 and to 46
// from 4 on, the rest is this form's. Where all values so near round to the same number, that is the result. (At 1
// and 2 the value and the bound are 0.)
//
// Worst: 0xC031000000000002, -17.000000000000007, gives 0xBFEDAB42FBDCAC3B, wanted 0xBFEDAB42FBDCAC3C: 0.5120 ulp.
struct Vector : Special {
    template <class D> static auto main(D x) { return flagged(x, all_lanes(x)); }
    template <class D> static auto settle(D x, D) {
        const auto &k = constants;
        const D a = max(min(x, k.limit), k.least);
        const auto nearest = (as_uint(a) + k.half_step) & k.steps;
        const D s = a - as_float(nearest);
        const auto &&row = fetch(eighths, (high_words(nearest) >> 17) - k.first_row);
        const auto &c = row.column;
        D tail = c[0];
#pragma clang loop unroll(full)
        for (int i = 1; i < 10; i++) tail = fma(tail, s, c[i]);
        TwoParts<D> p = multiply_add(tail, s, c[10], c[11]);
        p = multiply_add(p, s, c[12], c[13]);
        p = multiply_add(p, s, c[14], c[15]);
        const D relative = select(a >= k.four, D(k.relative_from_four), k.relative);
        const auto r = rounded(p, (p.high & k.magnitude) * relative);
        return flagged(r.first, ~(r.special & (x == a)));
    }
};
struct WithSign : Vector {
    template <class D> static auto main(D x) {
        return flagged(x, typename D::template with<i32>{}, all_lanes(x));
    }
    template <class D, class I> static auto settle(D x, D r, I) {
        const auto value = Vector::settle(x, r);
        return flagged(value.first, I::splat(1), value.special);
    }
};

QUEVAR_EXPORT(lgamma, , , unary, f64, f64, void, Vector)
QUEVAR_EXPORT(lgammar, , , unary_pointer, f64, f64, i32, WithSign)

QUEVAR_INLINE_END
} // namespace quevar::lgamma
