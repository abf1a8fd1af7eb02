#include "SimulatedCamera.h"

#include <array>
#include <stdexcept>

namespace {

using simcam::TranscriptEntry;
using simcam::TranscriptFilter;
using ::testing::ElementsAre;

class Transcript : public SimulatedCamera {
protected:
    std::vector<std::string> lines(const TranscriptFilter& p_stFilter = {}) {
        return camera.transcript().lines(p_stFilter);
    }

    static std::vector<int> numbersOf(const std::vector<TranscriptEntry>& p_vecEntries) {
        std::vector<int> vecNumbers;
        for (const TranscriptEntry& stEntry : p_vecEntries) {
            vecNumbers.push_back(static_cast<int>(stEntry.number));
        }
        return vecNumbers;
    }
};

}  // namespace

TEST_F(Transcript, HoldsCallsAndNotificationsInOneOrder) {
    set(34, 50);
    camera.video().notifyChange(1, 2384, 2);
    get(153);
    setThresholds(145, 20, 40);
    setTimes(18, 0, 6, 30);
    status(1568);
    corrected(49, 3);
    set(2369, 101);
    set(17, 1, 3);
    camera.video().notifyChange(9, -1, -7);
    EXPECT_THAT(lines(), ElementsAre("ia ch0 set 34 50 = 0",          //
                                     "video ch1 2384 2 = 0",          //
                                     "ia ch0 get 153 -> 0 = 0",       //
                                     "ia ch0 set 145 20 40 0 = 0",    //
                                     "ia ch0 set 149 18 0 6 30 = 0",  //
                                     "ia ch0 status 1568 -> 0 = 0",   //
                                     "ia ch0 correct 49 3 -> 7 = 0",  //
                                     "ia ch0 set 2369 101 = -5",      //
                                     "ia ch3 set 17 1 = -1",          //
                                     "video ch9 -1 -7 = -1"));
}

TEST_F(Transcript, PrintsRecordsInFull) {
    set(2368, 1);
    set(1536, 1);
    camera.transcript().clear();
    rangeOf(34);
    set(2464, 60);
    rangeOf(49);
    ia_dynamic_params_cmds_st stList = {};
    ia_ioctrl_v2(0, 4112, IA_CMD_OPT_GET, &stList);
    std::array<char, 50> arrText{};
    camera.driver().setVersionText(0, "a\x01\"b\xFF");
    ia_ioctrl_v2(0, 2496, IA_CMD_OPT_GET, arrText.data());
    unsigned char cHeater = 7;
    ia_ioctrl_v2(0, 1606, IA_CMD_OPT_GET, &cHeater);
    ia_sensor_check_st stCheck = {0, 2, 3, 0};
    ia_ioctrl_v2(0, 2816, IA_CMD_OPT_GET, &stCheck);
    ia_ioctrl_v2(0, 2816, IA_CMD_OPT_SET, &stCheck);
    EXPECT_THAT(lines(),
                ElementsAre("ia ch0 range 34 -> kind 1 default 50 min 0 max 100 = 0",  //
                            "ia ch0 set 2464 60 = 0",                                  //
                            "ia ch0 range 49 -> kind 0 default 13 min 13 max 20 items 13 14 15 16 17 18 19 20 = 0",
                            "ia ch0 commands -> 49 50 82 1537 = 0",  //
                            "ia ch0 get 2496 -> \"a?\"b?\" = 0",     //
                            "ia ch0 get 1606 -> 0 = 0",              //
                            "ia ch0 get 2816 0 2 3 -> 0 2 3 901 = 0", "ia ch0 set 2816 0 2 3 = 0"));
}

