// log1p: the natural logarithm of 1 + x.
#include "log_core.hpp"
#include "natural.hpp"
#include "tables/log_and_exp.hpp"
#include "tables/log_two_part.hpp"

namespace quevar::log1p {
QUEVAR_INLINE_BEGIN

using namespace explog;

struct Special {
    [[gnu::noinline]] static void rare(const f64 *x, f64 *r) {
        const f64 s = *x + 1;
        if (!no_finite_logarithm(s, r)) *r = Natural<0, f64>(s).sum();
    }
};

struct Limits {
    slot<f64> least{0xBFEFFFFFFFFFFFFF};    // -0.99999999999999989
    slot<f64> greatest{0x7F3FFFFFFFFFF000}; // a little below 2^1013
    slot<f64> sign{0x8000000000000000};
};
QUEVAR_CONSTANTS(Limits, limits){};

// NaN too.
template <class V> auto beyond_limits(V x) { return (x < limits.least) | ~(x <= limits.greatest); }

// 1 + x = a + b with a short, a = 2^k m with m from 2^-10 to 2^-9, and r is a whole number near 1/m. Then
// ln(1 + x) = k ln 2 - ln r + ln(1 + g) with g = 2^-k r (a + b) - 1 = f + f_low, of which f = r m - 1 is exact. The
// table has -ln r - 1013 ln 2 in two parts; the exponent field of a is k + 1013.
struct TwoPartConstants : LogConstants {
    slot<f64> one{0x3FF0000000000000};
    slot<f64> magnitude{0x7FFFFFFFFFFFFFFF};
    slot<f64> tiny{0x3E00000000000000}; // 2^-31: below it 1 + x is short
    slot<f64> upper_bits{0xFFFFFFFFFFFFFC00};
    slot<f64> ln2_high{0x3FE62E42FEFA0000}; // 0.69314718055829871: the table's ln 2 in two parts
    slot<f64> ln2_low{0x3D7CF79ABC9E0000};  // 1.6465949582866463e-12
    slot<f64> c5{0x3FC9999CACDB4D0A};       // 0.20000036659494241
    slot<f64> c4{0xBFD0000148058EE1};       // -0.2500003054940248
    slot<f64> c3{0x3FD55555555543C5};       // 0.33333333333308374
    slot<f64> c2{0xBFDFFFFFFFFFF81F};       // -0.49999999999988803
};
QUEVAR_CONSTANTS(TwoPartConstants, two_part){{.binade = 0x3F50000000000000}}; // 2^-10

// ln(1 + g) to 4.9e-19 for |g| up to 2^-10 and the error of the estimate.
// Worst found: 0xBF4FF9FC227A0A72, -0.00097584544433033786, gives 0xBF4FFDFB4C1144A8, wanted ...A7: 0.7451 ulp.
struct TwoPart : Special {
    static constexpr int in_turn_after_mask = 4;

    template <class V> static auto main(V x) {
        const auto &k = read_for(x, two_part);
        const V one = k.one;
        const auto is_tiny = (x & k.magnitude) < k.tiny;
        const V a = (x + one) & (k.upper_bits | as_float(is_tiny)), b = min(one, x) + (max(one, x) - a);

        const V m = significand(a, k);
        const auto r = round<to_nearest>(reciprocal(m));
        const V R = convert<f64>(r);
        const V f = fms(R, m, one), f_low = b * scaled(R, a, m);
        const V g = f + f_low, g_low = f_low - (g - f);

        const auto [high, low] = fetch_at<row_number(512, 14)>(tables::log_two_part_rows, as_uint(r) >> 10);
        const V exponent = biased_exponent(a, k);
        const V c = fma(exponent, k.ln2_high, high), c_low = fma(exponent, k.ln2_low, low);
        const V g2 = g * g;
        const V p = fma(g2, fma(g, k.c5, k.c4), fma(g, k.c3, k.c2));
        const V log = c + g, rest = (g - (log - c)) + fma(g2, p, c_low + g_low);
        return flagged((log + rest) | (x & limits.sign), beyond_limits(x));
    }
};

// The native tier: all of the sum 1 + x is a, and the table has one part.
struct NativeConstants : OnePartConstants {
    slot<f64> c3{0x3FD55555555543C5};  // 0.33333333333308374
    slot<f64> c2{0xBFDFFFFFFFFFF81F};  // -0.49999999999988803
    slot<f64> ln2{0x3FE62E42FEFA39EF}; // 0.69314718055994529
};
QUEVAR_CONSTANTS(NativeConstants, native){};

// ln(1 + g) to 1.2e-12.
// Worst found: 0xBF4FFC004FC847A6, -0.00097608580796503387: 2.095e6 ulps.
struct Native : Special {
    static constexpr int in_turn_after_mask = 4;

    template <class V> static auto main(V x) {
        const auto &k = read_for(x, native);
        const V one = k.one, a = x + one, lost = min(one, x) + (max(one, x) - a);
        const auto [exponent, f, log, scaled] = one_part(a, k, tables::log_rows);
        const V g = fma(scaled, lost, f);
        const V d = fma_unless_scalar(exponent, k.ln2, log + g);
        return flagged(fma(g * g, fma(g, k.c3, k.c2), d) | (x & limits.sign), beyond_limits(x));
    }
};

QUEVAR_INLINE_END

QUEVAR_EXPORT(log1p, , , unary, f64, f64, void, TwoPart)
QUEVAR_EXPORT(log1p, , _native, unary, f64, f64, void, Native)

} // namespace quevar::log1p
