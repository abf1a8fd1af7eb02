// The whole current scheme as text: what is in memory, or what is on flash, as the style's maximum shutter says.
#include "technic/QVMutex.h"
#include "tests/unit/sensor/SmallSets.h"

#include <filesystem>
#include <limits>

using messages::anyLine;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

namespace {

class GetAllParameters : public SmallSets {
protected:
    GetAllParameters() { shutterIs("199"); }

    // The merged style document of the channel.
    void document(const std::string& p_strText, const std::string& p_strChannel = "1") {
        root.write("/tmp/merge_style_ch" + p_strChannel + ".xml", p_strText);
    }
    void shutterIs(const std::string& p_strValue, const std::string& p_strChannel = "1") {
        document("<style><tab key=\"all\"><p id=\"34\" value=\"300\"/><p id=\"49\" value=\"" + p_strValue +
                     "\"><c index=\"0\"/></p></tab></style>",
                 p_strChannel);
    }

    // What is stored of scheme 0 differs from memory in one value.
    void storeOther() { root.write(parameterFile(0), fileOf(with(records(), KEY_BRIGHTNESS, 51))); }
    static std::string otherText() {
        std::string strText = text();
        return strText.replace(strText.find("(34,50)"), 7, "(34,51)");
    }

    std::string all() {
        std::string strOut = "before";
        EXPECT_TRUE(controller.getAllParameters(strOut));
        return strOut;
    }
    std::string allQuietly() {
        root.debugLevel(-1);
        return all();
    }

