// tanhf: the hyperbolic tangent.
#include "frame/frame.hpp"

namespace quevar::tanhf {

QUEVAR_INLINE_BEGIN

struct Constants {
    slot<f32> sign{0x80000000};
    slot<i32> magnitude_key{0x7FF80000}; // exponent and four bits of the significand
    slot<i32> first_key{0x3CF80000};     // row 0: all below 1/32
    slot<i32> last_key{0x04280000};      // row 133, less the first: all from 10 on
    slot<i32> zero{0};
    slot<i32> special{0x7F000000}; // 2^127: keys beyond it, NaN and infinities too
};
QUEVAR_CONSTANTS(Constants, constants){};

// A cubic in |x| for each sixteenth of a binade from 1/32 to 10. The row of all less has no constant term, that
// of all greater is 1.
using CubicRows = table<f64, 4, 134>;
QUEVAR_CONSTANTS(CubicRows, cubic_rows) = {{
#include "tables/tanhf_rows.inc"
}};

struct Special {
    // A NaN quieted, else +-1.
    static void rare(const f32 *x, f32 *r) { *r = is_nan(*x) ? *x + *x : __builtin_copysignf(1, *x); }
};

// Each cubic is tanh x to a relative 3.3e-08.
// Worst: 0x4006D5D2, 2.10680056, gives 0x3F788950, wanted 0x3F788951: 1.0265 ulps.
struct TableAndCubic : Special {
    template <class V> static auto main(V x) {
        const auto &k = constants;
        const V sign = x & k.sign;
        const auto key = as_int(x) & k.magnitude_key;
        const auto row = min(max(key - k.first_key, k.zero), k.last_key) >> 19;
        const V r = in_double(
            [](auto a, auto row) {
                const auto [c0, c1, c2, c3] = fetch(cubic_rows, row);
                return convert<f32>(fma(a, fma(a, fma(a, c3, c2), c1), c0));
            },
            x ^ sign, row);
        return flagged(r | sign, key > k.special);
    }
};

QUEVAR_INLINE_END

QUEVAR_EXPORT(tanh, f, , unary, f32, f32, void, TableAndCubic)
QUEVAR_EXPORT(tanh, f, _native, unary, f32, f32, void, TableAndCubic)

} // namespace quevar::tanhf
