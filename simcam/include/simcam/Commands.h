// The commands that the simulated driver knows, with their ranges, and the meaning of the choices that are numbers.
//
// The same table, in words, stands in simcam/README.md.
#pragma once

#include "platform/Types.h"
#include "simcam/Export.h"

#include <cstddef>

namespace simcam {

enum class CommandKind {
    Value,     // a 32-bit value: set, get, range, correct, status
    Dynamic,   // a value whose range depends on the state of the device (in the list of 4112)
    Shared,    // a value that is set through a record with its companions: 145, 146, 149 to 152, 154
    Action,    // a set starts something; a get answers 0; range, correct, status as a value
    ReadOnly,  // a 32-bit value that only the device changes: get, range, status
    Record,    // a text, a byte or a record: 1606, 2496, 4112 (get only) and 2816 (get and set)
};

struct CommandRow {
    u32 command;
    CommandKind kind;
    int min;           // lowest legal value
    int max;           // highest legal value
    int powerUp;       // value after power-up
    const char* name;  // a few words for a person
};

// All commands in ascending order.
SIMCAM_API const CommandRow* commandTable(std::size_t& p_nCount);
// The row of a command, null when there is none.
SIMCAM_API const CommandRow* findCommand(u32 p_nCommand);

// Commands 49 and 50: the choices of the shutter. Choice i is an exposure of 1/shutterDenominator(i) seconds, from choice 0
// (1 second) to choice 28 (1/100000); choice 18 is 1/1000. 0 for a choice that does not exist.
constexpr int kShutterChoices = 29;
SIMCAM_API int shutterDenominator(int p_nChoice);

// Command 1537: the choices of the nearest distance that auto focus goes to, in centimetres; 0 for a choice that does not
// exist.
constexpr int kNearLimitChoices = 11;
SIMCAM_API int nearLimitCentimetres(int p_nChoice);

// Command 82: the iris has 14 stops from 256 (closed) to 25600 (open), in 1/256 percent of the area of the open iris.
constexpr int kIrisStops = 14;
constexpr int kIrisClosed = 256;
constexpr int kIrisOpen = 25600;
constexpr int kIrisEndStop = 0x100000;  // a set to this opens the iris as far as the lens allows
SIMCAM_API int irisStop(int p_nStop);   // 0 for a stop that does not exist

// Command 1568: the zoom motor's positions.
constexpr int kZoomWide = 16384;  // magnification 1
constexpr int kZoomTele = 31424;  // magnification 16
// 1.0 to 16.0; positions outside are taken to the nearer end.
SIMCAM_API double magnification(int p_nZoomPosition);

// Command 1552: the focus motor's positions, 0 (beyond infinity) to 10000 (nearest).
constexpr int kFocusFar = 0;
constexpr int kFocusNear = 10000;
// The position at which a subject at this distance is sharp.
SIMCAM_API int sharpFocusPosition(double p_dMagnification, double p_dMetres);
// The nearest distance in metres that the lens can focus on.
SIMCAM_API double nearestFocus(double p_dMagnification);

}  // namespace simcam
