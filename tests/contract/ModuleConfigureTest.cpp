#include "platform/ModuleConfigure.h"

#include "tests/contract/OnDevice.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

constexpr const char* kModuleFile = "/hd1/moduleConfig/moduleConfig.xml";

class ModuleConfigureTest : public OnDevice {
protected:
    bool parse(const std::string& p_strContent, const std::string& p_strModel = "M",
               const std::string& p_strCode = "C") {
        m_objRoot.write(kModuleFile, p_strContent);
        return ModuleConfigureParser::parse(kModuleFile, p_strModel, p_strCode, m_vecModules);
    }

    // The ids that were found, for instance "1 2 ".
    std::string ids() const {
        std::string strIds;
        for (const ModuleConfigure& objModule : m_vecModules) {
            strIds += std::to_string(objModule.getModuleId()) + " ";
        }
        return strIds;
    }

    static std::string device(const std::string& p_strInside) {
        return "<modules><device model=\"M\">" + p_strInside + "</device></modules>";
    }

    std::vector<ModuleConfigure> m_vecModules;
};

TEST_F(ModuleConfigureTest, AnEmptyOneHasIdZeroAndEmptyTexts) {
    const ModuleConfigure objModule;
    EXPECT_EQ(objModule.getModuleId(), 0U);
    EXPECT_EQ(objModule.getDetail(), "");
    EXPECT_EQ(objModule.getParameters(), "");
}

TEST_F(ModuleConfigureTest, KeepsWhatIsSet) {
    ModuleConfigure objModule;
    objModule.setModuleId(7);
    objModule.setDetail("(max_scheme=4)");
    objModule.setParameters("p");
    const ModuleConfigure objCopy = objModule;
    EXPECT_EQ(objCopy.getModuleId(), 7U);
    EXPECT_EQ(objCopy.getDetail(), "(max_scheme=4)");
    EXPECT_EQ(objCopy.getParameters(), "p");
}

TEST_F(ModuleConfigureTest, ReadsTheModulesOfTheDevice) {
    EXPECT_TRUE(
        parse("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<!-- two channels -->\n<modules>\n"
              "  <device model=\"M\" code=\"C\">\n"
              "    <module id=\"35\" detail=\"(max_scheme=4)(isInfrared=1)\" parameters=\"a &amp; b\"/>\n"
              "    <module id='36'></module>\n  </device>\n</modules>\n"));
    ASSERT_EQ(m_vecModules.size(), 2U);
    EXPECT_EQ(m_vecModules[0].getModuleId(), 35U);
    EXPECT_EQ(m_vecModules[0].getDetail(), "(max_scheme=4)(isInfrared=1)");
    EXPECT_EQ(m_vecModules[0].getParameters(), "a & b");
    EXPECT_EQ(m_vecModules[1].getModuleId(), 36U);
    EXPECT_EQ(m_vecModules[1].getDetail(), "");
    EXPECT_EQ(m_vecModules[1].getParameters(), "");
}

TEST_F(ModuleConfigureTest, MatchesModelAndCodeOrAModelWithoutCode) {
    const std::string strDocument =
        "<modules><device model='M' code='C'><module id='1'/></device>"
        "<device model='M' code='D'><module id='2'/></device>"
        "<device model='M'><module id='3'/><module id='4'/></device>"
        "<device model='N' code='C'><module id='5'/></device>"
        "<device code='C'><module id='6'/></device>"
        "<device model='M' code='C'><module id='7'/></device></modules>";
    const struct {
        const char* model;
        const char* code;
        const char* ids;
    } rows[] = {{"M", "C", "1 3 4 7 "}, {"M", "D", "2 3 4 "}, {"M", "", "3 4 "}, {"M", "X", "3 4 "},
                {"N", "C", "5 "},       {"N", "D", ""},       {"m", "C", ""},    {"", "C", ""}};
    for (const auto& row : rows) {
        EXPECT_TRUE(parse(strDocument, row.model, row.code));
        EXPECT_EQ(ids(), row.ids) << row.model << " " << row.code;
    }
}

TEST_F(ModuleConfigureTest, ReplacesTheListAlsoWhenNothingMatches) {
    m_vecModules.resize(5);
    EXPECT_TRUE(parse("<modules/>"));
    EXPECT_TRUE(m_vecModules.empty());
}

