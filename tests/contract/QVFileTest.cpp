#include "platform/QVFile.h"

#include "tests/contract/OnDevice.h"
#include "tests/contract/ThreadSteps.h"

#include <gtest/gtest.h>

#include <atomic>
#include <cstring>
#include <memory>
#include <string>
#include <thread>
#include <type_traits>
#include <utility>
#include <vector>

namespace {

static_assert(!std::is_copy_constructible<QVFile>::value && !std::is_copy_assignable<QVFile>::value,
              "an open file has one owner");
static_assert(0x01 == QVFile::modeRead && 0x02 == QVFile::modeWrite && 0x40 == QVFile::modeTruncate, "frozen numbers");

constexpr u32 kReplace = QVFile::modeWrite | QVFile::modeTruncate;
constexpr const char* kFile = "/mnt/mtd/file";

class QVFileTest : public OnDevice {
protected:
    // All lines, each in brackets.
    std::string lines() {
        std::string strAll;
        QVFile objFile;
        EXPECT_TRUE(objFile.open(kFile));
        for (std::string strLine; objFile.readLine(strLine);) {
            strAll += "[" + strLine + "]";
        }
        return strAll;
    }

    static bool replace(const std::string& p_strContent) {
        QVFile objFile;
        return objFile.open(kFile, kReplace) &&
               static_cast<int>(p_strContent.size()) ==
                   objFile.write(p_strContent.data(), static_cast<int>(p_strContent.size())) &&
               objFile.close();
    }
};

TEST_F(QVFileTest, AnObjectThatIsNotOpenAnswersLikeOne) {
    QVFile objFile;
    char szBuffer[4] = "abc";
    std::string strLine = "old";
    EXPECT_FALSE(objFile.isOpen());
    EXPECT_EQ(objFile.read(szBuffer, 3), -1);
    EXPECT_EQ(objFile.write(szBuffer, 3), -1);
    EXPECT_EQ(objFile.getLength(), 0);
    EXPECT_FALSE(objFile.readLine(strLine));
    EXPECT_EQ(strLine, "");
    EXPECT_FALSE(objFile.close());
    EXPECT_STREQ(szBuffer, "abc");
}

TEST_F(QVFileTest, ReadingNeedsAnExistingFile) {
    QVFile objFile;
    EXPECT_FALSE(objFile.open(kFile));
    EXPECT_FALSE(objFile.isOpen());
    EXPECT_FALSE(m_objRoot.exists(kFile));
    m_objRoot.write(kFile, "x");
    EXPECT_TRUE(objFile.open(kFile));
    EXPECT_TRUE(objFile.isOpen());
}

TEST_F(QVFileTest, OpensForReadingByDefault) {
    m_objRoot.write(kFile, "x");
    QVFile objFile;
    EXPECT_TRUE(objFile.open(kFile));
    EXPECT_EQ(objFile.write("y", 1), -1);
    EXPECT_TRUE(objFile.close());
    EXPECT_EQ(m_objRoot.read(kFile), "x");
}

TEST_F(QVFileTest, OtherModesFail) {
    m_objRoot.write(kFile, "x");
    QVFile objFile;
    for (const u32 nMode : {0x00U, 0x02U, 0x03U, 0x40U, 0x41U, 0x43U, 0x80U, 0xFFFFFFFFU}) {
        EXPECT_FALSE(objFile.open(kFile, nMode)) << nMode;
        EXPECT_FALSE(objFile.isOpen()) << nMode;
    }
    EXPECT_EQ(m_objRoot.read(kFile), "x");
}

TEST_F(QVFileTest, NullAndEmptyNamesAndDirectoriesFail) {
    QVFile objFile;
    for (const u32 nMode : {QVFile::modeRead, kReplace}) {
        EXPECT_FALSE(objFile.open(nullptr, nMode));
        EXPECT_FALSE(objFile.open("", nMode));
        EXPECT_FALSE(objFile.open("/mnt/mtd", nMode));
        EXPECT_FALSE(objFile.open("/mnt/mtd/", nMode));
    }
}

TEST_F(QVFileTest, AFileBelowSomethingThatIsNoFolderFails) {
    m_objRoot.write(kFile, "x");
    QVFile objFile;
    EXPECT_FALSE(objFile.open("/mnt/mtd/file/below", kReplace));
    EXPECT_FALSE(objFile.open("/no/such/folder/file", kReplace));
}

TEST_F(QVFileTest, ReadsInPiecesToTheEnd) {
    m_objRoot.write(kFile, std::string("ab\0cde", 6));
    QVFile objFile;
    char szBuffer[8] = "";
    EXPECT_TRUE(objFile.open(kFile));
    EXPECT_EQ(objFile.read(szBuffer, 0), 0);
    EXPECT_EQ(objFile.read(szBuffer, 4), 4);
    EXPECT_EQ(0, std::memcmp(szBuffer, "ab\0c", 4));
    EXPECT_EQ(objFile.read(szBuffer, 4), 2);
    EXPECT_EQ(0, std::memcmp(szBuffer, "de", 2));
    EXPECT_EQ(objFile.read(szBuffer, 4), 0);
    EXPECT_EQ(objFile.read(szBuffer, 4), 0);
    EXPECT_TRUE(objFile.close());
}

TEST_F(QVFileTest, NegativeCountsAndNullBuffersFail) {
    m_objRoot.write(kFile, "abc");
    QVFile objFile;
    char szBuffer[4] = "";
    EXPECT_TRUE(objFile.open(kFile));
    EXPECT_EQ(objFile.read(szBuffer, -1), -1);
    EXPECT_EQ(objFile.read(nullptr, 1), -1);
    EXPECT_EQ(objFile.read(szBuffer, 3), 3);
    EXPECT_TRUE(objFile.open(kFile, kReplace));
    EXPECT_EQ(objFile.write("abc", 0), 0);
    EXPECT_EQ(objFile.write(nullptr, 0), 0);
    EXPECT_TRUE(objFile.close());
    EXPECT_EQ(m_objRoot.read(kFile), "");
}

TEST_F(QVFileTest, AFailedWriteNeverReplacesTheOldContent) {
    m_objRoot.write(kFile, "old");
    QVFile objFile;
    const std::pair<const char*, int> rows[] = {{nullptr, 5}, {"bytes", -1}};
    for (const auto& [szBuffer, nCount] : rows) {
        EXPECT_TRUE(objFile.open(kFile, kReplace));
        EXPECT_EQ(objFile.write("new", 3), 3);
        EXPECT_EQ(objFile.write(szBuffer, nCount), -1);
        EXPECT_EQ(objFile.write("more", 4), -1);
        EXPECT_FALSE(objFile.close());
        EXPECT_EQ(m_objRoot.read(kFile), "old");
    }
}

TEST_F(QVFileTest, WritingCreatesAFile) {
    EXPECT_TRUE(replace("content"));
    EXPECT_EQ(m_objRoot.read(kFile), "content");
}

TEST_F(QVFileTest, WritingReplacesAFile) {
    m_objRoot.write(kFile, "a longer old content");
    EXPECT_TRUE(replace("new"));
    EXPECT_EQ(m_objRoot.read(kFile), "new");
}

TEST_F(QVFileTest, WritingNothingLeavesAnEmptyFile) {
    m_objRoot.write(kFile, "old");
    EXPECT_TRUE(replace(""));
    EXPECT_TRUE(m_objRoot.exists(kFile));
    EXPECT_EQ(m_objRoot.read(kFile), "");
}

TEST_F(QVFileTest, WritesAddUp) {
    QVFile objFile;
    EXPECT_TRUE(objFile.open(kFile, kReplace));
    EXPECT_EQ(objFile.write("abc", 3), 3);
    EXPECT_EQ(objFile.write("def", 3), 3);
    EXPECT_EQ(objFile.getLength(), 6);
    EXPECT_TRUE(objFile.close());
    EXPECT_EQ(m_objRoot.read(kFile), "abcdef");
}

TEST_F(QVFileTest, TheOldContentStandsUntilClose) {
    m_objRoot.write(kFile, "old");
    QVFile objFile;
    EXPECT_TRUE(objFile.open(kFile, kReplace));
    EXPECT_EQ(m_objRoot.read(kFile), "old");
    EXPECT_EQ(objFile.write("new", 3), 3);
    EXPECT_EQ(m_objRoot.read(kFile), "old");
    EXPECT_TRUE(objFile.close());
    EXPECT_EQ(m_objRoot.read(kFile), "new");
}

TEST_F(QVFileTest, AReaderKeepsTheContentThatItOpened) {
    m_objRoot.write(kFile, "old");
    QVFile objReader;
    EXPECT_TRUE(objReader.open(kFile));
    EXPECT_TRUE(replace("something else"));
    char szBuffer[32] = "";
    EXPECT_EQ(objReader.read(szBuffer, 32), 3);
    EXPECT_STREQ(szBuffer, "old");
}

TEST_F(QVFileTest, DestructionAndReopeningCloseTheFile) {
    {
        QVFile objFile;
        EXPECT_TRUE(objFile.open(kFile, kReplace));
        EXPECT_EQ(objFile.write("one", 3), 3);
    }
    EXPECT_EQ(m_objRoot.read(kFile), "one");
    QVFile objFile;
    EXPECT_TRUE(objFile.open(kFile, kReplace));
    EXPECT_EQ(objFile.write("two", 3), 3);
    EXPECT_FALSE(objFile.open("/no/such/file"));
    EXPECT_FALSE(objFile.isOpen());
    EXPECT_EQ(m_objRoot.read(kFile), "two");
}

TEST_F(QVFileTest, AnObjectServesOneFileAfterTheOther) {
    m_objRoot.write("/tmp/a", "first\nline\n");
    m_objRoot.write("/tmp/b", "second\n");
    QVFile objFile;
    std::string strLine;
    EXPECT_TRUE(objFile.open("/tmp/a"));
    EXPECT_TRUE(objFile.readLine(strLine));
    EXPECT_TRUE(objFile.open("/tmp/b"));
    EXPECT_TRUE(objFile.readLine(strLine));
    EXPECT_EQ(strLine, "second");
}

TEST_F(QVFileTest, TheWrittenFileCannotBeReadThroughTheSameObject) {
    QVFile objFile;
    char szBuffer[4] = "";
    std::string strLine = "x";
    EXPECT_TRUE(objFile.open(kFile, kReplace));
    EXPECT_EQ(objFile.write("abc", 3), 3);
    EXPECT_EQ(objFile.read(szBuffer, 3), -1);
    EXPECT_FALSE(objFile.readLine(strLine));
    EXPECT_EQ(strLine, "");
}

TEST_F(QVFileTest, LengthIsThatOfTheWholeFile) {
    m_objRoot.write(kFile, std::string(70000, 'x'));
    QVFile objFile;
    std::string strLine;
    EXPECT_TRUE(objFile.open(kFile));
    EXPECT_EQ(objFile.getLength(), 70000);
    EXPECT_TRUE(objFile.readLine(strLine));
    EXPECT_EQ(objFile.getLength(), 70000);
    EXPECT_TRUE(objFile.close());
    EXPECT_EQ(objFile.getLength(), 0);
}

TEST_F(QVFileTest, LinesComeWithoutTheirEnds) {
    const struct {
        std::string content;
        const char* lines;
    } rows[] = {
        {"", ""},
        {"\n", "[]"},
        {"7", "[7]"},
        {"7\n", "[7]"},
        {"7\n1\n", "[7][1]"},
        {"7\r\n1\r\n", "[7][1]"},
        {"\n\n1", "[][][1]"},
        {"\r\n", "[]"},
        {"a\rb\n", "[a\rb]"},
        {"a\r\r\n", "[a\r]"},
        {"a\r", "[a\r]"},
        {" a \t\n", "[ a \t]"},
    };
    for (const auto& row : rows) {
        m_objRoot.write(kFile, row.content);
        EXPECT_EQ(lines(), row.lines) << ::testing::PrintToString(row.content);
    }
}

TEST_F(QVFileTest, ALineKeepsItsZeroBytes) {
    m_objRoot.write(kFile, std::string("a\0b\nc", 5));
    QVFile objFile;
    std::string strLine;
    EXPECT_TRUE(objFile.open(kFile));
    EXPECT_TRUE(objFile.readLine(strLine));
    EXPECT_EQ(strLine, std::string("a\0b", 3));
}

TEST_F(QVFileTest, LongLinesComeInPieces) {
    const auto piecesOf = [this](const std::string& p_strContent) {
        m_objRoot.write(kFile, p_strContent);
        std::string strSizes;
        QVFile objFile;
        EXPECT_TRUE(objFile.open(kFile));
        for (std::string strLine; objFile.readLine(strLine);) {
            strSizes += std::to_string(strLine.size()) + " ";
        }
        return strSizes;
    };
    const std::string strLongest(65536, 'x');
    EXPECT_EQ(piecesOf(strLongest), "65536 ");
    EXPECT_EQ(piecesOf(strLongest + "\n1\n"), "65536 1 ");
    EXPECT_EQ(piecesOf(strLongest + "\r\n1\n"), "65536 1 ");
    EXPECT_EQ(piecesOf(strLongest + "y\n1\n"), "65536 1 1 ");
    EXPECT_EQ(piecesOf(strLongest + strLongest + "yz"), "65536 65536 2 ");
    EXPECT_EQ(piecesOf("ab\n" + strLongest + "y"), "2 65536 1 ");
}

TEST_F(QVFileTest, ReadingGoesOnBehindTheLines) {
    m_objRoot.write(kFile, "one\ntwo\nthree");
    QVFile objFile;
    std::string strLine;
    char szBuffer[16] = "";
    EXPECT_TRUE(objFile.open(kFile));
    EXPECT_TRUE(objFile.readLine(strLine));
    EXPECT_EQ(objFile.read(szBuffer, 2), 2);
    EXPECT_STREQ(szBuffer, "tw");
    EXPECT_TRUE(objFile.readLine(strLine));
    EXPECT_EQ(strLine, "o");
    EXPECT_EQ(objFile.read(szBuffer, 16), 5);
    EXPECT_STREQ(szBuffer, "three");
}

TEST_F(QVFileTest, OneReadCrossesWhatALineReadAheadAndTheRest) {
    const std::string strRest(10000, 'r');
    m_objRoot.write(kFile, "one\n" + strRest);
    QVFile objFile;
    std::string strLine;
    std::string strBuffer(20000, '\0');
    EXPECT_TRUE(objFile.open(kFile));
    EXPECT_TRUE(objFile.readLine(strLine));
    EXPECT_EQ(objFile.read(&strBuffer[0], 20000), 10000);
    EXPECT_EQ(strBuffer.substr(0, 10000), strRest);
}

TEST_F(QVFileTest, TellsWhichFilesExist) {
    EXPECT_FALSE(QVFile::exists(kFile));
    m_objRoot.write(kFile, "");
    EXPECT_TRUE(QVFile::exists(kFile));
    EXPECT_FALSE(QVFile::exists("/mnt/mtd"));
    EXPECT_FALSE(QVFile::exists(""));
    EXPECT_FALSE(QVFile::exists(nullptr));
}

TEST_F(QVFileTest, TwoWritersOfOnePathTakeTurns) {
    Story story;
    Gate trying;
    QVFile objFirst;
    EXPECT_TRUE(objFirst.open(kFile, kReplace));
    std::thread other([&] {
        trying.open();
        QVFile objSecond;
        EXPECT_TRUE(objSecond.open(kFile, kReplace));
        story.add("second opened: " + m_objRoot.read(kFile));
        EXPECT_EQ(objSecond.write("second", 6), 6);
        EXPECT_TRUE(objSecond.close());
    });
    trying.pass();
    letOthersRun();
    EXPECT_EQ(objFirst.write("first", 5), 5);
    story.add("first closes");
    EXPECT_TRUE(objFirst.close());
    other.join();
    EXPECT_EQ(story.told(), (std::vector<std::string>{"first closes", "second opened: first"}));
    EXPECT_EQ(m_objRoot.read(kFile), "second");
}

TEST_F(QVFileTest, WritersOfDifferentPathsDoNotWaitForEachOther) {
    QVFile objFirst;
    QVFile objSecond;
    EXPECT_TRUE(objFirst.open("/tmp/a", kReplace));
    EXPECT_TRUE(objSecond.open("/tmp/b", kReplace));
    EXPECT_TRUE(objSecond.close());
    EXPECT_TRUE(objFirst.close());
}

TEST_F(QVFileTest, ReadersSeeOneWholeContentWhileManyWrite) {
    EXPECT_TRUE(replace(std::string(3000, '0')));
    std::atomic<bool> bDone{false};
    std::vector<std::thread> vecWriters;
    for (const char cFill : {'1', '2', '3'}) {
        vecWriters.emplace_back([cFill] {
            for (int n = 1; n <= 15; ++n) {
                EXPECT_TRUE(replace(std::string(static_cast<std::size_t>(1000 * n), cFill)));
            }
        });
    }
    std::thread reader([&] {
        std::string strBuffer(20000, '\0');
        while (!bDone) {
            QVFile objFile;
            EXPECT_TRUE(objFile.open(kFile));
            const INT64 nLength = objFile.getLength();
            const int nRead = objFile.read(&strBuffer[0], 20000);
            EXPECT_EQ(nRead, nLength);
            EXPECT_EQ(nRead % 1000, 0);
            EXPECT_EQ(strBuffer.substr(0, static_cast<std::size_t>(nRead)).find_first_not_of(strBuffer[0]),
                      std::string::npos);
        }
    });
    for (std::thread& writer : vecWriters) {
        writer.join();
    }
    bDone = true;
    reader.join();
    EXPECT_EQ(m_objRoot.read(kFile).size(), 15000U);
}

}  // namespace
