// The parameters of a channel: reading one, changing some.
#include "apps/camerad/host/Channel.h"
#include "apps/camerad/host/SensorKeys.h"
#include "apps/shared/KeyNames.h"
#include "apps/shared/NearestMatch.h"

#include <algorithm>
#include <cstdlib>

namespace camerad {

namespace {

// What the channel has that is most like a key it does not have.
std::string nearestTo(u32 p_nKey, const Style& p_stStyle) {
    std::vector<std::string> vecNames;
    const StyleItem* pNearest = nullptr;
    const auto fnDistance = [p_nKey](u32 p_nOther) {
        return p_nOther > p_nKey ? p_nOther - p_nKey : p_nKey - p_nOther;
    };
    for (const StyleTab& tab : p_stStyle.vecTabs) {
        for (const StyleGroup& group : tab.vecGroups) {
            for (const StyleItem& item : group.vecItems) {
                vecNames.push_back(apps::shortNameOfKey(item.nKey));
                if (nullptr == pNearest || fnDistance(item.nKey) < fnDistance(pNearest->nKey)) {
                    pNearest = &item;
                }
            }
        }
    }
    const std::string strLike = apps::nearestMatch(apps::shortNameOfKey(p_nKey), vecNames);
    if (!strLike.empty()) {
        return apps::didYouMean(strLike);
    }
    return nullptr == pNearest ? "" : "; the nearest that it has is " + apps::describeKey(pNearest->nKey);
}

Refusal noSuchKey(int p_nChannel, u32 p_nKey, const Style& p_stStyle) {
    return {Refusal::Kind::NotFound, "no-such-parameter",
            "channel " + std::to_string(p_nChannel) + " has no parameter " + apps::describeKey(p_nKey) +
                nearestTo(p_nKey, p_stStyle)};
}

Refusal badValue(u32 p_nKey, const std::string& p_strObjection, int p_nValue) {
    return {Refusal::Kind::BadValue, "bad-value",
            apps::describeKey(p_nKey) + " " + p_strObjection + ", not " + std::to_string(p_nValue)};
}

// Keys that limit another one are in no document, and can be read all the same.
bool isLimit(u32 p_nKey, const Style& p_stStyle) {
    for (const StyleTab& tab : p_stStyle.vecTabs) {
        for (const StyleGroup& group : tab.vecGroups) {
            for (const StyleItem& item : group.vecItems) {
                if (item.minKey == p_nKey || item.maxKey == p_nKey) {
                    return true;
                }
            }
        }
    }
    return false;
}

}  // namespace

const StyleItem& Channel::itemOf(u32 p_nKey) const {
    const StyleItem* const pItem = m_stNow.pStyle->find(p_nKey);
    if (nullptr == pItem) {
        throw noSuchKey(number(), p_nKey, *m_stNow.pStyle);
    }
    return *pItem;
}

int Channel::valueNow(u32 p_nKey, int p_nOther) {
    const Scheme* const pScheme = currentScheme();
    const std::optional<std::size_t> place = placeOf(p_nKey);
    return nullptr != pScheme && place ? pScheme->vecValues[*place] : p_nOther;
}

// A key without a record is read from the driver, which only some of them can be.
ParameterValue Channel::singleValue(u32 p_nKey) {
    const Scheme* const pScheme = currentScheme();
    const std::optional<std::size_t> place = placeOf(p_nKey);
    if (nullptr != pScheme && place) {
        return valueOf(m_stNow, *pScheme, *place);
    }
    const bool bKnown =
        nullptr != m_stNow.pStyle->find(p_nKey) || isLimit(p_nKey, *m_stNow.pStyle) || !apps::nameOfKey(p_nKey).empty();
    if (!bKnown) {
        throw noSuchKey(number(), p_nKey, *m_stNow.pStyle);
    }
    int nValue = 0;
    if (!m_stContext.objCamera.driver().value(number() - 1, p_nKey, nValue)) {
        throw Refusal(
            Refusal::Kind::Refused, "not-readable",
            apps::describeKey(p_nKey) + " can be set and not read back: neither a scheme nor the driver holds it");
    }
    const std::uint64_t nSince = transcriptEnd();
    requireDone(m_pController->getParameter(static_cast<int>(p_nKey), nValue), "to tell " + apps::describeKey(p_nKey),
                nSince);
    ParameterValue value;
    value.nKey = p_nKey;
    value.strName = apps::nameOfKey(p_nKey);
    value.nValue = nValue;
    return value;
}

ParameterValue Channel::value(u32 p_nKey) {
    return ask<ParameterValue>([this, p_nKey] {
        readValues();
        const ParameterValue result = singleValue(p_nKey);
        commit({"camera", ""}, whyByItself());
        return result;
    });
}

std::optional<Refusal> Channel::objectionTo(const Change& p_stChange, bool p_bRecord) {
    const StyleItem* const pItem = m_stNow.pStyle->find(p_stChange.nKey);
    if (nullptr == pItem) {
        return noSuchKey(number(), p_stChange.nKey, *m_stNow.pStyle);
    }
    if (!p_bRecord && isOfSchedule(p_stChange.nKey)) {
        return Refusal(Refusal::Kind::BadValue, "bad-value",
                       apps::describeKey(p_stChange.nKey) +
                           " is kept with the scheme and never sent: it can only be set with \"record\"");
    }
    if (const std::optional<std::string> objection = pItem->objection(p_stChange.nValue)) {
        return badValue(p_stChange.nKey, *objection, p_stChange.nValue);
    }
    int nLimit = 0;
    if (pItem->minKey && m_pController->getParameter(static_cast<int>(*pItem->minKey), nLimit) &&
        p_stChange.nValue < nLimit) {
        return badValue(p_stChange.nKey, "takes " + std::to_string(nLimit) + " and more now", p_stChange.nValue);
    }
    if (pItem->maxKey && m_pController->getParameter(static_cast<int>(*pItem->maxKey), nLimit) &&
        p_stChange.nValue > nLimit) {
        return badValue(p_stChange.nKey, "takes " + std::to_string(nLimit) + " and less now", p_stChange.nValue);
    }
    return std::nullopt;
}

int Channel::set(u32 p_nKey, int p_nValue, bool p_bRecord) {
    // The controller leaves out what is recorded and in force already.
    const std::optional<std::size_t> place = placeOf(p_nKey);
    int nBefore = 0;
    const bool bInForce =
        p_bRecord && place && m_pController->getParameter(static_cast<int>(p_nKey), nBefore) && nBefore == p_nValue;
    if (!bInForce) {
        walked(p_nKey, p_nValue);
    }
    return m_pController->setParameter(static_cast<int>(p_nKey), p_nValue, p_bRecord);
}

ChangeResult Channel::changeOne(const Change& p_stChange, bool p_bRecord) {
    ChangeResult result;
    result.nKey = p_stChange.nKey;
    result.refusal = objectionTo(p_stChange, p_bRecord);
    if (result.refusal) {
        return result;
    }
    const std::uint64_t nSince = transcriptEnd();
    if (0 != set(p_stChange.nKey, p_stChange.nValue, p_bRecord)) {
        const std::string strWhy = refusalSince(nSince);
        result.refusal.emplace(
            Refusal::Kind::Refused, "camera-refused",
            "the camera refused " + std::to_string(p_stChange.nValue) + " for " + apps::describeKey(p_stChange.nKey) +
                (strWhy.empty() ? " (together with another value it is too much)" : " (" + strWhy + ")"));
    }
    return result;
}

// Says what is in force, once everything has been read again.
void Channel::completeResult(ChangeResult& p_stResult, const Change& p_stChange, bool p_bRecord) {
    int nDriver = p_stChange.nValue;
    const bool bInDriver = m_stContext.objCamera.driver().value(number() - 1, p_stChange.nKey, nDriver);
    const StyleItem* const pItem = m_stNow.pStyle->find(p_stChange.nKey);
    const bool bRecorded = placeOf(p_stChange.nKey).has_value();
    const bool bButton = nullptr != pItem && "button" == pItem->strType;
    if (p_stResult.refusal) {
        const bool bKnown = (bRecorded || bInDriver) && !bButton;
        p_stResult.nValue = valueNow(p_stChange.nKey, bKnown ? nDriver : 0);
        if (bKnown && Refusal::Kind::Refused == p_stResult.refusal->kind()) {
            p_stResult.refusal.emplace(
                Refusal::Kind::Refused, "camera-refused",
                std::string(p_stResult.refusal->what()) + "; " + std::to_string(p_stResult.nValue) + " stays in force");
        }
        return;
    }
    if (!bRecorded || !p_bRecord) {
        p_stResult.nValue = bButton || !bInDriver || bRecorded ? p_stChange.nValue : nDriver;
        return;
    }
    p_stResult.nValue = valueNow(p_stChange.nKey, p_stChange.nValue);
    const bool bFactory = m_stNow.nScheme == m_stDescription.nSchemes;
    if (bFactory) {
        p_stResult.nValue = p_stChange.nValue;  // sent; the factory scheme records nothing
    } else if (p_stResult.nValue != p_stChange.nValue) {
        p_stResult.refusal.emplace(Refusal::Kind::Conflict, "without-effect",
                                   apps::describeKey(p_stChange.nKey) + " stays at " +
                                       std::to_string(p_stResult.nValue) +
                                       ": another parameter counts in its place under the light type in force");
    }
}

// What no scheme holds is told as well, so that everybody shows the same.
void Channel::noteSent(const ChangeResult& p_stResult) {
    const StyleItem* const pItem = m_stNow.pStyle->find(p_stResult.nKey);
    if (!p_stResult.refusal && nullptr != pItem && "button" != pItem->strType && !placeOf(p_stResult.nKey)) {
        m_stNow.mapSent[p_stResult.nKey] = p_stResult.nValue;
    }
}

std::vector<ChangeResult> Channel::changeAll(const std::vector<Change>& p_vecChanges, bool p_bRecord,
                                             const Actor& p_stActor) {
    std::vector<ChangeResult> vecResults;
    for (const Change& change : p_vecChanges) {
        vecResults.push_back(changeOne(change, p_bRecord));
    }
    readValues();
    for (std::size_t i = 0; i < p_vecChanges.size(); ++i) {
        // Of a key that is there twice the last one says what is in force.
        const bool bLast =
            std::none_of(p_vecChanges.begin() + static_cast<std::ptrdiff_t>(i) + 1, p_vecChanges.end(),
                         [&](const Change& p_stLater) { return p_stLater.nKey == p_vecChanges[i].nKey; });
        if (bLast) {
            completeResult(vecResults[i], p_vecChanges[i], p_bRecord);
            noteSent(vecResults[i]);
        } else {
            vecResults[i].nValue = p_vecChanges[i].nValue;
        }
    }
    const int nScheme = m_stNow.nScheme;
    conclude(p_stActor);
    for (ChangeResult& result : vecResults) {
        result.nScheme = nScheme;
        result.nRevision = m_stNow.nRevision;
    }
    return vecResults;
}

std::vector<ChangeResult> Channel::change(const std::vector<Change>& p_vecChanges, bool p_bRecord,
                                          const Actor& p_stActor) {
    return ask<std::vector<ChangeResult>>(
        [this, p_vecChanges, p_bRecord, p_stActor] { return changeAll(p_vecChanges, p_bRecord, p_stActor); });
}

ParameterValue Channel::setToDefault(u32 p_nKey, const Actor& p_stActor) {
    return ask<ParameterValue>([this, p_nKey, p_stActor] {
        const StyleItem& item = itemOf(p_nKey);
        if (!item.standard) {
            throw Refusal(Refusal::Kind::Conflict, "no-default",
                          apps::describeKey(p_nKey) + " is in no scheme and has no default");
        }
        const std::vector<ChangeResult> vecResults = changeAll({{p_nKey, *item.standard}}, true, p_stActor);
        if (vecResults.front().refusal) {
            throw Refusal(*vecResults.front().refusal);
        }
        return singleValue(p_nKey);
    });
}

ParameterValue Channel::restore(u32 p_nKey, const Actor& p_stActor) {
    return ask<ParameterValue>([this, p_nKey, p_stActor] {
        itemOf(p_nKey);
        if (!placeOf(p_nKey)) {
            throw Refusal(Refusal::Kind::Conflict, "not-recorded",
                          apps::describeKey(p_nKey) + " is in no scheme: there is nothing to send again");
        }
        const std::uint64_t nSince = transcriptEnd();
        walked(p_nKey, valueNow(p_nKey, 0));
        const int nResult = m_pController->restore(static_cast<int>(p_nKey));
        conclude(p_stActor);
        requireDone(0 == nResult, std::to_string(valueNow(p_nKey, 0)) + " for " + apps::describeKey(p_nKey), nSince);
        return singleValue(p_nKey);
    });
}

void Channel::restoreFocusAndExposure(const Actor& p_stActor) {
    act([this, p_stActor] {
        if (!placeOf(kFocusMode) || !placeOf(kExposureMode)) {
            throw Refusal(Refusal::Kind::Conflict, "not-recorded",
                          "the schemes of this channel hold no focus mode (1536) and exposure mode (16) to go back to");
        }
        const std::uint64_t nSince = transcriptEnd();
        const bool bDone = m_pController->restoreAeMode();
        conclude(p_stActor);
        requireDone(bDone, "to go back to the focus mode and exposure mode of the scheme", nSince);
    });
}

std::string Channel::styleDocument() {
    return ask<std::string>([this] { return m_pController->getUIStyleFile(); });
}

}  // namespace camerad
