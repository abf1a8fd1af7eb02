// A length of time that a thread can wait.
#pragma once

#include "platform/Types.h"

class PLATFORM_API VelmorTime {
public:
    // Seconds and microseconds add up; negative parts count as 0.
    VelmorTime(int p_nSeconds, int p_nMicroseconds);

    // Blocks the calling thread for this length of the platform's clock (see Clock.h). Returns true when the whole
    // length has passed, false when the thread is one that a GThread runs and GThread::stop ended the wait early. After
    // a stop request every further wait of that thread returns false at once.
    bool wait() const;

    // The length in microseconds.
    INT64 microseconds() const { return m_nMicroseconds; }

private:
    INT64 m_nMicroseconds;
};
