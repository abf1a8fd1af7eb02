#include "sensor/style/XmlNesting.h"

#include "tests/unit/style/Documents.h"
#include "tinyxml.h"

#include <gtest/gtest.h>

#include <limits>
#include <ostream>
#include <random>
#include <string>
#include <vector>

namespace {

constexpr int kNoBound = std::numeric_limits<int>::max() - 1;

int nestingOf(const std::string& p_strText) {
    return style::xmlNesting(p_strText.c_str(), kNoBound);
}

// What the XML library makes of the text: the levels of elements in its tree, which are the levels of its descent.
int depthOf(const TiXmlNode& p_objNode) {
    int nBelow = 0;
    for (const TiXmlElement* pChild = p_objNode.FirstChildElement(); nullptr != pChild;
         pChild = pChild->NextSiblingElement()) {
        nBelow = std::max(nBelow, depthOf(*pChild));
    }
    return nBelow + (nullptr == p_objNode.ToElement() ? 0 : 1);
}

struct Parsed {
    int depth;
    bool wellFormed;
};

Parsed parsed(const std::string& p_strText) {
    std::string strPadded = p_strText;
    strPadded.append(16, '\0');
    TiXmlDocument document;
    document.Parse(strPadded.c_str(), nullptr, TIXML_ENCODING_UTF8);
    return {depthOf(document), !document.Error()};
}

struct Row {
    const char* text;
    int depth;
};

std::ostream& operator<<(std::ostream& p_stream, const Row& p_stRow) {
    return p_stream << p_stRow.text << " nests " << p_stRow.depth << " levels";
}

// Random texts are the same on every machine: the generator is fixed, and so is the way numbers are drawn from it.
class Random {
public:
    explicit Random(unsigned p_nSeed) : m_engine(p_nSeed) {}
    std::size_t below(std::size_t p_nEnd) { return static_cast<std::size_t>(m_engine() % p_nEnd); }
    bool oneIn(std::size_t p_nSum) { return 0 == below(p_nSum); }
    const std::string& of(const std::vector<std::string>& p_vecChoices) {
        return p_vecChoices[below(p_vecChoices.size())];
    }

private:
    std::mt19937 m_engine;
};

// Pieces of documents thrown together, most of it broken.
std::string randomPieces(Random& p_random) {
    static const std::vector<std::string> vecPieces = {
        "<a>",
        "</a>",
        "<a>",
        "</a>",
        "<a>",
        "<a/>",
        "<b x='",
        "'",
        "\"",
        "&#x",
        "&#x",
        ";",
        ";",
        "&#",
        "41",
        "<!--",
        "-->",
        "<![CDATA[",
        "]]>",
        "<?xml ",
        "version=",
        "encoding",
        "=",
        ">",
        "/>",
        "/",
        " ",
        "\n",
        "\xEF\xBB\xBF",
        "\xEF\xBF\xBE",
        "\xC3",
        "\xE2",
        "\xF0",
        "\xC3\xA9",
        "<!",
        "<?",
        "text",
        "x",
        "&amp;",
        "&lt;",
        "</b>",
        "<b>",
        "<",
        "_",
        "\x7F",
        "\x80",
        "<a x=\"",
        "<a x=1",
        "<a\n",
        "-",
        "--",
        "<A>",
        "</A>",
        "\xEF\xBF\xBF",
        "<?XML ",
        "Standalone = ",
        "a='>'",
        "<a.b:c-d>",
        "</a.b:c-d>",
        "&quot;",
        "\xF4\x8F\xBF",
        "\xC0",
        "\xFF",
        "\t",
    };
    std::string strText;
    const bool bDeep = p_random.oneIn(2);
    for (std::size_t nLeft = 1 + p_random.below(40); nLeft > 0; --nLeft) {
        strText += bDeep && p_random.oneIn(2) ? "<a>" : p_random.of(vecPieces);
    }
    return strText;
}

std::string randomAttributes(Random& p_random) {
    static const std::vector<std::string> vecValues = {
        "\"1\"", "'/>'", "\"</a>\"", "'<b c=\"2\">'", "\"&#60;a&#x3E;\"", "plain", "'\xE2\x82\xAC'", "''", "\" > \"",
    };
    std::string strText;
    for (std::size_t i = 0, nSum = p_random.below(4); i < nSum; ++i) {
        strText += (p_random.oneIn(2) ? " n" : "\n\t_n") + std::to_string(i) + (p_random.oneIn(3) ? " = " : "=") +
                   p_random.of(vecValues);
    }
    return strText;
}

// A well-formed element with everything that hides or shows tags in it.
std::string randomElement(Random& p_random, int p_nDeepest) {
    static const std::vector<std::string> vecNames = {"a", "Tab", "x-y", "_z", "\xC3\xA9", "n:m"};
    static const std::vector<std::string> vecBetween = {
        "",     " ",           "text &amp; more",   "<!-- <a> -->", "<![CDATA[<a></b>]]>",
        "\r\n", "&#65;&#x4a;", "<!DOCTYPE hidden>", "<?keep it?>",  "\xF0\x9F\x93\xB7",
    };
    const std::string& strName = p_random.of(vecNames);
    const std::string strTag = "<" + strName + randomAttributes(p_random);
    if (p_nDeepest <= 1 || p_random.oneIn(4)) {
        return strTag + " />";
    }
    std::string strText = strTag + ">";
    for (std::size_t nLeft = p_random.below(4); nLeft > 0; --nLeft) {
        strText += p_random.of(vecBetween) + randomElement(p_random, p_nDeepest - 1);
    }
    return strText + p_random.of(vecBetween) + "</" + strName + (p_random.oneIn(4) ? " >" : ">");
}

class XmlNestingOf : public testing::TestWithParam<Row> {};

}  // namespace

