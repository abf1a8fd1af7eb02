#include "apps/sensorctl/TranscriptMatch.h"

#include <gtest/gtest.h>

namespace sensorctl {
namespace {

const char kLine[] = "ia ch0 set 34 60 = 0";

TEST(TranscriptMatch, WordsStandingOneAfterTheOtherMatch) {
    EXPECT_TRUE(matchesWords(kLine, "set 34 60"));
    EXPECT_TRUE(matchesWords(kLine, "ia"));
    EXPECT_TRUE(matchesWords(kLine, "60 = 0"));
    EXPECT_TRUE(matchesWords(kLine, "  set   34 "));
    EXPECT_TRUE(matchesWords(kLine, kLine));
}

TEST(TranscriptMatch, PartsOfWordsAndGapsDoNotMatch) {
    EXPECT_FALSE(matchesWords(kLine, "set 34 6"));
    EXPECT_FALSE(matchesWords(kLine, "set 60"));
    EXPECT_FALSE(matchesWords(kLine, "34 set"));
    EXPECT_FALSE(matchesWords("", "set"));
}

TEST(TranscriptMatch, APatternWithoutWordsMatchesEveryLine) {
    EXPECT_TRUE(matchesWords(kLine, ""));
    EXPECT_TRUE(matchesWords("", " "));
}

TEST(TranscriptMatch, MatchesAreCountedByLine) {
    EXPECT_EQ(countMatches({kLine, "ia ch0 get 34 -> 60 = 0", kLine}, "set 34"), 2u);
    EXPECT_EQ(countMatches({}, ""), 0u);
}

}  // namespace
}  // namespace sensorctl
