#include "apps/sensorctl/Table.h"

#include <gmock/gmock.h>

namespace sensorctl {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST(Table, ColumnsAreAsWideAsTheirWidestCell) {
    EXPECT_THAT(alignedLines({{"key", "name", "range"}, {"34", "KEY_A", "0..100"}, {"2353", "-", ""}}),
                ElementsAre(" key  name   range", "  34  KEY_A  0..100", "2353  -"));
}

TEST(Table, NumbersStandToTheRightAlsoWithAMark) {
    EXPECT_THAT(alignedLines({{"value"}, {"60*"}, {"-5"}, {"-"}}), ElementsAre("value", "  60*", "   -5", "    -"));
    EXPECT_THAT(alignedLines({{"value"}, {"60*"}, {"6 metres"}}), ElementsAre("value", "60*", "6 metres"));
    EXPECT_THAT(alignedLines({}), IsEmpty());
}

TEST(Table, APatternIsAPartOrWithWildcardsAllOfAText) {
    EXPECT_TRUE(matchesWildcards("KEY_BRIGHTNESS", "bright"));
    EXPECT_TRUE(matchesWildcards("KEY_BRIGHTNESS", ""));
    EXPECT_FALSE(matchesWildcards("KEY_BRIGHTNESS", "dark"));
    EXPECT_TRUE(matchesWildcards("ir_mode", "*mode"));
    EXPECT_TRUE(matchesWildcards("ir_mode", "ir_*"));
    EXPECT_TRUE(matchesWildcards("ir_mode", "ir?mode"));
    EXPECT_TRUE(matchesWildcards("ir_mode", "*r*o*"));
    EXPECT_TRUE(matchesWildcards("", "*"));
    EXPECT_FALSE(matchesWildcards("ir_mode", "mode*"));
    EXPECT_FALSE(matchesWildcards("ir_mode", "ir_mode?"));
    EXPECT_FALSE(matchesWildcards("ir_mode", "?r"));
    EXPECT_TRUE(matchesWildcards("aXbXc", "a*x*c"));
}

TEST(Table, AHostilePatternCostsLittle) {
    std::string pattern;
    for (int i = 0; i < 2000; ++i) {
        pattern += "a*";
    }
    EXPECT_FALSE(matchesWildcards(std::string(4000, 'a'), pattern + "b"));
}

}  // namespace
}  // namespace sensorctl
