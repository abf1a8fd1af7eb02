// The operations that the host calls on the driver itself, past the parameter sets.
#include "tests/unit/sensor/ControllerTest.h"

#include <algorithm>
#include <climits>
#include <cstring>
#include <functional>
#include <iterator>

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

using Call = std::function<bool(ISensorController&)>;

struct Step {
    const char* name;
    bool (ISensorController::*operation)();
    u32 modeCmd;  // 0 without one
    int mode;
    bool modeDecides;
    u32 cmd;
};

const Step kSteps[] = {
    {"focusFar", &ISensorController::focusFar, 1536, 1, false, 1554},
    {"focusNear", &ISensorController::focusNear, 1536, 1, false, 1553},
    {"irisUp", &ISensorController::irisUp, 16, 3, true, 83},
    {"irisDown", &ISensorController::irisDown, 16, 3, true, 84},
    {"zoomIn", &ISensorController::zoomIn, 0, 0, false, 1569},
    {"zoomOut", &ISensorController::zoomOut, 0, 0, false, 1570},
};

struct Setter {
    const char* name;
    bool (ISensorController::*operation)(int);
    u32 cmd;
};

const Setter kSetters[] = {
    {"setZoomValue", &ISensorController::setZoomValue, 1568},
    {"setPTZRunState", &ISensorController::setPTZRunState, 1632},
    {"setFocusValue", &ISensorController::setFocusValue, 1552},
    {"setFocusMode", &ISensorController::setFocusMode, 1536},
    {"setDNState", &ISensorController::setDNState, 153},
};

struct DirectGetter {
    const char* name;
    bool (ISensorController::*operation)(int&);
    u32 cmd;
};

const DirectGetter kDirectGetters[] = {
    {"getFocusValue", &ISensorController::getFocusValue, 1552},
    {"getFocusMode", &ISensorController::getFocusMode, 1536},
    {"getDNState", &ISensorController::getDNState, 153},
    {"getWDR", &ISensorController::getWDR, 2368},
    {"getIRSwitch", &ISensorController::getIRSwitch, 160},
    {"getWhiteSwitch", &ISensorController::getWhiteSwitch, 168},
    {"getWhiteMode", &ISensorController::getWhiteMode, 169},
    {"getIrisValue", &ISensorController::getIrisValue, 82},
};

class DirectOperations : public ControllerTest {
protected:
    static std::string setLine(u32 p_nCmd, int p_nValue) {
        return "ia ch0 set " + std::to_string(p_nCmd) + " = " + std::to_string(p_nValue);
    }

    void lockLens() {
        SensorZoomFocusParam objParam;
        objParam.setLockZoomFocusEnable(true);
        controller.setSensorZoomFocusParam(objParam);
    }

    int ratioAt(int p_nPosition, int p_nBefore = -1) {
        camera.driverHolds(0, 1568, p_nPosition);
        int nPosition = 0;
        int nRatio = p_nBefore;
        EXPECT_TRUE(controller.getZoomValue(nPosition, nRatio));
        EXPECT_EQ(p_nPosition, nPosition);
        return nRatio;
    }
};

TEST_F(DirectOperations, StepForcesItsModeAndMovesByOne) {
    for (const Step& stStep : kSteps) {
        SCOPED_TRACE(stStep.name);
        camera.clear();
        EXPECT_TRUE((controller.*stStep.operation)());
        std::vector<std::string> vecExpected;
        if (0 != stStep.modeCmd) {
            vecExpected.push_back(setLine(stStep.modeCmd, stStep.mode));
        }
        vecExpected.push_back(setLine(stStep.cmd, 1));
        EXPECT_EQ(vecExpected, camera.transcript());
    }
}

