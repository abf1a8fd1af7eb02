// The sessions of people who logged in by the page. Kept in memory alone, by the SHA-256 of their secret.
//
// Bounded: in all, and for one account to a quarter of all, so that nobody can log others out by logging in. When it is
// full, the session idle longest goes.
//
// Threads: none of its own; the caller holds a lock.
#pragma once

#include <chrono>
#include <cstddef>
#include <map>
#include <optional>
#include <string>

namespace camerad {

class Sessions {
public:
    using Time = std::chrono::steady_clock::time_point;

    struct Limits {
        std::chrono::seconds nIdle{};
        std::chrono::seconds nLife{};
        std::size_t nMost = 0;
    };
    explicit Sessions(const Limits& p_stLimits) : m_stLimits(p_stLimits) {}

    struct Made {
        std::string strSecret;  // for the cookie; not kept
        std::string strProof;
        std::string strId;
    };
    Made make(const std::string& p_strName, Time p_nNow);

    struct Found {
        std::string strId;
        std::string strName;
    };
    // The session of a secret, which counts as used now. Nothing when there is none, or no longer.
    std::optional<Found> use(const std::string& p_strSecret, Time p_nNow);
    // Empty when there is no such session.
    std::string proofOf(const std::string& p_strId) const;

    void end(const std::string& p_strId) { m_mapSessions.erase(p_strId); }
    // All sessions of the account but the one.
    void endOf(const std::string& p_strName, const std::string& p_strButId = "");
    std::size_t size(Time p_nNow);

private:
    struct Entry {
        std::string strName;
        std::string strProof;
        Time nMade{};
        Time nUsed{};
    };
    using Map = std::map<std::string, Entry>;  // by id: the SHA-256 of the secret
    bool isOver(const Entry& p_stEntry, Time p_nNow) const;
    void endWhatIsOver(Time p_nNow);
    // Ends the session idle longest, of the account or of all when that is empty, until fewer than so many are left.
    void makeRoom(const std::string& p_strName, std::size_t p_nMost);

    const Limits m_stLimits;
    Map m_mapSessions;
};

}  // namespace camerad
