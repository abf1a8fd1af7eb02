#include "sensor/style/XmlNesting.h"

#include <cctype>
#include <cstring>

namespace style {

namespace {

// Reads a text as the XML library does. Every step leaves the position on the terminator at the latest; a step that finds
// what the library refuses moves there.
class Walker {
public:
    explicit Walker(const char* p_szText) : m_pNext(p_szText), m_pEnd(p_szText + std::strlen(p_szText)) {}

    int depth(int p_nEnough) {
        int nDepth = 0;
        int nDeepest = 0;
        while (m_pNext < m_pEnd && nDeepest <= p_nEnough) {
            if ('<' != *m_pNext) {
                skipText(nDepth);
            } else if (startsWith("<?xml", true)) {
                skipDeclaration();
            } else if (startsWith("<!--", false)) {
                skipPast("-->", 4);
            } else if (startsWith("<![CDATA[", false)) {
                skipPast("]]>", 9);
            } else if (startsWith("</", false)) {
                nDepth -= nDepth > 0 ? 1 : 0;
                skipPast(">", 2);
            } else if (isNameStart(m_pNext[1])) {
                const bool bHasContent = skipTag();
                // An element without content is a level too.
                nDeepest = nDepth + 1 > nDeepest ? nDepth + 1 : nDeepest;
                nDepth += bHasContent ? 1 : 0;
            } else {
                skipPast(">", 1);
            }
        }
        return nDeepest;
    }

private:
    static bool isSpace(char p_cByte) { return 0 != std::isspace(static_cast<unsigned char>(p_cByte)); }

    static bool isNameStart(char p_cByte) {
        const unsigned char cByte = static_cast<unsigned char>(p_cByte);
        return cByte >= 127 || 0 != std::isalpha(cByte) || '_' == cByte;
    }

    static bool isName(char p_cByte) {
        const unsigned char cByte = static_cast<unsigned char>(p_cByte);
        return cByte >= 127 || 0 != std::isalnum(cByte) || nullptr != std::strchr("_-.:", cByte);
    }

    bool startsWith(const char* p_szWanted, bool p_bAnyCase) const {
        const char* pNext = m_pNext;
        for (; '\0' != *p_szWanted; ++p_szWanted, ++pNext) {
            if (pNext >= m_pEnd) {
                return false;
            }
            const int nByte = p_bAnyCase ? std::tolower(static_cast<unsigned char>(*pNext)) : *pNext;
            if (nByte != *p_szWanted) {
                return false;
            }
        }
        return true;
    }

    void giveUp() { m_pNext = m_pEnd; }

    void skip(std::size_t p_nBytes) {
        m_pNext = static_cast<std::size_t>(m_pEnd - m_pNext) < p_nBytes ? m_pEnd : m_pNext + p_nBytes;
    }

    // Between the top-level elements there is only white space: anything else ends the document there.
    void skipText(int p_nDepth) {
        const char* const pBefore = m_pNext;
        skipSpace();
        if (pBefore != m_pNext) {
            return;
        }
        if (0 == p_nDepth) {
            giveUp();
        } else {
            skipCharacter();
        }
    }

    // One character of running text: a lead byte takes the bytes that it announces with it, whatever they are.
    void skipCharacter() {
        if ('&' == *m_pNext && '#' == m_pNext[1] && '\0' != m_pNext[2]) {
            skipReference();
            return;
        }
        const unsigned char cByte = static_cast<unsigned char>(*m_pNext);
        skip(cByte >= 0xC2 && cByte <= 0xDF   ? 2
             : cByte >= 0xE0 && cByte <= 0xEF ? 3
             : cByte >= 0xF0 && cByte <= 0xF4 ? 4
                                              : 1);
    }

