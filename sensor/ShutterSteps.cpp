// What the driver accepts now: ranges as text, and the maximum shutter as a place in its list.
#include "platform/ImageAdjust.h"
#include "platform/StringHandler.h"
#include "sensor/ISensorController.h"
#include "sensor/Keys.h"
#include "sensor/config/DriverLists.h"
#include "sensor/diag/Message.h"

#include <algorithm>

namespace {

constexpr char kSourceFile[] = "ISensorController.cpp";

constexpr std::size_t kLongestShutterList = 30;

// Meant: the range of any other dynamic command is not told.
bool isRangeTold(u32 p_nCmd) {
    switch (p_nCmd) {
        case KEY_MAX_SHUTTER:
        case KEY_FIX_SHUTTER:
        case KEY_IRIS_POSITION:
        case KEY_AUTO_FOCUS_NEAR_LIMIT:
            return true;
        default:
            return false;
    }
}

}  // namespace

bool ISensorController::getSensorParamRange(int p_nCmd, int& p_nDefault, std::string& p_strRange) {
    ia_dynamic_params_cmds_st dnaCmdList{};
    SENSOR_ASSERT(QVS_SUCCESS == ia_ioctrl_v2(static_cast<int>(m_nCameraID - 1), IA_CMD_DYNAMIC_PARAMS_CMDS_GET,
                                              IA_CMD_OPT_GET, &dnaCmdList),
                  "QVS_SUCCESS == ia_ioctrl_v2(m_nCameraID-1, IA_CMD_DYNAMIC_PARAMS_CMDS_GET, IA_CMD_OPT_GET, "
                  "(void*)(&dnaCmdList))");
    const u32 nCmd = static_cast<u32>(p_nCmd);
    const u32* const pEnd = dnaCmdList.cmd_list + dynamicCommandCount(dnaCmdList);
    if (pEnd == std::find(static_cast<const u32*>(dnaCmdList.cmd_list), pEnd, nCmd) || !isRangeTold(nCmd)) {
        return false;
    }
    ia_dynamic_params_attr_st stDynamicParam{};
    SENSOR_ASSERT(QVS_SUCCESS == doIaCmd(nCmd, IA_CMD_OPT_GET_PARAM_RNAGE, &stDynamicParam),
                  "QVS_SUCCESS == doIaCmd(p_nCmd, IA_CMD_OPT_GET_PARAM_RNAGE, (void*)(&stDynamicParam))");
    if (0 != stDynamicParam.range_kind) {
        return true;  // not a list of values: nothing to tell
    }
    p_nDefault = stDynamicParam.default_val;
    const int nItemSum = dynamicItemCount(stDynamicParam);
    for (int i = 0; i < nItemSum; ++i) {
        p_strRange += std::to_string(stDynamicParam.item[i]);
        if (i < nItemSum - 1) {
            p_strRange += ' ';
        }
    }
    SENSOR_PRINT("cmd=%d DefaltParam=%d strParamRange=%s\n", p_nCmd, p_nDefault, p_strRange.c_str());
    return true;
}

// The driver's list as it is now; empty when the driver does not tell it. Values beyond the thirtieth do not count.
std::vector<int> ISensorController::shutterList() {
    int nDefault = 0;
    std::string strRange;
    getSensorParamRange(KEY_MAX_SHUTTER, nDefault, strRange);
    std::vector<std::string> vecPieces;
    StringHandler::split(strRange, vecPieces, " ");
    vecPieces.resize(std::min(vecPieces.size(), kLongestShutterList));
    std::vector<int> vecList(vecPieces.size());
    std::transform(vecPieces.begin(), vecPieces.end(), vecList.begin(), [](const std::string& p_strPiece) {
        int nValue = 0;
        StringHandler::str2type<int>(p_strPiece, nValue);
        return nValue;
    });
    return vecList;
}

// The place of the driver's current maximum shutter in the list; -1 when it cannot be read or is not in the list.
int ISensorController::shutterPlace(const std::vector<int>& p_vecList) {
    int nCurrent = 0;
    if (!getDriverValue(KEY_MAX_SHUTTER, nCurrent)) {
        return -1;
    }
    const auto itFound = std::find(p_vecList.begin(), p_vecList.end(), nCurrent);
    return p_vecList.end() == itFound ? -1 : static_cast<int>(itFound - p_vecList.begin());
}

bool ISensorController::getShutterValue(int& index) {
    const int nPlace = shutterPlace(shutterList());
    if (-1 == nPlace) {
        return false;
    }
    index = nPlace;
    return true;
}

bool ISensorController::setShutterValue(int index) {
    const std::vector<int> vecList = shutterList();
    if (index < 0 || static_cast<std::size_t>(index) >= vecList.size()) {
        return false;
    }
    return setCached(KEY_MAX_SHUTTER, vecList[static_cast<std::size_t>(index)]);
}

// Meant: at the end of the list the current value is set again, which succeeds.
bool ISensorController::stepShutter(int p_nStep) {
    const std::vector<int> vecList = shutterList();
    const int nPlace = shutterPlace(vecList);
    if (-1 == nPlace) {
        return false;
    }
    const int nLast = static_cast<int>(vecList.size()) - 1;
    return setCached(KEY_MAX_SHUTTER, vecList[static_cast<std::size_t>(std::clamp(nPlace + p_nStep, 0, nLast))]);
}

bool ISensorController::shutterUp() {
    return stepShutter(1);
}

bool ISensorController::shutterDown() {
    return stepShutter(-1);
}
