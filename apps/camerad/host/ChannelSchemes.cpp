// The schemes of a channel: switching, windows, names, and what of them is kept.
//
// The controller sets, stores and discards the current scheme only. For another one the host goes there and comes back,
// with automatic switching off on the way. The driver sees both switches; listeners see only what came of it.
#include "apps/camerad/host/Channel.h"
#include "apps/camerad/host/FlashWatch.h"
#include "apps/camerad/host/PlainText.h"
#include "apps/camerad/host/SchemeRules.h"
#include "apps/camerad/host/SensorKeys.h"
#include "apps/shared/ParameterFile.h"
#include "platform/Clock.h"

#include <algorithm>

namespace camerad {

namespace {

constexpr int kRefusedByMedium = 0;  // of SaveResult::Failure

const char* followName(int p_nFollow) {
    switch (p_nFollow) {
        case kFollowSchedule:
            return "schedule";
        case kFollowDayNight:
            return "day-night";
        default:
            return "nothing";
    }
}

std::string schemeText(int p_nScheme) {
    return "scheme " + std::to_string(p_nScheme);
}

}  // namespace

void Channel::requireUserScheme(int p_nScheme) const {
    if (!isUserScheme(p_nScheme)) {
        throw Refusal(Refusal::Kind::NotFound, "no-such-scheme",
                      "channel " + std::to_string(number()) + " has the schemes 0 to " +
                          std::to_string(m_stDescription.nSchemes - 1) + ", not " + std::to_string(p_nScheme));
    }
}

std::vector<u32> Channel::unsavedOf(const Known& p_stKnown, const Scheme& p_stScheme) const {
    std::vector<u32> vecUnsaved;
    for (std::size_t nPlace = 0; p_stScheme.bKept && nPlace < p_stScheme.vecValues.size(); ++nPlace) {
        if (p_stScheme.vecStored[nPlace] != p_stScheme.vecValues[nPlace]) {
            vecUnsaved.push_back((*p_stKnown.pKeys)[nPlace]);
        }
    }
    return vecUnsaved;
}

bool Channel::isUnsaved(int p_nScheme) const {
    return !unsavedOf(m_stNow, m_stNow.vecSchemes[static_cast<std::size_t>(p_nScheme)]).empty();
}

SchemesView Channel::schemesOf(const Known& p_stKnown) const {
    SchemesView view;
    view.nRevision = p_stKnown.nRevision;
    view.nCurrent = p_stKnown.nScheme;
    view.nFactory = m_stDescription.nSchemes;
    view.bAutomatic = p_stKnown.stSettings.bAutomatic;
    view.strFollow = followName(p_stKnown.nFollow);
    view.bGaps = m_stDescription.bGaps;
    const auto fnPlace = [&](u32 p_nKey) {
        return static_cast<std::size_t>(std::find(p_stKnown.pKeys->begin(), p_stKnown.pKeys->end(), p_nKey) -
                                        p_stKnown.pKeys->begin());
    };
    const std::size_t places[] = {fnPlace(kStartHour), fnPlace(kStartMinute), fnPlace(kEndHour), fnPlace(kEndMinute)};
    std::vector<Window> vecWindows;
    for (std::size_t i = 0; i < p_stKnown.vecSchemes.size(); ++i) {
        const Scheme& scheme = p_stKnown.vecSchemes[i];
        if (!scheme.bKept) {
            continue;
        }
        const auto fnValue = [&](std::size_t p_nWhich) {
            const std::size_t nPlace = places[p_nWhich];
            return nPlace < scheme.vecValues.size() ? scheme.vecValues[nPlace] : 0;
        };
        const auto name = p_stKnown.stSettings.mapNames.find(static_cast<int>(i));
        SchemeView entry;
        entry.nIndex = static_cast<int>(i);
        entry.strName = p_stKnown.stSettings.mapNames.end() == name ? "Scheme " + std::to_string(i + 1) : name->second;
        entry.stWindow = {fnValue(0), fnValue(1), fnValue(2), fnValue(3)};
        entry.vecUnsaved = unsavedOf(p_stKnown, scheme);
        vecWindows.push_back(entry.stWindow);
        view.vecSchemes.push_back(std::move(entry));
    }
    const auto vecInForce = minutesInForce(vecWindows, m_stDescription.bGaps);
    for (std::size_t i = 0; i < vecInForce.size(); ++i) {
        view.vecSchemes[i].vecInForce = vecInForce[i];
    }
    return view;
}

SchemesView Channel::schemes() {
    return schemesOf(shownReady());
}

void Channel::keepSettings(const ChannelSettings& p_stSettings) {
    m_stNow.stSettings = p_stSettings;
    m_stContext.objSettings.keep(number(), p_stSettings);
    m_stContext.fnWritten(1);
}

// --- There and back ---

std::string Channel::switchTo(int p_nScheme) {
    const std::uint64_t nSince = transcriptEnd();
    entered(m_stNow.nScheme, p_nScheme);
    m_pController->setParamScheme(p_nScheme);
    readValues();
    return refusalSince(nSince);
}

// The controller may just be about to switch by itself. On a held clock that is over once all of its threads wait again;
// on a running one it looks once a second for some microseconds.
Channel::Stay Channel::leaveHome() {
    m_pController->setParamMode(0);
    platform::Clock::settle();
    tellSwitch();
    return {m_stNow.nScheme, m_stNow.stSettings.bAutomatic};
}

std::string Channel::returnHome(const Stay& p_stStay) {
    std::string strRefused;
    if (m_stNow.nScheme != p_stStay.nScheme) {
        strRefused = switchTo(p_stStay.nScheme);
    }
    m_pController->setParamMode(p_stStay.bAutomatic ? 1 : 0);
    return strRefused.empty() ? ""
                              : schemeText(p_stStay.nScheme) + " could not be applied again as a whole: " + strRefused;
}

std::string Channel::away(const std::function<void()>& p_fnWork) {
    const Stay stStay = leaveHome();
    try {
        p_fnWork();
    } catch (...) {
        returnHome(stStay);
        throw;
    }
    return returnHome(stStay);
}

void Channel::visit(int p_nScheme, const std::function<void()>& p_fnWork) {
    std::string strRefused;
    const std::string strBack = away([&] {
        strRefused = m_stNow.nScheme == p_nScheme ? "" : switchTo(p_nScheme);
        p_fnWork();
        readValues();
    });
    if (!strRefused.empty()) {
        throw Refusal(Refusal::Kind::Refused, "camera-refused",
                      "done, but " + schemeText(p_nScheme) + " could not be applied as a whole: " + strRefused);
    }
    if (!strBack.empty()) {
        throw Refusal(Refusal::Kind::Refused, "camera-refused", "done, but " + strBack);
    }
}

// --- Switching ---

void Channel::setScheme(int p_nScheme, const Actor& p_stActor) {
    if (p_nScheme != m_stDescription.nSchemes) {
        requireUserScheme(p_nScheme);
    }
    act([this, p_nScheme, p_stActor] {
        const std::string strRefused = p_nScheme == m_stNow.nScheme ? "" : switchTo(p_nScheme);
        ChannelSettings settings = m_stNow.stSettings;
        settings.nScheme = p_nScheme;
        std::optional<Refusal> refusal;
        try {
            if (settings.nScheme != m_stNow.stSettings.nScheme) {
                keepSettings(settings);
            }
        } catch (const Refusal& objWhy) {
            refusal.emplace(Refusal::Kind::Failed, "not-kept",
                            schemeText(p_nScheme) + " is in force, but not after a restart: " + objWhy.what());
        }
        conclude(p_stActor);
        if (!strRefused.empty()) {
            throw Refusal(Refusal::Kind::Refused, "camera-refused",
                          schemeText(p_nScheme) +
                              " is current now, but a value of it was refused, and what stands "
                              "behind it in the document was not sent: " +
                              strRefused);
        }
        if (refusal) {
            throw Refusal(*refusal);
        }
    });
}

void Channel::setAutomatic(bool p_bAutomatic, const Actor& p_stActor) {
    act([this, p_bAutomatic, p_stActor] {
        m_pController->setParamMode(p_bAutomatic ? 1 : 0);
        ChannelSettings settings = m_stNow.stSettings;
        settings.bAutomatic = p_bAutomatic;
        std::optional<Refusal> refusal;
        try {
            keepSettings(settings);
        } catch (const Refusal& objWhy) {
            refusal.emplace(Refusal::Kind::Failed, "not-kept",
                            std::string("automatic switching is set, but not after a restart: ") + objWhy.what());
        }
        conclude(p_stActor);
        if (refusal) {
            throw Refusal(*refusal);
        }
    });
}

void Channel::setFollow(const std::string& p_strFollow, const Actor& p_stActor) {
    int nMode = 0;
    while (nMode <= kFollowDayNight && p_strFollow != followName(nMode)) {
        ++nMode;
    }
    if (nMode > kFollowDayNight) {
        throw Refusal(
            Refusal::Kind::BadValue, "bad-value",
            "switching follows \"nothing\", \"schedule\" or \"day-night\", not \"" + plainLine(p_strFollow, 40) + "\"");
    }
    act([this, nMode, p_stActor] {
        if (!placeOf(kSchemeMode) || 0 == m_stDescription.nSchemes) {
            throw Refusal(Refusal::Kind::Conflict, "no-schedule", "this channel has no schemes that could switch");
        }
        std::optional<Refusal> refusal;
        try {
            visit(0, [&] { set(kSchemeMode, nMode, true); });
        } catch (const Refusal& objWhy) {
            refusal = objWhy;
        }
        conclude(p_stActor);
        if (refusal) {
            throw Refusal(*refusal);
        }
    });
}

void Channel::setWindow(int p_nScheme, const Window& p_stWindow, const Actor& p_stActor) {
    requireUserScheme(p_nScheme);
    const auto fnOutside = [](int p_nNumber, int p_nMost) { return p_nNumber < 0 || p_nNumber > p_nMost; };
    if (fnOutside(p_stWindow.nStartHour, 99) || fnOutside(p_stWindow.nEndHour, 99) ||
        fnOutside(p_stWindow.nStartMinute, 59) || fnOutside(p_stWindow.nEndMinute, 59)) {
        throw Refusal(Refusal::Kind::BadValue, "bad-value", "times of a window are 00:00 to 24:00, with minutes to 59");
    }
    const std::string strObjection = p_stWindow.objection(m_stDescription.bGaps);
    if (!strObjection.empty()) {
        throw Refusal(Refusal::Kind::Conflict, "window-not-storable", strObjection);
    }
    act([this, p_nScheme, p_stWindow, p_stActor] {
        const std::pair<u32, int> values[] = {{kStartHour, p_stWindow.nStartHour},
                                              {kStartMinute, p_stWindow.nStartMinute},
                                              {kEndHour, p_stWindow.nEndHour},
                                              {kEndMinute, p_stWindow.nEndMinute}};
        for (const auto& value : values) {
            if (!placeOf(value.first)) {
                throw Refusal(Refusal::Kind::Conflict, "no-schedule", "the schemes of this channel have no window");
            }
        }
        std::optional<Refusal> refusal;
        try {
            visit(p_nScheme, [&] {
                for (const auto& [nKey, nValue] : values) {
                    set(nKey, nValue, true);
                }
            });
        } catch (const Refusal& objWhy) {
            refusal = objWhy;
        }
        conclude(p_stActor);
        if (refusal) {
            throw Refusal(*refusal);
        }
    });
}

void Channel::setSchemeName(int p_nScheme, const std::string& p_strName, const Actor& p_stActor) {
    requireUserScheme(p_nScheme);
    if (p_strName.empty() || !isPlainText(p_strName) || charactersOf(p_strName) > kLongestSchemeName) {
        throw Refusal(Refusal::Kind::BadValue, "bad-value",
                      "the name of a scheme has 1 to " + std::to_string(kLongestSchemeName) +
                          " characters, none of them a control character");
    }
    act([this, p_nScheme, p_strName, p_stActor] {
        const ChannelSettings stBefore = m_stNow.stSettings;
        ChannelSettings settings = stBefore;
        settings.mapNames[p_nScheme] = p_strName;
        try {
            keepSettings(settings);
        } catch (const Refusal&) {
            m_stNow.stSettings = stBefore;
            throw;
        }
        commit(p_stActor, "host");
    });
}

// --- Keeping ---

SaveResult Channel::awayWith(void (Channel::*p_pfnWork)(SaveResult&)) {
    SaveResult result;
    int nHome = 0;
    const std::string strBack = away([&] {
        nHome = m_stNow.nScheme;
        (this->*p_pfnWork)(result);
    });
    if (!strBack.empty()) {
        result.vecFailures.push_back({nHome, kRefusedByMedium, strBack});
    }
    return result;
}

void Channel::saveEach(SaveResult& p_stResult) {
    for (int i = 0; i < m_stDescription.nSchemes; ++i) {
        if (!isUnsaved(i)) {
            continue;
        }
        const std::string strRefused = m_stNow.nScheme == i ? "" : switchTo(i);
        if (!strRefused.empty()) {
            p_stResult.vecFailures.push_back(
                {i, kRefusedByMedium,
                 "on the way to it the camera refused a value; what it holds is stored: " + strRefused});
        }
        readValues();
        const FlashWatch objWatch({apps::parameterFileName(number(), i)});
        const int nCode = m_pController->flush();
        m_stContext.fnWritten(objWatch.written());
        readStored(i);
        Window window;
        for (const SchemeView& view : schemesOf(m_stNow).vecSchemes) {
            window = view.nIndex == i ? view.stWindow : window;
        }
        if (0 != nCode) {
            p_stResult.vecFailures.push_back({i, nCode, window.objection(m_stDescription.bGaps)});
        } else if (isUnsaved(i)) {
            p_stResult.vecFailures.push_back({i, kRefusedByMedium, "the file could not be written; the old one stays"});
        } else {
            p_stResult.vecSchemes.push_back(i);
        }
    }
}

void Channel::discardEach(SaveResult& p_stResult) {
    for (int i = 0; i < m_stDescription.nSchemes; ++i) {
        if (!isUnsaved(i)) {
            continue;
        }
        readStored(i);
        const std::vector<std::optional<int>>& vecStored = m_stNow.vecSchemes[static_cast<std::size_t>(i)].vecStored;
        if (vecStored.end() != std::find(vecStored.begin(), vecStored.end(), std::nullopt)) {
            p_stResult.vecFailures.push_back(
                {i, kRefusedByMedium,
                 "its file does not hold all of its values, so there is nothing to go back to; save it"});
            continue;
        }
        std::string strRefused = m_stNow.nScheme == i ? "" : switchTo(i);
        const std::uint64_t nSince = transcriptEnd();
        Scheme& scheme = m_stNow.vecSchemes[static_cast<std::size_t>(i)];
        const std::vector<int> vecBefore = scheme.vecValues;
        for (std::size_t nPlace = 0; nPlace < vecBefore.size(); ++nPlace) {
            if (scheme.vecStored[nPlace] && *scheme.vecStored[nPlace] != vecBefore[nPlace]) {
                walked((*m_stNow.pKeys)[nPlace], *scheme.vecStored[nPlace]);
            }
        }
        const bool bDone = m_pController->resetToLastParameters();
        readValues();
        strRefused = bDone ? strRefused : refusalSince(nSince);
        if (!bDone || isUnsaved(i)) {
            p_stResult.vecFailures.push_back(
                {i, kRefusedByMedium,
                 "not every stored value could be put in force again" + (strRefused.empty() ? "" : ": " + strRefused)});
        } else {
            p_stResult.vecSchemes.push_back(i);
        }
    }
}

SaveResult Channel::save(const Actor& p_stActor) {
    return ask<SaveResult>([this, p_stActor] {
        const SaveResult result = awayWith(&Channel::saveEach);
        conclude(p_stActor);
        return result;
    });
}

SaveResult Channel::discard(const Actor& p_stActor) {
    return ask<SaveResult>([this, p_stActor] {
        const SaveResult result = awayWith(&Channel::discardEach);
        conclude(p_stActor);
        return result;
    });
}

}  // namespace camerad
