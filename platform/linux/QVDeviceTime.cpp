#include "platform/QVDeviceTime.h"

#include "platform/Clock.h"

DeviceTime QVDeviceTime::getCurrentTime() {
    const platform::CivilTime stNow = platform::Clock::civilTime();
    return {stNow.year, stNow.month, stNow.day, stNow.hour, stNow.minute, stNow.second};
}
