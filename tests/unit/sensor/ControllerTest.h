// A controller on a recording camera, in a device root of its own. Nothing is built until a test says so.
#pragma once

#include "sensor/Keys.h"
#include "sensor/style/ShowFlags.h"
#include "tests/support/Messages.h"
#include "tests/support/RecordingCamera.h"
#include "tests/support/SensorControllerProbe.h"
#include "tests/support/TestRoot.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

class ControllerTest : public testing::Test {
protected:
    ControllerTest() {
        GTEST_FLAG_SET(death_test_style, "threadsafe");
        setshowBeawayFalg(true);
        controller.setVideoStreamModule(&camera);
    }
    ~ControllerTest() override { controller.uinit(); }

    // The same records in every user scheme and in the factory set; scheme 0 is current.
    void build(u32 p_nSchemeSum, const std::vector<KeyVal>& p_vecRecords) {
        probe.buildSets(p_nSchemeSum, p_vecRecords);
        probe.setCurScheme(0);
    }

    // Where an operation's messages come from, and what the C library says when its assertion aborts.
    static messages::Place in(const std::string& p_strFunction) { return {"ISensorController.cpp", p_strFunction}; }
    static std::string abortIn(const std::string& p_strFunction) {
        return "ISensorController.cpp:[0-9]+: .*ISensorController::" + p_strFunction + "\\(.*Assertion `bRet' failed";
    }

    std::vector<std::string> driverCalls() { return camera.linesLike("ia "); }
    std::vector<std::string> notifications() { return camera.linesLike("video "); }

    // Whether the calling thread holds the controller's lock. Only where no other thread wants it.
    bool lockIsHeld() {
        const bool bHeld = probe.mutex().unlock("the test asks who holds the lock", 0);
        return bHeld && probe.mutex().lock("the test gives the lock back", 0);
    }

    TestRoot root;
    RecordingCamera camera;
    ISensorController controller;
    SensorControllerProbe probe{controller};
};