TEST_F(DirectOperations, FocusStepGoesOnWhenItsModeFailsAndIrisStepDoesNot) {
    for (const Step& stStep : kSteps) {
        if (0 == stStep.modeCmd) {
            continue;
        }
        SCOPED_TRACE(stStep.name);
        camera.clear();
        camera.driverFails(stStep.modeCmd, IA_CMD_OPT_SET, -3, 1);
        EXPECT_EQ(!stStep.modeDecides, (controller.*stStep.operation)());
        std::vector<std::string> vecExpected = {setLine(stStep.modeCmd, stStep.mode) + " failed -3"};
        if (!stStep.modeDecides) {
            vecExpected.push_back(setLine(stStep.cmd, 1));
        }
        EXPECT_EQ(vecExpected, camera.transcript());
    }
}

TEST_F(DirectOperations, StepFailsWithItsOwnCommand) {
    for (const Step& stStep : kSteps) {
        SCOPED_TRACE(stStep.name);
        camera.driverFails(stStep.cmd, IA_CMD_OPT_SET, -4);
        EXPECT_FALSE((controller.*stStep.operation)());
    }
}

TEST_F(DirectOperations, SetterSendsItsValue) {
    for (const Setter& stSetter : kSetters) {
        SCOPED_TRACE(stSetter.name);
        for (const int nValue : {0, 1, 12345, -1, INT_MIN}) {
            camera.clear();
            EXPECT_TRUE((controller.*stSetter.operation)(nValue));
            EXPECT_THAT(camera.transcript(), ElementsAre(setLine(stSetter.cmd, nValue)));
        }
        camera.driverFails(stSetter.cmd, IA_CMD_OPT_SET, 1);
        EXPECT_FALSE((controller.*stSetter.operation)(1));
    }
}

TEST_F(DirectOperations, GetterReadsItsValue) {
    for (const DirectGetter& stGetter : kDirectGetters) {
        SCOPED_TRACE(stGetter.name);
        for (const int nValue : {0, 1, -7, INT_MAX}) {
            camera.clear();
            camera.driverHolds(0, stGetter.cmd, nValue);
            int nRead = 99;
            EXPECT_TRUE((controller.*stGetter.operation)(nRead));
            EXPECT_EQ(nValue, nRead);
            EXPECT_THAT(camera.transcript(),
                        ElementsAre("ia ch0 get " + std::to_string(stGetter.cmd) + " -> " + std::to_string(nValue)));
        }
    }
}

TEST_F(DirectOperations, GetterThatFailsLeavesItsOutputAsTheDriverLeftIt) {
    for (const DirectGetter& stGetter : kDirectGetters) {
        SCOPED_TRACE(stGetter.name);
        camera.driverFails(stGetter.cmd, IA_CMD_OPT_GET, -3, 1);
        int nRead = 99;
        EXPECT_FALSE((controller.*stGetter.operation)(nRead));
        EXPECT_EQ(99, nRead);
        camera.onDriver(stGetter.cmd, IA_CMD_OPT_GET, [](int, void* p_pData) {
            *static_cast<int*>(p_pData) = 5;
            return 2;
        });
        EXPECT_FALSE((controller.*stGetter.operation)(nRead));
        EXPECT_EQ(5, nRead);
    }
}

TEST_F(DirectOperations, ReadsTheFocusStatistic) {
    camera.driverHolds(0, 1648, -2);
    unsigned nStatistic = 7;
    EXPECT_TRUE(controller.getAFStatistic(nStatistic));
    EXPECT_EQ(0xFFFFFFFEu, nStatistic);
    camera.driverFails(1648, IA_CMD_OPT_GET, -1);
    nStatistic = 7;
    EXPECT_FALSE(controller.getAFStatistic(nStatistic));
    EXPECT_EQ(7u, nStatistic);
}

