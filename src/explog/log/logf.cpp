// logf: the natural logarithm.
#include "logf_core.hpp"

namespace quevar::logf {
QUEVAR_INLINE_BEGIN

using namespace explog;

QUEVAR_CONSTANTS(LogRareRows, rare_rows) = {{
#include "tables/logf_rare_rows.inc"
}};

struct Rare {
    [[gnu::noinline]] static void rare(const f32 *x, f32 *r) {
        if (no_finite_logarithm(*x, r)) return;
        const ReducedDenormal d(*x, rare_rows);
        const f32 a = 0x3F317200_f32 * d.k + d.high; // ln 2 in two parts, as in Long
        const f32 l = d.k * 0x35BFBE8E_f32 + d.low;
        const f32 z = d.u + d.v;
        const f32 q = horner(z, 0xBE0005A0_f32, // -0.125021458
                             0x3E124E01_f32,    // 0.142875686
                             0xBE2AAAAB_f32,    // -0.166666672
                             0x3E4CCCCD_f32,    // 0.200000003
                             -0.25f,            //
                             0x3EAAAAAB_f32,    // 0.333333343
                             -0.5f);
        *r = (d.u + a) + ((d.v + l) + q * z * z);
    }
};

// ln(1 + f) from the coefficients of f^n to f^2.
template <class V, int N> V series(V f, const slot<f32> (&c)[N]) { return fma(f, f * polynomial(f, c), f); }

// ln 2 in two parts; the product of a binary exponent with the high one is exact.
struct LongConstants {
    slot<f32> c[9] = {
        0xBE0402C8, // -0.12891686
        0x3E0F335D, // 0.139844373
        0xBDF9889E, // -0.121842608
        0x3E0F6B8C, // 0.140058696
        0xBE2ACEE6, // -0.16680488
        0x3E4CE814, // 0.200104058
        0xBE7FFF78, // -0.249997973
        0x3EAAAA83, // 0.333332151
        0xBF000000, // -0.5
    };
    slot<f32> ln2_low{0x35BFBE8E};  // 1.42860677e-06
    slot<f32> ln2_high{0x3F317200}; // 0.693145752
};
QUEVAR_CONSTANTS(LongConstants, long_constants){};

struct Long : Rare {
    template <class V> static auto main(V x) {
        const auto &c = long_constants;
        const auto [k, f] = octave(x);
        const V s = fma(k, c.ln2_low, series(f, c.c));
        return flagged(fma(k, c.ln2_high, s), outside_normal(x));
    }
};

// The same with ln 2 in one part and shorter series.
struct HalfConstants {
    slot<f32> c[7] = {
        0xBE1B6A22, // -0.151772052
        0x3E2DB86B, // 0.169648811
        0xBE289358, // -0.164624572
        0x3E4AFB81, // 0.198225036
        0xBE80061D, // -0.250046641
        0x3EAAAEE7, // 0.333365649
        0xBF000000, // -0.5
    };
    slot<f32> ln2{0x3F317218}; // 0.693147182
};
QUEVAR_CONSTANTS(HalfConstants, half_constants){};

struct NativeConstants {
    slot<f32> c[4] = {
        0x3E612933, // 0.219883725
        0xBE88E8FE, // -0.267402589
        0x3EAA7160, // 0.332896233
        0xBF000000, // -0.5
    };
    slot<f32> ln2{0x3F317218}; // 0.693147182
};
QUEVAR_CONSTANTS(NativeConstants, native_constants){};

template <const auto &constants> struct Short : Rare {
    template <class V> static auto main(V x) {
        const auto [k, f] = octave(x);
        return flagged(fma(k, constants.ln2, series(f, constants.c)), outside_normal(x));
    }
};

QUEVAR_EXPORT(log, f, , unary, f32, f32, void, Long)
QUEVAR_EXPORT(log, f, _rm, unary, f32, f32, void, Long)
QUEVAR_EXPORT(log, f, _half, unary, f32, f32, void, Short<half_constants>)
QUEVAR_EXPORT(log, f, _native, unary, f32, f32, void, Short<native_constants>)

QUEVAR_INLINE_END
} // namespace quevar::logf
