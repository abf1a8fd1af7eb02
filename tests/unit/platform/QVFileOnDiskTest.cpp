#include "platform/QVFile.h"

#include "tests/support/TestRoot.h"
#include "tests/unit/platform/SystemFaults.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <set>
#include <string>
#include <vector>

namespace {

constexpr u32 kReplace = QVFile::modeWrite | QVFile::modeTruncate;
constexpr const char* kName = "/mnt/mtd/file";
constexpr const char* kSibling = "/mnt/mtd/file.new";

class QVFileOnDiskTest : public ::testing::Test {
protected:
    QVFileOnDiskTest() { systemFaults::clear(); }
    ~QVFileOnDiskTest() override { systemFaults::clear(); }

    static bool replace(const std::string& p_strContent) {
        QVFile objFile;
        return objFile.open(kName, kReplace) &&
               static_cast<int>(p_strContent.size()) ==
                   objFile.write(p_strContent.data(), static_cast<int>(p_strContent.size())) &&
               objFile.close();
    }

    void expectOldContentAndNoSibling() const {
        EXPECT_EQ(m_objRoot.read(kName), "old");
        EXPECT_FALSE(m_objRoot.exists(kSibling));
    }

    mode_t permissionsOf(const char* p_szName) const {
        struct stat stFile = {};
        EXPECT_EQ(stat((m_objRoot.path() + p_szName).c_str(), &stFile), 0);
        return stFile.st_mode & 07777;
    }

    TestRoot m_objRoot;
};

TEST_F(QVFileOnDiskTest, BytesAreCollectedInTheSiblingUntilClose) {
    QVFile objFile;
    EXPECT_TRUE(objFile.open(kName, kReplace));
    EXPECT_EQ(objFile.write("new", 3), 3);
    EXPECT_EQ(m_objRoot.read(kSibling), "new");
    EXPECT_FALSE(m_objRoot.exists(kName));
    EXPECT_TRUE(objFile.close());
    EXPECT_FALSE(m_objRoot.exists(kSibling));
    EXPECT_EQ(m_objRoot.read(kName), "new");
}

TEST_F(QVFileOnDiskTest, TheFileIsFlushedBeforeAndItsFolderAfterTheRename) {
    EXPECT_TRUE(replace("new"));
    EXPECT_EQ(systemFaults::calls(),
              (std::vector<std::string>{"flock", "write", "fsync file", "rename", "fsync directory"}));
}

TEST_F(QVFileOnDiskTest, ASiblingThatAnotherProcessLeftBehindIsReused) {
    m_objRoot.write(kName, "old");
    m_objRoot.write(kSibling, "a long rest of a write that a power cut ended");
    EXPECT_TRUE(replace("new"));
    EXPECT_EQ(m_objRoot.read(kName), "new");
    EXPECT_FALSE(m_objRoot.exists(kSibling));
}

TEST_F(QVFileOnDiskTest, AProcessThatDiesWhileWritingLeavesTheOldContentAndNoLock) {
    m_objRoot.write(kName, "old");
    const pid_t nChild = fork();
    if (0 == nChild) {
        QVFile objFile;
        const bool bWritten = objFile.open(kName, kReplace) && 4 == objFile.write("half", 4);
        _exit(bWritten ? 0 : 1);
    }
    int nStatus = -1;
    ASSERT_EQ(waitpid(nChild, &nStatus, 0), nChild);
    EXPECT_EQ(nStatus, 0);
    EXPECT_EQ(m_objRoot.read(kName), "old");
    EXPECT_EQ(m_objRoot.read(kSibling), "half");
    EXPECT_TRUE(replace("new"));
    EXPECT_EQ(m_objRoot.read(kName), "new");
}

TEST_F(QVFileOnDiskTest, AWriteThatTheSystemCutsGoesOn) {
    systemFaults::cutWrite(2);
    EXPECT_TRUE(replace("content"));
    EXPECT_EQ(m_objRoot.read(kName), "content");
}

TEST_F(QVFileOnDiskTest, AShortWriteKeepsTheOldContent) {
    m_objRoot.write(kName, "old");
    systemFaults::cutWrite(2);
    systemFaults::fail("write", ENOSPC, 1);
    QVFile objFile;
    EXPECT_TRUE(objFile.open(kName, kReplace));
    EXPECT_EQ(objFile.write("content", 7), 2);
    EXPECT_EQ(objFile.write("more", 4), -1);
    EXPECT_FALSE(objFile.close());
    expectOldContentAndNoSibling();
}

TEST_F(QVFileOnDiskTest, AFailedWriteKeepsTheOldContent) {
    m_objRoot.write(kName, "old");
    systemFaults::fail("write", EIO);
    QVFile objFile;
    EXPECT_TRUE(objFile.open(kName, kReplace));
    EXPECT_EQ(objFile.write("content", 7), -1);
    EXPECT_FALSE(objFile.close());
    expectOldContentAndNoSibling();
}

TEST_F(QVFileOnDiskTest, ADiskThatIsFullOnTheWayKeepsTheOldContent) {
    m_objRoot.write(kName, "old");
    rlimit stBefore = {};
    ASSERT_EQ(getrlimit(RLIMIT_FSIZE, &stBefore), 0);
    const auto fnBefore = signal(SIGXFSZ, SIG_IGN);
    rlimit stSmall = stBefore;
    stSmall.rlim_cur = 4096;
    QVFile objFile;
    EXPECT_TRUE(objFile.open(kName, kReplace));
    const std::string strContent(10000, 'x');
    ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &stSmall), 0);
    const int nWritten = objFile.write(strContent.data(), 10000);
    ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &stBefore), 0);
    signal(SIGXFSZ, fnBefore);
    EXPECT_EQ(nWritten, 4096);
    EXPECT_FALSE(objFile.close());
    expectOldContentAndNoSibling();
}

