// log10: the logarithm to base 10.
#include "log_core.hpp"

namespace quevar::log10 {
QUEVAR_INLINE_BEGIN

using namespace explog;

QUEVAR_CONSTANTS(LogRareRows<f64>, rare_rows) = {{
#include "tables/log10_rare_rows.inc"
}};

struct Special {
    static constexpr int in_turn_after_mask = 2;

    [[gnu::noinline]] static void rare(const f64 *x, f64 *r) {
        if (no_finite_logarithm(*x, r)) return;
        const ReducedDenormal<f64> d(*x, rare_rows, 0x4160000000000000_f64); // 2^23; in units of 0.43359375
        const f64 q = horner(d.u + d.v, 0xC045B3214E75EEA2_f64,              // -43.399453933319151
                             0x40358992E1B1AA78_f64,                         // 21.537397485614264
                             0xC025C90E698CFB68_f64,                         // -10.89268808217976
                             0x4016AB9F7B1EFE5C_f64,                         // 5.6676005590121257
                             0xC008930964D42479_f64,                         // -3.0717952611199135
                             0x3FFC6A02DC963A31_f64,                         // 1.7758816353485936
                             0xBFF27AF2DC77B115_f64,                         // -1.1550167667401798
                             0x3F5A7A6CBF2E4107_f64);                        // 0.0016161024074997103
        // log10(2) in two parts; the product of a binary exponent with the high one is exact.
        *r = d.sum(0x3FD34413509F8000_f64 * d.k + d.high, d.k * 0xBD380433B83B532A_f64 + d.low, q);
    }
};

// A table in two parts. Where r is near c/m, f = r m - c: c makes log10(1 + f/c) f and a rest that is several
// hundred times smaller. The table's log10(2) is in two short parts, by which any exponent's product is
// exact.
using Rows = table<f64, 2, 257>;
QUEVAR_CONSTANTS(Rows, rows) = {{
#include "tables/log10_rows.inc"
}};
struct TwoPartConstants : LogConstants {
    slot<f64> c{0x3FDBC00000000000}; // 0.43359375
    slot<f32> single_c{0x3EDE0000};  // the same: its product with an estimate of up to 15 bits is exact
    slot<f64> log10_2_high{0x3FD34413509F0000}; // 0.30102999566224753
    slot<f64> log10_2_low{0x3D7E7FBCC47C0000};  // 1.7336659603714182e-12
    slot<f64> c6{0xC025C91A15F7EB9F};           // -10.892777143968315
    slot<f64> c5{0x4016ABA863A166DB};           // 5.6676345412504032
    slot<f64> c4{0xC008930964D2FA9B};           // -3.0717952610860499
    slot<f64> c3{0x3FFC6A02DC954978};           // 1.7758816353349101
    slot<f64> c2{0xBFF27AF2DC77B115};           // -1.1550167667401798
    slot<f64> c1{0x3F5A7A6CBF2E410C};           // 0.0016161024074997114
};
QUEVAR_CONSTANTS(TwoPartConstants, two_part){{.binade = 0x3F50000000000000}}; // 2^-10

// Polynomial: for |f| <= 0.00123 its error is 2^-65.5.
// Worst: 0x3FEFF6DA6488C71B, 0.99888343463519236, gives 0xBF3FCC1F50D24B2C, wanted 0xBF3FCC1F50D24B2D: 0.5127
// ulp.
struct TwoPart : Special {
    template <class V> static auto main(V x) {
        const auto &k = read_for(x, two_part);
        const V m = significand(x, k);
        const auto r = round<to_nearest>(reciprocal(m) * k.single_c);
        const V f = fms(convert<f64>(r), m, k.c);
        const V exponent = biased_exponent(x, k);
        const auto [high, low] = fetch_at<row_number(222, 15)>(rows, as_uint(r) >> 11);
        const V a = fma(exponent, k.log10_2_high, high), l = fma(exponent, k.log10_2_low, low);
        const V f2 = f * f;
        const V p = fma(f2, fma(f2, fma(f, k.c6, k.c5), fma(f, k.c4, k.c3)), fma(f, k.c2, k.c1));
        const auto rest_and_term = [&](V rest) { return fma_unless_scalar(p, f, rest); };
        return flagged(sum(a, f, l, rest_and_term), outside_normal(x));
    }
};

// The native tier: a table in one part, and a polynomial of degree 3.
using OnePartRows = table<f64, 1, 513>;
QUEVAR_CONSTANTS(OnePartRows, one_part_rows) = {{
#include "tables/log10_plain_rows.inc"
}};
struct NativeConstants : OnePartConstants {
    slot<f64> c3{0x3FC287A7636F341E};      // 0.14476482730097556
    slot<f64> c2{0xBFCBCB7B1526DE36};      // -0.21714724095157728
    slot<f64> c1{0x3FDBCB7B1526E50E};      // 0.43429448190325182
    slot<f64> log10_2{0x3FD34413509F79FF}; // 0.3010299956639812
};
QUEVAR_CONSTANTS(NativeConstants, native){};

// Polynomial: for |f| <= 0.00123 its error is 2^-41.9.
// Worst: 0x3FEFF6FFF06D20F6, 0.9989013381791938, gives 0xBF3F498726E128DC, wanted 0xBF3F4987270DB9B8: 2920668
// ulp.
struct Native : Special {
    template <class V> static auto main(V x) {
        const auto &k = read_for(x, native);
        const auto [exponent, f, log, scaled] = one_part(x, k, one_part_rows);
        const V log_1f = fma(f * f, fma(f, k.c3, k.c2), f * k.c1);
        return flagged(fma_unless_scalar(exponent, k.log10_2, log + log_1f), outside_normal(x));
    }
};

QUEVAR_EXPORT(log10, , , unary, f64, f64, void, TwoPart)
QUEVAR_EXPORT(log10, , _native, unary, f64, f64, void, Native)

QUEVAR_INLINE_END
} // namespace quevar::log10
