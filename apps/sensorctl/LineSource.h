// Where the commands of a session come from.
#pragma once

#include "apps/sensorctl/Output.h"

#include <optional>
#include <string>
#include <vector>

namespace sensorctl {

struct Line {
    Position stPosition;
    std::string strText;     // as it was written
    std::string strProblem;  // why the line cannot be used; empty when it can
    // The words, where they come apart already (the command line of a shell).
    std::optional<std::vector<std::string>> vecWords;
};

class LineSource {
public:
    virtual ~LineSource() = default;

    // The next line; false at the end.
    virtual bool next(Line& p_stLine) = 0;

    // Whether somebody types and reads: a command that fails does not end the session, and an interrupt from the keyboard
    // ends the command only.
    virtual bool isConversation() const { return false; }
};

// Commands in the arguments of the program, separated by arguments "--". One that could not stand in a script, because of
// a byte that is not text, is handed out with its problem.
class ArgumentLines : public LineSource {
public:
    explicit ArgumentLines(const std::vector<std::string>& p_vecArguments);
    bool next(Line& p_stLine) override;

private:
    std::vector<std::vector<std::string>> m_vecCommands;
    std::size_t m_nNext = 0;
};

// Lines of a file or of standard input. A line longer than kLongestLine is handed out cut, with its problem; what is left
// of it is skipped. A read that fails ends the lines; the last one that is handed out has that as its problem.
class StreamLines : public LineSource {
public:
    static constexpr std::size_t kLongestLine = 1024 * 1024;  // bytes; bounds what hostile input can make us hold

    // Reads from the descriptor until its end or an interrupt; closes nothing.
    StreamLines(int p_nDescriptor, const std::string& p_strName) : m_nDescriptor(p_nDescriptor), m_strName(p_strName) {}
    bool next(Line& p_stLine) override;

private:
    bool fill();

    const int m_nDescriptor;
    const std::string m_strName;
    std::string m_strBuffer;  // bytes read ahead
    std::size_t m_nUsed = 0;  // of m_strBuffer
    std::size_t m_nNumber = 0;
    int m_nError = 0;  // errno of the read that failed
    bool m_bErrorTold = false;
};

}  // namespace sensorctl
