// A key 0 whose handler failed did not end the walk: its negated key is 0, which was taken for success.
#include "tests/support/RecordingCamera.h"
#include "tests/support/SensorControllerProbe.h"
#include "tests/support/TestRoot.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

TEST(FailedKeyZero, EndsTheWalk) {
    const TestRoot root;
    RecordingCamera camera;
    ISensorController controller;
    SensorControllerProbe probe(controller);
    probe.buildSets(1, {{0, 1}, {34, 50}});
    probe.setCurScheme(0);
    camera.driverFails(0, IA_CMD_OPT_SET, -3);
    std::vector<KeyVal> vecList = {{0, 5}, {34, 60}};
    outputOf([&] { EXPECT_EQ(0, probe.setParameters(vecList.data(), 2, true)); });
    EXPECT_THAT(camera.transcript(), testing::ElementsAre("ia ch0 set 0 = 5 failed -3"));
    EXPECT_EQ(1u, probe.valueIn(0, 0)) << "a value that was not applied is not recorded";
    controller.uinit();
}
