#include "platform/System.h"

#include "platform/DeviceRoot.h"
#include "tests/support/TestRoot.h"

#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>

#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

namespace {

namespace fs = std::filesystem;

class SystemOnLinuxTest : public ::testing::Test {
protected:
    TestRoot m_objRoot;
};

TEST_F(SystemOnLinuxTest, ARootMayHaveAnyName) {
    for (const char* const szFolder : {"a blank", "q'uote", "dq\"uote", "$HOME", "`id`", "$(id)", "st*r[x]?",
                                       "semi;colon", "new\nline", "back\\slash", "#hash", "-rf", "~"}) {
        const std::string strRoot = m_objRoot.path() + "/" + szFolder;
        fs::create_directories(strRoot + "/mnt/mtd/code/config_file");
        fs::create_directories(strRoot + "/tmp");
        platform::setDeviceRoot(strRoot);
        EXPECT_EQ(
            sy_system("touch /mnt/mtd/code/config_file/sensor0.cfg \"/tmp/double quoted\" '/tmp/single quoted'", 30),
            0);
        EXPECT_TRUE(fs::exists(strRoot + "/mnt/mtd/code/config_file/sensor0.cfg")) << szFolder;
        EXPECT_TRUE(fs::exists(strRoot + "/tmp/double quoted")) << szFolder;
        EXPECT_TRUE(fs::exists(strRoot + "/tmp/single quoted")) << szFolder;
        EXPECT_EQ(sy_system("rm -rf /mnt/mtd/code/config*/sensor*", 30), 0);
        EXPECT_FALSE(fs::exists(strRoot + "/mnt/mtd/code/config_file/sensor0.cfg")) << szFolder;
    }
}

TEST_F(SystemOnLinuxTest, ARelativeRootIsMeantFromTheWorkingFolder) {
    const fs::path before = fs::current_path();
    fs::current_path(m_objRoot.path());
    fs::create_directories("-root/tmp");
    platform::setDeviceRoot("-root");
    EXPECT_EQ(sy_system("cd / && touch /tmp/made", 30), 0);
    EXPECT_TRUE(fs::exists("-root/tmp/made"));
    fs::current_path(before);
}

TEST_F(SystemOnLinuxTest, WithoutARootNothingIsRewritten) {
    const std::string strMarked = m_objRoot.path() + "/tmp/out";
    setenv("TEST_OUT", strMarked.c_str(), 1);
    setenv("CAMERA_ROOT", "/from/outside", 1);
    platform::setDeviceRoot("/");
    EXPECT_EQ(sy_system("echo /tmp \"${CAMERA_ROOT-unset}\" > \"$TEST_OUT\"", 30), 0);
    EXPECT_EQ(m_objRoot.read("/tmp/out"), "/tmp unset\n");
}

TEST_F(SystemOnLinuxTest, TheEnvironmentOfTheProcessIsHandedOn) {
    setenv("TEST_WORD", "word", 1);
    setenv("CAMERA_ROOT_ELSE", "else", 1);
    setenv("CAMERA_ROOT", "/from/outside", 1);
    EXPECT_EQ(sy_system("echo $TEST_WORD $CAMERA_ROOT_ELSE > /tmp/out; env | grep -c ^CAMERA_ROOT= >> /tmp/out", 30),
              0);
    EXPECT_EQ(m_objRoot.read("/tmp/out"), "word else\n1\n");
}

TEST_F(SystemOnLinuxTest, LeavesNoZombie) {
    EXPECT_EQ(sy_system("exit 3", 30), 3);
    EXPECT_EQ(sy_system("exit 3", 0), 3);
    EXPECT_EQ(sy_system("sleep 600", 1), -1);
    EXPECT_EQ(waitpid(-1, nullptr, WNOHANG), -1);
    EXPECT_EQ(errno, ECHILD);
}

TEST_F(SystemOnLinuxTest, ACommandThatIsTooLongIsNotRun) {
    const std::string strRest = " && touch /tmp/run";
    const std::string strLongest = ": " + std::string(131000 - m_objRoot.path().size(), 'x');
    EXPECT_EQ(sy_system((strLongest + strRest).c_str(), 30), 0);
    EXPECT_TRUE(m_objRoot.exists("/tmp/run"));
    m_objRoot.remove("/tmp/run");
    EXPECT_EQ(sy_system((strLongest + std::string(500, 'x') + strRest).c_str(), 30), -1);
    EXPECT_FALSE(m_objRoot.exists("/tmp/run"));
}

volatile sig_atomic_t g_nChildSignals = 0;
void countChildSignal(int) {
    g_nChildSignals = g_nChildSignals + 1;
}

TEST_F(SystemOnLinuxTest, TheProcessKeepsItsSignalHandlersAndMask) {
    struct sigaction stHandler = {};
    stHandler.sa_handler = countChildSignal;
    struct sigaction stBefore = {};
    ASSERT_EQ(sigaction(SIGCHLD, &stHandler, &stBefore), 0);
    sigset_t stMaskBefore;
    pthread_sigmask(SIG_SETMASK, nullptr, &stMaskBefore);
    EXPECT_EQ(sy_system("exit 5", 30), 5);
    EXPECT_EQ(sy_system("exit 6", 0), 6);
    struct sigaction stAfter = {};
    ASSERT_EQ(sigaction(SIGCHLD, &stBefore, &stAfter), 0);
    EXPECT_EQ(stAfter.sa_handler, &countChildSignal);
    EXPECT_EQ(g_nChildSignals, 2);
    sigset_t stMaskAfter;
    pthread_sigmask(SIG_SETMASK, nullptr, &stMaskAfter);
    for (int nSignal = 1; nSignal < 32; ++nSignal) {
        EXPECT_EQ(sigismember(&stMaskAfter, nSignal), sigismember(&stMaskBefore, nSignal)) << nSignal;
    }
}

TEST_F(SystemOnLinuxTest, TheCommandStartsWithFreshSignals) {
    const auto fnBefore = signal(SIGTERM, SIG_IGN);
    sigset_t stBlocked;
    sigset_t stBefore;
    sigemptyset(&stBlocked);
    sigaddset(&stBlocked, SIGHUP);
    pthread_sigmask(SIG_BLOCK, &stBlocked, &stBefore);
    EXPECT_EQ(sy_system("kill -TERM $$; exit 0", 30), 128 + SIGTERM);
    EXPECT_EQ(sy_system("kill -HUP $$; exit 0", 30), 128 + SIGHUP);
    pthread_sigmask(SIG_SETMASK, &stBefore, nullptr);
    signal(SIGTERM, fnBefore);
}

}  // namespace
