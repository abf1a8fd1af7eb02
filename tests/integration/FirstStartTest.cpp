// Every kind of camera of the sample tree comes up, keeps its schemes in files and takes them back.
#include "tests/integration/WholeCamera.h"

#include "sensor/config/SensorFile.h"

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

namespace {

class EveryCamera : public WholeCamera, public testing::WithParamInterface<const char*> {};

INSTANTIATE_TEST_SUITE_P(Variants, EveryCamera,
                         testing::Values("", "box", "infrared", "thermal", "thermal-only", "plate", "plate-limited",
                                         "dome", "dome-outdoor", "dome-thermal", "panorama", "panorama-two", "fisheye"),
                         [](const auto& p_stInfo) {
                             std::string strName = *p_stInfo.param ? p_stInfo.param : "bullet";
                             for (char& cByte : strName) {
                                 cByte = '-' == cByte ? '_' : cByte;
                             }
                             return strName;
                         });

TEST_P(EveryCamera, StartsOnAnEmptyFlashWithoutAFailedCallOrAnAssertion) {
    ASSERT_NO_FATAL_FAILURE(layOut(GetParam()));
    for (std::size_t i = 0; i < modules.size(); ++i) {
        const auto pChannel = channel(i);
        ASSERT_TRUE(pChannel->init());
        EXPECT_TRUE(pChannel->controller.getSensorStatus());
        EXPECT_THAT(failures(), IsEmpty());
        EXPECT_EQ("", root.errorLog());
        EXPECT_GT(pChannel->probe.keyValSum(), 20u);
        EXPECT_EQ(0, pChannel->probe.curScheme());
        // Every scheme is stored, and the stored bytes are the factory set.
        const std::string strKind = 2 == pChannel->probe.cameraID() ? "sensor-thermal" : "sensor";
        const u32 nSchemes = pChannel->probe.sysConf().nSchemeSum;
        for (u32 nScheme = 0; nScheme < nSchemes; ++nScheme) {
            const auto vecStored = stored("/mnt/mtd/code/config_file/" + strKind + std::to_string(nScheme) + ".cfg");
            ASSERT_EQ(pChannel->probe.keyValSum(), vecStored.size());
            EXPECT_EQ(0u, vecStored[0].value) << "switching starts off";
            EXPECT_EQ(8001u, vecStored[1].key);
            EXPECT_EQ(8004u, vecStored[4].key);
        }
    }
    EXPECT_EQ(std::string("\x08\0\0\0", 4), root.read("/mnt/mtd/code/config_file/snsversion.cfg"));
}

TEST_P(EveryCamera, TakesEveryKeyOfItsSetOneByOne) {
    ASSERT_NO_FATAL_FAILURE(layOut(GetParam()));
    for (std::size_t i = 0; i < modules.size(); ++i) {
        const auto pChannel = channel(i);
        ASSERT_TRUE(pChannel->init());
        const std::vector<KeyVal> vecSet(pChannel->probe.set(0), pChannel->probe.set(0) + pChannel->probe.keyValSum());
        for (const KeyVal& stRecord : vecSet) {
            EXPECT_EQ(0, pChannel->controller.setParameter(static_cast<int>(stRecord.key),
                                                           static_cast<int>(stRecord.value), false))
                << stRecord.key << " = " << stRecord.value;
        }
        EXPECT_THAT(failures(), IsEmpty());
        EXPECT_EQ("", root.errorLog());
    }
}

TEST_P(EveryCamera, ShowsAStyleDocumentWithEveryParameterOfItsSet) {
    ASSERT_NO_FATAL_FAILURE(layOut(GetParam()));
    for (std::size_t i = 0; i < modules.size(); ++i) {
        const auto pChannel = channel(i);
        ASSERT_TRUE(pChannel->init());
        const std::string strStyle = pChannel->controller.getUIStyleFile();
        for (u32 nRecord = 0; nRecord < pChannel->probe.keyValSum(); ++nRecord) {
            EXPECT_THAT(strStyle, HasSubstr("id=\"" + std::to_string(pChannel->probe.set(0)[nRecord].key) + "\""));
        }
    }
}

class BulletCamera : public WholeCamera {
protected:
    void SetUp() override { ASSERT_NO_FATAL_FAILURE(layOut("")); }
};

TEST_F(BulletCamera, SendsTheWholeFactorySetAtItsFirstStart) {
    const auto pChannel = channel(0);
    pChannel->init();
    const auto vecTold = told();
    const u32 nBrightness = pChannel->probe.valueIn(0, KEY_BRIGHTNESS);
    EXPECT_THAT(vecTold, Contains("ia ch0 set 34 " + std::to_string(nBrightness) + " = 0"));
    EXPECT_THAT(vecTold, Contains("video ch1 2370 0 = 0"));
    EXPECT_THAT(vecTold, Contains("video ch1 2370 1 = 0"));
    EXPECT_THAT(vecTold, Not(Contains(HasSubstr(" set 1616 ")))) << "one-shot actions are not replayed";
}

TEST_F(BulletCamera, TakesItsStoredSchemesBackAfterARestart) {
    {
        const auto pChannel = channel(0);
        pChannel->init();
    }
    const std::string strName = "/mnt/mtd/code/config_file/sensor2.cfg";
    auto vecRecords = stored(strName);
    change(vecRecords, KEY_BRIGHTNESS, 77);
    store(strName, vecRecords);
    told();

    camera.powerCycle();
    const auto pChannel = channel(0);
    pChannel->init();
    EXPECT_EQ(77u, pChannel->probe.valueIn(2, KEY_BRIGHTNESS));
    EXPECT_EQ(77u, valueOf(stored(strName), KEY_BRIGHTNESS)) << "the file is left alone";
    told();
    EXPECT_TRUE(pChannel->controller.setParamScheme(2));
    EXPECT_THAT(told(), ElementsAre("ia ch0 set 34 77 = 0"));
}

TEST_F(BulletCamera, OfAnotherVersionStartsWithFactorySchemes) {
    {
        const auto pChannel = channel(0);
        pChannel->init();
    }
    auto vecRecords = stored("/mnt/mtd/code/config_file/sensor1.cfg");
    change(vecRecords, KEY_BRIGHTNESS, 77);
    store("/mnt/mtd/code/config_file/sensor1.cfg", vecRecords);
    root.write("/mnt/mtd/code/config_file/sensor-thermal0.cfg", "of the other channel");
    ASSERT_EQ(0, setVersion(7));
    root.debugLevel(4);
    const auto pChannel = channel(0);
    const std::string strOut = outputOf([&] { pChannel->init(); });
    EXPECT_THAT(strOut, HasSubstr("[sensor warn] file:ISensorController.cpp fun:"));
    EXPECT_THAT(strOut,
                HasSubstr("line:89\ncheck the sensor version,   local(7) --> libsensordll.so(8), source the cmd: "
                          "rm -rf /mnt/mtd/code/config*/sensor*\n"));
    EXPECT_NE(77u, pChannel->probe.valueIn(1, KEY_BRIGHTNESS));
    EXPECT_FALSE(root.exists("/mnt/mtd/code/config_file/sensor-thermal0.cfg"));
    EXPECT_TRUE(root.exists("/mnt/mtd/code/factory_setting/machineinfo.ini"));
}

TEST_F(BulletCamera, SetsParametersSinglyByNameAndAsText) {
    const auto pChannel = channel(0);
    pChannel->init();
    told();
    EXPECT_EQ(0, pChannel->controller.setParameter(KEY_BRIGHTNESS, 61, true));
    EXPECT_THAT(told(), ElementsAre("ia ch0 set 34 61 = 0"));
    EXPECT_EQ(0, pChannel->controller.setParameter(KEY_BRIGHTNESS, 61, true));
    EXPECT_THAT(told(), IsEmpty());
    EXPECT_EQ(0, pChannel->controller.setParameter(KEY_BRIGHTNESS, 61, false));
    EXPECT_THAT(told(), ElementsAre("ia ch0 set 34 61 = 0"));

    int nOn = 1;
    EXPECT_TRUE(pChannel->controller.setDefogSwitch(nOn));
    EXPECT_THAT(told(), ElementsAre("ia ch0 set 2400 1 = 0"));
    EXPECT_EQ(0, pChannel->controller.setParameters("(34,40)(2353,41)(2337,42)", true));
    EXPECT_THAT(told(), ElementsAre("ia ch0 set 34 40 = 0", "ia ch0 set 2353 41 = 0", "ia ch0 set 2337 42 = 0"));
    EXPECT_EQ(40u, pChannel->probe.valueIn(0, KEY_BRIGHTNESS));
}

TEST_F(BulletCamera, StopsAListAtTheFirstValueThatTheDriverRefuses) {
    const auto pChannel = channel(0);
    pChannel->init();
    told();
    EXPECT_EQ(-2353, pChannel->controller.setParameters("(34,40)(2353,1000)(2337,42)", true));
    EXPECT_THAT(told(), ElementsAre("ia ch0 set 34 40 = 0", "ia ch0 set 2353 1000 = -5"));
    EXPECT_EQ(40u, pChannel->probe.valueIn(0, KEY_BRIGHTNESS));
    EXPECT_NE(1000u, pChannel->probe.valueIn(0, KEY_CONTRAST));
}

TEST_F(BulletCamera, KeepsInfraredAndWhiteLightApart) {
    const auto pChannel = channel(0);
    pChannel->init();
    pChannel->controller.setIRSwitch(0);
    EXPECT_TRUE(pChannel->controller.setWhiteSwitch(1));
    told();
    EXPECT_TRUE(pChannel->controller.setIRSwitch(1));
    EXPECT_THAT(told(), ElementsAre("ia ch0 set 168 0 = 0", "ia ch0 set 160 1 = 0"));
    EXPECT_EQ(0u, pChannel->probe.valueIn(0, KEY_WHITE_SWITCH));
    EXPECT_EQ(1u, pChannel->probe.valueIn(0, KEY_IR_SWITCH));
}

TEST_F(BulletCamera, MovesItsLens) {
    const auto pChannel = channel(0);
    pChannel->init();
    seconds(60);
    told();
    EXPECT_TRUE(pChannel->controller.setZoomValue(20000));
    int nStatus = -1;
    EXPECT_TRUE(pChannel->controller.getCmdExecStatus(1568, nStatus));
    EXPECT_EQ(IA_EXEC_RUNNING, nStatus);
    seconds(60);
    EXPECT_TRUE(pChannel->controller.getCmdExecStatus(1568, nStatus));
    EXPECT_EQ(IA_EXEC_DONE, nStatus);
    int nPosition = 0;
    int nRatio = 0;
    EXPECT_TRUE(pChannel->controller.getZoomValue(nPosition, nRatio));
    EXPECT_EQ(20000, nPosition);
    EXPECT_EQ(1442, nRatio);
}

TEST_F(BulletCamera, OffersNoWideDynamicRangeAtFiftyFrames) {
    AVStreamParam stStream;
    stStream.nFrameRate = 50;
    stStream.nVideoWidth = 1920;
    stStream.nVideoHeight = 1080;
    camera.video().setStreams(1, {stStream});
    const auto pChannel = channel(0);
    pChannel->init();
    bool bShow = true;
    EXPECT_TRUE(pChannel->controller.getShowWDRFalg(bShow));
    EXPECT_FALSE(bShow);
    told();
    int nOn = 1;
    EXPECT_TRUE(pChannel->controller.setWDRSwitch(nOn));
    EXPECT_THAT(told(), IsEmpty());
    EXPECT_EQ(0u, pChannel->probe.valueIn(0, KEY_WDR_MODE));
}

TEST_F(BulletCamera, StyleFollowsTheRangesOfTheDriver) {
    const auto pChannel = channel(0);
    pChannel->init();
    const std::string strBefore = pChannel->controller.getUIStyleFile();
    int nOn = 1;
    EXPECT_TRUE(pChannel->controller.setWDRSwitch(nOn));
    const std::string strAfter = pChannel->controller.getUIStyleFile();
    EXPECT_LT(strAfter.size(), strBefore.size()) << "with wide dynamic range fewer shutters are legal";
}

}  // namespace
