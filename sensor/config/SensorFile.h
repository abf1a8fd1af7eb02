// Everything of the library that touches the flash: lengths, whole files, parameter files and the version file.
//
// Names are camera paths. The functions hold no lock and share no state; callers keep two writers of one file apart. They
// block for the file access.
//
// Used by sensor/style too: the merged style document is read back through these.
#pragma once

#include "platform/Types.h"
#include "sensor/config/KeyVal.h"
#include "sensor/diag/Export.h"

// The length of the file in bytes; 0 when it cannot be opened, which is reported.
SENSORDLL_API INT64 getFileLen(const char* p_szName);

// Reads exactly p_nLength bytes into the buffer and returns their number; -1 when the file cannot be opened or holds
// fewer (the buffer then holds what was read). Writes no terminator.
SENSORDLL_API int loadFromFile(const char* p_szName, char* p_pBuffer, INT64 p_nLength);

// Replaces the file's content. Returns the number of bytes written, -1 when the file cannot be opened. Anything but the
// whole is reported, and the old content then stays.
SENSORDLL_API int saveToFile(char* p_szName, char* p_pData, INT64 p_nLength);

// Reads a parameter file of p_nKeyValNum records (8 bytes each: key, value, in native byte order). Always QVS_SUCCESS: a
// missing, short or unreadable file is only reported, and the records that it does not hold stay as they were.
SENSORDLL_API int keyValFromFile(char* p_szName, KeyVal* p_pKeyVal, u32 p_nKeyValNum);

// Writes a parameter file. Always QVS_SUCCESS; a failure is only reported, and the old content then stays.
SENSORDLL_API int keyValToFile(char* p_szName, KeyVal* p_pKeyVal, u32 p_nKeyValSum);

// The version of the stored parameter files. 0 on success, -1 on failure (the variable then holds what was read).
SENSORDLL_API int getVersion(u32* p_pVersion);
SENSORDLL_API int setVersion(u32 p_nVersion);
