// Texts that claim to be UTF-8.
#pragma once

#include <string>

namespace platform {

// True when every byte belongs to a complete, shortest-form character that a document may hold: no surrogates, none of
// the two non-characters U+FFFE and U+FFFF, no byte order mark, no control characters but tab and line ends.
bool isPrintableUtf8(const std::string& p_strText);

}  // namespace platform
