// The integer names and the export mark that every contract header uses.
#pragma once

#include <cstdint>

using u32 = std::uint32_t;
using INT64 = std::int64_t;

// Marks what a platform library defines and its users import.
#define PLATFORM_API __attribute__((visibility("default")))
