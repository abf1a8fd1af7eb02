// Commands typed at a terminal: a line that can be edited, with completion and the history of earlier sessions.
//
// Ctrl-C discards the line, Ctrl-D on an empty one ends the input. The terminal is in its ordinary state whenever next is
// not running. One object at a time; one thread.
#pragma once

#include "apps/sensorctl/CommandTable.h"
#include "apps/sensorctl/HistoryFile.h"
#include "apps/sensorctl/LineSource.h"

#include <cstdio>
#include <functional>
#include <memory>
#include <string>
#include <vector>

struct editline;
struct history;

namespace sensorctl {

class Prompt : public LineSource {
public:
    // The words that can stand where the second argument has been begun, behind the first.
    using Candidates = std::function<std::vector<std::string>(const Words&, const std::string&)>;

    // The descriptor must be a terminal; it is not closed. Throws std::system_error when it cannot be used.
    Prompt(int p_nTerminal, const HistoryFile& p_objHistory, Candidates p_fnCandidates);
    // Adds what was typed to the history.
    ~Prompt() override;
    Prompt(const Prompt&) = delete;
    Prompt& operator=(const Prompt&) = delete;

    bool next(Line& p_stLine) override;
    bool isConversation() const override { return true; }

    // --- For the line editor ---
    int readLetter(wchar_t& p_cLetter);
    unsigned char complete();

private:
    struct CloseFile {
        void operator()(std::FILE* p_pFile) const { std::fclose(p_pFile); }
    };
    using File = std::unique_ptr<std::FILE, CloseFile>;

    static File openCopy(int p_nDescriptor, const char* p_szMode);
    void remember(const std::string& p_strLine);
    void list(const std::vector<std::string>& p_vecWords) const;

    const int m_nTerminal;
    const HistoryFile m_objHistoryFile;
    const Candidates m_fnCandidates;
    const File m_pInput;
    const File m_pOutput;
    std::unique_ptr<editline, void (*)(editline*)> m_pEditor;
    std::unique_ptr<history, void (*)(history*)> m_pHistory;
    std::vector<std::string> m_vecTyped;  // in this session
    std::size_t m_nNumber = 0;
    bool m_bInterrupted = false;
};

}  // namespace sensorctl
