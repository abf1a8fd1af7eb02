// How the host hands parameters in: one, or a text of many.
#include "tests/unit/sensor/WriteTest.h"

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

namespace {

class WriteEntries : public WriteTest {
protected:
    std::string refused(const std::string& p_strCaller) {
        return p_strCaller + ": the controller is not initialised\n";
    }
};

// --- One parameter ---

TEST_F(WriteEntries, OneParameterIsSentAndRecorded) {
    EXPECT_EQ(0, controller.setParameter(KEY_BRIGHTNESS, 7, true));
    EXPECT_THAT(camera.transcript(), ElementsAre("ia ch0 set 34 = 7"));
    EXPECT_EQ(7u, probe.valueIn(0, KEY_BRIGHTNESS));
}

TEST_F(WriteEntries, OneParameterIsAnnouncedAtLevelSix) {
    root.debugLevel(6);
    EXPECT_THAT(messages::anyLine(outputOf([&] { controller.setParameter(KEY_BRIGHTNESS, -7, true); })),
                StartsWith(messages::debug(in("setParameter"), "p_Parameters22222222222(34, -7)\n")));
    root.debugLevel(5);
    EXPECT_EQ("\n", outputOf([&] { controller.setParameter(KEY_BRIGHTNESS, -8, true); }));
}

TEST_F(WriteEntries, OneParameterReturnsTheNegatedKeyItFailedAt) {
    camera.driverFails(KEY_BRIGHTNESS, IA_CMD_OPT_SET, -5);
    EXPECT_EQ(-34, controller.setParameter(KEY_BRIGHTNESS, 7, true));
}

TEST_F(WriteEntries, OneParameterWithoutCachingIsSentAgainAndNotRecorded) {
    EXPECT_EQ(0, controller.setParameter(KEY_BRIGHTNESS, 50, false));
    EXPECT_EQ(0, controller.setParameter(KEY_BRIGHTNESS, 51, false));
    EXPECT_THAT(camera.transcript(), ElementsAre("ia ch0 set 34 = 50", "ia ch0 set 34 = 51"));
    EXPECT_EQ(50u, probe.valueIn(0, KEY_BRIGHTNESS));
}

// --- A text ---

TEST_F(WriteEntries, ATextIsAppliedPairByPair) {
    EXPECT_EQ(0, controller.setParameters("(2353,1)(34,-2)(8001,7)", true));
    EXPECT_THAT(camera.transcript(), ElementsAre("ia ch0 set 2353 = 1", "ia ch0 set 34 = -2"));
    EXPECT_EQ(0xFFFFFFFEu, probe.valueIn(0, KEY_BRIGHTNESS));
    EXPECT_EQ(7u, probe.valueIn(0, KEY_SCHEME_START_HOUR));
}

TEST_F(WriteEntries, ATextIsAnnouncedAtLevelSix) {
    root.debugLevel(6);
    EXPECT_THAT(messages::anyLine(outputOf([&] { controller.setParameters("(34,7) 100%s", true); })),
                StartsWith(messages::debug(in("setParameters"), "p_Parameters1111111111((34,7) 100%s)\n")));
    root.debugLevel(5);
    EXPECT_EQ("\n", outputOf([&] { controller.setParameters("(34,8)", true); }));
}

TEST_F(WriteEntries, ATextWithoutPairsIsASuccessfulEmptyCall) {
    for (const char* const szText : {"", "34,7", "(34,7", "34,7)", "abc(", "(", ")"}) {
        SCOPED_TRACE(szText);
        EXPECT_EQ("\n", outputOf([&] { EXPECT_EQ(0, controller.setParameters(szText, true)); }));
    }
    EXPECT_THAT(camera.transcript(), IsEmpty());
}

TEST_F(WriteEntries, ATextThatDoesNotParseIsNotReported) {
    EXPECT_EQ("\n", outputOf([&] { EXPECT_EQ(0, controller.setParameters("(34,7)(x,y) junk (2353,z)", true)); }));
    EXPECT_THAT(camera.transcript(), ElementsAre("ia ch0 set 34 = 7", "ia ch0 set 2353 = 7"));
}

TEST_F(WriteEntries, ATextStopsAtItsFirstFailure) {
    camera.driverFails(KEY_CONTRAST, IA_CMD_OPT_SET, -5);
    EXPECT_EQ(-2353, controller.setParameters("(34,7)(2353,8)(2337,9)", true));
    EXPECT_EQ(7u, probe.valueIn(0, KEY_BRIGHTNESS));
    EXPECT_EQ(128u, probe.valueIn(0, KEY_SATURATION));
}

TEST_F(WriteEntries, ATextLeavesNothingBehindForTheNextOne) {
    EXPECT_EQ(0, controller.setParameters("(34,7)(2353,8)(2337,9)", true));
    camera.clear();
    EXPECT_EQ(0, controller.setParameters("(34,1)", true));
    EXPECT_THAT(camera.transcript(), ElementsAre("ia ch0 set 34 = 1"));
}

TEST_F(WriteEntries, ATextWithoutCachingIsSentAndNotRecorded) {
    EXPECT_EQ(0, controller.setParameters("(34,50)(2353,1)", false));
    EXPECT_THAT(camera.transcript(), ElementsAre("ia ch0 set 34 = 50", "ia ch0 set 2353 = 1"));
    EXPECT_EQ(128u, probe.valueIn(0, KEY_CONTRAST));
}

TEST_F(WriteEntries, ATextOfMorePairsThanTheSetsHoldIsAppliedWhole) {
    constexpr int kPairs = 5000;
    std::string strText;
    for (int i = 1; i <= kPairs; ++i) {
        strText += "(" + std::to_string(0 == i % 2 ? 34 : 2353) + "," + std::to_string(1000 + i) + ")";
    }
    EXPECT_EQ(0, controller.setParameters(strText, true));
    const std::vector<std::string> vecLines = camera.transcript();
    ASSERT_EQ(static_cast<std::size_t>(kPairs), vecLines.size());
    for (int i = 1; i <= kPairs; ++i) {
        ASSERT_EQ("ia ch0 set " + std::to_string(0 == i % 2 ? 34 : 2353) + " = " + std::to_string(1000 + i),
                  vecLines[static_cast<std::size_t>(i - 1)]);
    }
}

TEST_F(WriteEntries, ATextOfExactlyAsManyOrOneMorePairsThanTheSetsHoldIsAppliedWhole) {
    for (const u32 nMore : {0u, 1u}) {
        SCOPED_TRACE(nMore);
        camera.clear();
        std::string strText;
        for (u32 i = 0; i < probe.keyValSum() + nMore; ++i) {
            strText += "(34," + std::to_string(1000 + i) + ")";
        }
        EXPECT_EQ(0, controller.setParameters(strText, false));
        EXPECT_EQ(probe.keyValSum() + nMore, camera.transcript().size());
    }
}

TEST_F(WriteEntries, ATextOfManyKeysIsAppliedOnSetsWithoutRecords) {
    controller.uinit();
    build(1, {});
    EXPECT_EQ(0, controller.setParameters("(34,1)(2353,2)", true));
    EXPECT_THAT(camera.transcript(), ElementsAre("ia ch0 set 34 = 1", "ia ch0 set 2353 = 2"));
}

TEST_F(WriteEntries, ALongTextIsAnnouncedWhole) {
    root.debugLevel(6);
    const std::string strLong(200000, 'x');
    EXPECT_THAT(outputOf([&] { EXPECT_EQ(0, controller.setParameters(strLong, true)); }),
                HasSubstr("p_Parameters1111111111(" + strLong + ")\n"));
}

TEST_F(WriteEntries, AZeroByteInATextEndsOnlyThePairItStandsIn) {
    EXPECT_EQ(0, controller.setParameters(std::string("(34,7\0)(2353,8)", 15), true));
    EXPECT_THAT(camera.transcript(), ElementsAre("ia ch0 set 34 = 7", "ia ch0 set 2353 = 8"));
}

TEST_F(WriteEntries, NumbersBeyondThirtyTwoBitsStayInsideTheWalk) {
    root.debugLevel(-1);
    EXPECT_EQ(0, controller.setParameters("(34,7)(99999999999999999999,99999999999999999999)(2353,8)", true));
    EXPECT_EQ(3u, camera.transcript().size());
    EXPECT_EQ(8u, probe.valueIn(0, KEY_CONTRAST));
}

// --- A controller without sets ---

TEST_F(WriteEntries, AControllerThatIsNotInitialisedRefusesAndSaysSo) {
    root.debugLevel(6);
    ISensorController fresh;
    int nOn = 1;
    EXPECT_EQ(messages::error(in("isReady"), refused("setParameter")),
              messages::anyLine(outputOf([&] { EXPECT_EQ(-1, fresh.setParameter(KEY_BRIGHTNESS, 7, true)); })));
    EXPECT_EQ(messages::error(in("isReady"), refused("setParameters")),
              messages::anyLine(outputOf([&] { EXPECT_EQ(-1, fresh.setParameters("(34,7)", true)); })));
    EXPECT_FALSE(fresh.setWDRSwitch(nOn));
    EXPECT_FALSE(fresh.setDNMode(1));
    EXPECT_THAT(camera.transcript(), IsEmpty());
}

TEST_F(WriteEntries, AControllerThatIsReleasedRefusesToo) {
    controller.uinit();
    EXPECT_EQ(-1, controller.setParameter(KEY_BRIGHTNESS, 7, true));
    EXPECT_EQ(-1, controller.setParameters("(34,7)", false));
    EXPECT_FALSE(controller.setIRSwitch(0));
    EXPECT_THAT(camera.transcript(), IsEmpty());
}

}  // namespace
