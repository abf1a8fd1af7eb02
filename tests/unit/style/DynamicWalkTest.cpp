// The walks over a style document: what each does to the elements of one command.
#include "sensor/style/DynamicStyle.h"
#include "tests/support/Messages.h"
#include "tests/support/RecordingCamera.h"
#include "tests/support/TestRoot.h"
#include "tests/unit/style/Documents.h"

#include <gtest/gtest.h>

#include <string>

namespace {

using documents::compact;

class DynamicWalk : public testing::Test {
protected:
    TiXmlElement* parse(const std::string& p_strText) {
        document.Clear();
        document.Parse(p_strText.c_str(), nullptr, TIXML_ENCODING_UTF8);
        EXPECT_FALSE(document.Error()) << p_strText;
        return document.RootElement();
    }

    std::string tree() { return compact(document); }

    TestRoot root;
    TiXmlDocument document;
};

ia_dynamic_params_attr_st rangeOf(int p_nDefault, const std::vector<int>& p_vecItems) {
    return RecordingCamera::rangeOf(p_nDefault, p_vecItems);
}

}  // namespace

// --- Reading a value ---

TEST_F(DynamicWalk, ReadsTheValueOfTheCommand) {
    int nValue = -7;
    EXPECT_EQ(0, getDnaValbyCmdId(parse("<s><p id='34' value='5'/><p id='49' value='205'/></s>"), 49, nValue));
    EXPECT_EQ(205, nValue);
}

TEST_F(DynamicWalk, FindsTheCommandAtAnyDepthAndAtTheTop) {
    int nValue = -7;
    EXPECT_EQ(0, getDnaValbyCmdId(parse("<s><t><g><p id='49' value='3'/></g></t></s>"), 49, nValue));
    EXPECT_EQ(3, nValue);
    EXPECT_EQ(0, getDnaValbyCmdId(parse("<s id='49' value='4'/>"), 49, nValue));
    EXPECT_EQ(4, nValue);
}

TEST_F(DynamicWalk, ReadsNumbersAsLeadingDecimals) {
    int nValue = -7;
    getDnaValbyCmdId(parse("<s><p id=' 49 shutter' value='12 lux'/></s>"), 49, nValue);
    EXPECT_EQ(12, nValue);
    getDnaValbyCmdId(parse("<s><p id='49' value='none'/></s>"), 49, nValue);
    EXPECT_EQ(0, nValue);
    getDnaValbyCmdId(parse("<s><p id='49' value='-3'/></s>"), 49, nValue);
    EXPECT_EQ(-3, nValue);
}

TEST_F(DynamicWalk, LetsTheLastValueInDocumentOrderWin) {
    int nValue = -7;
    getDnaValbyCmdId(parse("<s><t><p id='49' value='1'/></t><p id='49' value='2'/><t><p id='49' value='3'/></t></s>"),
                     49, nValue);
    EXPECT_EQ(3, nValue);
}

TEST_F(DynamicWalk, LeavesTheOutputWhenThereIsNoSuchCommand) {
    int nValue = -7;
    EXPECT_EQ(
        0, getDnaValbyCmdId(parse("<s><p id='4' value='1'/><p index='49' value='2'/><p value='3'/></s>"), 49, nValue));
    EXPECT_EQ(-7, nValue);
}

TEST_F(DynamicWalk, LeavesTheOutputWhenTheCommandHasNoValue) {
    int nValue = -7;
    EXPECT_EQ(0, getDnaValbyCmdId(parse("<s><p id='49'/></s>"), 49, nValue));
    EXPECT_EQ(-7, nValue);
    getDnaValbyCmdId(parse("<s><p id='49' value='1'/><p id='49'/></s>"), 49, nValue);
    EXPECT_EQ(1, nValue);
}

TEST_F(DynamicWalk, DoesNotLookBelowAnElementOfTheCommand) {
    int nValue = -7;
    getDnaValbyCmdId(parse("<s><p id='49' value='1'><p id='49' value='2'/></p></s>"), 49, nValue);
    EXPECT_EQ(1, nValue);
    getDnaValbyCmdId(parse("<s><p id='49'><p id='49' value='2'/></p></s>"), 49, nValue);
    EXPECT_EQ(1, nValue);
}

