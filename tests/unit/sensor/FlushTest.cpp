// Storing the current scheme: which one, when, under which name; and the mirror, which is stored at once.
#include "technic/QVMutex.h"
#include "tests/support/FullMedium.h"
#include "tests/unit/sensor/SmallSets.h"

#include <array>

using messages::anyLine;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

using Window = std::array<u32, 4>;  // start hour and minute, end hour and minute

struct CheckedWindow {
    const char* what;
    Window window;
    int code;
};

const CheckedWindow kWindows[] = {
    {"08:00-24:00, midnight counts as 24:00", {8, 0, 24, 0}, 0},
    {"08:00-24:01", {8, 0, 24, 1}, 506},
    {"22:00-06:00, no window runs past midnight", {22, 0, 6, 0}, 507},
    {"00:00-00:00", {0, 0, 0, 0}, 507},
    {"the whole day", {0, 0, 24, 0}, 0},
    {"one minute", {8, 0, 8, 1}, 0},
    {"no minute", {8, 0, 8, 0}, 507},
    {"24:00-24:00", {24, 0, 24, 0}, 507},
    {"24:01-24:02, the start is looked at first", {24, 1, 24, 2}, 505},
    {"24:01-08:00", {24, 1, 8, 0}, 505},
    {"25:00-26:00", {25, 0, 26, 0}, 505},
    {"08:75, minutes are not looked at by themselves", {8, 75, 9, 0}, 0},
    {"minutes alone", {0, 2399, 0, 2400}, 0},
    {"minutes alone, too late", {0, 2400, 0, 2401}, 506},
    {"08:75-08:75", {8, 75, 8, 75}, 507},
    {"a negative hour is a late one", {0xFFFFFFFFu, 0, 8, 0}, 505},
    {"a negative minute takes from the hour", {8, 0xFFFFFFFFu, 8, 0}, 0},
};

class Flush : public SmallSets {
protected:
    void window(u32 p_nScheme, const Window& p_aWindow) {
        for (u32 i = 0; i < p_aWindow.size(); ++i) {
            probe.set(p_nScheme)[1 + i].value = p_aWindow[i];
        }
    }
    int set(u32 p_nKey, int p_nValue) {
        return quietly([&] { return controller.setParameter(static_cast<int>(p_nKey), p_nValue, true); });
    }
    // Every parameter file there may be.
    std::vector<std::string> files() {
        std::vector<std::string> vecFiles;
        for (const char* const szKind : {"sensor", "sensor-thermal"}) {
            for (u32 i = 0; i <= kFactory; ++i) {
                if (root.exists(parameterFile(i, szKind))) {
                    vecFiles.push_back(szKind + std::to_string(i));
                }
            }
        }
        return vecFiles;
    }
    void expectFree() { EXPECT_FALSE(lockIsHeld()); }
};

// --- What is stored ---

TEST_F(Flush, TheCurrentSchemeIsStoredByteForByte) {
    EXPECT_EQ(0, set(KEY_BRIGHTNESS, -2));
    EXPECT_THAT(files(), IsEmpty()) << "a change alone stores nothing";
    EXPECT_EQ("", outputOf([&] { EXPECT_EQ(0, controller.flush()); }));
    EXPECT_EQ(fileOf(with(records(), KEY_BRIGHTNESS, 0xFFFFFFFEu)), root.read(parameterFile(0)));
    EXPECT_EQ(72u, root.read(parameterFile(0)).size());
    EXPECT_THAT(files(), ElementsAre("sensor0"));
    EXPECT_THAT(camera.transcript(), ElementsAre("ia ch0 set 34 = -2")) << "storing does not speak to the driver";
    EXPECT_EQ("", root.errorLog());
}

