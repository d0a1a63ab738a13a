// cbrt: the cube root, cbrt(2^(3 d + rem) c (1 + u)) = 2^d cbrt(2^rem c) (1 + u/3 - u^2/9 + ...).
#include "cube_root.hpp"

namespace quevar::cbrt {
QUEVAR_INLINE_BEGIN

using namespace cube_root;

QUEVAR_CONSTANTS(Rows<f32>, single_rows) = {{
#include "tables/cbrtf_rows.inc"
}};
QUEVAR_CONSTANTS(Rows<f64>, double_rows) = {{
#include "tables/cbrt_rows.inc"
}};

// ---- Rare lanes of float ----

template <class T> struct Special;

template <> struct Special<f32> {
    // Denormals times 2^126 go through the steps of the main path, each rounded separately.
    [[gnu::noinline]] static void rare(const f32 *x, f32 *r) {
        if (exponent_field(*x) == format<f32>::field_max) {
            *r = *x + *x;
            return;
        }
        if (*x == 0) {
            *r = *x;
            return;
        }
        const f32 z = *x * 0x7E800000_f32; // 2^126
        const u32 bits = as_uint(z);
        const int e = exponent_field(z), part = (int)(bits >> 18) & 31, d = e * 1365 >> 12;
        const int row = 32 * ((e - 1) - 3 * d) + part;
        const f32 u = single_rows(row, 0) * (as_float((bits & 0x007FFFFF) | 0xBF800000) -
                                             as_float((bits & 0x007E0000) | 0xBF820000));
        const f32 s = as_float((u32)(d + 85) << 23 | (bits & format<f32>::sign));
        const f32 H = s * single_rows(row, 1);
        const f32 p = horner(u, 0xBD288F47_f32, 0x3D7CD6EA_f32, 0xBDE38E39_f32, 0x3EAAAAAB_f32);
        *r = ((p * (u * H) + single_rows(row, 2) * s) + H) * 0x2A800000_f32; // 2^-42
    }
};

// ---- Rare lanes of double ----

// (1 + j/32)^(-1/3), cut off to multiples of 1/256.
using SeedRows = table<f64, 1, 32>;
QUEVAR_CONSTANTS(SeedRows, seed_rows) = {{
#include "tables/cbrt_seed_rows.inc"
}};

// The upper 53 - n bits of x, by the factor 2^n + 1.
inline f64 upper(f64 x, f64 factor) { return factor * x - (factor * x - x); }
inline f64 upper_half(f64 x) { return upper(x, 0x41A0000002000000_f64); } // 2^27 + 1

// 2^(j/3), the high part short.
constexpr u64 root_of_two[3][2] = {
    {0x3FF0000000000000, 0x0000000000000000}, // 1
    {0x3FF428A2F8000000, 0x3E38D728AE223DDB}, // 1.2599210441112518, 5.783621333712523e-09
    {0x3FF965FEA0000000, 0x3E54F5B8F20AC166}, // 1.587401032447815, 1.9520384533345454e-08
};

// With T near the reciprocal root of m, the root is m T^2 (1 - w)^(-2/3), where w = 1 - m T^3; in two parts.
inline f64 root_of_denormal(f64 x) {
    const f64 a = __builtin_fabs(x) * 0x52B0000000000000_f64; // 2^300
    const int e = exponent_field(a), rem = e % 3;
    const u64 significand = as_uint(a) & format<f64>::significand;
    const f64 m = as_float(significand | as_uint(1.0));
    const f64 T = seed_rows((int)(significand >> 47), 0);
    const f64 mh = upper(m, 0x42A0000000000200_f64), ml = m - mh; // 2^43 + 1
    const f64 P = mh * (T * T), Pl = ml * (T * T);
    const f64 w1 = 1 - T * P, wh = upper_half(w1), wl = (w1 - wh) + -(T * Pl), w = wh + wl;

    // The series less 1 is w (2/3 + Q), and 2/3 + Q = sh + sl.
    const f64 Q = w * horner(w, 0x3FD4746C5E79AE3D_f64, // 0.3196059153185365
                             0x3FD50A0910B7ABE7_f64,    // 0.3287375128990661
                             0x3FD5B259593D6946_f64,    // 0.3390105601771619
                             0x3FD671E0D7E740C4_f64,    // 0.35070057949361577
                             0x3FD74EDFA52160CC_f64,    // 0.3641890633202933
                             0x3FD8524D8AEB2D5A_f64,    // 0.3800233704211756
                             0x3FD9899E3843BC6C_f64,    // 0.39902453894223444
                             0x3FDB0A2F0E65D690_f64,    // 0.4224965706447188
                             0x3FDCF8A021B64151_f64,    // 0.45267489711934156
                             0x3FDF9ADD3C0CA458_f64,    // 0.49382716049382713
                             0x3FE1C71C71C71C72_f64);   // 0.5555555555555556
    const f64 c = 2.0 / 3, c_low = 0x3C85555555555555_f64;
    const f64 s = c + Q, f = c - s;
    const f64 sh = upper_half(s), sl = (s - sh) + (((Q + f) + (c - (s + f))) + c_low);

    const f64 g = wh * sh, gh = upper_half(g), gl = ((wl * sl + wl * sh) + wh * sl) + (g - gh);
    const f64 b = gh * P, cross = (gl * Pl + gh * Pl) + gl * P;
    const f64 r = b + P, t = P - r, rest = (b + t) + (P - (r + t));
    const f64 rh = upper_half(r), rl = rest + (r - rh), z = (cross + rl) + Pl;

    const f64 Th = as_float(root_of_two[rem][0]), Tl = as_float(root_of_two[rem][1]);
    const f64 root = (((Tl * z + Tl * rh) + z * Th) + rh * Th) * two_to((e - rem - 1023) / 3 - 100);
    return __builtin_copysign(1, x) * root;
}

template <> struct Special<f64> {
    [[gnu::noinline]] static void rare(const f64 *x, f64 *r) {
        if (exponent_field(*x) == format<f64>::field_max) *r = *x + *x;
        else *r = *x == 0 ? *x : root_of_denormal(*x);
    }
};

// ---- Main paths ----

using SingleSeries = Series<f32, 4>;
QUEVAR_CONSTANTS(SingleSeries, single_series){
    {85u << 23},
    {
        0xBD288F47, // -0.0411522649
        0x3D7CD6EA, // 0.0617283955
        0xBDE38E39, // -0.111111112
        0x3EAAAAAB, // 0.333333343
    },
};
using SingleShort = Series<f32, 1>;
QUEVAR_CONSTANTS(SingleShort, single_short){
    {85u << 23}, {0x3EAAAAAB}, // 0.333333343
};
using DoubleSeries = Series<f64, 8>;
QUEVAR_CONSTANTS(DoubleSeries, double_series){
    {682ul << 52},
    {
        0xBF9036DE5C9CC8E7, // -0.015834307100882319
        0x3F93750AD588F115, // 0.019001168521058782
        0xBF98090D6221A247, // -0.023472031702484377
        0x3F9EE7113506AC12, // 0.03017832647462277
        0xBFA511E8D2B3183B, // -0.041152263374485597
        0x3FAF9ADD3C0CA458, // 0.061728395061728392
        0xBFBC71C71C71C71C, // -0.11111111111111111
        0x3FD5555555555555, // 0.33333333333333331
    },
};
using DoubleShort = Series<f64, 3>;
QUEVAR_CONSTANTS(DoubleShort, double_short){
    {682ul << 52},
    {
        0x3FAF9ADD3C0CA458, // 0.061728395061728392
        0xBFBC71C71C71C71C, // -0.11111111111111111
        0x3FD5555555555555, // 0.33333333333333331
    },
};

template <class T> constexpr const Rows<T> &rows = single_rows;
template <> inline constexpr const Rows<f64> &rows<f64> = double_rows;

// 2^d with the sign of x.
template <class V, class U, class K> V scale(V x, const Reduced<V, U> &r, const K &k) {
    return with_sign(x, (r.third << format<typename V::element>::digits) + k.bias);
}

// On |u| <= 1/65 the relative error of the series is 2^-32.9 for float and 2^-59.9 for double.
// Worst: 0x40BFED4E, 5.99771786, gives 0x3FE88FDC, wanted 0x3FE88FDB: 0.5118 ulp.
// Worst of double: 0x4010FFCFF06093F6, 4.249816661734249, gives 0x3FF9EAA12B17EB68, wanted
// 0x3FF9EAA12B17EB69: 0.515.
template <class T, const auto &k> struct TwoPart : Special<T> {
    static constexpr int in_turn_after_mask = 2;
    template <class V> static auto main(V x) {
        const auto r = reduce(x);
        return flagged(root_in_two_parts(x, scale(x, r, k), r, rows<T>, k), special(x));
    }
};

// The short series leave 2^-15.2 and 2^-28.7.
// Worst: 0x40800000, 4, gives 0x3FCB3158, wanted 0x3FCB2FF5: 354.8 ulp.
// Worst of double: 0x4010000000000001, 4.000000000000001, gives 0x3FF965FEA63D1A23, wanted
// 0x3FF965FEA53D6E3D: 1.676e7.
template <class T, const auto &k> struct OnePart : Special<T> {
    static constexpr int in_turn_after_mask = 4;
    template <class V> static auto main(V x) {
        const auto r = reduce(x);
        return flagged(root_in_one_part(scale(x, r, k), r, rows<T>, k), special(x));
    }
};

using Single = TwoPart<f32, single_series>;
using SingleNative = OnePart<f32, single_short>;
using Double = TwoPart<f64, double_series>;
using DoubleNative = OnePart<f64, double_short>;
QUEVAR_EXPORT(cbrt, f, , unary, f32, f32, void, Single)
QUEVAR_EXPORT(cbrt, f, _native, unary, f32, f32, void, SingleNative)
QUEVAR_EXPORT(cbrt, , , unary, f64, f64, void, Double)
QUEVAR_EXPORT(cbrt, , _native, unary, f64, f64, void, DoubleNative)

QUEVAR_INLINE_END
} // namespace quevar::cbrt
