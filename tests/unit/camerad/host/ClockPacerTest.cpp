#include "apps/camerad/host/ClockPacer.h"

#include "apps/camerad/host/HostLog.h"
#include "tests/unit/camerad/host/Rig.h"

#include <gtest/gtest.h>

using camerad::ClockPacer;
using camerad::parseTime;

namespace {

TEST(ClockPacer, ReadsDatesThatExist) {
    for (const char* good :
         {"1970-01-01T00:00:00", "2099-12-31T23:59:59", "2024-02-29T12:00:00", "2000-02-29T12:00:00"}) {
        EXPECT_EQ(good, camerad::timeText(parseTime(good)));
    }
    for (const char* bad : {"", "now", "1969-12-31T23:59:59", "2100-01-01T00:00:00", "2023-02-29T12:00:00",
                            "2024-13-01T00:00:00", "2024-00-01T00:00:00", "2024-04-31T00:00:00", "2024-01-00T00:00:00",
                            "2024-01-01T24:00:00", "2024-01-01T00:60:00", "2024-01-01T00:00:60", "2024-01-01T00:00:00Z",
                            "2024-01-01 00:00:00", "2024-1-01T00:00:000", "+024-01-01T00:00:00"}) {
        EXPECT_EQ(camerad::Refusal::Kind::BadValue, refusalOf([&] { parseTime(bad); }).kind()) << bad;
    }
}

TEST(ClockPacer, TellsASimulatedClockOnceASecond) {
    TestRoot root;
    std::mutex mutex;
    std::vector<camerad::ClockView> told;
    ClockPacer pacer([&](const camerad::ClockView& p_stView) {
        const std::lock_guard lock(mutex);
        told.push_back(p_stView);
    });
    pacer.set(true, "2024-05-01T00:00:00", 60);
    EXPECT_TRUE(eventually([&] {
        const std::lock_guard lock(mutex);
        return told.size() >= 3;
    }));
    const std::lock_guard lock(mutex);
    EXPECT_EQ("2024-05-01T00:00:00", told[0].strTime);
    EXPECT_GE(told[1].strTime, "2024-05-01T00:00:05");  // a minute, or a tenth of one where all steps came late
    EXPECT_EQ(60, told[1].nSpeed);
}

TEST(ClockPacer, AStandingClockStands) {
    TestRoot root;
    ClockPacer pacer([](const camerad::ClockView&) {});
    pacer.set(true, "2024-05-01T00:00:00", 7200);
    EXPECT_TRUE(eventually([&] { return pacer.view().strTime > "2024-05-01T00:10:00"; }));
    pacer.set(true, "", 0);
    const std::string stands = pacer.view().strTime;
    const INT64 micro = platform::Clock::monotonicMicroseconds();
    pacer.set(true, "", 0);
    EXPECT_EQ(stands, pacer.view().strTime);
    EXPECT_EQ(micro, platform::Clock::monotonicMicroseconds());
}

}  // namespace
