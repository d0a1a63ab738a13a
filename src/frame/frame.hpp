// All that a family file includes.
#pragma once

#include "constants.hpp"
#include "in_double.hpp"
#include "member.hpp"
#include "operations.hpp"
#include "scalar.hpp"
