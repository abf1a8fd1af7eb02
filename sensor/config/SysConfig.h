/// @file
/// The configuration of one channel: plain records without behaviour. initSysConf fills it, uinitSysConf releases what
/// it owns.
///
/// Used by sensor/style too: the style merge selects its variants from a ModuleConfig.
#pragma once

#include "platform/Types.h"

/// A copy of the channel's module configuration. Texts are zero-terminated and cut to their field.
struct ModuleConfig {
    u32 nModuleId;           ///< kind of sensor
    char szLabel[32];        ///< "xxx"
    char szShortLabel[10];   ///< "xxx"
    char szParameters[256];  ///< free text for the driver
    char szDetail[512];      ///< a run of groups "(" name "=" value ")", for example "(max_scheme=4)(isInfrared=1)"
};

/// One language of the user interface, from the documents that the host gave. The record owns the texts.
struct LanguageFileEntry {
    int nLanguageId;       ///< the host's number of the language
    char reserved[32];     ///< not interpreted
    char* szLanguageFile;  ///< from malloc, owned, may be null
    char* szCommonFile;    ///< from malloc, owned, may be null
};

/// The configuration of one channel.
struct SysConfig {
    ModuleConfig moduleConfig{};                  ///< what the host's module configuration says
    u32 nSchemeSum = 0;                           ///< number of user schemes
    u32 nLanguageSum = 0;                         ///< entries of pLanguageFiles
    LanguageFileEntry* pLanguageFiles = nullptr;  ///< not owned; the texts of its entries are
    char* szUIStyle = nullptr;                    ///< from malloc, owned: the merged style document, zero-terminated
    u32 nDeviceType = 0;                          ///< a number of DeviceType
};
