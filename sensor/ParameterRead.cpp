// Reading parameters back: the current scheme's set answers first, the driver only for what no set holds.
#include "platform/ImageAdjust.h"
#include "platform/StringHandler.h"
#include "sensor/ISensorController.h"
#include "sensor/Keys.h"
#include "sensor/config/SensorFile.h"
#include "sensor/config/SensorKeyVal.h"
#include "sensor/diag/Message.h"
#include "sensor/style/DynamicStyle.h"
#include "sensor/style/StyleDocument.h"
#include "sensor/style/StyleMerge.h"
#include "technic/QVMutex.h"

#include <cstdlib>

namespace {

constexpr char kSourceFile[] = "ISensorController.cpp";
constexpr diag::Operation kGetAll = {"getAllParameters", "bool ISensorController::getAllParameters(std::string&)"};

// The numbers that the report of a malformed key list carries; frozen.
constexpr int kGetParametersPlace = 1807;
constexpr int kSensorCheckPlace = 2290;

constexpr u32 kSensorCheck = 2816;  // driver command
constexpr std::size_t kCheckNumbers = 3;
constexpr int kCheckRead = 2;  // the second number of a check that reads

// Infrared keys that read as -1 when the set does not hold them; a bit for each key from KEY_IR_SWITCH (160) to 167.
constexpr u32 kUnaskedInfrared = 0xAB;
constexpr u32 kInfraredKeys = 8;

bool isUnaskedInfrared(u32 p_nKey) {
    const u32 nPlace = p_nKey - KEY_IR_SWITCH;
    return nPlace < kInfraredKeys && 0 != (kUnaskedInfrared >> nPlace & 1u);
}

int numberOf(const std::string& p_strItem) {
    return std::atoi(p_strItem.c_str());  // NOLINT(cert-err34-c): meant, what is not a number counts as 0
}

void reportMalformed(int p_nPlace, const std::string& p_strIds) {
    SENSOR_PRINT("%s%d getParameters fail p_strIds = %s \n", kSourceFile, p_nPlace, p_strIds.c_str());
}

}  // namespace

bool ISensorController::getParameter(int p_nKey, int& p_nVal) {
    const QVMutexManager guard(&m_objMutex, kSourceFile, __LINE__);
    if (!isReady(__func__)) {
        return false;
    }
    SENSOR_DBG("p_nKey(%d)\n", p_nKey);
    const u32 nKey = static_cast<u32>(p_nKey);
    u32 nVal = static_cast<u32>(-1);
    if (-1 != getKeyValFromCache(m_nCurScheme, nKey, nVal) || isUnaskedInfrared(nKey)) {
        p_nVal = static_cast<int>(nVal);
        return true;
    }
    u32 nAnswer = static_cast<u32>(p_nVal);
    const bool bRead = SENSOR_ASSERT_DETAIL(QVS_SUCCESS == exchangeWord(nKey, IA_CMD_OPT_GET, nAnswer),
                                            "QVS_SUCCESS == doIaCmd(p_nKey, IA_CMD_OPT_GET, &p_nVal)",
                                            "get key(%d) val from 2a err", p_nKey);
    p_nVal = static_cast<int>(nAnswer);
    return bRead;
}

bool ISensorController::getNamed(u32 p_nKey, int& p_nValue) {
    return getParameter(static_cast<int>(p_nKey), p_nValue);
}

// Meant: true whatever the read said.
bool ISensorController::getDNMode(int& p_nMode) {
    getNamed(KEY_DN_MODE, p_nMode);
    return true;
}
bool ISensorController::getWDRSwitch(int& p_nOn) {
    return getNamed(KEY_WDR_MODE, p_nOn);
}
bool ISensorController::getWDRStrength(int& p_nStrength) {
    return getNamed(KEY_WDR_STRG, p_nStrength);
}
bool ISensorController::getHLCSwitch(int& p_nOn) {
    return getNamed(KEY_HLC_SWITCH, p_nOn);
}
bool ISensorController::getHLCStrength(int& p_nStrength) {
    return getNamed(KEY_HLC_STRG, p_nStrength);
}
bool ISensorController::getBLCSwitch(int& p_nOn) {
    return getNamed(KEY_BLC_SWITCH, p_nOn);
}
bool ISensorController::getBLCStrength(int& p_nStrength) {
    return getNamed(KEY_BLC_STRG, p_nStrength);
}
bool ISensorController::getDefogSwitch(int& p_nOn) {
    return getNamed(KEY_DEFLG_SWITCH, p_nOn);
}
bool ISensorController::getDefogStrength(int& p_nStrength) {
    return getNamed(KEY_DEFLG_STRG, p_nStrength);
}
bool ISensorController::get2DSwitch(int& p_nOn) {
    return getNamed(KEY_2D_NR_SWITCH, p_nOn);
}
bool ISensorController::get2DMode(int& p_nMode) {
    return getNamed(KEY_2D_NR_MODE, p_nMode);
}
bool ISensorController::get2DAutoMaxStrength(int& p_nStrength) {
    return getNamed(KEY_2D_NR_STRG_A, p_nStrength);
}
bool ISensorController::get2DManualMaxStrength(int& p_nStrength) {
    return getNamed(KEY_2D_NR_STRG_M, p_nStrength);
}
bool ISensorController::get3DSwitch(int& p_nOn) {
    return getNamed(KEY_3D_NR_SWITCH, p_nOn);
}
bool ISensorController::get3DMode(int& p_nMode) {
    return getNamed(KEY_3D_NR_MODE, p_nMode);
}
bool ISensorController::get3DAutoMaxStrength(int& p_nStrength) {
    return getNamed(KEY_3D_NR_STRG_A, p_nStrength);
}
bool ISensorController::get3DManualMaxStrength(int& p_nStrength) {
    return getNamed(KEY_3D_NR_STRG_M, p_nStrength);
}
bool ISensorController::getBeaway(int& p_nOn) {
    return getNamed(KEY_BEAWAY, p_nOn);
}
bool ISensorController::getMirrorValue(int& p_nDirection) {
    return getNamed(KEY_MIRROR, p_nDirection);
}