TEST_F(DynamicWalk, LooksBelowElementsOfOtherCommands) {
    int nValue = -7;
    getDnaValbyCmdId(parse("<s><p id='34' value='1'><p id='49' value='2'/></p></s>"), 49, nValue);
    EXPECT_EQ(2, nValue);
}

TEST_F(DynamicWalk, FindsCommandZeroOnlyWhereAnIdSaysSo) {
    int nValue = -7;
    getDnaValbyCmdId(parse("<s value='1'><p value='2'/><p id='x' value='3'/></s>"), 0, nValue);
    EXPECT_EQ(3, nValue);
}

TEST_F(DynamicWalk, TakesANullElementAsNothing) {
    int nValue = -7;
    TiXmlElement* pNode = nullptr;
    ia_dynamic_params_attr_st stRange = rangeOf(1, {1, 2});
    EXPECT_EQ(0, getDnaValbyCmdId(nullptr, 49, nValue));
    EXPECT_EQ(0, getNodebyCmdId(nullptr, 49, pNode));
    EXPECT_EQ(0, doDnaStyle(nullptr, 49, &stRange));
    EXPECT_EQ(0, doCustomizeStyle(nullptr, 49, &stRange));
    EXPECT_EQ(0, ModifyNodebyCmdId(nullptr, 112));
    EXPECT_EQ(-7, nValue);
    EXPECT_EQ(nullptr, pNode);
    EXPECT_EQ(2, stRange.items_cnt);
}

// --- Finding and removing an element ---

TEST_F(DynamicWalk, FindsTheElementOfTheCommand) {
    TiXmlElement* pNode = nullptr;
    EXPECT_EQ(0, getNodebyCmdId(parse("<s><t><p id='10' n='1'/></t><p id='11'/></s>"), 10, pNode));
    ASSERT_NE(nullptr, pNode);
    EXPECT_STREQ("1", pNode->Attribute("n"));
}

TEST_F(DynamicWalk, FindsTheLastElementOfTheCommand) {
    TiXmlElement* pNode = nullptr;
    EXPECT_EQ(
        0, getNodebyCmdId(parse("<s><p id='10' n='1'/><t><p id='10' n='2'><p id='10' n='3'/></p></t></s>"), 10, pNode));
    ASSERT_NE(nullptr, pNode);
    EXPECT_STREQ("2", pNode->Attribute("n"));
}

TEST_F(DynamicWalk, LeavesTheNodeWhenThereIsNone) {
    TiXmlElement* const pRoot = parse("<s><p id='11'/></s>");
    TiXmlElement* pNode = pRoot;
    EXPECT_EQ(0, getNodebyCmdId(pRoot, 10, pNode));
    EXPECT_EQ(pRoot, pNode);
}

TEST_F(DynamicWalk, RemovesANodeWithItsSubtree) {
    TiXmlElement* const pRoot = parse("<s><t><p id='10'><c/></p><p id='11'/></t></s>");
    EXPECT_EQ(0, DeleteNode(pRoot, pRoot->FirstChildElement()->FirstChildElement()));
    EXPECT_EQ("<s><t><p id=\"11\" /></t></s>", tree());
}

TEST_F(DynamicWalk, RemovesNothingWithoutARootOrANode) {
    TiXmlElement* const pRoot = parse("<s><p id='10'/></s>");
    EXPECT_EQ(-1, DeleteNode(nullptr, pRoot->FirstChildElement()));
    EXPECT_EQ(-1, DeleteNode(pRoot, nullptr));
    EXPECT_EQ(-1, DeleteNode(nullptr, nullptr));
    EXPECT_EQ("<s><p id=\"10\" /></s>", tree());
}

TEST_F(DynamicWalk, DoesNotRemoveANodeWhoseParentIsNoElement) {
    TiXmlElement* const pRoot = parse("<s id='10'/>");
    EXPECT_EQ(0, DeleteNode(pRoot, pRoot));
    EXPECT_EQ("<s id=\"10\" />", tree());
}