TEST_P(XmlNestingOf, IsToldAsTheLibraryParsesIt) {
    EXPECT_EQ(GetParam().depth, nestingOf(GetParam().text));
    EXPECT_EQ(GetParam().depth, parsed(GetParam().text).depth) << "the row itself is wrong";
}

INSTANTIATE_TEST_SUITE_P(PlainDocuments, XmlNestingOf,
                         testing::Values(Row{"", 0}, Row{"   \r\n", 0}, Row{"<a/>", 1}, Row{"<a></a>", 1},
                                         Row{"<a><b/></a>", 2}, Row{"<a><b></b><c><d/></c></a>", 3},
                                         Row{"<a/><b><c/></b>", 2}, Row{"<a x='1' y=\"2\" z=3 ><b/></a>", 2},
                                         Row{"\xEF\xBB\xBF<a><b/></a>", 2}, Row{"<?xml version='1.0'?><a/>", 1},
                                         Row{"<_a><\xC3\xA9/></_a>", 2}));

INSTANTIATE_TEST_SUITE_P(TagsThatDoNotCount, XmlNestingOf,
                         testing::Values(Row{"<a><!-- <b> --></a>", 1}, Row{"<a><![CDATA[<b>]]></a>", 1},
                                         Row{"<a x='<b>'/>", 1}, Row{"<a x='/>'><b/></a>", 2},
                                         Row{"<!DOCTYPE b><a/>", 1}, Row{"<a><!b><? c ?><d/></a>", 2},
                                         Row{"<?xml version='<b>'?><a/>", 1}, Row{"<a>&#60;b&#62;</a>", 1},
                                         Row{"<a>\xE2<b></a>", 1}, Row{"<a x='\xC3'><b/>' />", 1}, Row{"</a><b/>", 1},
                                         Row{"text <a/>", 0}, Row{"<a/>text<b><c/></b>", 1}));

