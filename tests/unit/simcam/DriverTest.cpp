#include "SimulatedCamera.h"

#include <climits>

#include <array>

namespace {

class Driver : public SimulatedCamera {};

}  // namespace

TEST_F(Driver, KeepsAValueOnEachChannelForItself) {
    for (int nChannel = 0; nChannel < simcam::kMaxChannels; ++nChannel) {
        EXPECT_EQ(IA_OK, set(34, 10 + nChannel, nChannel));
    }
    for (int nChannel = 0; nChannel < simcam::kMaxChannels; ++nChannel) {
        EXPECT_EQ(10 + nChannel, get(34, nChannel));
    }
}

TEST_F(Driver, HasNoOtherChannels) {
    for (const int nChannel : {-1, 4, INT_MAX, INT_MIN}) {
        EXPECT_EQ(IA_ERR_UNSUPPORTED, set(34, 1, nChannel));
        EXPECT_EQ(kUntouched, get(34, nChannel));
    }
}

TEST_F(Driver, HasOnlyTheChannelsItWasMadeWith) {
    const simcam::Camera objSmall({2, 100});
    EXPECT_EQ(IA_OK, set(34, 1, 1));
    EXPECT_EQ(IA_ERR_UNSUPPORTED, set(34, 1, 2));
}

TEST_F(Driver, HasOneToFourChannels) {
    EXPECT_EQ(4, camera.driver().channels());
    EXPECT_EQ(1, simcam::Camera({0, 100}).driver().channels());
    EXPECT_EQ(4, simcam::Camera({99, 100}).driver().channels());
    simcam::Camera objNone({-3, 100});
    EXPECT_EQ(1, objNone.driver().channels());
    EXPECT_EQ(0, objNone.video().notifyChange(1, 34, 1));
    EXPECT_EQ(-1, objNone.video().notifyChange(2, 34, 1));
}

TEST_F(Driver, RefusesACommandThatDoesNotExist) {
    EXPECT_EQ(IA_ERR_UNSUPPORTED, set(17, 1));
    EXPECT_EQ(kUntouched, get(0));
    EXPECT_EQ(kUntouched, get(0xFFFFFFFFu));
}

TEST_F(Driver, RefusesACommandWhoseSupportWasTakenAway) {
    EXPECT_TRUE(camera.driver().setSupported(1, 2400, false));
    EXPECT_EQ(IA_ERR_UNSUPPORTED, set(2400, 1, 1));
    EXPECT_EQ(IA_OK, set(2400, 1, 0)) << "another channel";
    EXPECT_FALSE(camera.driver().isSupported(1, 2400));
    camera.powerCycle();
    EXPECT_EQ(IA_ERR_UNSUPPORTED, set(2400, 1, 1)) << "support is how the camera is built";
    EXPECT_TRUE(camera.driver().setSupported(1, 2400, true));
    EXPECT_EQ(IA_OK, set(2400, 1, 1));
    EXPECT_FALSE(camera.driver().setSupported(0, 17, false));
    EXPECT_FALSE(camera.driver().setSupported(4, 2400, false));
}

TEST_F(Driver, RefusesNullData) {
    for (u32 nOption = 0; nOption <= IA_CMD_OPT_GET_EXEC_STATUS; ++nOption) {
        EXPECT_EQ(IA_ERR_NO_DATA, ia_ioctrl_v2(0, 34, nOption, nullptr)) << nOption;
    }
    EXPECT_EQ(IA_ERR_NO_DATA, ia_ioctrl_v2(0, 4112, IA_CMD_OPT_GET, nullptr));
    EXPECT_EQ(IA_ERR_UNSUPPORTED, ia_ioctrl_v2(0, 17, IA_CMD_OPT_GET, nullptr)) << "support is asked first";
}

TEST_F(Driver, RefusesAnOptionThatDoesNotExist) {
    int nValue = 7;
    EXPECT_EQ(IA_ERR_UNSUPPORTED, ia_ioctrl_v2(0, 34, 5, &nValue));
    EXPECT_EQ(IA_ERR_UNSUPPORTED, ia_ioctrl_v2(0, 34, 0xFFFFFFFFu, &nValue));
    EXPECT_EQ(7, nValue);
}

