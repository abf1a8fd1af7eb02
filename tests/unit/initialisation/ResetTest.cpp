// Back to factory settings.
#include "technic/QVMutex.h"
#include "tests/unit/initialisation/StartedCamera.h"

namespace {

using messages::anyLine;

class Reset : public StartedCamera {
protected:
    static Records defaults() { return with(factory(), KEY_SCHEME_MODE, 0); }

    void reset() {
        camera.clear();
        output = outputOf([this] { EXPECT_TRUE(controller().resetParameters()); });
    }

    void moduleFile(const std::string& p_strModules) {
        root.write("/hd1/moduleConfig/moduleConfig.xml", "<modules>" + p_strModules + "</modules>");
    }
};

}  // namespace

TEST_F(Reset, RewritesEveryParameterFileFromTheFactorySet) {
    stored({with(defaults(), KEY_BRIGHTNESS, 11), with(defaults(), KEY_BRIGHTNESS, 22)});
    root.write(parameterFile(9), "old");
    root.write(parameterFile(0, "sensor-thermal"), "old");
    root.write("/mnt/mtd/code/config_file/other.cfg", "kept");
    init();
    reset();
    EXPECT_EQ(fileOf(defaults()), root.read(parameterFile(0)));
    EXPECT_EQ(fileOf(defaults()), root.read(parameterFile(1)));
    EXPECT_EQ(defaults(), setOf(0));
    EXPECT_EQ(defaults(), setOf(1));
    EXPECT_FALSE(root.exists(parameterFile(9)));
    EXPECT_FALSE(root.exists(parameterFile(0, "sensor-thermal"))) << "of every channel";
    EXPECT_EQ("kept", root.read("/mnt/mtd/code/config_file/other.cfg"));
    EXPECT_EQ(std::string("\x08\0\0\0", 4), root.read(kVersionFile));
}

TEST_F(Reset, AppliesTheFactorySchemeAndThenTheNewSchemeZero) {
    stored({with(defaults(), KEY_BRIGHTNESS, 11), defaults()});
    init();
    reset();
    EXPECT_EQ("ia ch0 set 34 = 50\nia ch0 commands\n" + applied(), camera.text())
        << "first what differs, then every key";
    EXPECT_EQ(0, scheme());
    EXPECT_EQ(-1, probe().lastScheme());
}

TEST_F(Reset, LeavesAWorkingController) {
    init();
    reset();
    EXPECT_EQ(SensorControllerProbe::inited_flag, probe().flags());
    EXPECT_TRUE(probe().thread().isRunning());
    EXPECT_TRUE(controller().getSensorStatus());
    EXPECT_EQ(0u, probe().paramMode());
    camera.clear();
    EXPECT_EQ(0, controller().setParameter(KEY_BRIGHTNESS, 60, true));
    EXPECT_EQ("ia ch0 set 34 = 60\n", camera.text());
    letTheThreadRun();
    reset();
    EXPECT_EQ("ia ch0 set 34 = 50\nia ch0 commands\n" + applied(), camera.text());
}

TEST_F(Reset, TurnsSwitchingOff) {
    stored({with(factory(), KEY_SCHEME_MODE, 1), factory()});
    init();
    EXPECT_TRUE(probe().scheduleSwitch());
    reset();
    EXPECT_FALSE(probe().scheduleSwitch() || probe().dnSchemeSwitch());
    EXPECT_EQ(0, scheme());
}

TEST_F(Reset, CountsSchemeZeroAsAppliedOnAPlateDeviceThatSwitches) {
    device(8);
    init();
    EXPECT_EQ(-1, scheme());
    reset();
    EXPECT_TRUE(probe().dnSchemeSwitch());
    EXPECT_EQ(0, scheme());
    std::string strFactory = applied();
    strFactory.erase(strFactory.find("ia ch0 set 144 = 1\n"), sizeof("ia ch0 set 144 = 1\n") - 1);
    EXPECT_EQ(strFactory + "ia ch0 commands\n", camera.text())
        << "the driver holds the factory scheme, without the day/night key that only scheme 0 sends";
}

