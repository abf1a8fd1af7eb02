// From a constructed controller to a working one, and back.
//
// The line numbers that messages carry here are frozen: people look for them in a camera's log.
#include "platform/QVFile.h"
#include "platform/System.h"
#include "sensor/ISensorController.h"
#include "sensor/Keys.h"
#include "sensor/config/SensorFile.h"
#include "sensor/config/sensor.h"
#include "sensor/diag/Message.h"
#include "sensor/style/FactoryData.h"
#include "sensor/style/ShowFlags.h"
#include "technic/QVMutex.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <utility>
#include <vector>

namespace {

constexpr char kSourceFile[] = "ISensorController.cpp";
constexpr char kMachineInfoFile[] = "/mnt/mtd/code/factory_setting/machineinfo.ini";
constexpr char kModuleConfigFile[] = "/hd1/moduleConfig/moduleConfig.xml";
constexpr char kWipeCommand[] = "rm -rf /mnt/mtd/code/config*/sensor*";
constexpr int kWipeSeconds = 30;
constexpr u32 kThermalChannel = 2;
constexpr u32 kPlateRecognition = 8;  // device type
constexpr int kVerboseLevel = 5;      // above it a reset reads the module configuration anew

KeyVal* allocateRecords(std::size_t p_nSum) {
    return static_cast<KeyVal*>(std::calloc(p_nSum, sizeof(KeyVal)));
}

// One block for all parameter sets of a controller. Meant: it is never released; a controller that is built anew gets a
// new one. The record in front of the first set is there for the correction of a command that no set holds.
KeyVal* allocateSchemeBlock(std::size_t p_nRecords) {
    return allocateRecords(p_nRecords + 1) + 1;
}

// The version of the stored parameter files, 0 when it cannot be read.
u32 storedVersion() {
    u32 nStored = 0;
    return 0 == getVersion(&nStored) ? nStored : 0;
}

// Values of the first plate-recognition scheme: a fixed, fast shutter and moderate infrared light.
constexpr std::pair<u32, u32> kPlateDefaults[] = {
    {KEY_DN_MODE, 0}, {KEY_MAX_SHUTTER, 18}, {KEY_METER_AREA, 1}, {KEY_IR_MODE, 2}, {KEY_IR_MANUAL_STRG_NEAR, 40},
};
constexpr u32 kPlateScheme = 1;

}  // namespace

bool ISensorController::init(const ModuleConfigure& p_objModuleConfigure) {
    if (nullptr != m_ppUserKeyVal) {
        SENSOR_ERR("init: the controller is initialised already\n");
        return false;
    }
    m_nFlags.setBits(init_flag);
    m_nFlags.clearBits(inited_flag);
    SENSOR_ASSERT_AT(66,
                     QVS_SUCCESS == initSysConf(static_cast<int>(u32{m_nCameraID}), p_objModuleConfigure, &m_stSysConf),
                     "QVS_SUCCESS == initSysConf(m_nCameraID,p_objModuleConfigure, &m_stSysConf)");
    fillLanguageTable();
    // The array of the factory set holds every parameter that the style can describe.
    m_pFctKeyVal = allocateRecords(std::max(m_nKeyCmdNum, factoryRoom(m_stSysConf.szUIStyle)));
    SENSOR_ASSERT_DETAIL_AT(
        71,
        QVS_SUCCESS == getFctData(static_cast<int>(u32{m_nCameraID}), m_stSysConf.szUIStyle, m_pFctKeyVal,
                                  &m_nKeyValSum, m_bShowWDRFalg),
        "QVS_SUCCESS == getFctData(m_nCameraID,m_stSysConf.szUIStyle, m_pFctKeyVal, &m_nKeyValSum,m_bShowWDRFalg)",
        "m_nKeyValSum(%d)\n", static_cast<int>(m_nKeyValSum));
    m_pKeyValWork = allocateRecords(std::max(m_nKeyCmdNum, m_nKeyValSum));
    KeyVal* const pFactory = m_pFctKeyVal;
    allocateSets(pFactory);
    std::free(pFactory);
    SENSOR_DBG_AT(78, "m_nKeyCmdNum(%d), m_nKeyValNum(%d)\n", static_cast<int>(m_nKeyCmdNum),
                  static_cast<int>(m_nKeyValSum));
    const u32 nStored = storedVersion();
    if (m_nVersion != nStored) {
        SENSOR_WARN_AT(89,
                       "check the sensor version,   local(%u) --> libsensordll.so(%u), source the cmd: rm -rf "
                       "/mnt/mtd/code/config*/sensor*\n",
                       nStored, m_nVersion);
        sy_system(kWipeCommand, kWipeSeconds);
    }
    readDeviceFacts();
    for (u32 i = 0; i < m_stSysConf.nSchemeSum; ++i) {
        loadScheme(i);
    }
    SENSOR_ASSERT_DETAIL_AT(192, QVS_SUCCESS == setVersion(m_nVersion), "QVS_SUCCESS == setVersion(m_nVersion)",
                            "m_nVersion(%d)\n", static_cast<int>(m_nVersion));
    buildKeyCmdMap();
    m_pstKeyValTmp = allocateRecords(m_nKeyValSum);
    std::copy_n(m_pFctKeyVal, m_nKeyValSum, m_pstKeyValTmp);

    if (!m_bScheduleSwitch && !m_bDNSchemeSwitch) {
        switch_to(0, false);
    }
    sensorThread();  // the first decision of automatic switching is made before init returns
    SENSOR_ASSERT_AT(206, m_pSensorThread->start(), "m_pSensorThread->start()");
    decideOfferedControls();
    m_nFlags.clearBits(init_flag);
    m_nFlags.setBits(inited_flag);
    SENSOR_DBG_AT(241, "ISensorController::initSensor  success\n");
    return true;
}

