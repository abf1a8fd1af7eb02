/// @file
/// The simulated image-adjust driver: what ia_ioctrl_v2 reaches.
#pragma once

#include "platform/ImageAdjust.h"
#include "simcam/Commands.h"
#include "simcam/Export.h"
#include "simcam/Faults.h"
#include "simcam/Scene.h"
#include "simcam/Transcript.h"

#include <memory>
#include <string>
#include <vector>

namespace simcam {

class SimVideoModule;

/// Channels of a camera at most.
constexpr int kMaxChannels = 4;

/// Where the lens of a channel stands.
struct LensState {
    int zoom = 0;            ///< position of the zoom motor now
    int zoomTarget = 0;      ///< where it is going; equal to the position when it stands
    int focus = 0;           ///< position of the focus motor now
    int focusTarget = 0;     ///< where it is going
    int sharpAt = 0;         ///< the focus position that would be sharp at this zoom and subject
    bool focusing = false;   ///< the focus motor is moved by auto focus
    bool resetting = false;  ///< a lens reset is going on
};

/// The simulated image-adjust driver: what ia_ioctrl_v2 reaches.
///
/// Checks of a call, in this order: a channel that does not exist, a command or an option of a command without support
/// give IA_ERR_UNSUPPORTED, null data IA_ERR_NO_DATA, a value outside the legal range IA_ERR_INVALID_VALUE, a lens that
/// is moving IA_ERR_BUSY. A call that fails changes nothing, at data neither.
///
/// The device lives on the platform's clock (platform/Clock.h): motors, the day/night switch and the heater are brought
/// up to the present moment at each call, so nothing runs in between.
///
/// Threads: every function may be called from any thread; one lock serialises them. Delays of faults and the
/// transcript's observer run without it. 32-bit values at data are read and written as relaxed atomic words. Not
/// copyable.
class SIMCAM_API Driver {
public:
    /// A driver as it is after power-up. The parts must outlive it.
    /// @param p_nChannels      1 to kMaxChannels; more or fewer count as the nearer end
    /// @param p_objScene       what its sensors look at
    /// @param p_objVideo       whose frame rate limits the shutter
    /// @param p_objFaults      what goes wrong
    /// @param p_objTranscript  where its calls are written down
    Driver(int p_nChannels, const Scene& p_objScene, const SimVideoModule& p_objVideo, FaultList& p_objFaults,
           Transcript& p_objTranscript);
    /// No call may be under way any more.
    ~Driver();
    Driver(const Driver&) = delete;
    Driver& operator=(const Driver&) = delete;

    /// One call of ia_ioctrl_v2.
    /// @param p_nChannel  from 0
    /// @param p_nCommand  the command
    /// @param p_nOption   IA_CMD_OPT_...
    /// @param p_pData     the value or record
    /// @return IA_OK or an error code
    int call(int p_nChannel, u32 p_nCommand, u32 p_nOption, void* p_pData);

    /// Every channel as it is after power-up. Support, strictness and version texts stay.
    void powerCycle();

    /// How many channels there are.
    /// @return 1 to kMaxChannels
    int channels() const;

    /// Takes the support for a command away from a channel, or gives it back.
    /// @param p_nChannel    from 0
    /// @param p_nCommand    the command
    /// @param p_bSupported  false to take it away
    /// @return false when the channel or the command does not exist
    bool setSupported(int p_nChannel, u32 p_nCommand, bool p_bSupported);
    /// Whether a channel supports a command.
    /// @param p_nChannel  from 0
    /// @param p_nCommand  the command
    /// @return true when it does
    bool isSupported(int p_nChannel, u32 p_nCommand) const;

    /// How the driver takes a value of a dynamic command (49, 50, 82, 1537) that is legal in another mode but not in
    /// this one.
    /// @param p_bStrict  false (the start): it keeps the value and puts the nearest legal one in force; true:
    ///                   IA_ERR_INVALID_VALUE
    void setStrictRanges(bool p_bStrict);

    /// Sets the text of command 2496.
    /// @param p_nChannel  from 0
    /// @param p_strText   cut to 49 characters and at a zero byte
    /// @return false when the channel does not exist
    bool setVersionText(int p_nChannel, const std::string& p_strText);

    /// Reads a value without leaving a trace in transcript or faults.
    /// @param p_nChannel     from 0
    /// @param p_nCommand     the command
    /// @param[out] p_nValue  its value now
    /// @return false when the channel or command does not exist or has no 32-bit value
    bool value(int p_nChannel, u32 p_nCommand, int& p_nValue) const;
    /// Reads several values of one moment without leaving a trace in transcript or faults.
    /// @param p_nChannel        from 0
    /// @param p_vecCommands     the commands
    /// @param[out] p_vecValues  their values now, in the same order; the power-up value of a command without support
    /// @return false, and nothing is written, when the channel or a command does not exist or has no 32-bit value
    bool values(int p_nChannel, const std::vector<u32>& p_vecCommands, std::vector<int>& p_vecValues) const;
    /// Reads a range without leaving a trace in transcript or faults.
    /// @param p_nChannel      from 0
    /// @param p_nCommand      the command
    /// @param[out] p_stRange  its range now
    /// @return false when the channel or command does not exist or has no range
    bool range(int p_nChannel, u32 p_nCommand, ia_dynamic_params_attr_st& p_stRange) const;
    /// Looks at the lens.
    /// @param p_nChannel     from 0
    /// @param[out] p_stLens  where it stands
    /// @return false when the channel does not exist
    bool lens(int p_nChannel, LensState& p_stLens) const;
    /// The temperature inside the housing.
    /// @param p_nChannel       from 0
    /// @param[out] p_dCelsius  degrees Celsius
    /// @return false when the channel does not exist
    bool temperature(int p_nChannel, double& p_dCelsius) const;

    /// For the camera: the scene has changed.
    void sceneChanged();

private:
    struct State;
    std::unique_ptr<State> m_pState;
};

}  // namespace simcam
