// Where the camera's file tree lies on this machine.
//
// Every absolute path of the camera ("/mnt/mtd/...", "/hd1/...", "/tmp/...") is meant below one directory, the device
// root. On a camera that is "/". On a desk it is the directory that the environment variable CAMERA_ROOT names when the
// process first asks, or the one that setDeviceRoot gave. Messages always show the camera's own path.
//
// The platform's own classes (QVFile, QVLogger, the parsers, sy_system) resolve for themselves: callers hand them the
// camera's path. devicePath is for code that gives a path to a third-party library.
//
// Threads: all three may be called from any thread. None blocks.
#pragma once

#include "platform/Types.h"

#include <string>

namespace platform {

// The directory, without a trailing slash; empty when it is "/".
PLATFORM_API std::string deviceRoot();

// Replaces the directory from now on. An empty text or "/" stands for "/". The directory need not exist yet.
PLATFORM_API void setDeviceRoot(const std::string& p_strRoot);

// The path on this machine of an absolute camera path; a relative or empty path comes back unchanged.
PLATFORM_API std::string devicePath(const std::string& p_strCameraPath);

}  // namespace platform
