// The key-command table: its rows, its making and its search.
#include "tests/unit/sensor/ControllerTest.h"
#include "tests/unit/sensor/KeyCmdRows.h"

#include <malloc.h>

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <iterator>
#include <set>

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

constexpr std::size_t kRowSum = std::size(kKeyCmdRows);
constexpr std::size_t kLongestName = 31;

class KeyCmdMap : public ControllerTest {
protected:
    KeyCmdMap() { build(1, {{34, 50}}); }

    int find(u32 p_nKey, keycmd& p_stRow) { return probe.findFromKeyCmdMap(probe.keyCmdMap(), p_nKey, p_stRow); }
    int find(u32 p_nKey) {
        keycmd stRow{};
        return find(p_nKey, stRow);
    }
};

TEST_F(KeyCmdMap, HoldsEveryRowInItsOrder) {
    ASSERT_EQ(154u, kRowSum);
    for (std::size_t i = 0; i < kRowSum; ++i) {
        const KeyCmdRow& stExpected = kKeyCmdRows[i];
        const keycmd& stRow = probe.keyCmdMap()[i];
        SCOPED_TRACE("row " + std::to_string(i) + " " + stExpected.name);
        EXPECT_EQ(stExpected.key, stRow.key);
        EXPECT_EQ(stExpected.command, stRow.ia_cmd);
        EXPECT_TRUE(SensorControllerProbe::handlerNamed(stExpected.handler) == stRow.pfnHandler);
        EXPECT_EQ(std::string(stExpected.name).substr(0, kLongestName), stRow.szKeyName);
        EXPECT_EQ(nullptr == stExpected.handler ? "NULL" : std::string("&ISensorController::") + stExpected.handler,
                  stRow.szHandlerName);
    }
}

TEST_F(KeyCmdMap, FindsEveryRowAtItsPlace) {
    for (std::size_t i = 0; i < kRowSum; ++i) {
        const KeyCmdRow& stExpected = kKeyCmdRows[i];
        SCOPED_TRACE(stExpected.name);
        keycmd stRow{};
        EXPECT_EQ(static_cast<int>(i), find(stExpected.key, stRow));
        EXPECT_EQ(stExpected.key, stRow.key);
        EXPECT_EQ(stExpected.command, stRow.ia_cmd);
        EXPECT_TRUE(SensorControllerProbe::handlerNamed(stExpected.handler) == stRow.pfnHandler);
        EXPECT_STREQ(probe.keyCmdMap()[i].szKeyName, stRow.szKeyName);
        EXPECT_STREQ(probe.keyCmdMap()[i].szHandlerName, stRow.szHandlerName);
    }
}

TEST_F(KeyCmdMap, MeantTwentyTwoKeysTravelUnderAnotherNumber) {
    std::vector<std::pair<u32, u32>> vecOthers;
    for (std::size_t i = 0; i < kRowSum; ++i) {
        const keycmd& stRow = probe.keyCmdMap()[i];
        if (stRow.key != stRow.ia_cmd) {
            vecOthers.emplace_back(stRow.key, stRow.ia_cmd);
        }
    }
    const std::vector<std::pair<u32, u32>> vecExpected = {
        {83, 85},  {17, 83},  {18, 84},  {170, 168}, {171, 169},   {172, 170},  {173, 171}, {174, 172},
        {8000, 0}, {8001, 0}, {8002, 0}, {8003, 0},  {8004, 0},    {10, 0},     {11, 0},    {2497, 2464},
        {168, 0},  {175, 0},  {200, 0},  {203, 0},   {2570, 2048}, {2571, 2064}};
    EXPECT_EQ(22u, vecOthers.size());
    EXPECT_EQ(vecExpected, vecOthers);
}

TEST_F(KeyCmdMap, HoldsEveryKeyOnce) {
    std::set<u32> setKeys;
    for (std::size_t i = 0; i < kRowSum; ++i) {
        EXPECT_TRUE(setKeys.insert(probe.keyCmdMap()[i].key).second) << probe.keyCmdMap()[i].szKeyName;
    }
}

