// Exposure: what the sensor measures, and what the automatic makes of it.
#pragma once

#include "simcam/PictureParameters.h"
#include "simcam/picture/Light.h"

namespace simcam::picture {

// A window of a canvas: the picture's pixels.
struct Window {
    const Canvas* canvas = nullptr;
    int left = 0;
    int top = 0;
    int width = 0;
    int height = 0;
};

// Regions of the picture whose darkest places are measured.
constexpr int kRegionsAcross = 8;
constexpr int kRegionsDown = 6;

// What the sensor measures, for a sensitivity at which nothing is too bright.
struct Metering {
    Sensitivity sensitivity = 0;
    int mean = 0;                                                         // weighted by the areas; 4096 is white
    std::array<int, kColours> colour{};                                   // means of the colours
    std::array<std::array<int, kRegionsAcross>, kRegionsDown> darkest{};  // of each region
};
Metering meter(const Window& p_stWindow, const Light& p_stLight, const PictureParameters& p_stParameters);

struct Exposure {
    Sensitivity sensitivity = 0;
    int gain = 0;  // logarithm, kLogOne for each doubling, from 0
    int shutterMicroseconds = 0;
    int iris = 25600;  // as command 82
};
Exposure exposureFor(const Metering& p_stMetering, const PictureParameters& p_stParameters);

}  // namespace simcam::picture
