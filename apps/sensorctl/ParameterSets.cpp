#include "apps/sensorctl/ParameterSets.h"

#include "apps/sensorctl/Shared.h"

namespace sensorctl {

std::vector<StyleParameter> styleOf(Session& p_objSession) {
    return parseStyle(p_objSession.controller().getUIStyleFile());
}

int currentScheme(Session& p_objSession) {
    int scheme = -1;
    p_objSession.controller().getParamScheme(scheme);
    return scheme;
}

std::vector<StoredValue> memoryOf(Session& p_objSession, const std::vector<StyleParameter>& p_vecStyle) {
    if (-1 == currentScheme(p_objSession)) {
        throw CommandError("no scheme is applied; use init first");
    }
    std::vector<StoredValue> values;
    for (const StyleParameter& parameter : p_vecStyle) {
        int value = 0;
        if (!parameter.defaultValue) {
            continue;
        }
        if (!p_objSession.controller().getParameter(static_cast<int>(parameter.nKey), value)) {
            throw CommandError(describeKey(parameter.nKey) + " cannot be read");
        }
        values.push_back({parameter.nKey, value});
    }
    return values;
}

}  // namespace sensorctl
