#include "apps/shared/Text.h"

#include <gmock/gmock.h>

namespace apps {
namespace {

TEST(Text, LowerCaseTouchesAsciiLettersOnly) {
    EXPECT_EQ(lowerCase("KEY_Z9\xC3\x84"), "key_z9\xC3\x84");
}

TEST(Text, StartsWithComparesTheWholeStart) {
    EXPECT_TRUE(startsWith("key_a", "key_"));
    EXPECT_FALSE(startsWith("ke", "key_"));
    EXPECT_TRUE(startsWith("", ""));
}

TEST(Text, JoinPutsTheSeparatorBetweenThePieces) {
    EXPECT_EQ(join({}, ", "), "");
    EXPECT_EQ(join({"a"}, ", "), "a");
    EXPECT_EQ(join({"a", "", "b"}, ", "), "a, , b");
    EXPECT_EQ(join({"x", "x"}, "-"), "x-x");
}

TEST(Text, LinesComeWithoutTheirNewlines) {
    EXPECT_THAT(linesOf(""), testing::IsEmpty());
    EXPECT_THAT(linesOf("a\n\nb"), testing::ElementsAre("a", "", "b"));
    EXPECT_THAT(linesOf("a\n"), testing::ElementsAre("a"));
}

TEST(Text, WrappedLinesHoldWholeWordsUpToTheWidth) {
    EXPECT_THAT(wrapped("one two three", 7), testing::ElementsAre("one two", "three"));
    EXPECT_THAT(wrapped("one two three", 6), testing::ElementsAre("one", "two", "three"));
    EXPECT_THAT(wrapped("  a   verylongword b ", 4), testing::ElementsAre("a", "verylongword", "b"));
    EXPECT_THAT(wrapped("", 4), testing::IsEmpty());
}

TEST(Text, QuotedTextCannotDriveATerminalAndIsCut) {
    EXPECT_EQ(quoted("a\x1B[0m"), "\"a\\x1B[0m\"");
    EXPECT_EQ(quoted(std::string("\0", 1)), "\"\\x00\"");
    EXPECT_EQ(quoted(std::string(80, 'x')), "\"" + std::string(80, 'x') + "\"");
    EXPECT_EQ(quoted(std::string(81, 'x')), "\"" + std::string(80, 'x') + "...\"");
}

TEST(Text, PrintableTextKeepsLinesAndTabsOnly) {
    EXPECT_EQ(printable("a\n\tb\x7F\x01"), "a\n\tb\\x7F\\x01");
    EXPECT_EQ(printable("\xC3\xA9"), "\xC3\xA9");
}

}  // namespace
}  // namespace apps
