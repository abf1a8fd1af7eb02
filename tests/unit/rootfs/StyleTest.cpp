// What the library and the web page need from a style document. Every test looks at each base document and at each
// document that a device of the sample tree makes of it.
#include "tests/unit/rootfs/Devices.h"
#include "tests/unit/rootfs/Documents.h"
#include "tests/unit/rootfs/KeyTable.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <map>
#include <set>

namespace {

constexpr int kDriverDefault = 100;       // as the value of 49, 50 or 1537: the driver's own default
constexpr int kOwnChoices = 200;          // from here on, the value of 49: the style's own choices, default less 200
constexpr std::size_t kDriverItems = 64;  // choices that a range record can hold
constexpr std::size_t kTableRows = 154;   // of the key-command table, and of the scratch array made for it
constexpr int kDeepest = 16;              // the library refuses 256 levels; no page needs more than a few
constexpr int kScheduleKeys[] = {8000, 8001, 8002, 8003, 8004};

// One document with what the tests ask of it.
struct Sample {
    StyleDocument style;
    std::vector<Parameter> parameters;

    const Parameter* find(int p_nId) const { return findParameter(parameters, p_nId); }
};

std::vector<Sample> allSamples() {
    std::vector<StyleDocument> styles;
    for (const std::string kind : {"", "_dome", "_Thermal"}) {
        styles.push_back(loadStyle("/hd1/moduleConfig/sensorConfig/style/Style" + kind + ".xml"));
    }
    for (const Channel& channel : allChannels()) {
        styles.push_back(mergeFor(channel).style);
    }
    std::vector<Sample> samples;
    for (const StyleDocument& style : styles) {
        samples.push_back({style, style.parameters()});
    }
    return samples;
}

void forEachDocument(const std::function<void(const Sample&)>& p_fnCheck) {
    const std::vector<Sample> samples = allSamples();
    ASSERT_LE(10u, samples.size());
    for (const Sample& sample : samples) {
        SCOPED_TRACE(sample.style.name);
        p_fnCheck(sample);
    }
}

std::vector<int> stored(const std::vector<Parameter>& p_vecParameters) {
    std::vector<int> keys;
    for (const Parameter& parameter : p_vecParameters) {
        if (parameter.hasValue) {
            keys.push_back(parameter.id);
        }
    }
    return keys;
}

// Whether the element takes this value when a user gives it.
bool accepts(const Parameter& p_stParameter, int p_nValue) {
    if ("switch" == p_stParameter.type) {
        return 0 == p_nValue || 1 == p_nValue;
    }
    if ("choice" == p_stParameter.type) {
        return p_stParameter.offers(p_nValue);
    }
    const auto low = p_stParameter.number("min");
    const auto high = p_stParameter.number("max");
    const auto step = p_stParameter.number("step");
    return low && high && step && 0 < *step && *low <= p_nValue && p_nValue <= *high && 0 == (p_nValue - *low) % *step;
}

// What the element's value says the factory value is; nothing when it leaves that to the driver.
std::optional<int> factoryValue(const Parameter& p_stParameter) {
    const bool chosenByDriver = 49 == p_stParameter.id || 50 == p_stParameter.id || 1537 == p_stParameter.id;
    if (chosenByDriver && kDriverDefault == p_stParameter.value) {
        return std::nullopt;
    }
    return 49 == p_stParameter.id && kOwnChoices <= p_stParameter.value ? p_stParameter.value - kOwnChoices
                                                                        : p_stParameter.value;
}

TEST(StyleDocuments, HaveTabsWithUniqueKeysAndLabels) {
    forEachDocument([](const Sample& sample) {
        std::set<std::string> keys;
        for (const TiXmlElement* tab : sample.style.tabs()) {
            EXPECT_EQ("tab", tab->ValueStr());
            EXPECT_NE("", attributeOf(*tab, "label")) << attributeOf(*tab, "key");
            EXPECT_NE("", attributeOf(*tab, "key"));
            EXPECT_TRUE(keys.insert(attributeOf(*tab, "key")).second) << attributeOf(*tab, "key");
        }
        EXPECT_FALSE(keys.empty());
    });
}

TEST(StyleDocuments, BeginWithTheSchemeModeAndTheScheduleInTheOrderOfTheRecords) {
    forEachDocument([](const Sample& sample) {
        ASSERT_LE(5u, sample.parameters.size());
        for (std::size_t i = 0; i < 5; ++i) {
            EXPECT_EQ(kScheduleKeys[i], sample.parameters[i].id) << sample.parameters[i];
            EXPECT_TRUE(sample.parameters[i].hasValue) << sample.parameters[i];
        }
    });
}

TEST(StyleDocuments, HaveAFactoryWindowThatEverySchemeCanBeStoredWith) {
    forEachDocument([](const Sample& sample) {
        ASSERT_LE(5u, sample.parameters.size());
        const int start = sample.parameters[1].value * 100 + sample.parameters[2].value;
        const int end = sample.parameters[3].value * 100 + sample.parameters[4].value;
        EXPECT_LT(start, end);
        EXPECT_LE(end, 2400);
        EXPECT_LT(sample.parameters[2].value, 60);
        EXPECT_LT(sample.parameters[4].value, 60);
    });
}

TEST(StyleDocuments, StartWithSwitchingOff) {
    forEachDocument([](const Sample& sample) { EXPECT_EQ(0, sample.parameters.at(0).value); });
}

TEST(StyleDocuments, NameEachKeyOnceAndOnlyKeysThatAUserCanSet) {
    forEachDocument([](const Sample& sample) {
        std::set<int> seen;
        for (const Parameter& parameter : sample.parameters) {
            const KeyRow* row = findKey(parameter.id);
            EXPECT_EQ(std::to_string(parameter.id), parameter.idText);
            EXPECT_TRUE(seen.insert(parameter.id).second) << parameter;
            ASSERT_NE(nullptr, row) << parameter;
            EXPECT_NE(Use::kInternal, row->use) << parameter;
            EXPECT_EQ(row->name, parameter.attribute("name")) << parameter;
        }
    });
}

TEST(StyleDocuments, CarryAValueForEverySettingAndForNothingElse) {
    forEachDocument([](const Sample& sample) {
        for (const Parameter& parameter : sample.parameters) {
            const KeyRow* row = findKey(parameter.id);
            ASSERT_NE(nullptr, row) << parameter;
            EXPECT_EQ(Use::kStored == row->use, parameter.hasValue) << parameter;
            if (parameter.hasValue) {
                EXPECT_TRUE(numberIn(parameter.valueText)) << parameter;
            }
        }
    });
}

TEST(StyleDocuments, CarryIdAndValueOnParametersOnly) {
    forEachDocument([](const Sample& sample) {
        for (const TiXmlElement* element : elementsOf(sample.style.xml->RootElement())) {
            if ("param" != element->ValueStr()) {
                EXPECT_EQ(nullptr, element->Attribute("id")) << element->ValueStr() << " in line " << element->Row();
                EXPECT_EQ(nullptr, element->Attribute("value")) << element->ValueStr() << " in line " << element->Row();
            } else {
                EXPECT_NE(nullptr, element->Attribute("id")) << "line " << element->Row();
            }
        }
    });
}

TEST(StyleDocuments, KeepTheNumberOfStoredParametersWhenANoticeIsRemoved) {
    forEachDocument([](const Sample& sample) {
        for (const Parameter& parameter : sample.parameters) {
            if (10 == parameter.id || 11 == parameter.id) {
                EXPECT_EQ("notice", parameter.type) << parameter;
                EXPECT_NE("", parameter.attribute("text")) << parameter;
                EXPECT_EQ(1u, elementsOf(parameter.element).size()) << parameter;
                EXPECT_FALSE(parameter.hasValue) << parameter;
            }
        }
    });
}

TEST(StyleDocuments, TellThePageHowToShowEachParameter) {
    forEachDocument([](const Sample& sample) {
        const std::set<std::string> types = {"slider", "number", "switch", "choice", "button", "notice"};
        for (const Parameter& parameter : sample.parameters) {
            EXPECT_TRUE(0 != types.count(parameter.type)) << parameter;
            if ("notice" == parameter.type) {
                continue;
            }
            EXPECT_NE("", parameter.label) << parameter;
            if ("slider" == parameter.type || "number" == parameter.type) {
                const auto low = parameter.number("min");
                const auto high = parameter.number("max");
                ASSERT_TRUE(low && high && parameter.number("step")) << parameter;
                EXPECT_LT(*low, *high) << parameter;
                EXPECT_TRUE(accepts(parameter, *high)) << parameter << ": the steps miss the maximum";
            }
            EXPECT_EQ("button" == parameter.type, parameter.number("send").has_value()) << parameter;
            EXPECT_EQ("choice" == parameter.type, !parameter.choices.empty()) << parameter;
        }
    });
}

TEST(StyleDocuments, HaveDefaultsThatAUserCouldHaveGiven) {
    forEachDocument([](const Sample& sample) {
        for (const Parameter& parameter : sample.parameters) {
            const auto value = factoryValue(parameter);
            if (parameter.hasValue && value) {
                EXPECT_TRUE(accepts(parameter, *value)) << parameter;
            }
        }
    });
}

TEST(StyleDocuments, GiveEveryChoiceANumberAndALabelOfItsOwn) {
    forEachDocument([](const Sample& sample) {
        for (const Parameter& parameter : sample.parameters) {
            std::set<int> numbers;
            std::set<std::string> labels;
            for (const Choice& choice : parameter.choices) {
                const auto number = numberIn(choice.index);
                ASSERT_TRUE(number) << parameter << ": \"" << choice.index << "\"";
                EXPECT_TRUE(numbers.insert(*number).second) << parameter << ": " << choice.index << " twice";
                EXPECT_NE("", choice.label) << parameter << ": " << choice.index;
                EXPECT_TRUE(labels.insert(choice.label).second) << parameter << ": " << choice.label << " twice";
            }
            EXPECT_NE(1u, parameter.choices.size()) << parameter;
        }
    });
}

TEST(StyleDocuments, HoldEveryCommandThatTheDriverCorrectsWithChoicesThatFitItsRecord) {
    forEachDocument([](const Sample& sample) {
        for (const int key : dynamicKeys()) {
            const Parameter* parameter = sample.find(key);
            ASSERT_NE(nullptr, parameter) << key;
            EXPECT_TRUE(parameter->hasValue) << *parameter;
            EXPECT_EQ("choice", parameter->type) << *parameter;
            EXPECT_LE(parameter->choices.size(), kDriverItems) << *parameter;
        }
    });
}

TEST(StyleDocuments, HoldTheModesThatAreRestoredTogetherWhereTheyAreOffered) {
    forEachDocument([](const Sample& sample) {
        ASSERT_NE(nullptr, sample.find(1536));
        EXPECT_TRUE(sample.find(1536)->hasValue);
    });
}

TEST(StyleDocuments, StoreNoMoreParametersThanTheKeyTableHasRows) {
    forEachDocument([](const Sample& sample) { EXPECT_LE(stored(sample.parameters).size(), kTableRows); });
}

TEST(StyleDocuments, HoldAnIntelligentLightKeyOnlyBesideItsBaseAndTheLightType) {
    forEachDocument([](const Sample& sample) {
        for (const LightPair& pair : lightPairs()) {
            const Parameter* intelligent = sample.find(pair.intelligent);
            if (nullptr == intelligent) {
                continue;
            }
            const Parameter* base = sample.find(pair.base);
            ASSERT_NE(nullptr, base) << *intelligent;
            EXPECT_EQ(base->type, intelligent->type) << *intelligent;
            EXPECT_EQ(base->attribute("min"), intelligent->attribute("min")) << *intelligent;
            EXPECT_EQ(base->attribute("max"), intelligent->attribute("max")) << *intelligent;
            EXPECT_EQ(base->choices.size(), intelligent->choices.size()) << *intelligent;
            EXPECT_EQ(base->value, intelligent->value) << *intelligent;
            ASSERT_NE(nullptr, sample.find(224)) << *intelligent;
            EXPECT_TRUE(sample.find(224)->offers(2)) << *intelligent;
        }
    });
}

TEST(StyleDocuments, LetHighlightAndBacklightCompensationNameEachOther) {
    forEachDocument([](const Sample& sample) {
        const Parameter* highlight = sample.find(112);
        const Parameter* backlight = sample.find(128);
        ASSERT_EQ(nullptr == highlight, nullptr == backlight);
        if (nullptr != highlight) {
            EXPECT_EQ("128", highlight->attribute("enable_list"));
            EXPECT_EQ("112", backlight->attribute("enable_list"));
            EXPECT_FALSE(1 == highlight->value && 1 == backlight->value);
        }
    });
}

TEST(StyleDocuments, ReferOnlyToParametersThatTheyHoldAndToValuesThatThoseCanHave) {
    forEachDocument([](const Sample& sample) {
        for (const TiXmlElement* element : elementsOf(sample.style.xml->RootElement())) {
            for (const std::string& condition : splitAt(attributeOf(*element, "show_if"), ' ')) {
                const auto parts = splitAt(condition, '=');
                ASSERT_EQ(2u, parts.size()) << condition;
                const auto key = numberIn(parts[0]);
                ASSERT_TRUE(key) << condition;
                const Parameter* named = sample.find(*key);
                ASSERT_NE(nullptr, named) << condition << " in line " << element->Row();
                EXPECT_TRUE(named->hasValue) << condition << " in line " << element->Row();
                for (const std::string& value : splitAt(parts[1], '|')) {
                    const auto number = numberIn(value);
                    EXPECT_TRUE(number && accepts(*named, *number)) << condition << " in line " << element->Row();
                }
            }
            for (const char* name : {"enable_list", "absent_if"}) {
                const std::string id = attributeOf(*element, name);
                if (!id.empty()) {
                    ASSERT_TRUE(numberIn(id)) << name << " " << id;
                    EXPECT_NE(nullptr, sample.find(*numberIn(id))) << name << " " << id;
                }
            }
            for (const char* name : {"min_key", "max_key"}) {
                const std::string id = attributeOf(*element, name);
                if (!id.empty()) {
                    const KeyRow* row = numberIn(id) ? findKey(*numberIn(id)) : nullptr;
                    ASSERT_NE(nullptr, row) << name << " " << id;
                    EXPECT_EQ(Use::kInternal, row->use) << name << " " << id;
                }
            }
        }
    });
}

TEST(StyleDocuments, UseOnlyWordsOfTheirVocabulary) {
    forEachDocument([](const Sample& sample) {
        const std::map<std::string, std::set<std::string>> words = {
            {"style", {"name"}},
            {"tab", {"key", "label"}},
            {"group", {"label", "show_if"}},
            {"item", {"index", "label"}},
            {"param",
             {"id", "name", "label", "type", "value", "min", "max", "step", "unit", "show_if", "absent_if",
              "enable_list", "enable_when", "min_key", "max_key", "send", "text"}}};
        for (const TiXmlElement* element : elementsOf(sample.style.xml->RootElement())) {
            const auto known = words.find(element->ValueStr());
            ASSERT_NE(words.end(), known) << element->ValueStr();
            for (auto attribute = element->FirstAttribute(); nullptr != attribute; attribute = attribute->Next()) {
                EXPECT_EQ(1u, known->second.count(attribute->Name()))
                    << element->ValueStr() << " " << attribute->Name();
            }
        }
    });
}

TEST(StyleDocuments, AreNotDeep) {
    forEachDocument([](const Sample& sample) { EXPECT_LE(depthOf(*sample.style.xml), kDeepest); });
}

TEST(StyleDocuments, SurviveBeingPrintedAndParsedAgain) {
    forEachDocument([](const Sample& sample) {
        const StyleDocument again = {"printed",
                                     parseDocument(textOf(*sample.style.xml), "printed " + sample.style.name)};
        const std::vector<Parameter> parameters = again.parameters();
        ASSERT_EQ(sample.parameters.size(), parameters.size());
        for (std::size_t i = 0; i < parameters.size(); ++i) {
            EXPECT_EQ(sample.parameters[i].id, parameters[i].id);
            EXPECT_EQ(sample.parameters[i].valueText, parameters[i].valueText);
            EXPECT_EQ(sample.parameters[i].label, parameters[i].label);
            EXPECT_EQ(sample.parameters[i].attribute("unit"), parameters[i].attribute("unit"));
        }
    });
}

// --- All documents together ---

TEST(StyleDocumentsTogether, OfferEveryKeyThatAUserCanSet) {
    std::set<int> offered;
    for (const Sample& sample : allSamples()) {
        for (const Parameter& parameter : sample.parameters) {
            offered.insert(parameter.id);
        }
    }
    for (const KeyRow& row : allKeys()) {
        EXPECT_EQ(Use::kInternal != row.use, 0 != offered.count(row.key)) << row.key << " " << row.name;
    }
}

TEST(StyleDocumentsTogether, DifferBetweenTheKindsOfDevice) {
    std::set<std::vector<int>> sets;
    for (const char* device : {"camera", "box", "thermal", "plate", "dome", "panorama"}) {
        const std::vector<Channel> channels = channelsOf(device);
        ASSERT_FALSE(channels.empty()) << device;
        sets.insert(stored(mergeFor(channels.back()).style.parameters()));
    }
    EXPECT_EQ(6u, sets.size());
}

TEST(StyleDocumentsTogether, ShowBothWaysOfChoosingTheLongestShutter) {
    bool byDriver = false;
    bool byStyle = false;
    for (const Channel& channel : allChannels()) {
        const std::vector<Parameter> parameters = mergeFor(channel).style.parameters();
        const Parameter* shutter = findParameter(parameters, 49);
        ASSERT_NE(nullptr, shutter) << channel.name();
        (kOwnChoices <= shutter->value ? byStyle : byDriver) = true;
    }
    EXPECT_TRUE(byDriver);
    EXPECT_TRUE(byStyle);
}

}  // namespace
