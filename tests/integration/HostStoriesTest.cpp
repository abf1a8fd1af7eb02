// Stories of a host's session: looking, changing, storing, stepping the shutter; and of a dome with its lens.
#include "tests/integration/Story.h"

#include "platform/SensorZoomFocusParam.h"

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

namespace {

constexpr char kScheme0[] = "/mnt/mtd/code/config_file/sensor0.cfg";

class HostStory : public Story {
protected:
    std::string shutter(Channel& p_objChannel) {
        return host("getShutterValue", [&] {
            int nIndex = -1;
            const bool bKnown = p_objChannel.controller.getShutterValue(nIndex);
            return bKnown ? "true " + std::to_string(nIndex) : std::string("false");
        });
    }
    bool shutterTo(Channel& p_objChannel, int p_nIndex) {
        return host("setShutterValue " + std::to_string(p_nIndex),
                    [&] { return p_objChannel.controller.setShutterValue(p_nIndex); });
    }
    bool shutterUp(Channel& p_objChannel) {
        return host("shutterUp", [&] { return p_objChannel.controller.shutterUp(); });
    }
    bool shutterDown(Channel& p_objChannel) {
        return host("shutterDown", [&] { return p_objChannel.controller.shutterDown(); });
    }
    int flushed(Channel& p_objChannel) {
        return host("flush", [&] { return p_objChannel.controller.flush(); });
    }
    std::string zoom(Channel& p_objChannel) {
        return host("getZoomValue", [&] {
            int nPosition = -1;
            int nRatio = -1;
            const bool bRead = p_objChannel.controller.getZoomValue(nPosition, nRatio);
            return bRead ? "true position " + std::to_string(nPosition) + " ratio " + std::to_string(nRatio)
                         : std::string("false");
        });
    }
    std::string status(Channel& p_objChannel, int p_nCmd) {
        return host("getCmdExecStatus " + std::to_string(p_nCmd), [&] {
            int nStatus = -1;
            const bool bRead = p_objChannel.controller.getCmdExecStatus(p_nCmd, nStatus);
            return bRead ? "true " + std::to_string(nStatus) : std::string("false");
        });
    }
};

TEST_F(HostStory, LooksChangesStoresAndSendsAgain) {
    ASSERT_NO_FATAL_FAILURE(layOut(""));
    const auto pChannel = channel(0);
    untold([&] { pChannel->init(); });
    EXPECT_THAT(all(*pChannel), HasSubstr("(34,50)"));
    // From the set; from the driver; infrared keys without the driver; a piece that is no number is key 0.
    EXPECT_EQ("1 (34,50)(2353,50)(1568,16384)(34,50)", list(*pChannel, "(34,2353,1568,34)"));
    EXPECT_EQ("1 (34,50)", list(*pChannel, "(34,abc)"));
    EXPECT_EQ("0", list(*pChannel, "34,2353"));
    EXPECT_EQ("0", list(*pChannel, "()"));

    set(*pChannel, "(34,61)(2353,62)(16,1)");
    EXPECT_EQ("1 (34,61)(16,1)", list(*pChannel, "(34,16)"));
    EXPECT_EQ(50u, valueOf(stored(kScheme0), KEY_BRIGHTNESS)) << "not before it is stored";
    EXPECT_EQ(0, flushed(*pChannel));
    EXPECT_EQ(61u, valueOf(stored(kScheme0), KEY_BRIGHTNESS));

    // A window that cannot be: nothing is stored, and the memory keeps what was set.
    set(*pChannel, "(34,63)(8001,8)(8002,0)(8003,24)(8004,1)");
    EXPECT_EQ(506, flushed(*pChannel));
    set(*pChannel, "(8001,22)(8003,6)(8004,0)");
    EXPECT_EQ(507, flushed(*pChannel));
    set(*pChannel, "(8001,24)(8002,1)");
    EXPECT_EQ(505, flushed(*pChannel));
    EXPECT_EQ(505, host("paramCheck", [&] { return pChannel->controller.paramCheck(); }));
    EXPECT_EQ(61u, valueOf(stored(kScheme0), KEY_BRIGHTNESS));
    EXPECT_EQ("true 63", get(*pChannel, KEY_BRIGHTNESS));
    set(*pChannel, "(8001,8)(8002,0)(8003,24)(8004,0)");
    EXPECT_EQ(0, flushed(*pChannel));
    EXPECT_EQ(63u, valueOf(stored(kScheme0), KEY_BRIGHTNESS));

    // The lens lost its mode behind the controller's back.
    host("focusNear", [&] { return pChannel->controller.focusNear(); });
    host("irisDown", [&] { return pChannel->controller.irisDown(); });
    EXPECT_TRUE(host("restoreAeMode", [&] { return pChannel->controller.restoreAeMode(); }));
    EXPECT_THAT(calls(), ElementsAre("ia ch0 set 1536 0 = 0", "ia ch0 set 16 1 = 0"));
    EXPECT_EQ(0, restore(*pChannel, KEY_BRIGHTNESS));
    EXPECT_THAT(calls(), ElementsAre("ia ch0 set 34 63 = 0"));
    EXPECT_EQ(-1, restore(*pChannel, KEY_MZ_POSITION)) << "stands in no scheme";

    EXPECT_TRUE(host("setMirrorMode 1", [&] { return pChannel->controller.setMirrorMode(1); }));
    EXPECT_EQ(1u, valueOf(stored(kScheme0), KEY_MIRROR)) << "stored at once";
    int nOn = 1;
    EXPECT_TRUE(host("setBeaway 1", [&] { return pChannel->controller.setBeaway(nOn); }));
    EXPECT_THAT(calls(), ElementsAre("video ch1 2384 2 = 0", "video ch1 2385 1 = 0", "ia ch0 set 2384 2 = 0",
                                     "ia ch0 set 2385 1 = 0"));
    EXPECT_EQ("true 1", get(*pChannel, KEY_MIRROR)) << "the setting is not what is sent";
    EXPECT_TRUE(host("setWhiteSwitch 1", [&] { return pChannel->controller.setWhiteSwitch(1); }));
    EXPECT_THAT(calls(), ElementsAre("ia ch0 get 160 -> 1 = 0", "ia ch0 set 160 0 = 0", "ia ch0 set 168 1 = 0"));

    // Intelligent light: the twins count, and what is set through them stands under both.
    set(*pChannel, "(224,2)(161,0)(168,2)(200,33)");
    EXPECT_EQ("1 (161,2)(168,2)(163,33)(200,33)", list(*pChannel, "(161,168,163,200)"));
    std::string strCheck = "(16,0,77)";
    EXPECT_EQ(0, check(*pChannel, strCheck));
    strCheck = "(16,2,0)";
    EXPECT_EQ(0, check(*pChannel, strCheck));
    EXPECT_EQ("77", strCheck);
    strCheck = "(16,2)";
    EXPECT_EQ(0, check(*pChannel, strCheck));
    EXPECT_THAT(calls(), IsEmpty());
    EXPECT_EQ(0, flushed(*pChannel));
    uinit(*pChannel);
    EXPECT_EQ("false", get(*pChannel, KEY_BRIGHTNESS)) << "no longer initialised";
    expectTranscript("host-session");
}

TEST_F(HostStory, StepsTheShutterAlongTheListOfTheMoment) {
    ASSERT_NO_FATAL_FAILURE(layOut(""));
    const auto pChannel = channel(0);
    untold([&] { pChannel->init(); });
    EXPECT_EQ("true 0", shutter(*pChannel));
    EXPECT_TRUE(shutterDown(*pChannel));
    EXPECT_THAT(setsOf("ia ch0 set"), IsEmpty()) << "the first of the list is in force already";
    EXPECT_TRUE(shutterUp(*pChannel));
    EXPECT_THAT(setsOf("ia ch0 set"), ElementsAre("ia ch0 set 49 8 = 0"));
    EXPECT_TRUE(shutterTo(*pChannel, 11));
    EXPECT_THAT(setsOf("ia ch0 set"), ElementsAre("ia ch0 set 49 18 = 0"));
    EXPECT_EQ("true 11", shutter(*pChannel));

    int nOn = 1;
    host("setWDRSwitch 1", [&] { return pChannel->controller.setWDRSwitch(nOn); });
    EXPECT_EQ("true default 9 range \"9 10 11 12 13 14 15 16 17 18 19 20\"", range(*pChannel, 49));
    EXPECT_EQ("false", range(*pChannel, 34));
    EXPECT_EQ("true 9", shutter(*pChannel)) << "the same shutter, another list";
    EXPECT_TRUE(shutterTo(*pChannel, 11));
    EXPECT_TRUE(shutterUp(*pChannel)) << "at the end";
    EXPECT_THAT(setsOf("ia ch0 set"), IsEmpty());
    EXPECT_FALSE(shutterTo(*pChannel, 12));
    EXPECT_FALSE(shutterTo(*pChannel, -1));
    EXPECT_TRUE(shutterDown(*pChannel));
    EXPECT_EQ("true 19", get(*pChannel, KEY_MAX_SHUTTER));

    // A stored shutter that the mode does not allow: the driver uses the nearest, the scheme is corrected when read.
    set(*pChannel, KEY_MAX_SHUTTER, 28);
    EXPECT_EQ("true 11", shutter(*pChannel));
    EXPECT_EQ("true 28", get(*pChannel, KEY_MAX_SHUTTER));
    EXPECT_THAT(all(*pChannel), HasSubstr("(49,20)"));
    EXPECT_EQ("true 20", get(*pChannel, KEY_MAX_SHUTTER));
    EXPECT_EQ(0, flushed(*pChannel));
    uinit(*pChannel);
    expectTranscript("shutter");
}

TEST_F(HostStory, OfACameraWithItsOwnShutterChoicesReadsWhatIsStored) {
    ASSERT_NO_FATAL_FAILURE(layOut("plate"));
    const auto pChannel = channel(0);
    untold([&] { pChannel->init(); });
    set(*pChannel, "(34,61)(49,20)");
    EXPECT_THAT(all(*pChannel), HasSubstr("(34,50)")) << "the file, not the memory";
    EXPECT_THAT(calls(), IsEmpty()) << "and nothing to correct";
    EXPECT_EQ(0, flushed(*pChannel));
    EXPECT_THAT(all(*pChannel), HasSubstr("(34,61)"));
    EXPECT_THAT(style(*pChannel), HasSubstr("index=\"26\"")) << "the choices are the style's";
    scheme(*pChannel, 4);
    EXPECT_EQ("", all(*pChannel)) << "the factory scheme has no file";
    uinit(*pChannel);
    expectTranscript("plate-host");
}

TEST_F(HostStory, OfADomeMovesItsLensAndKeepsItStill) {
    ASSERT_NO_FATAL_FAILURE(layOut("dome"));
    const auto pChannel = channel(0);
    ISensorController& c = pChannel->controller;
    start(*pChannel);
    EXPECT_NE("", style(*pChannel));
    pass(60);
    EXPECT_EQ("true position 16384 ratio 1000", zoom(*pChannel));
    host("setPTZRunState 1", [&] { return c.setPTZRunState(1); });
    host("zoomIn", [&] { return c.zoomIn(); });
    EXPECT_EQ("true 1", status(*pChannel, 1569));
    host("setPTZRunState 0", [&] { return c.setPTZRunState(0); });
    pass(30);
    EXPECT_EQ("true 0", status(*pChannel, 1569));
    EXPECT_TRUE(host("setZoomValue 20000", [&] { return c.setZoomValue(20000); }));
    pass(30);
    EXPECT_EQ("true position 20000 ratio 1442", zoom(*pChannel));
    set(*pChannel, KEY_ZOOM_OUT, 2);
    pass(30);
    zoom(*pChannel);
    host("focusNear", [&] { return c.focusNear(); });
    host("irisUp", [&] { return c.irisUp(); });
    host("setIrisValue 100", [&] { return c.setIrisValue(100); });
    EXPECT_THAT(calls(), ElementsAre("ia ch0 set 16 3 = 0", "ia ch0 set 82 256 = 0"));
    host("setIrisValue 25601", [&] { return c.setIrisValue(25601); });
    EXPECT_THAT(calls(), ElementsAre("ia ch0 set 16 3 = 0", "ia ch0 set 82 1048576 = 0"));
    pass(10);

    // A switch moves nothing, even when an action stood in the list of the host.
    set(*pChannel, "(34,70)(1539,1)(1616,1)");
    pass(60);
    scheme(*pChannel, 1);
    EXPECT_THAT(calls(), ElementsAre("ia ch0 set 34 50 = 0"));
    scheme(*pChannel, 0);
    EXPECT_THAT(calls(), ElementsAre("ia ch0 set 34 70 = 0"));

    SensorZoomFocusParam objLock;
    objLock.setLockZoomFocusEnable(true);
    host("setSensorZoomFocusParam, locked", [&] { return c.setSensorZoomFocusParam(objLock); });
    EXPECT_TRUE(host("zoomIn", [&] { return c.zoomIn(); }));
    EXPECT_THAT(calls(), IsEmpty()) << "succeeds and does not move";
    EXPECT_EQ(0, set(*pChannel, "(1569,1)(34,71)(1536,1)"));
    EXPECT_THAT(calls(), ElementsAre("ia ch0 set 34 71 = 0"));
    EXPECT_EQ("true 1", get(*pChannel, KEY_AUTO_FOCUS_MODE)) << "recorded all the same";
    EXPECT_TRUE(host("setPTZRunState 1", [&] { return c.setPTZRunState(1); }));
    EXPECT_THAT(calls(), ElementsAre("ia ch0 set 1632 1 = 0")) << "not the lens";
    objLock.setLockZoomFocusEnable(false);
    host("setSensorZoomFocusParam, free", [&] { return c.setSensorZoomFocusParam(objLock); });
    EXPECT_EQ(0, restore(*pChannel, KEY_AUTO_FOCUS_MODE));
    EXPECT_THAT(calls(), ElementsAre("ia ch0 set 1536 1 = 0"));

    world("it becomes -30 degrees cold", [&] { camera.scene().setAmbientTemperature(-30); });
    pass(3600);
    EXPECT_EQ("true 1", host("getHeatStatus", [&] {
                  bool bHot = false;
                  return c.getHeatStatus(bHot) ? "true " + std::to_string(bHot ? 1 : 0) : std::string("false");
              }));
    flushed(*pChannel);
    uinit(*pChannel);
    expectTranscript("dome");
}

}  // namespace