TEST_F(Flush, EachSchemeHasAFileOfItsOwn) {
    cached(1, KEY_BRIGHTNESS, 7);
    probe.setCurScheme(1);
    EXPECT_EQ(0, controller.flush());
    EXPECT_THAT(files(), ElementsAre("sensor1"));
    EXPECT_EQ(fileOf(with(records(), KEY_BRIGHTNESS, 7)), root.read(parameterFile(1)));
}

TEST_F(Flush, TheSecondChannelHasFilesOfItsOwnName) {
    controller.setChannelID(2);
    EXPECT_EQ(0, controller.flush());
    probe.setCurScheme(1);
    EXPECT_EQ(0, controller.flush());
    EXPECT_THAT(files(), ElementsAre("sensor-thermal0", "sensor-thermal1"));
    EXPECT_EQ(fileOf(records()), root.read(parameterFile(1, "sensor-thermal")));
}

TEST_F(Flush, OnlyTheSecondChannelHasThem) {
    controller.setChannelID(3);
    EXPECT_EQ(0, controller.flush());
    EXPECT_THAT(files(), ElementsAre("sensor0"));
}

TEST_F(Flush, AnOldFileIsReplacedWhole) {
    root.write(parameterFile(0), std::string(1000, 'x'));
    EXPECT_EQ(0, controller.flush());
    EXPECT_EQ(fileOf(records()), root.read(parameterFile(0)));
}

TEST_F(Flush, TheFactorySchemeIsNotStored) {
    probe.setCurScheme(static_cast<int>(kFactory));
    window(kFactory, {22, 0, 6, 0});
    EXPECT_EQ("", outputOf([&] { EXPECT_EQ(0, controller.flush()); }));
    EXPECT_THAT(files(), IsEmpty());
}

// --- When it is stored ---

TEST_F(Flush, OnlyASchemeWhoseWindowHoldsIsStored) {
    for (const CheckedWindow& stCase : kWindows) {
        SCOPED_TRACE(stCase.what);
        root.write(parameterFile(0), "old");
        window(0, stCase.window);
        EXPECT_EQ(stCase.code, controller.paramCheck());
        EXPECT_EQ(stCase.code, controller.flush());
        EXPECT_EQ(0 == stCase.code ? setAsFile(0) : "old", root.read(parameterFile(0)));
    }
    EXPECT_EQ("", root.errorLog());
    expectFree();
}

TEST_F(Flush, MeantAWindowMayEndAtMidnightAsTwentyFour) {
    window(0, {23, 59, 24, 0});
    EXPECT_EQ(0, controller.paramCheck());
    EXPECT_EQ(0, controller.flush());
    EXPECT_EQ(setAsFile(0), root.read(parameterFile(0)));
}

TEST_F(Flush, MeantMinutesAreNotCheckedByThemselves) {
    window(0, {8, 75, 8, 76});
    EXPECT_EQ(0, controller.paramCheck());
    EXPECT_EQ(0, controller.flush());
    EXPECT_EQ(setAsFile(0), root.read(parameterFile(0)));
}

TEST_F(Flush, AWindowThatIsRejectedStaysInMemoryAndTheFileKeepsTheLastThatHeld) {
    EXPECT_EQ(0, controller.flush());
    EXPECT_EQ(0, set(KEY_SCHEME_END_HOUR, 25));
    EXPECT_EQ(506, controller.flush());
    EXPECT_EQ(fileOf(records()), root.read(parameterFile(0)));
    EXPECT_EQ(25u, probe.valueIn(0, KEY_SCHEME_END_HOUR));
    EXPECT_EQ(0, set(KEY_SCHEME_END_HOUR, 23));
    EXPECT_EQ(0, controller.flush());
    EXPECT_EQ(fileOf(with(records(), KEY_SCHEME_END_HOUR, 23)), root.read(parameterFile(0)));
}

TEST_F(Flush, MeantTheWindowCountsWhateverSwitchingFollows) {
    window(0, {0, 0, 0, 0});
    for (const u32 nMode : {0u, 1u, 2u, 7u}) {
        cached(0, KEY_SCHEME_MODE, nMode);
        EXPECT_EQ(507, controller.flush()) << nMode;
    }
    EXPECT_THAT(files(), IsEmpty());
}

