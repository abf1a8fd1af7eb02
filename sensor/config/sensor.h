// Builds and releases the configuration of a channel.
#pragma once

#include "platform/ModuleConfigure.h"
#include "sensor/config/SysConfig.h"
#include "sensor/diag/Export.h"

// The most user schemes that a module configuration may ask for.
constexpr int kMaxSchemeSum = 32;

// Fills the record for a channel (from 1): copies the module configuration, reads the number of schemes and the device
// type, chooses the style documents of the device and merges them. What the record owned before is not released. Always
// QVS_SUCCESS: failures are reported and leave their part empty. Blocks for file access; two calls for one channel must
// not run at the same time.
SENSORDLL_API int initSysConf(int p_nChannelID, const ModuleConfigure& p_objModuleConfigure, SysConfig* p_stSysConf);

// Frees the texts of the language table. The table keeps their addresses; it must be filled anew before it is read.
void freeLanguageTexts(const SysConfig& p_stSysConf);

// Releases what the record owns: the style text and the texts of the language table (not the table itself). The pointers
// keep their values; the record must be filled anew before it is released again.
SENSORDLL_API void uinitSysConf(SysConfig* p_stSysConf);
