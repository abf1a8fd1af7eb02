#include "platform/linux/XmlCheck.h"

#include "platform/linux/Utf8.h"

#include <strings.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <vector>

namespace {

constexpr char kByteOrderMark[] = "\xEF\xBB\xBF";
constexpr char kBlanks[] = " \t\r\n";
constexpr unsigned long kLastCharacter = 0x10FFFF;
constexpr std::size_t kLongestNumber = 10;  // digits of a character number; more could overflow

bool isBlank(char p_cChar) {
    return '\0' != p_cChar && nullptr != std::strchr(kBlanks, p_cChar);
}

bool startsName(char p_cChar) {
    return (p_cChar >= 'a' && p_cChar <= 'z') || (p_cChar >= 'A' && p_cChar <= 'Z') || '_' == p_cChar ||
           static_cast<unsigned char>(p_cChar) >= 0x80;
}

bool continuesName(char p_cChar) {
    return startsName(p_cChar) || (p_cChar >= '0' && p_cChar <= '9') || '-' == p_cChar || '.' == p_cChar ||
           ':' == p_cChar;
}

// The text between "&" and ";".
bool isEntity(const std::string& p_strName) {
    if (p_strName.size() < 2 || '#' != p_strName[0]) {
        return "lt" == p_strName || "gt" == p_strName || "amp" == p_strName || "quot" == p_strName ||
               "apos" == p_strName;
    }
    const bool bHex = 'x' == p_strName[1];
    const std::string strDigits = p_strName.substr(bHex ? 2 : 1);
    const char* const szLegal = bHex ? "0123456789abcdefABCDEF" : "0123456789";
    if (strDigits.empty() || strDigits.size() > kLongestNumber ||
        std::string::npos != strDigits.find_first_not_of(szLegal)) {
        return false;
    }
    const unsigned long long nCharacter = std::strtoull(strDigits.c_str(), nullptr, bHex ? 16 : 10);
    return nCharacter > 0 && nCharacter <= kLastCharacter;
}

// Text or the value of an attribute.
bool isCharacterData(const std::string& p_strData) {
    if (std::string::npos != p_strData.find('<')) {
        return false;
    }
    for (std::size_t i = p_strData.find('&'); std::string::npos != i; i = p_strData.find('&', i + 1)) {
        const std::size_t nEnd = p_strData.find(';', i);
        if (std::string::npos == nEnd || !isEntity(p_strData.substr(i + 1, nEnd - i - 1))) {
            return false;
        }
    }
    return true;
}

// Walks over the text once. Every step returns false where it is not plain XML.
class Walk {
public:
    Walk(const std::string& p_strText, std::size_t p_nLevels) : m_strText(p_strText), m_nLevels(p_nLevels) {}

    bool document() {
        while (text()) {
            if (m_nAt == m_strText.size()) {
                return m_bRootSeen && m_vecOpen.empty();
            }
            if (!markup()) {
                return false;
            }
        }
        return false;
    }

private:
    bool at(const char* p_szText) const { return 0 == m_strText.compare(m_nAt, std::strlen(p_szText), p_szText); }
    char here() const { return m_nAt < m_strText.size() ? m_strText[m_nAt] : '\0'; }

    bool skip(const char* p_szText) {
        const bool bThere = at(p_szText);
        m_nAt += bThere ? std::strlen(p_szText) : 0;
        return bThere;
    }

    bool skipBlanks() {
        const std::size_t nBefore = m_nAt;
        while (isBlank(here())) {
            ++m_nAt;
        }
        return m_nAt > nBefore;
    }

    // To behind the next occurrence; p_strPassed is what lies before it.
    bool skipTo(const char* p_szEnd, std::string& p_strPassed) {
        const std::size_t nEnd = m_strText.find(p_szEnd, m_nAt);
        if (std::string::npos == nEnd) {
            return false;
        }
        p_strPassed = m_strText.substr(m_nAt, nEnd - m_nAt);
        m_nAt = nEnd + std::strlen(p_szEnd);
        return true;
    }

