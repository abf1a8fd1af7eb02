// The light on the street and what of it reaches the sensor.
#pragma once

#include "simcam/PictureParameters.h"
#include "simcam/picture/Canvas.h"

#include <array>
#include <cstdint>

namespace simcam::picture {

constexpr int kColours = 3;

// Exposed light: 4096 is the white of the picture; brighter light is kept up to kBrightest.
constexpr int kBrightest = (1 << 19) - 1;
using Pixel = std::array<int, kColours>;

// How much exposed light a 1/1000 lux gives, as a logarithm to the base 2 (kLogOne).
using Sensitivity = int;

// Millimetres of a distance index; the subject's is given.
std::array<int, kDistances> distances(int p_nSubjectMillimetres);

// The lamps of the camera: near, medium and far, each with its own beam.
constexpr int kBeams = 3;
// How much of a beam goes into a direction, 256 all. The direction is a distance from the picture's middle at wide
// angle, as its square in plane pixels of 640 x 360.
constexpr int kDirections = 128;
constexpr int kDirectionShift = 11;
using Beam = std::array<int, kDirections>;
const std::array<Beam, kBeams>& beams();

// The light of a moment, in 1/1000 lux.
struct Light {
    int magnification = 1000;  // 1/1000
    bool night = false;        // the filter against infrared is away
    bool colour = true;
    std::array<int, kColours> ambient{};                         // by colour
    std::array<int, kDistances> clear{};                         // share that the fog lets through, 4096 all
    std::array<std::array<int, kDistances>, kBeams> infrared{};  // on a surface in the middle of the beam
    std::array<std::array<int, kDistances>, kBeams> white{};
    bool anyInfrared = false;
    bool anyWhite = false;
};

// The parameters are within their ranges.
Light lightOf(const PictureParameters& p_stParameters);

// The brightest that any surface is lit with, in 1/1000 lux; at least 1.
int brightestOf(const Light& p_stLight);

// Light as one sensitivity makes it; turns surfaces into exposed light. Immutable.
class ExposedLight {
public:
    ExposedLight(const Light& p_stLight, Sensitivity p_nSensitivity);

    // A pixel of the picture at this place, in pixels from the middle times 640 / width. In black and white, the three
    // colours are the same.
    Pixel expose(const Surface& p_stSurface, int p_nFromMiddleX, int p_nFromMiddleY) const;

    // Exposed light of so many 1/1000 lux, at most kBrightest.
    int of(std::int64_t p_nMilliLux) const;

private:
    using Table = std::array<int, kDistances>;

    int direction(int p_nX, int p_nY) const;
    int beamed(const std::array<Table, kBeams>& p_arrBeams, int p_nDistance, int p_nDirection) const;
    int emitted(const Surface& p_stSurface, int p_nColour) const;

    int m_nMultiplier;  // exposed light is 1/1000 lux * multiplier / 2^shift
    int m_nShift;
    const Light& m_stLight;
    std::array<Table, kColours> m_arrAmbient;
    std::array<Table, kColours> m_arrFog;
    std::array<Table, kColours> m_arrLamp;
    std::array<Table, kBeams> m_arrInfrared;
    std::array<Table, kBeams> m_arrWhite;
};

}  // namespace simcam::picture
