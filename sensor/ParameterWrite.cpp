// Every change of a parameter, from the host or from the controller itself: a walk over a list of records.
#include "platform/ImageAdjust.h"
#include "sensor/ISensorController.h"
#include "sensor/Keys.h"
#include "sensor/config/SensorKeyVal.h"
#include "sensor/diag/Message.h"
#include "technic/QVMutex.h"

#include <algorithm>
#include <cstdio>
#include <iterator>
#include <vector>

namespace {

constexpr char kSourceFile[] = "ISensorController.cpp";
constexpr diag::Operation kWalk = {"setParameters", "int ISensorController::setParameters(KeyVal*, u32, bool)"};

constexpr u32 kSecondChannel = 2;
constexpr u32 kIntelligentLight = 2;     // the value of KEY_LIGHT_TYPE that makes the twins count
constexpr u32 kHighestPowerSum = 100;    // per cent, near and far infrared light together
constexpr u32 kNoPartner = 0xFFFFFFFFu;  // the marker of a power that is not known

// A light parameter and the one that counts in its place under the intelligent light.
struct LightPair {
    u32 nBase;
    u32 nIntelligent;
};
constexpr LightPair kLightPairs[] = {
    {KEY_IR_MODE, KEY_IR_MODE_INTELL},
    {KEY_WHITE_MODE, KEY_WHITE_MODE_INTELL},
    {KEY_IR_MANUAL_STRG_NEAR, KEY_IR_MANUAL_STRG_NEAR_INTELL},
    {KEY_IR_MANUAL_STRG_MEDIUM, KEY_IR_MANUAL_STRG_MEDIUM_INTELL},
    {KEY_IR_MANUAL_STRG_FAR, KEY_IR_MANUAL_STRG_FAR_INTELL},
    {KEY_WHITE_MANUAL_STRG, KEY_WHITE_MANUAL_STRG_INTELL},
    {KEY_WHITE_MANUAL_STRG_MEDIUM, KEY_WHITE_MANUAL_STRG_MEDIUM_INTELL},
    {KEY_WHITE_MANUAL_STRG_FAR, KEY_WHITE_MANUAL_STRG_FAR_INTELL},
};

// Parameters that are kept but never sent.
bool isOnlyStored(u32 p_nKey) {
    switch (p_nKey) {
        case KEY_SCHEME_START_HOUR:
        case KEY_SCHEME_START_MIN:
        case KEY_SCHEME_END_HOUR:
        case KEY_SCHEME_END_MIN:
        case KEY_EMPTY1:
        case KEY_EMPTY2:
            return true;
        default:
            return false;
    }
}

bool isDayNightKey(u32 p_nKey) {
    switch (p_nKey) {
        case KEY_DN_MODE:
        case KEY_DTN_THR:
        case KEY_NTD_THR:
        case KEY_DTN_H:
        case KEY_DTN_M:
        case KEY_NTD_H:
        case KEY_NTD_M:
            return true;
        default:
            return false;
    }
}

int negated(u32 p_nKey) {
    return static_cast<int>(0u - p_nKey);
}

}  // namespace

// KEY_SCHEME_MODE decides only while scheme 0 is current; the other user schemes get a copy. Meant: a mode that is neither
// 1 nor 2 is stored as it is in scheme 0, and as 0 in the others.
void ISensorController::takeSchemeMode(u32 p_nMode) {
    if (0 != m_nCurScheme) {
        return;
    }
    setSwitchingSource(p_nMode);
    const u32 nCopy = 1 == p_nMode || 2 == p_nMode ? p_nMode : 0;
    for (u32 i = 1; i < m_stSysConf.nSchemeSum; ++i) {
        setKeyValToCache(i, KEY_SCHEME_MODE, nCopy, true);
    }
}

// Keys that go to the video module, or to their handler, without the table. True when this was one of them.
bool ISensorController::applyOnSecondChannel(u32 p_nKey, u32& p_nValue) {
    if (kSecondChannel != m_nCameraID) {
        return false;
    }
    switch (p_nKey) {
        case KEY_MIRROR:
            doMirror(p_nKey, IA_CMD_OPT_SET, &p_nValue);
            return true;
        case KEY_ANTI_SHAKE_SWITCH:
            doDIS(p_nKey, IA_CMD_OPT_SET, &p_nValue);
            return true;
        case KEY_NONE_COLOR_MODE:
        case KEY_TEMPERATURE_STRIP_SWITCH:
            notifyUnsigned(p_nKey, loadRelaxed(p_nValue));
            return true;
        default:
            return false;
    }
}

