#include "SimulatedCamera.h"

#include <fstream>
#include <sstream>

namespace {

using simcam::CommandKind;
using simcam::CommandRow;

std::vector<CommandRow> rows() {
    std::size_t nCount = 0;
    const CommandRow* const pRows = simcam::commandTable(nCount);
    return std::vector<CommandRow>(pRows, pRows + nCount);
}

bool isValue(const CommandRow& p_stRow) {
    return CommandKind::Value == p_stRow.kind || CommandKind::Action == p_stRow.kind;
}

std::string kindName(CommandKind p_eKind) {
    static const char* const kNames[] = {"value", "dynamic", "shared", "action", "readonly", "record"};
    return kNames[static_cast<int>(p_eKind)];
}

// The cells of a row of a table in the README, without the blanks around them.
std::vector<std::string> cellsOf(const std::string& p_strLine) {
    std::vector<std::string> vecCells;
    std::stringstream stream(p_strLine);
    std::string strCell;
    std::getline(stream, strCell, '|');
    while (std::getline(stream, strCell, '|')) {
        vecCells.push_back(strCell.size() > 2 ? strCell.substr(1, strCell.size() - 2) : "");
    }
    return vecCells;
}

class CommandTable : public SimulatedCamera {};

}  // namespace

TEST_F(CommandTable, IsAscendingSoThatEachCommandStandsOnce) {
    const std::vector<CommandRow> vecRows = rows();
    for (std::size_t i = 1; i < vecRows.size(); ++i) {
        EXPECT_LT(vecRows[i - 1].command, vecRows[i].command);
    }
}

TEST_F(CommandTable, FindsEveryRowAndNothingElse) {
    u32 nPrevious = 0;
    for (const CommandRow& stRow : rows()) {
        ASSERT_NE(nullptr, simcam::findCommand(stRow.command));
        EXPECT_EQ(stRow.command, simcam::findCommand(stRow.command)->command);
        if (stRow.command - 1 != nPrevious) {
            EXPECT_EQ(nullptr, simcam::findCommand(stRow.command - 1)) << stRow.command - 1;
        }
        nPrevious = stRow.command;
    }
    EXPECT_EQ(nullptr, simcam::findCommand(0));
    EXPECT_EQ(nullptr, simcam::findCommand(0xFFFFFFFFu));
}

TEST_F(CommandTable, IsTheTableOfTheReadme) {
    std::ifstream file(SIMCAM_README);
    ASSERT_TRUE(file);
    std::vector<std::vector<std::string>> vecLines;
    std::string strLine;
    while (std::getline(file, strLine)) {
        const std::vector<std::string> vecCells = cellsOf(strLine);
        if (7 == vecCells.size() && std::string::npos == vecCells[0].find_first_not_of("0123456789")) {
            vecLines.push_back(vecCells);
        }
    }
    const std::vector<CommandRow> vecRows = rows();
    ASSERT_EQ(vecRows.size(), vecLines.size());
    for (std::size_t i = 0; i < vecRows.size(); ++i) {
        const CommandRow& stRow = vecRows[i];
        const bool bRecord = CommandKind::Record == stRow.kind;
        EXPECT_EQ(std::to_string(stRow.command), vecLines[i][0]);
        EXPECT_EQ(kindName(stRow.kind), vecLines[i][1]) << stRow.command;
        EXPECT_EQ(bRecord ? "-" : std::to_string(stRow.min), vecLines[i][2]) << stRow.command;
        EXPECT_EQ(bRecord ? "-" : std::to_string(stRow.max), vecLines[i][3]) << stRow.command;
        EXPECT_EQ(bRecord ? "-" : std::to_string(stRow.powerUp), vecLines[i][4]) << stRow.command;
        EXPECT_EQ(stRow.name, vecLines[i][5]) << stRow.command;
    }
}

TEST_F(CommandTable, GivesTheValuesAfterPowerUp) {
    for (const CommandRow& stRow : rows()) {
        const bool bDevice = CommandKind::Record == stRow.kind || CommandKind::ReadOnly == stRow.kind;
        if (!bDevice) {
            EXPECT_EQ(stRow.powerUp, get(stRow.command)) << stRow.command << " " << stRow.name;
        }
    }
}

TEST_F(CommandTable, BothEndsOfEachRangeAreTakenAndBothNeighboursRefused) {
    ASSERT_EQ(IA_OK, set(1536, 1));
    for (const CommandRow& stRow : rows()) {
        if (!isValue(stRow)) {
            continue;
        }
        const u32 nCommand = stRow.command;
        passSeconds(60);  // the lens has come to rest
        EXPECT_EQ(IA_ERR_INVALID_VALUE, set(nCommand, stRow.min - 1)) << nCommand;
        EXPECT_EQ(IA_ERR_INVALID_VALUE, set(nCommand, stRow.max + 1)) << nCommand;
        EXPECT_EQ(stRow.powerUp, 1536 == nCommand ? 0 : get(nCommand)) << nCommand << " changed by a refused value";
        EXPECT_EQ(IA_OK, set(nCommand, stRow.min)) << nCommand;
        passSeconds(60);
        EXPECT_EQ(IA_OK, set(nCommand, stRow.max)) << nCommand;
        passSeconds(60);
        const int nNow = get(nCommand);
        EXPECT_EQ(CommandKind::Action == stRow.kind ? 0 : stRow.max, nNow) << nCommand;
        camera.powerCycle();
        ASSERT_EQ(IA_OK, set(1536, 1));
    }
}

TEST_F(CommandTable, RangeAndCorrectionFollowTheRow) {
    for (const CommandRow& stRow : rows()) {
        if (!isValue(stRow) && CommandKind::Shared != stRow.kind) {
            continue;
        }
        const ia_dynamic_params_attr_st stRange = rangeOf(stRow.command);
        EXPECT_EQ(1, stRange.range_kind) << stRow.command;
        EXPECT_EQ(0, stRange.items_cnt) << stRow.command;
        EXPECT_EQ(stRow.min, stRange.min_val) << stRow.command;
        EXPECT_EQ(stRow.max, stRange.max_val) << stRow.command;
        EXPECT_EQ(stRow.powerUp, stRange.default_val) << stRow.command;
        EXPECT_EQ(stRow.min, corrected(stRow.command, stRow.min - 1)) << stRow.command;
        EXPECT_EQ(stRow.max, corrected(stRow.command, stRow.max + 1)) << stRow.command;
        EXPECT_EQ(stRow.powerUp, corrected(stRow.command, stRow.powerUp)) << stRow.command;
        EXPECT_EQ(stRow.powerUp, CommandKind::Action == stRow.kind ? 0 : get(stRow.command))
            << "a correction sets nothing";
    }
}

TEST_F(CommandTable, EveryCommandFitsTheNumbersThatTheStylesUse) {
    // What a plate recognition camera starts its second scheme with.
    for (const auto& [nCommand, nValue] :
         std::vector<std::pair<u32, int>>{{144, 0}, {49, 18}, {96, 1}, {161, 2}, {163, 40}}) {
        EXPECT_EQ(IA_OK, set(nCommand, nValue)) << nCommand;
        EXPECT_EQ(nValue, get(nCommand)) << nCommand;
    }
}
