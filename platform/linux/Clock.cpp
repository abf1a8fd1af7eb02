#include "platform/Clock.h"

#include "platform/linux/ClockThread.h"
#include "platform/linux/SteadyCondition.h"

#include <algorithm>
#include <limits>
#include <mutex>
#include <optional>
#include <vector>

namespace platform {

namespace {

constexpr INT64 kMicrosecondsPerSecond = 1000000;

// Calls of a body in a row without a wait that make it a spinning one. More than a body that works through a list
// takes, few enough to be over in no time.
constexpr int kCallsOfSpinning = 1000;

thread_local ClockThread* t_pThisThread = nullptr;  // null on a thread that no GThread runs

// Both not negative; stays at the largest number in place of an overflow.
INT64 sumOf(INT64 p_nLeft, INT64 p_nRight) {
    const INT64 nLargest = std::numeric_limits<INT64>::max();
    return p_nLeft > nLargest - p_nRight ? nLargest : p_nLeft + p_nRight;
}

CivilTime civilOf(const std::tm& p_stTime) {
    constexpr int kLastSecond = 59;  // a leap second shows as the one before it
    return {p_stTime.tm_year + 1900, p_stTime.tm_mon + 1, p_stTime.tm_mday,
            p_stTime.tm_hour,        p_stTime.tm_min,     std::min(p_stTime.tm_sec, kLastSecond)};
}

std::time_t secondsOf(const CivilTime& p_stTime) {
    std::tm stTime = {};
    stTime.tm_year = p_stTime.year - 1900;
    stTime.tm_mon = p_stTime.month - 1;
    stTime.tm_mday = p_stTime.day;
    stTime.tm_hour = p_stTime.hour;
    stTime.tm_min = p_stTime.minute;
    stTime.tm_sec = p_stTime.second;
    return timegm(&stTime);
}

}  // namespace

// The one clock of the process. Held or real, there is one time line in microseconds: holding freezes it, moves push it
// on, releasing lets it run from there. A wait is a point on that line, so it keeps what is left of its length whatever
// happens to the clock.
class ClockState {
public:
    // Never destroyed: threads may wait while the process ends.
    static ClockState& instance() {
        static ClockState* const pState = new ClockState;
        return *pState;
    }

    void hold(const CivilTime& p_stStart);
    void release();
    bool isHeld();
    bool advance(INT64 p_nMicroseconds);
    void settle();
    INT64 monotonic();
    CivilTime civilTime();

    bool waitOnThread(ClockThread& p_objThread, INT64 p_nMicroseconds);
    void waitElsewhere(INT64 p_nMicroseconds);

    void enlist(ClockThread& p_objThread);
    void bodyReturned(ClockThread& p_objThread);
    void end(ClockThread& p_objThread);
    void requestStop(ClockThread& p_objThread);
    bool stopRequested(const ClockThread& p_objThread);

private:
    using Lock = std::unique_lock<std::mutex>;

    // All of these need the lock.
    INT64 now();
    void wake(ClockThread& p_objThread, bool p_bPassed);
    void wakeDue();
    void tellAll();
    ClockThread* firstDue(INT64 p_nLatest);
    bool move(Lock& p_objLock, INT64& p_nLeft);
    bool moveInTurn(Lock& p_objLock, INT64& p_nLeft);

    std::mutex m_mutex;         // guards everything below and the members of every ClockThread
    SteadyCondition m_changed;  // a thread came to rest, a mover's turn ended, the clock was held or released

    bool m_bHeld = false;
    INT64 m_nNow = 0;                   // the time line: now when held, else at m_nRunsSince
    std::optional<INT64> m_nRunsSince;  // steady clock; unset while held and until somebody reads a real clock
    std::time_t m_nHeldCivil = 0;       // device time at m_nHeldSince, seconds since 1970
    INT64 m_nHeldSince = 0;             // on the time line

    std::vector<ClockThread*> m_vecThreads;  // alive, in the order of construction
    int m_nRunning = 0;                      // threads that are alive, not waiting on the clock and not spinning

