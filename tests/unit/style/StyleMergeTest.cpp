#include "sensor/style/StyleMerge.h"

#include "tests/support/Messages.h"
#include "tests/support/TestRoot.h"
#include "tests/unit/style/Documents.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>
#include <string>

namespace {

using documents::compact;
using messages::anyLine;

const messages::Place kMerge = {"SensorFile.cpp", "mergeStyle"};

constexpr char kBase[] = "<style><tab key=\"image\"/><tab key=\"light\"/><tab key=\"lens\"/></style>";

// A base style whose tabs carry these keys, as compact text.
std::string tabs(std::initializer_list<const char*> p_vecKeys) {
    std::string strText = "<style>";
    for (const char* szKey : p_vecKeys) {
        strText += std::string("<tab key=\"") + szKey + "\" />";
    }
    return strText + "</style>";
}

class StyleMerge : public testing::Test {
protected:
    // Merges and returns the merged text; the texts are blocks of their exact size.
    std::string merge(const std::string& p_strBase, const std::string& p_strDiversity, const std::string& p_strDetail,
                      int p_nChannel = 1) {
        ModuleConfig stModule = {};
        p_strDetail.copy(stModule.szDetail, sizeof(stModule.szDetail) - 1);
        char* pStyle = strdup(p_strBase.c_str());
        char* const pDiversity = strdup(p_strDiversity.c_str());
        EXPECT_EQ(0, mergeStyle(p_nChannel, &stModule, &pStyle, pDiversity));
        const std::string strMerged = pStyle;
        std::free(pDiversity);
        std::free(pStyle);
        return strMerged;
    }

    // The same, with the small base style, compared as a tree.
    std::string merged(const std::string& p_strDiversity, const std::string& p_strDetail) {
        return compact(merge(kBase, p_strDiversity, p_strDetail));
    }

    // Whether a variant with this condition is selected by this detail text.
    bool selects(const std::string& p_strAttribute, const std::string& p_strDetail) {
        const std::string strResult =
            merged("<variant " + p_strAttribute + "><Delete tab_key='lens'/></variant>", p_strDetail);
        EXPECT_TRUE(tabs({"image", "light"}) == strResult || tabs({"image", "light", "lens"}) == strResult)
            << strResult;
        return tabs({"image", "light"}) == strResult;
    }

    // The tabs after one operation.
    std::string after(const std::string& p_strOperation) {
        return merged("<variant lens='1'>" + p_strOperation + "</variant>", "(lens=1)");
    }

    TestRoot root;
};

using StyleMergeDeathTest = StyleMerge;

}  // namespace

// --- Which variants apply ---

TEST_F(StyleMerge, AcceptsAnyValueOfAList) {
    EXPECT_TRUE(selects("name='A,B'", "(name=A)"));
    EXPECT_TRUE(selects("name='A,B'", "(name=B)"));
    EXPECT_FALSE(selects("name='A,B'", "(name=C)"));
}

TEST_F(StyleMerge, MeantFiveCharactersDecide) {
    EXPECT_TRUE(selects("name='abcdeX'", "(name=abcdeY)"));
    EXPECT_TRUE(selects("name='q,abcdeX'", "(name=abcdeY)"));
    EXPECT_TRUE(selects("name='abcde'", "(name=abcdefghi)"));
    EXPECT_FALSE(selects("name='abcdX'", "(name=abcdY)"));
}

TEST_F(StyleMerge, ComparesShorterValuesWhole) {
    EXPECT_FALSE(selects("name='1'", "(name=17)"));
    EXPECT_FALSE(selects("name='17'", "(name=1)"));
    EXPECT_TRUE(selects("name='17'", "(name=17)"));
}

TEST_F(StyleMerge, AcceptsAWholeAttributeValueWithCommas) {
    EXPECT_TRUE(selects("name='A,B'", "(name=A,B)"));
    EXPECT_FALSE(selects("name='A,B'", "(name=B,A)"));
}

