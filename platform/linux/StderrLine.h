// One line on standard error, written with one call so that lines of several threads never mix.
#pragma once

#include <string>

namespace platform {

// Adds the newline.
void stderrLine(const std::string& p_strText);

}  // namespace platform
