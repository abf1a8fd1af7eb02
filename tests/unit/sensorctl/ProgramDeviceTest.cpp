// The commands that work on the simulated camera: scene, time, driver, faults, video module, transcript.
#include "tests/unit/sensorctl/ProgramRun.h"

#include <gmock/gmock.h>

namespace {

using nlohmann::json;
using testing::HasSubstr;

TEST(ProgramDevice, TheSceneShowsItsLightAndClock) {
    const DeviceTree tree;
    const json data =
        lastData(tree, "scene light 9\nscene distance 2.5\nscene ambient -12.5\nscene shift 3600\nscene\n");
    EXPECT_EQ(data["lux"], 9.0);
    EXPECT_EQ(data["level"], 20.0);
    EXPECT_EQ(data["light"], "fixed");
    EXPECT_EQ(data["distance"], 2.5);
    EXPECT_EQ(data["ambient"], -12.5);
    EXPECT_EQ(data["clock"], "2024-05-01 12:00:00");
    EXPECT_EQ(data["sceneClock"], "13:00:00");
}

TEST(ProgramDevice, FogWindAndCarBelongToTheScene) {
    const DeviceTree tree;
    const json before = lastData(tree, "scene\n");
    EXPECT_EQ(before["fog"], 0);
    EXPECT_EQ(before["wind"], 20);
    EXPECT_EQ(before["car"], true);
    const json after = lastData(tree, "scene fog 40\nscene wind 100\nscene car off\n");
    EXPECT_EQ(after["fog"], 40);
    EXPECT_EQ(after["wind"], 100);
    EXPECT_EQ(after["car"], false);
    EXPECT_EQ(lastData(tree, "scene car 0\nscene car 1\n")["car"], true);
}

TEST(ProgramDevice, ADayHasLightAndDarkness) {
    const DeviceTree tree;
    const std::string day = "scene day 06:00 20:00 20000 0.1\n";
    EXPECT_EQ(lastData(tree, day + "scene clock 13:00\n")["lux"], 20000.0);
    EXPECT_EQ(lastData(tree, day + "scene clock 23:00\n")["lux"], 0.1);
    EXPECT_EQ(lastData(tree, "scene day\n")["light"], "day");
}

TEST(ProgramDevice, TimePassesOnlyByCommand) {
    const DeviceTree tree;
    EXPECT_EQ(lastData(tree, "wait 0.5\nwait 0.5\nscene advance 60\ncycle 3\nstatus\n")["clock"],
              "2024-05-01 12:01:04");
    EXPECT_EQ(lastData(tree, "scene clock \"2025-01-02 03:04:05\"\nwait 0\n")["clock"], "2025-01-02 03:04:05");
}

TEST(ProgramDevice, CyclesLetTheControllerSwitchByDayAndNight) {
    const DeviceTree tree;
    const std::string start = "init\nset scheme_mode 2\nset delay 3\nmode auto\n";
    EXPECT_EQ(lastData(tree, start + "scene light 0.1\ncycle\nscheme\n")["scheme"], 0);
    EXPECT_EQ(lastData(tree, start + "scene light 0.1\ncycle 10\nscheme\n")["scheme"], 1);
    EXPECT_EQ(lastData(tree, start + "scene light 0.1\ncycle 10\nscene light 5000\ncycle 10\nscheme\n")["scheme"], 0);
    EXPECT_EQ(lastData(tree, start + "mode manual\nscene light 0.1\ncycle 10\nscheme\n")["scheme"], 0);
}

TEST(ProgramDevice, CyclesLetTheControllerSwitchByTheTimeOfDay) {
    const DeviceTree tree;
    const std::string start =
        "init\nset scheme_mode 1\nset \"(8001,6)(8003,8)\"\nscheme 1\nset \"(8001,8)(8003,18)\"\n"
        "scheme 0\nmode auto\n";
    EXPECT_EQ(lastData(tree, start + "scene clock 07:30\ncycle 2\nscheme\n")["scheme"], 0);
    EXPECT_EQ(lastData(tree, start + "scene clock 07:59:59\ncycle 3\nscheme\n")["scheme"], 1);
}

TEST(ProgramDevice, ADayOfCyclesIsOneCommand) {
    const DeviceTree tree;
    EXPECT_EQ(lastData(tree, "init\nmode auto\ncycle 86400\n")["clock"], "2024-05-02 12:00:01");
}

TEST(ProgramDevice, TheDriverShowsValuesRangesAndLensWithoutATrace) {
    const DeviceTree tree;
    const json value = lastData(tree, "init\nset brightness 60\ndriver 34\n");
    EXPECT_EQ(value["value"], 60);
    EXPECT_EQ(value["name"], "brightness");
    EXPECT_EQ(lastData(tree, "driver 0x22\n")["command"], 34);
    const json range = lastData(tree, "driver range 49\n");
    EXPECT_EQ(range["items"][0], range["min"]);
    EXPECT_EQ(lastData(tree, "video fps 50\ndriver range 49\n")["min"], 9);
    EXPECT_EQ(lastData(tree, "setZoomValue 20000\ndriver lens\n")["zoomTarget"], 20000);
    EXPECT_EQ(lastData(tree, "scene ambient 20\ndriver temperature\n").count("celsius"), 1u);
    EXPECT_EQ(lastData(tree, "driver 34\ndriver range 49\ndriver lens\ntranscript\n")["total"], 0);
}

TEST(ProgramDevice, SupportAndStrictnessOfTheDriverCanBeChanged) {
    const DeviceTree tree;
    EXPECT_EQ(lastData(tree, "driver support 153 0\n"), (json{{"command", 153}, {"supported", false}}));
    const ProgramResult run = runScript(tree, "driver support 153 0\ngetDNState\n");
    EXPECT_EQ(run.nStatus, 1);
    EXPECT_EQ(lastData(tree, "driver support 153 0\ndriver support 153 1\ngetDNState\n")["state"], 0);
    // A shutter that is legal at another frame rate: taken and brought to the nearest one, or refused.
    EXPECT_EQ(runScript(tree, "init\nvideo fps 50\nset max_shutter 8\n").nStatus, 0);
    EXPECT_EQ(runScript(tree, "init\nvideo fps 50\ndriver strict 1\nset max_shutter 8\n").nStatus, 1);
}

TEST(ProgramDevice, AFaultActsAndIsListedAndRemoved) {
    const DeviceTree tree;
    const std::string add = "init\nfault add cmd=34 opt=set result=-3 times=1\n";
    const ProgramResult run = runScript(tree, add + "set brightness 60\nset brightness 61\n", {"--keep-going"});
    EXPECT_EQ(run.nStatus, 1);
    EXPECT_THAT(run.strErrors, HasSubstr("standard input:3: the library returned -34, stopped at KEY_BRIGHTNESS (34)"));
    EXPECT_THAT(run.strOutput, HasSubstr("set KEY_BRIGHTNESS (34) = 61"));

    const json list = lastData(tree, add + "fault list\n")["faults"];
    ASSERT_EQ(list.size(), 1u);
    EXPECT_EQ(list[0]["id"], 1);
    EXPECT_EQ(list[0]["acted"], 0);
    EXPECT_EQ(runScript(tree, add + "fault remove 1\nset brightness 60\n").nStatus, 0);
    EXPECT_EQ(runScript(tree, add + "fault clear\nset brightness 60\n").nStatus, 0);
    EXPECT_THAT(runScript(tree, "fault list\n").strOutput, HasSubstr("no faults"));
}

TEST(ProgramDevice, AFaultMayBeOneQuotedWord) {
    const DeviceTree tree;
    EXPECT_EQ(lastData(tree, "fault add \"cmd=34 result=-3\"\n")["id"], 1);
    EXPECT_EQ(lastData(tree, "fault add key=2384 ch=1 result=5\n")["id"], 1);
}

TEST(ProgramDevice, ASilentFaultLosesTheValue) {
    const DeviceTree tree;
    EXPECT_EQ(lastData(tree, "init\nfault add cmd=34 opt=set silent=1\nset brightness 60\ndriver 34\n")["value"], 50);
}

TEST(ProgramDevice, TheVideoModuleHasStreamsLimitsAndResults) {
    const DeviceTree tree;
    const json data =
        lastData(tree, "video streams 50,1280x720 30,320x240,1\nvideo limits 0 1\nvideo startup 3 7\nvideo\n");
    ASSERT_EQ(data["streams"].size(), 2u);
    EXPECT_EQ(data["streams"][0], (json{{"id", 0}, {"fps", 50}, {"width", 1280}, {"height", 720}, {"encoder", 0}}));
    EXPECT_EQ(data["streams"][1]["encoder"], 1);
    EXPECT_EQ(data["limitFramesMode"], 0);
    EXPECT_EQ(data["wdrLimit"], 1);
    EXPECT_EQ(data["startupPollsLeft"], 3);
    EXPECT_EQ(lastData(tree, "video streams none\n")["streams"].size(), 0u);
    EXPECT_EQ(lastData(tree, "init\nset mirror 2\nvideo last mirror\n")["value"], 2);
    EXPECT_EQ(lastData(tree, "video limits 0 1\ninit\nshow wdr\n")["wdr"], false);
}

TEST(ProgramDevice, AResultOfTheVideoModuleReachesTheController) {
    const DeviceTree tree;
    const ProgramResult run = runScript(tree, "init\nvideo result wdr_mode 5\nsetWDRSwitch 1\n");
    EXPECT_EQ(run.nStatus, 1);
    EXPECT_THAT(run.strErrors, HasSubstr("setWDRSwitch returned false"));
}

TEST(ProgramDevice, TheStyleWaitsForThePipeline) {
    const DeviceTree tree;
    EXPECT_EQ(lastData(tree, "init\nvideo startup 2\nstyle\nstatus\n")["clock"], "2024-05-01 12:00:01");
    EXPECT_EQ(lastData(tree, "init\nvideo startup 2\nstyle\nvideo\n")["startupPollsLeft"], 0);
}

TEST(ProgramDevice, TheTranscriptIsPrintedFilteredAndCleared) {
    const DeviceTree tree;
    const std::string some = "setDNState 1\nfault add cmd=16 result=-3\nexpect fail irisUp\n";
    EXPECT_EQ(lastData(tree, some + "transcript\n")["entries"].size(), 2u);
    EXPECT_EQ(lastData(tree, some + "transcript filter set 153\n")["entries"].size(), 1u);
    EXPECT_EQ(lastData(tree, some + "transcript filter set 15\n")["entries"].size(), 0u);
    const json failed = lastData(tree, some + "transcript failed\n")["entries"];
    ASSERT_EQ(failed.size(), 1u);
    EXPECT_EQ(failed[0]["command"], 16);
    EXPECT_EQ(failed[0]["result"], -3);
    EXPECT_EQ(failed[0]["fault"], 1);
    const json cleared = lastData(tree, some + "transcript clear\ntranscript print\n");
    EXPECT_EQ(cleared["entries"].size(), 0u);
    EXPECT_EQ(cleared["total"], 2);
    EXPECT_THAT(runScript(tree, some + "transcript\n").strOutput, HasSubstr("2 of 2 calls"));
}

TEST(ProgramDevice, ATranscriptEntryHasItsPartsInJson) {
    const DeviceTree tree;
    const json entry = lastData(tree, "wait 2\nsetDNState 1\ntranscript\n")["entries"][0];
    EXPECT_EQ(entry, (json{{"number", 1},
                           {"time", "2024-05-01 12:00:02"},
                           {"microseconds", 2000000},
                           {"from", "driver"},
                           {"channel", 0},
                           {"option", "set"},
                           {"command", 153},
                           {"name", "day/night state"},
                           {"before", {1}},
                           {"after", json::array()},
                           {"result", 0}}));
}

}  // namespace
