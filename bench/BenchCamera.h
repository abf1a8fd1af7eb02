// A controller at work: the sample tree in a device root of its own, a simulated camera, the clock held.
//
// One thread. Built once for each benchmark, outside what is measured.
#pragma once

#include "sensor/ISensorController.h"
#include "simcam/Camera.h"
#include "tests/support/TestRoot.h"

class BenchCamera {
public:
    // Debug level -1: what a camera in the field costs when it has nothing to say.
    BenchCamera();
    ~BenchCamera();
    BenchCamera(const BenchCamera&) = delete;
    BenchCamera& operator=(const BenchCamera&) = delete;

    ISensorController& controller() { return m_objController; }
    const TestRoot& root() const { return m_objRoot; }

private:
    TestRoot m_objRoot;
    simcam::Camera m_objCamera;
    ISensorController m_objController;
};
