// What log, log2 and log10 share: the special lanes, the exponent, and the reduction by a reciprocal.
#pragma once

#include "logarithm.hpp"

namespace quevar::explog {
QUEVAR_INLINE_BEGIN

// The constants of all six begin with these. They are read through `read_for`, so that at width 16 the
// registers hold those of one part at a time.
struct LogConstants {
    slot<u64> significand{0x000FFFFFFFFFFFFF};
    slot<u64> binade;                    // that the significand is put in
    slot<u64> whole{0x4330000000000000}; // 2^52: in the low bits of its pattern any whole number can stand
    slot<f64> two_52{0x4330000000000000};
};

struct Normal {
    slot<i64> least{0x8010000000000000};
    slot<i64> range{0xFFDFFFFFFFFFFFFF};
};
QUEVAR_CONSTANTS(Normal, normal){};

// All but positive normal numbers, whose upper words alone the subtraction wraps to the least integers.
template <class V> auto outside_normal(V x) {
    return high_word_greater(subtract_words(as_int(x), normal.least), normal.range);
}

// 2^52 and the exponent field of x.
template <class V> V two_52_and_exponent(V x, const LogConstants &k) {
    return as_float((as_uint(x) >> 52) | k.whole);
}
// The exponent field of x, as a number.
template <class V> V biased_exponent(V x, const LogConstants &k) {
    return two_52_and_exponent(x, k) - k.two_52;
}

// The significand of x, in the binade of a power of two.
template <class V> V significand(V x, const LogConstants &k) {
    return as_float((as_uint(x) & k.significand) | k.binade);
}

// The place of a whole number held as a float among rows that are counted by the bits of its pattern from
// `bit` up.
constexpr int row_number(f32 r, int bit) { return (int)(__builtin_bit_cast(u32, r) >> bit); }

// The processor's estimate of 1/m, as floats. It is far above 1: the nearest whole number r makes r m - 1
// small and exact.
template <class V> auto reciprocal(V m) { return reciprocal_estimate(convert<f32>(m)); }

// r times m/x, which is a power of two: added to the exponent field.
template <class V> V scaled(V r, V x, V m) { return as_float(as_uint(r) - (as_uint(x) - as_uint(m))); }

// a + f + low + the term that rest_and_term adds, where low and the term are far below f, and f far below any a but
// 0: what the sum a + f loses of f is added to low.
template <class V, class Add> V sum(V a, V f, V low, Add rest_and_term) {
    const V b = f + a;
    const V rest = low + (f - (b - a));
    return b + rest_and_term(rest);
}

// ---- The native tier: a table in one part ----

// x = 2^exponent (1 + f)/q, where q = r/512 for the whole number r near 1/m, halved if r is beyond 724: so q
// is between sqrt 2 and its reciprocal but for the width of a step, and at x near 1 nothing cancels. The row
// of r has -log q.
struct OnePartConstants : LogConstants {
    slot<f64> one{0x3FF0000000000000};
    slot<f64> middle{0x4086A00000000000}; // 724
    slot<i64> bias{0x43300000000003FE};   // 2^52 + 1022

    consteval OnePartConstants() : LogConstants{.binade = 0x3F50000000000000} {} // 2^-10
};

template <class V> struct OnePart { V exponent, f, log, scaled; }; // scaled: (1 + f)/x
template <class V> OnePart<V> one_part(V x, const OnePartConstants &k, const table<f64, 1, 513> &rows) {
    const V m = significand(x, k);
    const auto r = round<to_nearest>(reciprocal(m));
    const V R = convert<f64>(r);
    const auto [log] = fetch_at<row_number(512, 14)>(rows, as_uint(r) >> 11);
    // A mask is -1 as an integer: the bias is 1023 beyond the middle.
    const V bias = as_float(k.bias - (R > k.middle));
    return {two_52_and_exponent(x, k) - bias, fms(R, m, k.one), log, scaled(R, x, m)};
}

QUEVAR_INLINE_END
} // namespace quevar::explog
