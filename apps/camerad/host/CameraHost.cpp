#include "apps/camerad/host/CameraHost.h"

#include "apps/camerad/host/Channel.h"
#include "apps/camerad/host/ClockPacer.h"
#include "apps/camerad/host/HostLog.h"
#include "apps/camerad/host/Machine.h"
#include "apps/camerad/host/PlainText.h"
#include "apps/camerad/host/SceneJson.h"
#include "apps/camerad/host/Settings.h"
#include "apps/camerad/host/Views.h"
#include "platform/Clock.h"
#include "platform/DeviceRoot.h"
#include "platform/QVFile.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <mutex>

namespace camerad {

namespace {

const char kSignFile[] = "/mnt/mtd/sign/Debug.sign";
constexpr int kHighestLevel = 8;
constexpr int kUsualLevel = 1;
constexpr std::size_t kMostFaults = 64;
constexpr std::size_t kLongestFault = 500;  // bytes

class Host : public CameraHost {
public:
    Host(simcam::Camera& p_objCamera, EventHub& p_objEvents, const HostSettings& p_stSettings)
        : m_objCamera(p_objCamera),
          m_objEvents(p_objEvents),
          m_stSettings(p_stSettings),
          m_objLog(p_objEvents),
          m_objKept(m_strKeptProblem),
          m_objPacer([this](const ClockView& p_stView) { m_objEvents.publish("clock", 0, toJson(p_stView)); }) {
        const std::vector<ChannelDescription> vecDescriptions = channelsOfMachine(m_objCamera.driver().channels());
        if (!m_strKeptProblem.empty()) {
            m_objLog.addMessage(m_strKeptProblem);
        }
        m_objCamera.transcript().setObserver(
            [this](const simcam::TranscriptEntry& p_stEntry) { m_objLog.add(p_stEntry); });
        for (const ChannelDescription& description : vecDescriptions) {
            m_mapChannels[description.nNumber] = std::make_unique<Channel>(contextOfChannels(), description);
        }
        startAll();
    }

    ~Host() override {
        Host::endWaits();
        for (const auto& [nNumber, pChannel] : m_mapChannels) {
            pChannel->stopWorking();
        }
        m_objCamera.transcript().setObserver({});
        if (m_bHeldForTheEnd) {
            platform::Clock::release();
        }
    }

    // Waits on the camera's clock could keep a worker for an hour, by a fault with a delay. On a held clock they end at
    // once.
    void endWaits() override {
        m_objPacer.stop();
        if (!platform::Clock::isHeld()) {
            platform::Clock::hold(platform::Clock::civilTime());
            m_bHeldForTheEnd = true;
        }
    }

    std::vector<int> channels() const override {
        std::vector<int> vecNumbers;
        for (const auto& [nNumber, pChannel] : m_mapChannels) {
            vecNumbers.push_back(nNumber);
        }
        return vecNumbers;
    }

    ChannelHost& channel(int p_nChannel) override {
        const auto found = m_mapChannels.find(p_nChannel);
        if (m_mapChannels.end() == found) {
            std::string strList;
            for (const int nNumber : channels()) {
                strList += (strList.empty() ? "" : ", ") + std::to_string(nNumber);
            }
            throw Refusal(Refusal::Kind::NotFound, "no-such-channel",
                          "the camera has no channel " + std::to_string(p_nChannel) + "; it has " + strList);
        }
        return *found->second;
    }

    simcam::Camera& camera() override { return m_objCamera; }

    nlohmann::json scene() const override {
        const std::lock_guard lock(m_mutexScene);
        return sceneNow();
    }

    void changeScene(const nlohmann::json& p_objPatch, const Actor&) override {
        const std::lock_guard lock(m_mutexScene);
        const simcam::SceneState stBefore = m_objCamera.scene().state();
        apply(stBefore, patched(stBefore, p_objPatch));
        ++m_nSceneRevision;
        m_objEvents.publish("scene", 0, sceneNow());
    }

    ClockView clock() const override { return m_objPacer.view(); }

    void setClock(bool p_bSimulated, const std::string& p_strTime, int p_nSpeed, const Actor&) override {
        m_objPacer.set(p_bSimulated, p_strTime, p_nSpeed);
    }

    nlohmann::json faults() const override {
        nlohmann::json faults = nlohmann::json::array();
        for (const simcam::FaultList::Entry& entry : m_objCamera.faults().list()) {
            faults.push_back({{"id", entry.id},
                              {"text", simcam::toText(entry.fault)},
                              {"matched", entry.matched},
                              {"acted", entry.acted}});
        }
        return {{"faults", std::move(faults)}};
    }

