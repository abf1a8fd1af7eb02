#include "apps/shared/Text.h"

#include <algorithm>
#include <cstdio>
#include <sstream>

namespace apps {

namespace {

constexpr std::size_t kQuotedBytes = 80;  // about one line of a terminal
constexpr unsigned char kDelete = 0x7F;

bool isControl(char p_cByte) {
    const auto byte = static_cast<unsigned char>(p_cByte);
    return byte < 0x20 || kDelete == byte;
}

std::string escaped(char p_cByte) {
    char buffer[8];
    std::snprintf(buffer, sizeof(buffer), "\\x%02X", static_cast<unsigned>(static_cast<unsigned char>(p_cByte)));
    return buffer;
}

}  // namespace

std::string lowerCase(std::string p_strText) {
    for (char& letter : p_strText) {
        if ('A' <= letter && letter <= 'Z') {
            letter = static_cast<char>(letter - 'A' + 'a');
        }
    }
    return p_strText;
}

bool startsWith(const std::string& p_strText, const std::string& p_strStart) {
    return 0 == p_strText.compare(0, p_strStart.size(), p_strStart);
}

std::string join(const std::vector<std::string>& p_vecPieces, const std::string& p_strSeparator) {
    std::string joined;
    for (const std::string& piece : p_vecPieces) {
        joined += (&piece == &p_vecPieces.front() ? "" : p_strSeparator) + piece;
    }
    return joined;
}

std::vector<std::string> linesOf(const std::string& p_strText) {
    std::vector<std::string> lines;
    for (std::size_t start = 0; start < p_strText.size();) {
        const std::size_t end = std::min(p_strText.find('\n', start), p_strText.size());
        lines.push_back(p_strText.substr(start, end - start));
        start = end + 1;
    }
    return lines;
}

std::vector<std::string> wrapped(const std::string& p_strText, std::size_t p_nWidth) {
    std::istringstream stream(p_strText);
    std::vector<std::string> lines;
    for (std::string word; stream >> word;) {
        if (lines.empty() || lines.back().size() + 1 + word.size() > p_nWidth) {
            lines.push_back(word);
        } else {
            lines.back() += " " + word;
        }
    }
    return lines;
}

std::string quoted(const std::string& p_strText) {
    std::string result = "\"";
    for (std::size_t i = 0; i < p_strText.size() && i < kQuotedBytes; ++i) {
        result += isControl(p_strText[i]) ? escaped(p_strText[i]) : std::string(1, p_strText[i]);
    }
    return result + (p_strText.size() > kQuotedBytes ? "...\"" : "\"");
}

std::string printable(const std::string& p_strText) {
    std::string result;
    for (const char byte : p_strText) {
        const bool harmless = !isControl(byte) || '\n' == byte || '\t' == byte;
        result += harmless ? std::string(1, byte) : escaped(byte);
    }
    return result;
}

}  // namespace apps