TEST_F(QVFileOnDiskTest, AFlushThatFailedKeepsTheOldContent) {
    m_objRoot.write(kName, "old");
    systemFaults::fail("fsync", EIO);
    EXPECT_FALSE(replace("new"));
    expectOldContentAndNoSibling();
}

TEST_F(QVFileOnDiskTest, ARenameThatFailedKeepsTheOldContent) {
    m_objRoot.write(kName, "old");
    systemFaults::fail("rename", EIO);
    EXPECT_FALSE(replace("new"));
    expectOldContentAndNoSibling();
}

TEST_F(QVFileOnDiskTest, AFolderThatCannotBeFlushedIsReported) {
    systemFaults::fail("fsync", EIO, 1);
    EXPECT_FALSE(replace("new"));
    EXPECT_EQ(m_objRoot.read(kName), "new");
}

TEST_F(QVFileOnDiskTest, AFileSystemWithoutFolderFlushIsFine) {
    systemFaults::fail("fsync", EINVAL, 1);
    EXPECT_TRUE(replace("new"));
}

TEST_F(QVFileOnDiskTest, SignalsCutNothingShort) {
    for (const char* const szCall : {"flock", "write", "fsync"}) {
        systemFaults::clear();
        systemFaults::fail(szCall, EINTR);
        EXPECT_TRUE(replace(szCall));
        EXPECT_EQ(m_objRoot.read(kName), szCall);
    }
}

TEST_F(QVFileOnDiskTest, ALockThatTheSystemRefusesFailsTheOpen) {
    m_objRoot.write(kName, "old");
    systemFaults::fail("flock", ENOLCK);
    EXPECT_FALSE(replace("new"));
    EXPECT_EQ(m_objRoot.read(kName), "old");
}

TEST_F(QVFileOnDiskTest, ANewFileIsReadableForAllAndAReplacedOneKeepsItsPermissions) {
    const mode_t nMask = umask(022);
    EXPECT_TRUE(replace("one"));
    EXPECT_EQ(permissionsOf(kName), 0644U);
    EXPECT_EQ(chmod((m_objRoot.path() + kName).c_str(), 0600), 0);
    EXPECT_TRUE(replace("two"));
    EXPECT_EQ(permissionsOf(kName), 0600U);
    umask(nMask);
}

