#include "sensor/style/FactoryData.h"

#include "sensor/style/ShowFlags.h"
#include "tests/support/Messages.h"
#include "tests/support/RecordingCamera.h"
#include "tests/support/TestRoot.h"
#include "tests/unit/style/Documents.h"

#include <gtest/gtest.h>

#include <memory>
#include <random>
#include <string>
#include <utility>
#include <vector>

namespace {

using messages::anyLine;

const messages::Place kFactoryData = {"SensorFile.cpp", "getFctData"};

constexpr char kFactoryParsingFailed[] = "objDnaStyleDoc.LoadMem(strDnaStyle.c_str(), TIXML_ENCODING_UTF8)";

// A declaration whose version is printed as it is: what was a text comes back as elements.
std::string hidden(const std::string& p_strVersion) {
    return "<?xml version='\"?&gt;" + p_strVersion + "'?>";
}

using Records = std::vector<std::pair<u32, u32>>;

Records recordsOf(const KeyVal* p_pKeyVal, u32 p_nSum) {
    Records vecRecords;
    for (u32 i = 0; i < p_nSum; ++i) {
        vecRecords.emplace_back(p_pKeyVal[i].key, p_pKeyVal[i].value);
    }
    return vecRecords;
}

class FactoryData : public testing::Test {
protected:
    FactoryData() { setshowBeawayFalg(false); }
    ~FactoryData() override { setshowBeawayFalg(true); }

    // The factory set of a style, in an array of just the room that the style is said to need.
    Records factory(const std::string& p_strStyle, bool p_bShowWDR = false, int p_nChannel = 1) {
        std::string strStyle = p_strStyle;
        const std::unique_ptr<KeyVal[]> pRecords(new KeyVal[factoryRoom(strStyle.c_str())]);
        u32 nSum = 0xDEAD;
        EXPECT_EQ(0, getFctData(p_nChannel, strStyle.data(), pRecords.get(), &nSum, p_bShowWDR));
        return recordsOf(pRecords.get(), nSum);
    }

    TestRoot root;
    RecordingCamera camera;
};

using FactoryDataDeathTest = FactoryData;

}  // namespace

// --- From a tree ---

TEST(StyleToRecords, AppendsBehindWhatTheArrayHolds) {
    TiXmlDocument document;
    document.Parse("<s><p id='34' value='5'/><p id='35' value='6'/></s>");
    KeyVal records[3] = {{1, 2}, {0, 0}, {0, 0}};
    u32 nSum = 1;
    EXPECT_EQ(0, style2KeyVal(document.RootElement(), records, &nSum));
    EXPECT_EQ((Records{{1, 2}, {34, 5}, {35, 6}}), recordsOf(records, nSum));
}

TEST(StyleToRecords, OfANullElementAreNone) {
    KeyVal records[1] = {{1, 2}};
    u32 nSum = 0;
    EXPECT_EQ(0, style2KeyVal(nullptr, records, &nSum));
    EXPECT_EQ(0u, nSum);
    EXPECT_EQ(1u, records[0].key);
}

TEST(StyleToRecords, StartWithTheElementItself) {
    TiXmlDocument document;
    document.Parse("<s id='1' value='2'><p id='3' value='4'/></s>");
    KeyVal records[2] = {};
    u32 nSum = 0;
    EXPECT_EQ(0, style2KeyVal(document.RootElement(), records, &nSum));
    EXPECT_EQ((Records{{1, 2}, {3, 4}}), recordsOf(records, nSum));
}

// --- From a document ---

TEST_F(FactoryData, TakesEveryParameterInDocumentOrder) {
    EXPECT_EQ((Records{{8000, 0}, {34, 5}, {49, 7}, {50, 8}, {96, 9}}),
              factory("<style><tab><p id='8000' value='0'/><g><p id='34' value='5'/></g></tab>"
                      "<tab><p id='49' value='7'><p id='50' value='8'/></p></tab><p id='96' value='9'/></style>"));
}