    bool name(std::string& p_strName) {
        const std::size_t nStart = m_nAt;
        if (!startsName(here())) {
            return false;
        }
        while (continuesName(here())) {
            ++m_nAt;
        }
        p_strName = m_strText.substr(nStart, m_nAt - nStart);
        return true;
    }

    // Up to the next markup; only blanks outside the root element.
    bool text() {
        const std::size_t nStart = m_nAt;
        m_nAt = std::min(m_strText.find('<', m_nAt), m_strText.size());
        const std::string strText = m_strText.substr(nStart, m_nAt - nStart);
        return m_vecOpen.empty() ? std::string::npos == strText.find_first_not_of(kBlanks) : isCharacterData(strText);
    }

    bool markup() {
        std::string strPassed;
        if (skip("<!--")) {
            return skipTo("-->", strPassed);
        }
        if (skip("<![CDATA[")) {
            return !m_vecOpen.empty() && skipTo("]]>", strPassed);
        }
        if (skip("<!DOCTYPE")) {
            return m_vecOpen.empty() && skipTo(">", strPassed) && std::string::npos == strPassed.find_first_of("<[");
        }
        if (skip("<?")) {
            return instruction();
        }
        return skip("</") ? endTag() : skip("<") && startTag();
    }

    bool instruction() {
        std::string strName;
        if (!name(strName)) {
            return false;
        }
        if ("xml" == strName) {
            return declaration();
        }
        const bool bLikeDeclaration = 0 == strncasecmp(strName.c_str(), "xml", 3);
        std::string strPassed;
        return !bLikeDeclaration && skipTo(">", strPassed) && !strPassed.empty() && '?' == strPassed.back();
    }

    bool declaration() {
        while (skipBlanks() && !at("?>")) {
            std::string strName;
            if (!attribute(strName) || ("version" != strName && "encoding" != strName && "standalone" != strName)) {
                return false;
            }
        }
        return skip("?>");
    }

    bool attribute(std::string& p_strName) {
        if (!name(p_strName)) {
            return false;
        }
        skipBlanks();
        if (!skip("=")) {
            return false;
        }
        skipBlanks();
        std::string strValue;
        return (skip("\"") ? skipTo("\"", strValue) : skip("'") && skipTo("'", strValue)) && isCharacterData(strValue);
    }

    bool startTag() {
        std::string strName;
        if (!name(strName) || (m_vecOpen.empty() && m_bRootSeen) || m_vecOpen.size() == m_nLevels) {
            return false;
        }
        m_bRootSeen = true;
        while (skipBlanks() && !at("/") && !at(">")) {
            std::string strAttribute;
            if (!attribute(strAttribute)) {
                return false;
            }
        }
        if (skip("/>")) {
            return true;
        }
        m_vecOpen.push_back(strName);
        return skip(">");
    }

    bool endTag() {
        std::string strName;
        if (!name(strName) || m_vecOpen.empty() || m_vecOpen.back() != strName) {
            return false;
        }
        m_vecOpen.pop_back();
        skipBlanks();
        return skip(">");
    }

    const std::string& m_strText;
    const std::size_t m_nLevels;
    std::size_t m_nAt = 0;
    bool m_bRootSeen = false;
    std::vector<std::string> m_vecOpen;  // the elements around m_nAt, outermost first
};

}  // namespace

namespace platform {

bool isPlainXml(const std::string& p_strText, std::size_t p_nLevels) {
    const bool bMarked = 0 == p_strText.compare(0, std::strlen(kByteOrderMark), kByteOrderMark);
    const std::string strText = p_strText.substr(bMarked ? std::strlen(kByteOrderMark) : 0);
    return isPrintableUtf8(strText) && Walk(strText, p_nLevels).document();
}

}  // namespace platform
