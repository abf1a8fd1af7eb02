// How sensorctl is started, where its commands come from and where its answers go.
#include "tests/unit/sensorctl/ProgramRun.h"

#include <gmock/gmock.h>

#include <sys/wait.h>
#include <unistd.h>

namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

TEST(ProgramModes, CommandsComeFromStandardInputOnePerLine) {
    const DeviceTree tree;
    const ProgramResult run = runScript(tree, "# a comment\necho one\n\necho two\n");
    EXPECT_EQ(run.nStatus, 0);
    EXPECT_EQ(run.strOutput, "one\ntwo\n");
    EXPECT_EQ(run.strErrors, "");
}

TEST(ProgramModes, CommandsComeFromTheArguments) {
    const DeviceTree tree;
    const ProgramResult run = runProgram({"--root", tree.path(), "echo", "a  b", "--", "echo", "c"});
    EXPECT_EQ(run.nStatus, 0);
    EXPECT_EQ(run.strOutput, "a  b\nc\n");
}

TEST(ProgramModes, CommandsComeFromAScript) {
    const DeviceTree tree;
    tree.write("/script.txt", "echo from a script");
    const ProgramResult run = runProgram({"--root", tree.path(), "--script", tree.path() + "/script.txt"});
    EXPECT_EQ(run.nStatus, 0);
    EXPECT_EQ(run.strOutput, "from a script\n");
}

TEST(ProgramModes, AScriptNamedDashIsStandardInput) {
    const DeviceTree tree;
    const ProgramResult run = runScript(tree, "echo piped\n", {"--script", "-"});
    EXPECT_EQ(run.nStatus, 0);
    EXPECT_EQ(run.strOutput, "piped\n");
}

TEST(ProgramModes, AScriptThatCannotBeReadIsWrongUse) {
    const DeviceTree tree;
    for (const std::string& script : {std::string("/missing.txt"), std::string("")}) {
        const ProgramResult run = runProgram({"--root", tree.path(), "--script", tree.path() + script});
        EXPECT_EQ(run.nStatus, 2);
        EXPECT_THAT(run.strErrors, HasSubstr("cannot be read"));
        EXPECT_EQ(run.strOutput, "");
    }
}

// Not for 32-bit ARM: an emulator takes the closed descriptor for itself, so that the program never sees it closed.
#ifndef __arm__
TEST(ProgramModes, AClosedStandardInputIsAFailureAndNotWaitedFor) {
    const DeviceTree tree;
    const pid_t child = fork();
    if (0 == child) {
        close(STDIN_FILENO);
        becomeProgram({"--root", tree.path()});
    }
    int waited = 0;
    ASSERT_EQ(waitpid(child, &waited, 0), child);
    ASSERT_TRUE(WIFEXITED(waited));
    EXPECT_EQ(WEXITSTATUS(waited), 1);
}
#endif

TEST(ProgramModes, WithoutADeviceRootNothingRuns) {
    const ProgramResult run = runProgram({"echo", "never"});
    EXPECT_EQ(run.nStatus, 2);
    EXPECT_EQ(run.strOutput, "");
    EXPECT_THAT(run.strErrors, HasSubstr("no device root"));
}

TEST(ProgramModes, HelpAndVersionGoToStandardOutput) {
    EXPECT_THAT(runProgram({"--help"}).strOutput, AllOf(HasSubstr("--root"), HasSubstr("Exit status")));
    EXPECT_THAT(runProgram({"--version"}).strOutput, StartsWith("sensorctl "));
    EXPECT_EQ(runProgram({"--version"}).nStatus, 0);
}

TEST(ProgramModes, WrongOptionsEndWithStatusTwoAndTheNearestMatch) {
    const ProgramResult run = runProgram({"--rot", "."});
    EXPECT_EQ(run.nStatus, 2);
    EXPECT_THAT(run.strErrors, HasSubstr("did you mean \"--root\"?"));
}

TEST(ProgramModes, TheFirstFailureEndsTheSessionWithStatusOne) {
    const DeviceTree tree;
    const ProgramResult run = runScript(tree, "echo one\nscheem\necho two\n");
    EXPECT_EQ(run.nStatus, 1);
    EXPECT_EQ(run.strOutput, "one\nFAILED: scheem\n");
    EXPECT_EQ(run.strErrors, "sensorctl: standard input:2: unknown command \"scheem\"; did you mean \"scheme\"?\n");
}

TEST(ProgramModes, KeepGoingRunsTheRestAndStillEndsWithStatusOne) {
    const DeviceTree tree;
    const ProgramResult run = runScript(tree, "scheem\necho two\n", {"--keep-going"});
    EXPECT_EQ(run.nStatus, 1);
    EXPECT_EQ(run.strOutput, "FAILED: scheem\ntwo\n");
}

TEST(ProgramModes, QuitEndsTheSession) {
    const DeviceTree tree;
    const ProgramResult run = runScript(tree, "echo one\nquit\nnonsense\n");
    EXPECT_EQ(run.nStatus, 0);
    EXPECT_EQ(run.strOutput, "one\nquit: ok\n");
}

TEST(ProgramModes, EveryLineOfJsonIsAnObjectAndTheLastIsTheSummary) {
    const DeviceTree tree;
    const ProgramResult run = runScript(tree, "init\nset brightness 60\nstyle\ndump 0\nnonsense \xFF\necho \"a\\nb\"\n",
                                        {"--json", "--trace", "--keep-going", "--debug-level", "7"});
    EXPECT_EQ(run.nStatus, 1);
    const std::vector<nlohmann::json> lines = run.jsonLines();
    ASSERT_THAT(lines, Not(IsEmpty()));
    EXPECT_EQ(lines.back(), (nlohmann::json{{"type", "summary"}, {"commands", 6}, {"failed", 1}, {"status", 1}}));
    EXPECT_EQ(run.jsonLines("result").size(), 6u);
    EXPECT_GT(run.jsonLines("transcript").size(), 50u);
    EXPECT_EQ(run.jsonLines("result")[4]["line"], 5);
    EXPECT_EQ(run.jsonLines("result")[4]["ok"], false);
}

