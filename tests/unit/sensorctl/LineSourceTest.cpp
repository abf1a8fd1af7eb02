#include "apps/sensorctl/LineSource.h"

#include <gmock/gmock.h>

#include <fcntl.h>
#include <unistd.h>

#include <cstdio>

namespace sensorctl {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

std::vector<Line> linesOf(const std::string& p_strText) {
    std::FILE* const file = std::tmpfile();
    std::fwrite(p_strText.data(), 1, p_strText.size(), file);
    std::fflush(file);
    lseek(fileno(file), 0, SEEK_SET);
    StreamLines source(fileno(file), "script");
    std::vector<Line> lines;
    Line line;
    while (source.next(line)) {
        lines.push_back(line);
    }
    std::fclose(file);
    return lines;
}

std::vector<std::string> textsOf(const std::string& p_strText) {
    std::vector<std::string> texts;
    for (const Line& line : linesOf(p_strText)) {
        texts.push_back(line.strText);
    }
    return texts;
}

TEST(StreamLines, LinesAreNumberedFromOneWithTheirSource) {
    const std::vector<Line> lines = linesOf("a\n\nb\n");
    ASSERT_EQ(lines.size(), 3u);
    EXPECT_EQ(lines[0].stPosition.text(), "script:1");
    EXPECT_EQ(lines[2].stPosition.text(), "script:3");
    EXPECT_EQ(lines[2].strText, "b");
}

TEST(StreamLines, TheLastLineNeedsNoNewline) {
    EXPECT_THAT(textsOf("a\nb"), ElementsAre("a", "b"));
    EXPECT_THAT(textsOf("\n"), ElementsAre(""));
    EXPECT_THAT(textsOf(""), ElementsAre());
}

TEST(StreamLines, ZeroBytesStayInTheLine) {
    EXPECT_THAT(textsOf(std::string("a\0b\nc", 5)), ElementsAre(std::string("a\0b", 3), "c"));
}

TEST(StreamLines, ALineMayBeAsLongAsTheLimit) {
    const std::string longest(StreamLines::kLongestLine, 'x');
    const std::vector<Line> lines = linesOf(longest + "\nnext\n");
    ASSERT_EQ(lines.size(), 2u);
    EXPECT_EQ(lines[0].strText, longest);
    EXPECT_EQ(lines[0].strProblem, "");
    EXPECT_EQ(lines[1].strText, "next");
}

TEST(StreamLines, ALongerLineIsCutReportedAndSkipped) {
    const std::vector<Line> lines = linesOf(std::string(3 * StreamLines::kLongestLine, 'x') + "\nnext\n");
    ASSERT_EQ(lines.size(), 2u);
    EXPECT_EQ(lines[0].strText.size(), StreamLines::kLongestLine);
    EXPECT_THAT(lines[0].strProblem, HasSubstr("longer than 1048576 bytes"));
    EXPECT_EQ(lines[1].strText, "next");
    EXPECT_EQ(lines[1].strProblem, "");
    EXPECT_EQ(lines[1].stPosition.nNumber, 2u);
}

TEST(StreamLines, AReadThatFailsIsTheProblemOfALastLine) {
    const int folder = open(".", O_RDONLY | O_DIRECTORY);
    StreamLines source(folder, "script");
    Line line;
    ASSERT_TRUE(source.next(line));
    EXPECT_EQ(line.stPosition.text(), "script:1");
    EXPECT_EQ(line.strProblem, "reading failed: Is a directory");
    EXPECT_FALSE(source.next(line));
    close(folder);
}

std::vector<std::vector<std::string>> commandsOf(const std::vector<std::string>& p_vecArguments) {
    ArgumentLines source(p_vecArguments);
    std::vector<std::vector<std::string>> commands;
    Line line;
    while (source.next(line)) {
        EXPECT_EQ(line.stPosition.text(), "command " + std::to_string(commands.size() + 1));
        commands.push_back(*line.vecWords);
    }
    return commands;
}

TEST(ArgumentLines, CommandsAreSeparatedByTwoDashes) {
    EXPECT_THAT(commandsOf({"init", "--", "set", "34", "60", "--", "scheme"}),
                ElementsAre(ElementsAre("init"), ElementsAre("set", "34", "60"), ElementsAre("scheme")));
}

TEST(ArgumentLines, SeparatorsWithoutACommandBetweenThemCountForNothing) {
    EXPECT_THAT(commandsOf({"--", "init", "--", "--"}), ElementsAre(ElementsAre("init")));
    EXPECT_THAT(commandsOf({}), ElementsAre());
}

TEST(ArgumentLines, AnArgumentWithBlanksStaysOneWord) {
    EXPECT_THAT(commandsOf({"echo", "a b"}), ElementsAre(ElementsAre("echo", "a b")));
}

TEST(ArgumentLines, AByteThatNoScriptCanHoldIsTheProblemOfItsCommand) {
    for (const char* const word : {"a\x01", "a\r"}) {
        ArgumentLines source({"echo", word, "--", "echo", "two\nlines"});
        Line line;
        ASSERT_TRUE(source.next(line));
        EXPECT_THAT(line.strProblem, HasSubstr("is not text"));
        ASSERT_TRUE(source.next(line));
        EXPECT_EQ(line.strProblem, "");
    }
}

}  // namespace
}  // namespace sensorctl
