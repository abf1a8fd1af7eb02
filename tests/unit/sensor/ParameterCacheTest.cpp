// The parameter sets as the controller's memory of what the driver holds.
#include "tests/unit/sensor/ControllerTest.h"

namespace {

constexpr u32 kAbsent = 4711;

class ParameterCache : public ControllerTest {
protected:
    // Key 34 stands there twice.
    ParameterCache() { build(2, {{34, 50}, {2337, 60}, {34, 70}, {0xFFFFFFFFu, 80}}); }

    int load(u32 p_nScheme, u32 p_nKey, u32& p_nValue) { return probe.getKeyValFromCache(p_nScheme, p_nKey, p_nValue); }
    int store(u32 p_nScheme, u32 p_nKey, u32 p_nValue, bool p_bForce = false) {
        return probe.setKeyValToCache(p_nScheme, p_nKey, p_nValue, p_bForce);
    }

    // All values of all sets, to see that nothing else has changed.
    std::vector<u32> values() {
        std::vector<u32> vecValues;
        for (u32 nScheme = 0; nScheme <= probe.sysConf().nSchemeSum; ++nScheme) {
            for (u32 i = 0; i < probe.keyValSum(); ++i) {
                vecValues.push_back(probe.set(nScheme)[i].value);
            }
        }
        return vecValues;
    }
};

TEST_F(ParameterCache, StoresInOneSchemeAndTellsThePlace) {
    EXPECT_EQ(1, store(1, 2337, 61));
    EXPECT_EQ((std::vector<u32>{50, 60, 70, 80, 50, 61, 70, 80, 50, 60, 70, 80}), values());
}

TEST_F(ParameterCache, LoadsFromOneSchemeAndTellsThePlace) {
    store(1, 2337, 61);
    u32 nValue = 0;
    EXPECT_EQ(1, load(1, 2337, nValue));
    EXPECT_EQ(61u, nValue);
    EXPECT_EQ(1, load(0, 2337, nValue));
    EXPECT_EQ(60u, nValue);
}

TEST_F(ParameterCache, TheFirstOfTwoRecordsWithOneKeyCounts) {
    EXPECT_EQ(0, store(0, 34, 51));
    EXPECT_EQ(51u, probe.set(0)[0].value);
    EXPECT_EQ(70u, probe.set(0)[2].value);
    u32 nValue = 0;
    EXPECT_EQ(0, load(0, 34, nValue));
    EXPECT_EQ(51u, nValue);
    EXPECT_TRUE(probe.isKeyValSame({34, 51}));
    EXPECT_FALSE(probe.isKeyValSame({34, 70}));
}

TEST_F(ParameterCache, FindsTheLastRecord) {
    u32 nValue = 0;
    EXPECT_EQ(3, load(0, 0xFFFFFFFFu, nValue));
    EXPECT_EQ(80u, nValue);
    EXPECT_EQ(3, store(0, 0xFFFFFFFFu, 81));
}

TEST_F(ParameterCache, LooksNoFurtherThanItsRecords) {
    // The record behind the last one of scheme 0 is the first one of scheme 1.
    probe.set(1)[0].key = kAbsent;
    u32 nValue = 99;
    EXPECT_EQ(-1, load(0, kAbsent, nValue));
    EXPECT_EQ(-1, store(0, kAbsent, 1));
    EXPECT_EQ(0, load(1, kAbsent, nValue));
}

TEST_F(ParameterCache, MeantLoadingReachesTheFactorySetAndStoringOnlyByForce) {
    u32 nValue = 0;
    EXPECT_EQ(1, load(2, 2337, nValue));
    EXPECT_EQ(60u, nValue);
    const std::vector<u32> vecBefore = values();
    EXPECT_EQ(-2, store(2, 2337, 61));
    EXPECT_EQ(vecBefore, values());
    EXPECT_EQ(1, store(2, 2337, 61, true));
    EXPECT_EQ(61u, probe.set(2)[1].value);
    EXPECT_EQ(60u, probe.set(0)[1].value);
    EXPECT_EQ(60u, probe.set(1)[1].value);
}

TEST_F(ParameterCache, ForceStoresInAUserSchemeToo) {
    EXPECT_EQ(1, store(0, 2337, 61, true));
    EXPECT_EQ(61u, probe.set(0)[1].value);
}

TEST_F(ParameterCache, AKeyThatIsNotThereChangesNothing) {
    const std::vector<u32> vecBefore = values();
    u32 nValue = 99;
    EXPECT_EQ(-1, load(0, kAbsent, nValue));
    EXPECT_EQ(99u, nValue);
    EXPECT_EQ(-1, store(0, kAbsent, 1));
    EXPECT_EQ(-1, store(2, kAbsent, 1, true));
    EXPECT_FALSE(probe.isKeyValSame({kAbsent, 0}));
    EXPECT_EQ(vecBefore, values());
}

TEST_F(ParameterCache, SaysNothingAboutAKeyThatIsNotThere) {
    root.debugLevel(7);
    u32 nValue = 99;
    EXPECT_EQ("", outputOf([&] {
                  load(0, kAbsent, nValue);
                  store(0, kAbsent, 1);
                  store(7, kAbsent, 1);
              }));
}

TEST_F(ParameterCache, ASchemeOutOfRangeIsRefusedWhetherOrNotTheKeyIsThere) {
    const std::vector<u32> vecBefore = values();
    for (const u32 nScheme : {2u, 3u, 255u, 0xFFFFFFFFu}) {
        SCOPED_TRACE(nScheme);
        EXPECT_EQ(-2, store(nScheme, 2337, 61));
        EXPECT_EQ(-2, store(nScheme, kAbsent, 61));
    }
    EXPECT_EQ(vecBefore, values());
}

TEST_F(ParameterCache, ForceStoresNothingInASchemeThatIsNotThere) {
    const std::vector<u32> vecBefore = values();
    for (const u32 nScheme : {3u, 255u, 0xFFFFFFFFu}) {
        EXPECT_EQ(-1, store(nScheme, 2337, 61, true));
    }
    EXPECT_EQ(vecBefore, values());
}

TEST_F(ParameterCache, TracesALoadFromASchemeThatIsNotThere) {
    root.debugLevel(6);
    u32 nValue = 99;
    EXPECT_EQ(messages::trace("can not find val, invalid sheme(3) \n"),
              outputOf([&] { EXPECT_EQ(-1, load(3, 2337, nValue)); }));
    EXPECT_EQ(messages::trace("can not find val, invalid sheme(-1) \n"),
              outputOf([&] { EXPECT_EQ(-1, load(0xFFFFFFFFu, 2337, nValue)); }));
    EXPECT_EQ(99u, nValue);
    EXPECT_EQ("", root.errorLog());
}

TEST_F(ParameterCache, TracesNothingAtLevelFive) {
    root.debugLevel(5);
    u32 nValue = 99;
    EXPECT_EQ("", outputOf([&] { EXPECT_EQ(-1, load(3, 2337, nValue)); }));
}

TEST_F(ParameterCache, ComparesWithTheCurrentScheme) {
    store(1, 2337, 61);
    probe.setCurScheme(1);
    probe.setLastScheme(0);
    EXPECT_TRUE(probe.isKeyValSame({2337, 61}));
    EXPECT_FALSE(probe.isKeyValSame({2337, 60}));
}

TEST_F(ParameterCache, ComparesWithTheLastSchemeDuringASwitch) {
    store(1, 2337, 61);
    probe.setCurScheme(1);
    probe.setLastScheme(0);
    probe.setFlags(SensorControllerProbe::switching_flag);
    EXPECT_FALSE(probe.isKeyValSame({2337, 61}));
    EXPECT_TRUE(probe.isKeyValSame({2337, 60}));
    probe.clearFlags(SensorControllerProbe::switching_flag);
}

TEST_F(ParameterCache, ComparesWithTheCurrentSchemeInEveryOtherState) {
    store(1, 2337, 61);
    probe.setCurScheme(1);
    probe.setLastScheme(0);
    probe.setFlags(~SensorControllerProbe::switching_flag);
    EXPECT_TRUE(probe.isKeyValSame({2337, 61}));
    probe.clearFlags(~SensorControllerProbe::inited_flag);
}

TEST_F(ParameterCache, ComparesWithTheFactorySetWhileItIsApplied) {
    store(2, 2337, 62, true);
    probe.setCurScheme(2);
    EXPECT_TRUE(probe.isKeyValSame({2337, 62}));
}

TEST_F(ParameterCache, NothingIsInForceWithoutAScheme) {
    probe.setCurScheme(-1);
    EXPECT_FALSE(probe.isKeyValSame({2337, 60}));
    probe.setCurScheme(0);
    probe.setLastScheme(-1);
    probe.setFlags(SensorControllerProbe::switching_flag);
    EXPECT_FALSE(probe.isKeyValSame({2337, 60}));
    probe.clearFlags(SensorControllerProbe::switching_flag);
}

TEST_F(ParameterCache, ComparesAllBitsOfAValue) {
    store(0, 2337, 0x80000000u);
    EXPECT_FALSE(probe.isKeyValSame({2337, 0}));
    EXPECT_TRUE(probe.isKeyValSame({2337, 0x80000000u}));
}

class EmptyCache : public ControllerTest {};

TEST_F(EmptyCache, WithoutUserSchemesOnlyTheFactorySetIsThere) {
    build(0, {{34, 50}});
    u32 nValue = 0;
    EXPECT_EQ(0, probe.getKeyValFromCache(0, 34, nValue));
    EXPECT_EQ(50u, nValue);
    EXPECT_EQ(-2, probe.setKeyValToCache(0, 34, 51, false));
    EXPECT_EQ(0, probe.setKeyValToCache(0, 34, 51, true));
    EXPECT_EQ(-1, probe.setKeyValToCache(1, 34, 52, true));
    EXPECT_EQ(51u, probe.set(0)[0].value);
}

TEST_F(EmptyCache, SetsWithoutRecordsHoldNothing) {
    build(2, {});
    u32 nValue = 99;
    EXPECT_EQ(-1, probe.getKeyValFromCache(0, 0, nValue));
    EXPECT_EQ(-1, probe.setKeyValToCache(0, 0, 1, false));
    EXPECT_FALSE(probe.isKeyValSame({0, 0}));
    EXPECT_EQ(99u, nValue);
}

TEST_F(EmptyCache, AControllerThatIsNotInitialisedHoldsNothing) {
    u32 nValue = 99;
    for (const u32 nScheme : {0u, 1u, 0xFFFFFFFFu}) {
        EXPECT_EQ(-1, probe.getKeyValFromCache(nScheme, 34, nValue));
        EXPECT_EQ(-2, probe.setKeyValToCache(nScheme, 34, 1, false));
        EXPECT_EQ(-1, probe.setKeyValToCache(nScheme, 34, 1, true));
    }
    EXPECT_FALSE(probe.isKeyValSame({34, 0}));
    EXPECT_EQ(99u, nValue);
}

TEST_F(EmptyCache, AControllerThatIsReleasedHoldsNothing) {
    build(2, {{34, 50}});
    controller.uinit();
    u32 nValue = 99;
    EXPECT_EQ(-1, probe.getKeyValFromCache(0, 34, nValue));
    EXPECT_EQ(-1, probe.setKeyValToCache(0, 34, 1, true));
    EXPECT_EQ(99u, nValue);
}

}  // namespace
