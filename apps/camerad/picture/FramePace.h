// When the next frame of a row is due: evenly, at a rate that may change.
//
// A frame that is late by less than a quarter of its period does not push the ones behind it away, so that small delays do
// not lower the rate; what is later than that is not made good, so that no burst follows. A value; not thread-safe.
#pragma once

#include <chrono>
#include <optional>

namespace camerad {

class FramePace {
public:
    using Clock = std::chrono::steady_clock;

    // The period of so many frames a second.
    static Clock::duration periodOf(double p_dFrames);

    // When the next frame is due at such a period; the first one at any time.
    Clock::time_point due(Clock::duration p_nPeriod) const;
    // A frame came at this moment, not before it was due.
    void took(Clock::time_point p_tNow, Clock::duration p_nPeriod);

private:
    std::optional<Clock::time_point> m_tLast;  // when the last frame should have come
};

}  // namespace camerad
