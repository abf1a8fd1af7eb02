// The files that describe the devices, read the way a camera reads them.
#include "platform/DeviceType.h"
#include "tests/unit/rootfs/Devices.h"
#include "tests/unit/rootfs/Documents.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <set>
#include <utility>

namespace {

constexpr std::size_t kDetailRoom = 511;      // characters that the library keeps of a detail text
constexpr std::size_t kParametersRoom = 255;  // and of a parameters text
constexpr int kMostSchemes = 32;              // more are refused

constexpr u32 kAcceptedTypes[] = {DeviceType::IPCAMERA,
                                  DeviceType::IPDOME,
                                  DeviceType::LPR,
                                  DeviceType::FACE_DETECT,
                                  DeviceType::VEHICLE_DETECT,
                                  DeviceType::THERMAL_DEVICE,
                                  DeviceType::THERMAL_DOUBLE_SENSOR_DEVICE,
                                  DeviceType::AIMULTI_OBJECT_DETECT,
                                  DeviceType::IPP,
                                  DeviceType::HUMAN_TEMPERATURE,
                                  DeviceType::FISHEYE,
                                  DeviceType::THERMAL_DOUBLE_SENSOR_DOME_DEVICE,
                                  DeviceType::DOMECORE,
                                  DeviceType::DOMECORE_THERMAL_DEVICE};

bool holds(const Channel& p_stChannel, const std::string& p_strText) {
    return std::string::npos != p_stChannel.module.getDetail().find(p_strText);
}

int valueOf(const std::vector<Parameter>& p_vecParameters, int p_nId) {
    const Parameter* parameter = findParameter(p_vecParameters, p_nId);
    EXPECT_NE(nullptr, parameter) << p_nId;
    return nullptr == parameter ? 0 : parameter->value;
}

TEST(MachineInformation, OfEveryDeviceIsReadAndNamesAKindThatTheLibraryKnows) {
    EXPECT_LE(8u, deviceNames().size());
    for (const std::string& device : deviceNames()) {
        MachineInfo machine;
        ASSERT_TRUE(machineOf(device, machine)) << device;
        EXPECT_EQ(1, std::count(std::begin(kAcceptedTypes), std::end(kAcceptedTypes), machine.getDeviceType()))
            << device << " " << machine.getDeviceType();
        EXPECT_NE("", machine.getHardwareModel()) << device;
        EXPECT_NE("", machine.getHardwareCode()) << device;
    }
}

TEST(MachineInformation, CoversTheKindsThatBehaveDifferently) {
    std::set<u32> types;
    for (const Channel& channel : allChannels()) {
        types.insert(channel.deviceType);
    }
    for (const u32 type :
         {DeviceType::IPCAMERA, DeviceType::IPDOME, DeviceType::LPR, DeviceType::THERMAL_DEVICE,
          DeviceType::THERMAL_DOUBLE_SENSOR_DEVICE, DeviceType::IPP, DeviceType::THERMAL_DOUBLE_SENSOR_DOME_DEVICE}) {
        EXPECT_EQ(1u, types.count(type)) << type;
    }
}

TEST(ModuleConfiguration, HasOneModuleForEachChannelOfEveryDevice) {
    for (const std::string& device : deviceNames()) {
        const std::vector<Channel> channels = channelsOf(device);
        ASSERT_FALSE(channels.empty()) << device;
        const bool two = DeviceType::THERMAL_DOUBLE_SENSOR_DEVICE == channels[0].deviceType ||
                         DeviceType::THERMAL_DOUBLE_SENSOR_DOME_DEVICE == channels[0].deviceType;
        EXPECT_EQ(two ? 2u : 1u, channels.size()) << device;
        for (const Channel& channel : channels) {
            EXPECT_NE(0u, channel.module.getModuleId()) << channel.name();
        }
    }
}

TEST(ModuleConfiguration, HasNoEntryThatNoDeviceReaches) {
    std::set<std::pair<std::string, std::string>> reached;
    for (const std::string& device : deviceNames()) {
        MachineInfo machine;
        ASSERT_TRUE(machineOf(device, machine)) << device;
        reached.emplace(machine.getHardwareModel(), machine.getHardwareCode());
        reached.emplace(machine.getHardwareModel(), "");
    }
    const StyleDocument document = loadStyle("/hd1/moduleConfig/moduleConfig.xml");
    for (const TiXmlElement* entry : document.tabs()) {
        const auto name = std::make_pair(attributeOf(*entry, "model"), attributeOf(*entry, "code"));
        EXPECT_EQ(1u, reached.count(name)) << name.first << " " << name.second;
    }
}

TEST(ModuleConfiguration, HasTextsThatFitTheLibrarysRecord) {
    const StyleDocument document = loadStyle("/hd1/moduleConfig/moduleConfig.xml");
    int modules = 0;
    for (const TiXmlElement* element : elementsOf(document.xml->RootElement())) {
        if ("module" == element->ValueStr()) {
            ++modules;
            EXPECT_LE(attributeOf(*element, "detail").size(), kDetailRoom) << "line " << element->Row();
            EXPECT_LE(attributeOf(*element, "parameters").size(), kParametersRoom) << "line " << element->Row();
        }
    }
    EXPECT_LE(13, modules);
}

TEST(ModuleConfiguration, HasDetailTextsThatAreRunsOfGroups) {
    for (const Channel& channel : allChannels()) {
        std::string rest = channel.module.getDetail();
        std::set<std::string> names;
        while (!rest.empty()) {
            const std::size_t equals = rest.find('=');
            const std::size_t end = rest.find(')');
            ASSERT_EQ('(', rest[0]) << channel.name() << ": " << rest;
            ASSERT_TRUE(std::string::npos != equals && std::string::npos != end && 1 < equals && equals + 1 < end)
                << channel.name() << ": " << rest;
            EXPECT_TRUE(names.insert(rest.substr(1, equals - 1)).second) << channel.name() << ": " << rest;
            EXPECT_GE(9u, end - equals - 1) << channel.name() << ": " << rest;
            rest = rest.substr(end + 1);
        }
        EXPECT_EQ(1u, names.count("isInfrared")) << channel.name();
    }
}

TEST(ModuleConfiguration, NamesNumbersOfSchemesThatTheLibraryAcceptsAndLeavesOneOut) {
    std::set<std::string> counts;
    for (const Channel& channel : allChannels()) {
        std::string count;
        if (detailField(channel.module.getDetail(), "max_scheme", count)) {
            ASSERT_TRUE(numberIn(count)) << channel.name();
            EXPECT_GE(*numberIn(count), 2) << channel.name();
            EXPECT_LE(*numberIn(count), kMostSchemes) << channel.name();
        }
        counts.insert(count);
    }
    EXPECT_EQ(1u, counts.count(""));
    EXPECT_LE(3u, counts.size());
}

TEST(PlateRecognition, IsSampledWithFullAndWithLimitedLight) {
    bool full = false;
    bool limited = false;
    for (const Channel& channel : allChannels()) {
        if (DeviceType::LPR != channel.deviceType) {
            continue;
        }
        EXPECT_FALSE(holds(channel, "(isInfrared=0)") || holds(channel, "(isInfrared=1)")) << channel.name();
        (holds(channel, "(isInfrared=17)") ? limited : full) = true;
    }
    EXPECT_TRUE(full);
    EXPECT_TRUE(limited);
}

TEST(PlateRecognition, OffersTheValuesThatItsSecondSchemeStartsWith) {
    for (const Channel& channel : allChannels()) {
        if (DeviceType::LPR != channel.deviceType) {
            continue;
        }
        const std::vector<Parameter> parameters = mergeFor(channel).style.parameters();
        for (const auto& choice :
             {std::make_pair(144, 0), std::make_pair(49, 18), std::make_pair(96, 1), std::make_pair(161, 2)}) {
            const Parameter* parameter = findParameter(parameters, choice.first);
            ASSERT_NE(nullptr, parameter) << channel.name() << " " << choice.first;
            EXPECT_TRUE(parameter->offers(choice.second)) << channel.name() << ": " << *parameter;
        }
        EXPECT_NE(nullptr, findParameter(parameters, 163)) << channel.name();
    }
}

TEST(LimitedLight, HasFactoryValuesThatTogetherStayWithinTheLimit) {
    int devices = 0;
    for (const Channel& channel : allChannels()) {
        if (!holds(channel, "(isInfrared=17)")) {
            continue;
        }
        ++devices;
        const std::vector<Parameter> parameters = mergeFor(channel).style.parameters();
        const int far = valueOf(parameters, 167);
        EXPECT_LE(valueOf(parameters, 163) + far, 100) << channel.name();
        if (DeviceType::LPR == channel.deviceType) {
            EXPECT_LE(40 + far, 100) << channel.name() << ", second scheme";
        }
    }
    EXPECT_LE(1, devices);
}

TEST(DeviceTree, HasTheFoldersThatTheLibraryWritesTo) {
    for (const char* folder : {"/mnt/mtd/code/config_file", "/mnt/mtd/sign", "/mnt/mtd/log", "/tmp"}) {
        const std::filesystem::path path = std::string(ROOTFS_DIR) + folder;
        ASSERT_TRUE(std::filesystem::is_directory(path)) << folder;
        for (const auto& entry : std::filesystem::directory_iterator(path)) {
            EXPECT_EQ(".gitkeep", entry.path().filename()) << folder;
        }
    }
}

TEST(DeviceTree, HasVariantsThatReplaceTheMachineInformationAndNothingElse) {
    for (const std::string& device : deviceNames()) {
        const std::filesystem::path folder = std::string(ROOTFS_DIR) + "/variants/" + device;
        if (!std::filesystem::exists(folder)) {
            continue;
        }
        std::set<std::string> files;
        for (const auto& entry : std::filesystem::recursive_directory_iterator(folder)) {
            if (entry.is_regular_file()) {
                files.insert(entry.path().lexically_relative(folder).string());
            }
        }
        EXPECT_EQ(std::set<std::string>{"mnt/mtd/code/factory_setting/machineinfo.ini"}, files) << device;
    }
}

}  // namespace
