#include "apps/sensorctl/Commands.h"
#include "apps/sensorctl/Session.h"
#include "apps/sensorctl/Shared.h"
#include "apps/sensorctl/SubCommands.h"

namespace sensorctl {

namespace {

const char kDeviceGroup[] = "Simulated driver and faults";

u32 parseCommand(const std::string& p_strWord) {
    return static_cast<u32>(parseNumber(p_strWord, "the driver command", 0, kIntMax));
}

std::string unknown(Session& p_objSession, u32 p_nCommand) {
    return "the driver of channel " + std::to_string(p_objSession.channel()) + " has no value of command " +
           std::to_string(p_nCommand);
}

// driver COMMAND
Result value(Session& p_objSession, const std::string& p_strCommand) {
    const u32 command = parseCommand(p_strCommand);
    simcam::Driver& driver = p_objSession.camera().driver();
    int held = 0;
    if (!driver.value(p_objSession.driverChannel(), command, held)) {
        return Result::failed(unknown(p_objSession, command));
    }
    Json data = {{"command", command}, {"value", held}};
    if (const simcam::CommandRow* const row = simcam::findCommand(command)) {
        data["name"] = row->name;
    }
    return {true, "", data, {}};
}

Result range(Session& p_objSession, const Words& p_vecWords) {
    const u32 command = parseCommand(p_vecWords[0]);
    ia_dynamic_params_attr_st legal{};
    if (!p_objSession.camera().driver().range(p_objSession.driverChannel(), command, legal)) {
        return Result::failed("the driver has no range of command " + std::to_string(command));
    }
    Json data = {{"command", command}, {"default", legal.default_val}, {"min", legal.min_val}, {"max", legal.max_val}};
    if (0 == legal.range_kind) {
        data["items"] = std::vector<int>(legal.item, legal.item + legal.items_cnt);
    }
    return {true, "", data, {}};
}

Result lens(Session& p_objSession, const Words&) {
    simcam::LensState state;
    if (!p_objSession.camera().driver().lens(p_objSession.driverChannel(), state)) {
        return Result::failed("the driver has no lens on this channel");
    }
    return {true,
            "",
            {{"zoom", state.zoom},
             {"zoomTarget", state.zoomTarget},
             {"focus", state.focus},
             {"focusTarget", state.focusTarget},
             {"sharpAt", state.sharpAt},
             {"focusing", state.focusing},
             {"resetting", state.resetting}},
            {}};
}

Result temperature(Session& p_objSession, const Words&) {
    double celsius = 0;
    if (!p_objSession.camera().driver().temperature(p_objSession.driverChannel(), celsius)) {
        return Result::failed("the driver has no temperature on this channel");
    }
    return {true, "", {{"celsius", celsius}}, {}};
}

Result support(Session& p_objSession, const Words& p_vecWords) {
    const u32 command = parseCommand(p_vecWords[0]);
    simcam::Driver& driver = p_objSession.camera().driver();
    if (p_vecWords.size() > 1 &&
        !driver.setSupported(p_objSession.driverChannel(), command, parseSwitch(p_vecWords[1], "the support"))) {
        return Result::failed("the driver does not know command " + std::to_string(command));
    }
    return {
        true, "", {{"command", command}, {"supported", driver.isSupported(p_objSession.driverChannel(), command)}}, {}};
}

Result strict(Session& p_objSession, const Words& p_vecWords) {
    const bool wanted = parseSwitch(p_vecWords[0], "strict");
    p_objSession.camera().driver().setStrictRanges(wanted);
    return {true, "", {{"strict", wanted}}, {}};
}

Result version(Session& p_objSession, const Words& p_vecWords) {
    if (!p_objSession.camera().driver().setVersionText(p_objSession.driverChannel(), p_vecWords[0])) {
        return Result::failed("the driver has no version text on this channel");
    }
    return {true, "", {{"version", p_vecWords[0]}}, {}};
}

const std::vector<SubCommand>& driverCommands() {
    static const std::vector<SubCommand> vecTable = {
        {"range", "COMMAND", 1, 1, range},      {"lens", "", 0, 0, lens},
        {"temperature", "", 0, 0, temperature}, {"support", "COMMAND [0|1]", 1, 2, support},
        {"strict", "0|1", 1, 1, strict},        {"version", "TEXT", 1, 1, version},
    };
    return vecTable;
}

Result driver(Session& p_objSession, const Words& p_vecWords) {
    if (1 == p_vecWords.size() && looksLikeNumber(p_vecWords[0])) {
        return value(p_objSession, p_vecWords[0]);
    }
    return runSubCommand("driver", driverCommands(), p_objSession, p_vecWords);
}

// What parseFault says of an unknown field, with the nearest field that there is.
void checkFields(const Words& p_vecWords) {
    static const std::vector<std::string> vecFields = {"cmd",    "key",   "ch",    "opt",   "nth",
                                                       "result", "times", "delay", "silent"};
    for (const std::string& word : p_vecWords) {
        const std::string field = word.substr(0, word.find('='));
        if (vecFields.end() == std::find(vecFields.begin(), vecFields.end(), field)) {
            throw CommandError("a fault has no field " + quoted(field) + didYouMean(nearestMatch(field, vecFields)));
        }
    }
}

Result addFault(Session& p_objSession, const Words& p_vecWords) {
    // A whole fault may come as one quoted word or as several.
    Words fields;
    std::string text = join(p_vecWords, " ");
    for (std::size_t start = text.find_first_not_of(" \t"); std::string::npos != start;) {
        const std::size_t end = text.find_first_of(" \t", start);
        fields.push_back(text.substr(start, end - start));
        start = text.find_first_not_of(" \t", end);
    }
    checkFields(fields);
    simcam::Fault fault;
    std::string error;
    if (!simcam::parseFault(text, fault, error)) {
        throw CommandError(error);
    }
    const int id = p_objSession.camera().faults().add(fault);
    return {true, "", {{"id", id}, {"fault", simcam::toText(fault)}}, {}};
}

Result listFaults(Session& p_objSession, const Words&) {
    Json faults = Json::array();
    std::vector<std::string> lines;
    for (const simcam::FaultList::Entry& entry : p_objSession.camera().faults().list()) {
        const std::string text = simcam::toText(entry.fault);
        faults.push_back({{"id", entry.id}, {"fault", text}, {"matched", entry.matched}, {"acted", entry.acted}});
        lines.push_back("fault " + std::to_string(entry.id) + ": " + text + " (matched " +
                        std::to_string(entry.matched) + ", acted " + std::to_string(entry.acted) + ")");
    }
    if (lines.empty()) {
        lines.push_back("no faults");
    }
    return {true, "", {{"faults", faults}}, lines};
}

Result removeFault(Session& p_objSession, const Words& p_vecWords) {
    const int id = parseInt(p_vecWords[0], "ID");
    if (!p_objSession.camera().faults().remove(id)) {
        return Result::failed("there is no fault " + std::to_string(id));
    }
    return {true, "", {{"id", id}}, {}};
}

Result clearFaults(Session& p_objSession, const Words&) {
    p_objSession.camera().faults().clear();
    return {};
}

const std::vector<SubCommand>& faultCommands() {
    static const std::vector<SubCommand> vecTable = {
        {"add", "FIELD=VALUE...", 1, kAnyNumber, addFault},
        {"list", "", 0, 0, listFaults},
        {"remove", "ID", 1, 1, removeFault},
        {"clear", "", 0, 0, clearFaults},
    };
    return vecTable;
}

Result fault(Session& p_objSession, const Words& p_vecWords) {
    return runSubCommand("fault", faultCommands(), p_objSession, p_vecWords);
}

}  // namespace

void addDeviceCommands(CommandTable& p_objTable) {
    p_objTable.add({"driver", "COMMAND | " + argumentsOf(driverCommands()),
                    "what the simulated driver holds, without a trace in the transcript", kDeviceGroup, 1, 3, driver,
                    Effect::looks});
    p_objTable.add({"fault", argumentsOf(faultCommands()), "let calls of the driver or the video module go wrong",
                    kDeviceGroup, 1, kAnyNumber, fault, Effect::looks});
}

}  // namespace sensorctl