TEST_F(KeyCmdMap, MeantKeysThatAreOnlyStoredShareTheCommandZeroAndHaveNoHandler) {
    std::vector<u32> vecStored;
    for (std::size_t i = 0; i < kRowSum; ++i) {
        const keycmd& stRow = probe.keyCmdMap()[i];
        EXPECT_EQ(0 == stRow.ia_cmd, nullptr == stRow.pfnHandler) << stRow.szKeyName;
        if (0 == stRow.ia_cmd) {
            vecStored.push_back(stRow.key);
        }
    }
    EXPECT_THAT(vecStored, ElementsAre(8000, 8001, 8002, 8003, 8004, 10, 11, 168, 175, 200, 203));
}

TEST_F(KeyCmdMap, MeantKeepsTheDriversNameOfTheShutterReset) {
    EXPECT_STREQ("IA_CMD_UI_SHUTTER_RESET", probe.keyCmdMap()[116].szKeyName);
    EXPECT_EQ(8231u, probe.keyCmdMap()[116].key);
}

TEST_F(KeyCmdMap, KeepsThirtyOneCharactersOfTheTwoLongerNames) {
    EXPECT_STREQ("KEY_MIXSTREAM_DISTANCE_Y_OFFSET", probe.keyCmdMap()[80].szKeyName);
    EXPECT_STREQ("KEY_MIXSTREAM_DISTANCE_WIDTH_OF", probe.keyCmdMap()[81].szKeyName);
    EXPECT_STREQ("KEY_MIXSTREAM_DISTANCE_HEIGHT_O", probe.keyCmdMap()[82].szKeyName);
    const auto isLong = [](const KeyCmdRow& p_stRow) { return std::strlen(p_stRow.name) > kLongestName; };
    EXPECT_EQ(2, std::count_if(std::begin(kKeyCmdRows), std::end(kKeyCmdRows), isLong));
}

TEST_F(KeyCmdMap, LookingUp34YieldsBrightness) {
    keycmd stRow{};
    EXPECT_EQ(0, find(34, stRow));
    EXPECT_STREQ("KEY_BRIGHTNESS", stRow.szKeyName);
    EXPECT_EQ(34u, stRow.ia_cmd);
    EXPECT_TRUE(SensorControllerProbe::handlerNamed("doIaCmd") == stRow.pfnHandler);
    EXPECT_STREQ("&ISensorController::doIaCmd", stRow.szHandlerName);
}

TEST_F(KeyCmdMap, LookingUp2571YieldsTheLastRowWithCommand2064) {
    keycmd stRow{};
    EXPECT_EQ(153, find(2571, stRow));
    EXPECT_STREQ("KEY_LDC_STRG", stRow.szKeyName);
    EXPECT_EQ(2064u, stRow.ia_cmd);
}

TEST_F(KeyCmdMap, LookingUp17And83YieldsTheIrisStepAndTheIrisSize) {
    keycmd stRow{};
    find(17, stRow);
    EXPECT_STREQ("KEY_IRIS_UP", stRow.szKeyName);
    EXPECT_EQ(83u, stRow.ia_cmd);
    EXPECT_TRUE(SensorControllerProbe::handlerNamed("doIaCmd_User") == stRow.pfnHandler);
    find(83, stRow);
    EXPECT_STREQ("KEY_IRIS_SIZE", stRow.szKeyName);
    EXPECT_EQ(85u, stRow.ia_cmd);
}

TEST_F(KeyCmdMap, LookingUp8000YieldsARowWithoutCommandAndHandler) {
    keycmd stRow{};
    EXPECT_EQ(83, find(8000, stRow));
    EXPECT_STREQ("KEY_SCHEME_MODE", stRow.szKeyName);
    EXPECT_EQ(0u, stRow.ia_cmd);
    EXPECT_TRUE(nullptr == stRow.pfnHandler);
    EXPECT_STREQ("NULL", stRow.szHandlerName);
}

TEST_F(KeyCmdMap, DoesNotFindZeroInItsSpareRows) {
    EXPECT_EQ(0u, probe.keyCmdMap()[154].key);
    EXPECT_EQ(-1, find(0));
}

TEST_F(KeyCmdMap, LeavesTheOutputAloneForANumberThatNoRowHolds) {
    for (const u32 nKey : {0u, 12u, 201u, 202u, 204u, 205u, 0xFFFFFFFFu}) {
        SCOPED_TRACE(nKey);
        keycmd stRow;
        std::memset(static_cast<void*>(&stRow), 0xA5, sizeof(stRow));
        EXPECT_EQ(-1, find(nKey, stRow));
        unsigned char aBytes[sizeof(stRow)];
        std::memcpy(aBytes, static_cast<const void*>(&stRow), sizeof(stRow));
        EXPECT_EQ(std::end(aBytes), std::find_if(std::begin(aBytes), std::end(aBytes),
                                                 [](unsigned char p_nByte) { return 0xA5 != p_nByte; }));
    }
}

