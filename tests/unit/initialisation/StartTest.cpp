// The start as a whole: its order, its messages, its states and the background thread.
#include "tests/unit/initialisation/StartedCamera.h"

#include <algorithm>

namespace {

using messages::anyPlace;
using messages::anyWordBehind;

class Start : public StartedCamera {
protected:
    // A start whose stored mode asks for switching, with the host's mode already automatic.
    void startAutomatic(u32 p_nMode) {
        stored({with(factory(), KEY_SCHEME_MODE, p_nMode), with(factory(), KEY_BRIGHTNESS, 22)});
        probe().setParamModeDirectly(1);
        init();
    }
};

using StartDeathTest = Start;

const messages::Place kController = {"ISensorController.cpp", messages::kAny};

}  // namespace

TEST_F(Start, SaysWhatItDoesInOrder) {
    style({{KEY_SCHEME_MODE, 1}, {KEY_BRIGHTNESS, 50}});
    root.debugLevel(6);
    init("(max_scheme=1)");
    const messages::Place stFile = {"SensorFile.cpp", messages::kAny};
    const auto open = [&](const std::string& p_strName) {
        return messages::debug(stFile, "open file:" + p_strName + "\n");
    };
    const std::string strCommand = "====================== cmd:34 dir:0 val:50 ==";
    EXPECT_EQ(open("/hd1/moduleConfig/sensorConfig/style/Style.xml") +
                  open("/hd1/moduleConfig/sensorConfig/styleDiversity/StyleDiversity.xml") +
                  open("/tmp/merge_style_ch1.xml") + messages::debug(stFile, "dnaCmdList.cmd_cnt(0)\n") +
                  messages::debug(kController, "m_nKeyCmdNum(160), m_nKeyValNum(2)\n") +
                  open("/mnt/mtd/code/config_file/snsversion.cfg") +
                  messages::warning(kController,
                                    "check the sensor version,   local(0) --> libsensordll.so(8), source the cmd: "
                                    "rm -rf /mnt/mtd/code/config*/sensor*\n") +
                  messages::debug(kController, "switch_to(): -1 -> 0\n") +
                  messages::trace("can not find val, invalid sheme(-1) \n") +
                  messages::trace("can not find val, invalid sheme(-1) \n") +
                  messages::trace("====================== set KEY_BRIGHTNESS (34,50) func:&ISensorController::doIaCmd "
                                  "ia_cmd:34 =====================\n") +
                  messages::debug(kController, strCommand + "====m_nCameraID=(1)===============begin\n") +
                  messages::debug(kController, strCommand + "===================end\n") + "\n" +
                  messages::debug(kController, "ISensorController::initSensor  success\n"),
              anyPlace(output));
}

TEST_F(Start, MarksThreeMessagesWithTheirFrozenLines) {
    root.debugLevel(6);
    init();
    EXPECT_TRUE(isIn(messages::debug({"ISensorController.cpp", "init", "78"}, "m_nKeyCmdNum(160), m_nKeyValNum(11)\n"),
                     output));
    EXPECT_TRUE(isIn("file:ISensorController.cpp fun:init line:89\ncheck the sensor version", output));
    EXPECT_TRUE(isIn(
        messages::debug({"ISensorController.cpp", "init", "241"}, "ISensorController::initSensor  success\n"), output));
}

TEST_F(Start, SaysNothingAtTheFirstLevelButTheEndOfTheAppliedScheme) {
    init();
    EXPECT_EQ("\n", output);
    EXPECT_EQ("", root.errorLog());
}

TEST_F(Start, CountsTheRowsOfTheKeyTableOfTheSecondTime) {
    init();
    controller().uinit();
    root.debugLevel(6);
    init();
    EXPECT_TRUE(isIn("m_nKeyCmdNum(154), m_nKeyValNum(11)\n", output));
}

// --- States ---

TEST_F(Start, CarriesItsStateInTheFlags) {
    EXPECT_EQ(0u, probe().flags());
    EXPECT_FALSE(controller().getSensorStatus());
    u32 nDuring = 0;
    bool bStatusDuring = true;
    camera.onDriver(KEY_BRIGHTNESS, IA_CMD_OPT_SET, [&](int, void*) {
        nDuring = probe().flags();
        bStatusDuring = controller().getSensorStatus();
        return 0;
    });
    init();
    EXPECT_EQ(SensorControllerProbe::init_flag | SensorControllerProbe::switching_flag, nDuring);
    EXPECT_FALSE(bStatusDuring);
    EXPECT_EQ(SensorControllerProbe::inited_flag, probe().flags());
    EXPECT_TRUE(controller().getSensorStatus());
}

