#include "apps/sensorctl/Completion.h"

#include "apps/sensorctl/Shared.h"
#include "apps/sensorctl/Usage.h"

#include <algorithm>
#include <filesystem>
#include <set>

namespace sensorctl {

namespace {

bool isOneOf(const std::string& p_strWord, const std::vector<std::string>& p_vecWords) {
    return std::any_of(p_vecWords.begin(), p_vecWords.end(),
                       [&](const std::string& p_strOther) { return lowerCase(p_strOther) == lowerCase(p_strWord); });
}

// The places of a way at which a next word can stand.
class Places {
public:
    explicit Places(const std::vector<UsageWord>& p_vecWords) : m_vecWords(p_vecWords) { add(0); }

    // Goes on behind a word: one that is typed as it is means itself. No place is left when the way cannot hold it.
    void pass(const std::string& p_strWord) {
        const std::set<std::size_t> before = m_setPlaces;
        m_setPlaces.clear();
        for (const auto takes : {takesAsItIs, takesAsKind}) {
            for (const std::size_t place : before) {
                if (place < m_vecWords.size() && takes(m_vecWords[place], p_strWord)) {
                    add(place + 1);
                    if (m_vecWords[place].bRepeats) {
                        add(place);
                    }
                }
            }
            if (!m_setPlaces.empty()) {
                return;
            }
        }
    }

    std::vector<UsageWord> words() const {
        std::vector<UsageWord> words;
        for (const std::size_t place : m_setPlaces) {
            if (place < m_vecWords.size()) {
                words.push_back(m_vecWords[place]);
            }
        }
        return words;
    }

private:
    static bool takesAsItIs(const UsageWord& p_stWord, const std::string& p_strWord) {
        return isOneOf(p_strWord, p_stWord.vecLiterals);
    }

    static bool takesAsKind(const UsageWord& p_stWord, const std::string& p_strWord) {
        return std::any_of(p_stWord.vecKinds.begin(), p_stWord.vecKinds.end(), [&](const std::string& p_strKind) {
            // A list in parentheses, in quotes or not, is written as such.
            return std::string::npos == p_strKind.find('(') || std::string::npos != p_strWord.find('(');
        });
    }

    void add(std::size_t p_nPlace) {
        m_setPlaces.insert(p_nPlace);
        if (p_nPlace < m_vecWords.size() && 0 != m_vecWords[p_nPlace].nLeftOut) {
            add(p_nPlace + m_vecWords[p_nPlace].nLeftOut);
        }
    }

