#include "platform/linux/FileHandle.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

namespace {

// Calls again what a signal interrupted.
template <typename Call>
auto uninterrupted(Call&& p_fnCall) {
    auto result = p_fnCall();
    while (-1 == result && EINTR == errno) {
        result = p_fnCall();
    }
    return result;
}

// Calls for the rest until nothing is left, nothing moves or an error comes.
template <typename Call>
ssize_t moveFully(std::size_t p_nCount, Call&& p_fnCall) {
    std::size_t nDone = 0;
    while (nDone < p_nCount) {
        const ssize_t nMoved = uninterrupted([&] { return p_fnCall(nDone); });
        if (nMoved <= 0) {
            return 0 == nDone ? nMoved : static_cast<ssize_t>(nDone);
        }
        nDone += static_cast<std::size_t>(nMoved);
    }
    return static_cast<ssize_t>(nDone);
}

}  // namespace

namespace platform {

ssize_t readFully(int p_nHandle, void* p_pBuffer, std::size_t p_nCount) {
    return moveFully(p_nCount, [&](std::size_t p_nDone) {
        return ::read(p_nHandle, static_cast<char*>(p_pBuffer) + p_nDone, p_nCount - p_nDone);
    });
}

ssize_t writeFully(int p_nHandle, const void* p_pBuffer, std::size_t p_nCount) {
    return moveFully(p_nCount, [&](std::size_t p_nDone) {
        return ::write(p_nHandle, static_cast<const char*>(p_pBuffer) + p_nDone, p_nCount - p_nDone);
    });
}

bool lockWhole(int p_nHandle) {
    return 0 == uninterrupted([&] { return ::flock(p_nHandle, LOCK_EX); });
}

bool standsUnder(int p_nHandle, const std::string& p_strPath) {
    struct stat stOpen = {};
    struct stat stNamed = {};
    return 0 == ::fstat(p_nHandle, &stOpen) && 0 == ::stat(p_strPath.c_str(), &stNamed) && S_ISREG(stOpen.st_mode) &&
           stOpen.st_dev == stNamed.st_dev && stOpen.st_ino == stNamed.st_ino;
}

int openLocked(const std::string& p_strPath, int p_nFlags, mode_t p_nMode) {
    while (true) {
        // Without O_NONBLOCK the open of a pipe would hang; a regular file does not know the difference.
        const int nHandle = uninterrupted(
            [&] { return ::open(p_strPath.c_str(), p_nFlags | O_CREAT | O_CLOEXEC | O_NOCTTY | O_NONBLOCK, p_nMode); });
        if (-1 == nHandle) {
            return -1;
        }
        struct stat stOpen = {};
        const bool bRegular = 0 == ::fstat(nHandle, &stOpen) && S_ISREG(stOpen.st_mode);
        const bool bLocked = bRegular && lockWhole(nHandle);
        if (bLocked && standsUnder(nHandle, p_strPath)) {
            return nHandle;
        }
        ::close(nHandle);
        if (!bLocked) {
            return -1;
        }
    }
}

bool flush(int p_nHandle) {
    return 0 == uninterrupted([&] { return ::fsync(p_nHandle); });
}

bool flushDirectoryOf(const std::string& p_strPath) {
    const std::size_t nSlash = p_strPath.rfind('/');
    const std::string strDirectory = std::string::npos == nSlash ? "." : p_strPath.substr(0, nSlash + 1);
    const int nHandle = uninterrupted([&] { return ::open(strDirectory.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC); });
    if (-1 == nHandle) {
        return false;
    }
    // Some file systems cannot flush a directory because its changes never wait.
    const bool bFlushed = flush(nHandle) || EINVAL == errno;
    ::close(nHandle);
    return bFlushed;
}

}  // namespace platform
