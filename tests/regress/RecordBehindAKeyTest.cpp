// A key without a row goes to the driver under its own number. The driver takes some numbers to mean a whole record, which
// it reads and writes: it reached past the 32-bit value, into the records behind it in the set.
#include "tests/support/RecordingCamera.h"
#include "tests/support/SensorControllerProbe.h"
#include "tests/support/TestRoot.h"

#include <gtest/gtest.h>

#include <cstring>

namespace {

constexpr u32 kSensorCheck = 2816;
constexpr u32 kBehind = 34;

}  // namespace

TEST(RecordBehindAKey, ADriverThatWritesARecordReachesNothingBehindTheValue) {
    TestRoot root;
    RecordingCamera camera;
    camera.onDriver(kSensorCheck, IA_CMD_OPT_SET, [](int, void* p_pData) {
        const ia_sensor_check_st stAnswer{7, 8, 9, 10};
        std::memcpy(p_pData, &stAnswer, sizeof(stAnswer));
        return IA_OK;
    });
    ISensorController controller;
    SensorControllerProbe probe(controller);
    probe.buildSets(1, {{kSensorCheck, 1}, {kBehind, 50}, {kBehind + 1, 51}});
    EXPECT_EQ(0, probe.setParameters(probe.set(0), 1, false));
    EXPECT_EQ(7u, probe.valueIn(0, kSensorCheck)) << "the value itself is the driver's to change";
    EXPECT_EQ(kBehind, probe.set(0)[1].key);
    EXPECT_EQ(50u, probe.valueIn(0, kBehind));
    EXPECT_EQ(51u, probe.valueIn(0, kBehind + 1));
    controller.uinit();
}
