// The first start: no parameter files, or files that cannot be trusted.
#include "tests/unit/initialisation/StartedCamera.h"

namespace {

using messages::anyPlace;

constexpr char kWipe[] = "rm -rf /mnt/mtd/code/config*/sensor*";

class FirstStart : public StartedCamera {};

std::string versionWarning(u32 p_nStored) {
    return std::string("check the sensor version,   local(") + std::to_string(p_nStored) +
           ") --> libsensordll.so(8), source the cmd: " + kWipe + "\n";
}

}  // namespace

TEST_F(FirstStart, WritesEverySchemeFileFromTheFactorySet) {
    init("(max_scheme=3)");
    const std::string strDefaults = fileOf(with(factory(), KEY_SCHEME_MODE, 0));
    for (u32 i = 0; i < 3; ++i) {
        EXPECT_EQ(strDefaults, root.read(parameterFile(i))) << i;
    }
    EXPECT_FALSE(root.exists(parameterFile(3)));
}

TEST_F(FirstStart, WritesFourSchemeFilesWhenTheModuleNamesNoNumber) {
    init("");
    EXPECT_TRUE(root.exists(parameterFile(3)));
    EXPECT_FALSE(root.exists(parameterFile(4)));
}

TEST_F(FirstStart, StoresTheVersionOfTheLibrary) {
    init();
    EXPECT_EQ(std::string("\x08\0\0\0", 4), root.read(kVersionFile));
}

TEST_F(FirstStart, LoadsEverySetFromItsFile) {
    init();
    const Records vecDefaults = with(factory(), KEY_SCHEME_MODE, 0);
    EXPECT_EQ(vecDefaults, setOf(0));
    EXPECT_EQ(vecDefaults, setOf(1));
    EXPECT_EQ(vecDefaults, setOf(2)) << "the factory set";
    EXPECT_EQ(factory().size(), probe().keyValSum());
}

TEST_F(FirstStart, AppliesSchemeZeroWithEveryKey) {
    init();
    EXPECT_EQ("ia ch0 commands\n" + applied(), camera.text());
    EXPECT_EQ(0, scheme());
    EXPECT_EQ(-1, probe().lastScheme());
}

TEST_F(FirstStart, LeavesSwitchingOff) {
    init();
    EXPECT_FALSE(probe().scheduleSwitch());
    EXPECT_FALSE(probe().dnSchemeSwitch());
}

TEST_F(FirstStart, KeepsTheModeOfTheFactorySetWhenOnlyTheFileOfSchemeZeroIsThere) {
    stored({with(factory(), KEY_SCHEME_MODE, 1)});
    init();
    EXPECT_EQ(fileOf(factory()), root.read(parameterFile(1)));
    EXPECT_EQ(factory(), setOf(2));
}

TEST_F(FirstStart, TurnsTheModeOffForTheFilesBehindThatOfSchemeZero) {
    storedVersion(8);
    root.write(parameterFile(1), fileOf(factory()));
    init("(max_scheme=3)");
    EXPECT_EQ(fileOf(with(factory(), KEY_SCHEME_MODE, 0)), root.read(parameterFile(0)));
    EXPECT_EQ(fileOf(factory()), root.read(parameterFile(1))) << "a file that is there is not written";
    EXPECT_EQ(fileOf(with(factory(), KEY_SCHEME_MODE, 0)), root.read(parameterFile(2)));
}

TEST_F(FirstStart, WithoutAModeInTheStyleHasNothingToTurnOff) {
    style({{KEY_BRIGHTNESS, 50}});
    init();
    EXPECT_EQ(fileOf({{KEY_BRIGHTNESS, 50}}), root.read(parameterFile(0)));
    EXPECT_EQ("ia ch0 commands\nia ch0 set 34 = 50\n", camera.text());
}

TEST_F(FirstStart, TakesTheDriversDefaults) {
    camera.dynamicCommands({KEY_BRIGHTNESS});
    camera.range(KEY_BRIGHTNESS, RecordingCamera::rangeOf(60, {60}));
    init();
    EXPECT_EQ(fileOf(with(with(factory(), KEY_SCHEME_MODE, 0), KEY_BRIGHTNESS, 60)), root.read(parameterFile(1)));
}

TEST_F(FirstStart, OfTheThermalChannelUsesItsOwnFiles) {
    device(14);
    style({{KEY_SCHEME_MODE, 2}, {KEY_BRIGHTNESS, 40}}, "_Thermal.xml");
    controller().setChannelID(2);
    init();
    EXPECT_EQ(fileOf({{KEY_SCHEME_MODE, 0}, {KEY_BRIGHTNESS, 40}}), root.read(parameterFile(0, "sensor-thermal")));
    EXPECT_TRUE(root.exists(parameterFile(1, "sensor-thermal")));
    EXPECT_FALSE(root.exists(parameterFile(2, "sensor-thermal")));
    EXPECT_FALSE(root.exists(parameterFile(0)));
    EXPECT_EQ("ia ch1 commands\nia ch1 set 34 = 40\n", camera.text());
    EXPECT_TRUE(root.exists("/tmp/merge_style_ch2.xml"));
}

