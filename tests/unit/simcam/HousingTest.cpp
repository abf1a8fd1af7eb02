#include "SimulatedCamera.h"

#include <array>

namespace {

class Housing : public SimulatedCamera {
protected:
    bool heats() {
        std::array<unsigned char, 4> arrBytes;
        arrBytes.fill(0xAA);
        EXPECT_EQ(IA_OK, ia_ioctrl_v2(0, 1606, IA_CMD_OPT_GET, arrBytes.data()));
        EXPECT_LE(arrBytes[0], 1);
        EXPECT_EQ(0xAA, arrBytes[1]) << "one byte";
        EXPECT_EQ(0xAA, arrBytes[3]) << "one byte";
        return 1 == arrBytes[0];
    }

    double celsius() {
        double dCelsius = -1000.0;
        EXPECT_TRUE(camera.driver().temperature(0, dCelsius));
        return dCelsius;
    }
};

}  // namespace

TEST_F(Housing, StartsAsWarmAsTheAirAndIsWarmedByTheElectronics) {
    EXPECT_DOUBLE_EQ(20.0, celsius());
    passSeconds(600);
    EXPECT_NEAR(28.0 - 8.0 / 2.718281828, celsius(), 0.001);
    passSeconds(36000);
    EXPECT_NEAR(28.0, celsius(), 0.001);
    EXPECT_FALSE(heats());
}

TEST_F(Housing, HeaterGoesOnBelowFreezingAndOffAboveTen) {
    camera.scene().setAmbientTemperature(-20.0);
    EXPECT_FALSE(heats()) << "still warm inside";
    passSeconds(586);  // 600 * ln(32 / 12) = 588.5
    EXPECT_FALSE(heats());
    passSeconds(4);
    EXPECT_TRUE(heats());
    passSeconds(870);  // 600 * ln(13 / 3) = 879.8
    EXPECT_TRUE(heats());
    passSeconds(12);
    EXPECT_FALSE(heats());
    EXPECT_GT(celsius(), 9.0);
}

TEST_F(Housing, HeatsFromTheStartWhenItIsCold) {
    camera.scene().setAmbientTemperature(-20.0);
    camera.powerCycle();
    EXPECT_TRUE(heats());
    EXPECT_DOUBLE_EQ(-20.0, celsius());
}

TEST_F(Housing, HeaterThatCannotWinStaysOn) {
    camera.scene().setAmbientTemperature(-40.0);
    passSeconds(86400);
    EXPECT_TRUE(heats());
    EXPECT_NEAR(-7.0, celsius(), 0.001);
}

TEST_F(Housing, AYearInOneStepStaysWithinItsLimits) {
    camera.scene().setAmbientTemperature(-20.0);
    passSeconds(365.0 * 86400.0);
    EXPECT_GE(celsius(), 0.0);
    EXPECT_LE(celsius(), 10.0);
}
