#include "apps/camerad/host/Channel.h"

#include "apps/camerad/host/FlashWatch.h"
#include "apps/camerad/host/PlainText.h"
#include "apps/camerad/host/SchemeRules.h"
#include "apps/camerad/host/SensorKeys.h"
#include "apps/camerad/host/Views.h"
#include "apps/shared/CommandError.h"
#include "apps/shared/KeyNames.h"
#include "apps/shared/ParameterFile.h"

#include <algorithm>

namespace camerad {

namespace {

constexpr int kLooksForOneMoment = 5;  // reads of a whole scheme until no switch comes in between
const char kVersionFile[] = "/mnt/mtd/code/config_file/snsversion.cfg";  // of the stored files of all channels
const char kStart[] = "start";
const char kReset[] = "reset";

nlohmann::json changeJson(const ParameterValue& p_stValue) {
    nlohmann::json change = {{"key", p_stValue.nKey}, {"value", p_stValue.nValue}, {"unsaved", p_stValue.isUnsaved()}};
    if (p_stValue.stored) {
        change["stored"] = *p_stValue.stored;
    }
    return change;
}

bool isSame(const ParameterValue& p_stLeft, const ParameterValue& p_stRight) {
    return p_stLeft.nKey == p_stRight.nKey && p_stLeft.nValue == p_stRight.nValue &&
           p_stLeft.stored == p_stRight.stored && p_stLeft.bLost == p_stRight.bLost;
}

}  // namespace

Channel::Channel(ChannelContext p_stContext, ChannelDescription p_stDescription)
    : m_stContext(std::move(p_stContext)),
      m_stDescription(std::move(p_stDescription)),
      m_objWorker(
          {64, std::chrono::milliseconds(m_stContext.stSettings.nLookMilliseconds),
           "channel " + std::to_string(m_stDescription.nNumber)},
          [this] { look(); }, [this](const std::string& p_strOperation) { tellBusy(p_strOperation); }) {}

Channel::~Channel() {
    stopWorking();
}

void Channel::stopWorking() {
    m_objWorker.stop([this] { bringDown(); });
}

Worker::Ticket Channel::goDown(const Actor& p_stActor) {
    return m_objWorker.post(
        kStart,
        [this, p_stActor] {
            bringDown();
            m_stNow.bReady = false;
            m_stNow.strProblem = "the camera is without power";
            commit(p_stActor, kStart);
        },
        true);
}

Worker::Ticket Channel::comeUp(const Actor& p_stActor) {
    return m_objWorker.post(kStart, [this, p_stActor] { bringUp(p_stActor, kStart); });
}

void Channel::reset(const Actor& p_stActor) {
    Worker::Ticket ticket = m_objWorker.post(kReset, [this, p_stActor] { carryOutReset(p_stActor); });
    ticket.wait(untilLater());
}

void Channel::readStoredAgain() {
    m_bStoredAnew = true;
}

Channel::TimePoint Channel::untilSoon() const {
    return Worker::Clock::now() + std::chrono::milliseconds(m_stContext.stSettings.nWaitMilliseconds);
}

Channel::TimePoint Channel::untilLater() const {
    return Worker::Clock::now() + std::chrono::milliseconds(m_stContext.stSettings.nResetMilliseconds);
}

void Channel::act(std::function<void()> p_fnWork) {
    ask<bool>([fnWork = std::move(p_fnWork)] {
        fnWork();
        return true;
    });
}

Channel::Known Channel::shown() const {
    const std::lock_guard lock(m_mutex);
    return m_stShown;
}

Channel::Known Channel::shownReady() const {
    Known known = shown();
    if (!known.bReady) {
        refuseNotReady(known);
    }
    return known;
}

void Channel::refuseNotReady(const Known& p_stKnown) const {
    throw Refusal(Refusal::Kind::Failed, "not-ready",
                  "channel " + std::to_string(number()) + " is not ready: " +
                      (p_stKnown.strProblem.empty() ? "it is being started" : p_stKnown.strProblem));
}

void Channel::tellBusy(const std::string& p_strOperation) {
    {
        const std::lock_guard lock(m_mutex);
        m_strBusyWith = p_strOperation;
    }
    nlohmann::json operation = nullptr;
    if (!p_strOperation.empty()) {
        operation = p_strOperation;
    }
    m_stContext.objEvents.publish("busy", number(), {{"channel", number()}, {"operation", operation}});
}

ChannelView Channel::view() {
    const std::lock_guard lock(m_mutex);
    ChannelView view;
    view.nChannel = number();
    view.bThermal = isThermal();
    view.bReady = m_stShown.bReady;
    view.strProblem = m_stShown.strProblem;
    view.nSensorType = m_stShown.nSensorType;
    view.strVersion = m_stShown.strVersion;
    view.bNight = m_stShown.bNight;
    view.strBusyWith = m_strBusyWith;
    return view;
}

std::uint64_t Channel::revision() const {
    const std::lock_guard lock(m_mutex);
    return m_stShown.nRevision;
}

std::shared_ptr<const Style> Channel::style() {
    return shownReady().pStyle;
}

// --- Life, on the worker ---

void Channel::bringUp(const Actor& p_stActor, const std::string& p_strWhy) {
    if (nullptr != m_pController) {
        return;  // it never went down
    }
    m_pController = std::make_unique<ISensorController>();
    m_pController->setChannelID(number());
    m_pController->setVideoStreamModule(&m_stContext.objCamera.video());
    m_stNow.bReady = false;
    m_stNow.strProblem.clear();
    try {
        std::unique_lock lock(m_stContext.objInit);
        const FlashWatch objWatch(storedFiles());
        const bool bDone = m_pController->init(m_stDescription.objModule);
        m_stContext.fnWritten(objWatch.written());
        lock.unlock();
        if (!bDone) {
            throw Refusal(Refusal::Kind::Failed, "not-ready", "its controller cannot be initialised");
        }
        takeUp();
    } catch (const Refusal& objWhy) {
        m_stNow.strProblem = objWhy.what();
        m_stContext.fnMessage("channel " + std::to_string(number()) + " is not ready: " + objWhy.what());
    }
    commit(p_stActor, p_strWhy, true);
}

// Learns everything of a controller that has just been initialised.
void Channel::takeUp() {
    m_stNow.stSettings = m_stContext.objSettings.of(number());
    m_stNow.nSensorType = m_pController->getSensorType();
    std::string strVersion;
    m_stNow.strVersion = m_pController->getCameraVerInf(strVersion) ? plainLine(strVersion, 64) : "";
    readStyle();
    auto vecKeys = m_stNow.pStyle->recordedKeys();
    std::vector<u32> vecOnce;  // of a key that is there twice only the first counts
    for (const u32 nKey : vecKeys) {
        if (vecOnce.end() == std::find(vecOnce.begin(), vecOnce.end(), nKey)) {
            vecOnce.push_back(nKey);
        }
    }
    if (vecOnce.empty()) {
        throw Refusal(Refusal::Kind::Failed, "not-ready", "its style document has no parameters");
    }
    m_stNow.pKeys = std::make_shared<const std::vector<u32>>(std::move(vecOnce));
    Scheme standard;
    for (const u32 nKey : *m_stNow.pKeys) {
        standard.vecValues.push_back(m_stNow.pStyle->find(nKey)->standard.value_or(0));
        standard.vecStored.emplace_back();
    }
    m_stNow.vecSchemes.assign(static_cast<std::size_t>(m_stDescription.nSchemes) + 1, standard);
    m_stNow.vecSchemes.back().bKept = false;
    for (int i = 0; i < m_stDescription.nSchemes; ++i) {
        readStored(i);
        Scheme& scheme = m_stNow.vecSchemes[static_cast<std::size_t>(i)];
        for (std::size_t nPlace = 0; nPlace < scheme.vecValues.size(); ++nPlace) {
            scheme.vecValues[nPlace] = scheme.vecStored[nPlace].value_or(scheme.vecValues[nPlace]);
        }
    }
    const std::optional<std::size_t> mode = placeOf(kSchemeMode);
    const int nMode = mode ? m_stNow.vecSchemes.front().vecValues[*mode] : 0;
    m_stNow.nFollow = 1 == nMode || 2 == nMode ? nMode : 0;
    applyStartingScheme();
    m_pController->setParamMode(m_stNow.stSettings.bAutomatic ? 1 : 0);
    readNight();
    m_vecRangeMark.clear();
    m_stNow.vecRanges.clear();
    m_stNow.mapSent.clear();
    readRanges();
    m_stNow.bReady = true;
}

// The controller starts in scheme 0 when nothing switches by itself, and otherwise in none until it switches. Here it goes
// on where it was: in the scheme that it would switch to, or in the one that the user chose last.
void Channel::applyStartingScheme() {
    m_stNow.nScheme = -1;
    m_pController->getParamScheme(m_stNow.nScheme);
    int nWanted = m_stNow.stSettings.nScheme;
    if (0 != m_stNow.nFollow && m_stNow.stSettings.bAutomatic) {
        readNight();
        nWanted = m_stNow.bNight && m_stDescription.nSchemes > 1 ? 1 : 0;
        if (kFollowSchedule == m_stNow.nFollow) {
            nWanted = scheduledNow().value_or(nWanted);
        }
    }
    nWanted = nWanted >= 0 && nWanted <= m_stDescription.nSchemes ? nWanted : 0;
    if (nWanted != m_stNow.nScheme) {
        const std::string strRefused = switchTo(nWanted);
        if (!strRefused.empty()) {
            m_stContext.fnMessage("channel " + std::to_string(number()) + ", scheme " + std::to_string(nWanted) + ": " +
                                  strRefused);
        }
    }
    std::string strIgnored;
    m_pController->getAllParameters(strIgnored);  // has the driver correct the values in place
    readValues();
}

void Channel::bringDown() {
    if (nullptr != m_pController) {
        m_pController->uinit();
        m_pController.reset();
    }
}

// What the controller writes when it starts and when it is reset: its own schemes, and the version.
std::vector<std::string> Channel::storedFiles() const {
    std::vector<std::string> vecFiles = {kVersionFile};
    for (int i = 0; i < m_stDescription.nSchemes; ++i) {
        vecFiles.push_back(apps::parameterFileName(number(), i));
    }
    return vecFiles;
}

void Channel::carryOutReset(const Actor& p_stActor) {
    if (nullptr == m_pController) {
        refuseNotReady(m_stNow);
    }
    std::unique_lock lock(m_stContext.objInit, std::try_to_lock);
    if (!lock.owns_lock()) {
        Refusal refusal(Refusal::Kind::Busy, "busy",
                        "another channel is being reset or started, which deals with the stored files of all channels; "
                        "nothing was done");
        throw Refusal(refusal.retryAfter(2));
    }
    const FlashWatch objWatch(storedFiles());
    const bool bDone = m_pController->resetParameters();
    m_stContext.fnWritten(objWatch.written());
    lock.unlock();
    std::optional<Refusal> notKept;
    try {
        m_stContext.objSettings.keep(number(), {});
        m_stContext.fnWritten(1);
    } catch (const Refusal& objWhy) {
        notKept = objWhy;
    }
    m_stNow.bReady = false;
    m_stNow.strProblem.clear();
    try {
        takeUp();
    } catch (const Refusal& objWhy) {
        m_stNow.strProblem = objWhy.what();
    }
    commit(p_stActor, kReset, true);
    m_stContext.fnReset(number());
    if (!bDone || !m_stNow.bReady) {
        throw Refusal(Refusal::Kind::Failed, "reset-failed",
                      "the reset did not come to its end: " +
                          (m_stNow.strProblem.empty() ? "the controller refused it" : m_stNow.strProblem));
    }
    if (notKept) {
        throw Refusal(*notKept);
    }
}

// --- What the camera does by itself ---

void Channel::look() {
    if (!m_stNow.bReady) {
        return;
    }
    try {
        tellSwitch();
        const bool bNight = readNight();
        const bool bRanges = readRanges();
        if (bNight || bRanges) {
            commit({"camera", ""}, whyByItself());
        }
        lookAtLens();
    } catch (const std::exception& objFailure) {
        m_stContext.fnMessage("channel " + std::to_string(number()) + " could not be looked at: " + objFailure.what());
    }
}

std::string Channel::whyByItself() const {
    return kFollowDayNight == m_stNow.nFollow || !scheduledNow() ? "day-night" : "schedule";
}

std::optional<int> Channel::scheduledNow() const {
    const platform::CivilTime stTime = platform::Clock::civilTime();
    const int nMinute = stTime.hour * 60 + stTime.minute;
    for (const SchemeView& scheme : schemesOf(m_stNow).vecSchemes) {
        for (const auto& [nStart, nEnd] : scheme.vecInForce) {
            if (nStart <= nMinute && nMinute < nEnd) {
                return scheme.nIndex;
            }
        }
    }
    return std::nullopt;
}

bool Channel::noticeSwitch() {
    int nScheme = m_stNow.nScheme;
    m_pController->getParamScheme(nScheme);
    if (nScheme == m_stNow.nScheme) {
        return false;
    }
    entered(m_stNow.nScheme, nScheme);
    readValues();
    return true;
}

void Channel::tellSwitch() {
    const bool bStored = m_bStoredAnew.exchange(false);
    for (int i = 0; bStored && i < m_stDescription.nSchemes; ++i) {
        readStored(i);
    }
    const bool bSwitched = noticeSwitch();
    if (bStored || bSwitched) {
        commit({"camera", ""}, whyByItself());
    }
}

void Channel::lookAtLens() {
    simcam::LensState stLens;
    if (!m_stContext.objCamera.driver().lens(number() - 1, stLens)) {
        return;
    }
    const bool bMoves =
        stLens.zoom != stLens.zoomTarget || stLens.focus != stLens.focusTarget || stLens.focusing || stLens.resetting;
    if (!bMoves && !m_bLensMoved) {
        return;
    }
    m_bLensMoved = bMoves;
    LensView view;
    std::vector<int> vecValues;
    m_stContext.objCamera.driver().values(number() - 1, {kFocusMode, kIrisPosition, kSharpness}, vecValues);
    view.nFocusMode = vecValues.empty() ? 0 : vecValues[0];
    view.nIris = vecValues.empty() ? 0 : vecValues[1];
    view.nSharpness = vecValues.empty() ? 0 : static_cast<unsigned>(vecValues[2]);
    view.nZoom = stLens.zoom;
    view.nZoomRatio = zoomRatio(stLens.zoom);
    view.nFocus = stLens.focus;
    view.bMoving = bMoves;
    nlohmann::json event = toJson(view);
    event["channel"] = number();
    m_stContext.objEvents.publish("lens", number(), event);
}

bool Channel::readNight() {
    int nState = m_stNow.bNight ? 1 : 0;
    m_stContext.objCamera.driver().value(number() - 1, kDayNightState, nState);
    const bool bBefore = m_stNow.bNight;
    m_stNow.bNight = 0 != nState;
    return bBefore != m_stNow.bNight;
}

// The driver is asked without a trace first; the controller only when something is different.
bool Channel::readRanges() {
    std::vector<int> vecMark;
    for (const u32 nKey : kRangeKeys) {
        ia_dynamic_params_attr_st stRange{};
        if (m_stContext.objCamera.driver().range(number() - 1, nKey, stRange)) {
            const int nItems = std::clamp(stRange.items_cnt, 0, IA_DYNAMIC_ITEMS_MAX);
            vecMark.push_back(static_cast<int>(nKey));
            vecMark.push_back(stRange.range_kind);
            vecMark.push_back(stRange.default_val);
            vecMark.insert(vecMark.end(), stRange.item, stRange.item + nItems);
        }
    }
    if (vecMark == m_vecRangeMark) {
        return false;
    }
    m_vecRangeMark = std::move(vecMark);
    m_stNow.vecRanges = rangesFromController();
    try {
        readStyle();
    } catch (const Refusal& objWhy) {
        m_stContext.fnMessage("channel " + std::to_string(number()) + ": " + objWhy.what());
    }
    return true;
}

// --- Reading, on the worker ---

std::optional<std::size_t> Channel::placeOf(u32 p_nKey) const {
    const auto found = std::find(m_stNow.pKeys->begin(), m_stNow.pKeys->end(), p_nKey);
    return m_stNow.pKeys->end() == found
               ? std::nullopt
               : std::optional<std::size_t>(static_cast<std::size_t>(found - m_stNow.pKeys->begin()));
}

Channel::Scheme* Channel::currentScheme() {
    const int nScheme = m_stNow.nScheme;
    const bool bThere = nScheme >= 0 && static_cast<std::size_t>(nScheme) < m_stNow.vecSchemes.size();
    return bThere ? &m_stNow.vecSchemes[static_cast<std::size_t>(nScheme)] : nullptr;
}

// The controller answers from its set, without the driver. The camera may switch at any moment: what is read belongs to
// one scheme when that is the same before and after.
void Channel::readValues() {
    for (int i = 0; i < kLooksForOneMoment; ++i) {
        int nBefore = -1;
        int nAfter = -1;
        m_pController->getParamScheme(nBefore);
        if (nBefore != m_stNow.nScheme) {
            m_bByItself = true;
            entered(m_stNow.nScheme, nBefore);
        }
        Scheme* const pScheme = currentScheme();
        if (nullptr == pScheme) {
            return;
        }
        std::vector<int> vecValues = pScheme->vecValues;
        for (std::size_t nPlace = 0; nPlace < vecValues.size(); ++nPlace) {
            m_pController->getParameter(static_cast<int>((*m_stNow.pKeys)[nPlace]), vecValues[nPlace]);
        }
        m_pController->getParamScheme(nAfter);
        if (nBefore == nAfter) {
            pScheme->vecValues = std::move(vecValues);
            return;
        }
    }
}

void Channel::readStored(int p_nScheme) {
    Scheme& scheme = m_stNow.vecSchemes[static_cast<std::size_t>(p_nScheme)];
    scheme.vecStored.assign(m_stNow.pKeys->size(), std::nullopt);
    try {
        apps::ParameterFile file = apps::readParameterFile(apps::parameterFileName(number(), p_nScheme));
        for (std::size_t nPlace = 0; nPlace < scheme.vecStored.size(); ++nPlace) {
            if (const apps::StoredValue* const pStored = file.find((*m_stNow.pKeys)[nPlace])) {
                scheme.vecStored[nPlace] = pStored->nValue;
            }
        }
    } catch (const apps::CommandError& objWhy) {
        m_stContext.fnMessage(objWhy.what());
    }
}

void Channel::readStyle() {
    m_stNow.pStyle = std::make_shared<const Style>(parseStyleDocument(m_pController->getUIStyleFile()));
}

// --- What scheme 0 does to the others ---

void Channel::walked(u32 p_nKey, int p_nValue) {
    const std::optional<std::size_t> place = placeOf(p_nKey);
    if (0 != m_stNow.nScheme || !place) {
        return;
    }
    if (kSchemeMode == p_nKey) {
        m_stNow.nFollow = 1 == p_nValue || 2 == p_nValue ? p_nValue : 0;
        for (int i = 1; i < m_stDescription.nSchemes; ++i) {
            m_stNow.vecSchemes[static_cast<std::size_t>(i)].vecValues[*place] = m_stNow.nFollow;
        }
    }
    if (kFollowDayNight == m_stNow.nFollow && isDayNightKey(p_nKey) && m_stNow.vecSchemes.size() > 1) {
        m_stNow.vecSchemes[1].vecValues[*place] = p_nValue;
    }
}

// A switch sends what differs from the scheme before; what is sent from scheme 0 reaches the others as well.
void Channel::entered(int p_nFrom, int p_nTo) {
    const bool bFrom = p_nFrom >= 0 && static_cast<std::size_t>(p_nFrom) < m_stNow.vecSchemes.size();
    const std::vector<int> vecFrom =
        bFrom ? m_stNow.vecSchemes[static_cast<std::size_t>(p_nFrom)].vecValues : std::vector<int>();
    m_stNow.nScheme = p_nTo;
    if (0 != p_nTo || m_stNow.vecSchemes.empty()) {
        return;
    }
    const std::vector<int> vecTo = m_stNow.vecSchemes.front().vecValues;
    for (std::size_t nPlace = 0; nPlace < vecTo.size(); ++nPlace) {
        const u32 nKey = (*m_stNow.pKeys)[nPlace];
        const bool bAll = m_stDescription.bGaps && kSchemeMode == nKey;
        if (!bFrom || bAll || vecFrom[nPlace] != vecTo[nPlace]) {
            walked(nKey, vecTo[nPlace]);
        }
    }
}

// --- Telling ---

// When the camera has switched meanwhile, what is seen now is its doing.
void Channel::conclude(const Actor& p_stActor, const std::string& p_strWhy) {
    readValues();
    readRanges();
    readNight();
    if (m_bByItself) {
        commit({"camera", ""}, whyByItself());
    } else {
        commit(p_stActor, p_strWhy);
    }
}

ParameterValue Channel::valueOf(const Known& p_stKnown, const Scheme& p_stScheme, std::size_t p_nPlace) const {
    ParameterValue value;
    value.nKey = (*p_stKnown.pKeys)[p_nPlace];
    value.strName = apps::nameOfKey(value.nKey);
    value.nValue = p_stScheme.vecValues[p_nPlace];
    if (const StyleItem* const pItem = p_stKnown.pStyle->find(value.nKey)) {
        value.standard = pItem->standard;
    }
    value.stored = p_stScheme.vecStored[p_nPlace];
    value.bLost = p_stScheme.bKept && !value.stored;
    return value;
}

ParameterValues Channel::values() {
    const Known known = shownReady();
    ParameterValues values;
    values.nScheme = known.nScheme;
    values.nRevision = known.nRevision;
    if (known.nScheme >= 0 && static_cast<std::size_t>(known.nScheme) < known.vecSchemes.size()) {
        const Scheme& scheme = known.vecSchemes[static_cast<std::size_t>(known.nScheme)];
        for (std::size_t nPlace = 0; nPlace < scheme.vecValues.size(); ++nPlace) {
            values.vecValues.push_back(valueOf(known, scheme, nPlace));
        }
    }
    return values;
}

void Channel::commit(const Actor& p_stActor, const std::string& p_strWhy, bool p_bTellScheme) {
    m_bByItself = false;
    const Known before = shown();
    const auto fnCurrent = [](const Known& p_stKnown) -> const Scheme* {
        const bool bThere =
            p_stKnown.nScheme >= 0 && static_cast<std::size_t>(p_stKnown.nScheme) < p_stKnown.vecSchemes.size();
        return bThere ? &p_stKnown.vecSchemes[static_cast<std::size_t>(p_stKnown.nScheme)] : nullptr;
    };
    nlohmann::json changes = nlohmann::json::array();
    const Scheme* const pNow = m_stNow.bReady ? fnCurrent(m_stNow) : nullptr;
    const Scheme* const pBefore = fnCurrent(before);
    const bool bSameKeys = before.pKeys == m_stNow.pKeys || *before.pKeys == *m_stNow.pKeys;
    for (std::size_t nPlace = 0; nullptr != pNow && nPlace < pNow->vecValues.size(); ++nPlace) {
        const ParameterValue value = valueOf(m_stNow, *pNow, nPlace);
        if (nullptr == pBefore || !bSameKeys || !isSame(value, valueOf(before, *pBefore, nPlace))) {
            changes.push_back(changeJson(value));
        }
    }
    for (const auto& [nKey, nValue] : m_stNow.mapSent) {
        const auto known = before.mapSent.find(nKey);
        if (m_stNow.bReady && (before.mapSent.end() == known || known->second != nValue)) {
            changes.push_back({{"key", nKey}, {"value", nValue}, {"unsaved", false}});
        }
    }
    nlohmann::json schemes = toJson(schemesOf(m_stNow), number());
    const bool bSchemes = m_stNow.bReady && (!before.bReady || schemes != toJson(schemesOf(before), number()));
    const bool bSwitched = m_stNow.bReady && (p_bTellScheme || before.nScheme != m_stNow.nScheme);
    const nlohmann::json ranges = toJson(m_stNow.vecRanges);
    const bool bRanges = m_stNow.bReady && before.pStyle != m_stNow.pStyle && ranges != toJson(before.vecRanges);
    if (bSwitched || bSchemes || bRanges || !changes.empty()) {
        ++m_stNow.nRevision;
        schemes["revision"] = m_stNow.nRevision;
    }
    {
        const std::lock_guard lock(m_mutex);
        m_stShown = m_stNow;
    }
    EventHub& events = m_stContext.objEvents;
    if (bSwitched) {
        m_stContext.fnSwitched(p_strWhy);
        events.publish("scheme", number(),
                       {{"channel", number()},
                        {"from", before.nScheme},
                        {"to", m_stNow.nScheme},
                        {"why", p_strWhy},
                        {"by", p_stActor.strName},
                        {"origin", p_stActor.strOrigin}});
    }
    if (!changes.empty()) {
        events.publish("parameter", number(),
                       {{"channel", number()},
                        {"scheme", m_stNow.nScheme},
                        {"revision", m_stNow.nRevision},
                        {"changes", std::move(changes)},
                        {"by", p_stActor.strName},
                        {"origin", p_stActor.strOrigin}});
    }
    if (bRanges) {
        nlohmann::json event = ranges;
        event["channel"] = number();
        event["revision"] = m_stNow.nRevision;
        events.publish("ranges", number(), event);
    }
    if (bSchemes) {
        events.publish("schemes", number(), schemes);
    }
    if (m_stNow.bReady && before.bNight != m_stNow.bNight) {
        events.publish("day-night", number(), {{"channel", number()}, {"state", m_stNow.bNight ? "night" : "day"}});
    }
}

// --- Refusals of the driver and of the video module ---

std::uint64_t Channel::transcriptEnd() const {
    return m_stContext.objCamera.transcript().total();
}

std::string Channel::refusalSince(std::uint64_t p_nNumber) const {
    simcam::TranscriptFilter stFilter;
    stFilter.failedOnly = true;
    stFilter.after = p_nNumber;
    std::string strWhy;
    for (const simcam::TranscriptEntry& entry : m_stContext.objCamera.transcript().entries(stFilter)) {
        const bool bDriver = simcam::TranscriptEntry::Kind::Driver == entry.kind;
        if (entry.channel != (bDriver ? number() - 1 : number())) {
            continue;
        }
        strWhy = (bDriver ? "driver command " : "the video module on ") + std::to_string(entry.command) + ": " +
                 (bDriver ? driverResultText(entry.result) : "it answered " + std::to_string(entry.result));
    }
    return strWhy;
}

void Channel::requireDone(bool p_bDone, const std::string& p_strWhat, std::uint64_t p_nSince) const {
    if (p_bDone) {
        return;
    }
    const std::string strWhy = refusalSince(p_nSince);
    throw Refusal(Refusal::Kind::Refused, "camera-refused",
                  "the camera refused " + p_strWhat + (strWhy.empty() ? "" : " (" + strWhy + ")"));
}

}  // namespace camerad
