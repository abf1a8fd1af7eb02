// What the module configuration becomes.
#include "tests/support/Messages.h"
#include "tests/unit/config/ConfiguredDevice.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <iterator>
#include <string>
#include <thread>
#include <vector>

namespace {

using SystemConfiguration = ConfiguredDevice;

TEST_F(SystemConfiguration, CopiesTheModuleConfiguration) {
    EXPECT_EQ("", init());
    EXPECT_EQ(21u, m_stSysConf.moduleConfig.nModuleId);
    EXPECT_STREQ("xxx", m_stSysConf.moduleConfig.szLabel);
    EXPECT_STREQ("xxx", m_stSysConf.moduleConfig.szShortLabel);
    EXPECT_STREQ("lens=3", m_stSysConf.moduleConfig.szParameters);
    EXPECT_STREQ("(max_scheme=2)(kind=1)", m_stSysConf.moduleConfig.szDetail);
    EXPECT_EQ(2u, m_stSysConf.nSchemeSum);
    EXPECT_EQ(1u, m_stSysConf.nDeviceType);
    EXPECT_EQ(0u, m_stSysConf.nLanguageSum);
    EXPECT_EQ(nullptr, m_stSysConf.pLanguageFiles);
    EXPECT_EQ("", m_objRoot.errorLog());
}

template <std::size_t N>
void expectZeroBehindText(const char (&p_szField)[N], const char* p_szName) {
    const char* const pEnd = std::find(std::begin(p_szField), std::end(p_szField), '\0');
    EXPECT_TRUE(std::all_of(pEnd, std::end(p_szField), [](char c) { return '\0' == c; })) << p_szName;
}

TEST_F(SystemConfiguration, StartsFromAZeroedRecord) {
    ModuleConfig& stModule = m_stSysConf.moduleConfig;
    std::memset(&stModule, 0x5A, sizeof(stModule));
    m_stSysConf.nSchemeSum = 77;
    m_stSysConf.nLanguageSum = 77;
    LanguageFileEntry stEntry{};
    m_stSysConf.pLanguageFiles = &stEntry;
    m_stSysConf.nDeviceType = 77;
    outputOf([&] { EXPECT_EQ(0, initSysConf(1, m_objModule, &m_stSysConf)); });
    expectZeroBehindText(stModule.szLabel, "label");
    expectZeroBehindText(stModule.szShortLabel, "short label");
    expectZeroBehindText(stModule.szParameters, "parameters");
    expectZeroBehindText(stModule.szDetail, "detail");
    EXPECT_STREQ("xxx", stModule.szLabel);
    EXPECT_EQ(0u, m_stSysConf.nLanguageSum);
    EXPECT_EQ(nullptr, m_stSysConf.pLanguageFiles);
    EXPECT_EQ(2u, m_stSysConf.nSchemeSum);
    EXPECT_EQ(1u, m_stSysConf.nDeviceType);
}

TEST_F(SystemConfiguration, OfAnEmptyModuleIsFourSchemesAndTheBaseStyle) {
    m_objModule = ModuleConfigure();
    EXPECT_EQ("", init());
    EXPECT_EQ(0u, m_stSysConf.moduleConfig.nModuleId);
    EXPECT_STREQ("", m_stSysConf.moduleConfig.szParameters);
    EXPECT_STREQ("", m_stSysConf.moduleConfig.szDetail);
    EXPECT_EQ(4u, m_stSysConf.nSchemeSum);
    EXPECT_TRUE(styleHas("\"Style.xml\"")) << style();
    EXPECT_FALSE(styleHas("StyleDiversity")) << style();
}

struct SchemeRow {
    const char* szDetail;
    u32 nSum;
    const char* szReported;  // the number in the report; null when there is none
};

TEST_F(SystemConfiguration, TakesTheNumberOfSchemesFromTheDetailString) {
    const std::vector<SchemeRow> rows = {
        {"", 4, nullptr},
        {"(isInfrared=1)", 4, nullptr},
        {"(max_scheme=2)", 2, nullptr},
        {"(isInfrared=1)(max_scheme=3)", 3, nullptr},
        {"(max_scheme=x)", 0, nullptr},
        {"(max_scheme=)", 0, nullptr},
        {"(max_scheme=0)", 0, nullptr},
        {"(max_scheme=1)", 1, nullptr},
        {"(max_scheme=32)", 32, nullptr},
        {"(max_scheme=4", 4, nullptr},
        {"(max_scheme)", 4, nullptr},
        {"(max_scheme=2)(max_scheme=3)", 2, nullptr},
        {"(max_scheme=33)", 4, "33"},
        {"(max_scheme=-1)", 4, "-1"},
        {"(max_scheme=-32)", 4, "-32"},
        {"(max_scheme=999999999)", 4, "999999999"},
        {"(max_scheme=99999999999)", 4, "999999999"},
        {"(max_scheme=2147483648)", 4, "214748364"},
        {"(max_scheme=4294967298)", 4, "429496729"},
    };
    m_objRoot.debugLevel(6);
    for (const SchemeRow& row : rows) {
        m_objModule.setDetail(row.szDetail);
        const std::string strShown = messages::anyLine(init());
        EXPECT_EQ(row.nSum, m_stSysConf.nSchemeSum) << row.szDetail;
        EXPECT_STREQ(row.szDetail, m_stSysConf.moduleConfig.szDetail);
        const std::string strReport =
            messages::error({"sensor.cpp", "schemeSum"}, std::string("max_scheme(") +
                                                             (nullptr == row.szReported ? "" : row.szReported) +
                                                             ") must be 0 to 32, 4 is used\n");
        EXPECT_EQ(nullptr != row.szReported, std::string::npos != strShown.find(strReport)) << row.szDetail;
        EXPECT_EQ(nullptr != row.szReported, std::string::npos != strShown.find("must be 0 to 32")) << row.szDetail;
    }
}

// --- Texts that do not fit ---

std::string cutReport(const std::string& p_strName, int p_nMost) {
    return messages::error({"sensor.cpp", "copyText"}, p_strName + " of the module configuration is longer than " +
                                                           std::to_string(p_nMost) + " characters and was cut\n");
}

TEST_F(SystemConfiguration, TakesTextsThatFillTheirFields) {
    m_objRoot.debugLevel(6);
    m_objModule.setParameters(std::string(255, 'p'));
    m_objModule.setDetail("(kind=1)(max_scheme=3)" + std::string(511 - 22, 'd'));
    EXPECT_EQ(std::string::npos, init().find("and was cut"));
    EXPECT_EQ(m_objModule.getParameters(), m_stSysConf.moduleConfig.szParameters);
    EXPECT_EQ(m_objModule.getDetail(), m_stSysConf.moduleConfig.szDetail);
    EXPECT_EQ(3u, m_stSysConf.nSchemeSum);
}

TEST_F(SystemConfiguration, CutsLongerTextsToTheirFieldsAndReportsThem) {
    m_objRoot.debugLevel(6);
    for (const std::size_t nMore : {1u, 2u, 100u, 1000000u}) {
        m_objModule.setParameters(std::string(255 + nMore, 'p'));
        m_objModule.setDetail("(kind=1)(max_scheme=3)" + std::string(511 - 22 + nMore, 'd'));
        const std::string strShown = messages::anyLine(init());
        EXPECT_EQ(0u, strShown.find(cutReport("parameters", 255) + cutReport("detail", 511))) << nMore;
        EXPECT_EQ(std::string(255, 'p'), m_stSysConf.moduleConfig.szParameters);
        EXPECT_EQ(m_objModule.getDetail().substr(0, 511), m_stSysConf.moduleConfig.szDetail);
        EXPECT_EQ(3u, m_stSysConf.nSchemeSum);
        EXPECT_TRUE(styleHas("StyleDiversity.xml")) << style();
    }
}

TEST_F(SystemConfiguration, DoesNotSeeAFieldBehindTheCut) {
    m_objModule.setDetail(std::string(511, 'd') + "(max_scheme=3)");
    init();
    EXPECT_EQ(4u, m_stSysConf.nSchemeSum);
    m_objModule.setDetail(std::string(511 - 13, 'd') + "(max_scheme=3)");  // the cut takes its last parenthesis
    init();
    EXPECT_EQ(4u, m_stSysConf.nSchemeSum);
    m_objModule.setDetail(std::string(511 - 14, 'd') + "(max_scheme=3)");
    init();
    EXPECT_EQ(3u, m_stSysConf.nSchemeSum);
}

TEST_F(SystemConfiguration, EndsATextAtAZeroByte) {
    m_objModule.setDetail(std::string("(kind=1)\0(max_scheme=3)", 23));
    EXPECT_EQ("", init());
    EXPECT_EQ(4u, m_stSysConf.nSchemeSum);
    EXPECT_TRUE(styleHas("StyleDiversity.xml")) << style();
}

TEST_F(SystemConfiguration, OfTwoChannelsIsBuiltAtTheSameTime) {
    deviceType("14");
    SysConfig stSecond;
    outputOf([&] {
        std::thread other([&] { EXPECT_EQ(0, initSysConf(2, m_objModule, &stSecond)); });
        EXPECT_EQ(0, initSysConf(1, m_objModule, &m_stSysConf));
        other.join();
    });
    EXPECT_TRUE(styleHas("\"Style.xml\"")) << style();
    EXPECT_NE(nullptr, std::strstr(stSecond.szUIStyle, "\"Style_Thermal.xml\"")) << stSecond.szUIStyle;
    uinitSysConf(&stSecond);
    EXPECT_EQ("", m_objRoot.errorLog());
}

}  // namespace
