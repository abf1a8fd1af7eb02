// A request from outside to end the session: an interrupt from the keyboard or a termination signal.
#pragma once

namespace sensorctl {

// From now on SIGINT and SIGTERM ask for the end of the session instead of ending the process, and writing to a closed
// pipe is an error instead of a signal. Call once, before other threads exist. Throws std::system_error when the system
// refuses.
void catchInterrupts();

// The signal that asked for the end; 0 as long as none has.
int interruptSignal();

// Takes an interrupt from the keyboard as dealt with; a termination signal stays.
void forgetKeyboardInterrupt();

// Blocks until the descriptor has something to read, is at its end, or the end of the session has been asked for; false
// in the last case.
bool waitForInput(int p_nDescriptor);

}  // namespace sensorctl
