#include "apps/camerad/picture/FramePace.h"

#include <algorithm>

namespace camerad {

namespace {

constexpr int kForgiven = 4;  // a delay of this part of a period

}  // namespace

FramePace::Clock::duration FramePace::periodOf(double p_dFrames) {
    return std::chrono::duration_cast<Clock::duration>(std::chrono::duration<double>(1.0 / p_dFrames));
}

FramePace::Clock::time_point FramePace::due(Clock::duration p_nPeriod) const {
    return m_tLast ? *m_tLast + p_nPeriod : Clock::time_point::min();
}

void FramePace::took(Clock::time_point p_tNow, Clock::duration p_nPeriod) {
    const Clock::time_point tEarliest = p_tNow - p_nPeriod / kForgiven;
    m_tLast = m_tLast ? std::max(*m_tLast + p_nPeriod, tEarliest) : p_tNow;
}

}  // namespace camerad
