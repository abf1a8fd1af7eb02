#include "apps/camerad/access/Sessions.h"

#include "apps/camerad/access/Secrets.h"

#include <algorithm>

namespace camerad {

namespace {

constexpr std::size_t kAccountsShare = 4;  // one part in so many

}  // namespace

Sessions::Made Sessions::make(const std::string& p_strName, Time p_nNow) {
    endWhatIsOver(p_nNow);
    makeRoom(p_strName, std::max<std::size_t>(m_stLimits.nMost / kAccountsShare, 1));
    makeRoom("", std::max<std::size_t>(m_stLimits.nMost, 1));
    Made made;
    made.strSecret = randomSecret();
    made.strProof = randomSecret();
    made.strId = sha256Hex(made.strSecret);
    m_mapSessions[made.strId] = {p_strName, made.strProof, p_nNow, p_nNow};
    return made;
}

std::optional<Sessions::Found> Sessions::use(const std::string& p_strSecret, Time p_nNow) {
    if (!isSecret(p_strSecret)) {
        return std::nullopt;
    }
    const auto found = m_mapSessions.find(sha256Hex(p_strSecret));
    if (m_mapSessions.end() == found) {
        return std::nullopt;
    }
    if (isOver(found->second, p_nNow)) {
        m_mapSessions.erase(found);
        return std::nullopt;
    }
    found->second.nUsed = p_nNow;
    return Found{found->first, found->second.strName};
}

std::string Sessions::proofOf(const std::string& p_strId) const {
    const auto found = m_mapSessions.find(p_strId);
    return m_mapSessions.end() == found ? "" : found->second.strProof;
}

void Sessions::endOf(const std::string& p_strName, const std::string& p_strButId) {
    for (auto entry = m_mapSessions.begin(); m_mapSessions.end() != entry;) {
        const bool goes = p_strName == entry->second.strName && p_strButId != entry->first;
        entry = goes ? m_mapSessions.erase(entry) : std::next(entry);
    }
}

std::size_t Sessions::size(Time p_nNow) {
    endWhatIsOver(p_nNow);
    return m_mapSessions.size();
}

bool Sessions::isOver(const Entry& p_stEntry, Time p_nNow) const {
    return p_nNow - p_stEntry.nUsed >= m_stLimits.nIdle || p_nNow - p_stEntry.nMade >= m_stLimits.nLife;
}

void Sessions::endWhatIsOver(Time p_nNow) {
    for (auto entry = m_mapSessions.begin(); m_mapSessions.end() != entry;) {
        entry = isOver(entry->second, p_nNow) ? m_mapSessions.erase(entry) : std::next(entry);
    }
}

void Sessions::makeRoom(const std::string& p_strName, std::size_t p_nMost) {
    for (;;) {
        std::size_t count = 0;
        auto oldest = m_mapSessions.end();
        for (auto entry = m_mapSessions.begin(); m_mapSessions.end() != entry; ++entry) {
            if (p_strName.empty() || p_strName == entry->second.strName) {
                ++count;
                if (m_mapSessions.end() == oldest || entry->second.nUsed < oldest->second.nUsed) {
                    oldest = entry;
                }
            }
        }
        if (count < p_nMost) {
            return;
        }
        m_mapSessions.erase(oldest);
    }
}

}  // namespace camerad
