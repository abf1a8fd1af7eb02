// Looks, while a stream runs, whether its client may still have it: a session may end, an account go.
//
// One thread. The request is a copy of the stream's own.
#pragma once

#include "apps/camerad/access/AccessControl.h"
#include "apps/camerad/http/Http.h"

#include <chrono>

namespace camerad {

// Between two looks of a stream, while it has nothing to send, whether its client is still there.
constexpr std::chrono::milliseconds kLookAtClient{200};

class StreamGuard {
public:
    // p_nPause: between two looks.
    StreamGuard(AccessControl& p_objAccess, const HttpRequest& p_stRequest, std::chrono::milliseconds p_nPause);
    // False once the client may not have it any more. Asks the access control only when the pause is over.
    bool mayGoOn();

private:
    AccessControl& m_objAccess;
    HttpRequest m_stRequest;
    std::chrono::milliseconds m_nPause;
    std::chrono::steady_clock::time_point m_nNext;
};

}  // namespace camerad
