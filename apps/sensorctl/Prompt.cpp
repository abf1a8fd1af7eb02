#include "apps/sensorctl/Prompt.h"

#include "apps/sensorctl/Completion.h"
#include "apps/sensorctl/Interrupt.h"
#include "apps/sensorctl/Shared.h"

#include <fcntl.h>
#include <histedit.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <clocale>
#include <csignal>
#include <cwchar>
#include <system_error>

namespace sensorctl {

namespace {

char g_szPrompt[] = "sensorctl> ";

char* promptText(EditLine*) {
    return g_szPrompt;
}

Prompt& promptOf(EditLine* p_pEditor) {
    void* prompt = nullptr;
    el_get(p_pEditor, EL_CLIENTDATA, &prompt);
    return *static_cast<Prompt*>(prompt);
}

int readLetterFor(EditLine* p_pEditor, wchar_t* p_pLetter) {
    return promptOf(p_pEditor).readLetter(*p_pLetter);
}

unsigned char completeFor(EditLine* p_pEditor, wint_t) {
    return promptOf(p_pEditor).complete();
}

// A line up to the cursor: the words before the one that has been begun, and that one.
struct Begun {
    Words vecBefore;
    std::string strWord;
};

Begun takeApart(const std::string& p_strText) {
    Begun begun;
    for (const char letter : p_strText) {
        if (' ' != letter && '\t' != letter) {
            begun.strWord += letter;
        } else if (!begun.strWord.empty()) {
            begun.vecBefore.push_back(begun.strWord);
            begun.strWord.clear();
        }
    }
    return begun;
}

bool isOpen(const std::string& p_strWord) {
    return '/' == p_strWord.back() || '=' == p_strWord.back();
}

}  // namespace

Prompt::File Prompt::openCopy(int p_nDescriptor, const char* p_szMode) {
    const int copy = fcntl(p_nDescriptor, F_DUPFD_CLOEXEC, 0);
    std::FILE* const file = -1 == copy ? nullptr : fdopen(copy, p_szMode);
    if (nullptr == file) {
        const int error = errno;
        if (-1 != copy) {
            close(copy);
        }
        throw std::system_error(error, std::generic_category(), "the terminal");
    }
    return File(file);
}

Prompt::Prompt(int p_nTerminal, const HistoryFile& p_objHistory, Candidates p_fnCandidates)
    : m_nTerminal(p_nTerminal),
      m_objHistoryFile(p_objHistory),
      m_fnCandidates(std::move(p_fnCandidates)),
      m_pInput(openCopy(p_nTerminal, "r")),
      m_pOutput(openCopy(O_RDWR == (fcntl(p_nTerminal, F_GETFL) & O_ACCMODE) ? p_nTerminal : STDERR_FILENO, "w")),
      m_pEditor(nullptr, el_end),
      m_pHistory(history_init(), history_end) {
    std::setlocale(LC_CTYPE, "");
    m_pEditor.reset(el_init("sensorctl", m_pInput.get(), m_pOutput.get(), m_pOutput.get()));
    if (!m_pEditor || !m_pHistory) {
        throw std::system_error(ENOMEM, std::generic_category(), "the line editor");
    }
    HistEvent event;
    history(m_pHistory.get(), &event, H_SETSIZE, static_cast<int>(HistoryFile::kMostLines));
    history(m_pHistory.get(), &event, H_SETUNIQUE, 1);
    for (const std::string& line : m_objHistoryFile.load()) {
        history(m_pHistory.get(), &event, H_ENTER, line.c_str());
    }
    EditLine* const editor = m_pEditor.get();
    el_set(editor, EL_CLIENTDATA, this);
    el_set(editor, EL_PROMPT, promptText);
    el_set(editor, EL_EDITOR, "emacs");
    el_set(editor, EL_HIST, history, m_pHistory.get());
    el_set(editor, EL_GETCFN, readLetterFor);
    // The narrow form of this call copies both texts and never releases them.
    el_wset(editor, EL_ADDFN, L"complete-word", L"Complete the word", completeFor);
    el_set(editor, EL_BIND, "^I", "complete-word", nullptr);
    el_set(editor, EL_BIND, "^R", "em-inc-search-prev", nullptr);
    el_source(editor, nullptr);
}

Prompt::~Prompt() {
    m_objHistoryFile.append(m_vecTyped);
}

bool Prompt::next(Line& p_stLine) {
    do {
        m_bInterrupted = false;
        int count = 0;
        el_resize(m_pEditor.get());
        const char* const text = el_gets(m_pEditor.get(), &count);
        if (nullptr != text) {
            std::string line(text, std::char_traits<char>::length(text));
            line.erase(std::min(line.find('\n'), line.size()));
            ++m_nNumber;
            remember(line);
            p_stLine = {{"prompt", m_nNumber}, line, "", std::nullopt};
            return true;
        }
        // The line is left as it stands; what comes next begins on a line of its own.
        std::fputs(m_bInterrupted ? "^C\n" : "\n", m_pOutput.get());
        std::fflush(m_pOutput.get());
        if (m_bInterrupted) {
            forgetKeyboardInterrupt();
        }
    } while (m_bInterrupted && 0 == interruptSignal());
    return false;
}

void Prompt::remember(const std::string& p_strLine) {
    if (std::string::npos == p_strLine.find_first_not_of(" \t")) {
        return;
    }
    HistEvent event;
    history(m_pHistory.get(), &event, H_ENTER, p_strLine.c_str());
    if (m_vecTyped.empty() || m_vecTyped.back() != p_strLine) {
        m_vecTyped.push_back(p_strLine);
    }
}

int Prompt::readLetter(wchar_t& p_cLetter) {
    std::mbstate_t state{};
    for (;;) {
        if (!waitForInput(m_nTerminal)) {
            m_bInterrupted = true;
            errno = EINTR;
            return -1;
        }
        char byte = 0;
        const ssize_t count = read(m_nTerminal, &byte, 1);
        if (count <= 0) {
            return static_cast<int>(count);
        }
        constexpr std::size_t kMore = static_cast<std::size_t>(-2);  // the letter has further bytes
        const std::size_t used = std::mbrtowc(&p_cLetter, &byte, 1, &state);
        if (used <= 1) {
            return 1;
        }
        if (kMore != used) {  // no letter of this locale: as if it had not been typed
            state = std::mbstate_t{};
        }
    }
}

unsigned char Prompt::complete() {
    const LineInfo* const line = el_line(m_pEditor.get());
    const Begun begun = takeApart(std::string(line->buffer, line->cursor));
    if (std::string::npos != std::string(line->buffer, line->cursor).find_first_of("\"'#")) {
        return CC_ERROR;  // quotes and comments are written by hand
    }
    const std::vector<std::string> words = m_fnCandidates(begun.vecBefore, begun.strWord);
    if (words.empty()) {
        return CC_ERROR;
    }
    std::string completed = commonStart(words);
    const bool whole = 1 == words.size();
    if (!whole && completed.size() <= begun.strWord.size()) {
        list(words);
        return CC_REDISPLAY;
    }
    if (whole && !isOpen(completed)) {
        completed += ' ';
    }
    el_deletestr(m_pEditor.get(), static_cast<int>(begun.strWord.size()));
    return -1 == el_insertstr(m_pEditor.get(), completed.c_str()) ? CC_ERROR : CC_REFRESH;
}

// In columns below the line that is being edited.
void Prompt::list(const std::vector<std::string>& p_vecWords) const {
    constexpr std::size_t kGap = 2;
    constexpr std::size_t kUsualWidth = 80;
    winsize size{};
    const bool known = 0 == ioctl(m_nTerminal, TIOCGWINSZ, &size) && size.ws_col > 0;
    const std::size_t width = known ? size.ws_col : kUsualWidth;
    std::size_t longest = 0;
    for (const std::string& word : p_vecWords) {
        longest = std::max(longest, word.size());
    }
    const std::size_t columns = std::max<std::size_t>(1, width / (longest + kGap));
    const std::size_t rows = (p_vecWords.size() + columns - 1) / columns;
    std::string text = "\n";
    for (std::size_t row = 0; row < rows; ++row) {
        std::string line;
        for (std::size_t i = row; i < p_vecWords.size(); i += rows) {
            line.resize(i / rows * (longest + kGap), ' ');
            line += p_vecWords[i];
        }
        text += printable(line) + "\n";
    }
    std::fputs(text.c_str(), m_pOutput.get());
    std::fflush(m_pOutput.get());
}

}  // namespace sensorctl
