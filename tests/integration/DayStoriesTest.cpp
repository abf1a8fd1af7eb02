// Stories of whole days: a camera whose schemes follow the clock, or day and night, from midnight to midnight.
#include "tests/integration/Story.h"

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class DayStory : public Story {
protected:
    static std::string window(int p_nStartHour, int p_nStartMinute, int p_nEndHour, int p_nEndMinute) {
        return "(8001," + std::to_string(p_nStartHour) + ")(8002," + std::to_string(p_nStartMinute) + ")(8003," +
               std::to_string(p_nEndHour) + ")(8004," + std::to_string(p_nEndMinute) + ")";
    }

    // Lets the time pass to the second before a moment and to the moment, and expects the schemes at both.
    void expectSwitch(Channel& p_objChannel, int p_nHour, int p_nMinute, int p_nBefore, int p_nThen) {
        const int nMinuteOfDay = (p_nHour * 60 + p_nMinute + 24 * 60 - 1) % (24 * 60);
        until(nMinuteOfDay / 60, nMinuteOfDay % 60, 59);
        EXPECT_EQ(p_nBefore, p_objChannel.probe.curScheme()) << "a second before " << p_nHour << ":" << p_nMinute;
        until(p_nHour, p_nMinute);
        EXPECT_EQ(p_nThen, p_objChannel.probe.curScheme()) << "at " << p_nHour << ":" << p_nMinute;
    }

    void wholeDay(Channel& p_objChannel) {
        for (int nHour = 1; nHour <= 24; ++nHour) {
            until(nHour % 24, 0);
            int nScheme = -1;
            p_objChannel.controller.getParamScheme(nScheme);
            vecSchemes.push_back(nScheme);
        }
    }

    std::vector<int> vecSchemes;  // at each full hour
};

TEST_F(DayStory, OfACameraThatFollowsTheClock) {
    ASSERT_NO_FATAL_FAILURE(layOut(""));
    const auto pChannel = channel(0);
    untold([&] { pChannel->init(); });
    scheme(*pChannel, 1);
    set(*pChannel, window(6, 0, 8, 0) + "(34,21)(2353,41)");
    flush(*pChannel);
    scheme(*pChannel, 2);
    set(*pChannel, window(8, 0, 18, 30) + "(34,22)(2384,1)");
    flush(*pChannel);
    scheme(*pChannel, 3);
    set(*pChannel, window(18, 0, 22, 0) + "(34,23)(144,2)");
    flush(*pChannel);
    scheme(*pChannel, 0);
    set(*pChannel, window(22, 0, 6, 0) + "(8000,1)");
    EXPECT_EQ(507, host("flush", [&] { return pChannel->controller.flush(); })) << "a window across midnight";
    set(*pChannel, window(22, 0, 24, 0));
    flush(*pChannel);
    setClock(0, 0);
    mode(*pChannel, 1);

    until(5, 59, 59);
    EXPECT_EQ(0, pChannel->probe.curScheme()) << "no window: the fallback";
    until(6, 0);
    EXPECT_EQ(1, pChannel->probe.curScheme());
    expectSwitch(*pChannel, 8, 0, 1, 2);
    until(10, 0);
    set(*pChannel, KEY_BRIGHTNESS, 66);
    until(12, 0);
    scheme(*pChannel, 3);
    EXPECT_EQ(3, pChannel->probe.curScheme());
    pass(1);
    EXPECT_EQ(2, pChannel->probe.curScheme()) << "the next cycle decides anew";
    until(14, 0);
    mode(*pChannel, 0);
    scheme(*pChannel, 1);
    until(15, 0);
    EXPECT_EQ(1, pChannel->probe.curScheme()) << "the host's choice stands";
    mode(*pChannel, 1);
    until(18, 0);
    EXPECT_EQ(2, pChannel->probe.curScheme()) << "of two windows the lower scheme's counts";
    expectSwitch(*pChannel, 18, 30, 2, 3);
    expectSwitch(*pChannel, 22, 0, 3, 0);
    until(0, 0);
    EXPECT_THAT(calls(), IsEmpty());
    expectSwitch(*pChannel, 6, 0, 0, 1);
    until(8, 0);
    EXPECT_THAT(calls(), testing::Contains("ia ch0 set 34 66 = 0")) << "what was set yesterday stays in its scheme";
    EXPECT_EQ(22u, valueOf(stored("/mnt/mtd/code/config_file/sensor2.cfg"), KEY_BRIGHTNESS)) << "and is not stored";
    uinit(*pChannel);
    expectTranscript("day-by-clock");
}

TEST_F(DayStory, OfACameraThatFollowsDayAndNight) {
    ASSERT_NO_FATAL_FAILURE(layOut(""));
    const auto pChannel = channel(0);
    untold([&] { pChannel->init(); });
    world("the sun rises at 06:00 and sets at 20:00", [&] { camera.scene().followDay({}); });
    scheme(*pChannel, 1);
    set(*pChannel, "(34,30)(2308,0)");
    flush(*pChannel);
    scheme(*pChannel, 0);
    set(*pChannel, KEY_SCHEME_MODE, 2);
    set(*pChannel, KEY_DTN_THR, 15);
    EXPECT_THAT(calls(), ElementsAre("ia ch0 set 145 15 40 0 = 0"));
    EXPECT_EQ(15u, pChannel->probe.valueIn(1, KEY_DTN_THR)) << "night follows the thresholds of day";
    flush(*pChannel);
    setClock(0, 0);
    mode(*pChannel, 1);
    wholeDay(*pChannel);
    EXPECT_THAT(vecSchemes, ElementsAre(1, 1, 1, 1, 1, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 1, 1, 1, 1));

    set(*pChannel, KEY_DTN_THR, 25);
    EXPECT_THAT(setsOf("ia ch0 set"), IsEmpty()) << "at night the thresholds are only recorded";
    EXPECT_EQ(25u, pChannel->probe.valueIn(1, KEY_DTN_THR));
    EXPECT_EQ(15u, pChannel->probe.valueIn(0, KEY_DTN_THR));
    fault("cmd=153 opt=get result=-3 times=60");
    pass(1);
    EXPECT_EQ(0, pChannel->probe.curScheme()) << "a driver that does not answer counts as day";
    pass(59);
    EXPECT_EQ(0, pChannel->probe.curScheme());
    pass(1);
    EXPECT_EQ(1, pChannel->probe.curScheme());
    EXPECT_EQ("", root.errorLog());
    uinit(*pChannel);
    expectTranscript("day-by-light");
}

