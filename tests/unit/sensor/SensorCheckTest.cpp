// The raw check command of the driver.
#include "technic/QVMutex.h"
#include "tests/unit/sensor/SmallSets.h"

#include <climits>
#include <cstring>

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

constexpr u32 kCheck = 2816;

class SensorCheck : public SmallSets {
protected:
    // The driver answers a read with this result field and gives back this code.
    void answers(int p_nAnswer, int p_nResult = IA_OK) {
        camera.onDriver(kCheck, IA_CMD_OPT_GET, [=](int, void* p_pData) {
            m_stSeen = *static_cast<ia_sensor_check_st*>(p_pData);
            static_cast<ia_sensor_check_st*>(p_pData)->result = p_nAnswer;
            return p_nResult;
        });
    }

    // What the text becomes.
    std::string after(std::string p_strText) {
        EXPECT_EQ(0, controller.SensorCheck(p_strText));
        return p_strText;
    }

    void expectSeen(int p_nFirst, int p_nSecond, int p_nThird) {
        EXPECT_EQ(p_nFirst, m_stSeen.first);
        EXPECT_EQ(p_nSecond, m_stSeen.second);
        EXPECT_EQ(p_nThird, m_stSeen.third);
        EXPECT_EQ(0, m_stSeen.result);
    }

    ia_sensor_check_st m_stSeen = {-9, -9, -9, -9};
};

TEST_F(SensorCheck, WithTwoInSecondPlaceItReadsAndTheTextBecomesTheResult) {
    answers(12345);
    EXPECT_EQ("12345", after("(1,2,3)"));
    expectSeen(1, 2, 3);
    EXPECT_THAT(camera.transcript(), ElementsAre("ia ch0 get 2816 -> 1"));
}

TEST_F(SensorCheck, OtherwiseItWritesAndTheTextStays) {
    for (const char* const szText : {"(1,0,3)", "(1,1,3)", "(1,3,3)", "(1,-2,3)", "(1,x,3)"}) {
        EXPECT_EQ(szText, after(szText));
    }
    EXPECT_THAT(camera.transcript(),
                ElementsAre("ia ch0 set 2816 = 1 0 3 0", "ia ch0 set 2816 = 1 1 3 0", "ia ch0 set 2816 = 1 3 3 0",
                            "ia ch0 set 2816 = 1 -2 3 0", "ia ch0 set 2816 = 1 0 3 0"));
}

TEST_F(SensorCheck, TheResultIsDecimalWithItsSign) {
    for (const int nAnswer : {0, -1, INT_MAX, INT_MIN}) {
        answers(nAnswer);
        EXPECT_EQ(std::to_string(nAnswer), after("(1,2,3)"));
    }
}

TEST_F(SensorCheck, AResultThatTheDriverDoesNotFillIsZero) {
    camera.onDriver(kCheck, IA_CMD_OPT_GET, [](int, void*) { return IA_OK; });
    EXPECT_EQ("0", after("(1,2,3)"));
}

TEST_F(SensorCheck, NumbersAfterTheThirdAreNotLookedAt) {
    answers(7);
    EXPECT_EQ("7", after("(1,2,3,4,5,x)"));
    expectSeen(1, 2, 3);
    EXPECT_EQ("(4,5,6,2)", after("(4,5,6,2)"));
}

TEST_F(SensorCheck, ItemsAreReadAsNumbersAndEmptyOnesAreDropped) {
    answers(7);
    EXPECT_EQ("7", after("(,-1,, 2x,abc)"));
    expectSeen(-1, 2, 0);
}

TEST_F(SensorCheck, TheDriversResultIsReturned) {
    for (const int nResult : {-1, -5, 3}) {
        std::string strWrite = "(1,0,3)";
        camera.driverFails(kCheck, IA_CMD_OPT_SET, nResult);
        EXPECT_EQ(nResult, controller.SensorCheck(strWrite));
        EXPECT_EQ("(1,0,3)", strWrite);
    }
}

TEST_F(SensorCheck, AReadThatFailsReplacesTheTextAllTheSame) {
    answers(9, -3);
    std::string strText = "(1,2,3)";
    EXPECT_EQ(-3, controller.SensorCheck(strText));
    EXPECT_EQ("9", strText);
    camera.driverFails(kCheck, IA_CMD_OPT_GET, -1);
    strText = "(1,2,3)";
    EXPECT_EQ(-1, controller.SensorCheck(strText));
    EXPECT_EQ("0", strText);
}

TEST_F(SensorCheck, ItGoesToTheControllersChannel) {
    controller.setChannelID(2);
    EXPECT_EQ("(1,0,3)", after("(1,0,3)"));
    EXPECT_THAT(camera.transcript(), ElementsAre("ia ch1 set 2816 = 1 0 3 0"));
}

TEST_F(SensorCheck, MeantWhatIsNoListIsReportedAndReadsAsSuccess) {
    for (const char* const szText : {"", "1,2,3", "(1,2,3", "(1,2,3)x", "()", "(", "(1)2,3)", "(,)"}) {
        EXPECT_EQ(std::string("ISensorController.cpp2290 getParameters fail p_strIds = ") + szText + " \n",
                  outputOf([&] { EXPECT_EQ(szText, after(szText)); }));
    }
    EXPECT_THAT(camera.transcript(), IsEmpty());
    EXPECT_EQ("", root.errorLog());
}

TEST_F(SensorCheck, FewerThanThreeNumbersAreNoList) {
    for (const char* const szText : {"(1)", "(1,2)", "(,1,,2,)"}) {
        EXPECT_EQ(std::string("ISensorController.cpp2290 getParameters fail p_strIds = ") + szText + " \n",
                  outputOf([&] { EXPECT_EQ(szText, after(szText)); }));
    }
    EXPECT_THAT(camera.transcript(), IsEmpty());
}

TEST_F(SensorCheck, TheReportIsPrintedAtEveryLevelWordForWord) {
    root.debugLevel(-1);
    EXPECT_EQ("ISensorController.cpp2290 getParameters fail p_strIds = %d%s%n \n",
              outputOf([&] { EXPECT_EQ("%d%s%n", after("%d%s%n")); }));
}

TEST_F(SensorCheck, ItDoesNotGoThroughTheGatewayAndItsBanner) {
    root.debugLevel(7);
    answers(7);
    EXPECT_EQ("", outputOf([&] { after("(1,2,3)"); }));
    EXPECT_EQ("", outputOf([&] { after("(1,0,3)"); }));
}

TEST_F(SensorCheck, ItWorksWithoutSetsAndWithoutTheLock) {
    ISensorController fresh;
    std::string strText = "(1,0,3)";
    EXPECT_EQ(0, fresh.SensorCheck(strText));
    const QVMutexManager guard(&probe.mutex(), "the test", 7);  // a second lock would end the process
    EXPECT_EQ(0, controller.SensorCheck(strText));
    EXPECT_EQ(2u, camera.transcript().size());
}

TEST_F(SensorCheck, NothingIsKeptInTheSets) {
    const std::string strBefore = setAsFile(0);
    after("(34,0,3)");
    EXPECT_EQ(strBefore, setAsFile(0));
}

}  // namespace
