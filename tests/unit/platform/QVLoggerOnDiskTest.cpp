#include "platform/QVLogger.h"

#include "tests/support/TestRoot.h"
#include "tests/unit/platform/SystemFaults.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <cerrno>
#include <string>
#include <vector>

namespace {

constexpr const char* kLog = "/mnt/mtd/log/Test.log";
const std::string kDate = "2024-05-01 12:00:00 ";

class QVLoggerOnDiskTest : public ::testing::Test {
protected:
    QVLoggerOnDiskTest() { systemFaults::clear(); }
    ~QVLoggerOnDiskTest() override { systemFaults::clear(); }

    // Each entry fills a file of its own.
    static bool log(const std::string& p_strText, int p_nCount = 4) {
        QVLogger objLogger;
        return objLogger.init(kLog, static_cast<int>(entry("x").size()), p_nCount) &&
               objLogger.writeLog("[t]", p_strText.c_str());
    }
    static std::string entry(const std::string& p_strText) { return kDate + "[t] " + p_strText + "\n"; }
    std::string file(const std::string& p_strEnd) const { return m_objRoot.read(kLog + p_strEnd); }

    TestRoot m_objRoot;
};

TEST_F(QVLoggerOnDiskTest, AnEntryIsOneWriteUnderTheLock) {
    EXPECT_TRUE(log("a"));
    EXPECT_EQ(systemFaults::calls(), (std::vector<std::string>{"flock", "write"}));
}

TEST_F(QVLoggerOnDiskTest, ARotationThatWasInterruptedLosesNothing) {
    m_objRoot.write(kLog, entry("c"));
    m_objRoot.write(kLog + std::string(".2"), entry("b"));  // moved up from .1 before the power went
    EXPECT_TRUE(log("d"));
    EXPECT_EQ(file(""), entry("d"));
    EXPECT_EQ(file(".1"), entry("c"));
    EXPECT_EQ(file(".2"), entry("b"));
}

TEST_F(QVLoggerOnDiskTest, AnEntryThatTheDiskCutsIsTakenBack) {
    QVLogger objLogger;
    EXPECT_TRUE(objLogger.init(kLog, 10240, 3));
    EXPECT_TRUE(objLogger.writeLog("[t]", "whole"));
    systemFaults::cutWrite(5);
    EXPECT_FALSE(objLogger.writeLog("[t]", "cut"));
    EXPECT_TRUE(objLogger.writeLog("[t]", "next"));
    EXPECT_EQ(file(""), entry("whole") + entry("next"));
}

TEST_F(QVLoggerOnDiskTest, AFailedWriteLosesTheEntryOnly) {
    EXPECT_TRUE(log("a"));
    systemFaults::fail("write", ENOSPC);
    EXPECT_FALSE(log("b"));
    EXPECT_TRUE(log("c"));
    EXPECT_EQ(file(""), entry("c"));
    EXPECT_EQ(file(".1"), entry("a"));
}

TEST_F(QVLoggerOnDiskTest, ALogThatCannotRotateTakesNoEntry) {
    EXPECT_TRUE(log("a"));
    systemFaults::fail("rename", EIO);
    EXPECT_FALSE(log("b"));
    EXPECT_EQ(file(""), entry("a"));
    EXPECT_TRUE(log("b"));
    systemFaults::fail("rename", EIO);  // of the older file; the newer one must not take its place
    EXPECT_FALSE(log("c"));
    EXPECT_EQ(file(""), entry("b"));
    EXPECT_EQ(file(".1"), entry("a"));
    m_objRoot.remove(kLog + std::string(".1"));
    m_objRoot.makeFolder(kLog + std::string(".1/in the way"));
    EXPECT_FALSE(log("c", 2));
    EXPECT_EQ(file(""), entry("b"));
}

TEST_F(QVLoggerOnDiskTest, ASignalDoesNotLoseAnEntry) {
    systemFaults::fail("flock", EINTR);
    EXPECT_TRUE(log("a"));
    EXPECT_EQ(file(""), entry("a"));
}

TEST_F(QVLoggerOnDiskTest, APipeUnderItsNameDoesNotHangIt) {
    EXPECT_EQ(mkfifo((m_objRoot.path() + kLog).c_str(), 0600), 0);
    EXPECT_FALSE(log("a"));
}

}  // namespace
