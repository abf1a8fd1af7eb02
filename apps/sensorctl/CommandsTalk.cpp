#include "apps/sensorctl/CommandError.h"
#include "apps/sensorctl/Commands.h"
#include "apps/sensorctl/Interpreter.h"
#include "apps/sensorctl/Number.h"
#include "apps/sensorctl/Text.h"

namespace sensorctl {

namespace {

const char kGroup[] = "Scripts and help";
constexpr int kLowestLevel = -1;  // silences even assertions
constexpr int kHighestLevel = 9;  // more than any message asks for

Result echo(Session&, const Words& p_vecWords) {
    const std::string text = join(p_vecWords, " ");
    return {true, "", {{"text", text}}, {text}};
}

Json describe(const Command& p_stCommand) {
    return {{"name", p_stCommand.strName},
            {"usage", usageOf(p_stCommand)},
            {"summary", p_stCommand.strSummary},
            {"group", p_stCommand.strGroup}};
}

Result helpForOne(const Command& p_stCommand) {
    return {true, "", describe(p_stCommand), {usageOf(p_stCommand), "    " + p_stCommand.strSummary}};
}

Result helpForAll(const CommandTable& p_objTable) {
    constexpr std::size_t kUsageWidth = 34;
    Json commands = Json::array();
    std::vector<std::string> lines;
    std::string group;
    for (const Command& command : p_objTable.all()) {
        if (command.strGroup != group) {
            group = command.strGroup;
            lines.push_back((lines.empty() ? "" : "\n") + group);
        }
        std::string usage = usageOf(command);
        usage.resize(std::max(usage.size() + 1, kUsageWidth), ' ');
        lines.push_back("  " + usage + command.strSummary);
        commands.push_back(describe(command));
    }
    return {true, "", {{"commands", commands}}, lines};
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
    p_objTable.add({"echo", "[TEXT...]", "print the text", kGroup, 0, kAnyNumber, echo, Effect::speaks});
    p_objTable.add({"debug", "LEVEL [0|1]", "debug level and assertion switch of the library, until the session ends",
                    kGroup, 1, 2, debug, Effect::looks});
    p_objTable.add({"help", "[COMMAND]", "what a command does, or all of them", kGroup, 0, 1,
                    [&p_objInterpreter](Session&, const Words& p_vecWords) {
                        const CommandTable& table = p_objInterpreter.table();
                        return p_vecWords.empty() ? helpForAll(table) : helpForOne(table.find(p_vecWords[0]));
                    },
                    Effect::speaks});
    p_objTable.add({"quit", "", "end the session", kGroup, 0, 0,
                    [&p_objInterpreter](Session&, const Words&) {
                        p_objInterpreter.quit();
                        return Result{};
                    },
                    Effect::speaks});
}

void addAllCommands(CommandTable& p_objTable, Interpreter& p_objInterpreter) {
    addLifeCommands(p_objTable);
    addParameterCommands(p_objTable);
    addOperationCommands(p_objTable);
    addSchemeCommands(p_objTable);
    addStoreCommands(p_objTable);
    addTimeCommands(p_objTable);
    addSceneCommands(p_objTable);
    addDeviceCommands(p_objTable);
    addVideoCommands(p_objTable);
    addTranscriptCommands(p_objTable);
    addExpectCommand(p_objTable, p_objInterpreter);
    addTalkCommands(p_objTable, p_objInterpreter);
}

}  // namespace sensorctl
