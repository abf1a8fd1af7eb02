#include "sensor/style/StyleDocument.h"

#include "tests/unit/style/Documents.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>

namespace {

using documents::compact;

// The text in a heap block without a byte to spare, so that the address sanitizer sees a read behind it.
bool load(TiXmlDocument& p_objDocument, const std::string& p_strText) {
    const std::unique_ptr<char[]> pBlock(new char[p_strText.size() + 1]);
    p_strText.copy(pBlock.get(), p_strText.size());
    pBlock[p_strText.size()] = '\0';
    return style::loadMem(p_objDocument, pBlock.get());
}

// One element from its text.
class OneElement {
public:
    explicit OneElement(const std::string& p_strText) {
        m_objDocument.Parse(p_strText.c_str(), nullptr, TIXML_ENCODING_UTF8);
    }
    const TiXmlElement& operator*() const { return *m_objDocument.RootElement(); }

private:
    TiXmlDocument m_objDocument;
};

}  // namespace

TEST(StyleDocument, IsParsedFromItsText) {
    TiXmlDocument document;
    EXPECT_TRUE(load(document, "<style><tab key=\"image\"/></style>"));
    EXPECT_EQ("<style><tab key=\"image\" /></style>", compact(document));
}

TEST(StyleDocument, IsParsedAsUtf8) {
    TiXmlDocument document;
    EXPECT_TRUE(load(document, "\xEF\xBB\xBF<style label=\"Bl\xC3\xA4nde &#xE4;\"/>"));
    EXPECT_STREQ("Bl\xC3\xA4nde \xC3\xA4", document.RootElement()->Attribute("label"));
}

TEST(StyleDocument, WithoutATextIsNotParsed) {
    TiXmlDocument document;
    EXPECT_FALSE(style::loadMem(document, nullptr));
    EXPECT_FALSE(load(document, ""));
    EXPECT_TRUE(document.NoChildren());
}

TEST(StyleDocument, ThatIsNotWellFormedKeepsWhatWasParsed) {
    TiXmlDocument document;
    EXPECT_FALSE(load(document, "<style><tab key=\"image\"/><tab key=\"light\"></style>"));
    ASSERT_NE(nullptr, document.RootElement());
    EXPECT_STREQ("image", document.RootElement()->FirstChildElement()->Attribute("key"));
}

TEST(StyleDocument, NestedAtTheDeepestAllowedLevelIsParsed) {
    TiXmlDocument document;
    EXPECT_TRUE(load(document, documents::nest(256)));
    EXPECT_FALSE(document.NoChildren());
}

TEST(StyleDocument, NestedOneLevelDeeperIsRefusedWhole) {
    TiXmlDocument document;
    EXPECT_FALSE(load(document, documents::nest(257)));
    EXPECT_TRUE(document.NoChildren());
}

TEST(StyleDocument, NestedWithoutBoundIsRefused) {
    TiXmlDocument document;
    std::string strOpen;
    for (int i = 0; i < 1000000; ++i) {
        strOpen += "<a>";
    }
    EXPECT_FALSE(load(document, strOpen));
    EXPECT_TRUE(document.NoChildren());
}

// Without its end tags in the walk, each of these elements looks like one beside the other.
TEST(StyleDocument, WhoseNestingHidesInReferencesIsRefused) {
    for (const char* szPiece : {"<a>&#x</a>x41;", "<a>&#</a>#65;", "<a b='&#x'/>x41;'>", "<a b=\"&#\"/>#65;\">"}) {
        std::string strText;
        for (int i = 0; i < 100000; ++i) {
            strText += szPiece;
        }
        TiXmlDocument document;
        EXPECT_FALSE(load(document, strText)) << szPiece;
        EXPECT_TRUE(document.NoChildren()) << szPiece;
    }
}

TEST(StyleDocument, CutInsideACharacterIsReadNoFurtherThanItsEnd) {
    for (const char* szLead : {"\xC3", "\xE2", "\xE2\x82", "\xF0", "\xF0\x9F", "\xF0\x9F\x93", "\xEF", "\xEF\xBB"}) {
        for (const char* szBefore : {"", "<", "<a", "<a>", "<a x='", "<a x=", "<!--", "<![CDATA[", "<?xml version='",
                                     "<a>text ", "<a/>", "<!", "</", "<a>&#", "<a>&#x", "<a>&"}) {
            TiXmlDocument document;
            EXPECT_FALSE(load(document, std::string(szBefore) + szLead) && document.NoChildren())
                << szBefore << " and the lead byte of a character";
        }
    }
}

TEST(StyleDocument, EndsAtTheFirstZeroByte) {
    const char szText[] = "<style/>\0<other/>";
    TiXmlDocument document;
    EXPECT_TRUE(style::loadMem(document, szText));
    EXPECT_EQ("<style />", compact(document));
    const char szCut[] = "<style>\0</style>";
    EXPECT_FALSE(style::loadMem(document, szCut));
}

TEST(StyleDocument, AsTextParsesBackToTheSameTree) {
    const std::string strText =
        "<?xml version=\"1.0\" encoding=\"UTF-8\" ?><style a=\"&lt;&quot;&amp;\"><!-- note -->text<tab "
        "b='\"'/><![CDATA[<raw>]]></style>";
    TiXmlDocument document;
    ASSERT_TRUE(load(document, strText));
    const std::string strPrinted = style::xmlString(document);
    TiXmlDocument again;
    ASSERT_TRUE(load(again, strPrinted));
    EXPECT_EQ(compact(document), compact(again));
    EXPECT_EQ(strPrinted, style::xmlString(again));
}

TEST(StyleDocument, NumberOfAnAttributeIsItsLeadingDecimalNumber) {
    const OneElement element("<a n='49' blank=' 7 lux' neg='-3' none='dark' empty=''/>");
    EXPECT_EQ(49, style::intAttribute(*element, "n", 5));
    EXPECT_EQ(7, style::intAttribute(*element, "blank", 5));
    EXPECT_EQ(-3, style::intAttribute(*element, "neg", 5));
    EXPECT_EQ(0, style::intAttribute(*element, "none", 5));
    EXPECT_EQ(0, style::intAttribute(*element, "empty", 5));
}

TEST(StyleDocument, NumberOfAMissingAttributeIsTheDefault) {
    EXPECT_EQ(5, style::intAttribute(*OneElement("<a/>"), "n", 5));
}

TEST(StyleDocument, ElementHasTheIdThatItNames) {
    EXPECT_TRUE(style::hasId(*OneElement("<a id='49'/>"), 49));
    EXPECT_TRUE(style::hasId(*OneElement("<a id=' 49x'/>"), 49));
    EXPECT_FALSE(style::hasId(*OneElement("<a id='490'/>"), 49));
    EXPECT_TRUE(style::hasId(*OneElement("<a id='nonsense'/>"), 0));
}

TEST(StyleDocument, ElementWithoutIdHasNoneNotEvenZero) {
    EXPECT_FALSE(style::hasId(*OneElement("<a/>"), 0));
    EXPECT_FALSE(style::hasId(*OneElement("<a index='0'/>"), 0));
}
