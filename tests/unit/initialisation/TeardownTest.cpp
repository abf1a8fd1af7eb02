// The end of a controller, and a controller that has not begun or has ended.
#include "tests/unit/initialisation/Operations.h"
#include "tests/unit/initialisation/StartedCamera.h"

#include <algorithm>
#include <cstdint>
#include <future>
#include <thread>
#include <vector>

namespace {

class Teardown : public StartedCamera {};

class NotInitialised : public StartedCamera, public testing::WithParamInterface<Operation> {
protected:
    void expectRefused() {
        camera.clear();
        root.debugLevel(6);
        const std::string strOut =
            messages::anyLine(outputOf([this] { EXPECT_EQ(GetParam().notReady, GetParam().call(controller())); }));
        EXPECT_NE(std::string::npos, strOut.find(": the controller is not initialised\n\033[0m")) << strOut;
        EXPECT_EQ(0u, camera.linesLike("ia ch0 set").size()) << camera.text();
        EXPECT_EQ(0u, camera.linesLike("video").size()) << camera.text();
    }
};

class DriverOf : public StartedCamera, public testing::WithParamInterface<Operation> {};

std::string nameOfCall(const testing::TestParamInfo<Operation>& p_stInfo) {
    std::string strName = p_stInfo.param.name;
    std::replace(strName.begin(), strName.end(), ' ', '_');
    return strName;
}

}  // namespace

// --- The end ---

TEST_F(Teardown, OfANewControllerDoesNothing) {
    root.debugLevel(7);
    EXPECT_EQ("", outputOf([this] { controller().uinit(); }));
    EXPECT_EQ(0u, probe().flags());
    EXPECT_FALSE(controller().getSensorStatus());
    EXPECT_EQ(160u, probe().keyCmdNum());
}

TEST_F(Teardown, StopsTheThread) {
    init();
    EXPECT_TRUE(probe().thread().isRunning());
    root.debugLevel(7);
    EXPECT_EQ("", outputOf([this] { controller().uinit(); }));
    EXPECT_FALSE(probe().thread().isRunning());
    EXPECT_EQ("", root.errorLog());
}

TEST_F(Teardown, LeavesTheStateOfAControllerWithoutSets) {
    init();
    controller().setParamMode(1);
    controller().setParamScheme(1);
    controller().uinit();
    EXPECT_FALSE(probe().hasSets());
    EXPECT_EQ(0u, probe().keyValSum());
    EXPECT_EQ(0u, probe().paramMode());
    EXPECT_EQ(-1, scheme());
    EXPECT_EQ(-1, probe().lastScheme());
    EXPECT_EQ(154u, probe().keyCmdNum());
}

TEST_F(Teardown, MeantTheParameterBlockOutlivesTheTeardownAndTheNextStartTakesAnother) {
    init();
    const KeyVal* const pOld = probe().set(0);
    const std::vector<u32> vecValues = {pOld[0].value, pOld[1].value};
    const u32 nFirstKey = pOld[0].key;
    controller().uinit();
    EXPECT_EQ(nFirstKey, pOld[0].key) << "still memory of the controller's own";
    EXPECT_EQ(vecValues, (std::vector<u32>{pOld[0].value, pOld[1].value}));
    init();
    EXPECT_NE(pOld, probe().set(0));
    EXPECT_EQ(nFirstKey, pOld[0].key);
}

TEST_F(Teardown, MeantThreeReleasedAddressesStayUntilTheNextStart) {
    init();
    const auto addresses = [this] {
        return std::vector<std::uintptr_t>{reinterpret_cast<std::uintptr_t>(probe().keyCmdMap()),
                                           reinterpret_cast<std::uintptr_t>(probe().scratch()),
                                           reinterpret_cast<std::uintptr_t>(probe().work())};
    };
    const auto vecBefore = addresses();
    controller().uinit();
    EXPECT_EQ(vecBefore, addresses());
}

TEST_F(Teardown, MeantTheControllerStillCountsAsInitialised) {
    init();
    controller().uinit();
    EXPECT_TRUE(controller().getSensorStatus());
    EXPECT_EQ(SensorControllerProbe::inited_flag, probe().flags());
    EXPECT_EQ(77u, controller().getSensorType());
}

