#include "fuzz/support/Fuzz.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace {
constexpr int kHighestLevel = 7;
}  // namespace

// In place of the C library's: no file of a fuzz process has to survive a power cut, and flushing takes most of the time.
extern "C" int fsync(int);
extern "C" int fsync(int) {
    return 0;
}

void fuzz::check(bool p_bHolds, const char* p_szCondition, const char* p_szFile, int p_nLine) {
    if (!p_bHolds) {
        std::fprintf(stderr, "%s:%d: does not hold: %s\n", p_szFile, p_nLine, p_szCondition);
        std::abort();
    }
}

TestRoot& fuzz::root() {
    static TestRoot theRoot;
    static const bool bQuiet = [] {
        theRoot.debugLevel(kHighestLevel);
        return nullptr != std::freopen("/dev/null", "w", stdout);
    }();
    check(bQuiet, "standard output can be sent away", __FILE__, __LINE__);
    return theRoot;
}

std::uint8_t fuzz::Input::byte() {
    if (atEnd()) {
        return 0;
    }
    --m_nLeft;
    return *m_pData++;
}

u32 fuzz::Input::word() {
    u32 nWord = 0;
    for (unsigned int nShift = 0; nShift < 32; nShift += 8) {
        nWord |= static_cast<u32>(byte()) << nShift;
    }
    return nWord;
}

std::string fuzz::Input::text() {
    const std::uint8_t* const pEnd = std::find(m_pData, m_pData + m_nLeft, std::uint8_t{0});
    const std::string strText(m_pData, pEnd);
    const std::size_t nTaken = std::min(strText.size() + 1, m_nLeft);
    m_pData += nTaken;
    m_nLeft -= nTaken;
    return strText;
}

std::string fuzz::Input::bytes(std::size_t p_nCount) {
    const std::size_t nTaken = std::min(p_nCount, m_nLeft);
    const std::string strText(m_pData, m_pData + nTaken);
    m_pData += nTaken;
    m_nLeft -= nTaken;
    return strText;
}

std::string fuzz::Input::rest() {
    return bytes(m_nLeft);
}

char* fuzz::exactCopy(const std::string& p_strText) {
    char* const pCopy = static_cast<char*>(std::malloc(p_strText.size() + 1));
    check(nullptr != pCopy, "there is memory", __FILE__, __LINE__);
    std::memcpy(pCopy, p_strText.c_str(), p_strText.size() + 1);
    return pCopy;
}
