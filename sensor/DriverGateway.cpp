// Every exchange with the image-adjust driver and the video module.
#include "platform/DeviceType.h"
#include "platform/ImageAdjust.h"
#include "sensor/ISensorController.h"
#include "sensor/Keys.h"
#include "sensor/diag/Message.h"

#include <algorithm>
#include <cstring>
#include <iterator>

namespace {

constexpr char kSourceFile[] = "ISensorController.cpp";

// Driver commands that no parameter has the number of, or that have another meaning there.
constexpr u32 kIrisStepUp = 83;
constexpr u32 kIrisStepDown = 84;
constexpr u32 kDayNightState = 153;
constexpr u32 kWhiteSwitch = 168;
constexpr u32 kWhiteMode = 169;
constexpr u32 kExposureStrategy = 225;
constexpr u32 kHeaterStatus = 1606;
constexpr u32 kPTZRunState = 1632;
constexpr u32 kAFStatistic = 1648;
constexpr u32 kModuleVersion = 2496;

// What the lens lock holds back.
constexpr u32 kFirstLensCmd = 1536;
constexpr u32 kLastLensCmd = 1616;

constexpr int kManualFocus = 1;
constexpr int kManualExposure = 3;
constexpr int kOneStep = 1;

constexpr std::size_t kVersionSize = 50;  // bytes that the driver may write

// Positions of the zoom motor at the whole magnifications 1x to 16x.
constexpr unsigned kZoomPositions[] = {16384, 24576, 27264, 28672, 29056, 29440, 29728, 30016,
                                       30208, 30400, 30560, 30720, 30912, 31104, 31232, 31424};

// The integer at data, as the banners show it. It may be a word of a set that another thread writes; the heater's answer
// is a single byte.
int bannerValue(u32 p_nCmd, const void* p_pData) {
    if (kHeaterStatus == p_nCmd) {
        return *static_cast<const unsigned char*>(p_pData);
    }
    if (0 == reinterpret_cast<std::uintptr_t>(p_pData) % alignof(int)) {
        return loadRelaxed(*static_cast<const int*>(p_pData));
    }
    int nValue = 0;
    std::memcpy(&nValue, p_pData, sizeof(nValue));
    return nValue;
}

}  // namespace

int ISensorController::doIaCmd(unsigned int p_nCmd, unsigned int p_nOpt, void* p_pData) {
    const u32 nCameraID = m_nCameraID;
    SENSOR_DBG("====================== cmd:%d dir:%d val:%d ======m_nCameraID=(%d)===============begin\n",
               static_cast<int>(p_nCmd), static_cast<int>(p_nOpt), bannerValue(p_nCmd, p_pData),
               static_cast<int>(nCameraID));
    if (m_objZoomFocusParam.getLockZoomFocusEnable() && p_nCmd >= kFirstLensCmd && p_nCmd <= kLastLensCmd) {
        return QVS_SUCCESS;
    }
    const int nResult = ia_ioctrl_v2(static_cast<int>(nCameraID - 1), p_nCmd, p_nOpt, p_pData);
    SENSOR_DBG("====================== cmd:%d dir:%d val:%d =====================end\n", static_cast<int>(p_nCmd),
               static_cast<int>(p_nOpt), bannerValue(p_nCmd, p_pData));
    return nResult;
}

// For commands of which only the number is known: some carry a record, which the driver reads and writes whole.
int ISensorController::exchangeWord(u32 p_nCmd, u32 p_nOpt, u32& p_nWord) {
    u32 aRecord[sizeof(ia_dynamic_params_attr_st) / sizeof(u32)] = {loadRelaxed(p_nWord)};
    const u32 nBefore = aRecord[0];
    const int nResult = doIaCmd(p_nCmd, p_nOpt, aRecord);
    if (nBefore != aRecord[0]) {
        storeRelaxed(p_nWord, aRecord[0]);
    }
    return nResult;
}

