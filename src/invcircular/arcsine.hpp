// What asin, acos, asinpi and acospi share. asin(s) = s + s w(s^2) is a polynomial for |s| up to 1/2. For
// larger |x| it is taken at s = sqrt(h), h = (1 - |x|)/2, as asin|x| = pi/2 - 2 asin(s). The polynomial's
// argument is the smaller of x^2 and h: they meet at |x| = 1/2.
#pragma once

#include "frame/frame.hpp"

namespace quevar::arcsine {
QUEVAR_INLINE_BEGIN

template <class T> struct Constants;
template <> struct Constants<f32> {
    slot<f32> magnitude{0x7FFFFFFF};
    slot<f32> sign{0x80000000};
    slot<f32> half{0x3F000000};
    slot<f32> minus_half{0xBF000000};
    slot<f32> one{0x3F800000};
    slot<f32> minus_one{0xBF800000};
    slot<f32> minus_two{0xC0000000};
    slot<f32> tiny{0x2F800000};        // 2^-32
    slot<f32> half_pi{0x3FC90FDB};     // 1.57079637
    slot<f32> pi{0x40490FDB};          // 3.14159274
    slot<f32> one_over_pi{0x3EA2F983}; // 0.318309873
};
template <> struct Constants<f64> {
    slot<f64> magnitude{0x7FFFFFFFFFFFFFFF};
    slot<f64> sign{0x8000000000000000};
    slot<f64> half{0x3FE0000000000000};
    slot<f64> minus_half{0xBFE0000000000000};
    slot<f64> one{0x3FF0000000000000};
    slot<f64> minus_one{0xBFF0000000000000};
    slot<f64> minus_two{0xC000000000000000};
    slot<f64> tiny{0x3000000000000000};        // 2^-255
    slot<f64> half_pi{0x3FF921FB54442D18};     // 1.5707963267948966
    slot<f64> pi{0x400921FB54442D18};          // 3.1415926535897931
    slot<f64> one_over_pi{0x3FD45F306DC9C883}; // 0.31830988618379069
};
QUEVAR_CONSTANTS(Constants<f32>, float_constants){};
QUEVAR_CONSTANTS(Constants<f64>, double_constants){};

template <class V> const auto &constants() {
    if constexpr (sizeof(typename V::element) == 8) return double_constants;
    else return float_constants;
}

// ---- w(z) ----

// c[0] z^(N-1) + ... + c[N-1] in an order that keeps the processor busy.
template <class V, class T> V sum(V z, const slot<T> (&c)[2]) { return fma(z, c[0], c[1]); }
template <class V, class T> V sum(V z, const slot<T> (&c)[5]) {
    const V upper = fma(z, c[0], c[1]), lower = fma(z, c[2], c[3]);
    return fma(z, fma(z * z, upper, lower), c[4]);
}
template <class V, class T> V sum(V z, const slot<T> (&c)[6]) {
    const V z2 = z * z, upper = fma(z, c[0], c[1]), middle = fma(z, c[2], c[3]), lower = fma(z, c[4], c[5]);
    return fma(z2, fma(z2, upper, middle), lower);
}
template <class V, class T> V sum(V z, const slot<T> (&c)[12]) {
    const V z2 = z * z;
    const V upper = fma(z2, fma(z, c[0], c[1]), fma(z, c[2], c[3]));
    const V middle = fma(z2, fma(z, c[4], c[5]), fma(z, c[6], c[7]));
    const V p = fma(z2, fma(z2 * z2, upper, middle), fma(z, c[8], c[9]));
    return fma(z2, p, fma(z, c[10], c[11]));
}

// w without a constant term; with one.
template <class T, int N> struct Series {
    slot<T> c[N];
    template <class V> V of(V z) const { return z * sum(z, read_for(z, c)); }
};
template <class T, int N> struct SeriesFrom {
    slot<T> c[N], first;
    template <class V> V rest(V z) const { return z * sum(z, read_for(z, c)); }
    template <class V> V of(V z) const { return fma(z, sum(z, read_for(z, c)), first); }
};

// ---- 2 sqrt(h) ----

// The processor's estimate of 1/sqrt(h).
template <class V> V root_estimate(V h) {
    if constexpr (sizeof(typename V::element) == 8) return convert<f64>(rsqrt_estimate(convert<f32>(h)));
    else return rsqrt_estimate(h);
}
// The same with 0 instead of infinity for h = 0, which is |x| = 1.
template <class V> V finite_root_estimate(V h) { return keep(h >= constants<V>().tiny, root_estimate(h)); }

// 2 sqrt(h) = t - u g, where t is an estimate, u / t its relative error, and g a series in that error.
template <class V> struct Root {
    V t, u, g;
    V positive() const { return fnma(u, g, t); }
    V negative() const { return fms(u, g, t); }
};
// From r near 1/sqrt(h), by the residue of 2h r^2 against 2. The residue of r t has the rounding of t in it.
template <class V, class Series> Root<V> close_root(V h, V r, const Series &k) {
    const V y = h + h, t = r * y, e = fma(r * r, y, V(constants<V>().minus_two));
    return {t, t * e, polynomial(e, read_for(h, k.c))};
}
template <class V, class Series> Root<V> loose_root(V h, V r, const Series &k) {
    const V t = r * (h + h), e = fma(r, t, V(constants<V>().minus_two));
    return {t, t * e, polynomial(e, read_for(h, k.c))};
}

template <const auto &k> struct CloseRoot {
    template <class V> static Root<V> of(V h) { return close_root(h, finite_root_estimate(h), k); }
};
template <const auto &k> struct LooseRoot {
    template <class V> static Root<V> of(V h) { return loose_root(h, finite_root_estimate(h), k); }
};
template <const auto &k> struct LooseRootOfPositive {
    template <class V> static Root<V> of(V h) { return loose_root(h, root_estimate(h), k); }
};
struct NearestRoot {
    template <class V> struct Value {
        V root;
        V positive() const { return root; }
        V negative() const { return root | constants<V>().sign; }
    };
    template <class V> static Value<V> of(V h) { return {sqrt(h) + sqrt(h)}; }
};

template <class T, int N> struct RootConstants { slot<T> c[N]; };

// ---- Lanes outside the main path ----

// 0/0 for |x| > 1, inf - inf for infinities; of a NaN the NaN, quieted.
template <class T> struct Special {
    static void rare(const T *x, T *r) {
        const T difference = *x - *x;
        *r = difference / difference;
    }
};

QUEVAR_INLINE_END
} // namespace quevar::arcsine
