// judgeCurScheme: the scheme that the time of day selects.
#include "tests/unit/schemes/SchemeCamera.h"

namespace {

struct Judgement {
    int nScheme;
    int nSchedule;
    bool operator==(const Judgement& p_stOther) const {
        return nScheme == p_stOther.nScheme && nSchedule == p_stOther.nSchedule;
    }
};

void PrintTo(const Judgement& p_stJudgement, std::ostream* p_pStream) {
    *p_pStream << "scheme " << p_stJudgement.nScheme << " schedule " << p_stJudgement.nSchedule;
}

constexpr Judgement kNone = {0, 0};

class Schedule : public SchemeCamera {
protected:
    Judgement judgeAt(int p_nHour, int p_nMinute) {
        clockShows(p_nHour, p_nMinute);
        Judgement stJudgement = {77, 77};
        EXPECT_EQ(0, probe.judgeCurScheme(stJudgement.nScheme, stJudgement.nSchedule));
        return stJudgement;
    }
};

TEST_F(Schedule, StartIsInsideTheWindowAndEndIsOutside) {
    build(2);
    window(0, 6, 0, 8, 0);
    window(1, 12, 0, 13, 0);
    EXPECT_EQ((Judgement{0, 1}), judgeAt(6, 0));
    EXPECT_EQ((Judgement{0, 1}), judgeAt(7, 59));
    EXPECT_EQ(kNone, judgeAt(8, 0));
    EXPECT_EQ((Judgement{1, 1}), judgeAt(12, 0));
    EXPECT_EQ((Judgement{1, 1}), judgeAt(12, 59));
    EXPECT_EQ(kNone, judgeAt(13, 0));
    EXPECT_EQ(kNone, judgeAt(11, 59));
}

TEST_F(Schedule, MeantAWindowDoesNotWrapPastMidnight) {
    build(2);
    window(0, 0, 0, 0, 0);
    window(1, 22, 0, 6, 0);
    EXPECT_EQ(kNone, judgeAt(23, 30));
    EXPECT_EQ(kNone, judgeAt(3, 0));
}

TEST_F(Schedule, OfOverlappingWindowsTheLowerSchemeWins) {
    build(3);
    window(1, 8, 0, 12, 0);
    window(2, 7, 0, 18, 0);
    EXPECT_EQ((Judgement{2, 1}), judgeAt(7, 30));
    EXPECT_EQ((Judgement{1, 1}), judgeAt(8, 0));
    EXPECT_EQ((Judgement{2, 1}), judgeAt(12, 0));
}

TEST_F(Schedule, AWindowMayEndAtMidnight) {
    build(2);
    window(1, 18, 0, 24, 0);
    EXPECT_EQ((Judgement{1, 1}), judgeAt(23, 59));
    EXPECT_EQ(kNone, judgeAt(0, 0));
}

TEST_F(Schedule, TheFactorySchemeIsNeverACandidate) {
    build(2);
    window(2, 0, 0, 24, 0);
    EXPECT_EQ(kNone, judgeAt(12, 0));
}

TEST_F(Schedule, MeantTheWindowIsReadByPlaceNotByKey) {
    probe.buildSets(1, {{KEY_BRIGHTNESS, 0},
                        {KEY_CONTRAST, 10},
                        {KEY_SATURATION, 30},
                        {KEY_SHARPNESS, 11},
                        {KEY_GAMMA, 45},
                        {KEY_SCHEME_START_HOUR, 1}});
    EXPECT_EQ((Judgement{0, 1}), judgeAt(10, 30));
    EXPECT_EQ((Judgement{0, 1}), judgeAt(11, 44));
    EXPECT_EQ(kNone, judgeAt(11, 45));
    EXPECT_EQ(kNone, judgeAt(1, 0));
}

TEST_F(Schedule, MinutesBeyondTheHourCountAsTheyStand) {
    build(1);
    window(0, 8, 75, 9, 0);  // 875 to 900
    EXPECT_EQ(kNone, judgeAt(8, 59));
    window(0, 8, 0, 8, 75);
    EXPECT_EQ((Judgement{0, 1}), judgeAt(8, 59));
}

TEST_F(Schedule, HugeValuesNeverMatchAndNeverOverrun) {
    build(1);
    window(0, 0, 0, 0xFFFFFFFFu, 0xFFFFFFFFu);  // wraps to the number 4294967195
    EXPECT_EQ((Judgement{0, 1}), judgeAt(12, 0)) << "unsigned comparison";
    window(0, 0xFFFFFFFFu, 0, 24, 0);
    EXPECT_EQ(kNone, judgeAt(12, 0));
}

TEST_F(Schedule, ASetWithFewerThanFiveRecordsHasNoWindow) {
    for (const std::size_t nSize : {std::size_t{0}, std::size_t{1}, std::size_t{4}}) {
        ISensorController other;
        SensorControllerProbe otherProbe(other);
        std::vector<KeyVal> vecRecords = records();
        vecRecords.resize(nSize);
        otherProbe.buildSets(2, vecRecords);
        int nScheme = 5;
        int nSchedule = 5;
        EXPECT_EQ(0, otherProbe.judgeCurScheme(nScheme, nSchedule));
        EXPECT_EQ(0, nScheme) << nSize;
        EXPECT_EQ(0, nSchedule) << nSize;
        other.uinit();
    }
}

TEST_F(Schedule, FiveRecordsAreEnough) {
    probe.buildSets(1, {{KEY_SCHEME_MODE, 1}, {1, 9}, {2, 0}, {3, 10}, {4, 0}});
    EXPECT_EQ((Judgement{0, 1}), judgeAt(9, 30));
}

}  // namespace
