/// @file
/// What the factory wrote about this camera, and its reader.
#pragma once

#include "platform/Types.h"

#include <string>

/// What the factory wrote about this camera. A plain value; an empty one has device type 0 and empty texts.
class MachineInfo {
public:
    /// The kind of device.
    /// @return a number of DeviceType, or whatever else the file says
    u32 getDeviceType() const { return m_nDeviceType; }
    /// Sets the kind of device.
    /// @param p_nType  as getDeviceType returns it
    void setDeviceType(u32 p_nType) { m_nDeviceType = p_nType; }

    /// The model of the main chip.
    /// @return for instance the name that selects entries of the module configuration
    const std::string& getHardwareModel() const { return m_strHardwareModel; }
    /// Sets the model of the main chip.
    /// @param p_strModel  as getHardwareModel returns it
    void setHardwareModel(const std::string& p_strModel) { m_strHardwareModel = p_strModel; }

    /// The board variant.
    /// @return its code
    const std::string& getHardwareCode() const { return m_strHardwareCode; }
    /// Sets the board variant.
    /// @param p_strCode  its code
    void setHardwareCode(const std::string& p_strCode) { m_strHardwareCode = p_strCode; }

private:
    u32 m_nDeviceType = 0;
    std::string m_strHardwareModel;
    std::string m_strHardwareCode;
};

/// The reader of MachineInfo.
class PLATFORM_API SystemInfoParser {
public:
    /// Reads the ini file at this camera path: section [machine], keys "devicetype" (decimal), "hardwaremodel" and
    /// "hardwarecode". The other two keys may be missing: their texts are then empty. Not well formed are a line
    /// without "=", one longer than 198 bytes, one with a zero byte and a second value for one of the three keys; other
    /// sections and keys are skipped. Blocks for as long as the medium takes; re-entrant.
    /// @param p_szPath         absolute camera path
    /// @param[out] p_objInfo   what the file says; left as it was on failure
    /// @return true when the file could be read, was well formed and names a device type that is a decimal number below
    ///         2^32
    static bool parseMachineInfo(const char* p_szPath, MachineInfo& p_objInfo);
};
