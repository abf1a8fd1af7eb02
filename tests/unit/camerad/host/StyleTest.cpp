#include "apps/camerad/host/Style.h"

#include "apps/camerad/host/Refusal.h"
#include "tests/unit/camerad/host/Rig.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using camerad::parseStyleDocument;
using camerad::Style;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Pair;

namespace {

const char kDocument[] = R"(<?xml version="1.0" encoding="UTF-8"?>
<style name="Small">
  <tab key="image" label="Picture">
    <param id="34" label="Brightness" type="slider" value="50" min="0" max="100" step="5" unit="%"/>
    <group label="Shutter" show_if="16=0|2">
      <param id="49" label="Longest" type="choice" value="7" show_if="80=1">
        <item index="7" label="1/25 s"/>
        <item index="8"/>
        <item label="no index"/>
      </param>
    </group>
    <param id="2512" label="Freeze" type="switch" value="-1"/>
    <param id="1616" label="Reset" type="button" send="3"/>
    <param id="10" type="notice" text="Not now." later="word"/>
    <param id="2436" type="number" value="0" min="-64" max="64" min_key="2434" max_key="2435"/>
  </tab>
  <tab key="none"/>
</style>)";

TEST(Style, IsReadInTheOrderOfTheDocument) {
    const Style style = parseStyleDocument(kDocument);
    ASSERT_EQ(2u, style.vecTabs.size());
    const camerad::StyleTab& tab = style.vecTabs[0];
    EXPECT_EQ("image", tab.strKey);
    EXPECT_EQ("Picture", tab.strLabel);
    ASSERT_EQ(3u, tab.vecGroups.size());
    EXPECT_EQ("", tab.vecGroups[0].strLabel);
    EXPECT_EQ("Shutter", tab.vecGroups[1].strLabel);
    EXPECT_EQ("16=0|2", tab.vecGroups[1].strShowIf);
    EXPECT_EQ(4u, tab.vecGroups[2].vecItems.size());
    EXPECT_THAT(style.recordedKeys(), ElementsAre(34u, 49u, 2512u, 2436u));
    const camerad::StyleItem& slider = *style.find(34);
    EXPECT_EQ("KEY_BRIGHTNESS", slider.strName);
    EXPECT_EQ("%", slider.strUnit);
    EXPECT_EQ("image", slider.strTab);
    EXPECT_EQ(50, slider.standard);
    const camerad::StyleItem& choice = *style.find(49);
    ASSERT_EQ(2u, choice.vecChoices.size());
    EXPECT_EQ("1/25 s", choice.vecChoices[0].strLabel);
    EXPECT_THAT(choice.vecWords, ElementsAre(Pair("show_if", "80=1")));
    EXPECT_THAT(style.find(10)->vecWords, ElementsAre(Pair("text", "Not now."), Pair("later", "word")));
    EXPECT_FALSE(style.find(10)->isRecorded());
    EXPECT_EQ(2434u, style.find(2436)->minKey);
    EXPECT_EQ(nullptr, style.find(35));
}

struct Choice {
    u32 key;
    long long value;
    bool good;
};
class StyleObjection : public testing::TestWithParam<Choice> {};

TEST_P(StyleObjection, GoesByTheTypeOfTheParameter) {
    const Style style = parseStyleDocument(kDocument);
    const auto objection = style.find(GetParam().key)->objection(GetParam().value);
    EXPECT_EQ(GetParam().good, !objection.has_value()) << GetParam().key << " " << GetParam().value;
}

INSTANTIATE_TEST_SUITE_P(Rows, StyleObjection,
                         testing::Values(Choice{34, 0, true}, Choice{34, 100, true}, Choice{34, 55, true},
                                         Choice{34, 54, false}, Choice{34, -5, false}, Choice{34, 105, false},
                                         Choice{34, 1LL << 40, false}, Choice{49, 7, true}, Choice{49, 8, true},
                                         Choice{49, 9, false}, Choice{2512, 0, true}, Choice{2512, 1, true},
                                         Choice{2512, 2, false}, Choice{2512, -1, false}, Choice{1616, 3, true},
                                         Choice{1616, 1, false}, Choice{10, 0, false}, Choice{2436, -64, true},
                                         Choice{2436, 65, false}));

TEST(Style, SaysWhatItTakes) {
    const Style style = parseStyleDocument(kDocument);
    EXPECT_EQ("takes 0 to 100 in steps of 5", style.find(34)->objection(3).value());
    EXPECT_EQ("takes one of 7, 8", style.find(49)->objection(3).value());
}

TEST(Style, IsJsonForThePage) {
    const nlohmann::json json = toJson(parseStyleDocument(kDocument));
    EXPECT_EQ("image", json["tabs"][0]["key"]);
    EXPECT_EQ("16=0|2", json["tabs"][0]["groups"][1]["showIf"]);
    EXPECT_FALSE(json["tabs"][0]["groups"][0].contains("showIf"));
    EXPECT_EQ(R"({"key":34,"name":"KEY_BRIGHTNESS","label":"Brightness","type":"slider","unit":"%","default":50,"min":0,
                  "max":100,"step":5,"recorded":true,"words":{}})"_json,
              json["tabs"][0]["groups"][0]["parameters"][0]);
    const nlohmann::json& choice = json["tabs"][0]["groups"][1]["parameters"][0];
    EXPECT_EQ(R"([{"value":7,"label":"1/25 s"},{"value":8,"label":""}])"_json, choice["choices"]);
    EXPECT_EQ(R"({"show_if":"80=1"})"_json, choice["words"]);
    EXPECT_EQ(2434, json["tabs"][0]["groups"][2]["parameters"][3]["minKey"]);
}

TEST(Style, OfAnythingElseIsRefused) {
    std::string deep;
    for (int i = 0; i < 300; ++i) {
        deep = "<a>" + deep + "</a>";
    }
    for (const std::string& bad : {std::string(), std::string("no document"), std::string("<a><b></a>"), deep,
                                   std::string("<!DOCTYPE a><a/>")}) {
        const camerad::Refusal refusal = refusalOf([&] { parseStyleDocument(bad); });
        EXPECT_EQ("style-document", refusal.type()) << bad;
    }
}

// Each set looks at all of them, so that many would make a camera slow.
TEST(Style, HasOneThousandParametersAtMost) {
    const auto documentOf = [](int p_nParameters) {
        std::string text = "<s><tab key=\"one\"><param id=\"1\" value=\"0\"/></tab><tab key=\"others\">";
        for (int i = 2; i <= p_nParameters; ++i) {
            text += "<param id=\"" + std::to_string(i) + "\" value=\"0\"/>";
        }
        return text + "</tab></s>";
    };
    EXPECT_EQ(1000u, parseStyleDocument(documentOf(1000)).recordedKeys().size());
    const camerad::Refusal refusal = refusalOf([&] { parseStyleDocument(documentOf(1001)); });
    EXPECT_EQ("style-document", refusal.type());
    EXPECT_THAT(refusal.what(), HasSubstr("more than 1000 parameters"));
}

TEST(Style, TakesTextsThatAreNoUtf8AndLargeNumbers) {
    const Style style =
        parseStyleDocument("<s><tab key=\"\xFF\"><param id=\"4294967295999\" label=\"\x80\" value=\"x\"/></tab></s>");
    EXPECT_EQ("?", style.vecTabs[0].strKey);
    EXPECT_EQ(0, style.vecTabs[0].vecGroups[0].vecItems[0].standard);
    EXPECT_NO_THROW(toJson(style).dump());
}

}  // namespace
