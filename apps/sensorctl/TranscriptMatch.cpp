#include "apps/sensorctl/TranscriptMatch.h"

#include <algorithm>
#include <iterator>
#include <sstream>

namespace sensorctl {

namespace {

std::vector<std::string> wordsOf(const std::string& p_strText) {
    std::istringstream stream(p_strText);
    return {std::istream_iterator<std::string>(stream), std::istream_iterator<std::string>()};
}

}  // namespace

bool matchesWords(const std::string& p_strLine, const std::string& p_strPattern) {
    const std::vector<std::string> line = wordsOf(p_strLine);
    const std::vector<std::string> pattern = wordsOf(p_strPattern);
    return pattern.empty() || line.end() != std::search(line.begin(), line.end(), pattern.begin(), pattern.end());
}

std::size_t countMatches(const std::vector<std::string>& p_vecLines, const std::string& p_strPattern) {
    return static_cast<std::size_t>(
        std::count_if(p_vecLines.begin(), p_vecLines.end(),
                      [&](const std::string& p_strLine) { return matchesWords(p_strLine, p_strPattern); }));
}

}  // namespace sensorctl
