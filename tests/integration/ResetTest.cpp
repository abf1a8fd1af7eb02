// Back to factory settings, with everything alive.
#include "tests/integration/WholeCamera.h"

using testing::HasSubstr;

namespace {

class FactoryReset : public WholeCamera, public testing::WithParamInterface<int> {};

INSTANTIATE_TEST_SUITE_P(DebugLevels, FactoryReset, testing::Values(1, 6));

TEST_P(FactoryReset, BringsTheFactorySchemesBack) {
    ASSERT_NO_FATAL_FAILURE(layOut(""));
    const auto pChannel = channel(0);
    pChannel->init();
    const u32 nFactory = pChannel->probe.valueIn(0, KEY_BRIGHTNESS);
    const std::string strFactoryFile = root.read("/mnt/mtd/code/config_file/sensor0.cfg");
    ASSERT_EQ(0, pChannel->controller.setParameters("(34,11)(2353,12)(8000,2)", true));
    ASSERT_TRUE(pChannel->controller.setParamMode(1));
    seconds(5);
    auto vecRecords = stored("/mnt/mtd/code/config_file/sensor0.cfg");
    change(vecRecords, KEY_BRIGHTNESS, 11);
    store("/mnt/mtd/code/config_file/sensor0.cfg", vecRecords);
    told();

    root.debugLevel(GetParam());
    EXPECT_TRUE(pChannel->controller.resetParameters());
    root.debugLevel(1);
    EXPECT_EQ(nFactory, pChannel->probe.valueIn(0, KEY_BRIGHTNESS));
    EXPECT_EQ(strFactoryFile, root.read("/mnt/mtd/code/config_file/sensor0.cfg"));
    EXPECT_EQ(0, pChannel->probe.curScheme());
    EXPECT_EQ(0u, pChannel->probe.paramMode());
    EXPECT_FALSE(pChannel->probe.dnSchemeSwitch());
    EXPECT_EQ(0u, pChannel->probe.flags() & SensorControllerProbe::resetting_flag);
    EXPECT_EQ("", root.errorLog());
    told();

    // The controller lives on, with its thread.
    EXPECT_EQ(0, pChannel->controller.setParameter(KEY_BRIGHTNESS, 33, true));
    EXPECT_THAT(told(), testing::ElementsAre("ia ch0 set 34 33 = 0"));
    EXPECT_TRUE(pChannel->probe.thread().isRunning());
}

TEST_F(WholeCamera, AVerboseResetReadsTheModuleConfigurationAgain) {
    for (const int nLevel : {1, 6}) {
        ASSERT_NO_FATAL_FAILURE(layOut(""));
        root.debugLevel(1);
        const auto pChannel = channel(0);
        pChannel->init();
        ASSERT_EQ(4u, pChannel->probe.sysConf().nSchemeSum);
        std::string strConfig = root.read("/hd1/moduleConfig/moduleConfig.xml");
        const std::string strOld = "(max_scheme=4)(isInfrared=1)(lightKind=dual)(lensType=motor)";
        const std::size_t nPlace = strConfig.find(strOld);
        ASSERT_NE(std::string::npos, nPlace);
        strConfig.replace(nPlace, strOld.size(), "(max_scheme=3)(isInfrared=1)(lightKind=dual)(lensType=motor)");
        root.write("/hd1/moduleConfig/moduleConfig.xml", strConfig);
        root.debugLevel(nLevel);
        EXPECT_TRUE(pChannel->controller.resetParameters());
        EXPECT_EQ(nLevel > 5 ? 3u : 4u, pChannel->probe.sysConf().nSchemeSum) << "level " << nLevel;
    }
}

}  // namespace
