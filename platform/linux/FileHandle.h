// What the file classes share: calls of the system that a signal does not cut short.
#pragma once

#include <sys/types.h>

#include <string>

namespace platform {

// Moves all of it, or as much as goes; returns how much, or -1 when an error came before the first byte.
ssize_t readFully(int p_nHandle, void* p_pBuffer, std::size_t p_nCount);
ssize_t writeFully(int p_nHandle, const void* p_pBuffer, std::size_t p_nCount);

// Takes the advisory lock of an open file, waiting for it.
bool lockWhole(int p_nHandle);

// True when the open file is the one that stands under this name now, and a regular one. Somebody who waited for the
// lock of a file asks this afterwards: the file may have been renamed or removed meanwhile.
bool standsUnder(int p_nHandle, const std::string& p_strPath);

// Opens, creating it if need be, and locks the regular file that stands under this name at that moment. -1 on failure.
int openLocked(const std::string& p_strPath, int p_nFlags, mode_t p_nMode);

// Flushes an open file to the medium.
bool flush(int p_nHandle);

// Flushes the directory that holds this path.
bool flushDirectoryOf(const std::string& p_strPath);

}  // namespace platform