TEST(ProgramModes, TheLibrarysMessagesGoWhereTheyAreWanted) {
    const DeviceTree tree;
    const std::string message = "[sensor dbg]";
    const std::vector<std::string> level = {"--debug-level", "6"};
    const ProgramResult standard = runScript(tree, "init\n", level);
    EXPECT_THAT(standard.strErrors, HasSubstr(message));
    EXPECT_THAT(standard.strOutput, Not(HasSubstr(message)));
    const ProgramResult mixed = runScript(tree, "init\n", {"--debug-level", "6", "--library-output", "stdout"});
    EXPECT_THAT(mixed.strOutput, HasSubstr(message));
    const ProgramResult silent = runScript(tree, "init\n", {"--debug-level", "6", "--library-output", "none"});
    EXPECT_EQ(silent.strErrors, "");
    EXPECT_THAT(silent.strOutput, Not(HasSubstr(message)));
}

TEST(ProgramModes, TheDebugLevelLastsForTheSession) {
    const DeviceTree tree;
    EXPECT_EQ(runScript(tree, "echo x\n", {"--debug-level", "6"}).nStatus, 0);
    EXPECT_FALSE(tree.exists("/mnt/mtd/sign/Debug.sign"));
    tree.write("/mnt/mtd/sign/Debug.sign", "4\n");
    EXPECT_EQ(runScript(tree, "debug 6 on\n").nStatus, 0);
    EXPECT_EQ(tree.read("/mnt/mtd/sign/Debug.sign"), "4\n");
}

TEST(ProgramModes, TheClockIsHeldAndStartsWhereItIsTold) {
    const DeviceTree tree;
    const ProgramResult run =
        runScript(tree, "wait 90\nscene clock 18:30\nstatus\n", {"--json", "--at", "2024-12-24 10:00"});
    const std::vector<nlohmann::json> results = run.jsonLines("result");
    ASSERT_EQ(results.size(), 3u) << run.strErrors;
    EXPECT_EQ(results[0]["data"]["clock"], "2024-12-24 10:01:30");
    EXPECT_EQ(results[2]["data"]["clock"], "2024-12-24 18:30:00");
}

TEST(ProgramModes, InRealTimeTheClockCannotBeSet) {
    const DeviceTree tree;
    const ProgramResult run = runScript(tree, "wait 0.01\nscene clock 18:30\n", {"--realtime"});
    EXPECT_EQ(run.nStatus, 1);
    EXPECT_THAT(run.strErrors, HasSubstr("real time"));
    EXPECT_THAT(run.strOutput, HasSubstr("wait: clock="));
}

TEST(ProgramModes, TraceShowsCommandsAndCallsAsTheyHappen) {
    const DeviceTree tree;
    const ProgramResult run = runScript(tree, "setDNState 1\necho said\n", {"--trace"});
    EXPECT_EQ(run.nStatus, 0);
    EXPECT_EQ(run.strOutput,
              "> setDNState 1\n"
              "    12:00:00 ia ch0 set 153 1 = 0                   day/night state\n"
              "setDNState: value=1\n"
              "said\n");
}

TEST(ProgramModes, TraceCanBeSwitchedByCommand) {
    const DeviceTree tree;
    const ProgramResult run = runScript(tree, "setDNState 1\ntrace on\nsetDNState 0\ntrace off\nsetDNState 1\ntrace\n");
    EXPECT_EQ(run.strOutput,
              "setDNState: value=1\n"
              "trace: trace=true\n"
              "> setDNState 0\n"
              "    12:00:00 ia ch0 set 153 0 = 0                   day/night state\n"
              "setDNState: value=0\n"
              "> trace off\n"
              "trace: trace=false\n"
              "setDNState: value=1\n"
              "trace: trace=false\n");
}

TEST(ProgramModes, OnAHeldClockTwoRunsAreTheSameByteForByte) {
    const std::string script = "trace on\ninit\nset brightness 60\nzoomIn\nwait 2.5\ngetZoomValue\ntranscript\n";
    const DeviceTree first;
    const DeviceTree second;
    const ProgramResult run = runScript(first, script, {"--json"});
    EXPECT_EQ(run.nStatus, 0);
    EXPECT_EQ(run.strOutput, runScript(second, script, {"--json"}).strOutput);
}

TEST(ProgramModes, AnswersThatCannotBeWrittenEndWithStatusThree) {
    const DeviceTree tree;
    const ProgramResult full = runProgramTo("/dev/full", {"--root", tree.path(), "echo", "one", "--", "nonsense"});
    EXPECT_EQ(full.nStatus, 3);
    EXPECT_EQ(full.strErrors, "sensorctl: standard output cannot be written\n");
}

TEST(ProgramModes, TheCamerasFilesLieBelowTheDeviceRoot) {
    const DeviceTree tree;
    EXPECT_EQ(runScript(tree, "init\nset brightness 60\nreset\nuinit\n", {"--debug-level", "4"}).nStatus, 0);
    EXPECT_TRUE(tree.exists("/mnt/mtd/code/config_file/sensor0.cfg"));
    EXPECT_TRUE(tree.exists("/tmp/merge_style_ch1.xml"));
}

}  // namespace