TEST_F(DynamicWalk, DoesNotRemoveANodeWithoutParent) {
    TiXmlElement* const pRoot = parse("<s/>");
    TiXmlElement alone("p");
    EXPECT_EQ(0, DeleteNode(pRoot, &alone));
    EXPECT_EQ("<s />", tree());
}

// --- Applying a range ---

TEST_F(DynamicWalk, SetsTheDefaultAndDropsIllegalChoices) {
    const auto stRange = rangeOf(2, {0, 2});
    EXPECT_EQ(0, doDnaStyle(parse("<s><p id='49' value='1'><c index='0'/><c index='1'/><c index='2'/></p></s>"), 49,
                            &stRange));
    EXPECT_EQ("<s><p id=\"49\" value=\"2\"><c index=\"0\" /><c index=\"2\" /></p></s>", tree());
}

TEST_F(DynamicWalk, DropsEveryChoiceOfAnEmptyRange) {
    const auto stRange = rangeOf(-1, {});
    EXPECT_EQ(0, doDnaStyle(parse("<s><p id='49' value='1'><c index='0'/><d index='1'/></p></s>"), 49, &stRange));
    EXPECT_EQ("<s><p id=\"49\" value=\"-1\" /></s>", tree());
}

TEST_F(DynamicWalk, GivesAValueToAnElementThatHadNone) {
    const auto stRange = rangeOf(9, {});
    EXPECT_EQ(0, doDnaStyle(parse("<s><p id='49'/></s>"), 49, &stRange));
    EXPECT_EQ("<s><p id=\"49\" value=\"9\" /></s>", tree());
}

TEST_F(DynamicWalk, LooksAtNoItemBehindTheCount) {
    auto stRange = rangeOf(1, {1, 2, 3});
    stRange.items_cnt = 2;
    EXPECT_EQ(0, doDnaStyle(parse("<s><p id='49'><c index='2'/><c index='3'/></p></s>"), 49, &stRange));
    EXPECT_EQ("<s><p id=\"49\" value=\"1\"><c index=\"2\" /></p></s>", tree());
}

TEST_F(DynamicWalk, ReadsChoicesAsLeadingDecimals) {
    const auto stRange = rangeOf(0, {0, 7});
    EXPECT_EQ(
        0, doDnaStyle(parse("<s><p id='49'><c index='7 lux'/><c index='auto'/><c index='8'/></p></s>"), 49, &stRange));
    EXPECT_EQ("<s><p id=\"49\" value=\"0\"><c index=\"7 lux\" /><c index=\"auto\" /></p></s>", tree());
}

TEST_F(DynamicWalk, LeavesTextsAndCommentsBetweenChoices) {
    const auto stRange = rangeOf(0, {});
    EXPECT_EQ(0, doDnaStyle(parse("<s><p id='49'>a<c index='1'/><!-- b --><c index='2'/></p></s>"), 49, &stRange));
    EXPECT_EQ("<s><p id=\"49\" value=\"0\">a<!-- b --></p></s>", tree());
}

TEST_F(DynamicWalk, AppliesTheRangeToEveryElementOfTheCommand) {
    const auto stRange = rangeOf(2, {2});
    EXPECT_EQ(0, doDnaStyle(parse("<s><p id='49'><c index='1'/></p><t><p id='49'><c index='2'/><c index='3'/></p></t>"
                                  "<p id='50'><c index='1'/></p></s>"),
                            49, &stRange));
    EXPECT_EQ(
        "<s><p id=\"49\" value=\"2\" /><t><p id=\"49\" value=\"2\"><c index=\"2\" /></p></t>"
        "<p id=\"50\"><c index=\"1\" /></p></s>",
        tree());
}

TEST_F(DynamicWalk, StopsAtAChoiceWithoutIndex) {
    const auto stRange = rangeOf(2, {2});
    EXPECT_EQ(-1, doDnaStyle(parse("<s><p id='49'><c index='1'/><c/><c index='3'/></p></s>"), 49, &stRange));
    EXPECT_EQ("<s><p id=\"49\" value=\"2\"><c /><c index=\"3\" /></p></s>", tree());
}

