#include "platform/GThread.h"

#include "platform/Clock.h"
#include "platform/VelmorTime.h"
#include "tests/contract/OnDevice.h"
#include "tests/contract/ThreadSteps.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <pthread.h>

#include <atomic>
#include <memory>
#include <stdexcept>
#include <thread>
#include <type_traits>
#include <vector>

using platform::Clock;
using ::testing::AllOf;
using ::testing::EndsWith;
using ::testing::HasSubstr;
using ::testing::internal::CaptureStderr;
using ::testing::internal::GetCapturedStderr;

namespace {

static_assert(!std::is_copy_constructible<GThread>::value && !std::is_copy_assignable<GThread>::value,
              "a thread has one owner");

class GThreadTest : public OnDevice {
protected:
    // Tells itself and waits a second.
    GThread::Body tells(const std::string& p_strWhat) {
        return [this, p_strWhat] {
            m_objStory.add(p_strWhat);
            VelmorTime(1, 0).wait();
            return 0;
        };
    }
    // Tells itself and returns something that nobody may look at.
    GThread::Body says(const std::string& p_strWhat) {
        return [this, p_strWhat] {
            m_objStory.add(p_strWhat);
            return -1;
        };
    }
    GThread::Body throws(const std::string& p_strWhat) {
        return [this, p_strWhat]() -> int {
            m_objStory.add(p_strWhat);
            throw std::runtime_error(p_strWhat + " failed");
        };
    }
    using Told = std::vector<std::string>;

