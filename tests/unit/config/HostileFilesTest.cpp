// Style documents as a damaged or foreign flash may hold them: reported, and never more than the process survives.
#include "tests/support/Messages.h"
#include "tests/unit/config/ConfiguredDevice.h"

#include <gtest/gtest.h>

#include <cstring>
#include <filesystem>
#include <string>

namespace {

const messages::Place kStart{"sensor.cpp", "initSysConf"};
const messages::Place kLengthPlace{"SensorFile.cpp", "getFileLen"};
const messages::Place kMergePlace{"SensorFile.cpp", "mergeStyle"};
constexpr char kBaseFailed[] =
    "loadFromFile(strStyleFileName.c_str(), p_stSysConf->szUIStyle, getFileLen(strStyleFileName.c_str())) > 0";
constexpr char kDiversityFailed[] =
    "loadFromFile(strStyleDivFileName.c_str(), ui_styleDiversity, getFileLen(strStyleDivFileName.c_str())) > 0";
constexpr char kBaseNotParsed[] = "doc_style.LoadMem(*ui_style, TIXML_ENCODING_UTF8)";
constexpr char kDiversityNotParsed[] = "doc_style_div.LoadMem(ui_styleDiversity, TIXML_ENCODING_UTF8)";

// Asking for the length of a file that is not there.
std::string noLength(const std::string& p_strName) {
    return messages::assertion(kLengthPlace, "file.open(file_name)") + messages::detail("file_name(" + p_strName + ")");
}

class HostileFiles : public ConfiguredDevice {
protected:
    // The text is a text: it ends inside its block (a memory checker looks).
    void expectReadable() const {
        ASSERT_NE(nullptr, m_stSysConf.szUIStyle);
        EXPECT_LT(std::strlen(m_stSysConf.szUIStyle), 1u << 30);
    }
};
using HostileFilesDeathTest = HostileFiles;

TEST_F(HostileFiles, WithoutABaseStyleAreReportedAndTheMergeHasNothingToParse) {
    m_objRoot.remove(base(".xml"));
    const std::string strShown = messages::anyLine(init());
    const std::string strName = base(".xml");
    EXPECT_EQ(0u, strShown.find(noLength(strName) + noLength(strName) + messages::assertion(kStart, kBaseFailed) +
                                messages::assertion(kMergePlace, kBaseNotParsed)))
        << strShown;
    EXPECT_FALSE(styleHas("<style"));
    EXPECT_EQ(2u, m_stSysConf.nSchemeSum);
}

TEST_F(HostileFiles, WithoutADiversityDocumentAreReportedAndTheBaseStyleStays) {
    m_objRoot.remove(diversity(".xml"));
    const std::string strShown = messages::anyLine(init());
    const std::string strName = diversity(".xml");
    EXPECT_EQ(0u, strShown.find(noLength(strName) + noLength(strName) + messages::assertion(kStart, kDiversityFailed) +
                                messages::assertion(kMergePlace, kDiversityNotParsed)))
        << strShown;
    EXPECT_TRUE(styleHas("from=\"Style.xml\"")) << style();
    EXPECT_FALSE(styleHas("StyleDiversity")) << style();
}

TEST_F(HostileFiles, ThatAreAllMissingAreSurvived) {
    m_objRoot.remove("/hd1");
    m_objRoot.remove("/mnt/mtd/code");
    m_objRoot.remove("/tmp");
    const std::string strShown = messages::anyLine(init());
    EXPECT_NE(std::string::npos, strShown.find(messages::assertion(kStart, kBaseFailed)));
    EXPECT_NE(std::string::npos, strShown.find(messages::assertion(kStart, kDiversityFailed)));
    EXPECT_STREQ("xxx", m_stSysConf.moduleConfig.szLabel);
    EXPECT_EQ(2u, m_stSysConf.nSchemeSum);
    expectReadable();
}

TEST_F(HostileFiles, ThatAreEmptyAreReportedAsNotLoaded) {
    m_objRoot.write(base(".xml"), "");
    m_objRoot.write(diversity(".xml"), "");
    const std::string strShown = messages::anyLine(init());
    EXPECT_EQ(0u,
              strShown.find(messages::assertion(kStart, kBaseFailed) + messages::assertion(kStart, kDiversityFailed)));
    expectReadable();
}

TEST_F(HostileFiles, ThatAreFoldersAreReportedAsNotLoaded) {
    m_objRoot.remove(base(".xml"));
    m_objRoot.makeFolder(base(".xml"));
    EXPECT_NE(std::string::npos, messages::anyLine(init()).find(messages::assertion(kStart, kBaseFailed)));
    expectReadable();
}

TEST_F(HostileFiles, EndAtTheirFirstZeroByte) {
    const std::string strZero(1, '\0');
    m_objRoot.write(base(".xml"), m_objRoot.read(base(".xml")) + strZero + "<style from=\"behind\"/>" + strZero);
    m_objRoot.write(diversity(".xml"), m_objRoot.read(diversity(".xml")) + strZero + "<<<<");
    EXPECT_EQ("", init());
    EXPECT_TRUE(styleHas("from=\"Style.xml\"")) << style();
    EXPECT_TRUE(styleHas("StyleDiversity.xml")) << style();
    EXPECT_FALSE(styleHas("behind")) << style();
}

TEST_F(HostileFiles, ThatBeginWithAZeroByteAreNotParsed) {
    m_objRoot.write(base(".xml"), std::string(1, '\0') + m_objRoot.read(base(".xml")));
    EXPECT_EQ(0u, messages::anyLine(init()).find(messages::assertion(kMergePlace, kBaseNotParsed)));
    expectReadable();
}

TEST_F(HostileFiles, CutAnywhereAreSurvived) {
    const std::string strBase =
        "<?xml version=\"1.0\" encoding=\"UTF-8\"?>" + m_objRoot.read(base(".xml")) + "\xC3\xA9";
    const std::string strDiversity = m_objRoot.read(diversity(".xml"));
    for (std::size_t n = 0; n < strBase.size(); n += 3) {
        m_objRoot.write(base(".xml"), strBase.substr(0, n));
        init();
        expectReadable();
    }
    m_objRoot.write(base(".xml"), strBase);
    for (std::size_t n = 0; n < strDiversity.size(); n += 3) {
        m_objRoot.write(diversity(".xml"), strDiversity.substr(0, n));
        init();
        EXPECT_TRUE(styleHas("from=\"Style.xml\"")) << n << ": " << style();
    }
}

TEST_F(HostileFiles, NestedWithoutEndAreRefused) {
    std::string strNested;
    for (int i = 0; i < 100000; ++i) {
        strNested += "<a>";
    }
    m_objRoot.write(diversity(".xml"), strNested);
    EXPECT_EQ(0u, messages::anyLine(init()).find(messages::assertion(kMergePlace, kDiversityNotParsed)));
    EXPECT_TRUE(styleHas("from=\"Style.xml\"")) << style();
}

TEST_F(HostileFiles, OfAMegabyteAreMergedWhole) {
    std::string strBase = "<style from=\"large\">";
    for (int i = 0; strBase.size() < 1000000; ++i) {
        strBase += "<tab key=\"key" + std::to_string(i) + "\"/>";
    }
    m_objRoot.write(base(".xml"), strBase + "<tab key=\"picture\"/></style>");
    EXPECT_EQ("", init());
    EXPECT_TRUE(styleHas("key=\"key30000\""));
    EXPECT_TRUE(styleHas("StyleDiversity.xml"));
}

// Longer than any buffer of a small device. No byte of it is on the medium.
TEST_F(HostileFiles, LongerThanAReadCountsAreReportedAsNotLoaded) {
    const std::string strPath = m_objRoot.path() + diversity(".xml");
    for (const std::uintmax_t nLength : {std::uintmax_t{1} << 31, (std::uintmax_t{1} << 32) + 4}) {
        std::filesystem::resize_file(strPath, nLength);
        EXPECT_NE(std::string::npos, messages::anyLine(init()).find(messages::assertion(kStart, kDiversityFailed)));
        EXPECT_TRUE(styleHas("from=\"Style.xml\"")) << style();
    }
}

TEST_F(HostileFilesDeathTest, AbortAtAMissingBaseStyle) {
    m_objRoot.remove(base(".xml"));
    m_objRoot.debugLevel(1, true);
    EXPECT_DEATH(initSysConf(1, m_objModule, &m_stSysConf),
                 "SensorFile\\.cpp:[0-9]+: INT64 getFileLen.*Assertion `bRet'");
}

TEST_F(HostileFilesDeathTest, AbortAtAnEmptyDiversityDocument) {
    m_objRoot.write(diversity(".xml"), "");
    m_objRoot.debugLevel(1, true);
    EXPECT_DEATH(initSysConf(1, m_objModule, &m_stSysConf),
                 "sensor\\.cpp:[0-9]+: int initSysConf.*Assertion `bRet' failed");
}

}  // namespace
