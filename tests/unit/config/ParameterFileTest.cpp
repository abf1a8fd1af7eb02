// A parameter file: the records of one scheme and nothing else.
#include "sensor/config/SensorFile.h"

#include "tests/support/FullMedium.h"
#include "tests/support/Messages.h"
#include "tests/support/TestRoot.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

namespace {

using Pairs = std::vector<std::pair<u32, u32>>;

char g_szName[] = "/mnt/mtd/code/config_file/sensor0.cfg";
const messages::Place kReadPlace{"SensorFile.cpp", "keyValFromFile"};
const messages::Place kWritePlace{"SensorFile.cpp", "keyValToFile"};
constexpr char kOpenToReadFailed[] = "file.open(file_name)";
constexpr char kOpenToWriteFailed[] = "file.open(file_name, QVFile::modeWrite | QVFile::modeTruncate)";
constexpr char kReadFailed[] = "nSize == sizeof(KeyVal)*p_nKeyValNum";
constexpr char kWriteFailed[] = "nSize == sizeof(KeyVal)*p_nKeyValSum";

std::string readDetail(int p_nSize, int p_nRecords) {
    return std::string("file_name(") + g_szName + ") nSize(" + std::to_string(p_nSize) +
           ") sizeof(KeyVal) = 8, p_nKeyValNum(" + std::to_string(p_nRecords) + ")\n";
}
std::string writeDetail(int p_nSize, int p_nRecords) {
    return "nSize(" + std::to_string(p_nSize) + ") sizeof(KeyVal) = 8, p_nKeyValNum(" + std::to_string(p_nRecords) +
           ")\n";
}
const std::string kNameDetail = std::string("file_name(") + g_szName + ")\n";

// One record as its eight bytes in the file.
std::string record(u32 p_nKey, u32 p_nValue) {
    std::string strBytes;
    for (const u32 nWord : {p_nKey, p_nValue}) {
        for (u32 nShift = 0; nShift < 32; nShift += 8) {
            strBytes += static_cast<char>(nWord >> nShift & 0xFF);
        }
    }
    return strBytes;
}

class ParameterFile : public testing::Test {
protected:
    ParameterFile() { GTEST_FLAG_SET(death_test_style, "threadsafe"); }

    // What three records of the caller hold after the file was read for so many of them.
    static Pairs readInto(u32 p_nCount) {
        std::vector<KeyVal> vecRecords = {{91, 1}, {92, 2}, {93, 3}};
        EXPECT_EQ(QVS_SUCCESS, keyValFromFile(g_szName, vecRecords.data(), p_nCount));
        Pairs pairs;
        for (const KeyVal& stRecord : vecRecords) {
            pairs.emplace_back(stRecord.key, stRecord.value);
        }
        return pairs;
    }
    static void write(std::vector<KeyVal> p_vecRecords) {
        EXPECT_EQ(QVS_SUCCESS, keyValToFile(g_szName, p_vecRecords.data(), static_cast<u32>(p_vecRecords.size())));
    }

