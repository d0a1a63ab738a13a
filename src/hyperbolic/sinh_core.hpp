// What sinh and cosh share: the limit of the main path, and the cosine of the remainder.
#pragma once

#include "half_exp.hpp"

namespace quevar::sinh {

using namespace hyperbolic;

QUEVAR_INLINE_BEGIN

QUEVAR_CONSTANTS(slot<i64>, limit){0x40861D99FFFFFFFF}; // 707.7: below 1021 ln 2

// By the upper word of the pattern: NaN and infinities too.
template <class V> auto beyond_limit(V a) { return high_word_greater(as_int(a), limit); }

// From here on the rare paths give infinity.
constexpr f64 overflow_bound = 0x408633CE8FB9F87E_f64; // 710.475860073944

// The constants of both begin with these.
struct SplitConstants {
    slot<f64> magnitude{0x7FFFFFFFFFFFFFFF};
    slot<f64> one_over_ln2{0x3FF71547652B82FE}; // 1.4426950408889634
    slot<f64> w[2] = {
        0x3FA55555CF16D299, // 0.04166668084090936
        0x3FDFFFFFFFFFFDBD, // 0.49999999999996786
    };
};

// cosh r - 1 of q = r^2, to 2.2e-20 for |r| up to ln 2/256.
template <class V> V cosh_less_1(V q, const SplitConstants &k) { return q * polynomial(q, k.w); }

QUEVAR_INLINE_END

} // namespace quevar::sinh
