#include "apps/sensorctl/Commands.h"
#include "apps/sensorctl/Refusal.h"
#include "apps/sensorctl/Session.h"
#include "apps/sensorctl/Shared.h"

namespace sensorctl {

namespace {

const char kParametersGroup[] = "Parameters";

struct NamedSetter {
    const char* szName;
    const char* szSummary;
    bool (*pfnSet)(ISensorController&, int);
};

// The library takes most values by reference although it only reads them.
#define BY_REFERENCE(name) \
    [](ISensorController& p_objController, int p_nValue) { return p_objController.name(p_nValue); }

const NamedSetter kNamedSetters[] = {
    {"setDNMode", "day/night mode", BY_REFERENCE(setDNMode)},
    {"setWDRSwitch", "wide dynamic range on or off", BY_REFERENCE(setWDRSwitch)},
    {"setWDRStrength", "wide dynamic range strength", BY_REFERENCE(setWDRStrength)},
    {"setHLCSwitch", "highlight compensation on or off", BY_REFERENCE(setHLCSwitch)},
    {"setHLCStrength", "highlight compensation strength", BY_REFERENCE(setHLCStrength)},
    {"setBLCSwitch", "backlight compensation on or off", BY_REFERENCE(setBLCSwitch)},
    {"setBLCStrength", "backlight compensation strength", BY_REFERENCE(setBLCStrength)},
    {"setDefogSwitch", "defog on or off", BY_REFERENCE(setDefogSwitch)},
    {"setDefogStrength", "defog strength", BY_REFERENCE(setDefogStrength)},
    {"set2DSwitch", "2D noise reduction on or off", BY_REFERENCE(set2DSwitch)},
    {"set2DMode", "2D noise reduction mode", BY_REFERENCE(set2DMode)},
    {"set2DAutoMaxStrength", "2D noise reduction strength, automatic mode", BY_REFERENCE(set2DAutoMaxStrength)},
    {"set2DManualMaxStrength", "2D noise reduction strength, manual mode", BY_REFERENCE(set2DManualMaxStrength)},
    {"set3DSwitch", "3D noise reduction on or off", BY_REFERENCE(set3DSwitch)},
    {"set3DMode", "3D noise reduction mode", BY_REFERENCE(set3DMode)},
    {"set3DAutoMaxStrength", "3D noise reduction strength, automatic mode", BY_REFERENCE(set3DAutoMaxStrength)},
    {"set3DManualMaxStrength", "3D noise reduction strength, manual mode", BY_REFERENCE(set3DManualMaxStrength)},
    {"setBeaway", "beaway on or off", BY_REFERENCE(setBeaway)},
    {"setIRSwitch", "infrared light on or off; on switches the white light off", BY_REFERENCE(setIRSwitch)},
    {"setWhiteSwitch", "white light on or off; on switches the infrared light off", BY_REFERENCE(setWhiteSwitch)},
    {"setWhiteMode", "white light mode", BY_REFERENCE(setWhiteMode)},
};
#undef BY_REFERENCE

Result setNamed(Session& p_objSession, const NamedSetter& p_stSetter, const std::string& p_strValue) {
    const int value = parseInt(p_strValue, "the value");
    const Json data = {{"value", value}};
    if (!p_stSetter.pfnSet(p_objSession.controller(), value)) {
        return refused(p_objSession, std::string(p_stSetter.szName) + " returned false", data);
    }
    return {true, "", data, {}};
}

Result setByAnyName(Session& p_objSession, const Words& p_vecWords) {
    std::vector<std::string> names;
    for (const NamedSetter& setter : kNamedSetters) {
        if (lowerCase(setter.szName) == lowerCase(p_vecWords[0])) {
            return setNamed(p_objSession, setter, p_vecWords[1]);
        }
        names.push_back(setter.szName);
    }
    throw CommandError("unknown setter " + quoted(p_vecWords[0]) + didYouMean(nearestMatch(p_vecWords[0], names)));
}

// The last word may be "nocache": send the value even if it is in force already, and do not record it.
bool wantsCache(const Words& p_vecWords, std::size_t p_nUsed) {
    if (p_vecWords.size() == p_nUsed) {
        return true;
    }
    if ("nocache" != lowerCase(p_vecWords[p_nUsed])) {
        throw CommandError("expected nocache, not " + quoted(p_vecWords[p_nUsed]));
    }
    return false;
}

std::string refusal(int p_nReturned) {
    constexpr int kNoKey = -1;  // of a controller that is not initialised; no parameter has the number 1
    const std::string returned = "the library returned " + std::to_string(p_nReturned);
    return kNoKey == p_nReturned ? returned
                                 : returned + ", stopped at " + describeKey(0u - static_cast<u32>(p_nReturned));
}

Result setOne(Session& p_objSession, const Words& p_vecWords) {
    const u32 key = parseKey(p_vecWords[0]);
    const int value = parseInt(p_vecWords[1], "the value");
    const bool cache = wantsCache(p_vecWords, 2);
    const int returned = p_objSession.controller().setParameter(static_cast<int>(key), value, cache);
    const Json data = {
        {"key", key}, {"name", nameOfKey(key)}, {"value", value}, {"cache", cache}, {"returned", returned}};
    if (0 != returned) {
        return refused(p_objSession, refusal(returned), data);
    }
    return {true, "", data, {"set " + describeKey(key) + " = " + std::to_string(value)}};
}

Result setText(Session& p_objSession, const Words& p_vecWords) {
    const bool cache = wantsCache(p_vecWords, 1);
    const int returned = p_objSession.controller().setParameters(p_vecWords[0], cache);
    const Json data = {{"text", p_vecWords[0]}, {"cache", cache}, {"returned", returned}};
    if (0 != returned) {
        return refused(p_objSession, refusal(returned), data);
    }
    return {true, "", data, {"set " + p_vecWords[0]}};
}

Result set(Session& p_objSession, const Words& p_vecWords) {
    if (startsWith(p_vecWords[0], "(")) {
        return setText(p_objSession, p_vecWords);
    }
    if (p_vecWords.size() < 2) {
        parseKey(p_vecWords[0]);
        throw CommandError("set needs a value for " + quoted(p_vecWords[0]));
    }
    return setOne(p_objSession, p_vecWords);
}

}  // namespace

void addParameterCommands(CommandTable& p_objTable) {
    p_objTable.add({"set", "KEY VALUE [nocache] | \"(KEY,VALUE)...\" [nocache]",
                    "set one parameter by key name or number, or several as text", kParametersGroup, 1, 3, set});
    p_objTable.add({"setParameter", "KEY VALUE [nocache]", "as set with a key", kParametersGroup, 2, 3, setOne});
    p_objTable.add({"setParameters", "TEXT [nocache]", "any text, as the host would hand it over", kParametersGroup, 1,
                    2, setText});
    p_objTable.add({"setter", "NAME VALUE", "a named setter of the list below", kParametersGroup, 2, 2, setByAnyName});
    for (const NamedSetter& setter : kNamedSetters) {
        p_objTable.add({setter.szName, "VALUE", setter.szSummary, kParametersGroup, 1, 1,
                        [&setter](Session& p_objSession, const Words& p_vecWords) {
                            return setNamed(p_objSession, setter, p_vecWords[0]);
                        }});
    }
}

}  // namespace sensorctl