TEST_F(DynamicWalk, PassesAFailureUpAtOnce) {
    const auto stRange = rangeOf(2, {2});
    EXPECT_EQ(-1, doDnaStyle(parse("<s><t><p id='49'><c/></p></t><p id='49' value='1'><c index='3'/></p></s>"), 49,
                             &stRange));
    EXPECT_EQ("<s><t><p id=\"49\" value=\"2\"><c /></p></t><p id=\"49\" value=\"1\"><c index=\"3\" /></p></s>", tree());
}

TEST_F(DynamicWalk, TracesWhatItSetsAndDrops) {
    root.debugLevel(6);
    const auto stRange = rangeOf(2, {2});
    const std::string strOut =
        outputOf([&] { doDnaStyle(parse("<s><p id='49'><c index='1 x'/><c index='2'/></p></s>"), 49, &stRange); });
    const messages::Place stPlace = {"SensorFile.cpp", "doDnaStyle"};
    EXPECT_EQ(messages::debug(stPlace, "_________________cmd(49) default(2)__________________\n") +
                  messages::debug(stPlace, "_________________delete comboitem(1 x)__________________\n"),
              messages::anyLine(strOut));
    root.debugLevel(5);
    EXPECT_EQ("", outputOf([&] { doDnaStyle(document.RootElement(), 49, &stRange); }));
}

TEST_F(DynamicWalk, TakesACountBelowZeroAsNoItems) {
    root.debugLevel(6);
    auto stRange = rangeOf(2, {1, 2});
    stRange.items_cnt = -5;
    const std::string strOut =
        outputOf([&] { EXPECT_EQ(0, doDnaStyle(parse("<s><p id='49'><c index='1'/></p></s>"), 49, &stRange)); });
    EXPECT_EQ("<s><p id=\"49\" value=\"2\" /></s>", tree());
    EXPECT_NE(std::string::npos, strOut.find("driver claims -5 range items, the record holds 0 to 64\n"));
}

TEST_F(DynamicWalk, TakesACountAboveTheRecordAsAFullRecord) {
    root.debugLevel(6);
    auto stRange = rangeOf(2, std::vector<int>(64, 1));
    stRange.item[63] = 9;
    stRange.items_cnt = 2000000000;
    const std::string strOut = outputOf(
        [&] { EXPECT_EQ(0, doDnaStyle(parse("<s><p id='49'><c index='9'/><c index='0'/></p></s>"), 49, &stRange)); });
    EXPECT_EQ("<s><p id=\"49\" value=\"2\"><c index=\"9\" /></p></s>", tree());
    EXPECT_NE(std::string::npos, strOut.find("driver claims 2000000000 range items, the record holds 0 to 64\n"));
}

// --- The style's own choices ---

TEST_F(DynamicWalk, CollectsTheStylesOwnChoices) {
    auto stRange = rangeOf(77, {1, 2, 3, 4});
    EXPECT_EQ(0, doCustomizeStyle(parse("<s><p id='49'><c index='5'/><c/><c index='3 x'/><c index='9'/></p></s>"), 49,
                                  &stRange));
    EXPECT_EQ(3, stRange.items_cnt);
    EXPECT_EQ(5, stRange.item[0]);
    EXPECT_EQ(3, stRange.item[1]);
    EXPECT_EQ(9, stRange.item[2]);
    EXPECT_EQ(5, stRange.min_val);
    EXPECT_EQ(9, stRange.max_val);
    EXPECT_EQ(77, stRange.default_val);
    EXPECT_EQ("<s><p id=\"49\"><c index=\"5\" /><c /><c index=\"3 x\" /><c index=\"9\" /></p></s>", tree());
}

TEST_F(DynamicWalk, MeantWithoutChoicesTheHighestIsTheCountAndTheLowestTheOldFirstItem) {
    auto stRange = rangeOf(77, {4, 5});
    stRange.max_val = 99;
    stRange.min_val = 55;
    EXPECT_EQ(0, doCustomizeStyle(parse("<s><p id='49'><c/></p></s>"), 49, &stRange));
    EXPECT_EQ(0, stRange.items_cnt);
    EXPECT_EQ(0, stRange.max_val);
    EXPECT_EQ(4, stRange.min_val);
}

