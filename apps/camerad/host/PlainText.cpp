#include "apps/camerad/host/PlainText.h"

#include <algorithm>
#include <cstdio>

namespace camerad {

namespace {

unsigned byteAt(const std::string& p_strText, std::size_t p_nAt) {
    return p_nAt < p_strText.size() ? static_cast<unsigned char>(p_strText[p_nAt]) : 0u;
}

// The length of the character that begins here, 0 when it is none: too long a form, a surrogate, above U+10FFFF.
std::size_t characterAt(const std::string& p_strText, std::size_t p_nAt) {
    const unsigned nFirst = byteAt(p_strText, p_nAt);
    if (nFirst < 0x80) {
        return 1;
    }
    const std::size_t nLength = nFirst >= 0xF0 ? 4 : nFirst >= 0xE0 ? 3 : 2;
    if (nFirst < 0xC2 || nFirst > 0xF4 || p_nAt + nLength > p_strText.size()) {
        return 0;
    }
    for (std::size_t i = 1; i < nLength; ++i) {
        if (0x80 != (byteAt(p_strText, p_nAt + i) & 0xC0u)) {
            return 0;
        }
    }
    const unsigned nSecond = byteAt(p_strText, p_nAt + 1);
    const bool bTooLong = (0xE0 == nFirst && nSecond < 0xA0) || (0xF0 == nFirst && nSecond < 0x90);
    const bool bNone = (0xED == nFirst && nSecond >= 0xA0) || (0xF4 == nFirst && nSecond >= 0x90);
    return bTooLong || bNone ? 0 : nLength;
}

// U+0000 to U+001F, U+007F to U+009F.
bool isControl(const std::string& p_strText, std::size_t p_nAt) {
    const unsigned nFirst = byteAt(p_strText, p_nAt);
    return nFirst < 0x20 || 0x7F == nFirst || (0xC2 == nFirst && byteAt(p_strText, p_nAt + 1) < 0xA0);
}

// Behind a terminal's colour code ("\033[31m") that begins here; where it begins when there is none.
std::size_t behindColour(const std::string& p_strText, std::size_t p_nAt) {
    if (0x1B != byteAt(p_strText, p_nAt) || '[' != byteAt(p_strText, p_nAt + 1)) {
        return p_nAt;
    }
    std::size_t nEnd = p_nAt + 2;
    while (nEnd < p_strText.size() && byteAt(p_strText, nEnd) < 0x40) {
        ++nEnd;
    }
    return std::min(nEnd + 1, p_strText.size());
}

}  // namespace

bool isPlainText(const std::string& p_strText) {
    for (std::size_t i = 0; i < p_strText.size();) {
        const std::size_t nLength = characterAt(p_strText, i);
        if (0 == nLength || isControl(p_strText, i)) {
            return false;
        }
        i += nLength;
    }
    return true;
}

std::size_t charactersOf(const std::string& p_strText) {
    return static_cast<std::size_t>(std::count_if(p_strText.begin(), p_strText.end(), [](char p_cByte) {
        return 0x80 != (static_cast<unsigned char>(p_cByte) & 0xC0u);
    }));
}

std::string plainLine(const std::string& p_strText, std::size_t p_nMost) {
    std::string strLine;
    for (std::size_t i = 0; i < p_strText.size();) {
        if (const std::size_t nBehind = behindColour(p_strText, i); nBehind != i) {
            i = nBehind;
            continue;
        }
        const std::size_t nLength = characterAt(p_strText, i);
        if (strLine.size() + std::max<std::size_t>(nLength, 1) > p_nMost) {
            break;
        }
        if (0 == nLength) {
            strLine += '?';
        } else if (isControl(p_strText, i)) {
            strLine += ' ';
        } else {
            strLine += p_strText.substr(i, nLength);
        }
        i += std::max<std::size_t>(nLength, 1);
    }
    return strLine;
}

std::string clockText(int p_nMinute) {
    const unsigned nMinute = static_cast<unsigned>(std::clamp(p_nMinute, 0, 24 * 60));
    char szText[16];
    std::snprintf(szText, sizeof(szText), "%02u:%02u", nMinute / 60, nMinute % 60);
    return szText;
}

}  // namespace camerad
