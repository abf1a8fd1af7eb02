#include "apps/sensorctl/Arguments.h"
#include "apps/sensorctl/Commands.h"
#include "apps/sensorctl/Interpreter.h"
#include "apps/sensorctl/Shared.h"

namespace sensorctl {

namespace {

const char kTalkGroup[] = "Scripts and help";

Result echo(Session&, const Words& p_vecWords) {
    const std::string text = join(p_vecWords, " ");
    return {true, "", {{"text", text}}, {text}};
}

// debug LEVEL [0|1]
Result debug(Session& p_objSession, const Words& p_vecWords) {
    const int level = static_cast<int>(parseNumber(p_vecWords[0], "the level", kLowestLevel, kHighestLevel));
    const bool abort = p_vecWords.size() > 1 && parseSwitch(p_vecWords[1], "the assertion switch");
    p_objSession.debugSign().set(level, abort);
    return {true, "", {{"level", level}, {"assert", abort}}, {}};
}

}  // namespace

void addTalkCommands(CommandTable& p_objTable, Interpreter& p_objInterpreter) {
    p_objTable.add({"echo", "[TEXT...]", "print the text", kTalkGroup, 0, kAnyNumber, echo, Effect::speaks});
    p_objTable.add({"debug", "LEVEL [0|1]", "debug level and assertion switch of the library, until the session ends",
                    kTalkGroup, 1, 2, debug, Effect::speaks});
    p_objTable.add({"trace", "[on|off]", "show commands and calls as they happen, or show whether they are", kTalkGroup,
                    0, 1,
                    [&p_objInterpreter](Session&, const Words& p_vecWords) {
                        if (!p_vecWords.empty()) {
                            p_objInterpreter.trace(parseSwitch(p_vecWords[0], "the trace"));
                        }
                        return Result{true, "", {{"trace", p_objInterpreter.isTracing()}}, {}};
                    },
                    Effect::speaks});
    p_objTable.add({"quit", "", "end the session", kTalkGroup, 0, 0,
                    [&p_objInterpreter](Session&, const Words&) {
                        p_objInterpreter.quit();
                        return Result{};
                    },
                    Effect::speaks});
}

void addAllCommands(CommandTable& p_objTable, Interpreter& p_objInterpreter) {
    addLifeCommands(p_objTable);
    addParameterCommands(p_objTable);
    addReadCommands(p_objTable);
    addListCommand(p_objTable);
    addKeepCommands(p_objTable);
    addStoreCommands(p_objTable);
    addDiffCommand(p_objTable);
    addShutterCommands(p_objTable);
    addOperationCommands(p_objTable);
    addSchemeCommands(p_objTable);
    addLanguageCommands(p_objTable);
    addTimeCommands(p_objTable);
    addWatchCommand(p_objTable, p_objInterpreter);
    addSceneCommands(p_objTable);
    addDeviceCommands(p_objTable);
    addVideoCommands(p_objTable);
    addTranscriptCommands(p_objTable);
    addExpectCommand(p_objTable, p_objInterpreter);
    addRecordCommand(p_objTable, p_objInterpreter);
    addTalkCommands(p_objTable, p_objInterpreter);
    addHelpCommand(p_objTable, p_objInterpreter);
}

}  // namespace sensorctl
