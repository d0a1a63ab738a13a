// What logf, log2f and log10f share: the test for special lanes and two reductions, to a polynomial near 1
// and to a table of reciprocals.
#pragma once

#include "logarithm.hpp"

namespace quevar::explog {
QUEVAR_INLINE_BEGIN

struct LogConstants {
    slot<i32> two_thirds{0x3F2AAAAB};
    slot<i32> significand{0x007FFFFF};
    slot<i32> normal{0x80800000};
    slot<i32> normal_range{0xFEFFFFFF};
    slot<f32> one{0x3F800000};
};
QUEVAR_CONSTANTS(LogConstants, log_constants){};

// True but for positive normal numbers. The subtraction wraps their patterns to the least integers.
template <class V> auto outside_normal(V x) {
    return as_int(x) - log_constants.normal > log_constants.normal_range;
}

// x = 2^k (1 + f) with 1 + f from 2/3 to 4/3.
template <class V> struct NearOne { V k, f; };
template <class V> NearOne<V> near_one(V x) {
    const auto &c = log_constants;
    const auto i = as_int(x) - c.two_thirds;
    return {convert<f32>(i >> 23), as_float((i & c.significand) + c.two_thirds) - c.one};
}

// log x = exponent log 2 + high + low + log(1 + f/c), where exponent is the field.
//
// With m the significand of x, put in a small binade, and r a whole number near c/m, f = r m - c is exact and
// log m = log(c/r) + log(1 + f/c). c is so near 1/ln(base) that log(1 + f/c) is f and a rest some hundred
// times smaller. high + low is log(c/r), less what the bias of the exponent and the binade of m add. Row by
// row the upper half of r's pattern grows by 1; it is FirstRow for the least r.
using ReciprocalRows = table<f32, 2, 129>;
struct ReciprocalConstants {
    slot<i32> significand{0x007FFFFF};
    slot<i32> binade;
    slot<f32> c, minus_c;
};
template <class V> struct Reciprocal { V exponent, f, high, low; };
template <int FirstRow, class V>
Reciprocal<V> reciprocal(V x, const ReciprocalConstants &k, const ReciprocalRows &rows) {
    const V m = as_float((as_int(x) & k.significand) | k.binade);
    const V r = round<to_nearest>(reciprocal_estimate(m) * k.c);
    const auto [high, low] = fetch<FirstRow>(rows, as_int(r) >> 16);
    return {convert<f32>(as_int(as_uint(x) >> 23)), fma(r, m, k.minus_c), high, low};
}

QUEVAR_INLINE_END
} // namespace quevar::explog
