/// @file
/// The integer names and the export mark that every contract header uses.
#pragma once

#include <cstdint>

using u32 = std::uint32_t;   ///< unsigned, 32 bits
using INT64 = std::int64_t;  ///< signed, 64 bits

/// Marks what a platform library defines and its users import.
#define PLATFORM_API __attribute__((visibility("default")))
