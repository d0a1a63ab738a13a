// exp2: 2 to the power x.
#include "exponential.hpp"

namespace quevar::exp2 {
QUEVAR_INLINE_BEGIN

using namespace explog;

// The greatest number below 1022: beyond it the result may leave the normal numbers.
QUEVAR_CONSTANTS(Limit<i64>, limit){.special = 0x408FEFFFFFFFFFFF};

struct Special {
    static constexpr int in_turn_after_mask = 2;

    [[gnu::noinline]] static void rare(const f64 *x, f64 *r) {
        if (settle_non_finite(*x, r)) return;
        if (!(*x < 1024)) {
            *r = as_float(format<f64>::exponent);
        } else if (!(*x > -1075)) {
            *r = 0;
        } else {
            const Power power = power_of_2(*x);
            if (*x >= -1022) *r = power.normal();
            else *r = (power.over_two_to_k() * two_to(power.k + 100)) * 0x39B0000000000000_f64; // 2^-100
        }
    }
};

// 2^(j/64) in two doubles, and a polynomial of degree 5.
struct QuinticConstants {
    slot<f64> shifter{0x42D8000000000000}; // 1.5 * 2^46: rounds to 1/64
    slot<f64> c[5] = {
        0x3F55D870C4D8440A, // 0.0013333417185814622
        0x3F83B2AD33F8B48B, // 0.0096181422696537591
        0x3FAC6B08D7076268, // 0.05550410866607508
        0x3FCEBFBDFF82A23A, // 0.24022650695884967
        0x3FE62E42FEFA39EF, // 0.69314718055994529
    };
    slot<i64> row{0x3F0};
    slot<i64> sign_and_exponent{0xFFF0000000000000};
};
QUEVAR_CONSTANTS(QuinticConstants, quintic){};

// Polynomial: for |r| <= 1/128 its relative error is 2^-59.3.
// Worst: 0x4070AF1B26507B47, 266.94412833631617, gives 0x509EC8CF8B823806, wanted 0x509EC8CF8B823805: 0.5225
// ulp.
struct TableAndQuintic : Special {
    template <class V> static auto main(V x) {
        const auto &k = read_for(x, quintic);
        const V t = x + k.shifter;
        const V n = t - k.shifter;
        const V r = x - n;
        const auto [high, low] = fetch_at(tables::exp2_64_rows, (as_int(t) << 4) & k.row);
        const V w = high + fma(high, r * polynomial(r, k.c), low);
        const V result = as_float(as_int(w) + ((as_int(t) << 46) & k.sign_and_exponent));
        return flagged(result, beyond(x, limit));
    }
};

// No table: a polynomial of degree 6 over a whole binade. Its constant term is not 1.
struct SexticConstants {
    slot<f64> shifter{0x4338000000000000}; // 1.5 * 2^52
    slot<f64> d[7] = {
        0x3F241D3336B2AE61, // 0.0001534581200294148
        0x3F55F456A8ADF058, // 0.0013399931219444574
        0x3F83B2DBBC0FE08E, // 0.0096184889571165021
        0x3FAC6AED4B950AE1, // 0.055503287769644201
        0x3FCEBFBDADCB0BA8, // 0.24022646890634047
        0x3FE62E430C7E923C, // 0.69314720573726829
        0x3FF0000000261500, // 1.0000000005541665
    };
};
QUEVAR_CONSTANTS(SexticConstants, sextic){};

// Polynomial: for |r| <= 1/2 its relative error is 2^-29.
// Worst: 0x4089B6F9342237CB, 822.87168146832244, gives 0x735D46D660682F4C, wanted 0x735D46D6615146ED:
// 15275937 ulp.
struct Sextic : Special {
    template <class V> static auto main(V x) {
        const auto &k = read_for(x, sextic);
        const V t = x + k.shifter;
        const V n = t - k.shifter;
        const V r = x - n;
        return flagged(scaled_by_pattern(polynomial(r, k.d), t), beyond(x, limit));
    }
};

QUEVAR_EXPORT(exp2, , , unary, f64, f64, void, TableAndQuintic)
QUEVAR_EXPORT(exp2, , _native, unary, f64, f64, void, Sextic)

QUEVAR_INLINE_END
} // namespace quevar::exp2
