#include "apps/camerad/api/StreamGuard.h"

namespace camerad {

StreamGuard::StreamGuard(AccessControl& p_objAccess, const HttpRequest& p_stRequest, std::chrono::milliseconds p_nPause)
    : m_objAccess(p_objAccess),
      m_stRequest(p_stRequest),
      m_nPause(p_nPause),
      m_nNext(std::chrono::steady_clock::now() + p_nPause) {}

bool StreamGuard::mayGoOn() {
    const auto now = std::chrono::steady_clock::now();
    if (now < m_nNext) {
        return true;
    }
    m_nNext = now + m_nPause;
    try {
        return Role::Nobody != m_objAccess.identify(m_stRequest).eRole;
    } catch (const Refusal& refusal) {
        // Slowed logins of others are no reason to end what was allowed.
        return Refusal::Kind::Unauthorised != refusal.kind() && Refusal::Kind::Forbidden != refusal.kind();
    }
}

}  // namespace camerad
