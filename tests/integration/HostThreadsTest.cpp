// Several host threads and the background thread at once: nothing hangs, nothing is torn, no flag is lost.
#include "tests/integration/WholeCamera.h"

#include <atomic>
#include <thread>

namespace {

class HostThreads : public WholeCamera {};

TEST_F(HostThreads, WorkBesideTheBackgroundThread) {
    ASSERT_NO_FATAL_FAILURE(layOut(""));
    const auto pChannel = channel(0);
    pChannel->init();
    ASSERT_TRUE(pChannel->controller.setParamScheme(1));
    ASSERT_EQ(0, pChannel->controller.setParameters("(34,20)(2353,21)", true));
    ASSERT_TRUE(pChannel->controller.setParamScheme(0));
    ASSERT_EQ(0, pChannel->controller.setParameter(KEY_SCHEME_MODE, 2, true));
    ASSERT_TRUE(pChannel->controller.setParamMode(1));

    constexpr int kTurns = 40;
    std::atomic<int> nFailures{0};
    const auto setter = [&](int p_nKey) {
        for (int i = 0; i < kTurns; ++i) {
            nFailures += 0 == pChannel->controller.setParameter(p_nKey, i % 100, true) ? 0 : 1;
        }
    };
    const auto looker = [&] {
        for (int i = 0; i < kTurns; ++i) {
            int nScheme = -7;
            pChannel->controller.getParamScheme(nScheme);
            nFailures += 0 == nScheme || 1 == nScheme ? 0 : 1;
            int nState = 0;
            nFailures += pChannel->controller.getDNState(nState) ? 0 : 1;
            nFailures += pChannel->controller.getUIStyleFile().empty() ? 1 : 0;
        }
    };
    const auto chooser = [&] {
        for (int i = 0; i < kTurns; ++i) {
            nFailures += pChannel->controller.setParamScheme(i % 2) ? 0 : 1;
            nFailures += pChannel->controller.setParamMode(1) ? 0 : 1;
        }
    };
    std::thread aHosts[] = {std::thread(setter, KEY_BRIGHTNESS), std::thread(setter, KEY_CONTRAST), std::thread(looker),
                            std::thread(chooser)};
    for (int i = 0; i < kTurns; ++i) {
        camera.scene().setLight(0 == i % 2 ? 0.5 : 1000);
        seconds(30);
    }
    for (std::thread& host : aHosts) {
        host.join();
    }
    EXPECT_EQ(0, nFailures);
    EXPECT_EQ(0u, pChannel->probe.flags() & SensorControllerProbe::switching_flag);
}

}  // namespace
