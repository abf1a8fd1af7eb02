#include "platform/QVMutex.h"

#include "tests/contract/ThreadSteps.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <thread>
#include <type_traits>
#include <vector>

using ::testing::AllOf;
using ::testing::HasSubstr;

namespace {

static_assert(!std::is_copy_constructible<QVMutex>::value && !std::is_copy_assignable<QVMutex>::value,
              "a lock has one identity");

TEST(QVMutexTest, LocksAndUnlocks) {
    QVMutex objMutex;
    for (int i = 0; i < 3; ++i) {
        EXPECT_TRUE(objMutex.lock("a.cpp", 1));
        EXPECT_TRUE(objMutex.unlock("a.cpp", 2));
    }
}

TEST(QVMutexTest, BlocksUntilTheHolderLetsGo) {
    QVMutex objMutex;
    Story story;
    Gate trying;
    EXPECT_TRUE(objMutex.lock("a.cpp", 1));
    std::thread other([&] {
        trying.open();
        EXPECT_TRUE(objMutex.lock("b.cpp", 2));
        story.add("second");
        EXPECT_TRUE(objMutex.unlock("b.cpp", 3));
    });
    trying.pass();
    letOthersRun();
    story.add("first");
    EXPECT_TRUE(objMutex.unlock("a.cpp", 4));
    other.join();
    EXPECT_EQ(story.told(), (std::vector<std::string>{"first", "second"}));
}

TEST(QVMutexTest, OneThreadAtATimeHoldsIt) {
    QVMutex objMutex;
    int nCount = 0;
    std::vector<std::thread> vecThreads;
    for (int i = 0; i < 4; ++i) {
        vecThreads.emplace_back([&] {
            for (int n = 0; n < 5000; ++n) {
                objMutex.lock("a.cpp", 1);
                ++nCount;
                objMutex.unlock("a.cpp", 2);
            }
        });
    }
    for (std::thread& thread : vecThreads) {
        thread.join();
    }
    EXPECT_EQ(nCount, 20000);
}

TEST(QVMutexTest, TwoLocksAreIndependent) {
    QVMutex objOne;
    QVMutex objTwo;
    EXPECT_TRUE(objOne.lock("a.cpp", 1));
    EXPECT_TRUE(objTwo.lock("a.cpp", 2));
    EXPECT_TRUE(objOne.unlock("a.cpp", 3));
    EXPECT_TRUE(objTwo.unlock("a.cpp", 4));
}

TEST(QVMutexTest, UnlockingAFreeLockIsReportedAndChangesNothing) {
    QVMutex objMutex;
    ::testing::internal::CaptureStderr();
    EXPECT_FALSE(objMutex.unlock("wrong.cpp", 77));
    EXPECT_THAT(::testing::internal::GetCapturedStderr(), AllOf(HasSubstr("wrong.cpp"), HasSubstr("77")));
    EXPECT_TRUE(objMutex.lock("a.cpp", 1));
    EXPECT_TRUE(objMutex.unlock("a.cpp", 2));
}

TEST(QVMutexTest, UnlockingByAnotherThreadIsReportedAndChangesNothing) {
    QVMutex objMutex;
    EXPECT_TRUE(objMutex.lock("a.cpp", 1));
    ::testing::internal::CaptureStderr();
    std::thread([&] { EXPECT_FALSE(objMutex.unlock("wrong.cpp", 78)); }).join();
    EXPECT_THAT(::testing::internal::GetCapturedStderr(), AllOf(HasSubstr("wrong.cpp"), HasSubstr("78")));
    EXPECT_TRUE(objMutex.unlock("a.cpp", 2));
}

TEST(QVMutexTest, WhoeverHeldItOnceIsNotTheHolderForEver) {
    QVMutex objMutex;
    EXPECT_TRUE(objMutex.lock("a.cpp", 1));
    EXPECT_TRUE(objMutex.unlock("a.cpp", 2));
    ::testing::internal::CaptureStderr();
    EXPECT_FALSE(objMutex.unlock("a.cpp", 3));
    ::testing::internal::GetCapturedStderr();
}

TEST(QVMutexTest, ASecondLockByTheHolderNamesBothPlacesInOneLineAndAborts) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    const auto lockTwice = [] {
        QVMutex objMutex;
        objMutex.lock("first.cpp", 11);
        objMutex.lock("second.cpp", 22);
    };
    EXPECT_EXIT(lockTwice(), ::testing::KilledBySignal(SIGABRT), "[^\n]*second.cpp[^\n]*22[^\n]*first.cpp[^\n]*11");
}

}  // namespace
