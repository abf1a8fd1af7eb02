#include "apps/sensorctl/Commands.h"
#include "apps/sensorctl/Refusal.h"
#include "apps/sensorctl/Session.h"
#include "apps/sensorctl/Shared.h"

#include <cstdlib>

namespace sensorctl {

namespace {

const char kReadGroup[] = "Reading back";

struct NamedGetter {
    const char* szName;
    const char* szSummary;
    bool (ISensorController::*pfnGet)(int&);
};

const NamedGetter kNamedGetters[] = {
    {"getDNMode", "day/night mode", &ISensorController::getDNMode},
    {"getWDRSwitch", "wide dynamic range on or off", &ISensorController::getWDRSwitch},
    {"getWDRStrength", "wide dynamic range strength", &ISensorController::getWDRStrength},
    {"getHLCSwitch", "highlight compensation on or off", &ISensorController::getHLCSwitch},
    {"getHLCStrength", "highlight compensation strength", &ISensorController::getHLCStrength},
    {"getBLCSwitch", "backlight compensation on or off", &ISensorController::getBLCSwitch},
    {"getBLCStrength", "backlight compensation strength", &ISensorController::getBLCStrength},
    {"getDefogSwitch", "defog on or off", &ISensorController::getDefogSwitch},
    {"getDefogStrength", "defog strength", &ISensorController::getDefogStrength},
    {"get2DSwitch", "2D noise reduction on or off", &ISensorController::get2DSwitch},
    {"get2DMode", "2D noise reduction mode", &ISensorController::get2DMode},
    {"get2DAutoMaxStrength", "2D noise reduction strength, automatic mode", &ISensorController::get2DAutoMaxStrength},
    {"get2DManualMaxStrength", "2D noise reduction strength, manual mode", &ISensorController::get2DManualMaxStrength},
    {"get3DSwitch", "3D noise reduction on or off", &ISensorController::get3DSwitch},
    {"get3DMode", "3D noise reduction mode", &ISensorController::get3DMode},
    {"get3DAutoMaxStrength", "3D noise reduction strength, automatic mode", &ISensorController::get3DAutoMaxStrength},
    {"get3DManualMaxStrength", "3D noise reduction strength, manual mode", &ISensorController::get3DManualMaxStrength},
    {"getBeaway", "beaway on or off", &ISensorController::getBeaway},
    {"getMirrorValue", "mirror direction", &ISensorController::getMirrorValue},
};

Result getNamed(Session& p_objSession, const NamedGetter& p_stGetter) {
    int value = 0;
    const bool ok = (p_objSession.controller().*p_stGetter.pfnGet)(value);
    const Json data = {{"value", value}};
    return ok ? Result{true, "", data, {}}
              : refused(p_objSession, std::string(p_stGetter.szName) + " returned false", data);
}

Result getByAnyName(Session& p_objSession, const Words& p_vecWords) {
    std::vector<std::string> names;
    for (const NamedGetter& getter : kNamedGetters) {
        if (lowerCase(getter.szName) == lowerCase(p_vecWords[0])) {
            return getNamed(p_objSession, getter);
        }
        names.push_back(getter.szName);
    }
    throw CommandError("unknown getter " + quoted(p_vecWords[0]) + didYouMean(nearestMatch(p_vecWords[0], names)));
}

// A text of the library, "(34,50)(2337,65)", as values with their names.
Json valuesOf(const std::string& p_strPairs, std::vector<std::string>& p_vecLines) {
    Json values = Json::array();
    for (std::size_t at = p_strPairs.find('('); std::string::npos != at; at = p_strPairs.find('(', at + 1)) {
        char* end = nullptr;
        const auto key = static_cast<u32>(std::strtol(p_strPairs.c_str() + at + 1, &end, 10));
        const auto value = static_cast<int>(std::strtol(',' == *end ? end + 1 : end, nullptr, 10));
        values.push_back({{"key", key}, {"name", nameOfKey(key)}, {"value", value}});
        p_vecLines.push_back(describeKey(key) + " = " + std::to_string(value));
    }
    return values;
}

Result getText(Session& p_objSession, const Words& p_vecWords) {
    std::string text;
    const int returned = p_objSession.controller().getParameters(p_vecWords[0], text);
    if (1 != returned) {
        return Result::failed(quoted(p_vecWords[0]) + " is no list of keys such as \"(34,2337)\"",
                              {{"returned", returned}});
    }
    std::vector<std::string> lines;
    const Json values = valuesOf(text, lines);
    lines.insert(lines.begin(), "(" + std::to_string(values.size()) + " read) " + text);
    return {true, "", {{"returned", returned}, {"text", text}, {"values", values}}, lines};
}

Result getOne(Session& p_objSession, const Words& p_vecWords) {
    const u32 key = parseKey(p_vecWords[0]);
    int value = 0;
    if (!p_objSession.controller().getParameter(static_cast<int>(key), value)) {
        return refused(p_objSession, describeKey(key) + " cannot be read: getParameter returned false", {{"key", key}});
    }
    return {true,
            "",
            {{"key", key}, {"name", nameOfKey(key)}, {"value", value}},
            {describeKey(key) + " = " + std::to_string(value)}};
}

Result get(Session& p_objSession, const Words& p_vecWords) {
    if (startsWith(p_vecWords[0], "(")) {
        if (p_vecWords.size() > 1) {
            throw CommandError("behind a list of keys nothing follows, not " + quoted(p_vecWords[1]));
        }
        return getText(p_objSession, p_vecWords);
    }
    if (1 == p_vecWords.size()) {
        return getOne(p_objSession, p_vecWords);
    }
    for (const std::string& word : p_vecWords) {
        parseKey(word);  // all of them are names before the first is asked for
    }
    Json values = Json::array();
    std::vector<std::string> lines;
    for (const std::string& word : p_vecWords) {
        const Result one = getOne(p_objSession, {word});
        if (!one.bOk) {
            return Result::failed(one.strError, {{"values", values}});
        }
        values.push_back(one.data);
        lines.push_back(one.vecLines.front());
    }
    return {true, "", {{"values", values}}, lines};
}

Result readAll(Session& p_objSession, std::string& p_strText) {
    if (!p_objSession.controller().getAllParameters(p_strText)) {
        return refused(p_objSession, "getAllParameters returned false");
    }
    return {true, "", {{"text", p_strText}}, {p_strText}};
}

Result getAllParameters(Session& p_objSession, const Words&) {
    std::string text;
    return readAll(p_objSession, text);
}

Result getAll(Session& p_objSession, const Words&) {
    std::string text;
    const Result result = readAll(p_objSession, text);
    if (!result.bOk) {
        return result;
    }
    std::vector<std::string> lines;
    const Json values = valuesOf(text, lines);
    lines.push_back(std::to_string(values.size()) + " parameters");
    return {true, "", {{"count", values.size()}, {"values", values}}, lines};
}

// sensorCheck FIRST SECOND THIRD | TEXT
Result sensorCheck(Session& p_objSession, const Words& p_vecWords) {
    if (2 == p_vecWords.size()) {
        throw CommandError("sensorCheck takes three numbers; usage: sensorCheck FIRST SECOND THIRD");
    }
    std::string text = p_vecWords[0];
    if (3 == p_vecWords.size()) {
        for (const std::string& word : p_vecWords) {
            parseInt(word, "a number of the check");
        }
        text = "(" + join(p_vecWords, ",") + ")";
    }
    const std::string request = text;
    const int returned = p_objSession.controller().SensorCheck(text);
    const Json data = {{"request", request}, {"answer", text}, {"returned", returned}};
    return 0 == returned ? Result{true, "", data, {}}
                         : Result::failed("the driver returned " + std::to_string(returned), data);
}

}  // namespace

void addReadCommands(CommandTable& p_objTable) {
    p_objTable.add({"get", "KEY... | \"(KEY,KEY...)\"",
                    "parameters of the current scheme by key name or number, or a list of keys as text", kReadGroup, 1,
                    kAnyNumber, get});
    p_objTable.add({"getParameter", "KEY", "as get with a key", kReadGroup, 1, 1, getOne});
    p_objTable.add({"getParameters", "TEXT", "any text, as the host would hand it over", kReadGroup, 1, 1, getText});
    p_objTable.add({"getAll", "", "all parameters of the current scheme, decoded", kReadGroup, 0, 0, getAll});
    p_objTable.add({"getAllParameters", "", "the same as the library's text", kReadGroup, 0, 0, getAllParameters});
    p_objTable.add({"getter", "NAME", "a named getter of the list below", kReadGroup, 1, 1, getByAnyName});
    for (const NamedGetter& getter : kNamedGetters) {
        p_objTable.add({getter.szName, "", getter.szSummary, kReadGroup, 0, 0,
                        [&getter](Session& p_objSession, const Words&) { return getNamed(p_objSession, getter); }});
    }
    p_objTable.add({"sensorCheck", "FIRST SECOND THIRD | TEXT",
                    "raw check command of the driver; it answers when SECOND is 2", kReadGroup, 1, 3, sensorCheck});
}

}  // namespace sensorctl
