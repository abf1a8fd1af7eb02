#include "technic/SafePointer.h"

#include "tests/support/TestRoot.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <atomic>
#include <csignal>
#include <cstdlib>
#include <exception>
#include <memory>
#include <string>
#include <thread>
#include <type_traits>
#include <typeinfo>
#include <vector>

// Looks into a SafePointer.
class SafePointerProbe {
public:
    template <typename T>
    static T*& object(SafePointer<T>& p_objPointer) {
        return p_objPointer.m_pObject;
    }
    template <typename T>
    static ref_count*& count(SafePointer<T>& p_objPointer) {
        return p_objPointer.m_pCount;
    }
};

namespace {

// Counts those that live.
struct Lens {
    static inline std::atomic<int> nAlive{0};
    Lens() { ++nAlive; }
    Lens(const Lens&) = delete;
    Lens& operator=(const Lens&) = delete;
    virtual ~Lens() { --nAlive; }
    int nPosition = 5;
};

struct ZoomLens : Lens {
    static inline std::atomic<int> nZoomAlive{0};
    ZoomLens() { ++nZoomAlive; }
    ~ZoomLens() override { --nZoomAlive; }
};

// The references that a count has, found by adding one and taking it back.
int referencesOf(ref_count* p_pCount) {
    EXPECT_EQ(0, p_pCount->lock());
    p_pCount->inc_reference();
    const int nReferences = p_pCount->dec_reference();
    p_pCount->unLock();
    return nReferences;
}

// A count that this thread can lock is locked by nobody.
void expectUnlocked(ref_count* p_pCount) {
    EXPECT_EQ(0, p_pCount->lock());
    EXPECT_EQ(0, p_pCount->unLock());
}

std::string report(const std::string& p_strMessage) {
    return std::string("SafePointer Report:") + typeid(Lens).name() + " " + p_strMessage;
}

// Runs code that reports: the text is printed and thrown.
template <typename Code>
void expectReported(const std::string& p_strMessage, Code&& p_fnCode) {
    const std::string strShown = outputOf([&] {
        try {
            p_fnCode();
            ADD_FAILURE() << "nothing was thrown";
        } catch (const QVRuntimeError& error) {
            EXPECT_EQ(report(p_strMessage), error.what());
        }
    });
    EXPECT_EQ(report(p_strMessage) + "\n", strShown);
}

template <typename Code>
void expectThrownSilently(const std::string& p_strMessage, Code&& p_fnCode) {
    const std::string strShown = outputOf([&] {
        try {
            p_fnCode();
            ADD_FAILURE() << "nothing was thrown";
        } catch (const QVRuntimeError& error) {
            EXPECT_EQ(p_strMessage, error.what());
        }
    });
    EXPECT_EQ("", strShown);
}

TEST(SafePointer, HasAVirtualDestructorAndHoldsObjectThenCount) {
    static_assert(std::is_base_of_v<BaseSafePointer, SafePointer<Lens>>);
    static_assert(std::has_virtual_destructor_v<SafePointer<Lens>>);
    static_assert(std::has_virtual_destructor_v<BaseSafePointer>);
    static_assert(sizeof(SafePointer<Lens>) == 3 * sizeof(void*));
    SafePointer<Lens> pointer(new Lens);
    const char* const pStart = reinterpret_cast<const char*>(&pointer);
    EXPECT_EQ(pStart + sizeof(void*), reinterpret_cast<const char*>(&SafePointerProbe::object(pointer)));
    EXPECT_EQ(pStart + 2 * sizeof(void*), reinterpret_cast<const char*>(&SafePointerProbe::count(pointer)));
}

TEST(SafePointer, TakesItsObjectOverWithOneReference) {
    {
        Lens* const pLens = new Lens;
        SafePointer<Lens> pointer(pLens);
        EXPECT_EQ(pLens, SafePointerProbe::object(pointer));
        EXPECT_EQ(pLens, &*pointer);
        EXPECT_EQ(5, pointer->nPosition);
        ref_count* const pCount = SafePointerProbe::count(pointer);
        ASSERT_NE(nullptr, pCount);
        EXPECT_EQ(pLens, pCount->getPointer());
        EXPECT_EQ(1, referencesOf(pCount));
        EXPECT_EQ(1, Lens::nAlive);
    }
    EXPECT_EQ(0, Lens::nAlive);
}

TEST(SafePointer, AsksForTheCountUnderTheNameOfItsType) {
    Lens* const pLens = new Lens;
    SafePointer<Lens> pointer(pLens);
    ref_count* const pCount = RefCountManager::getInstance()->retrieveRefCount(pLens, typeid(Lens).name());
    EXPECT_EQ(SafePointerProbe::count(pointer), pCount);
    EXPECT_EQ(2, referencesOf(pCount));
    pCount->lock();
    pCount->dec_reference();
    pCount->unLock();
}

TEST(SafePointer, SharesItsObjectWithItsCopies) {
    auto pFirst = std::make_unique<SafePointer<Lens>>(new Lens);
    auto pSecond = std::make_unique<SafePointer<Lens>>(*pFirst);
    ref_count* const pCount = SafePointerProbe::count(*pFirst);
    EXPECT_EQ(pCount, SafePointerProbe::count(*pSecond));
    EXPECT_EQ(SafePointerProbe::object(*pFirst), SafePointerProbe::object(*pSecond));
    EXPECT_EQ(2, referencesOf(pCount));
    {
        const SafePointer<Lens> third(*pSecond);
        EXPECT_EQ(3, referencesOf(pCount));
    }
    EXPECT_EQ(2, referencesOf(pCount));
    pFirst.reset();
    EXPECT_EQ(1, Lens::nAlive);
    EXPECT_EQ(1, referencesOf(pCount));
    EXPECT_EQ(5, (*pSecond)->nPosition);
    pSecond.reset();
    EXPECT_EQ(0, Lens::nAlive);
}

TEST(SafePointer, DestroysItsObjectThroughTheVirtualDestructor) {
    { const SafePointer<Lens> pointer(new ZoomLens); }
    EXPECT_EQ(0, ZoomLens::nZoomAlive);
    EXPECT_EQ(0, Lens::nAlive);
}

TEST(SafePointer, GivesItsCountBackUnlocked) {
    ref_count* pCount = nullptr;
    {
        SafePointer<Lens> pointer(new Lens);
        pCount = SafePointerProbe::count(pointer);
    }
    EXPECT_EQ(nullptr, pCount->getPointer());
    expectUnlocked(pCount);
    // The next object gets it.
    SafePointer<Lens> next(new Lens);
    EXPECT_EQ(pCount, SafePointerProbe::count(next));
    EXPECT_EQ(1, referencesOf(pCount));
}

TEST(SafePointer, FromANullPointerIsReported) {
    expectReported("Construct from NULL original pointer", [] { SafePointer<Lens>(nullptr); });
}

TEST(SafePointer, FromANullCopyIsReported) {
    SafePointer<Lens> source(new Lens);
    Lens* const pLens = SafePointerProbe::object(source);
    SafePointerProbe::object(source) = nullptr;
    expectReported("Construct from NULL <T>pointer", [&] { SafePointer<Lens> copy(source); });
    SafePointerProbe::object(source) = pLens;
    EXPECT_EQ(1, referencesOf(SafePointerProbe::count(source)));
}

TEST(SafePointer, WhoseCountIsGoneCannotBeCopied) {
    SafePointer<Lens> source(new Lens);
    ref_count* const pCount = SafePointerProbe::count(source);
    SafePointerProbe::count(source) = nullptr;
    expectReported("Already destructed 1", [&] { SafePointer<Lens> copy(source); });
    SafePointerProbe::count(source) = pCount;
    EXPECT_EQ(1, referencesOf(pCount));
}

TEST(SafePointer, WhoseCountCannotBeLockedCannotBeCopied) {
    SafePointer<Lens> source(new Lens);
    ref_count* const pCount = SafePointerProbe::count(source);
    ASSERT_EQ(0, pCount->lock());  // a second lock by the same thread is refused
    expectReported("Already destructed 2", [&] { SafePointer<Lens> copy(source); });
    EXPECT_EQ(0, pCount->unLock()) << "a lock that was not got must not be given free";
    EXPECT_EQ(1, referencesOf(pCount));
}

TEST(SafePointer, WhoseCountServesAnotherObjectCannotBeCopied) {
    SafePointer<Lens> source(new Lens);
    Lens* const pLens = SafePointerProbe::object(source);
    ref_count* const pCount = SafePointerProbe::count(source);
    Lens other;
    SafePointerProbe::object(source) = &other;
    expectThrownSilently("not valid pointer in inc_reference ", [&] { SafePointer<Lens> copy(source); });
    SafePointerProbe::object(source) = pLens;
    expectUnlocked(pCount);
    EXPECT_EQ(1, referencesOf(pCount));
}

TEST(SafePointer, WhoseReferencesAreGoneCannotBeCopied) {
    SafePointer<Lens> source(new Lens);
    ref_count* const pCount = SafePointerProbe::count(source);
    pCount->lock();
    ASSERT_EQ(0, pCount->dec_reference());
    pCount->unLock();
    expectReported("Already destructed 3", [&] { SafePointer<Lens> copy(source); });
    expectUnlocked(pCount);
    EXPECT_EQ(1, Lens::nAlive);
}

TEST(SafePointer, WithoutAnObjectLeavesTheCountAlone) {
    ref_count* pCount = nullptr;
    Lens* pLens = nullptr;
    {
        SafePointer<Lens> pointer(new Lens);
        pCount = SafePointerProbe::count(pointer);
        pLens = SafePointerProbe::object(pointer);
        SafePointerProbe::object(pointer) = nullptr;
    }
    EXPECT_EQ(1, Lens::nAlive);
    EXPECT_EQ(1, referencesOf(pCount));
    pCount->lock();
    pCount->dec_reference();
    RefCountManager::getInstance()->returnbackRefCount(pCount, typeid(Lens).name());
    pCount->unLock();
    delete pLens;
}

TEST(SafePointerDeathTest, ThatMeetsAnotherObjectsCountInItsDestructorEndsTheProcess) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_EXIT(
        {
            std::set_terminate([] { std::abort(); });  // without the C++ library's own words
            static Lens other;
            try {
                SafePointer<Lens> pointer(new Lens);
                SafePointerProbe::object(pointer) = &other;
            } catch (const QVRuntimeError&) {
                _exit(1);
            }
            _exit(0);
        },
        testing::KilledBySignal(SIGABRT), "");
}

