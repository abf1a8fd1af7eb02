#include "technic/QVMutex.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <stdexcept>
#include <thread>
#include <type_traits>
#include <vector>

namespace {

class QVMutexManagerDeathTest : public testing::Test {
protected:
    QVMutexManagerDeathTest() { GTEST_FLAG_SET(death_test_style, "threadsafe"); }
};

TEST(QVMutexManager, HoldsTheMutexToTheEndOfItsScope) {
    QVMutex mutex;
    {
        const QVMutexManager guard(&mutex, "lens.cpp", 12);
        // Only the holder's unlock succeeds.
        std::thread([&] { EXPECT_FALSE(mutex.unlock("other.cpp", 1)); }).join();
    }
    EXPECT_FALSE(mutex.unlock("lens.cpp", 13));  // nobody holds it
    EXPECT_TRUE(mutex.lock("lens.cpp", 14));
    EXPECT_TRUE(mutex.unlock("lens.cpp", 15));
}

TEST(QVMutexManager, KeepsOtherThreadsOut) {
    QVMutex mutex;
    int nInside = 0;
    int nEntered = 0;
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i) {
        threads.emplace_back([&] {
            for (int n = 0; n < 500; ++n) {
                const QVMutexManager guard(&mutex, "lens.cpp", 12);
                ++nInside;
                EXPECT_EQ(1, nInside);
                std::this_thread::yield();
                ++nEntered;
                --nInside;
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(2000, nEntered);
}

TEST(QVMutexManager, GivesTheMutexFreeWhenAnExceptionEndsItsScope) {
    QVMutex mutex;
    EXPECT_THROW(
        {
            const QVMutexManager guard(&mutex, "lens.cpp", 12);
            throw std::runtime_error("lens lost");
        },
        std::runtime_error);
    std::thread([&] {
        EXPECT_TRUE(mutex.lock("other.cpp", 1));
        EXPECT_TRUE(mutex.unlock("other.cpp", 2));
    }).join();
}

TEST(QVMutexManager, CannotBeCopied) {
    static_assert(!std::is_copy_constructible_v<QVMutexManager> && !std::is_copy_assignable_v<QVMutexManager>);
    static_assert(sizeof(QVMutexManager) == sizeof(QVMutex*), "holds the mutex and nothing else");
}

TEST_F(QVMutexManagerDeathTest, LocksWithTheFileAndLineOfItsCaller) {
    EXPECT_DEATH(
        {
            QVMutex mutex;
            const QVMutexManager guard(&mutex, "lens.cpp", 12);
            mutex.lock("iris.cpp", 345);
        },
        "iris\\.cpp:345 .*lens\\.cpp:12");
}

TEST_F(QVMutexManagerDeathTest, UnlocksUnderItsFrozenFileAndLine) {
    EXPECT_EXIT(
        {
            {
                QVMutex mutex;
                const QVMutexManager guard(&mutex, "lens.cpp", 12);
                mutex.unlock("lens.cpp", 13);  // so that the guard's own unlock is one too many, and says so
            }
            _exit(0);
        },
        testing::ExitedWithCode(0), "^QVMutex: unlocked at technic/QVMutex:74 ");
}

}  // namespace
