// The host of one channel: its controller, its worker, and what is known of it.
//
// Two copies of what is known: m_stNow belongs to the worker and changes while it works; m_stShown is what everybody else
// sees. commit() makes the one the other and tells the listeners what differs.
#pragma once

#include "apps/camerad/host/CameraHost.h"
#include "apps/camerad/host/ChannelHost.h"
#include "apps/camerad/host/EventHub.h"
#include "apps/camerad/host/Settings.h"
#include "apps/camerad/host/Worker.h"
#include "platform/ModuleConfigure.h"
#include "sensor/ISensorController.h"
#include "simcam/Camera.h"

#include <atomic>
#include <chrono>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace camerad {

// What a channel is, from the files of the camera.
struct ChannelDescription {
    int nNumber = 1;
    bool bThermal = false;
    bool bGaps = false;  // outside of every window day and night decide, as plate recognition has it
    int nSchemes = 4;    // of the user; the factory scheme has this number
    ModuleConfigure objModule;
};

// What a channel needs of its camera. Functions may be called from any thread and do not block.
struct ChannelContext {
    simcam::Camera& objCamera;
    EventHub& objEvents;
    Settings& objSettings;
    HostSettings stSettings;
    // One controller is initialised at a time: one that finds no version file deletes the stored files of all channels.
    std::mutex& objInit;
    std::function<void(const std::string&)> fnMessage;   // a line for the log
    std::function<void(const std::string&)> fnSwitched;  // why
    std::function<void(std::uint64_t)> fnWritten;        // so many files were written to flash
    std::function<void(int)> fnReset;                    // this channel was reset: the stored files of all are gone
};

class Channel : public ChannelHost {
public:
    Channel(ChannelContext p_stContext, ChannelDescription p_stDescription);
    ~Channel() override;

    // --- For the camera that it is of ---
    Worker::Ticket goDown(const Actor& p_stActor);
    Worker::Ticket comeUp(const Actor& p_stActor);
    void readStoredAgain();  // at the next look; does not wait
    void stopWorking();      // stops the controller and the worker, once a job that is being done has ended
    using TimePoint = Worker::Clock::time_point;

    int number() const override { return m_stDescription.nNumber; }
    bool isThermal() const override { return m_stDescription.bThermal; }
    ChannelView view() override;

    ParameterValues values() override;
    ParameterValue value(u32 p_nKey) override;
    std::vector<ChangeResult> change(const std::vector<Change>& p_vecChanges, bool p_bRecord,
                                     const Actor& p_stActor) override;
    ParameterValue setToDefault(u32 p_nKey, const Actor& p_stActor) override;
    ParameterValue restore(u32 p_nKey, const Actor& p_stActor) override;
    void restoreFocusAndExposure(const Actor& p_stActor) override;
    std::shared_ptr<const Style> style() override;
    std::string styleDocument() override;
    std::uint64_t revision() const override;

    SchemesView schemes() override;
    void setScheme(int p_nScheme, const Actor& p_stActor) override;
    void setAutomatic(bool p_bAutomatic, const Actor& p_stActor) override;
    void setFollow(const std::string& p_strFollow, const Actor& p_stActor) override;
    void setWindow(int p_nScheme, const Window& p_stWindow, const Actor& p_stActor) override;
    void setSchemeName(int p_nScheme, const std::string& p_strName, const Actor& p_stActor) override;

    SaveResult save(const Actor& p_stActor) override;
    SaveResult discard(const Actor& p_stActor) override;
    void reset(const Actor& p_stActor) override;

    std::vector<RangeView> ranges() override;
    ShutterView shutter() override;
    void setShutter(int p_nPlace, const Actor& p_stActor) override;
    void stepShutter(int p_nStep, const Actor& p_stActor) override;
    LensView lens() override;
    void lensAction(const std::string& p_strAction, const Actor& p_stActor) override;
    void moveLens(const LensTarget& p_stTarget, const Actor& p_stActor) override;
    bool isNight() override;
    void setNight(bool p_bNight, const Actor& p_stActor) override;
    bool isRunning(u32 p_nCommand) override;
    int sensorCheck(std::string& p_strText, const Actor& p_stActor) override;

private:
    // One scheme; the lists have the places of Known::pKeys.
    struct Scheme {
        std::vector<int> vecValues;
        std::vector<std::optional<int>> vecStored;
        bool bKept = true;  // false: the factory scheme, which has no file
    };
    struct Known {
        bool bReady = false;
        std::string strProblem;
        unsigned nSensorType = 0;
        std::string strVersion;
        bool bNight = false;
        std::shared_ptr<const std::vector<u32>> pKeys = std::make_shared<const std::vector<u32>>();
        std::shared_ptr<const Style> pStyle = std::make_shared<const Style>();
        std::vector<Scheme> vecSchemes;
        int nScheme = -1;
        int nFollow = 0;  // KEY_SCHEME_MODE as the controller goes by it
        ChannelSettings stSettings;
        std::vector<RangeView> vecRanges;
        std::map<u32, int> mapSent;  // what no scheme holds, as it was last set
        std::uint64_t nRevision = 0;
    };

