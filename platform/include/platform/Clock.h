/// @file
/// The one clock under VelmorTime and QVDeviceTime.
#pragma once

#include "platform/Types.h"

#include <ctime>

namespace platform {

/// A calendar date and a time of day as the camera's own clock shows it (no time zone).
struct CivilTime {
    int year = 2024;  ///< e.g. 2024
    int month = 1;    ///< 1 to 12
    int day = 1;      ///< 1 to 31
    int hour = 0;     ///< 0 to 23
    int minute = 0;   ///< 0 to 59
    int second = 0;   ///< 0 to 59
};

/// The clock of the process.
///
/// It runs in one of two ways:
/// - real (the default): waits take their time, the device time is the machine's local time;
/// - held: the time stands still until somebody moves it. A held clock makes a one-second pace cost a test nothing and
///   makes a day of 24 hours repeatable.
///
/// Waits on a held clock:
/// - on a thread that a GThread runs, a wait blocks until the clock has been moved past its end;
/// - on any other thread, a wait moves the clock on by its own length, as advance does, and returns.
///
/// There is one line of time. Holding the clock stops it there, moves push it on, releasing lets it run from there.
///
/// Threads: every function may be called from any thread. Moves from several threads take turns, each by its whole
/// length. On a thread that a GThread runs, advance does nothing and returns false, and settle returns at once.
class PLATFORM_API Clock {
public:
    /// Holds the clock at the given device time. Holding a held clock sets it to that time, forwards or back; waits
    /// that are already running keep what is left of their length.
    /// @param p_stStart  the device time; fields outside their range carry over into the next one
    static void hold(const CivilTime& p_stStart);

    /// Lets the clock run again: the device time is the machine's, and waits that were blocked take the rest of their
    /// length in real time.
    static void release();

    /// Whether the clock is held.
    /// @return true between hold and release
    static bool isHeld();

    /// Moves a held clock on. The clock stops at the end of each blocked wait on the way, in the order of time, lets
    /// that thread run, and goes on when every thread that a GThread runs is waiting on the clock again or has ended.
    /// Waits that end at one moment end in the order in which their threads were started. When advance returns, all
    /// that was due has happened.
    ///
    /// The caller must hold nothing that such a thread needs, or both wait for ever. The same goes for whoever waits on
    /// a held clock on any other thread. A body that came back 1000 times in a row without waiting counts as at rest
    /// until it waits again.
    /// @param p_nMicroseconds  how far, 0 or more
    /// @return true when the clock has moved by the whole length; false, without a move, for a negative length or a
    ///         clock that is not held, and false for one that is released on the way, for what is left
    static bool advance(INT64 p_nMicroseconds);

    /// Blocks until every thread that a GThread runs is waiting on the held clock or has ended, without moving the
    /// clock. On a clock that is not held it returns at once.
    static void settle();

    /// The time since an arbitrary start; never goes back. A held clock adds nothing but its moves: in a process that
    /// holds its clock before anything reads or waits on it, this is the sum of all moves.
    /// @return microseconds
    static INT64 monotonicMicroseconds();

    /// The device time now, held or real.
    /// @return date and time of day
    static CivilTime civilTime();
};

}  // namespace platform