TEST_F(FactoryData, TakesNothingOfAnElementThatHasOnlyOneOfTheTwo) {
    EXPECT_EQ((Records{{3, 4}, {5, 6}}),
              factory("<style><p id='1'><p id='3' value='4'/></p><p value='2'><p id='5' value='6'/></p></style>"));
}

TEST_F(FactoryData, OfAStyleWithoutParametersIsEmpty) {
    EXPECT_EQ(Records{}, factory("<style><tab key='image'/><p index='1'/></style>"));
}

TEST_F(FactoryData, KeepsAParameterThatStandsTwice) {
    EXPECT_EQ((Records{{34, 1}, {34, 2}}), factory("<style><p id='34' value='1'/><p id='34' value='2'/></style>"));
}

TEST_F(FactoryData, ReadsNumbersAsLeadingDecimals) {
    EXPECT_EQ((Records{{34, 12}, {0, 0}, {0xFFFFFFFFu, 0xFFFFFFFEu}}),
              factory("<style><p id=' 34x' value='12 lux'/><p id='none' value=''/><p id='-1' value='-2'/></style>"));
}

TEST_F(FactoryData, TakesChoicesThatLookLikeParameters) {
    EXPECT_EQ((Records{{34, 1}, {2, 3}}),
              factory("<style><p id='34' value='1'><c index='0' id='2' value='3'/></p></style>"));
}

TEST_F(FactoryData, HasTheDriversDefaultsWhereTheDriverGoverns) {
    camera.dynamicCommands({34, 49});
    camera.range(34, RecordingCamera::rangeOf(2, {2}));
    camera.range(49, RecordingCamera::rangeOf(3, {3, 5}));
    EXPECT_EQ((Records{{34, 2}, {35, 1}, {49, 5}}),
              factory("<style><p id='34' value='1'/><p id='35' value='1'/><p id='49' value='5'/></style>"));
}

TEST_F(FactoryData, HasAParameterThatOnlyTheDriverGivesAValue) {
    camera.dynamicCommands({34});
    camera.range(34, RecordingCamera::rangeOf(2, {2}));
    EXPECT_EQ((Records{{34, 2}}), factory("<style><p id='34'/></style>"));
}

TEST_F(FactoryData, AsksTheDriverOfItsChannel) {
    factory("<style/>", false, 2);
    EXPECT_EQ("ia ch1 commands\n", camera.text());
}

TEST_F(FactoryData, LacksWhatIsNotOffered) {
    const std::string strStyle = "<style><p id='10' value='1'/><p id='11' value='1'/><p id='34' value='5'/></style>";
    EXPECT_EQ((Records{{10, 1}, {11, 1}, {34, 5}}), factory(strStyle, false));
    EXPECT_EQ((Records{{11, 1}, {34, 5}}), factory(strStyle, true));
    setshowBeawayFalg(true);
    EXPECT_EQ((Records{{34, 5}}), factory(strStyle, true));
}

TEST_F(FactoryData, OfABrokenDocumentIsReportedTwiceAndEmpty) {
    const std::string strOut = outputOf([this] { EXPECT_EQ(Records{}, factory("no document")); });
    EXPECT_EQ(
        messages::assertion({"SensorFile.cpp", "getDnaStyle"}, "objStyleXmlDoc.LoadMem(szStyle, TIXML_ENCODING_UTF8)") +
            messages::assertion(kFactoryData, kFactoryParsingFailed),
        anyLine(strOut));
}

TEST_F(FactoryData, OfADocumentCutShortHoldsWhatWasParsed) {
    EXPECT_EQ((Records{{34, 5}}),
              quietly([this] { return factory("<style><p id='34' value='5'/><p id='35' value='"); }));
}

TEST_F(FactoryData, WithoutADocumentIsEmpty) {
    u32 nSum = 0xDEAD;
    KeyVal record = {1, 2};
    EXPECT_EQ(0, quietly([&] { return getFctData(1, nullptr, &record, &nSum, false); }));
    EXPECT_EQ(0u, nSum);
    EXPECT_EQ(1u, record.key);
}

