#include "SimulatedCamera.h"

#include <climits>

#include <numeric>

namespace {

using ::testing::ElementsAre;

std::vector<int> fromTo(int p_nFirst, int p_nLast) {
    std::vector<int> vecNumbers(static_cast<std::size_t>(p_nLast - p_nFirst + 1));
    std::iota(vecNumbers.begin(), vecNumbers.end(), p_nFirst);
    return vecNumbers;
}

class DynamicRange : public SimulatedCamera {
protected:
    void zoomTo(double p_dMagnification) {
        // The zoom motor's position at some magnifications.
        const int nPosition = 1.0 == p_dMagnification   ? 16384
                              : 2.0 == p_dMagnification ? 24576
                              : 3.0 == p_dMagnification ? 27264
                              : 8.0 == p_dMagnification ? 30016
                                                        : 31424;
        ASSERT_EQ(IA_OK, set(1568, nPosition));
        passSeconds(60);
        ASSERT_EQ(nPosition, get(1568));
    }

    void streamRates(int p_nMain, int p_nSub) {
        AVStreamParam stMain;
        stMain.nFrameRate = p_nMain;
        AVStreamParam stSub;
        stSub.nFrameRate = p_nSub;
        ASSERT_TRUE(camera.video().setStreams(1, {stMain, stSub}));
    }
};

}  // namespace

TEST_F(DynamicRange, ShutterIsAtMostAFrame) {
    for (const u32 nCommand : {49u, 50u}) {
        EXPECT_EQ(fromTo(7, 28), itemsOf(nCommand));
        const ia_dynamic_params_attr_st stRange = rangeOf(nCommand);
        EXPECT_EQ(7, stRange.min_val);
        EXPECT_EQ(28, stRange.max_val);
        EXPECT_EQ(49 == nCommand ? 7 : 9, stRange.default_val);
    }
}

TEST_F(DynamicRange, ChoiceEighteenIsAThousandthAndLegalInEveryMode) {
    EXPECT_EQ(1000, simcam::shutterDenominator(18));
    for (const int nRate : {1, 25, 30, 50, 60}) {
        for (const int nWdr : {0, 1}) {
            set(2464, nRate);
            set(2368, nWdr);
            EXPECT_THAT(itemsOf(49), ::testing::Contains(18)) << nRate << " " << nWdr;
        }
    }
}

TEST_F(DynamicRange, EveryShorterChoiceHasAGreaterDenominator) {
    for (int i = 1; i < simcam::kShutterChoices; ++i) {
        EXPECT_LT(simcam::shutterDenominator(i - 1), simcam::shutterDenominator(i));
    }
    EXPECT_EQ(0, simcam::shutterDenominator(-1));
    EXPECT_EQ(0, simcam::shutterDenominator(simcam::kShutterChoices));
}

TEST_F(DynamicRange, WideDynamicRangeLimitsTheShutterAtBothEnds) {
    set(2368, 1);
    EXPECT_EQ(fromTo(9, 20), itemsOf(49));
    EXPECT_EQ(fromTo(9, 20), itemsOf(50));
    EXPECT_EQ(9, rangeOf(49).default_val);
    set(2368, 0);
    EXPECT_EQ(fromTo(7, 28), itemsOf(49));
}

TEST_F(DynamicRange, FasterStreamsLimitTheShutter) {
    streamRates(30, 60);
    EXPECT_EQ(fromTo(10, 28), itemsOf(49));
    streamRates(5, 6);
    EXPECT_EQ(fromTo(3, 28), itemsOf(49));
}

TEST_F(DynamicRange, SensorFrameRateGoesBeforeTheStreams) {
    streamRates(60, 60);
    set(2464, 30);
    EXPECT_EQ(fromTo(8, 28), itemsOf(49));
    set(2464, 0);
    EXPECT_EQ(fromTo(10, 28), itemsOf(49));
}

TEST_F(DynamicRange, AStreamOfAnotherChannelDoesNotMatter) {
    AVStreamParam stFast;
    stFast.nFrameRate = 60;
    camera.video().setStreams(2, {stFast});
    EXPECT_EQ(7, rangeOf(49).min_val);
}

