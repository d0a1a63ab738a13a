// log: the natural logarithm.
#include "log_core.hpp"
#include "natural.hpp"
#include "tables/log_and_exp.hpp"
#include "tables/log_two_part.hpp"

namespace quevar::log {
QUEVAR_INLINE_BEGIN

using namespace explog;

struct Special {
    static constexpr int in_turn_after_mask = 2;

    [[gnu::noinline]] static void rare(const f64 *x, f64 *r) {
        if (no_finite_logarithm(*x, r)) return;
        *r = NaturalOfDenormal<f64>(*x).sum();
    }
};

// A table in two parts. Its ln 2 is in two short parts too, by which any exponent's product is exact.
struct TwoPartConstants : LogConstants {
    slot<f64> one{0x3FF0000000000000};
    slot<f64> ln2_high{0x3FE62E42FEFA0000}; // 0.69314718055829871
    slot<f64> ln2_low{0x3D7CF79ABC9E0000};  // 1.6465949582866463e-12
    slot<f64> c5{0x3FC9999CACDB4D0A};       // 0.20000036659494241
    slot<f64> c4{0xBFD0000148058EE1};       // -0.2500003054940248
    slot<f64> c3{0x3FD55555555543C5};       // 0.33333333333308374
    slot<f64> c2{0xBFDFFFFFFFFFF81F};       // -0.49999999999988803
};
QUEVAR_CONSTANTS(TwoPartConstants, two_part){{.binade = 0x3F50000000000000}}; // 2^-10

// Polynomial: for |f| <= 0.00123 its error is 2^-64.5.
// Worst: 0x3FEFF80200F24FA8, 0.99902439293736212, gives 0xBF4FFBFAE059C18A, wanted 0xBF4FFBFAE059C189: 0.7437
// ulp.
struct TwoPart : Special {
    template <class V> static auto main(V x) {
        const auto &k = read_for(x, two_part);
        const V m = significand(x, k);
        const auto r = round<to_nearest>(reciprocal(m));
        const V f = fms(convert<f64>(r), m, k.one);
        const V exponent = biased_exponent(x, k);
        const auto [high, low] = fetch_at<row_number(512, 14)>(tables::log_two_part_rows, as_uint(r) >> 10);
        const V a = fma(exponent, k.ln2_high, high), l = fma(exponent, k.ln2_low, low);
        const V f2 = f * f;
        const V p = fma(f2, fma(f, k.c5, k.c4), fma(f, k.c3, k.c2));
        const auto rest_and_term = [&](V rest) { return fma_unless_scalar(p, f2, rest); };
        return flagged(sum(a, f, l, rest_and_term), outside_normal(x));
    }
};

// The native tier: a table in one part, and a polynomial of degree 3.
struct NativeConstants : OnePartConstants {
    slot<f64> c3{0x3FD55555555543C5};  // 0.33333333333308374
    slot<f64> c2{0xBFDFFFFFFFFFF81F};  // -0.49999999999988803
    slot<f64> ln2{0x3FE62E42FEFA39EF}; // 0.69314718055994529
};
QUEVAR_CONSTANTS(NativeConstants, native){};

// Polynomial: for |f| <= 0.00123 its error is 2^-40.7.
// Worst: 0x3FEFF8010043DF30, 0.99902391483099073, gives 0xBF4FFFFE9ABA0B03, wanted 0xBF4FFFFE9ADA0166:
// 2094691 ulp.
struct Native : Special {
    template <class V> static auto main(V x) {
        const auto &k = read_for(x, native);
        const auto [exponent, f, log, scaled] = one_part(x, k, tables::log_rows);
        const V log_1f = fma_unless_scalar(f * f, fma(f, k.c3, k.c2), f);
        return flagged(fma_unless_scalar(exponent, k.ln2, log + log_1f), outside_normal(x));
    }
};

QUEVAR_EXPORT(log, , , unary, f64, f64, void, TwoPart)
QUEVAR_EXPORT(log, , _native, unary, f64, f64, void, Native)

QUEVAR_INLINE_END
} // namespace quevar::log
