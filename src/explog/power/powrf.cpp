// powrf: x to the power y for x >= 0, as e^(y log x).
#include "powf_plain.hpp"
#include "powf_rare.hpp"

namespace quevar::powrf {
QUEVAR_INLINE_BEGIN

using namespace powerf;

struct Special {
    [[gnu::noinline]] static void rare(const f32 *x, const f32 *y, f32 *r) { *r = any_power(*x, *y); }

    static f32 any_power(f32 x, f32 y) {
        if (!(x >= 0)) return default_nan();
        if (is_nan(y)) return x == 1 || as_uint(x) == format<f32>::sign ? default_nan() : quiet(y);
        if (x == 0) return y == 0 ? default_nan() : y > 0 ? 0 : infinity();
        if (x == 1) return is_finite(y) ? 1 : default_nan();
        if (y == 0) return is_finite(x) ? 1 : default_nan();
        if (is_finite(x) && is_finite(y)) {
            const Log2 log(x);
            return power<scaled_before_sum>(log, y, multiply(log, y), 1);
        }
        return (x > 1) == (y > 0) ? infinity() : 0;
    }
};

struct Constants {
    slot<f32> least_normal{0x00800000};
    slot<f32> x_limit{0x7E400000};       // 6.38029438e+37: beyond it the reciprocal is denormal
    slot<f32> product_limit{0x42FB0000}; // 125.5
    slot<f32> magnitude{0x7FFFFFFF};
    slot<i32> half_eighth{0x00080000};
    slot<i32> eighths{0xFFF00000}; // sign, exponent and three bits of the significand
    slot<f32> minus_one{0xBF800000};
    slot<f32> c1{0x3FB8AA3B};     // 1.44269502
    slot<f32> c2{0xBF38AA3B};     // -0.721347511
    slot<f32> c3{0x3EF6384F};     // 0.48089835
    slot<f32> c4{0xBEB8A9EA};     // -0.360671341
    slot<f32> c5{0x3E93BADC};     // 0.288534999
    slot<f32> c6{0xBE777CC7};     // -0.241686925
    slot<f32> c7{0x3E547EDE};     // 0.20751521
    slot<f32> c1_low{0x32A56F15}; // 1.92590424e-08
    slot<f32> c2_low{0xB239C255}; // -1.08126033e-08
    // 127 + log2 r for r = 1/(1 + i/8), in two parts.
    row_slot_of_8 high{0x42FE0000, 0x42FDA900, 0x42FD5B2C, 0x42FD14C4,
                       0x42FCD480, 0x42FC9960, 0x42FC62A2, 0x42FC2FAC};
    row_slot_of_8 low{0x00000000, 0xB651CFDF, 0x35F6865C, 0x37307F34,
                      0xB5D1CFDF, 0xB48E4789, 0x364055FE, 0x3492D9F8};
    slot<f32> shifter{0x49C003F8}; // 1.5 * 2^20 + 127: rounds to 1/8, with the exponent's bias
    slot<f32> d1{0x3F317218};      // 0.693147182
    slot<f32> d2{0x3E7607C9};      // 0.240264073
    slot<f32> d3{0x3D636078};      // 0.0555119216
    row_slot_of_8 power{0x3F800000, 0x3F8B95C2, 0x3F9837F0, 0x3FA5FED7,
                        0x3FB504F3, 0x3FC5672A, 0x3FD744FD, 0x3FEAC0C7}; // 2^(i/8)
    slot<i32> exponent{0x7F800000};
};
QUEVAR_CONSTANTS(Constants, constants){};

// In floats, with what rounding takes from log2 x and from y log2 x found by fused operations. The tables
// have eight rows a binade and are read within registers. The logarithm's polynomial is within 4.4e-11 of
// log2(1 + f) up to 17/256, the exponential's within 3.8e-8 of 2^s up to 1/16.
// Worst: 0x3F74ADD2, 0.955777287, to 0xC4ED625F, -1899.0741, gives 0x7D726ECD, wanted 0x7D726ECA: 3.0337 ulp.
struct TablesAndErrors : Special {
    static constexpr bool in_turn = true;

    template <class V> static auto main(V x, V y) {
        const auto &k = read_for(x, constants);
        const auto r = (as_int(reciprocal_estimate(x)) + k.half_eighth) & k.eighths;
        const V f = fma(as_float(r), x, k.minus_one), f2 = f * f;
        const V q = fma(f, fma(f2, fma(f, k.c7, k.c6), fma(f, k.c5, k.c4)), k.c3);
        const V tail = fma(f2, q, fma(f, k.c2_low, k.c1_low));

        // log2 x = log + log_low
        const auto step = as_int(as_uint(r) >> 20);
        const V start = k.high[step] - convert<f32>(as_int(as_uint(r) >> 23));
        const V line = fma(f, k.c1, start), log = fma(f2, k.c2, line);
        const auto &k2 = read_for(log, constants); // or c1 and c2 would take registers until here
        const V line_error = fms(k2.c1, f, line - start), error = fms(k2.c2, f2, log - line);
        const V log_low = fma(f, tail, (k.low[step] + line_error) + error);

        // y log2 x = product + product_low
        const V rough = y * log, product = fma(y, log_low, rough);
        const V product_low = fms(y, log, rough) + fms(y, log_low, product - rough);

        const V t = product + k.shifter;
        const V s = product - (t - k.shifter), s_low = s + product_low;
        const V row = k.power[as_int(t)];
        const V power = fma(fma(s_low, fma(s, k.d3, k.d2), k.d1), row * s_low, row);
        const V scale = as_float((as_int(t) << 20) & k.exponent);
        const auto ordinary = (x <= k.x_limit) & ((rough & k.magnitude) <= k.product_limit);
        return flagged(scale * power, (x < k.least_normal) | ~ordinary);
    }
};

QUEVAR_EXPORT(powr, f, , binary, f32, f32, void, TablesAndErrors)
QUEVAR_EXPORT(powr, f, _native, binary, f32, f32, void, PlainFloats<Special>)
QUEVAR_EXPORT(powr, f, _half, binary, f32, f32, void, PlainFloats<Special>)

QUEVAR_INLINE_END
} // namespace quevar::powrf