    int addFault(const std::string& p_strText, const Actor&) override {
        simcam::Fault stFault;
        std::string strError;
        if (p_strText.size() > kLongestFault) {
            throw Refusal(Refusal::Kind::BadValue, "bad-value", "a fault is one line of at most 500 bytes");
        }
        if (!simcam::parseFault(p_strText, stFault, strError)) {
            throw Refusal(Refusal::Kind::BadValue, "bad-value", plainLine(strError, kLongestFault));
        }
        const std::lock_guard lock(m_mutexFaults);
        if (m_objCamera.faults().list().size() >= kMostFaults) {
            throw Refusal(Refusal::Kind::Conflict, "too-many-faults",
                          "there are " + std::to_string(kMostFaults) + " faults already; remove one first");
        }
        const int nId = m_objCamera.faults().add(stFault);
        m_objEvents.publish("faults", 0, faults());
        return nId;
    }

    void removeFault(int p_nId, const Actor&) override {
        const std::lock_guard lock(m_mutexFaults);
        if (!m_objCamera.faults().remove(p_nId)) {
            throw Refusal(Refusal::Kind::NotFound, "no-such-fault", "there is no fault " + std::to_string(p_nId));
        }
        m_objEvents.publish("faults", 0, faults());
    }

    void clearFaults(const Actor&) override {
        const std::lock_guard lock(m_mutexFaults);
        m_objCamera.faults().clear();
        m_objEvents.publish("faults", 0, faults());
    }

    void powerCycle(const Actor& p_stActor) override;

    std::vector<LogEntry> log(std::uint64_t p_nAfter, std::size_t p_nMost) const override {
        return m_objLog.entries(p_nAfter, p_nMost);
    }
    void addMessage(const std::string& p_strLine) override { m_objLog.addMessage(p_strLine); }
    LevelView messageLevel() const override {
        const std::lock_guard lock(m_mutexSign);
        return levelNow();
    }
    void setMessageLevel(int p_nLevel, const Actor& p_stActor) override;
    HostCounters counters() const override { return m_objLog.counters(); }

private:
    ChannelContext contextOfChannels() {
        return {m_objCamera,
                m_objEvents,
                m_objKept,
                m_stSettings,
                m_mutexInit,
                [this](const std::string& p_strLine) { addMessage(p_strLine); },
                [this](const std::string& p_strWhy) { m_objLog.countSwitch(p_strWhy); },
                [this](std::uint64_t p_nFiles) { m_objLog.countWrites(p_nFiles); },
                [this](int p_nChannel) {
                    for (const auto& [nNumber, pChannel] : m_mapChannels) {
                        if (nNumber != p_nChannel) {
                            pChannel->readStoredAgain();
                        }
                    }
                }};
    }

    Worker::Clock::time_point untilLater() const {
        return Worker::Clock::now() + std::chrono::milliseconds(m_stSettings.nResetMilliseconds);
    }

    // A channel that takes too long goes on without being waited for.
    void startAll() {
        const Actor stCamera = {"camera", ""};
        std::vector<Worker::Ticket> vecTickets;
        for (const auto& [nNumber, pChannel] : m_mapChannels) {
            vecTickets.push_back(pChannel->comeUp(stCamera));
        }
        waitForAll(vecTickets, untilLater());
    }

    // False when one was not done in time.
    bool waitForAll(std::vector<Worker::Ticket>& p_vecTickets, Worker::Clock::time_point p_tUntil) {
        bool bAll = true;
        for (Worker::Ticket& ticket : p_vecTickets) {
            try {
                ticket.wait(p_tUntil);
            } catch (const Refusal& objWhy) {
                m_objLog.addMessage(objWhy.what());
                bAll = false;
            }
        }
        return bAll;
    }

    // With m_mutexSign.
    LevelView levelNow() const;

    // With m_mutexScene.
    nlohmann::json sceneNow() const {
        simcam::Scene& scene = m_objCamera.scene();
        nlohmann::json view = toJson(scene.state(), scene.light());
        view["revision"] = m_nSceneRevision;
        return view;
    }

    // Every value has been checked.
    void apply(const simcam::SceneState& p_stBefore, const simcam::SceneState& p_stAfter) {
        simcam::Scene& scene = m_objCamera.scene();
        const bool bFixed = simcam::SceneState::Light::Fixed == p_stAfter.light;
        bool bDone = bFixed ? scene.setLight(p_stAfter.lux) : scene.followDay(p_stAfter.curve);
        bDone = (p_stBefore.clockShiftSeconds == p_stAfter.clockShiftSeconds ||
                 scene.setClockShift(p_stAfter.clockShiftSeconds)) &&
                bDone;
        bDone = (p_stBefore.fogPercent == p_stAfter.fogPercent || scene.setFog(p_stAfter.fogPercent)) && bDone;
        bDone = (p_stBefore.windPercent == p_stAfter.windPercent || scene.setWind(p_stAfter.windPercent)) && bDone;
        bDone = scene.setSubjectDistance(p_stAfter.subjectMetres) && bDone;
        bDone = scene.setAmbientTemperature(p_stAfter.ambientCelsius) && bDone;
        if (p_stBefore.car != p_stAfter.car) {
            scene.setCar(p_stAfter.car);
        }
        if (!bDone) {
            throw Refusal(Refusal::Kind::Failed, "scene", "the scene did not take all of the values");
        }
    }