TEST_F(StyleMerge, AcceptsAnEmptyValueByAnEmptyOne) {
    EXPECT_TRUE(selects("name=''", "(name=)"));
    EXPECT_FALSE(selects("name=''", "(name=A)"));
    EXPECT_FALSE(selects("name='A,'", "(name=)"));
}

TEST_F(StyleMerge, KeepsTheBlanksOfAListItem) {
    EXPECT_FALSE(selects("name='A, B'", "(name=B)"));
    EXPECT_TRUE(selects("name='A, B'", "(name= B)"));
}

TEST_F(StyleMerge, DoesNotSelectByANameThatTheDetailLacks) {
    EXPECT_FALSE(selects("name='A'", "(other=A)"));
    EXPECT_FALSE(selects("name=''", "(other=)"));
    EXPECT_FALSE(selects("name='A'", ""));
}

TEST_F(StyleMerge, SelectsByAnotherAttributeWhenTheFirstNameIsMissing) {
    EXPECT_TRUE(selects("name='A' other='B'", "(other=B)"));
    EXPECT_TRUE(selects("name='A' other='B'", "(name=C)(other=B)"));
    EXPECT_FALSE(selects("name='A' other='B'", "(name=B)(other=A)"));
}

TEST_F(StyleMerge, DoesNotLetOneAttributeSeeTheValueOfTheOneBefore) {
    EXPECT_FALSE(selects("name='A' other='C'", "(name=C)"));
}

TEST_F(StyleMerge, SkipsAVariantWithoutAttributes) {
    root.debugLevel(6);
    const std::string strOut = outputOf([this] {
        EXPECT_EQ(tabs({"image", "light", "lens"}),
                  merged("<variant><Delete tab_key='lens'/></variant><variant/>", "(name=A)"));
    });
    EXPECT_EQ(std::string::npos, strOut.find("modi_attr"));
    EXPECT_EQ("", root.errorLog());
}

TEST_F(StyleMerge, TracesEachConditionItLooksAt) {
    root.debugLevel(6);
    const std::string strOut = anyLine(outputOf([this] {
        merged("<v none='x' name='A,B' other='C' late='D'><Delete tab_key='lens'/></v>", "(name=C)(other=C)(late=D)");
    }));
    const std::string strTraces =
        messages::debug(kMerge, "modi_attr->Name()(none), modi_attr->Value()(x)\n") +
        messages::debug(kMerge, "modi_attr->Name()(none), modi_attr->Value()(x) nVal()\n") +
        messages::debug(kMerge, "modi_attr->Name()(name), modi_attr->Value()(A,B)\n") +
        messages::debug(kMerge, "modi_attr->Name()(name), modi_attr->Value()(A,B) nVal(C)\n") +
        messages::debug(kMerge, "modi_attr->Name()(other), modi_attr->Value()(C)\n");
    // The attribute that matches decides: the one behind it is not looked at.
    EXPECT_EQ(strTraces, strOut.substr(0, strTraces.size()));
    EXPECT_EQ(std::string::npos, strOut.find("late"));
}

TEST_F(StyleMerge, TracesNothingBelowDebugLevel) {
    root.debugLevel(5);
    EXPECT_EQ("", outputOf([this] { merged("<v name='A'><Delete tab_key='lens'/></v>", "(name=A)"); }));
}

TEST_F(StyleMerge, TakesAVariantOfAnyElementName) {
    EXPECT_EQ(tabs({"image", "light"}), merged("<Delete name='A'><Delete tab_key='lens'/></Delete>", "(name=A)"));
}

TEST_F(StyleMerge, ComparesOnlyNineCharactersOfALongValue) {
    EXPECT_TRUE(selects("name='abcdefghijkl'", "(name=abcdefghijklmnopqrstuvwxyz)"));
}

TEST_F(StyleMerge, AppliesEverySelectedVariantInOrder) {
    const std::string strDiversity =
        "<first name='A'><AddAfter tab_key='light'><tab key='new'/></AddAfter></first>"
        "<second name='B'><Delete tab_key='image'/></second>"
        "<third name='A'><AddAfter tab_key='new'><tab key='newer'/></AddAfter><Delete tab_key='lens'/></third>";
    EXPECT_EQ(tabs({"image", "light", "new", "newer"}), merged(strDiversity, "(name=A)"));
}

