// One channel of the driver: the values of its commands and the devices behind them.
#pragma once

#include "platform/ImageAdjust.h"
#include "platform/Types.h"
#include "simcam/Commands.h"
#include "simcam/Driver.h"
#include "simcam/Scene.h"
#include "simcam/driver/DayNight.h"
#include "simcam/driver/Housing.h"
#include "simcam/driver/Lens.h"

#include <array>
#include <string>
#include <vector>

namespace simcam {

// What a channel must know of the world for one call.
struct Moment {
    INT64 now = 0;          // monotonic microseconds
    int secondOfDay = 0;    // of the device time
    int fastestStream = 0;  // frames a second, 0 without streams
    SceneState scene;
    bool strictRanges = false;
};

// Not thread-safe: belongs to a driver.
class Channel {
public:
    explicit Channel(int p_nChannel);

    // Brings motors, day/night switch and heater up to the moment.
    void advance(const Moment& p_stMoment);

    // Carries out a call for the moment that advance was last called for. Result as of ia_ioctrl_v2.
    int call(const Moment& p_stMoment, u32 p_nCommand, u32 p_nOption, void* p_pData);

    void powerCycle();

    // False for a command that does not exist.
    bool setSupported(u32 p_nCommand, bool p_bSupported);
    bool isSupported(u32 p_nCommand) const;
    void setVersionText(const std::string& p_strText) { m_strVersion = p_strText; }

    LensState lens(INT64 p_nNow) const { return m_objLens.state(p_nNow); }
    double celsius() const { return m_objHousing.celsius(); }

private:
    int set(const Moment& p_stMoment, const CommandRow& p_stRow, const void* p_pData);
    int setValue(const Moment& p_stMoment, const CommandRow& p_stRow, int p_nValue);
    int setDynamic(const Moment& p_stMoment, const CommandRow& p_stRow, int p_nValue);
    int setThresholds(u32 p_nCommand, const dn_thr_st& p_stRecord);
    int setTimes(const dn_time_st& p_stRecord);
    int act(const Moment& p_stMoment, u32 p_nCommand, int p_nValue);
    void applied(const Moment& p_stMoment, u32 p_nCommand, int p_nValue);

    int get(const Moment& p_stMoment, const CommandRow& p_stRow, void* p_pData) const;
    int getValue(const Moment& p_stMoment, const CommandRow& p_stRow) const;
    int check(u32 p_nOption, void* p_pData);
    int range(const Moment& p_stMoment, const CommandRow& p_stRow, void* p_pData) const;
    int correct(const Moment& p_stMoment, const CommandRow& p_stRow, void* p_pData) const;
    int status(u32 p_nCommand) const;

    std::vector<int> legal(const Moment& p_stMoment, u32 p_nCommand) const;  // of a dynamic command, now
    int inForce(const Moment& p_stMoment, u32 p_nCommand) const;             // of a dynamic command
    void stepIris(const Moment& p_stMoment, int p_nStops);
    DayNightSettings dayNightSettings() const;
    int kept(u32 p_nCommand) const;
    void keep(u32 p_nCommand, int p_nValue);

    std::vector<int> m_vecKept;             // one value for each row of the command table
    std::vector<char> m_vecSupported;       // likewise
    std::array<int, 256> m_arrRegisters{};  // of the sensor, for the sensor check
    std::string m_strVersion;
    Lens m_objLens;
    DayNight m_objDayNight;
    Housing m_objHousing;
};

}  // namespace simcam