    const std::vector<UsageWord> m_vecWords;
    std::set<std::size_t> m_setPlaces;
};

std::vector<std::string> keysLike(const std::string& p_strBegun) {
    std::vector<std::string> names;
    const bool whole = startsWith(lowerCase(p_strBegun), "key_") || startsWith(lowerCase(p_strBegun), "ia_cmd");
    for (const KeyName& row : keyNames()) {
        names.push_back(whole ? row.szName : shortNameOfKey(row.nKey));
    }
    return names;
}

std::vector<std::string> begunLike(const std::vector<std::string>& p_vecWords, const std::string& p_strBegun) {
    const std::string begun = lowerCase(p_strBegun);
    std::set<std::string> chosen;
    for (const std::string& word : p_vecWords) {
        if (!word.empty() && startsWith(lowerCase(word), begun)) {
            chosen.insert(word);
        }
    }
    return {chosen.begin(), chosen.end()};
}

void append(std::vector<std::string>& p_vecWords, const std::vector<std::string>& p_vecMore) {
    p_vecWords.insert(p_vecWords.end(), p_vecMore.begin(), p_vecMore.end());
}

}  // namespace

std::vector<std::string> Completion::commandNames() const {
    std::vector<std::string> names;
    for (const Command& command : m_objTable.all()) {
        names.push_back(command.strName);
    }
    return names;
}

// p_vecBefore begins with the name of the command.
std::vector<std::string> Completion::allOf(const std::string& p_strKind, const Words& p_vecBefore,
                                           const std::string& p_strBegun) const {
    const std::string command = lowerCase(p_vecBefore.front());
    if ("KEY" == p_strKind) {
        return keysLike(p_strBegun);
    }
    if ("FILE" == p_strKind) {
        return pathsLike(p_strBegun);
    }
    if ("TAB" == p_strKind && m_stSources.fnTabs) {
        return m_stSources.fnTabs();
    }
    if ("FIELD=VALUE" == p_strKind) {
        return {"cmd=", "key=", "ch=", "opt=", "nth=", "result=", "times=", "delay=", "silent="};
    }
    if ("COMMAND" == p_strKind && "help" == command) {
        return commandNames();
    }
    if ("NAME" == p_strKind && ("setter" == command || "getter" == command)) {
        return begunLike(commandNames(), command.substr(0, 3));
    }
    if ("VALUE" == p_strKind && p_vecBefore.size() > 1 && m_stSources.fnValuesOf) {
        const std::optional<u32> key = keyOfName(p_vecBefore.back());
        return key ? m_stSources.fnValuesOf(*key) : std::vector<std::string>();
    }
    return {};
}

std::vector<std::string> Completion::candidates(const Words& p_vecBefore, const std::string& p_strBegun) const {
    auto start = p_vecBefore.begin();
    while (p_vecBefore.end() - start > 1 && "expect" == lowerCase(*start) && "fail" == lowerCase(*(start + 1))) {
        start += 2;
    }
    const Words before(start, p_vecBefore.end());
    if (before.empty()) {
        return begunLike(commandNames(), p_strBegun);
    }
    const std::string name = lowerCase(before.front());
    if (!isOneOf(name, commandNames())) {
        return {};
    }
    std::vector<std::string> all;
    for (const std::string& way : waysOf(m_objTable.find(name))) {
        Places places(wordsOfWay(way));
        std::for_each(before.begin() + 1, before.end(), [&](const std::string& p_strWord) { places.pass(p_strWord); });
        for (const UsageWord& word : places.words()) {
            append(all, word.vecLiterals);
            for (const std::string& kind : word.vecKinds) {
                append(all, allOf(kind, before, p_strBegun));
            }
        }
    }
    return begunLike(all, p_strBegun);
}

std::vector<std::string> Completion::argumentCandidates(const Words& p_vecBefore, const std::string& p_strBegun) const {
    const std::vector<OptionInfo> options = optionList();
    std::size_t at = 0;
    for (; at < p_vecBefore.size() && startsWith(p_vecBefore[at], "-") && "--" != p_vecBefore[at]; ++at) {
        const auto option = std::find_if(options.begin(), options.end(), [&](const OptionInfo& p_stOption) {
            return p_stOption.strName == p_vecBefore[at];
        });
        if (options.end() == option || option->strValue.empty()) {
            continue;
        }
        if (at + 1 == p_vecBefore.size()) {
            return "FILE" == option->strValue || "DIR" == option->strValue ? pathsLike(p_strBegun)
                                                                           : begunLike(option->vecChoices, p_strBegun);
        }
        ++at;
    }
    if (at == p_vecBefore.size() && startsWith(p_strBegun, "-")) {
        std::vector<std::string> names;
        for (const OptionInfo& option : options) {
            names.push_back(option.strName);
        }
        return begunLike(names, p_strBegun);
    }
    // The command that is being written begins behind the last separator.
    const auto start =
        std::find(p_vecBefore.rbegin(), p_vecBefore.rend() - static_cast<std::ptrdiff_t>(at), "--").base();
    return candidates(Words(start, p_vecBefore.end()), p_strBegun);
}

std::string commonStart(const std::vector<std::string>& p_vecWords) {
    if (p_vecWords.empty()) {
        return {};
    }
    std::string start = p_vecWords.front();
    for (const std::string& word : p_vecWords) {
        std::size_t same = 0;
        while (same < start.size() && same < word.size() &&
               lowerCase(std::string(1, start[same])) == lowerCase(std::string(1, word[same]))) {
            ++same;
        }
        start.resize(same);
    }
    return start;
}

std::vector<std::string> pathsLike(const std::string& p_strBegun) {
    namespace fs = std::filesystem;
    const std::size_t slash = p_strBegun.rfind('/');
    const std::string folder = std::string::npos == slash ? "" : p_strBegun.substr(0, slash + 1);
    const std::string begun = p_strBegun.substr(folder.size());
    std::vector<std::string> paths;
    std::error_code error;
    for (fs::directory_iterator entry(folder.empty() ? "." : folder, error), end; !error && entry != end;
         entry.increment(error)) {
        const std::string name = entry->path().filename().string();
        if (startsWith(name, begun) && (!begun.empty() || '.' != name.front())) {
            std::error_code unknown;
            paths.push_back(folder + name + (entry->is_directory(unknown) ? "/" : ""));
        }
    }
    std::sort(paths.begin(), paths.end());
    return paths;
}

}  // namespace sensorctl
