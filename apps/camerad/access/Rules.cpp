#include "apps/camerad/access/Rules.h"

#include "apps/camerad/host/Refusal.h"

#include <cstdint>

namespace camerad {

namespace {

const char kNameLetters[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789._-";

enum class Text { Good, NoUtf8, Control };

// Complete characters in their shortest form, no surrogates, no control characters.
Text kindOf(const std::string& p_strText) {
    for (std::size_t i = 0; i < p_strText.size();) {
        const auto byte = [&](std::size_t p_nAt) {
            return p_nAt < p_strText.size() ? static_cast<std::uint32_t>(static_cast<unsigned char>(p_strText[p_nAt]))
                                            : 0u;
        };
        const std::uint32_t lead = byte(i);
        const std::size_t length = lead < 0x80u                     ? 1
                                   : lead >= 0xC2u && lead < 0xE0u  ? 2
                                   : lead >= 0xE0u && lead < 0xF0u  ? 3
                                   : lead >= 0xF0u && lead <= 0xF4u ? 4
                                                                    : 0;
        if (0 == length) {
            return Text::NoUtf8;
        }
        std::uint32_t character = 1 == length ? lead : lead & (0x7Fu >> length);
        for (std::size_t k = 1; k < length; ++k) {
            if (0x80u != (byte(i + k) & 0xC0u)) {
                return Text::NoUtf8;
            }
            character = character << 6 | (byte(i + k) & 0x3Fu);
        }
        static constexpr std::uint32_t kLeast[] = {0, 0, 0x80, 0x800, 0x10000};
        if (character < kLeast[length] || character > 0x10FFFFu || (character >= 0xD800u && character <= 0xDFFFu)) {
            return Text::NoUtf8;
        }
        if (character < 0x20u || (character >= 0x7Fu && character <= 0x9Fu)) {
            return Text::Control;
        }
        i += length;
    }
    return Text::Good;
}

}  // namespace

bool isName(const std::string& p_strName) {
    return !p_strName.empty() && p_strName.size() <= kLongestName &&
           std::string::npos == p_strName.find_first_not_of(kNameLetters);
}

void requireName(const std::string& p_strName, const std::string& p_strWhat) {
    if (!isName(p_strName)) {
        throw Refusal(
            Refusal::Kind::BadValue, "bad-name",
            p_strWhat + " has 1 to " + std::to_string(kLongestName) +
                " characters, each a letter from A to Z or a to z, a digit, a dot, an underscore or a hyphen.");
    }
}

void requirePassword(const std::string& p_strPassword) {
    const auto refuse = [](const std::string& p_strDetail) {
        throw Refusal(Refusal::Kind::BadValue, "bad-password", p_strDetail);
    };
    if (p_strPassword.size() < kShortestPassword) {
        refuse("A password has at least " + std::to_string(kShortestPassword) +
               " characters; a few words in a row are good and easy to remember.");
    }
    if (p_strPassword.size() > kLongestPassword) {
        refuse("A password has at most " + std::to_string(kLongestPassword) +
               " bytes; letters outside of plain English take two to four bytes each.");
    }
    switch (kindOf(p_strPassword)) {
        case Text::NoUtf8:
            refuse("A password is text in UTF-8; this one holds bytes that are no text.");
            break;
        case Text::Control:
            refuse("A password holds no control characters such as tabs and line ends.");
            break;
        case Text::Good:
            break;
    }
}

}  // namespace camerad
