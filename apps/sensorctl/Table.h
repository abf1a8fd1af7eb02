// Rows of cells as lines of text, and patterns with wildcards.
#pragma once

#include <string>
#include <vector>

namespace sensorctl {

// Each column as wide as its widest cell, two blanks between columns, no blanks at the end of a line. A column whose cells
// (but the first, the heading) are all numbers stands to the right.
std::vector<std::string> alignedLines(const std::vector<std::vector<std::string>>& p_vecRows);

// Whether the text holds the pattern, in any case of letters. In a pattern with * (any bytes) or ? (one byte) the whole
// text has to match.
bool matchesWildcards(const std::string& p_strText, const std::string& p_strPattern);

}  // namespace sensorctl