class PlateStory : public DayStory {};

TEST_F(PlateStory, OfADayWithWindowsAndTheFallbackBetweenThem) {
    ASSERT_NO_FATAL_FAILURE(layOut("plate"));
    const auto pChannel = channel(0);
    start(*pChannel);
    ASSERT_TRUE(pChannel->probe.isLPRDevice());
    world("the sun rises at 07:00 and sets at 20:00", [&] {
        simcam::DayCurve stCurve;
        stCurve.sunriseMinute = 7 * 60;
        camera.scene().followDay(stCurve);
    });
    scheme(*pChannel, 1);
    set(*pChannel, window(6, 0, 9, 0));
    flush(*pChannel);
    scheme(*pChannel, 2);
    set(*pChannel, window(9, 0, 12, 0) + "(34,55)(144,2)");
    flush(*pChannel);
    scheme(*pChannel, 3);
    set(*pChannel, window(14, 0, 16, 0) + "(34,56)(144,1)");
    flush(*pChannel);
    scheme(*pChannel, 0);
    set(*pChannel, window(0, 0, 1, 0) + "(8000,1)(144,1)");
    flush(*pChannel);
    setClock(0, 0);
    mode(*pChannel, 1);

    until(0, 0, 1);
    EXPECT_THAT(calls(), testing::Contains("ia ch0 set 144 1 = 0")) << "into the first window with every key";
    until(0, 59, 59);
    EXPECT_EQ(0, pChannel->probe.curScheme());
    until(1, 0);
    EXPECT_THAT(calls(), testing::Contains("ia ch0 set 144 0 = 0")) << "out of it the driver decides day and night";
    until(5, 59, 59);
    EXPECT_EQ(1, pChannel->probe.curScheme()) << "night";
    EXPECT_EQ(0u, pChannel->probe.lastSchedule());
    until(6, 0);
    EXPECT_EQ(1, pChannel->probe.curScheme());
    EXPECT_THAT(calls(), testing::Contains("ia ch0 set 34 50 = 0")) << "the same scheme, and every key again";
    EXPECT_EQ(1u, pChannel->probe.lastSchedule());
    expectSwitch(*pChannel, 9, 0, 1, 2);
    EXPECT_THAT(setsOf("ia ch0 set 34 "), ElementsAre("ia ch0 set 34 55 = 0"));
    EXPECT_THAT(setsOf("ia ch0 set 2353 "), IsEmpty()) << "from window to window only what differs";
    until(11, 59, 59);
    EXPECT_EQ(2, pChannel->probe.curScheme());
    until(12, 0);
    EXPECT_EQ(1, pChannel->probe.curScheme()) << "the window had forced night upon the driver";
    until(13, 59, 59);
    EXPECT_EQ(0, pChannel->probe.curScheme()) << "it is day";
    EXPECT_EQ(1u, pChannel->probe.valueIn(0, KEY_DN_MODE)) << "the scheme keeps its own mode";
    until(14, 0);
    EXPECT_EQ(3, pChannel->probe.curScheme());
    EXPECT_THAT(calls(), testing::Contains("ia ch0 set 144 1 = 0"));
    expectSwitch(*pChannel, 16, 0, 3, 0);
    EXPECT_THAT(calls(), testing::Contains("ia ch0 set 144 0 = 0"));
    until(19, 0);
    EXPECT_EQ(0, pChannel->probe.curScheme());
    until(21, 0);
    EXPECT_EQ(1, pChannel->probe.curScheme());
    until(0, 0);
    EXPECT_EQ(0, pChannel->probe.curScheme());
    uinit(*pChannel);
    expectTranscript("plate-day");
}

TEST_F(PlateStory, OfACameraWithInfraredLightOfLimitedPower) {
    ASSERT_NO_FATAL_FAILURE(layOut("plate-limited"));
    const auto pChannel = channel(0);
    start(*pChannel);
    ASSERT_TRUE(pChannel->probe.limitedIrPower());
    EXPECT_EQ(0, set(*pChannel, KEY_IR_MANUAL_STRG_FAR, 50));
    EXPECT_EQ(-34, set(*pChannel, "(34,40)(163,51)(2353,45)"));
    EXPECT_EQ(40u, pChannel->probe.valueIn(0, KEY_BRIGHTNESS)) << "what came before stays";
    EXPECT_EQ(50u, pChannel->probe.valueIn(0, KEY_CONTRAST)) << "what comes after is not looked at";
    EXPECT_EQ(0, set(*pChannel, "(34,41)(167,49)(163,51)(2353,45)"));
    EXPECT_EQ(-167, set(*pChannel, KEY_IR_MANUAL_STRG_FAR, 50));
    EXPECT_EQ(49u, pChannel->probe.valueIn(0, KEY_IR_MANUAL_STRG_FAR));
    flush(*pChannel);
    uinit(*pChannel);
    expectTranscript("limited-power");
}

}  // namespace
