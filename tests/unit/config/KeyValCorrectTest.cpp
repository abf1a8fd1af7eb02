#include "platform/ImageAdjust.h"
#include "sensor/config/SensorKeyVal.h"
#include "tests/support/Messages.h"
#include "tests/support/RecordingCamera.h"
#include "tests/support/TestRoot.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <limits>
#include <string>
#include <vector>

namespace {

const messages::Place kCorrection{"SensorKeyVal.cpp", "keyval_correct"};
constexpr char kListFailed[] =
    "QVS_SUCCESS == ia_ioctrl_v2(p_nChannel_id, IA_CMD_DYNAMIC_PARAMS_CMDS_GET, IA_CMD_OPT_GET, "
    "(void*)(&dnaCmdList))";
constexpr char kCorrectionFailed[] =
    "QVS_SUCCESS == ia_ioctrl_v2(p_nChannel_id, (ia_cmd_e)p_pKeyval[index].key, IA_CMD_OPT_CORRECT_PARAM, "
    "&p_pKeyval[index].value)";

class KeyValCorrect : public testing::Test {
protected:
    KeyValCorrect() { GTEST_FLAG_SET(death_test_style, "threadsafe"); }

    // The driver brings the value of a command to this one.
    void corrects(u32 p_nCmd, int p_nValue) {
        m_objCamera.onDriver(p_nCmd, IA_CMD_OPT_CORRECT_PARAM, [p_nValue](int, void* p_pData) {
            *static_cast<int*>(p_pData) = p_nValue;
            return IA_OK;
        });
    }

    // The driver answers the request for its list itself.
    void lists(int p_nClaimed, const std::vector<u32>& p_vecCmds, int p_nResult = IA_OK) {
        m_objCamera.onDriver(IA_CMD_DYNAMIC_PARAMS_CMDS_GET, IA_CMD_OPT_GET, [=](int, void* p_pData) {
            auto* const pList = static_cast<ia_dynamic_params_cmds_st*>(p_pData);
            pList->cmd_cnt = p_nClaimed;
            std::copy(p_vecCmds.begin(), p_vecCmds.end(), pList->cmd_list);
            return p_nResult;
        });
    }

    KeyVal* set() { return m_stRecords + 1; }
    static constexpr u32 kSum = 3;