// Under switching by day and night, the day/night keys of scheme 0 also hold for scheme 1, and those of any other scheme
// are only recorded. True when the value is to be sent.
bool ISensorController::shareDayNightKey(u32 p_nKey, u32 p_nValue) {
    if (!m_bDNSchemeSwitch || !isDayNightKey(p_nKey)) {
        return true;
    }
    if (0 != m_nCurScheme) {
        return false;
    }
    setKeyValToCache(1, p_nKey, p_nValue, true);
    return true;
}

// Near and far infrared light share one supply on some hardware. True when the value may be applied.
bool ISensorController::isPowerAllowed(const KeyVal& p_stEntry) {
    if (!m_bisLimitedIrPower || (KEY_IR_MANUAL_STRG_NEAR != p_stEntry.key && KEY_IR_MANUAL_STRG_FAR != p_stEntry.key)) {
        return true;
    }
    const bool bNear = KEY_IR_MANUAL_STRG_NEAR == p_stEntry.key;
    u32 nVal = kNoPartner;
    if (-1 == getKeyValFromCache(m_nCurScheme, bNear ? KEY_IR_MANUAL_STRG_FAR : KEY_IR_MANUAL_STRG_NEAR, nVal)) {
        // Meant: the driver is asked for the entry's own key, not for its partner's.
        const bool bRead = SENSOR_ASSERT_DETAIL_OF(kWalk, QVS_SUCCESS == doIaCmd(p_stEntry.key, IA_CMD_OPT_GET, &nVal),
                                                   "QVS_SUCCESS == doIaCmd(p_pKeyval[i].key, IA_CMD_OPT_GET, &nVal)",
                                                   "get key(%d) val from 2a err", static_cast<int>(nVal));
        SENSOR_PRINT("### %s doIaCmd %s\n", bNear ? "KEY_IR_MANUAL_STRG_FAR" : "KEY_IR_MANUAL_STRG_NEAR",
                     bRead ? "sucess" : "error");
    }
    return kNoPartner == nVal || nVal + loadRelaxed(p_stEntry.value) <= kHighestPowerSum;
}

// Writes a light parameter to its twin and says in p_nKey which of the two is sent. False when the entry's side of the
// pair does not count under the current light.
bool ISensorController::followLightType(u32 p_nLightType, u32& p_nKey, u32 p_nValue) {
    for (const LightPair& stPair : kLightPairs) {
        if (stPair.nBase != p_nKey && stPair.nIntelligent != p_nKey) {
            continue;
        }
        const bool bBase = stPair.nBase == p_nKey;
        if (bBase == (kIntelligentLight == p_nLightType)) {
            return false;
        }
        setKeyValToCache(m_nCurScheme, bBase ? stPair.nIntelligent : stPair.nBase, p_nValue, true);
        p_nKey = stPair.nBase;
        return true;
    }
    return true;
}

// Hands the entry's value to the handler of the key. True when that succeeded.
bool ISensorController::dispatch(u32 p_nKey, u32 p_nIndex, KeyVal& p_stEntry) {
    keycmd stKeyCmdTmp{};
    const bool bFound = -1 != findFromKeyCmdMap(m_pKeyCmdMap, p_nKey, stKeyCmdTmp);
    if (!SENSOR_ASSERT_DETAIL_OF(kWalk, bFound, "-1 != findFromKeyCmdMap(m_pKeyCmdMap, nKey, stKeyCmdTmp)",
                                 "p_pKeyval[%u].key(%u)", p_nIndex, p_nKey)) {
        SENSOR_TRACE("not find (%d) \n", static_cast<int>(p_nKey));
        stKeyCmdTmp = {p_nKey, p_nKey, &ISensorController::doIaCmd, "unknow key", "ISensorController::doIaCmd"};
    }
    SENSOR_TRACE("====================== set %s (%d,%d) func:%s ia_cmd:%d =====================\n",
                 stKeyCmdTmp.szKeyName, static_cast<int>(stKeyCmdTmp.key),
                 static_cast<int>(loadRelaxed(p_stEntry.value)), stKeyCmdTmp.szHandlerName,
                 static_cast<int>(stKeyCmdTmp.ia_cmd));
    if (nullptr == stKeyCmdTmp.pfnHandler) {
        return true;  // a row that is only stored
    }
    const int nResult = bFound ? (this->*stKeyCmdTmp.pfnHandler)(stKeyCmdTmp.ia_cmd, IA_CMD_OPT_SET, &p_stEntry.value)
                               : exchangeWord(stKeyCmdTmp.ia_cmd, IA_CMD_OPT_SET, p_stEntry.value);
    if (IA_ERR_UNSUPPORTED == nResult || IA_ERR_BUSY == nResult || IA_ERR_INVALID_VALUE == nResult) {
        SENSOR_ERR_OF(kWalk, "set %s (%d,%d) func:%s ia_cmd:%d ~~~failed ia_ret=%d\n", stKeyCmdTmp.szKeyName,
                      static_cast<int>(stKeyCmdTmp.key), static_cast<int>(loadRelaxed(p_stEntry.value)),
                      stKeyCmdTmp.szHandlerName, static_cast<int>(stKeyCmdTmp.ia_cmd), nResult);
    }
    return QVS_SUCCESS == nResult;
}