TEST_F(Flush, TheWindowIsThatOfTheCurrentScheme) {
    window(0, {0, 0, 0, 0});
    EXPECT_EQ(507, controller.flush());
    probe.setCurScheme(1);
    EXPECT_EQ(0, controller.flush());
    EXPECT_THAT(files(), ElementsAre("sensor1"));
}

TEST_F(Flush, MeantTheWindowIsReadByPlaceNotByKey) {
    controller.uinit();
    build(1, {{1, 99}, {2, 8}, {3, 0}, {4, 9}, {5, 0}, {KEY_SCHEME_START_HOUR, 99}});
    EXPECT_EQ(0, controller.paramCheck());
    EXPECT_EQ(0, controller.flush());
}

TEST_F(Flush, ASetOfFewerThanFiveRecordsHasAnEmptyWindow) {
    const std::vector<KeyVal> vecFive = {{KEY_SCHEME_MODE, 0},
                                         {KEY_SCHEME_START_HOUR, 8},
                                         {KEY_SCHEME_START_MIN, 0},
                                         {KEY_SCHEME_END_HOUR, 9},
                                         {KEY_SCHEME_END_MIN, 0}};
    for (std::size_t i = 0; i < vecFive.size(); ++i) {
        controller.uinit();
        build(1, {vecFive.begin(), vecFive.begin() + static_cast<std::ptrdiff_t>(i)});
        EXPECT_EQ(507, controller.paramCheck()) << i;
        EXPECT_EQ(507, controller.flush()) << i;
    }
    EXPECT_THAT(files(), IsEmpty());
    controller.uinit();
    build(1, vecFive);
    EXPECT_EQ(0, controller.flush());
    EXPECT_EQ(fileOf(vecFive), root.read(parameterFile(0)));
}

// --- What is said ---

TEST_F(Flush, TheReasonIsShownAtLevelSix) {
    const std::pair<Window, std::string> aCases[] = {
        {{24, 1, 8, 0}, "failed!!!! nParamSchemeStartTime(2401)\n"},
        {{0xFFFFFFFFu, 0, 8, 0}, "failed!!!! nParamSchemeStartTime(-100)\n"},
        {{8, 0, 24, 1}, "failed!!!! nParamSchemeEndTime(2401)\n"},
        {{22, 0, 6, 30}, "failed!!!! nParamSchemeStartTime(2200) nParamSchemeEndTime(630)\n"}};
    for (const auto& [aWindow, strText] : aCases) {
        window(0, aWindow);
        root.debugLevel(6);
        EXPECT_EQ(messages::debug(in("paramCheck"), strText), anyLine(outputOf([&] { controller.paramCheck(); })));
        EXPECT_EQ(messages::debug(in("paramCheck"), strText), anyLine(outputOf([&] { controller.flush(); })));
        root.debugLevel(5);
        EXPECT_EQ("", outputOf([&] { controller.flush(); }));
    }
    window(0, {8, 0, 9, 0});
    root.debugLevel(6);
    EXPECT_EQ("", outputOf([&] { controller.flush(); }));
    EXPECT_EQ("", root.errorLog());
}

// --- A medium that fails ---

