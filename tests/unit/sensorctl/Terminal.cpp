#include "tests/unit/sensorctl/Terminal.h"

#include "tests/unit/sensorctl/ProgramRun.h"

#include <gtest/gtest.h>
#include <poll.h>
#include <pty.h>
#include <sys/wait.h>
#include <termios.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <regex>
#include <stdexcept>

namespace {

constexpr int kDeadline = 60000;  // milliseconds; far above what any answer takes

std::string withoutEscapes(const std::string& p_strText) {
    static const std::regex escapes("\x1b\\[[0-9;?]*[A-Za-z]|\r");
    return std::regex_replace(p_strText, escapes, "");
}

}  // namespace

Terminal::Terminal(const std::vector<std::string>& p_vecArguments, const std::string& p_strHome) {
    const winsize size{50, 200, 0, 0};
    m_nChild = forkpty(&m_nTerminal, nullptr, nullptr, &size);
    if (0 == m_nChild) {
        setenv("TERM", "xterm", 1);
        setenv("HOME", p_strHome.c_str(), 1);
        for (const char* variable : {"SENSORCTL_HISTORY", "XDG_STATE_HOME", "EDITRC"}) {
            unsetenv(variable);
        }
        becomeProgram(p_vecArguments);
    }
    if (-1 == m_nChild) {
        throw std::runtime_error("cannot make a terminal");
    }
}

Terminal::~Terminal() {
    if (-1 != m_nChild) {
        kill(m_nChild, SIGKILL);
        waitpid(m_nChild, nullptr, 0);
    }
    close(m_nTerminal);
}

void Terminal::type(const std::string& p_strKeys) {
    EXPECT_EQ(write(m_nTerminal, p_strKeys.data(), p_strKeys.size()), static_cast<ssize_t>(p_strKeys.size()));
}

void Terminal::signal(int p_nSignal) {
    kill(m_nChild, p_nSignal);
}

// False at the end of the program, or when nothing comes for too long.
bool Terminal::readMore() {
    pollfd waited{m_nTerminal, POLLIN, 0};
    char buffer[4096];
    m_bLate = poll(&waited, 1, kDeadline) <= 0;
    const ssize_t count = m_bLate ? 0 : read(m_nTerminal, buffer, sizeof(buffer));
    m_strSeen.append(buffer, static_cast<std::size_t>(count > 0 ? count : 0));
    return count > 0;
}

std::string Terminal::until(const std::string& p_strText) {
    for (;;) {
        const std::string seen = withoutEscapes(m_strSeen);
        const std::size_t found = seen.find(p_strText);
        if (std::string::npos != found) {
            m_strSeen = seen.substr(found + p_strText.size());
            return seen.substr(0, found + p_strText.size());
        }
        if (!readMore()) {
            ADD_FAILURE() << "\"" << p_strText << "\" did not come; on the screen: " << seen;
            return seen;
        }
    }
}

// What is typed between the prompt's appearance and the terminal's switch to single keys would be handled a line at a time:
// an end of input among it gets lost.
std::string Terminal::untilPrompt(const std::string& p_strPrompt) {
    const std::string seen = until(p_strPrompt);
    const auto isByLine = [this] {
        termios mode{};
        return 0 == tcgetattr(m_nTerminal, &mode) && 0 != (mode.c_lflag & static_cast<tcflag_t>(ICANON));
    };
    constexpr int kLook = 1;  // milliseconds between two looks
    for (int waited = 0; isByLine(); waited += kLook) {
        if (waited >= kDeadline) {
            ADD_FAILURE() << "the prompt does not read single keys";
            break;
        }
        pollfd nothing{-1, 0, 0};
        poll(&nothing, 1, kLook);
    }
    return seen;
}

int Terminal::finish() {
    while (readMore()) {
    }
    if (m_bLate) {
        ADD_FAILURE() << "the program does not end; on the screen: " << withoutEscapes(m_strSeen);
        kill(m_nChild, SIGKILL);
    }
    int waited = 0;
    waitpid(m_nChild, &waited, 0);
    m_nChild = -1;
    return WIFEXITED(waited) ? WEXITSTATUS(waited) : 128 + WTERMSIG(waited);
}
