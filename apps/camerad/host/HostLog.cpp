#include "apps/camerad/host/HostLog.h"

#include "apps/camerad/host/PlainText.h"
#include "apps/camerad/host/Views.h"

#include <algorithm>
#include <chrono>
#include <cstdio>

namespace camerad {

namespace {
constexpr std::size_t kKept = 5000;         // lines
constexpr std::size_t kLongestLine = 1000;  // bytes
constexpr std::size_t kBatch = 200;         // driver entries told at a time
constexpr std::size_t kMessages = 50;       // messages told at a time
constexpr std::size_t kMostCounters = 4096;
constexpr std::chrono::milliseconds kGather{100};
}  // namespace

std::string timeText(const platform::CivilTime& p_stTime) {
    char szText[96];
    std::snprintf(szText, sizeof(szText), "%04d-%02d-%02dT%02d:%02d:%02d", p_stTime.year, p_stTime.month, p_stTime.day,
                  p_stTime.hour, p_stTime.minute, p_stTime.second);
    return szText;
}

HostLog::HostLog(EventHub& p_objEvents) : m_objEvents(p_objEvents) {
    m_objThread = std::thread([this] { body(); });
}

HostLog::~HostLog() {
    {
        const Lock lock(m_mutex);
        m_bStop = true;
    }
    m_condition.notify_all();
    m_objThread.join();
}

LogEntry& HostLog::append(LogEntry p_stEntry) {
    p_stEntry.nNumber = ++m_nLast;
    if (m_queEntries.size() >= kKept) {
        m_queEntries.pop_front();
    }
    m_queEntries.push_back(std::move(p_stEntry));
    return m_queEntries.back();
}

void HostLog::add(const simcam::TranscriptEntry& p_stEntry) {
    const bool bDriver = simcam::TranscriptEntry::Kind::Driver == p_stEntry.kind;
    LogEntry entry;
    entry.strTime = timeText(p_stEntry.time);
    entry.strKind = bDriver ? "driver" : "video";
    entry.nChannel = bDriver ? p_stEntry.channel + 1 : p_stEntry.channel;
    entry.nCommand = p_stEntry.command;
    entry.strOption = bDriver ? simcam::optionName(p_stEntry.option) : "";
    entry.nResult = p_stEntry.result;
    entry.strText = plainLine(simcam::toText(p_stEntry, false), kLongestLine);
    {
        const Lock lock(m_mutex);
        if (bDriver && m_stCounters.mapDriver.size() < kMostCounters) {
            HostCounters::Command& command = m_stCounters.mapDriver[{entry.nCommand, entry.strOption}];
            ++command.nCalls;
            command.nFailures += 0 == entry.nResult ? 0 : 1;
        } else if (!bDriver && m_stCounters.mapNotifications.size() < kMostCounters) {
            HostCounters::Command& key = m_stCounters.mapNotifications[static_cast<int>(entry.nCommand)];
            ++key.nCalls;
            key.nFailures += 0 == entry.nResult ? 0 : 1;
        }
        const LogEntry& kept = append(std::move(entry));
        if (m_vecDriver.size() < kBatch) {
            m_vecDriver.push_back(kept);
        } else {
            ++m_nDropped;
        }
    }
    m_condition.notify_all();
}

void HostLog::addMessage(const std::string& p_strLine) {
    const std::string strText = plainLine(p_strLine, kLongestLine);
    if (std::string::npos == strText.find_first_not_of(' ')) {
        return;
    }
    LogEntry entry;
    entry.strTime = timeText(platform::Clock::civilTime());
    entry.strKind = "message";
    entry.strText = strText;
    {
        const Lock lock(m_mutex);
        ++m_stCounters.nMessages;
        const LogEntry& kept = append(std::move(entry));
        if (m_vecMessages.size() < kMessages) {
            m_vecMessages.push_back(kept);
        } else {
            ++m_nDroppedMessages;
        }
    }
    m_condition.notify_all();
}

void HostLog::countSwitch(const std::string& p_strWhy) {
    const Lock lock(m_mutex);
    ++m_stCounters.mapSwitches[p_strWhy];
}

void HostLog::countWrites(std::uint64_t p_nFiles) {
    const Lock lock(m_mutex);
    m_stCounters.nFlashWrites += p_nFiles;
}

std::vector<LogEntry> HostLog::entries(std::uint64_t p_nAfter, std::size_t p_nMost) const {
    const Lock lock(m_mutex);
    const auto begin = std::upper_bound(
        m_queEntries.begin(), m_queEntries.end(), p_nAfter,
        [](std::uint64_t p_nNumber, const LogEntry& p_stEntry) { return p_nNumber < p_stEntry.nNumber; });
    const std::size_t nCount = std::min(p_nMost, static_cast<std::size_t>(m_queEntries.end() - begin));
    return {begin, begin + static_cast<std::ptrdiff_t>(nCount)};
}

HostCounters HostLog::counters() const {
    const Lock lock(m_mutex);
    return m_stCounters;
}

void HostLog::tell(Lock& p_objLock) {
    const std::vector<LogEntry> vecDriver = std::exchange(m_vecDriver, {});
    const std::vector<LogEntry> vecMessages = std::exchange(m_vecMessages, {});
    const std::uint64_t nDropped = std::exchange(m_nDropped, 0);
    const std::uint64_t nDroppedMessages = std::exchange(m_nDroppedMessages, 0);
    p_objLock.unlock();
    if (!vecDriver.empty()) {
        nlohmann::json entries = nlohmann::json::array();
        for (const LogEntry& entry : vecDriver) {
            entries.push_back(toJson(entry));
        }
        m_objEvents.publish("driver", 0, {{"entries", std::move(entries)}, {"dropped", nDropped}});
    }
    for (const LogEntry& message : vecMessages) {
        m_objEvents.publish("message", 0,
                            {{"number", message.nNumber},
                             {"time", message.strTime},
                             {"text", message.strText},
                             {"dropped", &message == &vecMessages.back() ? nDroppedMessages : 0}});
    }
    p_objLock.lock();
}

void HostLog::body() {
    Lock lock(m_mutex);
    while (!m_bStop) {
        m_condition.wait(lock, [this] { return m_bStop || !m_vecDriver.empty() || !m_vecMessages.empty(); });
        m_condition.wait_for(lock, kGather, [this] { return m_bStop; });
        tell(lock);
    }
    tell(lock);
}

}  // namespace camerad