TEST_F(StyleMerge, AppliesAVariantToWhatTheOneBeforeLeft) {
    const std::string strDiversity =
        "<first name='A'><Delete tab_key='light'/></first>"
        "<second name='A'><AddAfter tab_key='light'><tab key='new'/></AddAfter></second>";
    EXPECT_EQ(tabs({"image", "lens"}), merged(strDiversity, "(name=A)"));
}

TEST_F(StyleMerge, ReportsASelectedVariantWithoutOperationsAndGoesOn) {
    const std::string strOut = outputOf([this] {
        EXPECT_EQ(tabs({"image", "light"}),
                  merged("<empty name='A'/><full name='A'><Delete tab_key='lens'/></full>", "(name=A)"));
    });
    const std::string strCondition = "NULL != (node_second = node_first->FirstChildElement())";
    EXPECT_EQ(messages::assertion(kMerge, strCondition), anyLine(strOut));
    EXPECT_EQ(messages::loggedAssertion(kMerge, strCondition), anyLine(root.errorLog()));
}

// --- What an operation does ---

TEST_F(StyleMerge, ModifyPutsTheNewTabInTheOldOnesPlace) {
    EXPECT_EQ(tabs({"image", "new", "lens"}), after("<Modify tab_key='light'><tab key='new'/></Modify>"));
    EXPECT_EQ(tabs({"new", "light", "lens"}), after("<Modify tab_key='image'><tab key='new'/></Modify>"));
    EXPECT_EQ(tabs({"image", "light", "new"}), after("<Modify tab_key='lens'><tab key='new'/></Modify>"));
}

TEST_F(StyleMerge, ModifyMovesTheWholeTab) {
    const std::string strTab =
        "<page key=\"new\" label=\"L\"><item id=\"34\" value=\"5\"><c index=\"1\" /></item></page>";
    EXPECT_EQ("<style><tab key=\"image\" />" + strTab + "<tab key=\"lens\" /></style>",
              after("<Modify tab_key='light'>" + strTab + "</Modify>"));
}

TEST_F(StyleMerge, ModifyOnAKeyThatNoTabCarriesChangesNothing) {
    EXPECT_EQ(tabs({"image", "light", "lens"}), after("<Modify tab_key='none'><tab key='new'/></Modify>"));
}

TEST_F(StyleMerge, AddAfterPutsTheNewTabBehindTheNamedOne) {
    EXPECT_EQ(tabs({"image", "new", "light", "lens"}), after("<AddAfter tab_key='image'><tab key='new'/></AddAfter>"));
}

TEST_F(StyleMerge, AddAfterTheLastTabAppends) {
    EXPECT_EQ(tabs({"image", "light", "lens", "new"}), after("<AddAfter tab_key='lens'><tab key='new'/></AddAfter>"));
}

TEST_F(StyleMerge, DeleteRemovesTheTab) {
    EXPECT_EQ(tabs({"light", "lens"}), after("<Delete tab_key='image'/>"));
}

TEST_F(StyleMerge, DeleteOfTheLastTabLeavesTheRootWithoutIt) {
    EXPECT_EQ(tabs({"image", "light"}), after("<Delete tab_key='lens'/>"));
    EXPECT_EQ("<style />", compact(merge("<style><tab key='only'/></style>", "<v lens='1'><Delete tab_key='only'/></v>",
                                         "(lens=1)")));
}

TEST_F(StyleMerge, DeleteIgnoresItsChild) {
    EXPECT_EQ(tabs({"light", "lens"}), after("<Delete tab_key='image'><tab key='new'/></Delete>"));
}

TEST_F(StyleMerge, InsertsOnlyTheFirstChildOfAnOperation) {
    EXPECT_EQ(tabs({"image", "light", "new", "lens"}),
              after("<AddAfter tab_key='light'><!-- note --><tab key='new'/><tab key='more'/></AddAfter>"));
    EXPECT_EQ(tabs({"image", "new", "lens"}),
              after("<Modify tab_key='light'><tab key='new'/><tab key='more'/></Modify>"));
}

