// The commands that work on the controller.
#include "tests/unit/sensorctl/ProgramRun.h"

#include <gmock/gmock.h>

namespace {

using nlohmann::json;
using testing::AllOf;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

// What driver and video module were told by the last command, one line each, without times.
std::vector<std::string> toldBy(const std::string& p_strBefore, const std::string& p_strCommand) {
    const DeviceTree tree;
    const json data = lastData(tree, p_strBefore + "transcript clear\n" + p_strCommand + "\ntranscript\n");
    std::vector<std::string> lines;
    for (const json& entry : data["entries"]) {
        std::string line = entry["from"] == "driver"
                               ? entry["option"].get<std::string>() + " " + std::to_string(entry["command"].get<int>())
                               : "video " + std::to_string(entry["key"].get<int>());
        for (const json& word : entry["before"]) {
            line += " " + std::to_string(word.get<int>());
        }
        lines.push_back(line);
    }
    return lines;
}

using Lines = std::vector<std::string>;

TEST(ProgramCommands, InitTakesTheModuleOfTheMachine) {
    const DeviceTree tree;
    const json data = lastData(tree, "init\n");
    EXPECT_EQ(data["channel"], 1);
    EXPECT_EQ(data["moduleId"], 334);
    EXPECT_THAT(data["detail"].get<std::string>(), HasSubstr("(max_scheme=4)"));
}

TEST(ProgramCommands, InitTakesTheModuleOfAModelThatIsGiven) {
    const DeviceTree tree;
    EXPECT_EQ(lastData(tree, "init Hi3516AV200 1003\n")["moduleId"], 307);
    const DeviceTree other;
    EXPECT_EQ(lastData(other, "init FISHEYE-500 anything\n")["moduleId"], 377);
}

TEST(ProgramCommands, InitTakesTheEntryOfTheChannel) {
    const DeviceTree tree;
    tree.become("thermal");
    EXPECT_EQ(lastData(tree, "channel 2\ninit\n")["moduleId"], 900);
    EXPECT_TRUE(tree.exists("/mnt/mtd/code/config_file/sensor-thermal0.cfg"));
    EXPECT_EQ(lastData(tree, "init\n")["moduleId"], 334);
    EXPECT_TRUE(tree.exists("/mnt/mtd/code/config_file/sensor0.cfg"));
}

TEST(ProgramCommands, ADeviceWithOneThermalSensorHasItOnChannelTwo) {
    const DeviceTree tree;
    tree.become("thermal-only");
    EXPECT_EQ(lastData(tree, "channel 2\ninit\n")["moduleId"], 901);
}

TEST(ProgramCommands, StatusFollowsTheLifeOfTheController) {
    const DeviceTree tree;
    const ProgramResult run =
        runScript(tree, "status\nconstruct\nstatus\ninit\nscheme 2\nmode auto\nstatus\nuinit\nstatus\n", {"--json"});
    ASSERT_EQ(run.nStatus, 0) << run.strErrors;
    const std::vector<json> results = run.jsonLines("result");
    EXPECT_EQ(results[0]["data"]["constructed"], false);
    EXPECT_EQ(results[2]["data"]["constructed"], true);
    EXPECT_EQ(results[2]["data"]["initialised"], false);
    EXPECT_EQ(results[2]["data"]["sensorStatus"], false);
    EXPECT_EQ(results[2]["data"]["scheme"], -1);
    EXPECT_EQ(results[6]["data"]["initialised"], true);
    EXPECT_EQ(results[6]["data"]["sensorStatus"], true);
    EXPECT_EQ(results[6]["data"]["sensorType"], 334);
    EXPECT_EQ(results[6]["data"]["scheme"], 2);
    EXPECT_EQ(results[6]["data"]["mode"], 1);
    EXPECT_EQ(results[8]["data"]["initialised"], false);
    EXPECT_EQ(results[8]["data"]["scheme"], -1);
}

TEST(ProgramCommands, MachineShowsTheMachineInformation) {
    const DeviceTree tree;
    tree.become("plate");
    const json data = lastData(tree, "machine\n");
    EXPECT_EQ(data["deviceType"], 8);
    EXPECT_EQ(data["model"], "PLATE-200");
    EXPECT_EQ(data["code"], "3001");
}

TEST(ProgramCommands, AParameterIsSetByNameNumberAndHexadecimal) {
    for (const char* key : {"brightness", "KEY_BRIGHTNESS", "34", "0x22"}) {
        EXPECT_EQ(toldBy("init\n", std::string("set ") + key + " 60"), (Lines{"set 34 60"})) << key;
    }
    EXPECT_EQ(toldBy("init\n", "setParameter brightness 61"), (Lines{"set 34 61"}));
}

TEST(ProgramCommands, AValueInForceIsSentAgainOnlyWithoutTheCache) {
    EXPECT_EQ(toldBy("init\n", "set brightness 50"), Lines{});
    EXPECT_EQ(toldBy("init\n", "set brightness 50 nocache"), (Lines{"set 34 50"}));
    EXPECT_EQ(toldBy("init\n", "set (34,50)"), Lines{});
    EXPECT_EQ(toldBy("init\n", "set (34,50) nocache"), (Lines{"set 34 50"}));
    // Without the cache nothing is recorded either.
    EXPECT_EQ(toldBy("init\nset brightness 60 nocache\n", "set brightness 60"), (Lines{"set 34 60"}));
}

TEST(ProgramCommands, ATextSetsSeveralParametersInOrder) {
    EXPECT_EQ(toldBy("init\n", "set \"(2337,60)(34,51)\""), (Lines{"set 2337 60", "set 34 51"}));
    EXPECT_EQ(toldBy("init\n", "setParameters \"junk(34,51)junk\""), (Lines{"set 34 51"}));
    EXPECT_EQ(toldBy("init\n", "setParameters \"no pairs\""), Lines{});
}

TEST(ProgramCommands, EveryNamedSetterReachesItsParameter) {
    struct Setter {
        const char* szName;
        int nCommand;
    };
    const Setter setters[] = {
        {"setDNMode", 144},
        {"setWDRSwitch", 2368},
        {"setWDRStrength", 2369},
        {"setHLCSwitch", 112},
        {"setHLCStrength", 113},
        {"setBLCSwitch", 128},
        {"setBLCStrength", 130},
        {"setDefogSwitch", 2400},
        {"setDefogStrength", 2401},
        {"set2DSwitch", 2304},
        {"set2DMode", 2305},
        {"set2DAutoMaxStrength", 2306},
        {"set2DManualMaxStrength", 2307},
        {"set3DSwitch", 2308},
        {"set3DMode", 2309},
        {"set3DAutoMaxStrength", 2312},
        {"set3DManualMaxStrength", 2313},
        {"setBeaway", 2385},
        {"setWhiteMode", 169},
    };
    std::string script = "init\n";
    for (const Setter& setter : setters) {
        script += std::string(setter.szName) + " 1\nsetter " + setter.szName + " 0\n";
    }
    const DeviceTree tree;
    const ProgramResult run = runScript(tree, script, {"--json", "--trace"});
    ASSERT_EQ(run.nStatus, 0) << run.strErrors;
    for (const Setter& setter : setters) {
        for (const int value : {0, 1}) {
            bool found = false;
            for (const json& entry : run.jsonLines("transcript")) {
                found = found || (entry["from"] == "driver" && entry["option"] == "set" &&
                                  entry["command"] == setter.nCommand && entry["before"][0] == value);
            }
            EXPECT_TRUE(found) << setter.szName << " " << value;
        }
    }
}

TEST(ProgramCommands, InfraredAndWhiteLightExcludeEachOther) {
    EXPECT_EQ(toldBy("init\nsetIRSwitch 1\n", "setWhiteSwitch 1"), (Lines{"get 160", "set 160 0", "set 168 1"}));
    EXPECT_EQ(toldBy("init\nsetWhiteSwitch 1\n", "setIRSwitch 1"), (Lines{"get 168", "set 168 0", "set 160 1"}));
}

TEST(ProgramCommands, DirectOperationsNeedNoInit) {
    EXPECT_EQ(toldBy("", "focusFar"), (Lines{"set 1536 1", "set 1554 1"}));
    EXPECT_EQ(toldBy("", "focusNear"), (Lines{"set 1536 1", "set 1553 1"}));
    EXPECT_EQ(toldBy("", "irisUp"), (Lines{"set 16 3", "set 83 1"}));
    EXPECT_EQ(toldBy("", "irisDown"), (Lines{"set 16 3", "set 84 1"}));
    EXPECT_EQ(toldBy("", "zoomIn"), (Lines{"set 1569 1"}));
    EXPECT_EQ(toldBy("setZoomValue 20000\nwait 20\n", "zoomOut"), (Lines{"set 1570 1"}));
    EXPECT_EQ(toldBy("", "setPTZRunState 1"), (Lines{"set 1632 1"}));
    EXPECT_EQ(toldBy("", "setZoomValue 24576"), (Lines{"set 1568 24576"}));
    EXPECT_EQ(toldBy("", "setFocusMode 1"), (Lines{"set 1536 1"}));
    EXPECT_EQ(toldBy("setFocusMode 1\n", "setFocusValue 700"), (Lines{"set 1552 700"}));
    EXPECT_EQ(toldBy("", "setIrisValue 300"), (Lines{"set 16 3", "set 82 300"}));
    EXPECT_EQ(toldBy("", "setIrisValue -5"), (Lines{"set 16 3", "set 82 256"}));
    EXPECT_EQ(toldBy("", "setDNState 1"), (Lines{"set 153 1"}));
    EXPECT_EQ(toldBy("", "setExposureStrategy 1"), (Lines{"set 225 1"}));
}

TEST(ProgramCommands, QuestionsToTheDriverAreAnsweredByName) {
    const DeviceTree tree;
    EXPECT_EQ(lastData(tree, "setZoomValue 24576\nwait 20\ngetZoomValue\n"),
              (json{{"position", 24576}, {"ratio", 2000}}));
    EXPECT_EQ(lastData(tree, "setFocusMode 1\nsetFocusValue 700\nwait 20\ngetFocusValue\n"), (json{{"position", 700}}));
    EXPECT_EQ(lastData(tree, "setFocusMode 1\ngetFocusMode\n"), (json{{"mode", 1}}));
    EXPECT_EQ(lastData(tree, "setDNState 1\ngetDNState\n"), (json{{"state", 1}}));
    EXPECT_EQ(lastData(tree, "init\nsetWDRSwitch 1\ngetWDR\n"), (json{{"wdr", 1}}));
    EXPECT_EQ(lastData(tree, "init\nsetIRSwitch 1\ngetIRSwitch\n"), (json{{"on", 1}}));
    EXPECT_EQ(lastData(tree, "init\nsetWhiteSwitch 1\ngetWhiteSwitch\n"), (json{{"on", 1}}));
    EXPECT_EQ(lastData(tree, "init\nsetWhiteMode 2\ngetWhiteMode\n"), (json{{"mode", 2}}));
    EXPECT_EQ(lastData(tree, "setIrisValue 400\ngetIrisValue\n"), (json{{"value", 400}}));
    EXPECT_EQ(lastData(tree, "driver version \"module 7\"\ngetCameraVerInf\n"), (json{{"version", "module 7"}}));
    EXPECT_TRUE(lastData(tree, "getHeatStatus\n")["hot"].is_boolean());
    EXPECT_GT(lastData(tree, "getAFStatistic\n")["statistic"].get<int>(), 0);
}

TEST(ProgramCommands, ExecutionStatusFollowsTheMotor) {
    const DeviceTree tree;
    EXPECT_EQ(lastData(tree, "setZoomValue 30000\ngetCmdExecStatus 1568\n")["status"], 1);
    EXPECT_EQ(lastData(tree, "setZoomValue 30000\nwait 60\ngetCmdExecStatus 1568\n")["status"], 0);
}

TEST(ProgramCommands, TheLensLockKeepsLensCommandsFromTheDriver) {
    EXPECT_EQ(toldBy("lensLock on\n", "zoomIn"), Lines{});
    EXPECT_EQ(toldBy("lensLock on\nlensLock off\n", "zoomIn"), (Lines{"set 1569 1"}));
    const DeviceTree tree;
    EXPECT_EQ(lastData(tree, "lensLock on\nlensLock\n"), (json{{"locked", true}}));
}

TEST(ProgramCommands, AFailedOperationIsAFailedCommand) {
    const DeviceTree tree;
    const ProgramResult run = runScript(tree, "fault add cmd=153 opt=get result=-3\ngetDNState\n");
    EXPECT_EQ(run.nStatus, 1);
    EXPECT_THAT(run.strErrors, HasSubstr("getDNState returned false"));
}

TEST(ProgramCommands, ASchemeSwitchSendsWhatDiffers) {
    EXPECT_EQ(toldBy("init\nset brightness 60\n", "scheme 1"), (Lines{"set 34 50"}));
    EXPECT_EQ(toldBy("init\nscheme 1\nset contrast 10\nscheme 0\n", "scheme 1"), (Lines{"set 2353 10"}));
    const DeviceTree tree;
    EXPECT_EQ(lastData(tree, "init\nscheme 3\nscheme\n"), (json{{"scheme", 3}}));
    EXPECT_EQ(lastData(tree, "init\nscheme 99\nscheme\n"), (json{{"scheme", 0}}));
}

TEST(ProgramCommands, TheModeHasWordsAndNumbers) {
    const DeviceTree tree;
    EXPECT_EQ(lastData(tree, "init\nmode auto\n"), (json{{"mode", 1}}));
    EXPECT_EQ(lastData(tree, "init\nmode auto\nmode manual\n"), (json{{"mode", 0}}));
    EXPECT_EQ(lastData(tree, "init\nmode 1\nmode\n"), (json{{"mode", 1}}));
}

TEST(ProgramCommands, TheShowFlagsSilenceTheirFunctions) {
    EXPECT_EQ(toldBy("init\nshow wdr 0\n", "setWDRSwitch 1"), Lines{});
    EXPECT_EQ(toldBy("init\nshow beaway off\n", "setBeaway 1"), Lines{});
    const DeviceTree tree;
    EXPECT_EQ(lastData(tree, "init\nshow wdr\n"), (json{{"wdr", true}}));
    EXPECT_EQ(lastData(tree, "init\nshow beaway 0\nshow beaway\n"), (json{{"beaway", false}}));
    EXPECT_EQ(lastData(tree, "video fps 50\ninit\nshow wdr\n"), (json{{"wdr", false}}));
}

TEST(ProgramCommands, TheStyleDocumentIsPrintedWhole) {
    const DeviceTree tree;
    const ProgramResult run = runScript(tree, "init\nstyle\n");
    EXPECT_THAT(run.strOutput, AllOf(HasSubstr("<?xml"), HasSubstr("id=\"34\""), HasSubstr("</style>\n")));
    const json data = lastData(tree, "init\nstyle\n");
    EXPECT_EQ(data["bytes"], data["document"].get<std::string>().size());
    EXPECT_THAT(data["document"].get<std::string>(), StartsWith("<?xml"));
}

TEST(ProgramCommands, ADocumentThatIsNotThereIsAFailure) {
    const DeviceTree tree;
    for (const char* command : {"commonFile 1", "languageFile 1"}) {
        const ProgramResult run = runScript(tree, std::string("init\n") + command + "\n");
        EXPECT_EQ(run.nStatus, 1) << command;
        EXPECT_THAT(run.strErrors, HasSubstr("the document is empty"));
    }
}

TEST(ProgramCommands, DumpDecodesTheStoredFile) {
    const DeviceTree tree;
    const json data = lastData(tree, "init\ndump scheme 1\n");
    EXPECT_EQ(data["scheme"], 1);
    EXPECT_EQ(data["file"], "/mnt/mtd/code/config_file/sensor1.cfg");
    EXPECT_EQ(data["values"].size() * 8, tree.read("/mnt/mtd/code/config_file/sensor1.cfg").size());
    EXPECT_EQ(data["values"][0], (json{{"key", 8000}, {"name", "KEY_SCHEME_MODE"}, {"value", 0}}));
    EXPECT_EQ(lastData(tree, "dump 1 brightness\n")["values"],
              (json::array({{{"key", 34}, {"name", "KEY_BRIGHTNESS"}, {"value", 50}}})));
    EXPECT_THAT(runScript(tree, "dump 1 brightness\n").strOutput, HasSubstr("    34  KEY_BRIGHTNESS"));
}

TEST(ProgramCommands, RestartLoadsTheStoredFiles) {
    const DeviceTree tree;
    const std::string change = "init\nset brightness 60\nflash 0 brightness 33\nflash 1 contrast -2\nrestart\n";
    EXPECT_EQ(lastData(tree, change + "driver 34\n")["value"], 33);
    EXPECT_EQ(lastData(tree, "dump 1 contrast\n")["values"][0]["value"], -2);
    EXPECT_EQ(lastData(tree, "init\ndriver 34\n")["value"], 33);
}

TEST(ProgramCommands, ResetGoesBackToFactorySettings) {
    const DeviceTree tree;
    EXPECT_EQ(lastData(tree, "init\nflash 0 brightness 33\nrestart\nscheme 1\nreset\nstatus\n")["scheme"], 0);
    EXPECT_EQ(lastData(tree, "dump 0 brightness\n")["values"][0]["value"], 50);
}

TEST(ProgramCommands, AfterUinitParametersAreRefused) {
    const DeviceTree tree;
    const ProgramResult run = runScript(tree, "init\nuinit\nuinit\nset brightness 60\n");
    EXPECT_EQ(run.nStatus, 1);
    EXPECT_THAT(run.strErrors, HasSubstr("standard input:4: the library returned"));
}

TEST(ProgramCommands, PowerCycleTakesControllersAndValuesAway) {
    const DeviceTree tree;
    EXPECT_EQ(lastData(tree, "init\nset brightness 60\npowerCycle\ndriver 34\n")["value"], 50);
    EXPECT_EQ(lastData(tree, "init\npowerCycle\nstatus\n")["constructed"], false);
}

TEST(ProgramCommands, ChannelsAreSeparateControllers) {
    const DeviceTree tree;
    tree.become("thermal");
    const json data = lastData(tree, "init\nscheme 1\nchannel 2\ninit\nstatus\n");
    EXPECT_EQ(data["channel"], 2);
    EXPECT_EQ(data["scheme"], 0);
    const json sent = lastData(tree, "init\nchannel 2\ninit\ntranscript clear\nset brightness 61\ntranscript\n");
    EXPECT_EQ(sent["entries"].back()["channel"], 1);
}

TEST(ProgramCommands, TheStartChannelIsAnOption) {
    const DeviceTree tree;
    const ProgramResult run = runScript(tree, "channel\n", {"--channel", "3"});
    EXPECT_EQ(run.strOutput, "channel: channel=3\n");
}

TEST(ProgramCommands, HelpNamesEveryCommandAndEachByItself) {
    const DeviceTree tree;
    const json commands = lastData(tree, "help\n")["commands"];
    EXPECT_GT(commands.size(), 60u);
    std::string script;
    for (const json& command : commands) {
        EXPECT_FALSE(command["summary"].get<std::string>().empty()) << command;
        script += "help " + command["name"].get<std::string>() + "\n";
    }
    EXPECT_EQ(runScript(tree, script).nStatus, 0);
    EXPECT_THAT(runScript(tree, "help scene\n").strOutput, HasSubstr("      scene light LUX\n"));
}

TEST(ProgramCommands, DebugChangesTheLevelOfTheLibrary) {
    const DeviceTree tree;
    const ProgramResult run = runScript(tree, "init\ndebug 6\nset brightness 60\n");
    EXPECT_THAT(run.strErrors, HasSubstr("p_Parameters22222222222(34, 60)"));
    const ProgramResult quiet = runScript(tree, "init\nset brightness 60\n");
    EXPECT_THAT(quiet.strErrors, Not(HasSubstr("p_Parameters")));
}

}  // namespace