void ISensorController::record(u32 p_nIndex, const KeyVal& p_stEntry) {
    const u32 nScheme = m_nCurScheme;
    const u32 nValue = loadRelaxed(p_stEntry.value);
    if (-1 == setKeyValToCache(nScheme, p_stEntry.key, nValue, false)) {
        SENSOR_DBG_OF(
            kWalk,
            "SET_KEY_VAL FAILED, m_nCurScheme(%d), p_pKeyval[%d].key(%d), p_pKeyval[%d].value(%d),  maybe jixin\n",
            static_cast<int>(nScheme), static_cast<int>(p_nIndex), static_cast<int>(p_stEntry.key),
            static_cast<int>(p_nIndex), static_cast<int>(nValue));
    }
}

// Everything that is to be done about one entry before it is recorded. p_nResult is what the call returns when the walk
// ends here; it may be 0, for key 0.
ISensorController::EntryOutcome ISensorController::applyEntry(u32 p_nIndex, KeyVal& p_stEntry, u32 p_nFirstKey,
                                                              int& p_nResult) {
    u32 nKey = p_stEntry.key;
    const u32 nValue = loadRelaxed(p_stEntry.value);
    if (KEY_SCHEME_MODE == nKey) {
        takeSchemeMode(nValue);
        return EntryOutcome::Record;
    }
    if (isOnlyStored(nKey) || applyOnSecondChannel(nKey, p_stEntry.value)) {
        return EntryOutcome::Record;
    }
    const bool bSend = shareDayNightKey(nKey, nValue);
    const u32 nLightType = companion(KEY_LIGHT_TYPE);
    if (!isPowerAllowed(p_stEntry)) {
        p_nResult = negated(p_nFirstKey);  // meant: the list's first key, not the offending one
        return EntryOutcome::EndWalk;
    }
    if (!followLightType(nLightType, nKey, nValue)) {
        return EntryOutcome::LeaveOut;
    }
    if (bSend && !dispatch(nKey, p_nIndex, p_stEntry)) {
        p_nResult = negated(nKey);
        return EntryOutcome::EndWalk;
    }
    return EntryOutcome::Record;
}

int ISensorController::setParameters(KeyVal* p_pKeyval, u32 p_nCount, bool p_bCache) {
    for (u32 i = 0; i < p_nCount; ++i) {
        KeyVal& stEntry = p_pKeyval[i];
        if (p_bCache && isKeyValSame(stEntry)) {
            SENSOR_TRACE(
                "ignore, (%u,%u) is newest, m_nFlags.switching_flag(%d), m_nLastScheme(%d), m_nCurScheme(%d)!!!\n",
                stEntry.key, loadRelaxed(stEntry.value), m_nFlags.anyBit(switching_flag) ? 1 : 0, int{m_nLastScheme},
                static_cast<int>(u32{m_nCurScheme}));
            continue;
        }
        int nResult = QVS_SUCCESS;
        const EntryOutcome eOutcome = applyEntry(i, stEntry, p_pKeyval[0].key, nResult);
        if (EntryOutcome::EndWalk == eOutcome) {
            return nResult;
        }
        if (EntryOutcome::Record == eOutcome && p_bCache) {
            record(i, stEntry);
        }
    }
    SENSOR_PRINT("\n");
    return QVS_SUCCESS;
}

int ISensorController::setParameter(int p_nKey, int p_nValue, bool p_bCache) {
    const QVMutexManager guard(&m_objMutex, kSourceFile, __LINE__);
    if (!isReady(__func__)) {
        return kNotReady;
    }
    SENSOR_DBG("p_Parameters22222222222(%d, %d)\n", p_nKey, p_nValue);
    KeyVal stKeyVal = {static_cast<u32>(p_nKey), static_cast<u32>(p_nValue)};
    return setParameters(&stKeyVal, 1, p_bCache);
}

