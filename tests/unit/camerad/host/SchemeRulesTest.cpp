#include "apps/camerad/host/SchemeRules.h"

#include "platform/Clock.h"
#include "platform/MachineInfo.h"
#include "sensor/ISensorController.h"
#include "tests/unit/camerad/host/Rig.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using camerad::minutesInForce;
using camerad::Window;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Pair;

namespace {

TEST(SchemeRules, AWindowStartsBeforeItEndsOnOneDay) {
    EXPECT_EQ(0, (Window{0, 0, 24, 0}.check()));
    EXPECT_EQ(0, (Window{8, 75, 9, 0}.check()));
    EXPECT_EQ(505, (Window{24, 1, 24, 0}.check()));
    EXPECT_EQ(505, (Window{-1, 0, 24, 0}.check()));
    EXPECT_EQ(506, (Window{8, 0, 24, 1}.check()));
    EXPECT_EQ(507, (Window{22, 0, 6, 0}.check()));
    EXPECT_EQ(507, (Window{0, 0, 0, 0}.check()));
    EXPECT_EQ("", (Window{0, 0, 24, 0}.objection(false)));
    EXPECT_THAT((Window{22, 0, 6, 0}.objection(false)), HasSubstr("or leave the night to scheme 0"));
    EXPECT_THAT((Window{22, 0, 6, 0}.objection(true)), HasSubstr("or leave the night to day and night"));
}

TEST(SchemeRules, TheFirstWindowWinsAndSchemeZeroTakesTheRest) {
    const auto minutes = minutesInForce({{6, 0, 8, 0}, {7, 0, 13, 0}, {12, 0, 12, 30}}, false);
    EXPECT_THAT(minutes[0], ElementsAre(Pair(0, 480), Pair(780, 1440)));
    EXPECT_THAT(minutes[1], ElementsAre(Pair(480, 780)));
    EXPECT_THAT(minutes[2], IsEmpty());
}

TEST(SchemeRules, WithGapsNobodyTakesTheRest) {
    const auto minutes = minutesInForce({{6, 0, 8, 0}, {22, 0, 6, 0}}, true);
    EXPECT_THAT(minutes[0], ElementsAre(Pair(360, 480)));
    EXPECT_THAT(minutes[1], IsEmpty());
    EXPECT_THAT(minutesInForce({}, false), IsEmpty());
}

// The rule against the camera's own: a controller on a held clock that switches by itself.
void expectTheCamerasOwn(Rig& p_objRig, const std::vector<Window>& p_vecWindows, bool p_bGaps, int p_nInGaps) {
    MachineInfo machine;
    ASSERT_TRUE(SystemInfoParser::parseMachineInfo("/mnt/mtd/code/factory_setting/machineinfo.ini", machine));
    std::vector<ModuleConfigure> modules;
    ASSERT_TRUE(ModuleConfigureParser::parse("/hd1/moduleConfig/moduleConfig.xml", machine.getHardwareModel(),
                                             machine.getHardwareCode(), modules));
    ISensorController controller;
    controller.setChannelID(1);
    controller.setVideoStreamModule(&p_objRig.camera().video());
    controller.init(modules.at(0));
    for (std::size_t i = 0; i < p_vecWindows.size(); ++i) {
        controller.setParamScheme(static_cast<int>(i));
        controller.setParameter(8001, p_vecWindows[i].nStartHour, true);
        controller.setParameter(8002, p_vecWindows[i].nStartMinute, true);
        controller.setParameter(8003, p_vecWindows[i].nEndHour, true);
        controller.setParameter(8004, p_vecWindows[i].nEndMinute, true);
    }
    controller.setParamScheme(0);
    controller.setParameter(8000, 1, true);
    controller.setParamMode(1);
    platform::Clock::advance(60000000);  // until day and night are settled
    const auto minutes = minutesInForce(p_vecWindows, p_bGaps);
    for (int minute = 0; minute < camerad::kMinutesOfDay; minute += 5) {
        platform::Clock::hold({2024, 5, 1, minute / 60, minute % 60, 0});
        platform::Clock::advance(2000000);
        int expected = p_nInGaps;
        for (std::size_t i = 0; i < minutes.size(); ++i) {
            for (const auto& [nStart, nEnd] : minutes[i]) {
                expected = nStart <= minute && minute < nEnd ? static_cast<int>(i) : expected;
            }
        }
        int scheme = -1;
        controller.getParamScheme(scheme);
        EXPECT_EQ(expected, scheme) << "minute " << minute;
    }
    controller.uinit();
}

TEST(SchemeRules, AreThoseOfTheCamera) {
    Rig rig;
    // One that starts at midnight, one inside another, one across midnight, which never holds; minutes beyond 59.
    expectTheCamerasOwn(rig, {{1, 30, 2, 15}, {2, 0, 6, 70}, {22, 0, 6, 0}, {23, 15, 24, 0}}, false, -1);
}

// Windows that leave a gap before, between and behind them; the third is the only one that is neither of day nor night.
const std::vector<Window> kWithGaps = {{6, 0, 8, 0}, {9, 30, 11, 0}, {12, 0, 14, 0}, {22, 0, 6, 0}};

TEST(SchemeRules, AreThoseOfACameraForNumberPlatesByDay) {
    Rig rig("plate");
    rig.camera().scene().setLight(20000.0);
    expectTheCamerasOwn(rig, kWithGaps, true, 0);
}

TEST(SchemeRules, AreThoseOfACameraForNumberPlatesByNight) {
    Rig rig("plate");
    rig.camera().scene().setLight(0.1);
    expectTheCamerasOwn(rig, kWithGaps, true, 1);
}

}  // namespace
