/// @file
/// Settings that lock the lens.
#pragma once

#include "platform/Types.h"

#include <atomic>

/// Settings that lock the lens.
///
/// A value that a host thread may replace while another thread reads it: each field is one relaxed atomic word, so a
/// reader sees the old or the new value, never a torn one. No order between fields is promised.
class SensorZoomFocusParam {
public:
    /// An unlocked lens.
    SensorZoomFocusParam() = default;
    /// Copies each field.
    /// @param p_objOther  the settings to copy
    SensorZoomFocusParam(const SensorZoomFocusParam& p_objOther) { *this = p_objOther; }
    /// Copies each field.
    /// @param p_objOther  the settings to copy
    /// @return this object
    SensorZoomFocusParam& operator=(const SensorZoomFocusParam& p_objOther) {
        setLockZoomFocusEnable(p_objOther.getLockZoomFocusEnable());
        return *this;
    }

    /// Whether the lens is locked: while it is, commands to zoom, focus and lens are not carried out.
    /// @return false in a new object
    bool getLockZoomFocusEnable() const { return m_bLockZoomFocus.load(std::memory_order_relaxed); }
    /// Locks the lens or frees it.
    /// @param p_bEnable  true to lock
    void setLockZoomFocusEnable(bool p_bEnable) { m_bLockZoomFocus.store(p_bEnable, std::memory_order_relaxed); }

private:
    std::atomic<bool> m_bLockZoomFocus{false};
};
