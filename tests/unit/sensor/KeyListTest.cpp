// A list of keys as text: how it is taken apart, and what is read for it.
#include "technic/QVMutex.h"
#include "tests/unit/sensor/SmallSets.h"

using messages::anyLine;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

const char* const kMalformed[] = {"",      "34,2337",  "(34,2337", "34,2337)", "(34)x", "()",    "(",
                                  ")",     "((",       "))",       ")(",       " (34)", "(34) ", "()34",
                                  "(3)4)", "(34)(49)", "(34))",    "x(34)",    "[34]"};

class KeyList : public SmallSets {
protected:
    std::vector<std::string> itemsOf(const std::string& p_strIds) {
        std::vector<std::string> vecItems;
        EXPECT_TRUE(controller.parseSensorParameter(p_strIds, vecItems)) << p_strIds;
        return vecItems;
    }

    // What is read for a list; it replaces what was there before.
    std::string readOf(const std::string& p_strIds) {
        return quietly([&] {
            std::string strOut = "before";
            EXPECT_EQ(1, controller.getParameters(p_strIds, strOut));
            return strOut;
        });
    }
};

// --- Taken apart ---

TEST_F(KeyList, ItsItemsAreBetweenTheCommas) {
    EXPECT_THAT(itemsOf("(34,2337,2353)"), ElementsAre("34", "2337", "2353"));
    EXPECT_THAT(itemsOf("(abc,-1, 7 ,(8)"), ElementsAre("abc", "-1", " 7 ", "(8"));
}

TEST_F(KeyList, TheShortestHasOneCharacter) {
    EXPECT_THAT(itemsOf("(5)"), ElementsAre("5"));
    EXPECT_THAT(itemsOf("( )"), ElementsAre(" "));
    EXPECT_THAT(itemsOf("(()"), ElementsAre("("));
}

TEST_F(KeyList, EmptyItemsAreDropped) {
    EXPECT_THAT(itemsOf("(34,,2337)"), ElementsAre("34", "2337"));
    EXPECT_THAT(itemsOf("(,34,)"), ElementsAre("34"));
}

TEST_F(KeyList, WhatIsNoListIsRejectedAndLeavesTheItems) {
    for (const char* const szText : kMalformed) {
        std::vector<std::string> vecItems = {"old"};
        EXPECT_FALSE(controller.parseSensorParameter(szText, vecItems)) << szText;
        EXPECT_THAT(vecItems, ElementsAre("old")) << szText;
    }
}

TEST_F(KeyList, ItemsAreAppended) {
    std::vector<std::string> vecItems = {"old"};
    EXPECT_TRUE(controller.parseSensorParameter("(34,49)", vecItems));
    EXPECT_THAT(vecItems, ElementsAre("old", "34", "49"));
}

TEST_F(KeyList, AListOfEmptyItemsCountsWhenThereAreItemsAlready) {
    std::vector<std::string> vecItems;
    EXPECT_FALSE(controller.parseSensorParameter("(,,)", vecItems));
    EXPECT_THAT(vecItems, IsEmpty());
    vecItems.push_back("old");
    EXPECT_TRUE(controller.parseSensorParameter("(,,)", vecItems));
    EXPECT_THAT(vecItems, ElementsAre("old"));
}

TEST_F(KeyList, TheTextMayBeOneOfTheItems) {
    std::vector<std::string> vecItems = {"(34,49)"};
    EXPECT_TRUE(controller.parseSensorParameter(vecItems[0], vecItems));
    EXPECT_THAT(vecItems, ElementsAre("(34,49)", "34", "49"));
}

TEST_F(KeyList, AZeroByteIsACharacterLikeAnyOther) {
    EXPECT_THAT(itemsOf(std::string("(3\0004,49)", 8)), ElementsAre(std::string("3\0004", 3), "49"));
}

TEST_F(KeyList, TakingApartNeedsNeitherTheLockNorSets) {
    ISensorController fresh;
    std::vector<std::string> vecItems;
    EXPECT_TRUE(fresh.parseSensorParameter("(34)", vecItems));
    const QVMutexManager guard(&probe.mutex(), "the test", 7);  // a second lock would end the process
    EXPECT_TRUE(controller.parseSensorParameter("(49)", vecItems));
    EXPECT_THAT(vecItems, ElementsAre("34", "49"));
}

// --- Read ---

TEST_F(KeyList, EachKeyIsReadInOrder) {
    camera.driverHolds(0, KEY_SATURATION, -128);
    EXPECT_EQ("(2337,-128)(34,50)(165,-1)", readOf("(2337,34,165)"));
    EXPECT_THAT(camera.transcript(), ElementsAre("ia ch0 get 2337 -> -128"));
}

TEST_F(KeyList, TheResultIsPrintedAtEveryLevel) {
    for (const int nLevel : {-1, 0, 5}) {
        root.debugLevel(nLevel);
        std::string strRead;
        EXPECT_EQ("@@ out_Parameters = (34,50)(2353,128) @@\n",
                  outputOf([&] { EXPECT_EQ(1, controller.getParameters("(34,2353)", strRead)); }));
    }
}

TEST_F(KeyList, AKeyThatStandsTwiceIsToldTwice) {
    EXPECT_EQ("(34,50)(2353,128)(34,50)", readOf("(34,2353,34)"));
}

