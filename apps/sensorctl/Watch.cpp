#include "apps/sensorctl/Watch.h"

#include "apps/sensorctl/ParameterSets.h"
#include "apps/sensorctl/Shared.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

namespace sensorctl {

namespace {

constexpr u32 kDayNightState = 153;  // command of the driver

Change numbers(const char* p_szWhat, int p_nBefore, int p_nAfter) {
    return {std::string(p_szWhat) + " " + std::to_string(p_nBefore) + " -> " + std::to_string(p_nAfter),
            {{"what", p_szWhat}, {"before", p_nBefore}, {"after", p_nAfter}}};
}

std::string luxText(double p_dLux) {
    char buffer[64];
    std::snprintf(buffer, sizeof(buffer), "%.4g", p_dLux);
    return buffer;
}

Json jsonOf(const std::map<u32, int>& p_mapValues, u32 p_nKey) {
    const auto found = p_mapValues.find(p_nKey);
    return p_mapValues.end() == found ? Json(nullptr) : Json(found->second);
}

// What differs between two maps, each entry described by a function of its key.
template <typename Describe>
void addDifferences(const std::map<u32, int>& p_mapBefore, const std::map<u32, int>& p_mapAfter,
                    std::vector<Change>& p_vecChanges, Describe&& p_fnDescribe) {
    std::map<u32, int> all = p_mapBefore;
    all.insert(p_mapAfter.begin(), p_mapAfter.end());
    for (const auto& [key, value] : all) {
        const Json before = jsonOf(p_mapBefore, key);
        const Json after = jsonOf(p_mapAfter, key);
        if (before == after) {
            continue;
        }
        Change change = p_fnDescribe(key);
        change.strText +=
            " " + (before.is_null() ? "-" : before.dump()) + " -> " + (after.is_null() ? "-" : after.dump());
        change.data["before"] = before;
        change.data["after"] = after;
        p_vecChanges.push_back(change);
    }
}

Change ofParameter(u32 p_nKey) {
    return {describeKey(p_nKey), {{"what", "parameter"}, {"key", p_nKey}, {"name", nameOfKey(p_nKey)}}};
}

Change ofDriver(u32 p_nCommand) {
    const simcam::CommandRow* const row = simcam::findCommand(p_nCommand);
    const std::string name = nullptr == row ? "" : row->name;
    return {"driver " + std::to_string(p_nCommand) + (name.empty() ? "" : " (" + name + ")"),
            {{"what", "driver"}, {"command", p_nCommand}, {"name", name}}};
}

}  // namespace

Watch::Watch(Session& p_objSession, const Subjects& p_stSubjects)
    : m_objSession(p_objSession), m_stSubjects(p_stSubjects) {
    if (p_objSession.isInitialised() && (p_stSubjects.bParameters || !p_stSubjects.setKeys.empty())) {
        m_vecStyle = styleOf(p_objSession);
        m_vecStyle.erase(std::remove_if(m_vecStyle.begin(), m_vecStyle.end(),
                                        [&](const StyleParameter& p_stParameter) {
                                            return !p_stSubjects.setKeys.empty() &&
                                                   0 == p_stSubjects.setKeys.count(p_stParameter.nKey);
                                        }),
                         m_vecStyle.end());
    }
    m_stBefore.nScheme = -2;  // no scheme: everything is read
    m_stBefore = take(m_stBefore);
}

std::vector<Change> Watch::look() {
    const State now = take(m_stBefore);
    std::vector<Change> changes;
    if (m_stSubjects.bLight && now.nLight != m_stBefore.nLight) {
        changes.push_back({"light " + luxText(m_stBefore.dLux) + " -> " + luxText(now.dLux) + " lux",
                           {{"what", "light"}, {"before", m_stBefore.dLux}, {"after", now.dLux}}});
    }
    if (m_stSubjects.bState && now.nNight != m_stBefore.nNight) {
        const char* const names[] = {"day", "night"};
        const int before = 0 == m_stBefore.nNight ? 0 : 1;
        const int after = 0 == now.nNight ? 0 : 1;
        changes.push_back({std::string("state ") + names[before] + " -> " + names[after],
                           {{"what", "state"}, {"before", m_stBefore.nNight}, {"after", now.nNight}}});
    }
    if (m_stSubjects.bMode && now.nMode != m_stBefore.nMode) {
        changes.push_back(numbers("mode", m_stBefore.nMode, now.nMode));
    }
    if (m_stSubjects.bScheme && now.nScheme != m_stBefore.nScheme) {
        changes.push_back(numbers("scheme", m_stBefore.nScheme, now.nScheme));
    }
    addDifferences(m_stBefore.mapParameters, now.mapParameters, changes, ofParameter);
    if (m_stSubjects.bDriver) {
        addDifferences(m_stBefore.mapDriver, now.mapDriver, changes, ofDriver);
    }
    m_stBefore = now;
    return changes;
}

// Reads what can have changed. Values follow from calls of the driver, and the set in force from the scheme as well.
Watch::State Watch::take(const State& p_stBefore) const {
    State now = p_stBefore;
    simcam::Camera& camera = m_objSession.camera();
    if (m_objSession.isConstructed()) {
        m_objSession.controller().getParamScheme(now.nScheme);
        m_objSession.controller().getParamMode(now.nMode);
    }
    camera.driver().value(m_objSession.driverChannel(), kDayNightState, now.nNight);
    now.dLux = camera.scene().light();
    now.nLight = static_cast<int>(std::lround(simcam::lightLevel(now.dLux)));
    now.nCalls = camera.transcript().total();
    const bool first = p_stBefore.mapDriver.empty();
    if (first || now.nCalls != p_stBefore.nCalls) {
        now.mapDriver = driverValues();
    }
    if (first || now.nScheme != p_stBefore.nScheme || now.mapDriver != p_stBefore.mapDriver) {
        now.mapParameters = parameters();
    }
    return now;
}

std::map<u32, int> Watch::parameters() const {
    std::map<u32, int> values;
    if (m_vecStyle.empty() || currentScheme(m_objSession) < 0) {
        return values;
    }
    for (const StoredValue& held : memoryOf(m_objSession, m_vecStyle)) {
        values.emplace(held.nKey, held.nValue);
    }
    return values;
}

std::map<u32, int> Watch::driverValues() const {
    std::size_t count = 0;
    const simcam::CommandRow* const rows = simcam::commandTable(count);
    std::map<u32, int> values;
    for (std::size_t i = 0; i < count; ++i) {
        const simcam::CommandKind kind = rows[i].kind;
        const bool settable = simcam::CommandKind::Value == kind || simcam::CommandKind::Dynamic == kind ||
                              simcam::CommandKind::Shared == kind;
        int value = 0;
        if (settable && kDayNightState != rows[i].command &&
            m_objSession.camera().driver().value(m_objSession.driverChannel(), rows[i].command, value)) {
            values[rows[i].command] = value;
        }
    }
    return values;
}

}  // namespace sensorctl