TEST_F(ModuleConfigureTest, OtherElementsAreSkipped) {
    EXPECT_TRUE(
        parse("<modules><note>text</note><device model='M'><lens/><module id='1'/>"
              "<group><module id='2'/></group></device><group><device model='M'><module id='3'/></device>"
              "</group></modules>"));
    EXPECT_EQ(ids(), "1 ");
    EXPECT_TRUE(parse("<other><device model='M'><module id='1'/></device></other>"));
    EXPECT_EQ(ids(), "");
}

TEST_F(ModuleConfigureTest, CommentsAndCharacterDataMayHoldMarkup) {
    EXPECT_TRUE(
        parse("<modules><!-- <device model='M'><module id='1'/> --><device model='M'>"
              "<![CDATA[</device><module id='2'/>]]><module id='3'/></device></modules>"));
    EXPECT_EQ(ids(), "3 ");
}

TEST_F(ModuleConfigureTest, TheTextEndsAtItsFirstZeroByte) {
    EXPECT_TRUE(parse(device("<module id='1'/>") + std::string("\0<broken", 8)));
    EXPECT_EQ(ids(), "1 ");
    EXPECT_FALSE(parse(std::string("<modules>\0</modules>", 20)));
}

TEST_F(ModuleConfigureTest, AByteOrderMarkAtTheStartIsSkipped) {
    EXPECT_TRUE(parse("\xEF\xBB\xBF" + device("<module id='1'/>")));
    EXPECT_EQ(ids(), "1 ");
}

TEST_F(ModuleConfigureTest, TextsAreUtf8) {
    EXPECT_TRUE(
        parse("<modules><device model='\xC3\xA4\xE2\x82\xAC\xF0\x9F\x93\xB7'><module id='1' "
              "detail='&#228;&#x20AC;'/></device></modules>",
              "\xC3\xA4\xE2\x82\xAC\xF0\x9F\x93\xB7"));
    ASSERT_EQ(ids(), "1 ");
    EXPECT_EQ(m_vecModules[0].getDetail(), "\xC3\xA4\xE2\x82\xAC");
}

TEST_F(ModuleConfigureTest, TheLongestTextsAreRead) {
    EXPECT_TRUE(parse(device("<module id='4294967295' detail='" + std::string(511, 'd') + "' parameters='" +
                             std::string(255, 'p') + "'/>")));
    ASSERT_EQ(ids(), "4294967295 ");
    EXPECT_EQ(m_vecModules[0].getDetail().size(), 511U);
    EXPECT_EQ(m_vecModules[0].getParameters().size(), 255U);
}

TEST_F(ModuleConfigureTest, ABadModuleOfAnotherDeviceDoesNotMatter) {
    EXPECT_TRUE(
        parse("<modules><device model='X'><module id='?'/></device><device model='M'><module id='1'/>"
              "</device></modules>"));
    EXPECT_EQ(ids(), "1 ");
}

TEST_F(ModuleConfigureTest, BadModulesAreRefusedAndChangeNothing) {
    m_vecModules.resize(5);
    const std::string rows[] = {
        "<module/>",
        "<module id=''/>",
        "<module id='x'/>",
        "<module id='-1'/>",
        "<module id='1x'/>",
        "<module id=' 1'/>",
        "<module id='4294967296'/>",
        "<module id='1'/><module id='1' detail='" + std::string(512, 'd') + "'/>",
        "<module id='1' parameters='" + std::string(256, 'p') + "'/>",
    };
    for (const std::string& strInside : rows) {
        EXPECT_FALSE(parse(device(strInside))) << strInside;
        EXPECT_EQ(m_vecModules.size(), 5U);
    }
}

