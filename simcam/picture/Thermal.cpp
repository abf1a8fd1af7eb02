#include "simcam/picture/Thermal.h"

#include "simcam/picture/Tone.h"

#include <algorithm>
#include <cstddef>

namespace simcam::picture {
namespace {

constexpr int kAnchors = 5;  // colours at 0, 64, 128, 192 and 255
using Anchors = std::array<std::array<int, 3>, kAnchors>;

// clang-format off
constexpr Anchors kPalettes[] = {
    {{{0, 0, 0},       {64, 64, 64},    {128, 128, 128}, {192, 192, 192}, {255, 255, 255}}},
    {{{255, 255, 255}, {192, 192, 192}, {128, 128, 128}, {64, 64, 64},    {0, 0, 0}}},
    {{{0, 0, 10},      {90, 0, 140},    {210, 50, 70},   {250, 160, 20},  {255, 255, 220}}},
    {{{10, 10, 120},   {0, 160, 220},   {40, 200, 60},   {250, 220, 20},  {230, 20, 20}}},
    {{{0, 0, 0},       {0, 0, 200},     {0, 200, 120},   {255, 230, 0},   {255, 255, 255}}},
    {{{0, 0, 30},      {0, 50, 110},    {20, 120, 190},  {120, 200, 230}, {245, 255, 255}}},
    {{{10, 0, 20},     {20, 60, 120},   {150, 30, 60},   {240, 100, 20},  {255, 240, 180}}},
    {{{10, 20, 60},    {60, 80, 130},   {150, 130, 140}, {240, 150, 70},  {255, 235, 190}}},
    {{{0, 8, 0},       {0, 60, 20},     {10, 130, 40},   {90, 200, 80},   {220, 255, 200}}},
    {{{20, 12, 6},     {80, 58, 36},    {140, 110, 76},  {200, 172, 130}, {255, 240, 210}}},
    {{{0, 0, 0},       {70, 70, 70},    {140, 140, 140}, {200, 190, 190}, {255, 30, 20}}},
};
// clang-format on

}  // namespace

WarmthRange warmthOf(const Window& p_stWindow) {
    constexpr int kHeats = 256;
    constexpr int kColder = 5;       // one part in so many, most of it sky, is left to the cold end of the palette
    constexpr int kWarmer = 150;     // and one in so many to the hot end
    constexpr int kLeastRange = 12;  // of heat
    std::array<int, kHeats> arrCount{};
    int nCount = 0;
    for (int y = 0; y < p_stWindow.height; y += 4) {
        for (int x = 0; x < p_stWindow.width; x += 4) {
            ++arrCount[p_stWindow.canvas->row(p_stWindow.top + y)[p_stWindow.left + x].heat];
            ++nCount;
        }
    }
    const auto heatAt = [&](int p_nRank) {
        int nHeat = 0;
        for (int nSeen = arrCount[0]; nSeen <= p_nRank && nHeat < kHeats - 1;) {
            nSeen += arrCount[static_cast<std::size_t>(++nHeat)];
        }
        return nHeat;
    };
    const int nLow = heatAt(nCount / kColder);
    const int nHigh = std::max(heatAt(nCount - 1 - nCount / kWarmer), nLow + kLeastRange);
    return {nLow * kWarmthStep, nHigh * kWarmthStep};
}

ThermalTone::ThermalTone(const WarmthRange& p_stRange, const PictureParameters& p_st)
    : m_stRange(p_stRange),
      m_nContrast(128 + p_st.thermalContrast * 256 / 100),
      m_nBrightness((p_st.thermalBrightness - 50) * kBright * 8 / 5) {}

int ThermalTone::of(int p_nWarmth) const {
    constexpr int kMiddle = kWhite / 2;
    const int nLevel = std::clamp((p_nWarmth - m_stRange.low) * kWhite / (m_stRange.high - m_stRange.low), 0, kWhite);
    return std::clamp(kMiddle + (nLevel - kMiddle) * m_nContrast / 256 + m_nBrightness, 0, kWhite);
}

int ThermalTone::step(int p_nWarmth) const {
    return p_nWarmth * kWhite / (m_stRange.high - m_stRange.low) * m_nContrast / 256;
}

int thermalSharpness(const PictureParameters& p_st) {
    constexpr int kAutomatic = 1;
    const int nSharpness = (p_st.sharpness - 50) * 3 / 2;
    if (0 == p_st.thermalDetail) {
        return nSharpness;
    }
    return nSharpness + (kAutomatic == p_st.thermalDetail ? 150 : 100 * (1 + p_st.thermalDetailType));
}

Palette finished(const Palette& p_arrPalette, const PictureParameters& p_st) {
    const int nContrast = 128 + p_st.contrast * 256 / 100;       // 1/256
    const int nBrightness = (p_st.brightness - 50) * 2 * 8 / 5;  // half levels, as everything here
    Palette arrFinished = p_arrPalette;
    for (auto& arrColour : arrFinished) {
        for (unsigned char& nColour : arrColour) {
            const int nLevel = (2 * nColour - 255) * nContrast / 256 + 255 + nBrightness;
            nColour = static_cast<unsigned char>(std::clamp(nLevel / 2, 0, 255));
        }
    }
    return arrFinished;
}

Palette paletteOf(int p_nNumber) {
    constexpr int kSpan = 64;
    const Anchors& arrAnchors = kPalettes[p_nNumber];
    Palette arrPalette{};
    for (std::size_t i = 0; i < arrPalette.size(); ++i) {
        const std::size_t nBelow = i / kSpan;
        const int nOff = static_cast<int>(i % kSpan);
        const int nSpan = nBelow + 2 == kAnchors ? kSpan - 1 : kSpan;
        for (std::size_t j = 0; j < 3; ++j) {
            const int nFrom = arrAnchors[nBelow][j];
            arrPalette[i][j] = static_cast<unsigned char>(nFrom + (arrAnchors[nBelow + 1][j] - nFrom) * nOff / nSpan);
        }
    }
    return arrPalette;
}

void drawStrip(const Palette& p_arrPalette, int p_nWidth, int p_nHeight, std::vector<unsigned char>& p_vecRgb) {
    const int nLeft = p_nWidth * 38 / 40;
    const int nRight = p_nWidth * 39 / 40;
    const int nTop = p_nHeight / 8;
    const int nHigh = p_nHeight * 6 / 8;
    for (int y = 0; y < nHigh; ++y) {
        const auto& arrColour = p_arrPalette[static_cast<std::size_t>(255 - 255 * y / nHigh)];
        for (int x = nLeft; x < nRight; ++x) {
            const auto nPixel =
                static_cast<std::size_t>(nTop + y) * static_cast<std::size_t>(p_nWidth) + static_cast<std::size_t>(x);
            std::copy(arrColour.begin(), arrColour.end(), p_vecRgb.begin() + static_cast<std::ptrdiff_t>(3 * nPixel));
        }
    }
}

}  // namespace simcam::picture
