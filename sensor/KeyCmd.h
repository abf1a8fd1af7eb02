/// @file
/// One row of the key-command table: what carries a parameter to the driver.
#pragma once

#include "platform/Types.h"

class ISensorController;

/// What carries a parameter to the driver: takes the driver command, the driver option and the address of the 32-bit
/// value or record; 0 on success.
using KeyCmdHandler = int (ISensorController::*)(unsigned int, unsigned int, void*);

/// One row of the key-command table.
struct keycmd {
    u32 key;                   ///< the parameter
    u32 ia_cmd;                ///< the driver command; 0 where the parameter has none
    KeyCmdHandler pfnHandler;  ///< null where the parameter never reaches the driver
    char szKeyName[32];        ///< for log lines; longer names are cut to 31 characters
    char szHandlerName[64];    ///< for log lines; "NULL" without a handler
};
