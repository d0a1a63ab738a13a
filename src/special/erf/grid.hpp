// erf and erfc step from grid points: at each point r a table holds the value and c = 2/sqrt(pi) exp(-r^2),
// the size of its derivative there, and erf(r + d) = erf(r) + c d (1 - r d + (2 r^2 - 1) d^2/3 - ...). The
// series is taken in w = r d.
#pragma once

#include "frame/frame.hpp"

namespace quevar::error_functions {
QUEVAR_INLINE_BEGIN

// Rows of the value and c, one for each point from 0 on. The tables of erfc are multiplied by a power of
// two, so that their tails are normal numbers; their last rows are zero.
template <class T, int Rows> using GridRows = table<T, 2, Rows>;

// Adding the shifter rounds to the grid and leaves the row's number in the lowest bits.
template <class T> struct GridConstants {
    slot<T> sign;
    slot<T> last; // point of the table
    slot<T> shifter;
};

template <class V> struct OnGrid {
    V sign, magnitude;
    V clamped; // the magnitude, or the last point if it is greater or NaN
    V shifted, point;
};

template <class V, class T> OnGrid<V> to_grid(V x, const GridConstants<T> &k) {
    const V sign = x & k.sign, magnitude = x ^ sign;
    const V clamped = min(magnitude, k.last), shifted = clamped + k.shifter;
    return {sign, magnitude, clamped, shifted, shifted - k.shifter};
}

// The rows of the points, given the shifter's pattern.
template <u64 Shifter, class T, int Rows, class V> auto rows_of(const GridRows<T, Rows> &t, V shifted) {
    if constexpr (sizeof(T) == 4) return fetch<(int)Shifter>(t, as_int(shifted));
    else return fetch_at<(i64)Shifter, 8>(t, as_int(shifted) << 1); // rows are of 16 bytes
}

QUEVAR_INLINE_END
} // namespace quevar::error_functions
