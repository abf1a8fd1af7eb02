// Which style documents a channel of a device gets, and which devices there are.
#include "tests/support/Messages.h"
#include "tests/unit/config/ConfiguredDevice.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

const messages::Place kStyleChoice{"sensor.cpp", "initSysConf"};
constexpr char kTypeFailed[] =
    "DeviceType::IPCAMERA == p_stSysConf->nDeviceType || DeviceType::FACE_DETECT == p_stSysConf->nDeviceType || "
    "DeviceType::VEHICLE_DETECT == p_stSysConf->nDeviceType || DeviceType::AIMULTI_OBJECT_DETECT == "
    "p_stSysConf->nDeviceType || DeviceType::IPDOME == p_stSysConf->nDeviceType || DeviceType::LPR == "
    "p_stSysConf->nDeviceType || DeviceType::IPP == p_stSysConf->nDeviceType || DeviceType::HUMAN_TEMPERATURE == "
    "p_stSysConf->nDeviceType || DeviceType::THERMAL_DEVICE == p_stSysConf->nDeviceType || "
    "DeviceType::THERMAL_DOUBLE_SENSOR_DEVICE == p_stSysConf->nDeviceType || DeviceType::FISHEYE == "
    "p_stSysConf->nDeviceType || DeviceType::DOMECORE == p_stSysConf->nDeviceType || "
    "DeviceType::THERMAL_DOUBLE_SENSOR_DOME_DEVICE == p_stSysConf->nDeviceType || "
    "DeviceType::DOMECORE_THERMAL_DEVICE == p_stSysConf->nDeviceType";

using StyleChoice = ConfiguredDevice;
using StyleChoiceDeathTest = ConfiguredDevice;

struct TypeRow {
    u32 nType;
    const char* szFirstChannel;
    const char* szSecondChannel;
};

constexpr TypeRow kAccepted[] = {
    {1, ".xml", ".xml"},
    {4, "_dome.xml", "_dome.xml"},
    {8, ".xml", ".xml"},
    {9, ".xml", ".xml"},
    {11, ".xml", ".xml"},
    {13, ".xml", "_Thermal.xml"},
    {14, ".xml", "_Thermal.xml"},
    {15, ".xml", ".xml"},
    {16, ".xml", ".xml"},
    {17, ".xml", "_Thermal.xml"},
    {18, ".xml", ".xml"},
    {19, "_dome.xml", "_Thermal.xml"},
    {20, "_dome.xml", "_dome.xml"},
    {104, "_dome.xml", "_dome.xml"},
};

TEST_F(StyleChoice, FollowsDeviceTypeAndChannel) {
    for (const TypeRow& row : kAccepted) {
        deviceType(std::to_string(row.nType));
        for (const int nChannel : {1, 2, 3, 4, 0, -2}) {
            EXPECT_EQ("", init(nChannel)) << row.nType;
            EXPECT_EQ(row.nType, m_stSysConf.nDeviceType);
            const std::string strEnding = 2 == nChannel ? row.szSecondChannel : row.szFirstChannel;
            EXPECT_TRUE(styleHas("from=\"Style" + strEnding + "\""))
                << row.nType << " on channel " << nChannel << ": " << style();
            EXPECT_TRUE(styleHas("key=\"StyleDiversity" + strEnding + "\""))
                << row.nType << " on channel " << nChannel << ": " << style();
        }
    }
    EXPECT_EQ("", m_objRoot.errorLog());
}

TEST_F(StyleChoice, OfAPlateReaderIsTheOrdinaryPair) {
    deviceType("8");
    init(1);
    EXPECT_TRUE(styleHas("\"Style.xml\"") && styleHas("\"StyleDiversity.xml\"")) << style();
}

TEST_F(StyleChoice, OfAThermalSecondChannelIsTheThermalPair) {
    deviceType("13");
    init(2);
    EXPECT_TRUE(styleHas("\"Style_Thermal.xml\"") && styleHas("\"StyleDiversity_Thermal.xml\"")) << style();
}

TEST_F(StyleChoice, OfADomesSecondChannelIsTheDomePair) {
    deviceType("4");
    init(2);
    EXPECT_TRUE(styleHas("\"Style_dome.xml\"") && styleHas("\"StyleDiversity_dome.xml\"")) << style();
}

