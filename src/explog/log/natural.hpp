// The natural logarithm in the rare paths of log and log1p.
#pragma once

#include "logarithm.hpp"
#include "tables/log_two_part.hpp"

namespace quevar::explog {
QUEVAR_INLINE_BEGIN

QUEVAR_CONSTANTS(LogRareRows<f32>, logf_rare_rows) = {{
#include "tables/logf_rare_rows.inc"
}};

// ln 2 in two parts, the high one short enough to give exact products with exponents, and series(z) = ln(1 +
// z) - z.
template <class T> struct NaturalSteps;
template <> struct NaturalSteps<f32> {
    static constexpr f32 shifter = 0x46000000_f32;  // 2^13
    static constexpr f32 ln2_high = 0x3F317200_f32; // 0.693145752
    static constexpr f32 ln2_low = 0x35BFBE8E_f32;  // 1.42860677e-06
    static auto &rows() { return logf_rare_rows; }
    static f32 series(f32 z) {
        return horner(z, 0xBE0005A0_f32, // -0.125021458
                      0x3E124E01_f32,    // 0.142875686
                      0xBE2AAAAB_f32,    // -0.166666672
                      0x3E4CCCCD_f32,    // 0.200000003
                      -0.25f,            //
                      0x3EAAAAAB_f32,    // 0.333333343
                      -0.5f) *
               z * z;
    }
};
template <> struct NaturalSteps<f64> {
    static constexpr f64 shifter = 0x4140000000000000_f64;  // 2^21
    static constexpr f64 ln2_high = 0x3FE62E42FEFA3800_f64; // 0.69314718055989033
    static constexpr f64 ln2_low = 0x3D2EF35793C76730_f64;  // 5.4979230187083712e-14
    static auto &rows() { return tables::log_rare_rows; }
    static f64 series(f64 z) {
        return horner(z, 0xBFC000B405A2836D_f64, // -0.1250214602960357
                      0x3FC249C02481059D_f64,    // 0.14287568838521461
                      0xBFC555555228B38F_f64,    // -0.16666666518849779
                      0x3FC9999997B36C81_f64,    // 0.19999999911565072
                      0xBFD0000000000262_f64,    // -0.25000000000003386
                      0x3FD5555555555613_f64,    // 0.33333333333334386
                      -0.5) *
               z * z;
    }
};

// ln x = (a + u) + (l + v) + q for positive x: a + l is k ln 2 + high + low, its large parts in a and the
// small in l.
template <int Scale, class T> struct Natural : Reduced<Scale, T> {
    using Steps = NaturalSteps<T>;
    T a, l, q;

    explicit Natural(T x) : Reduced<Scale, T>(x, Steps::rows(), Steps::shifter) {
        a = Steps::ln2_high * this->k + this->high;
        l = this->k * Steps::ln2_low + this->low;
        q = Steps::series(this->u + this->v);
    }
    T sum() const { return (this->u + a) + ((this->v + l) + q); }
};
template <class T> using NaturalOfDenormal = Natural<LogRareSteps<T>::scale, T>;

QUEVAR_INLINE_END
} // namespace quevar::explog