TEST_F(StyleMerge, AppliesTheOperationsOfAVariantInOrder) {
    EXPECT_EQ(tabs({"image", "newer", "lens"}),
              after("<Modify tab_key='light'><tab key='new'/></Modify> text <!-- note -->"
                    "<Modify tab_key='new'><tab key='newer'/></Modify>"));
}

TEST_F(StyleMerge, TouchesOnlyTheFirstTabWithTheKey) {
    const std::string strBase = "<style><tab key='twin' n='1'/><tab key='twin' n='2'/></style>";
    EXPECT_EQ("<style><tab key=\"twin\" n=\"2\" /></style>",
              compact(merge(strBase, "<v lens='1'><Delete tab_key='twin'/></v>", "(lens=1)")));
}

TEST_F(StyleMerge, ComparesKeysExactly) {
    EXPECT_EQ(tabs({"image", "light", "lens"}),
              after("<Delete tab_key='Lens'/><Delete tab_key='len'/><Delete tab_key='lens '/>"));
}

TEST_F(StyleMerge, KnowsOperationsByTheirExactNames) {
    EXPECT_EQ(tabs({"image", "light", "lens"}),
              after("<delete tab_key='lens'/><DELETE tab_key='lens'/><Remove tab_key='lens'/>"
                    "<modify tab_key='lens'><tab key='new'/></modify>"
                    "<Addafter tab_key='lens'><tab key='new'/></Addafter>"));
}

TEST_F(StyleMerge, IgnoresAnOperationWithoutATabKey) {
    EXPECT_EQ(tabs({"image", "light", "lens"}), after("<Delete/><Modify key='lens'><tab key='new'/></Modify>"));
    EXPECT_EQ("", root.errorLog());
}

TEST_F(StyleMerge, IgnoresAnInsertionWithoutATab) {
    EXPECT_EQ(tabs({"image", "light", "lens"}),
              after("<Modify tab_key='lens'/><AddAfter tab_key='lens'>text</AddAfter>"));
    EXPECT_EQ("", root.errorLog());
}

TEST_F(StyleMerge, PassesOverTabsWithoutAKey) {
    const std::string strBase = "<style><tab/><!-- note -->text<tab name='lens'/><tab key='lens'/></style>";
    EXPECT_EQ("<style><tab /><!-- note -->text<tab name=\"lens\" /></style>",
              compact(merge(strBase, "<v lens='1'><Delete tab_key='lens'/></v>", "(lens=1)")));
}

TEST_F(StyleMerge, LooksForTabsDirectlyBelowTheRootOnly) {
    const std::string strBase = "<style><group key='g'><tab key='lens'/></group></style>";
    EXPECT_EQ("<style><group key=\"g\"><tab key=\"lens\" /></group></style>",
              compact(merge(strBase, "<v lens='1'><Delete tab_key='lens'/></v>", "(lens=1)")));
}

TEST_F(StyleMerge, ReportsABaseWithoutTabs) {
    const std::string strCondition = "NULL != (tab_node = doc_style->RootElement()->FirstChildElement())";
    const std::string strOut = outputOf([this] {
        EXPECT_EQ("<style />", compact(merge("<style/>", "<v lens='1'><Delete tab_key='lens'/></v>", "(lens=1)")));
    });
    EXPECT_EQ(messages::assertion({"SensorFile.cpp", "updateStyleTab"}, strCondition), messages::anyLine(strOut));
    EXPECT_EQ(messages::loggedAssertion({"SensorFile.cpp", "updateStyleTab"}, strCondition),
              messages::anyLine(root.errorLog()));
}

TEST_F(StyleMerge, OperationLeavesTheNewTabWithItsOwner) {
    TiXmlDocument objStyle;
    objStyle.Parse(kBase);
    TiXmlElement objTab("tab");
    objTab.SetAttribute("key", "new");
    EXPECT_EQ(0, updateStyleTab(&objStyle, "AddAfter", "lens", &objTab));
    EXPECT_EQ(0, updateStyleTab(&objStyle, "Modify", "image", &objTab));
    objTab.SetAttribute("key", "changed");
    EXPECT_EQ(tabs({"new", "light", "lens", "new"}), compact(objStyle));
    EXPECT_EQ(nullptr, objTab.Parent());
}

