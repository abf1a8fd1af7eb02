// The day/night switch of one channel.
#pragma once

#include "platform/Types.h"
#include "simcam/Scene.h"

namespace simcam {

// What commands 144 to 154 have set. Thresholds are light levels (simcam/Scene.h).
struct DayNightSettings {
    int mode = 0;          // 144: 0 automatic, 1 day, 2 night, 3 timed
    int dayToNight = 0;    // 145
    int nightToDay = 0;    // 146
    int delaySeconds = 0;  // 147
    int dayToNightHour = 0;
    int dayToNightMinute = 0;
    int nightToDayHour = 0;
    int nightToDayMinute = 0;
    int sensitivity = 4;  // 154: 1 to 7
};

// Automatic: night once the light has been below the day-to-night threshold for the delay, day once it has been above the
// night-to-day threshold for the delay. Each level of sensitivity above 4 brings both thresholds two levels nearer to each
// other, each below 4 two levels apart; they stay at least one level apart. Timed: night from the day-to-night time to the
// night-to-day time, across midnight if need be; day all day when both are the same.
//
// Not thread-safe: belongs to a channel.
class DayNight {
public:
    // Lets the time pass up to this moment, with the settings and the scene that were handed in last, and then looks at the
    // new ones. The device's second of the day belongs to the moment.
    void advance(INT64 p_nNow, int p_nSecondOfDay, const DayNightSettings& p_stSettings, const SceneState& p_stScene);

    // Holds the state until release.
    void force(bool p_bNight);
    void release();

    bool isNight() const { return m_bNight; }

private:
    void pass(INT64 p_nNow, int p_nSecondOfDay);
    void look(INT64 p_nTime, int p_nSecondOfDay);
    bool wantsToSwitch(int p_nSecondOfDay) const;
    bool isNightByTime(int p_nSecondOfDay) const;

    DayNightSettings m_stSettings;
    SceneState m_stScene;
    bool m_bNight = false;
    bool m_bForced = false;
    INT64 m_nLooked = -1;  // when the scene was looked at last, -1: never
    INT64 m_nSince = -1;   // since when the light has asked for the other state, -1: it does not
};

}  // namespace simcam