INSTANTIATE_TEST_SUITE_P(BrokenDocuments, XmlNestingOf,
                         testing::Values(Row{"<a", 1}, Row{"<a x", 1}, Row{"<a><b><c", 3}, Row{"<a><b x=></b><c>", 2},
                                         Row{"<a><b x='", 2}, Row{"<a / ><b>", 1}, Row{"<a ='1'><b/>", 1},
                                         Row{"<a><b x=1'><c/></b>", 2}, Row{"<", 0}, Row{"<a><", 1}, Row{"<a></", 1},
                                         Row{"<!--", 0}, Row{"<a><![CDATA[", 1}, Row{"<?xml ", 0},
                                         Row{"<?xml version", 0}, Row{"<?xml encoding=x><a/>", 1},
                                         Row{"<a>&#x41</a>", 1}));

// The library looks for the end of a numbered character first, and then backwards for its beginning.
INSTANTIATE_TEST_SUITE_P(ReferencesThatSwallowTags, XmlNestingOf,
                         testing::Values(Row{"<a>&#x</a>x41;<b/></a>", 2}, Row{"<a>&#</a>#65;<b/></a>", 2},
                                         Row{"<a>&#x<b><c>x41;</a>", 1}, Row{"<a x='&#x'/>x41;'><b/></a>", 2},
                                         Row{"<a x='&#'/>#65;'><b/></a>", 2}, Row{"<a>&#xZZ;<b/></a>", 1},
                                         Row{"<a>&#6x5;<b/></a>", 1}, Row{"<a>&#;<b/></a>", 2},
                                         Row{"<a>&#x;<b/></a>", 2}, Row{"<a>&# <b/></a>", 1}, Row{"<a>&#", 1},
                                         Row{"<a>&# ", 1}));

TEST(XmlNesting, OfANestOfAnyDepthIsTold) {
    for (const int nDepth : {2, 255, 256, 257, 100000}) {
        EXPECT_EQ(nDepth, nestingOf(documents::nest(nDepth))) << nDepth;
    }
}

TEST(XmlNesting, ThatIsEnoughEndsTheWalk) {
    EXPECT_EQ(257, style::xmlNesting(documents::nest(100000).c_str(), 256));
    EXPECT_EQ(256, style::xmlNesting(documents::nest(256).c_str(), 256));
}

TEST(XmlNesting, IsNeverUnderestimatedOnBrokenDocuments) {
    Random random(1);
    for (int i = 0; i < 20000; ++i) {
        const std::string strText = randomPieces(random);
        const Parsed stParsed = parsed(strText);
        ASSERT_GE(nestingOf(strText), stParsed.depth) << strText;
        if (stParsed.wellFormed) {
            ASSERT_EQ(nestingOf(strText), stParsed.depth) << strText;
        }
    }
}

TEST(XmlNesting, OfRandomWellFormedDocumentsIsExact) {
    Random random(2);
    int nDeepest = 0;
    for (int i = 0; i < 3000; ++i) {
        const std::string strText = (random.oneIn(2) ? "<?xml version=\"1.0\" encoding='UTF-8'?>\n" : "") +
                                    randomElement(random, 8) + "<!-- </end> -->\n";
        const Parsed stParsed = parsed(strText);
        ASSERT_TRUE(stParsed.wellFormed) << strText;
        ASSERT_EQ(nestingOf(strText), stParsed.depth) << strText;
        nDeepest = std::max(nDeepest, stParsed.depth);
    }
    EXPECT_EQ(8, nDeepest) << "the documents do not try what they are meant to try";
}

// Each document cut at every byte, and with every byte replaced by one that means something.
TEST(XmlNesting, IsNeverUnderestimatedOnDamagedDocuments) {
    Random random(3);
    for (int i = 0; i < 40; ++i) {
        const std::string strText = randomElement(random, 6);
        for (std::size_t nPlace = 0; nPlace < strText.size(); ++nPlace) {
            const std::string strCut = strText.substr(0, nPlace);
            ASSERT_GE(nestingOf(strCut), parsed(strCut).depth) << strCut;
            std::string strDamaged = strText;
            strDamaged[nPlace] = "<>/'\"&;#x!-\xE2"[random.below(12)];
            ASSERT_GE(nestingOf(strDamaged), parsed(strDamaged).depth) << strDamaged;
        }
    }
}
