#include "platform/Clock.h"

#include "platform/GThread.h"
#include "platform/VelmorTime.h"
#include "tests/contract/OnDevice.h"
#include "tests/contract/ThreadSteps.h"

#include <gtest/gtest.h>

#include <atomic>
#include <cstdlib>
#include <ctime>
#include <memory>
#include <ostream>
#include <thread>
#include <vector>

using platform::CivilTime;
using platform::Clock;

namespace platform {

static bool operator==(const CivilTime& p_stLeft, const CivilTime& p_stRight) {
    return p_stLeft.year == p_stRight.year && p_stLeft.month == p_stRight.month && p_stLeft.day == p_stRight.day &&
           p_stLeft.hour == p_stRight.hour && p_stLeft.minute == p_stRight.minute &&
           p_stLeft.second == p_stRight.second;
}

static void PrintTo(const CivilTime& p_stTime, std::ostream* p_pOut) {
    *p_pOut << p_stTime.year << '-' << p_stTime.month << '-' << p_stTime.day << ' ' << p_stTime.hour << ':'
            << p_stTime.minute << ':' << p_stTime.second;
}

}  // namespace platform

namespace {

class ClockTest : public OnDevice {};

// A thread whose body waits this long over and over and tells each end with the time since the test began.
class Ticker {
public:
    Ticker(const std::string& p_strName, INT64 p_nSeconds, Story& p_objStory)
        : m_nBegin(Clock::monotonicMicroseconds()),
          m_objThread(
              [this, p_strName, p_nSeconds, &p_objStory] {
                  if (VelmorTime(static_cast<int>(p_nSeconds), 0).wait()) {
                      const INT64 nNow = (Clock::monotonicMicroseconds() - m_nBegin) / kSecond;
                      p_objStory.add(p_strName + std::to_string(nNow));
                  }
                  return 0;
              },
              p_strName, GThread::emptyFunction, GThread::emptyFunction) {
        EXPECT_TRUE(m_objThread.start());
    }

private:
    const INT64 m_nBegin;
    GThread m_objThread;
};

TEST(ClockAtStartTest, IsRealUntilSomebodyHoldsIt) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_EXIT(std::_Exit(Clock::isHeld() ? 1 : 0), ::testing::ExitedWithCode(0), "");
}

TEST(ClockAtStartTest, CountsNothingButMovesWhenHeldFirst) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    const auto heldFirst = [] {
        Clock::hold({});
        const bool bAtStart = 0 == Clock::monotonicMicroseconds();
        Clock::advance(1500);
        VelmorTime(2, 0).wait();
        std::_Exit(bAtStart && 2001500 == Clock::monotonicMicroseconds() ? 0 : 1);
    };
    EXPECT_EXIT(heldFirst(), ::testing::ExitedWithCode(0), "");
}

TEST_F(ClockTest, RealTimeIsTheLocalTimeOfTheMachine) {
    Clock::release();
    std::time_t nBefore = 0;
    std::time_t nAfter = 0;
    CivilTime stShown;
    do {  // again when the second changed meanwhile
        nBefore = std::time(nullptr);
        stShown = Clock::civilTime();
        nAfter = std::time(nullptr);
    } while (nBefore != nAfter);
    std::tm stLocal = {};
    localtime_r(&nBefore, &stLocal);
    EXPECT_EQ(stShown, (CivilTime{stLocal.tm_year + 1900, stLocal.tm_mon + 1, stLocal.tm_mday, stLocal.tm_hour,
                                  stLocal.tm_min, stLocal.tm_sec}));
}

TEST_F(ClockTest, RealTimeGoesOn) {
    Clock::release();
    const INT64 nStart = Clock::monotonicMicroseconds();
    while (Clock::monotonicMicroseconds() == nStart) {
    }
    EXPECT_GT(Clock::monotonicMicroseconds(), nStart);
}

TEST_F(ClockTest, HeldTimeStandsStill) {
    const INT64 nStart = Clock::monotonicMicroseconds();
    const std::clock_t nBusyUntil = std::clock() + CLOCKS_PER_SEC / 100;
    while (std::clock() < nBusyUntil) {
    }
    EXPECT_EQ(Clock::monotonicMicroseconds(), nStart);
    EXPECT_EQ(Clock::civilTime(), (CivilTime{2024, 5, 1, 12, 0, 0}));
}

TEST_F(ClockTest, TellsWhetherItIsHeld) {
    EXPECT_TRUE(Clock::isHeld());
    Clock::release();
    EXPECT_FALSE(Clock::isHeld());
    Clock::release();
    EXPECT_FALSE(Clock::isHeld());
    Clock::hold({});
    EXPECT_TRUE(Clock::isHeld());
}