TEST_F(Transcript, CallsThatCannotBeReadLeaveALine) {
    ia_ioctrl_v2(0, 34, IA_CMD_OPT_SET, nullptr);
    int nValue = 1;
    ia_ioctrl_v2(0, 34, 77, &nValue);
    ia_ioctrl_v2(-5, 0xFFFFFFFFu, IA_CMD_OPT_GET, &nValue);
    ia_ioctrl_v2(0, 4112, IA_CMD_OPT_SET, &nValue);
    ia_ioctrl_v2(0, 2496, IA_CMD_OPT_CORRECT_PARAM, &nValue);
    EXPECT_THAT(lines(), ElementsAre("ia ch0 set 34 = -2",           //
                                     "ia ch0 77 34 = -1",            //
                                     "ia ch-5 get 4294967295 = -1",  //
                                     "ia ch0 set 4112 = -1",         //
                                     "ia ch0 correct 2496 = -1"));
}

TEST_F(Transcript, NamesTheFaultThatActed) {
    simcam::Fault stFault;
    stFault.command = 34;
    stFault.silent = true;
    stFault.times = 2;
    camera.faults().add({});  // another one, of a command that nobody sends
    camera.faults().add(stFault);
    set(34, 1);
    get(34);
    set(34, 1);
    EXPECT_THAT(lines(),
                ElementsAre("ia ch0 set 34 1 = 0 fault 2", "ia ch0 get 34 = 0 fault 2", "ia ch0 set 34 1 = 0"));
}

TEST_F(Transcript, TellsTheTimeOfTheSimulatedClock) {
    passSeconds(61.5);
    set(34, 1);
    EXPECT_EQ("12:01:01 +61.500000 ia ch0 set 34 1 = 0\n", camera.transcript().text({}, true));
    const TranscriptEntry stEntry = camera.transcript().entries()[0];
    EXPECT_EQ(61500000, stEntry.microseconds);
    EXPECT_EQ(2024, stEntry.time.year);
    EXPECT_EQ(1, stEntry.time.minute);
}

TEST_F(Transcript, GivesTheFieldsOfACall) {
    set(34, 60, 2);
    corrected(49, 3);
    const std::vector<TranscriptEntry> vecEntries = camera.transcript().entries();
    ASSERT_EQ(2u, vecEntries.size());
    EXPECT_EQ(TranscriptEntry::Kind::Driver, vecEntries[0].kind);
    EXPECT_EQ(1u, vecEntries[0].number);
    EXPECT_EQ(2, vecEntries[0].channel);
    EXPECT_EQ(34u, vecEntries[0].command);
    EXPECT_EQ(IA_CMD_OPT_SET, vecEntries[0].option);
    EXPECT_THAT(vecEntries[0].before, ElementsAre(60));
    EXPECT_TRUE(vecEntries[0].after.empty());
    EXPECT_THAT(vecEntries[1].before, ElementsAre(3));
    EXPECT_THAT(vecEntries[1].after, ElementsAre(7));
    EXPECT_EQ(0, vecEntries[1].fault);
}

TEST_F(Transcript, KeepsTheNewestEntriesAndCountsTheRest) {
    camera.transcript().setLimit(3);
    for (int i = 0; i < 5; ++i) {
        set(34, i);
    }
    EXPECT_THAT(lines(), ElementsAre("ia ch0 set 34 2 = 0", "ia ch0 set 34 3 = 0", "ia ch0 set 34 4 = 0"));
    EXPECT_EQ(5u, camera.transcript().total());
    EXPECT_EQ(2u, camera.transcript().dropped());
    camera.transcript().setLimit(0);
    EXPECT_THAT(lines(), ElementsAre("ia ch0 set 34 4 = 0")) << "at least one";
    EXPECT_EQ(4u, camera.transcript().dropped());
    camera.transcript().clear();
    EXPECT_TRUE(lines().empty());
    EXPECT_EQ(4u, camera.transcript().dropped());
    set(34, 9);
    EXPECT_EQ(6u, camera.transcript().entries()[0].number);
}

TEST_F(Transcript, IsMadeWithALimit) {
    simcam::Camera objSmall({1, 2});
    for (int i = 0; i < 5; ++i) {
        set(34, i);
    }
    EXPECT_EQ(2u, objSmall.transcript().entries().size());
}

