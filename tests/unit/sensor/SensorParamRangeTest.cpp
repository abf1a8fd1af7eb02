// What the driver accepts now, as text.
#include "technic/QVMutex.h"
#include "tests/unit/sensor/RangedSets.h"

#include <algorithm>
#include <climits>

using messages::anyLine;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::StartsWith;

namespace {

class SensorParamRange : public RangedSets {
protected:
    static constexpr char kListFailed[] =
        "QVS_SUCCESS == ia_ioctrl_v2(m_nCameraID-1, IA_CMD_DYNAMIC_PARAMS_CMDS_GET, IA_CMD_OPT_GET, "
        "(void*)(&dnaCmdList))";
    static constexpr char kRangeFailed[] =
        "QVS_SUCCESS == doIaCmd(p_nCmd, IA_CMD_OPT_GET_PARAM_RNAGE, (void*)(&stDynamicParam))";

    static std::string asText(const std::vector<int>& p_vecItems) {
        std::string strText;
        for (const int nItem : p_vecItems) {
            strText += (strText.empty() ? "" : " ") + std::to_string(nItem);
        }
        return strText;
    }
    // A driver that claims a number of items, and fills all that there are with 7.
    void claimItems(int p_nClaimed) {
        camera.dynamicCommands({KEY_MAX_SHUTTER});
        camera.onDriver(KEY_MAX_SHUTTER, kRange, [=](int, void* p_pData) {
            ia_dynamic_params_attr_st stRange = RecordingCamera::rangeOf(7, std::vector<int>(IA_DYNAMIC_ITEMS_MAX, 7));
            stRange.items_cnt = p_nClaimed;
            *static_cast<ia_dynamic_params_attr_st*>(p_pData) = stRange;
            return IA_OK;
        });
    }
    bool ask(int p_nCmd) { return controller.getSensorParamRange(p_nCmd, nDefault, strRange); }
    void expectNothingTold() {
        EXPECT_EQ(-77, nDefault);
        EXPECT_EQ("before", strRange);
    }

