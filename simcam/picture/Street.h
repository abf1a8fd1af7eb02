// The street in front of the camera.
#pragma once

#include "simcam/picture/Canvas.h"

namespace simcam::picture {

// Everything that stands still. The canvas has its size and view.
void paintStreet(Canvas& p_objCanvas);

// Where the car is at a moment: the left end of its place on the plane.
int carLeft(long long p_nMilliseconds);

// The rows and columns that a car fills, on the plane.
constexpr int kCarTop = 222 * kPlaneUnit;
constexpr int kCarBottom = 290 * kPlaneUnit;
constexpr int kCarLength = 150 * kPlaneUnit;
std::uint8_t carDistance();
void paintCar(Canvas& p_objCanvas, int p_nLeft);

// Places of the street, in pixels of a picture of 640 x 360 at wide angle, for whoever looks at pictures.
struct Place {
    int left;
    int top;
    int right;
    int bottom;
};
constexpr Place kSkyPlace = {250, 20, 390, 70};
constexpr Place kStarPlace = {206, 158, 254, 206};
constexpr Place kChartPlace = {376, 164, 436, 204};  // 6 x 4 patches of 10 pixels
constexpr Place kGaragePlace = {30, 146, 100, 204};
constexpr Place kLampPlace = {512, 60, 532, 72};
constexpr Place kWallPlace = {470, 118, 496, 140};  // plain, of the right house
constexpr Place kFarPlace = {262, 124, 380, 144};   // the far end of the street
constexpr Place kRoadPlace = {200, 300, 440, 340};
constexpr Place kTreePlace = {390, 100, 430, 130};

}  // namespace simcam::picture