    static constexpr char kLoadFailed[] = "objStyleXmlDoc.LoadFile(filename, TIXML_ENCODING_UTF8)";
    // What a document that cannot be loaded makes it say.
    static std::string loadReported() { return messages::assertion(in("getAllParameters"), kLoadFailed); }
};

// --- Which of the two ---

TEST_F(GetAllParameters, BelowTwoHundredMemoryIsReported) {
    storeOther();
    for (const char* const szValue : {"199", "0", "100", "-5", "abc", "", "-2147483648", " 199", "199.9", "1e9"}) {
        shutterIs(szValue);
        EXPECT_EQ(text(), all()) << szValue;
    }
    EXPECT_EQ(10u, camera.linesLike("ia ch0 commands").size());
}

TEST_F(GetAllParameters, FromTwoHundredOnTheStoredFileIsReported) {
    storeOther();
    for (const char* const szValue : {"200", "201", "205", "2147483647", "200x"}) {
        shutterIs(szValue);
        EXPECT_EQ(otherText(), all()) << szValue;
    }
    EXPECT_THAT(camera.transcript(), IsEmpty());
    EXPECT_EQ(50u, probe.valueIn(0, KEY_BRIGHTNESS)) << "memory keeps its value";
}

TEST_F(GetAllParameters, AStyleWithoutAMaximumShutterCountsAsTwoHundred) {
    storeOther();
    for (const char* const szDocument : {"<style/>", "<style><p id=\"34\" value=\"1\"/></style>",
                                         "<style><p id=\"49\"/></style>", "<style><p value=\"1\">49</p></style>",
                                         "<style><p id=\"50\" value=\"1\"/><p id=\"4\" value=\"1\"/></style>"}) {
        document(szDocument);
        EXPECT_EQ(otherText(), all()) << szDocument;
    }
}

TEST_F(GetAllParameters, TheRootItselfMayBeTheMaximumShutter) {
    storeOther();
    document("<p id=\"49\" value=\"7\"/>");
    EXPECT_EQ(text(), all());
}

TEST_F(GetAllParameters, OfTwoMaximumShuttersTheLastCounts) {
    storeOther();
    document("<style><p id=\"49\" value=\"205\"/><tab><p id=\"49\" value=\"7\"/></tab></style>");
    EXPECT_EQ(text(), all());
    document("<style><p id=\"49\" value=\"7\"/><tab><p id=\"49\" value=\"205\"/></tab></style>");
    EXPECT_EQ(otherText(), all());
}

TEST_F(GetAllParameters, ALaterOneWithoutAValueLeavesTheEarlier) {
    storeOther();
    document("<style><p id=\"49\" value=\"7\"/><p id=\"49\"/></style>");
    EXPECT_EQ(text(), all());
}

TEST_F(GetAllParameters, OneInsideAnotherDoesNotCount) {
    storeOther();
    document("<style><p id=\"49\" value=\"7\"><p id=\"49\" value=\"205\"/></p></style>");
    EXPECT_EQ(text(), all());
}

TEST_F(GetAllParameters, EachChannelHasADocumentOfItsOwn) {
    storeOther();
    controller.setChannelID(3);
    shutterIs("205", "3");
    EXPECT_EQ(otherText(), all());
    shutterIs("7", "3");
    EXPECT_EQ(text(), all());
    EXPECT_THAT(camera.transcript(), ElementsAre("ia ch2 commands"));
}

// The merge names it so too.
TEST_F(GetAllParameters, ANegativeChannelHasItsDocumentUnderItsNegativeNumber) {
    storeOther();
    controller.setChannelID(-1);
    shutterIs("7", "-1");
    EXPECT_EQ("", outputOf([&] { EXPECT_EQ(text(), all()); }));
    EXPECT_THAT(camera.transcript(), ElementsAre("ia ch-2 commands"));
}

// --- A document that cannot be loaded counts as an empty one ---

TEST_F(GetAllParameters, AMissingDocumentIsReportedAndTheStoredFileIsTold) {
    storeOther();
    root.remove("/tmp/merge_style_ch1.xml");
    std::string strOut = "before";
    EXPECT_EQ(loadReported(), anyLine(outputOf([&] { EXPECT_TRUE(controller.getAllParameters(strOut)); })));
    EXPECT_EQ(otherText(), strOut);
    EXPECT_EQ(messages::loggedAssertion(in("getAllParameters"), kLoadFailed), anyLine(root.errorLog()));
    EXPECT_FALSE(lockIsHeld());
}

TEST_F(GetAllParameters, AMissingDocumentEndsTheProcessWhileAssertionsAreEnabled) {
    root.remove("/tmp/merge_style_ch1.xml");
    root.debugLevel(1, true);
    std::string strOut;
    EXPECT_DEATH(controller.getAllParameters(strOut), abortIn("getAllParameters"));
}

TEST_F(GetAllParameters, AnEmptyOrMalformedDocumentIsReportedAndTheStoredFileIsTold) {
    storeOther();
    for (const char* const szDocument :
         {"", " ", "no document", "<style>", "<style", "<style><p id=49 value='7'/></tab>", "\xEF\xBB\xBF"}) {
        document(szDocument);
        std::string strOut = "before";
        EXPECT_EQ(loadReported(), anyLine(outputOf([&] { EXPECT_TRUE(controller.getAllParameters(strOut)); })))
            << szDocument;
        EXPECT_EQ(otherText(), strOut) << szDocument;
    }
}

TEST_F(GetAllParameters, WhatWasReadOfABrokenDocumentDoesNotCount) {
    storeOther();
    document("<style><p id=\"49\" value=\"7\"/>");
    EXPECT_EQ(otherText(), allQuietly());
}

TEST_F(GetAllParameters, ADocumentThatNestsTooDeeplyIsReportedAndTheStoredFileIsTold) {
    storeOther();
    const auto nested = [](int p_nLevels) {
        std::string strText = "<p id=\"49\" value=\"7\"/>";
        for (int i = 1; i < p_nLevels; ++i) {
            strText = "<t>" + strText + "</t>";
        }
        return strText;
    };
    document(nested(256));
    EXPECT_EQ("", outputOf([&] { EXPECT_EQ(text(), all()); }));
    for (const int nLevels : {257, 1000, 20000}) {
        document(nested(nLevels));
        EXPECT_EQ(loadReported(), anyLine(outputOf([&] { EXPECT_EQ(otherText(), all()); }))) << nLevels;
    }
}

TEST_F(GetAllParameters, ADocumentOfMoreThanSixtyFourMegabytesIsReportedAndNotRead) {
    storeOther();
    std::filesystem::resize_file(root.path() + "/tmp/merge_style_ch1.xml", 64 * 1024 * 1024 + 1);
    EXPECT_EQ(loadReported(), anyLine(outputOf([&] { EXPECT_EQ(otherText(), all()); })));
}

TEST_F(GetAllParameters, AFolderInTheDocumentsPlaceIsReported) {
    storeOther();
    root.remove("/tmp/merge_style_ch1.xml");
    root.makeFolder("/tmp/merge_style_ch1.xml");
    EXPECT_EQ(loadReported(), anyLine(outputOf([&] { EXPECT_EQ(otherText(), all()); })));
}

// The kernel says 4096 bytes for such a file and gives fewer.
TEST_F(GetAllParameters, ADocumentThatIsShorterThanItsLengthIsReported) {
    storeOther();
    root.remove("/tmp/merge_style_ch1.xml");
    std::filesystem::create_symlink("/sys/devices/system/cpu/online", root.path() + "/tmp/merge_style_ch1.xml");
    EXPECT_EQ(loadReported(), anyLine(outputOf([&] { EXPECT_EQ(otherText(), all()); })));
}

TEST_F(GetAllParameters, ADocumentEndsAtItsFirstZeroByte) {
    storeOther();
    const std::string strDocument = "<style><p id=\"49\" value=\"7\"/></style>";
    document(strDocument + std::string(1, '\0') + "<p id=\"49\" value=\"205\"/>");
    EXPECT_EQ(text(), allQuietly());
}

// --- From memory ---

TEST_F(GetAllParameters, MemoryIsCorrectedByTheDriverInPlaceAndReported) {
    camera.dynamicCommands({KEY_MAX_SHUTTER, KEY_BRIGHTNESS});
    const auto correct = [](int, void* p_pData) {
        *static_cast<int*>(p_pData) -= 1;
        return IA_OK;
    };
    camera.onDriver(KEY_MAX_SHUTTER, IA_CMD_OPT_CORRECT_PARAM, correct);
    camera.onDriver(KEY_BRIGHTNESS, IA_CMD_OPT_CORRECT_PARAM, correct);
    EXPECT_EQ("(8000,0)(8001,8)(8002,0)(8003,20)(8004,30)(34,49)(2353,128)(49,199)(17,0)", all());
    EXPECT_THAT(camera.transcript(),
                ElementsAre("ia ch0 commands", "ia ch0 correct 49: 200 -> 199", "ia ch0 correct 34: 50 -> 49"));
    EXPECT_EQ(49u, probe.valueIn(0, KEY_BRIGHTNESS));
    EXPECT_EQ(199u, probe.valueIn(0, KEY_MAX_SHUTTER));
    EXPECT_EQ(50u, probe.valueIn(1, KEY_BRIGHTNESS)) << "the other schemes are left alone";
    EXPECT_EQ("", root.errorLog());
}

TEST_F(GetAllParameters, TheDriverIsAskedOnTheControllersChannel) {
    controller.setChannelID(2);
    shutterIs("7", "2");
    camera.dynamicCommands({KEY_BRIGHTNESS});
    EXPECT_EQ(text(), all());
    EXPECT_THAT(camera.transcript(), ElementsAre("ia ch1 commands", "ia ch1 correct 34: 50 -> 50"));
}

TEST_F(GetAllParameters, TheCurrentSchemeIsReportedTheFactorySetIncluded) {
    for (u32 nScheme = 0; nScheme <= kFactory; ++nScheme) {
        cached(nScheme, KEY_BRIGHTNESS, 51);
        probe.setCurScheme(static_cast<int>(nScheme));
        EXPECT_EQ(otherText(), all());
        cached(nScheme, KEY_BRIGHTNESS, 50);
    }
}

TEST_F(GetAllParameters, NegativeAndLargeValuesKeepTheirSign) {
    cached(0, KEY_BRIGHTNESS, 0xFFFFFFFFu);
    cached(0, KEY_CONTRAST, 0x80000000u);
    EXPECT_THAT(all(), HasSubstr("(34,-1)(2353,-2147483648)"));
}

TEST_F(GetAllParameters, TheOutputIsReplaced) {
    std::string strOut = "(1,1)";
    EXPECT_TRUE(controller.getAllParameters(strOut));
    EXPECT_EQ(text(), strOut);
    storeOther();
    shutterIs("200");
    EXPECT_TRUE(controller.getAllParameters(strOut));
    EXPECT_EQ(otherText(), strOut);
}

TEST_F(GetAllParameters, SetsWithoutRecordsGiveAnEmptyText) {
    controller.uinit();
    build(1, {});
    EXPECT_EQ("", all());
    root.write(parameterFile(0), "");
    shutterIs("200");
    EXPECT_EQ("", all());
    EXPECT_EQ("", root.errorLog());
}

TEST_F(GetAllParameters, ACorrectionThatFailsIsReportedAndTheTextToldAllTheSame) {
    camera.dynamicCommands({KEY_BRIGHTNESS});
    camera.driverFails(KEY_BRIGHTNESS, IA_CMD_OPT_CORRECT_PARAM, -3);
    EXPECT_EQ(messages::assertion({"SensorKeyVal.cpp", "keyval_correct"},
                                  "QVS_SUCCESS == ia_ioctrl_v2(p_nChannel_id, (ia_cmd_e)p_pKeyval[index].key, "
                                  "IA_CMD_OPT_CORRECT_PARAM, &p_pKeyval[index].value)"),
              anyLine(outputOf([&] { EXPECT_EQ(text(), all()); })));
}

TEST_F(GetAllParameters, AListOfCommandsThatFailsIsReportedAndNothingIsCorrected) {
    camera.dynamicCommands({KEY_BRIGHTNESS});
    camera.driverFails(IA_CMD_DYNAMIC_PARAMS_CMDS_GET, IA_CMD_OPT_GET, -1);
    EXPECT_EQ(messages::assertion({"SensorKeyVal.cpp", "keyval_correct"},
                                  "QVS_SUCCESS == ia_ioctrl_v2(p_nChannel_id, IA_CMD_DYNAMIC_PARAMS_CMDS_GET, "
                                  "IA_CMD_OPT_GET, (void*)(&dnaCmdList))"),
              anyLine(outputOf([&] { EXPECT_EQ(text(), all()); })));
    EXPECT_THAT(camera.transcript(), ElementsAre("ia ch0 commands failed -1"));
}

TEST_F(GetAllParameters, ACorrectionThatFailsEndsTheProcessWhileAssertionsAreEnabled) {
    camera.dynamicCommands({KEY_BRIGHTNESS});
    camera.driverFails(KEY_BRIGHTNESS, IA_CMD_OPT_CORRECT_PARAM, -3);
    root.debugLevel(1, true);
    std::string strOut;
    EXPECT_DEATH(controller.getAllParameters(strOut), "SensorKeyVal.cpp:[0-9]+: .*keyval_correct.*Assertion");
}

// In front of scheme 0 stands a zeroed record; in front of the others, the last record of the scheme before.
TEST_F(GetAllParameters, MeantACommandThatTheSetLacksCorrectsTheRecordInFrontOfTheSet) {
    root.debugLevel(-1);
    camera.dynamicCommands({4711});
    EXPECT_EQ(text(), all());
    probe.setCurScheme(1);
    EXPECT_EQ(text(), all());
    EXPECT_THAT(camera.transcript(), ElementsAre("ia ch0 commands", "ia ch0 correct 0: 0 -> 0", "ia ch0 commands",
                                                 "ia ch0 correct 17: 0 -> 0"));
}

TEST_F(GetAllParameters, ADriverThatClaimsMoreCommandsThanItsListHoldsIsBoundedAndReported) {
    root.debugLevel(6);
    camera.onDriver(IA_CMD_DYNAMIC_PARAMS_CMDS_GET, IA_CMD_OPT_GET, [](int, void* p_pData) {
        auto* const pList = static_cast<ia_dynamic_params_cmds_st*>(p_pData);
        pList->cmd_cnt = 1000000;
        for (u32& nCmd : pList->cmd_list) {
            nCmd = KEY_BRIGHTNESS;
        }
        return IA_OK;
    });
    EXPECT_THAT(anyLine(outputOf([&] { EXPECT_EQ(text(), all()); })),
                StartsWith(messages::error({"DriverLists.cpp", "contained"},
                                           "driver claims 1000000 dynamic commands, the record holds 0 to 16\n")));
    EXPECT_EQ(16u, camera.linesLike("ia ch0 correct 34").size());
}

TEST_F(GetAllParameters, TheSchemeAndItsTextAreShownAtLevelSix) {
    probe.setCurScheme(1);
    root.debugLevel(5);
    EXPECT_EQ("", outputOf([&] { all(); }));
    root.debugLevel(6);
    EXPECT_EQ(messages::debug(in("getAllParameters"), "current scheme: 1\n" + text() + "\n"),
              anyLine(outputOf([&] { all(); })));
}

// --- From flash ---

TEST_F(GetAllParameters, TheFileOfTheCurrentSchemeIsReported) {
    shutterIs("200");
    root.write(parameterFile(0), fileOf(records()));
    root.write(parameterFile(1), fileOf(with(records(), KEY_BRIGHTNESS, 51)));
    EXPECT_EQ(text(), all());
    probe.setCurScheme(1);
    EXPECT_EQ(otherText(), all());
}

TEST_F(GetAllParameters, TheSecondChannelHasFilesOfItsOwnName) {
    controller.setChannelID(2);
    shutterIs("200", "2");
    root.write(parameterFile(0), fileOf(records()));
    root.write(parameterFile(0, "sensor-thermal"), fileOf(with(records(), KEY_BRIGHTNESS, 51)));
    EXPECT_EQ(otherText(), all());
    EXPECT_EQ("", root.errorLog());
}

TEST_F(GetAllParameters, TheRecordsAreThoseOfTheFileTheirKeysIncluded) {
    shutterIs("200");
    std::vector<KeyVal> vecRecords(probe.keyValSum(), KeyVal{7, 0xFFFFFFFEu});
    root.write(parameterFile(0), fileOf(vecRecords));
    EXPECT_EQ("(7,-2)(7,-2)(7,-2)(7,-2)(7,-2)(7,-2)(7,-2)(7,-2)(7,-2)", all());
}

TEST_F(GetAllParameters, NothingIsShownAtLevelSixForTheStoredFile) {
    shutterIs("200");
    storeOther();
    root.debugLevel(6);
    EXPECT_EQ("", outputOf([&] { all(); }));
}

TEST_F(GetAllParameters, AMissingFileIsReportedAndTheScratchSetToldAsItIs) {
    shutterIs("200");
    fillScratch(3);
    const messages::Place stPlace{"SensorFile.cpp", "keyValFromFile"};
    EXPECT_EQ(messages::assertion(stPlace, "file.open(file_name)") +
                  messages::detail("file_name(/mnt/mtd/code/config_file/sensor0.cfg)\n") +
                  messages::assertion(stPlace, "nSize == sizeof(KeyVal)*p_nKeyValNum") +
                  messages::detail("file_name(/mnt/mtd/code/config_file/sensor0.cfg) nSize(-1) sizeof(KeyVal) = 8, "
                                   "p_nKeyValNum(9)\n"),
              anyLine(outputOf(
                  [&] { EXPECT_EQ("(8000,3)(8001,3)(8002,3)(8003,3)(8004,3)(34,3)(2353,3)(49,3)(17,3)", all()); })));
}

TEST_F(GetAllParameters, AMissingFileEndsTheProcessWhileAssertionsAreEnabled) {
    shutterIs("200");
    root.debugLevel(1, true);
    std::string strOut;
    EXPECT_DEATH(controller.getAllParameters(strOut), "SensorFile.cpp:[0-9]+: .*keyValFromFile.*Assertion");
}

TEST_F(GetAllParameters, AShortFileIsReportedAndTheRestComesFromTheScratchSet) {
    shutterIs("200");
    fillScratch(3);
    root.write(parameterFile(0), fileOf({{KEY_SCHEME_MODE, 9}, {KEY_SCHEME_START_HOUR, 9}}));
    EXPECT_EQ(messages::assertion({"SensorFile.cpp", "keyValFromFile"}, "nSize == sizeof(KeyVal)*p_nKeyValNum") +
                  messages::detail("file_name(/mnt/mtd/code/config_file/sensor0.cfg) nSize(16) sizeof(KeyVal) = 8, "
                                   "p_nKeyValNum(9)\n"),
              anyLine(outputOf(
                  [&] { EXPECT_EQ("(8000,9)(8001,9)(8002,3)(8003,3)(8004,3)(34,3)(2353,3)(49,3)(17,3)", all()); })));
}

TEST_F(GetAllParameters, OfALongerFileTheFirstRecordsAreTold) {
    shutterIs("200");
    storeOther();
    root.write(parameterFile(0), root.read(parameterFile(0)) + std::string(100, 'x'));
    EXPECT_EQ("", outputOf([&] { EXPECT_EQ(otherText(), all()); }));
}

TEST_F(GetAllParameters, TheFactorySetHasNoFileAndLeavesTheOutput) {
    shutterIs("200");
    root.write(parameterFile(kFactory), fileOf(records()));
    probe.setCurScheme(static_cast<int>(kFactory));
    EXPECT_EQ("before", all());
    EXPECT_THAT(camera.transcript(), IsEmpty());
    EXPECT_EQ("", root.errorLog());
}

// --- Without a scheme, without sets ---

TEST_F(GetAllParameters, WithoutASchemeItIsTrueAndLeavesTheOutput) {
    applyNoScheme();
    for (const char* const szValue : {"199", "200"}) {
        shutterIs(szValue);
        EXPECT_EQ("", outputOf([&] { EXPECT_EQ("before", all()); }));
    }
    EXPECT_THAT(camera.transcript(), IsEmpty());
}

TEST_F(GetAllParameters, AControllerThatIsNotInitialisedRefusesAndTouchesNothing) {
    root.debugLevel(6);
    ISensorController fresh;
    controller.uinit();
    for (ISensorController* const pController : {&fresh, &controller}) {
        std::string strOut = "before";
        EXPECT_EQ(refused("getAllParameters"),
                  anyLine(outputOf([&] { EXPECT_FALSE(pController->getAllParameters(strOut)); })));
        EXPECT_EQ("before", strOut);
    }
    EXPECT_FALSE(lockIsHeld());
    EXPECT_THAT(camera.transcript(), IsEmpty());
}

// --- The lock ---

TEST_F(GetAllParameters, TheLockIsHeldWhileTheDriverCorrects) {
    camera.dynamicCommands({KEY_BRIGHTNESS});
    std::vector<bool> vecHeld;
    camera.onDriver(KEY_BRIGHTNESS, IA_CMD_OPT_CORRECT_PARAM, [&](int, void*) {
        vecHeld.push_back(lockIsHeld());
        return IA_OK;
    });
    all();
    EXPECT_THAT(vecHeld, ElementsAre(true));
    EXPECT_FALSE(lockIsHeld());
}

TEST_F(GetAllParameters, ItWaitsForTheLock) {
    shutterIs("200");
    storeOther();
    EXPECT_DEATH(
        {
            const QVMutexManager guard(&probe.mutex(), "the test", 7);
            all();
        },
        kLockedTwice);
}

}  // namespace
