// What asinhf, acoshf and atanhf share: each is the logarithm of a sum 1 + v that is held in two parts.
#pragma once

#include "frame/frame.hpp"

namespace quevar::asinhf {

QUEVAR_INLINE_BEGIN

struct LogConstants {
    slot<f32> one{0x3F800000};
    slot<i32> exponent_of_1{0x3F800000};
    slot<i32> two_thirds{0x3F2AAAAB};
    slot<i32> exponent{0xFF800000};
    slot<f32> ln2_unit{0x33B17218}; // 2^-23 ln 2: exponents are counted in units of their last place
};
QUEVAR_CONSTANTS(LogConstants, log_constants){};

// ln(1 + f) = f + f^2 P(f) to a relative 3.8e-08 for 1 + f from 2/3 to 4/3, and in fewer terms to 1e-04.
struct Polynomial {
    slot<f32> p[8] = {
        0x3E0D84ED, // 0.138202384
        0xBE1AD9E3, // -0.151221797
        0x3E0FCB12, // 0.140423089
        0xBE28AD37, // -0.164723262
        0x3E4CE190, // 0.200079203
        0xBE80058E, // -0.250042379
        0x3EAAAA94, // 0.333332658
        0xBF000000, // -0.5
    };
};
QUEVAR_CONSTANTS(Polynomial, polynomial_of_degree_9){};
struct ShorterPolynomial {
    slot<f32> p[4] = {
        0x3E612933, // 0.219883725
        0xBE88E8FE, // -0.267402589
        0x3EAA7160, // 0.332896233
        0xBF000000, // -0.5
    };
};
QUEVAR_CONSTANTS(ShorterPolynomial, polynomial_of_degree_5){};

template <class V> struct Sum { V high, low; };

// 1 + v and what its rounding has lost, exactly, for v > -1.
template <class V> Sum<V> one_plus(V v) {
    const V one = log_constants.one, sum = v + one;
    return {sum, min(one, v) + (max(one, v) - sum)};
}

// ln(high + low) = k ln 2 + ln(1 + f) for high = 2^k m, where 1 + f = m + 2^-k low and m is from 2/3 to 4/3. `more`
// is added to k, in units of 2^-23.
template <const auto &constants, class V, class... More> V logarithm(Sum<V> x, More... more) {
    const auto &c = log_constants;
    const auto k = (as_int(x.high) - c.two_thirds) & c.exponent;
    const V m = as_float(as_int(x.high) - k), scale = as_float(c.exponent_of_1 - k);
    const V f = fma_unless_scalar(scale, x.low, m - c.one);
    const V log_m = fma(f, f * polynomial(f, constants.p), f);
    return fma((convert<f32>(k) + ... + more), c.ln2_unit, log_m);
}

// ---- asinhf and acoshf: square root, and arguments so large that their square does not matter ----

struct RootConstants {
    slot<f32> magnitude{0x7FFFFFFF};
    slot<f32> largest{0x7F7FFFFF};
    slot<f32> far{0x4E800000};        // 2^30
    slot<f32> to_near{0x30800000};    // 2^-30
    slot<f32> thirty_one{0x4D780000}; // in units of 2^-23: 2 x = 2^31 (2^-30 x)
    slot<f32> upper_half{0xFFFF0000}; // of a pattern: squares and products of two such numbers are exact
    slot<f32> half{0x3F000000};
    slot<f32> series[3] = {
        0x3EA00000, // 0.3125
        0x3EC00000, // 0.375
        0x3F000000, // 0.5
    };
};
QUEVAR_CONSTANTS(RootConstants, root_constants){};

// sqrt(w) = (g + m)/sqrt(1 - e), where w = high + low, r is the estimate of 1/sqrt(high), g = r high is exact,
// m = r low, and 1 - e = r^2 w.
template <class V> struct Root { V g, m, e; };
template <class V> Root<V> root(Sum<V> w) {
    const V r = rsqrt_estimate(w.high) & root_constants.upper_half;
    const V g = w.high * r, m = r * w.low;
    return {g, m, fnma(r, m, fnma(g, r, log_constants.one))};
}
// (1 - e)^(-1/2) - 1
template <class V> V series(V e) { return e * polynomial(e, root_constants.series); }

// ln(x + sqrt(x^2 +- 1)) from sum, which is that argument in two parts; beyond 2^30 it is ln(2 x).
template <const auto &constants, class V> V logarithm_of(Sum<V> sum, V a) {
    const auto &c = root_constants;
    const auto near = a < c.far;
    return logarithm<constants>(Sum<V>{select(near, sum.high, a * c.to_near), keep(near, sum.low)},
                                keep(~near, V(c.thirty_one)));
}

QUEVAR_INLINE_END

} // namespace quevar::asinhf
