// lgamma of one double, in extended precision.
#pragma once

#include "extended.hpp"
#include "reciprocals.hpp"

namespace quevar::lgamma {
QUEVAR_INLINE_BEGIN

// lgamma(4 2^k (1 + t)), t in [0, 1), as c (t^2 + b0 t + a0) ... (t^2 + b10 t + a10): rows of a0, b0, ... a10, b10, c.
inline constexpr f80 binades[7][23] = {
#include "tables/lgamma_binades.inc"
};
// The same for lgamma(t)/(t - 2) on [2.25, 4).
inline constexpr f80 before_four[23] = {
    6.76668873280930275628L, -7.76671259018732758426L,  0.737176687262027109182L,    0.480828500775335275654L,
    3.18021177764825709673L, -0.165263251064953699330L, 7.15828139407400236473L,     -1.41248367110053064499L,
    12.3981514984255071663L, -3.10427264780474236757L,  18.5287923171235978676L,     -5.08041080496669163798L,
    25.0826408773144644854L, -7.16661300657450744738L,  31.5226331563678606133L,     -9.18382775685358695994L,
    37.2878088238883274898L, -10.9611359281736874824L,  41.8509234463880024288L,     -12.3489732778724359058L,
    44.7792755242843945052L, -13.2309997523020948657L,  -9.35320339010806364897e-13L};

// lgamma(z) = t O(t^2) + E(t^2) with t = z - centre on [0.875, 1.25), [1.25, 1.75) and [1.75, 2.25).
struct Piece {
    f80 centre, odd[9], even[9];
};
inline constexpr Piece pieces[3] = {
    {1, // [0.875, 1.25)
     {-0.02540957765007032, -0.066591566228173124, -0.076999070539431849, -0.090952146753150095,
      -0.11133428824955251, -0.14404989663541906, -0.207385551029061190189L, -0.400685634386530978388L,
      -0.577215664901532860725L},
     {0.053663994327534346, 0.071878294789375644, 0.083348192601381835, 0.10009944023621534,
      0.12550967040163546, 0.16955717699094375, 0.270580808427801372285L, 0.822467033424113206719L, 0}},
    {0x3FFFBB16C31AB5F1FC00_f80, // [1.25, 1.75)
     {-7.0214534895133776e-05, -0.00022916618497105978, -0.00055387050493095852, -0.0014022631702882869,
      -0.0036845693794104587, -0.010314223038979246, -0.0327885410884704070425L, -0.147587722994530713214L,
      1.50205455013732130298e-17L},
     {0.00015083325124508061, 0.0003518093646843795, 0.00087821786376119759, 0.0022597656304936767,
      0.0061005360041202286, 0.017970675115353215, 0.0646249402389123092281L, 0.483836122723810578545L,
      -0.121486290535849608093L}},
    {2, // [1.75, 2.25)
     {-4.8026912645132595e-07, -2.0353127738670961e-06, -9.4397525113416973e-06, -4.4926226286512128e-05,
      -0.00022315475869753428, -0.0011927539117000425, -0.00738555102867400670184L,
      -0.0673523010531980950778L, 0.422784335098467139384L},
     {1.0135204565332606e-06, 4.368405861776055e-06, 2.0507589955302115e-05, 9.9457500270756915e-05,
      0.00050966952497817912, 0.0028905103307391815, 0.0205808084277845583474L, 0.322467033424113218212L, 0}},
};

// lgamma(root + t) = p[0] + p[1] t + ... for low < root + t < high, p continued in q: of the two zeros in (-3, -2),
// (-4, -3) and so on the first ones, then the second ones.
struct Zero {
    f64 low, root, high;
    f80 p[5];
    f64 q[12];
};
inline constexpr Zero zeros[26] = {
#include "tables/lgamma_zeros.inc"
};

// The logarithms of the reciprocals, their sign turned, in two parts.
using Logs = table<f64, 2, 256>;
QUEVAR_CONSTANTS(Logs, logs) = {{
#include "tables/lgamma_logs.inc"
}};

inline constexpr f80 half_ln_2pi = 0x3FFEEB3F8E4325F5A535_f80; // 0.918938533204672741803
inline constexpr f64 shifter = 0x1.8p52;

struct Parts {
    u64 significand;
    unsigned short word; // sign and exponent
    explicit Parts(f80 x) { __builtin_memcpy(this, &x, 10); }
};
inline f80 of_significand(u64 significand) { // in [1, 2)
    const struct {
        u64 significand;
        unsigned short word;
    } parts{significand, 0x3FFF};
    f80 x;
    __builtin_memcpy(&x, &parts, 10);
    return x;
}

// ln(1 + f), |f| < 2^-4: f is split so that f - f^2/2 + K f^3, K near 1/3, can be summed in two parts.
inline f80 log_near_one(f80 f) {
    const f80 c = shifter * f, fh = (f + c) - c, fl = f - fh, g = fh * fl + fl * f, q = g + fh * fh;
    const f80 a =
        horner<f80>(q, {0.0532824667046178348681L, 0.0769159956101239848062L, 0.0909091987678118159866L,
                        0.111111110941702820559L, 0.142857142857256594218L, 0.199999999999999963262L,
                        0.0000813802083333333385964L}) *
        q; // 1/3 - K
    const f80 b =
        horner<f80>(q, {-0.0704102891706427754448L, -0.0833362028372677447296L, -0.0999999977943665803963L,
                        -0.124999999999890849606L, -0.166666666666667460009L, -0.249999999999999999702L});
    const f80 k = 0x3FFDAAA0000000000000_f80,
              e = 0xBFB49F28EA2D2DF7E646_f80; // 0.333251953125, -3.29134800223491094726e-23
    const f80 m = ((a + (q * b + e) * f) + g * k) - 0.5L * fl;
    const f80 u = k * (fh * fh) - 0.5L * fh, v = u * fh, w = fh + v, r = v + (fh - w);
    return (((fh * m + (u + m) * fl) + fl) + r) + w;
}

// ln z of a positive z.
[[gnu::noinline]] inline f80 log(f80 z) {
    const Parts parts(z);
    const u32 key = (u32)parts.word << 16 | (u32)(parts.significand >> 48);
    if (key >= 0x3FFEFFFF && key <= 0x3FFF8000) { // 1 - 2^-17 ... 1 + 2^-15
        if (z == 1) return 0;
        const f80 f = z - 1, q = f * f;
        return ((0.199992370929861862594L * q + 0.333333333333335849749L) * q * f +
                q * (-0.249999999985452243039L * q - 0.5L)) +
               f;
    }
    if (key >= 0x3FFEF800 && key <= 0x3FFF8800) return log_near_one(z - 1); // 0.96875 ... 1.0625
    const f80 k = (int)parts.word - 16383, m = of_significand(parts.significand);
    const int i = (int)(parts.significand >> 55) & 0xFF;
    const f80 mh = (m + 6442450944.0L) - 6442450944.0L, ml = m - mh; // 1.5 * 2^32
    const f80 r = reciprocals(i, 0);
    const f80 u = mh * r - 1, ul = ml * r, w = u + ul, q = w * w;
    // ln 2 in two parts.
    const f80 high = u + (0x3FFEB17217F800000000_f80 * k + logs(i, 0)); // 0.693147180601954460144
    const f80 odd =
        ((0.142858487306301136998L * q + 0.199999999994468939963L) * q + 0.333333333333333341989L) * q * w;
    const f80 even =
        q * ((-0.166666876673219579828L * q - 0.249999999996339723681L) * q - 0.500000000000000003524L);
    const f80 low =
        (ul + (odd + even)) + (0xBFDCB8C21950D8713000_f80 * k + logs(i, 1)); // -4.20091507268108459794e-11
    return high + low;
}

inline f80 product(f80 t, const f80 (&row)[23]) {
    const f80 square = t * t;
    f80 p = 1;
    for (int i = 0; i < 22; i += 2) p = p * ((row[i + 1] * t + square) + row[i]);
    return p * row[22];
}

// lgamma(z) for 0.875 <= z < 512.
[[gnu::noinline]] inline f80 core(f80 z) {
    const f64 rounded = (f64)z; // from 4 on it is z
    if (rounded >= 4) {
        const int k = exponent_field(rounded) - 1025;
        return product((z - two_to(k + 2)) * two_to(-k - 2), binades[k]);
    }
    if (rounded >= 2.25) return product(z, before_four) * (z - 2);
    const Piece &piece = pieces[(rounded >= 1.25) + (rounded >= 1.75)];
    const f80 t = z - piece.centre, v = t * t;
    return horner(v, piece.even) + t * horner(v, piece.odd);
}

// gamma(x) = gamma(x + n)/(x (x + 1) ... (x + n - 1)) with x + n in [1, 2].
inline f80 by_recurrence(f80 x) {
    f80 p = 1, z = x;
    while (z < 1) {
        p = p * z;
        z = z + 1;
    }
    return core(z) - log(__builtin_fabsl(p));
}

// The upper half of z's significand.
inline f80 upper_half(f80 z) {
    const f80 scaled = 8589934593.0L * z; // 2^33 + 1
    return (z + scaled) - scaled;
}
// The same with the product in two parts.
inline f80 by_long_recurrence(f80 x) {
    f80 high = 1, low = 0, z = x;
    while (z < 1) {
        const f80 zh = upper_half(z), zl = z - zh, h = upper_half(high), l = low + (high - h);
        const f80 rest = (zh * l + zl * l) + h * zl, exact = zh * h;
        high = rest + exact;
        low = rest - (high - exact);
        z = z + 1;
    }
    return core(z) - log(__builtin_fabsl(high));
}

// Stirling's sum for x > 0, l its logarithm. Below 0 with l that of -x and the constant's sign turned it is
// -lgamma(-x) - l, as the reflection needs it.
inline f80 stirling(f80 x, f80 l, f80 constant) {
    const f80 w = 1 / x;
    return (((x - 0.5L) * l + constant) - x) +
           w * (0x3FFBAAAAAAAAAAAAAAAB_f80 + 0xBF66C16C16C16C17_f64 * (w * w));
}

// gamma(x) gamma(-x) = -pi/(x sin(pi x)), with d the distance of x from a whole number.
inline f80 by_reflection(f64 x) {
    const f64 a = -x, n = (shifter - x) - shifter;
    const f80 d = a - n, z = d * d, u = z * z;
    // ln(sin(pi d)/(pi d))
    const f80 q = horner<f80>(u, {0.30355392106281215, -0.024749593136170919, -0.10890866797245921,
                                  -0.14284882071055655, -0.200198888020388573303L, -0.339114353989681306271L,
                                  -1.64493406684822642341L}) *
                      z +
                  horner<f80>(u, {-0.43920530668000263, -0.28483436144791585, -0.11452384662150583,
                                  -0.12523497868494537, -0.166708526023240121415L, -0.251019339565370991661L,
                                  -0.541161616855589211450L}) *
                      u;
    const f80 l1 = log(a), l2 = log(__builtin_fabsl(d));
    return ((a < 512 ? -(core(a) + l1) : stirling(x, l1, -half_ln_2pi)) - q) - l2;
}

inline f80 near_zero(const Zero &zero, f64 x) {
    const f80 t = (f80)x - zero.root, v = t * t;
    f80 even = zero.q[11], odd = zero.q[10];
    for (int i = 9; i >= 0; i -= 2) even = even * v + zero.q[i];
    for (int i = 8; i >= 0; i -= 2) odd = odd * v + zero.q[i];
    even = (even * v + zero.p[4]) * v + zero.p[2];
    odd = (odd * v + zero.p[3]) * v + zero.p[1];
    return t * odd + (even * v + zero.p[0]);
}

// Of a negative x that is no whole number.
inline f80 of_negative(f64 x) {
    const f64 a = -x;
    if (a >= 17) return by_reflection(x);
    if (a >= 15) return by_long_recurrence(x);
    if (a >= 2)
        for (const Zero *zero : {&zeros[(int)a - 2], &zeros[(int)a + 11]})
            if (zero->low < x && x < zero->high) return near_zero(*zero, x);
    return by_recurrence(x);
}

inline bool whole(f64 x) { return x <= -0x1p52 || x == (f64)(i64)x; } // x < 0

inline f64 value(f64 x) {
    const f64 zero = at_run_time(0.0), largest = at_run_time(0x7FEFFFFFFFFFFFFF_f64);
    if (exponent_field(x) == 2047) return x * x;
    if (x == 0) return 1 / zero;
    if (x < 0) return whole(x) ? 1 / zero : (f64)of_negative(x);
    if (as_uint(x) > 0x7F5754D9278B51A7) return largest * largest;
    if (x == 1) return 0;
    if (x >= 512) return (f64)stirling(x, log(x), half_ln_2pi);
    return (f64)(x >= 0.875 ? core(x) : core(1.0L + x) - log(x));
}

// Of gamma(x); 1 at the poles, but that of x at the zeros.
inline i32 sign_of_gamma(f64 x) {
    if (x == 0) return as_int(x) < 0 ? -1 : 1;
    if (!(x < 0) || whole(x)) return 1;
    return 2 * (i32)((i64)x & 1) - 1; // (i64)x is x rounded up
}

QUEVAR_INLINE_END
} // namespace quevar::lgamma
