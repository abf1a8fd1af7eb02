// A whole session, from its options to its exit status.
#pragma once

#include "apps/sensorctl/Options.h"
#include "simcam/Camera.h"

namespace sensorctl {

// Sets the device root and the clock, runs the commands and returns the exit status. Call once.
int runSession(const Options& p_stOptions, simcam::Camera& p_objCamera);

}  // namespace sensorctl
