// The documents of the user interface's languages, as a host hands them to a controller.
#include "technic/QVMutex.h"
#include "tests/unit/initialisation/StartedCamera.h"

#include <climits>

using messages::anyLine;

namespace {

class LanguagesOfAHost : public StartedCamera {
protected:
    static const std::vector<LanguageDocuments>& two() {
        static const std::vector<LanguageDocuments> vecTwo = {{3, "language three", "common three"},
                                                              {1, "language one", "common one"}};
        return vecTwo;
    }

    bool give(const std::vector<LanguageDocuments>& p_vecDocuments) {
        return controller().setLanguageDocuments(p_vecDocuments);
    }

    void expectTexts(int p_nLanguageId, const std::string& p_strLanguage, const std::string& p_strCommon) {
        EXPECT_EQ(p_strLanguage, controller().getUILanguageFile(p_nLanguageId)) << p_nLanguageId;
        EXPECT_EQ(p_strCommon, controller().getUICommonFile(p_nLanguageId)) << p_nLanguageId;
    }
    void expectTwo() {
        expectTexts(1, "language one", "common one");
        expectTexts(3, "language three", "common three");
    }

    std::string refused(const std::string& p_strReason) {
        return messages::error({"ISensorController.cpp", "setLanguageDocuments"},
                               p_strReason + ", no language is taken over\n");
    }
};

TEST_F(LanguagesOfAHost, DocumentsGivenBeforeTheStartAreThereAfterIt) {
    EXPECT_TRUE(give(two()));
    init();
    expectTwo();
}

TEST_F(LanguagesOfAHost, DocumentsGivenAfterTheStartAreThereAtOnce) {
    init();
    expectTexts(1, "", "");
    EXPECT_TRUE(give(two()));
    expectTwo();
}

TEST_F(LanguagesOfAHost, AnUnknownLanguageIsAnsweredWithTheFirst) {
    init();
    EXPECT_TRUE(give(two()));
    for (const int nId : {2, 0, -1, INT_MAX, INT_MIN}) {
        expectTexts(nId, "language three", "common three");
    }
}

TEST_F(LanguagesOfAHost, AnyNumberMayBeALanguage) {
    init();
    EXPECT_TRUE(
        give({{0, "l0", "c0"}, {-1, "l-1", "c-1"}, {INT_MIN, "least", "least c"}, {INT_MAX, "most", "most c"}}));
    expectTexts(0, "l0", "c0");
    expectTexts(-1, "l-1", "c-1");
    expectTexts(INT_MIN, "least", "least c");
    expectTexts(INT_MAX, "most", "most c");
}

TEST_F(LanguagesOfAHost, DocumentsReplaceThoseGivenBefore) {
    init();
    EXPECT_TRUE(give(two()));
    EXPECT_TRUE(give({{1, "new one", "new common"}}));
    expectTexts(1, "new one", "new common");
    expectTexts(3, "new one", "new common");
}

TEST_F(LanguagesOfAHost, DocumentsCanBeTakenBack) {
    init();
    EXPECT_TRUE(give(two()));
    EXPECT_TRUE(give({}));
    expectTexts(1, "", "");
    EXPECT_TRUE(give(two()));
    expectTwo();
}

TEST_F(LanguagesOfAHost, DocumentsOutliveTheTeardown) {
    init();
    EXPECT_TRUE(give(two()));
    for (int i = 0; i < 2; ++i) {
        controller().uinit();
        expectTexts(1, "", "");
        init();
        expectTwo();
    }
}

TEST_F(LanguagesOfAHost, DocumentsMayBeGivenBetweenTeardownAndStart) {
    init();
    EXPECT_TRUE(give(two()));
    controller().uinit();
    EXPECT_TRUE(give({{7, "seven", "common seven"}}));
    init();
    expectTexts(7, "seven", "common seven");
    expectTexts(1, "seven", "common seven");
}

TEST_F(LanguagesOfAHost, DocumentsOutliveAReset) {
    init();
    EXPECT_TRUE(give(two()));
    EXPECT_TRUE(quietly([&] { return controller().resetParameters(); }));
    expectTwo();
}

TEST_F(LanguagesOfAHost, EachControllerHasItsOwn) {
    init();
    EXPECT_TRUE(give(two()));
    ISensorController other;
    other.setChannelID(3);
    outputOf([&] { EXPECT_TRUE(other.init(module("(max_scheme=2)"))); });
    EXPECT_EQ("", other.getUILanguageFile(1));
    EXPECT_TRUE(other.setLanguageDocuments({{1, "other", "other common"}}));
    EXPECT_EQ("other", other.getUILanguageFile(1));
    expectTwo();
    other.uinit();
}

TEST_F(LanguagesOfAHost, TheTextsAreTheControllersOwn) {
    init();
    std::vector<LanguageDocuments> vecDocuments = two();
    EXPECT_TRUE(give(vecDocuments));
    for (LanguageDocuments& stDocuments : vecDocuments) {
        stDocuments.m_strLanguageFile.assign(stDocuments.m_strLanguageFile.size(), 'x');
        stDocuments.m_strCommonFile.clear();
        stDocuments.m_nLanguageId += 100;
    }
    expectTwo();
    controller().uinit();
    init();
    expectTwo();
}

TEST_F(LanguagesOfAHost, TextsMayBeEmptyLongAndInAnyLetters) {
    init();
    const std::string strLong(1000000, 'x');
    EXPECT_TRUE(give({{1, "", strLong}, {2, "\xE4\xB8\xAD\xE6\x96\x87 %s%n\r\n", ""}}));
    expectTexts(1, "", strLong);
    expectTexts(2, "\xE4\xB8\xAD\xE6\x96\x87 %s%n\r\n", "");
}

TEST_F(LanguagesOfAHost, AThousandLanguagesAreKeptApart) {
    init();
    std::vector<LanguageDocuments> vecDocuments;
    for (int i = 0; i < 1000; ++i) {
        vecDocuments.push_back({1000 - i, "language " + std::to_string(i), "common " + std::to_string(i)});
    }
    EXPECT_TRUE(give(vecDocuments));
    for (const int i : {0, 1, 499, 999}) {
        expectTexts(1000 - i, "language " + std::to_string(i), "common " + std::to_string(i));
    }
}

// --- What is refused ---

TEST_F(LanguagesOfAHost, ALanguageThatIsThereTwiceIsRefusedAndNothingChanges) {
    init();
    EXPECT_TRUE(give(two()));
    const std::vector<LanguageDocuments> vecTwice = {{1, "a", "a"}, {4, "b", "b"}, {1, "c", "c"}};
    root.debugLevel(6);
    EXPECT_EQ(refused("language 1 is there twice"), anyLine(outputOf([&] { EXPECT_FALSE(give(vecTwice)); })));
    root.debugLevel(5);
    EXPECT_EQ("", outputOf([&] { EXPECT_FALSE(give(vecTwice)); }));
    expectTwo();
    EXPECT_EQ("", root.errorLog());
}

TEST_F(LanguagesOfAHost, ATextWithAZeroByteIsRefusedAndNothingChanges) {
    init();
    EXPECT_TRUE(give(two()));
    root.debugLevel(6);
    const std::string strZero("a\0b", 3);
    EXPECT_EQ(refused("language 4: a text holds a zero byte"), anyLine(outputOf([&] {
                  EXPECT_FALSE(give({{2, "a", "b"}, {4, strZero, "b"}}));
              })));
    EXPECT_EQ(refused("language 4: a text holds a zero byte"), anyLine(outputOf([&] {
                  EXPECT_FALSE(give({{4, "a", std::string(1, '\0')}}));
              })));
    root.debugLevel(1);
    expectTwo();
}

TEST_F(LanguagesOfAHost, WhatIsRefusedBeforeTheStartChangesNothingEither) {
    EXPECT_TRUE(give(two()));
    EXPECT_FALSE(give({{1, "a", "a"}, {1, "b", "b"}}));
    EXPECT_FALSE(give({{1, std::string(1, '\0'), "a"}}));
    init();
    expectTwo();
}

// --- The lock ---

TEST_F(LanguagesOfAHost, GivingDocumentsTakesTheLockAndReturnsIt) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_TRUE(give(two()));
    EXPECT_FALSE(give({{1, "a", "a"}, {1, "b", "b"}}));
    {
        const QVMutexManager guard(&probe().mutex(), "the test", 7);  // neither call above has kept it
    }
    EXPECT_DEATH(
        {
            const QVMutexManager guard(&probe().mutex(), "the test", 7);
            give(two());
        },
        "QVMutex: locked a second time at ISensorController.cpp:[0-9]+ by the thread that locked it at the test:7");
}

}  // namespace