TEST_F(Driver, RefusesToSetWhatOnlyTheDeviceChanges) {
    for (const u32 nCommand : {1606u, 1648u, 2496u, 4112u}) {
        std::array<char, 64> arrData{};
        EXPECT_EQ(IA_ERR_UNSUPPORTED, ia_ioctrl_v2(0, nCommand, IA_CMD_OPT_SET, arrData.data())) << nCommand;
    }
}

TEST_F(Driver, RecordsKnowNoRange) {
    ia_dynamic_params_attr_st stRange = {};
    for (const u32 nCommand : {1606u, 2496u, 2816u, 4112u}) {
        EXPECT_EQ(IA_ERR_UNSUPPORTED, ia_ioctrl_v2(0, nCommand, IA_CMD_OPT_GET_PARAM_RNAGE, &stRange)) << nCommand;
        EXPECT_EQ(IA_ERR_UNSUPPORTED, ia_ioctrl_v2(0, nCommand, IA_CMD_OPT_CORRECT_PARAM, &stRange)) << nCommand;
    }
}

TEST_F(Driver, PowersUpWithItsOwnValues) {
    set(34, 99);
    setThresholds(145, 11, 77);
    camera.powerCycle();
    EXPECT_EQ(50, get(34));
    EXPECT_EQ(20, get(145));
}

TEST_F(Driver, VersionIsATextOfAtMostFiftyBytes) {
    std::array<char, 52> arrText;
    arrText.fill('#');
    camera.driver().setVersionText(0, std::string(80, 'v'));
    ASSERT_EQ(IA_OK, ia_ioctrl_v2(0, 2496, IA_CMD_OPT_GET, arrText.data()));
    EXPECT_EQ(std::string(49, 'v'), arrText.data());
    EXPECT_EQ('#', arrText[50]);
    EXPECT_EQ('#', arrText[51]);
    camera.driver().setVersionText(0, std::string("ab\0cd", 5));
    ASSERT_EQ(IA_OK, ia_ioctrl_v2(0, 2496, IA_CMD_OPT_GET, arrText.data()));
    EXPECT_STREQ("ab", arrText.data());
    EXPECT_EQ('v', arrText[3]) << "bytes behind the terminator stay";
    EXPECT_FALSE(camera.driver().setVersionText(9, "x"));
}

TEST_F(Driver, VersionNamesTheSensor) {
    std::array<char, 50> arrText{};
    ASSERT_EQ(IA_OK, ia_ioctrl_v2(2, 2496, IA_CMD_OPT_GET, arrText.data()));
    EXPECT_STREQ("SIMCAM 1.0 sensor 3", arrText.data());
}

TEST_F(Driver, SensorCheckReadsWhatItWrote) {
    ia_sensor_check_st stCheck = {7, 0, 1234, 55};
    ASSERT_EQ(IA_OK, ia_ioctrl_v2(0, 2816, IA_CMD_OPT_SET, &stCheck));
    EXPECT_EQ(55, stCheck.result) << "a write has no result";
    stCheck = {7, 2, 0, 0};
    ASSERT_EQ(IA_OK, ia_ioctrl_v2(0, 2816, IA_CMD_OPT_GET, &stCheck));
    EXPECT_EQ(1234, stCheck.result);
    stCheck = {0, 2, 0, 0};
    ASSERT_EQ(IA_OK, ia_ioctrl_v2(0, 2816, IA_CMD_OPT_GET, &stCheck));
    EXPECT_EQ(0x385, stCheck.result) << "what the sensor says it is";
    camera.powerCycle();
    stCheck = {7, 2, 0, 0};
    ASSERT_EQ(IA_OK, ia_ioctrl_v2(0, 2816, IA_CMD_OPT_GET, &stCheck));
    EXPECT_EQ(0, stCheck.result);
}