TEST_F(FirstStart, OfADeviceWithOneThermalSensorUsesTheThermalFiles) {
    device(13);
    style({{KEY_BRIGHTNESS, 40}}, "_Thermal.xml");
    controller().setChannelID(1);
    init("(max_scheme=1)");
    EXPECT_TRUE(root.exists(parameterFile(0, "sensor-thermal")));
}

TEST_F(FirstStart, OfAThirdChannelUsesTheOrdinaryFiles) {
    controller().setChannelID(3);
    init("(max_scheme=1)");
    EXPECT_TRUE(root.exists(parameterFile(0)));
    EXPECT_EQ("ia ch2 commands\n" + applied("ch2"), camera.text());
}

// --- The version of the stored files ---

TEST_F(FirstStart, WithFilesOfAnotherVersionWipesThem) {
    storedVersion(7);
    root.write(parameterFile(0), fileOf(with(factory(), KEY_BRIGHTNESS, 1)));
    root.write(parameterFile(9), "old");
    root.write(parameterFile(0, "sensor-thermal"), "old");
    root.write("/mnt/mtd/code/config_backup/sensor0.cfg", "old");
    root.write("/mnt/mtd/code/config_backup/sensors/old", "old");
    root.write("/mnt/mtd/code/config_file/other.cfg", "kept");
    root.write("/mnt/mtd/code/backup/sensor0.cfg", "kept");
    init();
    EXPECT_EQ(fileOf(with(factory(), KEY_SCHEME_MODE, 0)), root.read(parameterFile(0)));
    EXPECT_FALSE(root.exists(parameterFile(9)));
    EXPECT_FALSE(root.exists(parameterFile(0, "sensor-thermal")));
    EXPECT_FALSE(root.exists("/mnt/mtd/code/config_backup/sensor0.cfg"));
    EXPECT_FALSE(root.exists("/mnt/mtd/code/config_backup/sensors"));
    EXPECT_EQ("kept", root.read("/mnt/mtd/code/config_file/other.cfg"));
    EXPECT_EQ("kept", root.read("/mnt/mtd/code/backup/sensor0.cfg"));
    EXPECT_EQ(std::string("\x08\0\0\0", 4), root.read(kVersionFile));
}

TEST_F(FirstStart, WithANewerVersionWipesTheFilesToo) {
    storedVersion(9);
    root.write(parameterFile(0), "new");
    init();
    EXPECT_EQ(fileOf(with(factory(), KEY_SCHEME_MODE, 0)), root.read(parameterFile(0)));
}

TEST_F(FirstStart, WithoutAReadableVersionWipesTheFiles) {
    for (const char* szVersion : {"", "\x08", "\x08\x01\x01"}) {
        root.write(kVersionFile, szVersion);
        root.write(parameterFile(7), "old");
        root.debugLevel(4);
        init("(max_scheme=0)");
        EXPECT_FALSE(root.exists(parameterFile(7)));
        EXPECT_NE(std::string::npos, output.find(versionWarning(0)));
        controller().uinit();
    }
}

TEST_F(FirstStart, ReadsNoFurtherThanTheVersion) {
    root.write(kVersionFile, std::string("\x08\0\0\0more", 8));
    root.write(parameterFile(7), "kept");
    init();
    EXPECT_TRUE(root.exists(parameterFile(7)));
    EXPECT_EQ(std::string("\x08\0\0\0", 4), root.read(kVersionFile));
}

TEST_F(FirstStart, WarnsAboutTheVersionFromLevelFourOn) {
    const messages::Place stPlace = {"ISensorController.cpp", "init", "89"};
    storedVersion(7);
    root.debugLevel(4);
    init();
    EXPECT_EQ(messages::warning(stPlace, versionWarning(7)), output.substr(0, output.find("\033[0m", 10) + 4));
    EXPECT_EQ(messages::loggedWarning(stPlace, versionWarning(7)), root.errorLog());
}

TEST_F(FirstStart, WipesWithoutAWordBelowLevelFour) {
    storedVersion(7);
    root.debugLevel(3);
    root.write(parameterFile(7), "old");
    init();
    EXPECT_EQ("\n", output) << "the newline at the end of an applied scheme";
    EXPECT_EQ("", root.errorLog());
    EXPECT_FALSE(root.exists(parameterFile(7)));
}

TEST_F(FirstStart, ReportsAVersionThatCannotBeStored) {
    root.makeFolder(kVersionFile);
    init("(max_scheme=0)");
    const std::string strReport =
        messages::assertion({"ISensorController.cpp", "init", "192"}, "QVS_SUCCESS == setVersion(m_nVersion)") +
        messages::detail("m_nVersion(8)\n");
    EXPECT_NE(std::string::npos, output.find(strReport)) << output;
    EXPECT_EQ(0, scheme()) << "a failed step does not stop it";
}
