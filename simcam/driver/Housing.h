// The inside of the camera's housing and its heater.
#pragma once

#include "platform/Types.h"

namespace simcam {

// The electronics keep the inside 8 degrees above the air, the heater another 25; the temperature follows with a time
// constant of ten minutes. The heater goes on below 0 and off above 10 degrees Celsius.
//
// Not thread-safe: belongs to a channel.
class Housing {
public:
    // Lets the time pass up to this moment, with the air that was handed in last, and then takes the new one. The first
    // call is the power-up: the inside is as cold as the air.
    void advance(INT64 p_nNow, double p_dAmbientCelsius);

    double celsius() const { return m_dCelsius; }
    bool isHeating() const { return m_bHeating; }

private:
    void pass(double p_dSeconds);

    INT64 m_nNow = -1;  // -1: not powered up yet
    double m_dAmbient = 0.0;
    double m_dCelsius = 0.0;
    bool m_bHeating = false;
};

}  // namespace simcam
