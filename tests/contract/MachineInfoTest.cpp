#include "platform/MachineInfo.h"

#include "platform/DeviceType.h"
#include "tests/contract/OnDevice.h"

#include <gtest/gtest.h>

#include <string>

namespace {

constexpr const char* kMachineFile = "/mnt/mtd/code/factory_setting/machineinfo.ini";

class MachineInfoTest : public OnDevice {
protected:
    bool parse(const std::string& p_strContent) {
        m_objRoot.write(kMachineFile, p_strContent);
        return SystemInfoParser::parseMachineInfo(kMachineFile, m_objInfo);
    }

    MachineInfo m_objInfo;
};

TEST_F(MachineInfoTest, AnEmptyOneHasTypeZeroAndEmptyTexts) {
    EXPECT_EQ(m_objInfo.getDeviceType(), 0U);
    EXPECT_EQ(m_objInfo.getHardwareModel(), "");
    EXPECT_EQ(m_objInfo.getHardwareCode(), "");
}

TEST_F(MachineInfoTest, KeepsWhatIsSet) {
    m_objInfo.setDeviceType(DeviceType::IPDOME);
    m_objInfo.setHardwareModel("model");
    m_objInfo.setHardwareCode("code");
    const MachineInfo objCopy = m_objInfo;
    EXPECT_EQ(objCopy.getDeviceType(), 4U);
    EXPECT_EQ(objCopy.getHardwareModel(), "model");
    EXPECT_EQ(objCopy.getHardwareCode(), "code");
}

TEST_F(MachineInfoTest, ReadsTheThreeKeysOfItsSection) {
    EXPECT_TRUE(
        parse("; made in the factory\n[other]\ndevicetype = 99\n[machine]\ndevicetype = 8\n"
              "hardwaremodel = CHIP-1\nserial = 17\nhardwarecode = B2\n"));
    EXPECT_EQ(m_objInfo.getDeviceType(), DeviceType::LPR);
    EXPECT_EQ(m_objInfo.getHardwareModel(), "CHIP-1");
    EXPECT_EQ(m_objInfo.getHardwareCode(), "B2");
}

TEST_F(MachineInfoTest, AcceptsEveryDecimalTypeBelowTwoToThe32) {
    for (const auto& [szText, nType] : std::initializer_list<std::pair<const char*, u32>>{
             {"0", 0}, {"1", 1}, {"007", 7}, {"4294967295", 4294967295U}}) {
        EXPECT_TRUE(parse(std::string("[machine]\ndevicetype=") + szText + "\n")) << szText;
        EXPECT_EQ(m_objInfo.getDeviceType(), nType);
    }
}

TEST_F(MachineInfoTest, MissingTextsAreEmpty) {
    m_objInfo.setHardwareModel("old");
    m_objInfo.setHardwareCode("old");
    EXPECT_TRUE(parse("[machine]\r\ndevicetype=1\r\n"));
    EXPECT_EQ(m_objInfo.getHardwareModel(), "");
    EXPECT_EQ(m_objInfo.getHardwareCode(), "");
}

TEST_F(MachineInfoTest, BadFilesAreRefusedAndChangeNothing) {
    m_objInfo.setDeviceType(20);
    m_objInfo.setHardwareModel("old model");
    m_objInfo.setHardwareCode("old code");
    const std::string strGood = "[machine]\ndevicetype=1\nhardwaremodel=new\nhardwarecode=new\n";
    const std::string rows[] = {
        "",
        "devicetype=1\n",
        "[machine]\n",
        "[machine]\nhardwaremodel=new\n",
        "[machine]\ndevicetype=\n",
        "[machine]\ndevicetype=one\n",
        "[machine]\ndevicetype=-1\n",
        "[machine]\ndevicetype=+1\n",
        "[machine]\ndevicetype=0x10\n",
        "[machine]\ndevicetype=1.5\n",
        "[machine]\ndevicetype=1 2\n",
        "[machine]\ndevicetype=4294967296\n",
        "[machine]\ndevicetype=99999999999999999999999999\n",
        "[Machine]\ndevicetype=1\n",
        strGood + "no equals sign\n",
        strGood + "[unfinished\n",
        strGood + "devicetype=2\n",
        strGood + "hardwaremodel=again\n",
        strGood + "hardwarecode=again\n",
        strGood + "x=" + std::string(500, 'y') + "\n",
        strGood + "x=" + std::string(197, 'y') + "\n",
        strGood + std::string("x=a\0b\n", 6),
    };
    for (const std::string& strContent : rows) {
        EXPECT_FALSE(parse(strContent)) << ::testing::PrintToString(strContent);
    }
    EXPECT_EQ(m_objInfo.getDeviceType(), 20U);
    EXPECT_EQ(m_objInfo.getHardwareModel(), "old model");
    EXPECT_EQ(m_objInfo.getHardwareCode(), "old code");
}

TEST_F(MachineInfoTest, TheLongestLineIsRead) {
    const std::string strModel(198 - std::string("hardwaremodel=").size(), 'm');
    EXPECT_TRUE(parse("[machine]\ndevicetype=1\nhardwaremodel=" + strModel + "\n"));
    EXPECT_EQ(m_objInfo.getHardwareModel(), strModel);
}

TEST_F(MachineInfoTest, AFileThatCannotBeReadIsRefused) {
    EXPECT_FALSE(SystemInfoParser::parseMachineInfo(kMachineFile, m_objInfo));
    EXPECT_FALSE(SystemInfoParser::parseMachineInfo("/mnt/mtd", m_objInfo));
    EXPECT_FALSE(SystemInfoParser::parseMachineInfo("", m_objInfo));
    EXPECT_FALSE(SystemInfoParser::parseMachineInfo(nullptr, m_objInfo));
}

}  // namespace