TEST_F(KeyList, KeysThatFailAreLeftOut) {
    root.debugLevel(-1);
    camera.driverFails(KEY_SATURATION, IA_CMD_OPT_GET, -1);
    EXPECT_EQ("(34,50)(2353,128)", readOf("(34,2337,2353)"));
    EXPECT_EQ("", readOf("(2337)"));
}

TEST_F(KeyList, KeysThatFailAreReportedOneByOne) {
    camera.driverFails(KEY_SATURATION, IA_CMD_OPT_GET, -1);
    std::string strRead;
    EXPECT_EQ(messages::assertion(in("getParameter"), "QVS_SUCCESS == doIaCmd(p_nKey, IA_CMD_OPT_GET, &p_nVal)") +
                  messages::detail("get key(2337) val from 2a err") + "@@ out_Parameters = (34,50) @@\n",
              anyLine(outputOf([&] { EXPECT_EQ(1, controller.getParameters("(2337,34)", strRead)); })));
}

TEST_F(KeyList, AnItemThatIsNoNumberIsReadAsKeyZero) {
    camera.driverHolds(0, 0, 11);
    EXPECT_EQ("(0,11)(34,50)(34,50)(0,11)", readOf("(abc, 34,34x,(34)"));
}

TEST_F(KeyList, NegativeKeysKeepTheirSign) {
    camera.driverHolds(0, static_cast<u32>(-5), 3);
    EXPECT_EQ("(-5,3)", readOf("(-5)"));
}

TEST_F(KeyList, EmptyItemsAreNotRead) {
    EXPECT_EQ("(34,50)(2353,128)", readOf("(34,,2353)"));
}

// The holder of the value is set once, in front of the list: a read that leaves it shows the value before.
TEST_F(KeyList, MeantAKeyThatTheLensLockHoldsBackShowsTheValueOfTheKeyBeforeIt) {
    lockLens();
    EXPECT_EQ("(1568,0)(34,50)(1568,50)", readOf("(1568,34,1568)"));
}

TEST_F(KeyList, TheResultMayTakeThePlaceOfTheList) {
    std::string strText = "(34,2353)";
    EXPECT_EQ(1, quietly([&] { return controller.getParameters(strText, strText); }));
    EXPECT_EQ("(34,50)(2353,128)", strText);
}

TEST_F(KeyList, WhatIsNoListIsReportedAndGivesZero) {
    for (const char* const szText : kMalformed) {
        std::string strRead = "before";
        EXPECT_EQ(std::string("ISensorController.cpp1807 getParameters fail p_strIds = ") + szText + " \n",
                  outputOf([&] { EXPECT_EQ(0, controller.getParameters(szText, strRead)); }));
        EXPECT_EQ("before", strRead);
    }
    EXPECT_THAT(camera.transcript(), IsEmpty());
    EXPECT_EQ("", root.errorLog());
}

TEST_F(KeyList, WhatIsNoListIsReportedAtEveryLevelWordForWord) {
    root.debugLevel(-1);
    std::string strRead;
    EXPECT_EQ("ISensorController.cpp1807 getParameters fail p_strIds = 100%s%n \n",
              outputOf([&] { EXPECT_EQ(0, controller.getParameters("100%s%n", strRead)); }));
}

TEST_F(KeyList, AListOfEmptyItemsIsNoList) {
    std::string strRead = "before";
    EXPECT_EQ("ISensorController.cpp1807 getParameters fail p_strIds = (,) \n",
              outputOf([&] { EXPECT_EQ(0, controller.getParameters("(,)", strRead)); }));
    EXPECT_EQ("before", strRead);
}

TEST_F(KeyList, AVeryLongListIsReadWhole) {
    std::string strIds = "(34";
    std::string strExpected = "(34,50)";
    for (int i = 0; i < 5000; ++i) {
        strIds += ",2353";
        strExpected += "(2353,128)";
    }
    EXPECT_EQ(strExpected, readOf(strIds + ")"));
}

TEST_F(KeyList, AControllerThatIsNotInitialisedReadsNothingAndSucceeds) {
    ISensorController fresh;
    std::string strRead = "before";
    EXPECT_EQ("@@ out_Parameters =  @@\n", outputOf([&] { EXPECT_EQ(1, fresh.getParameters("(34,165)", strRead)); }));
    EXPECT_EQ("", strRead);
    strRead = "before";
    EXPECT_EQ(0, quietly([&] { return fresh.getParameters("34", strRead); }));
    EXPECT_EQ("before", strRead);
    EXPECT_THAT(camera.transcript(), IsEmpty());
}

// --- The lock ---

TEST_F(KeyList, TheLockIsTakenForEachKeyAndForNothingElse) {
    std::vector<bool> vecHeld;
    camera.onDriver(KEY_SATURATION, IA_CMD_OPT_GET, [&](int, void*) {
        vecHeld.push_back(lockIsHeld());
        return IA_OK;
    });
    readOf("(2337,2337)");
    EXPECT_THAT(vecHeld, ElementsAre(true, true));
    EXPECT_FALSE(lockIsHeld());
    const QVMutexManager guard(&probe.mutex(), "the test", 7);
    std::string strRead;
    EXPECT_EQ(0, quietly([&] { return controller.getParameters("no list", strRead); }));
}

TEST_F(KeyList, AReadOfAListWaitsForTheLock) {
    std::string strRead;
    EXPECT_DEATH(
        {
            const QVMutexManager guard(&probe.mutex(), "the test", 7);
            controller.getParameters("(34)", strRead);
        },
        kLockedTwice);
}

}  // namespace
