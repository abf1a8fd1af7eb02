#include "tests/unit/camerad/api/Fakes.h"

#include "apps/camerad/http/Problem.h"
#include "tests/unit/camerad/api/Schema.h"

#include <gtest/gtest.h>

#include <stdexcept>

namespace camerad {

namespace {

std::string textOf(std::int64_t p_nNumber) {
    return std::to_string(p_nNumber);
}

}  // namespace

FakeChannel::FakeChannel(int p_nNumber) {
    stView.nChannel = p_nNumber;
    stView.bThermal = 2 == p_nNumber;
    stView.bReady = true;
    stView.nSensorType = 334;
    stView.strVersion = "SIMCAM 1.0";
    stValues.nScheme = 0;
    stValues.nRevision = 17;
    ParameterValue brightness;
    brightness.nKey = 34;
    brightness.strName = "KEY_BRIGHTNESS";
    brightness.nValue = 60;
    brightness.standard = 50;
    brightness.stored = 50;
    ParameterValue contrast;
    contrast.nKey = 2353;
    contrast.strName = "KEY_CONTRAST";
    contrast.nValue = 50;
    stValues.vecValues = {brightness, contrast};
    stSchemes.nCurrent = 0;
    stSchemes.nFactory = 4;
    stSchemes.strFollow = "nothing";
    SchemeView day;
    day.strName = "Day";
    day.vecUnsaved = {34};
    day.vecInForce = {{0, 1200}, {1230, 1440}};
    SchemeView night;
    night.nIndex = 1;
    night.strName = "Night";
    night.stWindow = {20, 0, 20, 30};
    stSchemes.vecSchemes = {day, night};
}

void FakeChannel::asked() {
    if (refusal) {
        throw Refusal(*refusal);
    }
}

void FakeChannel::note(const std::string& p_strCall, const Actor& p_stActor) {
    asked();
    vecCalls.push_back(p_strCall);
    stLastActor = p_stActor;
}

ParameterValue FakeChannel::value(u32 p_nKey) {
    asked();
    for (const ParameterValue& value : stValues.vecValues) {
        if (value.nKey == p_nKey) {
            return value;
        }
    }
    ParameterValue other;
    other.nKey = p_nKey;
    other.nValue = 3;
    return other;
}

std::vector<ChangeResult> FakeChannel::change(const std::vector<Change>& p_vecChanges, bool p_bRecord,
                                              const Actor& p_stActor) {
    std::vector<ChangeResult> vecResults;
    asked();
    for (const Change& change : p_vecChanges) {
        note("set " + textOf(change.nKey) + " " + textOf(change.nValue) + (p_bRecord ? "" : " unrecorded"), p_stActor);
        vecResults.push_back({change.nKey, change.nValue, changeRefusal, -1, 0});
        for (ParameterValue& value : stValues.vecValues) {
            if (!changeRefusal && value.nKey == change.nKey) {
                value.nValue = change.nValue;
            }
        }
    }
    ++stValues.nRevision;
    for (ChangeResult& result : vecResults) {
        result.nScheme = stValues.nScheme;
        result.nRevision = stValues.nRevision;
    }
    stValues.nRevision += nChangesSince;
    return vecResults;
}

ParameterValue FakeChannel::setToDefault(u32 p_nKey, const Actor& p_stActor) {
    note("default " + textOf(p_nKey), p_stActor);
    return value(p_nKey);
}

ParameterValue FakeChannel::restore(u32 p_nKey, const Actor& p_stActor) {
    note("restore " + textOf(p_nKey), p_stActor);
    return value(p_nKey);
}

void FakeChannel::restoreFocusAndExposure(const Actor& p_stActor) {
    note("restore focus and exposure", p_stActor);
}

std::shared_ptr<const Style> FakeChannel::style() {
    asked();
    Style style;
    StyleItem item;
    item.nKey = 34;
    item.strName = "KEY_BRIGHTNESS";
    item.strLabel = "Brightness";
    item.strType = "slider";
    item.standard = 50;
    item.min = 0;
    item.max = 100;
    item.vecChoices = {{0, "Off"}};
    item.vecWords = {{"show_if", "82=1"}};
    style.vecTabs = {{"image", "Picture", {{"", "82=1", {item}}}}};
    return std::make_shared<const Style>(style);
}

std::string FakeChannel::styleDocument() {
    asked();
    return "<style/>";
}

void FakeChannel::setScheme(int p_nScheme, const Actor& p_stActor) {
    note("scheme " + textOf(p_nScheme), p_stActor);
}

void FakeChannel::setAutomatic(bool p_bAutomatic, const Actor& p_stActor) {
    note(p_bAutomatic ? "automatic" : "by hand", p_stActor);
}

void FakeChannel::setFollow(const std::string& p_strFollow, const Actor& p_stActor) {
    note("follow " + p_strFollow, p_stActor);
}

void FakeChannel::setWindow(int p_nScheme, const Window& p_stWindow, const Actor& p_stActor) {
    note("window " + textOf(p_nScheme) + " " + textOf(p_stWindow.nStartHour) + ":" + textOf(p_stWindow.nStartMinute) +
             " " + textOf(p_stWindow.nEndHour) + ":" + textOf(p_stWindow.nEndMinute),
         p_stActor);
}

void FakeChannel::setSchemeName(int p_nScheme, const std::string& p_strName, const Actor& p_stActor) {
    note("name " + textOf(p_nScheme) + " " + p_strName, p_stActor);
}

SaveResult FakeChannel::save(const Actor& p_stActor) {
    note("save", p_stActor);
    return {{0, 1}, {{2, 507, "It does not start before it ends."}}};
}

SaveResult FakeChannel::discard(const Actor& p_stActor) {
    note("discard", p_stActor);
    return {{0}, {}};
}

void FakeChannel::reset(const Actor& p_stActor) {
    note("reset", p_stActor);
}

std::vector<RangeView> FakeChannel::ranges() {
    asked();
    return {{49, 7, {7, 8, 9}}};
}

ShutterView FakeChannel::shutter() {
    asked();
    return {3, {25, 50, 100, 120}};
}

void FakeChannel::setShutter(int p_nPlace, const Actor& p_stActor) {
    note("shutter " + textOf(p_nPlace), p_stActor);
}

void FakeChannel::stepShutter(int p_nStep, const Actor& p_stActor) {
    note("shutter step " + textOf(p_nStep), p_stActor);
}

LensView FakeChannel::lens() {
    asked();
    return {16384, 1500, 1080, 1, 25600, 123, false};
}

void FakeChannel::lensAction(const std::string& p_strAction, const Actor& p_stActor) {
    note("lens " + p_strAction, p_stActor);
}

void FakeChannel::moveLens(const LensTarget& p_stTarget, const Actor& p_stActor) {
    const auto word = [](const std::optional<int>& p_nValue) { return p_nValue ? " " + textOf(*p_nValue) : " -"; };
    note(
        "lens to" + word(p_stTarget.zoom) + word(p_stTarget.focus) + word(p_stTarget.iris) + word(p_stTarget.focusMode),
        p_stActor);
}

bool FakeChannel::isNight() {
    asked();
    return stView.bNight;
}

void FakeChannel::setNight(bool p_bNight, const Actor& p_stActor) {
    note(p_bNight ? "night" : "day", p_stActor);
    stView.bNight = p_bNight;
}

bool FakeChannel::isRunning(u32 p_nCommand) {
    asked();
    return 1568 == p_nCommand;
}

int FakeChannel::sensorCheck(std::string& p_strText, const Actor& p_stActor) {
    note("check " + p_strText, p_stActor);
    p_strText = "77";
    return -5;
}

FakeHost::FakeHost() {
    objScene = {{"light", {{"kind", "fixed"}, {"lux", 1000.0}}},
                {"lux", 1000.0},
                {"fog", 0},
                {"wind", 20},
                {"car", true},
                {"distance", 5.0},
                {"temperature", 20.0},
                {"clockShift", 0},
                {"revision", 5}};
    objFaults = nlohmann::json::array({{{"id", 1}, {"text", "cmd=34 silent=1"}, {"matched", 2}, {"acted", 1}}});
}

void FakeHost::note(const std::string& p_strCall, const Actor&) {
    if (refusal) {
        throw Refusal(*refusal);
    }
    vecCalls.push_back(p_strCall);
}

ChannelHost& FakeHost::channel(int p_nChannel) {
    if (1 != p_nChannel && 2 != p_nChannel) {
        throw Refusal(Refusal::Kind::NotFound, "unknown-channel", "There is no such channel.");
    }
    return 1 == p_nChannel ? objFirst : objSecond;
}

simcam::Camera& FakeHost::camera() {
    throw std::logic_error("there is no camera behind it");
}

void FakeHost::changeScene(const nlohmann::json& p_objPatch, const Actor& p_stActor) {
    note("scene " + p_objPatch.dump(), p_stActor);
}

void FakeHost::setClock(bool p_bSimulated, const std::string& p_strTime, int p_nSpeed, const Actor& p_stActor) {
    note(std::string("clock ") + (p_bSimulated ? "simulated " : "real ") + p_strTime + " " + textOf(p_nSpeed),
         p_stActor);
    stClock.bSimulated = p_bSimulated;
    stClock.nSpeed = p_nSpeed;
}

int FakeHost::addFault(const std::string& p_strText, const Actor& p_stActor) {
    note("fault " + p_strText, p_stActor);
    objFaults.push_back({{"id", 2}, {"text", p_strText}, {"matched", 0}, {"acted", 0}});
    return 2;
}

void FakeHost::removeFault(int p_nId, const Actor& p_stActor) {
    note("no fault " + textOf(p_nId), p_stActor);
}

void FakeHost::clearFaults(const Actor& p_stActor) {
    note("no faults", p_stActor);
}

void FakeHost::powerCycle(const Actor& p_stActor) {
    note("power cycle", p_stActor);
}

std::vector<LogEntry> FakeHost::log(std::uint64_t p_nAfter, std::size_t p_nMost) const {
    std::vector<LogEntry> vecEntries;
    for (const LogEntry& entry : vecLog) {
        if (entry.nNumber > p_nAfter && vecEntries.size() < p_nMost) {
            vecEntries.push_back(entry);
        }
    }
    return vecEntries;
}

void FakeHost::setMessageLevel(int p_nLevel, const Actor& p_stActor) {
    note("level " + textOf(p_nLevel), p_stActor);
    stLevel = {p_nLevel, stLevel.nRevision + 1};
}

void FakeAccess::note(const std::string& p_strCall) {
    if (refusal) {
        throw Refusal(*refusal);
    }
    vecCalls.push_back(p_strCall);
}

Identity FakeAccess::identify(const HttpRequest& p_stRequest) {
    if (bGone) {
        throw Refusal(Refusal::Kind::Unauthorised, "session-over", "The session is over; log in again.");
    }
    if (refusal) {
        throw Refusal(*refusal);
    }
    return p_stRequest.stIdentity;
}

AccessControl::Session FakeAccess::login(const std::string& p_strName, const std::string& p_strPassword,
                                         const std::string& p_strRemote) {
    note("login " + p_strName + " " + p_strPassword + " " + p_strRemote);
    return {"COOKIE", "PROOF", {p_strName, Role::Admin, Identity::Via::Cookie, "s1"}};
}

void FakeAccess::logout(const Identity& p_stIdentity) {
    note("logout " + p_stIdentity.strName);
}

std::string FakeAccess::proofOf(const Identity& p_stIdentity) {
    return Identity::Via::Cookie == p_stIdentity.eVia ? "PROOF" : "";
}

void FakeAccess::putAccount(const std::string& p_strName, const std::string& p_strPassword, Role p_eRole) {
    note("account " + p_strName + " \"" + p_strPassword + "\" " + roleName(p_eRole));
}

void FakeAccess::removeAccount(const std::string& p_strName) {
    note("no account " + p_strName);
}

void FakeAccess::changePassword(const Identity& p_stIdentity, const std::string& p_strOld,
                                const std::string& p_strNew) {
    note("password " + p_stIdentity.strName + " " + p_strOld + " " + p_strNew);
}

std::vector<TokenView> FakeAccess::tokens() {
    return {{"t1", "backup", Role::Viewer, "2026-12-21T00:00:00Z"}, {"t2", "watch", Role::Admin, ""}};
}

std::pair<TokenView, std::string> FakeAccess::makeToken(const std::string& p_strName, Role p_eRole, int p_nDays) {
    note("token " + p_strName + " " + roleName(p_eRole) + " " + textOf(p_nDays));
    return {{"t3", p_strName, p_eRole, 0 == p_nDays ? "" : "2026-12-21T00:00:00Z"}, "SECRET"};
}

void FakeAccess::removeToken(const std::string& p_strId) {
    note("no token " + p_strId);
}

AccessControl::Counters FakeAccess::counters() {
    return {5, 3, 1, 2, 6};
}

namespace {

class FakeViewer : public PictureFeed::Viewer {
public:
    explicit FakeViewer(const FakeFeed& p_objFeed) : m_objFeed(p_objFeed) {}
    Frame next(std::chrono::milliseconds) override {
        return std::make_shared<const std::string>("picture " + std::to_string(++m_nFrame));
    }
    bool isClosed() const override { return m_objFeed.bClosed; }

private:
    const FakeFeed& m_objFeed;
    int m_nFrame = 0;
};

}  // namespace

std::unique_ptr<PictureFeed::Viewer> FakeFeed::watch(double p_dFrames) {
    dFrames = p_dFrames;
    return std::make_unique<FakeViewer>(*this);
}

Frame FakeFeed::snapshot(std::chrono::milliseconds) {
    return std::make_shared<const std::string>("one picture");
}

bool FakeSink::write(const std::string& p_strBytes) {
    if (m_bGone) {
        return false;
    }
    m_strText += p_strBytes;
    m_bGone = m_fnEnough(m_strText);
    return true;
}

FakeCamera::FakeCamera()
    : stApi{objHost,
            objEvents,
            objAccess,
            mapFeeds,
            [this] { return stCounters; },
            "1.1.0",
            std::chrono::milliseconds(20)} {
    mapFeeds.emplace(1, std::make_unique<FakeFeed>());
    addRoutes(objRouter, stApi);
}

HttpResponse FakeCamera::call(const std::string& p_strMethod, const std::string& p_strTarget,
                              const std::string& p_strBody,
                              const std::multimap<std::string, std::string>& p_mapHeaders) {
    HttpRequest request;
    request.strMethod = p_strMethod;
    request.strPath = p_strTarget.substr(0, p_strTarget.find('?'));
    for (std::size_t at = p_strTarget.find('?'); std::string::npos != at;) {
        const std::size_t end = p_strTarget.find('&', at + 1);
        const std::string pair = p_strTarget.substr(at + 1, std::string::npos == end ? end : end - at - 1);
        request.mapQuery.emplace(pair.substr(0, pair.find('=')), pair.substr(pair.find('=') + 1));
        at = end;
    }
    request.mapHeaders = p_mapHeaders;
    if (!p_strBody.empty() && 0 == request.mapHeaders.count("content-type")) {
        request.mapHeaders.emplace("content-type", "application/json");
    }
    request.strBody = p_strBody;
    request.strRemote = "192.0.2.7";
    request.bSecure = bSecure;
    request.stIdentity = stIdentity;
    const Router::Found found = objRouter.find(p_strMethod, request.strPath);
    if (nullptr == found.pRoute) {
        ADD_FAILURE() << "no route for " << p_strMethod << " " << p_strTarget;
        return {};
    }
    request.mapPath = found.mapPath;
    HttpResponse response;
    try {
        response = found.pRoute->fnHandler(request);
    } catch (const Refusal& refused) {
        response = problemResponse(refused);
    }
    for (const std::string& error : answerErrors(p_strMethod, found.pRoute->strPattern, response)) {
        ADD_FAILURE() << p_strMethod << " " << p_strTarget << " " << p_strBody << ": " << error;
    }
    return response;
}

nlohmann::json FakeCamera::json(const std::string& p_strMethod, const std::string& p_strTarget,
                                const std::string& p_strBody) {
    const nlohmann::json value =
        nlohmann::json::parse(call(p_strMethod, p_strTarget, p_strBody).strBody, nullptr, false);
    EXPECT_FALSE(value.is_discarded()) << p_strMethod << " " << p_strTarget;
    return value;
}

std::vector<std::string> FakeCamera::calls() {
    std::vector<std::string> vecAll;
    for (std::vector<std::string>* list :
         {&objHost.vecCalls, &objHost.objFirst.vecCalls, &objHost.objSecond.vecCalls, &objAccess.vecCalls}) {
        vecAll.insert(vecAll.end(), list->begin(), list->end());
        list->clear();
    }
    return vecAll;
}

}  // namespace camerad
