// The tour that a newcomer plays first.
#include "tests/unit/sensorctl/ProgramRun.h"

#include <gmock/gmock.h>

namespace {

using testing::HasSubstr;

const std::string kTour = std::string(SENSORCTL_SOURCE) + "/apps/sensorctl/examples/tour.txt";

TEST(ProgramTour, RunsThroughAndShowsWhatDriverAndVideoModuleReceive) {
    const DeviceTree tree;
    const ProgramResult run = runProgram({"--root", tree.path(), "--script", kTour});
    EXPECT_EQ(run.nStatus, 0) << run.strErrors;
    EXPECT_THAT(run.strOutput, HasSubstr("The tour is over: everything was as described.\n"));
    EXPECT_THAT(run.strOutput, HasSubstr(" ia ch0 set 34 60 = 0 "));
    EXPECT_THAT(run.strOutput, HasSubstr(" video ch1 2370 0 = 0"));
}

TEST(ProgramTour, RunsThroughAgainOnTheSameDeviceRoot) {
    const DeviceTree tree;
    EXPECT_EQ(runProgram({"--root", tree.path(), "--script", kTour}).nStatus, 0);
    EXPECT_EQ(runProgram({"--root", tree.path(), "--script", kTour}).nStatus, 0);
}

TEST(ProgramTour, GivesValidJson) {
    const DeviceTree tree;
    const ProgramResult run = runProgram({"--root", tree.path(), "--json", "--script", kTour});
    EXPECT_EQ(run.nStatus, 0) << run.strErrors;
    EXPECT_EQ(run.jsonLines("summary").at(0)["failed"], 0);
    EXPECT_GT(run.jsonLines("transcript").size(), 300u);
}

TEST(ProgramTour, StopsAtTheFirstThingThatIsNotAsDescribed) {
    const DeviceTree tree;
    tree.become("plate");
    const ProgramResult run = runProgram({"--root", tree.path(), "--script", kTour});
    EXPECT_EQ(run.nStatus, 1);
    EXPECT_THAT(run.strErrors, HasSubstr("tour.txt:10: expected model"));
}

}  // namespace
