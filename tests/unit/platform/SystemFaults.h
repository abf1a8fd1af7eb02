// Calls of the system that fail when a test says so.
//
// This test program defines write, fsync, rename and flock itself, so the platform library calls these in place of the
// C library's. They do the real thing, write it down, and fail as planned.
#pragma once

#include <string>
#include <vector>

namespace systemFaults {

// The next call of this name, after p_nSkipped others, fails with the error number.
void fail(const std::string& p_strCall, int p_nError, int p_nSkipped = 0);

// The next write moves no more than this many bytes and succeeds.
void cutWrite(std::size_t p_nBytes);

// The calls since the last clear that concerned regular files and directories, in order: "write", "fsync file",
// "fsync directory", "rename", "flock"; " failed" follows when the plan was carried out.
std::vector<std::string> calls();

// Forgets the calls and what has not been carried out of the plan.
void clear();

}  // namespace systemFaults
