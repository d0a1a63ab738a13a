// exp: e to the power x.
#include "exponential.hpp"

namespace quevar::exp {
QUEVAR_INLINE_BEGIN

using namespace explog;

// 708.39599609374989: beyond it the result may leave the normal numbers.
QUEVAR_CONSTANTS(Limit<i64>, limit){.special = 0x4086232AFFFFFFFF};

struct Ends {
    slot<f64> overflow{0x40862E42FEFA39EF};  // 709.78271289338397
    slot<f64> underflow{0xC0874910D52D3051}; // -745.13321910194111
    slot<f64> infinity{0x7FF0000000000000};
};
QUEVAR_CONSTANTS(Ends, ends){};

struct Special {
    static constexpr int in_turn_after_mask = 2;

    // Overflow and underflow are settled in vector form; NaN and the lanes between the limits remain.
    template <class V> static auto settle(V x, V r) {
        const auto over = x > ends.overflow, under = x < ends.underflow;
        return flagged(select(over, ends.infinity, keep(~under, r)), beyond(x, limit) & ~(over | under));
    }

    [[gnu::noinline]] static void rare(const f64 *x, f64 *r) {
        if (settle_non_finite(*x, r)) return;
        const Power power = power_of_e(*x);
        *r = *x >= 0xC086232BDD7ABCD2_f64 ? power.normal() : power.denormal(); // -708.39641853226408
    }
};

// 2^(j/64) in two doubles, and a polynomial of degree 5. ln 2/64 is in two parts, of which the product of n
// with the high one is exact. A second shifter leaves 16 n in the low bits: the distance of row j, and k
// above it.
struct QuinticConstants {
    slot<f64> steps{0x40571547652B82FE};         // 64/ln 2: 92.332482616893657
    slot<f64> shifter{0x4338000000000000};       // 1.5 * 2^52
    slot<f64> index_shifter{0x42F8000000000000}; // 1.5 * 2^48
    slot<f64> ln2_high{0x3F862E42FEFA0000};      // 0.010830424696223417
    slot<f64> ln2_low{0x3D1CF79ABC9E3B3A};       // 2.5728046223276691e-14
    slot<f64> c[4] = {
        0x3F8111112D9F549B, // 0.0083333341644141103
        0x3FA555573F218B93, // 0.041666723686623851
        0x3FC555555555653E, // 0.16666666666677971
        0x3FDFFFFFFFFFDB3B, // 0.49999999999947747
    };
    slot<i64> row{0x3F0};
    slot<i64> binade{~0x3FFul};
};
QUEVAR_CONSTANTS(QuinticConstants, quintic){};

// Polynomial: for |r| <= ln 2/128 its relative error is 2^-59.3.
// Worst: 0x4082E8BB218737F8, 605.09137254371217, gives 0x767F2CD3987586E0, wanted 0x767F2CD3987586DF: 0.5229
// ulp.
struct TableAndQuintic : Special {
    template <class V> static auto main(V x) {
        const auto &k = read_for(x, quintic);
        const V t = fma(x, k.steps, k.shifter);
        const V n = t - k.shifter;
        V r = fnma(n, k.ln2_high, x);
        r = fnma(n, k.ln2_low, r);
        const auto index = as_int(n + k.index_shifter);
        const auto [high, low] = fetch_at(tables::exp2_64_rows, index & k.row);
        const V q = fma(r * r, polynomial(r, k.c), r);
        const V w = high + fma(high, q, low);
        return flagged(as_float(as_int(w) + ((index & k.binade) << 42)), beyond(x, limit));
    }
};

// 2^(j/128), and a polynomial of degree 2.
struct QuadraticConstants {
    slot<f64> steps{0x40671547652B82FE};    // 128/ln 2: 184.66496523378731
    slot<f64> shifter{0x4338000000000000};  // 1.5 * 2^52
    slot<f64> ln2_part{0x3F762E42FEFA39EF}; // ln 2/128: 0.0054152123481245725
    slot<f64> d[3] = {
        0x3FDFFFFC2808F7E8, // 0.49999908361121337
        0x3FF0000000000000, // 1
        0x3FF0000000000000, // 1
    };
    slot<i64> row{0x7F0};
    slot<i64> binade{~0x7Ful};
};
QUEVAR_CONSTANTS(QuadraticConstants, quadratic){};

// Polynomial: for |r| <= ln 2/256 its relative error is 2^-28.2.
// Worst: 0xC03F31BFA8A10082, -31.194330729777455, gives 0x3D1FE9D96DCA1A66, wanted 0x3D1FE9D96C04A536:
// 29717808 ulp.
struct TableAndQuadratic : Special {
    template <class V> static auto main(V x) {
        const auto &k = read_for(x, quadratic);
        const V t = fma(x, k.steps, k.shifter);
        const V n = t - k.shifter;
        const V r = fnma(n, k.ln2_part, x);
        const auto [high, low] = fetch_at(tables::exp2_128_rows, (as_int(t) << 4) & k.row);
        const V w = high * polynomial(r, k.d);
        return flagged(as_float(as_int(w) + ((as_int(t) & k.binade) << 45)), beyond(x, limit));
    }
};

QUEVAR_EXPORT(exp, , , unary, f64, f64, void, TableAndQuintic)
QUEVAR_EXPORT(exp, , _native, unary, f64, f64, void, TableAndQuadratic)

QUEVAR_INLINE_END
} // namespace quevar::exp
