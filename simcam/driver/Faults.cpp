#include "simcam/Faults.h"

#include <algorithm>

namespace simcam {
namespace {

bool matches(const Fault& p_stFault, Fault::Target p_eTarget, int p_nChannel, u32 p_nCommand, int p_nOption) {
    return p_stFault.target == p_eTarget && (kAny == p_stFault.channel || p_stFault.channel == p_nChannel) &&
           (p_stFault.anyCommand || p_stFault.command == p_nCommand) &&
           (kAny == p_stFault.option || p_stFault.option == p_nOption);
}

bool isDue(const FaultList::Entry& p_stEntry) {
    return p_stEntry.matched >= p_stEntry.fault.nth &&
           (p_stEntry.fault.times < 0 || p_stEntry.acted < p_stEntry.fault.times);
}

}  // namespace

int FaultList::add(const Fault& p_stFault) {
    const std::lock_guard<std::mutex> guard(m_mutex);
    Entry stEntry;
    stEntry.id = ++m_nLastId;
    stEntry.fault = p_stFault;
    m_vecEntries.push_back(stEntry);
    return stEntry.id;
}

bool FaultList::remove(int p_nId) {
    const std::lock_guard<std::mutex> guard(m_mutex);
    const auto found = std::find_if(m_vecEntries.begin(), m_vecEntries.end(),
                                    [p_nId](const Entry& p_stEntry) { return p_stEntry.id == p_nId; });
    if (m_vecEntries.end() == found) {
        return false;
    }
    m_vecEntries.erase(found);
    return true;
}

void FaultList::clear() {
    const std::lock_guard<std::mutex> guard(m_mutex);
    m_vecEntries.clear();
}

std::vector<FaultList::Entry> FaultList::list() const {
    const std::lock_guard<std::mutex> guard(m_mutex);
    return m_vecEntries;
}

int FaultList::onCall(Fault::Target p_eTarget, int p_nChannel, u32 p_nCommand, int p_nOption, Fault& p_stFault) {
    constexpr int kCountsUpTo = 1000000000;  // far beyond any test; keeps a long run from overflowing
    const std::lock_guard<std::mutex> guard(m_mutex);
    int nActing = 0;
    for (Entry& stEntry : m_vecEntries) {
        if (!matches(stEntry.fault, p_eTarget, p_nChannel, p_nCommand, p_nOption)) {
            continue;
        }
        stEntry.matched = std::min(stEntry.matched + 1, kCountsUpTo);
        if (0 == nActing && isDue(stEntry)) {
            stEntry.acted = std::min(stEntry.acted + 1, kCountsUpTo);
            p_stFault = stEntry.fault;
            nActing = stEntry.id;
        }
    }
    return nActing;
}

}  // namespace simcam
