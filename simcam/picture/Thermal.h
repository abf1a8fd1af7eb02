// The picture of a sensor that sees warmth.
#pragma once

#include "simcam/PictureParameters.h"
#include "simcam/picture/Exposure.h"

#include <array>
#include <vector>

namespace simcam::picture {

// Warmth in 1/32 degrees above 40 degrees below the air.
constexpr int kWarmthStep = 16;  // of Surface::heat

struct WarmthRange {
    int low = 0;
    int high = 0;
};
// What the picture spreads over its palette.
WarmthRange warmthOf(const Window& p_stWindow);

// A level of the palette, 0 to 4080 (as Tone has it), of a warmth.
class ThermalTone {
public:
    ThermalTone(const WarmthRange& p_stRange, const PictureParameters& p_stParameters);
    int of(int p_nWarmth) const;

private:
    WarmthRange m_stRange;
    int m_nContrast;    // 1/256
    int m_nBrightness;  // of the level
};

// How much the details are raised, percent.
int thermalSharpness(const PictureParameters& p_stParameters);

using Palette = std::array<std::array<unsigned char, 3>, 256>;
// 0 white hot, 1 black hot, 2 iron, 3 rainbow, 4 lava, 5 ice, 6 amber, 7 green, 8 red hot, 9 sepia, 10 contrast.
Palette paletteOf(int p_nNumber);

// The palette from cold (below) to hot, at the right side.
void drawStrip(const Palette& p_arrPalette, int p_nWidth, int p_nHeight, std::vector<unsigned char>& p_vecRgb);

}  // namespace simcam::picture
