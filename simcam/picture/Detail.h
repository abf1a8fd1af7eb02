// Noise reduction within a picture, and sharpness. Both work on planes of width * height numbers.
#pragma once

#include "simcam/PictureParameters.h"

#include <cstdint>
#include <vector>

namespace simcam::picture {

using Plane = std::vector<std::int16_t>;

// Percent, of the 2D noise reduction at a gain (kLogOne a doubling); 0 when it is off.
int smoothing(const PictureParameters& p_stParameters, int p_nGain);

// Each number becomes the mean of those around it (5 x 5) that differ by less than the threshold.
void smooth(Plane& p_vecPlane, int p_nWidth, int p_nHeight, int p_nThreshold, Plane& p_vecScratch);

// Adds to each number what it differs by from the mean of the 3 x 3 around it, times percent.
void sharpen(Plane& p_vecPlane, int p_nWidth, int p_nHeight, int p_nPercent, Plane& p_vecScratch);

}  // namespace simcam::picture