TEST_F(KeyCmdMap, CopiesNamesUpToTheirTerminatorsAndLeavesTheBytesBehind) {
    keycmd stRow;
    std::memset(static_cast<void*>(&stRow), 'x', sizeof(stRow));
    EXPECT_EQ(4, find(96, stRow));
    const std::string strName(stRow.szKeyName, sizeof(stRow.szKeyName));
    const std::string strHandler(stRow.szHandlerName, sizeof(stRow.szHandlerName));
    const std::string strExpectedName = std::string("KEY_METER_AREA") + '\0';
    const std::string strExpectedHandler = std::string("&ISensorController::doIaCmd") + '\0';
    EXPECT_EQ(strExpectedName + std::string(sizeof(stRow.szKeyName) - strExpectedName.size(), 'x'), strName);
    EXPECT_EQ(strExpectedHandler + std::string(sizeof(stRow.szHandlerName) - strExpectedHandler.size(), 'x'),
              strHandler);
}

TEST_F(KeyCmdMap, SaysAtLevelSixThatAKeyIsNotThere) {
    root.debugLevel(6);
    EXPECT_EQ(messages::trace("cand not find key-cmd while key=12\n"), outputOf([&] { find(12); }));
    EXPECT_EQ(messages::trace("cand not find key-cmd while key=-1\n"), outputOf([&] { find(0xFFFFFFFFu); }));
    EXPECT_EQ("", outputOf([&] { find(34); }));
    EXPECT_EQ("", root.errorLog());
}

TEST_F(KeyCmdMap, SaysNothingBelowLevelSix) {
    root.debugLevel(5);
    EXPECT_EQ("", outputOf([&] { find(12); }));
}

TEST_F(KeyCmdMap, SearchesTheTableItIsHandedAndTheFirstMatchWins) {
    std::vector<keycmd> vecTable(probe.keyCmdMap(), probe.keyCmdMap() + kRowSum);
    vecTable[7].key = 2571;
    vecTable[7].ia_cmd = 4711;
    keycmd stRow{};
    EXPECT_EQ(7, probe.findFromKeyCmdMap(vecTable.data(), 2571, stRow));
    EXPECT_EQ(4711u, stRow.ia_cmd);
    EXPECT_STREQ("KEY_FIX_SHUTTER", stRow.szKeyName);
}

TEST_F(KeyCmdMap, ComparesAllBitsOfAKey) {
    EXPECT_EQ(-1, find(34 + 0x10000u));
    EXPECT_EQ(-1, find(34 + 0x80000000u));
}

TEST_F(KeyCmdMap, SearchesAsManyRowsAsTheControllerCounts) {
    ISensorController other;
    const SensorControllerProbe otherProbe(other);
    ASSERT_EQ(160u, otherProbe.keyCmdNum());
    std::vector<keycmd> vecTable(161, keycmd{1, 0, nullptr, "", ""});
    vecTable[159].key = 4711;
    vecTable[160].key = 4712;
    keycmd stRow{};
    EXPECT_EQ(159, otherProbe.findFromKeyCmdMap(vecTable.data(), 4711, stRow));
    EXPECT_EQ(-1, otherProbe.findFromKeyCmdMap(vecTable.data(), 4712, stRow));
}

TEST_F(KeyCmdMap, IsCountedAs160RowsBeforeItIsBuiltAndAs154After) {
    ISensorController other;
    SensorControllerProbe otherProbe(other);
    EXPECT_EQ(160u, otherProbe.keyCmdNum());
    EXPECT_TRUE(nullptr == otherProbe.keyCmdMap());
    otherProbe.buildSets(1, {{34, 50}});
    EXPECT_EQ(154u, otherProbe.keyCmdNum());
    other.uinit();
    EXPECT_EQ(154u, otherProbe.keyCmdNum());
}

