// A condition variable whose time-outs count on the steady clock, whatever happens to the machine's date.
//
// Used with a std::mutex that the caller holds through a std::unique_lock, like std::condition_variable. That one is
// not used because its steady time-out is invisible to the thread sanitizer.
#pragma once

#include "platform/Types.h"

#include <pthread.h>

#include <mutex>

namespace platform {

// Microseconds of the machine's steady clock.
INT64 steadyMicroseconds();

class SteadyCondition {
public:
    SteadyCondition();
    ~SteadyCondition();
    SteadyCondition(const SteadyCondition&) = delete;
    SteadyCondition& operator=(const SteadyCondition&) = delete;

    // Both may return early; callers test their condition again.
    void wait(std::unique_lock<std::mutex>& p_objLock);
    void waitFor(std::unique_lock<std::mutex>& p_objLock, INT64 p_nMicroseconds);

    void notifyAll();

private:
    pthread_cond_t m_stCondition;
};

}  // namespace platform
