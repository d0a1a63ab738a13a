// log2: the logarithm to base 2.
#include "log_core.hpp"

namespace quevar::log2 {
QUEVAR_INLINE_BEGIN

using namespace explog;

// For the middle of the j-th of 256 parts of 1 to 2: w near its reciprocal, and -log2 w in two parts, of
// which the high one has 21 bits.
using RareRows = table<f64, 3, 256>;
QUEVAR_CONSTANTS(RareRows, rare_rows) = {{
#include "tables/log2_rare_rows.inc"
}};

struct Special {
    static constexpr int in_turn_after_mask = 2;

    [[gnu::noinline]] static void rare(const f64 *x, f64 *r) {
        if (no_finite_logarithm(*x, r)) return;
        const Denormal<55, f64> d(*x);
        const int j = (int)(as_uint(d.m) >> 44 & 0xFF);
        const f64 w = rare_rows(j, 0), high = rare_rows(j, 1), low = rare_rows(j, 2);

        // u + v = m w - 1; the products with the upper word of m and with its rest are exact.
        const f64 upper = as_float(as_uint(d.m) & 0xFFFFFFFF00000000);
        const f64 u = upper * w - 1, v = (d.m - upper) * w, z = u + v, z2 = z * z;
        const f64 even_terms = horner(z2, 0xBFCEC718810D0357_f64, // -0.24045091916380087
                                      0xBFD71547652A21F9_f64,     // -0.36067376021722414
                                      0xBFE71547652B82FE_f64);    // -0.72134752044448169
        const f64 odd_terms = horner(z2, 0x3FD27772978FF6BC_f64,  // 0.28854050446521362
                                     0x3FDEC709DC3944E3_f64,      // 0.48089834696027206
                                     0x3E994AE0BF8613D6_f64);     // 3.7688749856434016e-07: log2 e less c
        const f64 c = 0x3FF7154700000000_f64;                     // 1.4426946640014648
        const f64 uc = u * c, vc = v * c + (even_terms * z2 + odd_terms * z);
        const f64 shifter = 0x41F0000000000000_f64; // 2^32
        const f64 whole = (shifter + uc) - shifter; // so that its sum with k and high is exact
        *r = (((uc - whole) + vc) + low) + ((d.k + high) + whole);
    }
};

// A table in two parts. Where r is near c/m, f = r m - c: c makes log2(1 + f/c) f and a rest that is a
// thousand times smaller.
using Rows = table<f64, 2, 513>;
QUEVAR_CONSTANTS(Rows, rows) = {{
#include "tables/log2_rows.inc"
}};
struct TwoPartConstants : LogConstants {
    slot<f64> c{0x3FF7100000000000};  // 1.44140625
    slot<f32> single_c{0x3FB88000};   // the same: its product with an estimate of up to 15 bits is exact
    slot<f64> c6{0xBF9B743CA0B38EEB}; // -0.026810595806536702
    slot<f64> c5{0x3FA7BE52039FB7CE}; // 0.046373904173250588
    slot<f64> c4{0xBFB563D0FCE18810}; // -0.083554326761742681
    slot<f64> c3{0x3FC48DEAD300E7BF}; // 0.16058097174555816
    slot<f64> c2{0xBFD6386B9B9B5D42}; // -0.34719362445817492
    slot<f64> c1{0x3F4D4C6D2BC5AEA6}; // 0.00089412050833233693
};
QUEVAR_CONSTANTS(TwoPartConstants, two_part){{.binade = 0x3F60000000000000}}; // 2^-9

// Polynomial: for |f| <= 0.00245 its error is 2^-69.9.
// Worst: 0x3FEFFE9F09262BA8, 0.99983169352468781, gives 0xBF2FD433CD09BDCC, wanted 0xBF2FD433CD09BDCB: 0.5029
// ulp.
struct TwoPart : Special {
    template <class V> static auto main(V x) {
        const auto &k = read_for(x, two_part);
        const V m = significand(x, k);
        const auto r = round<to_nearest>(reciprocal(m) * k.single_c);
        const V f = fms(convert<f64>(r), m, k.c);
        const auto [high, low] = fetch_at<row_number(369, 14)>(rows, as_uint(r) >> 10);
        const V f2 = f * f;
        const V p = fma(f2, fma(f2, fma(f, k.c6, k.c5), fma(f, k.c4, k.c3)), fma(f, k.c2, k.c1));
        const auto rest_and_term = [&](V rest) { return fma_unless_scalar(p, f, rest); };
        return flagged(sum(biased_exponent(x, k) + high, f, low, rest_and_term), outside_normal(x));
    }
};

// The native tier: a table in one part, and a polynomial of degree 3.
using OnePartRows = table<f64, 1, 513>;
QUEVAR_CONSTANTS(OnePartRows, one_part_rows) = {{
#include "tables/log2_plain_rows.inc"
}};
struct NativeConstants : OnePartConstants {
    slot<f64> c3{0x3FDEC709DC39E926}; // 0.48089834696260636
    slot<f64> c2{0xBFE71547652B7CF8}; // -0.7213475204443105
    slot<f64> c1{0x3FF71547652B82FE}; // 1.4426950408889634
};
QUEVAR_CONSTANTS(NativeConstants, native){};

// Polynomial: for |f| <= 0.00123 its error is 2^-40.2.
// Worst: 0x3FEFF6FFF0390C89, 0.99890133780026347, gives 0xBF59FBC571AA5EC6, wanted 0xBF59FBC571CF61A4:
// 2425566 ulp.
struct Native : Special {
    template <class V> static auto main(V x) {
        const auto &k = read_for(x, native);
        const auto [exponent, f, log, scaled] = one_part(x, k, one_part_rows);
        const V log_1f = fma(f * f, fma(f, k.c3, k.c2), f * k.c1);
        return flagged(exponent + (log + log_1f), outside_normal(x));
    }
};

QUEVAR_EXPORT(log2, , , unary, f64, f64, void, TwoPart)
QUEVAR_EXPORT(log2, , _native, unary, f64, f64, void, Native)

QUEVAR_INLINE_END
} // namespace quevar::log2