TEST_F(ModuleConfigureTest, DocumentsThatAreNotWellFormedAreRefusedAndChangeNothing) {
    m_vecModules.resize(5);
    const std::string rows[] = {
        "",
        " \n",
        "text",
        "<!-- nothing but a comment -->",
        "<modules>",
        "<modules",
        "<modules><",
        "<",
        "</modules>",
        "<modules></module>",
        "<modules></modules",
        "<modules/><modules/>",
        "<modules/>text",
        "text<modules/>",
        "<modules><device></modules></device>",
        "<modules a/>",
        "<modules a=/>",
        "<modules a=b/>",
        "<modules a='b/>",
        "<modules a='b\"/>",
        "<modules a='b'c='d'/>",
        "<modules a='1' a='2'/>",
        "<modules a='<'/>",
        "<modules>&</modules>",
        "<modules>&nothing;</modules>",
        "<modules>&#x;</modules>",
        "<modules>&#0;</modules>",
        "<modules>&#1114112;</modules>",
        "<modules>&amp</modules>",
        "<modules><!-- open</modules>",
        "<modules><![CDATA[ open</modules>",
        "<![CDATA[x]]><modules/>",
        "< modules/>",
        "<1/>",
        "<modules><?xml version='1.0></modules>",
        "<?xml version='1.0'",
        "<?xml",
    };
    for (const std::string& strContent : rows) {
        EXPECT_FALSE(parse(strContent)) << strContent;
    }
    EXPECT_EQ(m_vecModules.size(), 5U);
}

TEST_F(ModuleConfigureTest, TextsThatAreNotUtf8AreRefused) {
    const std::string rows[] = {
        "\x80",          // a following byte without its lead
        "\xC3",          // cut
        "\xE2\x82",      // cut
        "\xF0\x9F\x93",  // cut
        "\xC0\xAF",      // longer than need be
        "\xE0\x80\xAF",  // longer than need be
        "\xED\xA0\x80",  // half of a pair
        "\xF4\x90\x80\x80",
        "\xF8\x88\x80\x80\x80",
        "\xFF",
        "\xEF\xBF\xBE",
        "\x01",
        "\x0B",
    };
    for (const std::string& strBad : rows) {
        EXPECT_FALSE(parse("<modules a='" + strBad + "'/>")) << ::testing::PrintToString(strBad);
        EXPECT_FALSE(parse("<modules>" + strBad)) << ::testing::PrintToString(strBad);
        EXPECT_FALSE(parse("<modules/>" + strBad)) << ::testing::PrintToString(strBad);
    }
}

TEST_F(ModuleConfigureTest, EveryCutOfADocumentIsRefused) {
    const std::string strWhole =
        "<?xml version='1.0'?><!DOCTYPE modules><modules><!-- c --><device model='\xC3\xA4'>"
        "<module id='1' detail=\"(a=1)\"/><![CDATA[x]]>&lt;</device></modules>";
    EXPECT_TRUE(parse(strWhole));
    for (std::size_t nLength = 0; nLength < strWhole.size(); ++nLength) {
        EXPECT_FALSE(parse(strWhole.substr(0, nLength))) << nLength;
    }
}

TEST_F(ModuleConfigureTest, DeepNestingIsRefused) {
    const auto nested = [](std::size_t p_nLevels) {
        std::string strText;
        for (std::size_t i = 0; i < p_nLevels; ++i) {
            strText += "<a>";
        }
        for (std::size_t i = 0; i < p_nLevels; ++i) {
            strText += "</a>";
        }
        return strText;
    };
    EXPECT_TRUE(parse(nested(64)));
    EXPECT_FALSE(parse(nested(65)));
    EXPECT_FALSE(parse(nested(100000)));
    std::string strOpen;
    while (strOpen.size() < 900000) {
        strOpen += "<a>";
    }
    EXPECT_FALSE(parse(strOpen));
    EXPECT_FALSE(parse("<?xml version='?>" + strOpen));
    EXPECT_FALSE(parse("<a b='>" + strOpen));
}

TEST_F(ModuleConfigureTest, ADocumentLargerThanOneMebibyteIsRefused) {
    const std::string strFrame = "<modules></modules>";
    const std::string strBlanks(1024 * 1024 - strFrame.size(), ' ');
    EXPECT_TRUE(parse("<modules>" + strBlanks + "</modules>"));
    EXPECT_FALSE(parse("<modules>" + strBlanks + " </modules>"));
}

TEST_F(ModuleConfigureTest, AFileThatCannotBeReadIsRefused) {
    EXPECT_FALSE(ModuleConfigureParser::parse(kModuleFile, "M", "C", m_vecModules));
    EXPECT_FALSE(ModuleConfigureParser::parse("/hd1", "M", "C", m_vecModules));
    EXPECT_FALSE(ModuleConfigureParser::parse("", "M", "C", m_vecModules));
    EXPECT_FALSE(ModuleConfigureParser::parse(nullptr, "M", "C", m_vecModules));
}

}  // namespace
