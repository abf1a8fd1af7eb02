#include "sensor/diag/Message.h"

#include "platform/QVLogger.h"

#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <string>

// The C library declares its failure routine only with assertions on; whether one aborts is decided by the sign file here,
// never by the kind of build.
#undef NDEBUG
#include <cassert>

namespace diag {

namespace {

constexpr char kErrorLog[] = "/mnt/mtd/log/SensorError.log";
constexpr int kErrorLogSize = 10240;  // bytes of one file
constexpr int kErrorLogCount = 3;     // files

struct TagStyle {
    const char* szText;
    int nLowestLevel;
    int nAttribute;   // of the terminal
    int nForeground;  // of the terminal
    bool bLogged;
};

// Indexed by Tag.
constexpr TagStyle kTagStyles[] = {
    {"[sensor assert]", 0, 0, 31, true}, {"[sensor warn]", 4, 0, 0, true},   {"[sensor err]", 6, 0, 0, false},
    {"[sensor dbg]", 6, 0, 0, false},    {"[sensor info]", 7, 0, 35, false},
};

const TagStyle& styleOf(Tag p_eTag) {
    return kTagStyles[static_cast<int>(p_eTag)];
}

std::string formatted(const char* p_szFormat, va_list p_vaArguments) {
    va_list vaAgain;
    va_copy(vaAgain, p_vaArguments);
    const int nLength = std::vsnprintf(nullptr, 0, p_szFormat, vaAgain);
    va_end(vaAgain);
    if (nLength <= 0) {
        return {};
    }
    std::string strText(static_cast<std::size_t>(nLength), '\0');
    std::vsnprintf(strText.data(), strText.size() + 1, p_szFormat, p_vaArguments);
    return strText;
}

std::string formatted(const char* p_szFormat, ...) __attribute__((format(printf, 1, 2)));
std::string formatted(const char* p_szFormat, ...) {
    va_list vaArguments;
    va_start(vaArguments, p_szFormat);
    std::string strText = formatted(p_szFormat, vaArguments);
    va_end(vaArguments);
    return strText;
}

// One write for the whole text; more only when the system takes part of it.
void writeOut(const std::string& p_strText) {
    const char* pNext = p_strText.data();
    std::size_t nLeft = p_strText.size();
    while (nLeft > 0) {
        const ssize_t nWritten = ::write(STDOUT_FILENO, pNext, nLeft);
        if (nWritten < 0 && EINTR == errno) {
            continue;
        }
        if (nWritten <= 0) {
            return;  // nobody listens; messages never fail
        }
        pNext += nWritten;
        nLeft -= static_cast<std::size_t>(nWritten);
    }
}

bool isShown(Tag p_eTag) {
    updateDebugLevel();
    return g_nDebugLevel.load(std::memory_order_relaxed) >= styleOf(p_eTag).nLowestLevel;
}

// A message that has passed the level test.
void emit(Tag p_eTag, const Place* p_pPlace, const std::string& p_strText) {
    const TagStyle& stStyle = styleOf(p_eTag);
    std::string strOut = formatted("\033[%dm\033[%dm", stStyle.nAttribute, stStyle.nForeground);
    if (nullptr != p_pPlace) {
        strOut += formatted("%s file:%s fun:%s line:%d\n", stStyle.szText, p_pPlace->szFile, p_pPlace->szFunction,
                            p_pPlace->nLine);
    }
    writeOut(strOut + p_strText + "\033[0m");

    if (stStyle.bLogged) {
        QVLogger logger;
        logger.init(kErrorLog, kErrorLogSize, kErrorLogCount);
        if (nullptr != p_pPlace) {
            const std::string strHeader =
                formatted("file:%s fun:%s line:%d\n", p_pPlace->szFile, p_pPlace->szFunction, p_pPlace->nLine);
            logger.writeLog(stStyle.szText, strHeader.c_str());
        }
        logger.writeLog(stStyle.szText, p_strText.c_str());
    }
}

void reportFailedAssertion(const Place& p_stPlace, const char* p_szCondition) {
    if (isShown(Tag::Assert)) {
        emit(Tag::Assert, &p_stPlace, formatted("%s   ~~~Assertion failed.\n", p_szCondition));
    }
}

void abortIfEnabled(const Place& p_stPlace) {
    if (g_bEnAssert.load(std::memory_order_relaxed)) {
        __assert_fail("bRet", p_stPlace.szFile, static_cast<unsigned>(p_stPlace.nLine), p_stPlace.szSignature);
    }
}

}  // namespace

void message(Tag p_eTag, const Place* p_pPlace, const char* p_szFormat, ...) {
    if (!isShown(p_eTag)) {
        return;
    }
    va_list vaArguments;
    va_start(vaArguments, p_szFormat);
    const std::string strText = formatted(p_szFormat, vaArguments);
    va_end(vaArguments);
    emit(p_eTag, p_pPlace, strText);
}

void print(const char* p_szFormat, ...) {
    va_list vaArguments;
    va_start(vaArguments, p_szFormat);
    const std::string strText = formatted(p_szFormat, vaArguments);
    va_end(vaArguments);
    writeOut(strText);
}

void failed(const Place& p_stPlace, const char* p_szCondition) {
    reportFailedAssertion(p_stPlace, p_szCondition);
    abortIfEnabled(p_stPlace);
}

void failedDetail(const Place& p_stPlace, const char* p_szCondition, const char* p_szFormat, ...) {
    reportFailedAssertion(p_stPlace, p_szCondition);
    if (isShown(Tag::Assert)) {
        va_list vaArguments;
        va_start(vaArguments, p_szFormat);
        const std::string strText = formatted(p_szFormat, vaArguments);
        va_end(vaArguments);
        emit(Tag::Assert, nullptr, strText);
    }
    abortIfEnabled(p_stPlace);
}

}  // namespace diag
