// Lets few passwords be checked at a time, so that many logins at once take neither the memory nor the processors of the
// camera.
//
// Threads: any. A caller waits for its turn a bounded time; too many callers are sent away at once.
#pragma once

#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <mutex>

namespace camerad {

class PasswordGate {
public:
    PasswordGate(std::size_t p_nAtATime, std::size_t p_nWaiting, std::chrono::milliseconds p_nLongestWait)
        : m_nAtATime(p_nAtATime), m_nMostWaiting(p_nWaiting), m_nLongestWait(p_nLongestWait) {}

    // A turn, for as long as it lives. Throws Refusal (TooMany).
    class Turn {
    public:
        explicit Turn(PasswordGate& p_objGate);
        ~Turn();
        Turn(const Turn&) = delete;
        Turn& operator=(const Turn&) = delete;

    private:
        PasswordGate& m_objGate;
    };

private:
    const std::size_t m_nAtATime;
    const std::size_t m_nMostWaiting;
    const std::chrono::milliseconds m_nLongestWait;

    std::mutex m_objMutex;  // guards what follows
    std::condition_variable m_objLeft;
    std::size_t m_nInside = 0;
    std::size_t m_nWaiting = 0;
};

}  // namespace camerad
