#include "apps/sensorctl/Refusal.h"

#include "apps/sensorctl/Session.h"

#include <utility>

namespace sensorctl {

Result refused(const Session& p_objSession, const std::string& p_strError, Json p_data) {
    const char* const reason = p_objSession.isInitialised() ? "" : "; the channel is not initialised, use init first";
    return Result::failed(p_strError + reason, std::move(p_data));
}

}  // namespace sensorctl
