// The host's operations: setParamScheme, getParamScheme, setParamMode, getParamMode.
#include "technic/QVMutex.h"
#include "tests/unit/schemes/SchemeCamera.h"

#include <functional>
#include <thread>

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

namespace {

class SchemeChoice : public SchemeCamera {
protected:
    // Runs the call while a busy bit is set, and clears the bit once the call has waited three times on the held clock.
    template <typename Call>
    INT64 waitedWhile(u32 p_nBit, Call&& p_fnCall) {
        probe.setFlags(p_nBit);
        const INT64 nStart = platform::Clock::monotonicMicroseconds();
        std::thread releaser([&] {
            while (platform::Clock::monotonicMicroseconds() - nStart < 3 * 500000) {
                std::this_thread::yield();
            }
            probe.clearFlags(p_nBit);
        });
        p_fnCall();
        releaser.join();
        return platform::Clock::monotonicMicroseconds() - nStart;
    }
};

TEST_F(SchemeChoice, AppliesTheChosenScheme) {
    build(3);
    probe.setCurScheme(0);
    probe.setKeyValToCache(2, KEY_CONTRAST, 7, true);
    EXPECT_TRUE(controller.setParamScheme(2));
    int nScheme = -5;
    EXPECT_TRUE(controller.getParamScheme(nScheme));
    EXPECT_EQ(2, nScheme);
    EXPECT_THAT(camera.transcript(), ElementsAre("ia ch0 set 2353 = 7"));
}

TEST_F(SchemeChoice, AcceptsTheFactoryScheme) {
    build(3);
    probe.setCurScheme(0);
    const std::string strOut = outputOf([&] { EXPECT_TRUE(controller.setParamScheme(3)); });
    EXPECT_EQ(3, probe.curScheme());
    EXPECT_EQ("\n", strOut);
}

TEST_F(SchemeChoice, MeantASchemeOutOfRangeIsReportedAndNotTurnedAwayEarly) {
    build(3);
    probe.setCurScheme(1);
    for (const int nScheme : {4, -1}) {
        const std::string strOut = outputOf([&] { EXPECT_TRUE(controller.setParamScheme(nScheme)); });
        EXPECT_THAT(messages::anyLine(strOut),
                    HasSubstr(messages::assertion({"ISensorController.cpp", "setParamScheme"},
                                                  "p_nScheme >= 0 && (u32)p_nScheme <= m_stSysConf.nSchemeSum") +
                              messages::detail("p_nScheme(" + std::to_string(nScheme) + ")\n")));
        EXPECT_EQ(1, probe.curScheme());
    }
    root.debugLevel(6);
    EXPECT_THAT(outputOf([&] { controller.setParamScheme(4); }), HasSubstr("switch_to(): 1 -> 4\n"))
        << "the switch is attempted";
    EXPECT_THAT(camera.transcript(), IsEmpty());
}

TEST_F(SchemeChoice, WithEnabledAbortASchemeOutOfRangeAborts) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    build(3);
    root.debugLevel(1, true);
    EXPECT_DEATH(controller.setParamScheme(4), "ISensorController.cpp:[0-9]+: .*setParamScheme.*`bRet'");
}

TEST_F(SchemeChoice, WaitsInHalfSecondsWhileSomebodyElseIsBusy) {
    for (const u32 nBit : {SensorControllerProbe::resetting_flag, SensorControllerProbe::rollback_flag,
                           SensorControllerProbe::switching_flag}) {
        ISensorController other;
        SensorControllerProbe otherProbe(other);
        otherProbe.buildSets(2, records());
        otherProbe.setFlags(nBit);
        const INT64 nStart = platform::Clock::monotonicMicroseconds();
        std::thread releaser([&] {
            while (platform::Clock::monotonicMicroseconds() - nStart < 3 * 500000) {
                std::this_thread::yield();
            }
            otherProbe.clearFlags(nBit);
        });
        EXPECT_TRUE(other.setParamScheme(1));
        releaser.join();
        const INT64 nWaited = platform::Clock::monotonicMicroseconds() - nStart;
        EXPECT_GE(nWaited, 3 * 500000);
        EXPECT_EQ(0, nWaited % 500000) << "each wait is half a second";
        EXPECT_EQ(1, otherProbe.curScheme());
        other.uinit();
    }
}

