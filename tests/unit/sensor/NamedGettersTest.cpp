// The named getters: each reads one parameter.
#include "tests/unit/sensor/ControllerTest.h"

#include <string>

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

using Controller = ISensorController;

struct Getter {
    const char* name;
    bool (Controller::*operation)(int&);
    u32 key;
};

// getDNMode has tests of its own for what it returns.
const Getter kGetters[] = {
    {"getDNMode", &Controller::getDNMode, 144},
    {"getWDRSwitch", &Controller::getWDRSwitch, 2368},
    {"getWDRStrength", &Controller::getWDRStrength, 2369},
    {"getHLCSwitch", &Controller::getHLCSwitch, 112},
    {"getHLCStrength", &Controller::getHLCStrength, 113},
    {"getBLCSwitch", &Controller::getBLCSwitch, 128},
    {"getBLCStrength", &Controller::getBLCStrength, 130},
    {"getDefogSwitch", &Controller::getDefogSwitch, 2400},
    {"getDefogStrength", &Controller::getDefogStrength, 2401},
    {"get2DSwitch", &Controller::get2DSwitch, 2304},
    {"get2DMode", &Controller::get2DMode, 2305},
    {"get2DAutoMaxStrength", &Controller::get2DAutoMaxStrength, 2306},
    {"get2DManualMaxStrength", &Controller::get2DManualMaxStrength, 2307},
    {"get3DSwitch", &Controller::get3DSwitch, 2308},
    {"get3DMode", &Controller::get3DMode, 2309},
    {"get3DAutoMaxStrength", &Controller::get3DAutoMaxStrength, 2312},
    {"get3DManualMaxStrength", &Controller::get3DManualMaxStrength, 2313},
    {"getBeaway", &Controller::getBeaway, 2385},
    {"getMirrorValue", &Controller::getMirrorValue, 2384},
};

class NamedGetters : public ControllerTest {};

TEST_F(NamedGetters, EachReadsItsParameterFromTheSet) {
    std::vector<KeyVal> vecRecords;
    for (const Getter& stGetter : kGetters) {
        vecRecords.push_back({stGetter.key, stGetter.key + 100000});
    }
    build(1, vecRecords);
    for (const Getter& stGetter : kGetters) {
        int nVal = 0;
        EXPECT_TRUE((controller.*stGetter.operation)(nVal)) << stGetter.name;
        EXPECT_EQ(static_cast<int>(stGetter.key) + 100000, nVal) << stGetter.name;
    }
    EXPECT_THAT(camera.transcript(), IsEmpty());
}

TEST_F(NamedGetters, EachAsksTheDriverForWhatTheSetLacks) {
    build(1, {{KEY_BRIGHTNESS, 1}});
    for (const Getter& stGetter : kGetters) {
        camera.clear();
        camera.driverHolds(0, stGetter.key, -2);
        int nVal = 0;
        EXPECT_TRUE((controller.*stGetter.operation)(nVal)) << stGetter.name;
        EXPECT_EQ(-2, nVal) << stGetter.name;
        EXPECT_THAT(camera.transcript(), ElementsAre("ia ch0 get " + std::to_string(stGetter.key) + " -> -2"));
    }
}

TEST_F(NamedGetters, EachFailsWithTheDriverAndLeavesTheValue) {
    root.debugLevel(-1);
    build(1, {{KEY_BRIGHTNESS, 1}});
    for (const Getter& stGetter : kGetters) {
        camera.driverFails(stGetter.key, IA_CMD_OPT_GET, -3);
        int nVal = 9;
        EXPECT_EQ(KEY_DN_MODE == stGetter.key, (controller.*stGetter.operation)(nVal)) << stGetter.name;
        EXPECT_EQ(9, nVal) << stGetter.name;
    }
}

TEST_F(NamedGetters, EachIsRefusedWithoutSets) {
    for (const Getter& stGetter : kGetters) {
        int nVal = 9;
        EXPECT_EQ(KEY_DN_MODE == stGetter.key, (controller.*stGetter.operation)(nVal)) << stGetter.name;
        EXPECT_EQ(9, nVal) << stGetter.name;
    }
    EXPECT_THAT(camera.transcript(), IsEmpty());
}

TEST_F(NamedGetters, MeantTheDayNightModeIsTrueEvenWhenTheDriverFails) {
    build(1, {{KEY_BRIGHTNESS, 1}});
    camera.driverFails(KEY_DN_MODE, IA_CMD_OPT_GET, -3);
    int nVal = 9;
    EXPECT_EQ(messages::assertion(in("getParameter"), "QVS_SUCCESS == doIaCmd(p_nKey, IA_CMD_OPT_GET, &p_nVal)") +
                  messages::detail("get key(144) val from 2a err"),
              messages::anyLine(outputOf([&] { EXPECT_TRUE(controller.getDNMode(nVal)); })));
    EXPECT_EQ(9, nVal);
}

TEST_F(NamedGetters, AFailedDayNightModeStillEndsTheProcessWhileAssertionsAreEnabled) {
    build(1, {{KEY_BRIGHTNESS, 1}});
    camera.driverFails(KEY_DN_MODE, IA_CMD_OPT_GET, -3);
    root.debugLevel(1, true);
    int nVal = 9;
    EXPECT_DEATH(controller.getDNMode(nVal), abortIn("getParameter"));
}

}  // namespace
