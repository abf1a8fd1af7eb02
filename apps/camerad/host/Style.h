// The style document of a channel as the page needs it: tabs, groups, parameters with everything that is said of them.
//
// Values without state. Documents are data of the camera and not trusted; parseStyleDocument refuses what is no plain XML
// or nested too deeply.
#pragma once

#include "platform/Types.h"

#include <nlohmann/json.hpp>

#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace camerad {

struct StyleChoice {
    int nValue = 0;
    std::string strLabel;
};

struct StyleItem {
    u32 nKey = 0;
    std::string strName;  // KEY_..., empty for a key without a name
    std::string strLabel;
    std::string strType;  // slider, number, switch, choice, button, notice; any other word as it stands
    std::string strUnit;
    std::string strTab;           // key of its tab
    std::optional<int> standard;  // the attribute "value": default; absent for what no scheme holds
    std::optional<int> min, max, step;
    std::optional<u32> minKey, maxKey;  // keys whose values limit it further
    std::vector<StyleChoice> vecChoices;
    // The words of the document as they stand, for the page: show_if, absent_if, enable_list, enable_when, send, text,
    // and any other that this program does not know.
    std::vector<std::pair<std::string, std::string>> vecWords;

    bool isRecorded() const { return standard.has_value(); }
    // Nothing when the value may be set; otherwise why not, as a sentence ("takes 0 to 100").
    std::optional<std::string> objection(long long p_nValue) const;
};

struct StyleGroup {
    std::string strLabel;  // empty for parameters that stand directly in their tab
    std::string strShowIf;
    std::vector<StyleItem> vecItems;
};

struct StyleTab {
    std::string strKey;
    std::string strLabel;
    std::vector<StyleGroup> vecGroups;
};

struct Style {
    std::vector<StyleTab> vecTabs;

    const StyleItem* find(u32 p_nKey) const;
    std::vector<u32> recordedKeys() const;  // in the order of the document
};

// Throws Refusal (Failed) when the document cannot be used.
Style parseStyleDocument(const std::string& p_strXml);

// As GET /api/v1/channels/{channel}/metadata gives it.
nlohmann::json toJson(const Style& p_stStyle);

}  // namespace camerad
