#include "apps/camerad/access/Credentials.h"

#include "apps/camerad/access/Rules.h"
#include "apps/camerad/access/Secrets.h"
#include "apps/camerad/host/Refusal.h"
#include "apps/camerad/http/Http.h"
#include "apps/shared/Text.h"

#include <algorithm>
#include <vector>

namespace camerad {

namespace {

constexpr std::size_t kLongestBasic = 4 * ((kLongestName + 1 + kLongestPassword + 2) / 3);
constexpr std::size_t kLongestToken = 128;

Refusal unauthorised(const std::string& p_strType, const std::string& p_strDetail) {
    return Refusal(Refusal::Kind::Unauthorised, p_strType, p_strDetail);
}

std::string withoutBlanksAround(const std::string& p_strText) {
    const std::size_t first = p_strText.find_first_not_of(" \t");
    return std::string::npos == first ? "" : p_strText.substr(first, p_strText.find_last_not_of(" \t") - first + 1);
}

std::vector<std::string> headers(const HttpRequest& p_stRequest, const std::string& p_strName) {
    std::vector<std::string> values;
    const auto range = p_stRequest.mapHeaders.equal_range(p_strName);
    for (auto header = range.first; range.second != header; ++header) {
        values.push_back(header->second);
    }
    return values;
}

// "scheme://host" in small letters, without the port that the scheme has anyway.
std::string originOf(const std::string& p_strScheme, const std::string& p_strHost) {
    const std::string usual = "https" == p_strScheme ? ":443" : ":80";
    std::string host = apps::lowerCase(p_strHost);
    if (host.size() > usual.size() && 0 == host.compare(host.size() - usual.size(), usual.size(), usual)) {
        host.resize(host.size() - usual.size());
    }
    return p_strScheme + "://" + host;
}

bool isOwnOrigin(const std::string& p_strOrigin, const HttpRequest& p_stRequest) {
    const std::vector<std::string> hosts = headers(p_stRequest, "host");
    const std::size_t schemeEnd = p_strOrigin.find("://");
    if (1 != hosts.size() || hosts[0].empty() || std::string::npos == schemeEnd) {
        return false;
    }
    return originOf(apps::lowerCase(p_strOrigin.substr(0, schemeEnd)), p_strOrigin.substr(schemeEnd + 3)) ==
           originOf(p_stRequest.bSecure ? "https" : "http", hosts[0]);
}

Authorization basicFrom(const std::string& p_strLetters) {
    const auto refusal = [] {
        return unauthorised(
            "bad-authorization",
            "The Authorization header says Basic, but what follows is not the base64 of NAME:PASSWORD.");
    };
    std::optional<std::string> text = p_strLetters.size() > kLongestBasic ? std::nullopt : fromBase64(p_strLetters);
    if (!text) {
        throw refusal();
    }
    const Forgotten forgotten(*text);
    const std::size_t colon = text->find(':');
    if (std::string::npos == colon) {
        throw refusal();
    }
    Authorization authorization;
    authorization.eKind = Authorization::Kind::Basic;
    authorization.strName = text->substr(0, colon);
    authorization.strPassword = text->substr(colon + 1);
    return authorization;
}

}  // namespace

std::optional<std::string> sessionCookie(const HttpRequest& p_stRequest) {
    std::optional<std::string> value;
    for (const std::string& header : headers(p_stRequest, "cookie")) {
        for (std::size_t start = 0; start <= header.size();) {
            const std::size_t end = std::min(header.find(';', start), header.size());
            const std::string pair = header.substr(start, end - start);
            start = end + 1;
            const std::size_t equals = pair.find('=');
            if (std::string::npos == equals || kSessionCookie != withoutBlanksAround(pair.substr(0, equals))) {
                continue;
            }
            if (value) {
                throw unauthorised("ambiguous-session",
                                   "The request carries two cookies \"" + std::string(kSessionCookie) +
                                       "\"; delete the cookies of this address in the browser and log in again.");
            }
            value = withoutBlanksAround(pair.substr(equals + 1));
            if (value->size() >= 2 && '"' == value->front() && '"' == value->back()) {
                value = value->substr(1, value->size() - 2);
            }
        }
    }
    return value;
}

std::optional<Authorization> authorization(const HttpRequest& p_stRequest) {
    const std::vector<std::string> values = headers(p_stRequest, "authorization");
    if (values.empty()) {
        return std::nullopt;
    }
    if (values.size() > 1) {
        throw unauthorised("bad-authorization", "The request carries more than one Authorization header.");
    }
    const std::string text = withoutBlanksAround(values[0]);
    const std::size_t blank = std::min(text.find_first_of(" \t"), text.size());
    const std::string scheme = apps::lowerCase(text.substr(0, blank));
    const std::string rest = withoutBlanksAround(text.substr(blank));
    if ("basic" == scheme) {
        return basicFrom(rest);
    }
    if ("bearer" != scheme) {
        throw unauthorised("bad-authorization",
                           "The Authorization header is of a kind that is not known; Basic and Bearer are.");
    }
    if (rest.empty() || rest.size() > kLongestToken || std::string::npos != rest.find_first_of(" \t")) {
        throw unauthorised("bad-authorization", "The Authorization header says Bearer, but what follows is no token.");
    }
    Authorization authorization;
    authorization.eKind = Authorization::Kind::Bearer;
    authorization.strToken = rest;
    return authorization;
}

void requireSameOrigin(const HttpRequest& p_stRequest) {
    const std::vector<std::string> sites = headers(p_stRequest, "sec-fetch-site");
    const std::vector<std::string> origins = headers(p_stRequest, "origin");
    const bool isForeign =
        std::any_of(sites.begin(), sites.end(),
                    [](const std::string& p_strSite) { return "same-origin" != p_strSite && "none" != p_strSite; }) ||
        std::any_of(origins.begin(), origins.end(),
                    [&](const std::string& p_strOrigin) { return !isOwnOrigin(p_strOrigin, p_stRequest); });
    if (isForeign) {
        throw Refusal(Refusal::Kind::Forbidden, "foreign-origin",
                      "The request comes from a page of another address; only the camera's own page may change "
                      "something with a browser.");
    }
}

}  // namespace camerad
