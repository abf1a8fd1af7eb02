// The life of the program: everything up, wait for a signal, everything down.
#pragma once

#include "apps/camerad/program/Options.h"

namespace camerad {

// Serves until SIGTERM or SIGINT. Has to be called before the process has a second thread. Returns the exit status; throws
// std::exception when it cannot start.
int runCamera(const ProgramOptions& p_stOptions);

}  // namespace camerad
