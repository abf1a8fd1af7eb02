#include "apps/shared/NearestMatch.h"

#include "apps/shared/Text.h"

#include <algorithm>

namespace apps {

namespace {
constexpr std::size_t kLongestWord = 64;  // no known word is longer; bounds the work on hostile input
}

std::size_t editDistance(const std::string& p_strFrom, const std::string& p_strTo) {
    const std::size_t width = p_strTo.size() + 1;
    std::vector<std::size_t> beforePrevious(width);
    std::vector<std::size_t> previous(width);
    std::vector<std::size_t> current(width);
    for (std::size_t to = 0; to < width; ++to) {
        previous[to] = to;
    }
    for (std::size_t from = 1; from <= p_strFrom.size(); ++from) {
        current[0] = from;
        for (std::size_t to = 1; to < width; ++to) {
            const bool same = p_strFrom[from - 1] == p_strTo[to - 1];
            current[to] = std::min({previous[to] + 1, current[to - 1] + 1, previous[to - 1] + (same ? 0 : 1)});
            const bool swapped =
                from > 1 && to > 1 && p_strFrom[from - 1] == p_strTo[to - 2] && p_strFrom[from - 2] == p_strTo[to - 1];
            if (swapped) {
                current[to] = std::min(current[to], beforePrevious[to - 2] + 1);
            }
        }
        beforePrevious.swap(previous);
        previous.swap(current);
    }
    return previous[width - 1];
}

std::string nearestMatch(const std::string& p_strWord, const std::vector<std::string>& p_vecKnown) {
    if (p_strWord.empty() || p_strWord.size() > kLongestWord) {
        return {};
    }
    const std::string strWord = lowerCase(p_strWord);
    std::string nearest;
    std::size_t shortest = 0;
    for (const std::string& known : p_vecKnown) {
        const std::size_t distance = editDistance(strWord, lowerCase(known));
        const std::size_t allowed = std::max<std::size_t>(1, std::max(strWord.size(), known.size()) / 3);
        if (distance <= allowed && (nearest.empty() || distance < shortest)) {
            nearest = known;
            shortest = distance;
        }
    }
    return nearest;
}

std::string didYouMean(const std::string& p_strNearest) {
    return p_strNearest.empty() ? "" : "; did you mean \"" + p_strNearest + "\"?";
}

}  // namespace apps
