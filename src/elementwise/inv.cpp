// inv: the reciprocal 1 / x.
#include "frame/frame.hpp"

namespace quevar::inv {
QUEVAR_INLINE_BEGIN

template <class T> struct One { slot<T> value; };
QUEVAR_CONSTANTS(One<f32>, onef){0x3F800000};
QUEVAR_CONSTANTS(One<f64>, one){0x3FF0000000000000};

template <class T, const One<T> &one> struct Exact {
    template <class V> static V main(V x) { return one.value / x; }
};

struct EstimateConstants {
    slot<i32> magnitude{0x7FFFFFFF};
    slot<i32> least{0x00800000}; // the smallest normal number
    slot<i32> range{0x7DFFE800}; // from it to just above 2^126, where the estimate is normal
};
QUEVAR_CONSTANTS(EstimateConstants, estimate_constants){};

struct Estimate {
    template <class V> static auto main(V x) {
        const auto &k = estimate_constants;
        return flagged(reciprocal_estimate(x), ((as_int(x) - k.least) & k.magnitude) > k.range);
    }
    static void rare(const f32 *x, f32 *r) { *r = 1 / *x; }
};

struct StepConstants {
    slot<i32> fraction{0x007FFFFF};
    slot<i32> one_single{0x3F800000};
    slot<i32> sign_and_exponent{0xFFF00000};
    slot<i32> exponents{0x77F00000}; // of a double and its reciprocal together, less that of 1 as a float
    slot<i64> high_word{0xFFFFFFFF00000000};
    slot<f64> one{0x3FF0000000000000};
    slot<i64> magnitude{0x7FFFFFFFFFFFFFFF};
    slot<i64> least{0x8020000000000000}; // exponent fields 2 to 0x7FC are ordinary
    slot<i64> range{0xFFAFFFFF00000000};
};
QUEVAR_CONSTANTS(StepConstants, step_constants){};

// From the single estimate for the top 20 bits of the significand, one step of third order.
struct Step {
    template <class V> static auto main(V x) {
        const auto &k = step_constants;
        const auto h = words(x); // the low words come along, and go with the mask
        const auto r = reciprocal_estimate(as_float(((h << 3) & k.fraction) | k.one_single));
        const auto w = (as_int(r) >> 3) + k.exponents - (h & k.sign_and_exponent);
        const V y = as_float(from_words<typename V::mask>(w) & k.high_word);
        const V e = fnma(y, x, k.one);
        const auto special = high_word_greater(subtract_words(as_int(x) & k.magnitude, k.least), k.range);
        return flagged(fma(y, fma(e, e, e), y), special);
    }
    static void rare(const f64 *x, f64 *r) { *r = 1 / *x; }
};

QUEVAR_EXPORT(inv, f, , unary, f32, f32, void, Exact<f32, onef>)
QUEVAR_EXPORT(inv, f, _rm, unary, f32, f32, void, Exact<f32, onef>)
QUEVAR_EXPORT(inv, f, _native, unary, f32, f32, void, Estimate)
QUEVAR_EXPORT(inv, f, _half, unary, f32, f32, void, Estimate)
QUEVAR_EXPORT(inv, , , unary, f64, f64, void, Exact<f64, one>)
QUEVAR_EXPORT(inv, , _native, unary, f64, f64, void, Step)

QUEVAR_INLINE_END
} // namespace quevar::inv
