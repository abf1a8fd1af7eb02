#include "apps/sensorctl/HelpTexts.h"

namespace sensorctl {

const std::vector<HelpText>& helpTexts() {
    static const std::vector<HelpText> vecTexts = {
#define HELP(command, example, details) {command, details, example},
#include "apps/sensorctl/HelpTexts.def"
#undef HELP
    };
    return vecTexts;
}

const HelpText* findHelpText(const std::string& p_strCommand) {
    for (const HelpText& text : helpTexts()) {
        if (p_strCommand == text.szCommand) {
            return &text;
        }
    }
    return nullptr;
}

}  // namespace sensorctl
