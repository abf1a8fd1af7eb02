/// @file
/// The camera's wall clock.
#pragma once

#include "platform/Types.h"

/// A moment as the camera's own clock shows it.
struct DeviceTime {
    int year;    ///< e.g. 2024
    int month;   ///< 1 to 12
    int day;     ///< 1 to 31
    int hour;    ///< 0 to 23
    int minute;  ///< 0 to 59
    int second;  ///< 0 to 59
};

/// The camera's wall clock.
class PLATFORM_API QVDeviceTime {
public:
    /// Reads the clock (see Clock.h). Never fails, does not block; any thread may call it.
    /// @return the device time
    static DeviceTime getCurrentTime();
};
