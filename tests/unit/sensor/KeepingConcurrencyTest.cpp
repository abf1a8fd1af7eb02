// Reading, storing and discarding from several host threads while the background thread switches schemes.
#include "platform/Clock.h"
#include "tests/unit/sensor/SmallSets.h"

#include <algorithm>
#include <atomic>
#include <functional>
#include <thread>

namespace {

constexpr u32 kSchemes = 2;

class KeepingConcurrency : public SmallSets {
protected:
    KeepingConcurrency() {
        root.debugLevel(-1);
        cached(1, KEY_BRIGHTNESS, 1000);
        cached(1, KEY_CONTRAST, 1001);
        for (u32 nScheme = 0; nScheme < kSchemes; ++nScheme) {
            root.write(parameterFile(nScheme), setAsFile(nScheme));
        }
        style("199");
        probe.setSwitching(false, true);
        probe.setParamModeDirectly(1);
        camera.onDriver(153, IA_CMD_OPT_GET, [this](int, void* p_pData) {
            *static_cast<int*>(p_pData) = nNight++ % 2;
            return IA_OK;
        });
        camera.dynamicCommands({KEY_MAX_SHUTTER});
        camera.range(KEY_MAX_SHUTTER, RecordingCamera::rangeOf(200, {100, 200, 300}));
    }

    void style(const std::string& p_strShutter) {
        root.write("/tmp/merge_style_ch1.xml", "<p id=\"49\" value=\"" + p_strShutter + "\"/>");
    }

    // Runs the background thread and all of these at once, each as often as told.
    void besideTheThread(int p_nTimes, const std::vector<std::function<void(int)>>& p_vecWorks) {
        ASSERT_TRUE(probe.thread().start());
        std::atomic<std::size_t> nAtWork{0};
        std::vector<std::thread> vecThreads;
        vecThreads.reserve(p_vecWorks.size());
        for (const auto& fnWork : p_vecWorks) {
            vecThreads.emplace_back([&, p_nTimes] {
                ++nAtWork;
                while (nAtWork < p_vecWorks.size()) {
                    std::this_thread::yield();
                }
                for (int i = 0; i < p_nTimes; ++i) {
                    fnWork(i);
                }
            });
        }
        for (int i = 0; i < p_nTimes; ++i) {
            platform::Clock::advance(1000000);
        }
        for (std::thread& thread : vecThreads) {
            thread.join();
        }
        ASSERT_TRUE(probe.thread().stop());
    }

    // Values that any of the threads may have set.
    static bool isPossible(int p_nBrightness) {
        return 50 == p_nBrightness || (p_nBrightness >= 1000 && p_nBrightness < 1100);
    }

    std::atomic<int> nNight{0};
};

TEST_F(KeepingConcurrency, HostsReadStoreDiscardAndChooseWhileTheThreadSwitches) {
    outputOf([&] {
        besideTheThread(60, {
                                [&](int) {
                                    int nVal = -7;
                                    EXPECT_TRUE(controller.getParameter(KEY_BRIGHTNESS, nVal));
                                    EXPECT_TRUE(isPossible(nVal)) << nVal;
                                    std::string strOut;
                                    EXPECT_EQ(1, controller.getParameters("(34,2337,49)", strOut));
                                },
                                [&](int) {
                                    std::string strOut;
                                    EXPECT_TRUE(controller.getAllParameters(strOut));
                                    EXPECT_EQ(9, std::count(strOut.begin(), strOut.end(), '(')) << strOut;
                                },
                                [&](int) {
                                    EXPECT_EQ(0, controller.paramCheck());
                                    EXPECT_EQ(0, controller.flush());
                                },
                                [&](int) {
                                    EXPECT_TRUE(controller.resetToLastParameters());
                                    EXPECT_EQ(0, controller.restore(KEY_BRIGHTNESS));
                                },
                                [&](int i) { EXPECT_EQ(0, controller.setParameter(KEY_BRIGHTNESS, 1000 + i, true)); },
                                [&](int i) {
                                    EXPECT_TRUE(controller.setParamScheme(i % 3));
                                    controller.shutterUp();
                                    controller.shutterDown();
                                },
                            });
    });
    EXPECT_EQ(SensorControllerProbe::inited_flag, probe.flags());
    EXPECT_FALSE(lockIsHeld());
    EXPECT_EQ("", root.errorLog());
    for (u32 nScheme = 0; nScheme < kSchemes; ++nScheme) {
        EXPECT_TRUE(isPossible(static_cast<int>(probe.valueIn(nScheme, KEY_BRIGHTNESS))));
        EXPECT_EQ(probe.keyValSum() * sizeof(KeyVal), root.read(parameterFile(nScheme)).size());
    }
}

TEST_F(KeepingConcurrency, TheStoredFileIsNeverSeenHalfWritten) {
    style("200");
    outputOf([&] {
        besideTheThread(
            60, {
                    [&](int i) {
                        EXPECT_EQ(0, controller.setParameters(
                                         "(34," + std::to_string(1000 + i) + ")(2353," + std::to_string(1000 + i) + ")",
                                         true));
                        EXPECT_EQ(0, controller.flush());
                    },
                    [&](int) {
                        std::string strOut;
                        EXPECT_TRUE(controller.getAllParameters(strOut));
                        EXPECT_EQ(0u, strOut.find("(8000,0)(8001,8)(8002,0)(8003,20)(8004,30)(34,"));
                        EXPECT_EQ(9, std::count(strOut.begin(), strOut.end(), '('));
                    },
                    [&](int) { EXPECT_TRUE(controller.resetToLastParameters()); },
                });
    });
    EXPECT_EQ("", root.errorLog());
}

TEST_F(KeepingConcurrency, LanguagesAreGivenAndReadTogether) {
    outputOf([&] {
        besideTheThread(100, {
                                 [&](int i) {
                                     const std::string strText(static_cast<std::size_t>(i) + 1, 'a');
                                     EXPECT_TRUE(controller.setLanguageDocuments({{1, strText, strText}}));
                                 },
                                 [&](int i) {
                                     const std::string strText(static_cast<std::size_t>(i) + 1, 'b');
                                     EXPECT_TRUE(controller.setLanguageDocuments({{1, strText, strText}, {2, "", ""}}));
                                 },
                                 [&](int) {
                                     const std::string strText = controller.getUILanguageFile(1);
                                     EXPECT_EQ(std::string::npos,
                                               strText.find_first_not_of(strText.empty() ? 'a' : strText[0]));
                                 },
                             });
    });
}

}  // namespace