    Story m_objStory;
};

TEST_F(GThreadTest, NothingRunsBeforeStart) {
    GThread objThread(tells("body"), "Test", says("start"), says("exit"));
    Clock::settle();
    EXPECT_FALSE(objThread.isRunning());
    EXPECT_TRUE(m_objStory.told().empty());
}

TEST_F(GThreadTest, ARunIsStartThenBodyAgainAndAgainThenExit) {
    GThread objThread(tells("body"), "Test", says("start"), says("exit"));
    EXPECT_TRUE(objThread.start());
    EXPECT_TRUE(Clock::advance(2 * kSecond));
    EXPECT_TRUE(objThread.stop());
    EXPECT_EQ(m_objStory.told(), (Told{"start", "body", "body", "body", "exit"}));
}

TEST_F(GThreadTest, AllThreeRunOnTheNewThread) {
    std::vector<std::thread::id> vecIds;
    const auto remember = [&] {
        vecIds.push_back(std::this_thread::get_id());
        VelmorTime(1, 0).wait();
        return 0;
    };
    GThread objThread(remember, "Test", remember, remember);
    EXPECT_TRUE(objThread.start());
    EXPECT_TRUE(Clock::advance(kSecond));
    EXPECT_TRUE(objThread.stop());
    ASSERT_EQ(vecIds.size(), 3U);
    EXPECT_NE(vecIds[0], std::this_thread::get_id());
    EXPECT_EQ(vecIds[0], vecIds[1]);
    EXPECT_EQ(vecIds[0], vecIds[2]);
}

TEST_F(GThreadTest, ABodyThatNeverWaitsIsCalledUntilStop) {
    std::atomic<int> nCalls{0};
    Gate often;
    GThread objThread(
        [&] {
            if (1000 == ++nCalls) {
                often.open();
            }
            return 0;
        },
        "Test", GThread::emptyFunction, GThread::emptyFunction);
    EXPECT_TRUE(objThread.start());
    often.pass();
    EXPECT_TRUE(objThread.stop());
    EXPECT_GE(nCalls, 1000);
}

TEST_F(GThreadTest, ItsNameIsTheNameOfTheThread) {
    for (const auto& [strName, strShown] :
         std::vector<std::pair<std::string, std::string>>{{"SensorThread", "SensorThread"},
                                                          {"123456789012345", "123456789012345"},
                                                          {"1234567890123456", "123456789012345"}}) {
        char szName[64] = "";
        GThread objThread(
            [&] {
                pthread_getname_np(pthread_self(), szName, sizeof(szName));
                VelmorTime(1, 0).wait();
                return 0;
            },
            strName, GThread::emptyFunction, GThread::emptyFunction);
        EXPECT_TRUE(objThread.start());
        Clock::settle();
        EXPECT_TRUE(objThread.stop());
        EXPECT_EQ(szName, strShown);
    }
}

TEST_F(GThreadTest, StartDuringARunIsRefused) {
    GThread objThread(tells("body"), "Test", says("start"), says("exit"));
    EXPECT_TRUE(objThread.start());
    EXPECT_FALSE(objThread.start());
    Clock::settle();
    EXPECT_TRUE(objThread.stop());
    EXPECT_EQ(m_objStory.told(), (Told{"start", "body", "exit"}));
}

TEST_F(GThreadTest, StartAfterStopBeginsANewRun) {
    GThread objThread(tells("body"), "Test", says("start"), says("exit"));
    for (int i = 0; i < 2; ++i) {
        EXPECT_TRUE(objThread.start());
        Clock::settle();
        EXPECT_TRUE(objThread.stop());
    }
    EXPECT_EQ(m_objStory.told(), (Told{"start", "body", "exit", "start", "body", "exit"}));
}

TEST_F(GThreadTest, StopIsTrueWhenNothingEverRan) {
    GThread objThread(tells("body"), "Test", says("start"), says("exit"));
    EXPECT_TRUE(objThread.stop());
    EXPECT_TRUE(m_objStory.told().empty());
}

TEST_F(GThreadTest, StopIsTrueAgainWhenNothingRunsAnyMore) {
    GThread objThread(tells("body"), "Test", GThread::emptyFunction, GThread::emptyFunction);
    EXPECT_TRUE(objThread.start());
    EXPECT_TRUE(objThread.stop());
    EXPECT_TRUE(objThread.stop());
}

TEST_F(GThreadTest, StopReturnsWhenTheThreadIsGone) {
    GThread objThread(tells("body"), "Test", GThread::emptyFunction, [this] {
        letOthersRun();
        m_objStory.add("exit");
        return 0;
    });
    EXPECT_TRUE(objThread.start());
    Clock::settle();
    EXPECT_TRUE(objThread.stop());
    EXPECT_EQ(m_objStory.told(), (Told{"body", "exit"}));
}

TEST_F(GThreadTest, AStopRightAfterStartStillRunsStartAndExit) {
    for (int i = 0; i < 50; ++i) {
        Story story;
        GThread objThread(
            tells("body"), "Test",
            [&] {
                story.add("start");
                return 0;
            },
            [&] {
                story.add("exit");
                return 0;
            });
        EXPECT_TRUE(objThread.start());
        EXPECT_TRUE(objThread.stop());
        ASSERT_EQ(story.told(), (Told{"start", "exit"})) << "round " << i;
    }
}

TEST_F(GThreadTest, TheThreadItselfCanAskToStopAndEndsAfterThisCall) {
    std::unique_ptr<GThread> pThread;
    std::atomic<bool> bStopped{true};
    pThread = std::make_unique<GThread>(
        [&] {
            m_objStory.add("body");
            bStopped = pThread->stop();
            m_objStory.add(VelmorTime(1, 0).wait() ? "passed" : "stopped");
            return 0;
        },
        "Test", GThread::emptyFunction, says("exit"));
    EXPECT_TRUE(pThread->start());
    Clock::settle();
    EXPECT_FALSE(bStopped);
    EXPECT_FALSE(pThread->isRunning());
    EXPECT_TRUE(pThread->stop());
    EXPECT_EQ(m_objStory.told(), (Told{"body", "stopped", "exit"}));
}

TEST_F(GThreadTest, TheThreadItselfCannotStartItAgain) {
    std::unique_ptr<GThread> pThread;
    std::atomic<bool> bStarted{true};
    pThread = std::make_unique<GThread>(
        [&] {
            bStarted = pThread->start();
            VelmorTime(1, 0).wait();
            return 0;
        },
        "Test", GThread::emptyFunction, GThread::emptyFunction);
    EXPECT_TRUE(pThread->start());
    Clock::settle();
    EXPECT_FALSE(bStarted);
    EXPECT_TRUE(pThread->stop());
}

TEST_F(GThreadTest, TheThreadItselfCannotStartItAgainWhileAnotherStopsIt) {
    std::unique_ptr<GThread> pThread;
    std::atomic<bool> bStarted{true};
    pThread = std::make_unique<GThread>(
        [&] {
            VelmorTime(3600, 0).wait();  // ends when the other thread is inside stop
            bStarted = pThread->start();
            return 0;
        },
        "Test", GThread::emptyFunction, GThread::emptyFunction);
    EXPECT_TRUE(pThread->start());
    Clock::settle();
    EXPECT_TRUE(pThread->stop());
    EXPECT_FALSE(bStarted);
}

TEST_F(GThreadTest, TellsWhetherARunIsGoingOn) {
    GThread objThread(tells("body"), "Test", GThread::emptyFunction, GThread::emptyFunction);
    EXPECT_FALSE(objThread.isRunning());
    EXPECT_TRUE(objThread.start());
    EXPECT_TRUE(objThread.isRunning());
    EXPECT_TRUE(objThread.stop());
    EXPECT_FALSE(objThread.isRunning());
}

TEST_F(GThreadTest, DestructionStopsTheRun) {
    {
        GThread objThread(tells("body"), "Test", GThread::emptyFunction, says("exit"));
        EXPECT_TRUE(objThread.start());
        Clock::settle();
    }
    EXPECT_EQ(m_objStory.told(), (Told{"body", "exit"}));
}

TEST_F(GThreadTest, ABodyThatThrowsEndsTheRunWithALine) {
    GThread objThread(throws("body"), "Test", says("start"), says("exit"));
    CaptureStderr();
    EXPECT_TRUE(objThread.start());
    Clock::settle();
    EXPECT_THAT(GetCapturedStderr(), AllOf(HasSubstr("Test"), HasSubstr("body failed"), EndsWith("\n")));
    EXPECT_FALSE(objThread.isRunning());
    EXPECT_TRUE(objThread.stop());
    EXPECT_EQ(m_objStory.told(), (Told{"start", "body", "exit"}));
}

TEST_F(GThreadTest, AStartFunctionThatThrowsSkipsTheBody) {
    GThread objThread(tells("body"), "Test", throws("start"), says("exit"));
    CaptureStderr();
    EXPECT_TRUE(objThread.start());
    Clock::settle();
    EXPECT_THAT(GetCapturedStderr(), HasSubstr("start failed"));
    EXPECT_EQ(m_objStory.told(), (Told{"start", "exit"}));
}

TEST_F(GThreadTest, AnExitFunctionThatThrowsEndsTheRunOnly) {
    GThread objThread(tells("body"), "Test", GThread::emptyFunction, throws("exit"));
    CaptureStderr();
    EXPECT_TRUE(objThread.start());
    Clock::settle();
    EXPECT_TRUE(objThread.stop());
    EXPECT_THAT(GetCapturedStderr(), HasSubstr("exit failed"));
    EXPECT_EQ(m_objStory.told(), (Told{"body", "exit"}));
}

TEST_F(GThreadTest, SomethingElseThanAnExceptionMayBeThrown) {
    GThread objThread([]() -> int { throw 7; }, "Test", GThread::emptyFunction, says("exit"));
    CaptureStderr();
    EXPECT_TRUE(objThread.start());
    Clock::settle();
    EXPECT_THAT(GetCapturedStderr(), HasSubstr("Test"));
    EXPECT_EQ(m_objStory.told(), Told{"exit"});
}

TEST_F(GThreadTest, StartAfterAnExceptionBeginsANewRun) {
    GThread objThread(throws("body"), "Test", says("start"), says("exit"));
    CaptureStderr();
    for (int i = 0; i < 2; ++i) {
        EXPECT_TRUE(objThread.start());
        Clock::settle();
    }
    GetCapturedStderr();
    EXPECT_EQ(m_objStory.told(), (Told{"start", "body", "exit", "start", "body", "exit"}));
}

TEST_F(GThreadTest, EmptyStartAndExitFunctionsAreSkipped) {
    GThread objThread(tells("body"), "Test", nullptr, nullptr);
    CaptureStderr();
    EXPECT_TRUE(objThread.start());
    Clock::settle();
    EXPECT_TRUE(objThread.stop());
    EXPECT_EQ(GetCapturedStderr(), "");
    EXPECT_EQ(m_objStory.told(), Told{"body"});
}

TEST_F(GThreadTest, StartsFromSeveralThreadsBeginOneRun) {
    for (int nRound = 0; nRound < 20; ++nRound) {
        GThread objThread(tells("body"), "Test", GThread::emptyFunction, GThread::emptyFunction);
        std::atomic<int> nBegun{0};
        std::vector<std::thread> vecStarters;
        for (int i = 0; i < 4; ++i) {
            vecStarters.emplace_back([&] { nBegun += objThread.start() ? 1 : 0; });
        }
        for (std::thread& starter : vecStarters) {
            starter.join();
        }
        ASSERT_EQ(nBegun, 1);
    }
}

TEST_F(GThreadTest, StopsFromSeveralThreadsAllComeBack) {
    for (int nRound = 0; nRound < 20; ++nRound) {
        GThread objThread(tells("body"), "Test", GThread::emptyFunction, GThread::emptyFunction);
        EXPECT_TRUE(objThread.start());
        std::atomic<int> nStopped{0};
        std::vector<std::thread> vecStoppers;
        for (int i = 0; i < 4; ++i) {
            vecStoppers.emplace_back([&] { nStopped += objThread.stop() ? 1 : 0; });
        }
        for (std::thread& stopper : vecStoppers) {
            stopper.join();
        }
        ASSERT_EQ(nStopped, 4);
        ASSERT_FALSE(objThread.isRunning());
    }
}

TEST_F(GThreadTest, OneThreadCanStopAnother) {
    GThread objOther(tells("other"), "Other", GThread::emptyFunction, says("other gone"));
    std::atomic<bool> bOnce{false};
    GThread objThread(
        [&] {
            if (!bOnce.exchange(true)) {
                m_objStory.add(objOther.stop() ? "stopped" : "not stopped");
            }
            VelmorTime(1, 0).wait();
            return 0;
        },
        "Test", GThread::emptyFunction, GThread::emptyFunction);
    EXPECT_TRUE(objOther.start());
    Clock::settle();
    EXPECT_TRUE(objThread.start());
    Clock::settle();
    EXPECT_EQ(m_objStory.told(), (Told{"other", "other gone", "stopped"}));
}

TEST_F(GThreadTest, TheEmptyFunctionReturnsZero) {
    EXPECT_EQ(GThread::emptyFunction(), 0);
}

}  // namespace