TEST_F(KeyCmdMap, LeavesSixSpareRowsOfZerosBehindTheFirstTable) {
    const auto* const pBytes = reinterpret_cast<const unsigned char*>(probe.keyCmdMap() + kRowSum);
    EXPECT_EQ(6 * sizeof(keycmd),
              static_cast<std::size_t>(std::count(pBytes, pBytes + 6 * sizeof(keycmd), static_cast<unsigned char>(0))));
}

TEST_F(KeyCmdMap, HasNoSpareRowsWhenItIsBuiltAgain) {
    controller.uinit();
    build(1, {{34, 50}});
    EXPECT_GE(malloc_usable_size(const_cast<keycmd*>(probe.keyCmdMap())), 154 * sizeof(keycmd));
    EXPECT_LT(malloc_usable_size(const_cast<keycmd*>(probe.keyCmdMap())), 155 * sizeof(keycmd));
    EXPECT_EQ(154u, probe.keyCmdNum());
    EXPECT_EQ(153, find(2571));
}

TEST_F(KeyCmdMap, IsAControllersOwn) {
    ISensorController other;
    SensorControllerProbe otherProbe(other);
    otherProbe.buildSets(1, {{34, 50}});
    EXPECT_NE(probe.keyCmdMap(), otherProbe.keyCmdMap());
    other.uinit();
    EXPECT_EQ(0, find(34));
}

TEST_F(KeyCmdMap, CarriesEveryKeyAsItsRowSays) {
    for (const KeyCmdRow& stRow : kKeyCmdRows) {
        if (nullptr == stRow.handler) {
            continue;
        }
        SCOPED_TRACE(stRow.name);
        camera.clear();
        EXPECT_EQ(0, controller.setParameter(static_cast<int>(stRow.key), 3, false));
        const std::string strHandler = stRow.handler;
        const bool bVideoOnly = "doIaCmd_PanoTuning" == strHandler || "test_debugParam" == strHandler;
        const std::string strSet = "ia ch0 set " + std::to_string(stRow.command) + " = ";
        EXPECT_EQ(bVideoOnly ? 0u : 1u, camera.linesLike(strSet).size()) << camera.text();
        EXPECT_EQ("doIaCmd" == strHandler || "doIaCmd_User" == strHandler || strHandler.rfind("doDN", 0) == 0,
                  notifications().empty())
            << camera.text();
    }
}

TEST_F(KeyCmdMap, SendsNothingForAKeyThatIsOnlyStored) {
    for (const KeyCmdRow& stRow : kKeyCmdRows) {
        if (nullptr == stRow.handler && 0 == stRow.command && (stRow.key >= 8000 || stRow.key <= 11)) {
            SCOPED_TRACE(stRow.name);
            EXPECT_EQ(0, controller.setParameter(static_cast<int>(stRow.key), 3, false));
            EXPECT_THAT(camera.transcript(), IsEmpty());
        }
    }
}

TEST(KeyVal, IsTwoWordsWithoutPadding) {
    EXPECT_EQ(8u, sizeof(KeyVal));
    EXPECT_EQ(0u, offsetof(KeyVal, key));
    EXPECT_EQ(4u, offsetof(KeyVal, value));
    static_assert(static_cast<decltype(KeyVal::key)>(-1) > 0, "unsigned");
    static_assert(static_cast<decltype(KeyVal::value)>(-1) > 0, "unsigned");
}

TEST(KeyCmdRecord, HasItsFieldsInOrder) {
    EXPECT_EQ(0u, offsetof(keycmd, key));
    EXPECT_EQ(4u, offsetof(keycmd, ia_cmd));
    EXPECT_EQ(8u, offsetof(keycmd, pfnHandler));
    EXPECT_EQ(8 + sizeof(KeyCmdHandler), offsetof(keycmd, szKeyName));
    EXPECT_EQ(offsetof(keycmd, szKeyName) + 32, offsetof(keycmd, szHandlerName));
    EXPECT_EQ(64u, sizeof(keycmd::szHandlerName));
}

TEST(SensorKeys, NameTheTwinsThatHaveNoRow) {
    EXPECT_EQ(201u, KEY_IR_MANUAL_STRG_MEDIUM_INTELL);
    EXPECT_EQ(202u, KEY_IR_MANUAL_STRG_FAR_INTELL);
    EXPECT_EQ(204u, KEY_WHITE_MANUAL_STRG_MEDIUM_INTELL);
    EXPECT_EQ(205u, KEY_WHITE_MANUAL_STRG_FAR_INTELL);
}

}  // namespace
