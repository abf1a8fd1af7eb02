#include "simcam/Scene.h"

#include "platform/Clock.h"

#include <algorithm>
#include <cmath>

namespace simcam {
namespace {

constexpr int kSecondsPerDay = 24 * 60 * 60;
constexpr int kMinutesPerDay = 24 * 60;
constexpr double kBrightest = 200000.0;  // lux; the sun at noon gives half of it

int wrapSecond(int p_nSecond) {
    return ((p_nSecond % kSecondsPerDay) + kSecondsPerDay) % kSecondsPerDay;
}

int deviceSecondOfDay() {
    const platform::CivilTime stNow = platform::Clock::civilTime();
    return (stNow.hour * 60 + stNow.minute) * 60 + stNow.second;
}

bool within(double p_dValue, double p_dLow, double p_dHigh) {
    return p_dValue >= p_dLow && p_dValue <= p_dHigh;  // false for not-a-number
}

// 0 at night, 1 by day, in between in the two twilights, which are centred on sunrise and sunset.
double shareOfDay(const DayCurve& p_stCurve, double p_dMinute) {
    const double dHalf = p_stCurve.twilightMinutes;
    const double dUp = (p_dMinute - (p_stCurve.sunriseMinute - dHalf)) / (2.0 * dHalf);
    const double dDown = ((p_stCurve.sunsetMinute + dHalf) - p_dMinute) / (2.0 * dHalf);
    return std::clamp(std::min(dUp, dDown), 0.0, 1.0);
}

}  // namespace

double lightLevel(double p_dLux) {
    if (!(p_dLux > 0.0)) {
        return 0.0;
    }
    return std::min(100.0, 20.0 * std::log10(1.0 + p_dLux));
}

double SceneState::luxAt(int p_nDeviceSecondOfDay) const {
    if (Light::Fixed == light) {
        return lux;
    }
    const double dMinute = wrapSecond(p_nDeviceSecondOfDay + clockShiftSeconds) / 60.0;
    // One is added on both sides so that a night of 0 lux has a logarithm.
    const double dNight = std::log(1.0 + curve.nightLux);
    const double dDay = std::log(1.0 + curve.dayLux);
    return std::exp(dNight + (dDay - dNight) * shareOfDay(curve, dMinute)) - 1.0;
}

SceneState Scene::state() const {
    const std::lock_guard<std::mutex> guard(m_mutex);
    return m_stState;
}

double Scene::light() const {
    return state().luxAt(deviceSecondOfDay());
}

int Scene::secondOfDay() const {
    return wrapSecond(deviceSecondOfDay() + state().clockShiftSeconds);
}

bool Scene::setLight(double p_dLux) {
    return change(within(p_dLux, 0.0, kBrightest), [p_dLux](SceneState& p_stState) {
        p_stState.light = SceneState::Light::Fixed;
        p_stState.lux = p_dLux;
    });
}

bool Scene::followDay(const DayCurve& p_stCurve) {
    const bool bLegal = p_stCurve.sunriseMinute >= 0 && p_stCurve.sunriseMinute < p_stCurve.sunsetMinute &&
                        p_stCurve.sunsetMinute < kMinutesPerDay && p_stCurve.twilightMinutes >= 1 &&
                        p_stCurve.twilightMinutes <= 180 && within(p_stCurve.nightLux, 0.0, kBrightest) &&
                        within(p_stCurve.dayLux, p_stCurve.nightLux, kBrightest);
    return change(bLegal, [&p_stCurve](SceneState& p_stState) {
        p_stState.light = SceneState::Light::DayCurve;
        p_stState.curve = p_stCurve;
    });
}

bool Scene::setClockShift(int p_nSeconds) {
    return change(p_nSeconds >= -kSecondsPerDay && p_nSeconds <= kSecondsPerDay,
                  [p_nSeconds](SceneState& p_stState) { p_stState.clockShiftSeconds = p_nSeconds; });
}

bool Scene::setSubjectDistance(double p_dMetres) {
    return change(within(p_dMetres, 0.01, 100000.0),
                  [p_dMetres](SceneState& p_stState) { p_stState.subjectMetres = p_dMetres; });
}

bool Scene::setAmbientTemperature(double p_dCelsius) {
    return change(within(p_dCelsius, -60.0, 85.0),
                  [p_dCelsius](SceneState& p_stState) { p_stState.ambientCelsius = p_dCelsius; });
}

bool Scene::setFog(int p_nPercent) {
    return change(p_nPercent >= 0 && p_nPercent <= 100,
                  [p_nPercent](SceneState& p_stState) { p_stState.fogPercent = p_nPercent; });
}

bool Scene::setWind(int p_nPercent) {
    return change(p_nPercent >= 0 && p_nPercent <= 100,
                  [p_nPercent](SceneState& p_stState) { p_stState.windPercent = p_nPercent; });
}

void Scene::setCar(bool p_bDrives) {
    change(true, [p_bDrives](SceneState& p_stState) { p_stState.car = p_bDrives; });
}

void Scene::onChange(std::function<void()> p_fnListener) {
    const std::lock_guard<std::mutex> guard(m_mutex);
    m_fnListener = std::move(p_fnListener);
}

bool Scene::change(bool p_bLegal, const std::function<void(SceneState&)>& p_fnEdit) {
    if (!p_bLegal) {
        return false;
    }
    std::function<void()> fnListener;
    {
        const std::lock_guard<std::mutex> guard(m_mutex);
        p_fnEdit(m_stState);
        fnListener = m_fnListener;
    }
    if (fnListener) {
        fnListener();
    }
    return true;
}

}  // namespace simcam
