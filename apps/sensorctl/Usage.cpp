#include "apps/sensorctl/Usage.h"

#include "apps/sensorctl/Text.h"

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

// Takes the brackets away; p_nDepth counts those that are open.
std::string withoutBrackets(const std::string& p_strText, int& p_nDepth) {
    std::string rest;
    for (const char letter : p_strText) {
        p_nDepth += '[' == letter ? 1 : (']' == letter ? -1 : 0);
        rest += '[' == letter || ']' == letter ? "" : std::string(1, letter);
    }
    return rest;
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
    std::vector<UsageWord> words;
    int depth = 0;
    for (std::size_t i = 1; i < texts.size(); ++i) {
        UsageWord word;
        word.bOptional = depth > 0 || '[' == texts[i].front();
        std::string text = withoutBrackets(texts[i], depth);
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
    return words;
}

}  // namespace sensorctl