TEST(SafePointer, IsCopiedAndDestroyedByManyThreads) {
    constexpr int kThreads = 4;
    {
        const SafePointer<Lens> original(new Lens);
        std::vector<std::thread> threads;
        for (int i = 0; i < kThreads; ++i) {
            threads.emplace_back([pointer = original] {
                for (int n = 0; n < 500; ++n) {
                    const SafePointer<Lens> first(pointer);
                    const SafePointer<Lens> second(first);
                    ASSERT_EQ(5, second->nPosition);
                }
            });
        }
        for (std::thread& thread : threads) {
            thread.join();
        }
        EXPECT_EQ(1, Lens::nAlive);
    }
    EXPECT_EQ(0, Lens::nAlive);
}

TEST(SafePointer, LetsTheLastOfManyThreadsDestroyTheObjectOnce) {
    for (int nRound = 0; nRound < 50; ++nRound) {
        std::vector<std::thread> threads;
        {
            const SafePointer<Lens> original(new Lens);
            for (int i = 0; i < 3; ++i) {
                threads.emplace_back([pointer = original] { EXPECT_EQ(5, pointer->nPosition); });
            }
        }
        for (std::thread& thread : threads) {
            thread.join();
        }
        threads.clear();
        ASSERT_EQ(0, Lens::nAlive);
    }
}

}  // namespace
