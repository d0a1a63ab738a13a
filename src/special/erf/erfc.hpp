// The frame of erfc, float and double.
#pragma once

#include "grid.hpp"

namespace quevar::erfc {
QUEVAR_INLINE_BEGIN

using namespace error_functions;

// What both tiers of an element type share. The tables are divided by `scale`.
template <class T> struct FrameConstants {
    slot<T> one;
    slot<T> scale;
    slot<T> bound; // the results from here on are those of the rare path
};

// erfc(-x) = 2 - erfc(x): the result is base + scale v, where base is 0, or 2 for negative x, whose scale is
// negative too. v = value - c d (1 + y) is what less_step(value, derivative, w, d) gives. Smaller magnitudes
// than the scale are raised to it, so that no product of d is denormal; such a d makes no difference to the
// result.
template <u64 Shifter, class V, class T, int Rows, class LessStep>
auto step_from_grid(V x, const GridConstants<T> &grid, const FrameConstants<T> &k,
                    const GridRows<T, Rows> &rows, LessStep less_step) {
    const auto g = to_grid(x, grid);
    const V d = max(g.clamped, k.scale) - g.point;
    const auto [value, derivative] = rows_of<Shifter>(rows, g.shifted);
    const V one = k.one, base = one - (one | g.sign);
    const V v = less_step(value, derivative, g.point * d, d);
    return flagged(fma(g.sign | k.scale, v, base), ~(x < k.bound));
}

// The square of a number just above the least normal one: +0, with the flags of underflow.
inline f64 underflow() {
    const f64 tiny = at_run_time(0x0010000000000001_f64);
    return tiny * tiny;
}

QUEVAR_INLINE_END
} // namespace quevar::erfc
