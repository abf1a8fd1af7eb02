// What help says of a command beyond its synopsis and its summary.
//
// Values without state; any thread may call.
#pragma once

#include <string>
#include <vector>

namespace sensorctl {

struct HelpText {
    const char* szCommand;
    const char* szDetails;  // sentences; may be empty
    const char* szExample;  // commands, one a line; they succeed as they stand, on a fresh device root
};

// One for each command of the program, in no order.
const std::vector<HelpText>& helpTexts();

// Null for a command without one.
const HelpText* findHelpText(const std::string& p_strCommand);

}  // namespace sensorctl
