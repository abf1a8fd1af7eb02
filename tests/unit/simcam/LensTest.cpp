#include "SimulatedCamera.h"

namespace {

constexpr int kWide = 16384;
constexpr int kTele = 31424;

class Lens : public SimulatedCamera {
protected:
    void waitForRest() { passSeconds(120); }
};

}  // namespace

TEST_F(Lens, ZoomMovesAtItsSpeedAndArrives) {
    holdTheLens();
    ASSERT_EQ(IA_OK, set(1568, kWide + 3760));
    EXPECT_EQ(kWide, get(1568));
    passSeconds(0.5);  // level 3: 3760 positions a second
    EXPECT_EQ(kWide + 1880, get(1568));
    EXPECT_EQ(IA_EXEC_RUNNING, status(1568));
    passSeconds(0.499999);
    EXPECT_EQ(IA_EXEC_RUNNING, status(1568));
    passSeconds(0.000001);
    EXPECT_EQ(kWide + 3760, get(1568));
    EXPECT_EQ(IA_EXEC_DONE, status(1568));
}

TEST_F(Lens, ZoomSpeedIsALevel) {
    holdTheLens();
    for (int nLevel = 0; nLevel <= 7; ++nLevel) {
        ASSERT_EQ(IA_OK, set(1571, nLevel));
        ASSERT_EQ(IA_OK, set(1568, kTele));
        passSeconds(1);
        EXPECT_EQ(kWide + 940 * (nLevel + 1), get(1568)) << nLevel;
        waitForRest();
        set(1568, kWide);
        waitForRest();
    }
}

TEST_F(Lens, FocusSpeedIsALevel) {
    holdTheLens();
    for (int nLevel = 0; nLevel <= 7; ++nLevel) {
        ASSERT_EQ(IA_OK, set(8207, nLevel));
        ASSERT_EQ(IA_OK, set(1552, 0));
        waitForRest();
        ASSERT_EQ(IA_OK, set(1552, 10000));
        passSeconds(1);
        EXPECT_EQ(625 * (nLevel + 1), get(1552)) << nLevel;
        waitForRest();
    }
}

TEST_F(Lens, PositionsBeyondTheLimitsAreRefused) {
    EXPECT_EQ(IA_ERR_INVALID_VALUE, set(1568, kWide - 1));
    EXPECT_EQ(IA_ERR_INVALID_VALUE, set(1568, kTele + 1));
    EXPECT_EQ(IA_ERR_INVALID_VALUE, set(1552, -1));
    EXPECT_EQ(IA_ERR_INVALID_VALUE, set(1552, 10001));
}

TEST_F(Lens, IsBusyForAnotherPositionWhileItMoves) {
    holdTheLens();
    ASSERT_EQ(IA_OK, set(1568, kTele));
    EXPECT_EQ(IA_ERR_BUSY, set(1568, kWide));
    EXPECT_EQ(IA_OK, set(1568, kTele)) << "the same one is on its way";
    EXPECT_EQ(IA_ERR_BUSY, set(1569, 1));
    EXPECT_EQ(IA_OK, set(1552, 5000)) << "the focus motor is another one";
    EXPECT_EQ(IA_ERR_BUSY, set(1552, 4000));
    EXPECT_EQ(IA_ERR_BUSY, set(1554, 1));
    EXPECT_EQ(IA_ERR_BUSY, set(1539, 1));
    waitForRest();
    EXPECT_EQ(kTele, get(1568));
    EXPECT_EQ(5000, get(1552));
    EXPECT_EQ(IA_OK, set(1568, kWide));
}

TEST_F(Lens, AValueOutsideTheRangeIsBadAlsoForABusyLens) {
    holdTheLens();
    set(1568, kTele);
    EXPECT_EQ(IA_ERR_INVALID_VALUE, set(1568, 1));
}

TEST_F(Lens, StepsAddUpWhileTheyAreMade) {
    holdTheLens();
    ASSERT_EQ(IA_OK, set(1569, 2));
    ASSERT_EQ(IA_OK, set(1569, 1));
    EXPECT_EQ(kWide + 3 * 235, lens().zoomTarget);
    ASSERT_EQ(IA_OK, set(1570, 1));
    waitForRest();
    EXPECT_EQ(kWide + 2 * 235, get(1568));
    EXPECT_EQ(IA_EXEC_DONE, status(1569));
    const int nFocus = get(1552);
    ASSERT_EQ(IA_OK, set(1553, 3));
    EXPECT_EQ(IA_EXEC_RUNNING, status(1553));
    ASSERT_EQ(IA_OK, set(1554, 1));
    waitForRest();
    EXPECT_EQ(nFocus + 200, get(1552));
}

