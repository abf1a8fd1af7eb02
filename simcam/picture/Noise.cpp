#include "simcam/picture/Noise.h"

#include "simcam/picture/FixedPoint.h"

#include <algorithm>

namespace simcam::picture {
namespace {

constexpr int kPhotons = 20000;  // that white is without gain
constexpr int kReadNoise = 2;    // exposed light, without gain
constexpr int kChance = 148;     // deviation of the sum of four bytes

std::int64_t frameOf(INT64 p_nMilliseconds) {
    const std::int64_t nRest = (p_nMilliseconds % kFrameMilliseconds + kFrameMilliseconds) % kFrameMilliseconds;
    return (p_nMilliseconds - nRest) / kFrameMilliseconds;
}

int squareRoot(std::int64_t p_nValue) {
    std::int64_t nRoot = 0;
    for (std::int64_t nBit = std::int64_t{1} << 20; nBit > 0; nBit >>= 1) {
        if ((nRoot + nBit) * (nRoot + nBit) <= p_nValue) {
            nRoot += nBit;
        }
    }
    return static_cast<int>(nRoot);
}

int chance(std::uint32_t p_nChance) {
    return static_cast<int>((p_nChance & 255) + (p_nChance >> 8 & 255) + (p_nChance >> 16 & 255) + (p_nChance >> 24)) -
           510;
}

}  // namespace

int averagedFrames(const PictureParameters& p_st, int p_nGain) {
    constexpr int kManual = 1;
    constexpr int kFullAt = 4 * kLogOne;  // the automatic mode reaches its most at so much gain
    if (0 == p_st.noise3d) {
        return 1;
    }
    const int nStrength = kManual == p_st.noise3dMode
                              ? p_st.noise3dStrength
                              : static_cast<int>(std::int64_t{p_st.noise3dMost} * std::min(p_nGain, kFullAt) / kFullAt);
    return 1 + (kMostFrames - 1) * nStrength / 100;
}

Noise::Noise(const PictureParameters& p_stParameters, int p_nGain, int p_nFrames)
    : m_nSeed(scramble(p_stParameters.seed)), m_nFrame(frameOf(p_stParameters.milliseconds)), m_nFrames(p_nFrames) {
    const std::int64_t nGain = exp2Of(p_nGain);
    for (int i = 0; i < kShades; ++i) {
        const std::int64_t nLight = i << kShadeShift;
        const std::int64_t nShot = nLight * kOne / kPhotons * nGain / kOne;
        const std::int64_t nRead = kReadNoise * nGain / kOne;
        m_arrDeviation[static_cast<std::size_t>(i)] = squareRoot(nShot + nRead * nRead);
    }
}

int Noise::deviation(int p_nLight) const {
    return m_arrDeviation[static_cast<std::size_t>(std::clamp(p_nLight >> kShadeShift, 0, kShades - 1))];
}

void Noise::addTo(int* p_pRow, int p_nWidth, int p_nRow, int p_nColour) const {
    constexpr std::uint32_t kStep = 0x9e3779b9U;
    std::array<std::uint32_t, kMostFrames> arrPlace{};
    const auto nFrames = static_cast<std::size_t>(m_nFrames);
    for (std::size_t i = 0; i < nFrames; ++i) {
        const auto nFrame = static_cast<std::uint32_t>(m_nFrame - static_cast<std::int64_t>(i));
        arrPlace[i] =
            scramble(m_nSeed ^ scramble(nFrame)) ^ scramble(static_cast<std::uint32_t>(3 * p_nRow + p_nColour));
    }
    // One division for all: the sum of the chances times the deviation, in 1/65536.
    const int nPart = 65536 / (kChance * m_nFrames);
    for (int x = 0; x < p_nWidth; ++x) {
        int nSum = 0;
        for (std::size_t i = 0; i < nFrames; ++i) {
            arrPlace[i] += kStep;
            nSum += chance(scramble(arrPlace[i]));
        }
        const std::int64_t nNoise = std::int64_t{nSum * nPart} * deviation(p_pRow[x]) / 65536;
        p_pRow[x] = std::max(0, p_pRow[x] + static_cast<int>(nNoise));
    }
}

}  // namespace simcam::picture
