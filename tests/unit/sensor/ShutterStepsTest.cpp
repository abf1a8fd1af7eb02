// The maximum shutter as a place in the driver's list: read, set and stepped.
#include "technic/QVMutex.h"
#include "tests/unit/sensor/RangedSets.h"

#include <climits>

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

namespace {

class Shutter : public RangedSets {
protected:
    Shutter() {
        root.debugLevel(-1);
        listIs({100, 200, 300});
    }

    void listIs(const std::vector<int>& p_vecItems) {
        camera.dynamicCommands({KEY_MAX_SHUTTER});
        camera.range(KEY_MAX_SHUTTER, RecordingCamera::rangeOf(0, p_vecItems));
    }
    // The driver's value, and another one in memory so that a set of any value of the list is sent.
    void currentIs(int p_nValue) {
        camera.driverHolds(0, KEY_MAX_SHUTTER, p_nValue);
        cached(0, KEY_MAX_SHUTTER, 999);
        camera.clear();
    }
    std::vector<std::string> sets() { return camera.linesLike("ia ch0 set "); }

    void expectNothingSet() {
        EXPECT_THAT(sets(), IsEmpty());
        EXPECT_EQ(999u, probe.valueIn(0, KEY_MAX_SHUTTER));
    }
};

TEST_F(Shutter, ItsPlaceIsThatOfTheDriversValue) {
    for (int i = 0; i < 3; ++i) {
        currentIs(100 + 100 * i);
        int nIndex = -7;
        EXPECT_TRUE(controller.getShutterValue(nIndex));
        EXPECT_EQ(i, nIndex);
        EXPECT_THAT(camera.transcript(), ElementsAre("ia ch0 commands", "ia ch0 range 49",
                                                     "ia ch0 get 49 -> " + std::to_string(100 + 100 * i)));
    }
}

TEST_F(Shutter, TheFirstOfTwoEqualValuesIsItsPlace) {
    listIs({300, 100, 200, 100, 300});
    currentIs(100);
    int nIndex = -7;
    EXPECT_TRUE(controller.getShutterValue(nIndex));
    EXPECT_EQ(1, nIndex);
    EXPECT_TRUE(controller.shutterUp());
    EXPECT_THAT(sets(), ElementsAre("ia ch0 set 49 = 200"));
}

TEST_F(Shutter, AValueOutsideTheListHasNoPlaceAndNoStep) {
    for (const int nValue : {150, 0, -100, 301}) {
        currentIs(nValue);
        int nIndex = -7;
        EXPECT_FALSE(controller.getShutterValue(nIndex));
        EXPECT_EQ(-7, nIndex);
        EXPECT_FALSE(controller.shutterUp());
        EXPECT_FALSE(controller.shutterDown());
        expectNothingSet();
    }
    EXPECT_EQ("", root.errorLog());
}

TEST_F(Shutter, AReadThatFailsHasNoPlaceAndNoStepAndIsNoAssertion) {
    root.debugLevel(1);
    currentIs(200);
    camera.driverFails(KEY_MAX_SHUTTER, IA_CMD_OPT_GET, -3);
    int nIndex = -7;
    EXPECT_THAT(outputOf([&] {
                    EXPECT_FALSE(controller.getShutterValue(nIndex));
                    EXPECT_FALSE(controller.shutterUp());
                    EXPECT_FALSE(controller.shutterDown());
                }),
                Not(HasSubstr("Assertion")));
    EXPECT_EQ(-7, nIndex);
    expectNothingSet();
    EXPECT_EQ("", root.errorLog());
    EXPECT_EQ(3u, camera.linesLike("ia ch0 get 49 failed -3").size());
}

TEST_F(Shutter, ADriverThatFillsNothingInIsAtZero) {
    listIs({5, 0});
    camera.onDriver(KEY_MAX_SHUTTER, IA_CMD_OPT_GET, [](int, void*) { return IA_OK; });
    int nIndex = -7;
    EXPECT_TRUE(controller.getShutterValue(nIndex));
    EXPECT_EQ(1, nIndex);
}

TEST_F(Shutter, APlaceIsSetAsItsValueAndTheDriversOwnIsNotRead) {
    currentIs(150);
    EXPECT_TRUE(controller.setShutterValue(2));
    EXPECT_THAT(camera.transcript(), ElementsAre("ia ch0 commands", "ia ch0 range 49", "ia ch0 set 49 = 300"));
    EXPECT_EQ(300u, probe.valueIn(0, KEY_MAX_SHUTTER));
    EXPECT_TRUE(controller.setShutterValue(0));
    EXPECT_EQ(100u, probe.valueIn(0, KEY_MAX_SHUTTER));
}

TEST_F(Shutter, APlaceBehindTheListOrBelowZeroIsRefused) {
    currentIs(100);
    for (const int nIndex : {3, 4, INT_MAX, -1, -3, INT_MIN}) {
        EXPECT_FALSE(controller.setShutterValue(nIndex)) << nIndex;
    }
    expectNothingSet();
    EXPECT_EQ("", root.errorLog());
}

TEST_F(Shutter, AnEmptyListHasNoPlaces) {
    listIs({});
    currentIs(0);
    int nIndex = -7;
    EXPECT_FALSE(controller.setShutterValue(0));
    EXPECT_FALSE(controller.getShutterValue(nIndex));
    EXPECT_FALSE(controller.shutterUp());
    EXPECT_FALSE(controller.shutterDown());
    EXPECT_EQ(-7, nIndex);
    expectNothingSet();
}

TEST_F(Shutter, AListThatTheDriverDoesNotTellIsEmpty) {
    currentIs(100);
    int nIndex = -7;
    camera.dynamicCommands({KEY_FIX_SHUTTER});
    EXPECT_FALSE(controller.setShutterValue(0));
    EXPECT_FALSE(controller.getShutterValue(nIndex));
    EXPECT_FALSE(controller.shutterUp());
    listIs({100});
    camera.driverFails(KEY_MAX_SHUTTER, kRange, -3, 3);
    EXPECT_FALSE(controller.setShutterValue(0));
    EXPECT_FALSE(controller.getShutterValue(nIndex));
    EXPECT_FALSE(controller.shutterDown());
    ia_dynamic_params_attr_st stRange = RecordingCamera::rangeOf(0, {100});
    stRange.range_kind = 1;
    camera.range(KEY_MAX_SHUTTER, stRange);
    EXPECT_FALSE(controller.setShutterValue(0));
    expectNothingSet();
}

TEST_F(Shutter, AStepUpGoesTowardsTheEndOfTheList) {
    currentIs(100);
    EXPECT_TRUE(controller.shutterUp());
    EXPECT_THAT(camera.transcript(),
                ElementsAre("ia ch0 commands", "ia ch0 range 49", "ia ch0 get 49 -> 100", "ia ch0 set 49 = 200"));
    EXPECT_EQ(200u, probe.valueIn(0, KEY_MAX_SHUTTER));
}

TEST_F(Shutter, AStepDownGoesTowardsTheBeginningOfTheList) {
    currentIs(300);
    EXPECT_TRUE(controller.shutterDown());
    EXPECT_THAT(camera.transcript(),
                ElementsAre("ia ch0 commands", "ia ch0 range 49", "ia ch0 get 49 -> 300", "ia ch0 set 49 = 200"));
    EXPECT_EQ(200u, probe.valueIn(0, KEY_MAX_SHUTTER));
}

TEST_F(Shutter, UpIsTowardsTheEndWhateverTheOrderOfTheValues) {
    listIs({300, -5, 100});
    currentIs(300);
    EXPECT_TRUE(controller.shutterUp());
    EXPECT_TRUE(controller.shutterUp());
    EXPECT_TRUE(controller.shutterDown());
    EXPECT_THAT(sets(), ElementsAre("ia ch0 set 49 = -5", "ia ch0 set 49 = 100", "ia ch0 set 49 = -5"));
}

TEST_F(Shutter, MeantAStepAtTheEndOfTheListSetsTheCurrentValueAgain) {
    currentIs(300);
    EXPECT_TRUE(controller.shutterUp());
    EXPECT_THAT(sets(), ElementsAre("ia ch0 set 49 = 300"));
    EXPECT_EQ(300u, probe.valueIn(0, KEY_MAX_SHUTTER));
    currentIs(100);
    EXPECT_TRUE(controller.shutterDown());
    EXPECT_THAT(sets(), ElementsAre("ia ch0 set 49 = 100"));
    EXPECT_EQ(100u, probe.valueIn(0, KEY_MAX_SHUTTER));
}

// Setting a parameter does not send what memory holds already.
TEST_F(Shutter, AStepAtTheEndSucceedsWithoutADriverCallWhenMemoryHoldsTheValue) {
    currentIs(300);
    cached(0, KEY_MAX_SHUTTER, 300);
    EXPECT_TRUE(controller.shutterUp());
    currentIs(100);
    cached(0, KEY_MAX_SHUTTER, 100);
    EXPECT_TRUE(controller.shutterDown());
    EXPECT_THAT(sets(), IsEmpty());
}

TEST_F(Shutter, AListOfOneValueStaysWhereItIs) {
    listIs({100});
    currentIs(100);
    EXPECT_TRUE(controller.shutterUp());
    EXPECT_TRUE(controller.shutterDown());
    EXPECT_THAT(sets(), ElementsAre("ia ch0 set 49 = 100"));
}

TEST_F(Shutter, AChangeThatFailsIsFalse) {
    currentIs(200);
    camera.driverFails(KEY_MAX_SHUTTER, IA_CMD_OPT_SET, -5);
    EXPECT_FALSE(controller.setShutterValue(0));
    EXPECT_FALSE(controller.shutterUp());
    EXPECT_FALSE(controller.shutterDown());
    EXPECT_EQ(999u, probe.valueIn(0, KEY_MAX_SHUTTER));
    EXPECT_THAT(sets(), ElementsAre("ia ch0 set 49 = 100 failed -5", "ia ch0 set 49 = 300 failed -5",
                                    "ia ch0 set 49 = 100 failed -5"));
}

TEST_F(Shutter, OnlyTheFirstThirtyValuesCount) {
    listIs(counting(35));
    currentIs(1028);
    EXPECT_FALSE(controller.setShutterValue(30));
    expectNothingSet();
    EXPECT_TRUE(controller.shutterUp());
    EXPECT_TRUE(controller.shutterUp());
    EXPECT_THAT(sets(), ElementsAre("ia ch0 set 49 = 1029")) << "the thirtieth is the end";
    int nIndex = -7;
    EXPECT_TRUE(controller.getShutterValue(nIndex));
    EXPECT_EQ(29, nIndex);
    currentIs(1030);
    EXPECT_FALSE(controller.getShutterValue(nIndex));
    EXPECT_FALSE(controller.shutterUp());
    EXPECT_FALSE(controller.shutterDown());
    EXPECT_TRUE(controller.setShutterValue(29));
    EXPECT_THAT(sets(), ElementsAre("ia ch0 set 49 = 1029"));
}

TEST_F(Shutter, EachLooksAtTheDriversListAnew) {
    currentIs(200);
    int nIndex = -7;
    EXPECT_TRUE(controller.getShutterValue(nIndex));
    EXPECT_EQ(1, nIndex);
    listIs({200, 300});
    EXPECT_TRUE(controller.getShutterValue(nIndex));
    EXPECT_EQ(0, nIndex);
}

TEST_F(Shutter, EachPrintsTheListItLookedAt) {
    currentIs(200);
    int nIndex = -7;
    const std::string strList = "cmd=49 DefaltParam=0 strParamRange=100 200 300\n";
    EXPECT_EQ(strList, outputOf([&] { controller.getShutterValue(nIndex); }));
    EXPECT_EQ(strList, outputOf([&] { controller.setShutterValue(7); }));
    EXPECT_EQ(strList + "\n", outputOf([&] { controller.setShutterValue(0); }));
    EXPECT_EQ(strList + "\n", outputOf([&] { controller.shutterUp(); }));
    EXPECT_EQ(strList + "\n", outputOf([&] { controller.shutterDown(); }));
}

TEST_F(Shutter, EachGoesToTheControllersChannel) {
    controller.setChannelID(4);
    camera.driverHolds(3, KEY_MAX_SHUTTER, 200);
    cached(0, KEY_MAX_SHUTTER, 999);
    EXPECT_TRUE(controller.shutterUp());
    EXPECT_THAT(camera.transcript(),
                ElementsAre("ia ch3 commands", "ia ch3 range 49", "ia ch3 get 49 -> 200", "ia ch3 set 49 = 300"));
}

TEST_F(Shutter, TheChangeIsOneOfTheCurrentScheme) {
    currentIs(200);
    probe.setCurScheme(1);
    EXPECT_TRUE(controller.shutterUp());
    EXPECT_EQ(300u, probe.valueIn(1, KEY_MAX_SHUTTER));
    EXPECT_EQ(999u, probe.valueIn(0, KEY_MAX_SHUTTER));
}

TEST_F(Shutter, OnlyTheChangeHoldsTheLock) {
    currentIs(200);
    std::vector<bool> vecHeld;
    const auto note = [&](int, void* p_pData) {
        vecHeld.push_back(lockIsHeld());
        *static_cast<int*>(p_pData) = 200;
        return IA_OK;
    };
    camera.onDriver(KEY_MAX_SHUTTER, IA_CMD_OPT_GET, note);
    camera.onDriver(KEY_MAX_SHUTTER, IA_CMD_OPT_SET, note);
    EXPECT_TRUE(controller.shutterUp());
    EXPECT_TRUE(controller.shutterDown());
    EXPECT_TRUE(controller.setShutterValue(2));
    EXPECT_THAT(vecHeld, ElementsAre(false, true, false, true, true));
    EXPECT_FALSE(lockIsHeld());
    const QVMutexManager guard(&probe.mutex(), "the test", 7);  // a second lock would end the process
    int nIndex = -7;
    EXPECT_TRUE(controller.getShutterValue(nIndex));
    EXPECT_FALSE(controller.setShutterValue(-1));
}

TEST_F(Shutter, WithoutSetsItCanBeReadAndNotSet) {
    ISensorController fresh;
    camera.driverHolds(0, KEY_MAX_SHUTTER, 200);
    int nIndex = -7;
    EXPECT_TRUE(fresh.getShutterValue(nIndex));
    EXPECT_EQ(1, nIndex);
    EXPECT_FALSE(fresh.setShutterValue(0));
    EXPECT_FALSE(fresh.shutterUp());
    EXPECT_FALSE(fresh.shutterDown());
    EXPECT_THAT(sets(), IsEmpty());
}

TEST_F(Shutter, WithoutASchemeItIsSetAndRecordedNowhere) {
    currentIs(200);
    applyNoScheme();
    EXPECT_TRUE(controller.shutterUp());
    EXPECT_THAT(sets(), ElementsAre("ia ch0 set 49 = 300"));
    EXPECT_EQ(999u, probe.valueIn(0, KEY_MAX_SHUTTER));
}

TEST_F(Shutter, ABrokenListEndsTheProcessWhileAssertionsAreEnabled) {
    root.debugLevel(1, true);
    camera.driverFails(KEY_MAX_SHUTTER, kRange, -3);
    int nIndex = -7;
    EXPECT_DEATH(controller.getShutterValue(nIndex), abortIn("getSensorParamRange"));
}

}  // namespace