TEST_F(DynamicWalk, LetsTheLastElementsChoicesWin) {
    auto stRange = rangeOf(0, {});
    EXPECT_EQ(0, doCustomizeStyle(parse("<s><p id='49'><c index='1'/><c index='2'/></p><t><p id='49'><c index='3'/></p>"
                                        "</t></s>"),
                                  49, &stRange));
    EXPECT_EQ(1, stRange.items_cnt);
    EXPECT_EQ(3, stRange.item[0]);
}

TEST_F(DynamicWalk, LeavesTheRangeWhenThereIsNoSuchCommand) {
    auto stRange = rangeOf(7, {4, 5});
    EXPECT_EQ(0, doCustomizeStyle(parse("<s><p id='50'><c index='1'/></p></s>"), 49, &stRange));
    EXPECT_EQ(2, stRange.items_cnt);
    EXPECT_EQ(5, stRange.max_val);
}

TEST_F(DynamicWalk, CollectsAsManyChoicesAsARangeHolds) {
    root.debugLevel(6);
    std::string strChoices;
    for (int i = 1; i <= 64; ++i) {
        strChoices += "<c index='" + std::to_string(i) + "'/>";
    }
    auto stRange = rangeOf(0, {});
    EXPECT_EQ("", outputOf([&] {
                  EXPECT_EQ(0, doCustomizeStyle(parse("<s><p id='49'>" + strChoices + "</p></s>"), 49, &stRange));
              }));
    EXPECT_EQ(64, stRange.items_cnt);
    EXPECT_EQ(64, stRange.max_val);
}

TEST_F(DynamicWalk, LeavesOutAndReportsChoicesBeyondThat) {
    root.debugLevel(6);
    std::string strChoices;
    for (int i = 1; i <= 5000; ++i) {
        strChoices += "<c index='" + std::to_string(i) + "'/>";
    }
    struct {
        ia_dynamic_params_attr_st range = rangeOf(0, {});
        int behind[4] = {-1, -1, -1, -1};
    } stGuarded;
    const std::string strOut = outputOf([&] {
        EXPECT_EQ(0, doCustomizeStyle(parse("<s><p id='49'>" + strChoices + "</p></s>"), 49, &stGuarded.range));
    });
    EXPECT_EQ(64, stGuarded.range.items_cnt);
    EXPECT_EQ(1, stGuarded.range.min_val);
    EXPECT_EQ(64, stGuarded.range.max_val);
    EXPECT_EQ(-1, stGuarded.behind[0]);
    EXPECT_EQ(messages::error({"SensorFile.cpp", "doCustomizeStyle"}, "4936 choices beyond 64 are left out\n"),
              messages::anyLine(strOut));
}

// --- Pairing ---

TEST_F(DynamicWalk, PairsTheTwoLightCompensations) {
    TiXmlElement* const pRoot =
        parse("<s><p id='112'/><t><p id='128' enable_list='5'/><p id='112'/></t><p id='50'/></s>");
    EXPECT_EQ(0, ModifyNodebyCmdId(pRoot, 112));
    EXPECT_EQ(
        "<s><p id=\"112\" enable_list=\"128\" /><t><p id=\"128\" enable_list=\"5\" />"
        "<p id=\"112\" enable_list=\"128\" /></t><p id=\"50\" /></s>",
        tree());
    EXPECT_EQ(0, ModifyNodebyCmdId(pRoot, 128));
    EXPECT_EQ(
        "<s><p id=\"112\" enable_list=\"128\" /><t><p id=\"128\" enable_list=\"112\" />"
        "<p id=\"112\" enable_list=\"128\" /></t><p id=\"50\" /></s>",
        tree());
}

TEST_F(DynamicWalk, PairsNothingForAnyOtherCommand) {
    EXPECT_EQ(0, ModifyNodebyCmdId(parse("<s><p id='50'/></s>"), 50));
    EXPECT_EQ("<s><p id=\"50\" /></s>", tree());
}