TEST_F(Flush, AFullMediumIsReportedKeepsTheOldFileAndGivesZero) {
    std::vector<KeyVal> vecMany = records();
    for (u32 i = 0; vecMany.size() < 10000; ++i) {
        vecMany.push_back({1000000 + i, i});
    }
    controller.uinit();
    build(1, vecMany);
    root.write(parameterFile(0), "old");
    root.debugLevel(6);
    const messages::Place stPlace{"SensorFile.cpp", "keyValToFile"};
    EXPECT_EQ(messages::assertion(stPlace, "nSize == sizeof(KeyVal)*p_nKeyValSum") +
                  messages::detail("nSize(65536) sizeof(KeyVal) = 8, p_nKeyValNum(10000)\n") +
                  messages::error({"SensorFile.cpp", "closeReplaced"},
                                  "file_name(/mnt/mtd/code/config_file/sensor0.cfg) keeps its old content\n"),
              anyLine(outputOf([&] {
                  const FullMedium full(65536);
                  EXPECT_EQ(0, controller.flush());
              })));
    EXPECT_EQ("old", root.read(parameterFile(0)));
    root.debugLevel(1);
    EXPECT_EQ("", outputOf([&] { EXPECT_EQ(0, controller.flush()); }));
    EXPECT_EQ(fileOf(vecMany), root.read(parameterFile(0)));
    expectFree();
}

TEST_F(Flush, AFileThatCannotBeMadeIsReportedAndGivesZero) {
    root.remove("/mnt/mtd/code/config_file");
    const messages::Place stPlace{"SensorFile.cpp", "keyValToFile"};
    EXPECT_EQ(messages::assertion(stPlace, "file.open(file_name, QVFile::modeWrite | QVFile::modeTruncate)") +
                  messages::detail("file_name(/mnt/mtd/code/config_file/sensor0.cfg)\n") +
                  messages::assertion(stPlace, "nSize == sizeof(KeyVal)*p_nKeyValSum") +
                  messages::detail("nSize(-1) sizeof(KeyVal) = 8, p_nKeyValNum(9)\n"),
              anyLine(outputOf([&] { EXPECT_EQ(0, controller.flush()); })));
    root.debugLevel(1, true);
    EXPECT_DEATH(controller.flush(), "SensorFile.cpp:[0-9]+: .*keyValToFile.*Assertion");
}

// --- Without a scheme, without sets ---

TEST_F(Flush, WithoutASchemeThereIsNothingToCheckOrStore) {
    window(0, {0, 0, 0, 0});
    applyNoScheme();
    EXPECT_EQ("", outputOf([&] {
                  EXPECT_EQ(0, controller.paramCheck());
                  EXPECT_EQ(0, controller.flush());
              }));
    EXPECT_THAT(files(), IsEmpty());
}

TEST_F(Flush, TheFactorySetCanBeChecked) {
    probe.setCurScheme(static_cast<int>(kFactory));
    EXPECT_EQ(0, controller.paramCheck());
    window(kFactory, {22, 0, 6, 0});
    EXPECT_EQ(507, controller.paramCheck());
}

TEST_F(Flush, AControllerThatIsNotInitialisedRefusesAndStoresNothing) {
    root.debugLevel(6);
    ISensorController fresh;
    controller.uinit();
    for (ISensorController* const pController : {&fresh, &controller}) {
        EXPECT_EQ(refused("flush"), anyLine(outputOf([&] { EXPECT_EQ(-1, pController->flush()); })));
        EXPECT_EQ("", outputOf([&] { EXPECT_EQ(0, pController->paramCheck()); }));
    }
    EXPECT_THAT(files(), IsEmpty());
    expectFree();
}

// --- The lock ---

// Checking does too: a reset of another thread releases the sets.
TEST_F(Flush, StoringAndCheckingWaitForTheLock) {
    EXPECT_DEATH(
        {
            const QVMutexManager guard(&probe.mutex(), "the test", 7);
            controller.flush();
        },
        kLockedTwice);
    EXPECT_DEATH(
        {
            const QVMutexManager guard(&probe.mutex(), "the test", 7);
            controller.paramCheck();
        },
        kLockedTwice);
    EXPECT_EQ(0, controller.paramCheck());
    expectFree();
}

// --- The mirror ---

