#include "apps/sensorctl/Arguments.h"
#include "apps/sensorctl/Commands.h"
#include "apps/sensorctl/ParameterSets.h"
#include "apps/sensorctl/Shared.h"
#include "apps/sensorctl/Table.h"

#include <algorithm>
#include <map>
#include <optional>

namespace sensorctl {

namespace {

// One of the two sets that are compared.
struct Side {
    enum class Kind { memory, flash, factory };
    Kind eKind = Kind::flash;
    std::optional<int> scheme;  // absent: the current one
};

struct Values {
    std::string strName;  // "scheme 0 in memory"
    std::vector<StoredValue> vecValues;
};

// N | memory | memory:N | flash | flash:N | factory
Side parseSide(const std::string& p_strWord) {
    if (looksLikeNumber(p_strWord)) {
        return {Side::Kind::flash, parseScheme(p_strWord)};
    }
    const std::size_t colon = p_strWord.find(':');
    const std::string kind = lowerCase(p_strWord.substr(0, colon));
    std::optional<int> scheme;
    if (std::string::npos != colon) {
        scheme = parseScheme(p_strWord.substr(colon + 1));
    }
    if ("memory" == kind) {
        return {Side::Kind::memory, scheme};
    }
    if ("flash" == kind) {
        return {Side::Kind::flash, scheme};
    }
    if ("factory" == kind && !scheme) {
        return {Side::Kind::factory, scheme};
    }
    throw CommandError("diff compares N, memory, memory:N, flash, flash:N and factory, not " + quoted(p_strWord) +
                       didYouMean(nearestMatch(kind, {"memory", "flash", "factory"})));
}

// Applies a scheme for as long as an object of this class lives.
class Visit {
public:
    Visit(Session& p_objSession, int p_nScheme) : m_objSession(p_objSession), m_nBefore(currentScheme(p_objSession)) {
        if (m_nBefore != p_nScheme) {
            m_objSession.controller().setParamScheme(p_nScheme);
        }
        if (currentScheme(m_objSession) != p_nScheme) {
            throw CommandError("there is no scheme " + std::to_string(p_nScheme));
        }
    }
    ~Visit() {
        if (currentScheme(m_objSession) != m_nBefore) {
            m_objSession.controller().setParamScheme(m_nBefore);
        }
    }
    Visit(const Visit&) = delete;
    Visit& operator=(const Visit&) = delete;

private:
    Session& m_objSession;
    const int m_nBefore;
};

Values memorySide(Session& p_objSession, const std::optional<int>& p_scheme) {
    if (-1 == currentScheme(p_objSession)) {
        throw CommandError("no scheme is applied; use init first");
    }
    const std::vector<StyleParameter> style = styleOf(p_objSession);
    const int scheme = p_scheme.value_or(currentScheme(p_objSession));
    const Visit visit(p_objSession, scheme);
    return {"scheme " + std::to_string(scheme) + " in memory", memoryOf(p_objSession, style)};
}

Values flashSide(Session& p_objSession, const std::optional<int>& p_scheme) {
    const int scheme = p_scheme ? *p_scheme : currentScheme(p_objSession);
    if (scheme < 0) {
        throw CommandError("no scheme is applied; use init first, or name one, for instance flash:0");
    }
    const std::string name = parameterFileName(p_objSession.channel(), scheme);
    const ParameterFile file = readParameterFile(name);
    if (0 != file.nExtraBytes) {
        throw CommandError(name + " ends in " + std::to_string(file.nExtraBytes) + " bytes that are no record");
    }
    return {"scheme " + std::to_string(scheme) + " on flash", file.vecValues};
}

Values factorySide(Session& p_objSession) {
    Values factory{"factory defaults", {}};
    for (const StyleParameter& parameter : styleOf(p_objSession)) {
        if (parameter.defaultValue) {
            factory.vecValues.push_back({parameter.nKey, *parameter.defaultValue});
        }
    }
    return factory;
}

Values read(Session& p_objSession, const Side& p_stSide) {
    switch (p_stSide.eKind) {
        case Side::Kind::memory:
            return memorySide(p_objSession, p_stSide.scheme);
        case Side::Kind::factory:
            return factorySide(p_objSession);
        default:
            return flashSide(p_objSession, p_stSide.scheme);
    }
}

// Both values of a key; the first record of a key counts.
struct Pair {
    u32 nKey;
    std::optional<int> first;
    std::optional<int> second;
};

std::vector<Pair> differences(const Values& p_stFirst, const Values& p_stSecond) {
    std::vector<Pair> pairs;
    std::map<u32, std::size_t> places;  // a damaged file may hold very many keys
    const auto pairOf = [&](u32 p_nKey) -> Pair& {
        const auto [place, isNew] = places.emplace(p_nKey, pairs.size());
        return isNew ? pairs.emplace_back(Pair{p_nKey, std::nullopt, std::nullopt}) : pairs[place->second];
    };
    for (const StoredValue& value : p_stFirst.vecValues) {
        Pair& pair = pairOf(value.nKey);
        pair.first = pair.first.value_or(value.nValue);
    }
    for (const StoredValue& value : p_stSecond.vecValues) {
        Pair& pair = pairOf(value.nKey);
        pair.second = pair.second.value_or(value.nValue);
    }
    pairs.erase(std::remove_if(pairs.begin(), pairs.end(),
                               [](const Pair& p_stPair) { return p_stPair.first == p_stPair.second; }),
                pairs.end());
    return pairs;
}

Result diff(Session& p_objSession, const Words& p_vecWords) {
    const Side sides[] = {parseSide(p_vecWords[0]), parseSide(p_vecWords[1])};
    const Values first = read(p_objSession, sides[0]);
    const Values second = read(p_objSession, sides[1]);
    const std::vector<Pair> pairs = differences(first, second);

    const auto jsonOf = [](const std::optional<int>& p_number) { return p_number ? Json(*p_number) : Json(nullptr); };
    const auto textOf = [](const std::optional<int>& p_number) { return p_number ? std::to_string(*p_number) : "-"; };
    Json data = {{"first", first.strName}, {"second", second.strName}, {"count", pairs.size()}};
    data["differences"] = Json::array();
    std::vector<std::vector<std::string>> cells = {{"key", "name", first.strName, second.strName}};
    for (const Pair& pair : pairs) {
        data["differences"].push_back({{"key", pair.nKey},
                                       {"name", nameOfKey(pair.nKey)},
                                       {"first", jsonOf(pair.first)},
                                       {"second", jsonOf(pair.second)}});
        const std::string name = nameOfKey(pair.nKey);
        cells.push_back(
            {std::to_string(pair.nKey), name.empty() ? "-" : name, textOf(pair.first), textOf(pair.second)});
    }
    std::vector<std::string> lines = pairs.empty() ? std::vector<std::string>() : alignedLines(cells);
    lines.push_back(first.strName + " and " + second.strName + ": " +
                    (pairs.empty() ? "no difference" : std::to_string(pairs.size()) + " differ"));
    return {true, "", data, lines};
}

}  // namespace

void addDiffCommand(CommandTable& p_objTable) {
    const std::string side = "memory|memory:N|flash|flash:N|factory|N";
    p_objTable.add({"diff", side + " " + side, "in which values two parameter sets differ; N alone is a stored scheme",
                    "Stored files", 2, 2, diff});
}

}  // namespace sensorctl
