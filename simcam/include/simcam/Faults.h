/// @file
/// Faults as data: which call goes wrong, how, and how often.
///
/// As text, a fault is one line of fields "name=value" separated by blanks, in any order:
///
///     cmd=2369 opt=set nth=2 result=-5 times=1 delay=0 silent=0
///     key=2384 ch=1 result=5
///
///     cmd=N|any   a call of the driver with this command     (one of cmd and key must be given)
///     key=N|any   a notification of the video module with this key
///     ch=N|any    the channel, from 0 for the driver, from 1 for the video module; any when absent
///     opt=set|get|range|correct|status|any   the option of the driver call, any when absent; not for a notification
///     nth=N       acts from the N-th matching call on (1: the first), 1 when absent
///     times=N     how many calls it acts on, -1 for always; -1 when absent
///     result=N    the call does nothing and returns this, when it is not 0; 0 when absent
///     delay=N     the call first waits this many microseconds of the platform's clock; 0 when absent
///     silent=0|1  1: the call does nothing and returns 0; 0 when absent
///
/// A fault must do something: result, delay or silent must be there. Numbers may be hexadecimal with 0x.
#pragma once

#include "platform/Types.h"
#include "simcam/Export.h"

#include <mutex>
#include <string>
#include <vector>

namespace simcam {

constexpr int kAny = -1;  ///< every one, of a fault's channel and option

/// One fault. The comment of Faults.h tells what the fields mean.
struct Fault {
    /// Whose calls it acts on.
    enum class Target {
        Driver,       ///< calls of ia_ioctrl_v2
        Notification  ///< notifications of the video module
    };
    Target target = Target::Driver;  ///< whose calls it acts on
    int channel = kAny;              ///< from 0 for the driver, from 1 for the video module
    bool anyCommand = false;         ///< true: `command` does not matter
    u32 command = 0;                 ///< driver command, or key of the notification
    int option = kAny;               ///< IA_CMD_OPT_...; only for the driver
    int nth = 1;                     ///< from 1
    int times = -1;                  ///< -1: always, otherwise at least 1
    int result = 0;                  ///< returned when not 0
    INT64 delayMicroseconds = 0;     ///< at most one hour
    bool silent = false;             ///< does nothing and returns 0
};

/// Reads a fault from its text.
/// @param p_strText         one line
/// @param[out] p_stFault    the fault; left as it was on failure
/// @param[out] p_strError   on failure, what is wrong: one sentence for a person
/// @return true on success
SIMCAM_API bool parseFault(const std::string& p_strText, Fault& p_stFault, std::string& p_strError);

/// The text of a fault.
/// @param p_stFault  the fault
/// @return one line with every field; parseFault reads it back
SIMCAM_API std::string toText(const Fault& p_stFault);

/// The faults of one camera.
///
/// Each call counts for every fault that it matches. Of those that are due, the one added first acts; the others have
/// seen the call, but keep what is left of their `times`.
///
/// Threads: any. Not copyable.
class SIMCAM_API FaultList {
public:
    /// A fault of the list, and what became of it.
    struct Entry {
        int id = 0;       ///< from 1, never used again
        Fault fault;      ///< the fault
        int matched = 0;  ///< calls that matched so far
        int acted = 0;    ///< calls that it acted on
    };

    /// A list without faults.
    FaultList() = default;
    FaultList(const FaultList&) = delete;
    FaultList& operator=(const FaultList&) = delete;

    /// Adds a fault.
    /// @param p_stFault  the fault
    /// @return the new fault's id
    int add(const Fault& p_stFault);
    /// Takes a fault away.
    /// @param p_nId  its id
    /// @return false when there is none
    bool remove(int p_nId);
    /// Takes all faults away.
    void clear();
    /// All faults in the order in which they were added.
    /// @return a copy
    std::vector<Entry> list() const;

    /// For the driver and the video module: counts a call and finds the fault that acts on it.
    /// @param p_eTarget        whose call
    /// @param p_nChannel       from 0 for the driver, from 1 for the video module
    /// @param p_nCommand       driver command, or key of the notification
    /// @param p_nOption        IA_CMD_OPT_..., kAny for a notification
    /// @param[out] p_stFault   the fault that acts; untouched when none does
    /// @return its id, 0 when none acts
    int onCall(Fault::Target p_eTarget, int p_nChannel, u32 p_nCommand, int p_nOption, Fault& p_stFault);

private:
    mutable std::mutex m_mutex;  // guards everything below
    std::vector<Entry> m_vecEntries;
    int m_nLastId = 0;
};

}  // namespace simcam