TEST_F(Start, ClearsTheInitialisedStateWhileItRunsAgain) {
    init();
    controller().uinit();
    EXPECT_TRUE(controller().getSensorStatus());
    u32 nDuring = 0;
    camera.onDriver(KEY_BRIGHTNESS, IA_CMD_OPT_SET, [&](int, void*) {
        nDuring = probe().flags();
        return 0;
    });
    init();
    EXPECT_EQ(SensorControllerProbe::init_flag | SensorControllerProbe::switching_flag, nDuring);
    EXPECT_EQ(SensorControllerProbe::inited_flag, probe().flags());
}

TEST_F(Start, TakesTheModuleConfigurationOver) {
    init("(max_scheme=2)(lens=wide)");
    EXPECT_EQ(77u, controller().getSensorType());
    EXPECT_STREQ("(max_scheme=2)(lens=wide)", probe().sysConf().moduleConfig.szDetail);
    EXPECT_STREQ("flip=1", probe().sysConf().moduleConfig.szParameters);
}

TEST_F(Start, PutsTheSetsIntoOneBlockInOrder) {
    init("(max_scheme=3)");
    for (u32 i = 0; i < 4; ++i) {
        EXPECT_EQ(probe().set(0) + i * factory().size(), probe().set(i)) << i;
    }
}

TEST_F(Start, PutsAZeroedRecordInFrontOfTheSets) {
    init();
    EXPECT_EQ(0u, probe().set(0)[-1].key);
    EXPECT_EQ(0u, probe().set(0)[-1].value);
}

TEST_F(Start, FillsTheScratchSetWithTheFactorySet) {
    init();
    for (u32 i = 0; i < factory().size(); ++i) {
        EXPECT_EQ(factory()[i].first, probe().scratch()[i].key) << i;
        EXPECT_EQ(probe().set(probe().sysConf().nSchemeSum)[i].value, probe().scratch()[i].value) << i;
    }
}

TEST_F(Start, BuildsTheKeyTable) {
    init();
    EXPECT_EQ(154u, probe().keyCmdNum());
    EXPECT_EQ(static_cast<u32>(KEY_BRIGHTNESS), probe().keyCmdMap()[0].key);
}

TEST_F(Start, WithoutAVideoModuleIsWhole) {
    controller().setVideoStreamModule(nullptr);
    init();
    bool bWDR = false;
    bool bBeaway = false;
    controller().getShowWDRFalg(bWDR);
    controller().getShowBeawayFalg(bBeaway);
    EXPECT_TRUE(bWDR);
    EXPECT_TRUE(bBeaway);
    EXPECT_TRUE(controller().getSensorStatus());
}

// --- The background thread ---

TEST_F(Start, RunsOneCycleOfTheThreadItself) {
    const INT64 nBefore = platform::Clock::monotonicMicroseconds();
    init();
    EXPECT_EQ(1000000, platform::Clock::monotonicMicroseconds() - nBefore) << "one pace";
}

TEST_F(Start, LeavesTheThreadRunning) {
    EXPECT_FALSE(probe().thread().isRunning());
    init();
    EXPECT_TRUE(probe().thread().isRunning());
}

TEST_F(Start, MakesTheFirstDecisionByDayAndNightItself) {
    camera.driverHolds(0, 153, 1);
    startAutomatic(2);
    EXPECT_EQ(1, scheme());
    const std::string strNight = applied().substr(sizeof("ia ch0 set 34 = 50\n") - 1);
    // Under switching by day and night the second scheme's day/night keys are only recorded.
    std::string strExpected = "ia ch0 commands\nia ch0 get 153 -> 1\nia ch0 set 34 = 22\n" + strNight;
    strExpected.erase(strExpected.find("ia ch0 set 144"), sizeof("ia ch0 set 144 = 1\n") - 1);
    EXPECT_EQ(strExpected, camera.text());
}

TEST_F(Start, MakesTheFirstDecisionByScheduleItself) {
    startAutomatic(1);
    EXPECT_EQ(0, scheme()) << "no window matches";
    EXPECT_EQ("ia ch0 commands\n" + applied(), camera.text());
}

TEST_F(Start, LetsTheThreadSwitchOnceTheHostAllowsIt) {
    stored({with(factory(), KEY_SCHEME_MODE, 2), with(factory(), KEY_BRIGHTNESS, 22)});
    init();
    EXPECT_EQ(-1, scheme());
    controller().setParamMode(1);
    letTheThreadRun();
    EXPECT_EQ(0, scheme());
    EXPECT_EQ("ia ch0 commands\nia ch0 get 153 -> 0\n" + applied(), camera.text());
}

TEST_F(Start, ReportsAThreadThatCannotBeStarted) {
    EXPECT_TRUE(probe().thread().start());
    init();
    const std::string strCondition = "m_pSensorThread->start()";
    EXPECT_TRUE(isIn(messages::assertion({"ISensorController.cpp", "init", "206"}, strCondition), output)) << output;
    EXPECT_TRUE(
        isIn(messages::loggedAssertion({"ISensorController.cpp", "init", "206"}, strCondition), root.errorLog()));
}

