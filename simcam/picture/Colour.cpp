#include "simcam/picture/Colour.h"

#include "simcam/picture/FixedPoint.h"
#include "simcam/picture/Tone.h"

#include <algorithm>

namespace simcam::picture {
namespace {

constexpr int kAutomatic = 0;
constexpr int kOutdoors = 1;
constexpr int kIndoors = 2;
constexpr int kSodium = 3;
constexpr int kFluorescent = 4;
constexpr int kManual = 6;

// Towards grey, most of the way: a red street may stay a little red.
int greyGain(int p_nGreen, int p_nColour) {
    constexpr int kLeast = kOne * 45 / 100;
    constexpr int kMost = kOne * 26 / 10;
    const std::int64_t nGain = std::int64_t{p_nGreen} * kOne / std::max(1, p_nColour);
    const auto nLimited = static_cast<int>(std::clamp<std::int64_t>(nGain, kLeast, kMost));
    return kOne + (nLimited - kOne) * 7 / 8;
}

unsigned char toByte(int p_nBright) {
    return static_cast<unsigned char>(std::clamp((p_nBright + kBright / 2) / kBright, 0, 255));
}

}  // namespace

WhiteBalance whiteBalanceOf(const PictureParameters& p_st, const Metering& p_stMetering,
                            const WhiteBalance& p_arrLocked) {
    switch (p_st.whiteBalanceMode) {
        case kAutomatic:
            return {greyGain(p_stMetering.colour[1], p_stMetering.colour[0]), kOne,
                    greyGain(p_stMetering.colour[1], p_stMetering.colour[2])};
        case kOutdoors:
            return kDaylight;
        case kIndoors:
            return {2700, kOne, 6500};
        case kSodium:
            return {2300, kOne, 8600};
        case kFluorescent:
            return {3500, kOne, 4900};
        case kManual:
            return {p_st.redGain * kOne / 128, kOne, p_st.blueGain * kOne / 128};
        default:
            return p_arrLocked;
    }
}

void balance(int* p_pRow, int p_nWidth, int p_nGain) {
    for (int x = 0; x < p_nWidth; ++x) {
        p_pRow[x] = std::min(scaled(p_pRow[x], p_nGain), kBrightest);
    }
}

Finish::Finish(const PictureParameters& p_st)
    : m_nContrast(128 + p_st.contrast * 256 / 100),
      m_nBrightness((p_st.brightness - 50) * kBright * 8 / 5),
      m_nSaturation(p_st.saturation * 256 / 50) {
    constexpr int kDefogColour = 2;  // defog gives back the colour that fog takes
    if (0 != p_st.defog) {
        m_nSaturation += m_nSaturation * p_st.defogStrength / (100 * kDefogColour);
    }
}

void Finish::write(int p_nLight, int p_nBlue, int p_nRed, unsigned char* p_pPixel) const {
    constexpr int kMiddle = kWhite / 2;
    const int nLight = kMiddle + (p_nLight - kMiddle) * m_nContrast / 256 + m_nBrightness;
    const int nBlue = p_nBlue * m_nSaturation / 256;
    const int nRed = p_nRed * m_nSaturation / 256;
    p_pPixel[0] = toByte(nLight + nRed);
    p_pPixel[1] = toByte(nLight - (77 * nRed + 29 * nBlue) / 150);
    p_pPixel[2] = toByte(nLight + nBlue);
}

}  // namespace simcam::picture
