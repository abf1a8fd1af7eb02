// The parameters that the style document offers, and differences between sets.
#include "tests/unit/sensorctl/ProgramRun.h"

#include <gmock/gmock.h>

namespace {

using nlohmann::json;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

std::vector<int> keysOf(const json& p_objRows) {
    std::vector<int> keys;
    for (const json& row : p_objRows) {
        keys.push_back(row["key"]);
    }
    return keys;
}

std::vector<int> listed(const DeviceTree& p_objTree, const std::string& p_strFilter,
                        const std::string& p_strBefore = "init\n") {
    return keysOf(lastData(p_objTree, p_strBefore + "list " + p_strFilter + "\n")["parameters"]);
}

TEST(ProgramList, ARowHasValueDefaultRangeUnitAndTab) {
    const DeviceTree tree;
    const json data = lastData(tree, "init\nset brightness 60\nlist keys 34 34\n");
    EXPECT_EQ(data["count"], 1);
    EXPECT_EQ(data["scheme"], 0);
    EXPECT_EQ(data["parameters"][0], (json{{"key", 34},
                                           {"name", "KEY_BRIGHTNESS"},
                                           {"label", "Brightness"},
                                           {"type", "slider"},
                                           {"value", 60},
                                           {"default", 50},
                                           {"changed", true},
                                           {"min", 0},
                                           {"max", 100},
                                           {"step", 1},
                                           {"unit", "%"},
                                           {"tab", "image"}}));
    const json mirror = lastData(tree, "init\nlist mirror\n")["parameters"][0];
    EXPECT_EQ(mirror["choices"][1], (json{{"value", 1}, {"label", "Left and right"}}));
    EXPECT_EQ(mirror["choices"].size(), 4u);
}

TEST(ProgramList, EveryParameterOfTheStyleIsListedOnce) {
    const DeviceTree tree;
    const json all = lastData(tree, "init\nlist\n");
    EXPECT_EQ(all["count"], all["parameters"].size());
    EXPECT_GT(all["parameters"].size(), 90u);
    const json stored = lastData(tree, "init\ndump 0\n")["values"];
    std::size_t held = 0;
    for (const json& row : all["parameters"]) {
        held += row["value"].is_null() ? 0 : 1;
    }
    EXPECT_EQ(held, stored.size());
}

TEST(ProgramList, WhatIsInNoSchemeHasNoValueAndIsNotAskedFor) {
    const DeviceTree tree;
    const json row = lastData(tree, "init\nlist sensor_fps\n")["parameters"][0];
    EXPECT_TRUE(row["value"].is_null());
    EXPECT_TRUE(row["default"].is_null());
    EXPECT_EQ(row["changed"], false);
    EXPECT_EQ(runScript(tree, "init\nlist\nexpect silent \"ia ch0 get 2497\"\n").nStatus, 0);
}

TEST(ProgramList, RangesAreThoseOfThisMoment) {
    const DeviceTree tree;
    const auto choices = [&](const std::string& p_strBefore) {
        return lastData(tree, p_strBefore + "list max_shutter\n")["parameters"][0]["choices"].size();
    };
    EXPECT_EQ(choices("init\n"), 22u);
    EXPECT_EQ(choices("init\nvideo fps 50\n"), 20u);
}

TEST(ProgramList, FiltersMeetAllAtOnce) {
    const DeviceTree tree;
    EXPECT_THAT(listed(tree, "bright"), ElementsAre(34));
    EXPECT_THAT(listed(tree, "BRIGHTNESS"), ElementsAre(34));
    EXPECT_THAT(listed(tree, "bright*s"), ElementsAre(34));
    EXPECT_THAT(listed(tree, "\"Metering area\""), ElementsAre(96));
    EXPECT_THAT(listed(tree, "2d_nr_* keys 2306 2400"), ElementsAre(2306, 2307));
    EXPECT_THAT(listed(tree, "tab IMAGE keys 2300 2360"), ElementsAre(2353, 2337, 2321));
    EXPECT_THAT(listed(tree, "keys 35 40"), IsEmpty());
    EXPECT_THAT(listed(tree, "changed"), IsEmpty());
    const std::string changed = "init\nset brightness 60\nset contrast 40\nset contrast 50\nset mirror 1\n";
    EXPECT_THAT(listed(tree, "changed", changed), ElementsAre(34, 2384));
    EXPECT_THAT(listed(tree, "changed keys 0 100", changed), ElementsAre(34));
    EXPECT_THAT(listed(tree, "mirr changed tab image", changed), ElementsAre(2384));
}

TEST(ProgramList, TheTableMarksWhatIsChangedAndCountsWhatIsShown) {
    const DeviceTree tree;
    const ProgramResult run = runScript(tree, "init\nset brightness 60\nlist tab image\nlist gamma\n");
    EXPECT_THAT(run.strOutput, HasSubstr("  34  KEY_BRIGHTNESS     60*       50  %         image  0..100\n"));
    EXPECT_THAT(run.strOutput, HasSubstr("9 of 96 parameters\n"));
    EXPECT_THAT(run.strOutput, HasSubstr("0=Standard 1=Soft 2=Steep 3=Bright shadows 4=Even\n1 of 96 parameters\n"));
}

TEST(ProgramList, AHostileStyleDocumentIsRefusedOrContained) {
    const DeviceTree tree;
    std::string deep = "<style>";
    for (int i = 0; i < 200000; ++i) {
        deep += "<a>";
    }
    tree.write("/hd1/moduleConfig/sensorConfig/style/Style.xml", deep);
    const ProgramResult run = runScript(tree, "init\nlist\n", {"--library-output", "none"});
    EXPECT_EQ(run.nStatus, 1);
    EXPECT_THAT(run.strErrors, HasSubstr("the style document"));
}

TEST(ProgramDiff, MemoryAndFlashDifferUntilTheSchemeIsStored) {
    const DeviceTree tree;
    const json before = lastData(tree, "init\nset brightness 60\nset contrast 40\ndiff memory flash\n");
    EXPECT_EQ(before["count"], 2);
    EXPECT_EQ(before["first"], "scheme 0 in memory");
    EXPECT_EQ(before["second"], "scheme 0 on flash");
    EXPECT_EQ(before["differences"][0], (json{{"key", 34}, {"name", "KEY_BRIGHTNESS"}, {"first", 60}, {"second", 50}}));
    EXPECT_EQ(lastData(tree, "init\nset brightness 60\nflush\ndiff memory flash\n")["count"], 0);
    const ProgramResult run = runScript(tree, "init\ndiff flash memory\n");
    EXPECT_THAT(run.strOutput, HasSubstr("scheme 0 on flash and scheme 0 in memory: no difference\n"));
}

TEST(ProgramDiff, StoredSchemesAreComparedWithoutTheDriver) {
    const DeviceTree tree;
    const std::string before = "init\nflash 1 brightness 33\n";
    const json data = lastData(tree, before + "diff 0 1\n");
    EXPECT_EQ(data["differences"],
              (json::array({{{"key", 34}, {"name", "KEY_BRIGHTNESS"}, {"first", 50}, {"second", 33}}})));
    EXPECT_EQ(lastData(tree, before + "diff flash:1 flash:0\n")["differences"][0]["first"], 33);
    EXPECT_EQ(runScript(tree, before + "diff 0 1\nexpect silent\n").nStatus, 0);
    EXPECT_THAT(runScript(tree, before + "diff 0 1\n").strOutput,
                HasSubstr("key  name            scheme 0 on flash  scheme 1 on flash\n"
                          " 34  KEY_BRIGHTNESS                 50                 33\n"));
}

TEST(ProgramDiff, FactoryDefaultsComeFromTheStyle) {
    const DeviceTree tree;
    EXPECT_EQ(lastData(tree, "init\ndiff factory 0\n")["count"], 0);
    EXPECT_EQ(lastData(tree, "init\nset brightness 60\ndiff factory memory\n")["differences"][0]["first"], 50);
}

TEST(ProgramDiff, AnotherSchemeInMemoryIsVisitedAndLeft) {
    const DeviceTree tree;
    const std::string script =
        "init\nscheme 1\nset brightness 33\nscheme 0\ndiff memory:1 flash:1\nexpect answer count 1\n"
        "expect sent \"ia ch0 set 34 33\"\nexpect sent \"ia ch0 set 34 50\"\nexpect scheme 0\n";
    const ProgramResult run = runScript(tree, script);
    EXPECT_EQ(run.nStatus, 0) << run.strErrors;
    const ProgramResult bad = runScript(tree, "init\ndiff memory:9 flash\n", {"--library-output", "none"});
    EXPECT_THAT(bad.strErrors, HasSubstr("there is no scheme 9"));
}

TEST(ProgramDiff, AKeyThatOnlyOneHoldsIsShown) {
    const DeviceTree tree;
    lastData(tree, "init\n");
    tree.write("/mnt/mtd/code/config_file/sensor1.cfg", std::string("\x22\0\0\0\x32\0\0\0", 8));
    const json data = lastData(tree, "diff 1 0\n");
    EXPECT_GT(data["count"], 80);
    EXPECT_TRUE(data["differences"][0]["first"].is_null());
    EXPECT_EQ(data["differences"][0]["key"], 8000);
    tree.write("/mnt/mtd/code/config_file/sensor1.cfg", "junk");
    EXPECT_THAT(runScript(tree, "diff 1 0\n").strErrors, HasSubstr("ends in 4 bytes that are no record"));
}

}  // namespace
