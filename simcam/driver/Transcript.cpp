#include "simcam/Transcript.h"

#include <algorithm>
#include <utility>

namespace simcam {

Transcript::Transcript(std::size_t p_nLimit)
    : m_nBegan(platform::Clock::monotonicMicroseconds()), m_nLimit(std::max<std::size_t>(1, p_nLimit)) {}

void Transcript::setLimit(std::size_t p_nLimit) {
    const std::lock_guard<std::mutex> guard(m_mutex);
    m_nLimit = std::max<std::size_t>(1, p_nLimit);
    trim();
}

std::vector<TranscriptEntry> Transcript::entries(const TranscriptFilter& p_stFilter) const {
    const std::lock_guard<std::mutex> guard(m_mutex);
    std::vector<TranscriptEntry> vecEntries;
    std::copy_if(m_queEntries.begin(), m_queEntries.end(), std::back_inserter(vecEntries),
                 [&p_stFilter](const TranscriptEntry& p_stEntry) { return p_stFilter.matches(p_stEntry); });
    return vecEntries;
}

std::vector<std::string> Transcript::lines(const TranscriptFilter& p_stFilter, bool p_bTime) const {
    std::vector<std::string> vecLines;
    for (const TranscriptEntry& stEntry : entries(p_stFilter)) {
        vecLines.push_back(toText(stEntry, p_bTime));
    }
    return vecLines;
}

std::string Transcript::text(const TranscriptFilter& p_stFilter, bool p_bTime) const {
    std::string strText;
    for (const std::string& strLine : lines(p_stFilter, p_bTime)) {
        strText += strLine + "\n";
    }
    return strText;
}

std::uint64_t Transcript::total() const {
    const std::lock_guard<std::mutex> guard(m_mutex);
    return m_nTotal;
}

std::uint64_t Transcript::dropped() const {
    const std::lock_guard<std::mutex> guard(m_mutex);
    return m_nDropped;
}

void Transcript::clear() {
    const std::lock_guard<std::mutex> guard(m_mutex);
    m_queEntries.clear();
}

void Transcript::setObserver(Observer p_fnObserver) {
    std::unique_lock<std::mutex> guard(m_mutex);
    m_fnObserver = std::move(p_fnObserver);
    m_quePending.clear();
    m_condDelivered.wait(guard, [this] { return !m_bDelivering || std::this_thread::get_id() == m_idDeliverer; });
}

void Transcript::append(TranscriptEntry p_stEntry) {
    p_stEntry.microseconds = platform::Clock::monotonicMicroseconds() - m_nBegan;
    p_stEntry.time = platform::Clock::civilTime();
    const std::lock_guard<std::mutex> guard(m_mutex);
    p_stEntry.number = ++m_nTotal;
    if (m_fnObserver) {
        m_quePending.push_back(p_stEntry);
    }
    m_queEntries.push_back(std::move(p_stEntry));
    trim();
}

void Transcript::deliver() {
    std::unique_lock<std::mutex> guard(m_mutex);
    if (m_bDelivering && std::this_thread::get_id() == m_idDeliverer) {
        return;  // the observer called the camera; its entry comes when it has returned
    }
    // While another thread delivers, this one goes on, unless the observer is so slow that too much is waiting for it.
    m_condDelivered.wait(guard, [this] { return !m_bDelivering || m_quePending.size() < m_nLimit; });
    if (m_bDelivering) {
        return;
    }
    m_bDelivering = true;
    m_idDeliverer = std::this_thread::get_id();
    const auto finish = [this] {
        m_bDelivering = false;
        m_idDeliverer = {};
        m_condDelivered.notify_all();
    };
    while (!m_quePending.empty() && m_fnObserver) {
        const TranscriptEntry stEntry = std::move(m_quePending.front());
        m_quePending.pop_front();
        const Observer fnObserver = m_fnObserver;
        m_condDelivered.notify_all();
        guard.unlock();
        try {
            fnObserver(stEntry);
        } catch (...) {
            guard.lock();
            finish();
            throw;
        }
        guard.lock();
    }
    finish();
}

void Transcript::trim() {
    while (m_queEntries.size() > m_nLimit) {
        m_queEntries.pop_front();
        ++m_nDropped;
    }
}

}  // namespace simcam
