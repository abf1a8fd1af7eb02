#include "platform/VelmorTime.h"

#include "platform/Clock.h"
#include "platform/GThread.h"
#include "tests/contract/OnDevice.h"
#include "tests/contract/ThreadSteps.h"

#include <gtest/gtest.h>

#include <atomic>
#include <climits>
#include <thread>

using platform::Clock;

namespace {

class VelmorTimeTest : public OnDevice {};

TEST_F(VelmorTimeTest, AddsSecondsAndMicroseconds) {
    EXPECT_EQ(VelmorTime(0, 0).microseconds(), 0);
    EXPECT_EQ(VelmorTime(1, 500000).microseconds(), 1500000);
    EXPECT_EQ(VelmorTime(0, 2500000).microseconds(), 2500000);
    EXPECT_EQ(VelmorTime(INT_MAX, INT_MAX).microseconds(), INT64_C(2147483647000000) + 2147483647);
}

TEST_F(VelmorTimeTest, CountsNegativePartsAsZero) {
    EXPECT_EQ(VelmorTime(-1, 500000).microseconds(), 500000);
    EXPECT_EQ(VelmorTime(2, -1).microseconds(), 2000000);
    EXPECT_EQ(VelmorTime(INT_MIN, INT_MIN).microseconds(), 0);
}

TEST_F(VelmorTimeTest, AWaitOfAnOrdinaryThreadMovesAHeldClock) {
    const INT64 nStart = Clock::monotonicMicroseconds();
    EXPECT_TRUE(VelmorTime(1, 250000).wait());
    EXPECT_EQ(Clock::monotonicMicroseconds(), nStart + 1250000);
    std::thread([] { EXPECT_TRUE(VelmorTime(2, 0).wait()); }).join();
    EXPECT_EQ(Clock::monotonicMicroseconds(), nStart + 3250000);
}

TEST_F(VelmorTimeTest, AWaitOfNoLengthMovesNothing) {
    const INT64 nStart = Clock::monotonicMicroseconds();
    EXPECT_TRUE(VelmorTime(0, 0).wait());
    EXPECT_TRUE(VelmorTime(-3, -3).wait());
    EXPECT_EQ(Clock::monotonicMicroseconds(), nStart);
}

TEST_F(VelmorTimeTest, AWaitOfNoLengthDoesNotBlockAGThread) {
    Story story;
    GThread objThread(
        [&] {
            story.add(VelmorTime(0, 0).wait() ? "passed" : "stopped");
            VelmorTime(1, 0).wait();
            return 0;
        },
        "Waiter", GThread::emptyFunction, GThread::emptyFunction);
    EXPECT_TRUE(objThread.start());
    Clock::settle();
    EXPECT_EQ(story.told(), std::vector<std::string>{"passed"});
}

TEST_F(VelmorTimeTest, AWaitOfAnOrdinaryThreadLetsDueThreadsRun) {
    std::atomic<int> nCalls{0};
    GThread objThread(
        [&] {
            nCalls += VelmorTime(1, 0).wait() ? 1 : 0;
            return 0;
        },
        "Ticker", GThread::emptyFunction, GThread::emptyFunction);
    EXPECT_TRUE(objThread.start());
    EXPECT_TRUE(VelmorTime(5, 0).wait());
    EXPECT_EQ(nCalls, 5);
}

TEST_F(VelmorTimeTest, AWaitOfAGThreadLastsUntilTheClockHasPassedIt) {
    Story story;
    GThread objThread(
        [&] {
            story.add("before");
            story.add(VelmorTime(1, 500000).wait() ? "passed" : "stopped");
            VelmorTime(3600, 0).wait();
            return 0;
        },
        "Waiter", GThread::emptyFunction, GThread::emptyFunction);
    EXPECT_TRUE(objThread.start());
    EXPECT_TRUE(Clock::advance(1499999));
    EXPECT_EQ(story.told(), std::vector<std::string>{"before"});
    EXPECT_TRUE(Clock::advance(1));
    EXPECT_EQ(story.told(), (std::vector<std::string>{"before", "passed"}));
}

TEST_F(VelmorTimeTest, StoppingTheThreadEndsItsWaitEarly) {
    for (const bool bHeld : {true, false}) {
        if (!bHeld) {
            Clock::release();
        }
        Story story;
        Gate reached;
        GThread objThread(
            [&] {
                reached.open();
                story.add(VelmorTime(3600, 0).wait() ? "passed" : "stopped");
                return 0;
            },
            "Waiter", GThread::emptyFunction, GThread::emptyFunction);
        EXPECT_TRUE(objThread.start());
        reached.pass();
        EXPECT_TRUE(objThread.stop());
        EXPECT_EQ(story.told(), std::vector<std::string>{"stopped"}) << "held: " << bHeld;
    }
}

TEST_F(VelmorTimeTest, AfterAStopRequestEveryWaitReturnsFalseAtOnce) {
    Story story;
    GThread objThread(
        [&] {
            story.add(VelmorTime(3600, 0).wait() ? "passed" : "stopped");
            story.add(VelmorTime(3600, 0).wait() ? "passed" : "stopped");
            story.add(VelmorTime(0, 0).wait() ? "passed" : "stopped");
            return 0;
        },
        "Waiter", GThread::emptyFunction,
        [&] {
            story.add(VelmorTime(0, 1).wait() ? "passed" : "stopped");
            return 0;
        });
    EXPECT_TRUE(objThread.start());
    Clock::settle();
    const INT64 nStart = Clock::monotonicMicroseconds();
    EXPECT_TRUE(objThread.stop());
    EXPECT_EQ(story.told(), std::vector<std::string>(4, "stopped"));
    EXPECT_EQ(Clock::monotonicMicroseconds(), nStart);
}

TEST_F(VelmorTimeTest, ANewRunCanWaitAgain) {
    std::atomic<int> nPassed{0};
    GThread objThread(
        [&] {
            nPassed += VelmorTime(1, 0).wait() ? 1 : 0;
            return 0;
        },
        "Waiter", GThread::emptyFunction, GThread::emptyFunction);
    EXPECT_TRUE(objThread.start());
    EXPECT_TRUE(objThread.stop());
    EXPECT_TRUE(objThread.start());
    EXPECT_TRUE(Clock::advance(kSecond));
    EXPECT_EQ(nPassed, 1);
}

TEST_F(VelmorTimeTest, ARealWaitTakesItsTime) {
    Clock::release();
    const INT64 nStart = Clock::monotonicMicroseconds();
    EXPECT_TRUE(VelmorTime(0, 20000).wait());
    EXPECT_GE(Clock::monotonicMicroseconds() - nStart, 20000);
}

TEST_F(VelmorTimeTest, ARealWaitOfAGThreadTakesItsTime) {
    Clock::release();
    Gate passed;
    std::atomic<INT64> nTook{0};
    GThread objThread(
        [&] {
            const INT64 nStart = Clock::monotonicMicroseconds();
            if (VelmorTime(0, 20000).wait()) {
                nTook = Clock::monotonicMicroseconds() - nStart;
                passed.open();
            }
            return 0;
        },
        "Waiter", GThread::emptyFunction, GThread::emptyFunction);
    EXPECT_TRUE(objThread.start());
    passed.pass();
    EXPECT_TRUE(objThread.stop());
    EXPECT_GE(nTook, 20000);
}

TEST_F(VelmorTimeTest, ARealWaitOfAnOrdinaryThreadGoesOnOnAHeldClock) {
    Clock::release();
    const INT64 nStart = Clock::monotonicMicroseconds();
    std::thread waiter([] { EXPECT_TRUE(VelmorTime(3600, 0).wait()); });
    letOthersRun();
    Clock::hold({});  // what is left moves the clock
    waiter.join();
    EXPECT_GE(Clock::monotonicMicroseconds() - nStart, 3600 * kSecond);
}

}  // namespace
