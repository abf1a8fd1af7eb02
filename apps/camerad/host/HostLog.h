// What driver and video module were told and what the library printed: the newest lines, counts of all, and events.
//
// Whoever makes a driver call only leaves its entry here. One thread of the log tells the listeners, gathered for a tenth
// of a second, and counts what is too much for them; everything is in the log itself.
//
// Threads: every function may be called from any thread.
#pragma once

#include "apps/camerad/host/CameraHost.h"
#include "apps/camerad/host/EventHub.h"
#include "simcam/Transcript.h"

#include <condition_variable>
#include <cstdint>
#include <deque>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

namespace camerad {

// "2026-11-21T22:40:05"
std::string timeText(const platform::CivilTime& p_stTime);

class HostLog {
public:
    explicit HostLog(EventHub& p_objEvents);
    ~HostLog();  // tells what is left, and ends the thread
    HostLog(const HostLog&) = delete;
    HostLog& operator=(const HostLog&) = delete;

    void add(const simcam::TranscriptEntry& p_stEntry);
    void addMessage(const std::string& p_strLine);
    void countSwitch(const std::string& p_strWhy);
    void countWrites(std::uint64_t p_nFiles);  // of files on flash

    std::vector<LogEntry> entries(std::uint64_t p_nAfter, std::size_t p_nMost) const;
    HostCounters counters() const;

private:
    using Lock = std::unique_lock<std::mutex>;

    LogEntry& append(LogEntry p_stEntry);  // with the lock
    void body();
    void tell(Lock& p_objLock);

    EventHub& m_objEvents;
    mutable std::mutex m_mutex;  // guards everything below
    std::condition_variable m_condition;
    std::deque<LogEntry> m_queEntries;
    std::vector<LogEntry> m_vecDriver;    // not yet told
    std::vector<LogEntry> m_vecMessages;  // not yet told
    std::uint64_t m_nDropped = 0;         // driver entries that will not be told
    std::uint64_t m_nDroppedMessages = 0;
    std::uint64_t m_nLast = 0;
    HostCounters m_stCounters;
    bool m_bStop = false;
    std::thread m_objThread;
};

}  // namespace camerad
