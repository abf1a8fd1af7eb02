/// @file
/// What stands in front of the camera: how bright it is, how far the subject is, how cold the air is.
///
/// The scene knows nothing of drivers and sensors; they look at it. A picture can be drawn from it.
#pragma once

#include "simcam/Export.h"

#include <functional>
#include <mutex>

namespace simcam {

/// Daylight over a day: dayLux by day, nightLux by night. Twilight is centred on sunrise and on sunset: it begins
/// twilightMinutes before and ends twilightMinutes after; in it the light changes evenly on a logarithmic scale.
struct DayCurve {
    int sunriseMinute = 6 * 60;  ///< minute of the day, 0 to 1439, before sunsetMinute
    int sunsetMinute = 20 * 60;  ///< minute of the day, 0 to 1439
    int twilightMinutes = 30;    ///< minutes, 1 to 180
    double dayLux = 20000.0;     ///< lux, not below nightLux
    double nightLux = 0.1;       ///< lux
};

/// Everything that can be known of a scene at one moment; a plain value.
struct SceneState {
    /// Where the light comes from.
    enum class Light {
        Fixed,     ///< always `lux`
        DayCurve,  ///< as `curve` says for the scene's time of day
    };
    Light light = Light::Fixed;  ///< where the light comes from
    double lux = 1000.0;         ///< lux, 0 to 200000
    DayCurve curve;              ///< only for Light::DayCurve
    int clockShiftSeconds = 0;   ///< seconds: the scene's own time of day is the device time plus this; -86400 to 86400
    double subjectMetres = 5.0;  ///< metres: distance of what the lens should focus on, 0.01 to 100000
    double ambientCelsius = 20.0;  ///< degrees Celsius, -60 to 85
    int fogPercent = 0;            ///< percent, 0 clear air to 100
    int windPercent = 20;          ///< percent, 0 to 100: how much the camera's mast trembles
    bool car = true;               ///< whether a car drives along the street

    /// The light at a moment.
    /// @param p_nDeviceSecondOfDay  second of the device's day, 0 to 86399
    /// @return lux
    SIMCAM_API double luxAt(int p_nDeviceSecondOfDay) const;
};

/// The brightness of a light on the scale of the day/night thresholds: 20 levels for each power of ten, 20 * log10(1 +
/// lux). 1 lux is 6, 9 lux 20, 99 lux 40, 999 lux 60.
/// @param p_dLux  the light in lux
/// @return 0 (0 lux) to 100 (100000 lux and more)
SIMCAM_API double lightLevel(double p_dLux);

/// The scene of one camera, shared by its channels.
///
/// Threads: every function may be called from any thread. A setter that is handed a value outside its range changes
/// nothing and returns false. Not copyable.
class SIMCAM_API Scene {
public:
    /// A scene as an empty SceneState describes it.
    Scene() = default;
    Scene(const Scene&) = delete;
    Scene& operator=(const Scene&) = delete;

    /// The scene now.
    /// @return a copy
    SceneState state() const;

    /// The light now.
    /// @return lux
    double light() const;
    /// The scene's own time of day.
    /// @return second of the day, 0 to 86399
    int secondOfDay() const;

    /// Sets a fixed light; ends the day curve.
    /// @param p_dLux  lux, 0 to 200000
    /// @return false outside the range
    bool setLight(double p_dLux);
    /// Lets the light follow the time of day.
    /// @param p_stCurve  how
    /// @return false when a field is outside its range
    bool followDay(const DayCurve& p_stCurve);
    /// Shifts the scene's own time of day against the device's.
    /// @param p_nSeconds  -86400 to 86400
    /// @return false outside the range
    bool setClockShift(int p_nSeconds);
    /// Moves the subject.
    /// @param p_dMetres  0.01 to 100000
    /// @return false outside the range
    bool setSubjectDistance(double p_dMetres);
    /// Sets the temperature of the air.
    /// @param p_dCelsius  -60 to 85
    /// @return false outside the range
    bool setAmbientTemperature(double p_dCelsius);

    /// Lets fog come or go.
    /// @param p_nPercent  percent, 0 clear air to 100
    /// @return false outside the range
    bool setFog(int p_nPercent);
    /// Lets the camera's mast tremble.
    /// @param p_nPercent  percent, 0 to 100
    /// @return false outside the range
    bool setWind(int p_nPercent);
    /// Lets a car drive along the street.
    /// @param p_bDrives  whether it does
    void setCar(bool p_bDrives);

    /// Names who is told of changes. One listener; the camera's driver uses it.
    /// @param p_fnListener  called after each change, on the thread that made it, without a lock
    void onChange(std::function<void()> p_fnListener);

private:
    bool change(bool p_bLegal, const std::function<void(SceneState&)>& p_fnEdit);

    mutable std::mutex m_mutex;  // guards everything below
    SceneState m_stState;
    std::function<void()> m_fnListener;
};

}  // namespace simcam
