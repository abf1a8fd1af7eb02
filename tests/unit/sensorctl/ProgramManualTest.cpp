// Help, manual page, the page in docs/ and the completion of bash: they say what the program does.
#include "apps/sensorctl/HelpTexts.h"
#include "apps/sensorctl/Options.h"
#include "apps/sensorctl/Shared.h"
#include "apps/sensorctl/Usage.h"
#include "tests/unit/sensorctl/AllCommands.h"
#include "tests/unit/sensorctl/ProgramRun.h"

#include <gmock/gmock.h>
#include <sys/wait.h>

#include <cstdio>
#include <fstream>
#include <iterator>
#include <set>

namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

std::string sourceFile(const std::string& p_strName) {
    std::ifstream file(SENSORCTL_SOURCE "/" + p_strName, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

void replaceAll(std::string& p_strText, const std::string& p_strFrom, const std::string& p_strTo) {
    for (std::size_t at = 0; (at = p_strText.find(p_strFrom, at)) != std::string::npos; at += p_strTo.size()) {
        p_strText.replace(at, p_strFrom.size(), p_strTo);
    }
}

// The lines of the manual page without its markup.
std::vector<std::string> manualLines() {
    std::vector<std::string> lines;
    for (std::string line : sensorctl::linesOf(sourceFile("apps/sensorctl/sensorctl.1"))) {
        for (const char* start : {".B ", ".SS ", ".SH "}) {
            if (sensorctl::startsWith(line, start)) {
                line.erase(0, std::string(start).size());
                if ('"' == line.front() && '"' == line.back()) {
                    line = line.substr(1, line.size() - 2);
                    replaceAll(line, "\"\"", "\"");
                }
            }
        }
        replaceAll(line, "\\-", "-");
        replaceAll(line, "\\&", "");
        replaceAll(line, "\\e", "\\");
        lines.push_back(line);
    }
    return lines;
}

struct Output {
    int nStatus;
    std::string strText;
};

// Runs a command of the shell; standard error comes with its output.
Output shell(const std::string& p_strCommand) {
    std::FILE* const pipe = popen(("{ " + p_strCommand + "; } 2>&1").c_str(), "r");
    Output output{-1, ""};
    char buffer[4096];
    for (std::size_t count = 0; nullptr != pipe && (count = fread(buffer, 1, sizeof(buffer), pipe)) > 0;) {
        output.strText.append(buffer, count);
    }
    const int waited = nullptr == pipe ? -1 : pclose(pipe);
    output.nStatus = WIFEXITED(waited) ? WEXITSTATUS(waited) : -1;
    return output;
}

TEST(ProgramManual, EveryCommandHasAHelpTextAndEveryHelpTextACommand) {
    const AllCommands commands;
    std::set<std::string> described;
    for (const sensorctl::HelpText& text : sensorctl::helpTexts()) {
        EXPECT_TRUE(described.insert(text.szCommand).second) << "two texts for " << text.szCommand;
        EXPECT_EQ(commands.table().find(text.szCommand).strName, text.szCommand);
    }
    for (const sensorctl::Command& command : commands.table().all()) {
        EXPECT_EQ(described.count(command.strName), 1u) << command.strName;
        EXPECT_FALSE(command.strSummary.empty()) << command.strName;
    }
}

class ExampleOf : public testing::TestWithParam<sensorctl::HelpText> {};

TEST_P(ExampleOf, UsesTheCommandAndWorksAsItStands) {
    const DeviceTree tree;
    const ProgramResult run = runScript(tree, std::string(GetParam().szExample) + "\n", {"--library-output", "none"});
    EXPECT_EQ(run.nStatus, 0) << GetParam().szExample << "\n" << run.strErrors;
    bool used = false;
    for (const std::string& line : sensorctl::linesOf(GetParam().szExample)) {
        used = used || sensorctl::startsWith(line + " ", std::string(GetParam().szCommand) + " ") ||
               sensorctl::startsWith(line, std::string("expect fail ") + GetParam().szCommand);
    }
    EXPECT_TRUE(used);
}

INSTANTIATE_TEST_SUITE_P(Program, ExampleOf, testing::ValuesIn(sensorctl::helpTexts()),
                         [](const auto& p_stInfo) { return std::string(p_stInfo.param.szCommand); });

TEST(ProgramManual, HelpForACommandHasSynopsisMeaningAndExample) {
    const DeviceTree tree;
    const std::string text = runScript(tree, "help diff\n").strOutput;
    EXPECT_THAT(text, HasSubstr("diff memory|memory:N|flash|flash:N|factory|N"));
    EXPECT_THAT(text, HasSubstr("in which values two parameter sets differ"));
    EXPECT_THAT(text, HasSubstr("memory and flash alone mean the current scheme."));
    EXPECT_THAT(text, HasSubstr("\n  Example:\n      init\n      set brightness 60\n      diff memory flash\n"));
    const nlohmann::json data = lastData(tree, "help uinit\n");
    EXPECT_EQ(data["example"][0], "init");
    EXPECT_EQ(data["details"], "What was not stored is lost.");
}

TEST(ProgramManual, ThePageHasEveryWayToWriteACommandWithItsMeaning) {
    const AllCommands commands;
    const std::vector<std::string> lines = manualLines();
    for (const sensorctl::Command& command : commands.table().all()) {
        for (const std::string& way : sensorctl::waysOf(command)) {
            EXPECT_THAT(lines, Contains(way));
        }
        EXPECT_THAT(lines, Contains(command.strSummary)) << command.strName;
        EXPECT_THAT(lines, Contains(command.strGroup)) << command.strName;
        const std::string details = sensorctl::findHelpText(command.strName)->szDetails;
        if (!details.empty()) {
            EXPECT_THAT(lines, Contains(details)) << command.strName;
        }
    }
}

TEST(ProgramManual, ThePageHasNoCommandThatTheProgramDoesNotHave) {
    const AllCommands commands;
    std::set<std::string> ways;
    for (const sensorctl::Command& command : commands.table().all()) {
        for (const std::string& way : sensorctl::waysOf(command)) {
            ways.insert(way);
        }
    }
    const std::string page = sourceFile("apps/sensorctl/sensorctl.1");
    const std::size_t start = page.find(".SH COMMANDS\n");
    const std::vector<std::string> source =
        sensorctl::linesOf(page.substr(start, page.find(".SH EXIT STATUS") - start));
    std::size_t found = 0;
    for (const std::string& line : source) {
        found += sensorctl::startsWith(line, ".B ") ? 1 : 0;
    }
    EXPECT_EQ(found, ways.size());
}

TEST(ProgramManual, EveryOptionStandsInThePageInHelpAndInTheDocuments) {
    const std::vector<std::string> lines = manualLines();
    const std::string document = sourceFile("docs/sensorctl.md");
    const std::string help = runProgram({"--help"}).strOutput;
    ASSERT_GT(sensorctl::optionList().size(), 10u);
    for (const sensorctl::OptionInfo& option : sensorctl::optionList()) {
        const std::string usage = option.strName + (option.strValue.empty() ? "" : " " + option.strValue);
        EXPECT_THAT(lines, Contains(usage));
        EXPECT_THAT(document, HasSubstr("`" + usage + "`"));
        EXPECT_THAT(help, HasSubstr(usage));
    }
}

TEST(ProgramManual, TheFormatterTakesThePageWithoutAWarning) {
    const std::string page = SENSORCTL_SOURCE "/apps/sensorctl/sensorctl.1";
    const Output checked = shell("groff -ww -man -Tutf8 -z '" + page + "'");
    EXPECT_EQ(checked.nStatus, 0);
    EXPECT_EQ(checked.strText, "");
}

TEST(ProgramManual, TheDocumentsHaveEveryCommandAndItsWords) {
    const AllCommands commands;
    const std::string document = sourceFile("docs/sensorctl.md");
    for (const sensorctl::Command& command : commands.table().all()) {
        EXPECT_THAT(document, testing::ContainsRegex("`" + command.strName + "[` ]"));
        for (const std::string& way : sensorctl::waysOf(command)) {
            const std::vector<sensorctl::UsageWord> words = sensorctl::wordsOfWay(way);
            const bool sub = !words.empty() && words[0].vecKinds.empty() && 1 == words[0].vecLiterals.size() &&
                             0 == words[0].nLeftOut;
            if (sub) {
                const std::string written = command.strName + " " + words[0].vecLiterals[0];
                EXPECT_THAT(document, testing::ContainsRegex("`" + written + "[` |]")) << way;
            }
        }
    }
}

class Bash : public testing::Test {
protected:
    // The words that bash offers for the last of these.
    static std::vector<std::string> offered(const std::vector<std::string>& p_vecWords) {
        std::string script = "set -u\nsensorctl() { ";
        for (const std::string& word : programWords()) {
            script += "'" + word + "' ";
        }
        script += "\"$@\"; }\nsource '" SENSORCTL_SOURCE "/apps/sensorctl/completion/sensorctl.bash'\nCOMP_WORDS=(";
        for (const std::string& word : p_vecWords) {
            script += "'" + word + "' ";
        }
        script +=
            ")\nCOMP_CWORD=$((${#COMP_WORDS[@]} - 1))\nCOMPREPLY=()\n_sensorctl sensorctl\n"
            "printf '%s\\n' \"${COMPREPLY[@]}\"\n";
        const TestRoot folder;
        folder.write("/completion.bash", script);
        const Output output = shell("bash '" + folder.path() + "/completion.bash'");
        EXPECT_EQ(output.nStatus, 0) << output.strText;
        std::vector<std::string> words = sensorctl::linesOf(output.strText);
        return words == std::vector<std::string>{""} ? std::vector<std::string>() : words;
    }
};

TEST_F(Bash, OffersOptionsCommandsKeysAndFiles) {
    EXPECT_THAT(offered({"sensorctl", "--ro"}), ElementsAre("--root"));
    EXPECT_THAT(offered({"sensorctl", "--library-output", "std"}), ElementsAre("stderr", "stdout"));
    EXPECT_THAT(offered({"sensorctl", "sensorC"}), ElementsAre("sensorCheck"));
    EXPECT_THAT(offered({"sensorctl", "init", "--", "set", "brig"}), ElementsAre("brightness"));
    EXPECT_THAT(offered({"sensorctl", "scene", "am"}), ElementsAre("ambient"));
    EXPECT_THAT(offered({"sensorctl", "frobnicate", "x"}), IsEmpty());
    const TestRoot folder;
    folder.write("/a file.txt", "");
    EXPECT_THAT(offered({"sensorctl", "--script", folder.path() + "/a"}), ElementsAre(folder.path() + "/a file.txt"));
}

TEST_F(Bash, OffersEveryCommandWhenNothingHasBeenTyped) {
    const AllCommands commands;
    EXPECT_EQ(offered({"sensorctl", ""}).size(), commands.table().all().size());
}

TEST_F(Bash, IsRegisteredForTheProgram) {
    const Output output =
        shell("bash -c 'source " SENSORCTL_SOURCE "/apps/sensorctl/completion/sensorctl.bash; complete -p sensorctl'");
    EXPECT_EQ(output.strText, "complete -F _sensorctl sensorctl\n");
}

}  // namespace
