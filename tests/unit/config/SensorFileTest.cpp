// Lengths, whole files and their replacement.
#include "sensor/config/SensorFile.h"

#include "tests/support/FullMedium.h"
#include "tests/support/Messages.h"
#include "tests/support/TestRoot.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <limits>
#include <string>
#include <vector>

namespace {

constexpr INT64 kBeyond32Bit = INT64{1} << 32;

class SensorFile : public testing::Test {
protected:
    SensorFile() { GTEST_FLAG_SET(death_test_style, "threadsafe"); }

    static int save(std::string p_strName, std::string p_strData) {
        return saveToFile(p_strName.data(), p_strData.data(), static_cast<INT64>(p_strData.size()));
    }
    static int save(std::string p_strName, std::string p_strData, INT64 p_nLength) {
        return saveToFile(p_strName.data(), p_strData.data(), p_nLength);
    }
    // Loads into a marked buffer; the content afterwards.
    static std::string loaded(const std::string& p_strName, std::size_t p_nBuffer, INT64 p_nLength, int p_nExpected) {
        std::vector<char> vecBuffer(p_nBuffer, '#');
        EXPECT_EQ(p_nExpected, loadFromFile(p_strName.c_str(), vecBuffer.data(), p_nLength)) << p_nLength;
        return {vecBuffer.data(), vecBuffer.size()};
    }
    // Everything in the folder of the test's files.
    std::size_t filesThere() const {
        std::size_t nFiles = 0;
        for (const auto& entry : std::filesystem::directory_iterator(m_objRoot.path() + "/data")) {
            nFiles += entry.is_regular_file() ? 1 : 0;
        }
        return nFiles;
    }

