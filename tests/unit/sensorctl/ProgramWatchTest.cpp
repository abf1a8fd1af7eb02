// What a watch sees while time passes.
#include "tests/unit/sensorctl/ProgramRun.h"

#include <gmock/gmock.h>

#include <csignal>

namespace {

using nlohmann::json;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

const char kDayNight[] = "init\nscheme 1\nset brightness 20\nscheme 0\nset delay 3\nset scheme_mode 2\nmode auto\n";

std::vector<std::string> seen(const DeviceTree& p_objTree, const std::string& p_strScript) {
    const ProgramResult run = runScript(p_objTree, p_strScript, {"--json"});
    EXPECT_EQ(run.nStatus, 0) << run.strErrors;
    std::vector<std::string> changes;
    for (const json& line : run.jsonLines("change")) {
        const std::string subject = line.contains("key")       ? " " + line["key"].dump()
                                    : line.contains("command") ? " " + line["command"].dump()
                                                               : "";
        changes.push_back(line["what"].get<std::string>() + subject + " " + line["before"].dump() + " " +
                          line["after"].dump());
    }
    return changes;
}

TEST(ProgramWatch, ASwitchBySchemeAndStateIsSeenWithItsParameters) {
    const DeviceTree tree;
    const std::string dusk = std::string(kDayNight) + "scene light 0.1\n";
    EXPECT_THAT(seen(tree, dusk + "watch 20\n"), ElementsAre("state 0 1", "scheme 0 1", "parameter 34 50 20",
                                                             "parameter 147 3 5", "driver 34 50 20", "driver 147 3 5"));
    EXPECT_THAT(seen(tree, dusk + "watch 20 scheme\n"), ElementsAre("scheme 0 1"));
    EXPECT_THAT(seen(tree, dusk + "watch 20 state\n"), ElementsAre("state 0 1"));
    EXPECT_THAT(seen(tree, dusk + "watch 20 brightness\n"), ElementsAre("parameter 34 50 20"));
    EXPECT_THAT(seen(tree, dusk + "watch 20 parameters\n"), ElementsAre("parameter 34 50 20", "parameter 147 3 5"));
    EXPECT_THAT(seen(tree, dusk + "watch 20 147 driver\n"),
                ElementsAre("parameter 147 3 5", "driver 34 50 20", "driver 147 3 5"));
    EXPECT_THAT(seen(tree, dusk + "watch 20 mode light\n"), IsEmpty());
}

TEST(ProgramWatch, ASwitchThatSendsNothingIsSeenInTheParameters) {
    const DeviceTree tree;
    EXPECT_THAT(seen(tree,
                     "init\nscheme 1\nset delay 3\nset scheme_start_hour 8\nscheme 0\nset delay 3\n"
                     "set scheme_mode 2\nmode auto\nscene light 0.1\nwatch 20\n"),
                ElementsAre("state 0 1", "scheme 0 1", "parameter 8001 0 8"));
}

TEST(ProgramWatch, AChangeIsPrintedWithItsTimeAsItHappens) {
    const DeviceTree tree;
    const ProgramResult run =
        runScript(tree, std::string(kDayNight) + "scene light 0.1\nwatch 20 scheme state brightness\n");
    EXPECT_THAT(run.strOutput, HasSubstr("\n12:00:04 state day -> night\n12:00:04 scheme 0 -> 1\n"
                                         "12:00:04 KEY_BRIGHTNESS (34) 50 -> 20\n"
                                         "watch: changes=3 clock=2024-05-01 12:00:21\n"));
}

TEST(ProgramWatch, ACountEndsItEarly) {
    const DeviceTree tree;
    const std::string dusk = std::string(kDayNight) + "scene light 0.1\n";
    const json data = lastData(tree, dusk + "watch 600 count 2\n");
    EXPECT_EQ(data["changes"], 2);
    EXPECT_EQ(data["clock"], "2024-05-01 12:00:04");
    EXPECT_EQ(lastData(tree, dusk + "watch 600 count 2\nstatus\n")["clock"], "2024-05-01 12:00:04");
}

TEST(ProgramWatch, TheLightOfADayIsSeenInLevels) {
    const DeviceTree tree;
    const std::string morning = "scene day 06:00 20:00\nscene clock 05:00\n";
    const std::vector<std::string> changes = seen(tree, morning + "watch 7200 light\n");
    EXPECT_GT(changes.size(), 60u);
    EXPECT_LT(changes.size(), 100u);
    EXPECT_THAT(seen(tree, morning + "watch 1700 light\n"), IsEmpty());  // before twilight
}

TEST(ProgramWatch, WithoutChangesOnlyTimePasses) {
    const DeviceTree tree;
    EXPECT_EQ(lastData(tree, "init\nwatch 2.5\n"), (json{{"changes", 0}, {"clock", "2024-05-01 12:00:03"}}));
    EXPECT_EQ(lastData(tree, "watch 0\n")["changes"], 0);
}

TEST(ProgramWatch, LooksAreNoCallsOfTheDriver) {
    const DeviceTree tree;
    const ProgramResult run =
        runScript(tree, "init\ntranscript clear\nwatch 100 scheme state light driver mode\nexpect silent\n");
    EXPECT_EQ(run.nStatus, 0) << run.strErrors;
}

TEST(ProgramWatch, InRealTimeItGoesOnUntilAnInterrupt) {
    const DeviceTree tree;
    StartedProgram program({"--root", tree.path(), "--realtime", "--trace"});
    program.say("watch light");
    EXPECT_EQ(program.hear(), "> watch light");
    program.signal(SIGINT);
    EXPECT_THAT(program.hear(), testing::StartsWith("watch: changes=0 clock="));
    EXPECT_EQ(program.finish(false), 128 + SIGINT);
}

}  // namespace