TEST_F(StyleChoice, OfAnUnknownDeviceIsReportedAndTheDomePair) {
    deviceType("2");
    const std::string strDetail = "machineinfo, devicetype(2) error, must be 1 or 4 or 8 or 9 or 13\n";
    EXPECT_EQ(messages::assertion(kStyleChoice, kTypeFailed) + messages::detail(strDetail), messages::anyLine(init(1)));
    EXPECT_EQ(messages::loggedAssertion(kStyleChoice, kTypeFailed) + messages::loggedDetail(strDetail),
              messages::anyLine(m_objRoot.errorLog()));
    EXPECT_EQ(2u, m_stSysConf.nDeviceType);
    EXPECT_TRUE(styleHas("\"Style_dome.xml\"") && styleHas("\"StyleDiversity_dome.xml\"")) << style();
    EXPECT_EQ(2u, m_stSysConf.nSchemeSum);
}

TEST_F(StyleChoice, ReportsEveryTypeThatIsNotAccepted) {
    for (u32 nType = 0; nType <= 110; ++nType) {
        deviceType(std::to_string(nType));
        bool bAccepted = false;
        for (const TypeRow& row : kAccepted) {
            bAccepted = bAccepted || row.nType == nType;
        }
        EXPECT_EQ(bAccepted, init().empty()) << nType;
    }
}

TEST_F(StyleChoice, MeantTheReportNamesAnOlderListAndTheTypeAsASignedNumber) {
    deviceType("4294967295");
    EXPECT_EQ(messages::assertion(kStyleChoice, kTypeFailed) +
                  messages::detail("machineinfo, devicetype(-1) error, must be 1 or 4 or 8 or 9 or 13\n"),
              messages::anyLine(init()));
    EXPECT_EQ(0xFFFFFFFFu, m_stSysConf.nDeviceType);
    EXPECT_TRUE(styleHas("\"Style_dome.xml\"")) << style();
}

TEST_F(StyleChoice, WithoutMachineInformationIsReportedTwiceAndTheDomePair) {
    m_objRoot.remove(kMachineInfo);
    EXPECT_EQ(messages::assertion(kStyleChoice,
                                  "SystemInfoParser::parseMachineInfo(\"/mnt/mtd/code/factory_setting/"
                                  "machineinfo.ini\", machineInfo)") +
                  messages::assertion(kStyleChoice, kTypeFailed) +
                  messages::detail("machineinfo, devicetype(0) error, must be 1 or 4 or 8 or 9 or 13\n"),
              messages::anyLine(init()));
    EXPECT_EQ(0u, m_stSysConf.nDeviceType);
    EXPECT_TRUE(styleHas("\"Style_dome.xml\"")) << style();
}

TEST_F(StyleChoice, WithMachineInformationThatCannotBeReadIsReportedToo) {
    for (const char* szContent : {"", "[machine]\n", "[machine]\ndevicetype=many\n",
                                  "[machine]\ndevicetype=4294967297\n", "[other]\ndevicetype=1\n", "\xff\xfe\xfd"}) {
        m_objRoot.write(kMachineInfo, szContent);
        EXPECT_NE(std::string::npos, init().find("SystemInfoParser::parseMachineInfo(")) << szContent;
        EXPECT_EQ(0u, m_stSysConf.nDeviceType) << szContent;
    }
}

TEST_F(StyleChoiceDeathTest, AbortsAtAnUnknownDevice) {
    deviceType("2");
    m_objRoot.debugLevel(1, true);
    EXPECT_DEATH(
        initSysConf(1, m_objModule, &m_stSysConf),
        "sensor\\.cpp:[0-9]+: int initSysConf\\(int, const ModuleConfigure ?&, SysConfig ?\\*\\): Assertion `bRet'");
}

TEST_F(StyleChoiceDeathTest, AbortsWithoutMachineInformation) {
    m_objRoot.remove(kMachineInfo);
    m_objRoot.debugLevel(1, true);
    EXPECT_DEATH(initSysConf(1, m_objModule, &m_stSysConf),
                 "sensor\\.cpp:[0-9]+: int initSysConf.*Assertion `bRet' failed");
}

}  // namespace
