/// @file
/// The configuration of one camera module (one channel), and its reader.
#pragma once

#include "platform/Types.h"

#include <string>
#include <vector>

/// The configuration of one camera module (one channel). A plain value; an empty one has module id 0 and empty texts.
class ModuleConfigure {
public:
    /// The kind of sensor.
    /// @return its number
    u32 getModuleId() const { return m_nModuleId; }
    /// Sets the kind of sensor.
    /// @param p_nId  its number
    void setModuleId(u32 p_nId) { m_nModuleId = p_nId; }

    /// The detail string.
    /// @return a run of groups "(" name "=" value ")", for example "(max_scheme=4)(isInfrared=1)"
    const std::string& getDetail() const { return m_strDetail; }
    /// Sets the detail string.
    /// @param p_strDetail  at most 511 characters
    void setDetail(const std::string& p_strDetail) { m_strDetail = p_strDetail; }

    /// Free text for the driver.
    /// @return at most 255 characters
    const std::string& getParameters() const { return m_strParameters; }
    /// Sets the text for the driver.
    /// @param p_strParameters  at most 255 characters
    void setParameters(const std::string& p_strParameters) { m_strParameters = p_strParameters; }

private:
    u32 m_nModuleId = 0;
    std::string m_strDetail;
    std::string m_strParameters;
};

/// The reader of ModuleConfigure.
class PLATFORM_API ModuleConfigureParser {
public:
    /// Reads the modules of this machine from the XML file at this camera path:
    ///
    ///     <modules>
    ///       <device model="..." code="...">
    ///         <module id="..." detail="..." parameters="..."/>    one for each channel, in order
    ///       </device>
    ///     </modules>
    ///
    /// Taken are the modules of every device element whose model equals p_strModel and whose code equals p_strCode or
    /// is absent, in document order. The text ends at its first zero byte. One that is larger than 1 MiB, that is
    /// nested deeper than 64 levels or that is no UTF-8 is refused, and so is a matching module whose id is no decimal
    /// number below 2^32 or whose texts are longer than ModuleConfigure allows; detail and parameters may be missing.
    /// Blocks for as long as the medium takes; re-entrant.
    /// @param p_szPath            absolute camera path
    /// @param p_strModel          MachineInfo::getHardwareModel
    /// @param p_strCode           MachineInfo::getHardwareCode
    /// @param[out] p_vecModules   set to the modules that match; left as it was on failure
    /// @return true when the file could be read and was well formed, also when nothing matched
    static bool parse(const char* p_szPath, const std::string& p_strModel, const std::string& p_strCode,
                      std::vector<ModuleConfigure>& p_vecModules);
};
