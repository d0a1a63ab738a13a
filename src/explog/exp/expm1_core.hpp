// What expm1f and expm1 share: the main path of their default tiers, in parts with carried errors, and the rare path.
#pragma once

#include "exponential.hpp"

namespace quevar::expm1 {
QUEVAR_INLINE_BEGIN

using namespace explog;

template <class T> struct Limits {
    slot<T> special; // beyond it the power of two may leave the normal numbers
    slot<T> magnitude{(unsigned_bits<T>)-1 >> 1};
    slot<T> sign{format<T>::sign};
};

// NaN too.
template <class V, class T> auto beyond(V x, const Limits<T> &limits) {
    return ~((x & limits.magnitude) <= limits.special);
}

// x = n ln 2/N + r, where N rows hold 2^(j/N), and n = N k + j: e^x = 2^k 2^(j/N) e^r.
template <class T> struct StepConstants {
    slot<T> steps;     // N/ln 2
    slot<T> step_high; // ln 2/N in two parts: the product of n and the high one is exact
    slot<T> step_low;
    slot<T> shifter; // n + N times the exponent's bias comes to stand in the low bits of the sum
    slot<signed_bits<T>> row, exponent;
    slot<T> upper_half; // of r: its product with a row is exact
    slot<T> one, minus_one;
};

// Tier gives the constants, the limits, row(), the fractions of 2^(j/N) as patterns without exponent and their
// rests, and series(), which is (e^r - 1 - r)/r^2.
template <class T, class Tier, int ExponentShift> struct CarriedParts {
    static constexpr int in_turn_after_mask = 2;

    template <class V> static auto main(V x) {
        const StepConstants<T> &k = Tier::constants_for(x);
        const V n = round<to_nearest>(x * k.steps);
        const auto b = as_int(n + k.shifter);
        const V scale = as_float((b & k.exponent) << ExponentShift);
        const auto [fraction, rest] = Tier::row(b & k.row);
        // t + t_low = 2^k 2^(j/N), and m is what t - 1 has lost, and t_low.
        const V t = fraction | scale, t_low = rest * scale;
        const V s = t + k.minus_one;
        const auto above_1 = t > k.one;
        const V greater = select(above_1, t, k.minus_one), lesser = select(above_1, k.minus_one, t);
        const V m = t_low + (lesser + (greater - s));
        // r = r_high + r_low. All of x is r_high where n = 0, so that small x lose nothing.
        const V first = fnma(n, k.step_high, x), low = n * k.step_low, r = first - low;
        const V r_high = first & (k.upper_half | as_float(first == x)), r_low = (first - r_high) - low;
        const V q = fma(r * r, Tier::series(r), r_low); // r_high + q = e^r - 1
        const V u = t * r_high, sum = u + s, carried = u + (s - sum);
        const V tail = fma(q, t, carried) + fma(r_high + q, t_low, m);
        return flagged((sum + tail) | (x & Tier::limits.sign), beyond(x, Tier::limits));
    }
};

// From the limit on the 1 does not matter: e^x, or -1.
template <class T> struct Special {
    static constexpr f64 overflow = sizeof(T) == 4 ? 0x40562E42E0000000_f64  // 88.722831726074219
                                                   : 0x40862E42FEFA39EF_f64; // 709.78271289338397
    [[gnu::noinline]] static void rare(const T *x, T *r) {
        if (*x < 0) *r = -1;
        else if (settle_non_finite(*x, r)) return;
        else *r = *x > overflow ? (T)__builtin_inf() : (T)power_of_e(*x).normal();
    }
};

QUEVAR_INLINE_END
} // namespace quevar::expm1