TEST_F(StartDeathTest, StopsTheProcessAtAThreadThatCannotBeStartedWhenAssertionsAreEnabled) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    root.debugLevel(-1, true);
    EXPECT_DEATH(
        {
            probe().thread().start();
            controller().init(module(""));
        },
        "ISensorController.cpp:206: bool ISensorController::init\\(const ModuleConfigure ?&\\): Assertion `bRet' "
        "failed");
}

// --- What is missing ---

TEST_F(Start, WithoutAnyFileIsStillWhole) {
    root.remove("/hd1");
    root.remove(kMachineInfoFile);
    root.remove("/mnt/mtd/code/config_file");
    camera.clear();
    output = outputOf([this] { EXPECT_TRUE(controller().init(ModuleConfigure())); });
    EXPECT_EQ(0u, probe().keyValSum());
    EXPECT_EQ("ia ch0 commands\n", camera.text());
    EXPECT_EQ(0, scheme());
    EXPECT_EQ(0, controller().setParameter(KEY_BRIGHTNESS, 1, true));
    EXPECT_EQ("", controller().getUIStyleFile());
}

TEST_F(Start, WithoutAStyleWritesEmptyParameterFiles) {
    root.remove("/hd1");
    init();
    EXPECT_TRUE(root.exists(parameterFile(0)));
    EXPECT_EQ("", root.read(parameterFile(0)));
    EXPECT_EQ("", root.read(parameterFile(1)));
}

TEST_F(Start, WithADriverThatRefusesAParameterGoesOn) {
    camera.driverFails(KEY_MAX_SHUTTER, IA_CMD_OPT_SET, -5);
    init();
    EXPECT_TRUE(
        isIn(messages::assertion({"ISensorController.cpp", "switch_to"},
                                 "QVS_SUCCESS == setParameters(m_ppUserKeyVal[m_nCurScheme], m_nKeyValSum, true)") +
                 messages::detail("m_nCurScheme(0) m_nKeyValSum(11)\n"),
             messages::anyLine(output)))
        << output;
    EXPECT_EQ(0, scheme());
    EXPECT_TRUE(controller().getSensorStatus());
}

TEST_F(Start, WithADriverThatAnswersNothingGoesOn) {
    for (const u32 nCmd : {IA_CMD_DYNAMIC_PARAMS_CMDS_GET, u32{153}}) {
        camera.driverFails(nCmd, IA_CMD_OPT_GET, -3);
    }
    startAutomatic(2);
    EXPECT_EQ(0, scheme()) << "no answer counts as day";
}

// --- A second start ---

TEST_F(Start, IsRefusedWhileTheControllerIsInitialised) {
    init();
    controller().setParamScheme(1);
    camera.clear();
    root.debugLevel(6);
    const std::string strOut = outputOf([this] { EXPECT_FALSE(controller().init(module("(max_scheme=9)"))); });
    EXPECT_EQ(messages::error({"ISensorController.cpp", "init"}, "init: the controller is initialised already\n"),
              messages::anyLine(strOut));
    EXPECT_EQ("", camera.text());
    EXPECT_EQ(1, scheme());
    EXPECT_EQ(2u, probe().sysConf().nSchemeSum);
    EXPECT_EQ(SensorControllerProbe::inited_flag, probe().flags());
}

TEST_F(Start, AfterATeardownBuildsEverythingAnew) {
    init("(max_scheme=2)");
    controller().setParameter(KEY_BRIGHTNESS, 99, true);
    controller().uinit();
    style({{KEY_SCHEME_MODE, 0}, {KEY_CONTRAST, 3}});
    root.remove(parameterFile(0));
    init("(max_scheme=5)");
    EXPECT_EQ((Records{{KEY_SCHEME_MODE, 0}, {KEY_CONTRAST, 3}}), setOf(0));
    EXPECT_EQ(5u, probe().sysConf().nSchemeSum);
    EXPECT_TRUE(probe().thread().isRunning());
    EXPECT_EQ("ia ch0 commands\nia ch0 set 2353 = 3\n", camera.text());
}

TEST_F(Start, AfterATeardownFindsTheParameterFilesAgain) {
    init();
    controller().uinit();
    root.write(parameterFile(0), fileOf(with(factory(), KEY_SCHEME_MODE, 0)));
    const std::string strBefore = root.read(parameterFile(1));
    init();
    EXPECT_EQ(strBefore, root.read(parameterFile(1)));
    EXPECT_EQ("ia ch0 commands\n" + applied(), camera.text()) << "a driver that may have lost power gets every key";
}

TEST_F(Start, WorksManyTimes) {
    for (int i = 0; i < 20; ++i) {
        init();
        EXPECT_EQ(0, controller().setParameter(KEY_BRIGHTNESS, 1, true));
        controller().uinit();
    }
    EXPECT_TRUE(controller().getSensorStatus());
}
