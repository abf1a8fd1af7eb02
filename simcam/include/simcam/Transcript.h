/// @file
/// Everything that the driver and the video module were told, in one order.
#pragma once

#include "platform/Clock.h"
#include "platform/Types.h"
#include "simcam/Export.h"

#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <functional>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

namespace simcam {

/// One call of the driver or one notification of the video module.
struct TranscriptEntry {
    /// Who was told.
    enum class Kind {
        Driver,       ///< a call of ia_ioctrl_v2
        Notification  ///< a notification of the video module
    };
    Kind kind = Kind::Driver;  ///< who was told
    std::uint64_t number = 0;  ///< from 1, without gaps, in the order in which the calls took effect
    INT64 microseconds = 0;    ///< time of the call's end on the platform's clock since the transcript began
    platform::CivilTime time;  ///< the device time at that moment
    int channel = 0;           ///< as the caller gave it: from 0 for the driver, from 1 for the video module
    u32 command = 0;           ///< driver command, or key of the notification
    u32 option = 0;            ///< IA_CMD_OPT_..., 0 for a notification
    std::vector<int> before;  ///< the 32-bit words handed in: of a set, a correction, a notification and a sensor check
    /// The 32-bit words that the caller finds at data after a call that was carried out: of every option but a set; the
    /// heater's byte is one word; a range is kind, default, min, max and then the items; the list of dynamic commands
    /// is the commands.
    std::vector<int> after;
    std::string text;  ///< the text handed out (module version), otherwise empty
    int result = 0;    ///< what the call returned
    int fault = 0;     ///< id of the fault that acted on the call, 0 for none
};

/// The entry in one line, without a newline:
///
///     12:00:01 +0.500000 ia ch0 set 34 50 = 0
///     12:00:01 +0.500000 ia ch0 set 145 20 40 0 = 0              a record: its words
///     12:00:01 +0.500000 ia ch0 get 153 -> 1 = 0
///     12:00:01 +0.500000 ia ch0 get 2496 -> "SIMCAM ..." = 0
///     12:00:01 +0.500000 ia ch0 correct 49 3 -> 7 = 0
///     12:00:01 +0.500000 ia ch0 range 49 -> kind 0 default 7 min 7 max 28 items 7 8 9 = 0
///     12:00:01 +0.500000 ia ch0 commands -> 49 50 82 1537 = 0
///     12:00:01 +0.500000 ia ch0 status 1568 -> 1 = 0
///     12:00:01 +0.500000 ia ch0 set 2369 50 = -5 fault 1
///     12:00:01 +0.500000 video ch1 2384 2 = 0
///
/// The time is the device time and the seconds since the transcript began. The number behind "=" is the result.
/// @param p_stEntry  the entry
/// @param p_bTime    false: without the time; the line begins at "ia" or "video"
/// @return the line
SIMCAM_API std::string toText(const TranscriptEntry& p_stEntry, bool p_bTime = true);

/// The name of a driver option.
/// @param p_nOption  IA_CMD_OPT_...
/// @return "set", "get", "range", "correct", "status"; a number for an option that does not exist
SIMCAM_API std::string optionName(u32 p_nOption);

/// Which entries: all conditions that are set must hold.
struct TranscriptFilter {
    /// Whose entries.
    enum class Kind {
        Both,         ///< all
        Driver,       ///< calls of ia_ioctrl_v2
        Notification  ///< notifications of the video module
    };
    Kind kind = Kind::Both;     ///< whose entries
    int channel = -1;           ///< as the caller gave it; -1: any
    std::vector<u32> commands;  ///< empty: any
    int option = -1;            ///< IA_CMD_OPT_...; -1: any
    bool failedOnly = false;    ///< only results other than 0
    bool setsOnly = false;      ///< only sets of the driver, and notifications
    std::uint64_t after = 0;    ///< only entries with a larger number

    /// Whether an entry fulfils all conditions.
    /// @param p_stEntry  the entry
    /// @return true when it does
    SIMCAM_API bool matches(const TranscriptEntry& p_stEntry) const;
};

/// Keeps the newest entries, up to a limit.
///
/// A slow observer slows the callers down once as many entries as the limit are waiting for it.
///
/// Threads: any. The observer is called without a lock, for one entry at a time and in their order, on a thread that
/// made one of the calls; it may call the camera, and must not wait for another thread that does. Not copyable.
class SIMCAM_API Transcript {
public:
    /// Who is told of each entry.
    using Observer = std::function<void(const TranscriptEntry&)>;

    /// An empty transcript.
    /// @param p_nLimit  entries kept, at least 1
    explicit Transcript(std::size_t p_nLimit = 10000);
    Transcript(const Transcript&) = delete;
    Transcript& operator=(const Transcript&) = delete;

    /// Changes the limit. A smaller one drops the oldest entries at once.
    /// @param p_nLimit  entries kept, at least 1
    void setLimit(std::size_t p_nLimit);

    /// Kept entries.
    /// @param p_stFilter  which
    /// @return oldest first
    std::vector<TranscriptEntry> entries(const TranscriptFilter& p_stFilter = {}) const;
    /// Kept entries as lines.
    /// @param p_stFilter  which
    /// @param p_bTime     false: without the time, for comparing
    /// @return oldest first
    std::vector<std::string> lines(const TranscriptFilter& p_stFilter = {}, bool p_bTime = false) const;
    /// Kept entries as one text.
    /// @param p_stFilter  which
    /// @param p_bTime     false: without the time, for comparing
    /// @return the lines, each with a newline
    std::string text(const TranscriptFilter& p_stFilter = {}, bool p_bTime = false) const;

    /// How many entries were ever made.
    /// @return the number of the newest
    std::uint64_t total() const;
    /// How many entries the limit has dropped; clear drops none.
    /// @return their number
    std::uint64_t dropped() const;
    /// Forgets the kept entries; the numbers go on.
    void clear();

    /// Replaces the observer. When this returns, the old one is no longer running, unless the observer itself is the
    /// caller.
    /// @param p_fnObserver  an empty one observes nothing
    void setObserver(Observer p_fnObserver);

    /// For the driver and the video module: adds an entry and gives it its number and its time.
    /// @param p_stEntry  the entry
    void append(TranscriptEntry p_stEntry);
    /// For the driver and the video module: calls the observer for all entries that are due. Called without any lock.
    void deliver();

private:
    void trim();  // with the lock

    mutable std::mutex m_mutex;  // guards everything below
    std::condition_variable m_condDelivered;
    std::deque<TranscriptEntry> m_queEntries;
    std::deque<TranscriptEntry> m_quePending;  // not yet observed
    const INT64 m_nBegan;                      // monotonic microseconds
    std::size_t m_nLimit;
    std::uint64_t m_nTotal = 0;
    std::uint64_t m_nDropped = 0;
    Observer m_fnObserver;
    bool m_bDelivering = false;
    std::thread::id m_idDeliverer;
};

}  // namespace simcam
