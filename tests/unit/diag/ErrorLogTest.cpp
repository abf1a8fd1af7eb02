// The error log as the messages keep it; what a log file does with its entries is the platform's.
#include "sensor/diag/Message.h"
#include "tests/support/Messages.h"
#include "tests/support/TestRoot.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

namespace {

constexpr char kLogSource[] = "Camera.cpp";
const std::string kLog = "/mnt/mtd/log/SensorError.log";

bool check(bool p_bHolds) {
    return SENSOR_ASSERT(p_bHolds, "lens fits");
}

bool checkPosition(bool p_bHolds, int p_nPosition) {
    return SENSOR_ASSERT_DETAIL(p_bHolds, "lens fits", "position(%d)\n", p_nPosition);
}

std::vector<std::string> linesOf(const std::string& p_strText) {
    std::vector<std::string> vecLines;
    std::istringstream stream(p_strText);
    for (std::string strLine; std::getline(stream, strLine);) {
        vecLines.push_back(strLine);
    }
    return vecLines;
}

class ErrorLog : public testing::Test {
protected:
    TestRoot m_objRoot;
};

TEST_F(ErrorLog, HoldsTheHeaderAndThenTheTextOfAWarning) {
    m_objRoot.debugLevel(4);
    outputOf([] { SENSOR_WARN_AT(77, "lens %d\n", 3); });
    EXPECT_EQ(messages::loggedWarning({kLogSource, "operator()", "77"}, "lens 3\n"), m_objRoot.errorLog());
}

TEST_F(ErrorLog, HoldsTheDetailOfAnAssertionWithoutASecondHeader) {
    outputOf([] { checkPosition(false, 12); });
    EXPECT_EQ(messages::loggedAssertion({kLogSource, "checkPosition"}, "lens fits") +
                  messages::loggedDetail("position(12)\n"),
              messages::anyLine(m_objRoot.errorLog()));
}

TEST_F(ErrorLog, DatesEachEntryWithTheDeviceTime) {
    outputOf([] { check(false); });
    const std::vector<std::string> vecLines = linesOf(m_objRoot.read(kLog));
    ASSERT_EQ(2u, vecLines.size());
    for (const std::string& strLine : vecLines) {
        EXPECT_EQ(0u, strLine.find("2024-05-01 12:00:00 [sensor assert] ")) << strLine;
    }
}

TEST_F(ErrorLog, IsOpenedAnewForEveryMessage) {
    outputOf([] { check(false); });
    m_objRoot.remove(kLog);
    outputOf([] { check(false); });
    EXPECT_EQ(messages::loggedAssertion({kLogSource, "check"}, "lens fits"), messages::anyLine(m_objRoot.errorLog()));

    m_objRoot.remove("/mnt/mtd/log");
    m_objRoot.makeFolder("/mnt/mtd/log");
    outputOf([] { check(false); });
    EXPECT_EQ(messages::loggedAssertion({kLogSource, "check"}, "lens fits"), messages::anyLine(m_objRoot.errorLog()));
}

std::ptrdiff_t openFiles() {
    return std::distance(std::filesystem::directory_iterator("/proc/self/fd"), std::filesystem::directory_iterator());
}

TEST_F(ErrorLog, IsNotKeptOpenNorIsTheSignFile) {
    m_objRoot.debugLevel(7);
    outputOf([] { check(false); });
    const std::ptrdiff_t nBefore = openFiles();
    outputOf([] {
        check(false);
        checkPosition(false, 1);
        SENSOR_WARN("text\n");
        SENSOR_INFO("text\n");
    });
    EXPECT_EQ(nBefore, openFiles());
}

TEST_F(ErrorLog, MayBeMissingWithoutHarm) {
    m_objRoot.remove("/mnt/mtd/log");
    EXPECT_EQ(messages::assertion({kLogSource, "check"}, "lens fits"),
              messages::anyLine(outputOf([] { EXPECT_FALSE(check(false)); })));
    EXPECT_FALSE(m_objRoot.exists(kLog));
}

TEST_F(ErrorLog, MayBeAFolderWithoutHarm) {
    m_objRoot.makeFolder(kLog);
    EXPECT_EQ(messages::assertion({kLogSource, "check"}, "lens fits"),
              messages::anyLine(outputOf([] { EXPECT_FALSE(check(false)); })));
}

TEST_F(ErrorLog, IsKeptInThreeFilesOf10240Bytes) {
    outputOf([] {
        for (int i = 0; i < 400; ++i) {
            checkPosition(false, i);
        }
    });
    std::string strAll;
    for (const char* szEnding : {".2", ".1", ""}) {
        const std::string strFile = m_objRoot.read(kLog + szEnding);
        EXPECT_LE(strFile.size(), 10240u) << szEnding;
        strAll += strFile;
    }
    EXPECT_GT(m_objRoot.read(kLog + ".1").size(), 10000u);
    EXPECT_GT(m_objRoot.read(kLog + ".2").size(), 10000u);
    EXPECT_FALSE(m_objRoot.exists(kLog + ".3"));
    // The newest are there, in order and whole.
    const std::vector<std::string> vecLines = linesOf(strAll);
    ASSERT_GT(vecLines.size(), 300u);
    EXPECT_EQ("2024-05-01 12:00:00 [sensor assert] position(399)", vecLines.back());
    constexpr char kEntry[] =
        "2024-05-01 12:00:00 \\[sensor assert\\] (file:Camera\\.cpp fun:checkPosition line:[0-9]+|"
        "lens fits   ~~~Assertion failed\\.|position\\([0-9]+\\))";
    for (const std::string& strLine : vecLines) {
        EXPECT_THAT(strLine, testing::MatchesRegex(kEntry));
    }
}

TEST_F(ErrorLog, HoldsWholeLinesFromSeveralThreads) {
    constexpr int kThreads = 4;
    constexpr int kMessages = 25;  // of each thread: less than one file in all
    m_objRoot.debugLevel(4);
    outputOf([] {
        std::vector<std::thread> threads;
        for (int i = 0; i < kThreads; ++i) {
            threads.emplace_back([i] {
                for (int n = 0; n < kMessages; ++n) {
                    SENSOR_WARN_AT(i, "message %d of thread %d\n", n, i);
                }
            });
        }
        for (std::thread& thread : threads) {
            thread.join();
        }
    });
    std::vector<std::string> vecExpected;
    for (int i = 0; i < kThreads; ++i) {
        for (int n = 0; n < kMessages; ++n) {
            vecExpected.push_back("[sensor warn] file:Camera.cpp fun:operator() line:" + std::to_string(i));
            vecExpected.push_back("[sensor warn] message " + std::to_string(n) + " of thread " + std::to_string(i));
        }
    }
    // Standard output and the log of one message are two steps, so only the set is sure.
    const std::string strOlder = m_objRoot.read(kLog + ".1");
    std::vector<std::string> vecLines = linesOf(strOlder.empty() ? "" : strOlder);
    for (std::string& strLine : vecLines) {
        strLine.erase(0, sizeof("2024-05-01 12:00:00 ") - 1);
    }
    for (const std::string& strLine : linesOf(m_objRoot.errorLog())) {
        vecLines.push_back(strLine);
    }
    std::sort(vecExpected.begin(), vecExpected.end());
    std::sort(vecLines.begin(), vecLines.end());
    EXPECT_EQ(vecExpected, vecLines);
}

}  // namespace
