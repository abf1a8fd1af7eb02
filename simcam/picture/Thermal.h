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
    // How many levels a small difference of warmth makes.
    int step(int p_nWarmth) const;

private:
    WarmthRange m_stRange;
    int m_nContrast;    // 1/256
    int m_nBrightness;  // of the level
};

// How much the details are raised, percent; below 0 they are softened.
int thermalSharpness(const PictureParameters& p_stParameters);

using Palette = std::array<std::array<unsigned char, 3>, 256>;
// 0 white hot, 1 black hot, 2 iron, 3 rainbow, 4 high rainbow, 5 arctic, 6 lava, 7 fusion, 8 globe, 9 sepia, 10 alarm.
Palette paletteOf(int p_nNumber);
// The palette as the picture's own contrast and brightness show it.
Palette finished(const Palette& p_arrPalette, const PictureParameters& p_stParameters);

// The palette from cold (below) to hot, at the right side.
void drawStrip(const Palette& p_arrPalette, int p_nWidth, int p_nHeight, std::vector<unsigned char>& p_vecRgb);

}  // namespace simcam::picture
