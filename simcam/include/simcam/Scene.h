// What stands in front of the camera: how bright it is, how far the subject is, how cold the air is.
//
// The scene knows nothing of drivers and sensors; they look at it. A picture can be drawn from it.
#pragma once

#include "simcam/Export.h"

#include <functional>
#include <mutex>

namespace simcam {

// Daylight over a day: dayLux by day, nightLux by night. Twilight is centred on sunrise and on sunset: it begins
// twilightMinutes before and ends twilightMinutes after; in it the light changes evenly on a logarithmic scale.
struct DayCurve {
    int sunriseMinute = 6 * 60;  // minute of the day, 0 to 1439, before sunsetMinute
    int sunsetMinute = 20 * 60;  // minute of the day, 0 to 1439
    int twilightMinutes = 30;    // 1 to 180
    double dayLux = 20000.0;     // lux, not below nightLux
    double nightLux = 0.1;       // lux
};

// Everything that can be known of a scene at one moment; a plain value.
struct SceneState {
    enum class Light {
        Fixed,     // always `lux`
        DayCurve,  // as `curve` says for the scene's time of day
    };
    Light light = Light::Fixed;
    double lux = 1000.0;           // 0 to 200000
    DayCurve curve;                // only for Light::DayCurve
    int clockShiftSeconds = 0;     // the scene's own time of day is the device time plus this; -86400 to 86400
    double subjectMetres = 5.0;    // distance of what the lens should focus on, 0.01 to 100000
    double ambientCelsius = 20.0;  // -60 to 85

    // The light at a second of the device's day (0 to 86399).
    SIMCAM_API double luxAt(int p_nDeviceSecondOfDay) const;
};

// The brightness of a light on the scale of the day/night thresholds: 0 (0 lux) to 100 (100000 lux and more), 20 levels for
// each power of ten: 20 * log10(1 + lux). 1 lux is 6, 9 lux 20, 99 lux 40, 999 lux 60.
SIMCAM_API double lightLevel(double p_dLux);

// The scene of one camera, shared by its channels.
//
// Threads: every function may be called from any thread. A setter that is handed a value outside its range changes nothing
// and returns false.
class SIMCAM_API Scene {
public:
    Scene() = default;
    Scene(const Scene&) = delete;
    Scene& operator=(const Scene&) = delete;

    SceneState state() const;

    // The light now, in lux, and the scene's own second of the day (0 to 86399).
    double light() const;
    int secondOfDay() const;

    bool setLight(double p_dLux);  // a fixed light; ends the day curve
    bool followDay(const DayCurve& p_stCurve);
    bool setClockShift(int p_nSeconds);
    bool setSubjectDistance(double p_dMetres);
    bool setAmbientTemperature(double p_dCelsius);

    // Called after each change, on the thread that made it, without a lock. One listener; the camera's driver uses it.
    void onChange(std::function<void()> p_fnListener);

private:
    bool change(bool p_bLegal, const std::function<void(SceneState&)>& p_fnEdit);

    mutable std::mutex m_mutex;  // guards everything below
    SceneState m_stState;
    std::function<void()> m_fnListener;
};

}  // namespace simcam
