// A reset releases everything that init built and builds it anew, while other threads of the host go on asking.
#include "tests/unit/initialisation/StartedCamera.h"

#include <atomic>
#include <functional>
#include <thread>

namespace {

class ResetConcurrency : public StartedCamera {
protected:
    // Calls each of these over and over on a thread of its own while the controller is reset some times.
    void besideResets(const std::vector<std::function<void()>>& p_vecCalls) {
        constexpr int kResets = 5;
        std::atomic<std::size_t> nAtWork{0};
        std::atomic<bool> bDone{false};
        std::vector<std::thread> vecThreads;
        vecThreads.reserve(p_vecCalls.size());
        for (const auto& fnCall : p_vecCalls) {
            vecThreads.emplace_back([&] {
                ++nAtWork;
                do {
                    fnCall();
                } while (!bDone);
            });
        }
        while (nAtWork < p_vecCalls.size()) {
            std::this_thread::yield();
        }
        for (int i = 0; i < kResets; ++i) {
            EXPECT_TRUE(controller().resetParameters());
        }
        bDone = true;
        for (std::thread& thread : vecThreads) {
            thread.join();
        }
    }
};

// The factory window of this camera is empty: it is what every thread sees, before, between and after the resets.
TEST_F(ResetConcurrency, WhatHostsAskMeanwhileIsAnsweredFromWholeSets) {
    init();
    root.debugLevel(-1);
    camera.dynamicCommands({KEY_MAX_SHUTTER});
    camera.range(KEY_MAX_SHUTTER, RecordingCamera::rangeOf(7, {7, 8}));
    camera.driverHolds(0, KEY_MAX_SHUTTER, 7);
    outputOf([&] {
        besideResets({
            [&] {
                EXPECT_EQ(507, controller().paramCheck());
                EXPECT_EQ(507, controller().flush());
            },
            [&] {
                int nVal = 0;
                EXPECT_TRUE(controller().getParameter(KEY_BRIGHTNESS, nVal));
                EXPECT_EQ(50, nVal);
                EXPECT_EQ(0, controller().restore(KEY_BRIGHTNESS));
                EXPECT_TRUE(controller().resetToLastParameters());
            },
            [&] {
                std::string strText = "(1,0,3)";
                EXPECT_EQ(0, controller().SensorCheck(strText));
                EXPECT_EQ(77u, controller().getSensorType());
                int nIndex = -7;
                EXPECT_TRUE(controller().getShutterValue(nIndex));
                EXPECT_EQ(0, nIndex);
                EXPECT_EQ("", controller().getUILanguageFile(1));
            },
        });
    });
}

}  // namespace
