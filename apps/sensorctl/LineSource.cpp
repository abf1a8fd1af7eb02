#include "apps/sensorctl/LineSource.h"

#include "apps/sensorctl/Interrupt.h"
#include "apps/sensorctl/Tokeniser.h"

#include <unistd.h>

#include <algorithm>

namespace sensorctl {

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
    p_stLine = {{"command", m_nNext}, lineOfWords(words), "", words};
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
    m_nNumber += found ? 1 : 0;
    return found && 0 == interruptSignal();
}

bool StreamLines::fill() {
    constexpr std::size_t kPiece = 65536;  // bytes of one read
    if (m_nUsed < m_strBuffer.size()) {
        return true;
    }
    m_strBuffer.resize(kPiece);
    m_nUsed = 0;
    const ssize_t count = waitForInput(m_nDescriptor) ? read(m_nDescriptor, m_strBuffer.data(), kPiece) : 0;
    m_strBuffer.resize(count > 0 ? static_cast<std::size_t>(count) : 0);
    return count > 0;
}

}  // namespace sensorctl
