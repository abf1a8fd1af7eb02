// Parameter schemes: which one is applied, and how another one takes its place.
#include "platform/QVDeviceTime.h"
#include "platform/VelmorTime.h"
#include "sensor/ISensorController.h"
#include "sensor/Keys.h"
#include "sensor/diag/Message.h"
#include "technic/QVMutex.h"

#include <algorithm>

namespace {

constexpr char kSourceFile[] = "ISensorController.cpp";

constexpr int kBusyWait = 500000;  // microseconds between two looks at the busy bits

// Places of a scheme's window in its set; they are read by place, not by key.
constexpr u32 kStartHour = 1;
constexpr u32 kStartMinute = 2;
constexpr u32 kEndHour = 3;
constexpr u32 kEndMinute = 4;

// An hour and a minute as one number, for instance 1305 for 13:05.
u32 clockNumber(u32 p_nHour, u32 p_nMinute) {
    return p_nHour * 100 + p_nMinute;
}

}  // namespace

// What automatic switching follows, from the mode of scheme 0.
void ISensorController::setSwitchingSource(u32 p_nMode) {
    m_bScheduleSwitch = 1 == p_nMode;
    m_bDNSchemeSwitch = 2 == p_nMode;
}

// Makes a scheme that is in the table current, for the length of its application.
bool ISensorController::beginSwitch(int p_nScheme) {
    if (nullptr == setOf(static_cast<u32>(p_nScheme))) {
        SENSOR_ERR("there is no scheme %d to switch to\n", p_nScheme);
        return false;
    }
    m_nFlags.setBits(switching_flag);
    m_nLastScheme = static_cast<int>(u32{m_nCurScheme});
    m_nCurScheme = static_cast<u32>(p_nScheme);
    return true;
}

int ISensorController::switch_to(int p_nScheme, bool p_bForce) {
    SENSOR_DBG("switch_to(): %d -> %d\n", static_cast<int>(u32{m_nCurScheme}), p_nScheme);
    if (!beginSwitch(p_nScheme)) {
        return QVS_SUCCESS;
    }
    KeyVal* const pSet = m_ppUserKeyVal[p_nScheme];
    if (p_bForce) {
        setParameters(pSet, m_nKeyValSum, false);
    } else {
        SENSOR_ASSERT_DETAIL(QVS_SUCCESS == setParameters(pSet, m_nKeyValSum, true),
                             "QVS_SUCCESS == setParameters(m_ppUserKeyVal[m_nCurScheme], m_nKeyValSum, true)",
                             "m_nCurScheme(%d) m_nKeyValSum(%d)\n", static_cast<int>(u32{m_nCurScheme}),
                             static_cast<int>(m_nKeyValSum));
    }
    m_nFlags.clearBits(switching_flag);
    return QVS_SUCCESS;
}

int ISensorController::LPR_switch_to(int p_nScheme) {
    if (!beginSwitch(p_nScheme)) {
        return QVS_SUCCESS;
    }
    const KeyVal* const pSet = m_ppUserKeyVal[p_nScheme];
    KeyVal* const pEnd = std::transform(pSet, pSet + m_nKeyValSum, m_pKeyValWork, [](const KeyVal& p_stKeyVal) {
        return KeyVal{p_stKeyVal.key, loadRelaxed(p_stKeyVal.value)};
    });
    KeyVal* const pMode =
        std::find_if(m_pKeyValWork, pEnd, [](const KeyVal& p_stKeyVal) { return KEY_DN_MODE == p_stKeyVal.key; });
    if (pEnd != pMode) {
        pMode->value = 0;
    }
    setParameters(m_pKeyValWork, m_nKeyValSum, false);
    m_nFlags.clearBits(switching_flag);
    return QVS_SUCCESS;
}

void ISensorController::waitWhileBusy() const {
    while (m_nFlags.anyBit(kBusyMask)) {
        VelmorTime(0, kBusyWait).wait();
    }
}

bool ISensorController::setParamScheme(int p_nScheme) {
    const QVMutexManager guard(&m_objMutex, kSourceFile, __LINE__);
    if (!isReady(__func__)) {
        return false;
    }
    // Meant: a scheme out of range is reported here and not turned away; the switch itself refuses it.
    SENSOR_ASSERT_DETAIL(p_nScheme >= 0 && static_cast<u32>(p_nScheme) <= m_stSysConf.nSchemeSum,
                         "p_nScheme >= 0 && (u32)p_nScheme <= m_stSysConf.nSchemeSum", "p_nScheme(%d)\n", p_nScheme);
    waitWhileBusy();
    return QVS_SUCCESS == switch_to(p_nScheme, false);
}

bool ISensorController::getParamScheme(int& p_nScheme) {
    const QVMutexManager guard(&m_objMutex, kSourceFile, __LINE__);
    p_nScheme = static_cast<int>(u32{m_nCurScheme});
    return true;
}

bool ISensorController::setParamMode(int p_nMode) {
    const QVMutexManager guard(&m_objMutex, kSourceFile, __LINE__);
    if (!isReady(__func__)) {
        return false;
    }
    SENSOR_ASSERT_DETAIL(0 == p_nMode || 1 == p_nMode, "0 == p_nMode || 1 == p_nMode", "p_nMode(%d)\n", p_nMode);
    waitWhileBusy();
    m_nParamMode = static_cast<u32>(p_nMode);
    return true;
}

bool ISensorController::getParamMode(int& p_nMode) {
    const QVMutexManager guard(&m_objMutex, kSourceFile, __LINE__);
    p_nMode = static_cast<int>(u32{m_nParamMode});
    return true;
}

// A set that is too small to hold a window has an empty one.
ISensorController::SchemeWindow ISensorController::windowOf(const KeyVal* p_pSet) const {
    if (m_nKeyValSum <= kEndMinute) {
        return {0, 0};
    }
    const auto value = [&](u32 p_nPlace) { return loadRelaxed(p_pSet[p_nPlace].value); };
    return {clockNumber(value(kStartHour), value(kStartMinute)), clockNumber(value(kEndHour), value(kEndMinute))};
}

int ISensorController::judgeCurScheme(int& p_nScheme, int& p_nSchedule) {
    const DeviceTime stTime = QVDeviceTime::getCurrentTime();
    const u32 nNow = clockNumber(static_cast<u32>(stTime.hour), static_cast<u32>(stTime.minute));
    p_nSchedule = 0;
    for (u32 i = 0; i < m_stSysConf.nSchemeSum; ++i) {
        const SchemeWindow stWindow = windowOf(m_ppUserKeyVal[i]);
        if (stWindow.nStart <= nNow && nNow < stWindow.nEnd) {
            p_nScheme = static_cast<int>(i);
            p_nSchedule = 1;
            return QVS_SUCCESS;
        }
    }
    p_nScheme = 0;
    return QVS_SUCCESS;
}
