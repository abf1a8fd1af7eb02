#include "platform/linux/Utf8.h"

#include "platform/Types.h"

namespace {

struct Lead {
    unsigned char mask;     // the bits that say what kind of byte it is
    unsigned char pattern;  // ... and their value
    std::size_t following;  // bytes after it
    u32 smallest;           // the first character that needs so many
};

constexpr Lead kLeads[] = {
    {0x80, 0x00, 0, 0x0}, {0xE0, 0xC0, 1, 0x80}, {0xF0, 0xE0, 2, 0x800}, {0xF8, 0xF0, 3, 0x10000}};

bool isAllowed(u32 p_nCharacter) {
    const bool bSurrogate = p_nCharacter >= 0xD800 && p_nCharacter <= 0xDFFF;
    const bool bByteOrder = 0xFEFF == p_nCharacter || 0xFFFE == p_nCharacter || 0xFFFF == p_nCharacter;
    const bool bControl = p_nCharacter < 0x20 && '\t' != p_nCharacter && '\n' != p_nCharacter && '\r' != p_nCharacter;
    return !bSurrogate && !bByteOrder && !bControl && p_nCharacter <= 0x10FFFF;
}

// The length of the character at this place, 0 when there is none.
std::size_t lengthAt(const std::string& p_strText, std::size_t p_nAt) {
    const auto nFirst = static_cast<unsigned char>(p_strText[p_nAt]);
    for (const Lead& lead : kLeads) {
        if (lead.pattern != (nFirst & lead.mask)) {
            continue;
        }
        if (lead.following >= p_strText.size() - p_nAt) {
            return 0;
        }
        u32 nCharacter = static_cast<u32>(nFirst & ~lead.mask & 0xFF);
        for (std::size_t i = 1; i <= lead.following; ++i) {
            const auto nNext = static_cast<unsigned char>(p_strText[p_nAt + i]);
            if (0x80 != (nNext & 0xC0)) {
                return 0;
            }
            nCharacter = nCharacter << 6 | (nNext & 0x3F);
        }
        return nCharacter >= lead.smallest && isAllowed(nCharacter) ? 1 + lead.following : 0;
    }
    return 0;
}

}  // namespace

namespace platform {

bool isPrintableUtf8(const std::string& p_strText) {
    for (std::size_t i = 0; i < p_strText.size();) {
        const std::size_t nLength = lengthAt(p_strText, i);
        if (0 == nLength) {
            return false;
        }
        i += nLength;
    }
    return true;
}

}  // namespace platform
