#include "apps/camerad/host/Machine.h"

#include "platform/DeviceType.h"
#include "platform/MachineInfo.h"

#include <algorithm>
#include <cstdlib>
#include <stdexcept>

namespace camerad {

namespace {

const char kMachineFile[] = "/mnt/mtd/code/factory_setting/machineinfo.ini";
const char kModuleFile[] = "/hd1/moduleConfig/moduleConfig.xml";
constexpr int kSecondChannel = 2;

bool hasThermalChannel(u32 p_nType) {
    switch (p_nType) {
        case DeviceType::THERMAL_DEVICE:
        case DeviceType::THERMAL_DOUBLE_SENSOR_DEVICE:
        case DeviceType::HUMAN_TEMPERATURE:
        case DeviceType::THERMAL_DOUBLE_SENSOR_DOME_DEVICE:
            return true;
        default:
            return false;
    }
}

}  // namespace

int schemesOf(const std::string& p_strDetail) {
    constexpr int kUsual = 4;
    constexpr int kMost = 32;
    constexpr std::size_t kLongestValue = 9;
    const std::size_t nName = p_strDetail.find("max_scheme");
    const std::size_t nEqual = p_strDetail.find('=', nName);
    const std::size_t nClose = p_strDetail.find(')', nEqual);
    if (std::string::npos == nName || std::string::npos == nEqual || std::string::npos == nClose) {
        return kUsual;
    }
    const std::string strValue = p_strDetail.substr(nEqual + 1, std::min(kLongestValue, nClose - nEqual - 1));
    const int nSchemes = static_cast<int>(std::strtol(strValue.c_str(), nullptr, 10));
    return nSchemes < 0 || nSchemes > kMost ? kUsual : nSchemes;
}

std::vector<ChannelDescription> channelsOfMachine(int p_nMost) {
    MachineInfo machine;
    if (!SystemInfoParser::parseMachineInfo(kMachineFile, machine)) {
        throw std::runtime_error(std::string(kMachineFile) + " below the device root is missing or cannot be read");
    }
    std::vector<ModuleConfigure> vecModules;
    if (!ModuleConfigureParser::parse(kModuleFile, machine.getHardwareModel(), machine.getHardwareCode(), vecModules)) {
        throw std::runtime_error(std::string(kModuleFile) + " below the device root is missing or cannot be read");
    }
    if (vecModules.empty()) {
        throw std::runtime_error(std::string(kModuleFile) + " has no module for model \"" + machine.getHardwareModel() +
                                 "\" code \"" + machine.getHardwareCode() + "\"");
    }
    const u32 nType = machine.getDeviceType();
    // A device with one thermal sensor has one module, and its only channel is the second.
    const bool bSecondOnly = DeviceType::THERMAL_DEVICE == nType;
    if (bSecondOnly) {
        vecModules.resize(1);
    }
    std::vector<ChannelDescription> vecChannels;
    for (const ModuleConfigure& module : vecModules) {
        ChannelDescription channel;
        channel.nNumber = static_cast<int>(vecChannels.size()) + (bSecondOnly ? kSecondChannel : 1);
        if (channel.nNumber > p_nMost) {
            break;
        }
        const std::string& strDetail = module.getDetail();
        channel.bThermal = kSecondChannel == channel.nNumber && hasThermalChannel(nType);
        channel.bGaps = DeviceType::LPR == nType && std::string::npos == strDetail.find("(isInfrared=0)") &&
                        std::string::npos == strDetail.find("(isInfrared=1)");
        channel.nSchemes = schemesOf(strDetail);
        channel.objModule = module;
        vecChannels.push_back(std::move(channel));
    }
    if (vecChannels.empty()) {
        throw std::runtime_error("the simulated camera has no channel for the modules of this machine");
    }
    return vecChannels;
}

}  // namespace camerad
