#include "apps/sensorctl/Commands.h"
#include "apps/sensorctl/HelpTexts.h"
#include "apps/sensorctl/Interpreter.h"
#include "apps/sensorctl/Shared.h"
#include "apps/sensorctl/Usage.h"

#include <algorithm>

namespace sensorctl {

namespace {

Json describe(const Command& p_stCommand) {
    Json data = {{"name", p_stCommand.strName},
                 {"usage", usageOf(p_stCommand)},
                 {"summary", p_stCommand.strSummary},
                 {"group", p_stCommand.strGroup}};
    if (const HelpText* const text = findHelpText(p_stCommand.strName)) {
        data["details"] = text->szDetails;
        data["example"] = linesOf(text->szExample);
    }
    return data;
}

// "  init [MODEL [CODE]]               initialise from the device root"; several ways to write it, and a long one, on
// lines of their own.
void appendSynopsis(const Command& p_stCommand, std::vector<std::string>& p_vecLines) {
    constexpr std::size_t kUsageWidth = 34;  // columns; the longest single usage and a gap
    const std::vector<std::string> ways = waysOf(p_stCommand);
    const bool beside = 1 == ways.size() && ways[0].size() <= kUsageWidth;
    std::string first = "  " + (beside ? ways[0] : p_stCommand.strName);
    first.resize(std::max(first.size() + 1, kUsageWidth + 2), ' ');
    p_vecLines.push_back(first + p_stCommand.strSummary);
    for (std::size_t i = 0; !beside && i < ways.size(); ++i) {
        p_vecLines.push_back("      " + ways[i]);
    }
}

Result helpForOne(const Command& p_stCommand) {
    constexpr std::size_t kWidth = 90;  // columns of running text
    std::vector<std::string> lines;
    appendSynopsis(p_stCommand, lines);
    if (const HelpText* const text = findHelpText(p_stCommand.strName)) {
        if ('\0' != *text->szDetails) {
            lines.push_back("");
        }
        for (const std::string& line : wrapped(text->szDetails, kWidth)) {
            lines.push_back("  " + line);
        }
        lines.push_back("\n  Example:");
        for (const std::string& line : linesOf(text->szExample)) {
            lines.push_back("      " + line);
        }
    }
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
        appendSynopsis(command, lines);
        commands.push_back(describe(command));
    }
    return {true, "", {{"commands", commands}}, lines};
}

}  // namespace

void addHelpCommand(CommandTable& p_objTable, Interpreter& p_objInterpreter) {
    p_objTable.add({"help", "[COMMAND]", "what a command does, or all of them", "Scripts and help", 0, 1,
                    [&p_objInterpreter](Session&, const Words& p_vecWords) {
                        const CommandTable& table = p_objInterpreter.table();
                        return p_vecWords.empty() ? helpForAll(table) : helpForOne(table.find(p_vecWords[0]));
                    },
                    Effect::speaks});
}

}  // namespace sensorctl
