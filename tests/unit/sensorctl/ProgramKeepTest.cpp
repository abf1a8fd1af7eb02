// Storing, checking, restoring and rolling back; ranges, the shutter and languages.
#include "tests/unit/sensorctl/ProgramRun.h"

#include <gmock/gmock.h>

namespace {

using nlohmann::json;
using testing::HasSubstr;

// A script that checks itself.
void plays(const DeviceTree& p_objTree, const std::string& p_strScript) {
    const ProgramResult run = runScript(p_objTree, p_strScript, {"--library-output", "none"});
    EXPECT_EQ(run.nStatus, 0) << p_strScript << run.strErrors << run.strOutput;
}

TEST(ProgramKeep, FlushStoresTheCurrentScheme) {
    const DeviceTree tree;
    plays(tree,
          "init\nset brightness 60\nexpect file 0 brightness 50\nflush\nexpect file 0 brightness 60\n"
          "restart\nexpect driver 34 60\nscheme 1\nset brightness 33\nflush\nexpect file 1 brightness 33\n"
          "expect file 0 brightness 60\n");
}

TEST(ProgramKeep, AWindowThatCannotBeStoredIsNamed) {
    const DeviceTree tree;
    EXPECT_THAT(errorOf(tree, "init\nset \"(8001,24)(8002,1)\"\ncheck\n"), HasSubstr("starts later than 24:00 (505)"));
    EXPECT_THAT(errorOf(tree, "init\nset \"(8003,24)(8004,1)\"\ncheck\n"), HasSubstr("ends later than 24:00 (506)"));
    EXPECT_THAT(errorOf(tree, "init\nset \"(8001,22)(8003,6)\"\ncheck\n"),
                HasSubstr("does not start before it ends (507)"));
    EXPECT_THAT(errorOf(tree, "init\nset \"(8001,22)(8003,6)\"\nflush\n"),
                HasSubstr("the current scheme cannot be stored: its window does not start before it ends (507)"));
    plays(tree,
          "init\ncheck\nset brightness 60\nset \"(8001,22)(8003,6)\"\nexpect fail flush\n"
          "expect file 0 brightness 50\n");
}

TEST(ProgramKeep, RestoreSendsTheStoredValueAgain) {
    const DeviceTree tree;
    plays(tree,
          "init\nset brightness 60\nrestore brightness\nexpect count 1\nexpect sent \"ia ch0 set 34 60\"\n"
          "restoreAe\nexpect sent \"ia ch0 set 1536\"\nexpect sent \"ia ch0 set 16\"\n");
    EXPECT_THAT(errorOf(tree, "init\nrestore 4711\n"), HasSubstr("the current scheme does not hold key 4711"));
    EXPECT_THAT(errorOf(tree, "init\nfault add cmd=34 opt=set result=-3\nrestore 34\n"),
                HasSubstr("the driver refused KEY_BRIGHTNESS (34)"));
    EXPECT_THAT(errorOf(tree, "init\nfault add cmd=1536 opt=set result=-3\nrestoreAe\n"),
                HasSubstr("restoreAeMode returned false"));
}

TEST(ProgramKeep, RollbackGoesBackToWhatIsStored) {
    const DeviceTree tree;
    plays(tree,
          "init\nset brightness 60\nset contrast 40\nrollback\nexpect count 2\nexpect sent \"ia ch0 set 34 50\"\n"
          "get brightness\nexpect answer value 50\nset brightness 70\nflush\nset brightness 20\nrollback\n"
          "expect sent \"ia ch0 set 34 70\"\n");
    EXPECT_THAT(errorOf(tree, "init\nset contrast 41\nfault add cmd=2353 opt=set result=-3\nrollback\n"),
                HasSubstr("resetToLastParameters returned false"));
}

TEST(ProgramKeep, TheMirrorIsStoredAtOnce) {
    const DeviceTree tree;
    plays(tree,
          "init\nset brightness 60\nmirror 1\nexpect sent \"ia ch0 set 2384 1\"\nexpect file 0 mirror 1\n"
          "expect file 0 brightness 60\nmirror\nexpect answer direction 1\nexpect silent\n");
    EXPECT_THAT(errorOf(tree, "init\nfault add cmd=2384 opt=set result=-3\nmirror 2\n"),
                HasSubstr("setMirrorMode returned false"));
}

TEST(ProgramKeep, BeforeInitNothingIsStoredOrSent) {
    for (const char* command : {"flush", "restore brightness", "restoreAe", "rollback", "mirror 1", "check"}) {
        const DeviceTree tree;
        const ProgramResult run = runScript(tree, std::string(command) + "\n", {"--keep-going", "--trace"});
        EXPECT_THAT(run.strOutput, testing::Not(HasSubstr("ia ch0"))) << command;
        EXPECT_FALSE(tree.exists("/mnt/mtd/code/config_file/sensor0.cfg")) << command;
    }
}

TEST(ProgramShutter, ARangeIsTheDriversListOfThisMoment) {
    const DeviceTree tree;
    const json data = lastData(tree, "init\nrange max_shutter\n");
    EXPECT_EQ(data["command"], 49);
    EXPECT_EQ(data["default"], 7);
    EXPECT_EQ(data["range"], "7 8 9 10 11 12 13 14 15 16 17 18 19 20 21 22 23 24 25 26 27 28");
    EXPECT_EQ(lastData(tree, "video fps 50\nrange 49\n")["default"], 9);
    EXPECT_THAT(errorOf(tree, "init\nrange brightness\n"),
                HasSubstr("getSensorParamRange returned false: KEY_BRIGHTNESS (34) has no range to offer"));
}

TEST(ProgramShutter, ItIsSetByItsPlaceAndSteppedAlongTheList) {
    const DeviceTree tree;
    plays(tree,
          "init\nshutter\nexpect answer index 0\nshutter 3\nexpect sent \"ia ch0 set 49 10\"\nshutter up\n"
          "expect sent \"ia ch0 set 49 11\"\nshutter down\nshutter down\nshutter\nexpect answer index 2\n"
          "expect driver 49 9\n");
    EXPECT_THAT(errorOf(tree, "init\nshutter 22\n"), HasSubstr("setShutterValue returned false"));
    EXPECT_THAT(errorOf(tree, "init\nshutter -1\n"), HasSubstr("setShutterValue returned false"));
    EXPECT_THAT(errorOf(tree, "fault add cmd=49 opt=get result=-3\nshutter\n"), HasSubstr("getShutterValue returned"));
    EXPECT_THAT(errorOf(tree, "fault add cmd=49 opt=get result=-3\nshutter up\n"), HasSubstr("shutterUp returned"));
    EXPECT_THAT(errorOf(tree, "fault add cmd=49 opt=get result=-3\nshutter down\n"), HasSubstr("shutterDown returned"));
}

TEST(ProgramLanguages, DocumentsOfFilesComeBackByTheirLanguage) {
    const DeviceTree tree;
    tree.write("/one.xml", "<english/>\n");
    tree.write("/two.xml", "<german/>\n");
    tree.write("/all.xml", "<common/>\n");
    const std::string at = tree.path();
    const std::string hand =
        "languages 1 " + at + "/one.xml " + at + "/all.xml 2 " + at + "/two.xml " + at + "/all.xml\n";
    EXPECT_EQ(lastData(tree, "init\n" + hand)["languages"], (json{1, 2}));
    EXPECT_EQ(lastData(tree, "init\n" + hand + "languageFile 2\n")["document"], "<german/>\n");
    EXPECT_EQ(lastData(tree, hand + "init\nlanguageFile 7\n")["document"], "<english/>\n");
    EXPECT_EQ(lastData(tree, hand + "init\nreset\ncommonFile 2\n")["document"], "<common/>\n");
    EXPECT_THAT(errorOf(tree, "init\n" + hand + "languages none\nlanguageFile 1\n"), HasSubstr("document is empty"));
}

TEST(ProgramLanguages, WhatIsNoListOfLanguagesIsRefused) {
    const DeviceTree tree;
    tree.write("/one.xml", "<english/>");
    tree.write("/zero.xml", std::string("a\0b", 3));
    tree.write("/large.xml", std::string(1024 * 1024 + 1, 'x'));
    const std::string one = tree.path() + "/one.xml ";
    EXPECT_THAT(errorOf(tree, "languages 1 " + one + "\n"), HasSubstr("a language is an id, its language file and"));
    EXPECT_THAT(errorOf(tree, "languages one " + one + one + "\n"), HasSubstr("ID must be a whole number"));
    EXPECT_THAT(errorOf(tree, "languages 1 " + one + tree.path() + "/none.xml\n"), HasSubstr("cannot be read"));
    EXPECT_THAT(errorOf(tree, "languages 1 " + one + tree.path() + "\n"), HasSubstr("cannot be read"));
    EXPECT_THAT(errorOf(tree, "languages 1 " + one + tree.path() + "/large.xml\n"), HasSubstr("too large"));
    EXPECT_THAT(errorOf(tree, "languages 1 " + one + one + "1 " + one + one + "\n"),
                HasSubstr("setLanguageDocuments returned false"));
    EXPECT_THAT(errorOf(tree, "languages 1 " + one + tree.path() + "/zero.xml\n"),
                HasSubstr("setLanguageDocuments returned false"));
}

}  // namespace
