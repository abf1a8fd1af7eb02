#include "apps/camerad/host/Style.h"

#include "apps/camerad/host/PlainText.h"
#include "apps/camerad/host/Refusal.h"
#include "apps/shared/KeyNames.h"
#include "apps/shared/PlainXml.h"

#include <tinyxml.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <iterator>

namespace camerad {

namespace {

constexpr std::size_t kDeepest = 256;                      // levels; what the library takes, too
constexpr std::size_t kLargestDocument = 4 * 1024 * 1024;  // bytes; real documents have some ten thousand
constexpr std::size_t kPadding = 16;           // zero bytes behind the text: more than one character can announce
constexpr std::size_t kLongestText = 4096;     // bytes of a label or a word
constexpr std::size_t kMostParameters = 1000;  // real documents have about a hundred; each set looks at all of them

// Attributes that have a member of their own, or that are for the reader of the document only.
const char* const kOwnWords[] = {"id",  "name", "label", "type",    "unit",   "value",
                                 "min", "max",  "step",  "min_key", "max_key"};

std::string textOf(const TiXmlElement& p_objElement, const char* p_szName) {
    const char* const szValue = p_objElement.Attribute(p_szName);
    return nullptr == szValue ? "" : plainLine(szValue, kLongestText);
}

std::optional<int> numberOf(const TiXmlElement& p_objElement, const char* p_szName) {
    const char* const szValue = p_objElement.Attribute(p_szName);
    if (nullptr == szValue) {
        return std::nullopt;
    }
    const long long nNumber = std::strtoll(szValue, nullptr, 10);
    return static_cast<int>(std::clamp<long long>(nNumber, INT32_MIN, INT32_MAX));
}

std::optional<u32> keyOf(const TiXmlElement& p_objElement, const char* p_szName) {
    const std::optional<int> key = numberOf(p_objElement, p_szName);
    return key ? std::optional<u32>(static_cast<u32>(*key)) : std::nullopt;
}

StyleItem itemOf(const TiXmlElement& p_objElement, const std::string& p_strTab) {
    StyleItem item;
    item.nKey = *keyOf(p_objElement, "id");
    item.strName = apps::nameOfKey(item.nKey);
    item.strLabel = textOf(p_objElement, "label");
    item.strType = textOf(p_objElement, "type");
    item.strUnit = textOf(p_objElement, "unit");
    item.strTab = p_strTab;
    item.standard = numberOf(p_objElement, "value");
    item.min = numberOf(p_objElement, "min");
    item.max = numberOf(p_objElement, "max");
    item.step = numberOf(p_objElement, "step");
    item.minKey = keyOf(p_objElement, "min_key");
    item.maxKey = keyOf(p_objElement, "max_key");
    for (const TiXmlElement* choice = p_objElement.FirstChildElement(); nullptr != choice;
         choice = choice->NextSiblingElement()) {
        if (const std::optional<int> index = numberOf(*choice, "index")) {
            item.vecChoices.push_back({*index, textOf(*choice, "label")});
        }
    }
    for (const TiXmlAttribute* word = p_objElement.FirstAttribute(); nullptr != word; word = word->Next()) {
        const std::string strWord = word->Name();
        if (std::end(kOwnWords) == std::find(std::begin(kOwnWords), std::end(kOwnWords), strWord)) {
            item.vecWords.emplace_back(plainLine(strWord, kLongestText), plainLine(word->Value(), kLongestText));
        }
    }
    return item;
}

// Elements in document order. What stands outside of groups comes together in groups without a label; what has no id
// inside of a parameter is one of its choices.
void collect(const TiXmlElement& p_objElement, StyleTab& p_stTab, bool p_bInParameter) {
    for (const TiXmlElement* child = p_objElement.FirstChildElement(); nullptr != child;
         child = child->NextSiblingElement()) {
        const bool bParameter = nullptr != child->Attribute("id");
        if (bParameter) {
            if (p_stTab.vecGroups.empty()) {
                p_stTab.vecGroups.push_back({});
            }
            p_stTab.vecGroups.back().vecItems.push_back(itemOf(*child, p_stTab.strKey));
            collect(*child, p_stTab, true);
        } else if (p_bInParameter) {
            collect(*child, p_stTab, true);
        } else {
            p_stTab.vecGroups.push_back({textOf(*child, "label"), textOf(*child, "show_if"), {}});
            collect(*child, p_stTab, false);
            p_stTab.vecGroups.push_back({});
        }
    }
}

[[noreturn]] void refuse(const std::string& p_strWhy) {
    throw Refusal(Refusal::Kind::Failed, "style-document", "the style document of the channel " + p_strWhy);
}

std::size_t parametersOf(const StyleTab& p_stTab) {
    std::size_t count = 0;
    for (const StyleGroup& group : p_stTab.vecGroups) {
        count += group.vecItems.size();
    }
    return count;
}

std::string listed(const std::vector<StyleChoice>& p_vecChoices) {
    constexpr std::size_t kMost = 12;
    std::string strList;
    for (std::size_t i = 0; i < std::min(kMost, p_vecChoices.size()); ++i) {
        strList += (strList.empty() ? "" : ", ") + std::to_string(p_vecChoices[i].nValue);
    }
    return strList + (p_vecChoices.size() > kMost ? ", ..." : "");
}

bool isOnStep(const StyleItem& p_stItem, long long p_nValue) {
    const long long nStep = p_stItem.step.value_or(1);
    return nStep <= 1 || !p_stItem.min || 0 == (p_nValue - *p_stItem.min) % nStep;
}

}  // namespace

std::optional<std::string> StyleItem::objection(long long p_nValue) const {
    if ("notice" == strType) {
        return "is a notice and takes no value";
    }
    if ("button" == strType) {
        const auto send = std::find_if(vecWords.begin(), vecWords.end(),
                                       [](const auto& p_stWord) { return "send" == p_stWord.first; });
        const long long nSend = vecWords.end() == send ? 1 : std::strtoll(send->second.c_str(), nullptr, 10);
        return nSend == p_nValue
                   ? std::nullopt
                   : std::optional<std::string>("is a button and takes " + std::to_string(nSend) + " only");
    }
    if ("switch" == strType && 0 != p_nValue && 1 != p_nValue) {
        return "takes 0 (off) and 1 (on)";
    }
    if ("choice" == strType || !vecChoices.empty()) {
        const bool bThere = std::any_of(vecChoices.begin(), vecChoices.end(),
                                        [&](const StyleChoice& p_stChoice) { return p_nValue == p_stChoice.nValue; });
        return bThere ? std::nullopt
                      : std::optional<std::string>(vecChoices.empty() ? "has nothing to choose from now"
                                                                      : "takes one of " + listed(vecChoices));
    }
    const long long nMin = min.value_or(INT32_MIN);
    const long long nMax = max.value_or(INT32_MAX);
    if (p_nValue < nMin || p_nValue > nMax || !isOnStep(*this, p_nValue)) {
        std::string strText = "takes " + std::to_string(nMin) + " to " + std::to_string(nMax);
        strText += step.value_or(1) > 1 ? " in steps of " + std::to_string(*step) : "";
        return strText;
    }
    return std::nullopt;
}

const StyleItem* Style::find(u32 p_nKey) const {
    for (const StyleTab& tab : vecTabs) {
        for (const StyleGroup& group : tab.vecGroups) {
            for (const StyleItem& item : group.vecItems) {
                if (item.nKey == p_nKey) {
                    return &item;
                }
            }
        }
    }
    return nullptr;
}

std::vector<u32> Style::recordedKeys() const {
    std::vector<u32> vecKeys;
    for (const StyleTab& tab : vecTabs) {
        for (const StyleGroup& group : tab.vecGroups) {
            for (const StyleItem& item : group.vecItems) {
                if (item.isRecorded()) {
                    vecKeys.push_back(item.nKey);
                }
            }
        }
    }
    return vecKeys;
}

Style parseStyleDocument(const std::string& p_strXml) {
    if (p_strXml.empty()) {
        refuse("is empty: it could not be built from the files of the camera");
    }
    if (p_strXml.size() > kLargestDocument || !apps::isPlainXml(p_strXml, kDeepest)) {
        refuse("is no plain XML, or nested too deeply");
    }
    TiXmlDocument document;
    document.Parse((p_strXml + std::string(kPadding, '\0')).c_str(), nullptr, TIXML_ENCODING_UTF8);
    const TiXmlElement* const root = document.RootElement();
    if (document.Error() || nullptr == root) {
        refuse(std::string("cannot be read: ") + document.ErrorDesc());
    }
    Style style;
    std::size_t parameters = 0;
    for (const TiXmlElement* tab = root->FirstChildElement(); nullptr != tab; tab = tab->NextSiblingElement()) {
        StyleTab parsed{textOf(*tab, "key"), textOf(*tab, "label"), {}};
        if (nullptr != tab->Attribute("id")) {
            parsed.vecGroups.push_back({"", "", {itemOf(*tab, parsed.strKey)}});
        }
        collect(*tab, parsed, false);
        parameters += parametersOf(parsed);
        if (parameters > kMostParameters) {
            refuse("holds more than " + std::to_string(kMostParameters) + " parameters");
        }
        std::vector<StyleGroup>& vecGroups = parsed.vecGroups;
        vecGroups.erase(std::remove_if(vecGroups.begin(), vecGroups.end(),
                                       [](const StyleGroup& p_stGroup) { return p_stGroup.vecItems.empty(); }),
                        vecGroups.end());
        style.vecTabs.push_back(std::move(parsed));
    }
    return style;
}

namespace {

nlohmann::json toJson(const StyleItem& p_stItem) {
    nlohmann::json result = {{"key", p_stItem.nKey},
                             {"name", p_stItem.strName},
                             {"label", p_stItem.strLabel},
                             {"type", p_stItem.strType},
                             {"recorded", p_stItem.isRecorded()}};
    const auto optional = [&](const char* p_szName, const auto& p_value) {
        if (p_value) {
            result[p_szName] = *p_value;
        }
    };
    if (!p_stItem.strUnit.empty()) {
        result["unit"] = p_stItem.strUnit;
    }
    optional("default", p_stItem.standard);
    optional("min", p_stItem.min);
    optional("max", p_stItem.max);
    optional("step", p_stItem.step);
    optional("minKey", p_stItem.minKey);
    optional("maxKey", p_stItem.maxKey);
    if (!p_stItem.vecChoices.empty()) {
        nlohmann::json choices = nlohmann::json::array();
        for (const StyleChoice& choice : p_stItem.vecChoices) {
            choices.push_back({{"value", choice.nValue}, {"label", choice.strLabel}});
        }
        result["choices"] = std::move(choices);
    }
    nlohmann::json words = nlohmann::json::object();
    for (const auto& [strWord, strText] : p_stItem.vecWords) {
        words[strWord] = strText;
    }
    result["words"] = std::move(words);
    return result;
}

}  // namespace

nlohmann::json toJson(const Style& p_stStyle) {
    nlohmann::json tabs = nlohmann::json::array();
    for (const StyleTab& tab : p_stStyle.vecTabs) {
        nlohmann::json groups = nlohmann::json::array();
        for (const StyleGroup& group : tab.vecGroups) {
            nlohmann::json parameters = nlohmann::json::array();
            for (const StyleItem& item : group.vecItems) {
                parameters.push_back(toJson(item));
            }
            nlohmann::json entry = {{"label", group.strLabel}, {"parameters", std::move(parameters)}};
            if (!group.strShowIf.empty()) {
                entry["showIf"] = group.strShowIf;
            }
            groups.push_back(std::move(entry));
        }
        tabs.push_back({{"key", tab.strKey}, {"label", tab.strLabel}, {"groups", std::move(groups)}});
    }
    return {{"tabs", std::move(tabs)}};
}

}  // namespace camerad
