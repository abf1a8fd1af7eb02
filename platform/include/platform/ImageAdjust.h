/// @file
/// The image-adjust driver: one call, its options, records and error codes.
///
/// The sensor library imports ia_ioctrl_v2 and leaves it undefined; the camera's driver library defines it (here, the
/// simulated camera). Numbers and record layouts are frozen: they are the binary interface of the driver.
#pragma once

#include "platform/Types.h"

#include <cstddef>

/// @name Options: what to do with a command
/// @{
constexpr u32 IA_CMD_OPT_SET = 0;              ///< write the value or record that data points to
constexpr u32 IA_CMD_OPT_GET = 1;              ///< read the current value or record into data
constexpr u32 IA_CMD_OPT_GET_PARAM_RNAGE = 2;  ///< read the command's range, an ia_dynamic_params_attr_st
constexpr u32 IA_CMD_OPT_CORRECT_PARAM = 3;    ///< bring the value at data to the nearest legal one
constexpr u32 IA_CMD_OPT_GET_EXEC_STATUS = 4;  ///< read whether an earlier command has been carried out
/// @}

/// @name Commands with a name of their own
/// All others have the number of their parameter.
/// @{
constexpr u32 IA_CMD_DYNAMIC_PARAMS_CMDS_GET = 4112;  ///< get: ia_dynamic_params_cmds_st
constexpr u32 IA_CMD_UI_SHUTTER_RESET = 8231;         ///< set of 1: starts a reset of the shutter
constexpr u32 IA_CMD_UI_MIRROR = 2384;                ///< how the picture is mirrored
/// @}

/// @name Results
/// @{
constexpr int IA_OK = 0;                  ///< the command was taken
constexpr int IA_ERR_UNSUPPORTED = -1;    ///< no such command or option, or no such channel
constexpr int IA_ERR_NO_DATA = -2;        ///< data is null
constexpr int IA_ERR_HARDWARE = -3;       ///< the device did not answer
constexpr int IA_ERR_BUSY = -4;           ///< the lens is still moving
constexpr int IA_ERR_INVALID_VALUE = -5;  ///< the value is outside the legal range
/// @}

/// @name Execution status (IA_CMD_OPT_GET_EXEC_STATUS)
/// @{
constexpr int IA_EXEC_DONE = 0;     ///< carried out
constexpr int IA_EXEC_RUNNING = 1;  ///< still going on
/// @}

/// Entries of ia_dynamic_params_cmds_st::cmd_list.
constexpr int IA_DYNAMIC_CMDS_MAX = 16;
/// The commands whose range depends on the state of the device.
struct ia_dynamic_params_cmds_st {
    int cmd_cnt;                        ///< valid entries of cmd_list
    u32 cmd_list[IA_DYNAMIC_CMDS_MAX];  ///< the commands
};
static_assert(sizeof(ia_dynamic_params_cmds_st) == 68, "frozen driver record");

/// Entries of ia_dynamic_params_attr_st::item.
constexpr int IA_DYNAMIC_ITEMS_MAX = 64;
/// The range of one command now.
struct ia_dynamic_params_attr_st {
    int range_kind;   ///< 0: item holds the legal values; otherwise every value from min_val to max_val is legal
    int default_val;  ///< default value
    int min_val;      ///< first (lowest) legal value
    int max_val;      ///< last (highest) legal value
    int items_cnt;    ///< valid entries of item
    int item[IA_DYNAMIC_ITEMS_MAX];  ///< the legal values, when range_kind is 0
};
static_assert(sizeof(ia_dynamic_params_attr_st) == 276, "frozen driver record");
static_assert(offsetof(ia_dynamic_params_attr_st, item) == 20, "frozen driver record");

/// Commands 145, 146 and 154: the thresholds of the automatic day/night switch. Command 154 carries the sensitivity
/// alone, the other two carry both thresholds.
struct dn_thr_st {
    u32 d2n_thr;         ///< day to night
    u32 n2d_thr;         ///< night to day
    u32 dn_sensitivity;  ///< how readily to switch
};
static_assert(sizeof(dn_thr_st) == 12, "frozen driver record");

/// Commands 149 to 152: the times of the timed day/night switch.
struct dn_time_st {
    u32 d2n_hour;  ///< hour of the change to night, 0 to 23
    u32 d2n_min;   ///< its minute, 0 to 59
    u32 n2d_hour;  ///< hour of the change to day, 0 to 23
    u32 n2d_min;   ///< its minute, 0 to 59
};
static_assert(sizeof(dn_time_st) == 16, "frozen driver record");

/// Command 2816: a raw check of the sensor.
struct ia_sensor_check_st {
    int first;   ///< first argument of the check
    int second;  ///< second argument
    int third;   ///< third argument
    int result;  ///< filled by the driver
};
static_assert(sizeof(ia_sensor_check_st) == 16, "frozen driver record");

/// Carries one command to the driver of a channel.
///
/// What data points to:
///
/// | data | calls |
/// |---|---|
/// | a 32-bit value, aligned to its size | every command not named below |
/// | dn_thr_st, dn_time_st | set of 145, 146, 154 and of 149 to 152 (their get reads the command's own 32-bit value) |
/// | a text of 50 bytes | get of 2496 (module version); the driver writes at most 50 bytes with the terminator |
/// | one byte, 0 or 1 | get of 1606 (heater) |
/// | the records above | 4112, 2816 and every IA_CMD_OPT_GET_PARAM_RNAGE |
///
/// Threads: the driver is entered from several threads at once and serialises for itself. It blocks no longer than the
/// device needs to take the command; motors go on moving after the call.
/// @param channel  counted from 0
/// @param cmd      the command: as a rule the number of a parameter
/// @param opt      IA_CMD_OPT_SET to IA_CMD_OPT_GET_EXEC_STATUS
/// @param data     see above; the caller's
/// @return IA_OK, or an error code
extern "C" PLATFORM_API int ia_ioctrl_v2(int channel, u32 cmd, u32 opt, void* data);
