#include "platform/linux/Decimal.h"

#include <limits>

namespace platform {

bool decimalOf(const std::string& p_strText, u32& p_nValue) {
    std::uint64_t nValue = 0;
    for (const char cDigit : p_strText) {
        if (cDigit < '0' || cDigit > '9') {
            return false;
        }
        nValue = nValue * 10 + static_cast<std::uint64_t>(cDigit - '0');
        if (nValue > std::numeric_limits<u32>::max()) {
            return false;
        }
    }
    if (p_strText.empty()) {
        return false;
    }
    p_nValue = static_cast<u32>(nValue);
    return true;
}

}  // namespace platform