TEST_F(Lens, StepsEndAtTheLimits) {
    holdTheLens();
    ASSERT_EQ(IA_OK, set(1570, 1));
    waitForRest();
    EXPECT_EQ(kWide, get(1568));
    set(1552, 0);
    waitForRest();
    ASSERT_EQ(IA_OK, set(1554, 5));
    waitForRest();
    EXPECT_EQ(0, get(1552));
}

TEST_F(Lens, AStepOfNothingStopsTheMotor) {
    holdTheLens();
    set(1568, kTele);
    passSeconds(1);
    ASSERT_EQ(IA_OK, set(1569, 0));
    EXPECT_EQ(IA_EXEC_DONE, status(1568));
    waitForRest();
    EXPECT_EQ(kWide + 3760, get(1568));
    set(1552, 10000);
    passSeconds(1);
    const int nFocus = get(1552);
    ASSERT_EQ(IA_OK, set(1554, 0));
    waitForRest();
    EXPECT_EQ(nFocus, get(1552));
}

TEST_F(Lens, AutoFocusGoesToTheSubjectAfterPowerUp) {
    EXPECT_EQ(2000, get(1552));
    waitForRest();
    EXPECT_EQ(1080, get(1552));  // 1x, 5 m
    EXPECT_EQ(lens().sharpAt, lens().focus);
}

TEST_F(Lens, AutoFocusFollowsTheZoom) {
    waitForRest();
    ASSERT_EQ(IA_OK, set(1568, kTele));
    waitForRest();
    EXPECT_EQ(1000 + 200 * 15 + 4000 * 1.6 / 5.0, get(1552));
    EXPECT_EQ(lens().sharpAt, lens().focus);
}

TEST_F(Lens, AutoFocusSetsOffWithTheZoomForWhereItIsGoing) {
    waitForRest();
    ASSERT_EQ(IA_OK, set(1568, kTele));
    EXPECT_EQ(5280, lens().focusTarget);
    EXPECT_TRUE(lens().focusing);
    EXPECT_EQ(IA_EXEC_RUNNING, status(1552));
    passSeconds(1);
    EXPECT_EQ(1080 + 2500, get(1552));
    waitForRest();
    ASSERT_EQ(IA_OK, set(1570, 1));
    EXPECT_LT(lens().focusTarget, 5280);
}

TEST_F(Lens, OtherFocusModesDoNotSetOffWithTheZoom) {
    for (const int nMode : {1, 2}) {
        holdTheLens();
        set(1568, kWide);
        waitForRest();
        set(1536, nMode);
        const int nFocus = get(1552);
        ASSERT_EQ(IA_OK, set(1568, kTele));
        EXPECT_EQ(nFocus, lens().focusTarget) << nMode;
        passSeconds(3);
        EXPECT_EQ(nFocus, get(1552)) << nMode;
        waitForRest();
        EXPECT_EQ(1 == nMode ? nFocus : lens().sharpAt, get(1552)) << nMode;
    }
}

TEST_F(Lens, AutoFocusFollowsTheSubjectWhenItMovesEnoughForTheSensitivity) {
    waitForRest();
    // Sharp at 1x: 1080 at 5 m, 1133 at 3 m, 1400 at 1 m, 1800 at 0.5 m.
    set(1537, 0);
    set(1538, 0);
    camera.scene().setSubjectDistance(1.0);
    waitForRest();
    EXPECT_EQ(1080, get(1552));
    set(1538, 1);
    waitForRest();
    EXPECT_EQ(1400, get(1552));
    camera.scene().setSubjectDistance(1.2);
    waitForRest();
    EXPECT_EQ(1400, get(1552));
    set(1538, 2);
    waitForRest();
    EXPECT_EQ(1333, get(1552));
}

TEST_F(Lens, ManualFocusStaysWhereItIs) {
    holdTheLens();
    ASSERT_EQ(IA_OK, set(1552, 3000));
    waitForRest();
    camera.scene().setSubjectDistance(0.2);
    set(1568, kTele);
    waitForRest();
    EXPECT_EQ(3000, get(1552));
}

