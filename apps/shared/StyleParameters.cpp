#include "apps/shared/StyleParameters.h"

#include "apps/shared/CommandError.h"
#include "apps/shared/KeyNames.h"
#include "apps/shared/PlainXml.h"
#include "platform/QVFile.h"

#include <tinyxml.h>

#include <algorithm>
#include <cstdlib>

namespace apps {

namespace {

constexpr std::size_t kDeepest = 256;              // levels; what the library takes, too
constexpr std::size_t kLargest = 4 * 1024 * 1024;  // bytes; real documents have some ten thousand
constexpr std::size_t kPadding = 16;               // zero bytes behind the text: more than one character can announce

std::string textOf(const TiXmlElement& p_objElement, const char* p_szName) {
    const char* const value = p_objElement.Attribute(p_szName);
    return nullptr == value ? "" : value;
}

std::optional<int> numberOf(const TiXmlElement& p_objElement, const char* p_szName) {
    const char* const value = p_objElement.Attribute(p_szName);
    if (nullptr == value) {
        return std::nullopt;
    }
    const long long number = std::strtoll(value, nullptr, 10);
    return static_cast<int>(std::clamp<long long>(number, INT32_MIN, INT32_MAX));
}

StyleParameter parameterOf(const TiXmlElement& p_objElement, const std::string& p_strTab) {
    StyleParameter parameter;
    parameter.nKey = static_cast<u32>(*numberOf(p_objElement, "id"));
    parameter.strName = nameOfKey(parameter.nKey);
    parameter.strLabel = textOf(p_objElement, "label");
    parameter.strType = textOf(p_objElement, "type");
    parameter.strUnit = textOf(p_objElement, "unit");
    parameter.strTab = p_strTab;
    parameter.defaultValue = numberOf(p_objElement, "value");
    parameter.min = numberOf(p_objElement, "min");
    parameter.max = numberOf(p_objElement, "max");
    parameter.nStep = numberOf(p_objElement, "step").value_or(1);
    for (const TiXmlElement* item = p_objElement.FirstChildElement(); nullptr != item;
         item = item->NextSiblingElement()) {
        if (const std::optional<int> index = numberOf(*item, "index")) {
            parameter.vecChoices.push_back({*index, textOf(*item, "label")});
        }
    }
    return parameter;
}

void collect(const TiXmlElement& p_objElement, const std::string& p_strTab, std::vector<StyleParameter>& p_vecInto) {
    if (nullptr != p_objElement.Attribute("id")) {
        p_vecInto.push_back(parameterOf(p_objElement, p_strTab));
    }
    for (const TiXmlElement* child = p_objElement.FirstChildElement(); nullptr != child;
         child = child->NextSiblingElement()) {
        collect(*child, p_strTab, p_vecInto);
    }
}

// What init has laid out for the channel, before the driver's ranges; nothing when that cannot be used.
std::vector<StyleParameter> mergedStyle(int p_nChannel) {
    QVFile file;
    const std::string name = "/tmp/merge_style_ch" + std::to_string(p_nChannel) + ".xml";
    if (!file.open(name.c_str(), QVFile::modeRead)) {
        return {};
    }
    const INT64 length = file.getLength();
    if (length < 0 || length > static_cast<INT64>(kLargest)) {
        return {};
    }
    std::string text(static_cast<std::size_t>(length), '\0');
    if (file.read(text.data(), static_cast<int>(length)) != length) {
        return {};
    }
    try {
        return parseStyle(text);
    } catch (const CommandError&) {
        return {};
    }
}

}  // namespace

std::string StyleParameter::rangeText() const {
    std::string text;
    for (const StyleChoice& choice : vecChoices) {
        text += (text.empty() ? "" : " ") + std::to_string(choice.nValue) +
                (choice.strLabel.empty() ? "" : "=" + choice.strLabel);
    }
    if (text.empty() && "switch" == strType) {
        text = "0|1";
    }
    if (text.empty() && min && max) {
        text = std::to_string(*min) + ".." + std::to_string(*max);
        text += 1 == nStep ? "" : " step " + std::to_string(nStep);
    }
    return text;
}

std::vector<StyleParameter> parseStyle(const std::string& p_strDocument) {
    if (p_strDocument.empty()) {
        throw CommandError("the style document is empty; use init first");
    }
    TiXmlDocument document;
    if (p_strDocument.size() > kLargest || !isPlainXml(p_strDocument, kDeepest)) {
        throw CommandError("the style document is no plain XML, or nested too deeply");
    }
    document.Parse((p_strDocument + std::string(kPadding, '\0')).c_str(), nullptr, TIXML_ENCODING_UTF8);
    const TiXmlElement* const root = document.RootElement();
    if (document.Error() || nullptr == root) {
        throw CommandError(std::string("the style document cannot be read: ") + document.ErrorDesc());
    }
    std::vector<StyleParameter> parameters;
    for (const TiXmlElement* tab = root->FirstChildElement(); nullptr != tab; tab = tab->NextSiblingElement()) {
        collect(*tab, textOf(*tab, "key"), parameters);
    }
    return parameters;
}

std::vector<std::string> valuesToChoose(int p_nChannel, u32 p_nKey) {
    std::vector<std::string> values;
    for (const StyleParameter& parameter : mergedStyle(p_nChannel)) {
        if (parameter.nKey != p_nKey) {
            continue;
        }
        for (const StyleChoice& choice : parameter.vecChoices) {
            values.push_back(std::to_string(choice.nValue));
        }
        if ("switch" == parameter.strType) {
            values.insert(values.end(), {"0", "1"});
        }
    }
    return values;
}

std::vector<std::string> tabsToChoose(int p_nChannel) {
    std::vector<std::string> tabs;
    for (const StyleParameter& parameter : mergedStyle(p_nChannel)) {
        if (!parameter.strTab.empty() && (tabs.empty() || tabs.back() != parameter.strTab)) {
            tabs.push_back(parameter.strTab);
        }
    }
    return tabs;
}

}  // namespace apps
