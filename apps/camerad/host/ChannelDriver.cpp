// What of a channel goes straight to its driver: ranges, shutter, lens, day and night, raw checks.
#include "apps/camerad/host/Channel.h"
#include "apps/camerad/host/PlainText.h"
#include "apps/camerad/host/SensorKeys.h"
#include "apps/shared/KeyNames.h"
#include "apps/shared/NearestMatch.h"

#include <algorithm>
#include <sstream>

namespace camerad {

namespace {

constexpr int kMostShutterPlaces = 30;  // the controller looks no further
constexpr int kClosedIris = 256;
constexpr int kOpenIris = 25600;

std::vector<int> numbersOf(const std::string& p_strList) {
    std::istringstream stream(p_strList);
    std::vector<int> vecNumbers;
    for (int nNumber = 0; stream >> nNumber;) {
        vecNumbers.push_back(nNumber);
    }
    return vecNumbers;
}

using Step = bool (*)(ISensorController&);
struct Action {
    const char* szName;
    Step pfnStep;
};

// Actions that are parameters are sent, not recorded.
const Action kActions[] = {
    {"zoom-in", [](ISensorController& p_objLens) { return p_objLens.zoomIn(); }},
    {"zoom-out", [](ISensorController& p_objLens) { return p_objLens.zoomOut(); }},
    {"focus-near", [](ISensorController& p_objLens) { return p_objLens.focusNear(); }},
    {"focus-far", [](ISensorController& p_objLens) { return p_objLens.focusFar(); }},
    {"auto-focus",
     [](ISensorController& p_objLens) { return 0 == p_objLens.setParameter(static_cast<int>(kFocusOnce), 1, false); }},
    {"iris-open", [](ISensorController& p_objLens) { return p_objLens.irisUp(); }},
    {"iris-close", [](ISensorController& p_objLens) { return p_objLens.irisDown(); }},
    {"lens-reset",
     [](ISensorController& p_objLens) { return 0 == p_objLens.setParameter(static_cast<int>(kLensReset), 1, false); }},
};

// "(1,2,3)": numbers of 32 bits, three of them or up to sixteen.
bool isCheckList(const std::string& p_strText) {
    constexpr std::size_t kLongest = 200;
    constexpr int kMostNumbers = 16;
    if (p_strText.size() > kLongest || p_strText.size() < 2 || '(' != p_strText.front() || ')' != p_strText.back()) {
        return false;
    }
    std::istringstream stream(p_strText.substr(1, p_strText.size() - 2));
    int nNumbers = 0;
    for (std::string strItem; std::getline(stream, strItem, ',');) {
        const std::size_t nSign = !strItem.empty() && '-' == strItem.front() ? 1 : 0;
        const std::string strDigits = strItem.substr(nSign);
        const bool bDigits = !strDigits.empty() && std::string::npos == strDigits.find_first_not_of("0123456789");
        int nNumber = 0;
        if (!bDigits || !(std::istringstream(strItem) >> nNumber)) {
            return false;
        }
        ++nNumbers;
    }
    return ',' != p_strText[p_strText.size() - 2] && nNumbers >= 3 && nNumbers <= kMostNumbers;
}

}  // namespace

std::vector<RangeView> Channel::rangesFromController() {
    std::vector<RangeView> vecRanges;
    for (const u32 nKey : kRangeKeys) {
        RangeView range;
        std::string strValues;
        if (nullptr != m_stNow.pStyle->find(nKey) &&
            m_pController->getSensorParamRange(static_cast<int>(nKey), range.nDefault, strValues)) {
            range.nKey = nKey;
            range.vecValues = numbersOf(strValues);
            vecRanges.push_back(std::move(range));
        }
    }
    return vecRanges;
}

std::vector<RangeView> Channel::ranges() {
    return ask<std::vector<RangeView>>([this] {
        const bool bNews = readRanges();
        std::vector<RangeView> vecRanges = rangesFromController();
        if (bNews) {
            commit({"camera", ""}, whyByItself());
        }
        return vecRanges;
    });
}

// --- Longest shutter ---

ShutterView Channel::shutter() {
    return ask<ShutterView>([this] {
        ShutterView view;
        int nDefault = 0;
        std::string strValues;
        const std::uint64_t nSince = transcriptEnd();
        requireDone(m_pController->getSensorParamRange(static_cast<int>(kMaxShutter), nDefault, strValues),
                    "to tell the range of the longest shutter", nSince);
        view.vecValues = numbersOf(strValues);
        if (view.vecValues.size() > kMostShutterPlaces) {
            view.vecValues.resize(kMostShutterPlaces);
        }
        int nPlace = 0;
        if (m_pController->getShutterValue(nPlace)) {
            view.place = nPlace;
        }
        return view;
    });
}

void Channel::setShutter(int p_nPlace, const Actor& p_stActor) {
    act([this, p_nPlace, p_stActor] {
        int nDefault = 0;
        std::string strValues;
        m_pController->getSensorParamRange(static_cast<int>(kMaxShutter), nDefault, strValues);
        const int nPlaces = std::min(static_cast<int>(numbersOf(strValues).size()), kMostShutterPlaces);
        if (p_nPlace < 0 || p_nPlace >= nPlaces) {
            throw Refusal(Refusal::Kind::BadValue, "bad-value",
                          "the longest shutter has the places 0 to " + std::to_string(nPlaces - 1) + " now, not " +
                              std::to_string(p_nPlace));
        }
        const std::uint64_t nSince = transcriptEnd();
        const bool bDone = m_pController->setShutterValue(p_nPlace);
        conclude(p_stActor);
        requireDone(bDone, "the longest shutter", nSince);
    });
}

void Channel::stepShutter(int p_nStep, const Actor& p_stActor) {
    act([this, p_nStep, p_stActor] {
        const std::uint64_t nSince = transcriptEnd();
        const bool bDone = p_nStep > 0 ? m_pController->shutterUp() : m_pController->shutterDown();
        conclude(p_stActor);
        requireDone(bDone, "to step the longest shutter: its value may be none of the list now", nSince);
    });
}

// --- Lens ---

LensView Channel::lensNow() {
    LensView view;
    const std::uint64_t nSince = transcriptEnd();
    int nZoomStatus = IA_EXEC_DONE;
    int nFocusStatus = IA_EXEC_DONE;
    const bool bDone = m_pController->getZoomValue(view.nZoom, view.nZoomRatio) &&
                       m_pController->getFocusValue(view.nFocus) && m_pController->getFocusMode(view.nFocusMode) &&
                       m_pController->getIrisValue(view.nIris) && m_pController->getAFStatistic(view.nSharpness) &&
                       m_pController->getCmdExecStatus(static_cast<int>(kZoomPosition), nZoomStatus) &&
                       m_pController->getCmdExecStatus(static_cast<int>(kFocusPosition), nFocusStatus);
    requireDone(bDone, "to tell where the lens stands", nSince);
    view.bMoving = IA_EXEC_RUNNING == nZoomStatus || IA_EXEC_RUNNING == nFocusStatus;
    return view;
}

LensView Channel::lens() {
    return ask<LensView>([this] { return lensNow(); });
}

void Channel::lensAction(const std::string& p_strAction, const Actor& p_stActor) {
    std::vector<std::string> vecNames;
    Step pfnStep = nullptr;
    for (const Action& action : kActions) {
        vecNames.emplace_back(action.szName);
        pfnStep = p_strAction == action.szName ? action.pfnStep : pfnStep;
    }
    if (nullptr == pfnStep) {
        throw Refusal(Refusal::Kind::NotFound, "no-such-action",
                      "the lens has no action \"" + plainLine(p_strAction, 40) + "\"" +
                          apps::didYouMean(apps::nearestMatch(p_strAction, vecNames)));
    }
    act([this, pfnStep, p_strAction, p_stActor] {
        const std::uint64_t nSince = transcriptEnd();
        const bool bDone = pfnStep(*m_pController);
        m_bLensMoved = true;
        conclude(p_stActor);
        requireDone(bDone, p_strAction, nSince);
    });
}

void Channel::checkLensTarget(const LensTarget& p_stTarget) const {
    const auto fnCheck = [this](const std::optional<int>& p_value, u32 p_nCommand, const char* p_szWhat) {
        ia_dynamic_params_attr_st stRange{};
        if (!p_value || !m_stContext.objCamera.driver().range(number() - 1, p_nCommand, stRange)) {
            return;
        }
        const bool bIris = kIrisPosition == p_nCommand;
        const int nMin = bIris ? kClosedIris : stRange.min_val;
        const int nMax = bIris ? kOpenIris : stRange.max_val;
        if (*p_value < nMin || *p_value > nMax) {
            throw Refusal(Refusal::Kind::BadValue, "bad-value",
                          std::string(p_szWhat) + " takes " + std::to_string(nMin) + " to " + std::to_string(nMax) +
                              ", not " + std::to_string(*p_value));
        }
    };
    fnCheck(p_stTarget.focusMode, kFocusMode, "focusMode");
    fnCheck(p_stTarget.iris, kIrisPosition, "iris");
    fnCheck(p_stTarget.zoom, kZoomPosition, "zoom");
    fnCheck(p_stTarget.focus, kFocusPosition, "focus");
}

void Channel::moveLens(const LensTarget& p_stTarget, const Actor& p_stActor) {
    act([this, p_stTarget, p_stActor] {
        checkLensTarget(p_stTarget);
        const std::uint64_t nSince = transcriptEnd();
        std::string strRefused;
        const auto fnMove = [&](const std::optional<int>& p_value, bool (ISensorController::*p_pfnMove)(int),
                                const char* p_szWhat) {
            if (p_value && strRefused.empty() && !(m_pController.get()->*p_pfnMove)(*p_value)) {
                strRefused = std::string(p_szWhat) + " " + std::to_string(*p_value);
            }
        };
        fnMove(p_stTarget.focusMode, &ISensorController::setFocusMode, "the focus mode");
        fnMove(p_stTarget.iris, &ISensorController::setIrisValue, "the iris position");
        fnMove(p_stTarget.zoom, &ISensorController::setZoomValue, "the zoom position");
        fnMove(p_stTarget.focus, &ISensorController::setFocusValue, "the focus position");
        m_bLensMoved = true;
        conclude(p_stActor);
        requireDone(strRefused.empty(), strRefused, nSince);
    });
}

// --- Day and night, status, checks ---

bool Channel::isNight() {
    return ask<bool>([this] {
        int nState = 0;
        const std::uint64_t nSince = transcriptEnd();
        requireDone(m_pController->getDNState(nState), "to tell whether it is day or night", nSince);
        return 0 != nState;
    });
}

void Channel::setNight(bool p_bNight, const Actor& p_stActor) {
    act([this, p_bNight, p_stActor] {
        const std::uint64_t nSince = transcriptEnd();
        const bool bDone = m_pController->setDNState(p_bNight ? 1 : 0);
        conclude(p_stActor);
        requireDone(bDone, p_bNight ? "night" : "day", nSince);
    });
}

bool Channel::isRunning(u32 p_nCommand) {
    return ask<bool>([this, p_nCommand] {
        if (!m_stContext.objCamera.driver().isSupported(number() - 1, p_nCommand)) {
            throw Refusal(
                Refusal::Kind::NotFound, "no-such-command",
                "the driver has no command " + std::to_string(p_nCommand) + " on channel " + std::to_string(number()));
        }
        int nStatus = IA_EXEC_DONE;
        const std::uint64_t nSince = transcriptEnd();
        requireDone(m_pController->getCmdExecStatus(static_cast<int>(p_nCommand), nStatus),
                    "to tell what became of command " + std::to_string(p_nCommand), nSince);
        return IA_EXEC_RUNNING == nStatus;
    });
}

int Channel::sensorCheck(std::string& p_strText, const Actor& p_stActor) {
    if (!isCheckList(p_strText)) {
        throw Refusal(
            Refusal::Kind::BadValue, "bad-value",
            "a sensor check is a list of three to sixteen whole numbers in parentheses, for instance \"(1,2,3)\"");
    }
    const auto [nResult, strText] = ask<std::pair<int, std::string>>([this, strList = p_strText, p_stActor] {
        std::string strInOut = strList;
        const int nAnswer = m_pController->SensorCheck(strInOut);
        conclude(p_stActor);
        return std::make_pair(nAnswer, strInOut);
    });
    p_strText = strText;
    return nResult;
}

}  // namespace camerad
