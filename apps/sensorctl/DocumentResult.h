// A whole document as the answer of a command.
#pragma once

#include "apps/sensorctl/Result.h"

#include <string>

namespace sensorctl {

// Its lines as text, its size and the text by name. An empty document is a failure.
Result documentResult(const std::string& p_strText);

}  // namespace sensorctl
