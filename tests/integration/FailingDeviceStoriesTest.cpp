// Stories of a device that fails: each kind of command, a driver that does not answer at all, and one that is slow.
#include "tests/integration/Story.h"

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

namespace {

class FailingDeviceStory : public Story {
protected:
    void SetUp() override { ASSERT_NO_FATAL_FAILURE(layOut("")); }

    void debugLevel(int p_nLevel) {
        world("the debug level becomes " + std::to_string(p_nLevel), [&] { root.debugLevel(p_nLevel); });
    }
};

TEST_F(FailingDeviceStory, ASetThatFailsEndsTheListAndLosesNothing) {
    const auto pChannel = channel(0);
    untold([&] { pChannel->init(); });
    fault("cmd=34 opt=set result=-5 times=1");
    EXPECT_EQ(-34, set(*pChannel, "(2353,40)(34,60)(2337,70)"));
    EXPECT_EQ(40u, pChannel->probe.valueIn(0, KEY_CONTRAST)) << "applied before";
    EXPECT_EQ(50u, pChannel->probe.valueIn(0, KEY_BRIGHTNESS)) << "not taken by the driver";
    EXPECT_EQ(50u, pChannel->probe.valueIn(0, KEY_SATURATION)) << "not reached";
    EXPECT_EQ(0, set(*pChannel, "(2353,40)(34,60)(2337,70)"));
    EXPECT_THAT(calls(), ElementsAre("ia ch0 set 34 60 = 0", "ia ch0 set 2337 70 = 0"));

    // Whose fault it is, a verbose camera says: of an unknown command, a busy or a refusing driver, but not of others.
    debugLevel(6);
    for (const char* szFault : {"cmd=34 opt=set result=-1 times=1", "cmd=34 opt=set result=-4 times=1",
                                "cmd=34 opt=set result=-5 times=1", "cmd=34 opt=set result=-3 times=1"}) {
        fault(szFault);
        EXPECT_EQ(-34, set(*pChannel, KEY_BRIGHTNESS, 61));
    }
    debugLevel(1);

    fault("cmd=34 silent=1 times=1");
    EXPECT_EQ(0, set(*pChannel, KEY_BRIGHTNESS, 62));
    EXPECT_EQ("true 62", get(*pChannel, KEY_BRIGHTNESS)) << "the set answers, not the driver";
    EXPECT_EQ(0, set(*pChannel, KEY_BRIGHTNESS, 62));
    EXPECT_THAT(calls(), IsEmpty());
    EXPECT_EQ(0, restore(*pChannel, KEY_BRIGHTNESS));
    EXPECT_THAT(calls(), ElementsAre("ia ch0 set 34 62 = 0"));
    fault("cmd=34 opt=set result=-5 times=1");
    EXPECT_EQ(-34, restore(*pChannel, KEY_BRIGHTNESS));
    fault("cmd=1536 opt=set result=-4 times=1");
    EXPECT_FALSE(host("restoreAeMode", [&] { return pChannel->controller.restoreAeMode(); }));
    EXPECT_THAT(calls(), ElementsAre("ia ch0 set 1536 0 = -4 fault 8")) << "the exposure mode is not restored";

    flush(*pChannel);
    scheme(*pChannel, 1);
    set(*pChannel, "(34,20)(2353,21)(2337,22)");
    scheme(*pChannel, 0);
    fault("cmd=2353 opt=set result=-3 times=1");
    scheme(*pChannel, 1);
    EXPECT_EQ(1, pChannel->probe.curScheme()) << "counts as switched";
    EXPECT_EQ(22u, pChannel->probe.valueIn(1, KEY_SATURATION)) << "and the scheme is as it was";
    for (const u32 nKey : {KEY_CONTRAST, KEY_SATURATION}) {
        EXPECT_EQ(0, restore(*pChannel, nKey));
    }
    EXPECT_THAT(calls(), ElementsAre("ia ch0 set 2337 22 = 0"));

    // Records, actions and what goes to the video module too.
    fault("cmd=146 opt=set result=-5 times=1");
    EXPECT_EQ(-146, set(*pChannel, KEY_NTD_THR, 60));
    fault("cmd=2384 opt=set result=-3 times=1");
    EXPECT_EQ(-2384, set(*pChannel, KEY_MIRROR, 1));
    EXPECT_EQ(0u, pChannel->probe.valueIn(1, KEY_MIRROR));
    fault("key=2384 result=5 times=1");
    EXPECT_EQ(0, set(*pChannel, KEY_MIRROR, 1)) << "a video module that refuses is only reported";
    fault("cmd=2368 opt=set result=-3 times=1");
    EXPECT_EQ(0, set(*pChannel, KEY_WDR_MODE, 1)) << "here the driver is only reported";
    fault("key=2368 result=7 times=1");
    EXPECT_EQ(-2368, set(*pChannel, KEY_WDR_MODE, 0)) << "and the video module decides";
    EXPECT_EQ(1u, pChannel->probe.valueIn(1, KEY_WDR_MODE));
    fault("key=2416 result=5 times=1");
    EXPECT_EQ(0, set(*pChannel, KEY_ANTI_SHAKE_SWITCH, 1));
    fault("cmd=9999 opt=set result=-1 times=1");
    EXPECT_EQ(-9999, set(*pChannel, static_cast<u32>(9999), 1)) << "an unknown key goes to the driver as it is";
    EXPECT_TRUE(rollback(*pChannel));
    flush(*pChannel);
    EXPECT_EQ(50u, pChannel->probe.valueIn(1, KEY_SATURATION)) << "never stored";
    uinit(*pChannel);
    expectTranscript("failing-sets");
}

TEST_F(FailingDeviceStory, AReadThatFailsIsReportedAndLeftOut) {
    const auto pChannel = channel(0);
    ISensorController& c = pChannel->controller;
    untold([&] { pChannel->init(); });
    // What stands in the set is answered without the driver.
    fault("cmd=any opt=get result=-3");
    EXPECT_EQ("true 50", get(*pChannel, KEY_BRIGHTNESS));
    EXPECT_EQ("false", get(*pChannel, KEY_MZ_POSITION));
    EXPECT_EQ("1 (34,50)(2353,50)", list(*pChannel, "(34,1568,2353)"));
    EXPECT_FALSE(host("setWhiteSwitch 1", [&] { return c.setWhiteSwitch(1); }));
    EXPECT_THAT(setsOf("ia ch0 set"), IsEmpty()) << "the infrared light could not be asked for";
    EXPECT_EQ(0u, pChannel->probe.valueIn(0, KEY_WHITE_SWITCH));
    int nOut = 7;
    int nRatio = 7;
    bool bHot = false;
    std::string strVersion = "unread";
    EXPECT_FALSE(host("getZoomValue", [&] { return c.getZoomValue(nOut, nRatio); }));
    EXPECT_EQ(7, nRatio);
    EXPECT_FALSE(host("getHeatStatus", [&] { return c.getHeatStatus(bHot); }));
    EXPECT_FALSE(host("getCameraVerInf", [&] { return c.getCameraVerInf(strVersion); }));
    EXPECT_EQ("unread", strVersion);
    EXPECT_FALSE(host("getShutterValue", [&] { return c.getShutterValue(nOut); }));
    EXPECT_FALSE(host("shutterUp", [&] { return c.shutterUp(); }));
    EXPECT_EQ(7, nOut);
    std::string strCheck = "(16,2,0)";
    EXPECT_EQ(-3, check(*pChannel, strCheck));
    EXPECT_EQ("0", strCheck) << "the record starts zeroed";
    noFaults();

    fault("cmd=2816 opt=set result=-5");
    strCheck = "(16,0,77)";
    EXPECT_EQ(-5, check(*pChannel, strCheck));
    EXPECT_EQ("(16,0,77)", strCheck);
    noFaults();
    EXPECT_EQ(0, check(*pChannel, strCheck));
    strCheck = "(16,2,0)";
    EXPECT_EQ(0, check(*pChannel, strCheck));
    EXPECT_EQ("77", strCheck);
    EXPECT_EQ("true 16384", get(*pChannel, KEY_MZ_POSITION));
    uinit(*pChannel);
    expectTranscript("failing-reads");
}

TEST_F(FailingDeviceStory, RangesThatFailLeaveTheStyleAndTheSetUsable) {
    const auto pChannel = channel(0);
    ISensorController& c = pChannel->controller;
    untold([&] { pChannel->init(); });
    fault("cmd=50 opt=range result=-3");
    EXPECT_THAT(style(*pChannel), HasSubstr("id=\"50\""));
    EXPECT_EQ("true default 0 range \"\"", range(*pChannel, 50));
    EXPECT_EQ("true default 4 range \"0 1 2 3 4 5 6 7 8 9 10\"", range(*pChannel, 1537));
    noFaults();
    fault("cmd=49 opt=range result=-3");
    EXPECT_FALSE(host("shutterDown", [&] { return c.shutterDown(); }));
    EXPECT_FALSE(host("setShutterValue 0", [&] { return c.setShutterValue(0); }));
    noFaults();

    fault("cmd=4112 result=-3");
    EXPECT_THAT(style(*pChannel), HasSubstr("id=\"50\""));
    EXPECT_EQ("false", range(*pChannel, 50));
    EXPECT_THAT(all(*pChannel), HasSubstr("(34,50)"));
    noFaults();

    // The driver corrects what another mode does not allow; where it fails, the value stays.
    set(*pChannel, "(49,7)(50,28)(2368,1)");
    fault("cmd=49 opt=correct result=-3");
    EXPECT_THAT(all(*pChannel), HasSubstr("(49,7)(50,20)"));
    noFaults();
    EXPECT_THAT(all(*pChannel), HasSubstr("(49,9)(50,20)"));
    EXPECT_EQ(9u, pChannel->probe.valueIn(0, KEY_MAX_SHUTTER)) << "in memory too";
    EXPECT_THAT(style(*pChannel), HasSubstr("id=\"50\""));
    uinit(*pChannel);
    expectTranscript("failing-ranges");
}

TEST_F(FailingDeviceStory, ActionsThatFailAreTheHostsToRepeat) {
    const auto pChannel = channel(0);
    ISensorController& c = pChannel->controller;
    untold([&] { pChannel->init(); });
    fault("cmd=1569 opt=set result=-4 times=2");
    EXPECT_FALSE(host("zoomIn", [&] { return c.zoomIn(); }));
    EXPECT_EQ(-1569, set(*pChannel, KEY_ZOOM_IN, 1));
    EXPECT_TRUE(host("zoomIn", [&] { return c.zoomIn(); }));
    EXPECT_FALSE(host("setZoomValue 30000", [&] { return c.setZoomValue(30000); })) << "the lens still moves";
    int nStatus = -1;
    fault("cmd=1568 opt=status result=-3 times=1");
    EXPECT_FALSE(host("getCmdExecStatus 1568", [&] { return c.getCmdExecStatus(1568, nStatus); }));
    EXPECT_TRUE(host("getCmdExecStatus 1568", [&] { return c.getCmdExecStatus(1568, nStatus); }));
    fault("cmd=1536 opt=set result=-3 times=1");
    EXPECT_TRUE(host("focusFar", [&] { return c.focusFar(); })) << "the mode's answer is not looked at";
    fault("cmd=1554 opt=set result=-4 times=1");
    EXPECT_FALSE(host("focusFar", [&] { return c.focusFar(); }));
    fault("cmd=16 opt=set result=-3 times=1");
    EXPECT_FALSE(host("irisUp", [&] { return c.irisUp(); }));
    EXPECT_THAT(calls(), ElementsAre("ia ch0 set 16 3 = -3 fault 5")) << "no step without the mode";
    EXPECT_TRUE(host("irisUp", [&] { return c.irisUp(); }));
    fault("cmd=1616 opt=set result=-4 times=1");
    EXPECT_EQ(-1616, set(*pChannel, KEY_LENS_RESET, 1));
    EXPECT_EQ(0, set(*pChannel, KEY_LENS_RESET, 1));
    pass(60);
    EXPECT_EQ(0, set(*pChannel, KEY_AUTO_FOCUS_ONCE, 1));
    uinit(*pChannel);
    expectTranscript("failing-actions");
}

TEST_F(FailingDeviceStory, ADriverThatDoesNotAnswerAtTheFirstStart) {
    fault("cmd=any result=-3");
    const auto pFirst = channel(0);
    EXPECT_TRUE(host("init", [&] { return pFirst->init(); }));
    EXPECT_TRUE(pFirst->controller.getSensorStatus());
    EXPECT_EQ(pFirst->probe.keyValSum(), stored("/mnt/mtd/code/config_file/sensor0.cfg").size());
    EXPECT_EQ(-34, set(*pFirst, KEY_BRIGHTNESS, 60));
    uinit(*pFirst);

    // The factory set was made without the driver's defaults and is stored like that.
    noFaults();
    const auto pChannel = channel(0);
    start(*pChannel);
    EXPECT_EQ(100u, pChannel->probe.valueIn(0, KEY_MAX_SHUTTER));
    EXPECT_THAT(calls(), Contains("ia ch0 set 49 100 = -5"));
    EXPECT_THAT(setsOf("ia ch0 set 50 "), IsEmpty());
    EXPECT_EQ(0, set(*pChannel, KEY_BRIGHTNESS, 60)) << "the controller works all the same";
    host("resetParameters", [&] { return pChannel->controller.resetParameters(); });
    EXPECT_EQ(7u, pChannel->probe.valueIn(0, KEY_MAX_SHUTTER)) << "factory settings bring the defaults";
    uinit(*pChannel);
    expectTranscript("dead-driver");
}

TEST_F(FailingDeviceStory, ASlowDeviceIsWaitedFor) {
    const auto pChannel = channel(0);
    world("the image pipeline needs four looks to come up", [&] { camera.video().setStartupPolls(3); });
    untold([&] { pChannel->init(); });
    EXPECT_NE("", style(*pChannel));
    world("the image pipeline does not come up", [&] { camera.video().setStartupPolls(1000); });
    EXPECT_NE("", style(*pChannel));
    EXPECT_EQ(970, camera.video().startupPollsLeft());
    world("the image pipeline is up", [&] { camera.video().setStartupPolls(0); });

    scheme(*pChannel, 1);
    set(*pChannel, KEY_CONTRAST, 30);
    scheme(*pChannel, 0);
    set(*pChannel, KEY_SCHEME_MODE, 2);
    mode(*pChannel, 1);
    pass(2);
    fault("cmd=153 opt=get delay=1500000");
    light("0.5");
    pass(10);
    EXPECT_EQ(1, pChannel->probe.curScheme());
    noFaults();
    light("1000");
    fault("cmd=34 opt=set delay=8000000 times=1");
    EXPECT_EQ(0, set(*pChannel, "(34,44)(2337,45)"));
    pass(2);
    uinit(*pChannel);
    expectTranscript("slow-device");
}

}  // namespace