TEST_F(Lens, InAutomaticModeTheFocusMotorIsNotTheCallers) {
    waitForRest();
    EXPECT_EQ(IA_OK, set(1552, 9000));
    EXPECT_EQ(IA_OK, set(1553, 5));
    waitForRest();
    EXPECT_EQ(1080, get(1552));
}

TEST_F(Lens, AutomaticAfterZoomFocusesOnlyThen) {
    set(1536, 2);
    waitForRest();
    const int nStart = get(1552);
    camera.scene().setSubjectDistance(1.0);
    waitForRest();
    EXPECT_EQ(nStart, get(1552));
    set(1569, 1);
    waitForRest();
    EXPECT_NE(nStart, get(1552));
}

TEST_F(Lens, ManualModeStopsAutoFocusWhereItIs) {
    passSeconds(0.1);  // on the way from 2000 to 1080 with 2500 a second
    ASSERT_EQ(IA_OK, set(1536, 1));
    EXPECT_EQ(1750, get(1552));
    waitForRest();
    EXPECT_EQ(1750, get(1552));
    EXPECT_EQ(IA_OK, set(1554, 1)) << "and the motor is free";
}

TEST_F(Lens, FocusOnceRunsAndEndsAtTheSubject) {
    holdTheLens();
    set(1552, 6000);
    waitForRest();
    ASSERT_EQ(IA_OK, set(1539, 1));
    EXPECT_EQ(IA_EXEC_RUNNING, status(1539));
    EXPECT_TRUE(lens().focusing);
    EXPECT_EQ(IA_ERR_BUSY, set(1539, 1));
    EXPECT_EQ(IA_ERR_BUSY, set(1553, 1));
    EXPECT_EQ(IA_OK, set(1539, 0)) << "asks for nothing";
    waitForRest();
    EXPECT_EQ(IA_EXEC_DONE, status(1539));
    EXPECT_EQ(lens().sharpAt, get(1552));
}

TEST_F(Lens, AutoFocusStopsAtItsNearLimit) {
    waitForRest();
    camera.scene().setSubjectDistance(0.2);
    waitForRest();
    EXPECT_EQ(1267, get(1552)) << "1.5 m";
    ASSERT_EQ(IA_OK, set(1537, 0));
    waitForRest();
    EXPECT_EQ(3000, get(1552)) << "0.2 m";
    ASSERT_EQ(IA_OK, set(1537, 10));
    waitForRest();
    EXPECT_EQ(1020, get(1552)) << "20 m";
}

TEST_F(Lens, AutoFocusWaitsWhileTheHeadMoves) {
    waitForRest();
    set(1632, 1);
    camera.scene().setSubjectDistance(2.0);
    set(1538, 2);
    waitForRest();
    EXPECT_EQ(1080, get(1552));
    set(1632, 0);
    waitForRest();
    EXPECT_EQ(1200, get(1552));
}

TEST_F(Lens, StatisticPeaksAtFocus) {
    holdTheLens();
    const int nSharp = lens().sharpAt;
    int nBest = -1;
    int nBestAt = -1;
    int nPrevious = 0;
    for (int nPosition = nSharp - 500; nPosition <= nSharp + 500; nPosition += 100) {
        ASSERT_EQ(IA_OK, set(1552, nPosition));
        waitForRest();
        const int nStatistic = get(1648);
        if (nPosition <= nSharp) {
            EXPECT_GT(nStatistic, nPrevious) << nPosition;
        } else {
            EXPECT_LT(nStatistic, nPrevious) << nPosition;
        }
        nPrevious = nStatistic;
        if (nStatistic > nBest) {
            nBest = nStatistic;
            nBestAt = nPosition;
        }
    }
    EXPECT_EQ(nSharp, nBestAt);
    EXPECT_EQ(10100, nBest);
}

TEST_F(Lens, StatisticIsLowerInTheDarkAndForASubjectTooNear) {
    waitForRest();
    EXPECT_EQ(10100, get(1648));
    camera.scene().setLight(1.0);
    const int nDark = get(1648);
    EXPECT_LT(nDark, 2000);
    EXPECT_GT(nDark, 100);
    camera.scene().setLight(1000.0);
    set(1537, 0);
    camera.scene().setSubjectDistance(0.05);
    waitForRest();
    EXPECT_EQ(5100, get(1648));
}

