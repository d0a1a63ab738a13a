// What sinhf and coshf share: the split of |x| at a multiple of ln 2, and two series.
#pragma once

#include "half_exp.hpp"

namespace quevar::sinhf {

using namespace hyperbolic;

QUEVAR_INLINE_BEGIN

struct SplitConstants {
    slot<f32> one_over_ln2{0x3FB8AA3B}; // 1.44269502
    slot<f32> shifter{0x4B400000};      // 1.5 * 2^23
    slot<f32> ln2_high{0x3F317000};     // 0.693115234: its product with a whole number below 2^11 is exact
    slot<f32> ln2_low{0x3805FDF4};      // 3.19461833e-05
    slot<f32> sign{0x80000000}, magnitude{0x7FFFFFFF};
    slot<i32> half{0x3F000000};
};
QUEVAR_CONSTANTS(SplitConstants, split_constants){};

// |x| = n ln 2 + r with |r| up to ln 2/2: r, and the hyperbolic cosine and sine of n ln 2, which are 2^(n-1) plus
// and minus 2^(-n-1). The powers come from integer additions in the exponent field. At n = 126 the lesser one
// comes out as 0; larger n are special lanes.
template <class V> struct Split { V r, cosh, sinh; };
template <class V> Split<V> split(V a) {
    const auto &k = split_constants;
    const V t = fma(a, k.one_over_ln2, k.shifter), n = t - k.shifter;
    const auto e = as_int(t) << 23;
    const V greater = as_float(k.half + e), lesser = as_float(k.half - e);
    return {fnma(n, k.ln2_low, fnma(n, k.ln2_high, a)), greater + lesser, greater - lesser};
}

// sinh r = r + r u to a relative 1.4e-08 and cosh r = 1 + w to 1.1e-10, for |r| up to ln 2/2.
struct SeriesConstants {
    slot<f32> u[2] = {
        0x3C091461, // 0.00836667512
        0x3E2AAA57, // 0.16666542
    };
    slot<f32> w[3] = {
        0x3AB6A8A3, // 0.00139357557
        0x3D2AAA72, // 0.0416664556
        0x3F000000, // 0.5
    };
};
QUEVAR_CONSTANTS(SeriesConstants, series_constants){};

template <class V> struct SmallAngle { V sinh, cosh_less_1; };
template <class V> SmallAngle<V> series(V r) {
    const auto &k = series_constants;
    const V q = r * r;
    const V u = q * polynomial(q, k.u);
    return {fma(r, u, r), q * polynomial(q, k.w)};
}

// The same in fewer terms, as c = sinh r / r to 6.5e-05 and d = (cosh r - 1) / r^2, which gives cosh r to 7.9e-07.
struct ShorterSeriesConstants {
    slot<f32> c[2] = {
        0x3E2CCD2E, // 0.168751448
        0x3F7FFBC9, // 0.999935687
    };
    slot<f32> d[2] = {
        0x3D2CA395, // 0.0421481915
        0x3EFFFB2F, // 0.499963254
    };
};
QUEVAR_CONSTANTS(ShorterSeriesConstants, shorter_series_constants){};

template <class V> struct Quotients { V c, d; };
template <class V> Quotients<V> shorter_series(V r) {
    const auto &k = shorter_series_constants;
    const V q = r * r;
    return {polynomial(q, k.c), polynomial(q, k.d)};
}

// The rare paths' e^a/2 is in double, precise for a result of single. From here on e^a/2 rounds to infinity.
constexpr f64 overflow_bound = 0x40565A9FA0000000_f64; // 89.4159927368164

QUEVAR_INLINE_END

} // namespace quevar::sinhf
