// A refusal of the library as the answer of a command.
#pragma once

#include "apps/sensorctl/Result.h"

#include <string>

namespace sensorctl {

class Session;

// A failure that says so when it is only for want of init: the library tells the two apart by no result.
Result refused(const Session& p_objSession, const std::string& p_strError, Json p_data = Json::object());

}  // namespace sensorctl
