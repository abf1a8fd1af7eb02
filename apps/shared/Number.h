// Numbers as people write them in commands.
#pragma once

#include <cstdint>
#include <string>

namespace apps {

constexpr std::int64_t kIntMin = INT32_MIN;
constexpr std::int64_t kIntMax = INT32_MAX;

// Whether the word begins like a number: a digit, or a sign and a digit.
bool looksLikeNumber(const std::string& p_strWord);

// A whole number, decimal or hexadecimal (0x1F), with or without a sign, from p_nMin to p_nMax. Anything else (nothing, a
// trailing letter, too many digits) throws CommandError; p_szWhat names it in the message, for instance "the key".
std::int64_t parseNumber(const std::string& p_strWord, const char* p_szWhat, std::int64_t p_nMin, std::int64_t p_nMax);

// The same for any number that an int holds.
int parseInt(const std::string& p_strWord, const char* p_szWhat);

// A decimal number with or without a fraction, from p_dMin to p_dMax: lux, seconds, degrees.
double parseDecimal(const std::string& p_strWord, const char* p_szWhat, double p_dMin, double p_dMax);

// 1, on, true, yes or 0, off, false, no.
bool parseSwitch(const std::string& p_strWord, const char* p_szWhat);

}  // namespace apps