    TestRoot m_objRoot;
};
using ParameterFileDeathTest = ParameterFile;

// --- Reading ---

TEST_F(ParameterFile, OfTheExactLengthLoadsEveryRecord) {
    m_objRoot.write(g_szName, record(49, 7) + record(50, 0xFFFFFFFDu) + record(0x12345678u, 0x9ABCDEF0u));
    EXPECT_EQ("", outputOf([] {
                  EXPECT_EQ((Pairs{{49, 7}, {50, 0xFFFFFFFDu}, {0x12345678u, 0x9ABCDEF0u}}), readInto(3));
              }));
    EXPECT_EQ("", m_objRoot.errorLog());
}

TEST_F(ParameterFile, ThatIsShortFillsTheRecordsThatItHoldsAndIsReported) {
    m_objRoot.write(g_szName, record(49, 7) + record(50, 8));
    const std::string strShown = outputOf([] { EXPECT_EQ((Pairs{{49, 7}, {50, 8}, {93, 3}}), readInto(3)); });
    EXPECT_EQ(messages::assertion(kReadPlace, kReadFailed) + messages::detail(readDetail(16, 3)),
              messages::anyLine(strShown));
    EXPECT_EQ(messages::loggedAssertion(kReadPlace, kReadFailed) + messages::loggedDetail(readDetail(16, 3)),
              messages::anyLine(m_objRoot.errorLog()));
}

TEST_F(ParameterFile, CutInsideARecordLeavesTheRestOfItToTheCaller) {
    m_objRoot.write(g_szName, record(49, 7) + record(50, 8).substr(0, 4));
    const std::string strShown = outputOf([] { EXPECT_EQ((Pairs{{49, 7}, {50, 2}, {93, 3}}), readInto(3)); });
    EXPECT_NE(std::string::npos, strShown.find("nSize(12)"));

    m_objRoot.write(g_szName, record(49, 0x01020304u).substr(0, 7));
    outputOf([] { EXPECT_EQ((Pairs{{49, 0x00020304u}, {92, 2}, {93, 3}}), readInto(3)); });
}

TEST_F(ParameterFile, ThatIsEmptyLeavesEverythingToTheCaller) {
    m_objRoot.write(g_szName, "");
    const std::string strShown = outputOf([] { EXPECT_EQ((Pairs{{91, 1}, {92, 2}, {93, 3}}), readInto(3)); });
    EXPECT_EQ(messages::assertion(kReadPlace, kReadFailed) + messages::detail(readDetail(0, 3)),
              messages::anyLine(strShown));
}

TEST_F(ParameterFile, ThatIsMissingIsReportedTwiceAndStillASuccess) {
    const std::string strShown = outputOf([] { EXPECT_EQ((Pairs{{91, 1}, {92, 2}, {93, 3}}), readInto(3)); });
    EXPECT_EQ(messages::assertion(kReadPlace, kOpenToReadFailed) + messages::detail(kNameDetail) +
                  messages::assertion(kReadPlace, kReadFailed) + messages::detail(readDetail(-1, 3)),
              messages::anyLine(strShown));
    EXPECT_EQ(messages::loggedAssertion(kReadPlace, kOpenToReadFailed) + messages::loggedDetail(kNameDetail) +
                  messages::loggedAssertion(kReadPlace, kReadFailed) + messages::loggedDetail(readDetail(-1, 3)),
              messages::anyLine(m_objRoot.errorLog()));
}

TEST_F(ParameterFile, ThatIsMissingIsReportedTwiceAlsoForNoRecords) {
    const std::string strShown = outputOf([] { EXPECT_EQ((Pairs{{91, 1}, {92, 2}, {93, 3}}), readInto(0)); });
    EXPECT_EQ(messages::assertion(kReadPlace, kOpenToReadFailed) + messages::detail(kNameDetail) +
                  messages::assertion(kReadPlace, kReadFailed) + messages::detail(readDetail(-1, 0)),
              messages::anyLine(strShown));
}

TEST_F(ParameterFile, LongerThanTheSetIsReadUpToIt) {
    m_objRoot.write(g_szName, record(49, 7) + record(50, 8) + record(51, 9));
    EXPECT_EQ("", outputOf([] { EXPECT_EQ((Pairs{{49, 7}, {92, 2}, {93, 3}}), readInto(1)); }));
    EXPECT_EQ("", outputOf([] { EXPECT_EQ((Pairs{{91, 1}, {92, 2}, {93, 3}}), readInto(0)); }));
}

TEST_F(ParameterFile, IsNotReadForACountThatNoFileHolds) {
    m_objRoot.write(g_szName, record(49, 7) + record(50, 8) + record(51, 9));
    // Also counts whose number of bytes would fit again if it were cut to 32 bits.
    for (const u32 nCount : {0x10000000u, 0x20000000u, 0x20000001u, 0x40000003u, 0x80000000u, 0xFFFFFFFFu}) {
        const std::string strShown = outputOf([&] {
            EXPECT_EQ((Pairs{{91, 1}, {92, 2}, {93, 3}}), readInto(nCount)) << nCount;
        });
        EXPECT_EQ(
            messages::assertion(kReadPlace, kReadFailed) + messages::detail(readDetail(-1, static_cast<int>(nCount))),
            messages::anyLine(strShown));
    }
}

// --- Writing ---

TEST_F(ParameterFile, HoldsTheBytesOfTheRecordsAndNothingElse) {
    EXPECT_EQ("", outputOf([] { write({{49, 7}, {0x12345678u, 0x9ABCDEF0u}}); }));
    EXPECT_EQ(std::string("\x31\0\0\0\x07\0\0\0\x78\x56\x34\x12\xF0\xDE\xBC\x9A", 16), m_objRoot.read(g_szName));
}

TEST_F(ParameterFile, IsReplacedByAShorterOne) {
    m_objRoot.write(g_szName, std::string(800, 'x'));
    write({{49, 7}});
    EXPECT_EQ(record(49, 7), m_objRoot.read(g_szName));
}

TEST_F(ParameterFile, OfNoRecordsIsEmpty) {
    m_objRoot.write(g_szName, record(49, 7));
    EXPECT_EQ("", outputOf([] { EXPECT_EQ(QVS_SUCCESS, keyValToFile(g_szName, nullptr, 0)); }));
    EXPECT_TRUE(m_objRoot.exists(g_szName));
    EXPECT_EQ("", m_objRoot.read(g_szName));
}

TEST_F(ParameterFile, IsReadBackAsItWasWritten) {
    std::vector<KeyVal> vecRecords;
    for (u32 i = 0; i < 154; ++i) {
        vecRecords.push_back({i, i * 0x01010101u});
    }
    write(vecRecords);
    std::vector<KeyVal> vecRead(vecRecords.size());
    EXPECT_EQ(QVS_SUCCESS, keyValFromFile(g_szName, vecRead.data(), 154));
    for (u32 i = 0; i < 154; ++i) {
        EXPECT_EQ(vecRecords[i].key, vecRead[i].key);
        EXPECT_EQ(vecRecords[i].value, vecRead[i].value);
    }
}

TEST_F(ParameterFile, ThatCannotBeOpenedForWritingIsReportedTwiceAndStillASuccess) {
    m_objRoot.remove("/mnt/mtd/code/config_file");
    const std::string strShown = outputOf([] { write({{49, 7}, {50, 8}}); });
    EXPECT_EQ(messages::assertion(kWritePlace, kOpenToWriteFailed) + messages::detail(kNameDetail) +
                  messages::assertion(kWritePlace, kWriteFailed) + messages::detail(writeDetail(-1, 2)),
              messages::anyLine(strShown));
    EXPECT_EQ(messages::loggedAssertion(kWritePlace, kOpenToWriteFailed) + messages::loggedDetail(kNameDetail) +
                  messages::loggedAssertion(kWritePlace, kWriteFailed) + messages::loggedDetail(writeDetail(-1, 2)),
              messages::anyLine(m_objRoot.errorLog()));
}

TEST_F(ParameterFile, KeepsItsOldRecordsWhenTheNewOnesDoNotFit) {
    m_objRoot.write(g_szName, record(49, 7));
    m_objRoot.debugLevel(6);
    const std::string strShown = outputOf([] {
        const FullMedium full(65536);
        write(std::vector<KeyVal>(10000));
    });
    EXPECT_EQ(messages::assertion(kWritePlace, kWriteFailed) + messages::detail(writeDetail(65536, 10000)) +
                  messages::error({"SensorFile.cpp", "closeReplaced"},
                                  std::string("file_name(") + g_szName + ") keeps its old content\n"),
              messages::anyLine(strShown));
    EXPECT_EQ(record(49, 7), m_objRoot.read(g_szName));
    EXPECT_FALSE(m_objRoot.exists(std::string(g_szName) + ".new"));
    EXPECT_EQ("", outputOf([] { EXPECT_EQ((Pairs{{49, 7}, {92, 2}, {93, 3}}), readInto(1)); }));
}

TEST_F(ParameterFile, KeepsItsOldRecordsForACountThatNoFileHolds) {
    KeyVal stRecord = {1, 2};
    for (const u32 nCount : {0x10000000u, 0x20000000u, 0x20000001u, 0x80000000u, 0xFFFFFFFFu}) {
        m_objRoot.write(g_szName, record(49, 7));
        const std::string strShown =
            outputOf([&] { EXPECT_EQ(QVS_SUCCESS, keyValToFile(g_szName, &stRecord, nCount)); });
        EXPECT_EQ(messages::assertion(kWritePlace, kWriteFailed) +
                      messages::detail(writeDetail(-1, static_cast<int>(nCount))),
                  messages::anyLine(strShown));
        EXPECT_EQ(record(49, 7), m_objRoot.read(g_szName)) << nCount;
    }
}

TEST_F(ParameterFile, ThatIsAFolderIsNeitherReadNorWritten) {
    m_objRoot.makeFolder(g_szName);
    EXPECT_NE("", outputOf([] { EXPECT_EQ((Pairs{{91, 1}, {92, 2}, {93, 3}}), readInto(3)); }));
    EXPECT_NE("", outputOf([] { write({{49, 7}}); }));
}

// --- Enabled aborts ---

TEST_F(ParameterFileDeathTest, AbortsWhereItIsMissing) {
    m_objRoot.debugLevel(1, true);
    EXPECT_DEATH(readInto(3),
                 "SensorFile\\.cpp:[0-9]+: int keyValFromFile\\(char ?\\*, KeyVal ?\\*, .*\\): Assertion `bRet'");
}

TEST_F(ParameterFileDeathTest, AbortsWhereItIsShort) {
    m_objRoot.write(g_szName, record(49, 7));
    m_objRoot.debugLevel(1, true);
    EXPECT_DEATH(readInto(3), "SensorFile\\.cpp:[0-9]+: int keyValFromFile.*Assertion `bRet' failed");
}

TEST_F(ParameterFileDeathTest, AbortsWhereItCannotBeWritten) {
    m_objRoot.remove("/mnt/mtd/code/config_file");
    m_objRoot.debugLevel(1, true);
    EXPECT_DEATH(write({{49, 7}}),
                 "SensorFile\\.cpp:[0-9]+: int keyValToFile\\(char ?\\*, KeyVal ?\\*, .*\\): Assertion `bRet'");
}

}  // namespace
