#include "platform/QVLogger.h"

#include "platform/Clock.h"
#include "tests/contract/OnDevice.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <climits>
#include <set>
#include <sstream>
#include <string>
#include <thread>
#include <type_traits>
#include <vector>

namespace {

static_assert(!std::is_copy_constructible<QVLogger>::value && !std::is_copy_assignable<QVLogger>::value,
              "a logger belongs to one thread");

constexpr const char* kLog = "/mnt/mtd/log/Test.log";
const std::string kDate = "2024-05-01 12:00:00 ";

class QVLoggerTest : public OnDevice {
protected:
    static bool log(int p_nSize, int p_nCount, const std::string& p_strText) {
        QVLogger objLogger;
        return objLogger.init(kLog, p_nSize, p_nCount) && objLogger.writeLog("[t]", p_strText.c_str());
    }

    std::string file(int p_nIndex) const {
        return m_objRoot.read(0 == p_nIndex ? kLog : kLog + ("." + std::to_string(p_nIndex)));
    }

    static std::string entry(const std::string& p_strText) { return kDate + "[t] " + p_strText + "\n"; }
};

TEST_F(QVLoggerTest, AnEntryIsDateTagAndText) {
    EXPECT_TRUE(log(10240, 3, "text"));
    EXPECT_EQ(file(0), "2024-05-01 12:00:00 [t] text\n");
}

TEST_F(QVLoggerTest, TheDateIsTheDeviceTimeOfTheEntry) {
    platform::Clock::hold({987, 6, 5, 4, 3, 2});
    EXPECT_TRUE(log(10240, 3, "one"));
    EXPECT_TRUE(platform::Clock::advance(kSecond));
    EXPECT_TRUE(log(10240, 3, "two"));
    EXPECT_EQ(file(0), "0987-06-05 04:03:02 [t] one\n0987-06-05 04:03:03 [t] two\n");
}

TEST_F(QVLoggerTest, ATextWithANewlineGetsNoSecondOne) {
    EXPECT_TRUE(log(10240, 3, "text\n"));
    EXPECT_TRUE(log(10240, 3, "two\nlines"));
    EXPECT_TRUE(log(10240, 3, ""));
    EXPECT_EQ(file(0), entry("text") + entry("two\nlines") + entry(""));
}

TEST_F(QVLoggerTest, EntriesAreAppendedToWhatIsThere) {
    m_objRoot.write(kLog, "before\n");
    EXPECT_TRUE(log(10240, 3, "after"));
    EXPECT_EQ(file(0), "before\n" + entry("after"));
}

TEST_F(QVLoggerTest, InitNeedsAPath) {
    QVLogger objLogger;
    EXPECT_FALSE(objLogger.init(nullptr, 10240, 3));
    EXPECT_FALSE(objLogger.init("", 10240, 3));
}

TEST_F(QVLoggerTest, InitOpensNothing) {
    QVLogger objLogger;
    EXPECT_TRUE(objLogger.init(kLog, 10240, 3));
    EXPECT_FALSE(m_objRoot.exists(kLog));
}

TEST_F(QVLoggerTest, WritingWithoutInitFails) {
    QVLogger objLogger;
    EXPECT_FALSE(objLogger.writeLog("[t]", "text"));
}

TEST_F(QVLoggerTest, AnEntryThatCannotBeWrittenIsLost) {
    QVLogger objLogger;
    EXPECT_TRUE(objLogger.init("/no/such/folder/Test.log", 10240, 3));
    EXPECT_FALSE(objLogger.writeLog("[t]", "text"));
    EXPECT_FALSE(m_objRoot.exists("/no"));
    EXPECT_TRUE(objLogger.init("/mnt/mtd/log", 10240, 3));
    EXPECT_FALSE(objLogger.writeLog("[t]", "text"));
}

TEST_F(QVLoggerTest, TheFileRotatesBeforeItGrowsTooLarge) {
    const int nSize = static_cast<int>(2 * entry("a").size());
    EXPECT_TRUE(log(nSize, 3, "a"));
    EXPECT_TRUE(log(nSize, 3, "b"));  // exactly full
    EXPECT_EQ(file(0), entry("a") + entry("b"));
    EXPECT_FALSE(m_objRoot.exists(std::string(kLog) + ".1"));
    EXPECT_TRUE(log(nSize, 3, "c"));
    EXPECT_EQ(file(0), entry("c"));
    EXPECT_EQ(file(1), entry("a") + entry("b"));
}

TEST_F(QVLoggerTest, TheOldestFileIsDropped) {
    const int nSize = static_cast<int>(entry("a").size());
    for (const char* const szText : {"a", "b", "c", "d", "e"}) {
        EXPECT_TRUE(log(nSize, 3, szText));
    }
    EXPECT_EQ(file(0), entry("e"));
    EXPECT_EQ(file(1), entry("d"));
    EXPECT_EQ(file(2), entry("c"));
    EXPECT_FALSE(m_objRoot.exists(std::string(kLog) + ".3"));
}

TEST_F(QVLoggerTest, OneFileStartsAnewWhenItIsFull) {
    const int nSize = static_cast<int>(entry("a").size());
    EXPECT_TRUE(log(nSize, 1, "a"));
    EXPECT_TRUE(log(nSize, 1, "b"));
    EXPECT_EQ(file(0), entry("b"));
    EXPECT_FALSE(m_objRoot.exists(std::string(kLog) + ".1"));
}

TEST_F(QVLoggerTest, SmallerSizesAndCountsCountAsOne) {
    for (const int nValue : {1, 0, -1, INT_MIN}) {
        EXPECT_TRUE(log(nValue, nValue, "text"));
        EXPECT_EQ(file(0), "\n");  // one byte
        EXPECT_FALSE(m_objRoot.exists(std::string(kLog) + ".1"));
    }
}

TEST_F(QVLoggerTest, TheLargestSizeAndCountWork) {
    EXPECT_TRUE(log(INT_MAX, INT_MAX, "a"));
    EXPECT_TRUE(log(1, INT_MAX, "b"));
    EXPECT_EQ(file(0), "\n");
    EXPECT_EQ(file(1), entry("a"));
}

TEST_F(QVLoggerTest, AnEntryLargerThanAFileIsCutToIt) {
    EXPECT_TRUE(log(100, 3, "first"));
    EXPECT_TRUE(log(100, 3, std::string(500, 'x')));
    EXPECT_EQ(file(0), kDate + "[t] " + std::string(100 - kDate.size() - 4 - 1, 'x') + "\n");
    EXPECT_EQ(file(1), entry("first"));
}

TEST_F(QVLoggerTest, NoFileIsEverLargerThanTheLimit) {
    for (int i = 0; i < 300; ++i) {
        EXPECT_TRUE(log(1000, 4, std::string(static_cast<std::size_t>(i * 7 % 400), 'x')));
        for (int n = 0; n < 4; ++n) {
            ASSERT_LE(file(n).size(), 1000U) << "entry " << i << ", file " << n;
        }
    }
}

class ManyWritersTest : public QVLoggerTest {
protected:
    static constexpr int kWriters = 4;
    static constexpr int kEntries = 100;  // of each writer

