/// @file
/// A file of the camera, named by its absolute camera path (see DeviceRoot.h).
#pragma once

#include "platform/Types.h"

#include <string>

/// A file of the camera, named by its absolute camera path (see DeviceRoot.h).
///
/// Writing is all or nothing. A file opened with modeWrite | modeTruncate collects its bytes in a sibling file
/// (`<name>.new`); close() flushes the sibling to the medium and renames it over the old file, then flushes the
/// directory. Until that rename the old content stands. A write that failed or came out short, a flush that failed or a
/// process that died leaves the old content as it was.
///
/// Threads: one object belongs to one thread at a time. Two writers of one path take turns: the second open blocks
/// until the first has closed. All operations block for as long as the medium takes. Not copyable.
class PLATFORM_API QVFile {
public:
    static constexpr u32 modeRead = 0x01;      ///< read a file that exists
    static constexpr u32 modeWrite = 0x02;     ///< write; only together with modeTruncate
    static constexpr u32 modeTruncate = 0x40;  ///< create the file or replace its content

    /// A file that is not open.
    QVFile() = default;
    /// As close().
    ~QVFile();
    QVFile(const QVFile&) = delete;
    QVFile& operator=(const QVFile&) = delete;

    /// Opens a file. Modes are modeRead (the file must exist) and modeWrite | modeTruncate (0x42, the file is created
    /// or replaced, and keeps the permissions that it had); any other mode, a null or empty name, a directory and a
    /// pipe fail, and for writing everything that is not a regular file. An object that is open is closed first.
    /// @param p_szName  absolute camera path
    /// @param p_nMode   modeRead, or modeWrite | modeTruncate
    /// @return true when the file is open
    bool open(const char* p_szName, u32 p_nMode = modeRead);

    /// Reads on from where the last read ended.
    /// @param[out] p_pBuffer  room for p_nCount bytes
    /// @param p_nCount        how many bytes at most; 0 moves nothing and returns 0
    /// @return how many bytes were read, 0 at the end of the file; -1 on an object that is not open for reading, on a
    ///         negative count, on a null buffer and on an error of the medium before the first byte
    int read(void* p_pBuffer, int p_nCount);
    /// Writes on from where the last write ended. After a write that failed or came out short every further one fails.
    /// @param p_pBuffer  p_nCount bytes
    /// @param p_nCount   how many bytes; 0 moves nothing and returns 0
    /// @return how many bytes were written; -1 on an object that is not open for writing, on a negative count, on a
    ///         null buffer and on an error of the medium before the first byte
    int write(const void* p_pBuffer, int p_nCount);

    /// Reads the next line. One longer than 65536 bytes comes in pieces.
    /// @param[out] p_strLine  the line without its "\n" or "\r\n"; empty when there is none
    /// @return false at the end of the file or on an object that is not open for reading
    bool readLine(std::string& p_strLine);

    /// Length of the open file (of what has been written so far when writing).
    /// @return bytes; 0 when not open
    INT64 getLength();

    /// Closes, and puts a written file in place.
    /// @return true when the file was open and, for a written one, its new content is now in place on the medium
    bool close();

    /// Whether this object has a file open.
    /// @return true from a successful open to close
    bool isOpen() const { return -1 != m_nHandle; }

    /// Whether something that is not a directory exists under this name.
    /// @param p_szName  absolute camera path
    /// @return true when it exists
    static bool exists(const char* p_szName);

private:
    bool openForReading();
    bool openForWriting();
    bool putInPlace();

    int m_nHandle = -1;
    bool m_bWriting = false;
    bool m_bFailed = false;
    std::string m_strPath;     // on this machine
    std::string m_strSibling;  // on this machine; set while writing
    std::string m_strPending;  // bytes read ahead by readLine
};