    // Movers take turns in the order in which they came.
    INT64 m_nNextTurn = 0;
    INT64 m_nTurn = 0;
};

INT64 ClockState::now() {
    if (m_bHeld) {
        return m_nNow;
    }
    const INT64 nSteady = steadyMicroseconds();
    if (!m_nRunsSince) {
        m_nRunsSince = nSteady;
    }
    return sumOf(m_nNow, nSteady - *m_nRunsSince);
}

void ClockState::hold(const CivilTime& p_stStart) {
    const Lock lock(m_mutex);
    if (!m_bHeld) {
        // A real clock that nobody has read yet stands at 0, so that a held one counts nothing but its moves.
        m_nNow = m_nRunsSince ? now() : m_nNow;
        m_nRunsSince.reset();
        m_bHeld = true;
    }
    m_nHeldCivil = secondsOf(p_stStart);
    m_nHeldSince = m_nNow;
    wakeDue();
    tellAll();
}

void ClockState::release() {
    const Lock lock(m_mutex);
    if (m_bHeld) {
        m_bHeld = false;
        m_nRunsSince = steadyMicroseconds();
        tellAll();
    }
}

bool ClockState::isHeld() {
    const Lock lock(m_mutex);
    return m_bHeld;
}

bool ClockState::advance(INT64 p_nMicroseconds) {
    Lock lock(m_mutex);
    if (p_nMicroseconds < 0 || nullptr != t_pThisThread) {
        return false;
    }
    return move(lock, p_nMicroseconds);
}

void ClockState::settle() {
    Lock lock(m_mutex);
    while (m_bHeld && m_nRunning > 0 && nullptr == t_pThisThread) {
        m_changed.wait(lock);
    }
}

INT64 ClockState::monotonic() {
    const Lock lock(m_mutex);
    return now();
}

CivilTime ClockState::civilTime() {
    const Lock lock(m_mutex);
    std::tm stTime = {};
    if (m_bHeld) {
        const std::time_t nSeconds =
            m_nHeldCivil + static_cast<std::time_t>((m_nNow - m_nHeldSince) / kMicrosecondsPerSecond);
        gmtime_r(&nSeconds, &stTime);
    } else {
        const std::time_t nSeconds = std::time(nullptr);
        localtime_r(&nSeconds, &stTime);
    }
    return civilOf(stTime);
}

bool ClockState::waitOnThread(ClockThread& p_objThread, INT64 p_nMicroseconds) {
    Lock lock(m_mutex);
    if (p_objThread.m_bStop) {
        return false;
    }
    if (0 == p_nMicroseconds) {
        return true;
    }
    p_objThread.m_nCallsWithoutWait = -1;  // this call does not count
    p_objThread.m_nDue = sumOf(now(), p_nMicroseconds);
    p_objThread.m_bBlocked = true;
    m_nRunning -= p_objThread.m_bSpinning ? 0 : 1;
    p_objThread.m_bSpinning = false;
    m_changed.notifyAll();
    while (p_objThread.m_bBlocked) {
        if (m_bHeld) {
            p_objThread.m_objWoken.wait(lock);
        } else if (const INT64 nLeft = p_objThread.m_nDue - now(); nLeft > 0) {
            p_objThread.m_objWoken.waitFor(lock, nLeft);
        } else {
            wake(p_objThread, true);
        }
    }
    return p_objThread.m_bPassed;
}

void ClockState::waitElsewhere(INT64 p_nMicroseconds) {
    Lock lock(m_mutex);
    INT64 nLeft = p_nMicroseconds;
    while (nLeft > 0) {
        if (m_bHeld) {
            if (move(lock, nLeft)) {
                return;
            }
            continue;  // released on the way: the rest takes its time
        }
        const INT64 nDue = sumOf(now(), nLeft);
        while (!m_bHeld && nDue > now()) {
            m_changed.waitFor(lock, nDue - now());
        }
        nLeft = nDue - now();
    }
}

bool ClockState::move(Lock& p_objLock, INT64& p_nLeft) {
    const INT64 nTurn = m_nNextTurn++;
    while (nTurn != m_nTurn) {
        m_changed.wait(p_objLock);
    }
    const bool bDone = moveInTurn(p_objLock, p_nLeft);
    ++m_nTurn;
    m_changed.notifyAll();
    return bDone;
}

// False when the clock is not held, or released before the move was over; p_nLeft is what is left of it.
bool ClockState::moveInTurn(Lock& p_objLock, INT64& p_nLeft) {
    while (true) {
        while (m_bHeld && m_nRunning > 0) {
            m_changed.wait(p_objLock);
        }
        if (!m_bHeld) {
            return false;
        }
        const INT64 nTarget = sumOf(m_nNow, p_nLeft);
        ClockThread* const pNext = firstDue(nTarget);
        if (nullptr == pNext) {
            m_nNow = nTarget;
            p_nLeft = 0;
            return true;
        }
        const INT64 nStop = std::max(m_nNow, pNext->m_nDue);
        p_nLeft -= nStop - m_nNow;
        m_nNow = nStop;
        wake(*pNext, true);
    }
}

ClockThread* ClockState::firstDue(INT64 p_nLatest) {
    ClockThread* pFirst = nullptr;
    for (ClockThread* const pThread : m_vecThreads) {
        if (pThread->m_bBlocked && pThread->m_nDue <= p_nLatest &&
            (nullptr == pFirst || pThread->m_nDue < pFirst->m_nDue)) {
            pFirst = pThread;
        }
    }
    return pFirst;
}

void ClockState::wake(ClockThread& p_objThread, bool p_bPassed) {
    p_objThread.m_bBlocked = false;
    p_objThread.m_bPassed = p_bPassed;
    ++m_nRunning;
    p_objThread.m_objWoken.notifyAll();
}

void ClockState::wakeDue() {
    for (ClockThread* const pThread : m_vecThreads) {
        if (pThread->m_bBlocked && pThread->m_nDue <= m_nNow) {
            wake(*pThread, true);
        }
    }
}

void ClockState::tellAll() {
    for (ClockThread* const pThread : m_vecThreads) {
        pThread->m_objWoken.notifyAll();
    }
    m_changed.notifyAll();
}

void ClockState::enlist(ClockThread& p_objThread) {
    const Lock lock(m_mutex);
    m_vecThreads.push_back(&p_objThread);
    ++m_nRunning;
}

void ClockState::end(ClockThread& p_objThread) {
    const Lock lock(m_mutex);
    if (!p_objThread.m_bEnded) {
        p_objThread.m_bEnded = true;
        m_vecThreads.erase(std::find(m_vecThreads.begin(), m_vecThreads.end(), &p_objThread));
        m_nRunning -= p_objThread.m_bSpinning ? 0 : 1;
        m_changed.notifyAll();
    }
}

void ClockState::bodyReturned(ClockThread& p_objThread) {
    const Lock lock(m_mutex);
    if (!p_objThread.m_bSpinning && kCallsOfSpinning == ++p_objThread.m_nCallsWithoutWait) {
        p_objThread.m_bSpinning = true;
        --m_nRunning;
        m_changed.notifyAll();
    }
}

void ClockState::requestStop(ClockThread& p_objThread) {
    const Lock lock(m_mutex);
    p_objThread.m_bStop = true;
    if (p_objThread.m_bBlocked) {
        wake(p_objThread, false);
    }
}

bool ClockState::stopRequested(const ClockThread& p_objThread) {
    const Lock lock(m_mutex);
    return p_objThread.m_bStop;
}

ClockThread::ClockThread() {
    ClockState::instance().enlist(*this);
}
ClockThread::~ClockThread() {
    end();
}
void ClockThread::adopt() {
    t_pThisThread = this;
}
void ClockThread::bodyReturned() {
    ClockState::instance().bodyReturned(*this);
}
void ClockThread::end() {
    if (this == t_pThisThread) {
        t_pThisThread = nullptr;
    }
    ClockState::instance().end(*this);
}
void ClockThread::requestStop() {
    ClockState::instance().requestStop(*this);
}
bool ClockThread::stopRequested() const {
    return ClockState::instance().stopRequested(*this);
}

bool waitOnClock(INT64 p_nMicroseconds) {
    if (nullptr != t_pThisThread) {
        return ClockState::instance().waitOnThread(*t_pThisThread, p_nMicroseconds);
    }
    ClockState::instance().waitElsewhere(p_nMicroseconds);
    return true;
}

void Clock::hold(const CivilTime& p_stStart) {
    ClockState::instance().hold(p_stStart);
}
void Clock::release() {
    ClockState::instance().release();
}
bool Clock::isHeld() {
    return ClockState::instance().isHeld();
}
bool Clock::advance(INT64 p_nMicroseconds) {
    return ClockState::instance().advance(p_nMicroseconds);
}
void Clock::settle() {
    ClockState::instance().settle();
}
INT64 Clock::monotonicMicroseconds() {
    return ClockState::instance().monotonic();
}
CivilTime Clock::civilTime() {
    return ClockState::instance().civilTime();
}

}  // namespace platform