TEST_F(ClockTest, HoldingSetsTheDeviceTimeForwardsAndBack) {
    Clock::hold({2030, 12, 31, 23, 59, 58});
    EXPECT_EQ(Clock::civilTime(), (CivilTime{2030, 12, 31, 23, 59, 58}));
    Clock::hold({2019, 1, 2, 3, 4, 5});
    EXPECT_EQ(Clock::civilTime(), (CivilTime{2019, 1, 2, 3, 4, 5}));
}

TEST_F(ClockTest, HoldingAgainMovesNothing) {
    const INT64 nStart = Clock::monotonicMicroseconds();
    Clock::hold({2030, 12, 31, 23, 59, 58});
    EXPECT_EQ(Clock::monotonicMicroseconds(), nStart);
}

TEST_F(ClockTest, FieldsOutsideTheirRangeCarryOver) {
    Clock::hold({2024, 13, 1, 25, 60, 0});
    EXPECT_EQ(Clock::civilTime(), (CivilTime{2025, 1, 2, 2, 0, 0}));
}

TEST_F(ClockTest, TheDeviceTimeFollowsTheCalendar) {
    struct Row {
        CivilTime start;
        INT64 seconds;
        CivilTime end;
    };
    const std::vector<Row> vecRows = {
        {{2024, 2, 28, 23, 59, 59}, 1, {2024, 2, 29, 0, 0, 0}}, {{2023, 2, 28, 23, 59, 59}, 1, {2023, 3, 1, 0, 0, 0}},
        {{2024, 12, 31, 23, 59, 59}, 1, {2025, 1, 1, 0, 0, 0}}, {{2024, 5, 1, 12, 0, 0}, 86400, {2024, 5, 2, 12, 0, 0}},
        {{2038, 1, 19, 3, 14, 7}, 1, {2038, 1, 19, 3, 14, 8}},  // where 32-bit seconds end
    };
    for (const Row& row : vecRows) {
        Clock::hold(row.start);
        EXPECT_TRUE(Clock::advance(row.seconds * kSecond));
        EXPECT_EQ(Clock::civilTime(), row.end);
    }
}

TEST_F(ClockTest, ADeviceSecondIsOverAfterAMillionMicroseconds) {
    EXPECT_TRUE(Clock::advance(999999));
    EXPECT_EQ(Clock::civilTime().second, 0);
    EXPECT_TRUE(Clock::advance(1));
    EXPECT_EQ(Clock::civilTime().second, 1);
}

TEST_F(ClockTest, AdvancingAddsTheLengthOfTheMove) {
    const INT64 nStart = Clock::monotonicMicroseconds();
    EXPECT_TRUE(Clock::advance(0));
    EXPECT_EQ(Clock::monotonicMicroseconds(), nStart);
    EXPECT_TRUE(Clock::advance(1234567));
    EXPECT_EQ(Clock::monotonicMicroseconds(), nStart + 1234567);
}

TEST_F(ClockTest, ANegativeMoveDoesNothing) {
    const INT64 nStart = Clock::monotonicMicroseconds();
    EXPECT_FALSE(Clock::advance(-1));
    EXPECT_EQ(Clock::monotonicMicroseconds(), nStart);
}

TEST_F(ClockTest, ARealClockCannotBeMoved) {
    Clock::release();
    EXPECT_FALSE(Clock::advance(3600 * kSecond));
    const INT64 nBefore = Clock::monotonicMicroseconds();
    EXPECT_LT(Clock::monotonicMicroseconds() - nBefore, 3600 * kSecond);
}

TEST_F(ClockTest, AThreadOfAGThreadCannotMoveIt) {
    std::atomic<bool> bMoved{true};
    GThread objThread(
        [&] {
            bMoved = Clock::advance(kSecond);
            Clock::settle();  // returns at once
            VelmorTime(1, 0).wait();
            return 0;
        },
        "Mover", GThread::emptyFunction, GThread::emptyFunction);
    const INT64 nStart = Clock::monotonicMicroseconds();
    EXPECT_TRUE(objThread.start());
    Clock::settle();
    EXPECT_FALSE(bMoved);
    EXPECT_EQ(Clock::monotonicMicroseconds(), nStart);
}

TEST_F(ClockTest, AMoveStopsAtTheEndOfEachWaitOnTheWay) {
    Story story;
    const Ticker ticker("A", 1, story);
    EXPECT_TRUE(Clock::advance(3 * kSecond + kSecond / 2));
    EXPECT_EQ(story.told(), (std::vector<std::string>{"A1", "A2", "A3"}));
}

