#include "simcam/driver/Lens.h"

#include "platform/ImageAdjust.h"
#include "simcam/Commands.h"

#include <algorithm>
#include <cstdlib>

namespace simcam {
namespace {

constexpr int kModeAutomatic = 0;
constexpr int kModeManual = 1;

constexpr int kZoomStep = 235;            // positions: a 64th of the travel
constexpr int kFocusStep = 100;           // positions: a hundredth of the travel
constexpr int kZoomSpeedPerLevel = 940;   // positions a second: level 0 takes 16 s from end to end, level 7 takes 2 s
constexpr int kFocusSpeedPerLevel = 625;  // likewise
constexpr int kTopLevel = 7;
constexpr int kFocusHome = 2000;  // where the focus motor stands after power-up and after a reset

// How far the sharp position must have moved away before auto focus starts, by sensitivity.
int tolerance(int p_nSensitivity) {
    return p_nSensitivity <= 0 ? 400 : 1 == p_nSensitivity ? 150 : 30;
}

}  // namespace

Lens::Lens()
    : m_objZoom(kZoomWide, kZoomTele, kZoomWide),
      m_objFocus(kFocusFar, kFocusNear, kFocusHome),
      m_dNearLimit(nearestFocus(1.0)) {}

void Lens::advance(INT64 p_nNow) {
    for (;;) {
        const bool bZoom = Task::None != m_eZoomTask && m_objZoom.arrival() <= p_nNow;
        const bool bFocus = Task::None != m_eFocusTask && m_objFocus.arrival() <= p_nNow;
        if (bZoom && (!bFocus || m_objZoom.arrival() <= m_objFocus.arrival())) {
            zoomArrived(m_objZoom.arrival());
        } else if (bFocus) {
            focusArrived(m_objFocus.arrival());
        } else {
            return;
        }
    }
}

int Lens::zoomTo(INT64 p_nNow, int p_nPosition) {
    if (m_bResetting) {
        return IA_ERR_BUSY;
    }
    if (Task::None != m_eZoomTask) {
        return p_nPosition == m_objZoom.target() ? IA_OK : IA_ERR_BUSY;
    }
    m_objZoom.moveTo(p_nNow, p_nPosition, zoomSpeed());
    m_eZoomTask = Task::Absolute;
    zoomStarted(p_nNow);
    return IA_OK;
}

int Lens::stepZoom(INT64 p_nNow, int p_nSteps) {
    const int nResult = step(p_nNow, m_objZoom, m_eZoomTask, p_nSteps * kZoomStep, zoomSpeed());
    if (IA_OK == nResult) {
        zoomStarted(p_nNow);
    }
    return nResult;
}

int Lens::focusTo(INT64 p_nNow, int p_nPosition) {
    if (m_bResetting) {
        return IA_ERR_BUSY;
    }
    if (kModeAutomatic == m_nMode) {
        return IA_OK;  // the motor belongs to auto focus
    }
    if (Task::None != m_eFocusTask) {
        return p_nPosition == m_objFocus.target() ? IA_OK : IA_ERR_BUSY;
    }
    m_objFocus.moveTo(p_nNow, p_nPosition, focusSpeed());
    m_eFocusTask = Task::Absolute;
    advance(p_nNow);
    return IA_OK;
}

int Lens::stepFocus(INT64 p_nNow, int p_nSteps) {
    if (kModeAutomatic == m_nMode && !m_bResetting) {
        return IA_OK;
    }
    const int nResult = step(p_nNow, m_objFocus, m_eFocusTask, p_nSteps * kFocusStep, focusSpeed());
    advance(p_nNow);
    return nResult;
}

int Lens::step(INT64 p_nNow, Motor& p_objMotor, Task& p_eTask, int p_nDistance, int p_nSpeed) {
    if (m_bResetting) {
        return IA_ERR_BUSY;
    }
    if (0 == p_nDistance) {
        p_objMotor.stop(p_nNow);
        return IA_OK;
    }
    if (Task::None != p_eTask && Task::Steps != p_eTask) {
        return IA_ERR_BUSY;
    }
    p_objMotor.moveTo(p_nNow, p_objMotor.target() + p_nDistance, p_nSpeed);
    p_eTask = Task::Steps;
    return IA_OK;
}

int Lens::focusOnce(INT64 p_nNow) {
    const bool bBusy = Task::None != m_eFocusTask && kModeAutomatic != m_nMode;
    if (m_bResetting || Task::None != m_eZoomTask || bBusy) {
        return IA_ERR_BUSY;
    }
    startAutoFocus(p_nNow, m_objZoom.target());
    return IA_OK;
}

int Lens::reset(INT64 p_nNow) {
    if (m_bResetting) {
        return IA_ERR_BUSY;
    }
    m_bResetting = true;
    m_bHomed = false;
    m_objZoom.moveTo(p_nNow, kZoomWide, (kTopLevel + 1) * kZoomSpeedPerLevel);
    m_objFocus.moveTo(p_nNow, kFocusFar, (kTopLevel + 1) * kFocusSpeedPerLevel);
    m_eZoomTask = Task::Absolute;
    m_eFocusTask = Task::Absolute;
    advance(p_nNow);
    return IA_OK;
}

void Lens::setFocusMode(INT64 p_nNow, int p_nMode) {
    m_nMode = p_nMode;
    if (kModeManual == p_nMode && Task::AutoFocus == m_eFocusTask) {
        m_objFocus.stop(p_nNow);
        advance(p_nNow);
    } else if (kModeAutomatic == p_nMode) {
        refocus(p_nNow);
    }
}

void Lens::setHeadMoving(INT64 p_nNow, bool p_bMoving) {
    const bool bStops = m_bHeadMoving && !p_bMoving;
    m_bHeadMoving = p_bMoving;
    if (bStops && kModeAutomatic == m_nMode) {
        refocus(p_nNow);
    }
}

void Lens::setSubject(INT64 p_nNow, double p_dMetres) {
    m_dSubject = p_dMetres;
    const int nOff = std::abs(sharpFor(m_objZoom.target()) - m_objFocus.target());
    if (kModeAutomatic == m_nMode && nOff > tolerance(m_nSensitivity)) {
        refocus(p_nNow);
    }
}

void Lens::setNearLimit(INT64 p_nNow, double p_dMetres) {
    const bool bChanged = p_dMetres != m_dNearLimit;
    m_dNearLimit = p_dMetres;
    if (bChanged && kModeAutomatic == m_nMode && sharpFor(m_objZoom.target()) != m_objFocus.target()) {
        refocus(p_nNow);
    }
}

void Lens::refocus(INT64 p_nNow) {
    if (kModeManual != m_nMode && !m_bResetting && !m_bHeadMoving) {
        startAutoFocus(p_nNow, m_objZoom.target());
    }
}

LensState Lens::state(INT64 p_nNow) const {
    LensState stState;
    stState.zoom = m_objZoom.positionAt(p_nNow);
    stState.zoomTarget = m_objZoom.target();
    stState.focus = m_objFocus.positionAt(p_nNow);
    stState.focusTarget = m_objFocus.target();
    stState.sharpAt = sharpFocusPosition(magnification(stState.zoom), m_dSubject);
    stState.focusing = Task::AutoFocus == m_eFocusTask;
    stState.resetting = m_bResetting;
    return stState;
}

double Lens::magnificationAt(INT64 p_nNow) const {
    return magnification(m_objZoom.positionAt(p_nNow));
}

void Lens::startAutoFocus(INT64 p_nNow, int p_nZoomPosition) {
    m_objFocus.moveTo(p_nNow, sharpFor(p_nZoomPosition), focusSpeed());
    m_eFocusTask = Task::AutoFocus;
    advance(p_nNow);
}

void Lens::zoomStarted(INT64 p_nNow) {
    if (kModeAutomatic == m_nMode) {
        refocus(p_nNow);  // for where the zoom is going
    }
    advance(p_nNow);
}

void Lens::zoomArrived(INT64 p_nTime) {
    m_eZoomTask = Task::None;
    if (m_bResetting) {
        continueReset(p_nTime);
    } else if (kModeManual != m_nMode) {
        const bool bManualMove = Task::Absolute == m_eFocusTask || Task::Steps == m_eFocusTask;
        if (!bManualMove) {
            refocus(p_nTime);
        }
    }
}

void Lens::focusArrived(INT64 p_nTime) {
    m_eFocusTask = Task::None;
    if (m_bResetting) {
        continueReset(p_nTime);
    }
}

void Lens::continueReset(INT64 p_nTime) {
    if (Task::None != m_eZoomTask || Task::None != m_eFocusTask) {
        return;
    }
    if (!m_bHomed) {
        m_bHomed = true;
        m_objFocus.moveTo(p_nTime, kFocusHome, (kTopLevel + 1) * kFocusSpeedPerLevel);
        m_eFocusTask = Task::Absolute;
        return;
    }
    m_bResetting = false;
    if (kModeAutomatic == m_nMode) {
        refocus(p_nTime);
    }
}

// Where auto focus goes: the subject, or the near limit when the subject is nearer.
int Lens::sharpFor(int p_nZoomPosition) const {
    return sharpFocusPosition(magnification(p_nZoomPosition), std::max(m_dSubject, m_dNearLimit));
}

int Lens::zoomSpeed() const {
    return (m_nZoomSpeed + 1) * kZoomSpeedPerLevel;
}

int Lens::focusSpeed() const {
    return (m_nFocusSpeed + 1) * kFocusSpeedPerLevel;
}

}  // namespace simcam
