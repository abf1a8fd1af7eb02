// The whole dynamic style: what the driver is asked, what it answers, and the document that comes of it.
#include "sensor/style/DynamicStyle.h"
#include "sensor/style/ShowFlags.h"
#include "tests/support/Messages.h"
#include "tests/support/RecordingCamera.h"
#include "tests/support/TestRoot.h"
#include "tests/unit/style/Documents.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

namespace {

using documents::compact;
using messages::anyLine;

const messages::Place kPlace = {"SensorFile.cpp", "getDnaStyle"};

constexpr char kCommandsFailed[] =
    "QVS_SUCCESS == ia_ioctrl_v2(p_channelID-1, IA_CMD_DYNAMIC_PARAMS_CMDS_GET, IA_CMD_OPT_GET, (void*)(&dnaCmdList))";
constexpr char kRangeFailed[] =
    "QVS_SUCCESS == ia_ioctrl_v2(p_channelID-1, (ia_cmd_e)dnaCmdList.cmd_list[i], IA_CMD_OPT_GET_PARAM_RNAGE, "
    "(void*)(&dnaParamList))";
constexpr char kPruningFailed[] =
    "QVS_SUCCESS == doDnaStyle(objStyleXmlDoc.RootElement(), dnaCmdList.cmd_list[i], &dnaParamList)";
constexpr char kParsingFailed[] = "objStyleXmlDoc.LoadMem(szStyle, TIXML_ENCODING_UTF8)";

class DynamicStyle : public testing::Test {
protected:
    DynamicStyle() { setshowBeawayFalg(false); }
    ~DynamicStyle() override { setshowBeawayFalg(true); }

    // The text as it comes back.
    std::string text(const std::string& p_strStyle, bool p_bShowWDR = false, int p_nChannel = 1) {
        const std::unique_ptr<char[]> pBlock(new char[p_strStyle.size() + 1]);
        p_strStyle.copy(pBlock.get(), p_strStyle.size());
        pBlock[p_strStyle.size()] = '\0';
        std::string strResult = "untouched";
        EXPECT_EQ(0, getDnaStyle(p_nChannel, pBlock.get(), strResult, p_bShowWDR));
        return strResult;
    }

    std::string tree(const std::string& p_strStyle, bool p_bShowWDR = false) {
        return compact(text(p_strStyle, p_bShowWDR));
    }

    void answers(u32 p_nCmd, int p_nDefault, const std::vector<int>& p_vecItems) {
        commands.push_back(p_nCmd);
        camera.dynamicCommands(commands);
        camera.range(p_nCmd, RecordingCamera::rangeOf(p_nDefault, p_vecItems));
    }

    TestRoot root;
    RecordingCamera camera;
    std::vector<u32> commands;
};

using DynamicStyleDeathTest = DynamicStyle;

// A parameter with choices.
std::string parameter(int p_nId, const std::string& p_strValue, std::initializer_list<int> p_vecChoices) {
    std::string strText = "<p id=\"" + std::to_string(p_nId) + "\" value=\"" + p_strValue + "\"";
    if (0 == p_vecChoices.size()) {
        return strText + " />";
    }
    strText += ">";
    for (const int nChoice : p_vecChoices) {
        strText += "<c index=\"" + std::to_string(nChoice) + "\" />";
    }
    return strText + "</p>";
}

std::string style(const std::string& p_strContent) {
    return "<style>" + p_strContent + "</style>";
}

}  // namespace

// --- What the driver is asked ---

TEST_F(DynamicStyle, AsksTheDriverOfItsChannelForEachDynamicRange) {
    answers(82, 1, {1});
    answers(34, 1, {1});
    text(style(""), false, 3);
    EXPECT_EQ("ia ch2 commands\nia ch2 range 82\nia ch2 range 34\n", camera.text());
}

TEST_F(DynamicStyle, WithoutDynamicParametersIsTheSameDocument) {
    EXPECT_EQ(style(parameter(34, "5", {1, 2})), tree(style(parameter(34, "5", {1, 2}))));
    EXPECT_EQ("ia ch0 commands\n", camera.text());
}

TEST_F(DynamicStyle, IsPrintedByTheXmlLibrary) {
    EXPECT_EQ("<style>\n    <p id=\"34\" value=\"5\" />\n</style>\n", text("<style>  <p id='34' value='5'/></style>"));
}

