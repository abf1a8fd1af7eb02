// The scene in front of the simulated camera as JSON. Functions without state.
#pragma once

#include "simcam/Scene.h"

#include <nlohmann/json.hpp>

namespace camerad {

// p_dLuxNow: the light at this moment.
nlohmann::json toJson(const simcam::SceneState& p_stScene, double p_dLuxNow);

// The scene with what the patch says, all of it checked. Throws Refusal (BadValue) with the field and what it takes.
simcam::SceneState patched(const simcam::SceneState& p_stScene, const nlohmann::json& p_objPatch);

}  // namespace camerad
