#include "apps/sensorctl/ClockText.h"
#include "apps/sensorctl/Commands.h"
#include "apps/sensorctl/Session.h"
#include "apps/sensorctl/Shared.h"
#include "apps/sensorctl/SubCommands.h"

#include <cmath>
#include <cstdio>

namespace sensorctl {

namespace {

constexpr double kBrightest = 200000;  // lux, of the scene
constexpr double kFarthest = 100000;   // metres, of the scene
constexpr double kColdest = -60;       // degrees Celsius, of the scene
constexpr double kHottest = 85;        // degrees Celsius, of the scene
constexpr std::int64_t kMost = 100;    // percent, of fog and wind
constexpr std::int64_t kDay = 86400;   // seconds
constexpr std::int64_t kLongestAdvance = 7 * kDay;

double rounded(double p_dNumber) {
    return std::round(p_dNumber * 1000) / 1000;
}

Json stateOf(Session& p_objSession) {
    const simcam::Scene& scene = p_objSession.camera().scene();
    const simcam::SceneState state = scene.state();
    const int second = scene.secondOfDay();
    char clock[48];
    std::snprintf(clock, sizeof(clock), "%02d:%02d:%02d", second / 3600, second / 60 % 60, second % 60);
    return {{"lux", rounded(scene.light())},
            {"level", rounded(simcam::lightLevel(scene.light()))},
            {"light", simcam::SceneState::Light::Fixed == state.light ? "fixed" : "day"},
            {"sceneClock", clock},
            {"clock", clockText(platform::Clock::civilTime())},
            {"distance", state.subjectMetres},
            {"ambient", state.ambientCelsius},
            {"fog", state.fogPercent},
            {"wind", state.windPercent},
            {"car", state.car}};
}

Result changed(Session& p_objSession, bool p_bOk, const char* p_szWhat) {
    if (!p_bOk) {
        return Result::failed(std::string("the scene does not take this ") + p_szWhat);
    }
    return {true, "", stateOf(p_objSession), {}};
}

Result light(Session& p_objSession, const Words& p_vecWords) {
    const double lux = parseDecimal(p_vecWords[0], "LUX", 0, kBrightest);
    return changed(p_objSession, p_objSession.camera().scene().setLight(lux), "light");
}

int minuteOfDay(const std::string& p_strText) {
    const platform::CivilTime time = parseClock(p_strText, platform::Clock::civilTime());
    return time.hour * 60 + time.minute;
}

// day [SUNRISE SUNSET [DAYLUX NIGHTLUX]]
Result day(Session& p_objSession, const Words& p_vecWords) {
    simcam::DayCurve curve;
    if (1 == p_vecWords.size() || 3 == p_vecWords.size()) {
        throw CommandError("usage: scene day [SUNRISE SUNSET [DAYLUX NIGHTLUX]]");
    }
    if (p_vecWords.size() >= 2) {
        curve.sunriseMinute = minuteOfDay(p_vecWords[0]);
        curve.sunsetMinute = minuteOfDay(p_vecWords[1]);
    }
    if (p_vecWords.size() >= 4) {
        curve.dayLux = parseDecimal(p_vecWords[2], "DAYLUX", 0, kBrightest);
        curve.nightLux = parseDecimal(p_vecWords[3], "NIGHTLUX", 0, kBrightest);
    }
    return changed(p_objSession, p_objSession.camera().scene().followDay(curve), "day");
}

Result clock(Session& p_objSession, const Words& p_vecWords) {
    p_objSession.setClock(parseClock(p_vecWords[0], platform::Clock::civilTime()));
    return changed(p_objSession, true, "clock");
}

Result advance(Session& p_objSession, const Words& p_vecWords) {
    const std::int64_t seconds = parseNumber(p_vecWords[0], "SECONDS", 0, kLongestAdvance);
    p_objSession.pass(seconds * 1000000);
    return changed(p_objSession, true, "time");
}

Result shift(Session& p_objSession, const Words& p_vecWords) {
    const auto seconds = static_cast<int>(parseNumber(p_vecWords[0], "SECONDS", -kDay, kDay));
    return changed(p_objSession, p_objSession.camera().scene().setClockShift(seconds), "shift");
}

Result distance(Session& p_objSession, const Words& p_vecWords) {
    const double metres = parseDecimal(p_vecWords[0], "METRES", 0, kFarthest);
    return changed(p_objSession, p_objSession.camera().scene().setSubjectDistance(metres), "distance");
}

Result ambient(Session& p_objSession, const Words& p_vecWords) {
    const double celsius = parseDecimal(p_vecWords[0], "CELSIUS", kColdest, kHottest);
    return changed(p_objSession, p_objSession.camera().scene().setAmbientTemperature(celsius), "temperature");
}

int percentOf(const std::string& p_strWord) {
    return static_cast<int>(parseNumber(p_strWord, "PERCENT", 0, kMost));
}

Result fog(Session& p_objSession, const Words& p_vecWords) {
    return changed(p_objSession, p_objSession.camera().scene().setFog(percentOf(p_vecWords[0])), "fog");
}

Result wind(Session& p_objSession, const Words& p_vecWords) {
    return changed(p_objSession, p_objSession.camera().scene().setWind(percentOf(p_vecWords[0])), "wind");
}

Result car(Session& p_objSession, const Words& p_vecWords) {
    p_objSession.camera().scene().setCar(parseSwitch(p_vecWords[0], "the car"));
    return changed(p_objSession, true, "car");
}

const std::vector<SubCommand>& sceneCommands() {
    static const std::vector<SubCommand> vecTable = {
        {"light", "LUX", 1, 1, light},         {"day", "[SUNRISE SUNSET [DAYLUX NIGHTLUX]]", 0, 4, day},
        {"clock", "HH:MM[:SS]", 1, 1, clock},  {"advance", "SECONDS", 1, 1, advance},
        {"shift", "SECONDS", 1, 1, shift},     {"distance", "METRES", 1, 1, distance},
        {"ambient", "CELSIUS", 1, 1, ambient}, {"fog", "PERCENT", 1, 1, fog},
        {"wind", "PERCENT", 1, 1, wind},       {"car", "0|1", 1, 1, car},
    };
    return vecTable;
}

Result scene(Session& p_objSession, const Words& p_vecWords) {
    return p_vecWords.empty() ? changed(p_objSession, true, "")
                              : runSubCommand("scene", sceneCommands(), p_objSession, p_vecWords);
}

}  // namespace

void addSceneCommands(CommandTable& p_objTable) {
    p_objTable.add({"scene", argumentsOf(sceneCommands()),
                    "what stands in front of the camera, and the clock; alone: show both", "Scene", 0, 5, scene});
}

}  // namespace sensorctl
