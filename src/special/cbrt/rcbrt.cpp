// rcbrt: the reciprocal root, 2^-d (2^rem c)^(-1/3) (1 - u/3 + 2/9 u^2 - ...) of 2^(3 d + rem) c (1 + u).
#include "cube_root.hpp"

namespace quevar::rcbrt {
QUEVAR_INLINE_BEGIN

using namespace cube_root;

QUEVAR_CONSTANTS(Rows<f32>, single_rows) = {{
#include "tables/rcbrtf_rows.inc"
}};
QUEVAR_CONSTANTS(Rows<f64>, double_rows) = {{
#include "tables/rcbrt_rows.inc"
}};

// ---- Rare lanes, of either type in doubles ----

// (2^k (1 + j/32))^(-1/3) by 32 k + j, to multiples of 1/256, whose cubes are exact.
using SeedRows = table<f64, 1, 97>;
QUEVAR_CONSTANTS(SeedRows, seed_rows) = {{
#include "tables/rcbrt_seed_rows.inc"
}};

// With T near the reciprocal root of A, that is T (1 - w)^(-1/3), where w = 1 - A T^3. The first term of the
// series is added in two parts.
[[gnu::noinline]] inline f64 root(f64 x) {
    constexpr f64 two_37 = 0x4240000000000000_f64;
    if (exponent_field(x) == format<f64>::field_max) return is_nan(x) ? x / x : 0.0 / x;
    f64 a = __builtin_fabs(x);
    int k = 0;
    if (exponent_field(a) == 0) {
        a = a * 0x4590000000000000_f64; // 2^90
        k = -30;
    }
    if (!(a > 0)) return 1 / x;

    const int e = exponent_field(a) - format<f64>::bias, rem = ((e % 3) + 3) % 3;
    k += (e - rem) / 3;
    const f64 m = as_float((as_uint(a) & format<f64>::significand) | as_uint(1.0)), A = m * (1 << rem);
    const int j = (int)(as_uint(m + 0x42E0000000000020_f64) & 63); // 2^47 + 1: rounds to 1/32
    const f64 T = seed_rows(j + 32 * rem, 0), T3 = T * T * T;

    const f64 P = two_37 * A, Ah = P - (P - A), Al = A - Ah;
    const f64 w1 = 1 - Ah * T3, q = Al * T3, w = w1 - q;
    const f64 W = two_37 * w1, w1h = W - (W - w1);
    const f64 c = 0x3FD5556000000000_f64; // 0.33333587646484375, short, so that its product with w1h is exact
    const f64 t1 = (w1h * T) * c, s1 = T + t1;
    const f64 series = horner(w, 0x3FB76E1B29541C7A_f64, // 0.09152383574483905
                              0x3FB9B8DCFA1CBB4B_f64,    // 0.10047703844314275
                              0x3FBC67D1021ABD48_f64,    // 0.11095911313417617
                              0x3FBFF4C2CAD96DC0_f64,    // 0.1248285050618767
                              0x3FC26FABB82A92C1_f64,    // 0.14403292171950535
                              0x3FC61F9ADD3D926E_f64,    // 0.17283950617560911
                              0x3FCC71C71C71C7C6_f64);   // 0.22222222222222693
    const f64 rest = 0xBEC555555556EEB1_f64;             // 1/3 - c, -2.5431315104610494e-06
    f64 low = (series * w * w + rest * w - q * c + (w1 - w1h) * c) * T;
    low = ((T - s1) + t1) + low;
    return (s1 + low) * __builtin_copysign(two_to(-k), x);
}

template <class T> struct Special {
    [[gnu::noinline]] static void rare(const T *x, T *r) { *r = (T)root(*x); }
};

// ---- Main paths ----

using SingleSeries = Series<f32, 4>;
QUEVAR_CONSTANTS(SingleSeries, single_series){
    {169u << 23},
    {
        0x3E137D5E, // 0.144032925
        0xBE30FCD7, // -0.172839507
        0x3E638E39, // 0.222222224
        0xBEAAAAAB, // -0.333333343
    },
};
using SingleShort = Series<f32, 1>;
QUEVAR_CONSTANTS(SingleShort, single_short){
    {169u << 23}, {0xBEAAAAAB}, // -0.333333343
};
using DoubleSeries = Series<f64, 8>;
QUEVAR_CONSTANTS(DoubleSeries, double_series){
    {1364ul << 52},
    {
        0x3FB791D4F50A7B47, // 0.092068967651795494
        0xBFB9B33CA7A65562, // -0.10039118855487097
        0x3FBC67C9DD3D11BB, // 0.11095868731815177
        0xBFBFF4C33F90EF5F, // -0.12482853223712941
        0x3FC26FABB85D0196, // 0.14403292181124233
        0xBFC61F9ADD3C0CA3, // -0.17283950617283947
        0x3FCC71C71C71C71C, // 0.22222222222222221
        0xBFD5555555555555, // -0.33333333333333331
    },
};
using DoubleShort = Series<f64, 4>;
QUEVAR_CONSTANTS(DoubleShort, double_short){
    {1364ul << 52},
    {
        0x3FC26FABB85D0196, // 0.14403292181124233
        0xBFC61F9ADD3C0CA3, // -0.17283950617283947
        0x3FCC71C71C71C71C, // 0.22222222222222221
        0xBFD5555555555555, // -0.33333333333333331
    },
};

template <class T> constexpr const Rows<T> &rows = single_rows;
template <> inline constexpr const Rows<f64> &rows<f64> = double_rows;

// 2^-d with the sign of x.
template <class V, class U, class K> V scale(V x, const Reduced<V, U> &r, const K &k) {
    const U bias = k.bias;
    return with_sign(x, bias - (r.third << format<typename V::element>::digits));
}

// On |u| <= 1/65 the relative error of the series is 2^-33.4 for float and 2^-57.6 for double.
// Worst: 0x3F83FBD7, 1.03112304, gives 0x3F7D65E2, wanted 0x3F7D65E1: 0.5129 ulp.
struct Single : Special<f32> {
    static constexpr int in_turn_after_mask = 2;
    template <class V> static auto main(V x) {
        const auto &k = single_series;
        const auto r = reduce(x);
        const auto [c, high, low, _] = fetch_at<first_row<f32>>(single_rows, r.distance);
        const V s = scale(x, r, k), u = c * r.offset, H = s * high, L = s * low;
        return flagged(H + fma(u * H, polynomial(u, k.c), L), special(x));
    }
};

// Worst: 0x3FF07FF2225A885E, 1.0312367765368644, gives 0x3FEFAC6FDE6EEF20, wanted 0x3FEFAC6FDE6EEF1F: 0.5463.
struct Double : Special<f64> {
    static constexpr int in_turn_after_mask = 2;
    template <class V> static auto main(V x) {
        const auto &k = double_series;
        const auto r = reduce(x);
        return flagged(root_in_two_parts(x, scale(x, r, k), r, double_rows, k), special(x));
    }
};

// The short series leave 2^-14.2 and 2^-33.1.
// Worst: 0x3F800017, 1.00000274, gives 0x3F7FFC77, wanted 0x3F7FFFF1: 889.7 ulp.
// Worst of double: 0x3FF0000000000003, 1.0000000000000007, gives 0x3FEFFFFFFFF11602, wanted
// 0x3FEFFFFFFFFFFFFE: 9.775e5.
template <class T, const auto &k> struct OnePart : Special<T> {
    static constexpr int in_turn_after_mask = 4;
    template <class V> static auto main(V x) {
        const auto r = reduce(x);
        return flagged(root_in_one_part(scale(x, r, k), r, rows<T>, k), special(x));
    }
};

using SingleNative = OnePart<f32, single_short>;
using DoubleNative = OnePart<f64, double_short>;
QUEVAR_EXPORT(rcbrt, f, , unary, f32, f32, void, Single)
QUEVAR_EXPORT(rcbrt, f, _native, unary, f32, f32, void, SingleNative)
QUEVAR_EXPORT(rcbrt, , , unary, f64, f64, void, Double)
QUEVAR_EXPORT(rcbrt, , _native, unary, f64, f64, void, DoubleNative)

QUEVAR_INLINE_END
} // namespace quevar::rcbrt