TEST_F(Lens, StatisticMovesWithTheZoom) {
    holdTheLens();
    set(1552, 1080);
    waitForRest();
    EXPECT_EQ(10100, get(1648));
    set(1568, kTele);
    waitForRest();
    EXPECT_LT(get(1648), 300);
}

TEST_F(Lens, ResetGoesHomeAndIsBusyMeanwhile) {
    holdTheLens();
    set(1568, kTele);
    set(1552, 9000);
    waitForRest();
    ASSERT_EQ(IA_OK, set(1616, 1));
    for (const u32 nCommand : {1552u, 1553u, 1554u, 1568u, 1569u, 1570u, 1539u, 1616u}) {
        EXPECT_EQ(IA_EXEC_RUNNING, status(nCommand)) << nCommand;
    }
    EXPECT_EQ(IA_ERR_BUSY, set(1616, 1));
    EXPECT_EQ(IA_ERR_BUSY, set(1568, kWide));
    EXPECT_EQ(IA_ERR_BUSY, set(1552, 0));
    EXPECT_EQ(IA_ERR_BUSY, set(1569, 1));
    EXPECT_EQ(IA_ERR_BUSY, set(1570, 0));
    EXPECT_EQ(IA_ERR_BUSY, set(1554, 1));
    EXPECT_EQ(IA_ERR_BUSY, set(1539, 1));
    passSeconds(1.9);  // zoom needs 2 s, focus 1.8 s, and then 0.4 s back
    EXPECT_EQ(0, get(1552));
    EXPECT_TRUE(lens().resetting);
    passSeconds(0.5);
    EXPECT_EQ(IA_EXEC_DONE, status(1616));
    EXPECT_EQ(kWide, get(1568));
    EXPECT_EQ(2000, get(1552));
}

TEST_F(Lens, ResetBreaksAMoveOffAndFocusesAfterwards) {
    waitForRest();
    set(1568, kTele);
    passSeconds(1);
    ASSERT_EQ(IA_OK, set(1616, 1));
    waitForRest();
    EXPECT_EQ(kWide, get(1568));
    EXPECT_EQ(1080, get(1552));
    EXPECT_EQ(IA_OK, set(1616, 0)) << "asks for nothing";
    EXPECT_EQ(IA_EXEC_DONE, status(1616));
}

TEST_F(Lens, OneLongStepOfTheClockEqualsManyShortOnes) {
    simcam::Camera objLooked;
    for (simcam::Camera* const pCamera : {&camera, &objLooked}) {
        int nOne = 1;
        ASSERT_EQ(IA_OK, pCamera->driver().call(0, 1616, IA_CMD_OPT_SET, &nOne));
    }
    for (int i = 0; i < 500; ++i) {
        passSeconds(0.01);
        get(1552);
    }
    simcam::LensState stLooked;
    ASSERT_TRUE(objLooked.driver().lens(0, stLooked));
    const simcam::LensState stNot = lens();
    EXPECT_EQ(stNot.focus, stLooked.focus);
    EXPECT_EQ(stNot.zoom, stLooked.zoom);
    EXPECT_FALSE(stNot.resetting);
}

TEST_F(Lens, CommandsWithoutAMotorAreDoneAtOnce) {
    set(34, 3);
    EXPECT_EQ(IA_EXEC_DONE, status(34));
    EXPECT_EQ(IA_EXEC_DONE, status(1648));
}

TEST_F(Lens, EachChannelHasItsOwn) {
    set(1536, 1, 1);
    ASSERT_EQ(IA_OK, set(1568, kTele, 1));
    waitForRest();
    EXPECT_EQ(kWide, get(1568, 0));
    EXPECT_EQ(kTele, get(1568, 1));
}

TEST_F(Lens, MagnificationFollowsTheZoomTable) {
    const int arrPositions[] = {16384, 24576, 27264, 28672, 29056, 29440, 29728, 30016,
                                30208, 30400, 30560, 30720, 30912, 31104, 31232, 31424};
    for (int i = 0; i < 16; ++i) {
        EXPECT_DOUBLE_EQ(i + 1.0, simcam::magnification(arrPositions[i]));
    }
    EXPECT_DOUBLE_EQ(1.5, simcam::magnification((16384 + 24576) / 2));
    EXPECT_DOUBLE_EQ(1.0, simcam::magnification(0));
    EXPECT_DOUBLE_EQ(16.0, simcam::magnification(40000));
}
