// The numbers by which the logarithms of lgamma reduce their arguments, for float and double.
#pragma once

#include "frame/frame.hpp"

namespace quevar {

// By the significand's upper eight bits i the multiple of 2^-11 nearest to 1/(1 + (i + 0.5)/256).
using Reciprocals = table<f64, 1, 256>;
QUEVAR_CONSTANTS(Reciprocals, reciprocals) = {{
#include "tables/reciprocals.inc"
}};

} // namespace quevar
