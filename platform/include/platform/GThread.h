/// @file
/// A thread that calls a body over and over until it is stopped.
#pragma once

#include "platform/Types.h"

#include <functional>
#include <memory>
#include <string>

/// A thread that calls a body over and over until it is stopped.
///
/// One run is: the start function, then the body again and again, then the exit function, all on the new thread. The
/// value that the three return is ignored. An exception that leaves one of them ends the run (the exit function is
/// still called unless it was the one that threw) with a line on standard error, never the process.
///
/// A wait of the body (VelmorTime::wait) ends early when the thread is asked to stop. A body that waits for anything
/// else must come back by itself, or stop blocks.
///
/// Threads: start and stop may be called from any thread; calls from several threads take turns. Not copyable.
class PLATFORM_API GThread {
public:
    /// What a thread runs. The value is ignored.
    using Body = std::function<int()>;

    /// A thread that does not run yet.
    /// @param p_fnBody   called again and again
    /// @param p_strName  the thread's name in the system, cut to the 15 characters that the system keeps
    /// @param p_fnStart  called once before the body; skipped when empty
    /// @param p_fnExit   called once after the body; skipped when empty
    GThread(Body p_fnBody, const std::string& p_strName, Body p_fnStart, Body p_fnExit);
    /// As stop(). An object that its own thread destroys does not wait: the run ends alone, after the current call.
    ~GThread();
    GThread(const GThread&) = delete;
    GThread& operator=(const GThread&) = delete;

    /// Begins a run. After a run that ended by itself (an exception), start begins a new one.
    /// @return true when a new run has begun; false when one is already going on or the system gives no thread
    bool start();

    /// Asks the run to end, wakes a wait of its body and blocks until the thread is gone.
    /// @return true when nothing runs any more, also when nothing ever ran; false only when the thread itself calls it:
    ///         then the request stands and the run ends after the current call of the body
    bool stop();

    /// Whether a run is going on.
    /// @return true from start to the end of the run
    bool isRunning() const;

    /// Does nothing: the start and exit function of a thread that needs none.
    /// @return 0
    static int emptyFunction();

private:
    struct State;
    std::unique_ptr<State> m_pState;
};
