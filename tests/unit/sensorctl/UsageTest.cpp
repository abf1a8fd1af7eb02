#include "apps/sensorctl/Usage.h"

#include <gmock/gmock.h>

namespace sensorctl {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

Command commandWith(const std::string& p_strArguments) {
    return {"go", p_strArguments, "", "", 0, 0, nullptr};
}

TEST(Usage, EachWayCarriesTheNameOfTheCommand) {
    EXPECT_THAT(waysOf(commandWith("")), ElementsAre("go"));
    EXPECT_THAT(waysOf(commandWith("KEY | far [0|1] | near")), ElementsAre("go KEY", "go far [0|1]", "go near"));
}

TEST(Usage, CapitalsStandForSomethingAndTheRestIsTypedAsItIs) {
    const std::vector<UsageWord> words = wordsOfWay("go wdr|beaway KEY 0|1|N");
    ASSERT_EQ(words.size(), 3u);
    EXPECT_THAT(words[0].vecLiterals, ElementsAre("wdr", "beaway"));
    EXPECT_THAT(words[0].vecKinds, IsEmpty());
    EXPECT_THAT(words[1].vecLiterals, IsEmpty());
    EXPECT_THAT(words[1].vecKinds, ElementsAre("KEY"));
    EXPECT_THAT(words[2].vecLiterals, ElementsAre("0", "1"));
    EXPECT_THAT(words[2].vecKinds, ElementsAre("N"));
    EXPECT_EQ(words[0].nLeftOut, 0u);
    EXPECT_FALSE(words[0].bRepeats);
}

TEST(Usage, BracketsMeanOptionalAlsoInsideOneAnother) {
    const std::vector<UsageWord> words = wordsOfWay("go A [B [C D]] E");
    ASSERT_EQ(words.size(), 5u);
    std::vector<std::size_t> leftOut;
    for (const UsageWord& word : words) {
        leftOut.push_back(word.nLeftOut);
    }
    EXPECT_THAT(leftOut, ElementsAre(0u, 3u, 2u, 0u, 0u));
    EXPECT_EQ(wordsOfWay("go HH:MM[:SS]")[0].nLeftOut, 0u);
    EXPECT_THAT(words[3].vecKinds, ElementsAre("D"));
}

TEST(Usage, DotsMeanAgain) {
    const std::vector<UsageWord> words = wordsOfWay("go KEY... [WHAT]...");
    ASSERT_EQ(words.size(), 2u);
    EXPECT_TRUE(words[0].bRepeats);
    EXPECT_THAT(words[0].vecKinds, ElementsAre("KEY"));
    EXPECT_TRUE(words[1].bRepeats);
    EXPECT_EQ(words[1].nLeftOut, 1u);
    EXPECT_THAT(words[1].vecKinds, ElementsAre("WHAT"));
}

}  // namespace
}  // namespace sensorctl