TEST_F(ClockTest, AWaitThatEndsWhereTheMoveEndsIsOver) {
    Story story;
    const Ticker ticker("A", 2, story);
    EXPECT_TRUE(Clock::advance(2 * kSecond - 1));
    EXPECT_TRUE(story.told().empty());
    EXPECT_TRUE(Clock::advance(1));
    EXPECT_EQ(story.told(), std::vector<std::string>{"A2"});
}

TEST_F(ClockTest, WaitsEndInTheOrderOfTimeAndThenOfStart) {
    Story story;
    const Ticker slow("S", 3, story);
    const Ticker quick("Q", 2, story);
    EXPECT_TRUE(Clock::advance(6 * kSecond));
    EXPECT_EQ(story.told(), (std::vector<std::string>{"Q2", "S3", "Q4", "S6", "Q6"}));
}

TEST_F(ClockTest, EachWokenThreadRunsToItsNextWaitBeforeTheMoveGoesOn) {
    std::atomic<int> nInside{0};
    std::atomic<bool> bTogether{false};
    const auto body = [&] {
        VelmorTime(1, 0).wait();
        bTogether = bTogether || 0 != nInside++;
        letOthersRun();
        --nInside;
        return 0;
    };
    GThread objFirst(body, "First", GThread::emptyFunction, GThread::emptyFunction);
    GThread objSecond(body, "Second", GThread::emptyFunction, GThread::emptyFunction);
    EXPECT_TRUE(objFirst.start());
    EXPECT_TRUE(objSecond.start());
    EXPECT_TRUE(Clock::advance(20 * kSecond + kSecond / 2));
    EXPECT_FALSE(bTogether);
}

TEST_F(ClockTest, AStartedThreadIsNeverOverlooked) {
    for (int i = 0; i < 100; ++i) {
        Story story;
        const Ticker ticker("A", 1, story);
        EXPECT_TRUE(Clock::advance(2 * kSecond));
        ASSERT_EQ(story.told().size(), 2U) << "round " << i;
    }
}

TEST_F(ClockTest, AnEndedThreadHoldsNoMoveUp) {
    GThread objThread([]() -> int { throw std::runtime_error("end"); }, "Short", GThread::emptyFunction,
                      GThread::emptyFunction);
    ::testing::internal::CaptureStderr();
    EXPECT_TRUE(objThread.start());
    EXPECT_TRUE(Clock::advance(kSecond));
    ::testing::internal::GetCapturedStderr();
    EXPECT_FALSE(objThread.isRunning());
}

TEST_F(ClockTest, ABodyThatSpinsHoldsNoMoveUp) {
    std::atomic<bool> bSpin{true};
    Story story;
    GThread objThread(
        [&] {
            if (!bSpin && VelmorTime(1, 0).wait()) {
                story.add("waited");
            }
            return 0;
        },
        "Spinner", GThread::emptyFunction, GThread::emptyFunction);
    EXPECT_TRUE(objThread.start());
    EXPECT_TRUE(Clock::advance(10 * kSecond));
    EXPECT_TRUE(VelmorTime(1, 0).wait());
    Clock::settle();
    bSpin = false;
    while (story.told().empty()) {  // until it waits on the clock again, moves may pass it
        EXPECT_TRUE(Clock::advance(kSecond));
    }
    Clock::settle();
    const std::size_t nBefore = story.told().size();
    EXPECT_TRUE(Clock::advance(3 * kSecond));
    EXPECT_EQ(story.told().size(), nBefore + 3);
    bSpin = true;
    EXPECT_TRUE(Clock::advance(5 * kSecond));
    EXPECT_EQ(story.told().size(), nBefore + 4);
    EXPECT_TRUE(objThread.stop());
    EXPECT_TRUE(Clock::advance(kSecond));
}

TEST_F(ClockTest, ABodyThatWorksThroughAListIsWaitedFor) {
    std::atomic<int> nCalls{0};
    GThread objThread(
        [&] {
            if (0 == ++nCalls % 999) {
                VelmorTime(1, 0).wait();
            }
            return 0;
        },
        "Worker", GThread::emptyFunction, GThread::emptyFunction);
    EXPECT_TRUE(objThread.start());
    EXPECT_TRUE(Clock::advance(3 * kSecond));
    EXPECT_EQ(nCalls, 4 * 999);
}

TEST_F(ClockTest, SettlingWaitsForTheThreadsWithoutMoving) {
    std::atomic<bool> bReached{false};
    GThread objThread(
        [&] {
            letOthersRun();
            bReached = true;
            VelmorTime(1, 0).wait();
            return 0;
        },
        "Slow", GThread::emptyFunction, GThread::emptyFunction);
    const INT64 nStart = Clock::monotonicMicroseconds();
    EXPECT_TRUE(objThread.start());
    Clock::settle();
    EXPECT_TRUE(bReached);
    EXPECT_EQ(Clock::monotonicMicroseconds(), nStart);
}

