// Which of the known words somebody most likely meant.
#pragma once

#include <string>
#include <vector>

namespace apps {

// How many single changes (insert, delete, replace a letter, swap two neighbours) lead from one word to the other.
std::size_t editDistance(const std::string& p_strFrom, const std::string& p_strTo);

// The word that is nearest, whatever the case of letters; the first of equals. Empty when none is near: more than a third
// of the longer word would have to change. Words longer than 64 bytes are near nothing.
std::string nearestMatch(const std::string& p_strWord, const std::vector<std::string>& p_vecKnown);

// "; did you mean "set"?", or nothing for an empty word.
std::string didYouMean(const std::string& p_strNearest);

}  // namespace apps
