#include "simcam/driver/DayNight.h"

#include <algorithm>

namespace simcam {
namespace {

constexpr INT64 kSecond = 1000000;  // microseconds
constexpr int kSecondsPerDay = 24 * 60 * 60;
constexpr int kModeDay = 1;
constexpr int kModeNight = 2;
constexpr int kModeTimed = 3;

int secondOfDayBefore(int p_nSecondOfDay, INT64 p_nMicroseconds) {
    const int nBack = static_cast<int>((p_nMicroseconds + kSecond - 1) / kSecond % kSecondsPerDay);
    return (p_nSecondOfDay - nBack + kSecondsPerDay) % kSecondsPerDay;
}

}  // namespace

void DayNight::advance(INT64 p_nNow, int p_nSecondOfDay, const DayNightSettings& p_stSettings,
                       const SceneState& p_stScene) {
    if (m_nLooked >= 0) {
        pass(p_nNow, p_nSecondOfDay);
    }
    m_stSettings = p_stSettings;
    m_stScene = p_stScene;
    look(p_nNow, p_nSecondOfDay);
}

void DayNight::force(bool p_bNight) {
    m_bForced = true;
    m_bNight = p_bNight;
    m_nSince = -1;
}

void DayNight::release() {
    m_bForced = false;
}

// A fixed light needs no look in between. A light that changes is looked at each second; a long time in 20000 looks.
void DayNight::pass(INT64 p_nNow, int p_nSecondOfDay) {
    constexpr INT64 kLooks = 20000;
    if (SceneState::Light::DayCurve == m_stScene.light) {
        const INT64 nStep = std::max(kSecond, (p_nNow - m_nLooked) / kLooks);
        for (INT64 nTime = m_nLooked + nStep; nTime < p_nNow; nTime += nStep) {
            look(nTime, secondOfDayBefore(p_nSecondOfDay, p_nNow - nTime));
        }
    }
    look(p_nNow, p_nSecondOfDay);
}

void DayNight::look(INT64 p_nTime, int p_nSecondOfDay) {
    m_nLooked = p_nTime;
    if (m_bForced) {
        return;
    }
    if (kModeDay == m_stSettings.mode || kModeNight == m_stSettings.mode || kModeTimed == m_stSettings.mode) {
        m_bNight =
            kModeNight == m_stSettings.mode || (kModeTimed == m_stSettings.mode && isNightByTime(p_nSecondOfDay));
        m_nSince = -1;
        return;
    }
    if (!wantsToSwitch(p_nSecondOfDay)) {
        m_nSince = -1;
        return;
    }
    if (m_nSince < 0) {
        m_nSince = p_nTime;
    }
    if (p_nTime - m_nSince >= m_stSettings.delaySeconds * kSecond) {
        m_bNight = !m_bNight;
        m_nSince = -1;
    }
}

bool DayNight::wantsToSwitch(int p_nSecondOfDay) const {
    const int nReadiness = 2 * (m_stSettings.sensitivity - 4);
    const int nDayToNight = m_stSettings.dayToNight + nReadiness;
    const int nNightToDay = std::max(m_stSettings.nightToDay - nReadiness, nDayToNight + 1);
    const double dLevel = lightLevel(m_stScene.luxAt(p_nSecondOfDay));
    return m_bNight ? dLevel > nNightToDay : dLevel < nDayToNight;
}

bool DayNight::isNightByTime(int p_nSecondOfDay) const {
    const int nMinute = p_nSecondOfDay / 60;
    const int nNight = m_stSettings.dayToNightHour * 60 + m_stSettings.dayToNightMinute;
    const int nDay = m_stSettings.nightToDayHour * 60 + m_stSettings.nightToDayMinute;
    if (nNight <= nDay) {
        return nMinute >= nNight && nMinute < nDay;
    }
    return nMinute >= nNight || nMinute < nDay;
}

}  // namespace simcam
