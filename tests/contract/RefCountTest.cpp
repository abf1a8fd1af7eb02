#include "platform/RefCount.h"

#include "tests/contract/ThreadSteps.h"

#include <gtest/gtest.h>

#include <array>
#include <atomic>
#include <set>
#include <string>
#include <thread>
#include <type_traits>
#include <vector>

namespace {

static_assert(!std::is_copy_constructible<ref_count>::value && !std::is_copy_assignable<ref_count>::value,
              "a count has one identity");
static_assert(!std::is_copy_constructible<RefCountManager>::value, "there is one manager");

ref_count* retrieve(const void* p_pObject, const char* p_szType = "Type") {
    return RefCountManager::getInstance()->retrieveRefCount(p_pObject, p_szType);
}

// As the last owner does: drops a reference and gives the count back when none is left.
void release(ref_count* p_pCount, const char* p_szType = "Type") {
    EXPECT_EQ(p_pCount->lock(), 0);
    if (0 == p_pCount->dec_reference()) {
        RefCountManager::getInstance()->returnbackRefCount(p_pCount, p_szType);
    }
    EXPECT_EQ(p_pCount->unLock(), 0);
}

int referencesOf(ref_count* p_pCount) {
    EXPECT_EQ(p_pCount->lock(), 0);
    const int nMore = p_pCount->inc_reference();
    if (nMore > 0) {
        p_pCount->dec_reference();
    }
    EXPECT_EQ(p_pCount->unLock(), 0);
    return 0 == nMore ? 0 : nMore - 1;
}

TEST(RefCountTest, ThereIsOneManager) {
    EXPECT_NE(RefCountManager::getInstance(), nullptr);
    EXPECT_EQ(RefCountManager::getInstance(), RefCountManager::getInstance());
}

TEST(RefCountTest, ANewCountServesTheObjectWithOneReference) {
    const int nObject = 0;
    ref_count* const pCount = retrieve(&nObject);
    ASSERT_NE(pCount, nullptr);
    EXPECT_EQ(pCount->getPointer(), &nObject);
    EXPECT_EQ(referencesOf(pCount), 1);
    release(pCount);
}

TEST(RefCountTest, ANullPointerHasNoCount) {
    EXPECT_EQ(retrieve(nullptr), nullptr);
}

TEST(RefCountTest, RetrievingAgainAddsAReference) {
    const int nObject = 0;
    ref_count* const pCount = retrieve(&nObject);
    EXPECT_EQ(retrieve(&nObject), pCount);
    EXPECT_EQ(referencesOf(pCount), 2);
    release(pCount);
    EXPECT_EQ(referencesOf(pCount), 1);
    EXPECT_EQ(pCount->getPointer(), &nObject);
    release(pCount);
}

TEST(RefCountTest, ObjectsAndTypesHaveCountsOfTheirOwn) {
    const std::array<int, 2> arrObjects = {};
    ref_count* const pFirst = retrieve(&arrObjects[0]);
    ref_count* const pSecond = retrieve(&arrObjects[1]);
    ref_count* const pOtherType = retrieve(&arrObjects[0], "Other");
    EXPECT_NE(pFirst, pSecond);
    EXPECT_NE(pFirst, pOtherType);
    EXPECT_EQ(referencesOf(pFirst), 1);
    EXPECT_EQ(pOtherType->getPointer(), &arrObjects[0]);
    release(pFirst);
    release(pSecond);
    release(pOtherType, "Other");
}

TEST(RefCountTest, TheTextOfTheTypeNameCountsNotItsPlace) {
    const int nObject = 0;
    const std::string strName = "Type";
    const std::string strSame = "Type";
    ref_count* const pCount = retrieve(&nObject, strName.c_str());
    EXPECT_EQ(retrieve(&nObject, strSame.c_str()), pCount);
    release(pCount);
    release(pCount);
}

TEST(RefCountTest, IncreasingAndDecreasingTellTheNumberAfterwards) {
    const int nObject = 0;
    ref_count* const pCount = retrieve(&nObject);
    EXPECT_EQ(pCount->lock(), 0);
    EXPECT_EQ(pCount->inc_reference(), 2);
    EXPECT_EQ(pCount->inc_reference(), 3);
    EXPECT_EQ(pCount->dec_reference(), 2);
    EXPECT_EQ(pCount->dec_reference(), 1);
    EXPECT_EQ(pCount->dec_reference(), 0);
    RefCountManager::getInstance()->returnbackRefCount(pCount, "Type");
    EXPECT_EQ(pCount->unLock(), 0);
}

TEST(RefCountTest, ACountWithoutReferencesStaysAtZero) {
    const int nObject = 0;
    ref_count* const pCount = retrieve(&nObject);
    EXPECT_EQ(pCount->lock(), 0);
    EXPECT_EQ(pCount->dec_reference(), 0);
    EXPECT_EQ(pCount->dec_reference(), 0);
    EXPECT_EQ(pCount->inc_reference(), 0);
    EXPECT_EQ(pCount->inc_reference(), 0);
    RefCountManager::getInstance()->returnbackRefCount(pCount, "Type");
    EXPECT_EQ(pCount->unLock(), 0);
}

TEST(RefCountTest, AReturnedCountStaysUsableMemoryAndServesNothing) {
    const int nObject = 0;
    ref_count* const pCount = retrieve(&nObject);
    release(pCount);
    EXPECT_EQ(pCount->lock(), 0);
    EXPECT_EQ(pCount->getPointer(), nullptr);
    EXPECT_EQ(pCount->inc_reference(), 0);
    EXPECT_EQ(pCount->dec_reference(), 0);
    EXPECT_EQ(pCount->unLock(), 0);
}

TEST(RefCountTest, ReturnedCountsServeOtherObjects) {
    const std::array<char, 1000> arrObjects = {};
    std::set<ref_count*> setCounts;
    for (const char& cObject : arrObjects) {
        ref_count* const pCount = retrieve(&cObject);
        EXPECT_EQ(pCount->getPointer(), &cObject);
        EXPECT_EQ(referencesOf(pCount), 1);
        setCounts.insert(pCount);
        release(pCount);
    }
    EXPECT_LT(setCounts.size(), 100U);  // not a new one for each object
}

TEST(RefCountTest, AReturnedCountIsNotHandedOutBeforeItIsUnlocked) {
    const std::array<int, 3> arrObjects = {};
    ref_count* const pCount = retrieve(&arrObjects[0]);
    EXPECT_EQ(pCount->lock(), 0);
    EXPECT_EQ(pCount->dec_reference(), 0);
    RefCountManager::getInstance()->returnbackRefCount(pCount, "Type");
    ref_count* const pHere = retrieve(&arrObjects[1]);
    ref_count* pThere = nullptr;
    std::thread([&] { pThere = retrieve(&arrObjects[2]); }).join();
    EXPECT_NE(pHere, pCount);
    EXPECT_NE(pThere, pCount);
    EXPECT_EQ(pCount->getPointer(), nullptr);
    EXPECT_EQ(pCount->unLock(), 0);
    release(pHere);
    release(pThere);
}

TEST(RefCountTest, ANewObjectAtTheOldAddressHasACountWithOneReference) {
    const int nObject = 0;
    release(retrieve(&nObject));
    ref_count* const pCount = retrieve(&nObject);
    EXPECT_EQ(pCount->getPointer(), &nObject);
    EXPECT_EQ(referencesOf(pCount), 1);
    release(pCount);
}

TEST(RefCountTest, ReturningNullOrALivingCountOrOneOfAnotherTypeIsIgnored) {
    const int nObject = 0;
    ref_count* const pCount = retrieve(&nObject);
    RefCountManager* const pManager = RefCountManager::getInstance();
    pManager->returnbackRefCount(nullptr, "Type");
    EXPECT_EQ(pCount->lock(), 0);
    pManager->returnbackRefCount(pCount, "Type");
    EXPECT_EQ(pCount->getPointer(), &nObject);
    EXPECT_EQ(pCount->dec_reference(), 0);
    pManager->returnbackRefCount(pCount, "Other");
    EXPECT_EQ(pCount->getPointer(), &nObject);
    ref_count* const pOther = retrieve(&nObject, "Other");
    pManager->returnbackRefCount(pCount, "Other");
    EXPECT_EQ(pCount->getPointer(), &nObject);
    EXPECT_EQ(retrieve(&nObject, "Other"), pOther);
    release(pOther, "Other");
    release(pOther, "Other");
    pManager->returnbackRefCount(pCount, "Type");
    EXPECT_EQ(pCount->getPointer(), nullptr);
    pManager->returnbackRefCount(pCount, "Type");  // a second time
    EXPECT_EQ(pCount->unLock(), 0);
    const std::array<int, 2> arrOthers = {};
    ref_count* const pFirst = retrieve(&arrOthers[0]);
    ref_count* const pSecond = retrieve(&arrOthers[1]);
    EXPECT_NE(pFirst, pSecond);
    release(pFirst);
    release(pSecond);
}

TEST(RefCountTest, ASecondLockByTheHolderFails) {
    const int nObject = 0;
    ref_count* const pCount = retrieve(&nObject);
    EXPECT_EQ(pCount->lock(), 0);
    EXPECT_NE(pCount->lock(), 0);
    EXPECT_EQ(pCount->unLock(), 0);
    EXPECT_NE(pCount->unLock(), 0);
    release(pCount);
}

TEST(RefCountTest, OnlyTheHolderUnlocks) {
    const int nObject = 0;
    ref_count* const pCount = retrieve(&nObject);
    EXPECT_EQ(pCount->lock(), 0);
    std::thread([&] { EXPECT_NE(pCount->unLock(), 0); }).join();
    EXPECT_EQ(pCount->unLock(), 0);
    release(pCount);
}

TEST(RefCountTest, LockBlocksWhileAnotherThreadHoldsIt) {
    const int nObject = 0;
    ref_count* const pCount = retrieve(&nObject);
    Story story;
    Gate trying;
    EXPECT_EQ(pCount->lock(), 0);
    std::thread other([&] {
        trying.open();
        EXPECT_EQ(pCount->lock(), 0);
        story.add("second");
        EXPECT_EQ(pCount->unLock(), 0);
    });
    trying.pass();
    letOthersRun();
    story.add("first");
    EXPECT_EQ(pCount->unLock(), 0);
    other.join();
    EXPECT_EQ(story.told(), (std::vector<std::string>{"first", "second"}));
    release(pCount);
}

TEST(RefCountTest, RetrievingWaitsForALockedCount) {
    const int nObject = 0;
    ref_count* const pCount = retrieve(&nObject);
    Story story;
    Gate trying;
    EXPECT_EQ(pCount->lock(), 0);
    std::thread other([&] {
        trying.open();
        ref_count* const pAgain = retrieve(&nObject);
        story.add("retrieved");
        EXPECT_EQ(pAgain->getPointer(), &nObject);
        release(pAgain);
    });
    trying.pass();
    letOthersRun();
    story.add("unlocking");
    // Gone meanwhile: what the other thread gets is a fresh count of a new object.
    EXPECT_EQ(pCount->dec_reference(), 0);
    RefCountManager::getInstance()->returnbackRefCount(pCount, "Type");
    EXPECT_EQ(pCount->unLock(), 0);
    other.join();
    EXPECT_EQ(story.told(), (std::vector<std::string>{"unlocking", "retrieved"}));
}

TEST(RefCountTest, ThreadsShareCountsWithoutLosingAReference) {
    std::array<int, 3> arrObjects = {};
    std::array<std::atomic<int>, 3> arrAlive = {};
    std::vector<std::thread> vecThreads;
    for (int i = 0; i < 4; ++i) {
        vecThreads.emplace_back([&, i] {
            for (std::size_t n = 0; n < 3000; ++n) {
                const std::size_t nObject = (n + static_cast<std::size_t>(i)) % 3;
                ref_count* const pCount = retrieve(&arrObjects[nObject]);
                ++arrAlive[nObject];
                EXPECT_EQ(pCount->getPointer(), &arrObjects[nObject]);
                --arrAlive[nObject];
                release(pCount);
            }
        });
    }
    for (std::thread& thread : vecThreads) {
        thread.join();
    }
    for (const int& nObject : arrObjects) {
        ref_count* const pCount = retrieve(&nObject);
        EXPECT_EQ(referencesOf(pCount), 1);
        release(pCount);
    }
}

}  // namespace
