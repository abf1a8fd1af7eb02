// Texts from outside, made fit for people and for JSON. Functions without state.
#pragma once

#include <cstddef>
#include <string>

namespace camerad {

// Whether the text is UTF-8 without control characters.
bool isPlainText(const std::string& p_strText);

// How many characters a text that is UTF-8 has.
std::size_t charactersOf(const std::string& p_strText);

// The text as one line of UTF-8: without terminal colours, control characters as blanks, bytes that are no UTF-8 as "?",
// cut behind p_nMost bytes.
std::string plainLine(const std::string& p_strText, std::size_t p_nMost);

// "06:30" of a minute of the day, 0 to 1440.
std::string clockText(int p_nMinute);

}  // namespace camerad
