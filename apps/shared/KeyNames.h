// The names of the parameters.
//
// Values without state; any thread may call.
#pragma once

#include "platform/Types.h"

#include <optional>
#include <string>
#include <vector>

namespace apps {

struct KeyName {
    const char* szName;  // for instance "KEY_BRIGHTNESS"
    u32 nKey;
};

// All of them, in the order of the camera's own table.
const std::vector<KeyName>& keyNames();

// The name of a key; empty for a key that has none.
std::string nameOfKey(u32 p_nKey);

// The same without its prefix, in small letters ("brightness").
std::string shortNameOfKey(u32 p_nKey);

// The key of a name, whole ("KEY_BRIGHTNESS") or without its prefix ("brightness"), in any case of letters.
std::optional<u32> keyOfName(const std::string& p_strName);

// The key that a word of a command stands for: a name, or a number (decimal or 0x...). Throws CommandError, with the
// nearest name, when it is neither.
u32 parseKey(const std::string& p_strWord);

// "KEY_BRIGHTNESS (34)", or "key 201" for a key without a name.
std::string describeKey(u32 p_nKey);

}  // namespace apps
