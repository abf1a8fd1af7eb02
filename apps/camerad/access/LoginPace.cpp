#include "apps/camerad/access/LoginPace.h"

#include <arpa/inet.h>
#include <netinet/in.h>

#include <algorithm>
#include <array>
#include <tuple>

namespace camerad {

namespace {

constexpr std::size_t kNetworkBytes = 8;
constexpr std::size_t kLongestKey = 64;
constexpr std::size_t kMostDoublings = 30;  // far beyond every pause, and no overflow

}  // namespace

bool LoginPace::isForgotten(const Entry& p_stEntry, Time p_nNow) {
    return p_nNow - std::max(p_stEntry.nLast, p_stEntry.nUntil) >= kForgottenAfter;
}

int LoginPace::pause(const std::string& p_strKey, Time p_nNow) const {
    const auto found = m_mapKeys.find(p_strKey);
    if (m_mapKeys.end() == found || found->second.nUntil <= p_nNow) {
        return 0;
    }
    return static_cast<int>(std::chrono::ceil<std::chrono::seconds>(found->second.nUntil - p_nNow).count());
}

void LoginPace::failed(const std::string& p_strKey, Time p_nNow) {
    auto found = m_mapKeys.find(p_strKey);
    if (m_mapKeys.end() == found) {
        makeRoom(p_nNow);
        found = m_mapKeys.emplace(p_strKey, Entry()).first;
    }
    Entry& stEntry = found->second;
    if (isForgotten(stEntry, p_nNow)) {
        stEntry.nFailures = 0;
    }
    ++stEntry.nFailures;
    stEntry.nLast = p_nNow;
    if (stEntry.nFailures >= m_nFree) {
        const std::size_t doublings = std::min(stEntry.nFailures - m_nFree, kMostDoublings);
        stEntry.nUntil = p_nNow + std::min(m_nLongestPause, std::chrono::seconds(1LL << doublings));
    }
}

void LoginPace::makeRoom(Time p_nNow) {
    if (m_mapKeys.size() < kMostKeys) {
        return;
    }
    const auto rank = [p_nNow](const Entry& p_stEntry) {
        return std::make_tuple(isForgotten(p_stEntry, p_nNow) ? 0 : p_stEntry.nFailures, p_stEntry.nLast);
    };
    m_mapKeys.erase(std::min_element(
        m_mapKeys.begin(), m_mapKeys.end(),
        [&rank](const auto& p_one, const auto& p_other) { return rank(p_one.second) < rank(p_other.second); }));
}

std::string paceKeyOfAddress(const std::string& p_strRemote) {
    std::array<unsigned char, sizeof(in6_addr)> address{};
    const std::string number = p_strRemote.substr(0, p_strRemote.find('%'));  // without the name of an interface
    if (1 != inet_pton(AF_INET6, number.c_str(), address.data())) {
        return p_strRemote.substr(0, kLongestKey);
    }
    char szText[INET6_ADDRSTRLEN] = "";
    static constexpr unsigned char kMapped[] = {0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0xFF, 0xFF};
    if (std::equal(std::begin(kMapped), std::end(kMapped), address.begin())) {
        inet_ntop(AF_INET, address.data() + std::size(kMapped), szText, sizeof(szText));
        return szText;
    }
    std::fill(address.begin() + kNetworkBytes, address.end(), static_cast<unsigned char>(0));
    inet_ntop(AF_INET6, address.data(), szText, sizeof(szText));
    return std::string(szText) + "/64";
}

}  // namespace camerad
