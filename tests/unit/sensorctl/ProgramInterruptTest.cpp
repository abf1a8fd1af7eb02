// How a session ends that is ended from outside.
#include "tests/unit/sensorctl/ProgramRun.h"

#include <gmock/gmock.h>

#include <csignal>

namespace {

const char kSignFile[] = "/mnt/mtd/sign/Debug.sign";

TEST(ProgramInterrupt, AnswersComeLineByLineWhileTheInputIsOpen) {
    const DeviceTree tree;
    StartedProgram program({"--root", tree.path()});
    program.say("echo one");
    EXPECT_EQ(program.hear(), "one");
    program.say("echo two");
    EXPECT_EQ(program.hear(), "two");
    EXPECT_EQ(program.finish(), 0);
}

TEST(ProgramInterrupt, ASignalEndsTheWaitForACommandInGoodOrder) {
    for (const int number : {SIGINT, SIGTERM}) {
        const DeviceTree tree;
        StartedProgram program({"--root", tree.path(), "--debug-level", "6"});
        program.say("echo ready");
        EXPECT_EQ(program.hear(), "ready");
        EXPECT_TRUE(tree.exists(kSignFile));
        program.signal(number);
        EXPECT_EQ(program.finish(false), 128 + number);
        EXPECT_FALSE(tree.exists(kSignFile));
    }
}

TEST(ProgramInterrupt, ASignalEndsAWaitInRealTime) {
    const DeviceTree tree;
    StartedProgram program({"--root", tree.path(), "--realtime", "--trace"});
    program.say("wait 600000");
    EXPECT_EQ(program.hear(), "> wait 600000");
    program.signal(SIGTERM);
    EXPECT_THAT(program.hear(), testing::StartsWith("wait: clock="));
    EXPECT_EQ(program.finish(false), 128 + SIGTERM);
}

}  // namespace
