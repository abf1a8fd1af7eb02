// What a request says of who sends it: the session's cookie and the Authorization header.
//
// Functions without state; any thread. They read headers from anybody and throw Refusal (Unauthorised) for what cannot be
// understood. No text holds anything of a credential.
#pragma once

#include <optional>
#include <string>

namespace camerad {

struct HttpRequest;

constexpr char kSessionCookie[] = "camera_session";

// Of all Cookie headers. Nothing when there is none of that name; a second one of that name is refused, since nobody can
// tell which of them the camera has set.
std::optional<std::string> sessionCookie(const HttpRequest& p_stRequest);

struct Authorization {
    enum class Kind { Basic, Bearer } eKind = Kind::Basic;
    std::string strName;      // Basic
    std::string strPassword;  // Basic
    std::string strToken;     // Bearer
};

// Nothing when there is no such header.
std::optional<Authorization> authorization(const HttpRequest& p_stRequest);

// Refuses (Forbidden) a request that the browser says comes from another origin than this camera's own page: an Origin
// that is not the scheme and Host of the request, a Sec-Fetch-Site that is neither same-origin nor none.
void requireSameOrigin(const HttpRequest& p_stRequest);

}  // namespace camerad