TEST_F(DynamicStyle, TakesDefaultsAndChoicesFromTheDriver) {
    answers(34, 2, {0, 2});
    EXPECT_EQ(style(parameter(34, "2", {0, 2}) + parameter(35, "1", {0, 1})),
              tree(style(parameter(34, "1", {0, 1, 2}) + parameter(35, "1", {0, 1}))));
}

TEST_F(DynamicStyle, PrunesAParameterThatStandsTwiceInBothPlaces) {
    answers(34, 2, {0, 2});
    EXPECT_EQ(
        style("<tab>" + parameter(34, "2", {0}) + "</tab><tab>" + parameter(34, "2", {2}) + "</tab>"),
        tree(style("<tab>" + parameter(34, "1", {0, 1}) + "</tab><tab>" + parameter(34, "7", {1, 2}) + "</tab>")));
}

TEST_F(DynamicStyle, AppliesARangeForEachPlaceInTheDriversList) {
    camera.dynamicCommands({34, 34});
    int nCalls = 0;
    camera.onDriver(34, IA_CMD_OPT_GET_PARAM_RNAGE, [&nCalls](int, void* p_pData) {
        *static_cast<ia_dynamic_params_attr_st*>(p_pData) =
            1 == ++nCalls ? RecordingCamera::rangeOf(1, {1, 2}) : RecordingCamera::rangeOf(3, {2, 3});
        return 0;
    });
    EXPECT_EQ(style(parameter(34, "3", {2})), tree(style(parameter(34, "0", {1, 2, 3}))));
}

TEST_F(DynamicStyle, TracesItsQuestionsAtDebugLevel) {
    answers(34, 2, {2});
    answers(35, 1, {1});
    root.debugLevel(6);
    EXPECT_EQ(messages::debug(kPlace, "dnaCmdList.cmd_cnt(2)\n") +
                  messages::debug(kPlace, "dnaCmdList.cmd_list[0] = cmd(34)\n") +
                  messages::debug(kPlace, "dnaCmdList.cmd_list[1] = cmd(35)\n"),
              anyLine(outputOf([this] { text("<style/>"); })));
    root.debugLevel(5);
    EXPECT_EQ("", outputOf([this] { text("<style/>"); }));
}

// --- The style's own value of a shutter and of the near limit ---

TEST_F(DynamicStyle, LetsAShuttersOwnLegalValueBeTheDefault) {
    answers(49, 7, {3, 5, 7});
    answers(50, 8, {4, 6, 8});
    answers(1537, 1, {0, 1, 2});
    EXPECT_EQ(style(parameter(49, "5", {3}) + parameter(50, "6", {4}) + parameter(1537, "2", {0})),
              tree(style(parameter(49, "5", {3}) + parameter(50, "6", {4}) + parameter(1537, "2", {0}))));
}

TEST_F(DynamicStyle, KeepsTheDriversDefaultForAnOwnValueThatIsNotLegal) {
    answers(49, 7, {3, 5, 7});
    answers(50, 8, {4, 6, 8});
    answers(1537, 1, {0, 1, 2});
    EXPECT_EQ(style(parameter(49, "7", {3}) + parameter(50, "8", {4}) + parameter(1537, "1", {0})),
              tree(style(parameter(49, "4", {3}) + parameter(50, "5", {4}) + parameter(1537, "9", {0}))));
}

TEST_F(DynamicStyle, GivesOtherParametersTheDriversDefaultEvenIfTheirOwnValueIsLegal) {
    answers(82, 7, {3, 5, 7});
    EXPECT_EQ(style(parameter(82, "7", {3})), tree(style(parameter(82, "5", {3}))));
}

TEST_F(DynamicStyle, MeantAHundredLeavesTheDriversDefault) {
    answers(50, 8, {4, 8, 100});
    const std::string strOut =
        outputOf([this] { EXPECT_EQ(style(parameter(50, "8", {})), tree(style(parameter(50, "100", {})))); });
    EXPECT_EQ("", strOut);
}

TEST_F(DynamicStyle, TakesAMissingValueAsZero) {
    answers(1537, 2, {0, 1, 2});
    EXPECT_EQ("<style><p id=\"1537\" value=\"0\" /></style>", tree("<style><p id='1537'/></style>"));
}

TEST_F(DynamicStyle, KeepsTheDriversDefaultForAMissingValueWhenZeroIsNotLegal) {
    answers(1537, 2, {1, 2});
    EXPECT_EQ("<style><p id=\"1537\" value=\"2\" /></style>", tree("<style><p id='1537'/></style>"));
}