    int nDefault = -77;
    std::string strRange = "before";
};

TEST_F(SensorParamRange, ItTellsTheDefaultAndTheValuesInTheDriversOrder) {
    strRange = "";
    driverOffers(49, 16667, {33333, 16667, 8333});
    EXPECT_TRUE(ask(49));
    EXPECT_EQ(16667, nDefault);
    EXPECT_EQ("33333 16667 8333", strRange);
    EXPECT_THAT(camera.transcript(), ElementsAre("ia ch0 commands", "ia ch0 range 49"));
}

TEST_F(SensorParamRange, TheValuesAreAppendedToWhatIsThere) {
    driverOffers(49, 1, {33333, 16667});
    EXPECT_TRUE(ask(49));
    EXPECT_EQ("before33333 16667", strRange);
    EXPECT_TRUE(ask(49));
    EXPECT_EQ("before33333 1666733333 16667", strRange);
}

TEST_F(SensorParamRange, MeantFourCommandsAreServedAndNoOther) {
    for (const int nCmd : {49, 50, 82, 1537}) {
        driverOffers(static_cast<u32>(nCmd), nCmd + 1, {nCmd + 2});
        strRange = "";
        EXPECT_TRUE(ask(nCmd)) << nCmd;
        EXPECT_EQ(nCmd + 1, nDefault);
        EXPECT_EQ(std::to_string(nCmd + 2), strRange);
    }
}

TEST_F(SensorParamRange, AnyOtherDynamicCommandIsRefusedWithoutAWord) {
    root.debugLevel(7);
    strRange = "before";
    for (const int nCmd : {34, 48, 51, 81, 83, 1536, 1538, 2353, 0, -1}) {
        driverOffers(static_cast<u32>(nCmd), 1, {2});
        camera.clear();
        EXPECT_EQ("", outputOf([&] { EXPECT_FALSE(ask(nCmd)) << nCmd; }));
        EXPECT_THAT(camera.transcript(), ElementsAre("ia ch0 commands"));
    }
    expectNothingTold();
}

TEST_F(SensorParamRange, ACommandOutsideTheDriversListIsRefusedWithoutAWord) {
    root.debugLevel(7);
    camera.dynamicCommands({34, 50});
    camera.range(49, RecordingCamera::rangeOf(1, {2}));
    EXPECT_EQ("", outputOf([&] { EXPECT_FALSE(ask(49)); }));
    camera.dynamicCommands({});
    EXPECT_EQ("", outputOf([&] { EXPECT_FALSE(ask(49)); }));
    expectNothingTold();
    EXPECT_THAT(camera.transcript(), ElementsAre("ia ch0 commands", "ia ch0 commands"));
    EXPECT_EQ("", root.errorLog());
}

TEST_F(SensorParamRange, TheLastOfSixteenCommandsIsFound) {
    std::vector<u32> vecCmds(15, 34);
    vecCmds.push_back(82);
    camera.dynamicCommands(vecCmds);
    camera.range(82, RecordingCamera::rangeOf(5, {6}));
    EXPECT_TRUE(ask(82));
    EXPECT_EQ(5, nDefault);
}

TEST_F(SensorParamRange, ACommandBehindTheDriversCountDoesNotCount) {
    camera.onDriver(IA_CMD_DYNAMIC_PARAMS_CMDS_GET, IA_CMD_OPT_GET, [](int, void* p_pData) {
        *static_cast<ia_dynamic_params_cmds_st*>(p_pData) = {1, {34, 49}};
        return IA_OK;
    });
    EXPECT_FALSE(ask(49));
    expectNothingTold();
}

TEST_F(SensorParamRange, ItAsksOnTheControllersChannel) {
    controller.setChannelID(2);
    driverOffers(49, 1, {2});
    EXPECT_TRUE(ask(49));
    EXPECT_THAT(camera.transcript(), ElementsAre("ia ch1 commands", "ia ch1 range 49"));
}

TEST_F(SensorParamRange, ItPrintsWhatItToldAtEveryLevelWithWhatWasThereBefore) {
    root.debugLevel(-1);
    driverOffers(1537, -3, {10, 20});
    EXPECT_EQ("cmd=1537 DefaltParam=-3 strParamRange=before10 20\n", outputOf([&] { EXPECT_TRUE(ask(1537)); }));
}

TEST_F(SensorParamRange, OneValueAndNoneAreToldWithoutBlanks) {
    driverOffers(49, 4, {INT_MIN});
    EXPECT_TRUE(ask(49));
    EXPECT_EQ("before-2147483648", strRange);
    driverOffers(49, 5, {});
    strRange = "before";
    EXPECT_EQ("cmd=49 DefaltParam=5 strParamRange=before\n", outputOf([&] { EXPECT_TRUE(ask(49)); }));
    EXPECT_EQ("before", strRange);
    EXPECT_EQ(5, nDefault);
}

TEST_F(SensorParamRange, ARangeThatIsNoListSucceedsAndTellsNothing) {
    camera.dynamicCommands({49});
    for (const int nKind : {1, -1, INT_MIN}) {
        ia_dynamic_params_attr_st stRange = RecordingCamera::rangeOf(5, {6, 7});
        stRange.range_kind = nKind;
        camera.range(49, stRange);
        EXPECT_EQ("", outputOf([&] { EXPECT_TRUE(ask(49)); }));
    }
    expectNothingTold();
}

TEST_F(SensorParamRange, SixtyFourValuesAreToldWhole) {
    const std::vector<int> vecItems = counting(64);
    strRange = "";
    driverOffers(49, 1, vecItems);
    EXPECT_TRUE(ask(49));
    EXPECT_EQ(asText(vecItems), strRange);
}

TEST_F(SensorParamRange, ADriverThatClaimsMoreThanSixtyFourValuesIsBoundedAndReported) {
    root.debugLevel(6);
    for (const int nClaimed : {65, INT_MAX}) {
        claimItems(nClaimed);
        strRange = "";
        EXPECT_THAT(anyLine(outputOf([&] { EXPECT_TRUE(ask(49)); })),
                    HasSubstr(messages::error(
                        {"DriverLists.cpp", "contained"},
                        "driver claims " + std::to_string(nClaimed) + " range items, the record holds 0 to 64\n")));
        EXPECT_EQ(asText(std::vector<int>(64, 7)), strRange);
    }
}

TEST_F(SensorParamRange, ADriverThatClaimsANegativeNumberOfValuesIsReportedAndTellsNone) {
    root.debugLevel(6);
    claimItems(-1);
    EXPECT_THAT(anyLine(outputOf([&] { EXPECT_TRUE(ask(49)); })),
                HasSubstr(messages::error({"DriverLists.cpp", "contained"},
                                          "driver claims -1 range items, the record holds 0 to 64\n")));
    EXPECT_EQ("before", strRange);
    EXPECT_EQ(7, nDefault);
}

TEST_F(SensorParamRange, ADriverThatClaimsAnImpossibleNumberOfCommandsIsBoundedAndReported) {
    root.debugLevel(6);
    for (const int nClaimed : {17, INT_MAX, -1}) {
        camera.onDriver(IA_CMD_DYNAMIC_PARAMS_CMDS_GET, IA_CMD_OPT_GET, [=](int, void* p_pData) {
            auto* const pList = static_cast<ia_dynamic_params_cmds_st*>(p_pData);
            pList->cmd_cnt = nClaimed;
            pList->cmd_list[IA_DYNAMIC_CMDS_MAX - 1] = 49;
            return IA_OK;
        });
        camera.range(49, RecordingCamera::rangeOf(1, {2}));
        EXPECT_THAT(anyLine(outputOf([&] { EXPECT_EQ(nClaimed > 0, ask(49)); })),
                    StartsWith(messages::error({"DriverLists.cpp", "contained"},
                                               "driver claims " + std::to_string(nClaimed) +
                                                   " dynamic commands, the record holds 0 to 16\n")));
    }
}

TEST_F(SensorParamRange, AListOfCommandsThatFailsIsAnAssertionAndNothingIsTold) {
    driverOffers(49, 1, {2});
    camera.driverFails(IA_CMD_DYNAMIC_PARAMS_CMDS_GET, IA_CMD_OPT_GET, -3);
    EXPECT_EQ(messages::assertion(in("getSensorParamRange"), kListFailed),
              anyLine(outputOf([&] { EXPECT_FALSE(ask(49)); })));
    EXPECT_EQ(messages::loggedAssertion(in("getSensorParamRange"), kListFailed), anyLine(root.errorLog()));
    EXPECT_THAT(camera.transcript(), ElementsAre("ia ch0 commands failed -3"));
    expectNothingTold();
}

TEST_F(SensorParamRange, WhatAFailedListOfCommandsHoldsCountsAllTheSame) {
    root.debugLevel(-1);
    camera.onDriver(IA_CMD_DYNAMIC_PARAMS_CMDS_GET, IA_CMD_OPT_GET, [](int, void* p_pData) {
        *static_cast<ia_dynamic_params_cmds_st*>(p_pData) = {1, {49}};
        return -1;
    });
    camera.range(49, RecordingCamera::rangeOf(1, {2}));
    EXPECT_TRUE(ask(49));
    EXPECT_EQ("before2", strRange);
}

TEST_F(SensorParamRange, TheRecordsStartCleared) {
    bool bCleared = true;
    const auto look = [&](const void* p_pData, std::size_t p_nBytes) {
        const char* const pBytes = static_cast<const char*>(p_pData);
        bCleared = bCleared && std::all_of(pBytes, pBytes + p_nBytes, [](char p_cByte) { return '\0' == p_cByte; });
    };
    camera.onDriver(IA_CMD_DYNAMIC_PARAMS_CMDS_GET, IA_CMD_OPT_GET, [&](int, void* p_pData) {
        look(p_pData, sizeof(ia_dynamic_params_cmds_st));
        *static_cast<ia_dynamic_params_cmds_st*>(p_pData) = {1, {49}};
        return IA_OK;
    });
    camera.onDriver(49, kRange, [&](int, void* p_pData) {
        look(p_pData, sizeof(ia_dynamic_params_attr_st));
        return IA_OK;
    });
    EXPECT_TRUE(ask(49));
    EXPECT_TRUE(ask(49));
    EXPECT_TRUE(bCleared);
    EXPECT_EQ(0, nDefault);
    EXPECT_EQ("before", strRange);
}

TEST_F(SensorParamRange, ARangeThatFailsIsAnAssertionAndTellsAsMuchAsItHolds) {
    camera.dynamicCommands({49});
    camera.driverFails(49, kRange, -3, 1);
    EXPECT_EQ(
        messages::assertion(in("getSensorParamRange"), kRangeFailed) + "cmd=49 DefaltParam=0 strParamRange=before\n",
        anyLine(outputOf([&] { EXPECT_TRUE(ask(49)); })));
    EXPECT_EQ(messages::loggedAssertion(in("getSensorParamRange"), kRangeFailed), anyLine(root.errorLog()));
    EXPECT_EQ(0, nDefault);
    EXPECT_EQ("before", strRange);
    camera.onDriver(49, kRange, [](int, void* p_pData) {
        *static_cast<ia_dynamic_params_attr_st*>(p_pData) = RecordingCamera::rangeOf(5, {6, 7});
        return -1;
    });
    EXPECT_TRUE(quietly([&] { return ask(49); }));
    EXPECT_EQ(5, nDefault);
    EXPECT_EQ("before6 7", strRange);
}

TEST_F(SensorParamRange, AFailureEndsTheProcessWhileAssertionsAreEnabled) {
    camera.dynamicCommands({49});
    root.debugLevel(1, true);
    camera.driverFails(49, kRange, -3);
    EXPECT_DEATH(ask(49), abortIn("getSensorParamRange"));
    camera.driverFails(IA_CMD_DYNAMIC_PARAMS_CMDS_GET, IA_CMD_OPT_GET, -3);
    EXPECT_DEATH(ask(34), abortIn("getSensorParamRange"));
}

TEST_F(SensorParamRange, TheLensLockHoldsTheNearLimitBack) {
    lockLens();
    driverOffers(1537, 5, {6});
    EXPECT_TRUE(ask(1537));
    EXPECT_EQ(0, nDefault);
    EXPECT_EQ("before", strRange);
    EXPECT_THAT(camera.transcript(), ElementsAre("ia ch0 commands"));
    driverOffers(49, 5, {6});
    EXPECT_TRUE(ask(49));
    EXPECT_EQ(5, nDefault);
}

TEST_F(SensorParamRange, TheRangeGoesThroughTheGatewayAndTheListDoesNot) {
    root.debugLevel(6);
    driverOffers(49, 5, {6});
    const std::string strOut = anyLine(outputOf([&] { EXPECT_TRUE(ask(49)); }));
    EXPECT_EQ(
        messages::debug(in("doIaCmd"),
                        "====================== cmd:49 dir:2 val:0 ======m_nCameraID=(1)===============begin\n") +
            messages::debug(in("doIaCmd"), "====================== cmd:49 dir:2 val:0 =====================end\n") +
            "cmd=49 DefaltParam=5 strParamRange=before6\n",
        strOut);
}

TEST_F(SensorParamRange, ItWorksWithoutSetsAndWithoutTheLock) {
    ISensorController fresh;
    driverOffers(49, 5, {6});
    EXPECT_TRUE(fresh.getSensorParamRange(49, nDefault, strRange));
    EXPECT_EQ("before6", strRange);
    const QVMutexManager guard(&probe.mutex(), "the test", 7);  // a second lock would end the process
    EXPECT_TRUE(ask(49));
}

}  // namespace