TEST_F(FactoryDataDeathTest, StopsTheProcessAtABrokenDocumentWhenAssertionsAreEnabled) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    root.debugLevel(-1, true);
    EXPECT_DEATH(factory("no document"), "SensorFile.cpp:[0-9]+: int getDnaStyle\\(.*Assertion `bRet' failed");
}

// --- The room that a document needs ---

TEST_F(FactoryData, TakesMoreParametersThanTheKeyTableHasRows) {
    std::string strStyle = "<style>";
    Records vecExpected;
    for (u32 i = 0; i < 5000; ++i) {
        strStyle += "<p id='" + std::to_string(i) + "' value='" + std::to_string(i * 2) + "'/>";
        vecExpected.emplace_back(i, i * 2);
    }
    EXPECT_EQ(vecExpected, factory(strStyle + "</style>"));
}

TEST_F(FactoryData, NeedsNoRoomWithoutATextOrWithoutElements) {
    EXPECT_EQ(0u, factoryRoom(nullptr));
    EXPECT_EQ(0u, factoryRoom(""));
    EXPECT_EQ(0u, factoryRoom("text"));
}

TEST_F(FactoryData, HoldsElementsThatAppearWhenTheDocumentIsPrinted) {
    EXPECT_EQ((Records{{34, 5}, {35, 6}}),
              factory("<style>" + hidden("&lt;p id=\"34\" value=\"5\"/&gt;<p id=\"35\" value=\"6\"/>") + "</style>"));
    EXPECT_EQ((Records{{34, 5}}), factory("<style>" + hidden("&#60;p id=\"34\" value=\"5\"/&#x3e;") + "</style>"));
    EXPECT_EQ((Records{{34, 5}}), factory(hidden("&lt;p id=\"34\" value=\"5\"/&gt;") + "<style id='1' value='2'/>"));
}

TEST_F(FactoryData, NeverHoldsMoreRecordsThanItsRoom) {
    static const std::vector<std::string> vecPieces = {
        "<p id='1' value='2'>",
        "<p id='1' value='2'/>",
        "</p>",
        "&amp;#x",
        "&#38;#x",
        "&lt;",
        "&gt;",
        "&lt;p id='1' value='2'/&gt;",
        "&#60;p id=\"3\" value=\"4\"/&#62;",
        ";",
        "\"",
        "'",
        " ",
        "<![CDATA[",
        "]]>",
        "<!--",
        "-->",
        "<q n='",
        "<?xml version='",
        "'?>",
        "&#x",
        "<p id='&amp;#x' value='1'/>",
        "<q n=\"'&quot;&amp;#x&apos;&gt;&lt;p id='3' value='4'/&gt;;\"/>",
    };
    std::mt19937 engine(4);
    std::size_t nMost = 0;
    for (int i = 0; i < 1000; ++i) {
        std::string strStyle = "<style>";
        for (std::size_t nLeft = engine() % 20; nLeft > 0; --nLeft) {
            strStyle += vecPieces[engine() % vecPieces.size()];
        }
        strStyle += 0 == engine() % 2 ? "</style>" : ";</style>";
        const Records vecRecords = quietly([&] { return factory(strStyle); });
        EXPECT_LE(vecRecords.size(), factoryRoom(strStyle.c_str())) << strStyle;
        nMost = std::max(nMost, vecRecords.size());
    }
    EXPECT_GT(nMost, 3u) << "the documents do not try what they are meant to try";
}

TEST_F(FactoryData, RefusesADocumentThatNestsTooDeeplyOncePrinted) {
    std::string strText;
    for (int i = 0; i < 300; ++i) {
        strText += "&lt;a&gt;";
    }
    const std::string strOut =
        outputOf([&] { EXPECT_EQ(Records{}, factory("<style>" + hidden(strText) + "</style>")); });
    EXPECT_EQ(messages::assertion(kFactoryData, kFactoryParsingFailed), anyLine(strOut));
}
