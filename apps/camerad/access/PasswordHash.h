// Passwords as yescrypt hashes ("$y$...").
//
// Functions without state; any thread. Each takes tens of milliseconds and 16 MiB of memory by intent; see PasswordGate.
#pragma once

#include <string>

namespace camerad {

// p_nCost: 1 to 6; 0: what the library of this machine takes by itself. Throws std::runtime_error.
std::string hashPassword(const std::string& p_strPassword, unsigned long p_nCost);

// Whether the password is the one of the hash. The same time for every password, right or wrong.
bool isPasswordOf(const std::string& p_strPassword, const std::string& p_strHash);

// Whether the text is a hash that hashPassword could have made: one that asks for more memory or time than the highest
// cost is none, so that a file from elsewhere cannot make this camera stand still.
bool isPasswordHash(const std::string& p_strText);

}  // namespace camerad
