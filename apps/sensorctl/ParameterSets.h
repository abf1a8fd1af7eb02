// The parameters of the selected channel, as its controller has them and as its style document describes them.
//
// Everything goes through the library's own operations. One thread.
#pragma once

#include "apps/sensorctl/Session.h"
#include "apps/sensorctl/Shared.h"

#include <vector>

namespace sensorctl {

// The style document with the driver's ranges of this moment. Throws CommandError when there is none.
std::vector<StyleParameter> styleOf(Session& p_objSession);

// The current scheme, -1 when none is applied.
int currentScheme(Session& p_objSession);

// What the current scheme holds in memory of these parameters. What a set does not hold (it has no default) is left out,
// so that nothing is asked of the driver. Throws CommandError when no scheme is applied.
std::vector<StoredValue> memoryOf(Session& p_objSession, const std::vector<StyleParameter>& p_vecStyle);

}  // namespace sensorctl
