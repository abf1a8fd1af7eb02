// The prompt, on a pseudo-terminal.
#include "tests/unit/sensorctl/ProgramRun.h"
#include "tests/unit/sensorctl/Terminal.h"

#include <gmock/gmock.h>

#include <csignal>

namespace {

using testing::HasSubstr;
using testing::Not;

const char kPrompt[] = "sensorctl> ";
const char kControlC[] = "\x03";
const char kControlD[] = "\x04";
const char kUp[] = "\x1b[A";
const char kHistory[] = "/.local/state/sensorctl/history";

class Prompt : public testing::Test {
protected:
    // At the first prompt.
    std::unique_ptr<Terminal> start(std::vector<std::string> p_vecOptions = {}) {
        p_vecOptions.insert(p_vecOptions.begin(), {"--root", m_objTree.path(), "--library-output", "none"});
        auto terminal = std::make_unique<Terminal>(p_vecOptions, m_objHome.path());
        terminal->untilPrompt(kPrompt);
        return terminal;
    }

    const DeviceTree m_objTree;
    const TestRoot m_objHome;
};

TEST_F(Prompt, CommandsAreRunLineByLine) {
    const auto terminal = start();
    terminal->type("init\r");
    EXPECT_THAT(terminal->untilPrompt(kPrompt), HasSubstr("init: channel=1"));
    terminal->type("set brightness 60\r");
    EXPECT_THAT(terminal->untilPrompt(kPrompt), HasSubstr("set KEY_BRIGHTNESS (34) = 60"));
    terminal->type("quit\r");
    EXPECT_EQ(terminal->finish(), 0);
}

TEST_F(Prompt, ACommandThatFailsDoesNotEndTheSession) {
    const auto terminal = start();
    terminal->type("frobnicate\r");
    EXPECT_THAT(terminal->untilPrompt(kPrompt), HasSubstr("prompt:1: unknown command \"frobnicate\""));
    terminal->type("echo still here\r");
    terminal->until("\nstill here");
    terminal->untilPrompt(kPrompt);
    terminal->type(kControlD);
    EXPECT_EQ(terminal->finish(), 1);
}

TEST_F(Prompt, TabCompletesCommandsKeysAndValues) {
    const auto terminal = start();
    terminal->type("init\r");
    terminal->untilPrompt(kPrompt);
    terminal->type("set brig\t");
    terminal->until("brightness ");
    terminal->type("61\r");
    terminal->until("= 61");
    terminal->untilPrompt(kPrompt);
    terminal->type("set light_ty\t");
    terminal->until("light_type ");
    terminal->type("\t");
    EXPECT_THAT(terminal->until("2"), HasSubstr("\n0  1  2"));
    terminal->type(kControlC);
    terminal->untilPrompt(kPrompt);
    terminal->type("scene l\t0.5\r");
    terminal->until("lux=0.5");
}

TEST_F(Prompt, TabCorrectsTheCaseAndListsWhatIsPossible) {
    const auto terminal = start();
    terminal->type("SHUT\t");
    terminal->until("shutter ");
    terminal->type(kControlC);
    terminal->untilPrompt(kPrompt);
    terminal->type("get IR_MAN\t");
    terminal->until("ir_manual_strg_");
    terminal->type("\t");
    const std::string list = terminal->until("get ir_manual_strg_");
    EXPECT_THAT(list, HasSubstr("ir_manual_strg_far"));
    EXPECT_THAT(list, HasSubstr("ir_manual_strg_near_intell"));
    EXPECT_THAT(list, Not(HasSubstr("ir_mode")));
}

TEST_F(Prompt, CompletionLeavesNoTraceAtTheDriver) {
    const auto terminal = start();
    terminal->type("init\r");
    terminal->untilPrompt(kPrompt);
    terminal->type("transcript clear\r");
    terminal->untilPrompt(kPrompt);
    terminal->type("set max_shutt\t\t");
    terminal->until("28");  // the values to choose from
    terminal->type(kControlC);
    terminal->until("^C\n");
    terminal->untilPrompt(kPrompt);
    terminal->type("transcript\r");
    EXPECT_THAT(terminal->untilPrompt(kPrompt), HasSubstr("\n0 of "));
}

TEST_F(Prompt, ControlCDiscardsTheLine) {
    const auto terminal = start();
    terminal->type("quit");
    terminal->until("quit");
    terminal->type(kControlC);
    terminal->until("^C\n");
    terminal->untilPrompt(kPrompt);
    terminal->type("echo here\r");
    terminal->until("\nhere");
    terminal->untilPrompt(kPrompt);
    terminal->type(kControlD);
    EXPECT_EQ(terminal->finish(), 0);
}

TEST_F(Prompt, ControlCEndsTheCommandThatIsRunning) {
    const auto terminal = start({"--realtime", "--trace"});
    terminal->type("wait 600000\r");
    terminal->until("\n> wait 600000");
    terminal->type(kControlC);
    terminal->until("wait: clock=");
    terminal->untilPrompt(kPrompt);
    terminal->type("quit\r");
    EXPECT_EQ(terminal->finish(), 0);
}

TEST_F(Prompt, WhatWasTypedComesBackInTheNextSession) {
    {
        const auto terminal = start();
        terminal->type("echo first\r");
        terminal->untilPrompt(kPrompt);
        terminal->type("echo second\r");
        terminal->untilPrompt(kPrompt);
        terminal->type("   \r");
        terminal->untilPrompt(kPrompt);
        terminal->type(kUp);
        terminal->until("echo second");
        terminal->type("\r");
        terminal->untilPrompt(kPrompt);
        terminal->type(kControlD);
        terminal->finish();
    }
    EXPECT_EQ(m_objHome.read(kHistory), "echo first\necho second\n");
    const auto terminal = start();
    terminal->type(kUp);
    terminal->until("echo second");
    terminal->type(kUp);
    terminal->until("first");
    terminal->type("\r");
    terminal->until("\nfirst");
}

TEST_F(Prompt, NothingOfTheUserIsKeptInTheDeviceRoot) {
    Terminal terminal({"--root", m_objTree.path(), "--library-output", "none"}, m_objTree.path());
    terminal.untilPrompt(kPrompt);
    terminal.type("echo secret\r");
    terminal.untilPrompt(kPrompt);
    terminal.type(kControlD);
    EXPECT_EQ(terminal.finish(), 0);
    EXPECT_FALSE(m_objTree.exists("/.local"));
}

TEST_F(Prompt, ATerminalThatGoesAwayEndsTheSession) {
    const auto terminal = start();
    terminal->type("echo kept\r");
    terminal->until("\nkept");
    terminal->untilPrompt(kPrompt);
    terminal->signal(SIGTERM);
    EXPECT_EQ(terminal->finish(), 128 + SIGTERM);
    EXPECT_EQ(m_objHome.read(kHistory), "echo kept\n");
}

}  // namespace
