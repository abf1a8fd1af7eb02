// The controller under many threads at once: host calls, its own cycle, switches. The thread sanitizer watches memory,
// the tests watch what is promised: no torn value, no lost flag, no call that waits for ever, no mixed texts.
#include "tests/unit/sensor/WriteTest.h"

#include <atomic>
#include <functional>
#include <thread>

namespace {

class Concurrency : public WriteTest {
protected:
    // Runs all of them at once, each as often as told, and waits for all.
    static void together(int p_nTimes, const std::vector<std::function<void(int)>>& p_vecWorks) {
        std::atomic<std::size_t> nReady{0};
        std::vector<std::thread> vecThreads;
        vecThreads.reserve(p_vecWorks.size());
        for (const auto& fnWork : p_vecWorks) {
            vecThreads.emplace_back([&, p_nTimes] {
                ++nReady;
                while (nReady < p_vecWorks.size()) {
                    std::this_thread::yield();
                }
                for (int i = 0; i < p_nTimes; ++i) {
                    fnWork(i);
                }
            });
        }
        for (std::thread& thread : vecThreads) {
            thread.join();
        }
    }
};

TEST_F(Concurrency, HostCallsSwitchesAndTheControllersOwnCycleGoTogether) {
    constexpr int kTimes = 150;
    probe.setParamModeDirectly(1);
    probe.setSwitching(false, true);
    cached(1, KEY_BRIGHTNESS, 1000);
    cached(1, KEY_WDR_MODE, 1);
    std::atomic<int> nNight{0};
    camera.onDriver(153, IA_CMD_OPT_GET, [&](int, void* p_pData) {
        *static_cast<int*>(p_pData) = nNight++ / 3 % 2;
        return 0;
    });
    together(kTimes, {
                         [&](int i) { controller.setParameter(KEY_BRIGHTNESS, 1000 + i % 50, true); },
                         [&](int i) {
                             const std::string strValue = std::to_string(1000 + i % 50);
                             controller.setParameters(
                                 "(34," + strValue + ")(2353," + strValue + ")(145," + strValue + ")", 0 == i % 2);
                         },
                         [&](int) { probe.sensorThread(); },
                         [&](int i) { controller.setParamScheme(i % 4); },
                         [&](int i) {
                             controller.setParamMode(1);
                             controller.setShowWDRFalg(0 == i % 2);
                             controller.setShowBeawayFalg(0 == i % 3);
                             SensorZoomFocusParam objParam;
                             objParam.setLockZoomFocusEnable(0 == i % 2);
                             controller.setSensorZoomFocusParam(objParam);
                         },
                         [&](int i) {
                             int nValue = 0;
                             u32 nWord = 1000;
                             controller.getParamScheme(nValue);
                             EXPECT_TRUE(nValue >= 0 && nValue <= 3) << nValue;
                             controller.getSensorStatus();
                             controller.irisUp();
                             controller.setDNMode(i % 2);
                             probe.getKeyValFromCache(static_cast<u32>(i % 4), KEY_BRIGHTNESS, nWord);
                             EXPECT_TRUE(50 == nWord || (nWord >= 1000 && nWord < 1050)) << nWord;
                             probe.isKeyValSame({KEY_BRIGHTNESS, nWord});
                         },
                     });
    EXPECT_EQ(SensorControllerProbe::inited_flag, probe.flags());
    for (u32 nScheme = 0; nScheme < 3; ++nScheme) {
        const u32 nBrightness = probe.valueIn(nScheme, KEY_BRIGHTNESS);
        EXPECT_TRUE(50 == nBrightness || (nBrightness >= 1000 && nBrightness < 1050)) << nBrightness;
    }
    EXPECT_FALSE(lockIsHeld());
}

TEST_F(Concurrency, NoFlagIsLostToAnotherThreads) {
    constexpr int kTimes = 100;
    constexpr int kToggles = 4000;
    root.debugLevel(-1);
    std::atomic<int> nLost{0};
    const auto toggle = [&](u32 p_nFlag) {
        for (int i = 0; i < kToggles; ++i) {
            probe.setFlags(p_nFlag);
            const bool bSet = 0 != (probe.flags() & p_nFlag);
            probe.clearFlags(p_nFlag);
            if (!bSet || 0 != (probe.flags() & p_nFlag)) {
                ++nLost;
            }
        }
    };
    together(kTimes, {
                         [&](int) { toggle(SensorControllerProbe::rollback_flag); },
                         [&](int) { toggle(SensorControllerProbe::uinit_flag); },
                         [&](int i) {
                             probe.switch_to(i % 2, false);
                             nLost += 0 == (probe.flags() & SensorControllerProbe::switching_flag) ? 0 : 1;
                         },
                     });
    EXPECT_EQ(0, nLost);
    EXPECT_EQ(SensorControllerProbe::inited_flag, probe.flags());
}

TEST_F(Concurrency, TextsOfTwoThreadsAreAppliedOneAfterTheOther) {
    constexpr int kTimes = 300;
    const auto pairs = [](int p_nFirst, int p_nSecond, int p_nValue) {
        const std::string strValue = std::to_string(p_nValue);
        return "(" + std::to_string(p_nFirst) + "," + strValue + ")(" + std::to_string(p_nSecond) + "," + strValue +
               ")";
    };
    together(kTimes, {
                         [&](int i) { EXPECT_EQ(0, controller.setParameters(pairs(34, 2337, 1000 + i), false)); },
                         [&](int i) { EXPECT_EQ(0, controller.setParameters(pairs(2353, 16, 2000 + i), false)); },
                     });
    const std::vector<std::string> vecLines = camera.transcript();
    ASSERT_EQ(4u * kTimes, vecLines.size());
    int nOne = 1000;
    int nOther = 2000;
    for (std::size_t i = 0; i < vecLines.size(); i += 2) {
        const bool bOne = 0 == vecLines[i].rfind("ia ch0 set 34 ", 0);
        const std::string strValue = std::to_string(bOne ? nOne++ : nOther++);
        ASSERT_EQ((bOne ? "ia ch0 set 34 = " : "ia ch0 set 2353 = ") + strValue, vecLines[i]);
        ASSERT_EQ((bOne ? "ia ch0 set 2337 = " : "ia ch0 set 16 = ") + strValue, vecLines[i + 1]);
    }
}

TEST_F(Concurrency, MessagesOfThreadsNeverInterleaveInsideAMessage) {
    root.debugLevel(6);
    const std::string strOut = outputOf([&] {
        together(100, {
                          [&](int) {
                              probe.isKeyValSame({KEY_BRIGHTNESS, 1});
                          },
                          [&](int) {
                              u32 nWord = 0;
                              probe.getKeyValFromCache(77, 34, nWord);
                          },
                          [&](int) {
                              u32 nWord = 0;
                              probe.getKeyValFromCache(88, 34, nWord);
                          },
                      });
    });
    const std::string strOne = messages::trace("can not find val, invalid sheme(77) \n");
    const std::string strOther = messages::trace("can not find val, invalid sheme(88) \n");
    ASSERT_EQ(strOne.size(), strOther.size());
    ASSERT_EQ(200 * strOne.size(), strOut.size());
    for (std::size_t i = 0; i < strOut.size(); i += strOne.size()) {
        const std::string strMessage = strOut.substr(i, strOne.size());
        ASSERT_TRUE(strOne == strMessage || strOther == strMessage) << strMessage;
    }
}

}  // namespace
