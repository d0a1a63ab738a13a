// exp10: 10 to the power x.
#include "exponential.hpp"

namespace quevar::exp10 {
QUEVAR_INLINE_BEGIN

using namespace explog;

// The greatest number below 307.652587890625: beyond it the result may leave the normal numbers.
QUEVAR_CONSTANTS(Limit<i64>, limit){.special = 0x40733A70FFFFFFFF};

struct Special {
    static constexpr int in_turn_after_mask = 2;

    [[gnu::noinline]] static void rare(const f64 *x, f64 *r) {
        if (settle_non_finite(*x, r)) return;
        if (*x > 0x40734413509F79FE_f64) { // 308.25471555991669
            *r = as_float(format<f64>::exponent);
        } else if (*x < 0xC07439B746E36B52_f64) { // -323.60724533877976
            *r = 0;
        } else {
            const Power power = power_of_10(*x);
            *r = *x >= 0xC0733A7146F72A41_f64 ? power.normal() : power.denormal(); // -307.65265556858873
        }
    }
};

// 2^(j/128) in two doubles, and a polynomial of degree 5. log10(2)/128 is in two parts, of which the product
// of n with the high one is exact.
struct QuinticConstants {
    slot<f64> steps{0x407A934F0979A371};    // 128 log2(10): 425.20679614558236
    slot<f64> shifter{0x4338800000000000};  // 1.5 * 2^52 + 2^47
    slot<f64> log_high{0x3F63441350A00000}; // 0.0023517968411397305
    slot<f64> log_low{0xBD10C0219DC1DA99};  // -1.4877444114972089e-14
    slot<f64> c[5] = {
        0x3FE144C03EFAFB54, // 0.53964245129450683
        0x3FF2BD767584DB59, // 1.1712555494866221
        0x4000470591CCEA8B, // 2.0346785917911965
        0x40053524C73CE8E3, // 2.650949055239026
        0x40026BB1BBB55516, // 2.3025850929940459
    };
    slot<i64> row{0x7F0};
    slot<i64> sign_and_exponent{0xFFF0000000000000};
};
QUEVAR_CONSTANTS(QuinticConstants, quintic){};

// Polynomial: for |r| <= log10(2)/256 its relative error is 2^-63.5.
// Worst: 0x3FE300041D0F755C, 0.59375196147781706, gives 0x400F64C6E46F8D14, wanted 0x400F64C6E46F8D15: 0.5073
// ulp.
struct TableAndQuintic : Special {
    template <class V> static auto main(V x) {
        const auto &k = read_for(x, quintic);
        const V t = fma(x, k.steps, k.shifter);
        const V n = t - k.shifter;
        V r = fnma(n, k.log_high, x);
        r = fnma(n, k.log_low, r);
        const auto [high, low] = fetch_at(tables::exp2_128_rows, (as_int(t) << 4) & k.row);
        const V w = high + fma(high, r * polynomial(r, k.c), low);
        const V result = as_float(as_int(w) + ((as_int(t) << 45) & k.sign_and_exponent));
        return flagged(result, beyond(x, limit));
    }
};

// No table: a polynomial of degree 6 over a whole binade.
struct SexticConstants {
    slot<f64> log2_10{0x400A934F0979A371}; // 3.3219280948873622
    slot<f64> shifter{0x4338800000000000}; // 1.5 * 2^52 + 2^47
    slot<f64> d[7] = {
        0x3F24308FABC18DEC, // 0.00015403512759624928
        0x3F55F07B4611E454, // 0.0013390735478238285
        0x3F83B2B9FBD8970F, // 0.009618237493735941
        0x3FAC6AF6E92BE375, // 0.05550357433634804
        0x3FCEBFBDEC29C82A, // 0.24022649794966472
        0x3FE62E4302EEB44D, // 0.69314718792669228
        0x3FF0000000000000, // 1
    };
};
QUEVAR_CONSTANTS(SexticConstants, sextic){};

// Polynomial: for |r| <= 1/2 its relative error is 2^-27.8.
// Worst: 0xC0627E998A7B74AF, -147.95624279129467, gives 0x2136A09EABF8DF53, wanted 0x2136A09EAA49697E:
// 28276181 ulp.
struct Sextic : Special {
    template <class V> static auto main(V x) {
        const auto &k = read_for(x, sextic);
        const V t = fma(x, k.log2_10, k.shifter);
        const V n = t - k.shifter;
        const V r = fms(x, k.log2_10, n); // in units of log10(2)
        return flagged(scaled_by_pattern(polynomial(r, k.d), t), beyond(x, limit));
    }
};

QUEVAR_EXPORT(exp10, , , unary, f64, f64, void, TableAndQuintic)
QUEVAR_EXPORT(exp10, , _native, unary, f64, f64, void, Sextic)

QUEVAR_INLINE_END
} // namespace quevar::exp10
