// Light keys and their twins: which of the two counts under which light.
#include "tests/unit/sensor/WriteTest.h"

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

struct LightPair {
    u32 base;
    u32 intelligent;
    u32 command;  // of the base key
};

constexpr LightPair kLightPairs[] = {{161, 168, 161}, {171, 175, 169}, {163, 200, 163}, {165, 201, 165},
                                     {167, 202, 167}, {172, 203, 170}, {173, 204, 171}, {174, 205, 172}};

class IntelligentLight : public WriteTest {
protected:
    std::string sent(const LightPair& p_stPair, u32 p_nValue) {
        return "ia ch0 set " + std::to_string(p_stPair.command) + " = " + std::to_string(p_nValue);
    }
};

TEST_F(IntelligentLight, WithoutItABaseKeyIsSentAndItsTwinFollows) {
    for (const u32 nLightType : {0u, 1u, 3u}) {
        cached(0, KEY_LIGHT_TYPE, nLightType);
        for (const LightPair& stPair : kLightPairs) {
            SCOPED_TRACE(stPair.base);
            camera.clear();
            const u32 nNew = 70 + nLightType;
            EXPECT_EQ(0, write({{stPair.base, nNew}}));
            EXPECT_THAT(camera.transcript(), ElementsAre(sent(stPair, nNew)));
            EXPECT_EQ(nNew, probe.valueIn(0, stPair.base));
            EXPECT_EQ(nNew, probe.valueIn(0, stPair.intelligent));
        }
    }
}

TEST_F(IntelligentLight, WithoutItATwinChangesNothing) {
    for (const LightPair& stPair : kLightPairs) {
        SCOPED_TRACE(stPair.intelligent);
        const std::vector<u32> vecBase = inAllSchemes(stPair.base);
        const std::vector<u32> vecTwin = inAllSchemes(stPair.intelligent);
        std::vector<KeyVal> vecList = {{stPair.intelligent, 77}};
        EXPECT_EQ(0, write(vecList));
        EXPECT_EQ(0, write(vecList, false));
        EXPECT_EQ(vecBase, inAllSchemes(stPair.base));
        EXPECT_EQ(vecTwin, inAllSchemes(stPair.intelligent));
    }
    EXPECT_THAT(camera.transcript(), IsEmpty());
}

TEST_F(IntelligentLight, WithItATwinIsSentAsItsBaseKeyAndBothAreRecorded) {
    cached(0, KEY_LIGHT_TYPE, 2);
    for (const LightPair& stPair : kLightPairs) {
        SCOPED_TRACE(stPair.intelligent);
        camera.clear();
        const u32 nOther = probe.valueIn(1, stPair.base);
        EXPECT_EQ(0, write({{stPair.intelligent, 77}}));
        EXPECT_THAT(camera.transcript(), ElementsAre(sent(stPair, 77)));
        EXPECT_EQ(77u, probe.valueIn(0, stPair.base));
        EXPECT_EQ(77u, probe.valueIn(0, stPair.intelligent));
        EXPECT_EQ(nOther, probe.valueIn(1, stPair.base));
    }
}

TEST_F(IntelligentLight, WithItABaseKeyChangesNothing) {
    cached(0, KEY_LIGHT_TYPE, 2);
    for (const LightPair& stPair : kLightPairs) {
        SCOPED_TRACE(stPair.base);
        const std::vector<u32> vecBase = inAllSchemes(stPair.base);
        const std::vector<u32> vecTwin = inAllSchemes(stPair.intelligent);
        EXPECT_EQ(0, write({{stPair.base, 77}}));
        EXPECT_EQ(0, write({{stPair.base, 77}}, false));
        EXPECT_EQ(vecBase, inAllSchemes(stPair.base));
        EXPECT_EQ(vecTwin, inAllSchemes(stPair.intelligent));
    }
    EXPECT_THAT(camera.transcript(), IsEmpty());
}

TEST_F(IntelligentLight, AnEntryThatDoesNotCountDoesNotEndTheWalk) {
    EXPECT_EQ(0, write({{KEY_IR_MODE_INTELL, 1}, {KEY_BRIGHTNESS, 7}}));
    cached(0, KEY_LIGHT_TYPE, 2);
    EXPECT_EQ(0, write({{KEY_IR_MODE, 1}, {KEY_CONTRAST, 8}}));
    EXPECT_THAT(camera.transcript(), ElementsAre("ia ch0 set 34 = 7", "ia ch0 set 2353 = 8"));
}

TEST_F(IntelligentLight, WithoutCachingTheTwinStillFollows) {
    EXPECT_EQ(0, write({{KEY_IR_MODE, 3}}, false));
    EXPECT_EQ(0u, probe.valueIn(0, KEY_IR_MODE));
    EXPECT_EQ(3u, probe.valueIn(0, KEY_IR_MODE_INTELL));
    cached(0, KEY_LIGHT_TYPE, 2);
    EXPECT_EQ(0, write({{KEY_IR_MODE_INTELL, 4}}, false));
    EXPECT_EQ(4u, probe.valueIn(0, KEY_IR_MODE));
    EXPECT_EQ(3u, probe.valueIn(0, KEY_IR_MODE_INTELL));
}

