#include "platform/QVFile.h"

#include "platform/DeviceRoot.h"
#include "platform/linux/FileHandle.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>

namespace {

constexpr mode_t kModeOfNewFile = 0644;      // less the process's mask
constexpr std::size_t kLongestLine = 65536;  // bytes; a longer one comes in pieces
constexpr std::size_t kLongestLineEnd = 2;   // "\r\n"
constexpr std::size_t kReadAhead = 4096;     // bytes
constexpr mode_t kPermissionBits = 07777;

}  // namespace

QVFile::~QVFile() {
    close();
}

bool QVFile::open(const char* p_szName, u32 p_nMode) {
    close();
    if (nullptr == p_szName || '\0' == *p_szName) {
        return false;
    }
    m_strPath = platform::devicePath(p_szName);
    if (modeRead == p_nMode) {
        return openForReading();
    }
    return (modeWrite | modeTruncate) == p_nMode && openForWriting();
}

bool QVFile::openForReading() {
    // Without O_NONBLOCK the open of a pipe would hang; a regular file does not know the difference.
    int nHandle = -1;
    do {
        nHandle = ::open(m_strPath.c_str(), O_RDONLY | O_CLOEXEC | O_NOCTTY | O_NONBLOCK);
    } while (-1 == nHandle && EINTR == errno);
    struct stat stFile = {};
    if (-1 == nHandle || 0 != ::fstat(nHandle, &stFile) || S_ISDIR(stFile.st_mode) || S_ISFIFO(stFile.st_mode)) {
        if (-1 != nHandle) {
            ::close(nHandle);
        }
        return false;
    }
    m_nHandle = nHandle;
    m_bWriting = false;
    return true;
}

// The lock of the sibling is held until the object closes it, so one writer at a time fills it. A sibling that a dead
// process left behind is unlocked and starts anew.
bool QVFile::openForWriting() {
    m_strSibling = m_strPath + ".new";
    const int nHandle = platform::openLocked(m_strSibling, O_WRONLY | O_NOFOLLOW, kModeOfNewFile);
    if (-1 == nHandle) {
        return false;
    }
    // Looked at under the lock: the writer before may just have made the file. Only a regular file is ever replaced.
    struct stat stOld = {};
    const bool bOld = 0 == ::stat(m_strPath.c_str(), &stOld);
    const bool bReplaceable =
        bOld ? S_ISREG(stOld.st_mode) && 0 == ::fchmod(nHandle, stOld.st_mode & kPermissionBits) : ENOENT == errno;
    if (!bReplaceable || 0 != ::ftruncate(nHandle, 0)) {
        ::unlink(m_strSibling.c_str());
        ::close(nHandle);
        return false;
    }
    m_nHandle = nHandle;
    m_bWriting = true;
    m_bFailed = false;
    return true;
}

int QVFile::read(void* p_pBuffer, int p_nCount) {
    if (!isOpen() || m_bWriting || p_nCount < 0) {
        return -1;
    }
    if (0 == p_nCount) {
        return 0;
    }
    if (nullptr == p_pBuffer) {
        return -1;
    }
    const auto nCount = static_cast<std::size_t>(p_nCount);
    const std::size_t nPending = std::min(nCount, m_strPending.size());
    std::memcpy(p_pBuffer, m_strPending.data(), nPending);
    m_strPending.erase(0, nPending);
    if (nPending == nCount) {
        return p_nCount;
    }
    const ssize_t nRead = platform::readFully(m_nHandle, static_cast<char*>(p_pBuffer) + nPending, nCount - nPending);
    return -1 == nRead && 0 == nPending ? -1
                                        : static_cast<int>(nPending) + static_cast<int>(std::max<ssize_t>(0, nRead));
}

int QVFile::write(const void* p_pBuffer, int p_nCount) {
    if (!isOpen() || !m_bWriting) {
        return -1;
    }
    if (0 == p_nCount) {
        return 0;
    }
    if (nullptr == p_pBuffer || p_nCount < 0 || m_bFailed) {
        m_bFailed = true;
        return -1;
    }
    const ssize_t nWritten = platform::writeFully(m_nHandle, p_pBuffer, static_cast<std::size_t>(p_nCount));
    m_bFailed = nWritten != p_nCount;
    return static_cast<int>(nWritten);
}

bool QVFile::readLine(std::string& p_strLine) {
    p_strLine.clear();
    if (!isOpen() || m_bWriting) {
        return false;
    }
    std::size_t nEnd = m_strPending.find('\n');
    while (std::string::npos == nEnd && m_strPending.size() < kLongestLine + kLongestLineEnd) {
        char buffer[kReadAhead];
        const ssize_t nRead = platform::readFully(m_nHandle, buffer, sizeof(buffer));
        if (nRead <= 0) {
            break;
        }
        const std::size_t nBefore = m_strPending.size();
        m_strPending.append(buffer, static_cast<std::size_t>(nRead));
        nEnd = m_strPending.find('\n', nBefore);
    }
    if (m_strPending.empty()) {
        return false;
    }
    const bool bEnded = std::string::npos != nEnd;
    const std::size_t nWhole = bEnded ? nEnd : m_strPending.size();
    const std::size_t nLine = bEnded && nWhole > 0 && '\r' == m_strPending[nWhole - 1] ? nWhole - 1 : nWhole;
    const bool bPiece = nLine > kLongestLine;
    p_strLine.assign(m_strPending, 0, bPiece ? kLongestLine : nLine);
    m_strPending.erase(0, bPiece ? kLongestLine : nWhole + (bEnded ? 1 : 0));
    return true;
}

INT64 QVFile::getLength() {
    struct stat stFile = {};
    return isOpen() && 0 == ::fstat(m_nHandle, &stFile) ? static_cast<INT64>(stFile.st_size) : 0;
}

bool QVFile::close() {
    if (!isOpen()) {
        return false;
    }
    const bool bDone = !m_bWriting || putInPlace();
    ::close(m_nHandle);
    m_nHandle = -1;
    m_strPending.clear();
    return bDone;
}

// Runs under the lock of the sibling.
bool QVFile::putInPlace() {
    const bool bReplaced =
        !m_bFailed && platform::flush(m_nHandle) && 0 == std::rename(m_strSibling.c_str(), m_strPath.c_str());
    if (!bReplaced) {
        ::unlink(m_strSibling.c_str());
        return false;
    }
    return platform::flushDirectoryOf(m_strPath);
}

bool QVFile::exists(const char* p_szName) {
    if (nullptr == p_szName || '\0' == *p_szName) {
        return false;
    }
    struct stat stFile = {};
    return 0 == ::stat(platform::devicePath(p_szName).c_str(), &stFile) && !S_ISDIR(stFile.st_mode);
}
