// No scheme applied: the state before init, after uinit, and after an init that leaves the choice to automatic switching
// while the host's mode is manual.
#include "tests/unit/initialisation/Operations.h"
#include "tests/unit/initialisation/StartedCamera.h"

#include <algorithm>

namespace {

constexpr u32 kNone = 0xFFFFFFFFu;

class NoScheme : public StartedCamera {
protected:
    // A start that applies no scheme: its stored mode asks for switching, and the host has not allowed it.
    void start(u32 p_nMode = 1) {
        stored({with(factory(), KEY_SCHEME_MODE, p_nMode), with(factory(), KEY_BRIGHTNESS, 22)});
        init();
        EXPECT_EQ(-1, scheme());
        camera.clear();
    }

    std::vector<Records> sets() { return {setOf(0), setOf(1), setOf(2)}; }
};

class NoSchemeFor : public NoScheme, public testing::WithParamInterface<Operation> {};

std::string nameOf(const testing::TestParamInfo<Operation>& p_stInfo) {
    std::string strName = p_stInfo.param.name;
    std::replace(strName.begin(), strName.end(), ' ', '_');
    return strName;
}

}  // namespace

// --- Every operation ---

TEST_P(NoSchemeFor, EveryOperationIsSafe) {
    for (const u32 nMode : {1u, 2u}) {
        start(nMode);
        EXPECT_EQ(GetParam().ready, quietly([this] { return GetParam().call(controller()); }));
        controller().uinit();
        EXPECT_EQ(-1, scheme());
    }
}

TEST_P(NoSchemeFor, EveryOperationIsSafeOnAPlateDevice) {
    device(8);
    start(1);
    EXPECT_TRUE(probe().isLPRDevice());
    EXPECT_EQ(GetParam().ready, quietly([this] { return GetParam().call(controller()); }));
}

INSTANTIATE_TEST_SUITE_P(Sets, NoSchemeFor, testing::ValuesIn(setOperations()), nameOf);
INSTANTIATE_TEST_SUITE_P(Direct, NoSchemeFor, testing::ValuesIn(freeOperations()), nameOf);

// --- What they do in it ---

TEST_F(NoScheme, IsTheStateOfANewController) {
    EXPECT_EQ(-1, scheme());
    EXPECT_EQ(-1, probe().lastScheme());
}

TEST_F(NoScheme, SendsAParameterAndRecordsItNowhere) {
    start();
    const auto vecBefore = sets();
    EXPECT_EQ(0, controller().setParameter(KEY_BRIGHTNESS, 50, true));
    EXPECT_EQ(0, controller().setParameter(KEY_BRIGHTNESS, 50, true));
    EXPECT_EQ("ia ch0 set 34 = 50\nia ch0 set 34 = 50\n", camera.text()) << "nothing is in force";
    EXPECT_EQ(vecBefore, sets());
}

TEST_F(NoScheme, SendsALightParameterWithoutATwin) {
    start();
    const auto vecBefore = sets();
    EXPECT_EQ(0, controller().setParameters("(161,1)(168,2)(200,3)", true));
    EXPECT_EQ("ia ch0 set 161 = 1\n", camera.text());
    EXPECT_EQ(vecBefore, sets());
}

TEST_F(NoScheme, LeavesTheSwitchingSourceAlone) {
    start(1);
    EXPECT_EQ(0, controller().setParameter(KEY_SCHEME_MODE, 2, true));
    EXPECT_TRUE(probe().scheduleSwitch());
    EXPECT_FALSE(probe().dnSchemeSwitch());
    EXPECT_EQ("", camera.text());
}

TEST_F(NoScheme, NeitherSendsNorRecordsADayNightKeyUnderDayNightSwitching) {
    start(2);
    const auto vecBefore = sets();
    EXPECT_EQ(0, controller().setParameter(KEY_DN_MODE, 3, true));
    EXPECT_EQ("", camera.text());
    EXPECT_EQ(vecBefore, sets());
}

TEST_F(NoScheme, TakesCompanionsAsZero) {
    start();
    EXPECT_EQ(0, controller().setParameters("(145,30)(149,6)(2384,1)", true));
    EXPECT_EQ("ia ch0 set 145 = 30 0 0\nia ch0 set 149 = 6 0 0 0\nia ch0 set 2384 = 1\n", camera.text());
}

TEST_F(NoScheme, StoresNothingEvenByForce) {
    start();
    const auto vecBefore = sets();
    EXPECT_EQ(-1, probe().setKeyValToCache(kNone, KEY_BRIGHTNESS, 1, true));
    EXPECT_EQ(-2, probe().setKeyValToCache(kNone, KEY_BRIGHTNESS, 1, false));
    u32 nValue = 77;
    EXPECT_EQ(-1, probe().getKeyValFromCache(kNone, KEY_BRIGHTNESS, nValue));
    EXPECT_EQ(77u, nValue);
    EXPECT_FALSE(probe().isKeyValSame({KEY_BRIGHTNESS, 50}));
    EXPECT_EQ(vecBefore, sets());
}

TEST_F(NoScheme, SwitchesToASchemeByEveryKey) {
    start();
    EXPECT_TRUE(controller().setParamScheme(1));
    EXPECT_EQ("ia ch0 set 34 = 22\n" + applied().substr(sizeof("ia ch0 set 34 = 50\n") - 1), camera.text());
    EXPECT_EQ(1, scheme());
    EXPECT_EQ(-1, probe().lastScheme());
}

TEST_F(NoScheme, StaysWhenASwitchIsRefused) {
    start();
    for (const int nScheme : {-1, 3, 99, 2147483647, -2147483647 - 1}) {
        EXPECT_TRUE(quietly([&] { return controller().setParamScheme(nScheme); }));
        EXPECT_EQ(-1, scheme()) << nScheme;
    }
    EXPECT_EQ("", camera.text());
    EXPECT_EQ(SensorControllerProbe::inited_flag, probe().flags());
}

TEST_F(NoScheme, IsLeftByTheThreadWhenTheHostAllowsIt) {
    start(1);
    letTheThreadRun();
    EXPECT_EQ(-1, scheme()) << "the host's mode is manual";
    controller().setParamMode(1);
    letTheThreadRun();
    EXPECT_EQ(0, scheme());
    EXPECT_EQ(applied(), camera.text());
}

TEST_F(NoScheme, IsLeftByAReset) {
    start(1);
    EXPECT_TRUE(controller().resetParameters());
    EXPECT_EQ(0, scheme());
    EXPECT_EQ(fileOf(with(factory(), KEY_SCHEME_MODE, 0)), root.read(parameterFile(0)));
    EXPECT_EQ(applied() + "ia ch0 commands\n" + applied(), camera.text());
}
