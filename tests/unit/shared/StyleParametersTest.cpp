#include "apps/shared/StyleParameters.h"

#include "apps/shared/CommandError.h"
#include "platform/DeviceRoot.h"
#include "tests/support/TestRoot.h"

#include <gmock/gmock.h>

namespace apps {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

const char kStyle[] =
    "<style><tab key=\"image\" label=\"Picture\"><group><param id=\"34\" label=\"Brightness\" type=\"slider\" "
    "value=\"50\" min=\"0\" max=\"100\" step=\"5\" unit=\"%\"/></group><param id=\"2384\" type=\"choice\" value=\"-1\">"
    "<item index=\"0\" label=\"Off\"/><item index=\"2\"/></param></tab><tab key=\"other\"><param id=\"201\" "
    "type=\"switch\" value=\"1\"/><param id=\"1570\" type=\"button\" send=\"1\"/></tab></style>";

std::string refusalOfStyle(const std::string& p_strText) {
    try {
        parseStyle(p_strText);
        return "taken";
    } catch (const CommandError& error) {
        return error.what();
    }
}

TEST(StyleParameters, EachElementWithAnIdIsAParameter) {
    const std::vector<StyleParameter> style = parseStyle(kStyle);
    ASSERT_EQ(style.size(), 4u);
    EXPECT_EQ(style[0].nKey, 34u);
    EXPECT_EQ(style[0].strName, "KEY_BRIGHTNESS");
    EXPECT_EQ(style[0].strLabel, "Brightness");
    EXPECT_EQ(style[0].strTab, "image");  // of the tab, not of the group
    EXPECT_EQ(style[0].strUnit, "%");
    EXPECT_EQ(style[0].defaultValue, 50);
    EXPECT_EQ(style[1].defaultValue, -1);
    EXPECT_EQ(style[2].strName, "");
    EXPECT_EQ(style[2].strTab, "other");
    EXPECT_FALSE(style[3].defaultValue.has_value());
}

TEST(StyleParameters, ARangeIsSaidAsItsKindAsksFor) {
    const std::vector<StyleParameter> style = parseStyle(kStyle);
    EXPECT_EQ(style[0].rangeText(), "0..100 step 5");
    EXPECT_EQ(style[1].rangeText(), "0=Off 2");
    EXPECT_EQ(style[2].rangeText(), "0|1");
    EXPECT_EQ(style[3].rangeText(), "");
}

TEST(StyleParameters, DocumentsThatCannotBeUsedAreRefused) {
    EXPECT_THAT(refusalOfStyle(""), HasSubstr("empty; use init first"));
    EXPECT_THAT(refusalOfStyle("<style>"), HasSubstr("no plain XML"));
    EXPECT_THAT(refusalOfStyle("junk"), HasSubstr("no plain XML"));
    EXPECT_THAT(refusalOfStyle("<a b=\"1\" b=\"2\"/>"), HasSubstr("cannot be read"));
    EXPECT_THAT(refusalOfStyle("<a>" + std::string(5 * 1024 * 1024, 'x') + "</a>"), HasSubstr("no plain XML"));
}

TEST(StyleParameters, NestingUpToTheLibrarysOwnBoundIsTaken) {
    const auto nested = [](int p_nLevels) {
        std::string text;
        for (int i = 0; i < p_nLevels; ++i) {
            text += "<a>";
        }
        for (int i = 0; i < p_nLevels; ++i) {
            text += "</a>";
        }
        return text;
    };
    EXPECT_EQ(refusalOfStyle(nested(256)), "taken");
    EXPECT_THAT(refusalOfStyle(nested(257)), HasSubstr("nested too deeply"));
    EXPECT_THAT(refusalOfStyle(nested(300000)), HasSubstr("nested too deeply"));
}

TEST(StyleParameters, NumbersThatDoNotFitAreTakenToTheNearerEnd) {
    const std::vector<StyleParameter> style = parseStyle(
        "<s><t><p id=\"1\" value=\"99999999999\"/><p id=\"2\" value=\"-99999999999\"/>"
        "<p id=\"x\" value=\"y\"/></t></s>");
    EXPECT_EQ(style[0].defaultValue, INT32_MAX);
    EXPECT_EQ(style[1].defaultValue, INT32_MIN);
    EXPECT_EQ(style[2].nKey, 0u);
    EXPECT_EQ(style[2].defaultValue, 0);
}

TEST(StyleParameters, AByteThatAnnouncesMoreThanThereIsDoesNoHarm) {
    EXPECT_THAT(refusalOfStyle("<a b=\"\xF0\"/>"), HasSubstr("cannot be read"));
    EXPECT_THAT(refusalOfStyle("<a><p id=\"1\" label=\"\xE2\x82\"/></a>"), HasSubstr("cannot be read"));
}

TEST(StyleParameters, ValuesAndTabsToChooseComeFromTheFileOfTheChannel) {
    const TestRoot root;
    root.write("/tmp/merge_style_ch1.xml", kStyle);
    EXPECT_THAT(valuesToChoose(1, 2384), ElementsAre("0", "2"));
    EXPECT_THAT(valuesToChoose(1, 201), ElementsAre("0", "1"));
    EXPECT_THAT(valuesToChoose(1, 34), IsEmpty());
    EXPECT_THAT(tabsToChoose(1), ElementsAre("image", "other"));
    EXPECT_THAT(tabsToChoose(2), IsEmpty());
    root.write("/tmp/merge_style_ch2.xml", "<style><tab");
    EXPECT_THAT(tabsToChoose(2), IsEmpty());
}

}  // namespace
}  // namespace apps
