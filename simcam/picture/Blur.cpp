#include "simcam/picture/Blur.h"

#include "simcam/Commands.h"
#include "simcam/picture/FixedPoint.h"
#include "simcam/picture/Light.h"

#include <algorithm>
#include <cstdlib>

namespace simcam::picture {
namespace {

constexpr int kMostRadius = 30 * kRadiusOne;

// The focus position that is sharp, as the lens has it (simcam/README.md), in integers.
int sharpPosition(int p_nMagnification, int p_nMillimetres) {
    const std::int64_t nNearest = std::int64_t{p_nMagnification} * 100 / 1000;  // millimetres
    const std::int64_t nNear = p_nMillimetres <= nNearest ? 4000 : 4000 * nNearest / p_nMillimetres;
    return static_cast<int>(1000 + 200 * (p_nMagnification - 1000) / 1000 + nNear);
}

int squareRoot(int p_nValue) {
    return powerOf(p_nValue, kOne / 2);
}

// The sum of a line over a box, given the sums of all values before each place and the values; ends are repeated.
struct Line {
    const std::uint32_t* sums;  // length + 1 of them
    int length;
    std::size_t step;  // between two sums

    std::int64_t box(int p_nFrom, int p_nTo) const {  // both included
        const int nFrom = std::max(p_nFrom, 0);
        const int nTo = std::min(p_nTo, length - 1);
        std::int64_t nSum = static_cast<std::int64_t>(at(nTo + 1) - at(nFrom));
        nSum += std::int64_t{nFrom - p_nFrom} * (at(1) - at(0));
        nSum += std::int64_t{p_nTo - nTo} * (at(length) - at(length - 1));
        return nSum;
    }
    std::uint32_t at(int p_nPlace) const { return sums[static_cast<std::size_t>(p_nPlace) * step]; }

    int mean(int p_nPlace, int p_nRadius) const {
        const int nWhole = p_nRadius / kRadiusOne;
        const int nRest = p_nRadius % kRadiusOne;
        const std::int64_t nInner = box(p_nPlace - nWhole, p_nPlace + nWhole);
        const std::int64_t nOuter = box(p_nPlace - nWhole - 1, p_nPlace + nWhole + 1);
        const int nWeight = (2 * nWhole + 1) * kRadiusOne + 2 * nRest;
        return static_cast<int>((nInner * (kRadiusOne - nRest) + nOuter * nRest) / nWeight);
    }
};

}  // namespace

std::array<std::uint8_t, kDistances> radiiOf(const PictureParameters& p_stParameters, int p_nIris, int p_nWidth) {
    constexpr int kSharpEnough = kOne / 2;  // of the depth of focus
    constexpr int kGrowth = 14;             // 1/8 pixels of a picture 640 wide, for each depth beyond
    const int nMagnification = static_cast<int>(1000 * magnification(p_stParameters.zoomPosition));
    const std::array<int, kDistances> arrMillimetres = distances(p_stParameters.subjectMillimetres);
    const int nDepth = 400 - 15 * (nMagnification - 1000) / 1000;
    // A small iris makes more of the street sharp.
    const int nAperture = squareRoot(static_cast<int>(std::int64_t{p_nIris} * kOne / kIrisOpen));
    std::array<std::uint8_t, kDistances> arrRadii{};
    for (std::size_t i = 0; i < kDistances; ++i) {
        const int nOff = std::abs(p_stParameters.focusPosition - sharpPosition(nMagnification, arrMillimetres[i]));
        const int nDepths = static_cast<int>(std::int64_t{nOff} * nAperture / nDepth);
        const std::int64_t nRadius =
            std::int64_t{std::max(0, nDepths - kSharpEnough)} * kGrowth * p_nWidth / (640 * kOne);
        arrRadii[i] = static_cast<std::uint8_t>(std::min<std::int64_t>(nRadius, kMostRadius));
    }
    return arrRadii;
}

void Blur::apply(std::vector<int>& p_vecPlane, const std::vector<std::uint8_t>& p_vecRadii, int p_nWidth,
                 int p_nHeight) {
    const auto nWidth = static_cast<std::size_t>(p_nWidth);
    const auto nHeight = static_cast<std::size_t>(p_nHeight);
    m_vecAcross.resize(nWidth * nHeight);
    m_vecSums.resize(std::max(nWidth + 1, nWidth * (nHeight + 1)));
    for (std::size_t y = 0; y < nHeight; ++y) {
        const int* const pRow = &p_vecPlane[y * nWidth];
        m_vecSums[0] = 0;
        for (std::size_t x = 0; x < nWidth; ++x) {
            m_vecSums[x + 1] = m_vecSums[x] + static_cast<std::uint32_t>(pRow[x]);
        }
        const Line stLine = {m_vecSums.data(), p_nWidth, 1};
        for (std::size_t x = 0; x < nWidth; ++x) {
            const std::uint8_t nRadius = p_vecRadii[y * nWidth + x];
            m_vecAcross[y * nWidth + x] = 0 == nRadius ? pRow[x] : stLine.mean(static_cast<int>(x), nRadius);
        }
    }
    std::fill(m_vecSums.begin(), m_vecSums.begin() + static_cast<std::ptrdiff_t>(nWidth), 0U);
    for (std::size_t i = 0; i < nWidth * nHeight; ++i) {
        m_vecSums[nWidth + i] = m_vecSums[i] + static_cast<std::uint32_t>(m_vecAcross[i]);
    }
    for (std::size_t y = 0; y < nHeight; ++y) {
        for (std::size_t x = 0; x < nWidth; ++x) {
            const std::uint8_t nRadius = p_vecRadii[y * nWidth + x];
            const Line stLine = {&m_vecSums[x], p_nHeight, nWidth};
            p_vecPlane[y * nWidth + x] =
                0 == nRadius ? m_vecAcross[y * nWidth + x] : stLine.mean(static_cast<int>(y), nRadius);
        }
    }
}

}  // namespace simcam::picture
