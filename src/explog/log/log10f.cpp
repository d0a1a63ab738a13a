// log10f: the logarithm to base 10.
#include "logf_core.hpp"

namespace quevar::log10f {
QUEVAR_INLINE_BEGIN

using namespace explog;

QUEVAR_CONSTANTS(LogRareRows<f32>, rare_rows) = {{
#include "tables/log10f_rare_rows.inc"
}};

struct Special {
    [[gnu::noinline]] static void rare(const f32 *x, f32 *r) {
        if (no_finite_logarithm(*x, r)) return;
        const ReducedDenormal<f32> d(*x, rare_rows, 0x46000000_f32); // in units of ln 10/256
        const f32 q = horner(d.u + d.v, 0xA22B5DAE_f32,              // -2.32244151e-18
                             0x25AA5BFD_f32,                         // 2.95526328e-16
                             0xA92C998B_f32,                         // -3.83248493e-14
                             0x2CB3E701_f32,                         // 5.11313257e-12
                             0xB04353B9_f32,                         // -7.10595638e-10
                             0x33E23666_f32,                         // 1.05338401e-07
                             0xB7935D5A_f32,                         // -1.75672358e-05
                             0xBF7F0000_f32);                        // 1/256 - 1
        // log10(2) in two parts: 0.30078125, 0.000248745666
        *r = d.sum(0x3E9A0000_f32 * d.k + d.high, d.k * 0x39826A14_f32 + d.low, q);
    }
};

QUEVAR_CONSTANTS(ReciprocalRows, rows) = {{
#include "tables/log10f_rows.inc"
}};
struct TableAndCubicConstants {
    ReciprocalConstants reciprocal{
        .binade{0x3B000000}, // 2^-9
        .c{0x3EDE0000},      // 0.43359375
        .minus_c{0xBEDE0000},
    };
    slot<f32> log_high{0x3E9A2100}; // log10(2): 0.30103302
    slot<f32> log_low{0xB64AF600};  //           -3.02435365e-06
    slot<f32> p[3] = {
        0x3FE35103, // 1.77590978
        0xBF93D7E4, // -1.15502596
        0x3AD3D366, // 0.00161610241
    };
};
QUEVAR_CONSTANTS(TableAndCubicConstants, table_and_cubic){};

// log10(1 + f/c) ~ f + f p(f) for |f| <= 1/473: error 2^-35.5, c being 0.43359375.
// Worst, on a Zen 5: 0x3F804810, 1.00219917, gives 0x3A7A188A, wanted 0x3A7A188B: 0.7703 ulp.
struct TableAndCubic : Special {
    template <class V> static auto main(V x) {
        const auto &k = table_and_cubic;
        const auto [exponent, f, high, low] = reciprocal<0x42DE>(x, k.reciprocal, rows);
        const V a = fma(exponent, k.log_high, high);
        const V l = fma(exponent, k.log_low, low);
        const V b = f + a;
        const V p = polynomial(f, k.p);
        // What b has lost of f is part of the rest.
        const V rest = (f - (b - a)) + fma(f, p, l);
        return flagged(b + rest, outside_normal(x));
    }
};

// With x = 2^k (1 + f), the result is k log10(2) + log10(1 + f).
struct QuinticConstants {
    slot<f32> log10_2{0x3E9A209B}; // 0.30103001
    slot<f32> c[5] = {
        0x3DCDC127, // 0.100466065
        0xBDF4ED71, // -0.119593509
        0x3E137DBE, // 0.144034356
        0xBE5E0922, // -0.216831714
        0x3EDE5CAE, // 0.43430084
    };
};
QUEVAR_CONSTANTS(QuinticConstants, quintic){};

// log10(1 + f) ~ f c(f) for |f| <= 1/3: relative error 2^-14.0.
// Worst: 0x3FAAAAB8, 1.33333492, gives 0x3DFFE40A, wanted 0x3DFFE027: 995 ulp.
struct Quintic : Special {
    template <class V> static auto main(V x) {
        const auto [k, f] = near_one(x);
        const V p = polynomial(f, quintic.c);
        return flagged(fma(f, p, k * quintic.log10_2), outside_normal(x));
    }
};

QUEVAR_EXPORT(log10, f, , unary, f32, f32, void, TableAndCubic)
QUEVAR_EXPORT(log10, f, _native, unary, f32, f32, void, Quintic)
QUEVAR_EXPORT(log10, f, _half, unary, f32, f32, void, Quintic)

QUEVAR_INLINE_END
} // namespace quevar::log10f
