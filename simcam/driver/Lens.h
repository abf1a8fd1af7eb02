// The lens of one channel: a zoom motor, a focus motor and the auto focus that moves it.
//
// Zoom and focus move independently, except that auto focus follows the zoom and that a lens reset has both. A command that
// needs a motor which is carrying out another one is refused with IA_ERR_BUSY; the same absolute position again, and more
// steps while steps are being made, are not.
#pragma once

#include "platform/Types.h"
#include "simcam/Driver.h"
#include "simcam/driver/Motor.h"

namespace simcam {

// Times are monotonic microseconds. Everything but advance and the questions expects that advance has been called for the
// present moment. Not thread-safe: belongs to a channel.
class Lens {
public:
    Lens();

    // Lets pass what happens up to this moment: arrivals, the stages of a reset, the auto focus after them.
    void advance(INT64 p_nNow);

    // --- Commands: IA_OK or IA_ERR_BUSY ---
    int zoomTo(INT64 p_nNow, int p_nPosition);
    int stepZoom(INT64 p_nNow, int p_nSteps);  // positive: in; 0 stops
    int focusTo(INT64 p_nNow, int p_nPosition);
    int stepFocus(INT64 p_nNow, int p_nSteps);  // positive: nearer; 0 stops
    int focusOnce(INT64 p_nNow);
    int reset(INT64 p_nNow);

    // --- Settings ---
    void setFocusMode(INT64 p_nNow, int p_nMode);                     // command 1536
    void setHeadMoving(INT64 p_nNow, bool p_bMoving);                 // command 1632
    void setSubject(INT64 p_nNow, double p_dMetres);                  // refocuses when it has changed enough
    void setNearLimit(INT64 p_nNow, double p_dMetres);                // command 1537
    void setSensitivity(int p_nLevel) { m_nSensitivity = p_nLevel; }  // command 1538
    void setZoomSpeed(int p_nLevel) { m_nZoomSpeed = p_nLevel; }      // command 1571
    void setFocusSpeed(int p_nLevel) { m_nFocusSpeed = p_nLevel; }    // command 8207

    // The filter in front of the sensor has changed: focuses again unless the mode is manual.
    void refocus(INT64 p_nNow);

    // --- Questions ---
    LensState state(INT64 p_nNow) const;
    double magnificationAt(INT64 p_nNow) const;
    bool isZooming() const { return Task::None != m_eZoomTask || m_bResetting; }
    bool isFocusMoving() const { return Task::None != m_eFocusTask || m_bResetting; }
    bool isAutoFocusing() const { return Task::AutoFocus == m_eFocusTask || m_bResetting; }
    bool isResetting() const { return m_bResetting; }

private:
    enum class Task { None, Absolute, Steps, AutoFocus };

    int step(INT64 p_nNow, Motor& p_objMotor, Task& p_eTask, int p_nDistance, int p_nSpeed);
    void startAutoFocus(INT64 p_nNow, int p_nZoomPosition);
    void zoomArrived(INT64 p_nTime);
    void focusArrived(INT64 p_nTime);
    void continueReset(INT64 p_nTime);
    int sharpFor(int p_nZoomPosition) const;
    int zoomSpeed() const;
    int focusSpeed() const;
    void zoomStarted(INT64 p_nNow);

    Motor m_objZoom;
    Motor m_objFocus;
    Task m_eZoomTask = Task::None;
    Task m_eFocusTask = Task::None;
    bool m_bResetting = false;
    bool m_bHomed = false;  // the reset has both motors at their home ends
    int m_nMode = 0;
    bool m_bHeadMoving = false;
    double m_dSubject = 5.0;  // metres
    double m_dNearLimit;      // metres
    int m_nSensitivity = 1;
    int m_nZoomSpeed = 3;
    int m_nFocusSpeed = 3;
};

}  // namespace simcam