TEST_F(DirectOperations, HandsTheDriverTheCallersOwnExposureStrategy) {
    int nStrategy = 2;
    EXPECT_TRUE(controller.setExposureStrategy(nStrategy));
    EXPECT_THAT(camera.transcript(), ElementsAre("ia ch0 set 225 = 2"));
    void* pSeen = nullptr;
    camera.onDriver(225, IA_CMD_OPT_SET, [&](int, void* p_pData) {
        pSeen = p_pData;
        *static_cast<int*>(p_pData) = 4;
        return -5;
    });
    EXPECT_FALSE(controller.setExposureStrategy(nStrategy));
    EXPECT_EQ(&nStrategy, pSeen);
    EXPECT_EQ(4, nStrategy);
}

TEST_F(DirectOperations, ReadsTheVersionUpToItsFirstZeroByte) {
    std::string strVersion = "old";
    EXPECT_TRUE(controller.getCameraVerInf(strVersion));
    EXPECT_EQ("recording camera", strVersion);
    camera.onDriver(2496, IA_CMD_OPT_GET, [](int, void* p_pData) {
        std::memcpy(p_pData, "V1\0V2", 6);
        return 0;
    });
    EXPECT_TRUE(controller.getCameraVerInf(strVersion));
    EXPECT_EQ("V1", strVersion);
}

TEST_F(DirectOperations, HandsTheDriverFiftyClearedBytesForTheVersion) {
    bool bCleared = false;
    camera.onDriver(2496, IA_CMD_OPT_GET, [&](int, void* p_pData) {
        const char* const szBuffer = static_cast<const char*>(p_pData);
        bCleared = 50 == std::count(szBuffer, szBuffer + 50, '\0');
        return 0;
    });
    std::string strVersion = "old";
    EXPECT_TRUE(controller.getCameraVerInf(strVersion));
    EXPECT_TRUE(bCleared);
    EXPECT_EQ("", strVersion);
}

TEST_F(DirectOperations, ReadsNoMoreThanFiftyCharactersOfAVersionWithoutEnd) {
    camera.onDriver(2496, IA_CMD_OPT_GET, [](int, void* p_pData) {
        std::memset(p_pData, 'v', 50);
        return 0;
    });
    std::string strVersion;
    EXPECT_TRUE(controller.getCameraVerInf(strVersion));
    EXPECT_EQ(std::string(50, 'v'), strVersion);
}

TEST_F(DirectOperations, LeavesTheVersionAloneWhenTheDriverFails) {
    camera.onDriver(2496, IA_CMD_OPT_GET, [](int, void* p_pData) {
        std::strcpy(static_cast<char*>(p_pData), "half");
        return -1;
    });
    std::string strVersion = "old";
    EXPECT_FALSE(controller.getCameraVerInf(strVersion));
    EXPECT_EQ("old", strVersion);
}

TEST_F(DirectOperations, ZoomRatioAtTheEdgesOfTheTable) {
    EXPECT_EQ(1000, ratioAt(0));
    EXPECT_EQ(1000, ratioAt(16384));
    EXPECT_EQ(1001, ratioAt(16385));
    EXPECT_EQ(2000, ratioAt(24576));
    EXPECT_EQ(2001, ratioAt(24577));
    EXPECT_EQ(16000, ratioAt(31424));
}

TEST_F(DirectOperations, MeantAPositionAboveTheTableLeavesTheRatioAndSucceeds) {
    EXPECT_EQ(4711, ratioAt(31425, 4711));
    EXPECT_EQ(4711, ratioAt(INT_MAX, 4711));
}

TEST_F(DirectOperations, TakesANegativePositionForAHighOne) {
    EXPECT_EQ(4711, ratioAt(-1, 4711));
    EXPECT_EQ(4711, ratioAt(INT_MIN, 4711));
}

