// tanh: the hyperbolic tangent.
#include "frame/frame.hpp"

namespace quevar::tanh {

QUEVAR_INLINE_BEGIN

// Keys are upper words, handled in place with a lower word of 0.
struct Constants {
    slot<f64> sign{0x8000000000000000};
    slot<i64> magnitude_key{0x7FFE000000000000}; // exponent and three bits of the significand
    slot<i64> first_key{0x3FBE000000000000};     // row 0: all below 1/8
    slot<i64> last_key{0x0076000000000000};      // row 59, less the first: all from 20 on
    slot<i32> zero{0};
    slot<i64> special{0x7FE0000000000000}; // 2^1023: keys beyond it, NaN and infinities too
};
QUEVAR_CONSTANTS(Constants, constants){};

// A polynomial for each eighth of a binade from 1/8 to 20: c0 to c10, and what is added to |x| to count from the
// middle of the row. The row of all less has no constant term, that of all greater is 1. Rows are of 128 bytes, so
// that a key is a row's distance but for a shift.
using PolynomialRows = table<f64, 16, 60>;
QUEVAR_CONSTANTS(PolynomialRows, polynomial_rows) = {{
#include "tables/tanh_rows.inc"
}};

// Each polynomial is tanh x to a relative 8.3e-17.
// Worst found: 0x3FB002B5B0C079C8, 0.062541347172078265, gives 0x3FAFFABF90B0B872, wanted ...73: 1.2522 ulps.
struct TableAndPolynomial {
    static constexpr int in_turn_after_mask = 2;

    template <class V> static auto main(V x) {
        const auto &k = read_for(x, constants);
        const V sign = x & k.sign, a = x ^ sign;
        const auto key = as_int(x) & k.magnitude_key;
        const auto above_first = words(subtract_words(key, k.first_key));
        const auto clamped = min(max(above_first, k.zero), words(typename V::mask(k.last_key)));
        const auto row = as_uint(from_words<typename V::mask>(clamped)) >> 42;
        // Columns are read two by two when their turn comes, so that few registers hold them.
        const auto columns_after = [row](V p) { return fetch_at(read_for(p, polynomial_rows), row); };
        const auto first = columns_after(a);
        const V u = a + first.column[11];
        V p = first.column[10];
#pragma clang loop unroll(full)
        for (int i = 8; i >= 0; i -= 2) {
            const auto c = columns_after(p);
            p = fma(u, fma(u, p, c.column[i + 1]), c.column[i]);
        }
        return flagged(p | sign, high_word_greater(key, k.special));
    }

    // A NaN quieted, else +-1.
    [[gnu::noinline]] static void rare(const f64 *x, f64 *r) {
        *r = is_nan(*x) ? *x + *x : __builtin_copysign(1, *x);
    }
};

QUEVAR_INLINE_END

QUEVAR_EXPORT(tanh, , , unary, f64, f64, void, TableAndPolynomial)
QUEVAR_EXPORT(tanh, , _native, unary, f64, f64, void, TableAndPolynomial)

} // namespace quevar::tanh
