// Writes results and transcript lines to standard output, as text or as JSON lines.
//
// Every line is one write call. Any thread may call; a mutex keeps lines whole and in order. A write that fails is noted
// and everything after it is dropped.
#pragma once

#include "apps/sensorctl/Result.h"

#include <mutex>
#include <string>

namespace sensorctl {

// Where a command stands.
struct Position {
    std::string strSource;    // the script's name, "standard input" or "command"
    std::size_t nNumber = 0;  // line or command, from 1

    // "tour.txt:12", "command 2"
    std::string text() const;
};

class Output {
public:
    enum class Form { text, jsonLines };

    // Does not own the descriptor.
    Output(int p_nDescriptor, Form p_eForm) : m_nDescriptor(p_nDescriptor), m_eForm(p_eForm) {}

    // The command that is about to run (text only).
    void command(const std::string& p_strCommand);

    // One line of the transcript: as text, and its parts by name.
    void transcript(const std::string& p_strText, const Json& p_data);

    // Something that a command saw while it runs: as text, and its parts by name. JSON tells it apart by the type.
    void event(const char* p_szType, const std::string& p_strText, const Json& p_data);

    void result(const Position& p_stPosition, const std::string& p_strCommand, const Result& p_stResult);

    // The last line of a session (JSON only).
    void summary(std::size_t p_nCommands, std::size_t p_nFailed, int p_nStatus);

    // Whether everything so far has been written.
    bool isWhole() const;

private:
    void write(const std::string& p_strLines);
    void writeJson(const Json& p_data);

    const int m_nDescriptor;
    const Form m_eForm;
    mutable std::mutex m_objMutex;  // guards m_bFailed and the order of lines
    bool m_bFailed = false;
};

}  // namespace sensorctl
