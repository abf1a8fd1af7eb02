#include "simcam/picture/Detail.h"

#include "simcam/picture/FixedPoint.h"

#include <algorithm>
#include <cstdlib>

namespace simcam::picture {

int smoothing(const PictureParameters& p_st, int p_nGain) {
    constexpr int kManual = 1;
    constexpr int kFullAt = 4 * kLogOne;  // the automatic mode reaches its most at so much gain
    if (0 == p_st.noise2d) {
        return 0;
    }
    return kManual == p_st.noise2dMode
               ? p_st.noise2dStrength
               : static_cast<int>(std::int64_t{p_st.noise2dMost} * std::min(p_nGain, kFullAt) / kFullAt);
}

void smooth(Plane& p_vecPlane, int p_nWidth, int p_nHeight, int p_nThreshold, Plane& p_vecScratch) {
    constexpr int kReach = 2;
    constexpr int kMostCount = (2 * kReach + 1) * (2 * kReach + 1);
    int arrPart[kMostCount + 1] = {};  // one by count, in 1/65536
    for (int i = 1; i <= kMostCount; ++i) {
        arrPart[i] = 65536 / i;
    }
    p_vecScratch = p_vecPlane;
    const auto at = [&](int p_nX, int p_nY) {
        return &p_vecScratch[static_cast<std::size_t>(p_nY) * static_cast<std::size_t>(p_nWidth) +
                             static_cast<std::size_t>(p_nX)];
    };
    const auto nWidth = static_cast<std::size_t>(p_nWidth);
    std::vector<int> vecSum(nWidth);
    std::vector<int> vecCount(nWidth);
    for (int y = 0; y < p_nHeight; ++y) {
        const std::int16_t* const pMiddle = at(0, y);
        std::fill(vecSum.begin(), vecSum.end(), 0);
        std::fill(vecCount.begin(), vecCount.end(), 0);
        // Whole rows at a time, so that the compiler can take several pixels in one step.
        for (int i = std::max(0, y - kReach); i <= std::min(p_nHeight - 1, y + kReach); ++i) {
            for (int nMove = -kReach; nMove <= kReach; ++nMove) {
                const std::int16_t* const pOther = at(0, i);
                int* const pSum = vecSum.data();
                int* const pCount = vecCount.data();
                const int nEnd = std::min(p_nWidth, p_nWidth - nMove);
                for (int x = std::max(0, -nMove); x < nEnd; ++x) {
                    const int nOff = pOther[x + nMove] - pMiddle[x];
                    const int nNear = std::abs(nOff) <= p_nThreshold ? 1 : 0;
                    pSum[x] += nOff * nNear;
                    pCount[x] += nNear;
                }
            }
        }
        std::int16_t* const pOut = &p_vecPlane[static_cast<std::size_t>(y) * nWidth];
        for (int x = 0; x < p_nWidth; ++x) {
            const auto nX = static_cast<std::size_t>(x);
            const std::int64_t nSum = vecSum[nX];
            const auto nMean = static_cast<int>(nSum * arrPart[vecCount[nX]] / 65536);
            pOut[x] = static_cast<std::int16_t>(pMiddle[x] + nMean);
        }
    }
}

void sharpen(Plane& p_vecPlane, int p_nWidth, int p_nHeight, int p_nPercent, Plane& p_vecScratch) {
    constexpr int kNinth = 7282;  // 1/65536
    p_vecScratch = p_vecPlane;
    const auto nWidth = static_cast<std::size_t>(p_nWidth);
    for (int y = 1; y + 1 < p_nHeight; ++y) {
        const std::int16_t* const pRow = &p_vecScratch[static_cast<std::size_t>(y) * nWidth];
        const std::int16_t* const pAbove = pRow - p_nWidth;
        const std::int16_t* const pBelow = pRow + p_nWidth;
        std::int16_t* const pOut = &p_vecPlane[static_cast<std::size_t>(y) * nWidth];
        const auto column = [&](int p_nX) { return pAbove[p_nX] + pRow[p_nX] + pBelow[p_nX]; };
        int nLeft = column(0);
        int nHere = column(1);
        for (int x = 1; x + 1 < p_nWidth; ++x) {
            const int nRight = column(x + 1);
            const int nMean = static_cast<int>(std::int64_t{nLeft + nHere + nRight} * kNinth / 65536);
            pOut[x] =
                static_cast<std::int16_t>(std::clamp(pRow[x] + (pRow[x] - nMean) * p_nPercent / 100, -32768, 32767));
            nLeft = nHere;
            nHere = nRight;
        }
    }
}

}  // namespace simcam::picture
