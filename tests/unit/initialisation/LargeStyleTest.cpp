// Styles with more parameters than the key table has rows.
#include "tests/unit/initialisation/StartedCamera.h"

namespace {

class LargeStyle : public StartedCamera, public testing::WithParamInterface<u32> {
protected:
    // The small factory set, and so many records that there are p_nSum.
    static Records large(u32 p_nSum) {
        Records vecRecords = factory();
        for (u32 nKey = 20000; vecRecords.size() < p_nSum; ++nKey) {
            vecRecords.emplace_back(nKey, nKey + 7);
        }
        return vecRecords;
    }

    // Everything that goes over all records of a set.
    void useEveryRecord(const Records& p_vecRecords) {
        const auto& [nLastKey, nLastValue] = p_vecRecords.back();
        EXPECT_EQ(p_vecRecords.size(), probe().keyValSum());
        EXPECT_EQ(nLastValue, probe().valueIn(0, nLastKey));
        EXPECT_EQ(nLastValue, probe().valueIn(2, nLastKey)) << "the factory set";
        EXPECT_TRUE(quietly([this] { return controller().setParamScheme(1); }));
        EXPECT_TRUE(quietly([this] { return controller().setParamScheme(2); }));
        EXPECT_EQ(0, quietly([this] { return probe().LPR_switch_to(1); }));
        std::string strText;
        for (const auto& [nKey, nValue] : p_vecRecords) {
            strText += "(" + std::to_string(nKey) + "," + std::to_string(nValue + 1) + ")";
        }
        camera.clear();
        outputOf([&] { controller().setParameters(strText, true); });
        const std::string strLast = "ia ch0 set " + std::to_string(nLastKey) + " = " + std::to_string(nLastValue + 1);
        EXPECT_EQ(strLast, camera.transcript().back());
        EXPECT_TRUE(quietly([this] { return controller().resetParameters(); }));
        EXPECT_EQ(p_vecRecords.size(), probe().keyValSum());
    }
};

}  // namespace

TEST_P(LargeStyle, IsHeldWholeOnTheFirstAndOnLaterStarts) {
    const Records vecRecords = large(GetParam());
    style(vecRecords);
    for (int i = 0; i < 3; ++i) {
        init();
        useEveryRecord(vecRecords);
        controller().uinit();
    }
}

TEST_P(LargeStyle, OfAPlateDeviceIsHeldWhole) {
    device(8);
    const Records vecRecords = large(GetParam());
    style(vecRecords);
    for (int i = 0; i < 2; ++i) {
        init();
        EXPECT_EQ(vecRecords.size() * 8, root.read(parameterFile(1)).size());
        EXPECT_EQ(18u, probe().valueIn(1, KEY_MAX_SHUTTER));
        EXPECT_EQ(vecRecords.back().second, probe().valueIn(1, vecRecords.back().first));
        useEveryRecord(vecRecords);
        controller().uinit();
        root.remove(parameterFile(1));
    }
}

INSTANTIATE_TEST_SUITE_P(Sizes, LargeStyle, testing::Values(153, 154, 155, 160, 161, 400));

TEST_F(LargeStyle, MayGrowAndShrinkBetweenStarts) {
    for (const u32 nSum : {11u, 300u, 12u, 161u}) {
        style(large(nSum));
        root.remove(parameterFile(0));
        root.remove(parameterFile(1));
        init();
        useEveryRecord(large(nSum));
        controller().uinit();
    }
}

TEST_F(LargeStyle, WithAnEmptyOneHasSetsWithoutRecords) {
    style({});
    init();
    EXPECT_EQ(0u, probe().keyValSum());
    EXPECT_EQ(0, scheme());
    EXPECT_EQ(0, controller().setParameter(KEY_BRIGHTNESS, 1, true));
    EXPECT_EQ("ia ch0 commands\nia ch0 set 34 = 1\n", camera.text());
}
