// From memory to flash and back: storing a scheme, sending a stored value again, discarding what was not stored.
#include "sensor/ISensorController.h"
#include "sensor/Keys.h"
#include "sensor/config/SensorFile.h"
#include "sensor/diag/Message.h"
#include "technic/QVMutex.h"

#include <algorithm>
#include <vector>

namespace {

constexpr char kSourceFile[] = "ISensorController.cpp";
constexpr diag::Operation kCheck = {"paramCheck", "int ISensorController::paramCheck()"};

// What paramCheck returns; frozen, hosts show them.
constexpr int kBadStart = 505;
constexpr int kBadEnd = 506;
constexpr int kEmptyWindow = 507;

// Meant: midnight counts as 24:00 too, and minutes are not looked at by themselves.
constexpr u32 kLatest = 2400;

}  // namespace

bool ISensorController::isUserScheme(u32 p_nScheme) const {
    return p_nScheme < loadRelaxed(m_stSysConf.nSchemeSum);
}

int ISensorController::paramCheck() {
    const QVMutexManager guard(&m_objMutex, kSourceFile, __LINE__);
    return checkWindow(m_nCurScheme);
}

int ISensorController::checkWindow(u32 p_nScheme) const {
    const KeyVal* const pSet = setOf(p_nScheme);
    if (nullptr == pSet) {
        return QVS_SUCCESS;
    }
    const SchemeWindow stWindow = windowOf(pSet);
    if (stWindow.nStart > kLatest) {
        SENSOR_DBG_OF(kCheck, "failed!!!! nParamSchemeStartTime(%d)\n", static_cast<int>(stWindow.nStart));
        return kBadStart;
    }
    if (stWindow.nEnd > kLatest) {
        SENSOR_DBG_OF(kCheck, "failed!!!! nParamSchemeEndTime(%d)\n", static_cast<int>(stWindow.nEnd));
        return kBadEnd;
    }
    if (stWindow.nStart >= stWindow.nEnd) {
        SENSOR_DBG_OF(kCheck, "failed!!!! nParamSchemeStartTime(%d) nParamSchemeEndTime(%d)\n",
                      static_cast<int>(stWindow.nStart), static_cast<int>(stWindow.nEnd));
        return kEmptyWindow;
    }
    return QVS_SUCCESS;
}

int ISensorController::flush() {
    const QVMutexManager guard(&m_objMutex, kSourceFile, __LINE__);
    if (!isReady(__func__)) {
        return kNotReady;
    }
    const u32 nScheme = m_nCurScheme;
    if (!isUserScheme(nScheme)) {
        return QVS_SUCCESS;
    }
    const int nCheck = checkWindow(nScheme);
    if (QVS_SUCCESS != nCheck) {
        return nCheck;
    }
    // What is written is a copy: the background thread may change a value meanwhile.
    std::vector<KeyVal> vecSet(m_nKeyValSum);
    std::transform(m_ppUserKeyVal[nScheme], m_ppUserKeyVal[nScheme] + m_nKeyValSum, vecSet.begin(),
                   [](const KeyVal& p_stKeyVal) {
                       return KeyVal{p_stKeyVal.key, loadRelaxed(p_stKeyVal.value)};
                   });
    std::string strFile = parameterFile(nScheme);
    return keyValToFile(strFile.data(), vecSet.data(), m_nKeyValSum);
}

int ISensorController::restore(int p_nKey) {
    const QVMutexManager guard(&m_objMutex, kSourceFile, __LINE__);
    if (!isReady(__func__)) {
        return kNotReady;
    }
    SENSOR_DBG("p_nKey(%d)\n", p_nKey);
    const u32 nScheme = m_nCurScheme;
    u32 nValue = 0;
    const int nPos = getKeyValFromCache(nScheme, static_cast<u32>(p_nKey), nValue);
    if (!SENSOR_ASSERT_DETAIL(-1 != nPos, "-1 != nPos", "restore key(%d) failed! make sure it is sensor ui key \n",
                              p_nKey)) {
        return -1;
    }
    return setParameters(m_ppUserKeyVal[nScheme] + nPos, 1, false);
}

bool ISensorController::restoreAeMode() {
    return QVS_SUCCESS == restore(KEY_AUTO_FOCUS_MODE) && QVS_SUCCESS == restore(KEY_EXPOSE_MODE);
}

bool ISensorController::resetToLastParameters() {
    SENSOR_DBG("\n");
    if (!isUserScheme(m_nCurScheme)) {
        return true;
    }
    const QVMutexManager guard(&m_objMutex, kSourceFile, __LINE__);
    if (!isReady(__func__)) {
        return false;
    }
    const u32 nScheme = m_nCurScheme;
    if (!isUserScheme(nScheme)) {
        return true;  // another thread has switched while this one waited
    }
    m_nFlags.setBits(rollback_flag);
    std::string strFile = parameterFile(nScheme);
    SENSOR_ASSERT_DETAIL(QVS_SUCCESS == keyValFromFile(strFile.data(), m_pstKeyValTmp, m_nKeyValSum),
                         "QVS_SUCCESS == keyValFromFile(szTmp, m_pstKeyValTmp, m_nKeyValSum)",
                         "szTmp(%s), m_nKeyValSum(%d)\n", strFile.c_str(), static_cast<int>(m_nKeyValSum));
    const int nResult = setParameters(m_pstKeyValTmp, m_nKeyValSum, true);
    m_nFlags.clearBits(rollback_flag);
    return QVS_SUCCESS == nResult;
}

bool ISensorController::setMirrorMode(int p_nDirection) {
    if (!setCached(KEY_MIRROR, p_nDirection)) {
        return false;
    }
    flush();
    return true;
}
