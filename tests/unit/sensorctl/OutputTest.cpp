#include "apps/sensorctl/Output.h"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <unistd.h>

#include <cstdio>

namespace sensorctl {
namespace {

using testing::HasSubstr;

// What the code writes through an output of this form.
template <typename Code>
std::string written(Output::Form p_eForm, Code&& p_fnCode) {
    std::FILE* const file = std::tmpfile();
    Output output(fileno(file), p_eForm);
    p_fnCode(output);
    EXPECT_TRUE(output.isWhole());
    std::string text(static_cast<std::size_t>(lseek(fileno(file), 0, SEEK_END)), '\0');
    lseek(fileno(file), 0, SEEK_SET);
    EXPECT_EQ(read(fileno(file), text.data(), text.size()), static_cast<ssize_t>(text.size()));
    std::fclose(file);
    return text;
}

const Position kPosition{"tour.txt", 12};

TEST(Output, AResultAsTextIsItsLines) {
    EXPECT_EQ(written(Output::Form::text,
                      [](Output& p_objOutput) {
                          p_objOutput.result(kPosition, "dump 0", {true, "", {{"a", 1}}, {"one", "two"}});
                      }),
              "one\ntwo\n");
}

TEST(Output, AResultWithoutLinesIsItsDataOnOneLine) {
    EXPECT_EQ(
        written(Output::Form::text,
                [](Output& p_objOutput) {
                    p_objOutput.result(kPosition, "getZoomValue", {true, "", {{"position", 7}, {"text", "x"}}, {}});
                    p_objOutput.result(kPosition, "uinit", {});
                }),
        "getZoomValue: position=7 text=x\nuinit: ok\n");
}

TEST(Output, AFailedResultSaysSo) {
    EXPECT_EQ(written(Output::Form::text,
                      [](Output& p_objOutput) { p_objOutput.result(kPosition, "init", Result::failed("no")); }),
              "FAILED: init\n");
}

TEST(Output, AResultAsJsonIsOneObjectOnOneLine) {
    const std::string text = written(Output::Form::jsonLines, [](Output& p_objOutput) {
        p_objOutput.result(kPosition, "echo \"a\nb\"", {true, "", {{"text", "a\nb"}}, {"a\nb"}});
    });
    EXPECT_EQ(std::count(text.begin(), text.end(), '\n'), 1);
    const Json line = Json::parse(text);
    EXPECT_EQ(line["type"], "result");
    EXPECT_EQ(line["source"], "tour.txt");
    EXPECT_EQ(line["line"], 12);
    EXPECT_EQ(line["ok"], true);
    EXPECT_EQ(line["data"]["text"], "a\nb");
    EXPECT_FALSE(line.contains("error"));
}

TEST(Output, AFailedResultAsJsonCarriesItsError) {
    const Json line = Json::parse(written(Output::Form::jsonLines, [](Output& p_objOutput) {
        p_objOutput.result(kPosition, "init", Result::failed("no module", {{"x", 1}}));
    }));
    EXPECT_EQ(line["ok"], false);
    EXPECT_EQ(line["error"], "no module");
    EXPECT_EQ(line["data"]["x"], 1);
}

TEST(Output, BytesThatAreNoUtf8StayValidJson) {
    const Json line = Json::parse(written(Output::Form::jsonLines, [](Output& p_objOutput) {
        p_objOutput.result(kPosition, "echo \xFF", {true, "", {{"text", "\xFF\xFE"}}, {}});
    }));
    EXPECT_EQ(line["data"]["text"], "\xEF\xBF\xBD\xEF\xBF\xBD");
}

TEST(Output, BytesThatAreNoUtf8AreShownAsText) {
    EXPECT_EQ(written(Output::Form::text,
                      [](Output& p_objOutput) {
                          p_objOutput.result(kPosition, "get", {true, "", {{"list", {"\xFF"}}}, {}});
                      }),
              "get: list=[\"\xEF\xBF\xBD\"]\n");
}

TEST(Output, ControlBytesDoNotReachTheTerminal) {
    EXPECT_THAT(written(Output::Form::text,
                        [](Output& p_objOutput) {
                            p_objOutput.result(kPosition, "echo", {true, "", Json::object(), {"\x1B[31mred"}});
                        }),
                HasSubstr("\\x1B[31mred"));
}

TEST(Output, CommandsAreShownInTextOnlyAndTheSummaryInJsonOnly) {
    const auto both = [](Output& p_objOutput) {
        p_objOutput.command("set 34 60");
        p_objOutput.summary(3, 1, 1);
    };
    EXPECT_EQ(written(Output::Form::text, both), "> set 34 60\n");
    EXPECT_EQ(written(Output::Form::jsonLines, both),
              "{\"type\":\"summary\",\"commands\":3,\"failed\":1,\"status\":1}\n");
}

TEST(Output, TranscriptLinesHaveTheirPartsInJson) {
    const auto line = [](Output& p_objOutput) { p_objOutput.transcript("ia ch0 set 34 60 = 0", {{"command", 34}}); };
    EXPECT_EQ(written(Output::Form::text, line), "    ia ch0 set 34 60 = 0\n");
    EXPECT_EQ(written(Output::Form::jsonLines, line), "{\"type\":\"transcript\",\"command\":34}\n");
}

TEST(Output, AFailedWriteIsNoted) {
    const int full = open("/dev/full", O_WRONLY | O_CLOEXEC);
    Output output(full, Output::Form::text);
    EXPECT_TRUE(output.isWhole());
    output.command("x");
    EXPECT_FALSE(output.isWhole());
    close(full);
}

TEST(Output, APositionNamesTheLineOrTheCommand) {
    EXPECT_EQ((Position{"tour.txt", 12}.text()), "tour.txt:12");
    EXPECT_EQ((Position{"command", 2}.text()), "command 2");
}

}  // namespace
}  // namespace sensorctl
