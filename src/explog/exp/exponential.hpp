// What the exponentials share, float and double: the test for special lanes, the last step of main paths
// without a table, and the rare paths, base^x = 2^k 2^(j/64) (1 + p) worked in double.
#pragma once

#include "frame/frame.hpp"
#include "tables/powers_of_two.hpp"

namespace quevar::explog {
QUEVAR_INLINE_BEGIN

// Whether |x| is greater than a limit, or x is NaN, by comparison of patterns; of doubles the upper words
// alone are compared.
template <class I> struct Limit {
    slot<I> special; // the greatest ordinary magnitude; in the lower word of a double all ones
    slot<I> magnitude{(unsigned_bits<I>)-1 >> 1};
};
template <class V, class I> auto beyond(V x, const Limit<I> &limit) {
    return high_word_greater(as_int(x) & limit.magnitude, limit.special);
}

// p 2^k, where k is the integer in the low bits of t, added to p's exponent field. Lanes are special where
// the sum might not fit the field.
template <class V> V scaled_by_pattern(V p, V t) {
    return as_float(as_int(p) + (as_int(t) << format<typename V::element>::digits));
}

// ---- Rare paths ----

// If x is infinite or NaN, its power is put in r: +0 of -infinity, else x itself with a NaN made quiet. Tells
// whether it was.
template <class T> bool settle_non_finite(T x, T *r) {
    if (!infinite_or_nan(x)) return false;
    *r = as_uint(x) == (format<T>::sign | format<T>::exponent) ? T(0) : x * x;
    return true;
}

// 2^k 2^(j/64) (1 + p), where 64 k + j is a whole number n.
struct Power {
    f64 n, high, p; // p begins as what high leaves of 2^(j/64)
    int k;

    // From the sum of n and a shifter, in whose low bits n stands.
    Power(f64 sum, f64 shifter) : n(sum - shifter) {
        const int m = (int)as_uint(sum), j = m & 63;
        high = tables::exp2_64_relative_rows(j, 0);
        p = tables::exp2_64_relative_rows(j, 1);
        k = m >> 6;
    }

    f64 over_two_to_k() const { return p * high + high; }
    // 2^1024 is not a double, but a little less can be a result.
    f64 normal() const { return k < 1024 ? over_two_to_k() * two_to(k) : over_two_to_k() * two_to(1023) * 2; }
    // For results that are denormal. The result times 2^60 is a + b; it is split into its upper 21 bits and
    // the rest before the scaling, so that the last addition is the only rounding to the few bits of a
    // denormal. Far down, sum has so many more bits than the result that rounding it first does no harm.
    f64 denormal() const {
        const f64 scale = two_to(k + 60), unscale = 0x3C30000000000000_f64; // 2^-60
        const f64 a = (p * high) * scale, b = scale * high;
        const f64 sum = b + a;
        if (k <= -1033) return sum * unscale;
        const f64 error = (b - sum) + a;
        const f64 shift = sum * 0x41F8000000000000_f64; // 1.5 * 2^32
        const f64 upper = (sum + shift) - shift, lower = (sum - upper) + error;
        return upper * unscale + lower * unscale;
    }
};

// e^x.
inline Power power_of_e(f64 x) {
    const f64 shifter = 0x4338000000000000_f64;                 // 1.5 * 2^52
    Power power(0x40571547652B82FE_f64 * x + shifter, shifter); // 64/ln 2
    // ln 2/64 in two parts; the product with the high one is exact.
    const f64 s = (x - power.n * 0x3F862E42FEFA0000_f64) - power.n * 0x3D1CF79ABC9E3B3A_f64;
    const f64 c = horner(s, 0x3F56C16A1C2A3FFD_f64, // 0.0013888870459233254
                         0x3F8111123AAF20D3_f64,    // 0.0083333419951404971
                         0x3FA5555555558FCC_f64,    // 0.041666666666770519
                         0x3FC55555555548F8_f64,    // 0.16666666666657881
                         0.5);
    power.p = ((c * s) * s + s) + power.p;
    return power;
}

// 2^x.
inline Power power_of_2(f64 x) {
    const f64 shifter = 0x42D8000000000000_f64; // 1.5 * 2^46: rounds to 1/64
    Power power(x + shifter, shifter);
    power.p = horner(x - power.n, 0x3F55D870C4D8440A_f64, // 0.0013333417185814622
                     0x3F83B2AD33F8B48B_f64,              // 0.0096181422696537591
                     0x3FAC6B08D7076268_f64,              // 0.05550410866607508
                     0x3FCEBFBDFF82A23A_f64,              // 0.24022650695884967
                     0x3FE62E42FEFA39EF_f64,              // 0.69314718055994529
                     power.p);
    return power;
}

// 10^x.
inline Power power_of_10(f64 x) {
    const f64 shifter = 0x4338000000000000_f64;                 // 1.5 * 2^52
    Power power(0x406A934F0979A371_f64 * x + shifter, shifter); // 64 log2(10)
    // log10(2)/64 in two parts; the product with the high one is exact.
    const f64 s = (x - power.n * 0x3F734413509F0000_f64) - power.n * 0x3D1E7FBCC47C4ACD_f64;
    power.p = horner(s, 0x3FE1427C87C70A85_f64, // 0.53936602133792688
                     0x3FF2BD77B840F0BF_f64,    // 1.1712567517670747
                     0x4000470591E2BC10_f64,    // 2.0346785924261965
                     0x40053524C73CD20A_f64,    // 2.6509490552364285
                     0x40026BB1BBB55515_f64,    // 2.3025850929940455
                     power.p);
    return power;
}

QUEVAR_INLINE_END
} // namespace quevar::explog