    simcam::Camera& m_objCamera;
    EventHub& m_objEvents;
    const HostSettings m_stSettings;
    HostLog m_objLog;
    std::string m_strKeptProblem;
    Settings m_objKept;
    ClockPacer m_objPacer;
    bool m_bHeldForTheEnd = false;
    mutable std::mutex m_mutexScene;  // one change of the scene at a time
    std::uint64_t m_nSceneRevision = 0;
    mutable std::mutex m_mutexFaults;  // the limit, and events in the order of the changes
    std::mutex m_mutexPower;           // one power cycle at a time
    mutable std::mutex m_mutexSign;    // the sign file
    std::uint64_t m_nLevelRevision = 0;
    std::mutex m_mutexInit;  // see ChannelContext
    std::map<int, std::unique_ptr<Channel>> m_mapChannels;
};

// The power goes when every controller is down, and comes back in any case.
void Host::powerCycle(const Actor& p_stActor) {
    const std::unique_lock lock(m_mutexPower, std::try_to_lock);
    if (!lock.owns_lock()) {
        Refusal refusal(Refusal::Kind::Busy, "busy", "the camera is being switched off and on already");
        throw Refusal(refusal.retryAfter(2));
    }
    const Worker::Clock::time_point tUntil = untilLater();
    std::vector<Channel*> vecDown;
    std::vector<Worker::Ticket> vecTickets;
    std::optional<Refusal> refusal;
    for (const auto& [nNumber, pChannel] : m_mapChannels) {
        try {
            vecTickets.push_back(pChannel->goDown(p_stActor));
            vecDown.push_back(pChannel.get());
        } catch (const Refusal& objWhy) {
            refusal = objWhy;
            break;
        }
    }
    for (std::size_t i = 0; i < vecTickets.size(); ++i) {
        try {
            vecTickets[i].wait(tUntil);
        } catch (const Refusal& objWhy) {
            refusal = objWhy;
        }
    }
    if (!refusal) {
        m_objCamera.powerCycle();
    }
    std::vector<Worker::Ticket> vecUp;
    for (Channel* const pChannel : vecDown) {
        try {
            vecUp.push_back(pChannel->comeUp(p_stActor));
        } catch (const Refusal& objWhy) {
            m_objLog.addMessage(objWhy.what());
        }
    }
    const bool bUp = waitForAll(vecUp, untilLater());
    if (refusal) {
        throw Refusal(*refusal);
    }
    if (!bUp) {
        throw Refusal(Refusal::Kind::Failed, "not-ready", "not every channel came back in time; look at the channels");
    }
}

LevelView Host::levelNow() const {
    QVFile file;
    std::string strLine;
    if (!QVFile::exists(kSignFile) || !file.open(kSignFile, QVFile::modeRead) || !file.readLine(strLine) ||
        strLine.empty()) {
        return {kUsualLevel, m_nLevelRevision};
    }
    const long nLevel = std::clamp<long>(std::strtol(strLine.c_str(), nullptr, 10), 0, kHighestLevel);
    return {static_cast<int>(nLevel), m_nLevelRevision};
}

// The second line, whether a failed assertion ends the process, stays as it is.
void Host::setMessageLevel(int p_nLevel, const Actor&) {
    if (p_nLevel < 0 || p_nLevel > kHighestLevel) {
        throw Refusal(
            Refusal::Kind::BadValue, "bad-value",
            "the level of messages is 0 to " + std::to_string(kHighestLevel) + ", not " + std::to_string(p_nLevel));
    }
    const std::lock_guard lock(m_mutexSign);
    std::string strSecond;
    if (QVFile file; QVFile::exists(kSignFile) && file.open(kSignFile, QVFile::modeRead)) {
        std::string strFirst;
        file.readLine(strFirst);
        file.readLine(strSecond);
    }
    std::error_code ignored;
    std::filesystem::create_directories(std::filesystem::path(platform::devicePath(kSignFile)).parent_path(), ignored);
    const std::string strText = std::to_string(p_nLevel) + "\n" + strSecond + (strSecond.empty() ? "" : "\n");
    const int nLength = static_cast<int>(strText.size());
    QVFile file;
    if (!file.open(kSignFile, QVFile::modeWrite | QVFile::modeTruncate) ||
        file.write(strText.data(), nLength) != nLength || !file.close()) {
        throw Refusal(Refusal::Kind::Failed, "not-kept", std::string(kSignFile) + " cannot be written");
    }
    m_objLog.countWrites(1);
    ++m_nLevelRevision;
    m_objEvents.publish("level", 0, toJson(levelNow()));
}

}  // namespace

std::unique_ptr<CameraHost> CameraHost::start(simcam::Camera& p_objCamera, EventHub& p_objEvents,
                                              const HostSettings& p_stSettings) {
    return std::make_unique<Host>(p_objCamera, p_objEvents, p_stSettings);
}

}  // namespace camerad
