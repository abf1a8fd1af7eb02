// Where the picture's pixels go: digital zoom, mirror, the turned camera; and where the picture is cut out of the street.
#pragma once

#include "simcam/Picture.h"
#include "simcam/PictureParameters.h"

namespace simcam::picture {

// Digital zoom cuts out the middle; mirror 1 exchanges left and right, 2 top and bottom, 3 both; then beaway turns the
// picture by a quarter, clockwise, with black at its sides. The two pictures are different objects.
void arrange(const Picture& p_stFrom, const PictureParameters& p_stParameters, Picture& p_stTo);

// So far the picture is cut out of the street beside its middle, in pixels of a picture of this width: by picture shift
// and by a mast that trembles in the wind.
struct Offset {
    int x = 0;
    int y = 0;
};
Offset offsetOf(const PictureParameters& p_stParameters, int p_nWidth);

// The most that offsetOf gives in a direction.
int mostOffset(int p_nWidth);

}  // namespace simcam::picture
