// What the lanes of the families in abi_families.def give: weighted sums of the arguments, exact in small
// numbers, in which no argument can stand for another. The size of x says which way the lane goes.
#pragma once

namespace form {

// Weights of x, y, z, and a constant.
using Weights = int[4];
inline constexpr Weights first{3, -2, 5, 1}, second{1, 7, 0, -7};            // main path
inline constexpr Weights rare_first{2, 3, -1, 4}, rare_second{4, -1, 0, 11}; // x > rare_above
inline constexpr Weights settled_first{5, 1, 0, -3}, settled_second{2, 5, 0, -8};

inline constexpr int rare_above = 1000;
inline constexpr int left_alone_above = 2000; // special, but the rare path writes nothing
inline constexpr int settled_above = 3000;    // in the tier _settle; elsewhere left alone too

// As in the real families, a single result longer than the argument leaves no special lanes.
constexpr bool has_special(int bytes_of_argument, int bytes_of_result) {
    return bytes_of_argument >= bytes_of_result;
}

} // namespace form
