// Stories of cameras with a thermal sensor, which is always channel 2.
#include "tests/integration/Story.h"

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class ThermalStory : public Story {
protected:
    // What the thermal channel hands to the video module, and what it does not.
    void useThermalKeys(Channel& p_objThermal) {
        set(p_objThermal, KEY_NONE_COLOR_MODE, 3);
        EXPECT_THAT(setsOf("ia "), IsEmpty()) << "the palette is the video module's";
        set(p_objThermal, KEY_TEMPERATURE_STRIP_SWITCH, 1);
        EXPECT_THAT(setsOf("ia "), IsEmpty());
        set(p_objThermal, KEY_MIRROR, 2);
        set(p_objThermal, KEY_ANTI_SHAKE_SWITCH, 1);
        set(p_objThermal, KEY_IMAGES_REGULATE, 70);
        set(p_objThermal, KEY_CAP_OFF_ADJ_H_CUR, -5);
        set(p_objThermal, "(8212,1)(8231,1)");
    }
};

TEST_F(ThermalStory, TwoSensorsAreTwoChannelsWithFilesOfTheirOwn) {
    ASSERT_NO_FATAL_FAILURE(layOut("thermal"));
    ASSERT_EQ(2u, modules.size());
    const auto pVisible = channel(0);
    const auto pThermal = channel(1);
    host("init of channel 1", [&] { return pVisible->init(); });
    host("init of channel 2", [&] { return pThermal->init(); });
    EXPECT_EQ(2u, pThermal->probe.cameraID());
    useThermalKeys(*pThermal);

    fault("cmd=2384 ch=1 opt=set result=-5 times=1");
    EXPECT_EQ(0, set(*pThermal, KEY_MIRROR, 1)) << "nobody looks at the driver's answer on the second channel";
    EXPECT_EQ(1u, pThermal->probe.valueIn(0, KEY_MIRROR));
    set(*pVisible, KEY_MIRROR, 1);
    EXPECT_THAT(calls(), ElementsAre("video ch1 2384 1 = 0", "ia ch0 set 2384 1 = 0"));

    host("flush of channel 2", [&] { return pThermal->controller.flush(); });
    scheme(*pThermal, 1);
    EXPECT_EQ(0, pVisible->probe.curScheme());
    EXPECT_EQ(1, pThermal->probe.curScheme());
    scheme(*pThermal, 0);

    // The files of both channels lie in one folder, and a reset wipes it.
    host("resetParameters of channel 1", [&] { return pVisible->controller.resetParameters(); });
    EXPECT_TRUE(root.exists("/mnt/mtd/code/config_file/sensor0.cfg"));
    EXPECT_FALSE(root.exists("/mnt/mtd/code/config_file/sensor-thermal0.cfg"));
    EXPECT_EQ(70u, pThermal->probe.valueIn(0, KEY_IMAGES_REGULATE)) << "the other channel keeps what it has in memory";
    host("flush of channel 2", [&] { return pThermal->controller.flush(); });
    EXPECT_EQ(70u, valueOf(stored("/mnt/mtd/code/config_file/sensor-thermal0.cfg"), KEY_IMAGES_REGULATE));
    host("uinit of channel 2", [&] { pThermal->controller.uinit(); });
    host("uinit of channel 1", [&] { pVisible->controller.uinit(); });
    expectTranscript("two-channels");
}

TEST_F(ThermalStory, OneThermalSensorIsChannelTwoOfTheDriverAndOneOfTheVideoModule) {
    ASSERT_NO_FATAL_FAILURE(layOut("thermal-only"));
    ASSERT_EQ(1u, modules.size());
    const auto pChannel = channel(0);  // the host says 1
    start(*pChannel);
    EXPECT_EQ(2u, pChannel->probe.cameraID());
    EXPECT_THAT(setsOf("ia ch0"), IsEmpty());
    EXPECT_THAT(setsOf("video ch2"), IsEmpty());
    EXPECT_TRUE(root.exists("/mnt/mtd/code/config_file/sensor-thermal0.cfg"));
    EXPECT_FALSE(root.exists("/mnt/mtd/code/config_file/sensor0.cfg"));
    useThermalKeys(*pChannel);
    flush(*pChannel);
    set(*pChannel, KEY_IMAGES_REGULATE, 10);
    host("resetToLastParameters", [&] { return pChannel->controller.resetToLastParameters(); });
    EXPECT_THAT(calls(), ElementsAre("ia ch1 set 8206 70 = 0"));
    EXPECT_NE("", style(*pChannel));
    uinit(*pChannel);
    expectTranscript("thermal-only");
}

}  // namespace
