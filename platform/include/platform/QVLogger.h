/// @file
/// An append-only log on flash with rotation.
#pragma once

#include "platform/Types.h"

#include <string>

/// An append-only log on flash with rotation.
///
/// A log named P is kept in at most `count` files: P (the newest), P.1, ... P.(count-1). When the next entry would make
/// P larger than `size` bytes, P becomes P.1, P.1 becomes P.2 and so on; the oldest is dropped. One entry never spans
/// two files; an entry larger than `size` is cut to it and still ends with a newline. The folder must exist.
///
/// An entry is one write of `YYYY-MM-DD hh:mm:ss <tag> <text>`, ended with a newline if the text has none.
///
/// Threads: any number of objects, threads and processes may write to one path at once; entries stay whole. An object
/// belongs to one thread. Logging never fails visibly and never throws: an entry that cannot be written is lost. Not
/// copyable.
class PLATFORM_API QVLogger {
public:
    /// A logger without a log.
    QVLogger() = default;
    /// Nothing is kept open, so nothing is closed.
    ~QVLogger() = default;
    QVLogger(const QVLogger&) = delete;
    QVLogger& operator=(const QVLogger&) = delete;

    /// Names the log. Opens nothing yet.
    /// @param p_szPath  camera path of the newest file
    /// @param p_nSize   size limit of each file in bytes; at least 1, smaller values count as 1
    /// @param p_nCount  number of files; at least 1, smaller values count as 1
    /// @return false when the path is null or empty
    bool init(const char* p_szPath, int p_nSize, int p_nCount);

    /// Appends one entry. Blocks for as long as the medium takes.
    /// @param p_szTag   what kind of entry, for instance "[sensor warn]"
    /// @param p_szText  the entry
    /// @return false when init has not been called or the entry could not be written
    bool writeLog(const char* p_szTag, const char* p_szText);

private:
    std::string m_strPath;
    int m_nSize = 0;
    int m_nCount = 0;
};
