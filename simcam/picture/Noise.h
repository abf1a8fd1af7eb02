// The noise of the sensor, and the averaging of pictures that noise reduction over time is.
#pragma once

#include "simcam/PictureParameters.h"
#include "simcam/picture/Light.h"

#include <array>
#include <cstdint>

namespace simcam::picture {

constexpr int kFrameMilliseconds = 40;
constexpr int kMostFrames = 8;

// How many pictures the noise reduction over time takes the mean of, 1 to kMostFrames, at a gain (kLogOne a doubling).
int averagedFrames(const PictureParameters& p_stParameters, int p_nGain);

// Adds noise that depends on seed, moment and place alone. The mean of several frames is exactly that.
class Noise {
public:
    Noise(const PictureParameters& p_stParameters, int p_nGain, int p_nFrames);

    // One row of a plane; the rows of the three colours have noise of their own.
    void addTo(int* p_pRow, int p_nWidth, int p_nRow, int p_nColour) const;

    // The deviation at an exposed light.
    int deviation(int p_nLight) const;

private:
    static constexpr int kShades = 1024;
    static constexpr int kShadeShift = 3;

    std::uint32_t m_nSeed;
    std::int64_t m_nFrame;
    int m_nFrames;
    std::array<int, kShades> m_arrDeviation{};  // of exposed light in steps of 8
};

}  // namespace simcam::picture
