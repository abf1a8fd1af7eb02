#include "apps/sensorctl/ClockText.h"

#include "apps/sensorctl/Shared.h"

#include <gtest/gtest.h>

namespace sensorctl {
namespace {

const platform::CivilTime kToday{2024, 5, 1, 12, 30, 15};

TEST(ClockText, ATimeAloneIsToday) {
    EXPECT_EQ(clockText(parseClock("18:05", kToday)), "2024-05-01 18:05:00");
    EXPECT_EQ(clockText(parseClock("00:00:59", kToday)), "2024-05-01 00:00:59");
}

TEST(ClockText, ADateMayStandBeforeTheTime) {
    EXPECT_EQ(clockText(parseClock("2023-12-31 23:59:58", kToday)), "2023-12-31 23:59:58");
    EXPECT_EQ(clockText(parseClock("2024-02-29 06:00", kToday)), "2024-02-29 06:00:00");
}

TEST(ClockText, AnythingElseIsRefused) {
    for (const char* text : {"",
                             "noon",
                             "24:00",
                             "12:60",
                             "12:00:60",
                             "1:00",
                             "12:00:0",
                             "12-00",
                             "2024-13-01 12:00",
                             "2024-00-01 12:00",
                             "2023-02-29 12:00",
                             "2100-02-29 12:00",
                             "2024-04-31 12:00",
                             "2024-05-00 12:00",
                             "1969-12-31 12:00",
                             "2024-05-01",
                             "2024-05-01  12:00",
                             "24-05-01 12:00",
                             "12:00 ",
                             " 12:00",
                             "-1:00",
                             "2024-05-01 "}) {
        EXPECT_THROW(parseClock(text, kToday), CommandError) << text;
    }
}

}  // namespace
}  // namespace sensorctl
