#include "platform/System.h"

#include "tests/contract/OnDevice.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <string>
#include <thread>
#include <vector>

namespace {

class SystemTest : public OnDevice {};

// A pipe with a name on the device whose read end tells when the last process that holds the other end is gone.
class LifeLine {
public:
    explicit LifeLine(const TestRoot& p_objRoot) {
        const std::string strPath = p_objRoot.path() + "/tmp/life";
        EXPECT_EQ(mkfifo(strPath.c_str(), 0600), 0);
        m_nHandle = open(strPath.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
        EXPECT_NE(m_nHandle, -1);
    }
    ~LifeLine() { close(m_nHandle); }
    LifeLine(const LifeLine&) = delete;
    LifeLine& operator=(const LifeLine&) = delete;

    // What was written until all were gone; "still there" when they are not within half a minute.
    std::string lastWords() const {
        constexpr int kPatience = 30000;  // milliseconds
        std::string strWords;
        while (true) {
            pollfd stPoll = {m_nHandle, POLLIN, 0};
            if (poll(&stPoll, 1, kPatience) <= 0) {
                return "still there";
            }
            char buffer[64];
            const ssize_t nRead = read(m_nHandle, buffer, sizeof(buffer));
            if (nRead <= 0) {
                return strWords;
            }
            strWords.append(buffer, static_cast<std::size_t>(nRead));
        }
    }

private:
    int m_nHandle = -1;
};

TEST_F(SystemTest, ReturnsTheExitStatusOfTheShell) {
    EXPECT_EQ(sy_system("true", 30), 0);
    EXPECT_EQ(sy_system("false", 30), 1);
    EXPECT_EQ(sy_system("exit 255", 30), 255);
    EXPECT_EQ(sy_system("", 30), 0);
    EXPECT_EQ(sy_system("/no/such/program 2>/dev/null", 30), 127);
}

TEST_F(SystemTest, ReturnsTheSignalThatEndedTheShell) {
    EXPECT_EQ(sy_system("kill -KILL $$", 30), 128 + 9);
    EXPECT_EQ(sy_system("kill -TERM $$", 30), 128 + 15);
}

TEST_F(SystemTest, ANullCommandFails) {
    EXPECT_EQ(sy_system(nullptr, 30), -1);
}

TEST_F(SystemTest, ACommandThatNoSystemStartsFails) {
    EXPECT_EQ(sy_system((": " + std::string(256 * 1024, 'x')).c_str(), 30), -1);
}

TEST_F(SystemTest, UnderstandsTheWholeLanguageOfTheShell) {
    EXPECT_EQ(sy_system("for n in 1 2 3; do echo \"$n\" >> /tmp/out; done; test -s /tmp/out && exit 7", 30), 7);
    EXPECT_EQ(m_objRoot.read("/tmp/out"), "1\n2\n3\n");
}

TEST_F(SystemTest, ACommandMayBeginLikeAnOption) {
    EXPECT_EQ(sy_system("-no-such-program 2>/dev/null", 30), 127);
}

TEST_F(SystemTest, StandardInputIsEmpty) {
    EXPECT_EQ(sy_system("cat > /tmp/out", 30), 0);
    EXPECT_EQ(m_objRoot.read("/tmp/out"), "");
    EXPECT_TRUE(m_objRoot.exists("/tmp/out"));
}

TEST_F(SystemTest, CameraPathsMeanTheDeviceRoot) {
    for (const char* const szFolder : {"/mnt", "/hd1", "/tmp"}) {
        const std::string strName = std::string(szFolder) + "/made by a command";
        EXPECT_EQ(sy_system(("echo x > '" + strName + "'").c_str(), 30), 0);
        EXPECT_EQ(m_objRoot.read(strName), "x\n");
    }
}

TEST_F(SystemTest, WildcardsWorkBelowTheDeviceRoot) {
    m_objRoot.write("/mnt/mtd/code/config_file/sensor0.cfg", "0");
    m_objRoot.write("/mnt/mtd/code/config_file/sensor1.cfg", "1");
    m_objRoot.write("/mnt/mtd/code/config_file/other.cfg", "2");
    EXPECT_EQ(sy_system("rm -rf /mnt/mtd/code/config*/sensor*", 30), 0);
    EXPECT_FALSE(m_objRoot.exists("/mnt/mtd/code/config_file/sensor0.cfg"));
    EXPECT_FALSE(m_objRoot.exists("/mnt/mtd/code/config_file/sensor1.cfg"));
    EXPECT_TRUE(m_objRoot.exists("/mnt/mtd/code/config_file/other.cfg"));
}

TEST_F(SystemTest, TheCommandFindsTheDeviceRootInItsEnvironment) {
    EXPECT_EQ(sy_system("printf %s \"$CAMERA_ROOT\" > /tmp/out", 30), 0);
    EXPECT_EQ(m_objRoot.read("/tmp/out"), m_objRoot.path());
}

TEST_F(SystemTest, TheTimeOutEndsTheWholeProcessGroup) {
    const LifeLine line(m_objRoot);
    EXPECT_EQ(sy_system("exec 9>/tmp/life; sleep 600 & (trap '' TERM HUP INT; echo up >&9; sleep 600) & wait", 1), -1);
    EXPECT_EQ(line.lastWords(), "up\n");
}

TEST_F(SystemTest, TheCommandHasAProcessGroupOfItsOwn) {
    EXPECT_EQ(sy_system("kill -KILL 0", 30), 128 + 9);  // would be the end of this test otherwise
}

TEST_F(SystemTest, BackgroundWorkOfACommandThatEndedInTimeGoesOn) {
    const LifeLine line(m_objRoot);
    m_objRoot.write("/tmp/wait", "");
    EXPECT_EQ(
        sy_system("exec 9>/tmp/life; (echo begun >&9; while test -e /tmp/wait; do :; done; echo done >&9) & true", 30),
        0);
    m_objRoot.remove("/tmp/wait");
    EXPECT_EQ(line.lastWords(), "begun\ndone\n");
}

TEST_F(SystemTest, ATimeOutOfZeroOrLessMeansNoLimit) {
    EXPECT_EQ(sy_system("sleep 1.1; exit 3", 0), 3);
    EXPECT_EQ(sy_system("exit 4", -5), 4);
}

TEST_F(SystemTest, TheTimeOutIsRealTimeAlsoOnAHeldClock) {
    const INT64 nStart = platform::Clock::monotonicMicroseconds();
    EXPECT_EQ(sy_system("sleep 600", 1), -1);
    EXPECT_EQ(platform::Clock::monotonicMicroseconds(), nStart);
}

TEST_F(SystemTest, SeveralThreadsRunCommandsAtOnce) {
    std::vector<std::thread> vecThreads;
    for (int i = 0; i < 4; ++i) {
        vecThreads.emplace_back([i] {
            for (int n = 0; n < 5; ++n) {
                const int nStatus = i * 5 + n;
                EXPECT_EQ(sy_system(("exit " + std::to_string(nStatus)).c_str(), 30), nStatus);
            }
        });
    }
    for (std::thread& thread : vecThreads) {
        thread.join();
    }
}

}  // namespace
