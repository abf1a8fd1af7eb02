// The parameters that a style document describes.
//
// Documents are data of the camera and not trusted: what is nested too deeply or is no plain XML is refused, numbers that
// are none count as 0. Functions without state; those that read a file block for as long as the medium takes.
#pragma once

#include "platform/Types.h"

#include <optional>
#include <string>
#include <vector>

namespace apps {

struct StyleChoice {
    int nValue;
    std::string strLabel;
};

// One element with an id.
struct StyleParameter {
    u32 nKey = 0;
    std::string strName;  // KEY_..., empty when the key has no name
    std::string strLabel;
    std::string strType;  // slider, number, switch, choice, button, notice
    std::string strUnit;
    std::string strTab;               // key of the tab it stands in
    std::optional<int> defaultValue;  // absent for what is in no parameter set
    std::optional<int> min;
    std::optional<int> max;
    int nStep = 1;
    std::vector<StyleChoice> vecChoices;

    // "0..100", "0..100 step 5", "0|1", "0=Off 1=On"; empty without legal values.
    std::string rangeText() const;
};

// In the order of the document. Throws CommandError when it cannot be used.
std::vector<StyleParameter> parseStyle(const std::string& p_strDocument);

// The values to choose from, as words, and the tabs, in the document that init has laid out for a channel: no driver is
// asked. Empty when there is no such document.
std::vector<std::string> valuesToChoose(int p_nChannel, u32 p_nKey);
std::vector<std::string> tabsToChoose(int p_nChannel);

}  // namespace apps
