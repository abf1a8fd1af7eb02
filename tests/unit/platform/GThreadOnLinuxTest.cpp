#include "platform/GThread.h"

#include "platform/Clock.h"
#include "platform/QVMutex.h"
#include "platform/VelmorTime.h"
#include "tests/contract/ThreadSteps.h"
#include "tests/support/TestRoot.h"

#include <gtest/gtest.h>
#include <pthread.h>
#include <unistd.h>

#include <memory>
#include <stdexcept>

using platform::Clock;
using ::testing::internal::CaptureStderr;
using ::testing::internal::GetCapturedStderr;

namespace {

class GThreadOnLinuxTest : public ::testing::Test {
protected:
    TestRoot m_objRoot;
};

TEST_F(GThreadOnLinuxTest, StartFailsWhenTheSystemGivesNoThread) {
    pthread_attr_t stBefore;
    pthread_attr_t stHuge;
    ASSERT_EQ(pthread_getattr_default_np(&stBefore), 0);
    ASSERT_EQ(pthread_getattr_default_np(&stHuge), 0);
    // No address space holds such a stack.
    ASSERT_EQ(pthread_attr_setstacksize(&stHuge, static_cast<std::size_t>(-1) / 4 * 3 / 65536 * 65536), 0);
    ASSERT_EQ(pthread_setattr_default_np(&stHuge), 0);
    int nCalls = 0;
    GThread objThread(
        [&] {
            ++nCalls;
            VelmorTime(1, 0).wait();
            return 0;
        },
        "Test", GThread::emptyFunction, GThread::emptyFunction);
    EXPECT_FALSE(objThread.start());
    EXPECT_FALSE(objThread.isRunning());
    EXPECT_TRUE(objThread.stop());
    ASSERT_EQ(pthread_setattr_default_np(&stBefore), 0);
    EXPECT_TRUE(Clock::advance(1));  // the clock waits for no thread that never was
    EXPECT_EQ(nCalls, 0);
    EXPECT_TRUE(objThread.start());
    Clock::settle();
    EXPECT_TRUE(objThread.stop());
    EXPECT_EQ(nCalls, 1);
    pthread_attr_destroy(&stHuge);
    pthread_attr_destroy(&stBefore);
}

TEST_F(GThreadOnLinuxTest, ARunThatDestroysItsObjectEndsAlone) {
    std::string strStory;
    Gate started;
    std::unique_ptr<GThread> pThread;
    pThread = std::make_unique<GThread>(
        [&] {
            started.pass();
            strStory += "body ";
            pThread.reset();
            GThread objNext(GThread::emptyFunction, "Next", nullptr, nullptr);  // perhaps at the same address
            strStory += objNext.start() && objNext.stop() ? "next " : "mistaken ";
            strStory += VelmorTime(1, 0).wait() ? "passed " : "stopped ";
            return 0;
        },
        "Test", GThread::emptyFunction,
        [&] {
            strStory += "exit";
            return 0;
        });
    EXPECT_TRUE(pThread->start());
    started.open();
    Clock::settle();
    EXPECT_EQ(strStory, "body next stopped exit");
}

TEST_F(GThreadOnLinuxTest, TheLineOfAnExceptionNamesTheThreadAndTheFunction) {
    GThread objThread([]() -> int { throw std::runtime_error("no driver"); }, "SensorThread", GThread::emptyFunction,
                      []() -> int { throw 1; });
    CaptureStderr();
    EXPECT_TRUE(objThread.start());
    Clock::settle();
    EXPECT_EQ(GetCapturedStderr(),
              "GThread SensorThread: the run ends, its body function threw: no driver\n"
              "GThread SensorThread: the run ends, its exit function threw: something that is no std::exception\n");
}

TEST_F(GThreadOnLinuxTest, AWrongUnlockIsOneLine) {
    QVMutex objMutex;
    CaptureStderr();
    EXPECT_FALSE(objMutex.unlock(nullptr, 5));
    EXPECT_EQ(GetCapturedStderr(), "QVMutex: unlocked at (unknown):5 by a thread that does not hold it\n");
}

}  // namespace