    static void writeAll(int p_nWriter) {
        for (int i = 0; i < kEntries; ++i) {
            const std::string strText = std::to_string(p_nWriter) + ":" + std::to_string(i) + ":";
            EXPECT_TRUE(log(2000, 1000, strText + std::string(static_cast<std::size_t>(i), 'x')));
        }
    }

    // Every entry stands whole in one of the files, and none twice.
    void expectAllEntries() const {
        std::set<std::string> setSeen;
        for (int n = 0; n < 1000; ++n) {
            const std::string strFile = file(n);
            ASSERT_LE(strFile.size(), 2000U);
            std::istringstream stream(strFile);
            for (std::string strLine; std::getline(stream, strLine);) {
                EXPECT_TRUE(setSeen.insert(strLine).second) << strLine;
            }
        }
        for (int nWriter = 0; nWriter < kWriters; ++nWriter) {
            for (int i = 0; i < kEntries; ++i) {
                const std::string strText = kDate + "[t] " + std::to_string(nWriter) + ":" + std::to_string(i) + ":";
                EXPECT_EQ(setSeen.count(strText + std::string(static_cast<std::size_t>(i), 'x')), 1U) << strText;
            }
        }
        EXPECT_EQ(setSeen.size(), static_cast<std::size_t>(kWriters * kEntries));
    }
};

TEST_F(ManyWritersTest, EntriesOfManyThreadsStayWhole) {
    std::vector<std::thread> vecThreads;
    for (int nWriter = 0; nWriter < kWriters; ++nWriter) {
        vecThreads.emplace_back(writeAll, nWriter);
    }
    for (std::thread& thread : vecThreads) {
        thread.join();
    }
    expectAllEntries();
}

TEST_F(ManyWritersTest, EntriesOfManyProcessesStayWhole) {
    std::vector<pid_t> vecChildren;
    for (int nWriter = 0; nWriter < kWriters; ++nWriter) {
        const pid_t nChild = fork();
        if (0 == nChild) {
            writeAll(nWriter);
            _exit(HasFailure() ? 1 : 0);
        }
        ASSERT_NE(nChild, -1);
        vecChildren.push_back(nChild);
    }
    for (const pid_t nChild : vecChildren) {
        int nStatus = -1;
        EXPECT_EQ(waitpid(nChild, &nStatus, 0), nChild);
        EXPECT_EQ(nStatus, 0);
    }
    expectAllEntries();
}

}  // namespace