TEST_F(IntelligentLight, TheOtherOfThePairIsWrittenBeforeTheKeyIsSentAndKeepsItsValueWhenThatFails) {
    u32 nTwin = 0;
    camera.onDriver(161, IA_CMD_OPT_SET, [&](int, void*) {
        nTwin = probe.valueIn(0, KEY_IR_MODE_INTELL);
        return -3;
    });
    EXPECT_EQ(-161, write({{KEY_IR_MODE, 3}}));
    EXPECT_EQ(3u, nTwin);
    EXPECT_EQ(3u, probe.valueIn(0, KEY_IR_MODE_INTELL));
    EXPECT_EQ(0u, probe.valueIn(0, KEY_IR_MODE));
}

TEST_F(IntelligentLight, AFailedTwinReturnsItsBaseKey) {
    cached(0, KEY_LIGHT_TYPE, 2);
    camera.driverFails(169, IA_CMD_OPT_SET, -3);
    EXPECT_EQ(-171, write({{KEY_WHITE_MODE_INTELL, 3}}));
    EXPECT_EQ(3u, probe.valueIn(0, KEY_WHITE_MODE));
    EXPECT_EQ(0u, probe.valueIn(0, KEY_WHITE_MODE_INTELL));
}

TEST_F(IntelligentLight, TheEntrysOwnKeyIsRecordedWithWhatTheDriverLeftTheOtherWithWhatWasGiven) {
    cached(0, KEY_LIGHT_TYPE, 2);
    camera.onDriver(161, IA_CMD_OPT_SET, [](int, void* p_pData) {
        *static_cast<int*>(p_pData) = 9;
        return 0;
    });
    EXPECT_EQ(0, write({{KEY_IR_MODE_INTELL, 3}}));
    EXPECT_EQ(9u, probe.valueIn(0, KEY_IR_MODE_INTELL));
    EXPECT_EQ(3u, probe.valueIn(0, KEY_IR_MODE));
}

TEST_F(IntelligentLight, IsLookedUpInTheCurrentScheme) {
    cached(1, KEY_LIGHT_TYPE, 2);
    EXPECT_EQ(0, write({{KEY_IR_MODE, 3}}));
    probe.setCurScheme(1);
    EXPECT_EQ(0, write({{KEY_IR_MODE, 4}}));
    EXPECT_THAT(camera.transcript(), ElementsAre("ia ch0 set 161 = 3"));
    EXPECT_THAT(inAllSchemes(KEY_IR_MODE_INTELL), ElementsAre(3, 0, 0, 0));
}

TEST_F(IntelligentLight, ASetWithoutALightTypeHasNone) {
    controller.uinit();
    build(1, {{KEY_IR_MODE, 0}, {KEY_IR_MODE_INTELL, 0}});
    EXPECT_EQ(0, write({{KEY_IR_MODE, 3}, {KEY_IR_MODE_INTELL, 4}}));
    EXPECT_THAT(camera.transcript(), ElementsAre("ia ch0 set 161 = 3"));
}

TEST_F(IntelligentLight, WithoutASchemeThereIsNoneAndNoTwinIsStored) {
    probe.setCurScheme(-1);
    EXPECT_EQ(0, write({{KEY_IR_MODE, 3}, {KEY_IR_MODE_INTELL, 4}}));
    EXPECT_THAT(camera.transcript(), ElementsAre("ia ch0 set 161 = 3"));
    EXPECT_THAT(inAllSchemes(KEY_IR_MODE_INTELL), ElementsAre(0, 0, 0, 0));
}

TEST_F(IntelligentLight, InTheFactorySetTheTwinIsStoredByForceAndTheKeyIsNotRecorded) {
    probe.setCurScheme(3);
    EXPECT_EQ(0, write({{KEY_IR_MODE, 3}}));
    EXPECT_THAT(inAllSchemes(KEY_IR_MODE_INTELL), ElementsAre(0, 0, 0, 3));
    EXPECT_THAT(inAllSchemes(KEY_IR_MODE), ElementsAre(0, 0, 0, 0));
}

TEST_F(IntelligentLight, ASetWithoutTheTwinSendsTheKeyAllTheSame) {
    controller.uinit();
    build(1, {{KEY_IR_MODE, 0}});
    EXPECT_EQ(0, write({{KEY_IR_MODE, 3}}));
    EXPECT_THAT(camera.transcript(), ElementsAre("ia ch0 set 161 = 3"));
    EXPECT_EQ(3u, probe.valueIn(0, KEY_IR_MODE));
}

TEST_F(IntelligentLight, ItsTypeItselfIsAnOrdinaryKey) {
    EXPECT_EQ(0, write({{KEY_LIGHT_TYPE, 2}}));
    EXPECT_THAT(camera.transcript(), ElementsAre("ia ch0 set 224 = 2"));
    EXPECT_EQ(2u, probe.valueIn(0, KEY_LIGHT_TYPE));
}

}  // namespace
