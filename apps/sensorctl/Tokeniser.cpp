#include "apps/sensorctl/Tokeniser.h"

#include "apps/sensorctl/Shared.h"

#include <cstdio>

namespace sensorctl {

namespace {

constexpr unsigned char kDelete = 0x7F;

// Walks over one line.
class Walk {
public:
    explicit Walk(const std::string& p_strLine) : m_strLine(p_strLine) {}

    bool skipToWord() {
        while (!atEnd() && (' ' == peek() || '\t' == peek())) {
            ++m_nAt;
        }
        return !atEnd() && '#' != peek();
    }

    std::string word() {
        std::string strWord;
        while (!atEnd() && ' ' != peek() && '\t' != peek()) {
            if ('"' == peek()) {
                doubleQuoted(strWord);
            } else if ('\'' == peek()) {
                singleQuoted(strWord);
            } else {
                strWord += next();
            }
        }
        return strWord;
    }

private:
    bool atEnd() const { return m_nAt >= m_strLine.size(); }
    char peek() const { return m_strLine[m_nAt]; }

    char next() {
        const auto byte = static_cast<unsigned char>(m_strLine[m_nAt]);
        if ((byte < 0x20 && '\t' != byte) || kDelete == byte) {
            char buffer[64];
            std::snprintf(buffer, sizeof(buffer), "byte 0x%02X in column %zu is not text", static_cast<unsigned>(byte),
                          m_nAt + 1);
            throw CommandError(buffer);
        }
        return m_strLine[m_nAt++];
    }

    [[noreturn]] static void openQuote(std::size_t p_nStart) {
        throw CommandError("the quote in column " + std::to_string(p_nStart + 1) + " is not closed");
    }

    void doubleQuoted(std::string& p_strWord) {
        const std::size_t start = m_nAt++;
        while (!atEnd() && '"' != peek()) {
            const char letter = next();
            p_strWord += '\\' == letter ? escape(start) : letter;
        }
        if (atEnd()) {
            openQuote(start);
        }
        ++m_nAt;
    }

    char escape(std::size_t p_nStart) {
        if (atEnd()) {
            openQuote(p_nStart);
        }
        const char letter = next();
        switch (letter) {
            case 'n':
                return '\n';
            case 't':
                return '\t';
            case '"':
            case '\\':
                return letter;
            default:
                throw CommandError("\\" + std::string(1, letter) + " in column " + std::to_string(m_nAt - 1) +
                                   " is not one of \\\" \\\\ \\n \\t");
        }
    }

    void singleQuoted(std::string& p_strWord) {
        const std::size_t start = m_nAt++;
        while (!atEnd() && '\'' != peek()) {
            p_strWord += next();
        }
        if (atEnd()) {
            openQuote(start);
        }
        ++m_nAt;
    }

    const std::string& m_strLine;
    std::size_t m_nAt = 0;
};

bool isPlain(const std::string& p_strWord) {
    return !p_strWord.empty() && '#' != p_strWord.front() &&
           std::string::npos == p_strWord.find_first_of(" \t\n\r\"'\\");
}

}  // namespace

std::vector<std::string> tokenise(const std::string& p_strLine) {
    const bool carriageReturn = !p_strLine.empty() && '\r' == p_strLine.back();
    const std::string line = carriageReturn ? p_strLine.substr(0, p_strLine.size() - 1) : p_strLine;
    std::vector<std::string> words;
    Walk walk(line);
    while (walk.skipToWord()) {
        words.push_back(walk.word());
    }
    return words;
}

std::string lineOfWords(const std::vector<std::string>& p_vecWords) {
    std::string line;
    for (const std::string& word : p_vecWords) {
        line += line.empty() ? "" : " ";
        if (isPlain(word)) {
            line += word;
            continue;
        }
        line += '"';
        for (const char letter : word) {
            switch (letter) {
                case '\n':
                    line += "\\n";
                    break;
                case '\t':
                    line += "\\t";
                    break;
                case '"':
                case '\\':
                    line += '\\';
                    line += letter;
                    break;
                default:
                    line += letter;
            }
        }
        line += '"';
    }
    return line;
}

}  // namespace sensorctl
