// What the factory files say about the device: limited infrared power, and plate recognition with defaults of its own.
#include "tests/unit/initialisation/StartedCamera.h"

namespace {

class PlateDefaults : public StartedCamera {
protected:
    static constexpr u32 kPlateRecognition = 8;

    // The first scheme of such a device, made from the small factory set.
    static Records plateScheme() {
        return with(
            with(with(with(with(factory(), KEY_DN_MODE, 0), KEY_MAX_SHUTTER, 18), KEY_METER_AREA, 1), KEY_IR_MODE, 2),
            KEY_IR_MANUAL_STRG_NEAR, 40);
    }
};

struct DeviceType {
    u32 type;
    const char* detail;
    bool isPlateDevice;
};

std::ostream& operator<<(std::ostream& p_stream, const DeviceType& p_stRow) {
    return p_stream << "device type " << p_stRow.type << " with " << p_stRow.detail;
}

class PlateDevice : public PlateDefaults, public testing::WithParamInterface<DeviceType> {};

}  // namespace

TEST_P(PlateDevice, IsToldByTypeAndInfraredField) {
    device(GetParam().type);
    init(GetParam().detail);
    EXPECT_EQ(GetParam().isPlateDevice, probe().isLPRDevice());
    EXPECT_EQ(GetParam().isPlateDevice ? fileOf(plateScheme()) : fileOf(with(factory(), KEY_SCHEME_MODE, 0)),
              root.read(parameterFile(1)));
}

INSTANTIATE_TEST_SUITE_P(All, PlateDevice,
                         testing::Values(DeviceType{8, "", true}, DeviceType{8, "(isInfrared=17)", true},
                                         DeviceType{8, "(isInfrared=2)", true}, DeviceType{8, "(isInfrared=10)", true},
                                         DeviceType{8, "(max_scheme=3)(isInfrared=0)", false},
                                         DeviceType{8, "(isInfrared=1)", false},
                                         DeviceType{8, "(isInfrared=17)(isInfrared=1)", false},
                                         DeviceType{1, "", false}, DeviceType{9, "", false},
                                         DeviceType{9, "(isInfrared=17)", false}));

TEST_F(PlateDefaults, KeepTheFactorySetForEveryOtherScheme) {
    device(kPlateRecognition);
    init("(max_scheme=4)");
    EXPECT_EQ(fileOf(factory()), root.read(parameterFile(0))) << "the mode is not turned off either";
    EXPECT_EQ(fileOf(plateScheme()), root.read(parameterFile(1)));
    EXPECT_EQ(fileOf(factory()), root.read(parameterFile(2)));
    EXPECT_EQ(fileOf(factory()), root.read(parameterFile(3)));
    EXPECT_EQ(factory(), setOf(4));
    EXPECT_EQ(plateScheme(), setOf(1));
}

TEST_F(PlateDefaults, DoNotTouchAFileThatIsThere) {
    device(kPlateRecognition);
    stored({factory(), factory()});
    init();
    EXPECT_EQ(fileOf(factory()), root.read(parameterFile(1)));
    EXPECT_EQ(factory(), setOf(1));
}

TEST_F(PlateDefaults, ReplaceTheFirstRecordOfAKeyOnly) {
    device(kPlateRecognition);
    style({{KEY_DN_MODE, 3}, {KEY_DN_MODE, 4}, {KEY_METER_AREA, 5}});
    init();
    EXPECT_EQ(fileOf({{KEY_DN_MODE, 0}, {KEY_DN_MODE, 4}, {KEY_METER_AREA, 1}}), root.read(parameterFile(1)));
}

TEST_F(PlateDefaults, AddNoKeyThatTheStyleLacks) {
    device(kPlateRecognition);
    style({{KEY_BRIGHTNESS, 50}});
    init();
    EXPECT_EQ(fileOf({{KEY_BRIGHTNESS, 50}}), root.read(parameterFile(1)));
}

TEST_F(PlateDefaults, NeedASecondScheme) {
    device(kPlateRecognition);
    init("(max_scheme=1)");
    EXPECT_EQ(fileOf(factory()), root.read(parameterFile(0)));
    EXPECT_FALSE(root.exists(parameterFile(1)));
    EXPECT_EQ(factory(), setOf(1)) << "the factory set";
}

TEST_F(PlateDefaults, LetTheFactoryModeOfSchemeZeroDecideAboutSwitching) {
    device(kPlateRecognition);
    init();
    EXPECT_TRUE(probe().dnSchemeSwitch());
    EXPECT_EQ(-1, scheme()) << "the thread chooses, and the host's mode is manual";
}

// --- Limited infrared power ---

TEST_F(PlateDefaults, LimitedPowerIsSaidAtEveryLevel) {
    style({{KEY_BRIGHTNESS, 50}});
    root.debugLevel(-1);
    init("(max_scheme=2)(isInfrared=17)");
    EXPECT_TRUE(probe().limitedIrPower());
    EXPECT_EQ("#### m_bisLimitedIrPower is true!\n\n", output);
}

TEST_F(PlateDefaults, FullPowerIsNotMentioned) {
    root.debugLevel(-1);
    for (const char* szDetail : {"", "(isInfrared=1)", "(isInfrared=7)", "(isInfrared=170)", "isInfrared=17"}) {
        init(szDetail);
        EXPECT_FALSE(probe().limitedIrPower()) << szDetail;
        EXPECT_EQ("\n", output) << szDetail;
        controller().uinit();
    }
}

TEST_F(PlateDefaults, LimitedPowerHoldsTheNextParameters) {
    style({{KEY_IR_MANUAL_STRG_NEAR, 60}, {KEY_IR_MANUAL_STRG_FAR, 0}});
    init("(max_scheme=2)(isInfrared=17)");
    EXPECT_EQ(-static_cast<int>(KEY_IR_MANUAL_STRG_FAR), controller().setParameter(KEY_IR_MANUAL_STRG_FAR, 41, true));
    EXPECT_EQ(0, controller().setParameter(KEY_IR_MANUAL_STRG_FAR, 40, true));
}
