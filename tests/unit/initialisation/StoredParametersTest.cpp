// A start with the parameter files of an earlier run.
#include "tests/unit/initialisation/StartedCamera.h"

namespace {

class StoredParameters : public StartedCamera {
protected:
    // The small factory set as it is stored after the first start.
    static Records defaults() { return with(factory(), KEY_SCHEME_MODE, 0); }
};

struct StoredModeCase {
    u32 mode;
    bool bySchedule;
    bool byDayAndNight;
    int scheme;
};

std::ostream& operator<<(std::ostream& p_stream, const StoredModeCase& p_stRow) {
    return p_stream << "mode " << p_stRow.mode;
}

class StoredMode : public StoredParameters, public testing::WithParamInterface<StoredModeCase> {};

}  // namespace

TEST_F(StoredParameters, AreLoadedIntoTheirSets) {
    const Records vecFirst = with(defaults(), KEY_BRIGHTNESS, 11);
    const Records vecSecond = with(defaults(), KEY_BRIGHTNESS, 22);
    stored({vecFirst, vecSecond});
    init();
    EXPECT_EQ(vecFirst, setOf(0));
    EXPECT_EQ(vecSecond, setOf(1));
    EXPECT_EQ(factory(), setOf(2)) << "the factory set comes from the style";
}

TEST_F(StoredParameters, OfSchemeZeroAreApplied) {
    stored({with(defaults(), KEY_BRIGHTNESS, 11), with(defaults(), KEY_BRIGHTNESS, 22)});
    init();
    EXPECT_EQ("ia ch0 commands\nia ch0 set 34 = 11\n" + applied().substr(sizeof("ia ch0 set 34 = 50\n") - 1),
              camera.text());
}

TEST_F(StoredParameters, OfTheRightVersionAreKept) {
    stored({with(defaults(), KEY_BRIGHTNESS, 11), with(defaults(), KEY_BRIGHTNESS, 22)});
    root.write(parameterFile(9), "kept");
    root.debugLevel(4);
    init();
    EXPECT_EQ("\n", output);
    EXPECT_EQ("", root.errorLog());
    EXPECT_EQ(fileOf(with(defaults(), KEY_BRIGHTNESS, 11)), root.read(parameterFile(0)));
    EXPECT_EQ(fileOf(with(defaults(), KEY_BRIGHTNESS, 22)), root.read(parameterFile(1)));
    EXPECT_EQ("kept", root.read(parameterFile(9)));
}

TEST_F(StoredParameters, ThatAreCutShortLeaveFactoryValuesBehindTheirEnd) {
    storedVersion(8);
    const Records vecStored = with(defaults(), KEY_BRIGHTNESS, 11);
    root.write(parameterFile(0), fileOf(Records(vecStored.begin(), vecStored.begin() + 6)));
    root.write(parameterFile(1), "");
    init();
    EXPECT_EQ(vecStored, setOf(0));
    EXPECT_EQ(defaults(), setOf(1)) << "with the mode of the applied scheme";
    const std::string strReport =
        messages::assertion({"SensorFile.cpp", "keyValFromFile"}, "nSize == sizeof(KeyVal)*p_nKeyValNum") +
        messages::detail(
            "file_name(/mnt/mtd/code/config_file/sensor0.cfg) nSize(48) sizeof(KeyVal) = 8, p_nKeyValNum(11)\n");
    EXPECT_NE(std::string::npos, messages::anyLine(output).find(strReport)) << output;
}

TEST_F(StoredParameters, ThatEndInsideARecordLeaveTheRestOfItAlone) {
    storedVersion(8);
    const std::string strStored = fileOf(with(defaults(), KEY_BRIGHTNESS, 0x01020304));
    root.write(parameterFile(0), strStored.substr(0, 5 * 8 + 6));
    init();
    EXPECT_EQ(with(defaults(), KEY_BRIGHTNESS, 0x0304), setOf(0));
}

TEST_F(StoredParameters, BeyondTheSetAreNotRead) {
    storedVersion(8);
    root.write(parameterFile(0), fileOf(defaults()) + fileOf({{KEY_CONTRAST, 1}, {KEY_CONTRAST, 2}}));
    init();
    EXPECT_EQ(defaults(), setOf(0));
    EXPECT_EQ(factory(), setOf(2));
}

TEST_F(StoredParameters, ThatCannotBeReadLeaveFactoryValues) {
    stored({defaults(), defaults()});
    root.remove(parameterFile(1));
    root.makeFolder(parameterFile(1));
    init();
    EXPECT_EQ(defaults(), setOf(1)) << "with the mode of the applied scheme";
}

TEST_F(StoredParameters, OfGarbageAreAppliedAsFarAsTheyGo) {
    storedVersion(8);
    std::string strGarbage;
    for (std::size_t i = 0; i < factory().size() * 8; ++i) {
        strGarbage += static_cast<char>(i * 37 + 200);
    }
    root.write(parameterFile(0), strGarbage);
    init();
    EXPECT_EQ(recordsIn(strGarbage), setOf(0));
    EXPECT_EQ(factory().size(), camera.linesLike("ia ch0 set ").size()) << "unknown keys go to the driver as they are";
    EXPECT_EQ(0, controller().setParameter(KEY_BRIGHTNESS, 1, true));
    EXPECT_EQ(0, scheme());
}

TEST_F(StoredParameters, OfAMissingKeyOfSchemeZeroAreApplied) {
    storedVersion(8);
    style({{KEY_BRIGHTNESS, 50}});
    root.write(parameterFile(0), fileOf({{KEY_BRIGHTNESS, 11}}));
    init();
    EXPECT_EQ(0, scheme());
    EXPECT_FALSE(probe().scheduleSwitch() || probe().dnSchemeSwitch());
}

TEST_P(StoredMode, OfSchemeZeroDecidesWhatSwitchingFollows) {
    stored({with(factory(), KEY_SCHEME_MODE, GetParam().mode), defaults()});
    init();
    EXPECT_EQ(GetParam().bySchedule, probe().scheduleSwitch());
    EXPECT_EQ(GetParam().byDayAndNight, probe().dnSchemeSwitch());
    EXPECT_EQ(GetParam().scheme, scheme());
    EXPECT_EQ("ia ch0 commands\n" + (0 == GetParam().scheme ? applied() : ""), camera.text());
}

INSTANTIATE_TEST_SUITE_P(All, StoredMode,
                         testing::Values(StoredModeCase{0, false, false, 0}, StoredModeCase{1, true, false, -1},
                                         StoredModeCase{2, false, true, -1}, StoredModeCase{7, false, false, 0},
                                         StoredModeCase{0xFFFFFFFFu, false, false, 0}));

TEST_F(StoredParameters, OfAnotherSchemeDoNotDecideAboutSwitching) {
    stored({defaults(), with(factory(), KEY_SCHEME_MODE, 1)});
    init();
    EXPECT_FALSE(probe().scheduleSwitch() || probe().dnSchemeSwitch());
    EXPECT_EQ(0, scheme());
}

TEST_F(StoredParameters, ModeIsDecidedAnewByTheNextStart) {
    stored({with(factory(), KEY_SCHEME_MODE, 1), defaults()});
    init();
    controller().uinit();
    root.write(parameterFile(0), fileOf(defaults()));
    init();
    EXPECT_FALSE(probe().scheduleSwitch());
    EXPECT_EQ(0, scheme());
}