TEST_F(StyleMerge, OperationReturnsSuccessWhateverItIsGiven) {
    TiXmlDocument objStyle;
    objStyle.Parse(kBase);
    TiXmlElement objTab("tab");
    EXPECT_EQ(0, updateStyleTab(&objStyle, "Delete", nullptr, &objTab));
    EXPECT_EQ(0, updateStyleTab(&objStyle, nullptr, "lens", &objTab));
    EXPECT_EQ(0, updateStyleTab(&objStyle, "Modify", "lens", nullptr));
    EXPECT_EQ(0, updateStyleTab(&objStyle, "AddAfter", "lens", nullptr));
    EXPECT_EQ(0, updateStyleTab(&objStyle, "Other", "lens", &objTab));
    EXPECT_EQ(tabs({"image", "light", "lens"}), compact(objStyle));
    TiXmlDocument objEmpty;
    EXPECT_EQ(0, updateStyleTab(&objEmpty, "Delete", "lens", &objTab));
    EXPECT_TRUE(objEmpty.NoChildren());
}

// --- What comes back ---

TEST_F(StyleMerge, GivesTheTextAsTheLibrarySavedIt) {
    const std::string strMerged = merge("<style>\n<tab   key='image'/></style>", "<v/>", "");
    EXPECT_EQ("<style>\n    <tab key=\"image\" />\n</style>\n", strMerged);
    EXPECT_EQ(root.read("/tmp/merge_style_ch1.xml"), strMerged);
}

TEST_F(StyleMerge, LeavesTheMergedFileOfItsChannel) {
    merge("<one/>", "<v/>", "", 1);
    merge("<two/>", "<v/>", "", 2);
    merge("<three/>", "<v/>", "", 3);
    EXPECT_EQ("<one />\n", root.read("/tmp/merge_style_ch1.xml"));
    EXPECT_EQ("<two />\n", root.read("/tmp/merge_style_ch2.xml"));
    EXPECT_EQ("<three />\n", root.read("/tmp/merge_style_ch3.xml"));
}

TEST_F(StyleMerge, ReplacesTheMergedFileOfAnEarlierRun) {
    merge("<style><tab key='a longer document than the one that follows'/></style>", "<v/>", "");
    EXPECT_EQ("<style />\n", merge("<style/>", "<v/>", ""));
}

TEST_F(StyleMerge, GrowsAndShrinksTheText) {
    std::string strBig = "<tab key='big'>";
    for (int i = 0; i < 2000; ++i) {
        strBig += "<item id='" + std::to_string(i) + "' value='1'/>";
    }
    strBig += "</tab>";
    const std::string strGrown =
        merge(kBase, "<v lens='1'><Modify tab_key='lens'>" + strBig + "</Modify></v>", "(lens=1)");
    EXPECT_GT(strGrown.size(), strBig.size());
    EXPECT_EQ(root.read("/tmp/merge_style_ch1.xml"), strGrown);
    const std::string strShrunk = merge(strGrown, "<v lens='1'><Delete tab_key='big'/></v>", "(lens=1)");
    EXPECT_EQ(tabs({"image", "light"}), compact(strShrunk));
}

TEST_F(StyleMerge, ShowsTheMergedTextAboveDebugLevel) {
    root.debugLevel(7);
    const std::string strOut = outputOf([this] { merge("<style/>", "<v/>", ""); });
    EXPECT_NE(std::string::npos, anyLine(strOut).find(messages::info(kMerge, "<style />\n\n"))) << strOut;
    root.debugLevel(6);
    EXPECT_EQ(std::string::npos, outputOf([this] { merge("<style/>", "<v/>", ""); }).find("<style />"));
}

