// What secrets are made of and compared with: random texts, sums, comparisons that take the same time for every text.
//
// Functions without state; any thread. They throw std::runtime_error when the machine has no randomness to give.
#pragma once

#include <cstddef>
#include <optional>
#include <string>

namespace camerad {

std::string randomBytes(std::size_t p_nCount);

// 256 random bits in 43 letters of base64url.
std::string randomSecret();
constexpr std::size_t kSecretLetters = 43;
// Whether the text could come from randomSecret.
bool isSecret(const std::string& p_strText);

// A number of hexadecimal digits, even.
std::string randomHex(std::size_t p_nDigits);

// A password for a person to copy: twenty letters and digits that are not mistaken for each other, in four groups.
std::string randomPassword();

// SHA-256 as 64 small hexadecimal digits.
std::string sha256Hex(const std::string& p_strBytes);
// HMAC-SHA-256, 32 bytes.
std::string keyedSum(const std::string& p_strKey, const std::string& p_strBytes);

std::string hexOf(const std::string& p_strBytes);

// Plain base64 with its padding, and nothing else. Nothing for every other text.
std::optional<std::string> fromBase64(const std::string& p_strText);

// Tells nothing by the time it takes but whether the lengths differ.
bool isSameSecret(const std::string& p_strOne, const std::string& p_strOther);

// Overwrites the text and empties it.
void forget(std::string& p_strSecret);

// Forgets a text when it goes out of scope.
class Forgotten {
public:
    explicit Forgotten(std::string& p_strSecret) : m_strSecret(p_strSecret) {}
    ~Forgotten() { forget(m_strSecret); }
    Forgotten(const Forgotten&) = delete;
    Forgotten& operator=(const Forgotten&) = delete;

private:
    std::string& m_strSecret;
};

}  // namespace camerad
