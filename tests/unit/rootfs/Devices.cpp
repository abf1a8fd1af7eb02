#include "tests/unit/rootfs/Devices.h"

#include "platform/DeviceRoot.h"
#include "platform/DeviceType.h"

#include <algorithm>
#include <filesystem>

namespace {

constexpr const char* kBaseDevice = "camera";

const std::string kSensorConfig = "/hd1/moduleConfig/sensorConfig";

std::string documentKind(u32 p_nType, int p_nChannel) {
    static const std::vector<u32> thermal = {DeviceType::THERMAL_DEVICE, DeviceType::THERMAL_DOUBLE_SENSOR_DEVICE,
                                             DeviceType::HUMAN_TEMPERATURE,
                                             DeviceType::THERMAL_DOUBLE_SENSOR_DOME_DEVICE};
    static const std::vector<u32> dome = {DeviceType::IPDOME, DeviceType::THERMAL_DOUBLE_SENSOR_DOME_DEVICE,
                                          DeviceType::DOMECORE, DeviceType::DOMECORE_THERMAL_DEVICE};
    const auto isOneOf = [&](const std::vector<u32>& types) {
        return types.end() != std::find(types.begin(), types.end(), p_nType);
    };
    if (2 == p_nChannel && isOneOf(thermal)) {
        return "_Thermal";
    }
    return isOneOf(dome) ? "_dome" : "";
}

bool isSelected(const TiXmlElement& p_objBlock, const std::string& p_strDetail) {
    for (auto condition = p_objBlock.FirstAttribute(); nullptr != condition; condition = condition->Next()) {
        std::string value;
        if (!detailField(p_strDetail, condition->Name(), value)) {
            continue;
        }
        for (const std::string& accepted : splitAt(condition->Value(), ',')) {
            if (accepted.substr(0, 5) == value.substr(0, 5)) {
                return true;
            }
        }
    }
    return false;
}

// False when the operation found nothing to work on.
bool apply(const TiXmlElement& p_objOperation, TiXmlElement& p_objRoot) {
    const std::string key = attributeOf(p_objOperation, "tab_key");
    TiXmlElement* tab = p_objRoot.FirstChildElement();
    while (nullptr != tab && attributeOf(*tab, "key") != key) {
        tab = tab->NextSiblingElement();
    }
    if (nullptr == tab) {
        return false;
    }
    const std::string kind = p_objOperation.ValueStr();
    if ("Delete" == kind) {
        return p_objRoot.RemoveChild(tab);
    }
    const TiXmlElement* given = p_objOperation.FirstChildElement();
    if (nullptr == given || ("Modify" != kind && "AddAfter" != kind)) {
        return false;
    }
    p_objRoot.InsertAfterChild(tab, *given);
    return "AddAfter" == kind || p_objRoot.RemoveChild(tab);
}

}  // namespace

std::vector<std::string> deviceNames() {
    std::vector<std::string> names = {kBaseDevice};
    for (const auto& entry : std::filesystem::directory_iterator(std::string(ROOTFS_DIR) + "/variants")) {
        if (entry.is_directory()) {
            names.push_back(entry.path().filename().string());
        }
    }
    std::sort(names.begin(), names.end());
    return names;
}

bool machineOf(const std::string& p_strDevice, MachineInfo& p_objMachine) {
    const std::string root = ROOTFS_DIR;
    platform::setDeviceRoot(kBaseDevice == p_strDevice ? root : root + "/variants/" + p_strDevice);
    return SystemInfoParser::parseMachineInfo("/mnt/mtd/code/factory_setting/machineinfo.ini", p_objMachine);
}

bool modulesOf(const MachineInfo& p_objMachine, std::vector<ModuleConfigure>& p_vecModules) {
    platform::setDeviceRoot(ROOTFS_DIR);
    return ModuleConfigureParser::parse("/hd1/moduleConfig/moduleConfig.xml", p_objMachine.getHardwareModel(),
                                        p_objMachine.getHardwareCode(), p_vecModules);
}

std::vector<Channel> channelsOf(const std::string& p_strDevice) {
    MachineInfo machine;
    std::vector<ModuleConfigure> modules;
    std::vector<Channel> channels;
    if (!machineOf(p_strDevice, machine) || !modulesOf(machine, modules)) {
        return channels;
    }
    int number = DeviceType::THERMAL_DEVICE == machine.getDeviceType() ? 2 : 1;
    for (const ModuleConfigure& module : modules) {
        const std::string kind = documentKind(machine.getDeviceType(), number);
        channels.push_back({p_strDevice, machine.getDeviceType(), number, module,
                            kSensorConfig + "/style/Style" + kind + ".xml",
                            kSensorConfig + "/styleDiversity/StyleDiversity" + kind + ".xml"});
        ++number;
    }
    return channels;
}

std::vector<Channel> allChannels() {
    std::vector<Channel> channels;
    for (const std::string& device : deviceNames()) {
        for (const Channel& channel : channelsOf(device)) {
            channels.push_back(channel);
        }
    }
    return channels;
}

bool detailField(const std::string& p_strDetail, const std::string& p_strName, std::string& p_strValue) {
    const std::size_t name = p_strDetail.find(p_strName);
    const std::size_t equals = p_strDetail.find('=', name);
    const std::size_t end = p_strDetail.find(')', equals);
    if (std::string::npos == name || std::string::npos == equals || std::string::npos == end) {
        return false;
    }
    p_strValue = p_strDetail.substr(equals + 1, end - equals - 1);
    return true;
}

Merge mergeFor(const Channel& p_stChannel) {
    Merge merge;
    merge.style = loadStyle(p_stChannel.stylePath);
    merge.style.name = p_stChannel.name();
    const StyleDocument diversity = loadStyle(p_stChannel.diversityPath);
    for (auto block = diversity.xml->FirstChildElement(); nullptr != block; block = block->NextSiblingElement()) {
        if (!isSelected(*block, p_stChannel.module.getDetail())) {
            continue;
        }
        merge.blocks.push_back(block->ValueStr());
        for (auto step = block->FirstChildElement(); nullptr != step; step = step->NextSiblingElement()) {
            if (!apply(*step, *merge.style.xml->RootElement())) {
                merge.missed.push_back(block->ValueStr() + ": " + step->ValueStr() + " " +
                                       attributeOf(*step, "tab_key"));
            }
        }
    }
    return merge;
}
