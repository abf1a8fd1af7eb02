#include "platform/linux/SteadyCondition.h"

#include <time.h>

#include <algorithm>

namespace {

constexpr INT64 kMicrosecondsPerSecond = 1000000;
constexpr INT64 kNanosecondsPerMicrosecond = 1000;

// Longer waits come back early and are taken up again: keeps every sum far from the end of its type.
constexpr INT64 kLongestWait = 3600 * kMicrosecondsPerSecond;

}  // namespace

namespace platform {

INT64 steadyMicroseconds() {
    timespec stNow = {};
    clock_gettime(CLOCK_MONOTONIC, &stNow);
    return static_cast<INT64>(stNow.tv_sec) * kMicrosecondsPerSecond + stNow.tv_nsec / kNanosecondsPerMicrosecond;
}

SteadyCondition::SteadyCondition() {
    pthread_condattr_t stAttributes;
    pthread_condattr_init(&stAttributes);
    pthread_condattr_setclock(&stAttributes, CLOCK_MONOTONIC);
    pthread_cond_init(&m_stCondition, &stAttributes);
    pthread_condattr_destroy(&stAttributes);
}

SteadyCondition::~SteadyCondition() {
    pthread_cond_destroy(&m_stCondition);
}

void SteadyCondition::wait(std::unique_lock<std::mutex>& p_objLock) {
    pthread_cond_wait(&m_stCondition, p_objLock.mutex()->native_handle());
}

void SteadyCondition::waitFor(std::unique_lock<std::mutex>& p_objLock, INT64 p_nMicroseconds) {
    const INT64 nEnd = steadyMicroseconds() + std::min(std::max<INT64>(0, p_nMicroseconds), kLongestWait);
    timespec stEnd = {};
    stEnd.tv_sec = static_cast<decltype(stEnd.tv_sec)>(nEnd / kMicrosecondsPerSecond);
    stEnd.tv_nsec = static_cast<decltype(stEnd.tv_nsec)>(nEnd % kMicrosecondsPerSecond * kNanosecondsPerMicrosecond);
    pthread_cond_timedwait(&m_stCondition, p_objLock.mutex()->native_handle(), &stEnd);
}

void SteadyCondition::notifyAll() {
    pthread_cond_broadcast(&m_stCondition);
}

}  // namespace platform