TEST_F(ClockTest, ARealClockHasNothingToSettle) {
    Clock::release();
    Gate gate;
    GThread objThread(
        [&] {
            gate.pass();
            VelmorTime(3600, 0).wait();
            return 0;
        },
        "Busy", GThread::emptyFunction, GThread::emptyFunction);
    EXPECT_TRUE(objThread.start());
    Clock::settle();
    gate.open();
}

TEST_F(ClockTest, MovesOfSeveralThreadsAddUp) {
    const INT64 nStart = Clock::monotonicMicroseconds();
    std::vector<std::thread> vecThreads;
    for (int i = 0; i < 4; ++i) {
        vecThreads.emplace_back([i] {
            for (int n = 0; n < 25; ++n) {
                if (0 == i % 2) {
                    Clock::advance(kSecond);
                } else {
                    VelmorTime(1, 0).wait();
                }
            }
        });
    }
    for (std::thread& thread : vecThreads) {
        thread.join();
    }
    EXPECT_EQ(Clock::monotonicMicroseconds(), nStart + 100 * kSecond);
}

TEST_F(ClockTest, AMoveEndsWhereTheClockIsReleased) {
    const INT64 nStart = Clock::monotonicMicroseconds();
    std::atomic<bool> bOnce{false};
    INT64 nReleased = 0;
    GThread objThread(
        [&] {
            if (VelmorTime(1, 0).wait() && !bOnce.exchange(true)) {
                nReleased = Clock::monotonicMicroseconds();
                Clock::release();
            }
            return 0;
        },
        "Releaser", GThread::emptyFunction, GThread::emptyFunction);
    EXPECT_TRUE(objThread.start());
    EXPECT_FALSE(Clock::advance(24 * 3600 * kSecond));
    EXPECT_TRUE(objThread.stop());
    EXPECT_EQ(nReleased, nStart + kSecond);
    EXPECT_LT(Clock::monotonicMicroseconds(), nStart + 24 * 3600 * kSecond);
}

TEST_F(ClockTest, ARunningWaitKeepsItsRestWhenTheClockIsHeld) {
    Clock::release();
    Story story;
    const Ticker ticker("A", 3600, story);
    Clock::hold({});
    EXPECT_TRUE(Clock::advance(1800 * kSecond));
    EXPECT_TRUE(story.told().empty());
    EXPECT_TRUE(Clock::advance(1800 * kSecond));
    EXPECT_EQ(story.told().size(), 1U);
}

TEST_F(ClockTest, ABlockedWaitTakesItsRestInRealTimeAfterRelease) {
    Gate passed;
    INT64 nEnd = 0;
    const INT64 nStart = Clock::monotonicMicroseconds();
    GThread objThread(
        [&] {
            if (VelmorTime(10, 20000).wait()) {
                nEnd = Clock::monotonicMicroseconds();
                passed.open();
            }
            VelmorTime(3600, 0).wait();
            return 0;
        },
        "Waiter", GThread::emptyFunction, GThread::emptyFunction);
    EXPECT_TRUE(objThread.start());
    EXPECT_TRUE(Clock::advance(10 * kSecond));
    Clock::release();
    passed.pass();
    EXPECT_GE(nEnd, nStart + 10 * kSecond + 20000);
}

TEST_F(ClockTest, TimeNeverGoesBackOverHoldAndRelease) {
    INT64 nLast = Clock::monotonicMicroseconds();
    const auto later = [&nLast] {
        const INT64 nNow = Clock::monotonicMicroseconds();
        EXPECT_GE(nNow, nLast);
        nLast = nNow;
    };
    for (int i = 0; i < 50; ++i) {
        Clock::release();
        later();
        later();
        Clock::hold({});
        later();
        Clock::advance(kSecond);
        later();
    }
    EXPECT_GE(nLast, 50 * kSecond);
}

TEST_F(ClockTest, SettingTheDeviceTimeLeavesRunningWaitsAlone) {
    Story story;
    const Ticker ticker("A", 10, story);
    EXPECT_TRUE(Clock::advance(4 * kSecond));
    Clock::hold({2031, 1, 1, 0, 0, 0});
    EXPECT_TRUE(Clock::advance(5 * kSecond));
    EXPECT_TRUE(story.told().empty());
    EXPECT_TRUE(Clock::advance(kSecond));
    EXPECT_EQ(story.told(), std::vector<std::string>{"A10"});
    EXPECT_EQ(Clock::civilTime(), (CivilTime{2031, 1, 1, 0, 0, 6}));
}

}  // namespace
