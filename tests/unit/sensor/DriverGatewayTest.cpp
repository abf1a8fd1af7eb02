// The one way to the driver, its variant for actions, and the way to the video module.
#include "tests/unit/sensor/ControllerTest.h"

#include <cstring>
#include <memory>

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class DriverGateway : public ControllerTest {
protected:
    int set(u32 p_nCmd, int p_nValue) { return probe.doIaCmd(p_nCmd, IA_CMD_OPT_SET, &p_nValue); }
    int act(u32 p_nCmd, int p_nValue) { return probe.doIaCmd_User(p_nCmd, IA_CMD_OPT_SET, &p_nValue); }

    void lockLens(bool p_bLock) {
        SensorZoomFocusParam objParam;
        objParam.setLockZoomFocusEnable(p_bLock);
        controller.setSensorZoomFocusParam(objParam);
    }

    static std::string begin(const std::string& p_strCommand, int p_nCamera = 1) {
        return messages::debug(in("doIaCmd"), "====================== " + p_strCommand + " ======m_nCameraID=(" +
                                                  std::to_string(p_nCamera) + ")===============begin\n");
    }
    static std::string end(const std::string& p_strCommand) {
        return messages::debug(in("doIaCmd"), "====================== " + p_strCommand + " =====================end\n");
    }
};

TEST_F(DriverGateway, CountsChannelsFromZeroWhereTheControllerCountsFromOne) {
    for (const int nChannel : {1, 2, 4}) {
        controller.setChannelID(nChannel);
        set(34, 50);
    }
    EXPECT_THAT(camera.transcript(), ElementsAre("ia ch0 set 34 = 50", "ia ch1 set 34 = 50", "ia ch3 set 34 = 50"));
}

TEST_F(DriverGateway, PassesCommandOptionAndDataUnchanged) {
    for (u32 nOption = IA_CMD_OPT_SET; nOption <= 7; ++nOption) {
        SCOPED_TRACE(nOption);
        int nData = 5;
        void* pSeen = nullptr;
        camera.onDriver(2528, nOption, [&](int, void* p_pData) {
            pSeen = p_pData;
            return 0;
        });
        EXPECT_EQ(0, probe.doIaCmd(2528, nOption, &nData));
        EXPECT_EQ(&nData, pSeen);
    }
}

TEST_F(DriverGateway, ReturnsTheDriversResultUnchangedAndSaysNothing) {
    root.debugLevel(5);
    for (const int nResult : {0, -1, -2, -3, -4, -5, 7, 1000000}) {
        SCOPED_TRACE(nResult);
        camera.driverFails(34, IA_CMD_OPT_SET, nResult);
        EXPECT_EQ("", outputOf([&] { EXPECT_EQ(nResult, set(34, 50)); }));
    }
    EXPECT_EQ("", root.errorLog());
}

TEST_F(DriverGateway, FillsTheCallersValue) {
    camera.driverHolds(0, 153, 1);
    int nState = 77;
    EXPECT_EQ(0, probe.doIaCmd(153, IA_CMD_OPT_GET, &nState));
    EXPECT_EQ(1, nState);
}

TEST_F(DriverGateway, FramesACallWithBannersAtLevelSix) {
    root.debugLevel(6);
    controller.setChannelID(3);
    EXPECT_EQ(begin("cmd:34 dir:0 val:-50", 3) + end("cmd:34 dir:0 val:-50"),
              messages::anyLine(outputOf([&] { set(34, -50); })));
    EXPECT_EQ("", root.errorLog());
}

TEST_F(DriverGateway, ShowsTheValueBeforeAndAfterAGet) {
    root.debugLevel(6);
    camera.driverHolds(0, 153, 9);
    int nState = 77;
    EXPECT_EQ(begin("cmd:153 dir:1 val:77") + end("cmd:153 dir:1 val:9"),
              messages::anyLine(outputOf([&] { probe.doIaCmd(153, IA_CMD_OPT_GET, &nState); })));
}

TEST_F(DriverGateway, ClosesItsBannerAfterAFailureToo) {
    root.debugLevel(6);
    camera.driverFails(34, IA_CMD_OPT_SET, -3);
    EXPECT_EQ(begin("cmd:34 dir:0 val:50") + end("cmd:34 dir:0 val:50"),
              messages::anyLine(outputOf([&] { EXPECT_EQ(-3, set(34, 50)); })));
}

TEST_F(DriverGateway, ShowsNoBannersAtLevelFive) {
    root.debugLevel(5);
    EXPECT_EQ("", outputOf([&] { set(34, 50); }));
    EXPECT_THAT(camera.transcript(), ElementsAre("ia ch0 set 34 = 50"));
}

