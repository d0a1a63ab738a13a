// The natural logarithm in two doubles: log and log1p read it.
#pragma once

#include "frame/frame.hpp"

namespace quevar::tables {

// For the whole numbers r from 512 to 1024, which stand for reciprocals of significands: -log(r/1024) - 1023
// ln 2, where ln 2 is the sum of two short constants by which a biased exponent is multiplied, so that an
// exponent of 0 leaves exactly nothing of the second term. The first part is a multiple of 2^-40. An r held
// as a double counts the rows by bits 43 and up of its pattern: that of 512 is 0x81000.
using LogTwoPartRows = table<f64, 2, 513>;
QUEVAR_CONSTANTS(LogTwoPartRows, log_two_part_rows) = {{
#include "log_two_part_rows.inc"
}};

// For m near 1 + j/64: w near 1/m, and -log w in two parts.
using LogRareRows = table<f64, 3, 65>;
QUEVAR_CONSTANTS(LogRareRows, log_rare_rows) = {{
#include "log_rare_rows.inc"
}};

} // namespace quevar::tables
