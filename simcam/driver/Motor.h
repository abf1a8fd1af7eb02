// A motor that travels at an even speed between two limits.
#pragma once

#include "platform/Types.h"

namespace simcam {

// Times are monotonic microseconds and do not go back. Not thread-safe: belongs to a lens.
class Motor {
public:
    Motor(int p_nLow, int p_nHigh, int p_nPosition);

    int positionAt(INT64 p_nNow) const;
    int target() const { return m_nTarget; }
    bool isMovingAt(INT64 p_nNow) const { return p_nNow < m_nArrival; }
    // When it reaches its target; in the past for a motor that stands.
    INT64 arrival() const { return m_nArrival; }

    // Sets off from where it is; a target beyond a limit means the limit. The speed is in positions a second, at least 1.
    void moveTo(INT64 p_nNow, int p_nTarget, int p_nSpeed);
    void stop(INT64 p_nNow);

private:
    int m_nLow;
    int m_nHigh;
    int m_nFrom;
    int m_nTarget;
    int m_nSpeed = 1;
    INT64 m_nStart = 0;
    INT64 m_nArrival = 0;
};

}  // namespace simcam