TEST_F(DynamicStyle, TakesTheMaximumShuttersChoicesFromTheStyleFromTwoHundredOn) {
    answers(49, 7, {3, 7});
    EXPECT_EQ(style(parameter(49, "5", {4, 5, 6})), tree(style(parameter(49, "205", {4, 5, 6}))));
}

TEST_F(DynamicStyle, StartsTheStylesOwnChoicesAtTwoHundred) {
    answers(49, 7, {3, 7});
    EXPECT_EQ(style(parameter(49, "0", {4})), tree(style(parameter(49, "200", {4}))));
    EXPECT_EQ(style(parameter(49, "7", {})), tree(style(parameter(49, "199", {4}))));
}

TEST_F(DynamicStyle, PrefersTheStylesOwnChoicesToALegalItemOfTwoHundredOrMore) {
    answers(49, 7, {7, 205});
    EXPECT_EQ(style(parameter(49, "5", {4})), tree(style(parameter(49, "205", {4}))));
}

TEST_F(DynamicStyle, KeepsTheDriversChoicesForTheOtherTwoFromTwoHundredOn) {
    answers(50, 8, {4, 8});
    answers(1537, 1, {1, 205});
    EXPECT_EQ(style(parameter(50, "8", {4}) + parameter(1537, "205", {1})),
              tree(style(parameter(50, "205", {4, 5}) + parameter(1537, "205", {0, 1}))));
}

TEST_F(DynamicStyle, LetsTheLastOwnValueOfARepeatedShutterDecide) {
    answers(50, 8, {4, 6, 8});
    EXPECT_EQ(style(parameter(50, "6", {}) + parameter(50, "6", {})),
              tree(style(parameter(50, "4", {}) + parameter(50, "6", {}))));
}

TEST_F(DynamicStyle, SaysAtEveryLevelHowTheOwnValueIsLookedFor) {
    answers(34, 1, {1});
    answers(49, 7, {3, 5, 7});
    root.debugLevel(-1);
    EXPECT_EQ(
        "dnaCmdList.cmd_list[1] = dnaParamList.items_cnt(3)\n"
        " dnaParamList.item[0] = 3 nVal = 5 \n"
        " dnaParamList.item[1] = 5 nVal = 5 \n",
        outputOf([this] { text(style(parameter(49, "5", {}))); }));
    EXPECT_EQ(
        "dnaCmdList.cmd_list[1] = dnaParamList.items_cnt(3)\n"
        " dnaParamList.item[0] = 3 nVal = 205 \n"
        " dnaParamList.item[1] = 5 nVal = 205 \n"
        " dnaParamList.item[2] = 7 nVal = 205 \n",
        outputOf([this] { text(style(parameter(49, "205", {}))); }));
}

// --- What is not offered ---

TEST_F(DynamicStyle, RemovesElementTenWhenWideDynamicRangeIsOffered) {
    const std::string strStyle = style("<tab>" + parameter(10, "1", {}) + parameter(11, "1", {}) + "</tab>");
    EXPECT_EQ(style("<tab>" + parameter(11, "1", {}) + "</tab>"), tree(strStyle, true));
    EXPECT_EQ(strStyle, tree(strStyle, false));
}

TEST_F(DynamicStyle, RemovesElementElevenWhenBeawayIsOffered) {
    const std::string strStyle = style("<tab>" + parameter(10, "1", {}) + parameter(11, "1", {}) + "</tab>");
    setshowBeawayFalg(true);
    EXPECT_EQ(style("<tab>" + parameter(10, "1", {}) + "</tab>"), tree(strStyle, false));
    EXPECT_EQ(style("<tab />"), tree(strStyle, true));
}

TEST_F(DynamicStyle, RemovesOnlyTheLastOfSeveral) {
    EXPECT_EQ(style(parameter(10, "1", {}) + "<tab />"),
              tree(style(parameter(10, "1", {}) + "<tab>" + parameter(10, "2", {}) + "</tab>"), true));
}

TEST_F(DynamicStyle, WithoutThoseElementsIsLeftAlone) {
    setshowBeawayFalg(true);
    EXPECT_EQ(style(parameter(34, "5", {})), tree(style(parameter(34, "5", {})), true));
}

TEST_F(DynamicStyle, KeepsARootThatIsNotOffered) {
    EXPECT_EQ("<style id=\"10\" />", tree("<style id='10'/>", true));
}

