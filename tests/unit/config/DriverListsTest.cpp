#include "sensor/config/DriverLists.h"

#include "tests/support/Messages.h"
#include "tests/support/TestRoot.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>

namespace {

constexpr int kMost = std::numeric_limits<int>::max();
constexpr int kLeast = std::numeric_limits<int>::min();

class DriverLists : public testing::Test {
protected:
    DriverLists() { m_objRoot.debugLevel(6); }

    static int commands(int p_nClaimed) {
        ia_dynamic_params_cmds_st stList{};
        stList.cmd_cnt = p_nClaimed;
        return dynamicCommandCount(stList);
    }
    static int items(int p_nClaimed) {
        ia_dynamic_params_attr_st stRange{};
        stRange.items_cnt = p_nClaimed;
        return dynamicItemCount(stRange);
    }

    TestRoot m_objRoot;
};

TEST_F(DriverLists, AreTakenAtTheirWordUpToWhatTheirRecordHolds) {
    EXPECT_EQ("", outputOf([] {
                  for (const int nClaimed : {0, 1, 15, 16}) {
                      EXPECT_EQ(nClaimed, commands(nClaimed));
                  }
                  for (const int nClaimed : {0, 1, 63, 64}) {
                      EXPECT_EQ(nClaimed, items(nClaimed));
                  }
              }));
}

TEST_F(DriverLists, ThatClaimMoreCountAsFull) {
    outputOf([] {
        for (const int nClaimed : {17, 1000, kMost}) {
            EXPECT_EQ(16, commands(nClaimed));
        }
        for (const int nClaimed : {65, 1000, kMost}) {
            EXPECT_EQ(64, items(nClaimed));
        }
    });
}

TEST_F(DriverLists, ThatClaimLessThanNothingCountAsEmpty) {
    outputOf([] {
        for (const int nClaimed : {-1, -16, kLeast}) {
            EXPECT_EQ(0, commands(nClaimed));
            EXPECT_EQ(0, items(nClaimed));
        }
    });
}

TEST_F(DriverLists, ThatLieAreReported) {
    const messages::Place stPlace{"DriverLists.cpp", "contained"};
    EXPECT_EQ(messages::error(stPlace, "driver claims 17 dynamic commands, the record holds 0 to 16\n"),
              messages::anyLine(outputOf([] { commands(17); })));
    EXPECT_EQ(messages::error(stPlace, "driver claims -1 range items, the record holds 0 to 64\n"),
              messages::anyLine(outputOf([] { items(-1); })));
}

}  // namespace
