#include "platform/linux/ShellPaths.h"

#include <algorithm>
#include <cstring>
#include <vector>

namespace {

constexpr const char* kRoots[] = {"/mnt", "/hd1", "/tmp"};
constexpr std::size_t kRootLength = 4;

bool oneOf(char p_cChar, const char* p_szSet) {
    return '\0' != p_cChar && nullptr != std::strchr(p_szSet, p_cChar);
}

bool continuesVariable(char p_cChar) {
    return (p_cChar >= 'a' && p_cChar <= 'z') || (p_cChar >= 'A' && p_cChar <= 'Z') ||
           (p_cChar >= '0' && p_cChar <= '9') || oneOf(p_cChar, "_.-+~@%") ||
           static_cast<unsigned char>(p_cChar) >= 0x80;
}

class Rewriting {
public:
    Rewriting(const std::string& p_strCommand, const std::string& p_strVariable)
        : m_strCommand(p_strCommand), m_strVariable(p_strVariable) {}

    std::string result() {
        while (m_nAt < m_strCommand.size()) {
            if (m_bPathStart && atCameraPath()) {
                putVariable();
                take(kRootLength);
                m_bPathStart = m_bWordStart = false;
            } else if (inside(Place::single)) {
                insideSingleQuotes();
            } else if (inside(Place::doubled)) {
                insideDoubleQuotes();
            } else {
                plain();
            }
        }
        return m_strResult;
    }

private:
    enum class Place { plain, single, doubled, substitution, backtick };

    bool inside(Place p_ePlace) const { return p_ePlace == m_vecPlaces.back(); }
    char here(std::size_t p_nOffset = 0) const {
        return m_nAt + p_nOffset < m_strCommand.size() ? m_strCommand[m_nAt + p_nOffset] : '\0';
    }

    void take(std::size_t p_nCount) {
        m_strResult.append(m_strCommand, m_nAt, p_nCount);
        m_nAt = std::min(m_nAt + p_nCount, m_strCommand.size());
    }

    bool atCameraPath() const {
        bool bRoot = false;
        for (const char* const szRoot : kRoots) {
            bRoot = bRoot || 0 == m_strCommand.compare(m_nAt, kRootLength, szRoot);
        }
        return bRoot && !continuesVariable(here(kRootLength));
    }

    void putVariable() {
        const std::string strQuoted = "\"$" + m_strVariable + "\"";
        m_strResult += inside(Place::single)    ? "'" + strQuoted + "'"
                       : inside(Place::doubled) ? "${" + m_strVariable + "}"
                                                : strQuoted;
    }

    void enter(Place p_ePlace, std::size_t p_nLength) {
        take(p_nLength);
        m_vecPlaces.push_back(p_ePlace);
    }

    void leave() {
        take(1);
        m_vecPlaces.pop_back();
    }

    // Quotes neither begin nor end a word; a substitution is a command of its own.
    void enterCommand(Place p_ePlace, std::size_t p_nLength) {
        enter(p_ePlace, p_nLength);
        m_bPathStart = m_bWordStart = true;
    }

    void leaveCommand() {
        leave();
        m_bPathStart = m_bWordStart = false;
    }

    void insideSingleQuotes() {
        if ('\'' == here()) {
            leave();
        } else {
            takeQuoted();
        }
    }

    void insideDoubleQuotes() {
        if ('"' == here()) {
            leave();
        } else if (!substitution()) {
            takeQuoted();
        }
    }

    void takeQuoted() {
        m_bPathStart = startsInsideWord();
        m_bWordStart = false;
        take(1);
    }

    // A path may begin behind this character although the word goes on.
    bool startsInsideWord() const {
        return oneOf(here(), "=:,") || ('-' == here() && m_nAt > 0 && ':' == m_strCommand[m_nAt - 1]);
    }

    // What double quotes do not hide.
    bool substitution() {
        if ('\\' == here()) {
            const bool bContinuation = '\n' == here(1);
            take(2);
            m_bPathStart = m_bPathStart && bContinuation;
            m_bWordStart = m_bWordStart && bContinuation;
        } else if ('$' == here() && '(' == here(1)) {
            enterCommand(Place::substitution, 2);
        } else if ('`' == here() && inside(Place::backtick)) {
            leaveCommand();
        } else if ('`' == here()) {
            enterCommand(Place::backtick, 1);
        } else {
            return false;
        }
        return true;
    }

    void plain() {
        if ('\'' == here() || '"' == here()) {
            enter('"' == here() ? Place::doubled : Place::single, 1);
            m_bWordStart = false;
        } else if (')' == here() && inside(Place::substitution)) {
            leaveCommand();
        } else if ('#' == here() && m_bWordStart) {
            take(std::min(m_strCommand.find('\n', m_nAt), m_strCommand.size()) - m_nAt);
        } else if (!substitution()) {
            m_bWordStart = oneOf(here(), " \t\n;&|()<>");
            m_bPathStart = m_bWordStart || startsInsideWord() || oneOf(here(), "{!");
            take(1);
        }
    }

    const std::string& m_strCommand;
    const std::string& m_strVariable;
    std::string m_strResult;
    std::size_t m_nAt = 0;
    bool m_bWordStart = true;  // a word would begin here
    bool m_bPathStart = true;  // an absolute path would
    std::vector<Place> m_vecPlaces{Place::plain};
};

}  // namespace

namespace platform {

std::string withRootInFront(const std::string& p_strCommand, const std::string& p_strVariable) {
    return Rewriting(p_strCommand, p_strVariable).result();
}

}  // namespace platform
