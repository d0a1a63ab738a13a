// exp2f: 2 to the power x.
#include "expf_core.hpp"

namespace quevar::exp2f {
QUEVAR_INLINE_BEGIN

using namespace explog;

QUEVAR_CONSTANTS(Limit<i32>,
                 limit){.special = 0x42FC0000}; // 126: beyond it the result may leave the normal numbers

struct Special {
    [[gnu::noinline]] static void rare(const f32 *x, f32 *r) {
        if (settle_non_finite(*x, r)) return;
        if (!(*x < 128)) *r = overflow();
        else if (!(*x > -150)) *r = underflow();
        else *r = (f32)power_of_2(*x).normal();
    }
};

// 2^(j/64) as high and low. With n = k + j/64 the nearest 64th to x and r = x - n, the result is 2^k 2^(j/64)
// 2^r.
using Rows = table<f32, 2, 64>;
QUEVAR_CONSTANTS(Rows, rows) = {{
#include "tables/exp2f_rows.inc"
}};
struct TableAndQuadraticConstants {
    slot<f32> shifter{0x48400000}; // 1.5 * 2^17: rounds to 1/64
    slot<f32> c1{0x3F317243};      // 0.693149745
    slot<f32> c2{0x3E75FDFC};      // 0.240226686
    slot<i32> sign_and_exponent{0xFF800000};
    slot<i32> index{0x3F};
};
QUEVAR_CONSTANTS(TableAndQuadraticConstants, table_and_quadratic){};

// 2^r ~ 1 + r (c1 + c2 r) for |r| <= 1/128: relative error 2^-27.1.
// Worst: 0xBB83873F, -0.00401392533, gives 0x3F7F49EA, wanted 0x3F7F49EB: 0.6163 ulp.
struct TableAndQuadratic : Special {
    template <class V> static auto main(V x) {
        const auto &k = table_and_quadratic;
        const V t = x + k.shifter;
        const V n = t - k.shifter;
        const V r = x - n;
        const auto [high, low] = fetch(rows, as_int(t) & k.index);
        const V p = fma(r, k.c2, k.c1);
        const V w = high + fma(high, r * p, low);
        const V result = as_float(as_int(w) + ((as_int(t) << 17) & k.sign_and_exponent));
        return flagged(result, beyond(x, limit));
    }
};

// With n the nearest whole number to x and r = x - n, the result is 2^n 2^r. At whole x it is not exact.
struct CubicConstants {
    slot<f32> shifter{0x4B400000}; // 1.5 * 2^23
    slot<f32> c[4] = {
        0x3D61FBCC, // 0.0551717728
        0x3E786F13, // 0.242611215
        0x3F31798D, // 0.693260968
        0x3F7FFB49, // 0.999928057
    };
};
QUEVAR_CONSTANTS(CubicConstants, cubic){};

// 2^r ~ c(r) for |r| <= 1/2: relative error 2^-13.7.
// Worst: 0xBCC2EB08, -0.0237937123, gives 0x3F7BCB34, wanted 0x3F7BD002: 1230 ulp.
struct Cubic : Special {
    template <class V> static auto main(V x) {
        const auto &k = cubic;
        const V t = x + k.shifter;
        const V n = t - k.shifter;
        const V r = x - n;
        return flagged(scaled_by_pattern(polynomial(r, k.c), t), beyond(x, limit));
    }
};

QUEVAR_EXPORT(exp2, f, , unary, f32, f32, void, TableAndQuadratic)
QUEVAR_EXPORT(exp2, f, _rm, unary, f32, f32, void, TableAndQuadratic)
QUEVAR_EXPORT(exp2, f, _native, unary, f32, f32, void, Cubic)
QUEVAR_EXPORT(exp2, f, _half, unary, f32, f32, void, Cubic)

QUEVAR_INLINE_END
} // namespace quevar::exp2f