TEST_F(Reset, TakesNoPaceOfTheThread) {
    init();
    const INT64 nBefore = platform::Clock::monotonicMicroseconds();
    reset();
    EXPECT_EQ(nBefore, platform::Clock::monotonicMicroseconds());
}

TEST_F(Reset, HoldsTheLockThroughout) {
    init();
    int nHeld = 0;
    camera.onDriver(KEY_BRIGHTNESS, IA_CMD_OPT_SET, [&](int, void*) {
        const bool bHeld = probe().mutex().unlock(__FILE__, __LINE__);
        nHeld += bHeld && probe().mutex().lock(__FILE__, __LINE__) ? 1 : 0;
        return 0;
    });
    probe().setKeyValToCache(0, KEY_BRIGHTNESS, 11, false);
    reset();
    EXPECT_EQ(2, nHeld) << "while the factory scheme and the new scheme 0 are applied";
    EXPECT_FALSE(probe().mutex().unlock(__FILE__, __LINE__)) << "given back at the end";
}

TEST_F(Reset, IsMarkedInTheFlagsThroughout) {
    init();
    std::vector<u32> vecFlags;
    camera.onDriver(KEY_BRIGHTNESS, IA_CMD_OPT_SET, [&](int, void*) {
        vecFlags.push_back(probe().flags());
        return 0;
    });
    probe().setKeyValToCache(0, KEY_BRIGHTNESS, 11, false);
    reset();
    using P = SensorControllerProbe;
    EXPECT_EQ((std::vector<u32>{P::inited_flag | P::resetting_flag | P::switching_flag,
                                P::init_flag | P::resetting_flag | P::switching_flag}),
              vecFlags);
}

TEST_F(Reset, SaysThatItResets) {
    init();
    root.debugLevel(6);
    moduleFile("");
    reset();
    EXPECT_EQ(0u, anyLine(output).find(messages::debug({"ISensorController.cpp", "resetParameters"}, "resetting\n")));
    EXPECT_TRUE(isIn("switch_to(): 0 -> 2\n", output));
}

TEST_F(Reset, OfTheThermalChannelRewritesItsFiles) {
    device(14);
    style({{KEY_SCHEME_MODE, 2}, {KEY_BRIGHTNESS, 40}}, "_Thermal.xml");
    controller().setChannelID(2);
    init();
    root.write(parameterFile(0), "of the other channel");
    reset();
    EXPECT_EQ(fileOf({{KEY_SCHEME_MODE, 0}, {KEY_BRIGHTNESS, 40}}), root.read(parameterFile(0, "sensor-thermal")));
    EXPECT_FALSE(root.exists(parameterFile(0)));
}

TEST_F(Reset, FollowsAStyleThatHasChanged) {
    init();
    style({{KEY_SCHEME_MODE, 0}, {KEY_CONTRAST, 3}});
    reset();
    EXPECT_EQ((Records{{KEY_SCHEME_MODE, 0}, {KEY_CONTRAST, 3}}), setOf(0));
}

TEST_F(Reset, WithADriverThatRefusesAParameterGoesOn) {
    init();
    probe().setKeyValToCache(0, KEY_BRIGHTNESS, 11, false);
    camera.driverFails(KEY_BRIGHTNESS, IA_CMD_OPT_SET, -5);
    reset();
    EXPECT_EQ(0, scheme());
    EXPECT_EQ(defaults(), setOf(0));
    EXPECT_EQ(SensorControllerProbe::inited_flag, probe().flags());
}

TEST_F(Reset, WaitsForTheLock) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    init();
    EXPECT_DEATH(
        {
            const QVMutexManager guard(&probe().mutex(), "the test", 7);
            controller().resetParameters();
        },
        "QVMutex: locked a second time at ISensorController.cpp:[0-9]+ by the thread that locked it at the test:7");
}

// --- The module configuration of the new start ---

