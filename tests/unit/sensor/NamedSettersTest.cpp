// The setters that the host knows by name.
#include "tests/unit/sensor/WriteTest.h"

#include <functional>

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

struct NamedSetter {
    const char* name;
    std::function<bool(ISensorController&, int&)> call;
    u32 key;
    u32 command;
};

NamedSetter byReference(const char* p_szName, bool (ISensorController::*p_pfnSetter)(int&), u32 p_nKey,
                        u32 p_nCommand) {
    return {p_szName,
            [=](ISensorController& p_objController, int& p_nValue) { return (p_objController.*p_pfnSetter)(p_nValue); },
            p_nKey, p_nCommand};
}

NamedSetter byValue(const char* p_szName, bool (ISensorController::*p_pfnSetter)(int), u32 p_nKey, u32 p_nCommand) {
    return {p_szName,
            [=](ISensorController& p_objController, int& p_nValue) { return (p_objController.*p_pfnSetter)(p_nValue); },
            p_nKey, p_nCommand};
}

std::vector<NamedSetter> namedSetters() {
    using C = ISensorController;
    return {
        byValue("setDNMode", &C::setDNMode, 144, 144),
        byReference("setWDRSwitch", &C::setWDRSwitch, 2368, 2368),
        byReference("setWDRStrength", &C::setWDRStrength, 2369, 2369),
        byReference("setHLCSwitch", &C::setHLCSwitch, 112, 112),
        byReference("setHLCStrength", &C::setHLCStrength, 113, 113),
        byReference("setBLCSwitch", &C::setBLCSwitch, 128, 128),
        byReference("setBLCStrength", &C::setBLCStrength, 130, 130),
        byReference("setDefogSwitch", &C::setDefogSwitch, 2400, 2400),
        byReference("setDefogStrength", &C::setDefogStrength, 2401, 2401),
        byReference("set2DSwitch", &C::set2DSwitch, 2304, 2304),
        byReference("set2DMode", &C::set2DMode, 2305, 2305),
        byReference("set2DAutoMaxStrength", &C::set2DAutoMaxStrength, 2306, 2306),
        byReference("set2DManualMaxStrength", &C::set2DManualMaxStrength, 2307, 2307),
        byReference("set3DSwitch", &C::set3DSwitch, 2308, 2308),
        byReference("set3DMode", &C::set3DMode, 2309, 2309),
        byReference("set3DAutoMaxStrength", &C::set3DAutoMaxStrength, 2312, 2312),
        byReference("set3DManualMaxStrength", &C::set3DManualMaxStrength, 2313, 2313),
        byReference("setBeaway", &C::setBeaway, 2385, 2385),
        byValue("setIRSwitch", &C::setIRSwitch, 160, 160),
        byValue("setWhiteSwitch", &C::setWhiteSwitch, 170, 168),
        byValue("setWhiteMode", &C::setWhiteMode, 171, 169),
    };
}

class NamedSetters : public ControllerTest {
protected:
    // The keys of all setters, all 0, and what their handlers look for.
    NamedSetters() {
        std::vector<KeyVal> vecRecords = {{KEY_MIRROR, 0}};
        for (const NamedSetter& stSetter : namedSetters()) {
            vecRecords.push_back({stSetter.key, 0});
        }
        build(1, vecRecords);
    }

    static std::string setLine(const NamedSetter& p_stSetter, int p_nValue) {
        return "ia ch0 set " + std::to_string(p_stSetter.command) + " = " + std::to_string(p_nValue);
    }
};

TEST_F(NamedSetters, SendTheirKeyAndRecordIt) {
    ASSERT_EQ(21u, namedSetters().size());
    for (const NamedSetter& stSetter : namedSetters()) {
        SCOPED_TRACE(stSetter.name);
        camera.clear();
        int nValue = 5;
        EXPECT_TRUE(stSetter.call(controller, nValue));
        const std::vector<std::string> vecCalls = driverCalls();
        ASSERT_FALSE(vecCalls.empty());
        EXPECT_EQ(setLine(stSetter, 5), vecCalls.back());
        EXPECT_EQ(2385 == stSetter.key ? 2u : 1u, vecCalls.size());
        EXPECT_EQ(5u, probe.valueIn(0, stSetter.key));
        EXPECT_EQ(0u, probe.valueIn(1, stSetter.key));
    }
}