    TestRoot m_objRoot;
    RecordingCamera m_objCamera;
    KeyVal m_stRecords[1 + kSum] = {{0, 0}, {49, 7}, {50, static_cast<u32>(-3)}, {82, 1}};  // one record in front
};
using KeyValCorrectDeathTest = KeyValCorrect;

TEST_F(KeyValCorrect, BringsEachDynamicValueIntoItsRange) {
    m_objCamera.dynamicCommands({82, 49});
    corrects(49, 9);
    corrects(82, 0);
    EXPECT_EQ("", outputOf([&] { EXPECT_EQ(QVS_SUCCESS, keyval_correct(1, set(), kSum)); }));
    EXPECT_EQ(
        "ia ch1 commands\n"
        "ia ch1 correct 82: 1 -> 0\n"
        "ia ch1 correct 49: 7 -> 9\n",
        m_objCamera.text());
    EXPECT_EQ(9u, set()[0].value);
    EXPECT_EQ(static_cast<u32>(-3), set()[1].value);
    EXPECT_EQ(0u, set()[2].value);
    EXPECT_EQ("", m_objRoot.errorLog());
}

TEST_F(KeyValCorrect, HandsTheDriverTheValueInItsPlace) {
    m_objCamera.dynamicCommands({50});
    void* pSeen = nullptr;
    m_objCamera.onDriver(50, IA_CMD_OPT_CORRECT_PARAM, [&](int, void* p_pData) {
        pSeen = p_pData;
        return IA_OK;
    });
    keyval_correct(0, set(), kSum);
    EXPECT_EQ(&set()[1].value, pSeen);
}

TEST_F(KeyValCorrect, AsksTheChannelThatItIsGiven) {
    for (const int nChannel : {0, 3, -1}) {
        m_objCamera.clear();
        keyval_correct(nChannel, set(), kSum);
        EXPECT_EQ("ia ch" + std::to_string(nChannel) + " commands\n", m_objCamera.text());
    }
}

TEST_F(KeyValCorrect, AsksForTheListWithAZeroedRecord) {
    bool bZeroed = false;
    m_objCamera.onDriver(IA_CMD_DYNAMIC_PARAMS_CMDS_GET, IA_CMD_OPT_GET, [&](int, void* p_pData) {
        const auto* const pBytes = static_cast<const unsigned char*>(p_pData);
        bZeroed = std::all_of(pBytes, pBytes + sizeof(ia_dynamic_params_cmds_st),
                              [](unsigned char p_nByte) { return 0 == p_nByte; });
        return IA_OK;
    });
    keyval_correct(0, set(), kSum);
    EXPECT_TRUE(bZeroed);
}

TEST_F(KeyValCorrect, WithAnEmptyListCorrectsNothing) {
    m_objCamera.dynamicCommands({});
    EXPECT_EQ("", outputOf([&] { EXPECT_EQ(QVS_SUCCESS, keyval_correct(0, set(), kSum)); }));
    EXPECT_EQ("ia ch0 commands\n", m_objCamera.text());
}

TEST_F(KeyValCorrect, TakesTheFirstRecordOfAKey) {
    KeyVal records[] = {{0, 0}, {49, 1}, {49, 2}};
    m_objCamera.dynamicCommands({49});
    corrects(49, 5);
    keyval_correct(0, records + 1, 2);
    EXPECT_EQ(5u, records[1].value);
    EXPECT_EQ(2u, records[2].value);
}

TEST_F(KeyValCorrect, CorrectsACommandThatIsListedTwiceTwice) {
    m_objCamera.dynamicCommands({49, 49});
    keyval_correct(0, set(), kSum);
    EXPECT_EQ(2u, m_objCamera.linesLike("ia ch0 correct 49").size());
}

TEST_F(KeyValCorrect, CorrectsAListOfSixteen) {
    std::vector<KeyVal> vecRecords(17);
    std::vector<u32> vecCmds;
    for (u32 i = 0; i < 16; ++i) {
        vecRecords[i + 1] = {100 + i, 1};
        vecCmds.push_back(100 + i);
        corrects(100 + i, 2);
    }
    m_objCamera.dynamicCommands(vecCmds);
    EXPECT_EQ("", outputOf([&] { keyval_correct(0, vecRecords.data() + 1, 16); }));
    for (u32 i = 1; i <= 16; ++i) {
        EXPECT_EQ(2u, vecRecords[i].value) << i;
    }
}

// --- Debug traces ---

TEST_F(KeyValCorrect, TracesEachValueBeforeAndAfterAboveLevelFive) {
    m_objCamera.dynamicCommands({50});
    corrects(50, 12);
    m_objRoot.debugLevel(6);
    EXPECT_EQ(messages::debug(kCorrection, "before correct: (50,-3)\n") + messages::trace("after correct: (50,12)\n"),
              messages::anyLine(outputOf([&] { keyval_correct(0, set(), kSum); })));
    m_objRoot.debugLevel(5);
    EXPECT_EQ("", outputOf([&] { keyval_correct(0, set(), kSum); }));
}

// --- Failures ---

TEST_F(KeyValCorrect, OfANullArrayIsReportedAndCorrectsNothing) {
    m_objCamera.dynamicCommands({49, 50});
    const std::string strShown = outputOf([] { EXPECT_EQ(QVS_SUCCESS, keyval_correct(0, nullptr, 5)); });
    EXPECT_EQ(messages::assertion(kCorrection, "NULL != p_pKeyval"), messages::anyLine(strShown));
    EXPECT_EQ(messages::loggedAssertion(kCorrection, "NULL != p_pKeyval"), messages::anyLine(m_objRoot.errorLog()));
    EXPECT_EQ("ia ch0 commands\n", m_objCamera.text());
}

TEST_F(KeyValCorrect, WithoutAListIsReportedAndCorrectsNothing) {
    m_objCamera.driverFails(IA_CMD_DYNAMIC_PARAMS_CMDS_GET, IA_CMD_OPT_GET, IA_ERR_HARDWARE);
    const std::string strShown = outputOf([&] { EXPECT_EQ(QVS_SUCCESS, keyval_correct(0, set(), kSum)); });
    EXPECT_EQ(messages::assertion(kCorrection, kListFailed), messages::anyLine(strShown));
    EXPECT_EQ("ia ch0 commands failed -3\n", m_objCamera.text());
}

TEST_F(KeyValCorrect, GoesOnWithWhatAFailedRequestLeftInTheList) {
    lists(1, {49}, IA_ERR_BUSY);
    corrects(49, 9);
    const std::string strShown = outputOf([&] { EXPECT_EQ(QVS_SUCCESS, keyval_correct(0, set(), kSum)); });
    EXPECT_EQ(messages::assertion(kCorrection, kListFailed), messages::anyLine(strShown));
    EXPECT_EQ(9u, set()[0].value);
}

TEST_F(KeyValCorrect, GoesOnBehindACorrectionThatFails) {
    m_objCamera.dynamicCommands({49, 50});
    m_objCamera.driverFails(49, IA_CMD_OPT_CORRECT_PARAM, IA_ERR_INVALID_VALUE);
    corrects(50, 12);
    const std::string strShown = outputOf([&] { EXPECT_EQ(QVS_SUCCESS, keyval_correct(0, set(), kSum)); });
    EXPECT_EQ(messages::assertion(kCorrection, kCorrectionFailed), messages::anyLine(strShown));
    EXPECT_EQ(messages::loggedAssertion(kCorrection, kCorrectionFailed), messages::anyLine(m_objRoot.errorLog()));
    EXPECT_EQ(7u, set()[0].value);
    EXPECT_EQ(12u, set()[1].value);
}

TEST_F(KeyValCorrect, TracesAValueThatCouldNotBeCorrectedToo) {
    m_objCamera.dynamicCommands({49});
    m_objCamera.driverFails(49, IA_CMD_OPT_CORRECT_PARAM, IA_ERR_INVALID_VALUE);
    m_objRoot.debugLevel(6);
    EXPECT_EQ(messages::debug(kCorrection, "before correct: (49,7)\n") +
                  messages::assertion(kCorrection, kCorrectionFailed) + messages::trace("after correct: (49,7)\n"),
              messages::anyLine(outputOf([&] { keyval_correct(0, set(), kSum); })));
}

TEST_F(KeyValCorrect, MeantACommandThatTheSetLacksCorrectsTheRecordInFrontOfIt) {
    m_stRecords[0] = {1537, 44};
    m_objCamera.dynamicCommands({999, 49});
    corrects(1537, 45);
    corrects(49, 9);
    const std::string strShown = outputOf([&] { EXPECT_EQ(QVS_SUCCESS, keyval_correct(0, set(), kSum)); });
    EXPECT_EQ(messages::assertion(kCorrection, "-1 != index"), messages::anyLine(strShown));
    EXPECT_EQ(
        "ia ch0 commands\n"
        "ia ch0 correct 1537: 44 -> 45\n"
        "ia ch0 correct 49: 7 -> 9\n",
        m_objCamera.text());
    EXPECT_EQ(45u, m_stRecords[0].value);
    EXPECT_EQ(9u, set()[0].value);
}

TEST_F(KeyValCorrect, DoesNotLookForACommandInTheRecordInFront) {
    m_stRecords[0] = {49, 44};
    m_objCamera.dynamicCommands({49});
    corrects(49, 9);
    keyval_correct(0, set(), kSum);
    EXPECT_EQ(44u, m_stRecords[0].value);
    EXPECT_EQ(9u, set()[0].value);
}

TEST_F(KeyValCorrect, OfNoRecordsFindsNoCommand) {
    m_objCamera.dynamicCommands({49});
    const std::string strShown = outputOf([&] { EXPECT_EQ(QVS_SUCCESS, keyval_correct(0, set(), 0)); });
    EXPECT_EQ(messages::assertion(kCorrection, "-1 != index"), messages::anyLine(strShown));
    EXPECT_EQ("ia ch0 commands\nia ch0 correct 0: 0 -> 0\n", m_objCamera.text());
    EXPECT_EQ(7u, set()[0].value);
}

// --- A driver that lies ---

TEST_F(KeyValCorrect, ReadsNoMoreCommandsThanTheListHolds) {
    for (const int nClaimed : {17, 1000, std::numeric_limits<int>::max()}) {
        m_objCamera.clear();
        lists(nClaimed, std::vector<u32>(16, 49));
        m_objRoot.debugLevel(6);
        const std::string strShown = outputOf([&] { EXPECT_EQ(QVS_SUCCESS, keyval_correct(0, set(), kSum)); });
        EXPECT_EQ(16u, m_objCamera.linesLike("ia ch0 correct 49").size()) << nClaimed;
        EXPECT_EQ(17u, m_objCamera.transcript().size()) << nClaimed;
        EXPECT_NE(std::string::npos, strShown.find("driver claims " + std::to_string(nClaimed) + " dynamic commands"));
    }
}

TEST_F(KeyValCorrect, OfANegativeCountCorrectsNothing) {
    for (const int nClaimed : {-1, std::numeric_limits<int>::min()}) {
        m_objCamera.clear();
        lists(nClaimed, std::vector<u32>(16, 49));
        EXPECT_EQ("", outputOf([&] { EXPECT_EQ(QVS_SUCCESS, keyval_correct(0, set(), kSum)); }));
        EXPECT_EQ("ia ch0 commands\n", m_objCamera.text());
    }
}

// --- Enabled aborts ---

TEST_F(KeyValCorrectDeathTest, AbortsAtANullArray) {
    m_objRoot.debugLevel(1, true);
    EXPECT_DEATH(keyval_correct(0, nullptr, 0),
                 "SensorKeyVal\\.cpp:[0-9]+: int keyval_correct\\(int, KeyVal ?\\*, .*\\): Assertion `bRet' failed");
}

TEST_F(KeyValCorrectDeathTest, AbortsWithoutAList) {
    m_objRoot.debugLevel(1, true);
    m_objCamera.driverFails(IA_CMD_DYNAMIC_PARAMS_CMDS_GET, IA_CMD_OPT_GET, IA_ERR_HARDWARE);
    EXPECT_DEATH(keyval_correct(0, set(), kSum), "SensorKeyVal\\.cpp:.*Assertion `bRet' failed");
}

TEST_F(KeyValCorrectDeathTest, AbortsAtACommandThatTheSetLacksBeforeItTouchesAnything) {
    EXPECT_EXIT(
        {
            m_objRoot.debugLevel(1, true);
            m_objCamera.dynamicCommands({999});
            m_objCamera.onDriver(0, IA_CMD_OPT_CORRECT_PARAM, [](int, void*) -> int { _exit(0); });
            keyval_correct(0, set(), kSum);
        },
        testing::KilledBySignal(SIGABRT), "SensorKeyVal\\.cpp:.*Assertion `bRet' failed");
}

TEST_F(KeyValCorrectDeathTest, AbortsAtACorrectionThatFails) {
    m_objRoot.debugLevel(1, true);
    m_objCamera.dynamicCommands({49});
    m_objCamera.driverFails(49, IA_CMD_OPT_CORRECT_PARAM, IA_ERR_INVALID_VALUE);
    EXPECT_DEATH(keyval_correct(0, set(), kSum), "SensorKeyVal\\.cpp:.*Assertion `bRet' failed");
}

}  // namespace
