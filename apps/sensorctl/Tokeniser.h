// One line of a script as words.
//
// Words are separated by blanks and tabs. Double quotes keep blanks and let \" \\ \n \t stand for themselves; single quotes
// keep everything up to the next single quote. A # at the start of a word begins a comment. A carriage return at the end
// of the line is ignored.
#pragma once

#include <string>
#include <vector>

namespace sensorctl {

// Throws CommandError for an open quote, an unknown escape and a control byte (a zero byte, binary data), each with the
// column where it stands, counted from 1.
std::vector<std::string> tokenise(const std::string& p_strLine);

// The words as one line that tokenise takes apart into the same words again.
std::string lineOfWords(const std::vector<std::string>& p_vecWords);

}  // namespace sensorctl
