// The camera that the process owns: its channels, the scene in front of it, its clock, its faults, its log.
//
// Threads: every function may be called from any thread, unless said otherwise. Functions throw Refusal.
#pragma once

#include "apps/camerad/host/ChannelHost.h"
#include "apps/camerad/host/EventHub.h"
#include "simcam/Camera.h"

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace camerad {

struct HostSettings {
    int nWaitMilliseconds = 5000;    // for the worker of a channel at most
    int nResetMilliseconds = 60000;  // for a reset, a start or a stop at most
    int nLookMilliseconds = 200;     // between two looks at what the camera does by itself
};

// The clock as people see it.
struct ClockView {
    std::string strTime;          // "2026-11-21T22:40:05", the device's local time
    bool bSimulated = false;      // false: the machine's own time
    int nSpeed = 1;               // simulated seconds a second, 0 to 7200
    std::uint64_t nRevision = 0;  // grows each time that the clock is told
};

// How much the library says.
struct LevelView {
    int nLevel = 0;               // 0 to 8
    std::uint64_t nRevision = 0;  // grows each time that it is set
};

// Counts since the start, for /metrics. Maps never shrink.
struct HostCounters {
    struct Command {
        std::uint64_t nCalls = 0, nFailures = 0;
    };
    std::map<std::pair<u32, std::string>, Command> mapDriver;  // command and option
    std::map<int, Command> mapNotifications;                   // key
    std::map<std::string, std::uint64_t> mapSwitches;          // why: host, schedule, day-night, start, reset
    std::uint64_t nFlashWrites = 0;                            // files put in place, but those of accounts
    std::uint64_t nMessages = 0;                               // messages of the library
};

struct LogEntry {
    std::uint64_t nNumber = 0;  // from 1
    std::string strTime;        // device time
    std::string strKind;        // "driver", "video", "message"
    int nChannel = 0;           // from 1, 0 for a message
    u32 nCommand = 0;           // driver command or key
    std::string strOption;      // set, get, range, correct, status; empty
    int nResult = 0;
    std::string strText;  // one line for a person
};

class CameraHost {
public:
    // Starts every channel that the device root describes. Throws std::runtime_error when there is none. The camera and
    // the hub must outlive the host.
    static std::unique_ptr<CameraHost> start(simcam::Camera& p_objCamera, EventHub& p_objEvents,
                                             const HostSettings& p_stSettings);
    virtual ~CameraHost() = default;  // stops every channel

    // Before the end: every wait on the camera's clock returns at once, so that calls come back that it holds up.
    virtual void endWaits() = 0;

    virtual std::vector<int> channels() const = 0;     // numbers, ascending
    virtual ChannelHost& channel(int p_nChannel) = 0;  // Refusal (NotFound)
    virtual simcam::Camera& camera() = 0;

    // --- Scene, clock, faults: of the simulated camera ---
    virtual nlohmann::json scene() const = 0;  // as GET /api/v1/scene gives it
    // A JSON merge patch with the fields of scene(); all or nothing. Refusal (BadValue) says which field and why.
    virtual void changeScene(const nlohmann::json& p_objPatch, const Actor& p_stActor) = 0;
    virtual ClockView clock() const = 0;
    // p_strTime empty: from where it is.
    virtual void setClock(bool p_bSimulated, const std::string& p_strTime, int p_nSpeed, const Actor& p_stActor) = 0;
    virtual nlohmann::json faults() const = 0;  // {"faults": [...]}, as GET /api/v1/faults gives it
    virtual int addFault(const std::string& p_strText, const Actor& p_stActor) = 0;
    virtual void removeFault(int p_nId, const Actor& p_stActor) = 0;
    virtual void clearFaults(const Actor& p_stActor) = 0;
    // Controllers down, camera off and on, controllers up, as a power cut does; unsaved changes are lost.
    virtual void powerCycle(const Actor& p_stActor) = 0;

    // --- Log ---
    virtual std::vector<LogEntry> log(std::uint64_t p_nAfter, std::size_t p_nMost) const = 0;  // oldest first
    virtual void addMessage(const std::string& p_strLine) = 0;               // a line that the library printed
    virtual LevelView messageLevel() const = 0;                              // of the library
    virtual void setMessageLevel(int p_nLevel, const Actor& p_stActor) = 0;  // 0 to 8; kept in the sign file
    virtual HostCounters counters() const = 0;
};

}  // namespace camerad
