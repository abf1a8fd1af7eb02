#include "platform/VelmorTime.h"

#include "platform/linux/ClockThread.h"

#include <algorithm>

namespace {

constexpr INT64 kMicrosecondsPerSecond = 1000000;

}  // namespace

VelmorTime::VelmorTime(int p_nSeconds, int p_nMicroseconds)
    : m_nMicroseconds(std::max(0, p_nSeconds) * kMicrosecondsPerSecond + std::max(0, p_nMicroseconds)) {}

bool VelmorTime::wait() const {
    return platform::waitOnClock(m_nMicroseconds);
}