bool ISensorController::parseSensorParameter(const std::string& p_strIds, std::vector<std::string>& items) {
    constexpr std::size_t kShortest = 3;  // "(5)"
    if (p_strIds.size() < kShortest || '(' != p_strIds.front() || p_strIds.size() - 1 != p_strIds.find(')')) {
        return false;
    }
    StringHandler::split(p_strIds.substr(1, p_strIds.size() - 2), items, ",");
    return !items.empty();
}

int ISensorController::getParameters(const std::string& p_strIds, std::string& out) {
    std::vector<std::string> vecItems;
    if (!parseSensorParameter(p_strIds, vecItems)) {
        reportMalformed(kGetParametersPlace, p_strIds);
        return 0;
    }
    std::string strOut;
    int nVal = 0;
    for (const std::string& strItem : vecItems) {
        const int nKey = numberOf(strItem);
        if (getParameter(nKey, nVal)) {
            strOut += '(' + std::to_string(nKey) + ',' + std::to_string(nVal) + ')';
        }
    }
    out = strOut;
    SENSOR_PRINT("@@ out_Parameters = %s @@\n", out.c_str());
    return 1;
}

// The style's own value of the maximum shutter, from the document that the style merge left.
bool ISensorController::isShutterDriverGoverned() const {
    TiXmlDocument objStyleXmlDoc;
    const std::string strFileName = mergedStyleFile(static_cast<int>(u32{m_nCameraID}));
    const bool bLoaded = SENSOR_ASSERT_OF(kGetAll, style::loadFile(objStyleXmlDoc, strFileName),
                                          "objStyleXmlDoc.LoadFile(filename, TIXML_ENCODING_UTF8)");
    // What was parsed of a broken document does not count.
    TiXmlElement* const pRoot = bLoaded ? objStyleXmlDoc.RootElement() : nullptr;
    int nVal = kOwnChoicesOffset;
    return QVS_SUCCESS != getDnaValbyCmdId(pRoot, KEY_MAX_SHUTTER, nVal) || nVal < kOwnChoicesOffset;
}

bool ISensorController::getAllParameters(std::string& out) {
    const QVMutexManager guard(&m_objMutex, kSourceFile, __LINE__);
    if (!isReady(__func__)) {
        return false;
    }
    const u32 nScheme = m_nCurScheme;
    std::string strOut;
    if (isShutterDriverGoverned()) {
        KeyVal* const pSet = setOf(nScheme);
        if (nullptr == pSet) {
            return true;
        }
        SENSOR_ASSERT_DETAIL(
            QVS_SUCCESS == keyval_correct(static_cast<int>(m_nCameraID - 1), pSet, m_nKeyValSum),
            "QVS_SUCCESS == keyval_correct(m_nCameraID - 1, m_ppUserKeyVal[m_nCurScheme], m_nKeyValSum)",
            "m_nCurScheme(%d) m_nKeyValSum(%d)\n", static_cast<int>(nScheme), static_cast<int>(m_nKeyValSum));
        keyval_st2str(strOut, pSet, m_nKeyValSum);
        SENSOR_DBG("current scheme: %d\n%s\n", static_cast<int>(nScheme), strOut.c_str());
    } else if (nScheme < m_stSysConf.nSchemeSum) {
        std::string strFile = parameterFile(nScheme);
        SENSOR_ASSERT_DETAIL(QVS_SUCCESS == keyValFromFile(strFile.data(), m_pstKeyValTmp, m_nKeyValSum),
                             "QVS_SUCCESS == keyValFromFile(szTmp, m_pstKeyValTmp, m_nKeyValSum)",
                             "szTmp(%s), m_nKeyValSum(%d)\n", strFile.c_str(), static_cast<int>(m_nKeyValSum));
        keyval_st2str(strOut, m_pstKeyValTmp, m_nKeyValSum);
    } else {
        return true;
    }
    out = strOut;
    return true;
}

int ISensorController::SensorCheck(std::string& io) {
    std::vector<std::string> vecItems;
    if (!parseSensorParameter(io, vecItems) || vecItems.size() < kCheckNumbers) {
        reportMalformed(kSensorCheckPlace, io);
        return 0;  // meant: reads as success
    }
    ia_sensor_check_st stCheck{numberOf(vecItems[0]), numberOf(vecItems[1]), numberOf(vecItems[2]), 0};
    const bool bRead = kCheckRead == stCheck.second;
    const int nResult = ia_ioctrl_v2(static_cast<int>(m_nCameraID - 1), kSensorCheck,
                                     bRead ? IA_CMD_OPT_GET : IA_CMD_OPT_SET, &stCheck);
    if (bRead) {
        io = std::to_string(stCheck.result);
    }
    return nResult;
}
