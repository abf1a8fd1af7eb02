// Times of day and dates as people write them.
#pragma once

#include "platform/Clock.h"

#include <string>

namespace sensorctl {

// "YYYY-MM-DD HH:MM", "YYYY-MM-DD HH:MM:SS", or the time alone: then the date is p_stToday's. Throws CommandError for
// anything else, also for a day that its month does not have.
platform::CivilTime parseClock(const std::string& p_strText, const platform::CivilTime& p_stToday);

// "2024-05-01 12:00:00"
std::string clockText(const platform::CivilTime& p_stTime);

}  // namespace sensorctl
