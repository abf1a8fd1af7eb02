// What several commands take as arguments, and the units they count in.
#pragma once

#include "apps/sensorctl/Shared.h"
#include "platform/Types.h"

#include <string>

namespace sensorctl {

constexpr INT64 kMicrosecondsOfSecond = 1000000;

// Debug levels.
constexpr int kLowestLevel = -1;  // silences even assertions
constexpr int kHighestLevel = 9;  // more than any message asks for

// The number of a scheme, 0 to 32, which is more than any camera has. Throws CommandError.
inline int parseScheme(const std::string& p_strWord) {
    constexpr int kHighestScheme = 32;
    return static_cast<int>(parseNumber(p_strWord, "the scheme", 0, kHighestScheme));
}

}  // namespace sensorctl
