/// @file
/// Where the camera's file tree lies on this machine.
///
/// Every absolute path of the camera ("/mnt/mtd/...", "/hd1/...", "/tmp/...") is meant below one directory, the device
/// root. On a camera that is "/". On a desk it is the directory that the environment variable CAMERA_ROOT names when
/// the process first asks, or the one that setDeviceRoot gave. Messages always show the camera's own path.
///
/// The platform's own classes (QVFile, QVLogger, the parsers, sy_system) resolve for themselves: callers hand them the
/// camera's path. devicePath is for code that gives a path to a third-party library.
///
/// Threads: all three may be called from any thread. None blocks.
#pragma once

#include "platform/Types.h"

#include <string>

/// The clock and the device root: what the platform has besides the classes that carry the camera's own names.
namespace platform {

/// The device root.
/// @return the directory, without a trailing slash; empty when it is "/"
PLATFORM_API std::string deviceRoot();

/// Replaces the device root from now on.
/// @param p_strRoot  a directory, which need not exist yet; an empty text or "/" stands for "/"
PLATFORM_API void setDeviceRoot(const std::string& p_strRoot);

/// Where a file of the camera lies on this machine.
/// @param p_strCameraPath  an absolute camera path
/// @return the path on this machine; a relative or empty path comes back unchanged
PLATFORM_API std::string devicePath(const std::string& p_strCameraPath);

}  // namespace platform
