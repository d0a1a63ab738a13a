// The polynomials of asin, acos, asinpi and acospi at their tiers.
#pragma once

#include "arcsine.hpp"

namespace quevar::arcsine {

// w with asin(s) = s + s w(s^2), |s| <= 1/2. Relative errors of the arc sine, in the order below: 2^-26.7,
// 2^-14.9, 2^-54.9, 2^-30.8.
using FloatSeries = Series<f32, 5>;
using FloatNativeSeries = SeriesFrom<f32, 2>;
using DoubleSeries = Series<f64, 12>;
using DoubleNativeSeries = Series<f64, 6>;

QUEVAR_CONSTANTS(FloatSeries, float_series){{
    0x3D2EDC07, // 0.0426903032
    0x3CC32A6B, // 0.0238239374
    0x3D3A9AB4, // 0.0455576926
    0x3D997C12, // 0.0749436766
    0x3E2AAAFF, // 0.166667923
}};
QUEVAR_CONSTANTS(FloatNativeSeries, float_native_series){
    .c = {0x3DC4C6AE,    // 0.0960820764
          0x3E2876B2},   // 0.164515287
    .first = 0x380561A3, // 3.18006023e-05
};
QUEVAR_CONSTANTS(DoubleSeries, double_series){{
    0x3FA07520C70EB909, // 0.032143616007816851
    0xBF90FB17F7DBB0ED, // -0.016582846167623556
    0x3F943F44BFBC3BAE, // 0.019772600367158048
    0x3F7A583395D45ED5, // 0.0064317717599562023
    0x3F88F8DC2AFCCAD6, // 0.012193412839768863
    0x3F8C6DBBCB88BD57, // 0.013881175183171264
    0x3F91C6DCF538AD2E, // 0.017360165087820061
    0x3F96E89CEBDEFADD, // 0.022371723076271322
    0x3F9F1C72E13AD8BE, // 0.030381960865917483
    0x3FA6DB6DB3B445F8, // 0.044642856775805428
    0x3FB333333337E0DE, // 0.075000000004254969
    0x3FC555555555529C, // 0.16666666666664731
}};
QUEVAR_CONSTANTS(DoubleNativeSeries, double_native_series){{
    0x3FA36C5AF645A11E, // 0.037936060488222831
    0x3F8CE147EA9E9282, // 0.014101564261929104
    0x3FA056B4151FA155, // 0.031911494806822795
    0x3FA6C8ED2A4CCE54, // 0.044501696981026712
    0x3FB33399EBF85B6A, // 0.075006122693918847
    0x3FC5555480C83A45, // 0.16666656768980395
}};

// The same over pi, with 1/pi as their constant term: 2^-24.5, 2^-14.9, 2^-53.8, 2^-30.8.
using FloatSeriesOverPi = SeriesFrom<f32, 5>;
using FloatNativeSeriesOverPi = SeriesFrom<f32, 2>;
using DoubleSeriesOverPi = SeriesFrom<f64, 12>;
using DoubleNativeSeriesOverPi = SeriesFrom<f64, 6>;

QUEVAR_CONSTANTS(FloatSeriesOverPi, float_series_over_pi){
    .c = {0x3C5EA355,    // 0.0135887461
          0x3BF87E20,    // 0.00758339465
          0x3C6D978C,    // 0.0145014636
          0x3CC36C37,    // 0.0238553118
          0x3D594D1B},   // 0.0530520491
    .first = 0x3EA2F983, // 0.318309873
};
QUEVAR_CONSTANTS(FloatNativeSeriesOverPi, float_native_series_over_pi){
    .c = {0x3CFA8B09,    // 0.0305838753
          0x3D567E9D},   // 0.0523668416
    .first = 0x3EA2FAD7, // 0.318320006
};
QUEVAR_CONSTANTS(DoubleSeriesOverPi, double_series_over_pi){
    .c = {0x3F84F4523BC020D8,    // 0.010231630752983653
          0xBF759EE439EEE799,    // -0.0052784838762195635
          0x3F79C78AE09A5457,    // 0.0062938141724276564
          0x3F60C57DF579794A,    // 0.0020472965368717776
          0x3F6FCBA466EA069B,    // 0.0038812838532187983
          0x3F7219262ADC70A8,    // 0.0044185152926525043
          0x3F76A256C108AAED,    // 0.0055259121732358198
          0x3F7D2B0EA1978F74,    // 0.0071211406261432082
          0x3F83CE53573AD4F4,    // 0.0096708785052705762
          0x3F8D1A452B1C8F4E,    // 0.014210262659225894
          0x3F98723A1D5E7F21,    // 0.023873241465138698
          0x3FAB2995E7B7B28B},   // 0.05305164769729228
    .first = 0x3FD45F306DC9C883, // 0.31830988618379069
};
QUEVAR_CONSTANTS(DoubleNativeSeriesOverPi, double_native_series_over_pi){
    .c = {0x3F88BAFFDA4549F0,    // 0.012075423096267607
          0x3F7262B57524FB3B,    // 0.0044886673152280633
          0x3F84CD955BDDED9F,    // 0.010157744279914392
          0x3F8D02B66C2AD236,    // 0.014165330101016154
          0x3F9872BCE76EFA44,    // 0.023875190377788749
          0x3FAB2994D916CB05},   // 0.053051616191984542
    .first = 0x3FD45F306DC9C883, // 0.31830988618379069
};

// g(e) = (1 - 1/sqrt(1 + e/2))/e for |e| < 0.00147, which a processor's estimate of 1/sqrt may leave.
// Relative errors of the root: 2^-33.5, 2^-22.2, 2^-55.8, 2^-32.9.
using FloatRoot = RootConstants<f32, 2>;
using FloatNativeRoot = RootConstants<f32, 1>;
using DoubleRoot = RootConstants<f64, 4>;
using DoubleNativeRoot = RootConstants<f64, 2>;

QUEVAR_CONSTANTS(FloatRoot, float_root){{
    0xBDC00004, // -0.0937500298
    0x3E800001, // 0.25000003
}};
QUEVAR_CONSTANTS(FloatNativeRoot, float_native_root){{
    0x3E800001, // 0.25000003
}};
QUEVAR_CONSTANTS(DoubleRoot, double_root){{
    0xBF918000993B24C3, // -0.017089852669219818
    0x3FA400006F70D42D, // 0.039062512973409326
    0xBFB7FFFFFFFFFE97, // -0.09374999999999499
    0x3FCFFFFFFFFFFF9D, // 0.24999999999999725
}};
QUEVAR_CONSTANTS(DoubleNativeRoot, double_native_root){{
    0xBFB7FFFFFFFFFE97, // -0.09374999999999499
    0x3FCFFFFFFFFFFF9D, // 0.24999999999999725
}};

} // namespace quevar::arcsine
