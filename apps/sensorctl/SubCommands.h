// Commands whose first word chooses what they do: "scene light 0.5".
#pragma once

#include "apps/sensorctl/CommandTable.h"

namespace sensorctl {

struct SubCommand {
    const char* szName;
    const char* szArguments;
    std::size_t nMinArguments;  // without the name
    std::size_t nMaxArguments;
    Result (*pfnRun)(Session&, const Words&);
};

// Runs the sub-command that the first word names with the words behind it. Throws CommandError, with the nearest name or
// the usage, when there is none or the number of arguments is wrong.
Result runSubCommand(const char* p_szCommand, const std::vector<SubCommand>& p_vecTable, Session& p_objSession,
                     const Words& p_vecWords);

// "light LUX | clock TIME"
std::string argumentsOf(const std::vector<SubCommand>& p_vecTable);

}  // namespace sensorctl
