#include "simcam/picture/Haze.h"

#include "simcam/picture/FixedPoint.h"

#include <algorithm>

namespace simcam::picture {
namespace {

constexpr int kPart = 256;

// A place on a side, in 1/256 regions from the middle of the first one.
int place(int p_nPixel, int p_nSide, int p_nRegions) {
    const int nPlace = (2 * p_nPixel + 1) * p_nRegions * kPart / (2 * p_nSide) - kPart / 2;
    return std::clamp(nPlace, 0, (p_nRegions - 1) * kPart - 1);
}

}  // namespace

Haze::Haze(const PictureParameters& p_st, const Metering& p_stMetering, const Exposure& p_stExposure) {
    constexpr int kMost = 80;  // percent of the densest fog: it may be thinned to a fifth
    if (0 == p_st.defog || 0 == p_st.defogStrength) {
        return;
    }
    m_bClear = false;
    const int nStops = std::clamp(p_stExposure.sensitivity - p_stMetering.sensitivity, -20 * kLogOne, 20 * kLogOne);
    const std::int64_t nGain = exp2Of(nStops);
    for (std::size_t y = 0; y < kRegionsDown; ++y) {
        for (std::size_t x = 0; x < kRegionsAcross; ++x) {
            const std::int64_t nHaze = nGain * p_stMetering.darkest[y][x] / kOne;
            m_arrHaze[y][x] = static_cast<int>(std::min<std::int64_t>(nHaze, kOne));
            m_nDensest = std::max(m_nDensest, m_arrHaze[y][x]);
        }
    }
    for (auto& arrRow : m_arrHaze) {
        for (int& nHaze : arrRow) {
            nHaze = std::min(nHaze, m_nDensest * kMost / 100) * p_st.defogStrength / 100;
        }
    }
}

int Haze::between(int p_nX, int p_nWidth, const std::array<int, kRegionsAcross>& p_arrRow) const {
    const int nPlace = place(p_nX, p_nWidth, kRegionsAcross);
    const auto nLeft = static_cast<std::size_t>(nPlace / kPart);
    return (p_arrRow[nLeft] * (kPart - nPlace % kPart) + p_arrRow[nLeft + 1] * (nPlace % kPart)) / kPart;
}

void Haze::takeFrom(int* p_pRow, int p_nWidth, int p_nRow, int p_nHeight) const {
    const int nPlace = place(p_nRow, p_nHeight, kRegionsDown);
    const auto nUpper = static_cast<std::size_t>(nPlace / kPart);
    std::array<int, kRegionsAcross> arrRow{};
    for (std::size_t x = 0; x < kRegionsAcross; ++x) {
        arrRow[x] =
            (m_arrHaze[nUpper][x] * (kPart - nPlace % kPart) + m_arrHaze[nUpper + 1][x] * (nPlace % kPart)) / kPart;
    }
    for (int x = 0; x < p_nWidth; ++x) {
        const int nHaze = between(x, p_nWidth, arrRow);
        // What is as bright as the densest fog stays so.
        const std::int64_t nClear = std::int64_t{p_pRow[x] - nHaze} * m_nDensest / (m_nDensest - nHaze);
        p_pRow[x] = static_cast<int>(std::clamp<std::int64_t>(nClear, 0, kBrightest));
    }
}

}  // namespace simcam::picture
