#include "apps/shared/PlainXml.h"

#include <cstring>
#include <vector>

namespace apps {

namespace {

const char kBlanks[] = " \t\r\n";

bool isNameByte(char p_cByte) {
    return (p_cByte >= 'a' && p_cByte <= 'z') || (p_cByte >= 'A' && p_cByte <= 'Z') ||
           (p_cByte >= '0' && p_cByte <= '9') || '_' == p_cByte || '-' == p_cByte;
}

// Walks over the text once. Every step returns false where it is not plain.
class Walk {
public:
    Walk(const std::string& p_strText, std::size_t p_nLevels) : m_strText(p_strText), m_nLevels(p_nLevels) {}

    bool document() {
        if (skip("<?xml") && !declaration()) {
            return false;
        }
        while (text()) {
            if (m_nAt == m_strText.size()) {
                return m_bRootSeen && m_vecOpen.empty();
            }
            const bool ok = skip("<!--") ? skipTo("-->") : (skip("</") ? endTag() : skip("<") && startTag());
            if (!ok) {
                return false;
            }
        }
        return false;
    }

private:
    char here() const { return m_nAt < m_strText.size() ? m_strText[m_nAt] : '\0'; }

    bool skip(const char* p_szText) {
        const std::size_t length = std::strlen(p_szText);
        const bool there = 0 == m_strText.compare(m_nAt, length, p_szText);
        m_nAt += there ? length : 0;
        return there;
    }

    bool skipTo(const char* p_szEnd) {
        const std::size_t end = m_strText.find(p_szEnd, m_nAt);
        m_nAt = std::string::npos == end ? m_strText.size() : end + std::strlen(p_szEnd);
        return std::string::npos != end;
    }

    bool declaration() {
        const std::size_t start = m_nAt;
        return skipTo("?>") && m_nAt - 1 == m_strText.find_first_of(std::string("<>\0", 3), start);
    }

    bool skipBlanks() {
        const std::size_t before = m_nAt;
        m_nAt = m_strText.find_first_not_of(kBlanks, m_nAt);
        m_nAt = std::string::npos == m_nAt ? m_strText.size() : m_nAt;
        return m_nAt > before;
    }

    // Up to the next markup; only blanks outside the root element, and no zero byte: a parser may end there.
    bool text() {
        const std::size_t start = m_nAt;
        m_nAt = m_strText.find('<', m_nAt);
        m_nAt = std::string::npos == m_nAt ? m_strText.size() : m_nAt;
        const std::string passed = m_strText.substr(start, m_nAt - start);
        const bool blank = std::string::npos == passed.find_first_not_of(kBlanks);
        return (blank || !m_vecOpen.empty()) && std::string::npos == passed.find('\0');
    }

    std::string name() {
        const std::size_t start = m_nAt;
        while (isNameByte(here())) {
            ++m_nAt;
        }
        return m_strText.substr(start, m_nAt - start);
    }

    bool attribute() {
        if (name().empty()) {
            return false;
        }
        const bool doubled = skip("=\"");
        if (!doubled && !skip("='")) {
            return false;
        }
        const std::size_t start = m_nAt;
        if (!skipTo(doubled ? "\"" : "'")) {
            return false;
        }
        return m_strText.substr(start, m_nAt - start).find_first_of(std::string("<\0", 2)) == std::string::npos;
    }

    bool startTag() {
        const std::string tag = name();
        if (tag.empty() || (m_vecOpen.empty() && m_bRootSeen) || m_vecOpen.size() >= m_nLevels) {
            return false;
        }
        m_bRootSeen = true;
        while (skipBlanks() && '/' != here() && '>' != here()) {
            if (!attribute()) {
                return false;
            }
        }
        if (skip("/>")) {
            return true;
        }
        m_vecOpen.push_back(tag);
        return skip(">");
    }

    bool endTag() {
        const std::string tag = name();
        if (m_vecOpen.empty() || m_vecOpen.back() != tag) {
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

bool isPlainXml(const std::string& p_strText, std::size_t p_nLevels) {
    return Walk(p_strText, p_nLevels).document();
}

}  // namespace apps
