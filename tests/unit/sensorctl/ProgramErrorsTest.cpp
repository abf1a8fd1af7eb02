// What sensorctl says to input that it cannot use. Nothing of it may reach the camera.
#include "tests/unit/sensorctl/ProgramRun.h"

#include <gmock/gmock.h>

namespace {

using testing::HasSubstr;

struct WrongLine {
    const char* szName;
    std::string strLine;
    std::string strError;
};

void PrintTo(const WrongLine& p_stRow, std::ostream* p_pStream) {
    *p_pStream << p_stRow.szName;
}

class BadLine : public testing::TestWithParam<WrongLine> {};

TEST_P(BadLine, IsRefusedWithItsNumberAndNothingIsSent) {
    const DeviceTree tree;
    const ProgramResult run = runScript(tree, "# first line\n" + GetParam().strLine + "\n", {"--trace"});
    EXPECT_EQ(run.nStatus, 1);
    EXPECT_THAT(run.strErrors, HasSubstr("sensorctl: standard input:2: "));
    EXPECT_THAT(run.strErrors, HasSubstr(GetParam().strError));
    EXPECT_THAT(run.strOutput, testing::Not(HasSubstr("ia ch0")));
    EXPECT_THAT(run.strOutput, testing::Not(HasSubstr("video ch1")));
}

INSTANTIATE_TEST_SUITE_P(
    Program, BadLine,
    testing::Values(
        WrongLine{"UnknownCommand", "gteZoomValue", "unknown command \"gteZoomValue\"; did you mean \"getZoomValue\"?"},
        WrongLine{"EmptyCommand", "\"\"", "unknown command \"\""},
        WrongLine{"UnknownKey", "set brigtness 60", "unknown key \"brigtness\"; did you mean \"brightness\"?"},
        WrongLine{"UnknownKeyWithoutValue", "set brigtness", "unknown key \"brigtness\"; did you mean \"brightness\"?"},
        WrongLine{"MissingValue", "set brightness", "set needs a value for \"brightness\""},
        WrongLine{"TrailingLetters", "set brightness 60%", "the value must be a whole number, not \"60%\""},
        WrongLine{"TooLarge", "set brightness 99999999999", "from -2147483648 to 2147483647"},
        WrongLine{"KeyTooLarge", "set 4294967330 1", "the key must be from 0 to 2147483647"},
        WrongLine{"BadHexadecimal", "set 0x 1", "the key must be a whole number, not \"0x\""},
        WrongLine{"UnknownWordBehindValue", "set brightness 60 nocash", "expected nocache, not \"nocash\""},
        WrongLine{"TooManyArguments", "set brightness 60 nocache now", "one argument too many for set: \"now\""},
        WrongLine{"TooFewArguments", "setWDRSwitch", "setWDRSwitch needs more arguments; usage: setWDRSwitch VALUE"},
        WrongLine{"UnknownSetter", "setter setWDRSwich 1", "did you mean \"setWDRSwitch\"?"},
        WrongLine{"SetterWithBadValue", "setHLCSwitch on", "the value must be a whole number"},
        WrongLine{"ModeWithBadWord", "mode sometimes", "the mode (0 manual, 1 auto) must be a whole number"},
        WrongLine{"UnknownFlag", "show wrd 1", "did you mean \"wdr\"?"},
        WrongLine{"FlagWithBadValue", "show wdr 2", "the flag must be 1 or 0"},
        WrongLine{"UnknownScene", "scene ligth 5", "scene does not know \"ligth\"; did you mean \"light\"?"},
        WrongLine{"SceneWithoutValue", "scene light", "usage: scene light LUX"},
        WrongLine{"NegativeLight", "scene light -1", "LUX must be from 0 to 200000"},
        WrongLine{"LightIsNoNumber", "scene light bright", "LUX must be a number"},
        WrongLine{"TooMuchFog", "scene fog 101", "PERCENT must be from 0 to 100"},
        WrongLine{"WindIsNoNumber", "scene wind strong", "PERCENT must be a whole number"},
        WrongLine{"CarIsNoSwitch", "scene car 2", "the car must be 1 or 0 (on or off)"},
        WrongLine{"ImpossibleTime", "scene clock 25:00", "a time is HH:MM"},
        WrongLine{"HalfADay", "scene day 06:00", "usage: scene day [SUNRISE SUNSET [DAYLUX NIGHTLUX]]"},
        WrongLine{"NightBeforeDay", "scene day 20:00 06:00", "the scene does not take this day"},
        WrongLine{"WaitBackwards", "wait -5", "SECONDS must be from 0"},
        WrongLine{"NoCycles", "cycle 0", "N must be from 1"},
        WrongLine{"UnknownFaultField", "fault add cmd=34 reslut=-1",
                  "a fault has no field \"reslut\"; did you mean \"result\"?"},
        WrongLine{"FaultWithoutCommand", "fault add result=-1", "cmd"},
        WrongLine{"FaultWithBadNumber", "fault add cmd=34 result=bad", "result"},
        WrongLine{"FaultThatDoesNothing", "fault add cmd=34", "result"},
        WrongLine{"MissingFault", "fault remove 7", "there is no fault 7"},
        WrongLine{"UnknownFaultCommand", "fault lst", "did you mean \"list\"?"},
        WrongLine{"UnknownDriverCommand", "driver lense", "did you mean \"lens\"?"},
        WrongLine{"DriverWithoutTheCommand", "driver 99999", "has no value of command 99999"},
        WrongLine{"UnknownVideoCommand", "video stream 25,1x1", "did you mean \"streams\"?"},
        WrongLine{"BadStream", "video streams 25", "a stream is FPS,WIDTHxHEIGHT[,ENCODER], not \"25\""},
        WrongLine{"BadStreamWidth", "video streams 25,axb", "WIDTH must be a whole number"},
        WrongLine{"PipelineResultZero", "video startup 3 0", "RESULT must not be 0"},
        WrongLine{"NeverNotified", "video last brightness", "has not been told KEY_BRIGHTNESS (34)"},
        WrongLine{"ChannelTooHigh", "channel 5", "channels 1 to 4, not 5"},
        WrongLine{"DumpOfAMissingFile", "dump 0", "there is no /mnt/mtd/code/config_file/sensor0.cfg"},
        WrongLine{"DumpOfNoScheme", "dump scheme", "usage: dump [scheme] N [KEY]"},
        WrongLine{"FlashOfAMissingFile", "flash 0 brightness 1", "there is no /mnt/mtd/code/config_file/sensor0.cfg"},
        WrongLine{"DebugLevelTooHigh", "debug 10", "the level must be from -1 to 9"},
        WrongLine{"UnknownModel", "init NOSUCH 1", "0 module(s) for model \"NOSUCH\" code \"1\", none for channel 1"},
        WrongLine{"RestartBeforeInit", "restart", "has not been initialised yet"},
        WrongLine{"ResetBeforeInit", "reset", "resetParameters returned false; the channel is not initialised"},
        WrongLine{"SetBeforeInit", "set brightness 50", "the library returned -1; the channel is not initialised"},
        WrongLine{"TextBeforeInit", "set (34,50)", "the library returned -1; the channel is not initialised"},
        WrongLine{"SetterBeforeInit", "setDNMode 1", "setDNMode returned false; the channel is not initialised"},
        WrongLine{"GetOfOneBeforeInit", "get brightness",
                  "getParameter returned false; the channel is not initialised"},
        WrongLine{"FlushBeforeInit", "flush", "the library failed (-1); the channel is not initialised"},
        WrongLine{"SchemeBeforeInit", "scheme 1", "setParamScheme returned false; the channel is not initialised"},
        WrongLine{"ModeBeforeInit", "mode auto", "setParamMode returned false; the channel is not initialised"},
        WrongLine{"MirrorBeforeInit", "mirror", "getMirrorValue returned false; the channel is not initialised"},
        WrongLine{"StyleBeforeInit", "style", "the document is empty"},
        WrongLine{"HelpForAnUnknownCommand", "help sets", "did you mean \"set\"?"},
        WrongLine{"UnknownExpectation", "expect snt x", "expect does not know \"snt\"; did you mean \"sent\"?"},
        WrongLine{"ExpectationWithoutWords", "expect sent", "usage: expect sent WORDS..."},
        WrongLine{"GetOfAnUnknownKey", "get brigtness", "unknown key \"brigtness\"; did you mean \"brightness\"?"},
        WrongLine{"GetWithoutAKey", "get", "get needs more arguments; usage: get KEY..."},
        WrongLine{"GetOfAListAndMore", "get (34) 35", "behind a list of keys nothing follows, not \"35\""},
        WrongLine{"GetBeforeInit", "get \"()\"", "is no list of keys"},
        WrongLine{"UnknownGetter", "getter getWDRSwich", "did you mean \"getWDRSwitch\"?"},
        WrongLine{"CheckWithTwoNumbers", "sensorCheck 1 2", "sensorCheck takes three numbers"},
        WrongLine{"CheckWithAWord", "sensorCheck 1 two 3", "a number of the check must be a whole number"},
        WrongLine{"ListBeforeInit", "list", "the style document is empty; use init first"},
        WrongLine{"ListOfAnOpenRange", "list keys 5", "cannot use \"keys\" here; usage: list [PATTERN]"},
        WrongLine{"ListBackwards", "list keys 9 5", "FROM must not be above TO"},
        WrongLine{"ListOfNoNumbers", "list keys a b", "FROM must be a whole number"},
        WrongLine{"ListOfTwoPatterns", "list a b", "cannot use \"b\" here"},
        WrongLine{"DiffOfAnUnknownSet", "diff memroy flash", "not \"memroy\"; did you mean \"memory\"?"},
        WrongLine{"DiffOfFactoryNumbers", "diff factory:1 flash", "not \"factory:1\""},
        WrongLine{"DiffOfABadNumber", "diff memory:x flash", "the scheme must be a whole number"},
        WrongLine{"DiffOfNoScheme", "diff 0 99", "the scheme must be from 0 to 32"},
        WrongLine{"DiffOfMemoryBeforeInit", "diff memory 0", "no scheme is applied; use init first"},
        WrongLine{"DiffOfFlashBeforeInit", "diff flash 0", "no scheme is applied; use init first, or name one"},
        WrongLine{"DiffOfAMissingFile", "diff 0 1", "there is no /mnt/mtd/code/config_file/sensor0.cfg"},
        WrongLine{"DiffOfOne", "diff memory", "diff needs more arguments"},
        WrongLine{"WatchWithoutAnEnd", "watch", "the clock is held and only commands move it"},
        WrongLine{"WatchOfAnUnknownThing", "watch 5 shceme", "cannot watch \"shceme\"; did you mean \"scheme\"?"},
        WrongLine{"WatchOfAnUnknownKey", "watch 5 brigtness",
                  "unknown key \"brigtness\"; did you mean \"brightness\"?"},
        WrongLine{"WatchForTooLong", "watch 604801", "SECONDS must be from 0 to 604800"},
        WrongLine{"WatchWithoutACount", "watch 5 count", "count needs a number of changes"},
        WrongLine{"WatchOfNoChanges", "watch 5 count 0", "the number of changes must be from 1"},
        WrongLine{"RestoreOfAnUnknownKey", "restore brigtness", "did you mean \"brightness\"?"},
        WrongLine{"RestoreBeforeInit", "restore brightness", "the current scheme does not hold KEY_BRIGHTNESS (34)"},
        WrongLine{"MirrorWithAWord", "mirror left", "the direction must be a whole number"},
        WrongLine{"RangeOfAnUnknownKey", "range max_shuter", "did you mean \"max_shutter\"?"},
        WrongLine{"UnknownShutterStep", "shutter upp", "shutter does not know \"upp\"; did you mean \"up\"?"},
        WrongLine{"LanguageWithoutFiles", "languages 1 a",
                  "a language is an id, its language file and its common file"},
        WrongLine{"StopOfNoRecording", "record stop", "the session is not being recorded"},
        WrongLine{"OpenQuote", "echo \"abc", "the quote in column 6 is not closed"},
        WrongLine{"ZeroByte", std::string("set\0brightness 60", 17), "byte 0x00 in column 4 is not text"},
        WrongLine{"BinaryData",
                  std::string("\x7F"
                              "ELF\x02\x01\x01\0\0\0",
                              10),
                  "byte 0x7F in column 1 is not text"},
        WrongLine{"VeryLongLine", std::string(2 * 1024 * 1024, 'a'), "the line is longer than 1048576 bytes"},
        WrongLine{"VeryLongWord", std::string(500000, 'a'), "unknown command \"aaaaaaaaaa"}),
    [](const auto& p_stInfo) { return p_stInfo.param.szName; });

TEST(ProgramErrors, MachineInformationIsNeededUnlessTheModelIsGiven) {
    const DeviceTree tree;
    tree.remove("/mnt/mtd/code/factory_setting/machineinfo.ini");
    EXPECT_THAT(runScript(tree, "init\n").strErrors, HasSubstr("machineinfo.ini below the device root is missing"));
    EXPECT_EQ(runScript(tree, "init Hi3516AV200 1001\n").nStatus, 0);
    EXPECT_THAT(runScript(tree, "machine\n").strErrors, HasSubstr("missing or cannot be read"));
}

TEST(ProgramErrors, AModuleConfigurationThatCannotBeReadIsReported) {
    const DeviceTree tree;
    tree.write("/hd1/moduleConfig/moduleConfig.xml", "<modules><device>");
    EXPECT_THAT(runScript(tree, "init\n").strErrors, HasSubstr("moduleConfig.xml below the device root is missing or"));
}

TEST(ProgramErrors, InitOnAnInitialisedControllerIsAFailure) {
    const DeviceTree tree;
    const ProgramResult run = runScript(tree, "init\ninit\n");
    EXPECT_EQ(run.nStatus, 1);
    EXPECT_THAT(run.strErrors, HasSubstr("standard input:2: init was refused"));
}

TEST(ProgramErrors, ARefusalOfTheLibraryNamesTheParameter) {
    const DeviceTree tree;
    const ProgramResult run = runScript(tree, "init\nfault add cmd=2337 opt=set result=-3\nset \"(34,51)(2337,60)\"\n");
    EXPECT_EQ(run.nStatus, 1);
    EXPECT_THAT(run.strErrors, HasSubstr("the library returned -2337, stopped at KEY_SATURATION (2337)"));
}

TEST(ProgramErrors, ADamagedParameterFileIsShownAndReported) {
    const DeviceTree tree;
    tree.write("/mnt/mtd/code/config_file/sensor0.cfg", std::string("\x22\0\0\0\x05\0\0\0junk!", 13));
    const ProgramResult run = runScript(tree, "dump 0\n", {"--json"});
    EXPECT_EQ(run.nStatus, 1);
    const nlohmann::json result = run.jsonLines("result").at(0);
    EXPECT_EQ(result["error"], "/mnt/mtd/code/config_file/sensor0.cfg ends in 5 bytes that are no record");
    EXPECT_EQ(result["data"]["values"].size(), 1u);
}

TEST(ProgramErrors, AParameterThatAStoredFileDoesNotHoldIsReported) {
    const DeviceTree tree;
    tree.write("/mnt/mtd/code/config_file/sensor0.cfg", std::string("\x22\0\0\0\x05\0\0\0", 8));
    EXPECT_THAT(runScript(tree, "dump 0 contrast\n").strErrors, HasSubstr("does not hold KEY_CONTRAST (2353)"));
    EXPECT_THAT(runScript(tree, "flash 0 contrast 1\n").strErrors, HasSubstr("does not hold KEY_CONTRAST (2353)"));
}

TEST(ProgramErrors, HostileLinesDoNotHideTheOnesBehindThem) {
    const DeviceTree tree;
    const std::string script =
        std::string(3 * 1024 * 1024, '\xFF') + "\n" + std::string(70000, '\0') + "\necho alive\n";
    const ProgramResult run = runScript(tree, script, {"--keep-going"});
    EXPECT_EQ(run.nStatus, 1);
    EXPECT_THAT(run.strOutput, testing::EndsWith("alive\n"));
    EXPECT_THAT(run.strErrors, HasSubstr("standard input:1: the line is longer"));
    EXPECT_THAT(run.strErrors, HasSubstr("standard input:2: byte 0x00"));
}

}  // namespace
