#include "apps/sensorctl/Usage.h"

#include "apps/sensorctl/Shared.h"

#include <algorithm>
#include <iterator>
#include <sstream>

namespace sensorctl {

namespace {

const std::string kRepetition = "...";

bool hasCapital(const std::string& p_strText) {
    return std::any_of(p_strText.begin(), p_strText.end(),
                       [](char p_cLetter) { return 'A' <= p_cLetter && p_cLetter <= 'Z'; });
}

std::string withoutBrackets(const std::string& p_strText) {
    std::string rest;
    for (const char letter : p_strText) {
        rest += '[' == letter || ']' == letter ? "" : std::string(1, letter);
    }
    return rest;
}

// Notes for the first word of each pair of brackets how many words are inside. Brackets that open within a word are part
// of what it stands for.
void markOptional(const std::vector<std::string>& p_vecTexts, std::vector<UsageWord>& p_vecWords) {
    constexpr std::size_t kWithin = SIZE_MAX;
    std::vector<std::size_t> open;
    for (std::size_t i = 0; i < p_vecTexts.size(); ++i) {
        for (std::size_t at = 0; at < p_vecTexts[i].size(); ++at) {
            if ('[' == p_vecTexts[i][at]) {
                open.push_back(0 == at ? i : kWithin);
            } else if (']' == p_vecTexts[i][at] && !open.empty()) {
                if (kWithin != open.back()) {
                    p_vecWords[open.back()].nLeftOut = i - open.back() + 1;
                }
                open.pop_back();
            }
        }
    }
}

void addAlternative(const std::string& p_strText, UsageWord& p_stWord) {
    (hasCapital(p_strText) ? p_stWord.vecKinds : p_stWord.vecLiterals).push_back(p_strText);
}

}  // namespace

std::vector<std::string> waysOf(const Command& p_stCommand) {
    const std::string separator = " | ";
    std::vector<std::string> ways;
    std::size_t start = 0;
    for (std::size_t end = 0; std::string::npos != end; start = end + separator.size()) {
        end = p_stCommand.strArguments.find(separator, start);
        const std::string arguments = p_stCommand.strArguments.substr(start, end - start);
        ways.push_back(p_stCommand.strName + (arguments.empty() ? "" : " ") + arguments);
    }
    return ways;
}

std::vector<UsageWord> wordsOfWay(const std::string& p_strWay) {
    std::istringstream stream(p_strWay);
    std::vector<std::string> texts{std::istream_iterator<std::string>(stream), std::istream_iterator<std::string>()};
    texts.erase(texts.begin());
    std::vector<UsageWord> words;
    for (const std::string& whole : texts) {
        UsageWord word;
        std::string text = withoutBrackets(whole);
        const std::size_t dots = text.rfind(kRepetition);
        if (std::string::npos != dots && dots + kRepetition.size() == text.size()) {
            word.bRepeats = true;
            text.resize(dots);
        }
        for (std::size_t start = 0, end = 0; std::string::npos != end; start = end + 1) {
            end = text.find('|', start);
            addAlternative(text.substr(start, end - start), word);
        }
        words.push_back(word);
    }
    markOptional(texts, words);
    return words;
}

}  // namespace sensorctl
