// One channel of the camera: its controller, and the one thread that works it.
//
// Every call on the controller runs on the channel's own worker thread, one after the other, so that a channel that takes
// its time holds up nobody but its own callers, and these for a bounded time: a call that has not begun when its time is
// over is taken back and refused (Busy, with a time to try again); one that has begun and takes longer goes on without its
// caller, and the caller is told so. While a reset is going on, every other call is refused at once (Busy).
//
// The host remembers what it last knew of every scheme, publishes what changes (EventHub) and who changed it, and looks a
// few times a second at what the camera does by itself: scheme switches, day and night, a moving lens.
//
// Threads: every function may be called from any thread but the worker. Functions block as said above and throw Refusal.
#pragma once

#include "apps/camerad/host/Refusal.h"
#include "apps/camerad/host/Style.h"

#include <nlohmann/json.hpp>

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace camerad {

// Who asked.
struct Actor {
    std::string strName;    // of the account, "camera" for what it does by itself
    std::string strOrigin;  // the client's own mark, handed back in events; may be empty
};

struct ParameterValue {
    u32 nKey = 0;
    std::string strName;
    int nValue = 0;
    std::optional<int> standard;  // default of the style document
    std::optional<int> stored;    // what the scheme's file holds; absent for what no scheme holds
    bool bLost = false;           // the scheme holds it, and its file does not (any more)
    bool isUnsaved() const { return bLost || (stored && *stored != nValue); }
};

struct ParameterValues {
    int nScheme = -1;             // that they belong to
    std::uint64_t nRevision = 0;  // grows with every change of the channel
    std::vector<ParameterValue> vecValues;
};

struct Change {
    u32 nKey = 0;
    int nValue = 0;
};

struct ChangeResult {
    u32 nKey = 0;
    int nValue = 0;  // in force afterwards; meaningful when there is no refusal
    std::optional<Refusal> refusal;
    // Of the channel at that moment; what it has been changed to since is not in the value.
    int nScheme = -1;
    std::uint64_t nRevision = 0;
};

// A scheme's window in the hours and minutes that its records hold.
struct Window {
    int nStartHour = 0, nStartMinute = 0, nEndHour = 24, nEndMinute = 0;
    // What flush would say: 0, 505, 506, 507.
    int check() const;
    // The sentence for a person; empty when it can be stored. p_bGaps: see SchemesView.
    std::string objection(bool p_bGaps) const;
};

struct SchemeView {
    int nIndex = 0;
    std::string strName;  // as the user calls it
    Window stWindow;
    std::vector<u32> vecUnsaved;                  // keys whose value is not the stored one
    std::vector<std::pair<int, int>> vecInForce;  // minutes of the day in which the schedule takes this scheme
};

struct SchemesView {
    std::uint64_t nRevision = 0;  // of the channel
    int nCurrent = -1;
    int nFactory = 0;  // number of the factory scheme, which is not in the list
    bool bAutomatic = false;
    std::string strFollow;  // "nothing", "schedule", "day-night"
    // Outside of every window day and night decide, between the schemes 0 and 1; otherwise scheme 0 holds there.
    bool bGaps = false;
    std::vector<SchemeView> vecSchemes;
};

struct RangeView {
    u32 nKey = 0;  // 49, 50, 82 or 1537
    int nDefault = 0;
    std::vector<int> vecValues;
};

struct ShutterView {
    std::optional<int> place;  // in the list; absent when the driver's value is not in it
    std::vector<int> vecValues;
};

struct LensView {
    int nZoom = 0, nZoomRatio = 0;  // position of the motor; thousandths
    int nFocus = 0, nFocusMode = 0;
    int nIris = 0;
    unsigned nSharpness = 0;
    bool bMoving = false;
};

struct SaveResult {
    std::vector<int> vecSchemes;  // that were stored, or read back
    struct Failure {
        int nScheme;
        int nCode;  // 505, 506, 507; 0 when the medium failed, or another value than the scheme's was read back
        std::string strDetail;
    };
    std::vector<Failure> vecFailures;
};

struct ChannelView {
    int nChannel = 0;
    bool bThermal = false;
    bool bReady = false;     // the controller is initialised
    std::string strProblem;  // why it is not ready, a sentence; empty when it is
    unsigned nSensorType = 0;
    std::string strVersion;  // of the camera module
    bool bNight = false;
    std::string strBusyWith;  // the operation that is going on, empty when none
};

class ChannelHost {
public:
    virtual ~ChannelHost() = default;

    virtual int number() const = 0;  // from 1
    virtual bool isThermal() const = 0;
    virtual ChannelView view() = 0;  // never waits for the worker

    // --- Parameters ---
    // Every recorded parameter of the current scheme. Never waits for the worker: what is known.
    virtual ParameterValues values() = 0;
    // One parameter, recorded or not; asks the controller.
    virtual ParameterValue value(u32 p_nKey) = 0;
    // In this order, each for itself: one refusal does not end the others. p_bRecord: see ISensorController::setParameter.
    // Only what the style document offers; 8000 to 8004 are never sent, and refused without p_bRecord.
    virtual std::vector<ChangeResult> change(const std::vector<Change>& p_vecChanges, bool p_bRecord,
                                             const Actor& p_stActor) = 0;
    virtual ParameterValue setToDefault(u32 p_nKey, const Actor& p_stActor) = 0;
    virtual ParameterValue restore(u32 p_nKey, const Actor& p_stActor) = 0;
    virtual void restoreFocusAndExposure(const Actor& p_stActor) = 0;
    virtual std::shared_ptr<const Style> style() = 0;  // with the ranges as they were last seen
    virtual std::string styleDocument() = 0;           // asks the library each time
    virtual std::uint64_t revision() const = 0;

    // --- Schemes ---
    virtual SchemesView schemes() = 0;  // never waits for the worker
    // Refused (Refused) when the camera did not take a value of the scheme; the scheme is current all the same.
    virtual void setScheme(int p_nScheme, const Actor& p_stActor) = 0;  // the factory scheme's number is allowed
    virtual void setAutomatic(bool p_bAutomatic, const Actor& p_stActor) = 0;
    virtual void setFollow(const std::string& p_strFollow, const Actor& p_stActor) = 0;
    // Refused (Conflict) when it could not be stored.
    virtual void setWindow(int p_nScheme, const Window& p_stWindow, const Actor& p_stActor) = 0;
    virtual void setSchemeName(int p_nScheme, const std::string& p_strName, const Actor& p_stActor) = 0;

    // --- Keeping ---
    // A scheme that is not current is made current for a moment, with automatic switching off: the driver sees both
    // switches. The same goes for setWindow and setFollow.
    virtual SaveResult save(const Actor& p_stActor) = 0;     // every scheme with unsaved changes
    virtual SaveResult discard(const Actor& p_stActor) = 0;  // likewise
    virtual void reset(const Actor& p_stActor) = 0;

    // --- Driver ---
    virtual std::vector<RangeView> ranges() = 0;
    virtual ShutterView shutter() = 0;
    virtual void setShutter(int p_nPlace, const Actor& p_stActor) = 0;
    virtual void stepShutter(int p_nStep, const Actor& p_stActor) = 0;  // +1 or -1
    virtual LensView lens() = 0;
    // zoom-in, zoom-out, focus-near, focus-far, auto-focus, iris-open, iris-close, lens-reset
    virtual void lensAction(const std::string& p_strAction, const Actor& p_stActor) = 0;
    struct LensTarget {
        std::optional<int> zoom, focus, iris, focusMode;
    };
    virtual void moveLens(const LensTarget& p_stTarget, const Actor& p_stActor) = 0;
    virtual bool isNight() = 0;  // asks the driver
    virtual void setNight(bool p_bNight, const Actor& p_stActor) = 0;
    virtual bool isRunning(u32 p_nCommand) = 0;  // execution status
    // The driver's result; io as ISensorController::SensorCheck.
    virtual int sensorCheck(std::string& p_strText, const Actor& p_stActor) = 0;
};

}  // namespace camerad
