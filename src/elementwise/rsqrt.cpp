// rsqrt: 1 / sqrt(x), from the processor's estimate for floats by way of the residue of x y^2.
#include "rsqrt_root.hpp"

namespace quevar::rsqrt {
QUEVAR_INLINE_BEGIN

struct EstimateConstants {
    slot<u64> exponent{0x7FF0000000000000};
    slot<u64> parity{0x0010000000000000}; // the lowest bit of the exponent field
    slot<u64> parity_and_significand{0x001FFFFFFFFFFFFF};
    slot<u64> bias_of_float{0x07F0000000000000}; // 127, and three times 1023, in the exponent field
    slot<u64> three_biases{0xBFD0000000000000};
    slot<f64> one{0x3FF0000000000000};
};
QUEVAR_CONSTANTS(EstimateConstants, estimate_constants){};

// y near 1/sqrt(x), and e = 1 - x y^2: 1/sqrt(x) is y (1 - e)^(-1/2). With an estimate that is off by up to
// 1.5 2^-12, |e| is at most 2^-10.4.
//
// x = m 2^(2h) with m in [1, 4), so that y is the estimate for m, as a float, times 2^-h. An odd exponent
// field f stands for 2^(f - 1023), an even power of two; for an even field 2h is f - 1024. With even = 1 for
// even fields, else 0, the float's field is 127 + even, and that of 2^-h is (3 * 1023 + even - f) / 2.
template <class V> struct Estimate { V y, e; };
template <class V> static Estimate<V> estimate(V x) {
    const auto &k = estimate_constants;
    const auto pattern = as_uint(x), exponent = pattern & k.exponent, even = k.parity & ~pattern;
    const V scale = as_float((even + k.three_biases - exponent) >> 1);
    const auto m = ((even + k.bias_of_float) | (pattern & k.parity_and_significand)) >> 29;
    const V y = convert<f64>(rsqrt_estimate(as_float(low_words(m)))) * scale;
    return {y, fnma(x, y * y, k.one)};
}

struct QuarticConstants {
    slot<i64> least{0x8350000000000000}; // exponent fields 0x35 to 0x7FC are ordinary
    slot<i64> range{0xFC7FFFFF00000000};
    slot<f64> c[4] = {
        0x3FD1800032338CBB, // 0.27343754675366555
        0x3FD40000B13001D9, // 0.31250016501874495
        0x3FD80000000000F6, // 0.37500000000001366
        0x3FDFFFFFFFFFFE71, // 0.49999999999997785
    };
};
QUEVAR_CONSTANTS(QuarticConstants, quartic){};

// The result is y + y e c(e).
// (1 - e)^(-1/2) ~ 1 + e c(e) for |e| <= 2^-10.4: relative error 2^-57.7.
// Worst found on a Zen 5: 0x3FF01536012811A4, 1.0051784558464556, gives 0x3FEFEADEFE818064, wanted
// 0x3FEFEADEFE818065: 0.5284 ulp.
struct Quartic : Special<f64> {
    template <class V> static auto main(V x) {
        const auto &k = quartic;
        const auto special = high_word_greater(subtract_words(as_int(x), k.least), k.range);
        const auto [y, e] = estimate(x);
        return flagged(fma(y, e * polynomial(e, k.c), y), special);
    }
};

struct QuadraticConstants {
    slot<i64> least{0x8030000000000000}; // exponent fields 3 to 0x7FC are ordinary
    slot<i64> range{0xFF9FFFFF00000000};
    slot<f64> c[3] = {
        0x3FD80000C4CD9197, // 0.37500018328707924
        0x3FE000004379ADB7, // 0.50000012568255314
        0x3FEFFFFFFFFFFF4F, // 0.99999999999998035
    };
};
QUEVAR_CONSTANTS(QuadraticConstants, quadratic){};

// The result is y c(e).
// (1 - e)^(-1/2) ~ c(e) for |e| <= 2^-10.4: relative error 2^-34.7.
// Worst found on a Zen 5: 0x419038FC39151EFA, 68042510.270625979, gives 0x3F1FC79A405F2946, wanted
// 0x3F1FC79A40635383: 272957 ulp.
struct Quadratic : Special<f64> {
    template <class V> static auto main(V x) {
        const auto &k = quadratic;
        const auto [y, e] = estimate(x);
        return flagged(y * polynomial(e, k.c),
                       high_word_greater(subtract_words(as_int(x), k.least), k.range));
    }
};

QUEVAR_EXPORT(rsqrt, , , unary, f64, f64, void, Quartic)
QUEVAR_EXPORT(rsqrt, , _native, unary, f64, f64, void, Quadratic)

QUEVAR_INLINE_END
} // namespace quevar::rsqrt