TEST_F(SchemeChoice, ModeWaitsToo) {
    build(2);
    const INT64 nWaited =
        waitedWhile(SensorControllerProbe::rollback_flag, [&] { EXPECT_TRUE(controller.setParamMode(1)); });
    EXPECT_GE(nWaited, 3 * 500000);
    EXPECT_EQ(1u, probe.paramMode());
}

TEST_F(SchemeChoice, InitDoesNotMakeItWait) {
    build(2);
    probe.setFlags(SensorControllerProbe::init_flag | SensorControllerProbe::uinit_flag);
    const INT64 nStart = platform::Clock::monotonicMicroseconds();
    EXPECT_TRUE(controller.setParamScheme(1));
    EXPECT_EQ(nStart, platform::Clock::monotonicMicroseconds());
}

TEST_F(SchemeChoice, ModeIsStoredAndSwitchesNothing) {
    build(2);
    probe.setCurScheme(0);
    int nMode = -1;
    for (const int nWanted : {1, 0}) {
        EXPECT_TRUE(controller.setParamMode(nWanted));
        EXPECT_TRUE(controller.getParamMode(nMode));
        EXPECT_EQ(nWanted, nMode);
    }
    EXPECT_THAT(camera.transcript(), IsEmpty());
    EXPECT_EQ(0, probe.curScheme());
    EXPECT_EQ("", root.errorLog());
}

TEST_F(SchemeChoice, MeantAModeOutOfRangeIsReportedAndStored) {
    build(2);
    for (const int nMode : {2, -1}) {
        const std::string strOut = outputOf([&] { EXPECT_TRUE(controller.setParamMode(nMode)); });
        EXPECT_EQ(messages::assertion({"ISensorController.cpp", "setParamMode"}, "0 == p_nMode || 1 == p_nMode") +
                      messages::detail("p_nMode(" + std::to_string(nMode) + ")\n"),
                  messages::anyLine(strOut));
        EXPECT_EQ(static_cast<u32>(nMode), probe.paramMode());
    }
}

TEST_F(SchemeChoice, OnAControllerThatIsNotInitialisedFailsAndTouchesNothing) {
    EXPECT_FALSE(controller.setParamScheme(0));
    EXPECT_FALSE(controller.setParamMode(1));
    int nScheme = 7;
    int nMode = 7;
    EXPECT_TRUE(controller.getParamScheme(nScheme));
    EXPECT_TRUE(controller.getParamMode(nMode));
    EXPECT_EQ(-1, nScheme);
    EXPECT_EQ(0, nMode);
    EXPECT_THAT(camera.transcript(), IsEmpty());
}

// A second lock of the mutex by one thread ends the process, with both places.
TEST_F(SchemeChoice, EachOperationTakesTheMutex) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    build(2);
    int nOut = 0;
    const std::vector<std::function<void()>> vecOperations = {
        [&] { controller.setParamScheme(1); },
        [&] { controller.getParamScheme(nOut); },
        [&] { controller.setParamMode(1); },
        [&] { controller.getParamMode(nOut); },
    };
    for (std::size_t i = 0; i < vecOperations.size(); ++i) {
        EXPECT_DEATH(
            {
                const QVMutexManager guard(&probe.mutex(), "the test", 7);
                vecOperations[i]();
            },
            "QVMutex: locked a second time at ISensorController.cpp:[0-9]+ by the thread that locked it at the test:7")
            << "operation " << i;
    }
}

}  // namespace
