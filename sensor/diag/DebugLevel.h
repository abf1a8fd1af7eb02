// How much the library says, and whether a failed assertion stops the process.
//
// Both words are process-wide and follow the sign file "/mnt/mtd/sign/Debug.sign": line 1 the level, line 2 the assertion
// switch. Threads: any; the words are relaxed atomics, so a reader sees an old or a new value, never a torn one.
#pragma once

#include "sensor/diag/Export.h"

#include <atomic>

// The level: below 0 silent, 0 and above assertions (1 at the start), 4 and above warnings too, 6 and above errors and
// debug traces, 7 and above dumps of whole documents.
SENSORDLL_API extern std::atomic<int> g_nDebugLevel;

// When true, a failed assertion aborts the process. False at the start.
SENSORDLL_API extern std::atomic<bool> g_bEnAssert;

static_assert(sizeof(std::atomic<int>) == 4 && sizeof(std::atomic<bool>) == 1, "plain words in memory");

// Refreshes both words from the sign file. Every message does this first, so that an edit of the file takes effect at
// once; nothing is remembered in between. Without the file: level 1, no abort. With a file that cannot be opened, both
// words stay as they are. An empty first line means level 1, an empty or missing second line no abort; texts are read as
// leading decimal numbers. Blocks for the file access.
SENSORDLL_API void updateDebugLevel();
