#include "apps/sensorctl/Commands.h"
#include "apps/sensorctl/Session.h"
#include "apps/sensorctl/Shared.h"
#include "apps/sensorctl/SubCommands.h"

namespace sensorctl {

namespace {

const char kShutterGroup[] = "Ranges and shutter";

Result rangeOfKey(Session& p_objSession, const Words& p_vecWords) {
    const u32 command = parseKey(p_vecWords[0]);
    int preset = 0;
    std::string values;
    if (!p_objSession.controller().getSensorParamRange(static_cast<int>(command), preset, values)) {
        return Result::failed("getSensorParamRange returned false: " + describeKey(command) +
                                  " has no range to offer (49, 50, 82 and 1537 have, when the driver names them)",
                              {{"command", command}});
    }
    return {true, "", {{"command", command}, {"default", preset}, {"range", values}}, {}};
}

Result shown(Session& p_objSession) {
    int index = 0;
    if (!p_objSession.controller().getShutterValue(index)) {
        return Result::failed(
            "getShutterValue returned false: the driver cannot be read, or its value is not in its list");
    }
    return {true, "", {{"index", index}}, {}};
}

Result up(Session& p_objSession, const Words&) {
    return p_objSession.controller().shutterUp() ? Result{} : Result::failed("shutterUp returned false");
}

Result down(Session& p_objSession, const Words&) {
    return p_objSession.controller().shutterDown() ? Result{} : Result::failed("shutterDown returned false");
}

const std::vector<SubCommand>& steps() {
    static const std::vector<SubCommand> vecTable = {{"up", "", 0, 0, up}, {"down", "", 0, 0, down}};
    return vecTable;
}

Result shutter(Session& p_objSession, const Words& p_vecWords) {
    if (p_vecWords.empty()) {
        return shown(p_objSession);
    }
    if (!looksLikeNumber(p_vecWords[0])) {
        return runSubCommand("shutter", steps(), p_objSession, p_vecWords);
    }
    const int index = parseInt(p_vecWords[0], "INDEX");
    const Json data = {{"index", index}};
    return p_objSession.controller().setShutterValue(index)
               ? Result{true, "", data, {}}
               : Result::failed("setShutterValue returned false: no such place in the driver's list, or it refused",
                                data);
}

}  // namespace

void addShutterCommands(CommandTable& p_objTable) {
    p_objTable.add({"range", "KEY", "default and legal values of a command whose range the driver changes",
                    kShutterGroup, 1, 1, rangeOfKey});
    p_objTable.add({"shutter", "[INDEX] | " + argumentsOf(steps()),
                    "the maximum shutter as a place in the driver's list; alone: show it", kShutterGroup, 0, 1,
                    shutter});
}

}  // namespace sensorctl