TEST_F(StyleMerge, KeepsEverythingThatItDoesNotTouch) {
    const std::string strBase =
        "<?xml version=\"1.0\" encoding=\"UTF-8\" ?><!-- family --><style lang=\"en\">text<tab key=\"image\" label='a "
        "&amp; &quot;b&quot; \xC3\xA4'><![CDATA[<raw>]]></tab></style>";
    EXPECT_EQ(strBase, compact(merge(strBase, "<v lens='1'><Delete tab_key='none'/></v>", "(lens=1)")));
}

// --- What fails ---

TEST_F(StyleMerge, ReportsADiversityWithoutElementsAndKeepsTheBase) {
    const std::string strOut = outputOf([this] {
        EXPECT_EQ(tabs({"image", "light", "lens"}), merged("<!-- nothing differs -->", "(lens=1)"));
    });
    EXPECT_EQ(messages::assertion(kMerge, "NULL != (node_first = doc_style_div.RootElement())"), anyLine(strOut));
}

TEST_F(StyleMerge, ReportsABrokenDiversityAndKeepsTheBase) {
    const std::string strOut = outputOf([this] {
        EXPECT_EQ(tabs({"image", "light", "lens"}), merged("not a document", "(lens=1)"));
    });
    EXPECT_EQ(messages::assertion(kMerge, "doc_style_div.LoadMem(ui_styleDiversity, TIXML_ENCODING_UTF8)") +
                  messages::assertion(kMerge, "NULL != (node_first = doc_style_div.RootElement())"),
              anyLine(strOut));
}

TEST_F(StyleMerge, AppliesADiversityAsFarAsItWasParsed) {
    const std::string strOut = outputOf([this] {
        EXPECT_EQ(tabs({"light", "lens"}),
                  merged("<v lens='1'><Delete tab_key='image'/></v><v lens='1'><Delete tab_key=", "(lens=1)"));
    });
    EXPECT_EQ(messages::assertion(kMerge, "doc_style_div.LoadMem(ui_styleDiversity, TIXML_ENCODING_UTF8)"),
              anyLine(strOut));
}

TEST_F(StyleMerge, ReportsABrokenBaseAndMergesWhatWasParsed) {
    const std::string strOut = outputOf([this] {
        EXPECT_EQ(tabs({"image"}), compact(merge("<style><tab key='image'/><tab key='lens'/>",
                                                 "<v lens='1'><Delete tab_key='lens'/></v>", "(lens=1)")));
    });
    EXPECT_EQ(messages::assertion(kMerge, "doc_style.LoadMem(*ui_style, TIXML_ENCODING_UTF8)"), anyLine(strOut));
}

TEST_F(StyleMerge, WithoutTextsReportsEachStepAndGivesAnEmptyText) {
    ModuleConfig stModule = {};
    char* pStyle = nullptr;
    const std::string strOut = outputOf([&] { EXPECT_EQ(0, mergeStyle(1, &stModule, &pStyle, nullptr)); });
    ASSERT_NE(nullptr, pStyle);
    EXPECT_STREQ("", pStyle);
    std::free(pStyle);
    EXPECT_EQ(messages::assertion(kMerge, "doc_style.LoadMem(*ui_style, TIXML_ENCODING_UTF8)") +
                  messages::assertion(kMerge, "doc_style_div.LoadMem(ui_styleDiversity, TIXML_ENCODING_UTF8)") +
                  messages::assertion(kMerge, "NULL != (node_first = doc_style_div.RootElement())") +
                  messages::assertion(kMerge, "loadFromFile(filename, *ui_style, file_len) > 0"),
              anyLine(strOut));
}

TEST_F(StyleMerge, ReportsAMergedFileThatCannotBeWritten) {
    root.remove("/tmp");
    const std::string strOut = outputOf([this] { EXPECT_EQ("", merge("<style/>", "<v/>", "")); });
    EXPECT_EQ(messages::assertion({"SensorFile.cpp", "getFileLen"}, "file.open(file_name)") +
                  messages::detail("file_name(/tmp/merge_style_ch1.xml)") +
                  messages::assertion(kMerge, "loadFromFile(filename, *ui_style, file_len) > 0"),
              anyLine(strOut));
}

