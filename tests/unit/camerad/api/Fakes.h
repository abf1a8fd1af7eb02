// A camera, its access control and its picture as the routes see them, without anything behind: they note what they are
// asked for and answer as told.
//
// One thread, but for what a stream calls.
#pragma once

#include "apps/camerad/api/Api.h"

#include <atomic>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace camerad {

class FakeChannel : public ChannelHost {
public:
    explicit FakeChannel(int p_nNumber);

    std::vector<std::string> vecCalls;     // what was to be changed, as text
    std::optional<Refusal> refusal;        // thrown by whatever may be refused
    std::optional<Refusal> changeRefusal;  // of each change
    unsigned nChangesSince = 0;            // of somebody else, between a change and its answer
    ParameterValues stValues;
    SchemesView stSchemes;
    ChannelView stView;
    Actor stLastActor;

    int number() const override { return stView.nChannel; }
    bool isThermal() const override { return stView.bThermal; }
    ChannelView view() override { return stView; }
    ParameterValues values() override { return stValues; }
    ParameterValue value(u32 p_nKey) override;
    std::vector<ChangeResult> change(const std::vector<Change>& p_vecChanges, bool p_bRecord,
                                     const Actor& p_stActor) override;
    ParameterValue setToDefault(u32 p_nKey, const Actor& p_stActor) override;
    ParameterValue restore(u32 p_nKey, const Actor& p_stActor) override;
    void restoreFocusAndExposure(const Actor& p_stActor) override;
    std::shared_ptr<const Style> style() override;
    std::string styleDocument() override;
    std::uint64_t revision() const override { return stValues.nRevision; }
    SchemesView schemes() override { return stSchemes; }
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
    void asked();
    void note(const std::string& p_strCall, const Actor& p_stActor);
};

class FakeHost : public CameraHost {
public:
    void endWaits() override {}
    FakeChannel objFirst{1};
    FakeChannel objSecond{2};
    std::vector<std::string> vecCalls;
    std::optional<Refusal> refusal;
    ClockView stClock{"2026-11-21T22:40:05", false, 1, 3};
    nlohmann::json objScene;
    nlohmann::json objFaults;
    std::vector<LogEntry> vecLog;
    LevelView stLevel;
    HostCounters stCounters;

    FakeHost();
    std::vector<int> channels() const override { return {1, 2}; }
    ChannelHost& channel(int p_nChannel) override;
    simcam::Camera& camera() override;
    nlohmann::json scene() const override { return objScene; }
    void changeScene(const nlohmann::json& p_objPatch, const Actor& p_stActor) override;
    ClockView clock() const override { return stClock; }
    void setClock(bool p_bSimulated, const std::string& p_strTime, int p_nSpeed, const Actor& p_stActor) override;
    nlohmann::json faults() const override { return {{"faults", objFaults}}; }
    int addFault(const std::string& p_strText, const Actor& p_stActor) override;
    void removeFault(int p_nId, const Actor& p_stActor) override;
    void clearFaults(const Actor& p_stActor) override;
    void powerCycle(const Actor& p_stActor) override;
    std::vector<LogEntry> log(std::uint64_t p_nAfter, std::size_t p_nMost) const override;
    void addMessage(const std::string&) override {}
    LevelView messageLevel() const override { return stLevel; }
    void setMessageLevel(int p_nLevel, const Actor& p_stActor) override;
    HostCounters counters() const override { return stCounters; }

private:
    void note(const std::string& p_strCall, const Actor& p_stActor);
};

class FakeAccess : public AccessControl {
public:
    std::vector<std::string> vecCalls;
    std::optional<Refusal> refusal;
    std::atomic<bool> bGone{false};  // whoever asks is not known any more
    std::vector<AccountView> vecAccounts{{"admin", Role::Admin}, {"guard", Role::Viewer}};

    std::optional<std::string> firstPassword() override { return std::nullopt; }
    Identity identify(const HttpRequest& p_stRequest) override;
    void authorise(const HttpRequest&, const Identity&, const Route&) override {}
    Session login(const std::string& p_strName, const std::string& p_strPassword,
                  const std::string& p_strRemote) override;
    void logout(const Identity& p_stIdentity) override;
    std::string proofOf(const Identity& p_stIdentity) override;
    std::vector<AccountView> accounts() override { return vecAccounts; }
    void putAccount(const std::string& p_strName, const std::string& p_strPassword, Role p_eRole) override;
    void removeAccount(const std::string& p_strName) override;
    void changePassword(const Identity& p_stIdentity, const std::string& p_strOld,
                        const std::string& p_strNew) override;
    std::vector<TokenView> tokens() override;
    std::pair<TokenView, std::string> makeToken(const std::string& p_strName, Role p_eRole, int p_nDays) override;
    void removeToken(const std::string& p_strId) override;
    Counters counters() override;

private:
    void note(const std::string& p_strCall);
};

// One picture after the other, without pause, until it is closed.
class FakeFeed : public PictureFeed {
public:
    std::atomic<bool> bClosed{false};
    std::atomic<double> dFrames{0};  // that the last viewer asked for

    std::unique_ptr<Viewer> watch(double p_dFrames) override;
    Frame snapshot(std::chrono::milliseconds p_nTime) override;
    Counters counters() const override { return {7, 700, 0.5, 2}; }
    void close() override { bClosed = true; }
};

// A client that reads a stream; it goes away when it has enough, or when it is told to.
class FakeSink : public HttpSink {
public:
    // p_fnEnough: of everything that was written so far.
    explicit FakeSink(std::function<bool(const std::string&)> p_fnEnough) : m_fnEnough(std::move(p_fnEnough)) {}
    bool write(const std::string& p_strBytes) override;
    bool isOpen() const override { return !m_bGone; }
    const std::string& text() const { return m_strText; }

private:
    std::function<bool(const std::string&)> m_fnEnough;
    std::string m_strText;
    bool m_bGone = false;
};

// All of it, with the routes.
struct FakeCamera {
    FakeHost objHost;
    EventHub objEvents;
    FakeAccess objAccess;
    std::map<int, std::unique_ptr<PictureFeed>> mapFeeds;
    ServerCounters stCounters;
    Api stApi;
    Router objRouter;

    FakeCamera();
    FakeFeed& feed() { return *static_cast<FakeFeed*>(mapFeeds.at(1).get()); }

    // As the server does it: finds the route and calls it; a refusal becomes its problem document. Every answer is held
    // against the description, and every 5xx against what was wanted.
    HttpResponse call(const std::string& p_strMethod, const std::string& p_strTarget, const std::string& p_strBody = "",
                      const std::multimap<std::string, std::string>& p_mapHeaders = {});
    nlohmann::json json(const std::string& p_strMethod, const std::string& p_strTarget,
                        const std::string& p_strBody = "");
    // Everything that was to be changed so far, and forgets it.
    std::vector<std::string> calls();
    Identity stIdentity{"boss", Role::Admin, Identity::Via::Cookie, "s1"};
    bool bSecure = false;
};

}  // namespace camerad
