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

// The ways to write a command: its arguments, taken apart at " | ".
std::vector<std::string> waysOf(const Command& p_stCommand) {
    const std::string separator = " | ";
    std::vector<std::string> ways;
    std::size_t start = 0;
    for (std::size_t end = 0; std::string::npos != end; start = end + separator.size()) {
        end = p_stCommand.strArguments.find(separator, start);
        const std::string arguments = p_stCommand.strArguments.substr(start, end - start);
        ways.push_back(p_stCommand.strName + (arguments.empty() ? "" : " ") + arguments);
    }
    return ways;
}

// "  init [MODEL [CODE]]               initialise from the device root"; more ways to write it on lines of their own.
void appendHelp(const Command& p_stCommand, std::vector<std::string>& p_vecLines) {
    constexpr std::size_t kUsageWidth = 34;  // columns; the longest single usage and a gap
    const std::vector<std::string> ways = waysOf(p_stCommand);
    std::string first = "  " + (1 == ways.size() ? ways[0] : p_stCommand.strName);
    first.resize(std::max(first.size() + 1, kUsageWidth + 2), ' ');
    p_vecLines.push_back(first + p_stCommand.strSummary);
    for (std::size_t i = 0; ways.size() > 1 && i < ways.size(); ++i) {
        p_vecLines.push_back("      " + ways[i]);
    }
}

Result helpForOne(const Command& p_stCommand) {
    std::vector<std::string> lines;
    appendHelp(p_stCommand, lines);
    return {true, "", describe(p_stCommand), lines};
}

Result helpForAll(const CommandTable& p_objTable) {
    Json commands = Json::array();
    std::vector<std::string> lines;
    std::string group;
    for (const Command& command : p_objTable.all()) {
        if (command.strGroup != group) {
            group = command.strGroup;
            lines.push_back((lines.empty() ? "" : "\n") + group);
        }
        appendHelp(command, lines);
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
                    kGroup, 1, 2, debug, Effect::speaks});
    p_objTable.add({"trace", "[on|off]", "show commands and calls as they happen, or show whether they are", kGroup, 0,
                    1,
                    [&p_objInterpreter](Session&, const Words& p_vecWords) {
                        if (!p_vecWords.empty()) {
                            p_objInterpreter.trace(parseSwitch(p_vecWords[0], "the trace"));
                        }
                        return Result{true, "", {{"trace", p_objInterpreter.isTracing()}}, {}};
                    },
                    Effect::speaks});
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
