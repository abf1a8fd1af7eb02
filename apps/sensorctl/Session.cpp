#include "apps/sensorctl/Session.h"

#include "apps/sensorctl/Interrupt.h"
#include "apps/sensorctl/Shared.h"
#include "platform/DeviceType.h"
#include "platform/MachineInfo.h"
#include "platform/VelmorTime.h"

#include <algorithm>

namespace sensorctl {

namespace {

const char kMachineFile[] = "/mnt/mtd/code/factory_setting/machineinfo.ini";
const char kModuleFile[] = "/hd1/moduleConfig/moduleConfig.xml";

MachineInfo readMachineInfo() {
    MachineInfo info;
    if (!SystemInfoParser::parseMachineInfo(kMachineFile, info)) {
        throw CommandError(std::string(kMachineFile) + " below the device root is missing or cannot be read");
    }
    return info;
}

}  // namespace

Session::Session(simcam::Camera& p_objCamera, const Settings& p_stSettings)
    : m_objCamera(p_objCamera), m_stSettings(p_stSettings), m_nChannel(p_stSettings.nChannel) {
    selectChannel(p_stSettings.nChannel);
    if (!m_stSettings.bRealTime) {
        platform::Clock::hold(m_stSettings.stStart);
    }
    m_nStart = platform::Clock::monotonicMicroseconds();
}

Session::~Session() {
    destroyControllers();
}

void Session::selectChannel(int p_nChannel) {
    const int channels = m_objCamera.driver().channels();
    if (p_nChannel < 1 || p_nChannel > channels) {
        throw CommandError("the camera has channels 1 to " + std::to_string(channels) + ", not " +
                           std::to_string(p_nChannel));
    }
    m_nChannel = p_nChannel;
}

ISensorController& Session::controller() {
    Channel& selected = m_mapChannels[m_nChannel];
    if (!selected.pController) {
        selected.pController = std::make_unique<ISensorController>();
        selected.pController->setChannelID(m_nChannel);
        selected.pController->setVideoStreamModule(&m_objCamera.video());
    }
    return *selected.pController;
}

bool Session::isConstructed() const {
    const auto found = m_mapChannels.find(m_nChannel);
    return m_mapChannels.end() != found && nullptr != found->second.pController;
}

bool Session::isInitialised() const {
    const auto found = m_mapChannels.find(m_nChannel);
    return m_mapChannels.end() != found && found->second.bInitialised;
}

bool Session::init(const std::string& p_strModel, const std::string& p_strCode) {
    std::string model = p_strModel;
    std::string code = p_strCode;
    if (model.empty()) {
        const MachineInfo info = readMachineInfo();
        model = info.getHardwareModel();
        code = info.getHardwareCode();
    }
    std::vector<ModuleConfigure> modules;
    if (!ModuleConfigureParser::parse(kModuleFile, model, code, modules)) {
        throw CommandError(std::string(kModuleFile) + " below the device root is missing or cannot be read");
    }
    const std::size_t index = moduleIndex(modules.size());
    if (index >= modules.size()) {
        throw CommandError(std::string(kModuleFile) + " has " + std::to_string(modules.size()) +
                           " module(s) for model \"" + model + "\" code \"" + code + "\", none for channel " +
                           std::to_string(m_nChannel));
    }
    return init(modules[index]);
}

// A device with one thermal sensor has one module, and its only channel is the second.
std::size_t Session::moduleIndex(std::size_t p_nModules) const {
    MachineInfo info;
    const bool known = SystemInfoParser::parseMachineInfo(kMachineFile, info);
    const bool thermal = known && DeviceType::THERMAL_DEVICE == info.getDeviceType();
    return thermal && 1 == p_nModules ? 0 : static_cast<std::size_t>(m_nChannel - 1);
}

bool Session::init(const ModuleConfigure& p_objConfigure) {
    if (!controller().init(p_objConfigure)) {
        return false;
    }
    Channel& selected = m_mapChannels[m_nChannel];
    selected.bInitialised = true;
    selected.bConfigured = true;
    selected.objConfigure = p_objConfigure;
    return true;
}

const ModuleConfigure& Session::lastConfigure() const {
    const auto found = m_mapChannels.find(m_nChannel);
    if (m_mapChannels.end() == found || !found->second.bConfigured) {
        throw CommandError("channel " + std::to_string(m_nChannel) + " has not been initialised yet; use init");
    }
    return found->second.objConfigure;
}

void Session::uinit() {
    controller().uinit();
    m_mapChannels[m_nChannel].bInitialised = false;
}

bool Session::reset() {
    return controller().resetParameters();
}

void Session::powerCycle() {
    destroyControllers();
    m_objCamera.powerCycle();
}

void Session::destroyControllers() {
    for (auto& [number, entry] : m_mapChannels) {
        if (entry.pController) {
            entry.pController->uinit();
        }
    }
    m_mapChannels.clear();
}

void Session::pass(INT64 p_nMicroseconds) {
    // Microseconds; how soon an interrupt is noticed. A held clock passes them in no time.
    const INT64 slice = m_stSettings.bRealTime ? 100000 : 60000000;
    for (INT64 left = p_nMicroseconds; left > 0 && 0 == interruptSignal(); left -= slice) {
        const INT64 step = std::min(left, slice);
        if (m_stSettings.bRealTime) {
            VelmorTime(0, static_cast<int>(step)).wait();
        } else {
            platform::Clock::advance(step);
        }
    }
}

void Session::setClock(const platform::CivilTime& p_stTime) {
    if (m_stSettings.bRealTime) {
        throw CommandError("the clock runs in real time; leave --realtime out to set it");
    }
    platform::Clock::hold(p_stTime);
}

void Session::settle() {
    if (!m_stSettings.bRealTime) {
        platform::Clock::settle();
    }
}

}  // namespace sensorctl
