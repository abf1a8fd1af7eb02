// The controller object: what it is born with, its accessors, and how it goes.
#include "platform/Clock.h"
#include "tests/unit/sensor/ControllerTest.h"

#include <sys/prctl.h>

#include <cstdlib>
#include <cstring>
#include <memory>
#include <type_traits>

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

constexpr char kMachineInfoFile[] = "/mnt/mtd/code/factory_setting/machineinfo.ini";
constexpr char kThermalDevice[] = "[machine]\ndevicetype=13\nhardwaremodel=ThermalBoard\nhardwarecode=7\n";

class ControllerObject : public ControllerTest {};

TEST_F(ControllerObject, IsBornWithoutSchemeSetsAndTable) {
    EXPECT_FALSE(controller.getSensorStatus());
    EXPECT_EQ(1u, probe.cameraID());
    EXPECT_EQ(-1, probe.lastScheme());
    EXPECT_EQ(-1, probe.curScheme());
    EXPECT_EQ(0u, probe.paramMode());
    EXPECT_FALSE(probe.hasSets());
    EXPECT_EQ(0u, probe.keyValSum());
    EXPECT_TRUE(nullptr == probe.keyCmdMap());
    EXPECT_EQ(8u, probe.version());
    EXPECT_EQ(0u, probe.flags());
    EXPECT_EQ(160u, probe.keyCmdNum());
    EXPECT_EQ(255u, probe.lastSchedule());
    EXPECT_FALSE(probe.isLPRDevice());
    EXPECT_TRUE(probe.showWDR());
    EXPECT_FALSE(probe.scheduleSwitch());
    EXPECT_FALSE(probe.dnSchemeSwitch());
    EXPECT_FALSE(probe.limitedIrPower());
    EXPECT_FALSE(probe.thread().isRunning());
}

TEST_F(ControllerObject, IsBornWithAnEmptyConfigurationAndAnOpenLens) {
    EXPECT_EQ(0u, controller.getSensorType());
    EXPECT_EQ(0u, probe.sysConf().nSchemeSum);
    EXPECT_TRUE(nullptr == probe.sysConf().szUIStyle);
    EXPECT_TRUE(nullptr == probe.sysConf().pLanguageFiles);
    SensorZoomFocusParam objParam;
    objParam.setLockZoomFocusEnable(true);
    EXPECT_EQ(0, controller.getSensorZoomFocusParam(objParam));
    EXPECT_FALSE(objParam.getLockZoomFocusEnable());
}

TEST_F(ControllerObject, IsBornWithoutAVideoModule) {
    ISensorController fresh;
    EXPECT_EQ(0, SensorControllerProbe(fresh).notifyToVideo(2384, 1));
    EXPECT_THAT(notifications(), IsEmpty());
}

TEST_F(ControllerObject, TouchesNeitherDriverNorVideoModuleWhenItIsBorn) {
    root.debugLevel(7);
    EXPECT_EQ("", outputOf([] { const ISensorController fresh; }));
    EXPECT_THAT(camera.transcript(), IsEmpty());
}

TEST_F(ControllerObject, ReadsTheMachineInformationWhenItIsBorn) {
    root.write(kMachineInfoFile, kThermalDevice);
    ISensorController fresh;
    const MachineInfo& machineInfo = SensorControllerProbe(fresh).machineInfo();
    EXPECT_EQ(13u, machineInfo.getDeviceType());
    EXPECT_EQ("ThermalBoard", machineInfo.getHardwareModel());
    EXPECT_EQ("7", machineInfo.getHardwareCode());
    EXPECT_EQ(0u, probe.machineInfo().getDeviceType());  // this one was there before the file
}

TEST_F(ControllerObject, IsBornWithoutMachineInformationToo) {
    EXPECT_EQ(0u, probe.machineInfo().getDeviceType());
    EXPECT_EQ("", probe.machineInfo().getHardwareModel());
}

TEST_F(ControllerObject, TakesTheChannelItIsGiven) {
    for (const int nChannel : {1, 2, 3, 4, 0, -1}) {
        controller.setChannelID(nChannel);
        EXPECT_EQ(static_cast<u32>(nChannel), probe.cameraID());
    }
}

TEST_F(ControllerObject, MeantTheSensorOfAThermalDeviceIsChannelTwoWhateverIsGiven) {
    root.write(kMachineInfoFile, kThermalDevice);
    ISensorController thermal;
    const SensorControllerProbe thermalProbe(thermal);
    for (const int nChannel : {1, 2, 3, 0}) {
        thermal.setChannelID(nChannel);
        EXPECT_EQ(2u, thermalProbe.cameraID());
    }
}

TEST_F(ControllerObject, OnlyTheThermalDeviceHasItsChannelReplaced) {
    for (const u32 nType : {0u, 1u, 4u, 8u, 9u, 11u, 12u, 14u, 15u, 16u, 17u, 18u, 19u, 20u, 104u}) {
        SCOPED_TRACE(nType);
        probe.machineInfo().setDeviceType(nType);
        controller.setChannelID(1);
        EXPECT_EQ(1u, probe.cameraID());
    }
}

TEST_F(ControllerObject, AThermalDeviceStartsOnChannelOneUntilAChannelIsSet) {
    root.write(kMachineInfoFile, kThermalDevice);
    ISensorController thermal;
    EXPECT_EQ(1u, SensorControllerProbe(thermal).cameraID());
}

