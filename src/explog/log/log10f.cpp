// log10f: the logarithm to base 10.
#include "logf_core.hpp"

namespace quevar::log10f {
QUEVAR_INLINE_BEGIN

using namespace explog;

QUEVAR_CONSTANTS(LogRareRows, rare_rows) = {{
#include "tables/log10f_rare_rows.inc"
}};

struct Rare {
    [[gnu::noinline]] static void rare(const f32 *x, f32 *r) {
        if (no_finite_logarithm(*x, r)) return;
        const ReducedDenormal d(*x, rare_rows);         // in units of ln 10/256
        const f32 q = horner(d.u + d.v, 0xA22B5DAE_f32, // -2.32244151e-18
                             0x25AA5BFD_f32,            // 2.95526328e-16
                             0xA92C998B_f32,            // -3.83248493e-14
                             0x2CB3E701_f32,            // 5.11313257e-12
                             0xB04353B9_f32,            // -7.10595638e-10
                             0x33E23666_f32,            // 1.05338401e-07
                             0xB7935D5A_f32,            // -1.75672358e-05
                             0xBF7F0000_f32);           // 1/256 - 1
        // log10(2) in two parts: 0.30078125, 0.000248745666
        *r = d.sum(0x3E9A0000_f32 * d.k + d.high, d.k * 0x39826A14_f32 + d.low, q);
    }
};

QUEVAR_CONSTANTS(ReciprocalRows, rows) = {{
#include "tables/log10f_rows.inc"
}};
struct LongConstants {
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
QUEVAR_CONSTANTS(LongConstants, long_constants){};

struct Long : Rare {
    template <class V> static auto main(V x) {
        const auto &k = long_constants;
        const auto [exponent, f, high, low] = reciprocal<0x42DE>(x, k.reciprocal, rows);
        const V a = fma(exponent, k.log_high, high);
        const V l = fma(exponent, k.log_low, low);
        const V b = f + a;
        const V p = polynomial(f, k.p);
        const V rest = (f - (b - a)) + fma(f, p, l); // with what b has lost of f
        return flagged(b + rest, outside_normal(x));
    }
};

struct ShortConstants {
    slot<f32> log10_2{0x3E9A209B}; // 0.30103001
    slot<f32> c[5] = {
        0x3DCDC127, // 0.100466065
        0xBDF4ED71, // -0.119593509
        0x3E137DBE, // 0.144034356
        0xBE5E0922, // -0.216831714
        0x3EDE5CAE, // 0.43430084
    };
};
QUEVAR_CONSTANTS(ShortConstants, short_constants){};

struct Short : Rare {
    template <class V> static auto main(V x) {
        const auto [k, f] = octave(x);
        const V p = polynomial(f, short_constants.c);
        return flagged(fma(f, p, k * short_constants.log10_2), outside_normal(x));
    }
};

QUEVAR_EXPORT(log10, f, , unary, f32, f32, void, Long)
QUEVAR_EXPORT(log10, f, _native, unary, f32, f32, void, Short)
QUEVAR_EXPORT(log10, f, _half, unary, f32, f32, void, Short)

QUEVAR_INLINE_END
} // namespace quevar::log10f
