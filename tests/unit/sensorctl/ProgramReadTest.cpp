// The commands that read back.
#include "tests/unit/sensorctl/ProgramRun.h"

#include <gmock/gmock.h>

namespace {

using nlohmann::json;
using testing::HasSubstr;
using testing::Not;

TEST(ProgramRead, AParameterIsReadByNameAndNumberWithoutAskingTheDriver) {
    const DeviceTree tree;
    const json wanted = {{"key", 34}, {"name", "KEY_BRIGHTNESS"}, {"value", 60}};
    for (const char* key : {"brightness", "KEY_BRIGHTNESS", "34", "0x22"}) {
        const std::string script = std::string("init\nset brightness 60\nget ") + key + "\n";
        EXPECT_EQ(lastData(tree, script), wanted) << key;
        EXPECT_EQ(runScript(tree, script + "expect silent\n").nStatus, 0) << key;
    }
    EXPECT_EQ(lastData(tree, "init\nset brightness 60\ngetParameter brightness\n"), wanted);
}

TEST(ProgramRead, WhatNoSchemeHoldsComesFromTheDriver) {
    const DeviceTree tree;
    EXPECT_EQ(runScript(tree, "init\nget mz_position\nexpect sent \"ia ch0 get 1568\"\n").nStatus, 0);
    const std::string script = "init\nfault add cmd=1568 opt=get result=-3\nget mz_position\n";
    EXPECT_THAT(errorOf(tree, script), HasSubstr("KEY_MZ_POSITION (1568) cannot be read: getParameter returned false"));
}

TEST(ProgramRead, SeveralKeysAreReadInTheirOrder) {
    const DeviceTree tree;
    const json data = lastData(tree, "init\nset brightness 60\nget contrast brightness 34\n");
    ASSERT_EQ(data["values"].size(), 3u);
    EXPECT_EQ(data["values"][0]["name"], "KEY_CONTRAST");
    EXPECT_EQ(data["values"][1]["value"], 60);
    EXPECT_EQ(data["values"][2], data["values"][1]);
    // A name that is wrong is found before the first is read.
    const ProgramResult run = runScript(tree, "init\nget mz_position brigtness\n", {"--trace"});
    EXPECT_THAT(run.strErrors, HasSubstr("did you mean \"brightness\"?"));
    EXPECT_THAT(run.strOutput, Not(HasSubstr("get 1568")));
}

TEST(ProgramRead, AListAsTextIsHandedOverAsItIs) {
    const DeviceTree tree;
    const json data = lastData(tree, "init\nset brightness 60\nget \"(34,2353)\"\n");
    EXPECT_EQ(data["text"], "(34,60)(2353,50)");
    EXPECT_EQ(data["values"][1], (json{{"key", 2353}, {"name", "KEY_CONTRAST"}, {"value", 50}}));
    EXPECT_EQ(lastData(tree, "init\ngetParameters \"(34)\"\n")["text"], "(34,50)");
    for (const char* list : {"\"()\"", "\"(34\"", "\"(34)x\""}) {
        EXPECT_THAT(errorOf(tree, std::string("init\nget ") + list + "\n"), HasSubstr("is no list of keys such as"));
    }
    EXPECT_THAT(errorOf(tree, "init\ngetParameters 34,2353\n"), HasSubstr("is no list of keys such as"));
}

TEST(ProgramRead, EveryNamedGetterAnswersItsParameter) {
    struct Getter {
        const char* szName;
        const char* szKey;
    };
    const Getter getters[] = {
        {"getDNMode", "dn_mode"},
        {"getWDRSwitch", "wdr_mode"},
        {"getWDRStrength", "wdr_strg"},
        {"getHLCSwitch", "hlc_switch"},
        {"getHLCStrength", "hlc_strg"},
        {"getBLCSwitch", "blc_switch"},
        {"getBLCStrength", "blc_strg"},
        {"getDefogSwitch", "deflg_switch"},
        {"getDefogStrength", "deflg_strg"},
        {"get2DSwitch", "2d_nr_switch"},
        {"get2DMode", "2d_nr_mode"},
        {"get2DAutoMaxStrength", "2d_nr_strg_a"},
        {"get2DManualMaxStrength", "2d_nr_strg_m"},
        {"get3DSwitch", "3d_nr_switch"},
        {"get3DMode", "3d_nr_mode"},
        {"get3DAutoMaxStrength", "3d_nr_strg_a"},
        {"get3DManualMaxStrength", "3d_nr_strg_m"},
        {"getBeaway", "beaway"},
        {"getMirrorValue", "mirror"},
    };
    // Each parameter has a value of its own on the flash, so that a getter of another one is seen.
    std::string script = "init\n";
    int value = 1000;
    for (const Getter& getter : getters) {
        script += std::string("flash 1 ") + getter.szKey + " " + std::to_string(value++) + "\n";
    }
    script += "uinit\ninit\n";
    const DeviceTree tree;
    ASSERT_EQ(runScript(tree, script).nStatus, 0);
    // Applying stops at the first value that the driver refuses; the values are in memory all the same.
    script = "init\nscheme 1\n";
    for (const Getter& getter : getters) {
        script += std::string(getter.szName) + "\ngetter " + getter.szName + "\n";
    }
    const ProgramResult run = runScript(tree, script, {"--json"});
    ASSERT_EQ(run.nStatus, 0) << run.strErrors;
    const std::vector<json> results = run.jsonLines("result");
    for (std::size_t i = 0; i < std::size(getters); ++i) {
        EXPECT_EQ(results[2 + 2 * i]["data"]["value"], 1000 + static_cast<int>(i)) << getters[i].szName;
        EXPECT_EQ(results[3 + 2 * i]["data"]["value"], 1000 + static_cast<int>(i)) << getters[i].szName;
    }
}

TEST(ProgramRead, AGetterThatFailsIsAFailedCommand) {
    const DeviceTree tree;
    tree.write("/hd1/moduleConfig/sensorConfig/style/Style.xml", "<style><tab key=\"a\"/></style>");
    EXPECT_THAT(errorOf(tree, "init\nfault add cmd=112 opt=get result=-3\ngetHLCSwitch\n"),
                HasSubstr("getHLCSwitch returned false"));
    EXPECT_EQ(runScript(tree, "init\nfault add cmd=144 opt=get result=-3\ngetDNMode\n").nStatus, 0);
}

TEST(ProgramRead, AllParametersAreDecodedOrLeftAsText) {
    const DeviceTree tree;
    const json decoded = lastData(tree, "init\nset brightness 60\ngetAll\n");
    const json text = lastData(tree, "init\nset brightness 60\ngetAllParameters\n");
    EXPECT_THAT(text["text"].get<std::string>(), HasSubstr("(34,60)(2353,50)"));
    EXPECT_EQ(decoded["count"], decoded["values"].size());
    EXPECT_EQ(decoded["values"][5], (json{{"key", 34}, {"name", "KEY_BRIGHTNESS"}, {"value", 60}}));
    std::string again;
    for (const json& entry : decoded["values"]) {
        again += "(" + std::to_string(entry["key"].get<int>()) + "," + std::to_string(entry["value"].get<int>()) + ")";
    }
    EXPECT_EQ(again, text["text"]);
    EXPECT_THAT(errorOf(tree, "getAll\n"), HasSubstr("getAllParameters returned false"));
    EXPECT_THAT(errorOf(tree, "getAllParameters\n"), HasSubstr("getAllParameters returned false"));
}

TEST(ProgramRead, TheCheckCommandReadsWhenItsSecondNumberIsTwo) {
    const DeviceTree tree;
    const json read = lastData(tree, "sensorCheck 1 2 3\n");
    EXPECT_EQ(read["request"], "(1,2,3)");
    EXPECT_EQ(read["returned"], 0);
    EXPECT_THAT(read["answer"].get<std::string>(), testing::MatchesRegex("-?[0-9]+"));
    const json written = lastData(tree,
                                  "sensorCheck \"(1,0,3)\"\nexpect sent \"ia ch0 set 2816 1 0 3\"\n"
                                  "sensorCheck \"(1,0,3)\"\n");
    EXPECT_EQ(written["answer"], "(1,0,3)");
    EXPECT_EQ(lastData(tree, "sensorCheck junk\n")["returned"], 0);
    EXPECT_THAT(errorOf(tree, "fault add cmd=2816 result=-5\nsensorCheck 1 2 3\n"),
                HasSubstr("the driver returned -5"));
}

}  // namespace