TEST_F(Reset, ReusesTheModuleConfigurationOfAQuietCamera) {
    moduleFile("<device model='M'><module id='99' detail='(max_scheme=4)' parameters='flip=0'/></device>");
    device(1, "M");
    for (const int nLevel : {-1, 1, 5}) {
        root.debugLevel(nLevel);
        init("(max_scheme=2)(lens=wide)");
        reset();
        EXPECT_EQ(77u, controller().getSensorType()) << nLevel;
        EXPECT_STREQ("(max_scheme=2)(lens=wide)", probe().sysConf().moduleConfig.szDetail) << nLevel;
        EXPECT_STREQ("flip=1", probe().sysConf().moduleConfig.szParameters) << nLevel;
        EXPECT_EQ(2u, probe().sysConf().nSchemeSum) << nLevel;
        controller().uinit();
    }
}

TEST_F(Reset, MeantAVerboseCameraReadsItsModuleConfigurationAgain) {
    moduleFile(
        "<device model='Other'><module id='1' detail='(max_scheme=9)'/></device>"
        "<device model='M' code='X'><module id='2' detail='(max_scheme=8)'/></device>"
        "<device model='M' code='C'><module id='99' detail='(max_scheme=3)' parameters='flip=0'/><module "
        "id='98'/></device>");
    device(1, "M", "C");
    for (const int nLevel : {6, 7}) {
        root.debugLevel(nLevel);
        init("(max_scheme=2)(lens=wide)");
        reset();
        EXPECT_EQ(99u, controller().getSensorType()) << "the first of the list";
        EXPECT_STREQ("(max_scheme=3)", probe().sysConf().moduleConfig.szDetail);
        EXPECT_STREQ("flip=0", probe().sysConf().moduleConfig.szParameters);
        EXPECT_EQ(3u, probe().sysConf().nSchemeSum);
        EXPECT_TRUE(root.exists(parameterFile(2)));
        controller().uinit();
    }
}

TEST_F(Reset, ReadsTheMachineInformationAnewForThat) {
    moduleFile("<device model='New'><module id='99' detail='(max_scheme=3)'/></device>");
    device(1, "Old");
    root.debugLevel(6);
    init();
    device(1, "New");
    reset();
    EXPECT_EQ(99u, controller().getSensorType());
}

TEST_F(Reset, WithoutAModuleInTheFileHasAnEmptyModuleConfiguration) {
    device(1, "M");
    for (const char* szModules : {"", "<device model='Other'><module id='1'/></device>", "<broken"}) {
        moduleFile(szModules);
        root.debugLevel(6);
        init();
        reset();
        EXPECT_EQ(0u, controller().getSensorType()) << szModules;
        EXPECT_STREQ("", probe().sysConf().moduleConfig.szDetail) << szModules;
        EXPECT_EQ(4u, probe().sysConf().nSchemeSum) << szModules;
        EXPECT_TRUE(controller().getSensorStatus());
        controller().uinit();
    }
    root.remove("/hd1/moduleConfig/moduleConfig.xml");
    init();
    reset();
    EXPECT_EQ(0u, controller().getSensorType());
}

// --- What a host must not do ---

TEST_F(Reset, InsideAStartIsReported) {
    bool bFirst = true;
    camera.onDriver(KEY_BRIGHTNESS, IA_CMD_OPT_SET, [&](int, void*) {
        if (bFirst) {
            bFirst = false;
            EXPECT_TRUE(controller().resetParameters());
        }
        return 0;
    });
    init();
    const messages::Place stPlace = {"ISensorController.cpp", "resetParameters", "1953"};
    EXPECT_TRUE(isIn(messages::assertion(stPlace, "init(objModuleConfigure)"), output)) << output;
    EXPECT_TRUE(isIn(messages::loggedAssertion(stPlace, "init(objModuleConfigure)"), root.errorLog()));
    EXPECT_EQ(0, scheme());
    EXPECT_TRUE(controller().getSensorStatus());
}
