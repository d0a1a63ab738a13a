// The arguments that sampled measurements use: the same in every run and with every compiler.
#pragma once
#include "harness/families.hpp"
#include <array>
#include <vector>

namespace quevar::tool {

using Arguments = std::array<std::uint64_t, 3>; // the bits of each argument

// Special values in all combinations (pairs at most), the neighbourhood of the operation's thresholds,
// then `count` random ones.
std::vector<Arguments> sample(const Family &, int count);

} // namespace quevar::tool