// A one-shot action that stands in a parameter set is not replayed while the controller applies a set by itself.
int ISensorController::doIaCmd_User(unsigned int p_nCmd, unsigned int p_nOpt, void* p_pData) {
    if (m_nFlags.anyBit(kApplyingMask)) {
        SENSOR_DBG("ignored auto focus once !!!\n");
        return QVS_SUCCESS;
    }
    return doIaCmd(p_nCmd, p_nOpt, p_pData);
}

bool ISensorController::getCmdExecStatus(int p_nCmd, int& p_nStatus) {
    if (QVS_SUCCESS != doIaCmd(static_cast<u32>(p_nCmd), IA_CMD_OPT_GET_EXEC_STATUS, &p_nStatus)) {
        return false;
    }
    SENSOR_DBG("=================  get exec status cmd(0x%x)       value(%d)   ======================\n",
               static_cast<unsigned>(p_nCmd), p_nStatus);
    return true;
}

void ISensorController::setVideoStreamModule(const VideoStreamModule* p_pModule) {
    // The host promises with const that the pointer is not the controller's; the module itself is there to be called.
    m_pVideoStreamModule = const_cast<VideoStreamModule*>(p_pModule);
}

int ISensorController::notifyToVideo(int p_nKey, int p_nValue) {
    if (nullptr == m_pVideoStreamModule) {
        return QVS_SUCCESS;
    }
    // On a thermal device the one sensor feeds the video module's first channel.
    const u32 nChannel = DeviceType::THERMAL_DEVICE == m_objMachineInfo.getDeviceType() ? 1u : u32{m_nCameraID};
    return m_pVideoStreamModule->notifyChange(static_cast<int>(nChannel), p_nKey, p_nValue);
}

bool ISensorController::setDriverValue(u32 p_nCmd, int p_nValue) {
    return QVS_SUCCESS == doIaCmd(p_nCmd, IA_CMD_OPT_SET, &p_nValue);
}

bool ISensorController::getDriverValue(u32 p_nCmd, int& p_nValue) {
    return QVS_SUCCESS == doIaCmd(p_nCmd, IA_CMD_OPT_GET, &p_nValue);
}

bool ISensorController::focusFar() {
    setDriverValue(KEY_AUTO_FOCUS_MODE, kManualFocus);
    return setDriverValue(KEY_FOCUS_FAR, kOneStep);
}

bool ISensorController::focusNear() {
    setDriverValue(KEY_AUTO_FOCUS_MODE, kManualFocus);
    return setDriverValue(KEY_FOCUS_NEAR, kOneStep);
}

bool ISensorController::irisUp() {
    return setDriverValue(KEY_EXPOSE_MODE, kManualExposure) && setDriverValue(kIrisStepUp, kOneStep);
}

bool ISensorController::irisDown() {
    return setDriverValue(KEY_EXPOSE_MODE, kManualExposure) && setDriverValue(kIrisStepDown, kOneStep);
}

bool ISensorController::zoomIn() {
    return setDriverValue(KEY_ZOOM_IN, kOneStep);
}

bool ISensorController::zoomOut() {
    return setDriverValue(KEY_ZOOM_OUT, kOneStep);
}

bool ISensorController::setPTZRunState(int p_nState) {
    return setDriverValue(kPTZRunState, p_nState);
}

bool ISensorController::getCameraVerInf(std::string& p_strVersion) {
    alignas(int) char szVersion[kVersionSize] = {};
    if (QVS_SUCCESS != doIaCmd(kModuleVersion, IA_CMD_OPT_GET, szVersion)) {
        return false;
    }
    p_strVersion.assign(szVersion, strnlen(szVersion, sizeof(szVersion)));
    return true;
}

