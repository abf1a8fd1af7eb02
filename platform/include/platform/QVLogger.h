// An append-only log on flash with rotation.
//
// A log named P is kept in at most `count` files: P (the newest), P.1, ... P.(count-1). When the next entry would make
// P larger than `size` bytes, P becomes P.1, P.1 becomes P.2 and so on; the oldest is dropped. One entry never spans
// two files; an entry larger than `size` is cut to it and still ends with a newline. The folder must exist.
//
// An entry is one write of "YYYY-MM-DD hh:mm:ss <tag> <text>", ended with a newline if the text has none.
//
// Threads: any number of objects, threads and processes may write to one path at once; entries stay whole. An object
// belongs to one thread. Logging never fails visibly and never throws: an entry that cannot be written is lost.
#pragma once

#include "platform/Types.h"

#include <string>

class PLATFORM_API QVLogger {
public:
    QVLogger() = default;
    ~QVLogger() = default;
    QVLogger(const QVLogger&) = delete;
    QVLogger& operator=(const QVLogger&) = delete;

    // The camera path of the newest file, the size limit of each file in bytes and the number of files (both at least
    // 1, smaller values count as 1). Opens nothing yet. False when the path is null or empty.
    bool init(const char* p_szPath, int p_nSize, int p_nCount);

    // Appends one entry. False when init has not been called or the entry could not be written.
    bool writeLog(const char* p_szTag, const char* p_szText);

private:
    std::string m_strPath;
    int m_nSize = 0;
    int m_nCount = 0;
};