TEST_F(QVFileOnDiskTest, OnlyRegularFilesAreReplaced) {
    const std::string strPath = m_objRoot.path() + kName;
    EXPECT_EQ(mkfifo(strPath.c_str(), 0600), 0);
    EXPECT_FALSE(replace("new"));
    EXPECT_TRUE(std::filesystem::is_fifo(strPath));
    m_objRoot.remove(kName);
    EXPECT_EQ(symlink("/dev/null", strPath.c_str()), 0);
    EXPECT_FALSE(replace("new"));
    EXPECT_TRUE(std::filesystem::is_symlink(strPath));
    EXPECT_FALSE(m_objRoot.exists(kSibling));
}

TEST_F(QVFileOnDiskTest, APipeIsNotOpenedForReadingAndNobodyWaitsForItsWriter) {
    EXPECT_EQ(mkfifo((m_objRoot.path() + kName).c_str(), 0600), 0);
    QVFile objFile;
    EXPECT_FALSE(objFile.open(kName));
}

TEST_F(QVFileOnDiskTest, ASiblingThatIsNoRegularFileIsNotWritten) {
    m_objRoot.write("/tmp/other", "other");
    EXPECT_EQ(symlink((m_objRoot.path() + "/tmp/other").c_str(), (m_objRoot.path() + kSibling).c_str()), 0);
    EXPECT_FALSE(replace("new"));
    EXPECT_EQ(m_objRoot.read("/tmp/other"), "other");
    m_objRoot.remove(kSibling);
    EXPECT_EQ(mkfifo((m_objRoot.path() + kSibling).c_str(), 0600), 0);
    EXPECT_FALSE(replace("new"));
    m_objRoot.remove(kSibling);
    m_objRoot.makeFolder(kSibling);
    EXPECT_FALSE(replace("new"));
    EXPECT_FALSE(m_objRoot.exists(kName));
}

TEST_F(QVFileOnDiskTest, ARelativeNameIsMeantFromTheWorkingFolder) {
    const std::filesystem::path before = std::filesystem::current_path();
    std::filesystem::current_path(m_objRoot.path() + "/tmp");
    QVFile objFile;
    EXPECT_TRUE(objFile.open("relative", kReplace));
    EXPECT_TRUE(objFile.close());
    std::filesystem::current_path(before);
    EXPECT_TRUE(m_objRoot.exists("/tmp/relative"));
}

TEST_F(QVFileOnDiskTest, NoProgramThatIsStartedInheritsAnOpenFile) {
    m_objRoot.write(kName, "old");
    const auto openOnes = [] {
        std::set<int> setHandles;
        for (int i = 0; i < 256; ++i) {
            if (-1 != fcntl(i, F_GETFD)) {
                setHandles.insert(i);
            }
        }
        return setHandles;
    };
    const std::set<int> setBefore = openOnes();
    QVFile objReader;
    QVFile objWriter;
    EXPECT_TRUE(objReader.open(kName));
    EXPECT_TRUE(objWriter.open(kName, kReplace));
    int nOpened = 0;
    for (const int nHandle : openOnes()) {
        if (0 == setBefore.count(nHandle)) {
            ++nOpened;
            EXPECT_NE(fcntl(nHandle, F_GETFD) & FD_CLOEXEC, 0);
        }
    }
    EXPECT_EQ(nOpened, 2);
    EXPECT_TRUE(objReader.close());
    EXPECT_TRUE(objWriter.close());
    EXPECT_EQ(openOnes(), setBefore);
}

TEST_F(QVFileOnDiskTest, EveryFailureClosesWhatItOpened) {
    m_objRoot.makeFolder(kName);
    const int nNext = dup(STDIN_FILENO);
    close(nNext);
    EXPECT_FALSE(QVFile().open(kName));
    EXPECT_FALSE(replace("new"));
    systemFaults::fail("flock", ENOLCK);
    EXPECT_FALSE(replace("new"));
    const int nAgain = dup(STDIN_FILENO);
    close(nAgain);
    EXPECT_EQ(nAgain, nNext);
}

}  // namespace