TEST_F(DynamicRange, StreamRatesOutOfReasonLeaveAUsableRange) {
    for (const int nRate : {INT_MIN, -1, 0, 241, 100000, INT_MAX}) {
        streamRates(nRate, nRate);
        for (const int nWdr : {0, 1}) {
            set(2368, nWdr);
            EXPECT_FALSE(itemsOf(49).empty()) << nRate;
        }
    }
    camera.video().setStreams(1, {});
    set(2368, 0);
    EXPECT_EQ(fromTo(7, 28), itemsOf(49)) << "without streams the sensor runs at 25 frames a second";
}

TEST_F(DynamicRange, ZoomTakesTheOpenStopsOfTheIris) {
    EXPECT_EQ(14u, itemsOf(82).size());
    EXPECT_EQ(25600, rangeOf(82).default_val);
    holdTheLens();
    zoomTo(2);
    EXPECT_EQ(25600, rangeOf(82).max_val);
    zoomTo(3);
    EXPECT_EQ(18100, rangeOf(82).max_val);
    zoomTo(8);
    EXPECT_EQ(12800, rangeOf(82).max_val);
    zoomTo(16);
    EXPECT_THAT(itemsOf(82), ElementsAre(256, 400, 566, 800, 1131, 1600, 2262, 3200, 4525, 6400));
    EXPECT_EQ(6400, rangeOf(82).default_val);
}

TEST_F(DynamicRange, ZoomTakesTheNearFocusLimits) {
    EXPECT_EQ(fromTo(0, 10), itemsOf(1537));
    holdTheLens();
    zoomTo(2);
    EXPECT_EQ(fromTo(1, 10), itemsOf(1537));
    zoomTo(8);
    EXPECT_EQ(fromTo(3, 10), itemsOf(1537));
    zoomTo(16);
    EXPECT_EQ(fromTo(5, 10), itemsOf(1537));
    EXPECT_EQ(5, rangeOf(1537).default_val);
}

TEST_F(DynamicRange, ChangesWhileTheZoomIsStillMoving) {
    holdTheLens();
    set(1568, 31424);
    const int nBefore = rangeOf(82).max_val;
    passSeconds(3.9);
    const int nUnderWay = rangeOf(82).max_val;
    EXPECT_EQ(IA_EXEC_RUNNING, status(1568));
    EXPECT_GT(nBefore, nUnderWay);
}

TEST_F(DynamicRange, AValueOfAnotherModeIsKeptAndTheNearestLegalOneIsInForce) {
    ASSERT_EQ(IA_OK, set(49, 7));
    set(2368, 1);
    EXPECT_EQ(9, get(49));
    EXPECT_EQ(IA_OK, set(49, 28)) << "legal without WDR";
    EXPECT_EQ(20, get(49));
    set(2368, 0);
    EXPECT_EQ(28, get(49));
}

TEST_F(DynamicRange, AValueOfNoModeIsRefused) {
    for (const int nValue : {-1, 29, 218, INT_MAX, INT_MIN}) {
        EXPECT_EQ(IA_ERR_INVALID_VALUE, set(49, nValue)) << nValue;
        EXPECT_EQ(IA_ERR_INVALID_VALUE, set(50, nValue)) << nValue;
    }
    EXPECT_EQ(IA_ERR_INVALID_VALUE, set(1537, 11));
    EXPECT_EQ(IA_ERR_INVALID_VALUE, set(82, 255));
    EXPECT_EQ(IA_ERR_INVALID_VALUE, set(82, 25601));
    EXPECT_EQ(7, get(49));
}

