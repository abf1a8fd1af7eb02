// Stories of a camera that starts: out of the box, after a restart, and with files of another version.
#include "tests/integration/Story.h"

using testing::Each;
using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;

namespace {

class StartStory : public Story {
protected:
    void SetUp() override { ASSERT_NO_FATAL_FAILURE(layOut("")); }
};

TEST_F(StartStory, OutOfTheBoxTheCameraWritesItsFilesAndSendsItsFactorySet) {
    const auto pChannel = channel(0);
    EXPECT_FALSE(host("getSensorStatus", [&] { return pChannel->controller.getSensorStatus(); }));
    start(*pChannel);
    EXPECT_THAT(calls(), Each(EndsWith(" = 0")));
    // Every parameter of the set is sent, but the five of the schedule, the two that stand for what is not offered, and
    // those of the light that is not the chosen one.
    EXPECT_EQ(pChannel->probe.keyValSum(), stored("/mnt/mtd/code/config_file/sensor3.cfg").size());
    EXPECT_TRUE(host("getSensorStatus", [&] { return pChannel->controller.getSensorStatus(); }));
    EXPECT_EQ(334u, host("getSensorType", [&] { return pChannel->controller.getSensorType(); }));
    EXPECT_EQ(0, pChannel->probe.curScheme());
    set(*pChannel, KEY_BRIGHTNESS, 60);
    EXPECT_THAT(calls(), ElementsAre("ia ch0 set 34 60 = 0"));
    set(*pChannel, KEY_BRIGHTNESS, 60);
    EXPECT_THAT(calls(), IsEmpty()) << "the value is in force already";
    uinit(*pChannel);
    expectTranscript("first-start");
}

TEST_F(StartStory, AfterARestartTheStoredValuesAreInForceAndTheUnstoredOnesAreGone) {
    const auto pFirst = channel(0);
    untold([&] { pFirst->init(); });
    set(*pFirst, "(34,61)(2384,1)(145,25)(170,1)");
    flush(*pFirst);
    scheme(*pFirst, 2);
    set(*pFirst, "(34,77)(2368,1)");
    flush(*pFirst);
    set(*pFirst, KEY_CONTRAST, 99);
    uinit(*pFirst);

    world("the camera is switched off and on again", [&] { camera.powerCycle(); });
    const auto pChannel = channel(0);
    start(*pChannel);
    EXPECT_EQ(0, pChannel->probe.curScheme());
    EXPECT_THAT(calls(), testing::Contains("ia ch0 set 34 61 = 0"));
    EXPECT_THAT(calls(), testing::Contains("ia ch0 set 145 25 40 0 = 0"));
    EXPECT_THAT(calls(), Each(EndsWith(" = 0")));
    scheme(*pChannel, 2);
    EXPECT_THAT(setsOf("ia ch0 set 34 "), ElementsAre("ia ch0 set 34 77 = 0"));
    EXPECT_EQ(50u, pChannel->probe.valueIn(2, KEY_CONTRAST)) << "was never stored";
    expectTranscript("restart");
}

TEST_F(StartStory, FilesOfAnotherVersionAreWipedAndWrittenAnew) {
    untold([&] {
        const auto pFirst = channel(0);
        pFirst->init();
    });
    world("the files become those of version 7, with values of their own", [&] {
        for (const char* szName : {"/mnt/mtd/code/config_file/sensor0.cfg", "/mnt/mtd/code/config_file/sensor3.cfg"}) {
            auto vecRecords = stored(szName);
            change(vecRecords, KEY_BRIGHTNESS, 77);
            change(vecRecords, KEY_SCHEME_MODE, 2);
            store(szName, vecRecords);
        }
        root.write("/mnt/mtd/code/config_file/sensor-thermal0.cfg", std::string(16, '\1'));
        root.write("/mnt/mtd/code/config_file/snsversion.cfg", std::string("\7\0\0\0", 4));
        root.write("/mnt/mtd/code/config_file/network.cfg", "of another part");
    });
    world("the debug level becomes 4", [&] { root.debugLevel(4); });
    const auto pChannel = channel(0);
    start(*pChannel);
    EXPECT_EQ(50u, pChannel->probe.valueIn(0, KEY_BRIGHTNESS));
    EXPECT_FALSE(pChannel->probe.dnSchemeSwitch());
    EXPECT_FALSE(root.exists("/mnt/mtd/code/config_file/sensor-thermal0.cfg"));
    EXPECT_TRUE(root.exists("/mnt/mtd/code/config_file/network.cfg"));
    EXPECT_TRUE(root.exists("/mnt/mtd/code/factory_setting/machineinfo.ini"));
    EXPECT_EQ(std::string("\x08\0\0\0", 4), root.read("/mnt/mtd/code/config_file/snsversion.cfg"));

    uinit(*pChannel);
    world("the version file is lost", [&] { root.remove("/mnt/mtd/code/config_file/snsversion.cfg"); });
    const auto pAgain = channel(0);
    start(*pAgain);
    EXPECT_EQ(std::string("\x08\0\0\0", 4), root.read("/mnt/mtd/code/config_file/snsversion.cfg"));
    expectTranscript("version-change");
}

}  // namespace
