/// @file
/// One parameter: the element of every parameter set, parameter list and parameter file.
///
/// Used by sensor/style too: the factory set that a style document describes is an array of these.
#pragma once

#include "platform/Types.h"

#include <cstddef>

/// One parameter and its value.
struct KeyVal {
    u32 key;    ///< the parameter
    u32 value;  ///< in the driver's units; signed where the parameter is
};
static_assert(sizeof(KeyVal) == 8 && offsetof(KeyVal, value) == 4, "frozen: the layout of the parameter files");

/// Success, everywhere in the library.
constexpr int QVS_SUCCESS = 0;
