// What asinh, acosh and atanh share: each is the logarithm of a sum 1 + v that is held in two parts.
#pragma once

#include "frame/frame.hpp"
#include "tables/log_and_exp.hpp"

namespace quevar::asinh {

QUEVAR_INLINE_BEGIN

// The constants of all begin with these.
struct LogConstants {
    slot<f64> magnitude{0x7FFFFFFFFFFFFFFF};
    slot<f64> one{0x3FF0000000000000};
    slot<f64> tiny{0x3E00000000000000}; // 2^-31: below it 1 + v is short
    slot<f64> upper_bits{0xFFFFFFFFFFFFFC00};
    slot<u64> significand{0x000FFFFFFFFFFFFF};
    slot<u64> binade{0x3F50000000000000}; // 2^-10
    slot<u64> whole{0x4330000000000000};  // 2^52: in the low bits of its pattern any whole number can stand
    slot<f64> middle{0x4086A00000000000}; // 724
    slot<i64> bias{0x43300000000003FE};   // 2^52 + 1022
    slot<f64> ln2{0x3FE62E42FEFA39EF};    // 0.6931471805599453
    slot<f64> c5{0x3FC9999CACDB4D0A};     // 0.2000003665949424
    slot<f64> c4{0xBFD0000148058EE1};     // -0.2500003054940248
    slot<f64> c3{0x3FD55555555543C5};     // 0.33333333333308374
    slot<f64> c2{0xBFDFFFFFFFFFF81F};     // -0.49999999999988803
};

template <class V> struct Sum { V high, low; };

// 1 + v in two parts, for v >= 0. The high one is short but where the low one would gain nothing.
template <class V> Sum<V> one_plus(V v, const LogConstants &k) {
    const V one = k.one, sum = (v + one) & (k.upper_bits | as_float(v < k.tiny));
    return {sum, min(one, v) + (max(one, v) - sum)};
}

// high + low = 2^exponent (1 + f + scaled low)/q, where q = r/512 for the whole number r near the reciprocal of the
// high part's significand, halved if r is beyond 724: so nothing cancels at sums near 1. f is exact, log is -ln q.
template <class V> struct Reduced { V exponent, log, f, scaled; };
template <class V> Reduced<V> reduced(V high, const LogConstants &k) {
    const V m = as_float((as_uint(high) & k.significand) | k.binade);
    const auto r = round<to_nearest>(reciprocal_estimate(convert<f32>(m)));
    const V R = convert<f64>(r);
    const auto [log] = fetch_at<0x11000>(tables::log_rows, as_uint(r) >> 11); // 512 >> 14, by its pattern
    // A mask is -1 as an integer: the bias is 1023 beyond the middle.
    const V bias = as_float(k.bias - (R > k.middle));
    const V scaled = as_float(as_uint(R) - (as_uint(high) - as_uint(m)));
    return {as_float((as_uint(high) >> 52) | k.whole) - bias, log, fms(R, m, k.one), scaled};
}

// The tiers differ in ln(1 + f).

// To 4.8e-20 for |f| up to 0.00123, which is 2^-10 and the error of the estimate.
struct Close {
    // (ln(1 + f) - f)/f^2
    template <class V> static V rest(V f, V f2, const LogConstants &k) {
        return fma(f2, fma(f, k.c5, k.c4), fma(f, k.c3, k.c2));
    }
    template <class V> static V logarithm(const Reduced<V> &x, V low, const LogConstants &k) {
        const V f = fma_unless_scalar(x.scaled, low, x.f), f2 = f * f;
        return fma_unless_scalar(x.exponent, k.ln2, x.log + fma(f2, rest(f, f2, k), f));
    }
};
// To 5.8e-13.
struct Loose {
    template <class V> static V logarithm(const Reduced<V> &x, V low, const LogConstants &k) {
        const V f = fma_unless_scalar(x.scaled, low, x.f);
        return fma(f * f, fma(f, k.c3, k.c2), fma_unless_scalar(x.exponent, k.ln2, x.log + f));
    }
};

// ---- asinh and acosh: square root, and arguments so large that their square does not matter ----

struct RootConstants : LogConstants {
    slot<f64> largest{0x7FEFFFFFFFFFFFFF};
    slot<f64> far{0x41D0000000000000};     // 2^30
    slot<f64> to_near{0x3E10000000000000}; // 2^-30
    slot<f64> thirty_one{0x403F000000000000};
    slot<f64> upper_29{0xFFFFFFFFFF000000}; // bits of the significand, the first included,
    slot<f64> upper_12{0xFFFFFE0000000000}; // whose products are exact
};

// sqrt(w) = (g + m)/sqrt(1 - e), where w = high + low, r is the estimate of 1/sqrt(high), g = r high is exact,
// m = r low, and 1 - e = r^2 w.
template <class V> struct Root { V g, m, e; };
template <class V> Root<V> root(Sum<V> w, const RootConstants &k) {
    const V r = convert<f64>(rsqrt_estimate(convert<f32>(w.high))) & k.upper_12;
    const V g = w.high * r, m = r * w.low;
    return {g, m, fnma(r, m, fnma(r, g, k.one))};
}

// ln(x + sqrt(x^2 +- 1)) from v, which is that argument less 1; beyond 2^30 it is ln(2 x) = 31 ln 2 + ln(2^-30 x).
template <class Tier, class V> V logarithm_of_1_plus(V v, V a, const RootConstants &k) {
    const auto near = a < k.far;
    const Sum<V> sum = one_plus(v, k);
    auto x = reduced(select(near, sum.high, a * k.to_near), k);
    x.exponent = x.exponent + keep(~near, V(k.thirty_one));
    return Tier::logarithm(x, keep(near, sum.low), k);
}

QUEVAR_INLINE_END

} // namespace quevar::asinh
