// Small operations on text. ASCII only; bytes of other letters pass unchanged.
#pragma once

#include <string>
#include <vector>

namespace apps {

std::string lowerCase(std::string p_strText);

bool startsWith(const std::string& p_strText, const std::string& p_strStart);

// The pieces between the separators, joined again.
std::string join(const std::vector<std::string>& p_vecPieces, const std::string& p_strSeparator);

// The lines of a text, without their newlines.
std::vector<std::string> linesOf(const std::string& p_strText);

// The words of a text on lines of at most so many bytes; a longer word has a line of its own.
std::vector<std::string> wrapped(const std::string& p_strText, std::size_t p_nWidth);

// The text in double quotes, fit for a message: control bytes as \xNN, and cut after 80 bytes with "...".
std::string quoted(const std::string& p_strText);

// The text with every control byte but newline and tab as \xNN, so that it cannot drive a terminal.
std::string printable(const std::string& p_strText);

}  // namespace apps
