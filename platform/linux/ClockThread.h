// A thread that a GThread runs, as the clock sees it.
//
// The clock counts such a thread as running from the construction of its ClockThread, which happens before the thread
// exists, until end(), except while it waits on the clock and while it spins: a body that came back many times in a
// row without waiting may be waiting for the very thread that wants to move the clock. A held clock moves only while
// none is running.
//
// Threads: all members are guarded by the clock's own lock; adopt, bodyReturned and end are called on the thread itself
// (end also by the starter when the system gave no thread), the others on any.
#pragma once

#include "platform/Types.h"
#include "platform/linux/SteadyCondition.h"

namespace platform {

class ClockThread {
public:
    ClockThread();
    ~ClockThread();
    ClockThread(const ClockThread&) = delete;
    ClockThread& operator=(const ClockThread&) = delete;

    // Waits of the calling thread are waits of this object from now on.
    void adopt();

    // One call of the body is over.
    void bodyReturned();

    // The thread has done all it ever will.
    void end();

    // Ends the wait that is going on; every further one returns false at once.
    void requestStop();
    bool stopRequested() const;

private:
    friend class ClockState;

    bool m_bEnded = false;        // end was called
    bool m_bStop = false;         // requestStop was called
    bool m_bBlocked = false;      // waiting on the clock
    bool m_bSpinning = false;     // not counted as running until the next wait
    int m_nCallsWithoutWait = 0;  // of the body, in a row
    bool m_bPassed = false;       // how the last wait ended: true when its whole length had passed
    INT64 m_nDue = 0;             // the end of the wait on the clock
    SteadyCondition m_objWoken;   // m_bBlocked was cleared, or the clock was held or released
};

// A wait of the calling thread on the clock; see VelmorTime::wait.
bool waitOnClock(INT64 p_nMicroseconds);

}  // namespace platform
