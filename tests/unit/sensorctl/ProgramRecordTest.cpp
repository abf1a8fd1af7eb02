// A session that is recorded, and what its script does on another device.
#include "tests/unit/sensorctl/ProgramRun.h"

#include <gmock/gmock.h>
#include <sys/wait.h>

#include <cstdlib>

namespace {

using nlohmann::json;
using testing::HasSubstr;
using testing::Not;

// Everything that driver and video module were told, line by line as it was printed, with numbers and times.
std::vector<std::string> transcriptOf(const ProgramResult& p_stRun) {
    std::vector<std::string> lines;
    for (const json& line : p_stRun.jsonLines("transcript")) {
        lines.push_back(line.dump());
    }
    return lines;
}

const char kSession[] =
    "init\n"
    "set brightness 60\n"
    "set no_such_key 1\n"
    "fault add cmd=2353 opt=set result=-3 times=1\n"
    "set contrast 20\n"
    "set contrast 20\n"
    "help set\n"
    "echo \"two  words\" # and a comment\n"
    "get brightness 1568\n"
    "list changed\n"
    "shutter up\n"
    "flush\n"
    "scheme 1\n"
    "set brightness 20\n"
    "scheme 0\n"
    "set \"(147,3)(8000,2)\"\n"
    "mode auto\n"
    "cycle 2\n"
    "scene light 0.1\n"
    "watch 20 count 1 scheme\n"
    "wait 2.25\n"
    "rollback\n"
    "channel 2\n"
    "zoomIn\n"
    "wait 3\n"
    "scene clock 18:00\n"
    "channel 1\n"
    "reset\n";

TEST(ProgramRecord, ARecordedSessionPlaysWithTheSameTranscript) {
    const DeviceTree first;
    const std::string file = first.path() + "/session.txt";
    const ProgramResult recorded =
        runScript(first, kSession, {"--json", "--trace", "--keep-going", "--at", "09:30:15", "--record", file});
    EXPECT_EQ(recorded.jsonLines("summary").at(0)["failed"], 2);

    const DeviceTree second;
    const ProgramResult played =
        runProgram({"--root", second.path(), "--json", "--trace", "--at", "09:30:15", "--script", file});
    EXPECT_EQ(played.nStatus, 0) << played.strErrors;
    EXPECT_GT(transcriptOf(recorded).size(), 200u);
    EXPECT_EQ(transcriptOf(played), transcriptOf(recorded));
    for (const char* name : {"sensor0.cfg", "sensor1.cfg", "sensor2.cfg", "sensor3.cfg"}) {
        const std::string path = std::string("/mnt/mtd/code/config_file/") + name;
        EXPECT_EQ(second.read(path), first.read(path)) << name;
    }
}

TEST(ProgramRecord, TheTimeOfTheDeviceIsInTheScript) {
    const DeviceTree first;
    const std::string file = first.path() + "/session.txt";
    runScript(first, "init\nstatus\n",
              {"--at", "2030-01-02 03:04:05", "--channel", "2", "--keep-going", "--record", file});
    const std::string script = first.read("/session.txt");
    EXPECT_THAT(script, HasSubstr("\nscene clock \"2030-01-02 03:04:05\"\nchannel 2\nexpect fail init\nstatus\n"));
    const DeviceTree second;
    const ProgramResult played = runProgram({"--root", second.path(), "--json", "--script", file});
    EXPECT_EQ(played.jsonLines("result").back()["data"]["clock"], "2030-01-02 03:04:05");
}

TEST(ProgramRecord, ItBeginsAndEndsByCommand) {
    const DeviceTree tree;
    const std::string file = tree.path() + "/session.txt";
    const ProgramResult run = runScript(
        tree, "echo before\nrecord " + file + "\necho inside\nrecord\nrecord stop\necho behind\n", {"--json"});
    EXPECT_EQ(run.nStatus, 0) << run.strErrors;
    const std::vector<json> results = run.jsonLines("result");
    EXPECT_EQ(results[3]["data"], (json{{"recording", true}, {"file", file}, {"commands", 1}}));
    EXPECT_EQ(results[4]["data"], (json{{"recording", false}, {"file", file}, {"commands", 1}}));
    EXPECT_THAT(tree.read("/session.txt"), HasSubstr("\nscene clock \"2024-05-01 12:00:00\"\necho inside\n"));
    EXPECT_THAT(tree.read("/session.txt"), Not(HasSubstr("behind")));
    EXPECT_THAT(tree.read("/session.txt"), Not(HasSubstr("record stop")));
}

TEST(ProgramRecord, WordsComeBackAsTheyWere) {
    const DeviceTree tree;
    const std::string file = tree.path() + "/session.txt";
    const std::string line = "echo \"a  b\" 'c \"d\"' \"\" \"#no comment\" \"back\\\\slash\"\n";
    const ProgramResult typed = runScript(tree, "record " + file + "\n" + line);
    const ProgramResult played = runProgram({"--root", tree.path(), "--script", file});
    EXPECT_THAT(typed.strOutput, HasSubstr("a  b c \"d\"  #no comment back\\slash\n"));
    EXPECT_THAT(played.strOutput, HasSubstr("a  b c \"d\"  #no comment back\\slash\n"));
}

TEST(ProgramRecord, InRealTimeTheTimeBetweenCommandsBecomesWaits) {
    const DeviceTree tree;
    const std::string file = tree.path() + "/session.txt";
    const ProgramResult run = runScript(tree, "wait 0.05\nwatch 0.02 light\n", {"--realtime", "--record", file});
    EXPECT_EQ(run.nStatus, 0) << run.strErrors;
    EXPECT_THAT(tree.read("/session.txt"),
                testing::ContainsRegex("\nwait 0.05\n(wait [0-9.]+\n)?watch 0\\.[0-9]{6} light\n"));
}

TEST(ProgramRecord, AFileThatCannotBeMadeIsRefusedBeforeAnythingRuns) {
    const DeviceTree tree;
    tree.write("/there.txt", "mine");
    const ProgramResult run = runScript(tree, "echo on\n", {"--record", tree.path() + "/there.txt"});
    EXPECT_EQ(run.nStatus, 2);
    EXPECT_EQ(run.strOutput, "");
    EXPECT_THAT(run.strErrors, HasSubstr("is there already; record into a new file"));
    EXPECT_EQ(tree.read("/there.txt"), "mine");
    EXPECT_EQ(runScript(tree, "echo on\n", {"--record", tree.path() + "/no/folder.txt"}).nStatus, 2);
}

TEST(ProgramRecord, ARecordThatIsNotWholeIsALostOutput) {
    const DeviceTree tree;
    std::string lines;
    for (int i = 0; i < 100; ++i) {
        lines += "echo a line that fills the medium on which the session is recorded\n";
    }
    tree.write("/long.txt", lines);
    std::string command = "trap '' XFSZ; ulimit -f 4; exec";  // blocks
    for (const std::string& word : programWords()) {
        command += " '" + word + "'";
    }
    command += " --root '" + tree.path() + "' --record '" + tree.path() + "/session.txt' <'" + tree.path() +
               "/long.txt' >/dev/null 2>&1";
    const int waited = std::system(command.c_str());
    ASSERT_TRUE(WIFEXITED(waited));
    EXPECT_EQ(WEXITSTATUS(waited), 3);
    EXPECT_GT(tree.read("/session.txt").size(), 1000u);
}

}  // namespace
