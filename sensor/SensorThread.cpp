// One cycle of the background thread: decides which scheme is to be applied, about once a second. The thread takes no
// lock; the busy bits keep it from switching while somebody else does.
#include "platform/VelmorTime.h"
#include "sensor/ISensorController.h"
#include "sensor/diag/Message.h"

namespace {
constexpr char kSourceFile[] = "ISensorController.cpp";
constexpr int kPace = 1;  // second
constexpr diag::Operation kCycle = {"sensorThread", "int ISensorController::sensorThread()"};
}  // namespace

// Scheme 0 by day, 1 by night; a driver that does not answer counts as day.
int ISensorController::dayNightScheme() {
    int nState = 0;
    getDNState(nState);
    return 0 != nState ? 1 : 0;
}

bool ISensorController::isCurrent(int p_nScheme) const {
    return static_cast<u32>(p_nScheme) == m_nCurScheme;
}

void ISensorController::switchByItself(int p_nScheme) {
    if (isCurrent(p_nScheme) || m_nFlags.anyBit(kBusyMask)) {
        return;
    }
    SENSOR_DBG_OF(kCycle, "SCHEME: auto switch_to(%d)\n", p_nScheme);
    SENSOR_ASSERT_DETAIL_OF(kCycle, QVS_SUCCESS == switch_to(p_nScheme, false), "QVS_SUCCESS == switch_to(nScheme)",
                            "nScheme(%d)\n", p_nScheme);
}

// Outside its windows a plate-recognition device follows day and night, with the driver's own day/night mode switched off.
void ISensorController::followDayNightForPlates() {
    const int nScheme = dayNightScheme();
    if ((0 == m_nLastSchedule && isCurrent(nScheme)) || m_nFlags.anyBit(kBusyMask)) {
        return;
    }
    LPR_switch_to(nScheme);
    m_nLastSchedule = 0;
}

// Coming from there into a window, every key is sent again: among them the scheme's own day/night mode.
void ISensorController::followScheduleForPlates(int p_nScheme) {
    constexpr u32 kInWindow = 1;
    if ((kInWindow == m_nLastSchedule && isCurrent(p_nScheme)) || m_nFlags.anyBit(kBusyMask)) {
        return;
    }
    SENSOR_DBG_OF(kCycle, "SCHEME: auto switch_to(%d)\n", p_nScheme);
    if (kInWindow == m_nLastSchedule) {
        SENSOR_ASSERT_DETAIL_OF(kCycle, QVS_SUCCESS == switch_to(p_nScheme, false), "QVS_SUCCESS == switch_to(nScheme)",
                                "nScheme(%d)\n", p_nScheme);
    } else {
        SENSOR_ASSERT_DETAIL_OF(kCycle, QVS_SUCCESS == switch_to(p_nScheme, true),
                                "QVS_SUCCESS == switch_to(nScheme, true)", "nScheme(%d)\n", p_nScheme);
    }
    m_nLastSchedule = kInWindow;
}

int ISensorController::sensorThread() {
    // Meant: no pause during a reset; the busy bits stop the cycle before it switches.
    if (!m_nFlags.anyBit(resetting_flag)) {
        VelmorTime(kPace, 0).wait();
    }
    if (0 == m_nParamMode) {
        return QVS_SUCCESS;
    }
    if (m_bDNSchemeSwitch) {
        switchByItself(dayNightScheme());
        return QVS_SUCCESS;
    }
    if (!m_bScheduleSwitch) {
        return QVS_SUCCESS;
    }
    int nScheme = 0;
    int nSchedule = 0;
    SENSOR_ASSERT_DETAIL(QVS_SUCCESS == judgeCurScheme(nScheme, nSchedule),
                         "QVS_SUCCESS == judgeCurScheme(nScheme, nSchedule)", "nScheme(%d)\n", nScheme);
    if (!m_bLPRDevice) {
        switchByItself(nScheme);
    } else if (0 == nSchedule) {
        followDayNightForPlates();
    } else {
        followScheduleForPlates(nScheme);
    }
    return QVS_SUCCESS;
}
