// One camera on the desk: the simulated device and a controller for each of its channels.
//
// Threads: one thread works a session; the controllers' own threads run beside it.
#pragma once

#include "apps/sensorctl/DebugSign.h"
#include "platform/Clock.h"
#include "platform/ModuleConfigure.h"
#include "sensor/ISensorController.h"
#include "simcam/Camera.h"

#include <map>
#include <memory>
#include <string>

namespace sensorctl {

class Session {
public:
    struct Settings {
        int nChannel = 1;                                   // selected at the start, from 1
        bool bRealTime = false;                             // false: the clock is held and only commands move it
        platform::CivilTime stStart{2024, 5, 1, 12, 0, 0};  // of the held clock
    };

    // The camera must outlive the session.
    Session(simcam::Camera& p_objCamera, const Settings& p_stSettings);
    // Stops and releases every controller.
    ~Session();
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;

    simcam::Camera& camera() { return m_objCamera; }
    DebugSign& debugSign() { return m_objDebugSign; }

    // --- Channels ---
    int channel() const { return m_nChannel; }
    // The same channel as the driver counts, from 0.
    int driverChannel() const { return m_nChannel - 1; }
    // Throws CommandError for a channel that the camera does not have.
    void selectChannel(int p_nChannel);

    // --- Controllers ---
    // The controller of the selected channel; constructed at the first call.
    ISensorController& controller();
    bool isConstructed() const;
    // Whether it has been initialised and not torn down since.
    bool isInitialised() const;

    // Initialises the selected channel from the module configuration of the device root. Empty texts stand for what the
    // machine information says. Throws CommandError when there is no entry for the channel. False when the controller
    // refused.
    bool init(const std::string& p_strModel, const std::string& p_strCode);
    bool init(const ModuleConfigure& p_objConfigure);
    // The configuration of the latest init of the selected channel. Throws CommandError when there was none.
    const ModuleConfigure& lastConfigure() const;
    void uinit();
    bool reset();

    // Tears every controller down and destroys it, and takes the camera's power away and gives it back.
    void powerCycle();

    // --- Time ---
    bool isRealTime() const { return m_stSettings.bRealTime; }
    // Of the platform's monotonic clock, when the session began.
    INT64 startMicroseconds() const { return m_nStart; }
    // Lets the time pass: a held clock moves on, a real one is waited for. An interrupt ends a real wait early.
    void pass(INT64 p_nMicroseconds);
    // Sets a held clock. Throws CommandError when the clock is real.
    void setClock(const platform::CivilTime& p_stTime);
    // Blocks until the controllers' threads have done what is due on a held clock.
    void settle();

private:
    struct Channel {
        std::unique_ptr<ISensorController> pController;
        bool bInitialised = false;
        bool bConfigured = false;
        ModuleConfigure objConfigure;
    };
    void destroyControllers();
    std::size_t moduleIndex(std::size_t p_nModules) const;

    simcam::Camera& m_objCamera;
    const Settings m_stSettings;
    DebugSign m_objDebugSign;
    int m_nChannel;
    INT64 m_nStart = 0;
    std::map<int, Channel> m_mapChannels;
};

}  // namespace sensorctl
