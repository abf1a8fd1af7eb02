// What holds for the windows of schemes, whatever the channel. Functions without state.
#pragma once

#include "apps/camerad/host/ChannelHost.h"

#include <cstddef>
#include <utility>
#include <vector>

namespace camerad {

constexpr int kMinutesOfDay = 24 * 60;
constexpr std::size_t kLongestSchemeName = 40;  // characters

// For each scheme in which minutes of the day the schedule takes it, as [start, end) in order: the first scheme whose
// window holds the minute, scheme 0 where none does. With p_bGaps the minutes that no window holds are nobody's: day and
// night decide there.
std::vector<std::vector<std::pair<int, int>>> minutesInForce(const std::vector<Window>& p_vecWindows, bool p_bGaps);

}  // namespace camerad
