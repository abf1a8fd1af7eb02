#include "apps/camerad/http/HostCheck.h"

#include <arpa/inet.h>

#include <algorithm>
#include <cctype>

namespace camerad {

namespace {

// Addresses have several spellings; names have two.
std::string normal(std::string p_strHost) {
    std::transform(p_strHost.begin(), p_strHost.end(), p_strHost.begin(),
                   [](char p_cByte) { return static_cast<char>(std::tolower(static_cast<unsigned char>(p_cByte))); });
    in6_addr address{};
    char text[INET6_ADDRSTRLEN] = {};
    if (1 == inet_pton(AF_INET6, p_strHost.c_str(), &address) &&
        nullptr != inet_ntop(AF_INET6, &address, text, sizeof(text))) {
        return text;
    }
    return p_strHost;
}

}  // namespace

bool isLoopback(const std::string& p_strAddress) {
    in_addr address{};
    const bool four = 1 == inet_pton(AF_INET, p_strAddress.c_str(), &address) && 0 == p_strAddress.rfind("127.", 0);
    return four || "::1" == p_strAddress || "localhost" == p_strAddress;
}

bool isOurHost(const std::string& p_strHost, const std::vector<std::string>& p_vecHosts, const std::string& p_strListen,
               const std::string& p_strLocal) {
    const std::string host = normal(p_strHost);
    return "localhost" == host || normal(p_strListen) == host || normal(p_strLocal) == host ||
           std::any_of(p_vecHosts.begin(), p_vecHosts.end(),
                       [&host](const std::string& p_strOne) { return "*" == p_strOne || normal(p_strOne) == host; });
}

}  // namespace camerad