TEST_F(StyleMergeDeathTest, StopsTheProcessAtABrokenBaseWhenAssertionsAreEnabled) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    root.debugLevel(-1, true);
    EXPECT_DEATH(merge("broken", "<v/>", ""), "SensorFile.cpp:[0-9]+: int mergeStyle\\(.*Assertion `bRet' failed");
}

TEST_F(StyleMergeDeathTest, StopsTheProcessAtAVariantWithoutOperationsWhenAssertionsAreEnabled) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    root.debugLevel(-1, true);
    EXPECT_DEATH(merged("<v lens='1'/>", "(lens=1)"), "SensorFile.cpp:[0-9]+: .*Assertion `bRet' failed");
}

// --- Hostile documents ---

TEST_F(StyleMerge, RefusesABaseNestedTooDeeply) {
    const std::string strOut = outputOf([this] { EXPECT_EQ("", merge(documents::nest(257), "<v/>", "")); });
    EXPECT_EQ(messages::assertion(kMerge, "doc_style.LoadMem(*ui_style, TIXML_ENCODING_UTF8)") +
                  messages::assertion(kMerge, "loadFromFile(filename, *ui_style, file_len) > 0"),
              anyLine(strOut));
    EXPECT_EQ("", outputOf([this] { merge(documents::nest(256), "<v/>", ""); }));
}

TEST_F(StyleMerge, RefusesADiversityNestedTooDeeply) {
    const auto variantOf = [](int p_nDepth) {
        return "<v lens='1'><AddAfter tab_key='lens'>" + documents::nest(p_nDepth - 2) + "</AddAfter></v>";
    };
    EXPECT_EQ(tabs({"image", "light", "lens"}), quietly([&] { return merged(variantOf(257), "(lens=1)"); }));
    EXPECT_EQ(messages::loggedAssertion(kMerge, "doc_style_div.LoadMem(ui_styleDiversity, TIXML_ENCODING_UTF8)") +
                  messages::loggedAssertion(kMerge, "NULL != (node_first = doc_style_div.RootElement())"),
              anyLine(root.errorLog()));
    EXPECT_NE(std::string::npos, merged(variantOf(256), "(lens=1)").find("<a />"));
}

TEST_F(StyleMerge, ReadsDocumentsCutInsideACharacterNoFurtherThanTheirEnd) {
    for (const char* szCut : {"\xC3", "\xE2\x82", "\xF0\x9F\x93"}) {
        const std::string strCut = std::string("<style><tab key='") + szCut;
        EXPECT_EQ("<style><tab /></style>", quietly([&] { return compact(merge(strCut, strCut, "(key=1)")); }));
    }
}

TEST_F(StyleMerge, EndsADiversityAtItsFirstZeroByte) {
    const char szDiversity[] = "<v lens='1'><Delete tab_key='image'/></v>\0<v lens='1'><Delete tab_key='lens'/></v>";
    ModuleConfig stModule = {};
    std::strcpy(stModule.szDetail, "(lens=1)");
    char* pStyle = strdup(kBase);
    std::string strDiversity(szDiversity, sizeof(szDiversity));
    EXPECT_EQ(0, mergeStyle(1, &stModule, &pStyle, strDiversity.data()));
    EXPECT_EQ(tabs({"light", "lens"}), compact(std::string(pStyle)));
    std::free(pStyle);
}

TEST_F(StyleMerge, TakesThousandsOfVariants) {
    std::string strDiversity;
    for (int i = 0; i < 3000; ++i) {
        strDiversity += "<v lens='1'><AddAfter tab_key='image'><tab key='" + std::to_string(i) + "'/></AddAfter></v>";
    }
    const std::string strMerged = merge(kBase, strDiversity, "(lens=1)");
    TiXmlDocument document;
    document.Parse(strMerged.c_str());
    int nTabs = 0;
    for (const TiXmlElement* pTab = document.RootElement()->FirstChildElement(); nullptr != pTab;
         pTab = pTab->NextSiblingElement()) {
        ++nTabs;
    }
    EXPECT_EQ(3003, nTabs);
}
