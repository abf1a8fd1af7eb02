// The contract's plain records: numbers and layouts that stand in files and in the driver's binary interface.
#include "platform/DeviceType.h"
#include "platform/ImageAdjust.h"
#include "platform/SensorZoomFocusParam.h"
#include "platform/Types.h"
#include "platform/VideoStreamModule.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <type_traits>

namespace {

static_assert(sizeof(u32) == 4 && std::is_unsigned<u32>::value, "frozen");
static_assert(sizeof(INT64) == 8 && std::is_signed<INT64>::value, "frozen");

TEST(RecordsTest, DeviceTypesHaveTheirNumbers) {
    EXPECT_EQ(DeviceType::IPCAMERA, 1U);
    EXPECT_EQ(DeviceType::IPDOME, 4U);
    EXPECT_EQ(DeviceType::LPR, 8U);
    EXPECT_EQ(DeviceType::FACE_DETECT, 9U);
    EXPECT_EQ(DeviceType::VEHICLE_DETECT, 11U);
    EXPECT_EQ(DeviceType::THERMAL_DEVICE, 13U);
    EXPECT_EQ(DeviceType::THERMAL_DOUBLE_SENSOR_DEVICE, 14U);
    EXPECT_EQ(DeviceType::AIMULTI_OBJECT_DETECT, 15U);
    EXPECT_EQ(DeviceType::IPP, 16U);
    EXPECT_EQ(DeviceType::HUMAN_TEMPERATURE, 17U);
    EXPECT_EQ(DeviceType::FISHEYE, 18U);
    EXPECT_EQ(DeviceType::THERMAL_DOUBLE_SENSOR_DOME_DEVICE, 19U);
    EXPECT_EQ(DeviceType::DOMECORE, 20U);
    EXPECT_EQ(DeviceType::DOMECORE_THERMAL_DEVICE, 104U);
    EXPECT_EQ(sizeof(DeviceType::Id), 4U);
}

TEST(RecordsTest, DriverOptionsAndCommandsHaveTheirNumbers) {
    EXPECT_EQ(IA_CMD_OPT_SET, 0U);
    EXPECT_EQ(IA_CMD_OPT_GET, 1U);
    EXPECT_EQ(IA_CMD_OPT_GET_PARAM_RNAGE, 2U);
    EXPECT_EQ(IA_CMD_OPT_CORRECT_PARAM, 3U);
    EXPECT_EQ(IA_CMD_OPT_GET_EXEC_STATUS, 4U);
    EXPECT_EQ(IA_CMD_DYNAMIC_PARAMS_CMDS_GET, 4112U);
    EXPECT_EQ(IA_CMD_UI_SHUTTER_RESET, 8231U);
    EXPECT_EQ(IA_CMD_UI_MIRROR, 2384U);
}

TEST(RecordsTest, DriverResultsHaveTheirNumbers) {
    EXPECT_EQ(IA_OK, 0);
    EXPECT_EQ(IA_ERR_UNSUPPORTED, -1);
    EXPECT_EQ(IA_ERR_NO_DATA, -2);
    EXPECT_EQ(IA_ERR_HARDWARE, -3);
    EXPECT_EQ(IA_ERR_BUSY, -4);
    EXPECT_EQ(IA_ERR_INVALID_VALUE, -5);
    EXPECT_EQ(IA_EXEC_DONE, 0);
    EXPECT_EQ(IA_EXEC_RUNNING, 1);
}

TEST(RecordsTest, DriverRecordsHaveTheirLayout) {
    EXPECT_EQ(offsetof(ia_dynamic_params_cmds_st, cmd_list), 4U);
    EXPECT_EQ(sizeof(ia_dynamic_params_cmds_st::cmd_list), 4U * 16);
    EXPECT_EQ(offsetof(ia_dynamic_params_attr_st, range_kind), 0U);
    EXPECT_EQ(offsetof(ia_dynamic_params_attr_st, default_val), 4U);
    EXPECT_EQ(offsetof(ia_dynamic_params_attr_st, min_val), 8U);
    EXPECT_EQ(offsetof(ia_dynamic_params_attr_st, max_val), 12U);
    EXPECT_EQ(offsetof(ia_dynamic_params_attr_st, items_cnt), 16U);
    EXPECT_EQ(sizeof(ia_dynamic_params_attr_st::item), 4U * 64);
    EXPECT_EQ(offsetof(dn_thr_st, n2d_thr), 4U);
    EXPECT_EQ(offsetof(dn_thr_st, dn_sensitivity), 8U);
    EXPECT_EQ(offsetof(dn_time_st, d2n_min), 4U);
    EXPECT_EQ(offsetof(dn_time_st, n2d_hour), 8U);
    EXPECT_EQ(offsetof(dn_time_st, n2d_min), 12U);
    EXPECT_EQ(offsetof(ia_sensor_check_st, result), 12U);
    static_assert(std::is_trivially_copyable<ia_dynamic_params_attr_st>::value, "handed over as bytes");
}

TEST(RecordsTest, TheLensIsNotLockedInANewObject) {
    SensorZoomFocusParam objParam;
    EXPECT_FALSE(objParam.getLockZoomFocusEnable());
    objParam.setLockZoomFocusEnable(true);
    EXPECT_TRUE(objParam.getLockZoomFocusEnable());
    const SensorZoomFocusParam objCopy(objParam);
    objParam.setLockZoomFocusEnable(false);
    EXPECT_TRUE(objCopy.getLockZoomFocusEnable());
    objParam = objCopy;
    EXPECT_TRUE(objParam.getLockZoomFocusEnable());
}

TEST(RecordsTest, StreamsAndLimitsStartHarmless) {
    const AVStreamParam stStream;
    EXPECT_EQ(stStream.nStreamId, 0);
    EXPECT_EQ(stStream.nFrameRate, 0);
    EXPECT_EQ(stStream.nEncoderType, 0);
    EXPECT_EQ(stStream.nVideoWidth, 0);
    EXPECT_EQ(stStream.nVideoHeight, 0);
    const LimitedFramesWDRModeParam stLimits;
    EXPECT_EQ(stLimits.nLimitFramesModeId, -1);
    EXPECT_EQ(stLimits.nWDRLimit, 0);
}

TEST(RecordsTest, AVideoModuleIsDestroyedThroughItsBase) {
    static_assert(std::has_virtual_destructor<VideoStreamModule>::value, "hosts delete it as they like");
    static_assert(std::is_abstract<VideoStreamModule>::value, "the host implements it");
}

}  // namespace
