#include "apps/sensorctl/LineSource.h"

#include "apps/sensorctl/Interrupt.h"
#include "apps/sensorctl/Shared.h"
#include "apps/sensorctl/Tokeniser.h"

#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>

namespace sensorctl {

namespace {

// What keeps a line from standing in a script; empty when nothing does.
std::string problemOf(const std::string& p_strLine) {
    try {
        tokenise(p_strLine);
        return {};
    } catch (const CommandError& error) {
        return error.what();
    }
}

}  // namespace

ArgumentLines::ArgumentLines(const std::vector<std::string>& p_vecArguments) {
    std::vector<std::string> command;
    for (const std::string& argument : p_vecArguments) {
        if ("--" != argument) {
            command.push_back(argument);
        } else if (!command.empty()) {
            m_vecCommands.push_back(std::move(command));
            command.clear();
        }
    }
    if (!command.empty()) {
        m_vecCommands.push_back(std::move(command));
    }
}

bool ArgumentLines::next(Line& p_stLine) {
    if (m_nNext >= m_vecCommands.size()) {
        return false;
    }
    const std::vector<std::string>& words = m_vecCommands[m_nNext];
    ++m_nNext;
    const std::string line = lineOfWords(words);
    p_stLine = {{"command", m_nNext}, line, problemOf(line), words};
    return true;
}

bool StreamLines::next(Line& p_stLine) {
    p_stLine = {{m_strName, m_nNumber + 1}, "", "", std::nullopt};
    bool found = false;
    bool complete = false;
    while (!complete && fill()) {
        found = true;
        const std::size_t end = m_strBuffer.find('\n', m_nUsed);
        complete = std::string::npos != end;
        const std::size_t piece = (complete ? end : m_strBuffer.size()) - m_nUsed;
        const std::size_t room = kLongestLine - p_stLine.strText.size();
        p_stLine.strText.append(m_strBuffer, m_nUsed, std::min(piece, room));
        if (piece > room) {
            p_stLine.strProblem = "the line is longer than " + std::to_string(kLongestLine) + " bytes";
        }
        m_nUsed += piece + (complete ? 1 : 0);
    }
    if (0 != m_nError && !m_bErrorTold) {
        m_bErrorTold = true;
        found = true;
        p_stLine.strProblem = std::string("reading failed: ") + std::strerror(m_nError);
    }
    m_nNumber += found ? 1 : 0;
    return found && 0 == interruptSignal();
}

bool StreamLines::fill() {
    constexpr std::size_t kPiece = 65536;  // bytes of one read
    if (m_nUsed < m_strBuffer.size()) {
        return true;
    }
    if (0 != m_nError) {
        return false;
    }
    m_strBuffer.resize(kPiece);
    m_nUsed = 0;
    const ssize_t count = waitForInput(m_nDescriptor) ? read(m_nDescriptor, m_strBuffer.data(), kPiece) : 0;
    m_nError = count < 0 ? errno : 0;
    m_strBuffer.resize(count > 0 ? static_cast<std::size_t>(count) : 0);
    return count > 0;
}

}  // namespace sensorctl
