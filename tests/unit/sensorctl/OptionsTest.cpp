#include "apps/sensorctl/Options.h"

#include "apps/sensorctl/ClockText.h"

#include <gmock/gmock.h>

#include <filesystem>

namespace sensorctl {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

ParsedOptions parse(std::vector<std::string> p_vecArguments) {
    p_vecArguments.insert(p_vecArguments.begin(), {"--root", "."});
    return parseOptions(p_vecArguments, nullptr);
}

std::string refusalOfOptions(const std::vector<std::string>& p_vecArguments) {
    const ParsedOptions parsed = parse(p_vecArguments);
    EXPECT_EQ(parsed.nStatus, kUsage);
    EXPECT_FALSE(parsed.options);
    return parsed.strText;
}

TEST(Options, TheDefaultsAreAHeldClockChannelOneAndText) {
    const ParsedOptions parsed = parse({});
    ASSERT_TRUE(parsed.options);
    EXPECT_EQ(parsed.options->nChannel, 1);
    EXPECT_FALSE(parsed.options->bRealTime);
    EXPECT_FALSE(parsed.options->bJson);
    EXPECT_FALSE(parsed.options->bTrace);
    EXPECT_FALSE(parsed.options->bKeepGoing);
    EXPECT_FALSE(parsed.options->debugLevel);
    EXPECT_EQ(clockText(parsed.options->stStart), "2024-05-01 12:00:00");
    EXPECT_EQ(parsed.options->eLibraryOutput, LibraryOutput::Target::standardError);
    EXPECT_THAT(parsed.options->vecCommands, IsEmpty());
}

TEST(Options, EachOptionReachesItsField) {
    const ParsedOptions parsed = parse({"--channel", "2", "--debug-level=6", "--trace", "--json", "--keep-going",
                                        "--at", "2024-12-24 18:00", "--library-output", "none", "--script", "x.txt"});
    ASSERT_TRUE(parsed.options) << parsed.strText;
    EXPECT_EQ(parsed.options->nChannel, 2);
    EXPECT_EQ(parsed.options->debugLevel, 6);
    EXPECT_TRUE(parsed.options->bTrace);
    EXPECT_TRUE(parsed.options->bJson);
    EXPECT_TRUE(parsed.options->bKeepGoing);
    EXPECT_EQ(clockText(parsed.options->stStart), "2024-12-24 18:00:00");
    EXPECT_EQ(parsed.options->eLibraryOutput, LibraryOutput::Target::nowhere);
    EXPECT_EQ(parsed.options->strScript, "x.txt");
    EXPECT_TRUE(parse({"--realtime"}).options->bRealTime);
    EXPECT_EQ(parse({"--library-output=stdout"}).options->eLibraryOutput, LibraryOutput::Target::standardOutput);
}

TEST(Options, ASessionCanBeRecordedWhereverItsCommandsComeFrom) {
    EXPECT_EQ(parse({}).options->strRecord, "");
    EXPECT_EQ(parse({"--record", "r.txt", "init"}).options->strRecord, "r.txt");
    EXPECT_EQ(parse({"--record", "r.txt", "--script", "s.txt"}).options->strRecord, "r.txt");
}

TEST(Options, TheListSaysWhatStandsBehindEach) {
    const auto valueOf = [](const std::string& p_strName) {
        for (const OptionInfo& option : optionList()) {
            if (option.strName == p_strName) {
                return option.strValue;
            }
        }
        return std::string("missing");
    };
    EXPECT_EQ(valueOf("--root"), "DIR");
    EXPECT_EQ(valueOf("--channel"), "N");
    EXPECT_EQ(valueOf("--json"), "");
    EXPECT_EQ(valueOf("--help"), "");
    EXPECT_EQ(valueOf("--version"), "");
    EXPECT_EQ(optionList().back().strName, "--library-output");
    EXPECT_THAT(optionList().back().vecChoices, ElementsAre("stdout", "stderr", "none"));
}

TEST(Options, CommandsBeginAtTheFirstWordThatIsNoOption) {
    const ParsedOptions parsed = parse({"--json", "set", "34", "-5", "--", "scheme", "--trace"});
    ASSERT_TRUE(parsed.options) << parsed.strText;
    EXPECT_TRUE(parsed.options->bJson);
    EXPECT_FALSE(parsed.options->bTrace);
    EXPECT_THAT(parsed.options->vecCommands, ElementsAre("set", "34", "-5", "--", "scheme", "--trace"));
}

TEST(Options, ASeparatorMayStandBeforeTheFirstCommand) {
    const ParsedOptions parsed = parse({"--json", "--", "init"});
    ASSERT_TRUE(parsed.options) << parsed.strText;
    EXPECT_THAT(parsed.options->vecCommands, ElementsAre("init"));
}

TEST(Options, TheEnvironmentNamesTheRootUnlessTheOptionDoes) {
    EXPECT_EQ(parseOptions({}, ".").options->strRoot, ".");
    std::filesystem::create_directories("other-root");
    EXPECT_EQ(parseOptions({"--root", "other-root"}, ".").options->strRoot, "other-root");
    std::filesystem::remove("other-root");
}

TEST(Options, WithoutARootNothingRuns) {
    EXPECT_THAT(parseOptions({"init"}, nullptr).strText, HasSubstr("no device root"));
    EXPECT_THAT(parseOptions({"init"}, "").strText, HasSubstr("no device root"));
    EXPECT_EQ(parseOptions({"init"}, nullptr).nStatus, kUsage);
}

TEST(Options, TheRootOfTheMachineIsRefusedUnderEveryName) {
    for (const char* root : {"/", "//", "/.", "/../", "/tmp/.."}) {
        EXPECT_THAT(parseOptions({"--root", root, "init"}, nullptr).strText, HasSubstr("must not be /")) << root;
    }
}

TEST(Options, ARootThatIsNoDirectoryIsRefused) {
    EXPECT_THAT(parseOptions({"--root", "missing-folder"}, nullptr).strText, HasSubstr("is not a directory"));
    EXPECT_THAT(parseOptions({"--root", "/dev/null"}, nullptr).strText, HasSubstr("is not a directory"));
}

TEST(Options, AnUnknownOptionIsRefusedWithTheNearestOne) {
    EXPECT_THAT(refusalOfOptions({"--jsn"}), HasSubstr("unknown option \"--jsn\"; did you mean \"--json\"?"));
    EXPECT_THAT(refusalOfOptions({"--chanel=2"}), HasSubstr("did you mean \"--channel\"?"));
    EXPECT_THAT(refusalOfOptions({"-x"}), HasSubstr("unknown option \"-x\""));
}

TEST(Options, BadValuesAreRefused) {
    EXPECT_THAT(refusalOfOptions({"--channel", "0"}), HasSubstr("channel"));
    EXPECT_THAT(refusalOfOptions({"--channel", "5"}), HasSubstr("channel"));
    EXPECT_THAT(refusalOfOptions({"--channel", "two"}), HasSubstr("channel"));
    EXPECT_THAT(refusalOfOptions({"--debug-level", "10"}), HasSubstr("debug-level"));
    EXPECT_THAT(refusalOfOptions({"--at", "noon"}), HasSubstr("a time is"));
    EXPECT_THAT(refusalOfOptions({"--library-output", "printer"}), HasSubstr("library-output"));
    EXPECT_THAT(refusalOfOptions({"--script"}), HasSubstr("script"));
    EXPECT_THAT(refusalOfOptions({"--script", ""}), HasSubstr("--script needs the name of a file"));
    EXPECT_THAT(refusalOfOptions({"--record", "", "init"}), HasSubstr("--record needs the name of a file"));
}

TEST(Options, OptionsThatContradictEachOtherAreRefused) {
    EXPECT_THAT(refusalOfOptions({"--script", "x", "init"}), HasSubstr("either from the arguments or from --script"));
    EXPECT_THAT(refusalOfOptions({"--realtime", "--at", "12:00"}), HasSubstr("--realtime"));
    EXPECT_THAT(refusalOfOptions({"--json", "--library-output", "stdout"}), HasSubstr("JSON"));
}

TEST(Options, HelpAndVersionNeedNoRoot) {
    const ParsedOptions help = parseOptions({"--help"}, nullptr);
    EXPECT_EQ(help.nStatus, kAllOk);
    EXPECT_FALSE(help.options);
    EXPECT_THAT(help.strText, HasSubstr("--keep-going"));
    EXPECT_THAT(help.strText, HasSubstr("Exit status"));
    const ParsedOptions version = parseOptions({"--version"}, nullptr);
    EXPECT_EQ(version.nStatus, kAllOk);
    EXPECT_THAT(version.strText, testing::MatchesRegex("sensorctl [0-9.]+\n"));
}

}  // namespace
}  // namespace sensorctl
