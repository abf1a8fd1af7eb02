// A whole session, from its options to its exit status.
#pragma once

#include "apps/sensorctl/Options.h"
#include "simcam/Camera.h"

#include <string>
#include <vector>

namespace sensorctl {

// Sets the device root and the clock, runs the commands and returns the exit status. Call once.
int runSession(const Options& p_stOptions, simcam::Camera& p_objCamera);

// Prints how the last of the words could go on, one a line: the words are the arguments of the program as far as they have
// been typed, the last one perhaps empty. For the completion of a shell. Needs no device root; returns the exit status.
int printCompletion(const std::vector<std::string>& p_vecWords, simcam::Camera& p_objCamera);

}  // namespace sensorctl
