// Keys that need more than their own value: records of several keys, keys that the video module must know, keys that
// change each other.
#include "platform/ImageAdjust.h"
#include "sensor/ISensorController.h"
#include "sensor/Keys.h"
#include "sensor/diag/Message.h"
#include "sensor/style/ShowFlags.h"

namespace {

constexpr char kSourceFile[] = "ISensorController.cpp";

// Tells the video module that a change of the wide-dynamic-range mode begins (0) or is done (1).
constexpr int kWDRChange = 2370;
constexpr int kChangeBegins = 0;
constexpr int kChangeDone = 1;

// The value may be a word of a parameter set.
u32 valueAt(const void* p_pVal) {
    return loadRelaxed(*static_cast<const u32*>(p_pVal));
}

void switchOff(void* p_pVal) {
    storeRelaxed(*static_cast<u32*>(p_pVal), 0u);
}

// Mirror directions 1 and 2 change places while beaway is on.
u32 mirrorToSend(u32 p_nMirror, u32 p_nBeaway) {
    return 0 != p_nBeaway && (1 == p_nMirror || 2 == p_nMirror) ? 3 - p_nMirror : p_nMirror;
}

}  // namespace

// A value of the current scheme, 0 when it is not there.
u32 ISensorController::companion(u32 p_nKey) const {
    u32 nValue = 0;
    getKeyValFromCache(m_nCurScheme, p_nKey, nValue);
    return nValue;
}

int ISensorController::notifyUnsigned(u32 p_nKey, u32 p_nValue) {
    return notifyToVideo(static_cast<int>(p_nKey), static_cast<int>(p_nValue));
}

int ISensorController::doHwdr(unsigned int p_nKey, unsigned int p_nDir, void* p_pVal) {
    if (!m_bShowWDRFalg) {
        switchOff(p_pVal);
        return QVS_SUCCESS;
    }
    notifyToVideo(kWDRChange, kChangeBegins);
    const int nResult = notifyUnsigned(p_nKey, valueAt(p_pVal));
    SENSOR_ASSERT(QVS_SUCCESS == doIaCmd(p_nKey, p_nDir, p_pVal), "QVS_SUCCESS == doIaCmd(p_nKey, p_nDir, p_pVal)");
    notifyToVideo(kWDRChange, kChangeDone);
    return nResult;
}

// The driver first, then the video module; doDIS the other way round. Both orders are meant.
int ISensorController::doImageAdjust(unsigned int p_nKey, unsigned int p_nDir, void* p_pVal) {
    SENSOR_ASSERT(QVS_SUCCESS == doIaCmd(p_nKey, p_nDir, p_pVal), "QVS_SUCCESS == doIaCmd(p_nKey, p_nDir, p_pVal)");
    return notifyUnsigned(p_nKey, valueAt(p_pVal));
}

int ISensorController::doDIS(unsigned int p_nKey, unsigned int p_nDir, void* p_pVal) {
    SENSOR_ASSERT(QVS_SUCCESS == notifyUnsigned(p_nKey, valueAt(p_pVal)),
                  "QVS_SUCCESS == notifyToVideo(p_nKey, *(u32*)p_pVal)");
    return doIaCmd(p_nKey, p_nDir, p_pVal);
}

int ISensorController::doIaCmd_PanoTuning(unsigned int p_nKey, unsigned int, void* p_pVal) {
    SENSOR_ASSERT(QVS_SUCCESS == notifyUnsigned(p_nKey, valueAt(p_pVal)), "QVS_SUCCESS == notifyToVideo(nKey, nVal)");
    return QVS_SUCCESS;
}

int ISensorController::test_debugParam(unsigned int p_nKey, unsigned int, void* p_pVal) {
    notifyUnsigned(p_nKey, valueAt(p_pVal));
    return QVS_SUCCESS;
}

