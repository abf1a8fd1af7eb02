#include "apps/camerad/program/Options.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

using camerad::kEnded;
using camerad::kUsage;
using camerad::ParsedProgramOptions;
using camerad::parseProgramOptions;
using camerad::ProgramOptions;
using testing::ElementsAre;
using testing::HasSubstr;

ParsedProgramOptions parse(const std::vector<std::string>& p_vecArguments, const char* p_szRoot = ".") {
    return parseProgramOptions(p_vecArguments, p_szRoot);
}

TEST(CameradOptions, ListensAtTheLoopbackUnlessToldOtherwise) {
    const ParsedProgramOptions parsed = parse({});
    ASSERT_TRUE(parsed.options) << parsed.strText;
    EXPECT_EQ(parsed.options->strAddress, "127.0.0.1");
    EXPECT_EQ(parsed.options->nPort, 8080);
    EXPECT_FALSE(parsed.options->usesTls());
    EXPECT_EQ(parsed.options->strRoot.front(), '/');
}

struct GoodRow {
    std::string strListen, strAddress;
    int nPort;
    bool bTls;
};

TEST(CameradOptions, ReadsAddressesOfEveryKind) {
    const std::vector<GoodRow> rows = {
        {"127.0.0.1:0", "127.0.0.1", 0, false},
        {"127.0.0.2", "127.0.0.2", 8080, false},
        {"localhost:99", "localhost", 99, false},
        {"::1", "::1", 8080, false},
        {"[::1]:99", "::1", 99, false},
        {"[::1]", "::1", 8080, false},
        {"0.0.0.0:443", "0.0.0.0", 443, true},
        {"::", "::", 8080, true},
        {"[fe80::1]:65535", "fe80::1", 65535, true},
        {"camera.lan:1", "camera.lan", 1, true},
    };
    for (const GoodRow& row : rows) {
        const ParsedProgramOptions parsed = parse({"--listen", row.strListen});
        ASSERT_TRUE(parsed.options) << row.strListen << ": " << parsed.strText;
        EXPECT_EQ(parsed.options->strAddress, row.strAddress) << row.strListen;
        EXPECT_EQ(parsed.options->nPort, row.nPort) << row.strListen;
        EXPECT_EQ(parsed.options->usesTls(), row.bTls) << row.strListen;
    }
}

TEST(CameradOptions, PlainHttpForOthersHasToBeAskedFor) {
    EXPECT_TRUE(parse({"--listen", "0.0.0.0"}).options->usesTls());
    EXPECT_FALSE(parse({"--listen", "0.0.0.0", "--insecure"}).options->usesTls());
}

TEST(CameradOptions, TakesSeveralNames) {
    EXPECT_THAT(parse({"--host", "a", "--host", "b"}).options->vecHosts, ElementsAre("a", "b"));
}

struct BadRow {
    std::vector<std::string> vecArguments;
    std::string strPart;
};

TEST(CameradOptions, SaysWhatIsWrong) {
    const std::vector<BadRow> rows = {
        {{"--listen", ""}, "no address"},
        {{"--listen", ":80"}, "no address"},
        {{"--listen", "8080"}, "no address"},
        {{"--listen", "127.0.0.1:"}, "no port"},
        {{"--listen", "127.0.0.1:x"}, "no port"},
        {{"--listen", "127.0.0.1:65536"}, "no port"},
        {{"--listen", "127.0.0.1:-1"}, "no port"},
        {{"--listen", "127.0.0.1:99999999999"}, "no port"},
        {{"--listen", "::1]:80"}, "[ADDRESS]:PORT"},
        {{"--listen", "[::1]80"}, "[ADDRESS]:PORT"},
        {{"--listen", "[]:80"}, "no address"},
        {{"--root", "/nowhere/at/all"}, "not a directory"},
        {{"--root", "/"}, "must not be /"},
        {{"--root", ""}, "no device root"},
        {{"--port-file", ""}, "--port-file"},
        {{"--set-password", ""}, "--set-password"},
        {{"--host", ""}, "--host"},
        {{"--frobnicate"}, "--frobnicate"},
        {{"word"}, "word"},
    };
    for (const BadRow& row : rows) {
        const ParsedProgramOptions parsed = parse(row.vecArguments);
        EXPECT_FALSE(parsed.options) << testing::PrintToString(row.vecArguments);
        EXPECT_EQ(parsed.nStatus, kUsage);
        EXPECT_THAT(parsed.strText, HasSubstr(row.strPart));
        EXPECT_THAT(parsed.strText, HasSubstr("--help"));
    }
}

TEST(CameradOptions, WithoutARootNothingIsStarted) {
    EXPECT_THAT(parse({}, nullptr).strText, HasSubstr("--root"));
}

TEST(CameradOptions, HelpAndVersionAreNoFailure) {
    EXPECT_EQ(parse({"--help"}, nullptr).nStatus, kEnded);
    EXPECT_THAT(parse({"--help"}, nullptr).strText, HasSubstr("--listen"));
    EXPECT_EQ(parse({"--version"}, nullptr).strText, "camerad " + camerad::programVersion() + "\n");
}

}  // namespace
