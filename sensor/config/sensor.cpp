// initSysConf calls the style merge of sensor/style, which is a step of building a channel's configuration.
#include "sensor/config/sensor.h"

#include "platform/DeviceType.h"
#include "platform/MachineInfo.h"
#include "sensor/config/DetailField.h"
#include "sensor/config/KeyVal.h"
#include "sensor/config/SensorFile.h"
#include "sensor/diag/Message.h"
#include "sensor/style/StyleMerge.h"
#include "technic/RelaxedWord.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <string>

namespace {

constexpr char kSourceFile[] = "sensor.cpp";
constexpr char kMachineInfoFile[] = "/mnt/mtd/code/factory_setting/machineinfo.ini";
constexpr char kStyleFolder[] = "/hd1/moduleConfig/sensorConfig/style/Style";
constexpr char kStyleDivFolder[] = "/hd1/moduleConfig/sensorConfig/styleDiversity/StyleDiversity";
constexpr u32 kDefaultSchemeSum = 4;
constexpr int kThermalChannel = 2;

bool isOneOf(u32 p_nType, std::initializer_list<u32> p_vecTypes) {
    return p_vecTypes.end() != std::find(p_vecTypes.begin(), p_vecTypes.end(), p_nType);
}

bool isAcceptedDeviceType(u32 p_nType) {
    return isOneOf(p_nType, {DeviceType::IPCAMERA, DeviceType::FACE_DETECT, DeviceType::VEHICLE_DETECT,
                             DeviceType::AIMULTI_OBJECT_DETECT, DeviceType::IPDOME, DeviceType::LPR, DeviceType::IPP,
                             DeviceType::HUMAN_TEMPERATURE, DeviceType::THERMAL_DEVICE,
                             DeviceType::THERMAL_DOUBLE_SENSOR_DEVICE, DeviceType::FISHEYE, DeviceType::DOMECORE,
                             DeviceType::THERMAL_DOUBLE_SENSOR_DOME_DEVICE, DeviceType::DOMECORE_THERMAL_DEVICE});
}

// What the names of a device's base style and diversity document end with.
const char* documentEnding(int p_nChannelID, u32 p_nType) {
    if (kThermalChannel == p_nChannelID && isOneOf(p_nType, {13, 14, 17, 19})) {
        return "_Thermal.xml";
    }
    return isOneOf(p_nType, {1, 8, 9, 11, 13, 14, 15, 16, 17, 18}) ? ".xml" : "_dome.xml";
}

// Copies a text into its field, cut to it.
template <std::size_t N>
void copyText(char (&p_szField)[N], const std::string& p_strText, const char* p_szName) {
    if (p_strText.size() >= N) {
        SENSOR_ERR("%s of the module configuration is longer than %d characters and was cut\n", p_szName,
                   static_cast<int>(N - 1));
    }
    const std::size_t nLength = std::min(p_strText.size(), N - 1);
    std::memcpy(p_szField, p_strText.data(), nLength);
    p_szField[nLength] = '\0';
}

// Zeroes the record but for the module id, which a host may ask for while a reset fills the record again, as it may for
// the number of schemes.
void clear(SysConfig& p_stSysConf, u32 p_nModuleId) {
    ModuleConfig& stModule = p_stSysConf.moduleConfig;
    storeRelaxed(stModule.nModuleId, p_nModuleId);
    std::memset(stModule.szLabel, 0, sizeof(stModule.szLabel));
    std::memset(stModule.szShortLabel, 0, sizeof(stModule.szShortLabel));
    std::memset(stModule.szParameters, 0, sizeof(stModule.szParameters));
    std::memset(stModule.szDetail, 0, sizeof(stModule.szDetail));
    storeRelaxed(p_stSysConf.nSchemeSum, 0u);
    p_stSysConf.nLanguageSum = 0;
    p_stSysConf.pLanguageFiles = nullptr;
    p_stSysConf.szUIStyle = nullptr;
    p_stSysConf.nDeviceType = 0;
}

u32 schemeSum(const char* p_szDetail) {
    u32 nSum = kDefaultSchemeSum;
    getDetailFieldTou32(p_szDetail, "max_scheme", &nSum);
    if (nSum > static_cast<u32>(kMaxSchemeSum)) {
        SENSOR_ERR("max_scheme(%d) must be 0 to %d, %u is used\n", static_cast<int>(nSum), kMaxSchemeSum,
                   kDefaultSchemeSum);
        return kDefaultSchemeSum;
    }
    return nSum;
}

// A zeroed heap block for the whole file and a terminator; null when there is no memory for it.
char* textBlock(INT64 p_nLength) {
    const bool bFits = p_nLength >= 0 && static_cast<unsigned long long>(p_nLength) < SIZE_MAX;
    return bFits ? static_cast<char*>(std::calloc(static_cast<std::size_t>(p_nLength) + 1, 1)) : nullptr;
}

// Loads the file into a block that was made for p_nLength bytes. The length is asked again, and a file that has grown in
// between is read up to what the block holds.
int loadText(const char* p_szName, char* p_pBlock, INT64 p_nLength) {
    const INT64 nLength = std::min(getFileLen(p_szName), p_nLength);
    return nullptr == p_pBlock ? -1 : loadFromFile(p_szName, p_pBlock, nLength);
}

}  // namespace

