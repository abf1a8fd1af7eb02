// Settings that lock the lens.
#pragma once

#include "platform/Types.h"

#include <atomic>

// A value that a host thread may replace while another thread reads it: each field is one relaxed atomic word, so a
// reader sees the old or the new value, never a torn one. No order between fields is promised.
class SensorZoomFocusParam {
public:
    SensorZoomFocusParam() = default;
    SensorZoomFocusParam(const SensorZoomFocusParam& p_objOther) { *this = p_objOther; }
    SensorZoomFocusParam& operator=(const SensorZoomFocusParam& p_objOther) {
        setLockZoomFocusEnable(p_objOther.getLockZoomFocusEnable());
        return *this;
    }

    // While true, commands to zoom, focus and lens are not carried out. False in a new object.
    bool getLockZoomFocusEnable() const { return m_bLockZoomFocus.load(std::memory_order_relaxed); }
    void setLockZoomFocusEnable(bool p_bEnable) { m_bLockZoomFocus.store(p_bEnable, std::memory_order_relaxed); }

private:
    std::atomic<bool> m_bLockZoomFocus{false};
};
