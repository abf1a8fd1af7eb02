// A password from standard input.
#pragma once

#include <string>

namespace camerad {

// The first line of the descriptor, without its end and at most 1024 bytes. At a terminal it asks, shows nothing that is
// typed, and asks a second time. Throws std::runtime_error when there is none or when both differ.
std::string readPassword(int p_nDescriptor);

// Stores the password of an account that is there, and keeps its role. Throws std::runtime_error or Refusal.
void setPassword(const std::string& p_strName, const std::string& p_strPassword);

}  // namespace camerad
