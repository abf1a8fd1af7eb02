// The simulated image-adjust driver: what ia_ioctrl_v2 reaches.
//
// Checks of a call, in this order: a channel that does not exist, a command or an option of a command without support give
// IA_ERR_UNSUPPORTED, null data IA_ERR_NO_DATA, a value outside the legal range IA_ERR_INVALID_VALUE, a lens that is moving
// IA_ERR_BUSY. A call that fails changes nothing, at data neither.
//
// The device lives on the platform's clock (platform/Clock.h): motors, the day/night switch and the heater are brought up
// to the present moment at each call, so nothing runs in between.
//
// Threads: every function may be called from any thread; one lock serialises them. Delays of faults and the transcript's
// observer run without it. 32-bit values at data are read and written as relaxed atomic words.
#pragma once

#include "platform/ImageAdjust.h"
#include "simcam/Commands.h"
#include "simcam/Export.h"
#include "simcam/Faults.h"
#include "simcam/Scene.h"
#include "simcam/Transcript.h"

#include <memory>
#include <string>

namespace simcam {

class SimVideoModule;

constexpr int kMaxChannels = 4;

struct LensState {
    int zoom = 0;        // positions of the motors now
    int zoomTarget = 0;  // where they are going; equal to the position when they stand
    int focus = 0;
    int focusTarget = 0;
    int sharpAt = 0;         // the focus position that would be sharp at this zoom and subject
    bool focusing = false;   // the focus motor is moved by auto focus
    bool resetting = false;  // a lens reset is going on
};

class SIMCAM_API Driver {
public:
    // The parts must outlive the driver. p_nChannels from 1 to kMaxChannels; more or fewer count as the nearer end.
    Driver(int p_nChannels, const Scene& p_objScene, const SimVideoModule& p_objVideo, FaultList& p_objFaults,
           Transcript& p_objTranscript);
    ~Driver();
    Driver(const Driver&) = delete;
    Driver& operator=(const Driver&) = delete;

    // One call of ia_ioctrl_v2.
    int call(int p_nChannel, u32 p_nCommand, u32 p_nOption, void* p_pData);

    // Every channel as it is after power-up. Support, strictness and version texts stay.
    void powerCycle();

    int channels() const;

    // Takes the support for a command away from a channel, or gives it back. False when the channel or the command does not
    // exist.
    bool setSupported(int p_nChannel, u32 p_nCommand, bool p_bSupported);
    bool isSupported(int p_nChannel, u32 p_nCommand) const;

    // How the driver takes a value of a dynamic command (49, 50, 82, 1537) that is legal in another mode but not in this
    // one. False (the start): it keeps the value and puts the nearest legal one in force. True: IA_ERR_INVALID_VALUE.
    void setStrictRanges(bool p_bStrict);

    // The text of command 2496, cut to 49 characters and at a zero byte.
    bool setVersionText(int p_nChannel, const std::string& p_strText);

    // Looks without leaving a trace in transcript or faults. False when the channel or command does not exist or has no
    // 32-bit value or range.
    bool value(int p_nChannel, u32 p_nCommand, int& p_nValue) const;
    bool range(int p_nChannel, u32 p_nCommand, ia_dynamic_params_attr_st& p_stRange) const;
    bool lens(int p_nChannel, LensState& p_stLens) const;
    // Temperature inside the housing in degrees Celsius.
    bool temperature(int p_nChannel, double& p_dCelsius) const;

    // For the camera: the scene has changed.
    void sceneChanged();

private:
    struct State;
    std::unique_ptr<State> m_pState;
};

}  // namespace simcam
