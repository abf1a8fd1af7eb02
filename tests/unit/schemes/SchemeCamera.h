// A controller with small parameter sets of a test's own, on a recording camera.
#pragma once

#include "platform/Clock.h"
#include "sensor/Keys.h"
#include "tests/support/Messages.h"
#include "tests/support/RecordingCamera.h"
#include "tests/support/SensorControllerProbe.h"
#include "tests/support/TestRoot.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

class SchemeCamera : public testing::Test {
protected:
    // A set as init would make it: the mode, the window, then image parameters.
    static std::vector<KeyVal> records() {
        return {{KEY_SCHEME_MODE, 0},     {KEY_SCHEME_START_HOUR, 0}, {KEY_SCHEME_START_MIN, 0},
                {KEY_SCHEME_END_HOUR, 0}, {KEY_SCHEME_END_MIN, 0},    {KEY_BRIGHTNESS, 50},
                {KEY_DN_MODE, 1},         {KEY_CONTRAST, 128}};
    }

    SchemeCamera() { controller.setVideoStreamModule(&camera); }
    ~SchemeCamera() override { controller.uinit(); }

    void build(u32 p_nSchemeSum) { probe.buildSets(p_nSchemeSum, records()); }

    void window(u32 p_nScheme, u32 p_nStartHour, u32 p_nStartMinute, u32 p_nEndHour, u32 p_nEndMinute) {
        KeyVal* const pSet = probe.set(p_nScheme);
        pSet[1].value = p_nStartHour;
        pSet[2].value = p_nStartMinute;
        pSet[3].value = p_nEndHour;
        pSet[4].value = p_nEndMinute;
    }

    static void clockShows(int p_nHour, int p_nMinute) { platform::Clock::hold({2024, 5, 1, p_nHour, p_nMinute, 0}); }

    std::vector<std::string> driverCalls() { return camera.linesLike("ia "); }

    TestRoot root;
    RecordingCamera camera;
    ISensorController controller;
    SensorControllerProbe probe{controller};
};