// The two thresholds travel together, the sensitivity alone.
int ISensorController::doDNThr(unsigned int p_nKey, unsigned int p_nDir, void* p_pVal) {
    dn_thr_st stThresholds{};
    const u32 nNew = valueAt(p_pVal);
    if (KEY_DTN_THR == p_nKey) {
        stThresholds.d2n_thr = nNew;
        stThresholds.n2d_thr = companion(KEY_NTD_THR);
    } else if (KEY_NTD_THR == p_nKey) {
        stThresholds.d2n_thr = companion(KEY_DTN_THR);
        stThresholds.n2d_thr = nNew;
    } else {
        stThresholds.dn_sensitivity = nNew;
    }
    SENSOR_DBG("m_nCurScheme(%u) dn_thr_st.d2n_thr(%u) dn_thr_st.n2d_thr(%u)  dn_thr_st.dn_sensitivity(%u)\n",
               u32{m_nCurScheme}, stThresholds.d2n_thr, stThresholds.n2d_thr, stThresholds.dn_sensitivity);
    const int nResult = doIaCmd(p_nKey, p_nDir, &stThresholds);
    return m_nFlags.anyBit(rollback_flag) ? QVS_SUCCESS : nResult;
}

int ISensorController::doDNTime(unsigned int p_nKey, unsigned int p_nDir, void* p_pVal) {
    const u32 nNew = valueAt(p_pVal);
    const bool bNightMinute = KEY_DTN_H != p_nKey && KEY_DTN_M != p_nKey && KEY_NTD_H != p_nKey;
    dn_time_st stTimes{};
    stTimes.d2n_hour = KEY_DTN_H == p_nKey ? nNew : companion(KEY_DTN_H);
    stTimes.d2n_min = KEY_DTN_M == p_nKey ? nNew : companion(KEY_DTN_M);
    stTimes.n2d_hour = KEY_NTD_H == p_nKey ? nNew : companion(KEY_NTD_H);
    stTimes.n2d_min = bNightMinute ? nNew : companion(KEY_NTD_M);
    SENSOR_DBG(
        "m_nCurScheme(%u) dn_time_st.d2n_hour(%u) dn_time_st.d2n_min(%u) dn_time_st.n2d_hour(%u) "
        "dn_time_st.n2d_min(%u) \n",
        u32{m_nCurScheme}, stTimes.d2n_hour, stTimes.d2n_min, stTimes.n2d_hour, stTimes.n2d_min);
    return doIaCmd(p_nKey, p_nDir, &stTimes);
}

int ISensorController::doMirror(unsigned int p_nKey, unsigned int p_nDir, void* p_pVal) {
    const u32 nReceived = valueAt(p_pVal);
    const u32 nBeaway = companion(KEY_BEAWAY);
    u32 nMirror = mirrorToSend(nReceived, nBeaway);
    SENSOR_DBG("nMirror(%u --> %u), nBeaway:%u\n", nReceived, nMirror, nBeaway);
    SENSOR_ASSERT(QVS_SUCCESS == notifyUnsigned(p_nKey, nMirror), "QVS_SUCCESS == notifyToVideo(p_nKey, nMirror)");
    return doIaCmd(p_nKey, p_nDir, &nMirror);
}

int ISensorController::doBeaway(unsigned int p_nKey, unsigned int p_nDir, void* p_pVal) {
    if (!getshowBeawayFalg()) {
        switchOff(p_pVal);
        return QVS_SUCCESS;
    }
    u32 nBeaway = valueAt(p_pVal);
    u32 nMirror = mirrorToSend(companion(KEY_MIRROR), nBeaway);
    SENSOR_ASSERT(QVS_SUCCESS == notifyUnsigned(IA_CMD_UI_MIRROR, nMirror),
                  "QVS_SUCCESS == notifyToVideo(IA_CMD_UI_MIRROR, nMirror)");
    SENSOR_ASSERT(QVS_SUCCESS == notifyUnsigned(p_nKey, nBeaway), "QVS_SUCCESS == notifyToVideo(p_nKey, nBeaway)");
    doIaCmd(KEY_MIRROR, p_nDir, &nMirror);  // the driver's mirror follows at once
    return doIaCmd(p_nKey, p_nDir, &nBeaway);
}

bool ISensorController::setShowWDRFalg(bool p_bShow) {
    m_bShowWDRFalg = p_bShow;
    return true;
}

bool ISensorController::getShowWDRFalg(bool& p_bShow) {
    p_bShow = m_bShowWDRFalg;
    return true;
}

bool ISensorController::setShowBeawayFalg(bool p_bShow) {
    setshowBeawayFalg(p_bShow);
    return true;
}

bool ISensorController::getShowBeawayFalg(bool& p_bShow) {
    p_bShow = getshowBeawayFalg();
    return true;
}