class MirrorMode : public Flush {
protected:
    static std::vector<KeyVal> mirrorRecords(u32 p_nMirror) {
        std::vector<KeyVal> vecRecords = records();
        vecRecords.push_back({KEY_MIRROR, p_nMirror});
        return vecRecords;
    }
    MirrorMode() {
        controller.uinit();
        build(kFactory, mirrorRecords(0));
    }
    bool setMirror(int p_nDirection) {
        return quietly([&] { return controller.setMirrorMode(p_nDirection); });
    }
};

TEST_F(MirrorMode, ADirectionIsSetAndTheSchemeStoredAtOnce) {
    cached(0, KEY_BRIGHTNESS, 51);
    EXPECT_EQ("\n", outputOf([&] { EXPECT_TRUE(controller.setMirrorMode(3)); }));
    EXPECT_THAT(camera.transcript(), ElementsAre("video ch1 2384 = 3", "ia ch0 set 2384 = 3"));
    EXPECT_EQ(fileOf(with(mirrorRecords(3), KEY_BRIGHTNESS, 51)), root.read(parameterFile(0)));
    expectFree();
}

TEST_F(MirrorMode, ADirectionThatMemoryHoldsIsNotSentButStored) {
    EXPECT_TRUE(setMirror(0));
    EXPECT_THAT(camera.transcript(), IsEmpty());
    EXPECT_EQ(fileOf(mirrorRecords(0)), root.read(parameterFile(0)));
}

TEST_F(MirrorMode, ADirectionThatFailsIsFalseAndStoresNothing) {
    camera.driverFails(KEY_MIRROR, IA_CMD_OPT_SET, -3);
    EXPECT_FALSE(setMirror(1));
    EXPECT_THAT(files(), IsEmpty());
    EXPECT_EQ(0u, probe.valueIn(0, KEY_MIRROR));
}

// There the walk does not look at what the mirror's handler gives back.
TEST_F(MirrorMode, OnTheSecondChannelADirectionThatFailsIsStoredAllTheSame) {
    controller.setChannelID(2);
    camera.driverFails(KEY_MIRROR, IA_CMD_OPT_SET, -3);
    EXPECT_TRUE(setMirror(1));
    EXPECT_THAT(camera.transcript(), ElementsAre("video ch2 2384 = 1", "ia ch1 set 2384 = 1 failed -3"));
    EXPECT_THAT(files(), ElementsAre("sensor-thermal0"));
    EXPECT_EQ(fileOf(mirrorRecords(1)), root.read(parameterFile(0, "sensor-thermal")));
}

TEST_F(MirrorMode, ASchemeThatCannotBeStoredDoesNotCount) {
    window(0, {0, 0, 0, 0});
    EXPECT_TRUE(setMirror(1));
    EXPECT_THAT(files(), IsEmpty());
    EXPECT_EQ(1u, probe.valueIn(0, KEY_MIRROR));
    probe.setCurScheme(static_cast<int>(kFactory));
    EXPECT_TRUE(setMirror(2));
    EXPECT_THAT(files(), IsEmpty());
}

TEST_F(MirrorMode, TheLockIsTakenForTheChangeAndForTheStoring) {
    std::vector<bool> vecHeld;
    camera.onDriver(KEY_MIRROR, IA_CMD_OPT_SET, [&](int, void*) {
        vecHeld.push_back(lockIsHeld());
        return IA_OK;
    });
    EXPECT_TRUE(setMirror(1));
    EXPECT_THAT(vecHeld, ElementsAre(true));
    expectFree();
    EXPECT_DEATH(
        {
            const QVMutexManager guard(&probe.mutex(), "the test", 7);
            controller.setMirrorMode(2);
        },
        kLockedTwice);
}

TEST_F(MirrorMode, AControllerThatIsNotInitialisedRefuses) {
    root.debugLevel(6);
    controller.uinit();
    EXPECT_EQ(refused("setParameter"), anyLine(outputOf([&] { EXPECT_FALSE(controller.setMirrorMode(1)); })));
    EXPECT_THAT(camera.transcript(), IsEmpty());
    EXPECT_THAT(files(), IsEmpty());
}

}  // namespace