TEST_F(DynamicRange, StrictDriverRefusesWhatIsNotLegalNow) {
    camera.driver().setStrictRanges(true);
    EXPECT_EQ(IA_ERR_INVALID_VALUE, set(49, 6));
    EXPECT_EQ(IA_OK, set(49, 7));
    set(2368, 1);
    EXPECT_EQ(IA_ERR_INVALID_VALUE, set(49, 7));
    EXPECT_EQ(IA_OK, set(49, 9));
    EXPECT_EQ(IA_ERR_INVALID_VALUE, set(82, 300)) << "not a stop";
    EXPECT_EQ(IA_OK, set(82, simcam::kIrisEndStop));
    camera.driver().setStrictRanges(false);
    EXPECT_EQ(IA_OK, set(49, 7));
}

TEST_F(DynamicRange, CorrectionGoesToTheNearestLegalValueAndToTheLowerOfTwo) {
    set(2368, 1);  // 9 to 20
    EXPECT_EQ(9, corrected(49, 0));
    EXPECT_EQ(9, corrected(49, INT_MIN));
    EXPECT_EQ(15, corrected(49, 15));
    EXPECT_EQ(20, corrected(49, 21));
    EXPECT_EQ(20, corrected(50, INT_MAX));
    EXPECT_EQ(256, corrected(82, 328)) << "256 and 400 are equally near";
    EXPECT_EQ(400, corrected(82, 329));
    EXPECT_EQ(25600, corrected(82, simcam::kIrisEndStop));
    EXPECT_EQ(7, get(49) - 2) << "a correction sets nothing";
}

TEST_F(DynamicRange, IrisGoesToTheNearestStop) {
    EXPECT_EQ(IA_OK, set(82, 300));
    EXPECT_EQ(256, get(82));
    EXPECT_EQ(IA_OK, set(82, 5000));
    EXPECT_EQ(4525, get(82));
    EXPECT_EQ(IA_OK, set(82, simcam::kIrisEndStop));
    EXPECT_EQ(25600, get(82));
}

TEST_F(DynamicRange, IrisStepsFromStopToStopAndStandsAtItsEnds) {
    set(16, 3);
    set(82, 800);
    EXPECT_EQ(IA_OK, set(83, 1));
    EXPECT_EQ(1131, get(82));
    EXPECT_EQ(IA_OK, set(84, 3));
    EXPECT_EQ(400, get(82));
    EXPECT_EQ(IA_OK, set(84, 10));
    EXPECT_EQ(IA_OK, set(84, 1));
    EXPECT_EQ(256, get(82));
    set(82, 25600);
    EXPECT_EQ(IA_OK, set(83, 1));
    EXPECT_EQ(25600, get(82));
    EXPECT_EQ(IA_OK, set(83, 0));
    EXPECT_EQ(25600, get(82));
}

TEST_F(DynamicRange, IrisStepsFromWhereTheLensHoldsItNotFromWhatWasAsked) {
    holdTheLens();
    set(16, 3);
    zoomTo(16);
    EXPECT_EQ(6400, get(82));
    set(84, 1);
    EXPECT_EQ(4525, get(82));
}

TEST_F(DynamicRange, AutomaticExposureKeepsTheIrisToItself) {
    set(82, 800);
    for (const int nMode : {0, 1}) {
        set(16, nMode);
        EXPECT_EQ(IA_OK, set(83, 1));
        EXPECT_EQ(800, get(82)) << nMode;
    }
    set(16, 2);
    EXPECT_EQ(IA_OK, set(83, 1));
    EXPECT_EQ(1131, get(82));
}

TEST_F(DynamicRange, TablesOfChoicesEndWhereTheySay) {
    EXPECT_EQ(10, simcam::nearLimitCentimetres(0));
    EXPECT_EQ(2000, simcam::nearLimitCentimetres(simcam::kNearLimitChoices - 1));
    EXPECT_EQ(0, simcam::nearLimitCentimetres(simcam::kNearLimitChoices));
    EXPECT_EQ(0, simcam::nearLimitCentimetres(-1));
    EXPECT_EQ(simcam::kIrisClosed, simcam::irisStop(0));
    EXPECT_EQ(simcam::kIrisOpen, simcam::irisStop(simcam::kIrisStops - 1));
    EXPECT_EQ(0, simcam::irisStop(simcam::kIrisStops));
    EXPECT_EQ(0, simcam::irisStop(-1));
}
