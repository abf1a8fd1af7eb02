// What the lens makes unsharp.
#pragma once

#include "simcam/PictureParameters.h"
#include "simcam/picture/Canvas.h"

#include <array>
#include <cstdint>
#include <vector>

namespace simcam::picture {

// Radii of the blur have 3 fractional bits.
constexpr int kRadiusOne = 8;

// The radius of each distance index, for a picture of this width and an iris position as of command 82.
std::array<std::uint8_t, kDistances> radiiOf(const PictureParameters& p_stParameters, int p_nIris, int p_nWidth);

// Blurs a plane by the radius of each of its pixels. Not thread-safe; keeps its memory.
class Blur {
public:
    void apply(std::vector<int>& p_vecPlane, const std::vector<std::uint8_t>& p_vecRadii, int p_nWidth, int p_nHeight);

private:
    std::vector<std::uint32_t> m_vecSums;
    std::vector<int> m_vecAcross;
};

}  // namespace simcam::picture
