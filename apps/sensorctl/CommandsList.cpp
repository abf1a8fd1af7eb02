#include "apps/sensorctl/Commands.h"
#include "apps/sensorctl/ParameterSets.h"
#include "apps/sensorctl/Shared.h"
#include "apps/sensorctl/Table.h"

#include <algorithm>
#include <optional>

namespace sensorctl {

namespace {

// Which parameters to list: all conditions that are set must hold.
struct Filter {
    std::string strPattern;
    std::string strTab;
    std::int64_t nFirstKey = 0;
    std::int64_t nLastKey = kIntMax;
    bool bChangedOnly = false;
};

struct Row {
    StyleParameter stStyle;
    std::optional<int> value;  // absent for what is in no set

    bool isChanged() const { return value && value != stStyle.defaultValue; }
};

std::string nameOf(const StyleParameter& p_stParameter) {
    return p_stParameter.strName.empty() ? "-" : p_stParameter.strName;
}

void checkTab(const std::string& p_strTab, const std::vector<StyleParameter>& p_vecStyle) {
    std::vector<std::string> tabs;
    for (const StyleParameter& parameter : p_vecStyle) {
        if (lowerCase(parameter.strTab) == lowerCase(p_strTab)) {
            return;
        }
        tabs.push_back(parameter.strTab);
    }
    throw CommandError("the style document has no tab " + quoted(p_strTab) + didYouMean(nearestMatch(p_strTab, tabs)));
}

// [PATTERN] [tab TAB] [keys FROM TO] [changed], in any order
Filter parseFilter(const Words& p_vecWords) {
    Filter filter;
    for (std::size_t i = 0; i < p_vecWords.size(); ++i) {
        const std::string word = lowerCase(p_vecWords[i]);
        const std::size_t left = p_vecWords.size() - i - 1;
        if ("changed" == word) {
            filter.bChangedOnly = true;
        } else if ("tab" == word && left >= 1) {
            filter.strTab = p_vecWords[++i];
        } else if ("keys" == word && left >= 2) {
            filter.nFirstKey = parseNumber(p_vecWords[++i], "FROM", 0, kIntMax);
            filter.nLastKey = parseNumber(p_vecWords[++i], "TO", 0, kIntMax);
            if (filter.nFirstKey > filter.nLastKey) {
                throw CommandError("FROM must not be above TO");
            }
        } else if (("tab" == word || "keys" == word) || !filter.strPattern.empty()) {
            throw CommandError("cannot use " + quoted(p_vecWords[i]) +
                               " here; usage: list [PATTERN] [tab TAB] [keys FROM TO] [changed]");
        } else {
            filter.strPattern = p_vecWords[i];
        }
    }
    return filter;
}

bool matchesPattern(const StyleParameter& p_stParameter, const std::string& p_strPattern) {
    return matchesWildcards(p_stParameter.strName, p_strPattern) ||
           matchesWildcards(shortNameOfKey(p_stParameter.nKey), p_strPattern) ||
           matchesWildcards(p_stParameter.strLabel, p_strPattern);
}

std::vector<Row> chosen(const std::vector<StyleParameter>& p_vecStyle, const std::vector<StoredValue>& p_vecValues,
                        const Filter& p_stFilter) {
    std::vector<Row> rows;
    for (const StyleParameter& parameter : p_vecStyle) {
        Row row{parameter, std::nullopt};
        for (const StoredValue& held : p_vecValues) {
            if (held.nKey == parameter.nKey) {
                row.value = held.nValue;
                break;
            }
        }
        const bool inTab = p_stFilter.strTab.empty() || lowerCase(p_stFilter.strTab) == lowerCase(parameter.strTab);
        const bool inKeys = parameter.nKey >= p_stFilter.nFirstKey && parameter.nKey <= p_stFilter.nLastKey;
        if (inTab && inKeys && (!p_stFilter.bChangedOnly || row.isChanged()) &&
            (p_stFilter.strPattern.empty() || matchesPattern(parameter, p_stFilter.strPattern))) {
            rows.push_back(row);
        }
    }
    return rows;
}

Json jsonOf(const std::optional<int>& p_number) {
    return p_number ? Json(*p_number) : Json(nullptr);
}

Json jsonOf(const Row& p_stRow) {
    const StyleParameter& style = p_stRow.stStyle;
    Json data = {{"key", style.nKey},
                 {"name", style.strName},
                 {"label", style.strLabel},
                 {"type", style.strType},
                 {"value", jsonOf(p_stRow.value)},
                 {"default", jsonOf(style.defaultValue)},
                 {"changed", p_stRow.isChanged()}};
    if (style.min && style.max) {
        data["min"] = *style.min;
        data["max"] = *style.max;
        data["step"] = style.nStep;
    }
    if (!style.vecChoices.empty()) {
        data["choices"] = Json::array();
        for (const StyleChoice& choice : style.vecChoices) {
            data["choices"].push_back({{"value", choice.nValue}, {"label", choice.strLabel}});
        }
    }
    data["unit"] = style.strUnit;
    data["tab"] = style.strTab;
    return data;
}

std::vector<std::string> tableOf(const std::vector<Row>& p_vecRows) {
    constexpr std::size_t kWidestRange = 60;  // columns; JSON has all of it
    const auto number = [](const std::optional<int>& p_number) { return p_number ? std::to_string(*p_number) : "-"; };
    std::vector<std::vector<std::string>> cells = {{"key", "name", "value", "default", "unit", "tab", "range"}};
    for (const Row& row : p_vecRows) {
        std::string range = row.stStyle.rangeText();
        if (range.size() > kWidestRange && p_vecRows.size() > 1) {
            range.replace(kWidestRange - 3, std::string::npos, "...");
        }
        cells.push_back({std::to_string(row.stStyle.nKey), nameOf(row.stStyle),
                         number(row.value) + (row.isChanged() ? "*" : ""), number(row.stStyle.defaultValue),
                         row.stStyle.strUnit, row.stStyle.strTab, range});
    }
    return alignedLines(cells);
}

Result list(Session& p_objSession, const Words& p_vecWords) {
    const Filter filter = parseFilter(p_vecWords);
    const std::vector<StyleParameter> style = styleOf(p_objSession);
    if (!filter.strTab.empty()) {
        checkTab(filter.strTab, style);
    }
    const std::vector<Row> rows = chosen(style, memoryOf(p_objSession, style), filter);
    Json data = {{"scheme", currentScheme(p_objSession)}, {"count", rows.size()}, {"parameters", Json::array()}};
    for (const Row& row : rows) {
        data["parameters"].push_back(jsonOf(row));
    }
    const bool strangers = std::none_of(style.begin(), style.end(), [&](const StyleParameter& p_stParameter) {
        return filter.strPattern.empty() || matchesPattern(p_stParameter, filter.strPattern);
    });
    if (strangers) {
        std::vector<std::string> names;
        for (const StyleParameter& parameter : style) {
            names.push_back(shortNameOfKey(parameter.nKey));
        }
        return Result::failed(
            "no parameter is called " + quoted(filter.strPattern) + didYouMean(nearestMatch(filter.strPattern, names)),
            data);
    }
    std::vector<std::string> lines = rows.empty() ? std::vector<std::string>() : tableOf(rows);
    lines.push_back(std::to_string(rows.size()) + " of " + std::to_string(style.size()) + " parameters");
    return {true, "", data, lines};
}

}  // namespace

void addListCommand(CommandTable& p_objTable) {
    p_objTable.add({"list", "[PATTERN] [tab TAB] [keys FROM TO] [changed]",
                    "the parameters that the style document offers, with value, default, unit, tab and range",
                    "Reading back", 0, 7, list});
}

}  // namespace sensorctl
