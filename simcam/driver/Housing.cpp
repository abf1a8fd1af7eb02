#include "simcam/driver/Housing.h"

#include <cmath>

namespace simcam {
namespace {

constexpr double kTimeConstant = 600.0;  // seconds
constexpr double kElectronics = 8.0;     // degrees
constexpr double kHeater = 25.0;         // degrees
constexpr double kOnBelow = 0.0;         // degrees Celsius
constexpr double kOffAbove = 10.0;       // degrees Celsius
constexpr double kMicroseconds = 1e6;

}  // namespace

void Housing::advance(INT64 p_nNow, double p_dAmbientCelsius) {
    if (m_nNow < 0) {
        m_dCelsius = p_dAmbientCelsius;
        m_bHeating = m_dCelsius < kOnBelow;
    } else {
        pass(static_cast<double>(p_nNow - m_nNow) / kMicroseconds);
    }
    m_nNow = p_nNow;
    m_dAmbient = p_dAmbientCelsius;
}

void Housing::pass(double p_dSeconds) {
    constexpr int kMostSwitches = 100000;  // more than a year of heating and cooling; then it is somewhere in between
    double dLeft = p_dSeconds;
    for (int i = 0; i < kMostSwitches; ++i) {
        const double dEnd = m_dAmbient + kElectronics + (m_bHeating ? kHeater : 0.0);
        const double dSwitch = m_bHeating ? kOffAbove : kOnBelow;
        const bool bReaches = m_bHeating ? dEnd > dSwitch : dEnd < dSwitch;
        const double dUntil = bReaches ? kTimeConstant * std::log((m_dCelsius - dEnd) / (dSwitch - dEnd)) : 0.0;
        if (!bReaches || dUntil > dLeft) {
            m_dCelsius = dEnd + (m_dCelsius - dEnd) * std::exp(-dLeft / kTimeConstant);
            return;
        }
        m_dCelsius = dSwitch;
        m_bHeating = !m_bHeating;
        dLeft -= dUntil;
    }
}

}  // namespace simcam