    TestRoot m_objRoot;
};
using SensorFileDeathTest = SensorFile;

// --- getFileLen ---

TEST_F(SensorFile, HasTheLengthOfItsContent) {
    for (const std::size_t nLength : {0u, 1u, 4u, 100000u}) {
        m_objRoot.write("/data/file", std::string(nLength, 'x'));
        EXPECT_EQ("", outputOf([&] { EXPECT_EQ(static_cast<INT64>(nLength), getFileLen("/data/file")); }));
    }
}

TEST_F(SensorFile, HasALengthBeyond32Bit) {
    m_objRoot.write("/data/file", "");
    std::filesystem::resize_file(m_objRoot.path() + "/data/file", static_cast<std::uintmax_t>(kBeyond32Bit + 5));
    EXPECT_EQ(kBeyond32Bit + 5, getFileLen("/data/file"));
}

TEST_F(SensorFile, ThatIsMissingIsReportedWithItsNameAndHasNoLength) {
    const messages::Place stPlace{"SensorFile.cpp", "getFileLen"};
    const std::string strShown = outputOf([] { EXPECT_EQ(0, getFileLen("/data/missing")); });
    EXPECT_EQ(messages::assertion(stPlace, "file.open(file_name)") + messages::detail("file_name(/data/missing)"),
              messages::anyLine(strShown));
    EXPECT_EQ(messages::loggedAssertion(stPlace, "file.open(file_name)") +
                  messages::loggedDetail("file_name(/data/missing)\n"),
              messages::anyLine(m_objRoot.errorLog()));
}

TEST_F(SensorFile, ThatIsAFolderHasNoLength) {
    m_objRoot.makeFolder("/data/folder");
    EXPECT_NE("", outputOf([] { EXPECT_EQ(0, getFileLen("/data/folder")); }));
}

TEST_F(SensorFileDeathTest, AbortsWhereItsLengthCannotBeAsked) {
    m_objRoot.debugLevel(1, true);
    EXPECT_DEATH(getFileLen("/data/missing"),
                 "SensorFile\\.cpp:[0-9]+: INT64 getFileLen\\(const char ?\\*\\): Assertion `bRet' failed");
}

// --- loadFromFile ---

TEST_F(SensorFile, IsLoadedWholeWithoutATerminator) {
    m_objRoot.write("/data/file", std::string("a\0b\n", 4));
    EXPECT_EQ("", outputOf([] { EXPECT_EQ(std::string("a\0b\n##", 6), loaded("/data/file", 6, 4, 4)); }));
}

TEST_F(SensorFile, IsLoadedUpToTheRequestedLength) {
    m_objRoot.write("/data/file", "abcdef");
    EXPECT_EQ("abc###", loaded("/data/file", 6, 3, 3));
    EXPECT_EQ("######", loaded("/data/file", 6, 0, 0));
}

TEST_F(SensorFile, ShorterThanTheRequestIsNotLoadedAndNothingIsLogged) {
    m_objRoot.write("/data/file", "abc");
    m_objRoot.write("/data/empty", "");
    EXPECT_EQ("", outputOf([] {
                  EXPECT_EQ("abc###", loaded("/data/file", 6, 4, -1));
                  EXPECT_EQ("abc###", loaded("/data/file", 6, 6, -1));
                  EXPECT_EQ("######", loaded("/data/empty", 6, 1, -1));
              }));
    EXPECT_EQ("", m_objRoot.errorLog());
}

TEST_F(SensorFile, ThatIsMissingIsNotLoadedAndNothingIsLogged) {
    m_objRoot.makeFolder("/data/folder");
    EXPECT_EQ("", outputOf([] {
                  EXPECT_EQ("####", loaded("/data/missing", 4, 4, -1));
                  EXPECT_EQ("####", loaded("/data/missing", 4, 0, -1));
                  EXPECT_EQ("####", loaded("/data/folder", 4, 4, -1));
              }));
    EXPECT_EQ("", m_objRoot.errorLog());
}

TEST_F(SensorFile, IsNotLoadedForALengthThatIsNegativeOrBeyond31Bit) {
    m_objRoot.write("/data/file", "abcdefgh");
    for (const INT64 nLength : {INT64{-1}, INT64{-8}, INT64{1} << 31, kBeyond32Bit - 1, kBeyond32Bit, kBeyond32Bit + 4,
                                std::numeric_limits<INT64>::max(), std::numeric_limits<INT64>::min()}) {
        const std::string strBuffer = loaded("/data/file", 8, nLength, -1);
        EXPECT_EQ("####", strBuffer.substr(4)) << nLength;
    }
}

TEST_F(SensorFile, NamesWhatItOpensAboveLevelFive) {
    const messages::Place stPlace{"SensorFile.cpp", "loadFromFile"};
    m_objRoot.write("/data/file", "abc");
    m_objRoot.debugLevel(6);
    EXPECT_EQ(messages::debug(stPlace, "open file:/data/file\n"),
              messages::anyLine(outputOf([] { loaded("/data/file", 3, 3, 3); })));
    EXPECT_EQ(messages::debug(stPlace, "open file:/data/missing\n"),
              messages::anyLine(outputOf([] { loaded("/data/missing", 3, 3, -1); })));
    m_objRoot.debugLevel(5);
    EXPECT_EQ("", outputOf([] { loaded("/data/file", 3, 3, 3); }));
}

// --- saveToFile ---

TEST_F(SensorFile, IsCreatedOrReplacedWhole) {
    m_objRoot.makeFolder("/data");
    EXPECT_EQ("", outputOf([] { EXPECT_EQ(10, save("/data/file", "first text")); }));
    EXPECT_EQ("first text", m_objRoot.read("/data/file"));
    EXPECT_EQ("", outputOf([] { EXPECT_EQ(3, save("/data/file", std::string("a\0b", 3))); }));
    EXPECT_EQ(std::string("a\0b", 3), m_objRoot.read("/data/file"));
    EXPECT_EQ("", outputOf([] { EXPECT_EQ(2, save("/data/file", "xyz", 2)); }));
    EXPECT_EQ("xy", m_objRoot.read("/data/file"));
    EXPECT_EQ(1u, filesThere());
}

TEST_F(SensorFile, IsEmptiedByAnEmptyText) {
    m_objRoot.write("/data/file", "old");
    EXPECT_EQ("", outputOf([] { EXPECT_EQ(0, save("/data/file", "")); }));
    EXPECT_TRUE(m_objRoot.exists("/data/file"));
    EXPECT_EQ("", m_objRoot.read("/data/file"));
}

const messages::Place kSavePlace{"SensorFile.cpp", "saveToFile"};
constexpr char kOpenFailed[] = "file.open(file_name, QVFile::modeWrite | QVFile::modeTruncate)";
constexpr char kSaveFailed[] = "file_len == (nSize=file.write(data, file_len))";

TEST_F(SensorFile, ThatCannotBeOpenedForWritingIsReportedTwice) {
    const std::string strShown = outputOf([] { EXPECT_EQ(-1, save("/missing/file", "text")); });
    EXPECT_EQ(messages::assertion(kSavePlace, kOpenFailed) + messages::detail("file_name(/missing/file)\n") +
                  messages::assertion(kSavePlace, kSaveFailed) + messages::detail("file_len(4)\n"),
              messages::anyLine(strShown));
    EXPECT_EQ(messages::loggedAssertion(kSavePlace, kOpenFailed) +
                  messages::loggedDetail("file_name(/missing/file)\n") +
                  messages::loggedAssertion(kSavePlace, kSaveFailed) + messages::loggedDetail("file_len(4)\n"),
              messages::anyLine(m_objRoot.errorLog()));
}

TEST_F(SensorFile, ThatIsAFolderIsNotReplaced) {
    m_objRoot.write("/data/folder/file", "text");
    outputOf([] { EXPECT_EQ(-1, save("/data/folder", "text")); });
    EXPECT_EQ("text", m_objRoot.read("/data/folder/file"));
}

TEST_F(SensorFile, KeepsItsOldContentWhenTheNewOneDoesNotFit) {
    m_objRoot.write("/data/file", "old");
    m_objRoot.debugLevel(6);
    const std::string strShown = outputOf([] {
        const FullMedium full(65536);
        EXPECT_EQ(65536, save("/data/file", std::string(100000, 'x')));
    });
    EXPECT_EQ(messages::assertion(kSavePlace, kSaveFailed) + messages::detail("file_len(100000)\n") +
                  messages::error({"SensorFile.cpp", "closeReplaced"}, "file_name(/data/file) keeps its old content\n"),
              messages::anyLine(strShown));
    EXPECT_EQ("old", m_objRoot.read("/data/file"));
    EXPECT_EQ(1u, filesThere());
}

TEST_F(SensorFile, IsNotCreatedWhenItsContentDoesNotFit) {
    m_objRoot.makeFolder("/data");
    outputOf([] {
        const FullMedium full(65536);
        save("/data/file", std::string(100000, 'x'));
    });
    EXPECT_EQ(0u, filesThere());
}

TEST_F(SensorFile, KeepsItsOldContentForALengthThatIsNegativeOrBeyond31Bit) {
    for (const INT64 nLength : {INT64{-1}, INT64{1} << 31, kBeyond32Bit - 1, kBeyond32Bit, kBeyond32Bit + 2,
                                std::numeric_limits<INT64>::max(), std::numeric_limits<INT64>::min()}) {
        m_objRoot.write("/data/file", "old");
        outputOf([&] { EXPECT_EQ(-1, save("/data/file", "text", nLength)) << nLength; });
        EXPECT_EQ("old", m_objRoot.read("/data/file")) << nLength;
        EXPECT_EQ(1u, filesThere()) << nLength;
    }
}

TEST_F(SensorFile, CanBeSavedAgainAfterAFailure) {
    m_objRoot.write("/data/file", "old");
    outputOf([] {
        const FullMedium full(65536);
        save("/data/file", std::string(100000, 'x'));
    });
    EXPECT_EQ(3, save("/data/file", "new"));
    EXPECT_EQ("new", m_objRoot.read("/data/file"));
}

TEST_F(SensorFileDeathTest, AbortsWhereItCannotBeSaved) {
    m_objRoot.debugLevel(1, true);
    EXPECT_DEATH(save("/missing/file", "text"),
                 "SensorFile\\.cpp:[0-9]+: int saveToFile\\(char ?\\*, char ?\\*, .*\\): Assertion `bRet' failed");
}

TEST_F(SensorFileDeathTest, AbortsAtAShortWriteWithItsOldContentInPlace) {
    m_objRoot.write("/data/file", "old");
    m_objRoot.debugLevel(1, true);
    EXPECT_DEATH(
        {
            const FullMedium full(65536);
            save("/data/file", std::string(100000, 'x'));
        },
        "SensorFile\\.cpp:.*saveToFile.*Assertion `bRet' failed");
    EXPECT_EQ("old", m_objRoot.read("/data/file"));
}

}  // namespace
