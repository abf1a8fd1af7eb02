// A request from outside to end the session: an interrupt from the keyboard or a termination signal.
#pragma once

namespace sensorctl {

// From now on SIGINT and SIGTERM ask for the end of the session instead of ending the process, and writing to a closed
// pipe is an error instead of a signal. Call once, before other threads exist.
void catchInterrupts();

bool isInterrupted();

}  // namespace sensorctl
