// One channel of a camera on the desk: parameters, schemes, keeping, and what it does by itself.
#include "tests/unit/camerad/host/Rig.h"

#include "platform/Clock.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <thread>

using camerad::Refusal;
using camerad::SchemeView;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

namespace {

class ChannelTest : public testing::Test {
protected:
    ChannelTest() { rig.start(); }

    std::vector<u32> unsavedOf(int p_nScheme) {
        return rig.channel().schemes().vecSchemes.at(static_cast<std::size_t>(p_nScheme)).vecUnsaved;
    }
    SchemeView scheme(int p_nScheme) {
        return rig.channel().schemes().vecSchemes.at(static_cast<std::size_t>(p_nScheme));
    }

    Rig rig;
};

TEST_F(ChannelTest, StartsInSchemeZeroWithNothingUnsaved) {
    const camerad::ChannelView view = rig.channel().view();
    EXPECT_TRUE(view.bReady);
    EXPECT_EQ(334u, view.nSensorType);
    EXPECT_THAT(view.strVersion, HasSubstr("SIMCAM"));
    EXPECT_EQ("", view.strBusyWith);
    const camerad::SchemesView schemes = rig.channel().schemes();
    EXPECT_EQ(0, schemes.nCurrent);
    EXPECT_EQ(4, schemes.nFactory);
    EXPECT_FALSE(schemes.bAutomatic);
    EXPECT_EQ("nothing", schemes.strFollow);
    ASSERT_EQ(4u, schemes.vecSchemes.size());
    for (const SchemeView& each : schemes.vecSchemes) {
        EXPECT_THAT(each.vecUnsaved, IsEmpty()) << each.nIndex;
        EXPECT_EQ("Scheme " + std::to_string(each.nIndex + 1), each.strName);
    }
    EXPECT_THAT(schemes.vecSchemes[0].vecInForce, ElementsAre(std::make_pair(0, 1440)));
    EXPECT_THAT(schemes.vecSchemes[1].vecInForce, IsEmpty());
    EXPECT_EQ(85u, rig.channel().values().vecValues.size());
}

TEST_F(ChannelTest, AChangeReachesTheDriverAndTheListeners) {
    const auto listener = rig.listen({1, {"parameter"}});
    const std::uint64_t before = rig.end();
    const std::uint64_t revision = rig.channel().revision();
    const camerad::ChangeResult result = rig.set(34, 60);
    EXPECT_FALSE(result.refusal);
    EXPECT_EQ(60, result.nValue);
    EXPECT_THAT(rig.sets(before), ElementsAre("ia ch0 set 34 60 = 0"));
    EXPECT_EQ(60, rig.value(34));
    EXPECT_GT(rig.channel().revision(), revision);
    const nlohmann::json event = listener->await("parameter");
    EXPECT_EQ(R"([{"key":34,"stored":50,"unsaved":true,"value":60}])"_json, event["changes"]);
    EXPECT_EQ("anna", event["by"]);
    EXPECT_EQ("desk-1", event["origin"]);
    EXPECT_EQ(rig.channel().revision(), event["revision"].get<std::uint64_t>());
    EXPECT_THAT(unsavedOf(0), ElementsAre(34u));
}

TEST_F(ChannelTest, WhatIsInForceAlreadyIsNoNews) {
    const std::uint64_t revision = rig.channel().revision();
    EXPECT_FALSE(rig.set(34, 50).refusal);
    EXPECT_EQ(revision, rig.channel().revision());
}

TEST_F(ChannelTest, EachChangeOfAListIsForItself) {
    const auto results = rig.channel().change({{34, 60}, {34000, 1}, {2353, 101}, {2337, 70}, {10, 1}}, true, kAnna);
    ASSERT_EQ(5u, results.size());
    EXPECT_FALSE(results[0].refusal);
    EXPECT_EQ(Refusal::Kind::NotFound, results[1].refusal.value().kind());
    EXPECT_EQ(Refusal::Kind::BadValue, results[2].refusal.value().kind());
    EXPECT_THAT(results[2].refusal.value().what(), HasSubstr("KEY_CONTRAST (2353) takes 0 to 100, not 101"));
    EXPECT_EQ(50, results[2].nValue);
    EXPECT_FALSE(results[3].refusal);
    EXPECT_EQ(70, rig.value(2337));
    EXPECT_TRUE(results[4].refusal);
}

TEST_F(ChannelTest, ARefusalOfTheDriverSaysWhyAndWhatStays) {
    rig.host().addFault("cmd=34 opt=set result=-5", kAnna);
    const camerad::ChangeResult result = rig.set(34, 61);
    ASSERT_TRUE(result.refusal);
    EXPECT_EQ(Refusal::Kind::Refused, result.refusal->kind());
    EXPECT_STREQ(
        "the camera refused 61 for KEY_BRIGHTNESS (34) (driver command 34: the value is not legal now); 50 stays in "
        "force",
        result.refusal->what());
    EXPECT_EQ(50, result.nValue);
    EXPECT_EQ(50, rig.value(34));
}

TEST_F(ChannelTest, AKeyIsNamedByTheNearestOneThatTheChannelHas) {
    const Refusal refusal = rig.channel().change({{2434, 1}}, true, kAnna).at(0).refusal.value();
    EXPECT_EQ(Refusal::Kind::NotFound, refusal.kind());
    EXPECT_THAT(refusal.what(), testing::AnyOf(HasSubstr("did you mean"), HasSubstr("nearest")));
}

TEST(ThermalChannelTest, ALimitOfTheDriverLimitsASlider) {
    Rig rig("thermal");
    rig.start();
    EXPECT_EQ(-64, rig.channel(2).value(2434).nValue);
    int nLimit = 10;
    EXPECT_EQ(0, rig.camera().driver().call(1, 2435, IA_CMD_OPT_SET, &nLimit));
    const camerad::ChangeResult result = rig.set(2436, 11, 2);
    ASSERT_TRUE(result.refusal);
    EXPECT_THAT(result.refusal->what(), HasSubstr("takes 10 and less now, not 11"));
    EXPECT_FALSE(rig.set(2436, 10, 2).refusal);
}

TEST_F(ChannelTest, AButtonTakesWhatItSends) {
    const std::uint64_t before = rig.end();
    EXPECT_TRUE(rig.channel().change({{1616, 2}}, false, kAnna).at(0).refusal);
    const camerad::ChangeResult result = rig.channel().change({{1616, 1}}, false, kAnna).at(0);
    EXPECT_FALSE(result.refusal) << result.refusal->what();
    EXPECT_THAT(rig.sets(before), ElementsAre("ia ch0 set 1616 1 = 0"));
}

TEST_F(ChannelTest, AValueThatIsSentAndNotRecordedStaysWithTheDriver) {
    const camerad::ChangeResult result = rig.channel().change({{34, 77}}, false, kAnna).at(0);
    EXPECT_EQ(77, result.nValue);
    EXPECT_EQ(77, rig.driver(34));
    EXPECT_EQ(50, rig.value(34));
    EXPECT_THAT(unsavedOf(0), IsEmpty());
    EXPECT_EQ(50, rig.channel().restore(34, kAnna).nValue);
    EXPECT_EQ(50, rig.driver(34));
}

TEST_F(ChannelTest, WhatNoSchemeHoldsIsToldToo) {
    const auto listener = rig.listen({1, {"parameter"}});
    const std::uint64_t nBefore = rig.channel().revision();
    EXPECT_FALSE(rig.set(2497, 25).refusal);
    const nlohmann::json event = listener->await("parameter");
    EXPECT_EQ(R"([{"key":2497,"value":25,"unsaved":false}])"_json, event["changes"]);
    EXPECT_EQ("anna", event["by"]);
    EXPECT_LT(nBefore, event["revision"].get<std::uint64_t>());
    EXPECT_FALSE(rig.set(1539, 1).refusal) << "a button, which has no value to be told";
    EXPECT_FALSE(rig.set(2497, 30).refusal);
    EXPECT_EQ(2497, listener->await("parameter")["changes"][0]["key"]);
}

TEST_F(ChannelTest, KeysOfTheScheduleAreOnlyRecorded) {
    EXPECT_EQ(Refusal::Kind::BadValue, rig.channel().change({{8001, 3}}, false, kAnna).at(0).refusal.value().kind());
}

TEST_F(ChannelTest, ALightThatDoesNotCountSaysSo) {
    ASSERT_FALSE(rig.set(224, 2).refusal);
    const int before = rig.value(161);
    const camerad::ChangeResult result = rig.set(161, 1 == before ? 2 : 1);
    ASSERT_TRUE(result.refusal);
    EXPECT_EQ(Refusal::Kind::Conflict, result.refusal->kind());
    EXPECT_EQ(before, result.nValue);
}

TEST_F(ChannelTest, OneParameterGoesBackToItsDefault) {
    rig.set(34, 60);
    const camerad::ParameterValue value = rig.channel().setToDefault(34, kAnna);
    EXPECT_EQ(50, value.nValue);
    EXPECT_FALSE(value.isUnsaved());
    EXPECT_EQ(50, rig.driver(34));
    EXPECT_EQ(Refusal::Kind::Conflict, refusalOf([&] { rig.channel().setToDefault(1616, kAnna); }).kind());
    EXPECT_EQ(Refusal::Kind::NotFound, refusalOf([&] { rig.channel().setToDefault(4711, kAnna); }).kind());
}

TEST_F(ChannelTest, OneParameterIsReadWhetherASchemeHoldsItOrNot) {
    EXPECT_EQ(50, rig.channel().value(34).stored.value());
    const camerad::ParameterValue zoom = rig.channel().value(1568);
    EXPECT_EQ(16384, zoom.nValue);
    EXPECT_FALSE(zoom.stored);
    EXPECT_FALSE(zoom.isUnsaved());
    EXPECT_EQ(Refusal::Kind::Refused, refusalOf([&] { rig.channel().value(2497); }).kind());
    EXPECT_EQ(Refusal::Kind::NotFound, refusalOf([&] { rig.channel().value(4711); }).kind());
}

TEST_F(ChannelTest, TheRangesFollowTheMode) {
    const auto listener = rig.listen({1, {"ranges"}});
    const auto fnShutter = [&] { return rig.channel().ranges().at(0); };
    EXPECT_EQ(49u, fnShutter().nKey);
    EXPECT_EQ(7, fnShutter().vecValues.front());
    EXPECT_EQ(22u, rig.channel().style()->find(49)->vecChoices.size());
    rig.set(2368, 1);
    const nlohmann::json event = listener->await("ranges");
    EXPECT_EQ(9, event["ranges"][0]["values"][0]);
    EXPECT_EQ(9, fnShutter().vecValues.front());
    EXPECT_EQ(12u, rig.channel().style()->find(49)->vecChoices.size());
}

// --- Schemes ---

TEST_F(ChannelTest, AnotherSchemeBringsItsValues) {
    rig.set(34, 60);
    const auto listener = rig.listen({1, {}});
    rig.channel().setScheme(1, kAnna);
    EXPECT_EQ(50, rig.driver(34));
    const nlohmann::json scheme = listener->await("scheme");
    EXPECT_EQ(R"({"channel":1,"from":0,"to":1,"why":"host","by":"anna","origin":"desk-1"})"_json, scheme);
    const nlohmann::json event = listener->await("parameter");
    EXPECT_EQ(1, event["scheme"]);
    EXPECT_EQ(R"([{"key":34,"stored":50,"unsaved":false,"value":50}])"_json, event["changes"]);
    EXPECT_THAT(unsavedOf(0), ElementsAre(34u));
    rig.channel().setScheme(0, kAnna);
    EXPECT_EQ(60, rig.driver(34));
    EXPECT_THAT(unsavedOf(0), ElementsAre(34u));
}

TEST_F(ChannelTest, TheFactorySchemeKeepsNothing) {
    rig.channel().setScheme(4, kAnna);
    EXPECT_EQ(4, rig.channel().values().nScheme);
    EXPECT_FALSE(rig.channel().values().vecValues.at(0).stored);
    const camerad::ChangeResult result = rig.set(34, 61);
    EXPECT_FALSE(result.refusal);
    EXPECT_EQ(61, rig.driver(34));
    EXPECT_FALSE(rig.isUnsaved(34));
    EXPECT_EQ(Refusal::Kind::NotFound, refusalOf([&] { rig.channel().setScheme(5, kAnna); }).kind());
    EXPECT_EQ(Refusal::Kind::NotFound, refusalOf([&] { rig.channel().setScheme(-1, kAnna); }).kind());
}

TEST_F(ChannelTest, ASchemeThatCannotBeAppliedSaysSo) {
    rig.channel().setScheme(1, kAnna);
    rig.set(34, 60);
    rig.channel().setScheme(0, kAnna);
    rig.host().addFault("cmd=34 opt=set result=-3", kAnna);
    const Refusal refusal = refusalOf([&] { rig.channel().setScheme(1, kAnna); });
    EXPECT_EQ(Refusal::Kind::Refused, refusal.kind());
    EXPECT_THAT(refusal.what(), HasSubstr("scheme 1 is current now"));
    EXPECT_THAT(refusal.what(), HasSubstr("driver command 34: the device did not answer"));
    EXPECT_EQ(1, rig.channel().schemes().nCurrent);
}

TEST_F(ChannelTest, TheWindowOfAnotherSchemeIsSetWithoutStayingThere) {
    const auto listener = rig.listen({1, {"scheme", "schemes"}});
    rig.channel().setWindow(2, {20, 0, 24, 0}, kAnna);
    const nlohmann::json event = listener->await("schemes");
    EXPECT_EQ(R"({"start":"20:00","end":"24:00"})"_json, event["schemes"][2]["window"]);
    EXPECT_EQ(0, rig.channel().schemes().nCurrent);
    EXPECT_THAT(unsavedOf(2), ElementsAre(8001u));
    EXPECT_EQ(0, rig.host().counters().mapSwitches["host"]);
    rig.channel().setWindow(0, {6, 30, 20, 0}, kAnna);
    EXPECT_THAT(scheme(0).vecInForce, ElementsAre(std::make_pair(390, 1200)));
    EXPECT_THAT(scheme(1).vecInForce, ElementsAre(std::make_pair(0, 390), std::make_pair(1200, 1440)));
    EXPECT_THAT(scheme(2).vecInForce, IsEmpty());
}

TEST_F(ChannelTest, AWindowThatCannotBeStoredIsRefused) {
    const Refusal refusal = refusalOf([&] { rig.channel().setWindow(1, {22, 0, 6, 0}, kAnna); });
    EXPECT_EQ(Refusal::Kind::Conflict, refusal.kind());
    EXPECT_EQ("window-not-storable", refusal.type());
    EXPECT_EQ(Refusal::Kind::BadValue, refusalOf([&] { rig.channel().setWindow(1, {8, 75, 9, 0}, kAnna); }).kind());
    EXPECT_EQ(Refusal::Kind::NotFound, refusalOf([&] { rig.channel().setWindow(4, {8, 0, 9, 0}, kAnna); }).kind());
    EXPECT_THAT(unsavedOf(1), IsEmpty());
}

TEST_F(ChannelTest, AWindowThatASwitchCannotReachIsReportedAndTheChannelComesBack) {
    rig.channel().setScheme(1, kAnna);
    rig.set(34, 60);
    rig.channel().setScheme(0, kAnna);
    rig.host().addFault("cmd=34 opt=set result=-3 times=1", kAnna);
    const Refusal refusal = refusalOf([&] { rig.channel().setWindow(1, {1, 0, 2, 0}, kAnna); });
    EXPECT_EQ(Refusal::Kind::Refused, refusal.kind());
    EXPECT_THAT(refusal.what(), HasSubstr("scheme 1 could not be applied as a whole"));
    EXPECT_EQ(0, rig.channel().schemes().nCurrent);
    EXPECT_EQ(50, rig.driver(34));
    EXPECT_EQ(2, scheme(1).stWindow.nEndHour);
}

TEST_F(ChannelTest, WhatSwitchingFollowsIsTheSameForEveryScheme) {
    rig.channel().setScheme(2, kAnna);
    rig.channel().setFollow("day-night", kAnna);
    EXPECT_EQ("day-night", rig.channel().schemes().strFollow);
    EXPECT_EQ(2, rig.channel().schemes().nCurrent);
    for (int i = 0; i < 4; ++i) {
        EXPECT_THAT(unsavedOf(i), ElementsAre(8000u)) << i;
        rig.channel().setScheme(i, kAnna);
        EXPECT_EQ(2, rig.value(8000)) << i;
        EXPECT_THAT(unsavedOf(i), ElementsAre(8000u)) << i;
    }
    EXPECT_EQ(Refusal::Kind::BadValue, refusalOf([&] { rig.channel().setFollow("moon", kAnna); }).kind());
}

TEST_F(ChannelTest, DayNightKeysOfSchemeZeroCountForSchemeOne) {
    rig.channel().setFollow("day-night", kAnna);
    rig.channel().save(kAnna);
    rig.set(145, 30);
    EXPECT_THAT(unsavedOf(0), ElementsAre(145u));
    EXPECT_THAT(unsavedOf(1), ElementsAre(145u));
    EXPECT_THAT(unsavedOf(2), IsEmpty());
    rig.channel().setScheme(1, kAnna);
    EXPECT_EQ(30, rig.value(145));
    rig.set(145, 31);
    EXPECT_THAT(unsavedOf(0), ElementsAre(145u));
    rig.channel().setScheme(0, kAnna);
    EXPECT_EQ(30, rig.value(145));
    rig.channel().setScheme(1, kAnna);
    EXPECT_EQ(30, rig.value(145)) << "coming back to scheme 0 has shared its value again";
}

TEST_F(ChannelTest, TheCameraSwitchesByTheSchedule) {
    rig.channel().setWindow(0, {0, 0, 12, 30}, kAnna);
    rig.channel().setWindow(1, {12, 30, 24, 0}, kAnna);
    rig.channel().setFollow("schedule", kAnna);
    rig.channel().setAutomatic(true, kAnna);
    const auto listener = rig.listen({1, {"scheme"}});
    platform::Clock::hold({2024, 5, 1, 12, 29, 58});
    platform::Clock::advance(5000000);
    const nlohmann::json event = listener->await("scheme");
    EXPECT_EQ(R"({"channel":1,"from":0,"to":1,"why":"schedule","by":"camera","origin":""})"_json, event);
    EXPECT_EQ(1, rig.channel().schemes().nCurrent);
    EXPECT_EQ(1u, rig.host().counters().mapSwitches["schedule"]);
}

TEST(ChannelOfASleepyHostTest, WhatTheCameraDidBeforeSomebodyCameIsNotLaidAtHisDoor) {
    Rig rig;
    rig.settings().nLookMilliseconds = 3600000;  // it never looks by itself
    rig.start();
    rig.channel().setWindow(0, {0, 0, 12, 30}, kAnna);
    rig.channel().setWindow(1, {12, 30, 24, 0}, kAnna);
    rig.channel().setFollow("schedule", kAnna);
    rig.channel().setAutomatic(true, kAnna);
    const auto listener = rig.listen({1, {"scheme"}});
    platform::Clock::hold({2024, 5, 1, 12, 29, 58});
    platform::Clock::advance(5000000);
    EXPECT_EQ(0, rig.channel().schemes().nCurrent) << "nobody has looked";
    rig.channel().lensAction("zoom-in", kAnna);
    const nlohmann::json event = listener->await("scheme");
    EXPECT_EQ("camera", event["by"]);
    EXPECT_EQ("schedule", event["why"]);
    EXPECT_EQ(1, rig.channel().schemes().nCurrent);
}

TEST(ChannelOfASleepyHostTest, WhatTheCameraDoesMeanwhileIsNotLaidAtHisDoorEither) {
    Rig rig;
    rig.settings().nLookMilliseconds = 3600000;
    rig.start();
    rig.channel().setFollow("day-night", kAnna);
    rig.channel().setAutomatic(true, kAnna);
    const auto listener = rig.listen({1, {"scheme"}});
    // The driver call takes five seconds of the held clock, in which the camera sees that it is night.
    rig.host().changeScene({{"light", {{"kind", "fixed"}, {"lux", 0.1}}}}, kAnna);
    rig.host().addFault("cmd=34 opt=set delay=10000000 times=1", kAnna);
    rig.set(34, 60);
    const nlohmann::json event = listener->await("scheme");
    EXPECT_EQ("camera", event["by"]);
    EXPECT_EQ("day-night", event["why"]);
    EXPECT_EQ(1, rig.channel().schemes().nCurrent);
}

TEST_F(ChannelTest, TheCameraSwitchesByDayAndNight) {
    rig.channel().setFollow("day-night", kAnna);
    rig.channel().setAutomatic(true, kAnna);
    const auto listener = rig.listen({1, {"scheme", "day-night"}});
    rig.host().changeScene({{"light", {{"kind", "fixed"}, {"lux", 0.1}}}}, kAnna);
    platform::Clock::advance(10000000);
    EXPECT_EQ("day-night", listener->await("scheme")["why"]);
    EXPECT_TRUE(eventually([&] { return rig.channel().view().bNight; }));
    EXPECT_TRUE(rig.channel().isNight());
}

// What has been changed since is not in the answer to a change, and must not be taken for it.
TEST_F(ChannelTest, TheResultOfAChangeIsOfItsOwnMoment) {
    const camerad::ChangeResult first = rig.set(34, 60);
    EXPECT_EQ(rig.channel().revision(), first.nRevision);
    EXPECT_EQ(0, first.nScheme);
    rig.channel().setScheme(1, kAnna);
    const camerad::ChangeResult second = rig.set(34, 61);
    EXPECT_GT(second.nRevision, first.nRevision);
    EXPECT_EQ(1, second.nScheme);
}

TEST_F(ChannelTest, WhereNoWindowIsSchemeZeroHolds) {
    EXPECT_FALSE(rig.channel().schemes().bGaps);
    EXPECT_THAT(refusalOf([&] {
                    rig.channel().setWindow(1, {22, 0, 6, 0}, kAnna);
                }).what(),
                HasSubstr("leave the night to scheme 0"));
}

TEST(ChannelForPlatesTest, OutsideOfEveryWindowDayAndNightDecide) {
    Rig rig("plate");
    rig.start();
    const camerad::SchemesView view = rig.channel().schemes();
    EXPECT_TRUE(view.bGaps);
    EXPECT_THAT(refusalOf([&] {
                    rig.channel().setWindow(1, {22, 0, 6, 0}, kAnna);
                }).what(),
                HasSubstr("leave the night to day and night"));
    platform::Clock::hold({2024, 5, 1, 12, 0, 0});
    for (const camerad::SchemeView& scheme : view.vecSchemes) {
        rig.channel().setWindow(scheme.nIndex, {8, 0, 8 + scheme.nIndex + 1, 0}, kAnna);
    }
    rig.channel().setFollow("schedule", kAnna);
    rig.channel().setAutomatic(true, kAnna);
    const auto listener = rig.listen({1, {"scheme"}});
    rig.host().changeScene({{"light", {{"kind", "fixed"}, {"lux", 0.1}}}}, kAnna);
    platform::Clock::advance(10000000);
    EXPECT_EQ(R"({"channel":1,"from":0,"to":1,"why":"day-night","by":"camera","origin":""})"_json,
              listener->await("scheme"));
    EXPECT_EQ(1u, rig.host().counters().mapSwitches["day-night"]);
    platform::Clock::hold({2024, 5, 1, 10, 30, 0});
    platform::Clock::advance(5000000);
    EXPECT_EQ(R"({"channel":1,"from":1,"to":2,"why":"schedule","by":"camera","origin":""})"_json,
              listener->await("scheme"));
}

// It is night: the scheme of the night is taken at once, not the one that would hold by day.
TEST(ChannelForPlatesTest, OutsideOfEveryWindowItStartsByDayAndNight) {
    Rig rig("plate");
    platform::Clock::hold({2024, 5, 1, 12, 0, 0});
    rig.camera().scene().setLight(0.1);
    rig.start();
    for (const camerad::SchemeView& scheme : rig.channel().schemes().vecSchemes) {
        rig.channel().setWindow(scheme.nIndex, {8, 0, 10, 0}, kAnna);
    }
    rig.channel().setFollow("schedule", kAnna);
    rig.channel().setAutomatic(true, kAnna);
    EXPECT_THAT(rig.channel().save(kAnna).vecFailures, IsEmpty());
    platform::Clock::advance(10000000);
    EXPECT_TRUE(rig.channel().isNight());
    rig.stop();
    const auto listener = rig.listen({1, {"scheme"}});
    rig.start();
    EXPECT_EQ(1, listener->await("scheme")["to"]);
}

TEST_F(ChannelTest, NamesOfSchemesAreKept) {
    rig.channel().setSchemeName(1,
                                "Nacht \xC3\xBC"
                                "ber der Stra\xC3\x9F"
                                "e",
                                kAnna);
    EXPECT_EQ(
        "Nacht \xC3\xBC"
        "ber der Stra\xC3\x9F"
        "e",
        scheme(1).strName);
    for (const std::string& bad : {std::string(), std::string(41, 'a'), std::string("a\nb"), std::string("\xFF"),
                                   std::string("\xC0\x80"), std::string("\xC2\x85")}) {
        EXPECT_EQ(Refusal::Kind::BadValue, refusalOf([&] { rig.channel().setSchemeName(1, bad, kAnna); }).kind());
    }
    std::string longest;
    for (int i = 0; i < 40; ++i) {
        longest += "\xC3\xA4";
    }
    rig.channel().setSchemeName(2, longest, kAnna);
    EXPECT_EQ(longest, scheme(2).strName);
}

// --- Keeping ---

TEST_F(ChannelTest, SavingStoresEverySchemeWithChanges) {
    rig.set(34, 60);
    rig.channel().setWindow(2, {1, 0, 2, 0}, kAnna);
    const auto listener = rig.listen({1, {"scheme"}});
    const std::uint64_t written = rig.host().counters().nFlashWrites;
    const camerad::SaveResult result = rig.channel().save(kAnna);
    EXPECT_EQ(written + 2, rig.host().counters().nFlashWrites);
    EXPECT_THAT(result.vecSchemes, ElementsAre(0, 2));
    EXPECT_THAT(result.vecFailures, IsEmpty());
    EXPECT_THAT(unsavedOf(0), IsEmpty());
    EXPECT_THAT(unsavedOf(2), IsEmpty());
    EXPECT_EQ(0, rig.channel().schemes().nCurrent);
    EXPECT_THAT(listener->wait(std::chrono::milliseconds(0)), IsEmpty());
    EXPECT_THAT(rig.channel().save(kAnna).vecSchemes, IsEmpty());
}

TEST_F(ChannelTest, EveryFileThatIsWrittenIsCounted) {
    constexpr std::uint64_t kSchemes = 4;
    const auto fnWritten = [&] { return rig.host().counters().nFlashWrites; };
    EXPECT_EQ(kSchemes + 1, fnWritten()) << "a first start stores every scheme and the version";
    rig.set(34, 60);
    rig.channel().discard(kAnna);
    EXPECT_EQ(kSchemes + 1, fnWritten()) << "going back only reads";
    rig.channel().setSchemeName(1, "Night", kAnna);
    rig.channel().setAutomatic(true, kAnna);
    EXPECT_EQ(kSchemes + 3, fnWritten()) << "settings";
    rig.host().setMessageLevel(2, kAnna);
    EXPECT_EQ(kSchemes + 4, fnWritten()) << "the sign file";
    rig.channel().reset(kAnna);
    EXPECT_EQ(2 * kSchemes + 6, fnWritten()) << "every scheme and the version again, and the settings";
    rig.restart();
    EXPECT_EQ(1u, fnWritten()) << "a start that finds its files writes the version only";
    rig.set(34, 60);
    rig.root().remove("/mnt/mtd/code/config_file/sensor0.cfg");
    rig.root().makeFolder("/mnt/mtd/code/config_file/sensor0.cfg");
    rig.channel().save(kAnna);
    EXPECT_EQ(1u, fnWritten()) << "what could not be written was not";
    rig.host().setMessageLevel(1, kAnna);
}

TEST_F(ChannelTest, AWindowSetKeyByKeyThatCannotBeStoredIsReported) {
    rig.set(8001, 22);
    rig.set(8003, 6);
    const camerad::SaveResult result = rig.channel().save(kAnna);
    ASSERT_EQ(1u, result.vecFailures.size());
    EXPECT_EQ(507, result.vecFailures[0].nCode);
    EXPECT_THAT(result.vecFailures[0].strDetail, HasSubstr("must start before it ends"));
    EXPECT_THAT(unsavedOf(0), ElementsAre(8001u, 8003u));
}

TEST_F(ChannelTest, AMediumThatFailsIsReported) {
    rig.set(34, 60);
    rig.root().remove("/mnt/mtd/code/config_file/sensor0.cfg");
    rig.root().makeFolder("/mnt/mtd/code/config_file/sensor0.cfg");
    const camerad::SaveResult result = rig.channel().save(kAnna);
    EXPECT_THAT(result.vecSchemes, IsEmpty());
    ASSERT_EQ(1u, result.vecFailures.size());
    EXPECT_EQ(0, result.vecFailures[0].nCode);
}

TEST_F(ChannelTest, DiscardingGoesBackToWhatIsStored) {
    rig.set(34, 60);
    rig.channel().setScheme(1, kAnna);
    rig.set(2353, 10);
    EXPECT_THAT(rig.channel().discard(kAnna).vecSchemes, ElementsAre(0, 1));
    EXPECT_EQ(1, rig.channel().schemes().nCurrent);
    EXPECT_EQ(50, rig.value(2353));
    EXPECT_EQ(50, rig.driver(2353));
    EXPECT_THAT(unsavedOf(0), IsEmpty());
    rig.channel().setScheme(0, kAnna);
    EXPECT_EQ(50, rig.value(34));
}

TEST_F(ChannelTest, WithoutAFileThereIsNothingToGoBackTo) {
    rig.set(34, 60);
    rig.root().remove("/mnt/mtd/code/config_file/sensor0.cfg");
    const camerad::SaveResult result = rig.channel().discard(kAnna);
    EXPECT_THAT(result.vecSchemes, IsEmpty());
    ASSERT_EQ(1u, result.vecFailures.size());
    EXPECT_EQ(60, rig.value(34));
    EXPECT_EQ(85u, unsavedOf(0).size()) << "a lost file makes everything unsaved";
    EXPECT_THAT(rig.channel().save(kAnna).vecSchemes, ElementsAre(0));
    EXPECT_THAT(unsavedOf(0), IsEmpty());
}

TEST_F(ChannelTest, AResetGoesBackToTheFactory) {
    rig.set(34, 60);
    rig.channel().setSchemeName(1, "Night", kAnna);
    rig.channel().setFollow("schedule", kAnna);
    rig.channel().setAutomatic(true, kAnna);
    rig.channel().save(kAnna);
    rig.channel().setScheme(2, kAnna);
    const auto listener = rig.listen({1, {}});
    rig.channel().reset(kAnna);
    EXPECT_EQ("reset", listener->await("busy")["operation"]);
    EXPECT_EQ("reset", listener->await("scheme")["why"]);
    EXPECT_EQ(50, rig.value(34));
    EXPECT_EQ(50, rig.driver(34));
    const camerad::SchemesView schemes = rig.channel().schemes();
    EXPECT_EQ(0, schemes.nCurrent);
    EXPECT_FALSE(schemes.bAutomatic);
    EXPECT_EQ("nothing", schemes.strFollow);
    EXPECT_EQ("Scheme 2", schemes.vecSchemes[1].strName);
    EXPECT_EQ("", rig.channel().view().strBusyWith);
    EXPECT_EQ(1u, rig.host().counters().mapSwitches["reset"]);
}

// --- A new start ---

TEST_F(ChannelTest, ANewStartFindsEverythingAsItWas) {
    rig.set(34, 60);
    rig.channel().setSchemeName(1, "Night", kAnna);
    rig.channel().setWindow(1, {11, 0, 24, 0}, kAnna);
    rig.channel().setWindow(0, {0, 0, 11, 0}, kAnna);
    rig.channel().setFollow("schedule", kAnna);
    rig.channel().setAutomatic(true, kAnna);
    rig.channel().save(kAnna);
    rig.set(2353, 10);
    rig.restart();
    const camerad::SchemesView schemes = rig.channel().schemes();
    EXPECT_EQ("Night", schemes.vecSchemes[1].strName);
    EXPECT_TRUE(schemes.bAutomatic);
    EXPECT_EQ("schedule", schemes.strFollow);
    EXPECT_EQ(11, schemes.vecSchemes[1].stWindow.nStartHour);
    EXPECT_EQ(1, schemes.nCurrent) << "at noon";
    platform::Clock::advance(3000000);
    EXPECT_EQ(1, rig.channel().schemes().nCurrent);
    rig.channel().setAutomatic(false, kAnna);
    rig.channel().setScheme(0, kAnna);
    EXPECT_EQ(60, rig.value(34));
    EXPECT_EQ(50, rig.value(2353)) << "what was not saved is gone";
}

TEST_F(ChannelTest, ANewStartGoesOnInTheSchemeThatWasChosen) {
    rig.channel().setScheme(2, kAnna);
    rig.restart();
    EXPECT_EQ(2, rig.channel().schemes().nCurrent);
}

TEST_F(ChannelTest, SettingsThatAreBrokenAreKeptAside) {
    rig.stop();
    rig.root().write("/mnt/mtd/camerad/settings.json", "{\"version\": 1, \"channels\": [");
    rig.start();
    EXPECT_TRUE(rig.channel().view().bReady);
    EXPECT_EQ("{\"version\": 1, \"channels\": [", rig.root().read("/mnt/mtd/camerad/settings.json.broken"));
    bool told = false;
    for (const camerad::LogEntry& entry : rig.host().log(0, 5000)) {
        told = told || ("message" == entry.strKind && std::string::npos != entry.strText.find("settings.json.broken"));
    }
    EXPECT_TRUE(told);
}

TEST_F(ChannelTest, SettingsThatCannotBeWrittenAreReported) {
    rig.root().makeFolder("/mnt/mtd/camerad/settings.json");
    const Refusal refusal = refusalOf([&] { rig.channel().setSchemeName(1, "Night", kAnna); });
    EXPECT_EQ(Refusal::Kind::Failed, refusal.kind());
    EXPECT_EQ("Scheme 2", scheme(1).strName);
}

// --- Driver ---

TEST_F(ChannelTest, TheLongestShutterGoesByPlaces) {
    camerad::ShutterView view = rig.channel().shutter();
    EXPECT_EQ(0, view.place.value());
    EXPECT_EQ(22u, view.vecValues.size());
    rig.channel().stepShutter(1, kAnna);
    EXPECT_EQ(1, rig.channel().shutter().place.value());
    EXPECT_EQ(8, rig.value(49));
    rig.channel().setShutter(3, kAnna);
    EXPECT_EQ(10, rig.value(49));
    rig.channel().stepShutter(-1, kAnna);
    EXPECT_EQ(9, rig.value(49));
    const Refusal refusal = refusalOf([&] { rig.channel().setShutter(22, kAnna); });
    EXPECT_EQ(Refusal::Kind::BadValue, refusal.kind());
    EXPECT_THAT(refusal.what(), HasSubstr("0 to 21"));
}

TEST_F(ChannelTest, TheLensMovesAndTellsUntilItStands) {
    rig.channel().moveLens({{}, {}, {}, 1}, kAnna);
    const auto listener = rig.listen({1, {"lens"}});
    rig.channel().moveLens({24576, {}, 12800, {}}, kAnna);
    EXPECT_TRUE(rig.channel().lens().bMoving);
    EXPECT_TRUE(rig.channel().isRunning(1568));
    EXPECT_EQ(Refusal::Kind::Refused, refusalOf([&] { rig.channel().moveLens({30000, {}, {}, {}}, kAnna); }).kind());
    const auto fnMoves = [](const nlohmann::json& p_objLens) { return p_objLens["moving"].get<bool>(); };
    EXPECT_FALSE(listener->await("lens", fnMoves).is_null());
    platform::Clock::advance(10000000);
    const nlohmann::json event =
        listener->await("lens", [](const nlohmann::json& p_objLens) { return !p_objLens["moving"].get<bool>(); });
    EXPECT_EQ(24576, event["zoom"]["position"]);
    EXPECT_EQ(2.0, event["zoom"]["ratio"]);
    const camerad::LensView view = rig.channel().lens();
    EXPECT_EQ(2000, view.nZoomRatio);
    EXPECT_EQ(12800, view.nIris);
    EXPECT_EQ(1, view.nFocusMode);
    rig.channel().lensAction("zoom-in", kAnna);
    EXPECT_EQ(Refusal::Kind::BadValue, refusalOf([&] { rig.channel().moveLens({1, {}, {}, {}}, kAnna); }).kind());
    const Refusal refusal = refusalOf([&] { rig.channel().lensAction("zoom-inn", kAnna); });
    EXPECT_EQ(Refusal::Kind::NotFound, refusal.kind());
    EXPECT_THAT(refusal.what(), HasSubstr("did you mean \"zoom-in\"?"));
}

TEST_F(ChannelTest, NightCanBeForced) {
    const auto listener = rig.listen({1, {"day-night"}});
    rig.channel().setNight(true, kAnna);
    EXPECT_EQ("night", listener->await("day-night")["state"]);
    EXPECT_TRUE(rig.channel().isNight());
    rig.host().addFault("cmd=153 opt=set result=-3", kAnna);
    EXPECT_EQ(Refusal::Kind::Refused, refusalOf([&] { rig.channel().setNight(false, kAnna); }).kind());
}

TEST_F(ChannelTest, ARawCheckGoesToTheDriver) {
    std::string text = "(5,0,77)";
    EXPECT_EQ(0, rig.channel().sensorCheck(text, kAnna));
    EXPECT_EQ("(5,0,77)", text);
    text = "(5,2,0)";
    EXPECT_EQ(0, rig.channel().sensorCheck(text, kAnna));
    EXPECT_EQ("77", text);
    for (const char* bad : {"", "()", "(1,2)", "1,2,3", "(1,2,x)", "(1,,3)", "(1,2,3,)", "(99999999999,1,1)"}) {
        text = bad;
        EXPECT_EQ(Refusal::Kind::BadValue, refusalOf([&] { rig.channel().sensorCheck(text, kAnna); }).kind()) << bad;
    }
    EXPECT_EQ(Refusal::Kind::NotFound, refusalOf([&] { rig.channel().isRunning(4711); }).kind());
}

TEST_F(ChannelTest, FocusAndExposureGoBackToTheScheme) {
    rig.channel().lensAction("iris-close", kAnna);
    EXPECT_EQ(3, rig.driver(16));
    rig.channel().restoreFocusAndExposure(kAnna);
    EXPECT_EQ(rig.value(16), rig.driver(16));
}

// --- Several at a time ---

TEST_F(ChannelTest, TwoThreadsAtOnceLoseNothing) {
    const auto listener = rig.listen({1, {"parameter"}});
    const auto fnWork = [&](u32 p_nKey) {
        for (int i = 1; i <= 40; ++i) {
            EXPECT_FALSE(rig.set(p_nKey, 50 + i).refusal);
        }
    };
    std::thread other([&] { fnWork(2353); });
    fnWork(34);
    other.join();
    EXPECT_EQ(90, rig.driver(34));
    EXPECT_EQ(90, rig.driver(2353));
    std::map<u32, int> last;
    std::size_t changes = 0;
    for (const camerad::EventPtr& event : listener->wait(std::chrono::milliseconds(0))) {
        const nlohmann::json data = nlohmann::json::parse(event->strData);
        for (const nlohmann::json& change : data["changes"]) {
            last[change["key"].get<u32>()] = change["value"].get<int>();
            ++changes;
        }
    }
    EXPECT_EQ(80u, changes);
    EXPECT_EQ((std::map<u32, int>{{34, 90}, {2353, 90}}), last);
}

}  // namespace
