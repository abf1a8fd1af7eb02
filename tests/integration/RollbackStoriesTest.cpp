// Stories of values that were set and not stored.
#include "tests/integration/Story.h"

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

namespace {

constexpr char kScheme1[] = "/mnt/mtd/code/config_file/sensor1.cfg";

class RollbackStory : public Story {
protected:
    void SetUp() override { ASSERT_NO_FATAL_FAILURE(layOut("")); }
};

TEST_F(RollbackStory, AHostThatThinksBetterOfItGetsTheStoredValuesBack) {
    const auto pChannel = channel(0);
    untold([&] { pChannel->init(); });
    scheme(*pChannel, 1);
    set(*pChannel, "(34,60)(145,25)(2384,1)(161,2)");
    flush(*pChannel);
    const std::string strStored = root.read(kScheme1);

    set(*pChannel, "(34,80)(2353,10)(145,30)(2384,2)");
    EXPECT_TRUE(rollback(*pChannel));
    EXPECT_THAT(calls(), ElementsAre("ia ch0 set 34 60 = 0", "ia ch0 set 2353 50 = 0", "video ch1 2384 1 = 0",
                                     "ia ch0 set 2384 1 = 0", "ia ch0 set 145 25 40 0 = 0"));
    set(*pChannel, "(34,81)(163,77)");
    scheme(*pChannel, 2);
    scheme(*pChannel, 1);
    EXPECT_EQ(81u, pChannel->probe.valueIn(1, KEY_BRIGHTNESS)) << "a switch neither stores nor discards";
    EXPECT_EQ(77u, pChannel->probe.valueIn(1, KEY_IR_MANUAL_STRG_NEAR_INTELL)) << "the twin follows";
    EXPECT_TRUE(rollback(*pChannel));
    EXPECT_EQ(50u, pChannel->probe.valueIn(1, KEY_IR_MANUAL_STRG_NEAR));
    EXPECT_EQ(50u, pChannel->probe.valueIn(1, KEY_IR_MANUAL_STRG_NEAR_INTELL));
    flush(*pChannel);
    EXPECT_EQ(strStored, root.read(kScheme1));
    EXPECT_TRUE(rollback(*pChannel));
    EXPECT_THAT(calls(), IsEmpty()) << "there is nothing left to discard";

    // A driver that refuses: the thresholds are forgiven while a rollback runs, other keys end it.
    set(*pChannel, "(34,82)(145,31)(160,0)");
    fault("cmd=145 opt=set result=-5 times=1");
    EXPECT_TRUE(rollback(*pChannel));
    EXPECT_EQ(25u, pChannel->probe.valueIn(1, KEY_DTN_THR));
    set(*pChannel, "(34,83)(160,0)");
    fault("cmd=34 opt=set result=-5 times=1");
    EXPECT_FALSE(rollback(*pChannel));
    EXPECT_EQ(83u, pChannel->probe.valueIn(1, KEY_BRIGHTNESS)) << "what the driver did not take is not recorded";
    EXPECT_TRUE(rollback(*pChannel));
    EXPECT_THAT(calls(), ElementsAre("ia ch0 set 34 60 = 0", "ia ch0 set 160 1 = 0"));

    scheme(*pChannel, 4);
    set(*pChannel, KEY_BRIGHTNESS, 12);
    EXPECT_TRUE(rollback(*pChannel));
    EXPECT_THAT(calls(), IsEmpty()) << "the factory scheme has no file";
    flush(*pChannel);
    EXPECT_EQ(50u, pChannel->probe.valueIn(4, KEY_BRIGHTNESS)) << "and takes no value";
    uinit(*pChannel);
    EXPECT_TRUE(rollback(*pChannel)) << "without a scheme there is nothing to go back to";
    expectTranscript("rollback");
}

TEST_F(RollbackStory, TheBackgroundThreadDoesNotSwitchInTheMiddleOfIt) {
    const auto pChannel = channel(0);
    light("1000");
    untold([&] { pChannel->init(); });
    scheme(*pChannel, 1);
    set(*pChannel, KEY_CONTRAST, 31);
    flush(*pChannel);
    scheme(*pChannel, 0);
    set(*pChannel, "(8000,2)(34,40)(2353,41)");
    flush(*pChannel);
    mode(*pChannel, 1);
    pass(2);
    set(*pChannel, "(34,70)(2353,71)");
    light("0.5");
    pass(4);
    EXPECT_EQ(0, pChannel->probe.curScheme());
    fault("cmd=34 opt=set delay=3000000 times=1");
    EXPECT_TRUE(rollback(*pChannel));
    EXPECT_TRUE(!setsOf("ia ch0 get 153 -> 1").empty()) << "night fell while it ran";
    EXPECT_EQ(0, pChannel->probe.curScheme());
    EXPECT_EQ(40u, pChannel->probe.valueIn(0, KEY_BRIGHTNESS));
    EXPECT_EQ(41u, pChannel->probe.valueIn(0, KEY_CONTRAST));
    pass(1);
    EXPECT_EQ(1, pChannel->probe.curScheme());
    EXPECT_EQ(31u, pChannel->probe.valueIn(1, KEY_CONTRAST));
    uinit(*pChannel);
    expectTranscript("rollback-and-thread");
}

TEST_F(RollbackStory, ALostFileIsReportedAndTheSchemeCanBeStoredAgain) {
    const auto pChannel = channel(0);
    untold([&] { pChannel->init(); });
    scheme(*pChannel, 1);
    set(*pChannel, KEY_BRIGHTNESS, 60);
    world("the file is lost", [&] { root.remove(kScheme1); });
    EXPECT_TRUE(rollback(*pChannel));
    EXPECT_FALSE(root.exists(kScheme1));
    set(*pChannel, KEY_BRIGHTNESS, 61);
    flush(*pChannel);
    EXPECT_EQ(61u, valueOf(stored(kScheme1), KEY_BRIGHTNESS));
    world("the file is cut short", [&] { root.write(kScheme1, root.read(kScheme1).substr(0, 20)); });
    set(*pChannel, KEY_BRIGHTNESS, 62);
    EXPECT_TRUE(rollback(*pChannel));
    flush(*pChannel);
    uinit(*pChannel);
    expectTranscript("rollback-of-a-lost-file");
}

}  // namespace
