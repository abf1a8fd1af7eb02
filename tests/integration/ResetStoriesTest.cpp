// Stories of a camera that goes back to its factory settings.
#include "tests/integration/Story.h"

using testing::Contains;
using testing::ElementsAre;

namespace {

class ResetStory : public Story {
protected:
    void SetUp() override { ASSERT_NO_FATAL_FAILURE(layOut("")); }

    // A camera in use, whose module configuration then becomes that of a camera of three schemes without a zoom.
    void use(Channel& p_objChannel) {
        untold([&] { p_objChannel.init(); });
        scheme(p_objChannel, 3);
        set(p_objChannel, KEY_BRIGHTNESS, 13);
        flush(p_objChannel);
        scheme(p_objChannel, 0);
        set(p_objChannel, "(34,11)(2353,12)(8000,2)");
        flush(p_objChannel);
        mode(p_objChannel, 1);
        light("0.5");
        pass(8);
        EXPECT_EQ(1, p_objChannel.probe.curScheme());
        world("the module configuration gets three schemes and a fixed lens", [&] {
            const std::string strName = "/hd1/moduleConfig/moduleConfig.xml";
            std::string strConfig = root.read(strName);
            const std::string strOld = "(max_scheme=4)(isInfrared=1)(lightKind=dual)(lensType=motor)";
            strConfig.replace(strConfig.find(strOld), strOld.size(),
                              "(max_scheme=3)(isInfrared=1)(lightKind=dual)(lensType=fixed)");
            root.write(strName, strConfig);
        });
    }

    void expectFactorySettings(Channel& p_objChannel) {
        EXPECT_EQ(0, p_objChannel.probe.curScheme());
        EXPECT_EQ(0u, p_objChannel.probe.paramMode());
        EXPECT_FALSE(p_objChannel.probe.dnSchemeSwitch());
        EXPECT_EQ(50u, p_objChannel.probe.valueIn(0, KEY_BRIGHTNESS));
        EXPECT_EQ(50u, valueOf(stored("/mnt/mtd/code/config_file/sensor0.cfg"), KEY_BRIGHTNESS));
        EXPECT_EQ(0u, valueOf(stored("/mnt/mtd/code/config_file/sensor0.cfg"), KEY_SCHEME_MODE));
        EXPECT_TRUE(root.exists("/mnt/mtd/code/factory_setting/machineinfo.ini"));
    }

    void liveOn(Channel& p_objChannel) {
        set(p_objChannel, KEY_BRIGHTNESS, 33);
        EXPECT_THAT(calls(), ElementsAre("ia ch0 set 34 33 = 0"));
        set(p_objChannel, KEY_SCHEME_MODE, 2);
        mode(p_objChannel, 1);
        pass(1);
        EXPECT_EQ(1, p_objChannel.probe.curScheme()) << "the thread is alive";
        uinit(p_objChannel);
    }
};

TEST_F(ResetStory, AQuietCameraKeepsTheModuleConfigurationThatItHas) {
    const auto pChannel = channel(0);
    use(*pChannel);
    EXPECT_TRUE(host("resetParameters", [&] { return pChannel->controller.resetParameters(); }));
    expectFactorySettings(*pChannel);
    EXPECT_EQ(4u, pChannel->probe.sysConf().nSchemeSum);
    EXPECT_EQ(50u, valueOf(stored("/mnt/mtd/code/config_file/sensor3.cfg"), KEY_BRIGHTNESS));
    liveOn(*pChannel);
    expectTranscript("reset-quiet");
}

TEST_F(ResetStory, AVerboseCameraReadsItsModuleConfigurationAgain) {
    const auto pChannel = channel(0);
    use(*pChannel);
    world("the debug level becomes 6", [&] { root.debugLevel(6); });
    EXPECT_TRUE(host("resetParameters", [&] { return pChannel->controller.resetParameters(); }));
    world("the debug level becomes 1", [&] { root.debugLevel(1); });
    expectFactorySettings(*pChannel);
    EXPECT_EQ(3u, pChannel->probe.sysConf().nSchemeSum);
    EXPECT_FALSE(root.exists("/mnt/mtd/code/config_file/sensor3.cfg"));
    liveOn(*pChannel);
    expectTranscript("reset-verbose");
}

}  // namespace
