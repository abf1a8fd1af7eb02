#include "sensor/diag/Message.h"
#include "tests/support/FullMedium.h"
#include "tests/support/Messages.h"
#include "tests/support/TestRoot.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <string>
#include <vector>

namespace {

constexpr char kMessageSource[] = "Camera.cpp";

void warn() {
    SENSOR_WARN("lens %d of %s\n", 3, "four");
}
void err() {
    SENSOR_ERR("lens %d of %s\n", 3, "four");
}
void dbg() {
    SENSOR_DBG("lens %d of %s\n", 3, "four");
}
void info() {
    SENSOR_INFO("lens %d of %s\n", 3, "four");
}
void trace() {
    SENSOR_TRACE("lens %d of %s\n", 3, "four");
}
void assertion() {
    SENSOR_ASSERT(false, "lens fits");
}

struct Kind {
    const char* szName;
    void (*pfnSay)();
    int nLowestLevel;
    std::string strShown;
    bool bLogged;
};

const std::string kText = "lens 3 of four\n";

std::vector<Kind> kinds() {
    return {
        {"assertion", assertion, 0, messages::assertion({kMessageSource, "assertion"}, "lens fits"), true},
        {"warning", warn, 4, messages::warning({kMessageSource, "warn"}, kText), true},
        {"error", err, 6, messages::error({kMessageSource, "err"}, kText), false},
        {"debug", dbg, 6, messages::debug({kMessageSource, "dbg"}, kText), false},
        {"trace", trace, 6, messages::trace(kText), false},
        {"dump", info, 7, messages::info({kMessageSource, "info"}, kText), false},
    };
}

TEST(Message, IsShownFromItsLevelOnInItsOwnColourWithItsHeader) {
    const TestRoot root;
    for (const Kind& kind : kinds()) {
        for (int nLevel = -2; nLevel <= 9; ++nLevel) {
            root.debugLevel(nLevel);
            const std::string strExpected = nLevel >= kind.nLowestLevel ? kind.strShown : "";
            EXPECT_EQ(strExpected, messages::anyLine(outputOf(kind.pfnSay))) << kind.szName << " at level " << nLevel;
        }
    }
}

TEST(Message, IsLoggedWhenItIsAnAssertionOrAWarningThatIsShown) {
    for (const Kind& kind : kinds()) {
        for (int nLevel = -2; nLevel <= 9; ++nLevel) {
            const TestRoot root;
            root.debugLevel(nLevel);
            outputOf(kind.pfnSay);
            const bool bLogged = kind.bLogged && nLevel >= kind.nLowestLevel;
            EXPECT_EQ(bLogged, !root.errorLog().empty()) << kind.szName << " at level " << nLevel;
            EXPECT_EQ(bLogged, root.exists("/mnt/mtd/log/SensorError.log")) << kind.szName << " at level " << nLevel;
        }
    }
}

TEST(Message, GoesByLevelOneWithoutASignFile) {
    const TestRoot root;
    for (const Kind& kind : kinds()) {
        const std::string strExpected = 1 >= kind.nLowestLevel ? kind.strShown : "";
        EXPECT_EQ(strExpected, messages::anyLine(outputOf(kind.pfnSay))) << kind.szName;
    }
    EXPECT_EQ(messages::loggedAssertion({kMessageSource, "assertion"}, "lens fits"),
              messages::anyLine(root.errorLog()));
}

TEST(Message, GoesByTheWordsOfBeforeWhenTheSignFileCannotBeOpened) {
    const TestRoot root;
    root.debugLevel(6);
    outputOf(err);
    root.remove("/mnt/mtd/sign/Debug.sign");
    ASSERT_EQ(0, mknod((root.path() + "/mnt/mtd/sign/Debug.sign").c_str(), S_IFSOCK | 0600, 0));
    EXPECT_NE("", outputOf(err));
    EXPECT_EQ("", outputOf(info));
}

TEST(Message, FollowsEachEditOfTheSignFileAtOnce) {
    const TestRoot root;
    EXPECT_EQ("", outputOf(err));
    root.debugLevel(6);
    EXPECT_NE("", outputOf(err));
    root.debugLevel(5);
    EXPECT_EQ("", outputOf(err));
    root.debugLevel(6);
    EXPECT_NE("", outputOf(err));
    root.remove("/mnt/mtd/sign/Debug.sign");
    EXPECT_EQ("", outputOf(err));
}

TEST(Message, CarriesTheLineThatTheSiteNames) {
    const TestRoot root;
    root.debugLevel(6);
    EXPECT_EQ("\033[0m\033[0m[sensor warn] file:Camera.cpp fun:operator() line:1234\ntext\033[0m",
              outputOf([] { SENSOR_WARN_AT(1234, "text"); }));
    EXPECT_EQ("\033[0m\033[0m[sensor dbg] file:Camera.cpp fun:operator() line:0\ntext\033[0m",
              outputOf([] { SENSOR_DBG_AT(0, "text"); }));
    EXPECT_EQ("[sensor warn] file:Camera.cpp fun:operator() line:1234\n[sensor warn] text\n", root.errorLog());
}

TEST(Message, CarriesItsOwnLineOtherwise) {
    const TestRoot root;
    root.debugLevel(6);
    const std::string strHere = std::to_string(__LINE__ + 1);
    EXPECT_NE(std::string::npos, outputOf([] { SENSOR_ERR("text"); }).find(" line:" + strHere + "\n"));
}

TEST(Message, AsPlainTextIsShownAtEveryLevelAndNeverLogged) {
    const TestRoot root;
    for (const int nLevel : {-1, 0, 1, 7}) {
        root.debugLevel(nLevel);
        EXPECT_EQ("### count = 5\n", outputOf([] { SENSOR_PRINT("### count = %d\n", 5); }));
    }
    EXPECT_EQ("", root.errorLog());
}

TEST(Message, DoesNotReadAValueAsAFormat) {
    const TestRoot root;
    root.debugLevel(6);
    EXPECT_EQ(messages::trace("100%d%s%n%%"), outputOf([] { SENSOR_TRACE("%s", "100%d%s%n%%"); }));
    outputOf([] { SENSOR_WARN("%s", "100%d%s%n%%"); });
    EXPECT_NE(std::string::npos, root.errorLog().find("[sensor warn] 100%d%s%n%%\n"));
    outputOf([] { SENSOR_ASSERT(false, "rest == 100 %s%n"); });
    EXPECT_NE(std::string::npos, root.errorLog().find("[sensor assert] rest == 100 %s%n   ~~~Assertion failed.\n"));
}

TEST(Message, MayBeEmpty) {
    const TestRoot root;
    root.debugLevel(6);
    EXPECT_EQ(messages::trace(""), outputOf([] { SENSOR_TRACE("%s", ""); }));
    EXPECT_EQ("", outputOf([] { SENSOR_PRINT("%s", ""); }));
}

TEST(Message, MayBeLong) {
    const TestRoot root;
    root.debugLevel(7);
    const std::string strLong(300000, 'x');
    EXPECT_EQ(messages::trace(strLong), outputOf([&] { SENSOR_TRACE("%s", strLong.c_str()); }));
    EXPECT_EQ(strLong, outputOf([&] { SENSOR_PRINT("%s", strLong.c_str()); }));

    // The log cuts an entry to the size of one of its files.
    EXPECT_EQ(messages::warning({kMessageSource, "operator()"}, strLong),
              messages::anyLine(outputOf([&] { SENSOR_WARN("%s", strLong.c_str()); })));
    EXPECT_EQ(10240u, root.read("/mnt/mtd/log/SensorError.log").size());
}

TEST(Message, KeepsAZeroByteAndWhatFollowsOnStandardOutput) {
    const TestRoot root;
    root.debugLevel(6);
    EXPECT_EQ(std::string("a\0b", 3), outputOf([] { SENSOR_PRINT("a%cb", 0); }));
}

TEST(Message, WhoseValuesCannotBeFormattedStillHasItsHeader) {
    const TestRoot root;
    root.debugLevel(6);
    EXPECT_EQ(messages::error({kMessageSource, "operator()"}, ""),
              messages::anyLine(outputOf([] { SENSOR_ERR("%ls\n", L"\x20AC"); })));
}

// --- Nobody listens ---

TEST(Message, IsDroppedWhenStandardOutputIsClosedAndStillLogged) {
    const TestRoot root;
    const int nSaved = dup(STDOUT_FILENO);
    ASSERT_NE(-1, nSaved);
    close(STDOUT_FILENO);
    assertion();
    SENSOR_PRINT("text");
    ASSERT_EQ(STDOUT_FILENO, dup2(nSaved, STDOUT_FILENO));
    close(nSaved);
    EXPECT_EQ(messages::loggedAssertion({kMessageSource, "assertion"}, "lens fits"),
              messages::anyLine(root.errorLog()));
}

TEST(Message, IsCutWhereTheMediumOfStandardOutputIsFull) {
    const TestRoot root;
    const std::string strLong(100000, 'x');
    const std::string strShown = outputOf([&] {
        const FullMedium full(65536);
        SENSOR_PRINT("%s", strLong.c_str());
    });
    EXPECT_EQ(strLong.substr(0, 65536), strShown);
}

}  // namespace
