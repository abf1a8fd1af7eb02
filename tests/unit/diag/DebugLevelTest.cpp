#include "platform/DeviceRoot.h"
#include "sensor/diag/DebugLevel.h"
#include "sensor/diag/Message.h"
#include "tests/support/TestRoot.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <limits>
#include <string>
#include <thread>
#include <vector>

namespace {

constexpr char kLevelSource[] = "Camera.cpp";
const std::string kLevelSign = "/mnt/mtd/sign/Debug.sign";

// Taken before main, so before anything could refresh them.
const int g_nLevelAtStart = g_nDebugLevel;
const bool g_bAssertAtStart = g_bEnAssert;

class DebugLevel : public testing::Test {
protected:
    void setWords(int p_nLevel, bool p_bAssert) {
        g_nDebugLevel = p_nLevel;
        g_bEnAssert = p_bAssert;
    }
    std::string hostPath() const { return platform::devicePath(kLevelSign); }

    TestRoot m_objRoot;
};

TEST_F(DebugLevel, StartsAtOneWithoutAbort) {
    EXPECT_EQ(1, g_nLevelAtStart);
    EXPECT_FALSE(g_bAssertAtStart);
}

TEST_F(DebugLevel, WithoutASignFileIsOneWithoutAbort) {
    setWords(7, true);
    updateDebugLevel();
    EXPECT_EQ(1, g_nDebugLevel);
    EXPECT_FALSE(g_bEnAssert);
}

struct SignRow {
    const char* szWhat;
    std::string strContent;
    int nLevel;
    bool bAssert;
};

TEST_F(DebugLevel, FollowsTheTwoLinesOfTheSignFile) {
    constexpr int kMost = std::numeric_limits<int>::max();
    constexpr int kLeast = std::numeric_limits<int>::min();
    const std::vector<SignRow> rows = {
        {"one line", "6\n", 6, false},
        {"one line that does not end", "6", 6, false},
        {"no lines", "", 1, false},
        {"two empty lines", "\n\n", 1, false},
        {"an empty first line", "\n1\n", 1, true},
        {"an empty second line", "4\n\n1\n", 4, false},
        {"a negative level", "-1\n", -1, false},
        {"both", "4\n1\n", 4, true},
        {"a switch of 0", "4\n0\n", 4, false},
        {"a switch of 00", "4\n00\n", 4, false},
        {"any other switch", "4\n2\n", 4, true},
        {"a negative switch", "4\n-1\n", 4, true},
        {"a switch without an end", "4\n1", 4, true},
        {"a switch that is no number", "4\nyes\n", 4, false},
        {"a level that is no number", "high\n1\n", 0, true},
        {"letters behind the numbers", "7abc\n2x\n", 7, true},
        {"letters in front of the numbers", "a7\nx2\n", 0, false},
        {"blanks in front of the numbers", " \t5\n  1\n", 5, true},
        {"a first line of blanks, which is not empty", " \n1\n", 0, true},
        {"a plus sign", "+3\n+0\n", 3, false},
        {"zeros in front of the numbers", "007\n01\n", 7, true},
        {"a hexadecimal number", "0x6\n0x1\n", 0, false},
        {"a fraction", "6.9\n0.9\n", 6, false},
        {"lines that end in two characters", "6\r\n1\r\n", 6, true},
        {"an empty first line that ends in two characters", "\r\n1\r\n", 1, true},
        {"more lines", "5\n1\n0\n9\n", 5, true},
        {"the highest number", "2147483647\n2147483647\n", kMost, true},
        {"the lowest number", "-2147483648\n-2147483648\n", kLeast, true},
        {"a number above the highest", "2147483648\n4294967296\n", kMost, true},
        {"a number below the lowest", "-2147483649\n-4294967296\n", kLeast, true},
        {"a number of many digits", std::string(100, '9') + "\n" + std::string(100, '9') + "\n", kMost, true},
        {"a zero byte in front",
         std::string("\0"
                     "6\n1\n",
                     5),
         0, true},
        {"a zero byte behind",
         std::string("6\0"
                     "7\n1\0"
                     "0\n",
                     8),
         6, true},
        {"bytes of no text", "\xff\xfe\n\xff\n", 0, false},
    };
    for (const SignRow& row : rows) {
        m_objRoot.write(kLevelSign, row.strContent);
        setWords(-5, !row.bAssert);
        updateDebugLevel();
        EXPECT_EQ(row.nLevel, g_nDebugLevel) << row.szWhat;
        EXPECT_EQ(row.bAssert, g_bEnAssert) << row.szWhat;
    }
}

TEST_F(DebugLevel, OfAVeryLongLineIsItsNumber) {
    m_objRoot.write(kLevelSign, std::string(60000, '0') + "6\n1\n");
    updateDebugLevel();
    EXPECT_EQ(6, g_nDebugLevel);
    EXPECT_TRUE(g_bEnAssert);

    m_objRoot.write(kLevelSign, std::string(1 << 20, '9'));
    updateDebugLevel();
    EXPECT_EQ(std::numeric_limits<int>::max(), g_nDebugLevel);
}

TEST_F(DebugLevel, StaysWhenTheSignFileCannotBeOpened) {
    setWords(5, true);
    ASSERT_EQ(0, mknod(hostPath().c_str(), S_IFSOCK | 0600, 0));  // is there, and nobody can open it
    updateDebugLevel();
    EXPECT_EQ(5, g_nDebugLevel);
    EXPECT_TRUE(g_bEnAssert);

    setWords(-3, false);
    updateDebugLevel();
    EXPECT_EQ(-3, g_nDebugLevel);
    EXPECT_FALSE(g_bEnAssert);
}

TEST_F(DebugLevel, TakesAFolderOrALinkToNothingForNoSignFile) {
    setWords(5, true);
    m_objRoot.makeFolder(kLevelSign);
    updateDebugLevel();
    EXPECT_EQ(1, g_nDebugLevel);
    EXPECT_FALSE(g_bEnAssert);

    m_objRoot.remove(kLevelSign);
    ASSERT_EQ(0, symlink("nothing", hostPath().c_str()));
    setWords(5, true);
    updateDebugLevel();
    EXPECT_EQ(1, g_nDebugLevel);
    EXPECT_FALSE(g_bEnAssert);
}

TEST_F(DebugLevel, ReturnsToOneWhenTheSignFileIsRemoved) {
    m_objRoot.debugLevel(7, true);
    updateDebugLevel();
    EXPECT_EQ(7, g_nDebugLevel);
    EXPECT_TRUE(g_bEnAssert);

    m_objRoot.remove(kLevelSign);
    updateDebugLevel();
    EXPECT_EQ(1, g_nDebugLevel);
    EXPECT_FALSE(g_bEnAssert);
}

TEST_F(DebugLevel, IsReadAgainEachTimeEvenWhenSizeAndDateOfTheFileAreTheSame) {
    const timespec dates[2] = {{1000000000, 0}, {1000000000, 0}};
    for (const int nLevel : {6, 4, 7, 0, 6}) {
        m_objRoot.write(kLevelSign, std::to_string(nLevel) + "\n");
        ASSERT_EQ(0, utimensat(AT_FDCWD, hostPath().c_str(), dates, 0));
        updateDebugLevel();
        EXPECT_EQ(nLevel, g_nDebugLevel);
    }
}

TEST_F(DebugLevel, IsRefreshedByEveryMessageAlsoByOneThatIsNotShown) {
    m_objRoot.debugLevel(-7, true);
    EXPECT_EQ("", outputOf([] { SENSOR_INFO("not shown\n"); }));
    EXPECT_EQ(-7, g_nDebugLevel);
    EXPECT_TRUE(g_bEnAssert);

    m_objRoot.debugLevel(-8, false);
    EXPECT_EQ("", outputOf([] { SENSOR_WARN("not shown\n"); }));
    EXPECT_EQ(-8, g_nDebugLevel);
    EXPECT_FALSE(g_bEnAssert);

    m_objRoot.debugLevel(-9);
    EXPECT_EQ("", outputOf([] { SENSOR_TRACE("not shown\n"); }));
    EXPECT_EQ(-9, g_nDebugLevel);

    m_objRoot.debugLevel(-10);
    EXPECT_EQ("", outputOf([] { static_cast<void>(SENSOR_ASSERT(false, "not shown")); }));
    EXPECT_EQ(-10, g_nDebugLevel);
}

TEST_F(DebugLevel, NeverWritesTheSignFile) {
    outputOf([] { SENSOR_ERR("text\n"); });
    EXPECT_FALSE(m_objRoot.exists(kLevelSign));

    m_objRoot.write(kLevelSign, "6x\r\n0");
    outputOf([] { SENSOR_ERR("text\n"); });
    EXPECT_EQ("6x\r\n0", m_objRoot.read(kLevelSign));
}

TEST_F(DebugLevel, IsOneOfTheLevelsThatWereWrittenWhileSeveralThreadsRefreshIt) {
    std::vector<std::thread> threads;
    for (int i = 0; i < 3; ++i) {
        threads.emplace_back([] {
            for (int n = 0; n < 200; ++n) {
                updateDebugLevel();
                const int nLevel = g_nDebugLevel;
                // 1: the moment at which the file is empty.
                EXPECT_TRUE(1 == nLevel || 100000 == nLevel || -200000 == nLevel) << nLevel;
            }
        });
    }
    updateDebugLevel();
    for (int n = 0; n < 200; ++n) {
        m_objRoot.debugLevel(0 == n % 2 ? 100000 : -200000);
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
}

}  // namespace
