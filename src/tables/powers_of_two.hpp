// Powers of two in two doubles, which exponentials and hyperbolic functions read.
#pragma once

#include "frame/frame.hpp"

namespace quevar::tables {

// 2^(j/64) rounded to double, and what the rounding left.
using Exp2Rows64 = table<f64, 2, 64>;
QUEVAR_CONSTANTS(Exp2Rows64, exp2_64_rows) = {{
#include "exp2_64_rows.inc"
}};

// 2^(j/64) rounded to double, and what the rounding left, relative to it: for rare paths.
QUEVAR_CONSTANTS(Exp2Rows64, exp2_64_relative_rows) = {{
#include "exp2_64_relative_rows.inc"
}};

// 2^(j/128), with what the rounding left.
using Exp2Rows128 = table<f64, 2, 128>;
QUEVAR_CONSTANTS(Exp2Rows128, exp2_128_rows) = {{
#include "exp2_128_rows.inc"
}};

} // namespace quevar::tables
