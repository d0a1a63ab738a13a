// log2f: the logarithm to base 2.
#include "logf_core.hpp"

namespace quevar::log2f {
QUEVAR_INLINE_BEGIN

using namespace explog;

QUEVAR_CONSTANTS(LogRareRows<f32>, rare_rows) = {{
#include "tables/log2f_rare_rows.inc"
}};

struct Special {
    [[gnu::noinline]] static void rare(const f32 *x, f32 *r) {
        if (no_finite_logarithm(*x, r)) return;
        const ReducedDenormal<f32> d(*x, rare_rows, 0x46000000_f32); // in units of ln 2/256
        const f32 q = horner(d.u + d.v, 0x9C1D865E_f32,              // -5.2120608e-22
                             0x2081CD9D_f32,                         // 2.19895135e-19
                             0xA4DA74DC_f32,                         // -9.47403969e-17
                             0x293D1988_f32,                         // 4.19885752e-14
                             0xADAA8223_f32,                         // -1.93845547e-11
                             0x3223FE93_f32,                         // 9.5457322e-09
                             0xB6B1720F_f32,                         // -5.28828923e-06
                             0xBF7F0000_f32);                        // 1/256 - 1
        *r = d.sum(d.k + d.high, d.low, q);
    }
};

QUEVAR_CONSTANTS(ReciprocalRows, rows) = {{
#include "tables/log2f_rows.inc"
}};
struct TableAndCubicConstants {
    ReciprocalConstants reciprocal{
        .binade{0x3C000000}, // 2^-7
        .c{0x3FB80000},      // 1.4375
        .minus_c{0xBFB80000},
    };
    slot<f32> p[3] = {
        0x3E25C86A, // 0.161897331
        0xBEB2BB8C, // -0.349087119
        0x3B6CD7E0, // 0.00361394137
    };
};
QUEVAR_CONSTANTS(TableAndCubicConstants, table_and_cubic){};

// log2(1 + f/c) ~ f + f p(f) for |f| <= 1/119: error 2^-32.7, c being 1.4375.
// Worst, on a Zen 5: 0x3F805888, 1.00270176, gives 0x3B7F1A4C, wanted 0x3B7F1A4D: 0.6804 ulp.
struct TableAndCubic : Special {
    template <class V> static auto main(V x) {
        const auto &k = table_and_cubic;
        const auto [exponent, f, high, low] = reciprocal<0x42B8>(x, k.reciprocal, rows);
        const V a = exponent + high;
        const V b = f + a;
        const V p = polynomial(f, k.p);
        // What b has lost of f is part of the rest.
        const V rest = low + (f - (b - a));
        return flagged(b + fma_unless_scalar(p, f, rest), outside_normal(x));
    }
};

// With x = 2^k (1 + f), the result is k + log2(1 + f).
struct QuinticConstants {
    slot<f32> c[5] = {
        0x3EAAE01B, // 0.333741039
        0xBECB686C, // -0.397281051
        0x3EF4FA41, // 0.478471786
        0xBF38658A, // -0.720299363
        0x3FB8AAED, // 1.44271624
    };
};
QUEVAR_CONSTANTS(QuinticConstants, quintic){};

// log2(1 + f) ~ f c(f) for |f| <= 1/3: relative error 2^-14.0.
// Worst: 0x3F8B9599, 1.09050286, gives 0x3E00000E, wanted 0x3DFFFC9E: 894 ulp.
struct Quintic : Special {
    template <class V> static auto main(V x) {
        const auto [k, f] = near_one(x);
        return flagged(fma(f, polynomial(f, quintic.c), k), outside_normal(x));
    }
};

QUEVAR_EXPORT(log2, f, , unary, f32, f32, void, TableAndCubic)
QUEVAR_EXPORT(log2, f, _rm, unary, f32, f32, void, TableAndCubic)
QUEVAR_EXPORT(log2, f, _native, unary, f32, f32, void, Quintic)
QUEVAR_EXPORT(log2, f, _half, unary, f32, f32, void, Quintic)

QUEVAR_INLINE_END
} // namespace quevar::log2f
