// White balance, and the colours of the finished picture.
#pragma once

#include "simcam/PictureParameters.h"
#include "simcam/picture/Exposure.h"
#include "simcam/picture/Light.h"

#include <array>
#include <cstdint>

namespace simcam::picture {

// Gains of the colours, 4096 is 1; the gain of green is 1.
using WhiteBalance = std::array<int, kColours>;
constexpr WhiteBalance kDaylight = {4096, 4096, 4096};

// The gains of a mode; the locked mode gives back what was handed in.
WhiteBalance whiteBalanceOf(const PictureParameters& p_stParameters, const Metering& p_stMetering,
                            const WhiteBalance& p_arrLocked);

// A row of exposed light of one colour.
void balance(int* p_pRow, int p_nWidth, int p_nGain);

// A pixel as brightness and two differences of colour, as Tone has them (4080 is 255).
struct Shade {
    std::int16_t light;
    std::int16_t blue;  // blue - light
    std::int16_t red;   // red - light
};
inline Shade shadeOf(int p_nRed, int p_nGreen, int p_nBlue) {
    const int nLight = (77 * p_nRed + 150 * p_nGreen + 29 * p_nBlue) >> 8;
    return {static_cast<std::int16_t>(nLight), static_cast<std::int16_t>(p_nBlue - nLight),
            static_cast<std::int16_t>(p_nRed - nLight)};
}

// Contrast, brightness and saturation, to bytes.
class Finish {
public:
    explicit Finish(const PictureParameters& p_stParameters);
    void write(int p_nLight, int p_nBlue, int p_nRed, unsigned char* p_pPixel) const;

private:
    int m_nContrast;  // 1/256
    int m_nBrightness;
    int m_nSaturation;  // 1/256
};

}  // namespace simcam::picture
