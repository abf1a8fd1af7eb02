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
    EXPECT_EQ("", (Window{0, 0, 24, 0}.objection()));
    EXPECT_NE("", (Window{22, 0, 6, 0}.objection()));
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
TEST(SchemeRules, AreThoseOfTheCamera) {
    Rig rig;
    MachineInfo machine;
    ASSERT_TRUE(SystemInfoParser::parseMachineInfo("/mnt/mtd/code/factory_setting/machineinfo.ini", machine));
    std::vector<ModuleConfigure> modules;
    ASSERT_TRUE(ModuleConfigureParser::parse("/hd1/moduleConfig/moduleConfig.xml", machine.getHardwareModel(),
                                             machine.getHardwareCode(), modules));
    ISensorController controller;
    controller.setChannelID(1);
    controller.setVideoStreamModule(&rig.camera().video());
    controller.init(modules.at(0));
    // One that starts at midnight, one inside another, one across midnight, which never holds; minutes beyond 59.
    const std::vector<Window> windows = {{1, 30, 2, 15}, {2, 0, 6, 70}, {22, 0, 6, 0}, {23, 15, 24, 0}};
    for (std::size_t i = 0; i < windows.size(); ++i) {
        controller.setParamScheme(static_cast<int>(i));
        controller.setParameter(8001, windows[i].nStartHour, true);
        controller.setParameter(8002, windows[i].nStartMinute, true);
        controller.setParameter(8003, windows[i].nEndHour, true);
        controller.setParameter(8004, windows[i].nEndMinute, true);
    }
    controller.setParamScheme(0);
    controller.setParameter(8000, 1, true);
    controller.setParamMode(1);
    const auto minutes = minutesInForce(windows, false);
    for (int minute = 0; minute < 24 * 60; minute += 5) {
        platform::Clock::hold({2024, 5, 1, minute / 60, minute % 60, 0});
        platform::Clock::advance(2000000);
        int scheme = -1;
        controller.getParamScheme(scheme);
        ASSERT_GE(scheme, 0);
        const auto& mine = minutes[static_cast<std::size_t>(scheme)];
        EXPECT_TRUE(
            std::any_of(mine.begin(), mine.end(),
                        [&](const auto& p_stPart) { return p_stPart.first <= minute && minute < p_stPart.second; }))
            << "minute " << minute << " scheme " << scheme;
    }
    controller.uinit();
}

}  // namespace