// The whole magnifications, and between them a straight line whose cut-off part is rounded down.
TEST_F(DirectOperations, ZoomRatioFollowsItsTable) {
    const unsigned aPositions[] = {16384, 24576, 27264, 28672, 29056, 29440, 29728, 30016,
                                   30208, 30400, 30560, 30720, 30912, 31104, 31232, 31424};
    const auto expected = [&](unsigned p_nPosition) {
        for (unsigned k = 0; k <= 14; ++k) {
            if (aPositions[k] < p_nPosition && p_nPosition <= aPositions[k + 1]) {
                const unsigned nBelow = 1000 * (aPositions[k + 1] - p_nPosition);
                return static_cast<int>(1000 * (k + 2) - nBelow / (aPositions[k + 1] - aPositions[k]));
            }
        }
        return 1000;
    };
    for (unsigned nPosition = 16300; nPosition <= 31424; nPosition += 13) {
        ASSERT_EQ(expected(nPosition), ratioAt(static_cast<int>(nPosition))) << nPosition;
    }
    for (std::size_t i = 0; i < std::size(aPositions); ++i) {
        EXPECT_EQ(static_cast<int>(1000 * (i + 1)), ratioAt(static_cast<int>(aPositions[i])));
        for (const unsigned nPosition : {aPositions[i] - 1, aPositions[i] + 1}) {
            if (nPosition <= 31424) {
                EXPECT_EQ(expected(nPosition), ratioAt(static_cast<int>(nPosition))) << nPosition;
            }
        }
    }
}

TEST_F(DirectOperations, ComputesNoRatioWhenThePositionIsNotKnown) {
    camera.onDriver(1568, IA_CMD_OPT_GET, [](int, void* p_pData) {
        *static_cast<int*>(p_pData) = 24576;
        return -4;
    });
    int nPosition = 1;
    int nRatio = 77;
    EXPECT_FALSE(controller.getZoomValue(nPosition, nRatio));
    EXPECT_EQ(24576, nPosition);
    EXPECT_EQ(77, nRatio);
}

TEST_F(DirectOperations, SetsTheIrisInPriorityModeWithinItsBounds) {
    const std::pair<int, int> aRows[] = {{0, 256},         {-1, 256},          {INT_MIN, 256},    {255, 256},
                                         {256, 256},       {257, 257},         {25599, 25599},    {25600, 25600},
                                         {25601, 1048576}, {1048576, 1048576}, {INT_MAX, 1048576}};
    for (const auto& [nGiven, nSent] : aRows) {
        SCOPED_TRACE(nGiven);
        camera.clear();
        EXPECT_TRUE(controller.setIrisValue(nGiven));
        EXPECT_THAT(camera.transcript(), ElementsAre("ia ch0 set 16 = 3", setLine(82, nSent)));
    }
}

TEST_F(DirectOperations, MeantAnIrisAboveItsBoundGoesFarBeyondIt) {
    EXPECT_TRUE(controller.setIrisValue(25601));
    EXPECT_EQ(0x100000, camera.driverValue(0, 82));
}

TEST_F(DirectOperations, SetsNoIrisWhenThePriorityModeFails) {
    camera.driverFails(16, IA_CMD_OPT_SET, -3);
    EXPECT_FALSE(controller.setIrisValue(300));
    EXPECT_THAT(camera.transcript(), ElementsAre("ia ch0 set 16 = 3 failed -3"));
}

TEST_F(DirectOperations, TellsThatTheIrisWasNotSet) {
    camera.driverFails(82, IA_CMD_OPT_SET, -5);
    EXPECT_FALSE(controller.setIrisValue(300));
}

TEST_F(DirectOperations, ReadsTheHeaterFromOneByte) {
    for (const int nByte : {0, 1, 2, 255}) {
        SCOPED_TRACE(nByte);
        camera.onDriver(1606, IA_CMD_OPT_GET, [=](int, void* p_pData) {
            *static_cast<unsigned char*>(p_pData) = static_cast<unsigned char>(nByte);
            return 0;
        });
        for (bool bHot : {false, true}) {
            EXPECT_TRUE(controller.getHeatStatus(bHot));
            EXPECT_EQ(0 != nByte, bHot);
        }
    }
}

