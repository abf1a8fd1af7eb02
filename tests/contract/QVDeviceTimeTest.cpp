#include "platform/QVDeviceTime.h"

#include "platform/Clock.h"
#include "tests/contract/OnDevice.h"

#include <gtest/gtest.h>

using platform::Clock;

namespace {

class QVDeviceTimeTest : public OnDevice {};

TEST_F(QVDeviceTimeTest, ShowsTheHeldClock) {
    Clock::hold({2023, 7, 9, 22, 15, 48});
    const DeviceTime stNow = QVDeviceTime::getCurrentTime();
    EXPECT_EQ(stNow.year, 2023);
    EXPECT_EQ(stNow.month, 7);
    EXPECT_EQ(stNow.day, 9);
    EXPECT_EQ(stNow.hour, 22);
    EXPECT_EQ(stNow.minute, 15);
    EXPECT_EQ(stNow.second, 48);
}

TEST_F(QVDeviceTimeTest, FollowsTheMovesOfTheClock) {
    EXPECT_TRUE(Clock::advance((3600 + 61) * kSecond));
    const DeviceTime stNow = QVDeviceTime::getCurrentTime();
    EXPECT_EQ(stNow.hour, 13);
    EXPECT_EQ(stNow.minute, 1);
    EXPECT_EQ(stNow.second, 1);
}

TEST_F(QVDeviceTimeTest, IsTheClocksTimeWhenItIsReal) {
    Clock::release();
    platform::CivilTime stBefore;
    DeviceTime stNow = {};
    platform::CivilTime stAfter;
    do {  // again when the second changed meanwhile
        stBefore = Clock::civilTime();
        stNow = QVDeviceTime::getCurrentTime();
        stAfter = Clock::civilTime();
    } while (stBefore.second != stAfter.second);
    EXPECT_EQ(stNow.year, stBefore.year);
    EXPECT_EQ(stNow.month, stBefore.month);
    EXPECT_EQ(stNow.day, stBefore.day);
    EXPECT_EQ(stNow.hour, stBefore.hour);
    EXPECT_EQ(stNow.minute, stBefore.minute);
    EXPECT_EQ(stNow.second, stBefore.second);
}

}  // namespace
