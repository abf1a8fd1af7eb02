/// @file
/// A length of time that a thread can wait.
#pragma once

#include "platform/Types.h"

/// A length of time that a thread can wait.
class PLATFORM_API VelmorTime {
public:
    /// A length; the two parts add up, negative parts count as 0.
    /// @param p_nSeconds       seconds
    /// @param p_nMicroseconds  microseconds
    VelmorTime(int p_nSeconds, int p_nMicroseconds);

    /// Blocks the calling thread for this length of the platform's clock (see Clock.h). After a stop request every
    /// further wait of that thread returns false at once.
    /// @return true when the whole length has passed, false when the thread is one that a GThread runs and
    ///         GThread::stop ended the wait early
    bool wait() const;

    /// The length.
    /// @return microseconds
    INT64 microseconds() const { return m_nMicroseconds; }

private:
    INT64 m_nMicroseconds;
};
