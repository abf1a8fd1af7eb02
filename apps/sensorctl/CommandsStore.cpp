#include "apps/sensorctl/Arguments.h"
#include "apps/sensorctl/Commands.h"
#include "apps/sensorctl/Session.h"
#include "apps/sensorctl/Shared.h"

#include <cstdio>

namespace sensorctl {

namespace {

const char kStoreGroup[] = "Stored files";

std::string row(const StoredValue& p_stValue) {
    char buffer[96];
    const std::string name = nameOfKey(p_stValue.nKey);
    std::snprintf(buffer, sizeof(buffer), "%6u  %-38s %d", p_stValue.nKey, name.empty() ? "-" : name.c_str(),
                  p_stValue.nValue);
    return buffer;
}

// dump [scheme] N [KEY]
Result dump(Session& p_objSession, const Words& p_vecWords) {
    Words words = p_vecWords;
    if ("scheme" == lowerCase(words.front())) {
        words.erase(words.begin());
    }
    if (words.empty() || words.size() > 2) {
        throw CommandError("usage: dump [scheme] N [KEY]");
    }
    const int scheme = parseScheme(words[0]);
    const std::string name = parameterFileName(p_objSession.channel(), scheme);
    const bool all = 1 == words.size();
    const u32 wanted = all ? 0 : parseKey(words[1]);
    const ParameterFile file = readParameterFile(name);

    Json values = Json::array();
    std::vector<std::string> lines = {name + ": " + std::to_string(file.vecValues.size()) + " parameters"};
    for (const StoredValue& stored : file.vecValues) {
        if (all || stored.nKey == wanted) {
            values.push_back({{"key", stored.nKey}, {"name", nameOfKey(stored.nKey)}, {"value", stored.nValue}});
            lines.push_back(row(stored));
        }
    }
    const Json data = {{"scheme", scheme}, {"file", name}, {"values", values}};
    if (0 != file.nExtraBytes) {
        return Result::failed(name + " ends in " + std::to_string(file.nExtraBytes) + " bytes that are no record",
                              data);
    }
    if (!all && values.empty()) {
        return Result::failed(name + " does not hold " + describeKey(wanted), data);
    }
    return {true, "", data, lines};
}

// flash SCHEME KEY VALUE
Result flash(Session& p_objSession, const Words& p_vecWords) {
    const int scheme = parseScheme(p_vecWords[0]);
    const u32 key = parseKey(p_vecWords[1]);
    const int value = parseInt(p_vecWords[2], "the value");
    const std::string name = parameterFileName(p_objSession.channel(), scheme);
    ParameterFile file = readParameterFile(name);
    StoredValue* const stored = file.find(key);
    if (nullptr == stored) {
        return Result::failed(name + " does not hold " + describeKey(key));
    }
    const int before = stored->nValue;
    stored->nValue = value;
    writeParameterFile(name, file);
    return {true,
            "",
            {{"scheme", scheme}, {"key", key}, {"name", nameOfKey(key)}, {"before", before}, {"value", value}},
            {name + ": " + describeKey(key) + " " + std::to_string(before) + " -> " + std::to_string(value)}};
}

}  // namespace

void addStoreCommands(CommandTable& p_objTable) {
    p_objTable.add(
        {"dump", "[scheme] N [KEY]", "the stored file of a scheme, decoded", kStoreGroup, 1, 3, dump, Effect::looks});
    p_objTable.add({"flash", "N KEY VALUE", "change one value in the stored file of a scheme; init reads it",
                    kStoreGroup, 3, 3, flash});
}

}  // namespace sensorctl
