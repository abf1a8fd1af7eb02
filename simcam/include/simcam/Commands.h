/// @file
/// The commands that the simulated driver knows, with their ranges, and the meaning of the choices that are numbers.
///
/// The same table, in words, stands in simcam/README.md.
#pragma once

#include "platform/Types.h"
#include "simcam/Export.h"

#include <cstddef>

namespace simcam {

/// What a command carries.
enum class CommandKind {
    Value,     ///< a 32-bit value: set, get, range, correct, status
    Dynamic,   ///< a value whose range depends on the state of the device (in the list of 4112)
    Shared,    ///< a value that is set through a record with its companions: 145, 146, 149 to 152, 154
    Action,    ///< a set starts something; a get answers 0; range, correct, status as a value
    ReadOnly,  ///< a 32-bit value that only the device changes: get, range, status
    Record,    ///< a text, a byte or a record: 1606, 2496, 4112 (get only) and 2816 (get and set)
};

/// One command.
struct CommandRow {
    u32 command;       ///< its number
    CommandKind kind;  ///< what it carries
    int min;           ///< lowest legal value
    int max;           ///< highest legal value
    int powerUp;       ///< value after power-up
    const char* name;  ///< a few words for a person
};

/// All commands in ascending order.
/// @param[out] p_nCount  how many
/// @return the first one
SIMCAM_API const CommandRow* commandTable(std::size_t& p_nCount);
/// The row of a command.
/// @param p_nCommand  its number
/// @return null when there is none
SIMCAM_API const CommandRow* findCommand(u32 p_nCommand);

/// Commands 49 and 50: the choices of the shutter. Choice i is an exposure of 1/shutterDenominator(i) seconds, from
/// choice 0 (1 second) to choice 28 (1/100000); choice 18 is 1/1000.
constexpr int kShutterChoices = 29;
/// The exposure of a choice of commands 49 and 50.
/// @param p_nChoice  0 to kShutterChoices - 1
/// @return the denominator of the exposure in seconds; 0 for a choice that does not exist
SIMCAM_API int shutterDenominator(int p_nChoice);

/// Command 1537: the choices of the nearest distance that auto focus goes to.
constexpr int kNearLimitChoices = 11;
/// The distance of a choice of command 1537.
/// @param p_nChoice  0 to kNearLimitChoices - 1
/// @return centimetres; 0 for a choice that does not exist
SIMCAM_API int nearLimitCentimetres(int p_nChoice);

/// @name Command 82
/// The iris has 14 stops from 256 (closed) to 25600 (open), in 1/256 percent of the area of the open iris.
/// @{
constexpr int kIrisStops = 14;          ///< number of stops
constexpr int kIrisClosed = 256;        ///< the closed iris
constexpr int kIrisOpen = 25600;        ///< the open iris
constexpr int kIrisEndStop = 0x100000;  ///< a set to this opens the iris as far as the lens allows
/// The position of a stop.
/// @param p_nStop  0 to kIrisStops - 1
/// @return the value of command 82; 0 for a stop that does not exist
SIMCAM_API int irisStop(int p_nStop);
/// @}

/// @name Command 1568: the zoom motor's positions
/// @{
constexpr int kZoomWide = 16384;  ///< magnification 1
constexpr int kZoomTele = 31424;  ///< magnification 16
/// @}

/// The magnification of a zoom position.
/// @param p_nZoomPosition  value of command 1568; one outside kZoomWide to kZoomTele is taken to the nearer end
/// @return 1.0 to 16.0
SIMCAM_API double magnification(int p_nZoomPosition);

/// @name Command 1552: the focus motor's positions
/// @{
constexpr int kFocusFar = 0;       ///< beyond infinity
constexpr int kFocusNear = 10000;  ///< nearest
/// @}

/// The focus position at which a subject is sharp.
/// @param p_dMagnification  1.0 to 16.0
/// @param p_dMetres         distance of the subject in metres
/// @return value of command 1552
SIMCAM_API int sharpFocusPosition(double p_dMagnification, double p_dMetres);
/// The nearest distance that the lens can focus on.
/// @param p_dMagnification  1.0 to 16.0
/// @return metres
SIMCAM_API double nearestFocus(double p_dMagnification);

}  // namespace simcam
