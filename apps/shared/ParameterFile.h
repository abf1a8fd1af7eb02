// The stored parameters of one scheme, as they lie on the camera's flash.
//
// A file is a plain row of records, each a key and a value as 32-bit numbers in the byte order of the camera (little
// endian). It has no header. Functions block for as long as the medium takes.
#pragma once

#include "platform/Types.h"

#include <string>
#include <vector>

namespace apps {

struct StoredValue {
    u32 nKey;
    int nValue;
};

struct ParameterFile {
    std::vector<StoredValue> vecValues;
    std::size_t nExtraBytes = 0;  // behind the last whole record; 0 in a healthy file

    // The first record of the key; null when there is none.
    StoredValue* find(u32 p_nKey);
};

// The camera path of a scheme's file. The second channel has files of its own.
std::string parameterFileName(int p_nChannel, int p_nScheme);

// Throws CommandError when the file is missing, cannot be read or is larger than any parameter file (1 MiB).
ParameterFile readParameterFile(const std::string& p_strName);

// Replaces the file. Throws CommandError when that fails.
void writeParameterFile(const std::string& p_strName, const ParameterFile& p_stFile);

}  // namespace apps
