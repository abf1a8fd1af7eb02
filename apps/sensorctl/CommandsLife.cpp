#include "apps/sensorctl/ClockText.h"
#include "apps/sensorctl/Commands.h"
#include "apps/sensorctl/Refusal.h"
#include "apps/sensorctl/Session.h"
#include "apps/sensorctl/Shared.h"
#include "platform/DeviceRoot.h"
#include "platform/MachineInfo.h"

namespace sensorctl {

namespace {

const char kLifeGroup[] = "Life of the controller";

Json moduleData(const Session& p_objSession) {
    const ModuleConfigure& configure = p_objSession.lastConfigure();
    return {
        {"channel", p_objSession.channel()}, {"moduleId", configure.getModuleId()}, {"detail", configure.getDetail()}};
}

Result afterInit(Session& p_objSession, const char* p_szName, bool p_bOk) {
    if (!p_bOk) {
        return Result::failed(std::string(p_szName) + " was refused: the controller is initialised already");
    }
    return {true, "", moduleData(p_objSession), {}};
}

Result init(Session& p_objSession, const Words& p_vecWords) {
    const std::string model = p_vecWords.empty() ? "" : p_vecWords[0];
    const std::string code = p_vecWords.size() < 2 ? "" : p_vecWords[1];
    return afterInit(p_objSession, "init", p_objSession.init(model, code));
}

Result uinit(Session& p_objSession, const Words&) {
    p_objSession.uinit();
    return {};
}

Result restart(Session& p_objSession, const Words&) {
    const ModuleConfigure configure = p_objSession.lastConfigure();
    p_objSession.uinit();
    return afterInit(p_objSession, "restart", p_objSession.init(configure));
}

Result reset(Session& p_objSession, const Words&) {
    if (!p_objSession.reset()) {
        return refused(p_objSession, "resetParameters returned false");
    }
    return {};
}

Result powerCycle(Session& p_objSession, const Words&) {
    p_objSession.powerCycle();
    return {};
}

Result channel(Session& p_objSession, const Words& p_vecWords) {
    if (!p_vecWords.empty()) {
        p_objSession.selectChannel(parseInt(p_vecWords[0], "the channel"));
    }
    return {true, "", {{"channel", p_objSession.channel()}}, {}};
}

Result machine(Session&, const Words&) {
    MachineInfo info;
    if (!SystemInfoParser::parseMachineInfo("/mnt/mtd/code/factory_setting/machineinfo.ini", info)) {
        throw CommandError("the machine information of the device root is missing or cannot be read");
    }
    return {
        true,
        "",
        {{"deviceType", info.getDeviceType()}, {"model", info.getHardwareModel()}, {"code", info.getHardwareCode()}},
        {}};
}

Result status(Session& p_objSession, const Words&) {
    Json data = {{"channel", p_objSession.channel()},
                 {"root", platform::deviceRoot()},
                 {"clock", clockText(platform::Clock::civilTime())},
                 {"constructed", p_objSession.isConstructed()},
                 {"initialised", p_objSession.isInitialised()}};
    if (p_objSession.isConstructed()) {
        ISensorController& controller = p_objSession.controller();
        data["sensorStatus"] = controller.getSensorStatus();
        data["sensorType"] = controller.getSensorType();
        int scheme = -1;
        int mode = 0;
        controller.getParamScheme(scheme);
        controller.getParamMode(mode);
        data["scheme"] = scheme;
        data["mode"] = mode;
    }
    return {true, "", data, {}};
}

Result construct(Session& p_objSession, const Words&) {
    p_objSession.controller();
    return {true, "", {{"channel", p_objSession.channel()}}, {}};
}

}  // namespace

void addLifeCommands(CommandTable& p_objTable) {
    p_objTable.add({"construct", "", "construct the channel's controller; other commands do so when they need it",
                    kLifeGroup, 0, 0, construct});
    p_objTable.add({"init", "[MODEL [CODE]]",
                    "initialise from the device root; model and code of the machine information unless given",
                    kLifeGroup, 0, 2, init});
    p_objTable.add({"uinit", "", "stop the controller's thread and release what init built", kLifeGroup, 0, 0, uinit});
    p_objTable.add({"restart", "", "uinit, then init with the same module configuration", kLifeGroup, 0, 0, restart});
    p_objTable.add(
        {"reset", "", "back to factory settings; deletes the stored parameter files", kLifeGroup, 0, 0, reset});
    p_objTable.add({"powerCycle", "", "destroy all controllers and take the camera's power away and give it back",
                    kLifeGroup, 0, 0, powerCycle});
    p_objTable.add({"channel", "[N]", "select the channel that commands go to, or show it", kLifeGroup, 0, 1, channel,
                    Effect::looks});
    p_objTable.add(
        {"machine", "", "what the device root says about the machine", kLifeGroup, 0, 0, machine, Effect::looks});
    p_objTable.add({"status", "", "where the session stands", kLifeGroup, 0, 0, status, Effect::looks});
}

}  // namespace sensorctl