    // --- From any thread ---
    TimePoint untilSoon() const;
    TimePoint untilLater() const;
    // Does the function on the worker and hands its result back. It must own what it touches.
    template <typename Result>
    Result ask(std::function<Result()> p_fnWork);
    void act(std::function<void()> p_fnWork);
    Known shown() const;
    Known shownReady() const;
    [[noreturn]] void refuseNotReady(const Known& p_stKnown) const;
    SchemesView schemesOf(const Known& p_stKnown) const;
    ParameterValue valueOf(const Known& p_stKnown, const Scheme& p_stScheme, std::size_t p_nPlace) const;
    bool isUserScheme(int p_nScheme) const { return p_nScheme >= 0 && p_nScheme < m_stDescription.nSchemes; }
    void requireUserScheme(int p_nScheme) const;
    void tellBusy(const std::string& p_strOperation);

    // --- On the worker ---
    void bringUp(const Actor& p_stActor, const std::string& p_strWhy);
    void takeUp();
    void applyStartingScheme();
    void bringDown();
    std::vector<std::string> storedFiles() const;
    void carryOutReset(const Actor& p_stActor);
    void look();
    void lookAtLens();
    bool noticeSwitch();  // true when the camera has switched by itself
    void tellSwitch();    // notices it, and stored files that are others now, and tells
    std::string whyByItself() const;
    // The scheme that the schedule takes at this minute; none where day and night decide.
    std::optional<int> scheduledNow() const;
    void readValues();
    void readStored(int p_nScheme);
    void readStyle();
    bool readRanges();  // true when they differ from what was known
    bool readNight();
    // Reads again what an operation may have changed, and commits.
    void conclude(const Actor& p_stActor, const std::string& p_strWhy = "host");
    void commit(const Actor& p_stActor, const std::string& p_strWhy, bool p_bTellScheme = false);
    std::vector<RangeView> rangesFromController();

    std::optional<std::size_t> placeOf(u32 p_nKey) const;
    Scheme* currentScheme();
    int valueNow(u32 p_nKey, int p_nOther);
    std::vector<u32> unsavedOf(const Known& p_stKnown, const Scheme& p_stScheme) const;
    bool isUnsaved(int p_nScheme) const;

    // What the controller does to other schemes when a value of scheme 0 goes through its hands.
    void walked(u32 p_nKey, int p_nValue);
    void entered(int p_nFrom, int p_nTo);

    // Why the driver or the video module refused what was sent behind this place of the transcript; empty when they did
    // not.
    std::string refusalSince(std::uint64_t p_nNumber) const;
    std::uint64_t transcriptEnd() const;

    // Makes a scheme current. The text says what was refused on the way, empty when nothing was.
    std::string switchTo(int p_nScheme);
    struct Stay {
        int nScheme;
        bool bAutomatic;
    };
    Stay leaveHome();
    std::string returnHome(const Stay& p_stStay);
    // Does something in between, which may switch; comes back even when it throws. The text says what was refused on the
    // way back.
    std::string away(const std::function<void()>& p_fnWork);
    // Does something while the scheme is current. Throws Refusal when the way there or back was not clear.
    void visit(int p_nScheme, const std::function<void()>& p_fnWork);

    ChangeResult changeOne(const Change& p_stChange, bool p_bRecord);
    void completeResult(ChangeResult& p_stResult, const Change& p_stChange, bool p_bRecord);
    void noteSent(const ChangeResult& p_stResult);
    std::optional<Refusal> objectionTo(const Change& p_stChange, bool p_bRecord);
    std::vector<ChangeResult> changeAll(const std::vector<Change>& p_vecChanges, bool p_bRecord,
                                        const Actor& p_stActor);
    const StyleItem& itemOf(u32 p_nKey) const;
    ParameterValue singleValue(u32 p_nKey);
    int set(u32 p_nKey, int p_nValue, bool p_bRecord);
    void keepSettings(const ChannelSettings& p_stSettings);
    SaveResult awayWith(void (Channel::*p_pfnWork)(SaveResult&));
    void saveEach(SaveResult& p_stResult);
    void discardEach(SaveResult& p_stResult);
    void requireDone(bool p_bDone, const std::string& p_strWhat, std::uint64_t p_nSince) const;
    LensView lensNow();
    void checkLensTarget(const LensTarget& p_stTarget) const;

    const ChannelContext m_stContext;
    const ChannelDescription m_stDescription;

    // The worker's own.
    std::unique_ptr<ISensorController> m_pController;
    Known m_stNow;
    std::vector<int> m_vecRangeMark;  // of the ranges as they were last read
    bool m_bLensMoved = false;
    bool m_bByItself = false;  // the camera has switched by itself, which has not been told yet

    std::atomic<bool> m_bStoredAnew{false};  // the stored files are others than those that were read

    mutable std::mutex m_mutex;  // guards what follows
    Known m_stShown;
    std::string m_strBusyWith;

    Worker m_objWorker;  // last: it works with all of the above
};

// What of a request never outlives its caller: the result of the job.
template <typename Result>
Result Channel::ask(std::function<Result()> p_fnWork) {
    const auto pResult = std::make_shared<std::optional<Result>>();
    m_objWorker.run(
        [this, pResult, fnWork = std::move(p_fnWork)] {
            if (!m_stNow.bReady) {
                refuseNotReady(m_stNow);
            }
            tellSwitch();  // before anybody else is taken for its cause
            pResult->emplace(fnWork());
        },
        untilSoon());
    return std::move(**pResult);
}

}  // namespace camerad
