// Decimal numbers in the camera's documents.
#pragma once

#include "platform/Types.h"

#include <string>

namespace platform {

// Sets p_nValue when the whole text is one number below 2^32, written in digits alone.
bool decimalOf(const std::string& p_strText, u32& p_nValue);

}  // namespace platform
