// The commands that sensorctl knows, by name.
//
// Filled once, before the first command runs; read by one thread.
#pragma once

#include "apps/sensorctl/Result.h"

#include <functional>
#include <string>
#include <vector>

namespace sensorctl {

class Session;

using Words = std::vector<std::string>;

// What a command leaves for expect to look at.
enum class Effect {
    acts,    // its answer and what driver and video module were told meanwhile
    looks,   // its answer
    speaks,  // nothing
};

struct Command {
    std::string strName;
    std::string strArguments;  // as help shows them, for instance "KEY VALUE [nocache]"
    std::string strSummary;    // one line
    std::string strGroup;      // heading in help
    std::size_t nMinArguments;
    std::size_t nMaxArguments;
    // Carries the command out. The words are the arguments alone, their number as promised above. Throws CommandError for
    // arguments that it cannot use.
    std::function<Result(Session&, const Words&)> fnRun;
    Effect eEffect = Effect::acts;
};

constexpr std::size_t kAnyNumber = SIZE_MAX;

class CommandTable {
public:
    // A name that is there already is a mistake of the program: throws std::logic_error.
    void add(Command p_stCommand);

    // The command of this name, in any case of letters. Throws CommandError, with the nearest name, when there is none.
    const Command& find(const std::string& p_strName) const;

    // Finds the command and checks the number of its arguments: throws CommandError, with its usage, when it is wrong.
    const Command& match(const Words& p_vecWords) const;

    const std::vector<Command>& all() const { return m_vecCommands; }

private:
    std::vector<Command> m_vecCommands;
};

// "set KEY VALUE [nocache]"
std::string usageOf(const Command& p_stCommand);

}  // namespace sensorctl