TEST_F(DriverGateway, ReadsNoMoreThanTheByteOfTheHeaterForItsBanners) {
    root.debugLevel(6);
    const auto pHot = std::make_unique<unsigned char>(static_cast<unsigned char>(3));  // one byte of memory, no more
    camera.driverHolds(0, 1606, 1);
    EXPECT_EQ(begin("cmd:1606 dir:1 val:3") + end("cmd:1606 dir:1 val:1"),
              messages::anyLine(outputOf([&] { EXPECT_EQ(0, probe.doIaCmd(1606, IA_CMD_OPT_GET, pHot.get())); })));
}

TEST_F(DriverGateway, ShowsTheFirstWordOfATextAtAnyAddress) {
    root.debugLevel(6);
    alignas(int) char szBuffer[64] = {};
    const int nWord = 0x01020304;
    std::memcpy(szBuffer + 1, &nWord, sizeof(nWord));
    camera.onDriver(2496, IA_CMD_OPT_GET, [](int, void*) { return 0; });
    EXPECT_EQ(begin("cmd:2496 dir:1 val:16909060") + end("cmd:2496 dir:1 val:16909060"),
              messages::anyLine(outputOf([&] { probe.doIaCmd(2496, IA_CMD_OPT_GET, szBuffer + 1); })));
}

TEST_F(DriverGateway, ALockedLensKeepsItsCommandsFromTheDriver) {
    lockLens(true);
    for (const u32 nCmd : {1536u, 1537u, 1552u, 1554u, 1568u, 1570u, 1584u, 1606u, 1615u, 1616u}) {
        SCOPED_TRACE(nCmd);
        for (u32 nOption = IA_CMD_OPT_SET; nOption <= IA_CMD_OPT_GET_EXEC_STATUS; ++nOption) {
            int nData = 5;
            EXPECT_EQ(0, probe.doIaCmd(nCmd, nOption, &nData));
            EXPECT_EQ(5, nData);
        }
    }
    EXPECT_THAT(camera.transcript(), IsEmpty());
}

TEST_F(DriverGateway, ALockedLensLetsEveryOtherCommandPass) {
    lockLens(true);
    for (const u32 nCmd : {34u, 1535u, 1617u, 1632u, 1648u, 2384u}) {
        set(nCmd, 1);
    }
    EXPECT_THAT(camera.transcript(), ElementsAre("ia ch0 set 34 = 1", "ia ch0 set 1535 = 1", "ia ch0 set 1617 = 1",
                                                 "ia ch0 set 1632 = 1", "ia ch0 set 1648 = 1", "ia ch0 set 2384 = 1"));
}

TEST_F(DriverGateway, AnUnlockedLensLetsItsCommandsPassAgain) {
    lockLens(true);
    lockLens(false);
    set(1536, 1);
    EXPECT_THAT(camera.transcript(), ElementsAre("ia ch0 set 1536 = 1"));
}

TEST_F(DriverGateway, OpensButDoesNotCloseTheBannerOfALockedLens) {
    root.debugLevel(6);
    lockLens(true);
    EXPECT_EQ(begin("cmd:1569 dir:0 val:1"), messages::anyLine(outputOf([&] { set(1569, 1); })));
}

TEST_F(DriverGateway, IgnoresAnActionWhileTheControllerAppliesASetByItself) {
    root.debugLevel(6);
    for (const u32 nFlag : {SensorControllerProbe::init_flag, SensorControllerProbe::resetting_flag,
                            SensorControllerProbe::rollback_flag, SensorControllerProbe::switching_flag}) {
        SCOPED_TRACE(nFlag);
        probe.setFlags(nFlag);
        EXPECT_EQ(messages::debug(in("doIaCmd_User"), "ignored auto focus once !!!\n"),
                  messages::anyLine(outputOf([&] { EXPECT_EQ(0, act(1569, 1)); })));
        probe.clearFlags(nFlag);
    }
    EXPECT_THAT(camera.transcript(), IsEmpty());
}

TEST_F(DriverGateway, SendsAnActionInEveryOtherState) {
    probe.setFlags(~0x39u);
    act(1569, 1);
    probe.clearFlags(~0u);
    act(83, 2);
    EXPECT_THAT(camera.transcript(), ElementsAre("ia ch0 set 1569 = 1", "ia ch0 set 83 = 2"));
}

