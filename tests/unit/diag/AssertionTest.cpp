#include "sensor/diag/Message.h"
#include "tests/support/Messages.h"
#include "tests/support/TestRoot.h"
#include "tests/unit/diag/OutputPipe.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <csignal>
#include <string>
#include <thread>

namespace {

constexpr char kSourceFile[] = "Camera.cpp";
const std::string kSignFile = "/mnt/mtd/sign/Debug.sign";

bool checkLens(int p_nPosition) {
    return SENSOR_ASSERT(p_nPosition < 10, "p_nPosition < LENS_END");
}

bool checkLensWithDetail(int p_nPosition) {
    return SENSOR_ASSERT_DETAIL(p_nPosition < 10, "p_nPosition < LENS_END", "p_nPosition(%d)\n", p_nPosition);
}

// What a dying process shows on standard output joins what it shows on standard error.
void joinOutputs() {
    dup2(STDERR_FILENO, STDOUT_FILENO);
}

class Assertion : public testing::Test {
protected:
    Assertion() { GTEST_FLAG_SET(death_test_style, "threadsafe"); }

    TestRoot m_objRoot;
};
using AssertionDeathTest = Assertion;

TEST_F(Assertion, ThatHoldsSaysNothingAndIsTrue) {
    m_objRoot.debugLevel(7, true);
    EXPECT_EQ("", outputOf([] {
                  EXPECT_TRUE(checkLens(1));
                  EXPECT_TRUE(checkLensWithDetail(1));
              }));
    EXPECT_EQ("", m_objRoot.errorLog());
}

TEST_F(Assertion, ThatHoldsDoesNotLookAtItsDetail) {
    int nLooks = 0;
    EXPECT_TRUE(SENSOR_ASSERT_DETAIL(true, "holds", "%d", ++nLooks));
    EXPECT_EQ(0, nLooks);
    outputOf([&] { EXPECT_FALSE(SENSOR_ASSERT_DETAIL(false, "holds", "%d", ++nLooks)); });
    EXPECT_EQ(1, nLooks);
}

TEST_F(Assertion, ThatFailsIsShownInRedWithItsConditionAndLogged) {
    const std::string strShown = outputOf([] { EXPECT_FALSE(SENSOR_ASSERT_AT(321, false, "NULL != p_pLens")); });
    EXPECT_EQ(
        "\033[0m\033[31m[sensor assert] file:Camera.cpp fun:operator() line:321\n"
        "NULL != p_pLens   ~~~Assertion failed.\n\033[0m",
        strShown);
    EXPECT_EQ(
        "[sensor assert] file:Camera.cpp fun:operator() line:321\n"
        "[sensor assert] NULL != p_pLens   ~~~Assertion failed.\n",
        m_objRoot.errorLog());
}

TEST_F(Assertion, WithDetailIsASecondMessageWithoutAHeader) {
    const std::string strShown =
        outputOf([] { EXPECT_FALSE(SENSOR_ASSERT_DETAIL_AT(44, false, "0 == nSum", "nSum(%d) of %s\n", 9, "lens")); });
    EXPECT_EQ(
        "\033[0m\033[31m[sensor assert] file:Camera.cpp fun:operator() line:44\n"
        "0 == nSum   ~~~Assertion failed.\n\033[0m"
        "\033[0m\033[31mnSum(9) of lens\n\033[0m",
        strShown);
    EXPECT_EQ(
        "[sensor assert] file:Camera.cpp fun:operator() line:44\n"
        "[sensor assert] 0 == nSum   ~~~Assertion failed.\n"
        "[sensor assert] nSum(9) of lens\n",
        m_objRoot.errorLog());
}

TEST_F(Assertion, WithoutAbortLetsTheSiteCarryOn) {
    for (const char* szSign : {"0\n", "1\n0\n", "7\n\n", "-1\n"}) {
        m_objRoot.write(kSignFile, szSign);
        bool bCarriedOn = false;
        outputOf([&] {
            checkLens(10);
            checkLensWithDetail(10);
            bCarriedOn = true;
        });
        EXPECT_TRUE(bCarriedOn) << szSign;
    }
}

TEST_F(Assertion, BelowLevelZeroIsNeitherShownNorLogged) {
    m_objRoot.debugLevel(-1);
    EXPECT_EQ("", outputOf([] {
                  EXPECT_FALSE(checkLens(10));
                  EXPECT_FALSE(checkLensWithDetail(10));
              }));
    EXPECT_FALSE(m_objRoot.exists("/mnt/mtd/log/SensorError.log"));
}

TEST_F(Assertion, IsShownAndDoesNotAbortWithoutASignFileWhileAWarningIsNotShown) {
    EXPECT_EQ(messages::assertion({kSourceFile, "checkLens"}, "p_nPosition < LENS_END"), messages::anyLine(outputOf([] {
                  checkLens(10);
                  SENSOR_WARN("not shown\n");
              })));
    EXPECT_EQ(messages::loggedAssertion({kSourceFile, "checkLens"}, "p_nPosition < LENS_END"),
              messages::anyLine(m_objRoot.errorLog()));
}

TEST_F(Assertion, DoesNotAbortWhenTheSignFileHasOneLine) {
    m_objRoot.write(kSignFile, "6\n");
    const std::string strShown = outputOf([] {
        checkLens(10);
        SENSOR_TRACE("trace\n");
        SENSOR_ERR("error\n");
    });
    EXPECT_EQ(messages::assertion({kSourceFile, "checkLens"}, "p_nPosition < LENS_END") + messages::trace("trace\n") +
                  messages::error({kSourceFile, "operator()"}, "error\n"),
              messages::anyLine(strShown));
}

TEST_F(Assertion, StopsToAbortWhenTheSignFileIsRemoved) {
    m_objRoot.debugLevel(7, true);
    outputOf([] { SENSOR_TRACE("the switch is on\n"); });
    EXPECT_TRUE(g_bEnAssert);
    m_objRoot.remove(kSignFile);
    EXPECT_NE("", outputOf([] { EXPECT_FALSE(checkLens(10)); }));
    EXPECT_EQ(1, g_nDebugLevel);
}

// The first message is longer than a pipe holds. Once its first byte is here, its level has been tested, and it is not
// over before the pipe is emptied: the edit falls between the two messages.
TEST_F(Assertion, LooksAtTheSignFileAgainForItsDetail) {
    const std::string strCondition(1 << 20, 'c');
    for (const bool bSilencedInBetween : {true, false}) {
        m_objRoot.write(kSignFile, bSilencedInBetween ? "0\n" : "1\n");
        OutputPipe pipe(OutputPipe::Kind::Pipe);
        std::thread thread([&] {
            SENSOR_ASSERT_DETAIL(false, strCondition.c_str(), "detail\n");
            pipe.restore();
        });
        std::string strShown = pipe.next(1);
        m_objRoot.write(kSignFile, bSilencedInBetween ? "-1\n" : "0\n");
        strShown += pipe.rest();
        thread.join();
        const std::string strDetail = bSilencedInBetween ? "" : messages::detail("detail\n");
        EXPECT_EQ(messages::assertion({kSourceFile, "operator()"}, strCondition) + strDetail,
                  messages::anyLine(strShown));
        EXPECT_EQ(bSilencedInBetween ? -1 : 0, g_nDebugLevel);
        EXPECT_EQ(bSilencedInBetween, std::string::npos == m_objRoot.errorLog().find("[sensor assert] detail\n"));
    }
}

TEST_F(AssertionDeathTest, AbortsWithItsFileLineAndWholeSignatureWhenTheSwitchIsOn) {
    m_objRoot.write(kSignFile, "0\n1\n");
    EXPECT_DEATH(checkLens(10), "Camera\\.cpp:[0-9]+: bool .*checkLens\\(int\\): Assertion `bRet' failed");
    EXPECT_DEATH(checkLensWithDetail(10),
                 "Camera\\.cpp:[0-9]+: bool .*checkLensWithDetail\\(int\\): Assertion `bRet' failed");
    EXPECT_DEATH(static_cast<void>(SENSOR_ASSERT_AT(999, false, "lens fits")),
                 "Camera\\.cpp:999: .*Assertion `bRet' failed");
}

TEST_F(AssertionDeathTest, EndsByTheAbortSignal) {
    m_objRoot.debugLevel(1, true);
    EXPECT_EXIT(checkLens(10), testing::KilledBySignal(SIGABRT), "bRet");
}

TEST_F(AssertionDeathTest, SpeaksBeforeItAborts) {
    m_objRoot.debugLevel(1, true);
    EXPECT_DEATH(
        {
            joinOutputs();
            checkLensWithDetail(10);
        },
        "\\[sensor assert\\] file:Camera\\.cpp fun:checkLensWithDetail line:[0-9]+\n"
        "p_nPosition < LENS_END   ~~~Assertion failed\\.\n.*p_nPosition\\(10\\)\n.*Assertion `bRet' failed");
}

TEST_F(AssertionDeathTest, AbortsAtLevelOneWhenOnlyTheSecondLineIsWritten) {
    m_objRoot.write(kSignFile, "\n1\n");
    EXPECT_DEATH(
        {
            joinOutputs();
            checkLens(10);
        },
        "\\[sensor assert\\].*\n.*\n.*Assertion `bRet' failed");
}

TEST_F(AssertionDeathTest, BelowLevelZeroAbortsWithoutAMessage) {
    EXPECT_DEATH(
        {
            m_objRoot.debugLevel(-1, true);
            joinOutputs();
            dprintf(STDERR_FILENO, "before\n");
            checkLensWithDetail(10);
        },
        "^before\n[^\n]*Camera\\.cpp:[0-9]+: [^\n]*Assertion `bRet' failed");
}

TEST_F(AssertionDeathTest, ThatHoldsNeverAborts) {
    EXPECT_EXIT(
        {
            m_objRoot.debugLevel(7, true);
            checkLens(1);
            checkLensWithDetail(1);
            _exit(0);
        },
        testing::ExitedWithCode(0), "");
}

TEST_F(AssertionDeathTest, AbortsByTheSwitchThatTheSignFileHasNow) {
    EXPECT_DEATH(
        {
            m_objRoot.debugLevel(1, false);
            checkLens(10);
            dprintf(STDERR_FILENO, "went on\n");
            m_objRoot.debugLevel(1, true);
            checkLens(10);
        },
        "went on\n.*Assertion `bRet' failed");
}

}  // namespace
