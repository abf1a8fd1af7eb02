// The parameter sets as the controller's memory of what the driver holds.
#include "sensor/ISensorController.h"
#include "sensor/diag/Message.h"

#include <algorithm>

namespace {

// The first record with this key, -1 without one. Keys never change after init, so that only values are shared words.
int indexOf(const KeyVal* p_pSet, u32 p_nSum, u32 p_nKey) {
    const KeyVal* const pEnd = p_pSet + p_nSum;
    const KeyVal* const pFound =
        std::find_if(p_pSet, pEnd, [=](const KeyVal& p_stKeyVal) { return p_stKeyVal.key == p_nKey; });
    return pEnd == pFound ? -1 : static_cast<int>(pFound - p_pSet);
}

}  // namespace

const KeyVal* ISensorController::setOf(u32 p_nScheme) const {
    return nullptr == m_ppUserKeyVal || p_nScheme > m_stSysConf.nSchemeSum ? nullptr : m_ppUserKeyVal[p_nScheme];
}

KeyVal* ISensorController::setOf(u32 p_nScheme) {
    return const_cast<KeyVal*>(static_cast<const ISensorController*>(this)->setOf(p_nScheme));
}

int ISensorController::setKeyValToCache(u32 p_nScheme, u32 p_nKey, u32 p_nValue, bool p_bForce) {
    if (!p_bForce && p_nScheme >= m_stSysConf.nSchemeSum) {
        return -2;
    }
    KeyVal* const pSet = setOf(p_nScheme);
    const int nIndex = nullptr == pSet ? -1 : indexOf(pSet, m_nKeyValSum, p_nKey);
    if (-1 != nIndex) {
        storeRelaxed(pSet[nIndex].value, p_nValue);
    }
    return nIndex;
}

int ISensorController::getKeyValFromCache(u32 p_nScheme, u32 p_nKey, u32& p_nValue) const {
    const KeyVal* const pSet = setOf(p_nScheme);
    if (nullptr == pSet) {
        SENSOR_TRACE("can not find val, invalid sheme(%d) \n", static_cast<int>(p_nScheme));
        return -1;
    }
    const int nIndex = indexOf(pSet, m_nKeyValSum, p_nKey);
    if (-1 != nIndex) {
        p_nValue = loadRelaxed(pSet[nIndex].value);
    }
    return nIndex;
}

bool ISensorController::isKeyValSame(const KeyVal& p_stKeyVal) const {
    const u32 nScheme = m_nFlags.anyBit(switching_flag) ? static_cast<u32>(int{m_nLastScheme}) : u32{m_nCurScheme};
    u32 nValue = 0;
    return -1 != getKeyValFromCache(nScheme, p_stKeyVal.key, nValue) && nValue == loadRelaxed(p_stKeyVal.value);
}
