#include "platform/QVLogger.h"

#include "platform/DeviceRoot.h"
#include "platform/QVDeviceTime.h"
#include "platform/linux/FileHandle.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <exception>

namespace {

constexpr mode_t kModeOfNewFile = 0644;

std::string numbered(const std::string& p_strPath, int p_nIndex) {
    return 0 == p_nIndex ? p_strPath : p_strPath + "." + std::to_string(p_nIndex);
}

bool standsThere(const std::string& p_strPath) {
    struct stat stFile = {};
    return 0 == ::lstat(p_strPath.c_str(), &stFile);
}

std::string entryOf(const char* p_szTag, const char* p_szText, std::size_t p_nSize) {
    const DeviceTime stNow = QVDeviceTime::getCurrentTime();
    char szDate[80];  // six numbers of up to 11 characters each
    std::snprintf(szDate, sizeof(szDate), "%04d-%02d-%02d %02d:%02d:%02d ", stNow.year, stNow.month, stNow.day,
                  stNow.hour, stNow.minute, stNow.second);
    std::string strEntry = szDate;
    strEntry += nullptr == p_szTag ? "" : p_szTag;
    strEntry += " ";
    strEntry += nullptr == p_szText ? "" : p_szText;
    if ('\n' != strEntry.back()) {
        strEntry += '\n';
    }
    if (strEntry.size() > p_nSize) {
        strEntry.resize(p_nSize);
        strEntry.back() = '\n';
    }
    return strEntry;
}

// Makes room under the log's own name. The caller holds the lock of the file there, which nobody can take for the log's
// any more after the last step. Files move up only as far as the first free number: what an interrupted rotation
// already moved stays where it is. False when the file cannot be moved.
bool rotate(const std::string& p_strPath, int p_nHandle, int p_nCount) {
    if (1 == p_nCount) {
        return 0 == ::ftruncate(p_nHandle, 0);
    }
    int nFree = 1;
    while (nFree < p_nCount - 1 && standsThere(numbered(p_strPath, nFree))) {
        ++nFree;
    }
    bool bMoved = true;
    for (int i = nFree; i > 0 && bMoved; --i) {
        bMoved = 0 == std::rename(numbered(p_strPath, i - 1).c_str(), numbered(p_strPath, i).c_str());
    }
    return bMoved;
}

// All of the entry or nothing.
bool append(int p_nHandle, off_t p_nOldSize, const std::string& p_strEntry) {
    if (static_cast<ssize_t>(p_strEntry.size()) == ::write(p_nHandle, p_strEntry.data(), p_strEntry.size())) {
        return true;
    }
    const int nCut = ::ftruncate(p_nHandle, p_nOldSize);
    static_cast<void>(nCut);  // a medium that takes neither is beyond help
    return false;
}

bool writeEntry(const std::string& p_strPath, std::size_t p_nSize, int p_nCount, const char* p_szTag,
                const char* p_szText) {
    while (true) {
        const int nHandle = platform::openLocked(p_strPath, O_WRONLY | O_APPEND, kModeOfNewFile);
        if (-1 == nHandle) {
            return false;
        }
        struct stat stLog = {};
        const std::string strEntry = entryOf(p_szTag, p_szText, p_nSize);
        bool bGoOn = 0 == ::fstat(nHandle, &stLog);
        const bool bFull = bGoOn && static_cast<std::uintmax_t>(stLog.st_size) + strEntry.size() > p_nSize;
        if (bFull) {
            bGoOn = rotate(p_strPath, nHandle, p_nCount);
        } else {
            bGoOn = bGoOn && append(nHandle, stLog.st_size, strEntry);
        }
        ::close(nHandle);
        if (!bFull || !bGoOn) {
            return bGoOn;
        }
    }
}

}  // namespace

bool QVLogger::init(const char* p_szPath, int p_nSize, int p_nCount) {
    if (nullptr == p_szPath || '\0' == *p_szPath) {
        return false;
    }
    m_strPath = p_szPath;
    m_nSize = std::max(1, p_nSize);
    m_nCount = std::max(1, p_nCount);
    return true;
}

bool QVLogger::writeLog(const char* p_szTag, const char* p_szText) {
    if (m_strPath.empty()) {
        return false;
    }
    try {
        return writeEntry(platform::devicePath(m_strPath), static_cast<std::size_t>(m_nSize), m_nCount, p_szTag,
                          p_szText);
    } catch (const std::exception&) {
        return false;  // no memory: the entry is lost
    }
}
