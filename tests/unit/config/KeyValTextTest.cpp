#include "sensor/config/SensorKeyVal.h"

#include "tests/support/TestRoot.h"

#include <gtest/gtest.h>

#include <limits>
#include <random>
#include <string>
#include <utility>
#include <vector>

namespace {

using IntPairs = std::vector<std::pair<int, int>>;

// What the text yields, in an array that has room for no record more than it has to.
IntPairs read(const std::string& p_strText) {
    const u32 nRoom = keyval_room(p_strText);
    std::vector<KeyVal> vecRecords(nRoom);
    u32 nCount = 0xFFFFFFFFu;
    keyval_str2st(p_strText, vecRecords.data(), &nCount);
    EXPECT_LE(nCount, nRoom) << p_strText;
    IntPairs pairs;
    for (u32 i = 0; i < nCount && i < nRoom; ++i) {
        pairs.emplace_back(static_cast<int>(vecRecords[i].key), static_cast<int>(vecRecords[i].value));
    }
    return pairs;
}

std::string written(const IntPairs& p_vecPairs) {
    std::vector<KeyVal> vecRecords;
    for (const auto& [nKey, nValue] : p_vecPairs) {
        vecRecords.push_back({static_cast<u32>(nKey), static_cast<u32>(nValue)});
    }
    std::string strText;
    keyval_st2str(strText, vecRecords.data(), static_cast<u32>(vecRecords.size()));
    return strText;
}

struct TextRow {
    std::string strText;
    IntPairs pairs;
};

void expectRows(const std::vector<TextRow>& p_vecRows) {
    for (const TextRow& row : p_vecRows) {
        EXPECT_EQ(row.pairs, read(row.strText)) << row.strText;
    }
}

TEST(KeyValText, WithoutPairsYieldsNothing) {
    expectRows({{"", {}}, {"abc", {}}, {"1,2", {}}, {")", {}}, {"))))", {}}, {"(", {}}, {"((((", {}}, {"1,2)", {}}});
}

TEST(KeyValText, YieldsItsPairsInOrder) {
    expectRows({{"(1,2)", {{1, 2}}},
                {"(1,2)(3,4)", {{1, 2}, {3, 4}}},
                {"(3,4)(1,2)(3,5)", {{3, 4}, {1, 2}, {3, 5}}},
                {"(0,0)", {{0, 0}}},
                {"(-1,-2)", {{-1, -2}}},
                {"(+1,+2)", {{1, 2}}},
                {"(007,010)", {{7, 10}}}});
}

TEST(KeyValText, ToleratesAnythingBetweenAndAroundItsPairs) {
    expectRows({{"set (1,2), then\n(3,4).", {{1, 2}, {3, 4}}},
                {"(1,2)  (3,4) ", {{1, 2}, {3, 4}}},
                {std::string("\0(1,2)\0(3,4)\0", 13), {{1, 2}, {3, 4}}},
                {"\xff(1,2)\xc3(3,4)", {{1, 2}, {3, 4}}}});
}

TEST(KeyValText, ToleratesBlanksInFrontOfItsNumbers) {
    expectRows({{"( 1, 2)", {{1, 2}}}, {"(\n1,\t2)", {{1, 2}}}, {"(1,2 )", {{1, 2}}}});
}

TEST(KeyValText, MeantAFieldThatDoesNotParseKeepsTheValueOfThePairBefore) {
    expectRows({{"(1,2)(x,y)", {{1, 2}, {1, 2}}},
                {"(1,2)(3,y)", {{1, 2}, {3, 2}}},
                {"(1,2)(x,4)", {{1, 2}, {1, 2}}},  // behind a key that does not parse, nothing is read
                {"(1,2)()", {{1, 2}, {1, 2}}},
                {"(1,2)(3)", {{1, 2}, {3, 2}}},
                {"(1,2)(3;4)", {{1, 2}, {3, 2}}},
                {"(1,2)(3 ,4)", {{1, 2}, {3, 2}}},
                {"(1,2)(,4)", {{1, 2}, {1, 2}}},
                {"(1,2)((3,4)", {{1, 2}, {1, 2}}},
                {"(1,2)(3,4)(x,y)(z)", {{1, 2}, {3, 4}, {3, 4}, {3, 4}}},
                {std::string("(1,2)(\0,4)", 10), {{1, 2}, {1, 2}}}});
}

TEST(KeyValText, OfAFirstPairThatDoesNotParseIsZero) {
    expectRows({{"(x,y)", {{0, 0}}}, {"()", {{0, 0}}}, {"(5)", {{5, 0}}}, {"(x,y)(1,2)", {{0, 0}, {1, 2}}}});
}

TEST(KeyValText, EndsAtAnOpeningParenthesisThatIsItsLastCharacter) {
    expectRows({{"abc(", {}}, {"(1,2)(", {{1, 2}}}, {")(", {}}, {"(1,2)abc(", {{1, 2}}}});
}

TEST(KeyValText, EndsAtAPairThatIsNotClosed) {
    expectRows({{"(5,6", {}}, {"(1,2)(5,6", {{1, 2}}}, {"(1,2)(5,6(7,8", {{1, 2}}}});
}

TEST(KeyValText, MeantAClosingParenthesisJustBeforeAPairYieldsAnEmptyOne) {
    expectRows({{")(7,8)", {{0, 0}, {7, 8}}}, {"(1,2))(7,8)", {{1, 2}, {1, 2}, {7, 8}}}});
}

TEST(KeyValText, MeantAClosingParenthesisFurtherBeforeAPairYieldsThePairTwice) {
    expectRows({{")x(7,8)", {{7, 8}, {7, 8}}},
                {"(1,2) ) (7,8)", {{1, 2}, {7, 8}, {7, 8}}},
                {")))  (7,8)", {{7, 8}, {7, 8}, {7, 8}, {7, 8}}},
                {")x(7,8", {{7, 8}}}});
}

TEST(KeyValText, SetsItsCountAlsoWhenItYieldsNothing) {
    u32 nCount = 99;
    keyval_str2st("", nullptr, &nCount);
    EXPECT_EQ(0u, nCount);
    nCount = 99;
    keyval_str2st("no pair (", nullptr, &nCount);
    EXPECT_EQ(0u, nCount);
}

TEST(KeyValText, LeavesTheRecordsBehindItsPairsAlone) {
    KeyVal records[3] = {{90, 91}, {92, 93}, {94, 95}};
    u32 nCount = 0;
    keyval_str2st("(1,2)", records, &nCount);
    EXPECT_EQ(1u, nCount);
    EXPECT_EQ(1u, records[0].key);
    EXPECT_EQ(2u, records[0].value);
    EXPECT_EQ(92u, records[1].key);
    EXPECT_EQ(95u, records[2].value);
}

TEST(KeyValText, NeverSpeaks) {
    const TestRoot root;
    root.debugLevel(7);
    EXPECT_EQ("", outputOf([] {
                  read(")x(7,8)(x,y)(");
                  written({{1, 2}});
              }));
    EXPECT_EQ("", root.errorLog());
}

// --- Writing ---

TEST(KeyValText, IsWrittenAsSignedPairsWithoutSeparators) {
    EXPECT_EQ("(7,3)(8,-1)", written({{7, 3}, {8, -1}}));
    EXPECT_EQ("(0,0)", written({{0, 0}}));
    EXPECT_EQ("", written({}));
}

TEST(KeyValText, IsAppendedToWhatIsThere) {
    std::string strText = "(1,2)";
    KeyVal records[] = {{3, 4}, {5, 6}};
    keyval_st2str(strText, records, 1);
    EXPECT_EQ("(1,2)(3,4)", strText);
}

TEST(KeyValText, OfNoRecordsLeavesTheStringAlone) {
    std::string strText = "before";
    KeyVal record = {3, 4};
    keyval_st2str(strText, &record, 0);
    EXPECT_EQ("before", strText);
    keyval_st2str(strText, nullptr, 0);
    EXPECT_EQ("before", strText);
}

TEST(KeyValText, HoldsTheWidestNumbersWhole) {
    constexpr int kHighest = std::numeric_limits<int>::max();
    constexpr int kLowest = std::numeric_limits<int>::min();
    EXPECT_EQ("(-2147483648,-2147483648)", written({{kLowest, kLowest}}));
    const IntPairs pairs = {{kLowest, kLowest}, {kHighest, kHighest}, {kLowest, 0}, {-1, kLowest}};
    EXPECT_EQ(pairs, read(written(pairs)));
}

TEST(KeyValText, OfANegativeNumberSurvivesWritingAndReading) {
    EXPECT_EQ("(8,-1)", written({{8, -1}}));
    EXPECT_EQ((IntPairs{{8, -1}}), read("(8,-1)"));
}

TEST(KeyValText, OfAnyRecordsIsReadBackAsTheyWere) {
    std::mt19937 random(1);
    for (int nRound = 0; nRound < 200; ++nRound) {
        IntPairs pairs;
        for (std::size_t n = random() % 200; n > 0; --n) {
            // Narrow and wide numbers of both signs.
            pairs.emplace_back(static_cast<int>(static_cast<u32>(random())) >> random() % 32,
                               static_cast<int>(static_cast<u32>(random())) >> random() % 32);
        }
        EXPECT_EQ(pairs, read(written(pairs)));
    }
}

// --- Hostile texts ---

TEST(KeyValText, YieldsEveryPairOfALongText) {
    std::string strText;
    IntPairs pairs;
    for (int i = 0; i < 20000; ++i) {
        strText += "(" + std::to_string(i) + "," + std::to_string(-i) + ")";
        pairs.emplace_back(i, -i);
    }
    EXPECT_EQ(pairs, read(strText));
}

TEST(KeyValText, MayHoldALongStretchWithoutAPair) {
    const std::string strLong(200000, ' ');
    EXPECT_EQ((IntPairs{{1, 2}}), read(strLong + "(1," + strLong + "2" + strLong + ")" + strLong));
    EXPECT_EQ(IntPairs(), read(std::string(200000, '(')));
    EXPECT_EQ(IntPairs(), read(std::string(200000, ')')));
}

TEST(KeyValText, OfNumbersThatNoWordHoldsStillYieldsItsRecords) {
    const std::string strDigits(5000, '9');
    const IntPairs pairs = read("(1,2)(" + strDigits + ",3)(4,-" + strDigits + ")(5,6)");
    ASSERT_EQ(4u, pairs.size());
    EXPECT_EQ(std::make_pair(1, 2), pairs[0]);
    EXPECT_EQ(3, pairs[1].second);
    EXPECT_EQ(4, pairs[2].first);
    EXPECT_EQ(std::make_pair(5, 6), pairs[3]);
}

// The same reading, told differently: the n-th closing parenthesis belongs to the first opening one behind the one before.
std::size_t pairsOf(const std::string& p_strText) {
    std::size_t nPairs = 0;
    std::size_t nFrom = 0;
    while (true) {
        const std::size_t nOpen = p_strText.find('(', nFrom);
        const std::size_t nClose = p_strText.find(')', nFrom);
        if (std::string::npos == nOpen || nOpen + 1 == p_strText.size() || std::string::npos == nClose) {
            return nPairs;
        }
        ++nPairs;
        nFrom = nClose + 1;
    }
}

TEST(KeyValText, OfAnyCharactersStaysInTheRoomThatItAsksFor) {
    constexpr char kLetters[] = {'(', ')', '(', ')', ',', '-', '0', '9', 'x', ' ', '\0'};
    std::mt19937 random(2);
    for (int nRound = 0; nRound < 5000; ++nRound) {
        std::string strText;
        for (std::size_t n = random() % 40; n > 0; --n) {
            strText += kLetters[random() % sizeof(kLetters)];
        }
        EXPECT_EQ(pairsOf(strText), read(strText).size()) << strText;
    }
}

TEST(KeyValText, AsksForRoomForEachClosingParenthesis) {
    EXPECT_EQ(0u, keyval_room(""));
    EXPECT_EQ(0u, keyval_room("((1,2"));
    EXPECT_EQ(2u, keyval_room("(1,2)(3,4)"));
    EXPECT_EQ(3u, keyval_room(std::string(")\0))", 4)));
}

}  // namespace
