#include "apps/sensorctl/CommandTable.h"

#include "apps/sensorctl/Shared.h"

#include <stdexcept>

namespace sensorctl {

void CommandTable::add(Command p_stCommand) {
    for (const Command& command : m_vecCommands) {
        if (lowerCase(command.strName) == lowerCase(p_stCommand.strName)) {
            throw std::logic_error("two commands named " + p_stCommand.strName);
        }
    }
    m_vecCommands.push_back(std::move(p_stCommand));
}

const Command& CommandTable::find(const std::string& p_strName) const {
    std::vector<std::string> names;
    for (const Command& command : m_vecCommands) {
        if (lowerCase(command.strName) == lowerCase(p_strName)) {
            return command;
        }
        names.push_back(command.strName);
    }
    const std::string nearest = nearestMatch(p_strName, names);
    throw CommandError("unknown command " + quoted(p_strName) +
                       (nearest.empty() ? "; help lists the commands" : didYouMean(nearest)));
}

const Command& CommandTable::match(const Words& p_vecWords) const {
    const Command& command = find(p_vecWords.front());
    const std::size_t count = p_vecWords.size() - 1;
    if (count < command.nMinArguments) {
        throw CommandError(command.strName + " needs more arguments; usage: " + usageOf(command));
    }
    if (count > command.nMaxArguments) {
        throw CommandError("one argument too many for " + command.strName + ": " +
                           quoted(p_vecWords[command.nMaxArguments + 1]) + "; usage: " + usageOf(command));
    }
    return command;
}

std::string usageOf(const Command& p_stCommand) {
    return p_stCommand.strName + (p_stCommand.strArguments.empty() ? "" : " " + p_stCommand.strArguments);
}

}  // namespace sensorctl
