// Slows down who fails to log in, by a key: the name of an account, or the address of a client.
//
// Some failures are free; from then on each failure is followed by a pause, 1, 2, 4 ... seconds up to the longest, in which
// nothing is checked. A key that has not failed for a while begins anew. The table is bounded: when it is full, the key
// with the fewest failures goes, of those the one that failed longest ago.
//
// Threads: none of its own; the caller holds a lock.
#pragma once

#include <chrono>
#include <cstddef>
#include <string>
#include <unordered_map>

namespace camerad {

class LoginPace {
public:
    using Time = std::chrono::steady_clock::time_point;

    static constexpr std::size_t kMostKeys = 1024;
    static constexpr std::chrono::minutes kForgottenAfter{15};

    LoginPace(std::size_t p_nFree, std::chrono::seconds p_nLongestPause)
        : m_nFree(p_nFree), m_nLongestPause(p_nLongestPause) {}

    // Seconds, rounded up, until the key may try again; 0: now.
    int pause(const std::string& p_strKey, Time p_nNow) const;
    void failed(const std::string& p_strKey, Time p_nNow);
    void clear(const std::string& p_strKey) { m_mapKeys.erase(p_strKey); }
    std::size_t size() const { return m_mapKeys.size(); }

private:
    struct Entry {
        std::size_t nFailures = 0;
        Time nLast{};   // failure
        Time nUntil{};  // the end of the pause
    };
    static bool isForgotten(const Entry& p_stEntry, Time p_nNow);
    void makeRoom(Time p_nNow);

    const std::size_t m_nFree;
    const std::chrono::seconds m_nLongestPause;
    std::unordered_map<std::string, Entry> m_mapKeys;
};

// What an address counts as: an IPv6 address as its network of 64 bits, of which one machine has as many addresses as it
// likes; an IPv4 address in IPv6's form as that IPv4 address; every other text as it is, cut at 64 bytes.
std::string paceKeyOfAddress(const std::string& p_strRemote);

}  // namespace camerad
