// A simulated camera on a held clock, and short words for its driver call.
#pragma once

#include "platform/Clock.h"
#include "platform/ImageAdjust.h"
#include "simcam/Camera.h"
#include "tests/support/TestRoot.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

class SimulatedCamera : public ::testing::Test {
protected:
    static constexpr int kUntouched = -123456;

    static int set(u32 p_nCommand, int p_nValue, int p_nChannel = 0) {
        return ia_ioctrl_v2(p_nChannel, p_nCommand, IA_CMD_OPT_SET, &p_nValue);
    }

    // The value, kUntouched when the call failed.
    static int get(u32 p_nCommand, int p_nChannel = 0) {
        int nValue = kUntouched;
        ia_ioctrl_v2(p_nChannel, p_nCommand, IA_CMD_OPT_GET, &nValue);
        return nValue;
    }

    static int status(u32 p_nCommand) {
        int nStatus = kUntouched;
        ia_ioctrl_v2(0, p_nCommand, IA_CMD_OPT_GET_EXEC_STATUS, &nStatus);
        return nStatus;
    }

    static int corrected(u32 p_nCommand, int p_nValue) {
        EXPECT_EQ(IA_OK, ia_ioctrl_v2(0, p_nCommand, IA_CMD_OPT_CORRECT_PARAM, &p_nValue));
        return p_nValue;
    }

    static ia_dynamic_params_attr_st rangeOf(u32 p_nCommand) {
        ia_dynamic_params_attr_st stRange = {};
        EXPECT_EQ(IA_OK, ia_ioctrl_v2(0, p_nCommand, IA_CMD_OPT_GET_PARAM_RNAGE, &stRange));
        return stRange;
    }

    static std::vector<int> itemsOf(u32 p_nCommand) {
        const ia_dynamic_params_attr_st stRange = rangeOf(p_nCommand);
        EXPECT_EQ(0, stRange.range_kind);
        return std::vector<int>(stRange.item, stRange.item + stRange.items_cnt);
    }

    static int setThresholds(u32 p_nCommand, u32 p_nDayToNight, u32 p_nNightToDay) {
        dn_thr_st stRecord = {p_nDayToNight, p_nNightToDay, 0};
        return ia_ioctrl_v2(0, p_nCommand, IA_CMD_OPT_SET, &stRecord);
    }

    static int setSensitivity(u32 p_nLevel) {
        dn_thr_st stRecord = {0, 0, p_nLevel};
        return ia_ioctrl_v2(0, 154, IA_CMD_OPT_SET, &stRecord);
    }

    static int setTimes(u32 p_nNightHour, u32 p_nNightMinute, u32 p_nDayHour, u32 p_nDayMinute) {
        dn_time_st stRecord = {p_nNightHour, p_nNightMinute, p_nDayHour, p_nDayMinute};
        return ia_ioctrl_v2(0, 149, IA_CMD_OPT_SET, &stRecord);
    }

    static void passSeconds(double p_dSeconds) {
        ASSERT_TRUE(platform::Clock::advance(static_cast<INT64>(p_dSeconds * 1e6)));
    }

    simcam::LensState lens() {
        simcam::LensState stLens;
        EXPECT_TRUE(camera.driver().lens(0, stLens));
        return stLens;
    }

    // Manual focus, everything at rest.
    void holdTheLens() {
        ASSERT_EQ(IA_OK, set(1536, 1));
        passSeconds(60);
    }

    TestRoot root;
    simcam::Camera camera;
};