TEST_F(NamedSetters, SendNothingWhenTheirValueIsInForce) {
    for (const NamedSetter& stSetter : namedSetters()) {
        SCOPED_TRACE(stSetter.name);
        int nValue = 0;
        EXPECT_TRUE(stSetter.call(controller, nValue));
    }
    EXPECT_THAT(camera.transcript(), IsEmpty());
}

TEST_F(NamedSetters, TellThatTheirKeyFailed) {
    for (const NamedSetter& stSetter : namedSetters()) {
        SCOPED_TRACE(stSetter.name);
        camera.driverFails(stSetter.command, IA_CMD_OPT_SET, -5);
        camera.videoFails(static_cast<int>(stSetter.key), 5);  // counts for wide dynamic range
        int nValue = 5;
        EXPECT_FALSE(stSetter.call(controller, nValue));
        EXPECT_EQ(0u, probe.valueIn(0, stSetter.key));
    }
}

TEST_F(NamedSetters, OnlyReadTheValueTheyAreHanded) {
    controller.setShowWDRFalg(false);
    setshowBeawayFalg(false);
    for (const NamedSetter& stSetter : namedSetters()) {
        SCOPED_TRACE(stSetter.name);
        camera.onDriver(stSetter.command, IA_CMD_OPT_SET, [](int, void* p_pData) {
            *static_cast<int*>(p_pData) = 9;
            return 0;
        });
        int nValue = 5;
        EXPECT_TRUE(stSetter.call(controller, nValue));
        EXPECT_EQ(5, nValue);
    }
    setshowBeawayFalg(true);
}

TEST_F(NamedSetters, GoThroughTheWritePathOfOneParameter) {
    root.debugLevel(6);
    for (const NamedSetter& stSetter : namedSetters()) {
        SCOPED_TRACE(stSetter.name);
        int nValue = 0;
        EXPECT_THAT(messages::anyLine(outputOf([&] { stSetter.call(controller, nValue); })),
                    testing::StartsWith(messages::debug(
                        in("setParameter"), "p_Parameters22222222222(" + std::to_string(stSetter.key) + ", 0)\n")));
    }
}

// --- Infrared and white light ---

class LightSwitches : public NamedSetters {};

TEST_F(LightSwitches, InfraredOnSwitchesTheWhiteLightOffFirst) {
    probe.setKeyValToCache(0, KEY_WHITE_SWITCH, 1, false);
    camera.driverHolds(0, 168, 1);
    EXPECT_TRUE(controller.setIRSwitch(1));
    EXPECT_THAT(camera.transcript(), ElementsAre("ia ch0 get 168 -> 1", "ia ch0 set 168 = 0", "ia ch0 set 160 = 1"));
    EXPECT_EQ(0u, probe.valueIn(0, KEY_WHITE_SWITCH));
    EXPECT_EQ(1u, probe.valueIn(0, KEY_IR_SWITCH));
}

TEST_F(LightSwitches, WhiteLightOnSwitchesInfraredOffFirst) {
    probe.setKeyValToCache(0, KEY_IR_SWITCH, 1, false);
    camera.driverHolds(0, 160, 1);
    EXPECT_TRUE(controller.setWhiteSwitch(1));
    EXPECT_THAT(camera.transcript(), ElementsAre("ia ch0 get 160 -> 1", "ia ch0 set 160 = 0", "ia ch0 set 168 = 1"));
    EXPECT_EQ(0u, probe.valueIn(0, KEY_IR_SWITCH));
    EXPECT_EQ(1u, probe.valueIn(0, KEY_WHITE_SWITCH));
}

TEST_F(LightSwitches, TheOtherLightIsLeftAloneUnlessTheDriverSaysOne) {
    for (const int nState : {0, 2, -1}) {
        SCOPED_TRACE(nState);
        probe.setKeyValToCache(0, KEY_IR_SWITCH, 0, false);
        probe.setKeyValToCache(0, KEY_WHITE_SWITCH, 1, false);  // an off would be sent
        camera.driverHolds(0, 168, nState);
        camera.clear();
        EXPECT_TRUE(controller.setIRSwitch(1));
        EXPECT_THAT(camera.linesLike("ia ch0 set"), ElementsAre("ia ch0 set 160 = 1"));

        probe.setKeyValToCache(0, KEY_IR_SWITCH, 1, false);
        probe.setKeyValToCache(0, KEY_WHITE_SWITCH, 0, false);
        camera.driverHolds(0, 160, nState);
        camera.clear();
        EXPECT_TRUE(controller.setWhiteSwitch(1));
        EXPECT_THAT(camera.linesLike("ia ch0 set"), ElementsAre("ia ch0 set 168 = 1"));
    }
}

