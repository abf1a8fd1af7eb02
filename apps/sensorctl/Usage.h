// How a command is written: its arguments, as help shows them, taken apart.
//
// The words of a way: letters in capitals stand for something (KEY, FILE), everything else is typed as it is; [..] may be
// left out, a|b is one of several, and what ends in "..." may come again.
#pragma once

#include "apps/sensorctl/CommandTable.h"

#include <string>
#include <vector>

namespace sensorctl {

// One word of a way.
struct UsageWord {
    std::vector<std::string> vecLiterals;  // typed as they are
    std::vector<std::string> vecKinds;     // what else it may stand for, for instance "KEY"
    std::size_t nLeftOut = 0;              // how many words from here on may be left out together
    bool bRepeats = false;
};

// The ways to write a command, each with its name in front: the arguments taken apart at " | ".
std::vector<std::string> waysOf(const Command& p_stCommand);

// The words of one way, without the name of the command.
std::vector<UsageWord> wordsOfWay(const std::string& p_strWay);

}  // namespace sensorctl
