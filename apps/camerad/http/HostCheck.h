// Whether a request means this camera.
//
// A page from elsewhere can point a name of its own at the camera's address and then speak to it from the user's browser.
// The Host header still carries that name; so only names and addresses that are the camera's are answered.
#pragma once

#include <string>
#include <vector>

namespace camerad {

// p_strHost: asked for, in small letters, without port and brackets. p_vecHosts: names that are the camera's; "*": any.
// p_strListen: the address that the server was told; p_strLocal: the one that the connection came in on.
bool isOurHost(const std::string& p_strHost, const std::vector<std::string>& p_vecHosts, const std::string& p_strListen,
               const std::string& p_strLocal);

bool isLoopback(const std::string& p_strAddress);

}  // namespace camerad
