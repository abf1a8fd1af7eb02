#include "apps/camerad/access/Secrets.h"

#include <openssl/crypto.h>
#include <openssl/evp.h>
#include <openssl/hmac.h>
#include <openssl/rand.h>

#include <algorithm>
#include <array>
#include <stdexcept>

namespace camerad {

namespace {

constexpr std::size_t kSecretBytes = 32;
constexpr std::size_t kSumBytes = 32;
const char kBase64Url[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789-_";
const std::string kPasswordLetters = "abcdefghjkmnpqrstuvwxyz23456789";
constexpr std::size_t kPasswordGroups = 4;
constexpr std::size_t kPasswordGroupLetters = 5;

unsigned char* bytesOf(std::string& p_strText) {
    return reinterpret_cast<unsigned char*>(p_strText.data());
}

const unsigned char* bytesOf(const std::string& p_strText) {
    return reinterpret_cast<const unsigned char*>(p_strText.data());
}

// The value of a letter of plain base64, -1 for every other one.
int valueOf(char p_cLetter) {
    if ('A' <= p_cLetter && p_cLetter <= 'Z') {
        return p_cLetter - 'A';
    }
    if ('a' <= p_cLetter && p_cLetter <= 'z') {
        return p_cLetter - 'a' + 26;
    }
    if ('0' <= p_cLetter && p_cLetter <= '9') {
        return p_cLetter - '0' + 52;
    }
    return '+' == p_cLetter ? 62 : '/' == p_cLetter ? 63 : -1;
}

}  // namespace

std::string randomBytes(std::size_t p_nCount) {
    std::string bytes(p_nCount, '\0');
    if (1 != RAND_bytes(bytesOf(bytes), static_cast<int>(p_nCount))) {
        throw std::runtime_error("this machine has no randomness to make a secret from; try again later");
    }
    return bytes;
}

std::string randomSecret() {
    std::string bytes = randomBytes(kSecretBytes);
    const Forgotten forgotten(bytes);
    std::string text;
    unsigned bits = 0;
    int count = 0;
    for (const char byte : bytes) {
        bits = bits << 8 | static_cast<unsigned char>(byte);
        for (count += 8; count >= 6; count -= 6) {
            text += kBase64Url[bits >> (count - 6) & 63u];
        }
    }
    text += kBase64Url[bits << (6 - count) & 63u];
    return text;
}

bool isSecret(const std::string& p_strText) {
    return kSecretLetters == p_strText.size() && std::string::npos == p_strText.find_first_not_of(kBase64Url);
}

std::string randomHex(std::size_t p_nDigits) {
    return hexOf(randomBytes(p_nDigits / 2));
}

std::string randomPassword() {
    // Bytes beyond the last whole multiple of the alphabet are left out, so that every letter is as likely.
    const std::size_t limit = 256 - 256 % kPasswordLetters.size();
    std::string password;
    while (password.size() < kPasswordGroups * (kPasswordGroupLetters + 1) - 1) {
        if (kPasswordGroupLetters == password.size() % (kPasswordGroupLetters + 1)) {
            password += '-';
            continue;
        }
        const std::size_t value = static_cast<unsigned char>(randomBytes(1)[0]);
        if (value < limit) {
            password += kPasswordLetters[value % kPasswordLetters.size()];
        }
    }
    return password;
}

std::string hexOf(const std::string& p_strBytes) {
    static const char kDigits[] = "0123456789abcdef";
    std::string text;
    for (const char byte : p_strBytes) {
        const unsigned value = static_cast<unsigned char>(byte);
        text += kDigits[value >> 4];
        text += kDigits[value & 15u];
    }
    return text;
}

std::string sha256Hex(const std::string& p_strBytes) {
    std::string sum(kSumBytes, '\0');
    if (1 != EVP_Digest(p_strBytes.data(), p_strBytes.size(), bytesOf(sum), nullptr, EVP_sha256(), nullptr)) {
        throw std::runtime_error("the cryptographic library of this machine has no SHA-256");
    }
    return hexOf(sum);
}

std::string keyedSum(const std::string& p_strKey, const std::string& p_strBytes) {
    std::string sum(kSumBytes, '\0');
    unsigned length = 0;
    if (nullptr == HMAC(EVP_sha256(), p_strKey.data(), static_cast<int>(p_strKey.size()), bytesOf(p_strBytes),
                        p_strBytes.size(), bytesOf(sum), &length)) {
        throw std::runtime_error("the cryptographic library of this machine has no SHA-256");
    }
    return sum;
}

std::optional<std::string> fromBase64(const std::string& p_strText) {
    if (0 != p_strText.size() % 4) {
        return std::nullopt;
    }
    std::size_t letters = p_strText.size();
    for (int i = 0; i < 2 && letters > 0 && '=' == p_strText[letters - 1]; ++i) {
        --letters;
    }
    std::string bytes;
    unsigned bits = 0;
    int count = 0;
    for (std::size_t i = 0; i < letters; ++i) {
        const int value = valueOf(p_strText[i]);
        if (value < 0) {
            return std::nullopt;
        }
        bits = (bits << 6 | static_cast<unsigned>(value)) & 0xFFFFu;
        count += 6;
        if (count >= 8) {
            count -= 8;
            bytes += static_cast<char>(bits >> count & 255u);
        }
    }
    // What is left over has to be zero: one text of bytes has one spelling.
    if (0 != (bits & ((1u << count) - 1u))) {
        return std::nullopt;
    }
    return bytes;
}

bool isSameSecret(const std::string& p_strOne, const std::string& p_strOther) {
    return p_strOne.size() == p_strOther.size() &&
           0 == CRYPTO_memcmp(p_strOne.data(), p_strOther.data(), p_strOne.size());
}

void forget(std::string& p_strSecret) {
    OPENSSL_cleanse(p_strSecret.data(), p_strSecret.size());
    p_strSecret.clear();
}

}  // namespace camerad
