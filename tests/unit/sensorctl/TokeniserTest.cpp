#include "apps/sensorctl/Tokeniser.h"

#include "apps/sensorctl/Shared.h"

#include <gmock/gmock.h>

namespace sensorctl {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

struct SplitLine {
    const char* szName;
    std::string strLine;
    std::vector<std::string> vecWords;
};

void PrintTo(const SplitLine& p_stRow, std::ostream* p_pStream) {
    *p_pStream << p_stRow.szName;
}

class GoodLine : public testing::TestWithParam<SplitLine> {};

TEST_P(GoodLine, ComesApartIntoItsWords) {
    EXPECT_EQ(tokenise(GetParam().strLine), GetParam().vecWords);
}

INSTANTIATE_TEST_SUITE_P(Tokeniser, GoodLine,
                         testing::Values(SplitLine{"Empty", "", {}}, SplitLine{"BlanksOnly", " \t ", {}},
                                         SplitLine{"CommentOnly", "  # nothing", {}},
                                         SplitLine{"Words", "set  brightness\t60 ", {"set", "brightness", "60"}},
                                         SplitLine{"CommentBehindWords", "scheme 1 # the night", {"scheme", "1"}},
                                         SplitLine{"HashInsideAWordIsNoComment", "echo a#b", {"echo", "a#b"}},
                                         SplitLine{"DoubleQuotes",
                                                   "scene clock \"2024-05-01 18:00\"",
                                                   {"scene", "clock", "2024-05-01 18:00"}},
                                         SplitLine{"SingleQuotes", "echo 'a \"b\" \\n'", {"echo", "a \"b\" \\n"}},
                                         SplitLine{"Escapes", "echo \"a\\n\\t\\\"\\\\\"", {"echo", "a\n\t\"\\"}},
                                         SplitLine{"QuotesInsideAWord", "a\"b c\"d", {"ab cd"}},
                                         SplitLine{"EmptyWord", "echo \"\" ''", {"echo", "", ""}},
                                         SplitLine{"HashInQuotes", "echo \"# no comment\"", {"echo", "# no comment"}},
                                         SplitLine{"BackslashOutsideQuotesIsALetter", "echo a\\n", {"echo", "a\\n"}},
                                         SplitLine{"CarriageReturnAtTheEnd", "scheme 1\r", {"scheme", "1"}},
                                         SplitLine{"LettersOfOtherLanguages", "echo \xC3\xA9", {"echo", "\xC3\xA9"}}),
                         [](const auto& p_stInfo) { return p_stInfo.param.szName; });

std::string refusalOf(const std::string& p_strLine) {
    try {
        tokenise(p_strLine);
        return "taken";
    } catch (const CommandError& error) {
        return error.what();
    }
}

TEST(Tokeniser, AnOpenQuoteIsRefusedWithItsColumn) {
    EXPECT_THAT(refusalOf("echo \"abc"), HasSubstr("quote in column 6 is not closed"));
    EXPECT_THAT(refusalOf("echo 'abc"), HasSubstr("quote in column 6 is not closed"));
    EXPECT_THAT(refusalOf("\"abc\\"), HasSubstr("quote in column 1 is not closed"));
}

TEST(Tokeniser, AnUnknownEscapeIsRefusedWithItsColumn) {
    EXPECT_THAT(refusalOf("echo \"a\\q\""), HasSubstr("\\q in column 8"));
}

TEST(Tokeniser, BytesThatAreNoTextAreRefusedWithTheirColumn) {
    EXPECT_THAT(refusalOf(std::string("set\0 1", 6)), HasSubstr("byte 0x00 in column 4"));
    EXPECT_THAT(refusalOf("\x7F"), HasSubstr("byte 0x7F in column 1"));
    EXPECT_THAT(refusalOf("echo \"a\x1B[31m\""), HasSubstr("byte 0x1B in column 8"));
    EXPECT_THAT(refusalOf("a\rb"), HasSubstr("byte 0x0D in column 2"));
}

TEST(Tokeniser, BytesInAnUnusedCommentAreLetThrough) {
    EXPECT_THAT(tokenise("scheme # \x01"), ElementsAre("scheme"));
}

TEST(Tokeniser, ALineOfWordsComesApartIntoTheSameWords) {
    const std::vector<std::string> words = {"echo",        "a b", "",          "#x",   "\"q\"",
                                            "back\\slash", "'",   "tab\there", "n\nl", "x"};
    EXPECT_EQ(tokenise(lineOfWords(words)), words);
    EXPECT_EQ(lineOfWords({"set", "brightness", "60"}), "set brightness 60");
    EXPECT_THAT(lineOfWords({}), IsEmpty());
}

}  // namespace
}  // namespace sensorctl