int initSysConf(int p_nChannelID, const ModuleConfigure& p_objModuleConfigure, SysConfig* p_stSysConf) {
    clear(*p_stSysConf, p_objModuleConfigure.getModuleId());
    ModuleConfig& stModule = p_stSysConf->moduleConfig;
    copyText(stModule.szLabel, "xxx", "label");
    copyText(stModule.szShortLabel, "xxx", "short label");
    copyText(stModule.szParameters, p_objModuleConfigure.getParameters(), "parameters");
    copyText(stModule.szDetail, p_objModuleConfigure.getDetail(), "detail");
    storeRelaxed(p_stSysConf->nSchemeSum, schemeSum(stModule.szDetail));

    MachineInfo machineInfo;
    SENSOR_ASSERT(SystemInfoParser::parseMachineInfo(kMachineInfoFile, machineInfo),
                  "SystemInfoParser::parseMachineInfo(\"/mnt/mtd/code/factory_setting/machineinfo.ini\", machineInfo)");
    p_stSysConf->nDeviceType = machineInfo.getDeviceType();
    // Meant: the second line names an older list than the condition.
    SENSOR_ASSERT_DETAIL(isAcceptedDeviceType(p_stSysConf->nDeviceType),
                         "DeviceType::IPCAMERA == p_stSysConf->nDeviceType"
                         " || DeviceType::FACE_DETECT == p_stSysConf->nDeviceType"
                         " || DeviceType::VEHICLE_DETECT == p_stSysConf->nDeviceType"
                         " || DeviceType::AIMULTI_OBJECT_DETECT == p_stSysConf->nDeviceType"
                         " || DeviceType::IPDOME == p_stSysConf->nDeviceType"
                         " || DeviceType::LPR == p_stSysConf->nDeviceType"
                         " || DeviceType::IPP == p_stSysConf->nDeviceType"
                         " || DeviceType::HUMAN_TEMPERATURE == p_stSysConf->nDeviceType"
                         " || DeviceType::THERMAL_DEVICE == p_stSysConf->nDeviceType"
                         " || DeviceType::THERMAL_DOUBLE_SENSOR_DEVICE == p_stSysConf->nDeviceType"
                         " || DeviceType::FISHEYE == p_stSysConf->nDeviceType"
                         " || DeviceType::DOMECORE == p_stSysConf->nDeviceType"
                         " || DeviceType::THERMAL_DOUBLE_SENSOR_DOME_DEVICE == p_stSysConf->nDeviceType"
                         " || DeviceType::DOMECORE_THERMAL_DEVICE == p_stSysConf->nDeviceType",
                         "machineinfo, devicetype(%d) error, must be 1 or 4 or 8 or 9 or 13\n",
                         static_cast<int>(p_stSysConf->nDeviceType));

    const char* const szEnding = documentEnding(p_nChannelID, p_stSysConf->nDeviceType);
    const std::string strStyleFileName = std::string(kStyleFolder) + szEnding;
    const INT64 nStyleLength = getFileLen(strStyleFileName.c_str());
    p_stSysConf->szUIStyle = textBlock(nStyleLength);
    SENSOR_ASSERT(loadText(strStyleFileName.c_str(), p_stSysConf->szUIStyle, nStyleLength) > 0,
                  "loadFromFile(strStyleFileName.c_str(), p_stSysConf->szUIStyle, "
                  "getFileLen(strStyleFileName.c_str())) > 0");

    const std::string strStyleDivFileName = std::string(kStyleDivFolder) + szEnding;
    const INT64 nDiversityLength = getFileLen(strStyleDivFileName.c_str());
    char* const ui_styleDiversity = textBlock(nDiversityLength);
    SENSOR_ASSERT(loadText(strStyleDivFileName.c_str(), ui_styleDiversity, nDiversityLength) > 0,
                  "loadFromFile(strStyleDivFileName.c_str(), ui_styleDiversity, "
                  "getFileLen(strStyleDivFileName.c_str())) > 0");

    SENSOR_ASSERT(QVS_SUCCESS == mergeStyle(p_nChannelID, &stModule, &p_stSysConf->szUIStyle, ui_styleDiversity),
                  "QVS_SUCCESS == mergeStyle(p_nChannelID,&p_stSysConf->moduleConfig, &p_stSysConf->szUIStyle, "
                  "ui_styleDiversity)");
    std::free(ui_styleDiversity);
    return QVS_SUCCESS;
}

void freeLanguageTexts(const SysConfig& p_stSysConf) {
    if (nullptr != p_stSysConf.pLanguageFiles) {
        for (u32 i = 0; i < p_stSysConf.nLanguageSum; ++i) {
            std::free(p_stSysConf.pLanguageFiles[i].szCommonFile);
            std::free(p_stSysConf.pLanguageFiles[i].szLanguageFile);
        }
    }
}

void uinitSysConf(SysConfig* p_stSysConf) {
    freeLanguageTexts(*p_stSysConf);
    std::free(p_stSysConf->szUIStyle);
}
