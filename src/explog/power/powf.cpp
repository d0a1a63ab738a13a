// powf: x to the power y.
#include "powf_plain.hpp"
#include "powf_rare.hpp"
#include "tables/log_and_exp.hpp"

namespace quevar::powf {
QUEVAR_INLINE_BEGIN

using namespace powerf;

enum Parity { not_whole, odd, even }; // infinities and NaN are not whole, nor is 0
static Parity parity(f32 y) {
    const u32 a = as_uint(y) & ~format<f32>::sign;
    if (a < as_uint(1.0f) || a >= format<f32>::exponent) return not_whole;
    if (a >= as_uint(0x1p24f)) return even;
    const u32 shifted = a << ((a >> format<f32>::digits) - format<f32>::bias); // the unit comes to bit 23
    if (shifted & format<f32>::significand) return not_whole;
    return shifted & (format<f32>::significand + 1) ? odd : even;
}

struct Special {
    [[gnu::noinline]] static void rare(const f32 *x, const f32 *y, f32 *r) { *r = any_power(*x, *y); }

    static f32 any_power(f32 x, f32 y) {
        if (y == 0 || x == 1) return 1;
        if (is_nan(x) || is_nan(y)) return add_in_order(x, y);
        const Parity whole = parity(y);
        const bool negative = as_int(x) < 0, inverse = as_int(y) < 0;
        const f32 sign = negative && whole == odd ? -1 : 1;
        if (x == 0) return sign * (inverse ? infinity() : 0);
        if (x == -1 && (whole != not_whole || !is_finite(y))) return sign;
        if (is_finite(x) && is_finite(y)) {
            if (negative && whole == not_whole) return default_nan();
            const Log2 log(x);
            return power<scaled_after_sum>(log, y, multiply(log, y), sign);
        }
        const bool grows = (exponent_field(x) >= format<f32>::bias) != inverse;
        return sign * (grows ? infinity() : 0);
    }
};

struct Constants : PowfConstants {
    slot<i32> binade{0x3A800000}; // of 2^-10
    slot<i32> bias{126};
    slot<f32> upper_rows{0x44350000}; // 724
    slot<f32> minus_one{0xBF800000};
    slot<f64> a3{0x3FD55555555543C5};            // 0.33333333333308374
    slot<f64> a2{0xBFDFFFFFFFFFF81F};            // -0.49999999999988803
    slot<f64> ln2_f64{0x3FE62E42FEFA39EF};       // 0.69314718055994529
    slot<f64> rows_over_ln2{0x40A71547652B82FE}; // 2048/ln 2
    slot<f64> half{0x3FE0000000000000};
    slot<f64> shifter_f64{0x4338000000000000}; // 1.5 * 2^52
    slot<i64> row{0x7FF};
    slot<i64> exponent{0xFFF0000000000000}; // and sign
    slot<f64> slope{0x3F362F3904051FA1};    // 0.00033850805268231294
    slot<f64> magnitude_f64{0x7FFFFFFFFFFFFFFF};
    slot<f64> limit_f64{0x4059FE3600000000}; // 103.972; its high word counts
};
QUEVAR_CONSTANTS(Constants, constants){};

// In double. The logarithm's table is that of reciprocals which are whole numbers, its polynomial within
// 2.4e-10 of log(1 + f) up to 2^-10; the exponential has 2048 rows a binade and a straight line between them,
// within 7.2e-9. One rounding to float at the end makes denormal results and infinities.
// Worst: 0x3F7FB824, 0.998903513, to 0x479A446F, 78984.8672, gives 0x00FD73C9, wanted 0x00FD73C8: 1.0878 ulp.
struct TablesInDouble : Special {
    static constexpr bool in_turn = true;

    template <class V> static auto main(V x, V y) {
        const auto &k = read_for(x, constants);
        const V m = as_float((as_int(x) & k.significand) | k.binade); // 2^-10 to 2^-9
        const V r = round<to_nearest>(reciprocal_estimate(m));        // 512 to 1024
        const V f = fma(r, m, k.minus_one);                           // exact
        // The table has -log(r/512) or -log(r/1024).
        const V e = convert<f32>(as_int(as_uint(x) >> 23) - k.bias + (r > k.upper_rows));
        const auto outside = unrecognised(outside_normal(x, k));
        const auto out = in_double([&](auto... lanes) { return of_reduced(k, lanes...); }, f, r, e, y);
        return flagged(out.first, out.special | outside);
    }

    template <class D> static auto of_reduced(const Constants &constants, D f, D r, D e, D y) {
        const auto &k = read_for(f, constants);
        const auto [minus_log_r] = fetch<0x81000>(tables::log_rows, as_uint(r) >> 43);
        const D log_rm = fma_unless_scalar(f * f, fma(f, k.a3, k.a2), f);
        const D log_x = fma_unless_scalar(e, k.ln2_f64, minus_log_r + log_rm);

        const D product = y * log_x;
        const D v = product * k.rows_over_ln2;
        const D t = (v - k.half) + k.shifter_f64, u = v - (t - k.shifter_f64); // u from 0 to 1
        const auto n = as_int(t);
        const auto [g] = fetch(tables::exp_rows, n & k.row);
        const D z = fma(u * k.slope, g, g);
        const D power = as_float(as_int(z) + ((n << 41) & k.exponent));
        return flagged(convert<f32>(power),
                       high_word_greater(as_int(product & k.magnitude_f64), as_int(D(k.limit_f64))));
    }
};

QUEVAR_EXPORT(pow, f, , binary, f32, f32, void, TablesInDouble)
QUEVAR_EXPORT(pow, f, _native, binary, f32, f32, void, PlainFloats<Special>)
QUEVAR_EXPORT(pow, f, _rm, binary, f32, f32, void, PlainFloats<Special>)

QUEVAR_INLINE_END
} // namespace quevar::powf
