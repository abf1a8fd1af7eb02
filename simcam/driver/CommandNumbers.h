// The commands that do something in the simulated driver beyond keeping a value.
#pragma once

#include "platform/Types.h"

namespace simcam {

constexpr u32 kExposureMode = 16;
constexpr u32 kLongestShutter = 49;
constexpr u32 kFixedShutter = 50;
constexpr u32 kIrisPosition = 82;
constexpr u32 kIrisOpenStep = 83;
constexpr u32 kIrisCloseStep = 84;
constexpr u32 kDayNightMode = 144;
constexpr u32 kDayToNightThreshold = 145;
constexpr u32 kNightToDayThreshold = 146;
constexpr u32 kDayNightDelay = 147;
constexpr u32 kDayToNightHour = 149;
constexpr u32 kDayToNightMinute = 150;
constexpr u32 kNightToDayHour = 151;
constexpr u32 kNightToDayMinute = 152;
constexpr u32 kDayNightState = 153;
constexpr u32 kDayNightSensitivity = 154;
constexpr u32 kFocusMode = 1536;
constexpr u32 kFocusNearLimit = 1537;
constexpr u32 kFocusSensitivity = 1538;
constexpr u32 kFocusOnce = 1539;
constexpr u32 kFocusPosition = 1552;
constexpr u32 kFocusNearer = 1553;
constexpr u32 kFocusFarther = 1554;
constexpr u32 kZoomPosition = 1568;
constexpr u32 kZoomIn = 1569;
constexpr u32 kZoomOut = 1570;
constexpr u32 kZoomSpeed = 1571;
constexpr u32 kHeater = 1606;
constexpr u32 kLensReset = 1616;
constexpr u32 kHeadMoving = 1632;
constexpr u32 kFocusStatistic = 1648;
constexpr u32 kWideDynamicRange = 2368;
constexpr u32 kSensorFrameRate = 2464;
constexpr u32 kModuleVersion = 2496;
constexpr u32 kRefocusAtDayNight = 2560;
constexpr u32 kSensorCheck = 2816;
constexpr u32 kDynamicCommands = 4112;
constexpr u32 kFocusSpeed = 8207;

}  // namespace simcam