TEST_F(DynamicStyle, RemovesAnElementInsideOneThatWasRemoved) {
    setshowBeawayFalg(true);
    EXPECT_EQ("<style />", tree("<style><p id='10'><p id='11'/></p></style>", true));
    EXPECT_EQ("<style />", tree("<style><p id='11'><p id='10'/></p></style>", true));
}

// --- What fails ---

TEST_F(DynamicStyle, ReportsADriverThatDoesNotListItsCommands) {
    answers(34, 2, {2});
    camera.driverFails(IA_CMD_DYNAMIC_PARAMS_CMDS_GET, IA_CMD_OPT_GET, -3);
    const std::string strOut =
        outputOf([this] { EXPECT_EQ(style(parameter(34, "1", {1})), tree(style(parameter(34, "1", {1})))); });
    EXPECT_EQ(messages::assertion(kPlace, kCommandsFailed), anyLine(strOut));
    EXPECT_EQ(messages::loggedAssertion(kPlace, kCommandsFailed), anyLine(root.errorLog()));
}

TEST_F(DynamicStyle, UsesWhatAFailingDriverListedAllTheSame) {
    camera.range(34, RecordingCamera::rangeOf(2, {2}));
    camera.onDriver(IA_CMD_DYNAMIC_PARAMS_CMDS_GET, IA_CMD_OPT_GET, [](int, void* p_pData) {
        *static_cast<ia_dynamic_params_cmds_st*>(p_pData) = {1, {34}};
        return -3;
    });
    EXPECT_EQ(style(parameter(34, "2", {})), tree(style(parameter(34, "1", {1}))));
}

TEST_F(DynamicStyle, ReportsAFailedRangeAndAppliesTheOneBefore) {
    answers(34, 2, {2, 3});
    answers(35, 1, {1});
    camera.driverFails(35, IA_CMD_OPT_GET_PARAM_RNAGE, -1);
    const std::string strOut = outputOf([this] {
        EXPECT_EQ(style(parameter(34, "2", {2}) + parameter(35, "2", {3})),
                  tree(style(parameter(34, "1", {1, 2}) + parameter(35, "1", {1, 3}))));
    });
    EXPECT_EQ(messages::assertion(kPlace, kRangeFailed), anyLine(strOut));
    EXPECT_EQ(messages::loggedAssertion(kPlace, kRangeFailed), anyLine(root.errorLog()));
}

TEST_F(DynamicStyle, AppliesAnEmptyRangeWhenTheFirstRequestFails) {
    answers(34, 2, {2, 3});
    camera.driverFails(34, IA_CMD_OPT_GET_PARAM_RNAGE, -1);
    EXPECT_EQ(style(parameter(34, "0", {})), tree(style(parameter(34, "1", {1, 2}))));
}

TEST_F(DynamicStyle, GivesAnEmptyTextForADocumentThatDoesNotParse) {
    answers(34, 2, {2});
    const std::string strOut = outputOf([this] { EXPECT_EQ("", text("no document", true)); });
    EXPECT_EQ(messages::assertion(kPlace, kParsingFailed), anyLine(strOut));
    EXPECT_EQ("ia ch0 commands\nia ch0 range 34\n", camera.text());
}

TEST_F(DynamicStyle, GivesAnEmptyTextWithoutADocument) {
    std::string strResult = "untouched";
    EXPECT_EQ(0, getDnaStyle(1, nullptr, strResult, true));
    EXPECT_EQ("", strResult);
    EXPECT_EQ(messages::loggedAssertion(kPlace, kParsingFailed), anyLine(root.errorLog()));
}

TEST_F(DynamicStyle, WorksOnWhatWasParsedOfABrokenDocument) {
    answers(34, 2, {2});
    EXPECT_EQ(style(parameter(34, "2", {})), tree("<style><p id='34' value='1'/>"));
}

TEST_F(DynamicStyle, ReportsAChoiceWithoutIndex) {
    answers(34, 2, {2});
    answers(35, 3, {3});
    const std::string strOut = outputOf([this] {
        EXPECT_EQ("<style><p id=\"34\" value=\"2\"><c /><c index=\"1\" /></p><p id=\"35\" value=\"3\" /></style>",
                  tree("<style><p id='34'><c/><c index='1'/></p><p id='35'><c index='1'/></p></style>"));
    });
    EXPECT_EQ(messages::assertion(kPlace, kPruningFailed), anyLine(strOut));
}

TEST_F(DynamicStyle, NeverWritesAFile) {
    answers(34, 2, {2});
    text(style(parameter(34, "1", {})));
    EXPECT_FALSE(root.exists("/tmp/merge_style_ch1.xml"));
    EXPECT_FALSE(root.exists("/style"));
}

