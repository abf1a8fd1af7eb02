#include "platform/linux/XmlCheck.h"

#include "platform/linux/Utf8.h"

#include <gtest/gtest.h>
#include <tinyxml.h>

#include <algorithm>
#include <random>
#include <string>
#include <vector>

namespace {

constexpr std::size_t kLevels = 3;

TEST(XmlCheckTest, AcceptsPlainXml) {
    const char* const rows[] = {
        "<a/>",
        " <a/>\n",
        "<a></a>",
        "<a >\n</a >",
        "<a b='1' c = \"2\"\t/>",
        "<a b='>'/>",
        "<a b='\"' c=\"'\"/>",
        "<a_-.:1 b:c='1'/>",
        "<a>x > y &lt; &#65; &#x41;</a>",
        "<a><b/><c><d/></c></a>",
        "<?xml version=\"1.0\"?><a/>",
        "<?xml version='1.0' encoding='UTF-8' standalone='yes' ?><a/>",
        "<?style x='y'?><a/><?end ?>",
        "<!DOCTYPE a><a/>",
        "<!-- <b> --><a><!-- </a> --></a><!---->",
        "<a><![CDATA[<b> & ]]></a>",
        "\xEF\xBB\xBF<a/>",
        "<\xC3\xA4/>",
    };
    for (const char* const szText : rows) {
        EXPECT_TRUE(platform::isPlainXml(szText, kLevels)) << szText;
    }
}

TEST(XmlCheckTest, RefusesWhatTinyXmlWouldReadInAnotherWay) {
    const char* const rows[] = {
        "<?xml version='?><a x='><b/></a>",
        "<?xml other='1.0'?><a/>",
        "<?xml version='1>0'?><a x='<'/>",
        "<?xml-stylesheet href='x'?><a/>",
        "<?XML version='1.0'?><a/>",
        "<?style x='>'?><a/>",
        "<!DOCTYPE a [<!ENTITY x 'y'>]><a/>",
        "<!ELEMENT a><a/>",
        "<a b='1'c='2'/>",
        "<a b=1/>",
        "<a b/>",
        "<a =''/>",
        "<a / >",
        "<a/ >",
        "< a/>",
        "<a></ a>",
        "<a></b>",
        "<a>\xEF\xBB\xBF</a>",
        "\xEF\xBB\xBF\xEF\xBB\xBF<a/>",
        "<a b='\xE2'/>'>",
        "<a>\x7F</a\x7F>",
        "<a>&#00000000065;</a>",  // more digits than any character needs
        "",
        " \n",
        "<!-- no element -->",
    };
    for (const char* const szText : rows) {
        EXPECT_FALSE(platform::isPlainXml(szText, kLevels)) << szText;
    }
}

TEST(XmlCheckTest, CountsLevelsFromTheRoot) {
    EXPECT_TRUE(platform::isPlainXml("<a/>", 1));
    EXPECT_TRUE(platform::isPlainXml("<a></a>", 1));
    EXPECT_FALSE(platform::isPlainXml("<a/>", 0));
    EXPECT_FALSE(platform::isPlainXml("<a><b/></a>", 1));
    EXPECT_TRUE(platform::isPlainXml("<a><b/><b><c/></b><b/></a>", 3));
    EXPECT_FALSE(platform::isPlainXml("<a><b/><b><c><d/></c></b></a>", 3));
}

std::size_t depthOf(const TiXmlNode& p_objNode) {
    std::size_t nDeepest = 0;
    for (const TiXmlElement* pChild = p_objNode.FirstChildElement(); nullptr != pChild;
         pChild = pChild->NextSiblingElement()) {
        nDeepest = std::max(nDeepest, 1 + depthOf(*pChild));
    }
    return nDeepest;
}

TEST(XmlCheckTest, TinyXmlReadsWhatPassesAndNoDeeper) {
    const std::vector<std::string> vecTokens = {"<a>",
                                                "</a>",
                                                "<b ",
                                                "x='1'",
                                                "x=\"",
                                                " y='",
                                                "'",
                                                "\"",
                                                ">",
                                                "/>",
                                                "<!--",
                                                "-->",
                                                "<![CDATA[",
                                                "]]>",
                                                "<?xml ",
                                                "?>",
                                                "version='1.0'",
                                                "&amp;",
                                                "&",
                                                "\xC3\xA4",
                                                "\xC3",
                                                "\xEF",
                                                "text",
                                                " ",
                                                "<!DOCTYPE ",
                                                "<?p ",
                                                "<",
                                                "</",
                                                "-",
                                                "\n",
                                                "<b/>",
                                                "<a><b><a>",
                                                "</a></b></a>"};
    const std::vector<std::string> vecWhole = {"<?xml ",    "version='1.0'", "?>",    "<!-- ", "-->", "<a>",  "text",
                                               "&amp;",     "<b ",           "x='1'", "/>",    "<a>", "<b/>", "</a>",
                                               "<![CDATA[", "<b>",           "]]>",   "</a>",  "\n"};
    std::mt19937 random(20240501);
    const auto below = [&random](std::size_t p_nLimit) { return random() % p_nLimit; };
    int nAccepted = 0;
    for (int nRound = 0; nRound < 20000; ++nRound) {
        std::vector<std::string> vecText = vecWhole;
        for (std::size_t nChange = below(4); nChange > 0; --nChange) {
            const auto at = static_cast<std::ptrdiff_t>(below(vecText.size()));
            switch (below(3)) {
                case 0:
                    vecText.insert(vecText.begin() + at, vecTokens[below(vecTokens.size())]);
                    break;
                case 1:
                    vecText.erase(vecText.begin() + at);
                    break;
                default:
                    vecText[static_cast<std::size_t>(at)] = vecTokens[below(vecTokens.size())];
            }
        }
        std::string strText;
        for (const std::string& strToken : vecText) {
            strText += strToken;
        }
        if (!platform::isPlainXml(strText, kLevels)) {
            continue;
        }
        ++nAccepted;
        TiXmlDocument document;
        document.Parse((strText + std::string(16, '\0')).c_str(), nullptr, TIXML_ENCODING_UTF8);
        ASSERT_FALSE(document.Error()) << strText << "\n" << document.ErrorDesc();
        ASSERT_LE(depthOf(document), kLevels) << strText;
    }
    EXPECT_GT(nAccepted, 2000);
}

TEST(Utf8Test, KnowsTheEdgesOfEachLength) {
    for (const char* const szGood : {"", "\t\r\n ~\x7F", "\xC2\x80", "\xDF\xBF", "\xE0\xA0\x80", "\xED\x9F\xBF",
                                     "\xEE\x80\x80", "\xEF\xBF\xBD", "\xF0\x90\x80\x80", "\xF4\x8F\xBF\xBF"}) {
        EXPECT_TRUE(platform::isPrintableUtf8(szGood)) << ::testing::PrintToString(szGood);
    }
    for (const char* const szBad : {"\x1F", "\x80", "\xBF", "\xC1\xBF", "\xC2", "\xC2\x7F", "\xC2\xC0", "\xE0\x9F\xBF",
                                    "\xED\xA0\x80", "\xED\xBF\xBF", "\xEF\xBF\xBE", "\xEF\xBF\xBF", "\xEF\xBB\xBF",
                                    "\xF0\x8F\xBF\xBF", "\xF4\x90\x80\x80", "\xF5\x80\x80\x80"}) {
        EXPECT_FALSE(platform::isPrintableUtf8(szBad)) << ::testing::PrintToString(szBad);
    }
    EXPECT_FALSE(platform::isPrintableUtf8(std::string(1, '\0')));
}

}  // namespace