bool ISensorController::getZoomValue(int& p_nPosition, int& p_nRatio) {
    if (!getDriverValue(KEY_MZ_POSITION, p_nPosition)) {
        return false;
    }
    const unsigned nPosition = static_cast<unsigned>(p_nPosition);
    if (nPosition <= kZoomPositions[0]) {
        p_nRatio = 1000;
        return true;
    }
    // The first whole magnification at or above the position; a position above them all leaves the ratio as it was.
    const unsigned* const pUpper = std::lower_bound(std::begin(kZoomPositions), std::end(kZoomPositions), nPosition);
    if (std::end(kZoomPositions) != pUpper) {
        const unsigned nMagnification = static_cast<unsigned>(pUpper - kZoomPositions) + 1;
        const unsigned nSegment = *pUpper - *(pUpper - 1);
        p_nRatio = static_cast<int>(1000 * nMagnification - 1000 * (*pUpper - nPosition) / nSegment);
    }
    return true;
}

bool ISensorController::setZoomValue(int p_nPosition) {
    return setDriverValue(KEY_MZ_POSITION, p_nPosition);
}

bool ISensorController::setFocusValue(int p_nPosition) {
    return setDriverValue(KEY_MF_POSITION, p_nPosition);
}

bool ISensorController::getFocusValue(int& p_nPosition) {
    return getDriverValue(KEY_MF_POSITION, p_nPosition);
}

bool ISensorController::setFocusMode(int p_nMode) {
    return setDriverValue(KEY_AUTO_FOCUS_MODE, p_nMode);
}

bool ISensorController::getFocusMode(int& p_nMode) {
    return getDriverValue(KEY_AUTO_FOCUS_MODE, p_nMode);
}

bool ISensorController::setDNState(int p_nState) {
    return setDriverValue(kDayNightState, p_nState);
}

bool ISensorController::getDNState(int& p_nState) {
    return getDriverValue(kDayNightState, p_nState);
}

bool ISensorController::getAFStatistic(unsigned& p_nStatistic) {
    return QVS_SUCCESS == doIaCmd(kAFStatistic, IA_CMD_OPT_GET, &p_nStatistic);
}

bool ISensorController::getWDR(int& p_nWDR) {
    return getDriverValue(KEY_WDR_MODE, p_nWDR);
}

bool ISensorController::setExposureStrategy(int& p_nStrategy) {
    return QVS_SUCCESS == doIaCmd(kExposureStrategy, IA_CMD_OPT_SET, &p_nStrategy);
}

bool ISensorController::getIRSwitch(int& p_nOn) {
    return getDriverValue(KEY_IR_SWITCH, p_nOn);
}

bool ISensorController::getWhiteSwitch(int& p_nOn) {
    return getDriverValue(kWhiteSwitch, p_nOn);
}

bool ISensorController::getWhiteMode(int& p_nMode) {
    return getDriverValue(kWhiteMode, p_nMode);
}

bool ISensorController::getIrisValue(int& p_nValue) {
    return getDriverValue(KEY_IRIS_POSITION, p_nValue);
}

bool ISensorController::setIrisValue(int p_nValue) {
    constexpr int kLowest = 256;
    constexpr int kHighest = 25600;
    constexpr int kAboveHighest = 0x100000;  // meant: far above the threshold, not the threshold
    const int nValue = p_nValue < kLowest ? kLowest : p_nValue > kHighest ? kAboveHighest : p_nValue;
    return setDriverValue(KEY_EXPOSE_MODE, kManualExposure) && setDriverValue(KEY_IRIS_POSITION, nValue);
}

bool ISensorController::getHeatStatus(bool& p_bHot) {
    // The driver writes one byte; whatever it writes must not make the caller's bool something else than true or false.
    alignas(int) unsigned char aAnswer[sizeof(int)] = {};
    std::memcpy(aAnswer, &p_bHot, sizeof(p_bHot));
    const int nResult = doIaCmd(kHeaterStatus, IA_CMD_OPT_GET, aAnswer);
    p_bHot = 0 != aAnswer[0];
    return QVS_SUCCESS == nResult;
}
