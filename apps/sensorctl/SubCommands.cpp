#include "apps/sensorctl/SubCommands.h"

#include "apps/sensorctl/Shared.h"

namespace sensorctl {

namespace {

std::string usage(const SubCommand& p_stSubCommand) {
    return std::string(p_stSubCommand.szName) + ('\0' == *p_stSubCommand.szArguments ? "" : " ") +
           p_stSubCommand.szArguments;
}

}  // namespace

Result runSubCommand(const char* p_szCommand, const std::vector<SubCommand>& p_vecTable, Session& p_objSession,
                     const Words& p_vecWords) {
    std::vector<std::string> names;
    for (const SubCommand& entry : p_vecTable) {
        names.push_back(entry.szName);
        if (lowerCase(entry.szName) != lowerCase(p_vecWords[0])) {
            continue;
        }
        const Words arguments(p_vecWords.begin() + 1, p_vecWords.end());
        if (arguments.size() < entry.nMinArguments || arguments.size() > entry.nMaxArguments) {
            throw CommandError("wrong number of arguments; usage: " + std::string(p_szCommand) + " " + usage(entry));
        }
        return entry.pfnRun(p_objSession, arguments);
    }
    throw CommandError(std::string(p_szCommand) + " does not know " + quoted(p_vecWords[0]) +
                       didYouMean(nearestMatch(p_vecWords[0], names)));
}

std::string argumentsOf(const std::vector<SubCommand>& p_vecTable) {
    std::vector<std::string> usages;
    for (const SubCommand& entry : p_vecTable) {
        usages.push_back(usage(entry));
    }
    return join(usages, " | ");
}

}  // namespace sensorctl