TEST_F(Driver, SensorCheckHas256Registers) {
    for (const int nRegister : {-1, 256, INT_MAX, INT_MIN}) {
        ia_sensor_check_st stCheck = {nRegister, 2, 0, 9};
        EXPECT_EQ(IA_ERR_INVALID_VALUE, ia_ioctrl_v2(0, 2816, IA_CMD_OPT_GET, &stCheck)) << nRegister;
        EXPECT_EQ(IA_ERR_INVALID_VALUE, ia_ioctrl_v2(0, 2816, IA_CMD_OPT_SET, &stCheck)) << nRegister;
        EXPECT_EQ(9, stCheck.result);
    }
    ia_sensor_check_st stCheck = {255, 0, 1, 0};
    EXPECT_EQ(IA_OK, ia_ioctrl_v2(0, 2816, IA_CMD_OPT_SET, &stCheck));
}

TEST_F(Driver, ListsTheDynamicCommands) {
    ia_dynamic_params_cmds_st stList;
    std::fill_n(reinterpret_cast<unsigned char*>(&stList), sizeof(stList), static_cast<unsigned char>(0xAA));
    ASSERT_EQ(IA_OK, ia_ioctrl_v2(0, IA_CMD_DYNAMIC_PARAMS_CMDS_GET, IA_CMD_OPT_GET, &stList));
    ASSERT_EQ(4, stList.cmd_cnt);
    EXPECT_EQ(std::vector<u32>({49, 50, 82, 1537}), std::vector<u32>(stList.cmd_list, stList.cmd_list + 4));
    camera.driver().setSupported(0, 82, false);
    ASSERT_EQ(IA_OK, ia_ioctrl_v2(0, IA_CMD_DYNAMIC_PARAMS_CMDS_GET, IA_CMD_OPT_GET, &stList));
    EXPECT_EQ(3, stList.cmd_cnt);
}

TEST_F(Driver, AWatcherLeavesNoTrace) {
    int nValue = 0;
    EXPECT_TRUE(camera.driver().value(0, 34, nValue));
    EXPECT_EQ(50, nValue);
    EXPECT_FALSE(camera.driver().value(4, 34, nValue));
    EXPECT_FALSE(camera.driver().value(0, 2496, nValue)) << "no 32-bit value";
    EXPECT_FALSE(camera.driver().value(0, 17, nValue));
    ia_dynamic_params_attr_st stRange = {};
    EXPECT_TRUE(camera.driver().range(0, 49, stRange));
    EXPECT_EQ(7, stRange.min_val);
    EXPECT_FALSE(camera.driver().range(0, 2496, stRange));
    double dCelsius = 0.0;
    EXPECT_TRUE(camera.driver().temperature(0, dCelsius));
    EXPECT_FALSE(camera.driver().temperature(-1, dCelsius));
    simcam::LensState stLens;
    EXPECT_FALSE(camera.driver().lens(4, stLens));
    EXPECT_EQ(0u, camera.transcript().total());
}

TEST_F(Driver, NewestCameraIsTheOneThatIsReached) {
    {
        simcam::Camera objOther;
        set(34, 77);
        EXPECT_EQ(0u, camera.transcript().total());
        EXPECT_EQ(1u, objOther.transcript().total());
    }
    EXPECT_EQ(IA_ERR_HARDWARE, set(34, 1)) << "the older one does not come back by itself";
}

TEST_F(Driver, OlderCameraGoesWithoutTakingTheNewerOneAlong) {
    auto pFirst = std::make_unique<simcam::Camera>();
    const simcam::Camera objSecond;
    pFirst.reset();
    EXPECT_EQ(IA_OK, set(34, 1));
}

TEST(NoCamera, EveryCallFailsAsADeviceThatDoesNotAnswer) {
    int nValue = 3;
    EXPECT_EQ(IA_ERR_HARDWARE, ia_ioctrl_v2(0, 34, IA_CMD_OPT_GET, &nValue));
    EXPECT_EQ(3, nValue);
}
