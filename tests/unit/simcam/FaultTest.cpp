#include "SimulatedCamera.h"

namespace {

using simcam::Fault;

Fault faultOf(const std::string& p_strText) {
    Fault stFault;
    std::string strError;
    EXPECT_TRUE(simcam::parseFault(p_strText, stFault, strError)) << p_strText << ": " << strError;
    return stFault;
}

class Faults : public SimulatedCamera {
protected:
    int add(const std::string& p_strText) { return camera.faults().add(faultOf(p_strText)); }
};

struct GoodRow {
    const char* text;
    const char* whole;
};

struct BadRow {
    const char* text;
    const char* error;
};

}  // namespace

TEST(FaultText, GoodLinesAreReadAndPrintedWhole) {
    const GoodRow arrRows[] = {
        {"cmd=2369 opt=set nth=2 result=-5 times=1 delay=0 silent=0",
         "cmd=2369 ch=any opt=set nth=2 result=-5 times=1 delay=0 silent=0"},
        {"cmd=34 result=-3", "cmd=34 ch=any opt=any nth=1 result=-3 times=-1 delay=0 silent=0"},
        {"  silent=1   cmd=any  ", "cmd=any ch=any opt=any nth=1 result=0 times=-1 delay=0 silent=1"},
        {"cmd=0x622 ch=3 opt=status delay=1500000",
         "cmd=1570 ch=3 opt=status nth=1 result=0 times=-1 delay=1500000 silent=0"},
        {"cmd=4294967295 opt=any ch=any result=1",
         "cmd=4294967295 ch=any opt=any nth=1 result=1 times=-1 delay=0 silent=0"},
        {"cmd=1 opt=range silent=1", "cmd=1 ch=any opt=range nth=1 result=0 times=-1 delay=0 silent=1"},
        {"cmd=1 opt=correct silent=1", "cmd=1 ch=any opt=correct nth=1 result=0 times=-1 delay=0 silent=1"},
        {"cmd=1 opt=get delay=3600000000", "cmd=1 ch=any opt=get nth=1 result=0 times=-1 delay=3600000000 silent=0"},
        {"key=2384 ch=1 result=5", "key=2384 ch=1 nth=1 result=5 times=-1 delay=0 silent=0"},
        {"key=any silent=1 delay=7", "key=any ch=any nth=1 result=0 times=-1 delay=7 silent=1"},
    };
    for (const GoodRow& stRow : arrRows) {
        EXPECT_EQ(stRow.whole, toText(faultOf(stRow.text))) << stRow.text;
        EXPECT_EQ(stRow.whole, toText(faultOf(stRow.whole))) << "round trip";
    }
}

TEST(FaultText, BadLinesSayWhatIsWrong) {
    const BadRow arrRows[] = {
        {"", "exactly one of cmd"},
        {"result=1", "exactly one of cmd"},
        {"cmd=1 key=1 result=1", "exactly one of cmd"},
        {"cmd=1", "the fault does nothing"},
        {"cmd=1 result=0", "the fault does nothing"},
        {"cmd=1 result=1 silent=1", "exclude each other"},
        {"cmd=1 foo", "\"foo\" is not of the form"},
        {"cmd=1 foo=1", "unknown field \"foo\""},
        {"cmd=1 =1", "unknown field \"\""},
        {"cmd=1 cmd=2 result=1", "cmd is given twice"},
        {"cmd= result=1", "cmd must be a number from 0 to 4294967295, not \"\", or any"},
        {"cmd=x result=1", "cmd must be a number from 0 to 4294967295, not \"x\", or any"},
        {"cmd=4294967296 result=1", "cmd must be a number"},
        {"cmd=-1 result=1", "cmd must be a number"},
        {"cmd=0x result=1", "cmd must be a number"},
        {"cmd=1 ch=-1 result=1", "ch must be a number"},
        {"cmd=1 opt=Set result=1", "opt must be set, get, range, correct, status or any"},
        {"cmd=1 opt=0 result=1", "opt must be set"},
        {"cmd=1 nth=0 result=1", "nth must be a number from 1"},
        {"cmd=1 times=0 result=1", "times must be -1 (always) or at least 1"},
        {"cmd=1 times=-2 result=1", "times must be a number from -1"},
        {"cmd=1 result=12x", "result must be a number"},
        {"cmd=1 result=99999999999999999999", "result must be a number"},
        {"cmd=1 result=+5", "result must be a number"},
        {"cmd=1 delay=-1", "delay must be a number from 0 to 3600000000"},
        {"cmd=1 delay=3600000001", "delay must be a number"},
        {"cmd=1 silent=2", "silent must be a number from 0 to 1"},
        {"key=1 opt=set result=1", "opt does not go with key"},
        {"key=1 ch=0 result=1", "ch of a notification counts from 1"},
    };
    for (const BadRow& stRow : arrRows) {
        Fault stFault;
        stFault.command = 4711;
        std::string strError;
        EXPECT_FALSE(simcam::parseFault(stRow.text, stFault, strError)) << stRow.text;
        EXPECT_THAT(strError, ::testing::HasSubstr(stRow.error)) << stRow.text;
        EXPECT_EQ(4711u, stFault.command) << "left as it was";
    }
}