TEST_F(DriverGateway, ReturnsTheDriversResultOfAnAction) {
    camera.driverFails(1569, IA_CMD_OPT_SET, -4);
    EXPECT_EQ(-4, act(1569, 1));
    int nValue = 0;
    camera.driverHolds(0, 1539, 3);
    EXPECT_EQ(0, probe.doIaCmd_User(1539, IA_CMD_OPT_GET, &nValue));
    EXPECT_EQ(3, nValue);
}

TEST_F(DriverGateway, SaysNothingAboutAnIgnoredActionAtLevelFive) {
    root.debugLevel(5);
    probe.setFlags(SensorControllerProbe::switching_flag);
    EXPECT_EQ("", outputOf([&] { EXPECT_EQ(0, act(1569, 1)); }));
    probe.clearFlags(SensorControllerProbe::switching_flag);
}

TEST_F(DriverGateway, AsksForTheExecutionStatusOfACommand) {
    root.debugLevel(6);
    camera.driverHolds(0, 1569, 1);
    int nStatus = 77;
    const std::string strOut =
        messages::anyLine(outputOf([&] { EXPECT_TRUE(controller.getCmdExecStatus(1569, nStatus)); }));
    EXPECT_EQ(1, nStatus);
    EXPECT_THAT(camera.transcript(), ElementsAre("ia ch0 status 1569 -> 1"));
    EXPECT_EQ(begin("cmd:1569 dir:4 val:77") + end("cmd:1569 dir:4 val:1") +
                  messages::debug(in("getCmdExecStatus"),
                                  "=================  get exec status cmd(0x621)       value(1)   "
                                  "======================\n"),
              strOut);
}

TEST_F(DriverGateway, TellsThatTheExecutionStatusIsNotKnown) {
    root.debugLevel(6);
    camera.onDriver(1569, IA_CMD_OPT_GET_EXEC_STATUS, [](int, void* p_pData) {
        *static_cast<int*>(p_pData) = 8;
        return -1;
    });
    int nStatus = 77;
    const std::string strOut =
        messages::anyLine(outputOf([&] { EXPECT_FALSE(controller.getCmdExecStatus(1569, nStatus)); }));
    EXPECT_EQ(8, nStatus);
    EXPECT_EQ(begin("cmd:1569 dir:4 val:77") + end("cmd:1569 dir:4 val:8"), strOut);
}

TEST_F(DriverGateway, ALockedLensIsDoneWithEveryCommand) {
    lockLens(true);
    int nStatus = 77;
    EXPECT_TRUE(controller.getCmdExecStatus(1569, nStatus));
    EXPECT_EQ(77, nStatus);
    EXPECT_THAT(camera.transcript(), IsEmpty());
}

TEST_F(DriverGateway, NotifiesTheVideoModuleOfItsChannel) {
    controller.setChannelID(3);
    EXPECT_EQ(0, probe.notifyToVideo(2384, 1));
    controller.setChannelID(2);
    EXPECT_EQ(0, probe.notifyToVideo(-8, -9));
    EXPECT_THAT(camera.transcript(), ElementsAre("video ch3 2384 = 1", "video ch2 -8 = -9"));
}

TEST_F(DriverGateway, ReturnsTheVideoModulesResult) {
    camera.videoFails(2384, 5);
    EXPECT_EQ(5, probe.notifyToVideo(2384, 1));
    camera.videoFails(2384, -7);
    EXPECT_EQ(-7, probe.notifyToVideo(2384, 1));
}

TEST_F(DriverGateway, WithoutAVideoModuleANotificationSucceedsAndGoesNowhere) {
    camera.videoFails(2384, 5);
    controller.setVideoStreamModule(nullptr);
    EXPECT_EQ(0, probe.notifyToVideo(2384, 1));
    EXPECT_THAT(camera.transcript(), IsEmpty());
}

TEST_F(DriverGateway, OnAThermalDeviceChannelTwoNotifiesChannelOne) {
    probe.machineInfo().setDeviceType(13);
    controller.setChannelID(2);
    EXPECT_EQ(0, probe.notifyToVideo(2384, 1));
    probe.machineInfo().setDeviceType(14);
    EXPECT_EQ(0, probe.notifyToVideo(2384, 1));
    EXPECT_THAT(camera.transcript(), ElementsAre("video ch1 2384 = 1", "video ch2 2384 = 1"));
}

TEST_F(DriverGateway, OnAThermalDeviceTheDriverStillHearsOfChannelTwo) {
    probe.machineInfo().setDeviceType(13);
    controller.setChannelID(1);
    set(34, 50);
    EXPECT_THAT(camera.transcript(), ElementsAre("ia ch1 set 34 = 50"));
}

}  // namespace
