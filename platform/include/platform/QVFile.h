// A file of the camera, named by its absolute camera path (see DeviceRoot.h).
//
// Writing is all or nothing. A file opened with modeWrite | modeTruncate collects its bytes in a sibling file
// ("<name>.new"); close() flushes the sibling to the medium and renames it over the old file, then flushes the
// directory. Until that rename the old content stands. A write that failed or came out short, a flush that failed or a
// process that died leaves the old content as it was.
//
// Threads: one object belongs to one thread at a time. Two writers of one path take turns: the second open blocks until
// the first has closed. All operations block for as long as the medium takes.
#pragma once

#include "platform/Types.h"

#include <string>

class PLATFORM_API QVFile {
public:
    static constexpr u32 modeRead = 0x01;
    static constexpr u32 modeWrite = 0x02;
    static constexpr u32 modeTruncate = 0x40;

    QVFile() = default;
    ~QVFile();  // as close()
    QVFile(const QVFile&) = delete;
    QVFile& operator=(const QVFile&) = delete;

    // True when the file is open. Modes are modeRead (the file must exist) and modeWrite | modeTruncate (0x42, the file
    // is created or replaced, and keeps the permissions that it had); any other mode, a null or empty name and a
    // directory fail, and for writing everything that is not a regular file. An object that is open is closed first.
    bool open(const char* p_szName, u32 p_nMode = modeRead);

    // Moves up to p_nCount bytes and returns how many, 0 at the end of the file; -1 on an object that is not open in
    // that direction, on a negative count, on a null buffer and on an error of the medium before the first byte. A
    // count of 0 moves nothing and returns 0. After a write that failed or came out short every further one returns
    // -1.
    int read(void* p_pBuffer, int p_nCount);
    int write(const void* p_pBuffer, int p_nCount);

    // Reads the next line into p_strLine, without its "\n" or "\r\n". Returns false, with an empty text, at the end of
    // the file or on an object that is not open for reading. A line longer than 65536 bytes comes in pieces.
    bool readLine(std::string& p_strLine);

    // Length in bytes of the open file (of what has been written so far when writing); 0 when not open.
    INT64 getLength();

    // Closes. True when the file was open and, for a written one, its new content is now in place on the medium.
    bool close();

    bool isOpen() const { return -1 != m_nHandle; }

    // Whether something that is not a directory exists under this name.
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