TEST_F(DirectOperations, LeavesTheHeaterAsTheDriverLeftIt) {
    camera.driverFails(1606, IA_CMD_OPT_GET, -1, 2);
    for (const bool bBefore : {false, true}) {
        bool bHot = bBefore;
        EXPECT_FALSE(controller.getHeatStatus(bHot));
        EXPECT_EQ(bBefore, bHot);
    }
    camera.onDriver(1606, IA_CMD_OPT_GET, [](int, void* p_pData) {
        *static_cast<unsigned char*>(p_pData) = 1;
        return -1;
    });
    bool bHot = false;
    EXPECT_FALSE(controller.getHeatStatus(bHot));
    EXPECT_TRUE(bHot);
}

TEST_F(DirectOperations, OnALockedLensSucceedWithoutTheDriver) {
    lockLens();
    const std::pair<const char*, Call> aCalls[] = {
        {"focusFar", [](ISensorController& c) { return c.focusFar(); }},
        {"focusNear", [](ISensorController& c) { return c.focusNear(); }},
        {"zoomIn", [](ISensorController& c) { return c.zoomIn(); }},
        {"zoomOut", [](ISensorController& c) { return c.zoomOut(); }},
        {"setZoomValue", [](ISensorController& c) { return c.setZoomValue(20000); }},
        {"setFocusValue", [](ISensorController& c) { return c.setFocusValue(1); }},
        {"setFocusMode", [](ISensorController& c) { return c.setFocusMode(1); }},
    };
    for (const auto& [szName, fnCall] : aCalls) {
        SCOPED_TRACE(szName);
        EXPECT_TRUE(fnCall(controller));
    }
    EXPECT_THAT(camera.transcript(), IsEmpty());
}

TEST_F(DirectOperations, OnALockedLensTheRatioFollowsWhateverThePositionWas) {
    lockLens();
    camera.driverHolds(0, 1568, 16384);
    int nPosition = 24576;
    int nRatio = 0;
    EXPECT_TRUE(controller.getZoomValue(nPosition, nRatio));
    EXPECT_EQ(24576, nPosition);
    EXPECT_EQ(2000, nRatio);
    EXPECT_THAT(camera.transcript(), IsEmpty());
}

TEST_F(DirectOperations, OnALockedLensPanningAndTheStatisticStillReachTheDriver) {
    lockLens();
    unsigned nStatistic = 0;
    EXPECT_TRUE(controller.setPTZRunState(1));
    EXPECT_TRUE(controller.getAFStatistic(nStatistic));
    EXPECT_THAT(camera.transcript(), ElementsAre("ia ch0 set 1632 = 1", "ia ch0 get 1648 -> 0"));
}

TEST_F(DirectOperations, ChangeNoParameterSet) {
    const std::vector<KeyVal> vecRecords = {{16, 0},  {82, 1},   {144, 2},  {153, 3},
                                            {225, 4}, {1536, 5}, {1552, 6}, {1568, 7}};
    build(2, vecRecords);
    int nValue = 9;
    controller.setIrisValue(300);
    controller.setDNState(1);
    controller.setExposureStrategy(nValue);
    controller.setFocusMode(9);
    controller.setFocusValue(9);
    controller.setZoomValue(9);
    controller.focusFar();
    controller.irisUp();
    for (u32 nScheme = 0; nScheme <= 2; ++nScheme) {
        for (const KeyVal& stKeyVal : vecRecords) {
            EXPECT_EQ(stKeyVal.value, probe.valueIn(nScheme, stKeyVal.key)) << stKeyVal.key;
        }
    }
}

TEST_F(DirectOperations, AreSentAgainThoughTheValueIsInForce) {
    build(1, {{1536, 1}});
    EXPECT_TRUE(controller.setFocusMode(1));
    EXPECT_TRUE(controller.setFocusMode(1));
    EXPECT_THAT(camera.transcript(), ElementsAre("ia ch0 set 1536 = 1", "ia ch0 set 1536 = 1"));
}

}  // namespace