    // A character by its number. The library takes it from the next ";" backwards, digit by digit, to the nearest "x" (or
    // "#" for a decimal one): whatever stands in front of that, tags and quotes included, vanishes in the reference.
    void skipReference() {
        const bool bHexadecimal = 'x' == m_pNext[2];
        const char* const pFirst = m_pNext + (bHexadecimal ? 3 : 2);
        const char* const pEnd = std::strchr(pFirst, ';');
        if (nullptr == pEnd) {
            giveUp();
            return;
        }
        const char* pDigit = pEnd - 1;
        for (; *pDigit != (bHexadecimal ? 'x' : '#'); --pDigit) {
            const unsigned char cByte = static_cast<unsigned char>(*pDigit);
            if (0 == (bHexadecimal ? std::isxdigit(cByte) : std::isdigit(cByte))) {
                giveUp();
                return;
            }
        }
        m_pNext = pEnd + 1;
    }

    void skipPast(const char* p_szEnd, std::size_t p_nHead) {
        skip(p_nHead);
        const char* const pFound = std::strstr(m_pNext, p_szEnd);
        m_pNext = nullptr == pFound ? m_pEnd : pFound + std::strlen(p_szEnd);
    }

    // White space, and the byte order marks that count as such.
    void skipSpace() {
        while (m_pNext < m_pEnd) {
            if (startsWith("\xEF\xBB\xBF", false) || startsWith("\xEF\xBF\xBE", false) ||
                startsWith("\xEF\xBF\xBF", false)) {
                skip(3);
            } else if (isSpace(*m_pNext)) {
                skip(1);
            } else {
                return;
            }
        }
    }

    void skipName() {
        while (m_pNext < m_pEnd && isName(*m_pNext)) {
            ++m_pNext;
        }
    }

    void skipQuoted(char p_cQuote) {
        skip(1);
        while (m_pNext < m_pEnd && p_cQuote != *m_pNext) {
            skipCharacter();
        }
        skip(1);
    }

    void skipAttribute() {
        if (!isNameStart(*m_pNext)) {
            giveUp();
            return;
        }
        skipName();
        skipSpace();
        if (m_pNext >= m_pEnd || '=' != *m_pNext) {
            giveUp();
            return;
        }
        skip(1);
        skipSpace();
        if (m_pNext < m_pEnd && ('\'' == *m_pNext || '"' == *m_pNext)) {
            skipQuoted(*m_pNext);
            return;
        }
        while (m_pNext < m_pEnd && !isSpace(*m_pNext) && '/' != *m_pNext && '>' != *m_pNext) {
            if ('\'' == *m_pNext || '"' == *m_pNext) {
                giveUp();
                return;
            }
            ++m_pNext;
        }
    }

    // The start tag of an element. True when content and an end tag follow.
    bool skipTag() {
        skip(1);
        skipName();
        while (m_pNext < m_pEnd) {
            skipSpace();
            if (m_pNext >= m_pEnd) {
                return false;
            }
            if ('/' == *m_pNext) {
                skip(1);
                if (m_pNext >= m_pEnd || '>' != *m_pNext) {
                    giveUp();
                    return false;
                }
                skip(1);
                return false;
            }
            if ('>' == *m_pNext) {
                skip(1);
                return true;
            }
            skipAttribute();
        }
        return false;
    }

    void skipDeclaration() {
        skip(5);
        while (m_pNext < m_pEnd) {
            if ('>' == *m_pNext) {
                skip(1);
                return;
            }
            skipSpace();
            if (m_pNext < m_pEnd &&
                (startsWith("version", true) || startsWith("encoding", true) || startsWith("standalone", true))) {
                skipAttribute();
                continue;
            }
            while (m_pNext < m_pEnd && '>' != *m_pNext && !isSpace(*m_pNext)) {
                ++m_pNext;
            }
        }
    }

    const char* m_pNext;
    const char* const m_pEnd;
};

}  // namespace

int xmlNesting(const char* p_szText, int p_nEnough) {
    return Walker(p_szText).depth(p_nEnough);
}

}  // namespace style
