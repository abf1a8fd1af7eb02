// Schemes that switch by themselves: by day and night, by the clock, and the plate-recognition way.
#include "tests/integration/WholeCamera.h"

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

namespace {

class Switching : public WholeCamera {
protected:
    // Sets a value of one scheme and leaves that scheme applied.
    static void setIn(Channel& p_objChannel, int p_nScheme, const std::string& p_strText) {
        ASSERT_TRUE(p_objChannel.controller.setParamScheme(p_nScheme));
        ASSERT_EQ(0, p_objChannel.controller.setParameters(p_strText, true));
    }

    static std::string window(int p_nStartHour, int p_nEndHour) {
        return "(8001," + std::to_string(p_nStartHour) + ")(8002,0)(8003," + std::to_string(p_nEndHour) + ")(8004,0)";
    }
};

TEST_F(Switching, FollowsTheLightOfTheScene) {
    ASSERT_NO_FATAL_FAILURE(layOut(""));
    camera.scene().setLight(1000);
    const auto pChannel = channel(0);
    pChannel->init();
    setIn(*pChannel, 1, "(34,20)");
    setIn(*pChannel, 0, "(8000,2)");
    EXPECT_TRUE(pChannel->probe.dnSchemeSwitch());
    ASSERT_TRUE(pChannel->controller.setParamMode(1));
    seconds(3);
    EXPECT_EQ(0, pChannel->probe.curScheme());
    told();

    camera.scene().setLight(0.5);
    seconds(120);
    EXPECT_EQ(1, pChannel->probe.curScheme());
    EXPECT_THAT(told(), ElementsAre("ia ch0 set 34 20 = 0"));

    camera.scene().setLight(1000);
    seconds(120);
    EXPECT_EQ(0, pChannel->probe.curScheme());
    EXPECT_THAT(told(), testing::SizeIs(1));
}

TEST_F(Switching, StaysWhereItIsInManualMode) {
    ASSERT_NO_FATAL_FAILURE(layOut(""));
    const auto pChannel = channel(0);
    pChannel->init();
    setIn(*pChannel, 1, "(34,20)");
    setIn(*pChannel, 0, "(8000,2)");
    told();
    camera.scene().setLight(0.5);
    seconds(120);
    EXPECT_EQ(0, pChannel->probe.curScheme());
    EXPECT_THAT(told(), IsEmpty());
}

TEST_F(Switching, FollowsTheClockThroughADay) {
    ASSERT_NO_FATAL_FAILURE(layOut(""));
    const auto pChannel = channel(0);
    pChannel->init();
    setIn(*pChannel, 3, window(18, 22) + "(34,23)");
    setIn(*pChannel, 2, window(8, 18) + "(34,22)");
    setIn(*pChannel, 1, window(6, 8) + "(34,21)");
    setIn(*pChannel, 0, window(0, 1) + "(34,20)(8000,1)");
    ASSERT_TRUE(pChannel->controller.setParamMode(1));

    std::vector<std::string> vecDay;
    platform::Clock::hold({2024, 5, 2, 0, 0, 0});
    for (int nHour = 0; nHour < 24; ++nHour) {
        seconds(5);
        for (const std::string& strLine : told()) {
            vecDay.push_back(std::to_string(nHour) + " " + strLine);
        }
        seconds(3595);
    }
    EXPECT_THAT(vecDay, Contains("6 ia ch0 set 34 21 = 0"));
    EXPECT_THAT(vecDay, Contains("8 ia ch0 set 34 22 = 0"));
    EXPECT_THAT(vecDay, Contains("18 ia ch0 set 34 23 = 0"));
    EXPECT_THAT(vecDay, Contains("22 ia ch0 set 34 20 = 0"));
    EXPECT_EQ(0, pChannel->probe.curScheme());
}

TEST_F(Switching, RemembersItsSourceOverARestartAndChoosesInTheFirstCycle) {
    ASSERT_NO_FATAL_FAILURE(layOut(""));
    {
        const auto pChannel = channel(0);
        pChannel->init();
    }
    for (const int nScheme : {0, 1}) {
        const std::string strName = "/mnt/mtd/code/config_file/sensor" + std::to_string(nScheme) + ".cfg";
        auto vecRecords = stored(strName);
        change(vecRecords, KEY_SCHEME_MODE, 1);
        change(vecRecords, KEY_SCHEME_START_HOUR, 0 == nScheme ? 0 : 11);
        change(vecRecords, KEY_SCHEME_END_HOUR, 0 == nScheme ? 1 : 13);
        store(strName, vecRecords);
    }
    told();
    const auto pChannel = channel(0);
    pChannel->init();
    EXPECT_TRUE(pChannel->probe.scheduleSwitch());
    EXPECT_EQ(-1, pChannel->probe.curScheme()) << "the host's mode is manual: nobody has chosen yet";
    EXPECT_THAT(told(), IsEmpty());
    ASSERT_TRUE(pChannel->controller.setParamMode(1));
    seconds(2);
    EXPECT_EQ(1, pChannel->probe.curScheme());
    EXPECT_THAT(told(), Contains(HasSubstr("ia ch0 set 34 "))) << "a switch from no scheme sends everything";
}

TEST_F(Switching, OfAPlateCameraForcesTheDayNightModeOutsideItsWindows) {
    ASSERT_NO_FATAL_FAILURE(layOut("plate"));
    const auto pChannel = channel(0);
    pChannel->init();
    ASSERT_TRUE(pChannel->probe.isLPRDevice());
    const auto vecFirst = stored("/mnt/mtd/code/config_file/sensor1.cfg");
    EXPECT_EQ(0u, valueOf(vecFirst, KEY_DN_MODE));
    EXPECT_EQ(18u, valueOf(vecFirst, KEY_MAX_SHUTTER));
    EXPECT_EQ(1u, valueOf(vecFirst, KEY_METER_AREA));
    EXPECT_EQ(2u, valueOf(vecFirst, KEY_IR_MODE));
    EXPECT_EQ(40u, valueOf(vecFirst, KEY_IR_MANUAL_STRG_NEAR));

    setIn(*pChannel, 1, window(0, 1));
    setIn(*pChannel, 2, window(14, 16));
    setIn(*pChannel, 3, window(0, 1));
    setIn(*pChannel, 0, window(0, 1) + "(8000,1)(144,1)");
    ASSERT_TRUE(pChannel->controller.setParamMode(1));
    told();
    seconds(2);
    EXPECT_THAT(told(), Contains("ia ch0 set 144 0 = 0"));
    EXPECT_EQ(1u, pChannel->probe.valueIn(0, KEY_DN_MODE)) << "the scheme keeps its own";
    platform::Clock::hold({2024, 5, 1, 14, 0, 0});
    seconds(2);
    EXPECT_EQ(2, pChannel->probe.curScheme());
    EXPECT_THAT(told(), Contains(HasSubstr("ia ch0 set 34 ")));
}

TEST_F(Switching, OfTwoChannelsIsIndependent) {
    ASSERT_NO_FATAL_FAILURE(layOut("thermal"));
    ASSERT_EQ(2u, modules.size());
    const auto pVisible = channel(0);
    const auto pThermal = channel(1);
    pVisible->init();
    pThermal->init();
    EXPECT_TRUE(root.exists("/mnt/mtd/code/config_file/sensor0.cfg"));
    EXPECT_TRUE(root.exists("/mnt/mtd/code/config_file/sensor-thermal0.cfg"));
    told();
    ASSERT_EQ(0, pThermal->controller.setParameter(KEY_MIRROR, 1, true));
    EXPECT_THAT(told(), ElementsAre("video ch2 2384 1 = 0", "ia ch1 set 2384 1 = 0"));
    EXPECT_TRUE(pThermal->controller.setParamScheme(1));
    EXPECT_EQ(0, pVisible->probe.curScheme());
    EXPECT_EQ(1, pThermal->probe.curScheme());
}

TEST_F(Switching, AFaultLeavesTheSchemeSwitchedAndIsLogged) {
    ASSERT_NO_FATAL_FAILURE(layOut(""));
    const auto pChannel = channel(0);
    pChannel->init();
    setIn(*pChannel, 1, "(34,20)");
    setIn(*pChannel, 0, "");
    simcam::Fault stFault;
    stFault.command = KEY_BRIGHTNESS;
    stFault.option = static_cast<int>(IA_CMD_OPT_SET);
    stFault.result = -5;
    stFault.times = 1;
    ASSERT_GT(camera.faults().add(stFault), 0);
    EXPECT_TRUE(pChannel->controller.setParamScheme(1));
    EXPECT_EQ(1, pChannel->probe.curScheme());
    EXPECT_THAT(root.errorLog(), HasSubstr("QVS_SUCCESS == setParameters(m_ppUserKeyVal[m_nCurScheme], m_nKeyValSum, "
                                           "true)   ~~~Assertion failed.\n"));
    // Recovery: the next switch back and forth applies the value.
    EXPECT_TRUE(pChannel->controller.setParamScheme(0));
    told();
    EXPECT_TRUE(pChannel->controller.setParamScheme(1));
    EXPECT_THAT(told(), ElementsAre("ia ch0 set 34 20 = 0"));
}

}  // namespace