TEST_F(LightSwitches, TheOtherLightIsAskedOfTheDriverNotOfTheSet) {
    probe.setKeyValToCache(0, KEY_WHITE_SWITCH, 1, false);
    camera.driverHolds(0, 168, 0);
    EXPECT_TRUE(controller.setIRSwitch(1));
    EXPECT_THAT(camera.transcript(), ElementsAre("ia ch0 get 168 -> 0", "ia ch0 set 160 = 1"));
    EXPECT_EQ(1u, probe.valueIn(0, KEY_WHITE_SWITCH));
}

TEST_F(LightSwitches, AnOffThatTheSetHoldsAlreadyIsNotSentToTheOtherLight) {
    camera.driverHolds(0, 168, 1);
    EXPECT_TRUE(controller.setIRSwitch(1));
    EXPECT_THAT(camera.transcript(), ElementsAre("ia ch0 get 168 -> 1", "ia ch0 set 160 = 1"));
}

TEST_F(LightSwitches, NothingChangesWhenTheOtherLightIsNotKnown) {
    camera.driverFails(168, IA_CMD_OPT_GET, -3);
    camera.driverFails(160, IA_CMD_OPT_GET, -3);
    EXPECT_FALSE(controller.setIRSwitch(1));
    EXPECT_FALSE(controller.setWhiteSwitch(1));
    EXPECT_THAT(camera.transcript(), ElementsAre("ia ch0 get 168 failed -3", "ia ch0 get 160 failed -3"));
    EXPECT_EQ(0u, probe.valueIn(0, KEY_IR_SWITCH));
    EXPECT_EQ(0u, probe.valueIn(0, KEY_WHITE_SWITCH));
}

TEST_F(LightSwitches, ALightStaysOffWhenTheOtherDoesNotGoOff) {
    probe.setKeyValToCache(0, KEY_WHITE_SWITCH, 1, false);
    camera.driverHolds(0, 168, 1);
    camera.driverFails(168, IA_CMD_OPT_SET, -3);
    EXPECT_FALSE(controller.setIRSwitch(1));
    EXPECT_THAT(camera.transcript(), ElementsAre("ia ch0 get 168 -> 1", "ia ch0 set 168 = 0 failed -3"));
    EXPECT_EQ(0u, probe.valueIn(0, KEY_IR_SWITCH));

    camera.clear();
    probe.setKeyValToCache(0, KEY_IR_SWITCH, 1, false);
    camera.driverHolds(0, 160, 1);
    camera.driverFails(160, IA_CMD_OPT_SET, -3);
    EXPECT_FALSE(controller.setWhiteSwitch(1));
    EXPECT_THAT(camera.transcript(), ElementsAre("ia ch0 get 160 -> 1", "ia ch0 set 160 = 0 failed -3"));
}

TEST_F(LightSwitches, SwitchingOffTouchesItsOwnKeyOnly) {
    for (const int nOff : {0, 2, -1}) {
        SCOPED_TRACE(nOff);
        probe.setKeyValToCache(0, KEY_IR_SWITCH, 1, false);
        probe.setKeyValToCache(0, KEY_WHITE_SWITCH, 1, false);
        camera.clear();
        EXPECT_TRUE(controller.setIRSwitch(nOff));
        EXPECT_TRUE(controller.setWhiteSwitch(nOff));
        EXPECT_THAT(camera.transcript(), ElementsAre("ia ch0 set 160 = " + std::to_string(nOff),
                                                     "ia ch0 set 168 = " + std::to_string(nOff)));
    }
}

TEST_F(LightSwitches, ALightThatIsOnAlreadyStillSwitchesTheOtherOff) {
    probe.setKeyValToCache(0, KEY_IR_SWITCH, 1, false);
    probe.setKeyValToCache(0, KEY_WHITE_SWITCH, 1, false);
    camera.driverHolds(0, 168, 1);
    EXPECT_TRUE(controller.setIRSwitch(1));
    EXPECT_THAT(camera.transcript(), ElementsAre("ia ch0 get 168 -> 1", "ia ch0 set 168 = 0"));
}

TEST_F(LightSwitches, OfAControllerThatIsNotInitialisedOnlyAsk) {
    ISensorController fresh;
    EXPECT_FALSE(fresh.setIRSwitch(1));
    EXPECT_FALSE(fresh.setWhiteSwitch(1));
    EXPECT_THAT(camera.linesLike("ia ch0 set"), IsEmpty());
}

}  // namespace