// Every set starts as the factory set: what a short parameter file does not hold keeps its factory value.
void ISensorController::allocateSets(KeyVal* p_pFactory) {
    const std::size_t nSets = std::size_t{m_stSysConf.nSchemeSum} + 1;
    KeyVal* const pBlock = allocateSchemeBlock(nSets * m_nKeyValSum);
    // NOLINTNEXTLINE(bugprone-sizeof-expression): an array of addresses
    m_ppUserKeyVal = static_cast<KeyVal**>(std::calloc(nSets, sizeof(KeyVal*)));
    for (std::size_t i = 0; i < nSets; ++i) {
        m_ppUserKeyVal[i] = pBlock + i * m_nKeyValSum;
        std::copy_n(p_pFactory, m_nKeyValSum, m_ppUserKeyVal[i]);
    }
    m_pFctKeyVal = m_ppUserKeyVal[m_stSysConf.nSchemeSum];
}

void ISensorController::readDeviceFacts() {
    MachineInfo machineInfo;
    SystemInfoParser::parseMachineInfo(kMachineInfoFile, machineInfo);
    const auto detailHas = [&](const char* p_szGroup) {
        return nullptr != std::strstr(m_stSysConf.moduleConfig.szDetail, p_szGroup);
    };
    if (detailHas("(isInfrared=17)")) {
        SENSOR_PRINT("#### m_bisLimitedIrPower is true!\n");
        m_bisLimitedIrPower = true;
    }
    if (kPlateRecognition == machineInfo.getDeviceType() && !detailHas("(isInfrared=0)") &&
        !detailHas("(isInfrared=1)")) {
        m_bLPRDevice = true;
    }
}

std::string ISensorController::parameterFile(u32 p_nScheme) const {
    const char* const szKind = kThermalChannel == m_nCameraID ? "sensor-thermal" : "sensor";
    return std::string("/mnt/mtd/code/config_file/") + szKind + std::to_string(p_nScheme) + ".cfg";
}

void ISensorController::writeDefaults(u32 p_nScheme, const std::string& p_strFile) {
    KeyVal* pDefaults = m_pFctKeyVal;
    if (!m_bLPRDevice && 0 == p_nScheme) {
        setKeyValToCache(m_stSysConf.nSchemeSum, KEY_SCHEME_MODE, 0, true);  // switching starts off
    }
    if (m_bLPRDevice && kPlateScheme == p_nScheme) {
        KeyVal* const pEnd = std::copy_n(m_pFctKeyVal, m_nKeyValSum, m_pKeyValWork);
        for (const auto& [nKey, nValue] : kPlateDefaults) {
            const auto isKey = [nWanted = nKey](const KeyVal& p_stKeyVal) { return p_stKeyVal.key == nWanted; };
            KeyVal* const pFound = std::find_if(m_pKeyValWork, pEnd, isKey);
            if (pEnd != pFound) {
                pFound->value = nValue;
            }
        }
        pDefaults = m_pKeyValWork;
    }
    std::string strFile = p_strFile;
    keyValToFile(strFile.data(), pDefaults, m_nKeyValSum);
}

void ISensorController::loadScheme(u32 p_nScheme) {
    std::string strFile = parameterFile(p_nScheme);
    if (!QVFile::exists(strFile.c_str())) {
        writeDefaults(p_nScheme, strFile);
    }
    keyValFromFile(strFile.data(), m_ppUserKeyVal[p_nScheme], m_nKeyValSum);
    u32 nMode = 0;
    if (0 == p_nScheme && -1 != getKeyValFromCache(0, KEY_SCHEME_MODE, nMode)) {
        setSwitchingSource(nMode);
    }
}

