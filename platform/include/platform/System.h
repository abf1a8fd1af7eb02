/// @file
/// Running a shell command on the camera.
#pragma once

#include "platform/Types.h"

/// Runs a command with /bin/sh in a process group of its own, with standard input from /dev/null, and blocks until the
/// shell has ended or the time is up; in the second case the whole group is killed. Absolute camera paths in the
/// command ("/mnt/...", "/hd1/...", "/tmp/...") mean the device root (DeviceRoot.h), which the command also finds in
/// CAMERA_ROOT. What the shell left running in the background when it ended in time goes on. Any thread may call it.
/// @param p_szCommand  the command line
/// @param p_nSeconds   the time-out in seconds of real time; 0 or less means no limit
/// @return the exit status of the shell (0 to 255), 128 plus the signal when a signal ended it, or -1 when the command
///         is null, could not be started or was killed at its time-out
PLATFORM_API int sy_system(const char* p_szCommand, int p_nSeconds);
