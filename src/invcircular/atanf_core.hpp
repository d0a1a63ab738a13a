// What the arctangents of floats share: polynomials with atan w = w P(w^2) for w in [-1, 1], relative errors
// given, and quotients.
#pragma once

#include "arctangent.hpp"

namespace quevar::invcircular {
QUEVAR_INLINE_BEGIN

// Radians, 2^-24.35.
struct RadiansConstantsF {
    slot<f32> even[4] = {
        0x3B322CC0, // 0.00271873176
        0x3D2BC384, // 0.0419345051
        0x3DD96474, // 0.10614863
        0x3E4CB79F, // 0.199919209
    };
    slot<f32> odd[4] = {
        0xBC7F2631, // -0.0155730704
        0xBD987629, // -0.0744441226
        0xBE1161F8, // -0.141975284
        0xBEAAAA49, // -0.333330423
    };
};
QUEVAR_CONSTANTS(RadiansConstantsF, radiansf){};

// P = 1 + odd z + even z^2, the odd and even terms as chains in z^2; the families add them up in different
// orders.
template <class V> struct RadiansHalvesF {
    V z, z2, even, odd;

    explicit RadiansHalvesF(V w) {
        const auto &k = read_for(w, radiansf);
        z = w * w, z2 = z * z;
        even = polynomial(z2, k.even), odd = polynomial(z2, k.odd);
    }
};

// A cubic, in halves.
struct CubicF {
    slot<f32> p3, p2, p1, p0;

    template <class V> V operator()(V w) const {
        const V z = w * w, z2 = z * z;
        return fma(z, fma(z2, p3, p1), fma(p2, z2, p0));
    }
};
// Radians, 2^-12.11.
QUEVAR_CONSTANTS(CubicF, radians_nativef){
    .p3 = 0xBD324820, // -0.043525815
    .p2 = 0x3E1E481B, // 0.154571936
    .p1 = 0xBEA6A8A3, // -0.325505346
    .p0 = 0x3F7FF145, // 0.999775231
};
// Half turns, 2^-12.11.
QUEVAR_CONSTANTS(CubicF, half_turns_nativef){
    .p3 = 0xBC62FED0, // -0.0138546973
    .p2 = 0x3D4987CD, // 0.0492017753
    .p1 = 0xBDD4324D, // -0.103611566
    .p0 = 0x3EA2F023, // 0.318238348
};

// Half turns, 2^-24.33.
struct HalfTurnsPolynomialF {
    slot<f32> p[9] = {
        0x3A62DBF5, // 0.000865399197
        0xBBA26EDA, // -0.00495706219
        0x3C5AB246, // 0.0133481678
        0xBCC21EBE, // -0.0236962996
        0x3D0A6574, // 0.0337881595
        0xBD391B64, // -0.0451921374
        0x3D8253BA, // 0.0636362582
        0xBDD94C33, // -0.10610237
        0x3EA2F983, // 0.318309873
    };
    template <class V> V operator()(V w) const { return polynomial(w * w, p); }
};
QUEVAR_CONSTANTS(HalfTurnsPolynomialF, half_turnsf){};

struct NewtonConstantsF {
    slot<f32> two{0x40000000}; // 2
};
QUEVAR_CONSTANTS(NewtonConstantsF, newtonf){};

// 1/x from the processor's estimate by one Newton step.
template <int N, int L> vec<f32, N, L> reciprocal(vec<f32, N, L> x) {
    const auto r = reciprocal_estimate(x);
    return r * fnma(r, x, newtonf.two);
}
template <int N, int L> vec<f32, N, L> reciprocal_unless_scalar(vec<f32, N, L> x) {
    const auto r = reciprocal_estimate(x);
    return r * fnma_unless_scalar(r, x, newtonf.two);
}

QUEVAR_INLINE_END
} // namespace quevar::invcircular
