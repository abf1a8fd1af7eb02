// The keys and commands that the host itself has to know. Functions without state.
#pragma once

#include "platform/ImageAdjust.h"
#include "platform/Types.h"

#include <string>

namespace camerad {

constexpr u32 kExposureMode = 16;
constexpr u32 kMaxShutter = 49;
constexpr u32 kIrisPosition = 82;
constexpr u32 kDayNightState = 153;
constexpr u32 kFocusMode = 1536;
constexpr u32 kNearLimit = 1537;
constexpr u32 kFocusOnce = 1539;
constexpr u32 kFocusPosition = 1552;
constexpr u32 kZoomPosition = 1568;
constexpr u32 kLensReset = 1616;
constexpr u32 kSharpness = 1648;  // statistic of auto focus

// Of every scheme: what switching follows (scheme 0's counts), and the window.
constexpr u32 kSchemeMode = 8000;
constexpr u32 kStartHour = 8001;
constexpr u32 kStartMinute = 8002;
constexpr u32 kEndHour = 8003;
constexpr u32 kEndMinute = 8004;
constexpr int kFollowSchedule = 1;
constexpr int kFollowDayNight = 2;

// Whose ranges depend on what the driver is doing.
constexpr u32 kRangeKeys[] = {kMaxShutter, 50, kIrisPosition, kNearLimit};

// Kept with the scheme and never sent.
bool isOfSchedule(u32 p_nKey);
// Under switching by day and night what scheme 0 holds of these counts for scheme 1 as well.
bool isDayNightKey(u32 p_nKey);

// Magnification in thousandths at a position of the zoom motor, as the controller tells it.
int zoomRatio(int p_nPosition);

// What a result of the driver means, as part of a sentence.
std::string driverResultText(int p_nResult);

}  // namespace camerad
