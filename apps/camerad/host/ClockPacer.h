// The camera's clock as a person sets it: the machine's own, or a simulated one that runs as fast as wanted.
//
// A simulated clock is a held one that a thread moves on in small steps. When the camera does not get through with its work
// in time, the clock runs slower than it should; it never makes up for that.
//
// Threads: every function may be called from any thread that holds nothing which a thread of the camera needs.
#pragma once

#include "apps/camerad/host/CameraHost.h"
#include "platform/Clock.h"

#include <chrono>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <string>
#include <thread>

namespace camerad {

// Reads "2026-11-21T22:40:05", a date that exists, of the years 1970 to 2099. Throws Refusal (BadValue).
platform::CivilTime parseTime(const std::string& p_strText);

class ClockPacer {
public:
    // p_fnTell is told the clock at each change, and once a second while it is simulated. Two may be told at once, and
    // so in any order: the revision says which one is newer.
    explicit ClockPacer(std::function<void(const ClockView&)> p_fnTell);
    ~ClockPacer();  // as stop, and releases the clock when it was not held before
    ClockPacer(const ClockPacer&) = delete;
    ClockPacer& operator=(const ClockPacer&) = delete;

    ClockView view() const;
    // Throws Refusal (BadValue), or (Busy) when a step of the clock does not come to its end.
    void set(bool p_bSimulated, const std::string& p_strTime, int p_nSpeed);
    // Ends the thread; the clock stays as it is.
    void stop();

private:
    using Lock = std::unique_lock<std::mutex>;
    using Steady = std::chrono::steady_clock;

    void body();
    void step(Lock& p_objLock);
    ClockView viewLocked() const;

    const std::function<void(const ClockView&)> m_fnTell;
    const bool m_bHeldBefore;

    mutable std::mutex m_mutex;  // guards everything below
    std::condition_variable m_condition;
    bool m_bSimulated;
    int m_nSpeed;
    bool m_bMoving = false;  // the thread moves the clock, without the lock
    int m_nSetting = 0;      // threads that want to set the clock: no new step begins
    bool m_bStop = false;
    Steady::time_point m_tLast;
    Steady::time_point m_tTold;
    std::uint64_t m_nRevision = 0;
    std::thread m_objThread;
};

}  // namespace camerad
