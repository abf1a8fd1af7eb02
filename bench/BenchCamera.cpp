#include "bench/BenchCamera.h"

#include "platform/MachineInfo.h"
#include "platform/ModuleConfigure.h"

#include <filesystem>
#include <stdexcept>
#include <vector>

BenchCamera::BenchCamera() {
    constexpr int kSilent = -1;
    namespace fs = std::filesystem;
    fs::copy(SAMPLE_TREE, m_objRoot.path(), fs::copy_options::recursive | fs::copy_options::overwrite_existing);
    m_objRoot.debugLevel(kSilent);
    MachineInfo objMachine;
    std::vector<ModuleConfigure> vecModules;
    if (!SystemInfoParser::parseMachineInfo("/mnt/mtd/code/factory_setting/machineinfo.ini", objMachine) ||
        !ModuleConfigureParser::parse("/hd1/moduleConfig/moduleConfig.xml", objMachine.getHardwareModel(),
                                      objMachine.getHardwareCode(), vecModules) ||
        vecModules.empty()) {
        throw std::runtime_error("the sample tree describes no camera");
    }
    m_objController.setVideoStreamModule(&m_objCamera.video());
    m_objController.init(vecModules.front());
}

BenchCamera::~BenchCamera() {
    m_objController.uinit();
}
