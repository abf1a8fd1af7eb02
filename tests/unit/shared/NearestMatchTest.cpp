#include "apps/shared/NearestMatch.h"

#include <gtest/gtest.h>

namespace apps {
namespace {

TEST(NearestMatch, EachKindOfMistakeIsOneStep) {
    EXPECT_EQ(editDistance("scheme", "scheme"), 0u);
    EXPECT_EQ(editDistance("schem", "scheme"), 1u);
    EXPECT_EQ(editDistance("scheeme", "scheme"), 1u);
    EXPECT_EQ(editDistance("schema", "scheme"), 1u);
    EXPECT_EQ(editDistance("shceme", "scheme"), 1u);
    EXPECT_EQ(editDistance("", "abc"), 3u);
    EXPECT_EQ(editDistance("abc", ""), 3u);
    EXPECT_EQ(editDistance("kitten", "sitting"), 3u);
}

TEST(NearestMatch, TheNearestKnownWordIsFoundInAnyCase) {
    const std::vector<std::string> known = {"set", "scene", "scheme", "style", "getZoomValue"};
    EXPECT_EQ(nearestMatch("sett", known), "set");
    EXPECT_EQ(nearestMatch("SCHEMA", known), "scheme");
    EXPECT_EQ(nearestMatch("getzoomvalu", known), "getZoomValue");
}

TEST(NearestMatch, TheFirstOfEquallyNearWordsIsTaken) {
    EXPECT_EQ(nearestMatch("bat", {"cat", "hat"}), "cat");
}

TEST(NearestMatch, AWordThatIsFarFromEveryKnownOneHasNoMatch) {
    EXPECT_EQ(nearestMatch("xylophone", {"set", "scene"}), "");
    EXPECT_EQ(nearestMatch("", {"set"}), "");
    EXPECT_EQ(nearestMatch("set", {}), "");
}

TEST(NearestMatch, HostileLengthHasNoMatch) {
    const std::string longWord(65, 'a');
    EXPECT_EQ(nearestMatch(longWord, {longWord}), "");
}

TEST(NearestMatch, TheQuestionIsAskedOnlyWhenThereIsAMatch) {
    EXPECT_EQ(didYouMean("set"), "; did you mean \"set\"?");
    EXPECT_EQ(didYouMean(""), "");
}

}  // namespace
}  // namespace apps
