// Whether the beaway function is offered: one flag for all channels of the process. Meant: the last channel whose init
// sets it decides for all.
//
// Threads: any; a relaxed atomic word.
#pragma once

#include "sensor/diag/Export.h"

#include <atomic>

SENSORDLL_API extern std::atomic<bool> g_bShoWBeawayFalg;  // true at the start

SENSORDLL_API void setshowBeawayFalg(bool p_bShow);
SENSORDLL_API bool getshowBeawayFalg();
