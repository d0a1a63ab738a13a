// What the arctangents of doubles share: polynomials with atan w = w P(w^2) for w in [-1, 1], relative errors
// given, and quotients.
#pragma once

#include "arctangent.hpp"

namespace quevar::invcircular {
QUEVAR_INLINE_BEGIN

// A polynomial in z = w^2, its odd and even terms as chains in z^2.
struct Halves {
    slot<f64> odd[5], even[5];

    template <class V> V operator()(V w) const {
        const auto &k = read_for(w, *this);
        const V z = w * w, z2 = z * z;
        return fma(z, polynomial(z2, k.odd), polynomial(z2, k.even));
    }
};
// Radians, 2^-28.63.
QUEVAR_CONSTANTS(Halves, radians_native){
    .odd =
        {
            0xBF5C95B5AB286A02, // -0.001744677935340833
            0xBF9F791909CB44C4, // -0.030735388968257352
            0xBFB56FCD7489159A, // -0.083737221671148637
            0xBFC2414862594647, // -0.14261727144416822
            0xBFD55553391CE4C9, // -0.33333283021381682
        },
    .even =
        {
            0x3F85E36A8CED7474, // 0.010687668252723471
            0x3FAD6EE2DACE07AF, // 0.05748661919552888
            0x3FBC0236E7018BA7, // 0.10940879001422719
            0x3FC999069C08617C, // 0.19998247736726771
            0x3FEFFFFFFEB5A845, // 0.99999999759644054
        },
};
// Half turns, 2^-28.63.
QUEVAR_CONSTANTS(Halves, half_turns_native){
    .odd =
        {
            0xBF42329940F01541, // -0.00055534823502571145
            0xBF84094ECA14A044, // -0.0097833781643005338
            0xBF9B4B49880FA760, // -0.026654385499490174
            0xBFA73E3559D3A6F6, // -0.045396487441235964
            0xBFBB299337E33714, // -0.10610313524668086
        },
    .even =
        {
            0x3F6BDE7DB93E8B55, // 0.0034019904650945212
            0x3F92BCDB8589EE51, // 0.018298559213219715
            0x3FA1D4B346C946CD, // 0.03482589949693491
            0x3FB04BC92A8107F5, // 0.063656399609527473
            0x3FD45F306CF77B05, // 0.31830988541871391
        },
};

// Half turns, 2^-52.92.
struct HalfTurnsPolynomial {
    slot<f64> p[22] = {
        0xBEC435D571D7FB69, // -2.4092540928938886e-06
        0x3EFEE969B7DB1149, // 2.9479760533816517e-05
        0xBF26798A20DC9977, // -0.00017146884095460186
        0x3F44C3C0C907686F, // 0.00063368714659907215
        0xBF5B8DDB0F1CD2C5, // -0.0016817702530264472
        0x3F6C3A72776AC84D, // 0.0034458385155966887
        0xBF778AC56B6FECF2, // -0.0057475768762700209
        0x3F80BAD5CF20A9ED, // 0.0081688598475766153
        0xBF85278CBEF8B02E, // -0.010329341485963619
        0x3F88CA8EE19B9723, // 0.012105098972323319
        0xBF8BE48C140DF0C8, // -0.013619512903226286
        0x3F8EEA5306D0465F, // 0.015095375676568766
        0xBF9124120821BA9D, // -0.016739160295794354
        0x3F932BC4F824F7C6, // 0.018721654553921295
        0xBF95BAC83A460E3E, // -0.021220329815618159
        0x3F9912AF904B4DD1, // 0.024485343153015485
        0xBF9DA1BAA68634EC, // -0.028937260068734469
        0x3FA21BB94433ED0A, // 0.035367765021840539
        0xBFA7483758DF91CF, // -0.045472840880197311
        0x3FB04C26BE3AF8D5, // 0.063661977236708481
        0xBFBB2995E7B7B5ED, // -0.10610329539459658
        0x3FD45F306DC9C883, // 0.31830988618379069
    };
    template <class V> V operator()(V w) const { return polynomial(w * w, read_for(w, *this).p); }
};
QUEVAR_CONSTANTS(HalfTurnsPolynomial, half_turns){};

struct EstimateConstants {
    slot<i32> fraction{0x007FFFFF};
    slot<i32> one_single{0x3F800000};
    slot<i32> exponent{0xFFF00000};
    slot<i32> exponents{0x77F00000}; // of a double and its reciprocal together, less that of 1 as a float
    slot<i64> high_word{0xFFFFFFFF00000000};
    slot<f64> one{0x3FF0000000000000}; // 1
};
QUEVAR_CONSTANTS(EstimateConstants, estimate_constants){};

// About 1/x, for x > 0, with the processor's estimate for the top 20 bits of the significand.
template <class V> V reciprocal_by_words(V x, const EstimateConstants &k) {
    const auto h = words(x); // the low words come along, and go with the mask
    const auto r = reciprocal_estimate(as_float(((h << 3) & k.fraction) | k.one_single));
    const auto w = (as_int(r) >> 3) + k.exponents - (h & k.exponent);
    return as_float(from_words<typename V::mask>(w) & k.high_word);
}

// With e = x r - 1, 1/x = r (1 - e + e^2 - ...), taken to e^2.
template <int N, int L> vec<f64, N, L> reciprocal(vec<f64, N, L> x) {
    const auto &k = read_for(x, estimate_constants);
    const auto r = reciprocal_by_words(x, k), e = fms(r, x, k.one);
    return fma(r, fms(e, e, e), r);
}
template <int N, int L> vec<f64, N, L> reciprocal_unless_scalar(vec<f64, N, L> x) {
    const auto &k = read_for(x, estimate_constants);
    const auto r = reciprocal_by_words(x, k), e = fms_unless_scalar(r, x, k.one);
    return fma_unless_scalar(e * (e - k.one), r, r);
}
// To e^4. r has so few bits that its product with the upper half of x is exact: e is good to the last place.
template <int N, int L> vec<f64, N, L> close_reciprocal_unless_scalar(vec<f64, N, L> x) {
    const auto &k = read_for(x, estimate_constants);
    const auto r = reciprocal_by_words(x, k), high = as_float(as_int(x) & k.high_word), low = x - high;
    const auto e = fma_unless_scalar(low, r, fms_unless_scalar(r, high, k.one));
    const auto h = fms_unless_scalar(fma_unless_scalar(e, e - k.one, k.one), e, k.one);
    return fma_unless_scalar(e * h, r, r);
}

QUEVAR_INLINE_END
} // namespace quevar::invcircular
