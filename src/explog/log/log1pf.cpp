// log1pf: the natural logarithm of 1 + x.
#include "logf_core.hpp"
#include "natural.hpp"

namespace quevar::log1pf {
QUEVAR_INLINE_BEGIN

using namespace explog;

struct Special {
    // With one more carried error than the logarithm of a denormal.
    [[gnu::noinline]] static void rare(const f32 *x, f32 *r) {
        const f32 s = *x + 1;
        if (no_finite_logarithm(s, r)) return;
        const Natural<0, f32> d(s);
        const f32 high = d.u + d.a, low = (d.high - (d.a - NaturalSteps<f32>::ln2_high * d.k)) + d.l;
        const f32 rest = low + d.v, lost = d.v - (rest - low);
        const f32 sum = high + rest;
        *r = ((lost + d.q) + (rest - (sum - high))) + sum;
    }
};

// 1 + x = a + b with a short, a = 2^k m with m from 2^-8 to 2^-7, and r is a whole number near 1/m. Then
// ln(1 + x) = k ln 2 - ln r + ln(1 + g) with g = 2^-k r (a + b) - 1 = f + f_low, of which f = r m - 1 is exact. The
// table has -ln r - 119 ln 2 in two parts; the exponent field of a is k + 119.
struct TableConstants {
    slot<f32> one{0x3F800000}, minus_one{0xBF800000};
    slot<f32> magnitude{0x7FFFFFFF}, sign{0x80000000};
    slot<f32> tiny{0x39800000};       // 2^-12: below it 1 + x is short
    slot<f32> upper_bits{0xFFFFFF00}; // 16 of the significand's
    slot<i32> significand{0x007FFFFF}, exponent{0x7F800000};
    slot<i32> binade{0x3B800000}; // 2^-8
    // The table's ln 2 in two parts, times 2^-23, as the exponent is read where it stands in the pattern; its product
    // with the high part is exact.
    slot<f32> ln2_high{0x33B17200}; // 2^-23 0.693145752
    slot<f32> ln2_low{0x2A3FBE00};  // 2^-23 1.42859062e-06
    slot<f32> c[2] = {
        0x3EAAAB39, // 0.333337575
        0xBF000036, // -0.500003219
    };
    // 0 to 2^118, as the least integers.
    slot<i32> positive{0x7FFFFFFF}, range{0xFA7FFFFF};
};
QUEVAR_CONSTANTS(TableConstants, table_constants){};
QUEVAR_CONSTANTS(ReciprocalRows, rows) = {{
#include "tables/log1pf_rows.inc"
}};

// ln(1 + g) to 3.2e-11 for |g| up to 2^-8 and the error of the estimate.
// Worst: 0x3B000AB3, 0.00195376272, gives 0x3AFFD570, wanted 0x3AFFD571: 0.6220 ulp.
struct TableAndCubic : Special {
    static constexpr int in_turn_after_mask = 2;

    template <class V> static auto main(V x) {
        const auto &k = table_constants;
        const V one = k.one, sum = x + one;
        const auto is_tiny = (x & k.magnitude) < k.tiny;
        const V a = sum & (k.upper_bits | as_float(is_tiny)), b = min(one, x) + (max(one, x) - a);

        const auto exponent = as_int(a) & k.exponent;
        const V m = as_float((as_int(a) & k.significand) | k.binade);
        const V r = round<to_nearest>(reciprocal_estimate(m));
        const V scaled = as_float(as_int(r) - (as_int(a) - as_int(m))); // 2^-k r
        const V f = fma(r, m, k.minus_one), f_low = b * scaled;
        const V g = f + f_low, g_low = f_low - (g - f);

        const auto [high, low] = fetch<0x4300>(rows, as_int(r) >> 16);
        const V e = convert<f32>(exponent), c = fma(e, k.ln2_high, high), c_low = fma(e, k.ln2_low, low);
        const V q = fma(g * g, polynomial(g, k.c), g_low);
        const V log = g + c, rest = c_low + (g - (log - c));
        return flagged((log + (q + rest)) | (x & k.sign), as_int(sum) + k.positive > k.range);
    }
};

// 1 + x = a + lost, a = 2^k m with m from 2/3 to 4/3, and f = m + 2^-k lost - 1.
struct PolynomialConstants {
    slot<f32> one{0x3F800000};
    slot<f32> sign{0x80000000};
    slot<i32> two_thirds{0x3F2AAAAB};
    slot<i32> exponent{0xFF800000};
    slot<i32> exponent_of_1{0x3F800000};
    slot<i32> binade{0x01000000}, two_binades{0x01800000};
    slot<f32> c[4] = {
        0x3E612933, // 0.219883725
        0xBE88E8FE, // -0.267402589
        0x3EAA7160, // 0.332896233
        0xBF000000, // -0.5
    };
    slot<f32> ln2_unit{0x33B17218}; // 2^-23 ln 2
};
QUEVAR_CONSTANTS(PolynomialConstants, polynomial_constants){};

// ln(1 + f) to a relative 1e-4 for 1 + f from 2/3 to 4/3.
// Worst: 0xBE628188, -0.221197248, gives 0xBE8002BB, wanted 0xBE7FFF56: 1567.7 ulps.
struct Polynomial : Special {
    template <class V> static auto main(V x) {
        const auto &k = polynomial_constants;
        const V one = k.one, sum = x + one, lost = min(one, x) + (max(one, x) - sum);
        const auto e = (as_int(sum) - k.two_thirds) & k.exponent;
        const V m = as_float(as_int(sum) - e), scale = as_float(k.exponent_of_1 - e);
        const V f = fma_unless_scalar(lost, scale, m - one);
        const V t = fma(f, f * polynomial(f, k.c), f);
        // All but sums from 2^-126 to 2^127: negative patterns become less too, those of the greatest numbers wrap.
        return flagged(fma(convert<f32>(e), k.ln2_unit, t) | (x & k.sign),
                       as_int(sum) + k.binade < k.two_binades);
    }
};

QUEVAR_INLINE_END

QUEVAR_EXPORT(log1p, f, , unary, f32, f32, void, TableAndCubic)
QUEVAR_EXPORT(log1p, f, _native, unary, f32, f32, void, Polynomial)

} // namespace quevar::log1pf
