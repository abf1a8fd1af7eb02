// The numbers of the parameters, by name: the vocabulary of the user interface.
//
// Frozen: they stand in parameter files, style documents and hosts. The names keep their letters.
#pragma once

#include "platform/Types.h"

#define ROW(name, number, command, handler) name = number,
#define STORED_ROW(name, number) name = number,
#define DRIVER_NAMED_ROW(name, number, command, handler)

enum SensorKey : u32 {
#include "sensor/KeyCmdTable.def"
    // The intelligent-light twins that stand in parameter sets only; they have no row in the table.
    KEY_IR_MANUAL_STRG_MEDIUM_INTELL = 201,
    KEY_IR_MANUAL_STRG_FAR_INTELL = 202,
    KEY_WHITE_MANUAL_STRG_MEDIUM_INTELL = 204,
    KEY_WHITE_MANUAL_STRG_FAR_INTELL = 205,
};

#undef ROW
#undef STORED_ROW
#undef DRIVER_NAMED_ROW
