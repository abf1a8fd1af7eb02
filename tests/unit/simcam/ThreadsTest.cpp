#include "SimulatedCamera.h"

#include "platform/GThread.h"
#include "platform/VelmorTime.h"

#include <atomic>
#include <thread>

namespace {

class Threads : public SimulatedCamera {};

}  // namespace

TEST_F(Threads, CallsFromManyThreadsKeepOneOrder) {
    constexpr int kThreads = 4;
    constexpr int kCalls = 200;
    std::vector<std::uint64_t> vecSeen;
    camera.transcript().setObserver(
        [&](const simcam::TranscriptEntry& p_stEntry) { vecSeen.push_back(p_stEntry.number); });
    std::atomic<int> nFailures{0};
    std::vector<std::thread> vecThreads;
    for (int nThread = 0; nThread < kThreads; ++nThread) {
        vecThreads.emplace_back([&, nThread] {
            for (int i = 0; i < kCalls; ++i) {
                nFailures += IA_OK != set(34, i % 101, nThread);
                nFailures += i % 101 != get(34, nThread);
                nFailures += 0 != camera.video().notifyChange(nThread + 1, 2384, i);
            }
        });
    }
    for (int i = 0; i < kCalls; ++i) {
        camera.scene().setLight(i % 2 ? 0.0 : 1000.0);
        camera.scene().setSubjectDistance(1.0 + i);
        camera.driver().setSupported(3, 2400, 0 != i % 2);
        AVStreamParam stStream;
        stStream.nFrameRate = 10 + i % 30;
        camera.video().setStreams(1, {stStream});
        camera.transcript().setLimit(static_cast<std::size_t>(50 + i));
        camera.transcript().lines();
        const int nFault = camera.faults().add({});
        camera.faults().remove(nFault);
        passSeconds(0.01);
    }
    for (std::thread& thread : vecThreads) {
        thread.join();
    }
    EXPECT_EQ(0, nFailures);
    const std::uint64_t nCalls = kThreads * kCalls * 3;
    EXPECT_EQ(nCalls, camera.transcript().total());
    camera.transcript().setObserver({});
    ASSERT_EQ(nCalls, vecSeen.size());
    for (std::size_t i = 0; i < vecSeen.size(); ++i) {
        ASSERT_EQ(i + 1, vecSeen[i]);
    }
}

TEST_F(Threads, AValueMayLieInASetThatOthersUse) {
    // A parameter set's words are shared as relaxed atomics between the host's threads and the controller's own.
    int nShared = 1;
    std::atomic<bool> bStop{false};
    std::thread other([&] {
        while (!bStop) {
            const int nSeen = __atomic_load_n(&nShared, __ATOMIC_RELAXED);
            __atomic_store_n(&nShared, nSeen % 100, __ATOMIC_RELAXED);
        }
    });
    for (int i = 0; i < 1000; ++i) {
        ia_ioctrl_v2(0, 34, IA_CMD_OPT_SET, &nShared);
        ia_ioctrl_v2(0, 34, IA_CMD_OPT_GET, &nShared);
        ia_ioctrl_v2(0, 49, IA_CMD_OPT_CORRECT_PARAM, &nShared);
        ia_ioctrl_v2(0, 34, IA_CMD_OPT_GET_EXEC_STATUS, &nShared);
    }
    bStop = true;
    other.join();
    EXPECT_EQ(4000u, camera.transcript().total());
}

TEST_F(Threads, ADelayDoesNotHoldTheOthersUp) {
    simcam::Fault stFault;
    stFault.command = 34;
    stFault.times = 1;
    stFault.delayMicroseconds = 1000000;
    camera.faults().add(stFault);
    // The delay of a thread like the controller's lasts until somebody moves the held clock.
    std::atomic<int> nDelayed{kUntouched};
    GThread delayed(
        [&] {
            if (kUntouched == nDelayed) {
                nDelayed = set(34, 1);
            }
            VelmorTime(1, 0).wait();
            return 0;
        },
        "Delayed", GThread::emptyFunction, GThread::emptyFunction);
    ASSERT_TRUE(delayed.start());
    platform::Clock::settle();
    ASSERT_EQ(kUntouched, nDelayed);
    EXPECT_EQ(IA_OK, set(2337, 7)) << "would hang if the delay held the lock";
    EXPECT_EQ(0, camera.video().notifyChange(1, 2337, 7));
    passSeconds(1);
    EXPECT_EQ(IA_OK, nDelayed);
    EXPECT_TRUE(delayed.stop());
    EXPECT_EQ("ia ch0 set 34 1 = 0 fault 1", camera.transcript().lines().back());
}

TEST_F(Threads, ACallThatIsUnderWayOutlivesItsCamera) {
    auto pCamera = std::make_unique<simcam::Camera>();
    std::atomic<bool> bInside{false};
    std::atomic<bool> bGone{false};
    std::atomic<int> nResult{kUntouched};
    pCamera->transcript().setObserver([&](const simcam::TranscriptEntry&) { bInside = true; });
    std::thread caller([&] {
        for (;;) {
            nResult = set(34, 5);
            if (IA_ERR_HARDWARE == nResult) {
                bGone = true;
                return;
            }
        }
    });
    while (!bInside) {
        std::this_thread::yield();
    }
    pCamera.reset();
    caller.join();
    EXPECT_TRUE(bGone);
}

TEST_F(Threads, ReplacingTheObserverWaitsForTheOldOne) {
    for (int i = 0; i < 50; ++i) {
        std::atomic<bool> bAlive{true};
        std::atomic<bool> bUsedDead{false};
        camera.transcript().setObserver([&](const simcam::TranscriptEntry&) {
            std::this_thread::yield();
            if (!bAlive) {
                bUsedDead = true;
            }
        });
        std::thread caller([&] {
            for (int j = 0; j < 20; ++j) {
                set(34, j);
            }
        });
        camera.transcript().setObserver({});
        bAlive = false;
        caller.join();
        EXPECT_FALSE(bUsedDead);
    }
}
