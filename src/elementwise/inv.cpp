// inv: the reciprocal 1 / x.
#include "frame/frame.hpp"

namespace quevar::inv {
QUEVAR_INLINE_BEGIN

template <class T> struct One { slot<T> value; };
QUEVAR_CONSTANTS(One<f32>, onef){0x3F800000};
QUEVAR_CONSTANTS(One<f64>, one){0x3FF0000000000000};

template <class T, const One<T> &one> struct Division {
    template <class V> static V main(V x) { return one.value / x; }
};

struct EstimateConstants {
    slot<i32> magnitude{0x7FFFFFFF};
    slot<i32> least{0x00800000}; // the smallest normal number
    slot<i32> range{0x7DFFE800}; // from it to just above 2^126, where the estimate is normal
};
QUEVAR_CONSTANTS(EstimateConstants, estimate_constants){};

struct ReciprocalEstimate {
    template <class V> static auto main(V x) {
        const auto &k = estimate_constants;
        return flagged(reciprocal_estimate(x), ((as_int(x) - k.least) & k.magnitude) > k.range);
    }
    static void rare(const f32 *x, f32 *r) { *r = 1 / *x; }
};

struct ThirdOrderConstants {
    slot<i32> fraction{0x007FFFFF};
    slot<i32> one_as_float{0x3F800000};
    slot<i32> sign_and_exponent{0xFFF00000};
    slot<i32> exponents{0x77F00000}; // 2 * 1023 - 127 in the exponent field
    slot<i64> high_word{0xFFFFFFFF00000000};
    slot<f64> one{0x3FF0000000000000};
    slot<i64> magnitude{0x7FFFFFFFFFFFFFFF};
    slot<i64> least{0x8020000000000000}; // exponent fields 2 to 0x7FC are ordinary
    slot<i64> range{0xFFAFFFFF00000000};
};
QUEVAR_CONSTANTS(ThirdOrderConstants, third_order_constants){};

// y near 1/x is the processor's estimate for the upper 20 bits of the significand, as a float, with the
// exponent that 1/x has. With e = 1 - x y, 1/x is y (1 + e + e^2 + ...), here without the further terms: |e|
// is at most 2^-11.4 if the estimate is off by up to 1.5 2^-12. Worst found on a Zen 5: 0x3F931EFF64BE13F9,
// 0.01867293407805801, gives 0x404AC6D760779131, wanted 0x404AC6D76073F9BB: 235382 ulp.
struct ThirdOrderStep {
    template <class V> static auto main(V x) {
        const auto &k = third_order_constants;
        const auto h = words(x); // what becomes of the low words is masked away
        const auto r = reciprocal_estimate(as_float(((h << 3) & k.fraction) | k.one_as_float));
        const auto w = (as_int(r) >> 3) + k.exponents - (h & k.sign_and_exponent);
        const V y = as_float(from_words<typename V::mask>(w) & k.high_word);
        const V e = fnma(y, x, k.one);
        const auto special = high_word_greater(subtract_words(as_int(x) & k.magnitude, k.least), k.range);
        return flagged(fma(y, fma(e, e, e), y), special);
    }
    static void rare(const f64 *x, f64 *r) { *r = 1 / *x; }
};

QUEVAR_EXPORT(inv, f, , unary, f32, f32, void, Division<f32, onef>)
QUEVAR_EXPORT(inv, f, _rm, unary, f32, f32, void, Division<f32, onef>)
QUEVAR_EXPORT(inv, f, _native, unary, f32, f32, void, ReciprocalEstimate)
QUEVAR_EXPORT(inv, f, _half, unary, f32, f32, void, ReciprocalEstimate)
QUEVAR_EXPORT(inv, , , unary, f64, f64, void, Division<f64, one>)
QUEVAR_EXPORT(inv, , _native, unary, f64, f64, void, ThirdOrderStep)

QUEVAR_INLINE_END
} // namespace quevar::inv
