// One thread took the manager's lock and then a count's, another a count's and then the manager's: two threads that
// retrieved and gave back the count of one object could wait for each other for ever.
#include "platform/RefCount.h"

#include <gtest/gtest.h>

#include <thread>
#include <vector>

TEST(CountsLockedBothWays, RetrievingAndGivingBackTheSameObjectNeverHangs) {
    constexpr int kTurns = 2000;
    static int nObject = 0;
    const auto turn = [] {
        RefCountManager* const pManager = RefCountManager::getInstance();
        for (int i = 0; i < kTurns; ++i) {
            ref_count* const pCount = pManager->retrieveRefCount(&nObject, "int");
            ASSERT_NE(nullptr, pCount);
            ASSERT_EQ(0, pCount->lock());
            if (0 == pCount->dec_reference()) {
                pManager->returnbackRefCount(pCount, "int");
            }
            pCount->unLock();
        }
    };
    std::vector<std::thread> vecThreads;
    for (int i = 0; i < 4; ++i) {
        vecThreads.emplace_back(turn);
    }
    for (std::thread& thread : vecThreads) {
        thread.join();
    }
}
