// logf: the natural logarithm.
#include "logf_core.hpp"
#include "natural.hpp"

namespace quevar::logf {
QUEVAR_INLINE_BEGIN

using namespace explog;

struct Special {
    [[gnu::noinline]] static void rare(const f32 *x, f32 *r) {
        if (no_finite_logarithm(*x, r)) return;
        *r = NaturalOfDenormal<f32>(*x).sum();
    }
};

// ln(1 + f) as f + f^2 c(f).
template <class V, int N> V series(V f, const slot<f32> (&c)[N]) { return fma(f, f * polynomial(f, c), f); }

// With x = 2^k (1 + f), the result is k ln 2 + ln(1 + f). The product of k with the high part of ln 2 is
// exact.
struct TwoPartLn2Constants {
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
QUEVAR_CONSTANTS(TwoPartLn2Constants, two_part_ln2){};

// ln(1 + f) ~ f + f^2 c(f) for |f| <= 1/3: relative error 2^-27.4.
// Worst: 0x402ACE97, 2.66885924, gives 0x3F7B4D7E, wanted 0x3F7B4D7D: 0.9310 ulp.
struct TwoPartLn2 : Special {
    template <class V> static auto main(V x) {
        const auto &c = two_part_ln2;
        const auto [k, f] = near_one(x);
        const V s = fma(k, c.ln2_low, series(f, c.c));
        return flagged(fma(k, c.ln2_high, s), outside_normal(x));
    }
};

// The same with ln 2 in one part and polynomials of lower degree.
struct Degree8Constants {
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
QUEVAR_CONSTANTS(Degree8Constants, degree_8){};

struct Degree5Constants {
    slot<f32> c[4] = {
        0x3E612933, // 0.219883725
        0xBE88E8FE, // -0.267402589
        0x3EAA7160, // 0.332896233
        0xBF000000, // -0.5
    };
    slot<f32> ln2{0x3F317218}; // 0.693147182
};
QUEVAR_CONSTANTS(Degree5Constants, degree_5){};

// ln(1 + f) ~ f + f^2 c(f), of degree 8, for |f| <= 1/3: relative error 2^-22.2.
// Worst: 0x3F61EFFA, 0.882568002, gives 0xBDFFD5C7, wanted 0xBDFFD5C3: 3.9373 ulp.
// ln(1 + f) ~ f + f^2 c(f), of degree 5, for |f| <= 1/3: relative error 2^-13.2.
// Worst: 0x3F475F9E, 0.778802752, gives 0xBE8002BB, wanted 0xBE7FFF56: 1568 ulp.
template <const auto &constants> struct OnePartLn2 : Special {
    template <class V> static auto main(V x) {
        const auto [k, f] = near_one(x);
        return flagged(fma(k, constants.ln2, series(f, constants.c)), outside_normal(x));
    }
};

QUEVAR_EXPORT(log, f, , unary, f32, f32, void, TwoPartLn2)
QUEVAR_EXPORT(log, f, _rm, unary, f32, f32, void, TwoPartLn2)
QUEVAR_EXPORT(log, f, _half, unary, f32, f32, void, OnePartLn2<degree_8>)
QUEVAR_EXPORT(log, f, _native, unary, f32, f32, void, OnePartLn2<degree_5>)

QUEVAR_INLINE_END
} // namespace quevar::logf
