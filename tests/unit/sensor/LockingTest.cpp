// Which operations hold the controller's lock, and for how long.
#include "technic/QVMutex.h"
#include "tests/unit/sensor/WriteTest.h"

using testing::Each;
using testing::IsEmpty;
using testing::Not;

namespace {

// The second lock of a thread that holds the lock already ends the process, with both places.
constexpr char kLockedTwice[] =
    "QVMutex: locked a second time at ISensorController.cpp:[0-9]+ by the thread that locked it at the test:7";

class Locking : public WriteTest {
protected:
    Locking() {
        const auto note = [this](int, void*) {
            m_vecHeld.push_back(lockIsHeld());
            return 0;
        };
        for (const u32 nCmd : {16u, 34u, 160u, 168u, 1536u, 2353u}) {
            camera.onDriver(nCmd, IA_CMD_OPT_SET, note);
        }
    }

    // Whether the lock was held, for each call that reached the driver.
    std::vector<bool> m_vecHeld;
};

TEST_F(Locking, OneParameterHoldsTheLockForItsWholeWalk) {
    EXPECT_EQ(0, controller.setParameter(KEY_BRIGHTNESS, 7, true));
    EXPECT_THAT(m_vecHeld, testing::ElementsAre(true));
    EXPECT_FALSE(lockIsHeld());
}

TEST_F(Locking, ATextHoldsTheLockForItsWholeWalk) {
    EXPECT_EQ(0, controller.setParameters("(34,7)(2353,8)(34,9)", true));
    EXPECT_THAT(m_vecHeld, testing::ElementsAre(true, true, true));
    EXPECT_FALSE(lockIsHeld());
}

TEST_F(Locking, AFailureGivesTheLockBack) {
    camera.driverFails(KEY_CONTRAST, IA_CMD_OPT_SET, -3);
    EXPECT_EQ(-2353, controller.setParameters("(34,7)(2353,8)(34,9)", true));
    EXPECT_FALSE(lockIsHeld());
    EXPECT_EQ(-2353, controller.setParameter(KEY_CONTRAST, 8, true));
    EXPECT_FALSE(lockIsHeld());
}

TEST_F(Locking, ARefusalGivesTheLockBack) {
    controller.uinit();
    EXPECT_EQ(-1, controller.setParameter(KEY_BRIGHTNESS, 7, true));
    EXPECT_EQ(-1, controller.setParameters("(34,7)", true));
    EXPECT_FALSE(lockIsHeld());
}

TEST_F(Locking, TheListFormTakesNoLock) {
    EXPECT_EQ(0, write({{KEY_BRIGHTNESS, 7}, {KEY_CONTRAST, 8}}));
    EXPECT_THAT(m_vecHeld, testing::ElementsAre(false, false));
    const QVMutexManager guard(&probe.mutex(), "the test", 7);
    EXPECT_EQ(0, write({{KEY_BRIGHTNESS, 9}, {KEY_CONTRAST, 10}}));
}

TEST_F(Locking, EachChangeOfALightTakesTheLockAndNoneIsHeldBetweenThem) {
    cached(0, KEY_WHITE_SWITCH, 1);
    std::vector<bool> vecHeldAtRead;
    camera.onDriver(168, IA_CMD_OPT_GET, [&](int, void* p_pData) {
        vecHeldAtRead.push_back(lockIsHeld());
        *static_cast<int*>(p_pData) = 1;
        return 0;
    });
    EXPECT_TRUE(controller.setIRSwitch(1));
    EXPECT_THAT(vecHeldAtRead, testing::ElementsAre(false));
    EXPECT_THAT(m_vecHeld, testing::ElementsAre(true, true));
}

TEST_F(Locking, OneParameterWaitsForTheLock) {
    EXPECT_DEATH(
        {
            const QVMutexManager guard(&probe.mutex(), "the test", 7);
            controller.setParameter(KEY_BRIGHTNESS, 7, true);
        },
        kLockedTwice);
}

TEST_F(Locking, ATextWaitsForTheLock) {
    EXPECT_DEATH(
        {
            const QVMutexManager guard(&probe.mutex(), "the test", 7);
            controller.setParameters("(34,7)", true);
        },
        kLockedTwice);
}

// A second lock would end the process.
TEST_F(Locking, NothingElseHereTakesTheLock) {
    const QVMutexManager guard(&probe.mutex(), "the test", 7);
    int nValue = 1;
    u32 nWord = 1;
    unsigned nStatistic = 0;
    bool bFlag = false;
    std::string strVersion;
    keycmd stRow{};
    SensorZoomFocusParam objParam;

    controller.setChannelID(1);
    controller.setVideoStreamModule(&camera);
    controller.getSensorType();
    controller.getSensorStatus();
    controller.printDebugMsg();
    controller.getSensorZoomFocusParam(objParam);
    controller.setSensorZoomFocusParam(objParam);
    controller.setShowWDRFalg(true);
    controller.getShowWDRFalg(bFlag);
    controller.setShowBeawayFalg(true);
    controller.getShowBeawayFalg(bFlag);

    EXPECT_TRUE(controller.getCmdExecStatus(34, nValue));
    EXPECT_TRUE(controller.focusFar());
    EXPECT_TRUE(controller.focusNear());
    EXPECT_TRUE(controller.irisUp());
    EXPECT_TRUE(controller.irisDown());
    EXPECT_TRUE(controller.zoomIn());
    EXPECT_TRUE(controller.zoomOut());
    EXPECT_TRUE(controller.setPTZRunState(1));
    EXPECT_TRUE(controller.getCameraVerInf(strVersion));
    EXPECT_TRUE(controller.getZoomValue(nValue, nValue));
    EXPECT_TRUE(controller.setZoomValue(1));
    EXPECT_TRUE(controller.setFocusValue(1));
    EXPECT_TRUE(controller.getFocusValue(nValue));
    EXPECT_TRUE(controller.setFocusMode(1));
    EXPECT_TRUE(controller.getFocusMode(nValue));
    EXPECT_TRUE(controller.setDNState(1));
    EXPECT_TRUE(controller.getDNState(nValue));
    EXPECT_TRUE(controller.getAFStatistic(nStatistic));
    EXPECT_TRUE(controller.getWDR(nValue));
    EXPECT_TRUE(controller.setExposureStrategy(nValue));
    EXPECT_TRUE(controller.getIRSwitch(nValue));
    EXPECT_TRUE(controller.getWhiteSwitch(nValue));
    EXPECT_TRUE(controller.getWhiteMode(nValue));
    EXPECT_TRUE(controller.getIrisValue(nValue));
    EXPECT_TRUE(controller.setIrisValue(1));
    EXPECT_TRUE(controller.getHeatStatus(bFlag));

    probe.setKeyValToCache(0, KEY_BRIGHTNESS, 1, true);
    probe.getKeyValFromCache(0, KEY_BRIGHTNESS, nWord);
    probe.isKeyValSame({KEY_BRIGHTNESS, 1});
    probe.findFromKeyCmdMap(probe.keyCmdMap(), KEY_BRIGHTNESS, stRow);
    for (const char* const szHandler : {"doIaCmd", "doIaCmd_User", "doHwdr", "doImageAdjust", "test_debugParam",
                                        "doDIS", "doIaCmd_PanoTuning", "doDNThr", "doDNTime", "doMirror", "doBeaway"}) {
        EXPECT_EQ(0, probe.call(SensorControllerProbe::handlerNamed(szHandler), 34, IA_CMD_OPT_SET, &nWord));
    }
    EXPECT_THAT(m_vecHeld, Not(IsEmpty()));
    EXPECT_THAT(m_vecHeld, Each(true));  // by this test
}

}  // namespace