TEST_F(Transcript, CanBeFiltered) {
    set(34, 1);                               // 1
    get(34);                                  // 2
    set(2337, 101, 1);                        // 3, fails
    camera.video().notifyChange(1, 34, 5);    // 4
    camera.video().notifyChange(9, 2384, 5);  // 5, fails
    const auto numbers = [&](const TranscriptFilter& p_stFilter) {
        return numbersOf(camera.transcript().entries(p_stFilter));
    };
    TranscriptFilter stFilter;
    stFilter.kind = TranscriptFilter::Kind::Driver;
    EXPECT_THAT(numbers(stFilter), ElementsAre(1, 2, 3));
    stFilter.kind = TranscriptFilter::Kind::Notification;
    EXPECT_THAT(numbers(stFilter), ElementsAre(4, 5));
    stFilter = {};
    stFilter.channel = 1;
    EXPECT_THAT(numbers(stFilter), ElementsAre(3, 4));
    stFilter = {};
    stFilter.commands = {34, 2384};
    EXPECT_THAT(numbers(stFilter), ElementsAre(1, 2, 4, 5));
    stFilter = {};
    stFilter.option = static_cast<int>(IA_CMD_OPT_SET);
    EXPECT_THAT(numbers(stFilter), ElementsAre(1, 3));
    stFilter = {};
    stFilter.setsOnly = true;
    EXPECT_THAT(numbers(stFilter), ElementsAre(1, 3, 4, 5));
    stFilter.failedOnly = true;
    EXPECT_THAT(numbers(stFilter), ElementsAre(3, 5));
    stFilter = {};
    stFilter.after = 3;
    EXPECT_THAT(numbers(stFilter), ElementsAre(4, 5));
}

TEST_F(Transcript, ShowsEachEntryToTheObserverAtOnce) {
    std::vector<std::string> vecSeen;
    camera.transcript().setObserver(
        [&](const TranscriptEntry& p_stEntry) { vecSeen.push_back(toText(p_stEntry, false)); });
    set(34, 1);
    EXPECT_THAT(vecSeen, ElementsAre("ia ch0 set 34 1 = 0"));
    camera.video().notifyChange(1, 34, 5);
    EXPECT_EQ(2u, vecSeen.size());
    camera.transcript().setObserver({});
    set(34, 2);
    EXPECT_EQ(2u, vecSeen.size());
}

TEST_F(Transcript, ObserverMayCallTheCamera) {
    std::vector<std::string> vecSeen;
    int nInside = 0;
    camera.transcript().setObserver([&](const TranscriptEntry& p_stEntry) {
        EXPECT_EQ(1, ++nInside) << "one entry at a time";
        vecSeen.push_back(toText(p_stEntry, false));
        if (34 == p_stEntry.command) {
            set(2337, 5);
            camera.video().notifyChange(1, 2337, 5);
        }
        --nInside;
    });
    set(34, 1);
    EXPECT_THAT(vecSeen, ElementsAre("ia ch0 set 34 1 = 0", "ia ch0 set 2337 5 = 0", "video ch1 2337 5 = 0"));
}

TEST_F(Transcript, ObserverMayReplaceItself) {
    int nFirst = 0;
    int nSecond = 0;
    camera.transcript().setObserver([&](const TranscriptEntry&) {
        ++nFirst;
        camera.transcript().setObserver([&](const TranscriptEntry&) { ++nSecond; });
    });
    set(34, 1);
    set(34, 2);
    EXPECT_EQ(1, nFirst);
    EXPECT_EQ(1, nSecond);
}

TEST_F(Transcript, AnObserverThatThrowsDoesNotStopTheNext) {
    camera.transcript().setObserver([](const TranscriptEntry&) { throw std::runtime_error("seen enough"); });
    EXPECT_THROW(camera.video().notifyChange(1, 34, 1), std::runtime_error);
    int nSeen = 0;
    camera.transcript().setObserver([&](const TranscriptEntry&) { ++nSeen; });
    set(34, 1);
    EXPECT_EQ(1, nSeen);
}