TEST_F(ControllerObject, TellsTheModuleIdAsItsSensorType) {
    probe.sysConf().moduleConfig.nModuleId = 4711;
    EXPECT_EQ(4711u, controller.getSensorType());
}

TEST_F(ControllerObject, IsReadyExactlyWhileItsInitialisedBitIsSet) {
    probe.setFlags(~SensorControllerProbe::inited_flag);
    EXPECT_FALSE(controller.getSensorStatus());
    probe.clearFlags(~0u);
    probe.setFlags(SensorControllerProbe::inited_flag);
    EXPECT_TRUE(controller.getSensorStatus());
    probe.clearFlags(~0u);
}

TEST_F(ControllerObject, KeepsTheBitsOfItsFlagsWhereTheyWere) {
    EXPECT_EQ(1u, SensorControllerProbe::init_flag);
    EXPECT_EQ(2u, SensorControllerProbe::uinit_flag);
    EXPECT_EQ(4u, SensorControllerProbe::inited_flag);
    EXPECT_EQ(8u, SensorControllerProbe::resetting_flag);
    EXPECT_EQ(16u, SensorControllerProbe::rollback_flag);
    EXPECT_EQ(32u, SensorControllerProbe::switching_flag);
}

TEST_F(ControllerObject, PrintsNothingWhenAskedForADebugMessage) {
    root.debugLevel(7);
    EXPECT_EQ("", outputOf([&] { controller.printDebugMsg(); }));
    EXPECT_THAT(camera.transcript(), IsEmpty());
}

TEST_F(ControllerObject, KeepsACopyOfTheLensLock) {
    SensorZoomFocusParam objGiven;
    objGiven.setLockZoomFocusEnable(true);
    EXPECT_EQ(0, controller.setSensorZoomFocusParam(objGiven));
    objGiven.setLockZoomFocusEnable(false);
    SensorZoomFocusParam objRead;
    EXPECT_EQ(0, controller.getSensorZoomFocusParam(objRead));
    EXPECT_TRUE(objRead.getLockZoomFocusEnable());
    objRead.setLockZoomFocusEnable(false);
    EXPECT_EQ(0, controller.getSensorZoomFocusParam(objRead));
    EXPECT_TRUE(objRead.getLockZoomFocusEnable());
    EXPECT_EQ(0, controller.setSensorZoomFocusParam(objGiven));
    EXPECT_EQ(0, controller.getSensorZoomFocusParam(objRead));
    EXPECT_FALSE(objRead.getLockZoomFocusEnable());
}

TEST_F(ControllerObject, RunsItsOwnCycleOnAThreadNamedSensorThread) {
    ISensorController other;
    SensorControllerProbe otherProbe(other);
    other.setChannelID(3);
    otherProbe.setParamModeDirectly(1);
    otherProbe.setSwitching(false, true);
    std::string strName;
    camera.onDriver(153, IA_CMD_OPT_GET, [&](int, void* p_pData) {
        char szName[16] = {};
        prctl(PR_GET_NAME, szName);
        strName = szName;
        *static_cast<int*>(p_pData) = 0;
        return 0;
    });
    EXPECT_TRUE(otherProbe.thread().start());
    platform::Clock::advance(1000000);
    EXPECT_THAT(driverCalls(), ElementsAre("ia ch2 get 153 -> 0"));
    EXPECT_TRUE(otherProbe.thread().stop());
    EXPECT_EQ("SensorThread", strName);
}

TEST_F(ControllerObject, GoesQuietlyWhenItWasNeverInitialised) {
    root.debugLevel(7);
    auto pController = std::make_unique<ISensorController>();
    EXPECT_EQ("", outputOf([&] { pController.reset(); }));
    EXPECT_THAT(camera.transcript(), IsEmpty());
}

TEST_F(ControllerObject, StopsItsThreadWhenItGoes) {
    auto pController = std::make_unique<ISensorController>();
    SensorControllerProbe otherProbe(*pController);
    otherProbe.setParamModeDirectly(1);
    otherProbe.setSwitching(false, true);
    ASSERT_TRUE(otherProbe.thread().start());
    pController.reset();  // in the middle of a wait; the cycle that wakes up may end
    camera.clear();
    platform::Clock::advance(5000000);
    EXPECT_THAT(driverCalls(), IsEmpty());
}

TEST_F(ControllerObject, MeantLeavesSetsAndTableAloneWhenItGoes) {
    auto pController = std::make_unique<ISensorController>();
    SensorControllerProbe otherProbe(*pController);
    otherProbe.buildSets(2, {{34, 50}, {2337, 60}});
    KeyVal** const ppSets = otherProbe.sets();
    auto* const pTable = const_cast<keycmd*>(otherProbe.keyCmdMap());
    KeyVal* const pScratch = otherProbe.scratch();
    KeyVal* const pWork = otherProbe.work();
    pController.reset();
    EXPECT_EQ(2337u, ppSets[2][1].key);
    EXPECT_EQ(60u, ppSets[2][1].value);
    EXPECT_EQ(2571u, pTable[153].key);
    for (void* const pBlock : {static_cast<void*>(pScratch), static_cast<void*>(pWork), static_cast<void*>(pTable),
                               static_cast<void*>(ppSets)}) {
        std::free(pBlock);
    }
}

static_assert(std::is_nothrow_destructible_v<ISensorController>);
static_assert(!std::is_copy_constructible_v<ISensorController> && !std::is_copy_assignable_v<ISensorController>);

}  // namespace