TEST_F(DynamicStyleDeathTest, StopsTheProcessAtAFailedRangeWhenAssertionsAreEnabled) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    answers(34, 2, {2});
    camera.driverFails(34, IA_CMD_OPT_GET_PARAM_RNAGE, -1);
    root.debugLevel(-1, true);
    EXPECT_DEATH(text("<style/>"), "SensorFile.cpp:[0-9]+: int getDnaStyle\\(.*Assertion `bRet' failed");
}

// --- Hostile drivers and documents ---

TEST_F(DynamicStyle, TakesACommandCountBelowZeroAsNone) {
    answers(34, 2, {2});
    camera.onDriver(IA_CMD_DYNAMIC_PARAMS_CMDS_GET, IA_CMD_OPT_GET, [](int, void* p_pData) {
        *static_cast<ia_dynamic_params_cmds_st*>(p_pData) = {-1, {34}};
        return 0;
    });
    root.debugLevel(6);
    const std::string strOut =
        outputOf([this] { EXPECT_EQ(style(parameter(34, "1", {1})), tree(style(parameter(34, "1", {1})))); });
    EXPECT_NE(std::string::npos, strOut.find("dnaCmdList.cmd_cnt(-1)\n"));
    EXPECT_NE(std::string::npos, strOut.find("driver claims -1 dynamic commands, the record holds 0 to 16\n"));
}

TEST_F(DynamicStyle, TakesNoMoreCommandsThanTheRecordHolds) {
    camera.onDriver(IA_CMD_DYNAMIC_PARAMS_CMDS_GET, IA_CMD_OPT_GET, [](int, void* p_pData) {
        auto* const pList = static_cast<ia_dynamic_params_cmds_st*>(p_pData);
        pList->cmd_cnt = 1000000;
        for (u32& nCmd : pList->cmd_list) {
            nCmd = 34;
        }
        return 0;
    });
    camera.range(34, RecordingCamera::rangeOf(2, {2}));
    text("<style/>");
    EXPECT_EQ(16u, camera.linesLike("ia ch0 range 34").size());
}

TEST_F(DynamicStyle, TakesNoMoreItemsThanTheRecordHolds) {
    for (const int nCount : {-1, 65, 2147483647, -2147483647 - 1}) {
        auto stRange = RecordingCamera::rangeOf(7, {3, 5, 7});
        stRange.items_cnt = nCount;
        camera.dynamicCommands({49});
        camera.range(49, stRange);
        EXPECT_EQ(style(parameter(49, nCount < 0 ? "7" : "5", {})),
                  quietly([this] { return tree(style(parameter(49, "5", {99}))); }))
            << nCount;
    }
}

TEST_F(DynamicStyle, RefusesADocumentNestedTooDeeply) {
    EXPECT_EQ("", text(documents::nest(257)));
    EXPECT_EQ(messages::loggedAssertion(kPlace, kParsingFailed), anyLine(root.errorLog()));
    EXPECT_EQ(compact(documents::nest(256)), tree(documents::nest(256)));
}

TEST_F(DynamicStyle, ReadsADocumentCutInsideACharacterNoFurtherThanItsEnd) {
    for (const char* szCut : {"\xC3", "\xE2\x82", "\xF0\x9F\x93", "&#x", "&"}) {
        EXPECT_EQ("<style><p /></style>", tree(std::string("<style><p id='") + szCut)) << szCut;
    }
}

TEST_F(DynamicStyle, PrunesThousandsOfChoices) {
    std::string strChoices;
    for (int i = 0; i < 20000; ++i) {
        strChoices += "<c index='" + std::to_string(i) + "'/>";
    }
    answers(34, 2, {2, 19999});
    EXPECT_EQ(style(parameter(34, "2", {2, 19999})), tree("<style><p id='34'>" + strChoices + "</p></style>"));
}

TEST_F(DynamicStyle, TakesTheStylesOwnChoicesUpToWhatARangeHolds) {
    std::string strChoices;
    std::string strKept;
    for (int i = 0; i < 3000; ++i) {
        strChoices += "<c index='" + std::to_string(i) + "'/>";
        strKept += i < 64 ? "<c index=\"" + std::to_string(i) + "\" />" : "";
    }
    answers(49, 7, {});
    EXPECT_EQ("<style><p id=\"49\" value=\"5\">" + strKept + "</p></style>",
              tree("<style><p id='49' value='205'>" + strChoices + "</p></style>"));
}