void ISensorController::decideOfferedControls() {
    m_bShowWDRFalg = true;
    setshowBeawayFalg(true);
    if (nullptr == m_pVideoStreamModule) {
        return;
    }
    const int nChannel = static_cast<int>(u32{m_nCameraID});
    const std::string& strModel = m_objMachineInfo.getHardwareModel();
    const bool bSmallPicturesCannotTurn = "Hi3516AV200" == strModel || "Hi3516AV200Thermal" == strModel;
    constexpr int kSecondaryEncoder = 1;
    constexpr int kSmallHeight = 256;  // lines
    std::vector<AVStreamParam> vecStreams;
    m_pVideoStreamModule->getAVStreamParam(nChannel, vecStreams);
    for (const AVStreamParam& stStream : vecStreams) {
        if (50 == stStream.nFrameRate || 60 == stStream.nFrameRate) {
            m_bShowWDRFalg = false;
        }
        if (bSmallPicturesCannotTurn && kSecondaryEncoder == stStream.nEncoderType &&
            stStream.nVideoHeight < kSmallHeight) {
            setshowBeawayFalg(false);
        }
    }
    LimitedFramesWDRModeParam stLimits;
    m_pVideoStreamModule->getLimitedFramesWDRModeParam(nChannel, stLimits);
    if (0 == stLimits.nLimitFramesModeId && 1 == stLimits.nWDRLimit) {
        m_bShowWDRFalg = false;
    }
}

void ISensorController::uinit() {
    if (!m_nFlags.anyBit(inited_flag) || nullptr == m_ppUserKeyVal) {
        return;
    }
    m_nFlags.setBits(uinit_flag);
    SENSOR_ASSERT_AT(253, m_pSensorThread->stop(), "m_pSensorThread->stop()");
    // The block of the sets stays (see allocateSchemeBlock), and three members keep the addresses of what is released.
    // Nothing reaches them: without m_ppUserKeyVal the controller counts as not initialised.
    std::free(m_pstKeyValTmp);
    std::free(m_pKeyCmdMap);
    std::free(m_ppUserKeyVal);
    std::free(m_pKeyValWork);
    uinitSysConf(&m_stSysConf);
    m_nKeyValSum = 0;
    m_ppUserKeyVal = nullptr;
    m_pFctKeyVal = nullptr;
    m_nParamMode = 0;
    m_nLastScheme = -1;
    m_nCurScheme = static_cast<u32>(-1);
    m_nFlags.clearBits(uinit_flag);
}

// Meant: a verbose camera reads its module configuration file again, a quiet one reuses what it has.
ModuleConfigure ISensorController::moduleConfigureForReset() const {
    ModuleConfigure objModuleConfigure;
    if (g_nDebugLevel.load(std::memory_order_relaxed) > kVerboseLevel) {
        MachineInfo machineInfo;
        SystemInfoParser::parseMachineInfo(kMachineInfoFile, machineInfo);
        std::vector<ModuleConfigure> vecModules;
        ModuleConfigureParser::parse(kModuleConfigFile, machineInfo.getHardwareModel(), machineInfo.getHardwareCode(),
                                     vecModules);
        if (!vecModules.empty()) {
            objModuleConfigure = vecModules.front();
        }
        return objModuleConfigure;
    }
    objModuleConfigure.setDetail(m_stSysConf.moduleConfig.szDetail);
    objModuleConfigure.setModuleId(m_stSysConf.moduleConfig.nModuleId);
    objModuleConfigure.setParameters(m_stSysConf.moduleConfig.szParameters);
    return objModuleConfigure;
}

bool ISensorController::resetParameters() {
    const QVMutexManager guard(&m_objMutex, kSourceFile, __LINE__);
    if (!isReady(__func__)) {
        return false;
    }
    SENSOR_DBG("resetting\n");
    m_nFlags.setBits(resetting_flag);
    SENSOR_ASSERT_DETAIL_AT(1930, QVS_SUCCESS == switch_to(static_cast<int>(m_stSysConf.nSchemeSum), false),
                            "QVS_SUCCESS == switch_to(m_stSysConf.nSchemeSum)", "m_stSysConf.nSchemeSum(%d)\n",
                            static_cast<int>(m_stSysConf.nSchemeSum));
    sy_system(kWipeCommand, kWipeSeconds);
    uinit();
    SENSOR_ASSERT_AT(1953, init(moduleConfigureForReset()), "init(objModuleConfigure)");
    m_nCurScheme = 0;
    m_nFlags.clearBits(resetting_flag);
    return true;
}
