// What names and passwords may be. Each function throws Refusal (BadValue) with the rule that is broken, in words.
//
// Functions without state; any thread.
#pragma once

#include <cstddef>
#include <string>

namespace camerad {

constexpr std::size_t kLongestName = 32;
constexpr std::size_t kShortestPassword = 8;
constexpr std::size_t kLongestPassword = 256;  // bytes

bool isName(const std::string& p_strName);

// p_strWhat: "the name of an account" or "the name of a token".
void requireName(const std::string& p_strName, const std::string& p_strWhat);
void requirePassword(const std::string& p_strPassword);

}  // namespace camerad
