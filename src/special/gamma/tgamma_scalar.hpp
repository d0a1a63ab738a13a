// The gamma function of one double, in extended precision.
#pragma once

#include "extended.hpp"

namespace quevar::tgamma {
QUEVAR_INLINE_BEGIN

// gamma(16k + f), f in [0, 1), as c (f^2 + a0 f + b0) ... (f^2 + a10 f + b10): rows of a0 ... a10, b0 ... b10, c.
// Row 0 is gamma(2 + f), and row 11 gamma(176 + f) times `rescale`.
inline constexpr f80 blocks[12][23] = {
#include "tables/tgamma_blocks.inc"
};
inline constexpr f80 rescale = 0x3BECBA5D5869211696FF_f80; // 1.54478500413825067204e-314

// gamma(y) on [1, 1.25), [1.25, 1.5) and [1.5, 2), from the constant term; the second from the minimum.
inline constexpr f80 intervals[3][16] = {
    {0x3FFF8000000000000000_f80, 0xBFFE93C467E37DB0C536_f80, 0x3FFEFD32C611D8A881D0_f80,
     0xBFFEE8508C7990A0DAC0_f80, 0x3FFEFB52882A095B18A4_f80, 0xBFFEFB64074CED2658FB_f80,
     0x3FFEFE3F02E5EDB6811E_f80, 0xBFFEFEF9CAEE2CB5B533_f80, 0x3FFEFF8153BD42E71A4F_f80,
     0xBFFEFFA5EF3959089E94_f80, 0x3FFEFF173B7E66FD1D61_f80, 0xBFFEFB73D31793068463_f80,
     0x3FFEECF7DDDFD27C9223_f80, 0xBFFEC4DED71C782F76C8_f80, 0x3FFDF5B5413F95E1C282_f80,
     0xBFFCA405530B067ECD3C_f80},
    {0x3FFEE2B6E4153A57746C_f80, 0x3FC6F4F8FBC7C0C9D317_f80, 0x3FFDDB629FB9BBDC1C4E_f80,
     0xBFFC85D74FA063E81476_f80, 0x3FFCA4C08BAF0A559479_f80, 0xBFFBBCFBBD5786537E9A_f80,
     0x3FFB8F4BDE8883232364_f80, 0xBFFAC038E6E3261568F9_f80, 0x3FFA85A262C6F8FEEF71_f80,
     0xBFF9B6F91CB5C371177B_f80, 0x3FF8FB14010FB3697785_f80, 0xBFF8AC8FD5E11F6EEAD8_f80,
     0x3FF7E366DB2FB27B7ECD_f80, 0xBFF7C53F83645D4597FC_f80, 0x3FF3EA6DE925E6EB8C8F_f80,
     0xBFF7D038092400619677_f80},
    {0x3FFEFFFFF1781FDBEE84_f80, 0xBFFE93C30FD9781DBA88_f80, 0x3FFEFD23CD9741B460B8_f80,
     0xBFFEE7E82D0C613A8DE4_f80, 0x3FFEF9535027C1B1F795_f80, 0xBFFEF41312A8572ED346_f80,
     0x3FFEE96254A2407A5EAC_f80, 0xBFFECF579312AD7EAD72_f80, 0x3FFEA6605F2721F787CE_f80,
     0xBFFDE7F236EBFB9F774E_f80, 0x3FFD87445235F4688CC5_f80, 0xBFFBFD84F35B70CD9AE2_f80,
     0x3FFAB5D5E9E5104FA995_f80, 0xBFF8BA55A9A1FC883523_f80, 0x3FF5F1F75D3C561CBBAF_f80,
     0xBFF29533F9D3723B448C_f80},
};
inline constexpr f80 minimum = 0x3FFFBB16C31AB5F1FC00_f80; // 1.46163214496836235679

// sin(pi v)/(pi v) - 1, over z = v^2.
inline constexpr f80 sine_coefficients[10] = {
    0x3FDEBCBC4342112F52A2_f80, // 1.71653847498214330189e-10
    0xBFE3FAFCECB86536F655_f80, // -7.30471182221777479694e-9
    0x3FE987E4C97F9CF09B92_f80, // 2.53121740413702765125e-7
    0xBFEDEA124C68E704C5CB_f80, // -6.97587366165638047472e-6
    0x3FF29BA38CFD59C8AA1D_f80, // 0.000148428793031071003688
    0xBFF699C0B552303D5B21_f80, // -0.00234608103545582363753
    0x3FF9D63402E79A853175_f80, // 0.0261478478176548005054
    0xBFFCC354723906DB36BA_f80, // -0.190751824122084213698
    0x3FFECFCE5A015E236291_f80, // 0.811742425283353643639
    0xBFFFD28D3312983E9918_f80, // -1.64493406684822643642
};

inline f80 block(const f80 (&row)[23], f80 f) {
    const f80 square = f * f;
    f80 g = row[22];
    for (int i = 0; i < 11; i++) g = g * ((row[i] * f + square) + row[11 + i]);
    return g;
}

inline f80 between_one_and_two(f80 y, bool denormal) {
    const int interval = y >= 1.5L ? 2 : y >= 1.25L ? 1 : 0;
    const auto &c = intervals[interval];
    if (denormal) return c[0];
    const f80 t = (f64)(y - (interval == 1 ? minimum : 1.0L));
    f80 h = c[15];
    for (int i = 14; i >= 0; i--) h = c[i] + t * h;
    return h;
}

// Of an x whose result is a number other than 0.
inline f64 value(f64 x) {
    const f64 a = __builtin_fabs(x), shifter = 0x1p52;
    const i32 n = (i32)a;
    f80 s = 0; // sin(pi a)/pi without its sign
    if (x < 0) {
        const f80 v = __builtin_fabs(a - ((a + shifter) - shifter)), z = v * v;
        s = horner(z, sine_coefficients) * (z * v) + v;
    }
    if (a < 2) {
        const f80 h = between_one_and_two(a < 1 ? 1.0L + a : (f80)a, exponent_field(x) == 0);
        if (a >= 1) return (f64)(x > 0 ? h : 1.0L / ((s * a) * h));
        return (f64)(x > 0 ? h / a : -1.0L / (s * h));
    }
    const int climb = (n & 15) - (n < 16 ? 2 : 0);
    const f80 g = block(blocks[n >> 4], a - n);
    f80 product = 1;
    for (int i = 1; i <= climb; i++) product = product * (a - i);
    if (x > 0) return (f64)(g * product);
    f80 w = 1.0L / (((a * s) * g) * product);
    if (x < -176) w = w * rescale;
    return (f64)(n & 1 ? w : -w);
}

QUEVAR_INLINE_END
} // namespace quevar::tgamma
