// Finding lines of the transcript by their words.
#pragma once

#include <string>
#include <vector>

namespace sensorctl {

// Whether the words of the pattern stand in the line one after the other, each whole: "set 34 60" matches
// "ia ch0 set 34 60 = 0" and not "ia ch0 set 34 600 = 0". A pattern without words matches every line.
bool matchesWords(const std::string& p_strLine, const std::string& p_strPattern);

// How many lines match.
std::size_t countMatches(const std::vector<std::string>& p_vecLines, const std::string& p_strPattern);

}  // namespace sensorctl
