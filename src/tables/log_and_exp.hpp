// The logarithm and the power of two of families that work in plain doubles: logarithms and powers read them.
#pragma once

#include "frame/frame.hpp"

namespace quevar::tables {

// For the whole numbers r from 512 to 1024, which stand for reciprocals of significands: -log(r/512), and
// from r = 725 on -log(r/1024), so that no row is far from 0. The row of 512 is -0. An r held as a double
// counts the rows by bits 43 and up of its pattern: that of 512 is 0x81000.
using LogRows = table<f64, 1, 513>;
QUEVAR_CONSTANTS(LogRows, log_rows) = {{
#include "log_rows.inc"
}};

// K 2^(j/2048). Between two rows a straight line is used, and K is a little below 1 to centre its error.
using ExpRows = table<f64, 1, 2048>;
QUEVAR_CONSTANTS(ExpRows, exp_rows) = {{
#include "exp_rows.inc"
}};

} // namespace quevar::tables