TEST_F(Teardown, KeepsTheParameterFiles) {
    init();
    const std::string strFile = root.read(parameterFile(0));
    controller().setParameter(KEY_BRIGHTNESS, 99, true);
    controller().uinit();
    EXPECT_EQ(strFile, root.read(parameterFile(0))) << "what was not stored is not stored";
    EXPECT_TRUE(root.exists(kVersionFile));
}

TEST_F(Teardown, SendsNothing) {
    init();
    camera.clear();
    controller().uinit();
    EXPECT_EQ("", camera.text());
}

TEST_F(Teardown, TwiceDoesNothingTheSecondTime) {
    init();
    controller().uinit();
    root.debugLevel(7);
    EXPECT_EQ("", outputOf([this] { controller().uinit(); }));
    controller().uinit();
    EXPECT_EQ(SensorControllerProbe::inited_flag, probe().flags());
}

TEST_F(Teardown, ReleasesTheTextsOfTheLanguageTable) {
    init();
    LanguageFileEntry aEntries[2] = {};
    aEntries[0].szCommonFile = strdup("common");
    aEntries[1].szLanguageFile = strdup("language");
    probe().sysConf().pLanguageFiles = aEntries;
    probe().sysConf().nLanguageSum = 2;
    controller().uinit();  // the leak and address sanitizers watch
    EXPECT_EQ("", controller().getUICommonFile(0));
}

TEST_F(Teardown, IsMarkedInTheFlagsAndReleasesNothingUntilTheThreadHasEnded) {
    stored({with(factory(), KEY_SCHEME_MODE, 2), factory()});
    init();
    controller().setParamMode(1);
    std::promise<void> inCycle;
    u32 nDuring = 0;
    bool bHasSets = false;
    camera.onDriver(153, IA_CMD_OPT_GET, [&](int, void*) {
        inCycle.set_value();
        for (int i = 0; i < 10000000 && 0 == (nDuring & SensorControllerProbe::uinit_flag); ++i) {
            std::this_thread::yield();
            nDuring = probe().flags();
        }
        bHasSets = probe().hasSets();
        return 0;
    });
    std::thread clock([] { letTheThreadRun(); });
    inCycle.get_future().wait();
    controller().uinit();
    clock.join();
    EXPECT_EQ(SensorControllerProbe::inited_flag | SensorControllerProbe::uinit_flag, nDuring);
    EXPECT_TRUE(bHasSets);
    EXPECT_EQ(SensorControllerProbe::inited_flag, probe().flags());
}

// A host must not do that; the thread cannot wait for itself.
TEST_F(Teardown, ReportsAThreadThatCannotBeStopped) {
    stored({with(factory(), KEY_SCHEME_MODE, 2), factory()});
    init();
    controller().setParamMode(1);
    camera.onDriver(153, IA_CMD_OPT_GET, [this](int, void*) {
        controller().uinit();
        return 0;
    });
    const std::string strOut = outputOf([] { letTheThreadRun(); });
    EXPECT_EQ(messages::assertion({"ISensorController.cpp", "uinit", "253"}, "m_pSensorThread->stop()"), strOut);
    EXPECT_EQ(messages::loggedAssertion({"ISensorController.cpp", "uinit", "253"}, "m_pSensorThread->stop()"),
              root.errorLog());
    EXPECT_EQ(-1, scheme());
    EXPECT_EQ(0u, camera.linesLike("ia ch0 set").size()) << "there is nothing left to switch to";
}

// --- Before the beginning and after the end ---

TEST_P(NotInitialised, OperationOfANewControllerIsRefused) {
    expectRefused();
    EXPECT_EQ(-1, scheme());
}

TEST_P(NotInitialised, OperationOfAnEndedControllerIsRefused) {
    init();
    controller().uinit();
    expectRefused();
    EXPECT_EQ(-1, scheme());
    EXPECT_TRUE(root.exists(parameterFile(0))) << "nothing is deleted";
}

INSTANTIATE_TEST_SUITE_P(All, NotInitialised, testing::ValuesIn(setOperations()), nameOfCall);

TEST_P(DriverOf, ANewAndAnEndedControllerIsReached) {
    EXPECT_EQ(GetParam().notReady, GetParam().call(controller()));
    init();
    EXPECT_EQ(GetParam().notReady, GetParam().call(controller()));
    controller().uinit();
    camera.clear();
    EXPECT_EQ(GetParam().notReady, GetParam().call(controller()));
}

INSTANTIATE_TEST_SUITE_P(All, DriverOf, testing::ValuesIn(freeOperations()), nameOfCall);
