#include "simcam/driver/Motor.h"

#include <algorithm>
#include <cstdlib>

namespace simcam {
namespace {

constexpr INT64 kSecond = 1000000;  // microseconds

}  // namespace

Motor::Motor(int p_nLow, int p_nHigh, int p_nPosition)
    : m_nLow(p_nLow), m_nHigh(p_nHigh), m_nFrom(p_nPosition), m_nTarget(p_nPosition) {}

int Motor::positionAt(INT64 p_nNow) const {
    if (!isMovingAt(p_nNow)) {
        return m_nTarget;
    }
    // Under way: the distance is shorter than the whole one, so it fits an int.
    const int nDone = static_cast<int>(std::max<INT64>(0, p_nNow - m_nStart) * m_nSpeed / kSecond);
    return m_nTarget > m_nFrom ? m_nFrom + nDone : m_nFrom - nDone;
}

void Motor::moveTo(INT64 p_nNow, int p_nTarget, int p_nSpeed) {
    m_nFrom = positionAt(p_nNow);
    m_nTarget = std::clamp(p_nTarget, m_nLow, m_nHigh);
    m_nSpeed = std::max(1, p_nSpeed);
    m_nStart = p_nNow;
    const INT64 nDistance = std::abs(m_nTarget - m_nFrom);
    m_nArrival = p_nNow + (nDistance * kSecond + m_nSpeed - 1) / m_nSpeed;
}

void Motor::stop(INT64 p_nNow) {
    m_nTarget = positionAt(p_nNow);
    m_nFrom = m_nTarget;
    m_nArrival = p_nNow;
}

}  // namespace simcam
