// exp2f: 2 to the power x.
#include "expf_core.hpp"

namespace quevar::exp2f {
QUEVAR_INLINE_BEGIN

using namespace explog;

QUEVAR_CONSTANTS(Limit,
                 limit){.special = 0x42FC0000}; // 126: beyond it the result may leave the normal numbers

struct Special {
    [[gnu::noinline]] static void rare(const f32 *x, f32 *r) {
        if (infinite_or_nan(*x, r)) return;
        const f64 X = *x;
        if (!(X < 128)) {
            *r = overflow();
        } else if (!(X > -150)) {
            *r = underflow();
        } else {
            const f64 shifter = 0x42D8000000000000_f64; // 1.5 * 2^46: rounds to 1/64
            const Sixtyfourths n(X + shifter, shifter);
            *r = n.scaled(horner(X - n.value, 0x3F55D870C4D8440A_f64, // 0.0013333417185814622
                                 0x3F83B2AD33F8B48B_f64,              // 0.0096181422696537591
                                 0x3FAC6B08D7076268_f64,              // 0.05550410866607508
                                 0x3FCEBFBDFF82A23A_f64,              // 0.24022650695884967
                                 0x3FE62E42FEFA39EF_f64,              // 0.69314718055994529
                                 n.low));
        }
    }
};

// 2^(j/64) in two floats, and a polynomial of degree 2.
using Rows = table<f32, 2, 64>;
QUEVAR_CONSTANTS(Rows, rows) = {{
#include "tables/exp2f_rows.inc"
}};
struct LongConstants {
    slot<f32> shifter{0x48400000}; // 1.5 * 2^17: rounds to 1/64
    slot<f32> c1{0x3F317243};      // 0.693149745
    slot<f32> c2{0x3E75FDFC};      // 0.240226686
    slot<i32> sign_and_exponent{0xFF800000};
    slot<i32> index{0x3F};
};
QUEVAR_CONSTANTS(LongConstants, long_constants){};

// Worst: 0xBB83873F, -0.00401392533, gives 0x3F7F49EA, wanted 0x3F7F49EB: 0.6163 ulp.
struct Long : Special {
    template <class V> static auto main(V x) {
        const auto &k = long_constants;
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

// No table: a polynomial of degree 3 over a whole octave. Its constant term is not 1.
struct ShortConstants {
    slot<f32> shifter{0x4B400000}; // 1.5 * 2^23
    slot<f32> d[4] = {
        0x3D61FBCC, // 0.0551717728
        0x3E786F13, // 0.242611215
        0x3F31798D, // 0.693260968
        0x3F7FFB49, // 0.999928057
    };
};
QUEVAR_CONSTANTS(ShortConstants, short_constants){};

struct Short : Special {
    template <class V> static auto main(V x) {
        const auto &k = short_constants;
        const V t = x + k.shifter;
        const V n = t - k.shifter;
        const V r = x - n;
        return flagged(scaled_by_pattern(polynomial(r, k.d), t), beyond(x, limit));
    }
};

QUEVAR_EXPORT(exp2, f, , unary, f32, f32, void, Long)
QUEVAR_EXPORT(exp2, f, _rm, unary, f32, f32, void, Long)
QUEVAR_EXPORT(exp2, f, _native, unary, f32, f32, void, Short)
QUEVAR_EXPORT(exp2, f, _half, unary, f32, f32, void, Short)

QUEVAR_INLINE_END
} // namespace quevar::exp2f