int ISensorController::setParameters(const std::string& p_strText, bool p_bCache) {
    const QVMutexManager guard(&m_objMutex, kSourceFile, __LINE__);
    if (!isReady(__func__)) {
        return kNotReady;
    }
    SENSOR_DBG("p_Parameters1111111111(%s)\n", p_strText.c_str());
    // The scratch set holds any list of the user interface; a longer text gets an array of its own.
    std::vector<KeyVal> vecLong;
    KeyVal* pList = m_pstKeyValTmp;
    if (keyval_room(p_strText) > m_nKeyValSum) {
        vecLong.resize(keyval_room(p_strText));
        pList = vecLong.data();
    }
    u32 nCount = 0;
    keyval_str2st(p_strText, pList, &nCount);
    return setParameters(pList, nCount, p_bCache);
}

bool ISensorController::setCached(u32 p_nKey, int p_nValue) {
    return QVS_SUCCESS == setParameter(static_cast<int>(p_nKey), p_nValue, true);
}

bool ISensorController::setDNMode(int p_nMode) {
    return setCached(KEY_DN_MODE, p_nMode);
}
bool ISensorController::setWDRSwitch(int& p_nOn) {
    return setCached(KEY_WDR_MODE, p_nOn);
}
bool ISensorController::setWDRStrength(int& p_nStrength) {
    return setCached(KEY_WDR_STRG, p_nStrength);
}
bool ISensorController::setHLCSwitch(int& p_nOn) {
    return setCached(KEY_HLC_SWITCH, p_nOn);
}
bool ISensorController::setHLCStrength(int& p_nStrength) {
    return setCached(KEY_HLC_STRG, p_nStrength);
}
bool ISensorController::setBLCSwitch(int& p_nOn) {
    return setCached(KEY_BLC_SWITCH, p_nOn);
}
bool ISensorController::setBLCStrength(int& p_nStrength) {
    return setCached(KEY_BLC_STRG, p_nStrength);
}
bool ISensorController::setDefogSwitch(int& p_nOn) {
    return setCached(KEY_DEFLG_SWITCH, p_nOn);
}
bool ISensorController::setDefogStrength(int& p_nStrength) {
    return setCached(KEY_DEFLG_STRG, p_nStrength);
}
bool ISensorController::set2DSwitch(int& p_nOn) {
    return setCached(KEY_2D_NR_SWITCH, p_nOn);
}
bool ISensorController::set2DMode(int& p_nMode) {
    return setCached(KEY_2D_NR_MODE, p_nMode);
}
bool ISensorController::set2DAutoMaxStrength(int& p_nStrength) {
    return setCached(KEY_2D_NR_STRG_A, p_nStrength);
}
bool ISensorController::set2DManualMaxStrength(int& p_nStrength) {
    return setCached(KEY_2D_NR_STRG_M, p_nStrength);
}
bool ISensorController::set3DSwitch(int& p_nOn) {
    return setCached(KEY_3D_NR_SWITCH, p_nOn);
}
bool ISensorController::set3DMode(int& p_nMode) {
    return setCached(KEY_3D_NR_MODE, p_nMode);
}
bool ISensorController::set3DAutoMaxStrength(int& p_nStrength) {
    return setCached(KEY_3D_NR_STRG_A, p_nStrength);
}
bool ISensorController::set3DManualMaxStrength(int& p_nStrength) {
    return setCached(KEY_3D_NR_STRG_M, p_nStrength);
}
bool ISensorController::setBeaway(int& p_nOn) {
    return setCached(KEY_BEAWAY, p_nOn);
}
bool ISensorController::setWhiteMode(int p_nMode) {
    return setCached(KEY_WHITE_MODE, p_nMode);
}

bool ISensorController::setIRSwitch(int p_nOn) {
    if (1 == p_nOn) {
        int nWhite = 0;
        if (!getWhiteSwitch(nWhite) || (1 == nWhite && !setWhiteSwitch(0))) {
            return false;
        }
    }
    return setCached(KEY_IR_SWITCH, p_nOn);
}

bool ISensorController::setWhiteSwitch(int p_nOn) {
    if (1 == p_nOn) {
        int nInfrared = 0;
        if (!getIRSwitch(nInfrared) || (1 == nInfrared && !setIRSwitch(0))) {
            return false;
        }
    }
    return setCached(KEY_WHITE_SWITCH, p_nOn);
}