TEST_F(Faults, FailACallWhichThenChangesNothing) {
    add("cmd=34 opt=set result=-5");
    EXPECT_EQ(-5, set(34, 77));
    EXPECT_EQ(50, get(34)) << "another option";
    EXPECT_EQ(IA_OK, set(2337, 77)) << "another command";
}

TEST_F(Faults, LeaveTheDataOfAFailedReadAlone) {
    add("cmd=34 opt=get result=-3");
    EXPECT_EQ(kUntouched, get(34));
}

TEST_F(Faults, ActFromTheNthCallAndAsOftenAsTheySay) {
    const int nId = add("cmd=34 opt=set nth=2 times=2 result=-4");
    EXPECT_EQ(IA_OK, set(34, 1));
    EXPECT_EQ(-4, set(34, 2));
    EXPECT_EQ(-4, set(34, 3));
    EXPECT_EQ(IA_OK, set(34, 4));
    const auto vecEntries = camera.faults().list();
    ASSERT_EQ(1u, vecEntries.size());
    EXPECT_EQ(nId, vecEntries[0].id);
    EXPECT_EQ(4, vecEntries[0].matched);
    EXPECT_EQ(2, vecEntries[0].acted);
}

TEST_F(Faults, SilentOnesReturnSuccessAndDoNothing) {
    add("cmd=34 silent=1");
    EXPECT_EQ(IA_OK, set(34, 77));
    EXPECT_EQ(kUntouched, get(34));
    camera.faults().clear();
    EXPECT_EQ(50, get(34));
}

TEST_F(Faults, MayBeOfOneChannelOnly) {
    add("cmd=34 ch=1 result=-3");
    EXPECT_EQ(IA_OK, set(34, 1, 0));
    EXPECT_EQ(-3, set(34, 1, 1));
}

TEST_F(Faults, MayBeOfEveryCommand) {
    add("cmd=any result=-3");
    EXPECT_EQ(-3, set(34, 1));
    EXPECT_EQ(-3, set(17, 1)) << "also of one that does not exist";
    EXPECT_EQ(0, camera.video().notifyChange(1, 34, 1)) << "but not of notifications";
}

TEST_F(Faults, DelayTakesTimeOfTheClockAndThenTheCallIsCarriedOut) {
    add("cmd=34 delay=1500000");
    const INT64 nBefore = platform::Clock::monotonicMicroseconds();
    EXPECT_EQ(IA_OK, set(34, 77));
    EXPECT_EQ(1500000, platform::Clock::monotonicMicroseconds() - nBefore);
    camera.faults().clear();
    EXPECT_EQ(77, get(34));
}

TEST_F(Faults, TheFirstOneActsAndTheOthersHaveSeenTheCall) {
    add("cmd=34 times=1 result=-1");
    add("cmd=34 nth=2 times=1 result=-2");
    add("cmd=34 result=-3");
    EXPECT_EQ(-1, set(34, 1));
    EXPECT_EQ(-2, set(34, 1));
    EXPECT_EQ(-3, set(34, 1));
    EXPECT_EQ(3, camera.faults().list()[1].matched);
}

TEST_F(Faults, CanBeRemovedById) {
    const int nFirst = add("cmd=34 result=-3");
    const int nSecond = add("cmd=34 result=-4");
    EXPECT_NE(nFirst, nSecond);
    EXPECT_TRUE(camera.faults().remove(nFirst));
    EXPECT_FALSE(camera.faults().remove(nFirst));
    EXPECT_EQ(-4, set(34, 1));
    camera.faults().clear();
    EXPECT_TRUE(camera.faults().list().empty());
    EXPECT_EQ(IA_OK, set(34, 1));
    EXPECT_GT(add("cmd=1 result=1"), nSecond) << "an id never comes back";
}

TEST_F(Faults, FailNotifications) {
    add("key=2384 ch=2 times=1 result=9");
    EXPECT_EQ(0, camera.video().notifyChange(1, 2384, 1));
    EXPECT_EQ(9, camera.video().notifyChange(2, 2384, 1));
    EXPECT_EQ(0, camera.video().notifyChange(2, 2384, 2));
    EXPECT_EQ(IA_OK, set(2384, 1)) << "not the driver's command of the same number";
    int nLast = 0;
    ASSERT_TRUE(camera.video().lastValue(2, 2384, nLast));
    EXPECT_EQ(2, nLast);
}

TEST_F(Faults, SilentNotificationIsNotTaken) {
    add("key=2384 silent=1 delay=250000");
    const INT64 nBefore = platform::Clock::monotonicMicroseconds();
    EXPECT_EQ(0, camera.video().notifyChange(1, 2384, 1));
    EXPECT_EQ(250000, platform::Clock::monotonicMicroseconds() - nBefore);
    int nLast = 0;
    EXPECT_FALSE(camera.video().lastValue(1, 2384, nLast));
}

TEST_F(Faults, StayOverAPowerCycle) {
    add("cmd=34 result=-3");
    camera.powerCycle();
    EXPECT_EQ(-3, set(34, 1));
}
