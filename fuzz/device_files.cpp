// What a channel's configuration is built from: machine information and module configuration.
//
// 1. The input is the hardware model and code to look for, each ended by a zero byte, then the machine information, ended
//    by a zero byte, and the module configuration.
// 2. Parse both files, twice. What fails leaves its output as it was; the second time gives the same as the first.
// 3. Build the configuration of a channel from each module: its texts are the module's, cut to their fields, and the number
//    of schemes is one that the library can hold.
#include "fuzz/support/Fuzz.h"
#include "platform/MachineInfo.h"
#include "platform/ModuleConfigure.h"
#include "sensor/config/KeyVal.h"
#include "sensor/config/sensor.h"

#include <vector>

namespace {

constexpr char kMachineFile[] = "/mnt/mtd/code/factory_setting/machineinfo.ini";
constexpr char kModuleFile[] = "/hd1/moduleConfig/moduleConfig.xml";
constexpr u32 kUntouched = 0xFFFFFFFFu;
constexpr std::size_t kMostModules = 4;  // looked at of one file; a camera has two

bool same(const ModuleConfigure& p_objLeft, const ModuleConfigure& p_objRight) {
    return p_objLeft.getModuleId() == p_objRight.getModuleId() && p_objLeft.getDetail() == p_objRight.getDetail() &&
           p_objLeft.getParameters() == p_objRight.getParameters();
}

void parseMachine() {
    MachineInfo objFirst;
    objFirst.setDeviceType(kUntouched);
    objFirst.setHardwareModel("untouched");
    MachineInfo objSecond;
    const bool bRead = SystemInfoParser::parseMachineInfo(kMachineFile, objFirst);
    FUZZ_CHECK(SystemInfoParser::parseMachineInfo(kMachineFile, objSecond) == bRead);
    if (bRead) {
        FUZZ_CHECK(objFirst.getDeviceType() == objSecond.getDeviceType());
        FUZZ_CHECK(objFirst.getHardwareModel() == objSecond.getHardwareModel());
        FUZZ_CHECK(objFirst.getHardwareCode() == objSecond.getHardwareCode());
    } else {
        FUZZ_CHECK(kUntouched == objFirst.getDeviceType() && "untouched" == objFirst.getHardwareModel());
        FUZZ_CHECK(0 == objSecond.getDeviceType() && objSecond.getHardwareCode().empty());
    }
}

std::vector<ModuleConfigure> parseModules(const std::string& p_strModel, const std::string& p_strCode) {
    std::vector<ModuleConfigure> vecFirst(1);
    vecFirst.front().setModuleId(kUntouched);
    std::vector<ModuleConfigure> vecSecond;
    if (!ModuleConfigureParser::parse(kModuleFile, p_strModel, p_strCode, vecFirst)) {
        FUZZ_CHECK(1 == vecFirst.size() && kUntouched == vecFirst.front().getModuleId());
        return {};
    }
    FUZZ_CHECK(ModuleConfigureParser::parse(kModuleFile, p_strModel, p_strCode, vecSecond));
    FUZZ_CHECK(vecFirst.size() == vecSecond.size());
    for (std::size_t i = 0; i < vecFirst.size(); ++i) {
        FUZZ_CHECK(same(vecFirst[i], vecSecond[i]));
    }
    return vecFirst;
}

void build(const ModuleConfigure& p_objModule) {
    SysConfig stConfig;
    FUZZ_CHECK(QVS_SUCCESS == initSysConf(1, p_objModule, &stConfig));
    const ModuleConfig& stModule = stConfig.moduleConfig;
    FUZZ_CHECK(p_objModule.getModuleId() == stModule.nModuleId);
    FUZZ_CHECK(p_objModule.getDetail().substr(0, sizeof(stModule.szDetail) - 1).c_str() ==
               std::string(stModule.szDetail));
    FUZZ_CHECK(p_objModule.getParameters().substr(0, sizeof(stModule.szParameters) - 1).c_str() ==
               std::string(stModule.szParameters));
    FUZZ_CHECK(stConfig.nSchemeSum <= kMaxSchemeSum);
    uinitSysConf(&stConfig);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* p_pData, std::size_t p_nSize) {
    TestRoot& root = fuzz::root();
    fuzz::Input input(p_pData, p_nSize);
    const std::string strModel = input.text();
    const std::string strCode = input.text();
    root.write(kMachineFile, input.text());
    root.write(kModuleFile, input.rest());

    parseMachine();
    std::vector<ModuleConfigure> vecModules = parseModules(strModel, strCode);
    if (vecModules.size() > kMostModules) {
        vecModules.resize(kMostModules);
    }
    for (const ModuleConfigure& objModule : vecModules) {
        build(objModule);
    }
    return 0;
}
